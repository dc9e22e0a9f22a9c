#include <utility>

#include "zolt/algexpr/make_node.h"
#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/engines/basic/detail/lowering.h"

// Tables by their cells.
namespace zolt::engine_basic::detail {

namespace {

bool readNumber(NodeABC const& node, RationalC& number) {
  wstring const& text = node.crefName();
  std::size_t const at = math::common::isMinus(text[0]) && text.size() > 1 ? 1 : 0;
  return math::common::startsNumber(text[at]) && RationalC::fromText(text, number);
}

wstring writeWhole(BigIntegerC const& value) {
  wstring const digits = value.toDigits();
  return value.sign() < 0 ? math::common::minus_sign + digits : digits;
}

}  // namespace

bool LoweringC::lowerTable(std::uint32_t at, LoweredS& lowered) {
  lowered = {KIND_TABLE, 0, {}};
  for (std::uint32_t row = at + 1; row < tree_.end(at); row = tree_.end(row)) {
    unsigned long const columns = tree_.numChildren(row);
    bool const fits = tree_.crefNode(row).crefName() == u"list" && columns > 0 &&
                      (lowered.columns == 0 || lowered.columns == columns);
    if (!fits) return fail(CAS_CAUSE_WRONG_ARGUMENT, row);
    lowered.columns = columns;
    for (std::uint32_t cell = row + 1; cell < tree_.end(row); cell = tree_.end(cell)) {
      LoweredS one;
      if (!lower(cell, one)) return false;
      if (one.kind != KIND_ONE) return fail(CAS_CAUSE_WRONG_ARGUMENT, cell);
      lowered.parts.push_back(one.parts[0]);
    }
  }
  return true;
}

bool LoweringC::lowerSum(std::uint32_t at, LoweredS const& a, LoweredS const& b, LoweredS& lowered) {
  bool const fits = a.kind == KIND_TABLE && b.kind == KIND_TABLE && a.columns == b.columns &&
                    a.parts.size() == b.parts.size();
  if (!fits) return fail(CAS_CAUSE_WRONG_ARGUMENT, at);
  lowered = a;
  for (std::size_t i = 0; i < a.parts.size(); ++i) {
    lowered.parts[i] = make(at, tree_.crefNode(at).crefName(), {a.parts[i], b.parts[i]});
  }
  return true;
}

bool LoweringC::lowerProduct(std::uint32_t at, LoweredS const& a, LoweredS const& b, LoweredS& lowered) {
  bool const isQuotient = tree_.crefNode(at).crefName() == u"/";
  bool const fits = a.kind != KIND_SET && b.kind != KIND_SET && !(isQuotient && b.kind == KIND_TABLE);
  if (!fits) return fail(CAS_CAUSE_WRONG_ARGUMENT, at);
  if (a.kind == KIND_ONE || b.kind == KIND_ONE) {
    lowered = a.kind == KIND_ONE ? b : a;
    for (NodeP& part : lowered.parts) {
      if (isQuotient) {
        part = make(at, u"/", {part, b.parts[0]});
      } else {
        part = a.kind == KIND_ONE ? make(at, u"*", {a.parts[0], part}) : make(at, u"*", {part, b.parts[0]});
      }
    }
    return true;
  }
  unsigned long const rows = static_cast<unsigned long>(a.parts.size()) / a.columns;
  if (a.columns * b.columns != b.parts.size()) return fail(CAS_CAUSE_WRONG_ARGUMENT, at);
  LoweredS product{KIND_TABLE, b.columns, {}};
  for (unsigned long row = 0; row < rows; ++row) {
    for (unsigned long column = 0; column < b.columns; ++column) {
      NodeP total;
      for (unsigned long k = 0; k < a.columns; ++k) {
        NodeP const one = make(at, u"*", {a.parts[row * a.columns + k], b.parts[k * b.columns + column]});
        total = k == 0 ? one : make(at, u"+", {total, one});
      }
      if (!watch_.goOn(static_cast<unsigned>(a.columns))) return false;
      product.parts.push_back(total);
    }
  }
  lowered = std::move(product);
  return true;
}

// By repeated squaring, each product computed before the next, so that the cells stay short.
bool LoweringC::lowerPower(std::uint32_t at, LoweredS const& a, LoweredS const& b, LoweredS& lowered) {
  constexpr std::int64_t most_power = 10000;
  std::int64_t exponent = 0;
  bool const fits = a.kind == KIND_TABLE && b.kind == KIND_ONE && a.columns * a.columns == a.parts.size();
  if (!fits) return fail(CAS_CAUSE_WRONG_ARGUMENT, at);
  if (!evaluateWhole(at, b.parts[0], exponent)) return false;
  if (exponent > most_power || exponent < -most_power) return fail(CAS_CAUSE_TOO_LARGE, at);
  auto const shorten = [&](LoweredS& table) {
    for (NodeP& cell : table.parts) {
      CASResultS const value = evaluate_(cell);
      if (value.outcome != CAS_VALUE) return fail(value.cause, at);
      cell = value.value->getNode();
      kept_.push_back(cell);
      origins_.emplace(cell.get(), at);
    }
    return true;
  };
  LoweredS square = a;
  if (exponent < 0) {
    // The inverse by the minors.
    NodeP const determinant = determinantOf(at, a.parts, a.columns);
    if (!determinant) return false;
    for (unsigned long i = 0; i < a.parts.size(); ++i) {
      std::vector<NodeP> minor;
      for (unsigned long k = 0; k < a.parts.size(); ++k) {
        bool const isLeft = k / a.columns != i % a.columns && k % a.columns != i / a.columns;
        if (isLeft) minor.push_back(a.parts[k]);
      }
      NodeP const size = a.columns == 1 ? makeWhole(at, 1) : determinantOf(at, minor, a.columns - 1);
      if (!size) return false;
      bool const isTurned = (i / a.columns + i % a.columns) % 2 == 1;
      square.parts[i] = make(at, u"/", {isTurned ? make(at, u"_neg", {size}) : size, determinant});
    }
    exponent = -exponent;
  }
  LoweredS power = a;
  for (unsigned long i = 0; i < a.parts.size(); ++i) {
    power.parts[i] = makeWhole(at, i / a.columns == i % a.columns ? 1 : 0);
  }
  for (; exponent > 0; exponent /= 2) {
    if (exponent % 2 == 1 && (!lowerProduct(at, power, square, power) || !shorten(power))) return false;
    if (exponent > 1 && (!lowerProduct(at, square, square, square) || !shorten(square))) return false;
  }
  lowered = std::move(power);
  return true;
}

bool LoweringC::readNumbers(std::vector<NodeP> const& cells, std::vector<RationalC>& numbers) {
  for (NodeP const& cell : cells) {
    CASResultS const value = evaluate_(cell);
    NodeP const node = value.outcome == CAS_VALUE ? value.value->getNode() : nullptr;
    ParentNodeABC const* const fraction = node ? node->asParent() : nullptr;
    bool const isNegative = fraction && node->crefName() == u"_neg";
    ParentNodeABC const* const quotient = isNegative ? fraction->child(0).asParent() : fraction;
    RationalC above, below = 1;
    bool const isNumber = quotient ? quotient->crefName() == u"/" && quotient->numChildren() == 2 &&
                                         !quotient->child(0).asParent() && !quotient->child(1).asParent() &&
                                         readNumber(quotient->child(0), above) &&
                                         readNumber(quotient->child(1), below)
                                   : node && !fraction && readNumber(*node, above);
    if (!isNumber) return false;
    numbers.push_back((isNegative ? -above : above) / below);
  }
  return true;
}

// By elimination.
bool LoweringC::findDeterminant(std::vector<RationalC> cells, unsigned long size, RationalC& determinant) {
  determinant = 1;
  for (unsigned long column = 0; column < size; ++column) {
    unsigned long pivot = column;
    while (pivot < size && cells[pivot * size + column].isZero()) ++pivot;
    if (pivot == size) {
      determinant = 0;
      return true;
    }
    for (unsigned long k = 0; k < size && pivot != column; ++k) {
      std::swap(cells[pivot * size + k], cells[column * size + k]);
    }
    RationalC const top = cells[column * size + column];
    determinant = determinant * (pivot == column ? top : -top);
    for (unsigned long row = column + 1; row < size; ++row) {
      RationalC const factor = cells[row * size + column] / top;
      for (unsigned long k = column; k < size && !factor.isZero(); ++k) {
        if (!watch_.goOn(4)) return false;
        cells[row * size + k] = cells[row * size + k] - factor * cells[column * size + k];
      }
    }
  }
  return true;
}

// Of numbers by elimination, of others by the first row; larger ones of these take steps beyond counting, and
// elimination needs to know what is 0.
LoweringC::NodeP LoweringC::determinantOf(std::uint32_t at, std::vector<NodeP> const& cells,
                                          unsigned long size) {
  constexpr unsigned long most_rows = 6;
  if (size > most_rows) {
    std::vector<RationalC> numbers;
    RationalC determinant;
    bool const isOfNumbers = readNumbers(cells, numbers);
    if (isOfNumbers && findDeterminant(std::move(numbers), size, determinant)) {
      NodeP const above = makeNumber(writeWhole(determinant.crefNumerator()));
      NodeP const below = makeNumber(writeWhole(determinant.crefDenominator()));
      return make(at, u"/", {above, below});
    }
    fail(CAS_CAUSE_NEEDS_ALGEBRA, at);
    return nullptr;
  }
  if (size == 1) return cells[0];
  NodeP total;
  for (unsigned long column = 0; column < size; ++column) {
    std::vector<NodeP> minor;
    for (unsigned long k = size; k < cells.size(); ++k) {
      if (k % size != column) minor.push_back(cells[k]);
    }
    NodeP const one = make(at, u"*", {cells[column], determinantOf(at, minor, size - 1)});
    total = column == 0 ? one : make(at, column % 2 == 1 ? u"-" : u"+", {total, one});
  }
  return total;
}

bool LoweringC::lowerDeterminant(std::uint32_t at, LoweredS const& table, LoweredS& lowered) {
  bool const fits = table.kind == KIND_TABLE && table.columns * table.columns == table.parts.size();
  if (!fits) return fail(CAS_CAUSE_WRONG_ARGUMENT, at);
  NodeP const determinant = determinantOf(at, table.parts, table.columns);
  return determinant && makeOne(determinant, lowered);
}

bool LoweringC::lowerNorm(std::uint32_t at, LoweredS const& a, LoweredS& lowered) {
  if (a.kind == KIND_ONE) return makeOne(make(at, u"abs", {a.parts[0]}), lowered);
  bool const isVector = a.kind == KIND_TABLE && (a.columns == 1 || a.columns == a.parts.size());
  if (!isVector) return fail(a.kind == KIND_SET ? CAS_CAUSE_WRONG_ARGUMENT : CAS_CAUSE_NEEDS_ALGEBRA, at);
  NodeP total;
  for (NodeP const& part : a.parts) {
    NodeP const square = make(at, u"^", {part, makeWhole(at, 2)});
    total = total ? make(at, u"+", {total, square}) : square;
  }
  return makeOne(make(at, u"sqrt", {total}), lowered);
}

}  // namespace zolt::engine_basic::detail
