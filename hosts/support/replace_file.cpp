#include "hosts/support/replace_file.h"

#include <cstdint>
#include <string>

#ifdef _WIN32
#include <fstream>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <thread>
#endif

namespace zolt::support {

namespace fs = std::filesystem;

namespace {

/// A short name that hardly ever equals that of another file.
std::string digestOf(std::string const& name) {
  std::uint64_t digest = 0xCBF29CE484222325;  // FNV-1a
  for (char const c : name) digest = (digest ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  return std::to_string(digest);
}

/// Where the bytes are until they are complete. The place is always the same, so that remains are found
/// again; the name is hidden because the file is of no use to a person.
fs::path draftPath(fs::path const& target) {
  constexpr std::size_t longest_name = 240;  // bytes that every file system allows, with ours around them
  std::string const name = target.filename().string();
  return target.parent_path() / ("." + (name.size() > longest_name ? digestOf(name) : name) + ".part");
}

/// The target of a link, even if nothing exists there yet.
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

std::error_code replace(fs::path const& target, fs::path const& draft, std::string_view bytes) {
  std::error_code cause, ignored;
  std::ofstream out(draft, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (out.fail()) {
    cause = std::make_error_code(std::errc::io_error);
  } else {
    fs::rename(draft, target, cause);
  }
  if (cause) fs::remove(draft, ignored);
  return cause;
}

#else

std::error_code lastCause() { return {errno ? errno : EIO, std::generic_category()}; }

/// Closes the file in its destructor.
class DescriptorC {
 public:
  explicit DescriptorC(int number = -1) : number_(number) {}
  ~DescriptorC() {
    if (number_ >= 0) ::close(number_);
  }
  DescriptorC(DescriptorC const&) = delete;
  DescriptorC& operator=(DescriptorC const&) = delete;

  explicit operator bool() const { return number_ >= 0; }
  int number() const { return number_; }
  void reset(int number) {
    if (number_ >= 0) ::close(number_);
    number_ = number;
  }

 private:
  int number_;
};

bool isSameFile(struct stat const& a, struct stat const& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// Creates a file at `path` that is locked against other writers. Returns false with `errno` set.
bool createDraft(char const* path, mode_t mode, DescriptorC& draft) {
  constexpr int attempts = 100;
  constexpr std::chrono::milliseconds pause(10);
  for (int i = 0; i < attempts; ++i) {
    draft.reset(::open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!draft && errno != EEXIST) return false;
    bool const fresh = static_cast<bool>(draft);
    if (!fresh) draft.reset(::open(path, O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!draft) {
      if (errno == ENOENT) continue;
      if (errno != ELOOP || ::unlink(path) != 0) return false;  // a link is not ours
      continue;
    }
    // A file system without locks has no other holder either.
    if (::flock(draft.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
      std::this_thread::sleep_for(pause);
      continue;
    }
    // The previous holder of the lock may have given the file its final name, or another writer may have
    // removed it in between.
    struct stat ours = {};
    struct stat there = {};
    bool const inPlace = ::fstat(draft.number(), &ours) == 0 && ::lstat(path, &there) == 0;
    if (!inPlace || !isSameFile(ours, there)) continue;
    if (fresh) return true;
    if (::unlink(path) != 0) return false;  // remains of an interrupted replacement
  }
  errno = EWOULDBLOCK;
  return false;
}

bool writeAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    ssize_t const written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool syncFile(int file) {
  // Some file systems cannot sync, and report that.
  return ::fsync(file) == 0 || errno == EINVAL || errno == ENOTSUP;
}

/// Gives `draft` the owner and the permissions of the file that it replaces, as far as this user may.
bool takeOver(int draft, struct stat const& before) {
  bool const owned = ::fchown(draft, before.st_uid, before.st_gid) == 0 ||
                     ::fchown(draft, static_cast<uid_t>(-1), before.st_gid) == 0;
  // When the group could not be kept, the new group gets no access of its own.
  mode_t const mode = before.st_mode & 0777u;
  // A file system without permissions refuses, but loses nothing by it.
  return ::fchmod(draft, owned ? mode : mode & ~mode_t(070)) == 0 || errno == EPERM || errno == ENOTSUP;
}

std::error_code replace(fs::path const& target, fs::path const& draftName, std::string_view bytes) {
  struct stat before = {};
  errno = 0;
  bool const exists = ::stat(target.c_str(), &before) == 0;
  if (!exists && errno != ENOENT) return lastCause();
  if (exists && !S_ISREG(before.st_mode)) return std::make_error_code(std::errc::is_a_directory);
  // Replacing a write-protected file would get around its protection.
  if (exists && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) return lastCause();
  DescriptorC draft;
  if (!createDraft(draftName.c_str(), exists ? 0600 : 0666, draft)) return lastCause();
  // The draft is closed only after it has its name: until then the lock keeps others away.
  if ((exists && !takeOver(draft.number(), before)) || !writeAll(draft.number(), bytes) ||
      !syncFile(draft.number()) || ::rename(draftName.c_str(), target.c_str()) != 0) {
    std::error_code const cause = lastCause();
    ::unlink(draftName.c_str());
    return cause;
  }
  // The new name, too, has to survive a power failure.
  DescriptorC const folder(::open((target.parent_path() / ".").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder) ::fsync(folder.number());
  return {};
}

#endif

}  // namespace

std::error_code replaceFile(fs::path const& path, std::string_view bytes) {
  fs::path const target = followLinks(path);
  return replace(target, draftPath(target), bytes);
}

void removeFile(fs::path const& path) {
  std::error_code ignored;
  fs::remove(path, ignored);
  fs::remove(draftPath(path), ignored);
}

}  // namespace zolt::support
