#include "hosts/support/replace_file.h"

#include <algorithm>
#include <random>
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
#include <cstring>
#include <map>
#include <thread>
#endif
#ifdef __linux__
#include <linux/limits.h>
#include <sys/xattr.h>
#endif

namespace zolt::support {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view draft_end = ".part";

/// The beginning of the names of drafts, which hold the bytes until they are complete. They are hidden, since
/// they are of no use to a person.
std::string draftStart(fs::path const& target) {
  constexpr std::size_t longest_name = 200;  // bytes; file systems allow 255
  std::string const name = target.filename().string();
  std::size_t end = std::min(name.size(), longest_name);
  while (end < name.size() && (name[end] & 0xC0) == 0x80) --end;  // characters of UTF-8 remain whole
  return '.' + name.substr(0, end) + '.';
}

/// Nobody can foresee the number in the name, and so nobody can put anything in its place.
fs::path newDraftPath(fs::path const& target) {
  std::random_device random;
  std::string const number = std::to_string(random()) + std::to_string(random());
  return target.parent_path() / (draftStart(target) + number + std::string(draft_end));
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

std::error_code replace(fs::path const& target, std::string_view bytes) {
  std::error_code cause, ignored;
  fs::path const draft = newDraftPath(target);
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

void removeRemains(fs::path const&) {}

#else

std::error_code lastCause() { return {errno ? errno : EIO, std::generic_category()}; }

/// Closes the file in its destructor.
class DescriptorC {
 public:
  explicit DescriptorC(int number = -1) : number_(number) {}
  ~DescriptorC() { reset(-1); }
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

/// Whether the file could be locked. A file system without locks has no other holder either.
bool lock(DescriptorC const& file) {
  return ::flock(file.number(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

/// Creates a file beside `target`, with a lock that tells that its program is running. Returns false with
/// `errno` set.
bool createDraft(fs::path const& target, mode_t mode, fs::path& path, DescriptorC& draft) {
  constexpr int attempts = 100;
  for (int i = 0; i < attempts; ++i) {
    path = newDraftPath(target);
    draft.reset(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!draft) {
      if (errno == EEXIST) continue;
      return false;
    }
    // Before it was locked, a program that looks for remains may have removed it.
    struct stat made = {};
    if (lock(draft) && ::fstat(draft.number(), &made) == 0 && made.st_nlink > 0) return true;
  }
  return false;
}

bool syncFile(int file) {
  // Some file systems cannot sync, and report that.
  return ::fsync(file) == 0 || errno == EINVAL || errno == ENOTSUP;
}

/// Makes `bytes` the contents of an open file, on the disk, too. Returns false with `errno` set.
bool fill(int file, std::string_view bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    ssize_t const written =
        ::pwrite(file, bytes.data() + done, bytes.size() - done, static_cast<off_t>(done));
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    done += static_cast<std::size_t>(written);
  }
  return ::ftruncate(file, static_cast<off_t>(bytes.size())) == 0 && syncFile(file);
}

/// Overwrites a file that has to remain the same one. When that fails, the old contents are put back; `whole`
/// is false when that fails, too.
std::error_code writeThrough(DescriptorC const& file, std::string_view bytes, bool& whole) {
  constexpr int attempts = 100;
  constexpr std::chrono::milliseconds pause(10);
  for (int i = 0; !lock(file); ++i) {
    if (i == attempts) return std::make_error_code(std::errc::operation_would_block);
    std::this_thread::sleep_for(pause);
  }
  struct stat now = {};
  if (::fstat(file.number(), &now) != 0) return lastCause();
  std::string before(static_cast<std::size_t>(now.st_size), '\0');
  for (std::size_t done = 0; done < before.size();) {
    ssize_t const count =
        ::pread(file.number(), before.data() + done, before.size() - done, static_cast<off_t>(done));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return lastCause();
    if (count == 0) before.resize(done);
    done += static_cast<std::size_t>(count);
  }
  if (fill(file.number(), bytes)) return {};
  std::error_code const cause = lastCause();
  whole = fill(file.number(), before);
  return cause;
}

using AttributesT = std::map<std::string, std::string>;

/// Access lists and extended attributes. Returns false when they cannot be found out.
bool readAttributes([[maybe_unused]] int file, [[maybe_unused]] AttributesT& found) {
#ifdef __linux__
  std::string names(XATTR_LIST_MAX, '\0'), value(XATTR_SIZE_MAX, '\0');
  ssize_t const size = ::flistxattr(file, names.data(), names.size());
  if (size < 0) return errno == ENOTSUP;
  for (char const* name = names.data(); name < names.data() + size; name += std::strlen(name) + 1) {
    ssize_t const length = ::fgetxattr(file, name, value.data(), value.size());
    if (length < 0) return false;
    found[name].assign(value, 0, static_cast<std::size_t>(length));
  }
#endif
  return true;
}

/// Makes a draft what the file is besides its contents: whether it can take the file's place.
bool makeAlike(int draft, int file, struct stat const& before) {
  struct stat made = {};
  AttributesT wanted, given;
  if (before.st_nlink != 1 || ::fstat(draft, &made) != 0 || !readAttributes(file, wanted)) return false;
  if ((made.st_uid != before.st_uid || made.st_gid != before.st_gid) &&
      ::fchown(draft, before.st_uid, before.st_gid) != 0)
    return false;
  if (made.st_mode != before.st_mode && ::fchmod(draft, before.st_mode & 07777u) != 0) return false;
#ifdef __linux__
  for (auto const& [name, value] : wanted) ::fsetxattr(draft, name.c_str(), value.data(), value.size(), 0);
#endif
  return readAttributes(draft, given) && given == wanted;
}

/// Whether the last failure concerns the folder, or the exchange of one file for another, but not the file.
bool isFolderClosed() { return errno == EACCES || errno == EPERM || errno == EROFS || errno == EBUSY; }

std::error_code replace(fs::path const& target, std::string_view bytes) {
  errno = 0;
  // Replacing a write-protected file would get around its protection.
  DescriptorC const file(::open(target.c_str(), O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat before = {};
  if (file ? ::fstat(file.number(), &before) != 0 : errno != ENOENT) return lastCause();
  if (file && !S_ISREG(before.st_mode)) return std::make_error_code(std::errc::is_a_directory);

  fs::path name;
  DescriptorC draft;
  bool whole = true;
  if (!createDraft(target, file ? 0600 : 0666, name, draft)) {
    return file && isFolderClosed() ? writeThrough(file, bytes, whole) : lastCause();
  }
  bool const alike = !file || makeAlike(draft.number(), file.number(), before);
  // What has to be written through is also complete in the draft until it is complete in the file.
  std::error_code cause;
  if (!fill(draft.number(), bytes)) {
    cause = lastCause();
  } else if (alike && ::rename(name.c_str(), target.c_str()) == 0) {
    // The new name, too, has to survive a power failure.
    DescriptorC const folder(
        ::open((target.parent_path() / ".").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return folder && !syncFile(folder.number()) ? lastCause() : std::error_code();
  } else {
    cause = !alike || (file && isFolderClosed()) ? writeThrough(file, bytes, whole) : lastCause();
  }
  if (whole) ::unlink(name.c_str());
  return cause;
}

/// Removes the draft if it is this user's and its program ended before it gave the draft its final name. The
/// lock is held until the draft is gone: a program that has only just created it waits for no lock, and would
/// otherwise lose the draft after it has seen that it is still there.
void removeIfAbandoned(fs::path const& path) {
  struct stat found = {};
  DescriptorC const draft(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (draft && ::fstat(draft.number(), &found) == 0 && found.st_uid == ::geteuid() &&
      ::flock(draft.number(), LOCK_EX | LOCK_NB) == 0) {
    ::unlink(path.c_str());
  }
}

void removeRemains(fs::path const& target) {
  constexpr int most_entries = 4096;  // or the time for many files in one folder would be quadratic
  std::string const start = draftStart(target);
  std::error_code failed;
  fs::directory_iterator entry(target.parent_path() / ".", failed);
  for (int i = 0; i < most_entries && !failed && entry != fs::directory_iterator(); ++i) {
    std::string const name = entry->path().filename().string();
    std::size_t const end = name.find_first_not_of("0123456789", std::min(start.size(), name.size()));
    if (name.compare(0, start.size(), start) == 0 && end > start.size() && end != std::string::npos &&
        name.substr(end) == draft_end) {
      removeIfAbandoned(entry->path());
    }
    entry.increment(failed);
  }
}

#endif

}  // namespace

std::error_code replaceFile(fs::path const& path, std::string_view bytes) {
  fs::path const target = followLinks(path);
  std::error_code const cause = replace(target, bytes);
  if (!cause) removeRemains(target);
  return cause;
}

void removeFile(fs::path const& path) {
  std::error_code ignored;
  fs::remove(path, ignored);
  removeRemains(path);
}

}  // namespace zolt::support
