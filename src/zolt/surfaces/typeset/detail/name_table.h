#pragma once

#include <cstddef>
#include <vector>

#include "zolt/oss/wstring.h"

// Internal to the typeset library.

namespace zolt::surfaces {

/// The names that are set upright, and the question that measuring asks: may the letters read so far still
/// become one of them?
class NameTableC {
 public:
  /// The names between the two places begin with what was read.
  struct RangeS {
    std::size_t first = 0, last = 0;
    std::size_t length = 0;  ///< letters read

    bool isEmpty() const { return first == last; }
  };

  NameTableC();

  void add(oss::wstring const& name);

  RangeS all() const { return {0, names_.size(), 0}; }
  /// Narrows `range` to the names that go on with `letter`.
  void narrow(RangeS& range, char16_t letter) const;
  /// Whether the letters read are a whole name.
  bool isName(RangeS const& range) const {
    return !range.isEmpty() && range.length > 0 && names_[range.first].size() == range.length;
  }

 private:
  std::vector<oss::wstring> names_;  // sorted, so that names with a common beginning stand together
};

}  // namespace zolt::surfaces
