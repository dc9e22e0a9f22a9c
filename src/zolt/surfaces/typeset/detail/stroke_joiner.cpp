#include "zolt/surfaces/typeset/detail/stroke_joiner.h"

#include <algorithm>
#include <utility>

namespace zolt::surfaces {

namespace {

/// A sign is a handful of strokes; looking further back would make many strokes slow to join.
constexpr std::size_t search_depth = 6;
constexpr std::size_t longest_chain = 64;

bool same(PathPointS a, PathPointS b) { return a.x == b.x && a.y == b.y; }

std::size_t firstSearched(std::vector<ChainS> const& chains) {
  return chains.size() > search_depth ? chains.size() - search_depth : 0;
}

/// Appends `tail`, whose first point is the last of `chain`.
void append(ChainS& chain, ChainS const& tail) {
  chain.points.insert(chain.points.end(), tail.points.begin() + 1, tail.points.end());
  chain.crisp = chain.crisp && tail.crisp;
}

}  // namespace

void StrokeJoinerC::add(PathPointS from, PathPointS to) {
  std::size_t const first = firstSearched(chains_);
  for (std::size_t i = chains_.size(); i-- > first;) {
    if (!attach(chains_[i], from, to)) continue;
    std::rotate(chains_.begin() + std::ptrdiff_t(i), chains_.begin() + std::ptrdiff_t(i) + 1, chains_.end());
    mergeLast();
    return;
  }
  chains_.push_back({{from, to}, from.x == to.x || from.y == to.y});
}

bool StrokeJoinerC::attach(ChainS& chain, PathPointS from, PathPointS to) {
  std::vector<PathPointS>& points = chain.points;
  if (same(from, to) || points.size() >= longest_chain) return false;
  if (same(points.back(), from)) {
    points.push_back(to);
  } else if (same(points.back(), to)) {
    points.push_back(from);
  } else if (same(points.front(), to)) {
    points.insert(points.begin(), from);
  } else if (same(points.front(), from)) {
    points.insert(points.begin(), to);
  } else {
    return false;
  }
  chain.crisp = chain.crisp && (from.x == to.x || from.y == to.y);
  return true;
}

void StrokeJoinerC::mergeLast() {
  ChainS& last = chains_.back();
  for (std::size_t i = chains_.size() - 1; i-- > firstSearched(chains_);) {
    ChainS& other = chains_[i];
    if (same(other.points.front(), last.points.front()) || same(other.points.front(), last.points.back())) {
      std::reverse(other.points.begin(), other.points.end());
    }
    if (same(other.points.back(), last.points.back())) std::reverse(last.points.begin(), last.points.end());
    if (!same(other.points.back(), last.points.front())) continue;
    if (other.points.size() + last.points.size() > longest_chain) return;
    append(other, last);
    chains_.pop_back();
    return;
  }
}

}  // namespace zolt::surfaces
