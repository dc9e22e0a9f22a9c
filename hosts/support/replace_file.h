#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

namespace zolt::support {

/// Makes `bytes` the contents of a file: all of them or, whatever fails and whenever the program or the
/// computer stops, none. They are on the disk before they take over the file's name. A link remains a link,
/// even one to a file that does not exist yet; owner and permissions are kept. On failure the cause is
/// returned and the file is unchanged: `is_a_directory` for anything but an ordinary file (a folder, a
/// device, a pipe), `operation_would_block` when other writers keep the file locked for a second.
///
/// The next replacement removes what a program that was killed in the middle has left beside the file (one
/// file at most).
[[nodiscard]] std::error_code replaceFile(std::filesystem::path const& path, std::string_view bytes);

/// Removes the file and the remains of an interrupted replacement beside it.
void removeFile(std::filesystem::path const& path);

}  // namespace zolt::support
