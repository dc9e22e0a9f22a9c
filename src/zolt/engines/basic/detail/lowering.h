#pragma once

#include <functional>
#include <map>
#include <vector>

#include "zolt/algexpr/cas_request.h"
#include "zolt/algexpr/flat_tree.h"
#include "zolt/engines/basic/detail/rational.h"
#include "zolt/engines/basic/detail/watch.h"

namespace zolt::engine_basic::detail {

/// Expressions of the extended catalogue by those of the standard one: a product by its factors, a table by
/// its cells, a set by its elements. What is made knows which part of the original it came from.
class LoweringC {
 public:
  using NodeP = PointerTC<NodeABC>;
  /// The exact value of an expression without anything of the extended catalogue.
  using EvaluateT = std::function<CASResultS(NodeP const& node)>;

  enum KindE { KIND_ONE, KIND_TABLE, KIND_SET };
  struct LoweredS {
    KindE kind = KIND_ONE;
    unsigned long columns = 1;   ///< of a table
    std::vector<NodeP> parts{};  ///< the one, the cells row by row, or the elements
  };

  LoweringC(CASDefinitionsC const* definitions, WatchC& watch, EvaluateT evaluate)
      : definitions_(definitions), watch_(watch), evaluate_(std::move(evaluate)) {}

  /// False, with the watch's fault, when it cannot be done.
  [[nodiscard]] bool run(NodeABC const& expression, LoweredS& lowered);
  /// Numbers the part at fault in the expression, which was one in `lowered`.
  void toOriginal(NodeABC const& lowered, CASResultS& result) const;
  /// Whether an expression, with what its names stand for, has something for it to do.
  static bool isNeeded(NodeABC const& expression, CASDefinitionsC const* definitions);

 private:
  bool lower(std::uint32_t at, LoweredS& lowered);
  bool lowerName(std::uint32_t at, LoweredS& lowered);
  bool hasImaginaryUnit(std::uint32_t at) const;
  bool lowerCall(std::uint32_t at, LoweredS& lowered);
  bool lowerSum(std::uint32_t at, LoweredS const& a, LoweredS const& b, LoweredS& lowered);
  bool lowerProduct(std::uint32_t at, LoweredS const& a, LoweredS const& b, LoweredS& lowered);
  bool lowerPower(std::uint32_t at, LoweredS const& a, LoweredS const& b, LoweredS& lowered);
  bool lowerTable(std::uint32_t at, LoweredS& lowered);
  bool lowerDeterminant(std::uint32_t at, LoweredS const& table, LoweredS& lowered);
  bool lowerNorm(std::uint32_t at, LoweredS const& a, LoweredS& lowered);
  bool lowerRepeated(std::uint32_t at, LoweredS& lowered);
  bool lowerDerivative(std::uint32_t at, LoweredS& lowered);
  bool lowerBinomial(std::uint32_t at, NodeP const& n, NodeP const& k, LoweredS& lowered);
  bool lowerCases(std::uint32_t at, LoweredS& lowered);
  bool lowerSet(std::uint32_t at, std::vector<LoweredS> const& operands, LoweredS& lowered);
  bool lowerMembership(std::uint32_t at, LoweredS& lowered);

  bool fail(CASCauseE cause, std::uint32_t at) { return watch_.fail(cause, at, {}); }
  /// A node that stands for the part `at`.
  NodeP make(std::uint32_t at, wstring const& name, std::vector<NodeP> operands);
  NodeP makeWhole(std::uint32_t at, std::int64_t value);
  bool makeOne(NodeP node, LoweredS& lowered);
  bool makeTruth(std::uint32_t at, bool isTrue, LoweredS& lowered);
  /// The values of cells that are all numbers.
  bool readNumbers(std::vector<NodeP> const& cells, std::vector<RationalC>& numbers);
  bool findDeterminant(std::vector<RationalC> cells, unsigned long size, RationalC& determinant);
  NodeP determinantOf(std::uint32_t at, std::vector<NodeP> const& cells, unsigned long size);
  bool evaluateWhole(std::uint32_t at, NodeP const& node, std::int64_t& value);
  bool holds(std::uint32_t at, NodeP const& condition, bool& isTrue);
  bool contains(std::uint32_t at, std::vector<NodeP> const& set, NodeP const& element, bool& isInside);

  CASDefinitionsC const* definitions_;
  WatchC& watch_;
  EvaluateT evaluate_;
  FlatTreeC tree_;
  std::map<NodeABC const*, std::uint32_t> origins_;
  std::vector<NodeP> kept_;  // whose addresses are in `origins_`
  unsigned nested_ = 0;
};

}  // namespace zolt::engine_basic::detail
