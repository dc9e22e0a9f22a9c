// Reads MathJSON, as from other programs.

#include "fuzzing/trip.h"
#include "zolt/mathjson/mathjson.h"

namespace zolt::fuzz {

std::string checkMathJson(std::uint8_t const* data, std::size_t size) {
  return checkReader(mathjson::fromMathJson, data, size);
}

}  // namespace zolt::fuzz
