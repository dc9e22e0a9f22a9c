#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

namespace zolt::support {

/// Makes `bytes` the contents of a file: all of them or, whatever fails and whenever the program or the
/// computer ends, none. They are on the disk before they take over the file's name. A link stays a link, also
/// one to a file that does not exist yet; owner and permissions stay as they are. On failure the cause comes
/// back and the file is as it was: `is_a_directory` for what is no ordinary file (a folder, a device, a
/// pipe), `operation_would_block` when somebody else keeps replacing the file for a second.
///
/// What a program that was killed in the middle has left beside the file, one file at most, goes with the
/// next replacement.
[[nodiscard]] std::error_code replaceFile(std::filesystem::path const& path, std::string_view bytes);

/// Removes the file and what a replacement that was cut short has left beside it.
void removeFile(std::filesystem::path const& path);

}  // namespace zolt::support
