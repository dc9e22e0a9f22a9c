#pragma once

#include <string>

namespace zolt::tests {

/// Counts of the objects that should not outlive a test. Of the operators only those count that the process's
/// table does not hold, once it was emptied.
struct LiveObjectsS {
  long shared = 0;  ///< that are counted by their holders, operators left out
  long nodes = 0;
  long views = 0;

  static LiveObjectsS count();
  /// Empty when there are no more than `before`, or less.
  std::string findDifference(LiveObjectsS const& before) const;
};

/// Empties the process's operator table and returns how many operators still exist.
long emptyOperatorTable();

}  // namespace zolt::tests
