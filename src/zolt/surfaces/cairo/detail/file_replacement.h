#pragma once

#include <string>

// Internal to the Cairo library.

namespace zolt::surfaces {

/// Makes `bytes` the contents of a file: at once, or not at all when anything fails, the disk being full
/// included. A link stays a link, also one to a file that is not there yet; owner and permissions stay as
/// they are. What is no ordinary file (a device, a pipe) is written to directly. False, with `error`, on
/// failure.
///
/// What a program that was killed in the middle has left beside the file, one file at most, goes with the
/// next replacement. Who replaces a file at the same time is waited for.
bool replaceFile(std::string const& path, std::string const& bytes, std::string& error);

}  // namespace zolt::surfaces
