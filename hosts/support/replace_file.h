#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

namespace zolt::support {

/// Makes `bytes` the contents of a file: all of them or, whatever fails and whenever the program or the
/// computer stops, none. They are on the disk before they take over the file's name. On failure the cause is
/// returned and the file is unchanged; `is_a_directory` stands for anything but an ordinary file (a folder, a
/// device, a pipe). The program has to ignore `SIGXFSZ`, or it is ended by a limit on the size of files.
///
/// A link remains a link, even one to a file that does not exist yet. Owner and permissions are kept and, on
/// Linux, access lists and extended attributes. Where a new file could not keep them, or would part the names
/// of a file that has several, or where the folder does not allow one, the file itself is overwritten. When
/// that fails, the old contents are put back; when the program is stopped in the middle of it, the new
/// contents are complete beside the file in a hidden one, if the folder allows that. Here
/// `operation_would_block` means that others keep the file locked for a second.
///
/// The next replacement removes what a program that was stopped has left beside the file (in folders of up to
/// 4,096 entries, and not where the file system has no locks).
[[nodiscard]] std::error_code replaceFile(std::filesystem::path const& path, std::string_view bytes);

/// Removes the file and the remains of interrupted replacements beside it.
void removeFile(std::filesystem::path const& path);

}  // namespace zolt::support
