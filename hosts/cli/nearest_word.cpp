#include "hosts/cli/nearest_word.h"

#include <algorithm>

namespace zolt::cli {

namespace {

std::size_t countEdits(std::string const& a, std::string const& b) {
  std::vector<std::vector<std::size_t>> edits(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t k = 0; k <= b.size(); ++k) {
      if (i == 0 || k == 0) {
        edits[i][k] = i + k;
        continue;
      }
      std::size_t const change = edits[i - 1][k - 1] + (a[i - 1] == b[k - 1] ? 0 : 1);
      edits[i][k] = std::min({change, edits[i - 1][k] + 1, edits[i][k - 1] + 1});
      bool const isSwap = i > 1 && k > 1 && a[i - 1] == b[k - 2] && a[i - 2] == b[k - 1];
      if (isSwap) edits[i][k] = std::min(edits[i][k], edits[i - 2][k - 2] + 1);
    }
  }
  return edits[a.size()][b.size()];
}

}  // namespace

std::string findNearest(std::string const& given, std::vector<std::string> const& words) {
  std::string nearest;
  std::size_t fewest = std::string::npos;
  for (std::string const& word : words) {
    // Arguments can be long, and the words are not.
    if (given.size() > 2 * word.size()) continue;
    std::size_t const edits = countEdits(given, word);
    if (edits >= fewest || edits > std::max<std::size_t>(1, std::max(given.size(), word.size()) / 3))
      continue;
    fewest = edits;
    nearest = word;
  }
  return nearest;
}

std::string suggest(std::string const& word) {
  return word.empty() ? word : "; did you mean \"" + word + "\"?";
}

}  // namespace zolt::cli
