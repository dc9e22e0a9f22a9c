#include "hosts/support/replace_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace {

/// The call, counted from 1, at which something goes wrong.
struct FaultS {
  int at = 0;
  int cause = 0;  // 0: the program is killed; negative: all later calls fail, too
  int calls = 0;  // so far; negative: calls are not counted
  std::string name;
} fault{0, 0, -1, {}};

bool failsNow(char const* name) {
  if (fault.calls < 0 || ++fault.calls < fault.at || (fault.calls > fault.at && fault.cause >= 0))
    return false;
  if (fault.cause == 0) kill(getpid(), SIGKILL);
  fault.name = name;
  errno = std::abs(fault.cause);
  return true;
}

}  // namespace

// The linker leads the calls of the tested code here (--wrap).
#define WRAP(result, name, parameters, ...) \
  result __real_##name parameters;          \
  result __wrap_##name parameters {         \
    if (failsNow(#name)) return result(-1); \
    return __real_##name(__VA_ARGS__);      \
  }

extern "C" {
int __real_open(char const* path, int flags, ...);
int __wrap_open(char const* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  mode_t const mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return failsNow("open") ? -1 : __real_open(path, flags, mode);
}
// Writing always takes several calls.
WRAP(ssize_t, pwrite, (int file, void const* bytes, size_t size, off_t at), file, bytes,
     fault.calls < 0 ? size : std::min<size_t>(size, 40), at)
WRAP(ssize_t, pread, (int file, void* bytes, size_t size, off_t at), file, bytes, size, at)
WRAP(int, fstat, (int file, struct stat* found), file, found)
WRAP(int, flock, (int file, int how), file, how)
// What is on the disk cannot be seen here, and takes long.
int __wrap_fsync(int) { return failsNow("fsync") ? -1 : 0; }
WRAP(int, ftruncate, (int file, off_t size), file, size)
WRAP(int, rename, (char const* from, char const* to), from, to)
WRAP(int, unlink, (char const* path), path)
WRAP(int, fchown, (int file, uid_t user, gid_t group), file, user, group)
WRAP(int, fchmod, (int file, mode_t mode), file, mode)
WRAP(ssize_t, flistxattr, (int file, char* names, size_t size), file, names, size)
WRAP(ssize_t, fgetxattr, (int file, char const* name, void* value, size_t size), file, name, value, size)
WRAP(int, fsetxattr, (int file, char const* name, void const* value, size_t size, int flags), file, name,
     value, size, flags)
}

namespace zolt::support {
namespace {

namespace fs = std::filesystem;

constexpr char attribute[] = "user.note";
constexpr uid_t nobody = 65534;

std::string const old_bytes(100, 'o'), new_bytes(130, 'n');

class ReplaceFile : public testing::Test {
 protected:
  void SetUp() override {
    becomeNobody();
    folder = fs::temp_directory_path() / ("replace_file_test" + std::to_string(getpid()));
    file = folder / "file";
    fs::create_directory(folder);
  }
  void TearDown() override {
    ASSERT_EQ(seteuid(getuid()), 0);
    fs::remove_all(folder);
  }

  /// Permissions do not concern the superuser.
  static void becomeNobody() { ASSERT_TRUE(geteuid() != 0 || seteuid(nobody) == 0); }
  static std::string contents(fs::path const& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  static void write(fs::path const& path, std::string const& bytes) { std::ofstream(path) << bytes; }
  std::set<std::string> names() const {
    std::set<std::string> found;
    for (auto const& entry : fs::directory_iterator(folder)) found.insert(entry.path().filename());
    return found;
  }
  fs::path folder, file;
};

TEST_F(ReplaceFile, KeepsWhatAFileIsBesidesItsContents) {
  for (std::size_t const length : {1u, 199u, 201u, 255u}) {
    fs::path const named = folder / std::string(length, 'n');
    for (char const* const bytes : {"first", "", "second"}) {
      ASSERT_FALSE(replaceFile(named, bytes)) << length;
      EXPECT_EQ(contents(named), bytes);
    }
    fs::remove(named);
  }
  fs::create_directory(folder / "links");
  for (auto const& [name, to] : {std::pair{"a", "../file"}, {"b", "a"}, {"c", "../links/b"}}) {
    fs::path const link = folder / "links" / name;
    fs::create_symlink(to, link);
    for (char const* const bytes : {"first", "second"}) {
      ASSERT_FALSE(replaceFile(link, bytes)) << name;
      EXPECT_EQ(contents(file), bytes);
    }
    EXPECT_TRUE(fs::is_symlink(link)) << name;
    fs::remove(file);
  }
  for (unsigned const mode : {0600u, 0640u, 0604u, 0777u}) {
    write(file, old_bytes);
    fs::permissions(file, fs::perms(mode));
    ASSERT_FALSE(replaceFile(file, new_bytes));
    EXPECT_EQ(unsigned(fs::status(file).permissions()), mode);
  }
  EXPECT_EQ(names(), (std::set<std::string>{"file", "links"}));
}

TEST_F(ReplaceFile, SaysWhyItFailsAndChangesNothing) {
  fs::create_directory(folder / "locked");
  for (char const* const name : {"protected", "locked/file"}) write(folder / name, old_bytes);
  fs::create_symlink("loop", folder / "loop");
  fs::create_symlink("no/such", folder / "nowhere");
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0666), 0);
  for (auto const& [name, mode] : {std::pair{"locked/file", 0444}, {"locked", 0555}, {"protected", 0444}})
    fs::permissions(folder / name, fs::perms(mode));
  auto const before = names();
  for (auto const& [name, cause] : {std::pair{"no/such", ENOENT},
                                    {"nowhere", ENOENT},
                                    {"protected/x", ENOTDIR},
                                    {"locked", EISDIR},
                                    {"pipe", EISDIR},
                                    {"loop", ELOOP},
                                    {"protected", EACCES},
                                    {"locked/file", EACCES},
                                    {"locked/new", EACCES}}) {
    EXPECT_EQ(replaceFile(folder / name, new_bytes).value(), cause) << name;
  }
  EXPECT_EQ(names(), before);
  for (char const* const name : {"protected", "locked/file"}) EXPECT_EQ(contents(folder / name), old_bytes);
}

// Every call of the system fails once, and every call is the last one of a killed program.
TEST_F(ReplaceFile, LeavesTheOldFileOrTheNewOneWhateverFails) {
  bool closed = false;
  std::pair<char const*, std::function<void()>> const situations[] = {
      {"new", [&] { fs::remove(file); }},
      {"attribute",
       [&] {
         write(file, old_bytes);
         setxattr(file.c_str(), attribute, "x", 1, 0);
       }},
      {"two names",
       [&] {
         write(file, old_bytes);
         if (names().size() == 1) fs::create_hard_link(file, folder / "other");
       }},
      {"closed folder",
       [&] {
         write(file, old_bytes);
         fs::permissions(folder, fs::perms(0555));
         closed = true;
       }},
      {"of another user", [&] {
         fs::permissions(folder, fs::perms(0755));
         closed = false;
         fs::remove(file);
         // Only the superuser can give files away.
         EXPECT_EQ(seteuid(getuid()), 0);
         write(file, old_bytes);
         fs::permissions(file, fs::perms(0666));
         becomeNobody();
       }}};
  /// The contents, and what would be lost with the file.
  auto const look = [&] {
    struct stat found = {};
    found.st_uid = geteuid();
    stat(file.c_str(), &found);
    return std::pair(
        fs::exists(file) ? contents(file) : "",
        std::vector<long>{getxattr(file.c_str(), attribute, nullptr, 0), found.st_nlink > 1, found.st_uid});
  };
  auto const drafts = [&] {
    std::vector<std::string> found;
    for (std::string const& name : names()) {
      if (name[0] == '.') found.push_back(contents(folder / name));
    }
    return found;
  };
  int keptByDraft = 0;
  for (auto const& [situation, prepare] : situations) {
    for (int const cause : {EIO, ENOSPC, EACCES, 0, -EIO}) {
      for (int at = 1;; ++at) {
        SCOPED_TRACE(situation + (", call " + std::to_string(at)) + ", cause " + std::to_string(cause));
        prepare();
        auto const [before, nature] = look();
        std::error_code told;
        fault = {at, cause, 0, {}};
        int status = 0;
        if (pid_t const child = cause == 0 ? fork() : -1; child == 0) {
          _exit(replaceFile(file, new_bytes) ? 1 : 0);
        } else if (child > 0) {
          waitpid(child, &status, 0);
        }
        bool const killed = status != 0;
        if (cause != 0) told = replaceFile(file, new_bytes);
        fault.calls = -1;
        if (!killed && fault.name.empty()) break;
        SCOPED_TRACE(fault.name);
        auto const [after, natureAfter] = look();
        auto const left = drafts();
        bool const whole = after == before || after == new_bytes;
        if (cause <= 0) {
          bool const kept = left.size() == 1 && left[0] == new_bytes;
          EXPECT_TRUE(whole || kept || closed);
          keptByDraft += !whole && kept;
        } else {
          bool const vital =
              std::set<std::string>{"pwrite", "ftruncate", "fsync", "pread"}.count(fault.name) > 0;
          EXPECT_EQ(told.value(), told || vital ? cause : 0);
          EXPECT_TRUE(told ? whole : after == new_bytes);
          EXPECT_TRUE(left.empty() || fault.name == "unlink");
        }
        ASSERT_FALSE(replaceFile(file, new_bytes));
        EXPECT_EQ(look(), std::pair(new_bytes, nature));
        EXPECT_TRUE(drafts().empty());
      }
    }
  }
  EXPECT_GT(keptByDraft, 0);
}

TEST_F(ReplaceFile, NeitherWaitsForOthersNorTakesTheirFiles) {
  write(file, old_bytes);
  // What a writer is working on, what is no draft, and what is not this user's.
  int const held = open((folder / ".file.1.part").c_str(), O_CREAT | O_RDWR, 0600);
  ASSERT_EQ(flock(held, LOCK_EX), 0);
  fs::create_symlink("file", folder / ".file.2.part");
  fs::create_directory(folder / "links");
  for (char const* const name :
       {".file.part", ".file..part", ".file.x1.part", ".file.1.par", ".other.1.part"})
    write(folder / name, "");
  auto const before = names();
  write(folder / ".file.4.part", "left over");
  for (bool const linked : {false, true}) {
    if (linked) fs::create_hard_link(file, folder / "links" / "file");
    std::vector<pid_t> writers;
    for (int i = 0; i < 8; ++i) {
      writers.push_back(fork());
      std::string const bytes(3'000'000 - 100'000 * unsigned(i), char('a' + i));
      if (writers.back() == 0) _exit(replaceFile(file, bytes) ? 1 : 0);
    }
    for (pid_t const writer : writers) {
      int status = 0;
      waitpid(writer, &status, 0);
      EXPECT_EQ(status, 0);
    }
    std::string const found = contents(file);
    EXPECT_EQ(found, std::string(3'000'000 - 100'000 * unsigned(found[0] - 'a'), found[0]));
  }
  EXPECT_EQ(names(), before);
  close(held);
  removeFile(file);
  EXPECT_FALSE(fs::exists(folder / ".file.1.part"));
}

}  // namespace
}  // namespace zolt::support
