#include "zolt/surfaces/cairo/detail/file_replacement.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace zolt::surfaces {

namespace {

namespace fs = std::filesystem;

std::string describe(fs::path const& path, std::error_code const& cause) {
  return "cannot write " + path.string() + ": " + cause.message();
}

std::error_code lastCause() { return {errno ? errno : EIO, std::generic_category()}; }

bool writeInto(fs::path const& path, std::string const& bytes, std::error_code& cause) {
  errno = 0;
  std::FILE* const file = std::fopen(path.string().c_str(), "wb");
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
  if (!done) cause = lastCause();
  return done;
}

/// Short, and hardly ever that of another name.
std::string digestOf(std::string const& name) {
  std::uint64_t digest = 0xCBF29CE484222325;  // FNV-1a
  for (char const c : name) digest = (digest ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  std::string text;
  for (int shift = 60; shift >= 0; shift -= 4) text += "0123456789abcdef"[digest >> shift & 0xF];
  return text;
}

/// Where the bytes stand until they are complete. Always the same place, so that what is left over is found
/// again; hidden, because it is nobody's file.
fs::path draftPath(fs::path const& target) {
  constexpr std::size_t longest_name = 240;  // bytes that every file system allows, with ours around them
  std::string const name = target.filename().string();
  return target.parent_path() / ("." + (name.size() > longest_name ? digestOf(name) : name) + ".part");
}

/// What a link leads to when there is nothing yet.
fs::path followLinks(fs::path path) {
  constexpr int most_links = 40;
  std::error_code failed;
  for (int i = 0; i < most_links && fs::is_symlink(path, failed); ++i) {
    fs::path const next = fs::read_symlink(path, failed);
    if (failed) break;
    path = path.parent_path() / next;
  }
  return path;
}

#ifdef _WIN32

bool replace(fs::path const& target, std::string const& bytes, std::error_code& cause) {
  fs::path const draft = draftPath(target);
  std::error_code ignored;
  if (writeInto(draft, bytes, cause)) {
    fs::rename(draft, target, cause);
    if (!cause) return true;
  }
  fs::remove(draft, ignored);
  return false;
}

#else

/// Closes the file when it goes.
class DescriptorC {
 public:
  explicit DescriptorC(int number = -1) : number_(number) {}
  ~DescriptorC() { close(); }
  DescriptorC(DescriptorC const&) = delete;
  DescriptorC& operator=(DescriptorC const&) = delete;

  explicit operator bool() const { return number_ >= 0; }
  int number() const { return number_; }
  void reset(int number) {
    close();
    number_ = number;
  }
  bool close() {
    int const number = std::exchange(number_, -1);
    return number < 0 || ::close(number) == 0;
  }

 private:
  int number_;
};

bool isSameFile(struct stat const& a, struct stat const& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// A new file at `path` that is locked against other writers, for whose end it waits. False with `errno` set.
bool createDraft(char const* path, mode_t mode, DescriptorC& draft) {
  constexpr int attempts = 100;
  for (int i = 0; i < attempts; ++i) {
    draft.reset(::open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!draft && errno != EEXIST) return false;
    bool const fresh = bool(draft);
    if (!fresh) draft.reset(::open(path, O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!draft) {
      if (errno == ENOENT) continue;
      if (errno != ELOOP || ::unlink(path) != 0) return false;  // a link: not from us
      continue;
    }
    // Where there are no locks, nobody else has one.
    while (::flock(draft.number(), LOCK_EX) != 0 && errno == EINTR) {
    }
    // Who held the lock before may have given the file its final name, and who came between have removed it.
    struct stat ours = {};
    struct stat there = {};
    bool const inPlace = ::fstat(draft.number(), &ours) == 0 && ::lstat(path, &there) == 0;
    if (!inPlace || !isSameFile(ours, there)) continue;
    if (fresh) return true;
    if (::unlink(path) != 0) return false;  // left over
  }
  errno = EWOULDBLOCK;
  return false;
}

bool writeAll(int file, std::string const& bytes) {
  char const* from = bytes.data();
  for (std::size_t left = bytes.size(); left > 0;) {
    ssize_t const written = ::write(file, from, left);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    from += written;
    left -= static_cast<std::size_t>(written);
  }
  return true;
}

/// Gives `draft` the owner and the permissions of the file that it replaces, as far as this user may.
bool takeOver(int draft, struct stat const& before) {
  bool const owned = ::fchown(draft, before.st_uid, before.st_gid) == 0 ||
                     ::fchown(draft, static_cast<uid_t>(-1), before.st_gid) == 0;
  // To another group than before only what everybody may do may go.
  mode_t const mode = before.st_mode & 0777u;
  // A file system without permissions refuses, and has nothing to lose by it.
  return ::fchmod(draft, owned ? mode : mode & ~mode_t(070)) == 0 || errno == EPERM || errno == ENOTSUP;
}

bool replace(fs::path const& target, std::string const& bytes, std::error_code& cause) {
  fs::path const draftName = draftPath(target);
  errno = 0;
  struct stat before {};
  bool const exists = ::stat(target.c_str(), &before) == 0;
  DescriptorC draft;
  // Taking its place would get around a protection against writing.
  bool const allowed =
      exists ? ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) == 0 : errno == ENOENT;
  if (!allowed || !createDraft(draftName.c_str(), exists ? 0600 : 0666, draft)) {
    cause = lastCause();
    return false;
  }
  // Closed only when it has its name: until then the lock keeps others away. What closing would tell of the
  // disk, a copy of the descriptor tells before.
  bool const done = (!exists || takeOver(draft.number(), before)) && writeAll(draft.number(), bytes) &&
                    DescriptorC(::dup(draft.number())).close() &&
                    ::rename(draftName.c_str(), target.c_str()) == 0;
  if (!done) {
    cause = lastCause();
    ::unlink(draftName.c_str());
  }
  return done;
}

#endif

}  // namespace

bool replaceFile(std::string const& path, std::string const& bytes, std::string& error) {
  std::error_code cause, missing, ignored;
  bool done = false;
  if (fs::exists(path, ignored)) {
    // A link stays a link: what it leads to is replaced. What standard output leads to may be no file, or one
    // whose name is gone.
    fs::path const real = fs::canonical(path, missing);
    bool const named = !missing && fs::is_regular_file(path, ignored);
    done = named ? replace(real, bytes, cause) : writeInto(path, bytes, cause);
  } else {
    done = replace(followLinks(path), bytes, cause);
  }
  if (!done) error = describe(path, cause);
  return done;
}

}  // namespace zolt::surfaces
