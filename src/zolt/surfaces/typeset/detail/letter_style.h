#pragma once

#include <cstddef>
#include <vector>

#include "zolt/oss/wstring.h"

// Internal to the typeset library.

namespace zolt::surfaces {

/// Decides what is italic: letters, as variables are, apart from capital Greek ones and the names in a table.
class LetterStyleC {
 public:
  /// The names between the two places begin with the letters that were read.
  struct RangeS {
    std::size_t first = 0, last = 0;
    std::size_t length = 0;  ///< letters read

    bool isEmpty() const { return first == last; }
  };

  LetterStyleC();

  static bool isLetter(char32_t c);
  static bool isItalicLetter(char32_t c);

  /// Makes a name upright from now on.
  void add(oss::wstring const& name);

  RangeS all() const { return {0, names_.size(), 0}; }
  /// Narrows `range` to the names that continue with `letter`.
  void narrow(RangeS& range, char16_t letter) const;
  /// Whether the letters that were read are a whole name, which is upright.
  bool isUpright(RangeS const& range) const {
    return !range.isEmpty() && range.length > 0 && names_[range.first].size() == range.length;
  }
  /// Whether the letters may still become a name, so that they have to be measured as one. A single letter
  /// must also fit as a variable.
  bool mayBecomeUpright(RangeS const& range) const {
    return !range.isEmpty() && (range.length > 1 || isUpright(range));
  }

 private:
  std::vector<oss::wstring> names_;  // sorted, so that names with a common beginning are next to each other
};

}  // namespace zolt::surfaces
