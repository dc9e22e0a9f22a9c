#include "hosts/cli/output_file.h"

#include <cerrno>
#include <cstdio>

#include "hosts/support/replace_file.h"

namespace zolt::cli {

namespace fs = std::filesystem;

namespace {

/// Standard output may lead to something that is not a file, or to a file whose name has been removed.
bool isReplaceable(fs::path const& path) {
  std::error_code ignored;
  if (!fs::exists(path, ignored)) return true;
  return !fs::canonical(path, ignored).empty() && fs::is_regular_file(path, ignored);
}

std::error_code writeInto(fs::path const& path, std::string const& bytes) {
  errno = 0;
  std::FILE* const file = std::fopen(path.string().c_str(), "wb");
  bool done = file && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  int cause = errno;
  // A full disk may be noticed only here.
  if (file && std::fclose(file) != 0 && done) {
    cause = errno;
    done = false;
  }
  return done ? std::error_code() : std::error_code(cause ? cause : EIO, std::generic_category());
}

}  // namespace

bool writeFile(fs::path const& path, std::string const& bytes, std::string& error) {
  std::error_code const cause =
      isReplaceable(path) ? support::replaceFile(path, bytes) : writeInto(path, bytes);
  if (cause) error = "cannot write " + path.string() + ": " + cause.message();
  return !cause;
}

}  // namespace zolt::cli
