// Reads LaTeX, as from documents and other programs.

#include "fuzzing/trip.h"
#include "zolt/exchange/latex.h"

namespace zolt::fuzz {

std::string checkLatex(std::uint8_t const* data, std::size_t size) {
  return checkReader(exchange::fromLatex, data, size);
}

}  // namespace zolt::fuzz
