#include "hosts/support/replace_file.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace zolt::support {
namespace {

namespace fs = std::filesystem;

class ReplaceFile : public testing::Test {
 protected:
  void SetUp() override {
    folder = fs::temp_directory_path() / ("replace_file_test" + std::to_string(getpid()));
    fs::create_directory(folder);
  }
  void TearDown() override { fs::remove_all(folder); }

  static std::string contents(fs::path const& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  std::set<std::string> names() const {
    std::set<std::string> found;
    for (auto const& entry : fs::directory_iterator(folder)) found.insert(entry.path().filename());
    return found;
  }
  /// Runs `act` in a process of its own and returns that process's number.
  template <class ActT>
  static pid_t start(ActT act) {
    pid_t const child = fork();
    if (child == 0) _exit(act() ? 0 : 1);
    return child;
  }
  static int statusOf(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return status;
  }

  fs::path folder;
};

TEST_F(ReplaceFile, KeepsWhatAFileIsBesidesItsContents) {
  for (std::size_t const length : {1u, 240u, 241u, 249u, 255u}) {
    fs::path const file = folder / std::string(length, 'n');
    for (char const* const bytes : {"first", "", "second"}) {
      ASSERT_FALSE(replaceFile(file, bytes)) << length;
      EXPECT_EQ(contents(file), bytes);
    }
    fs::remove(file);
  }
  fs::create_directory(folder / "links");
  for (auto const& [name, to] : {std::pair{"a", "../file"}, {"b", "a"}, {"c", "../links/b"}}) {
    fs::path const link = folder / "links" / name;
    fs::create_symlink(to, link);
    for (char const* const bytes : {"first", "second"}) {
      ASSERT_FALSE(replaceFile(link, bytes)) << name;
      EXPECT_EQ(contents(folder / "file"), bytes);
    }
    EXPECT_TRUE(fs::is_symlink(link)) << name;
    fs::remove(folder / "file");
  }
  for (unsigned const mode : {0600u, 0640u, 0604u, 0777u}) {
    std::ofstream(folder / "file") << "before";
    fs::permissions(folder / "file", fs::perms(mode));
    ASSERT_FALSE(replaceFile(folder / "file", "after"));
    EXPECT_EQ(unsigned(fs::status(folder / "file").permissions()), mode);
  }
  EXPECT_EQ(names(), (std::set<std::string>{"file", "links"}));
}

TEST_F(ReplaceFile, SaysWhyItFailsAndChangesNothing) {
  fs::create_directory(folder / "locked");
  for (char const* const name : {"file", "protected", "locked/file"}) std::ofstream(folder / name) << "kept";
  fs::create_symlink("loop", folder / "loop");
  fs::create_symlink("no/such", folder / "nowhere");
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0666), 0);
  fs::permissions(folder, fs::perms(0777));
  fs::permissions(folder / "locked", fs::perms(0555));
  fs::permissions(folder / "protected", fs::perms(0444));
  auto const before = names();
  auto const cause = [&](char const* name) { return replaceFile(folder / name, std::string(100000, 'x')); };
  EXPECT_EQ(cause("no/such"), std::errc::no_such_file_or_directory);
  EXPECT_EQ(cause("nowhere"), std::errc::no_such_file_or_directory);
  EXPECT_EQ(cause("file/x"), std::errc::not_a_directory);
  EXPECT_EQ(cause("locked"), std::errc::is_a_directory);
  EXPECT_EQ(cause("pipe"), std::errc::is_a_directory);
  EXPECT_EQ(cause("loop"), std::errc::too_many_symbolic_link_levels);
  // Permissions do not concern the superuser.
  int const status = statusOf(start([&] {
    if (geteuid() == 0 && seteuid(65534) != 0) return false;
    for (char const* const name : {"protected", "locked/file", "locked/new"}) {
      if (cause(name) != std::errc::permission_denied) return false;
    }
    return true;
  }));
  EXPECT_EQ(status, 0);
  EXPECT_EQ(names(), before);
  for (char const* const name : {"file", "protected", "locked/file"})
    EXPECT_EQ(contents(folder / name), "kept");
}

TEST_F(ReplaceFile, LeavesTheOldFileOrTheNewOne) {
  std::string const versions[] = {std::string(3'000'000, 'a'), std::string(3'000'000, 'b')};
  fs::path const file = folder / "file";
  ASSERT_FALSE(replaceFile(file, versions[0]));
  // A file that grows too large either ends the process midway or makes the write fail.
  auto const growTooLarge = [&](auto atLimit) {
    return statusOf(start([&] {
      rlimit const limit{100, 100};
      signal(SIGXFSZ, atLimit);
      setrlimit(RLIMIT_FSIZE, &limit);
      return replaceFile(file, versions[1]) == std::errc::file_too_large;
    }));
  };
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(WIFSIGNALED(growTooLarge(SIG_DFL)));
    EXPECT_EQ(contents(file), versions[0]);
    EXPECT_EQ(names().size(), 2u) << "one draft is left over";
  }
  EXPECT_EQ(growTooLarge(SIG_IGN), 0);
  EXPECT_EQ(contents(file), versions[0]);
  EXPECT_EQ(names().size(), 1u);

  for (int i = 0; i < 10; ++i) {
    pid_t const child = start([&] {
      for (int turn = 1; !replaceFile(file, versions[turn % 2]);) ++turn;
      return true;
    });
    std::this_thread::sleep_for(std::chrono::microseconds(i * 1700));
    kill(child, SIGKILL);
    statusOf(child);
    std::string const found = contents(file);
    EXPECT_TRUE(found == versions[0] || found == versions[1]) << found.size();
    EXPECT_LE(names().size(), 2u);
  }
  EXPECT_TRUE(WIFSIGNALED(growTooLarge(SIG_DFL)));
  std::vector<pid_t> writers;
  for (int i = 0; i < 8; ++i) writers.push_back(start([&] { return !replaceFile(file, "x"); }));
  for (pid_t const writer : writers) EXPECT_EQ(statusOf(writer), 0);
  EXPECT_EQ(contents(file), "x");
  EXPECT_EQ(names().size(), 1u);

  EXPECT_TRUE(WIFSIGNALED(growTooLarge(SIG_DFL)));
  removeFile(file);
  EXPECT_TRUE(names().empty());
}

}  // namespace
}  // namespace zolt::support
