#include "zolt/surfaces/cairo/detail/file_replacement.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace zolt::surfaces {

namespace {

namespace fs = std::filesystem;

std::string describe(fs::path const& path, std::error_code const& cause) {
  return "cannot write " + path.string() + ": " + cause.message();
}

bool writeWhole(fs::path const& path, char const* mode, std::string const& bytes, std::error_code& cause) {
  errno = 0;
  std::FILE* const file = std::fopen(path.string().c_str(), mode);
  bool done = file != nullptr;
  if (file) {
    done = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() && std::fflush(file) == 0;
    int const failure = errno;
    // A full disk may be noticed only here.
    if (std::fclose(file) != 0) {
      done = false;
    } else if (!done) {
      errno = failure;
    }
  }
  if (!done) cause = std::error_code(errno ? errno : EIO, std::generic_category());
  return done;
}

}  // namespace

bool replaceFile(std::string const& path, std::string const& bytes, std::string& error) {
  std::error_code cause, ignored;
  fs::path target = path;
  // A link stays a link: what it leads to is replaced.
  fs::path const real = fs::canonical(target, ignored);
  if (!ignored) target = real;
  if (fs::exists(target, ignored) && !fs::is_regular_file(target, ignored)) {
    if (writeWhole(target, "wb", bytes, cause)) return true;
    error = describe(path, cause);
    return false;
  }
  fs::path draft = target;
  draft += ".part" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count());
  bool done = writeWhole(draft, "wbx", bytes, cause);
  if (done) {
    fs::rename(draft, target, cause);
    done = !cause;
  }
  if (!done) {
    fs::remove(draft, ignored);
    error = describe(path, cause);
  }
  return done;
}

}  // namespace zolt::surfaces
