#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zolt::math::common::detail {

/// An unsigned integer of up to 3,072 bits, just what reading a decimal number exactly takes. Nothing checks
/// for overflow.
class BigIntegerC {
 public:
  /// this * factor + summand.
  void multiplyAdd(std::uint32_t factor, std::uint32_t summand);
  /// Divides; true when something was left over.
  bool divide(std::uint32_t divisor);
  void shiftLeft(std::size_t bits);

  /// Position of the highest set bit plus one; 0 for zero.
  std::size_t bitLength() const;
  bool bit(std::size_t position) const { return (limbs_[position / 32] >> (position % 32) & 1U) != 0; }
  /// True when any bit below `position` is set.
  bool anyBelow(std::size_t position) const;
  /// The bits from `position` on, which must be at most 64.
  std::uint64_t from(std::size_t position) const;

 private:
  static constexpr std::size_t max_limbs = 96;

  std::array<std::uint32_t, max_limbs> limbs_{};
  std::size_t used_ = 0;
};

inline void BigIntegerC::multiplyAdd(std::uint32_t factor, std::uint32_t summand) {
  std::uint64_t carry = summand;
  for (std::size_t i = 0; i < used_; ++i) {
    carry += std::uint64_t{limbs_[i]} * factor;
    limbs_[i] = static_cast<std::uint32_t>(carry);
    carry >>= 32U;
  }
  if (carry != 0) limbs_[used_++] = static_cast<std::uint32_t>(carry);
}

inline bool BigIntegerC::divide(std::uint32_t divisor) {
  std::uint64_t rest = 0;
  for (std::size_t i = used_; i-- > 0;) {
    rest = rest << 32U | limbs_[i];
    limbs_[i] = static_cast<std::uint32_t>(rest / divisor);
    rest %= divisor;
  }
  while (used_ > 0 && limbs_[used_ - 1] == 0) --used_;
  return rest != 0;
}

inline void BigIntegerC::shiftLeft(std::size_t bits) {
  if (used_ == 0) return;
  std::size_t const limbs = bits / 32;
  std::size_t const rest = bits % 32;
  for (std::size_t i = used_ + limbs + 1; i-- > 0;) {
    std::uint64_t const high = i >= limbs && i - limbs < used_ ? limbs_[i - limbs] : 0;
    std::uint64_t const low = i > limbs && i - limbs - 1 < used_ ? limbs_[i - limbs - 1] : 0;
    limbs_[i] = static_cast<std::uint32_t>((high << 32U | low) << rest >> 32U);
  }
  used_ += limbs + 1;
  while (limbs_[used_ - 1] == 0) --used_;
}

inline std::size_t BigIntegerC::bitLength() const {
  if (used_ == 0) return 0;
  std::size_t bits = 32 * used_;
  while (!bit(bits - 1)) --bits;
  return bits;
}

inline bool BigIntegerC::anyBelow(std::size_t position) const {
  for (std::size_t i = 0; i < position / 32 && i < used_; ++i) {
    if (limbs_[i] != 0) return true;
  }
  std::size_t const limb = position / 32;
  return limb < used_ && (limbs_[limb] & ((std::uint32_t{1} << (position % 32)) - 1U)) != 0;
}

inline std::uint64_t BigIntegerC::from(std::size_t position) const {
  std::uint64_t value = 0;
  for (std::size_t i = bitLength(); i-- > position;) value = value << 1U | (bit(i) ? 1U : 0U);
  return value;
}

}  // namespace zolt::math::common::detail
