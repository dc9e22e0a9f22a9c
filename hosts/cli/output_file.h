#pragma once

#include <filesystem>
#include <string>

namespace zolt::cli {

/// Replaces an ordinary file completely or not at all; writes directly into anything else (a device, a pipe).
/// Returns false, with the file's name and the cause in `error`, on failure.
[[nodiscard]] bool writeFile(std::filesystem::path const& path, std::string const& bytes, std::string& error);

}  // namespace zolt::cli
