// The main program of all GoogleTest programs: a test that leaves objects alive fails.

#include <gtest/gtest.h>

#include <cstdio>

#include "tests/support/live_objects.h"

namespace {

class LeakListenerC final : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(testing::TestInfo const&) override { before_ = zolt::tests::LiveObjectsS::count(); }
  void OnTestEnd(testing::TestInfo const&) override {
    EXPECT_EQ(zolt::tests::LiveObjectsS::count().findDifference(before_), "");
  }

 private:
  zolt::tests::LiveObjectsS before_;
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new LeakListenerC);
  int const result = RUN_ALL_TESTS();
  long const operators = zolt::tests::emptyOperatorTable();
  if (operators != 0) std::printf("%ld operators outlive their table\n", operators);
  return operators != 0 ? 1 : result;
}
