#pragma once

#include <string>

// Internal to the Cairo library.

namespace zolt::surfaces {

/// Makes `bytes` the contents of a file: at once, or not at all when anything fails, the disk being full
/// included. What is no ordinary file (a device, a pipe) is written to directly. False, with `error`, on
/// failure.
bool replaceFile(std::string const& path, std::string const& bytes, std::string& error);

}  // namespace zolt::surfaces
