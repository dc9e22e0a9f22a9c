#include "zolt/ved/view/detail/byte_delta.h"

#include <algorithm>

#include "zolt/ved/view/detail/varint.h"

namespace zolt::math::ved {

namespace {

using oss::bytestring;

// How far apart two equal stretches may drift to be found again, how long they must be to count, and how many
// times one delta looks for them: together the bound on the work for strings that have little in common.
constexpr std::size_t max_drift = 64;
constexpr std::size_t min_run = 12;
constexpr unsigned max_hunks = 32;

class DeltaMakerC {
 public:
  DeltaMakerC(bytestring const& before, bytestring const& after) : before_(before), after_(after) {}

  bytestring make() {
    std::size_t const shorter = std::min(before_.size(), after_.size());
    std::size_t suffix = 0;
    while (suffix < shorter && before_[before_.size() - 1 - suffix] == after_[after_.size() - 1 - suffix]) {
      ++suffix;
    }
    beforeEnd_ = before_.size() - suffix;
    afterEnd_ = after_.size() - suffix;
    skipEqual();
    for (unsigned hunks = 1; i_ < beforeEnd_ || j_ < afterEnd_; ++hunks) {
      std::size_t i = beforeEnd_;
      std::size_t j = afterEnd_;
      if (hunks < max_hunks) findEqual(i, j);
      appendHunk(i, j);
      skipEqual();
    }
    return std::move(delta_);
  }

 private:
  void skipEqual() {
    while (i_ < beforeEnd_ && j_ < afterEnd_ && before_[i_] == after_[j_]) {
      ++i_;
      ++j_;
    }
  }

  /// The nearest places from which both strings go on alike; (i, j) are left alone when there are none.
  void findEqual(std::size_t& i, std::size_t& j) const {
    for (std::size_t drift = 1; drift <= max_drift; ++drift) {
      for (std::size_t skipped = 0; skipped <= drift; ++skipped) {
        std::size_t const a = i_ + skipped;
        std::size_t const b = j_ + (drift - skipped);
        if (a + min_run > beforeEnd_ || b + min_run > afterEnd_) continue;
        if (before_.compare(a, min_run, after_, b, min_run) != 0) continue;
        i = a;
        j = b;
        return;
      }
    }
  }

  void appendHunk(std::size_t i, std::size_t j) {
    appendVarint(delta_, i_ - done_);
    appendVarint(delta_, i - i_);
    delta_.append(before_, i_, i - i_);
    appendVarint(delta_, j - j_);
    delta_.append(after_, j_, j - j_);
    i_ = done_ = i;
    j_ = j;
  }

  bytestring const& before_;
  bytestring const& after_;
  std::size_t beforeEnd_ = 0;  // where the common end begins
  std::size_t afterEnd_ = 0;
  std::size_t i_ = 0;
  std::size_t j_ = 0;
  std::size_t done_ = 0;  // end of the last hunk in `before_`
  bytestring delta_;
};

}  // namespace

bytestring makeDelta(bytestring const& before, bytestring const& after) {
  return DeltaMakerC(before, after).make();
}

bytestring applyDelta(bytestring const& bytes, bytestring const& delta, bool backwards) {
  bytestring result;
  result.reserve(bytes.size());
  std::size_t from = 0;
  for (std::size_t position = 0; position < delta.size();) {
    std::size_t const equal = readVarint(delta, position);
    result.append(bytes, from, equal);
    from += equal;
    std::size_t const beforeSize = readVarint(delta, position);
    std::size_t const beforeStart = position;
    position += beforeSize;
    std::size_t const afterSize = readVarint(delta, position);
    std::size_t const afterStart = position;
    position += afterSize;
    if (backwards) {
      result.append(delta, beforeStart, beforeSize);
      from += afterSize;
    } else {
      result.append(delta, afterStart, afterSize);
      from += beforeSize;
    }
  }
  result.append(bytes, from, bytestring::npos);
  return result;
}

}  // namespace zolt::math::ved
