#pragma once

#include <filesystem>
#include <string>

namespace zolt::cli {

/// Replaces an ordinary file at once or not at all, and writes into what is none (a device, a pipe) directly.
/// False, with the file's name and the cause in `error`, on failure.
[[nodiscard]] bool writeFile(std::filesystem::path const& path, std::string const& bytes, std::string& error);

}  // namespace zolt::cli
