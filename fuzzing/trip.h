#pragma once

#include <string>

#include "fuzzing/targets.h"
#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/constraints.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::fuzz {

using math::algexpr::AlgebraicExpressionC;
using math::ved::Node4C;
using oss::bytestring;
using oss::PointerTC;
using oss::wstring;

/// Rejects some expressions and not others.
class RuleC : public math::algexpr::ConstraintsBC {
 public:
  bool check(PointerTC<AlgebraicExpressionC> expression) const override {
    return expression->toPrefixString().size() % 5 != 0;
  }
};

// What holds whatever the formula. Each answers with the first promise that is not kept, empty for none.

/// Whether this build only searches for inputs: much faster, because what would be looked at after every
/// event is looked at in the end. Another build then checks what was found.
#ifdef ZOLT_FUZZ_SEARCH
constexpr bool only_searches = true;
#else
constexpr bool only_searches = false;
#endif

/// Registers the standard operators in the process's table, once.
void prepare();

/// Makes the rows of every other input of a target long ones after a few items, so that small formulas try
/// what long rows need.
void chooseStretches(std::size_t number);

/// Starts to count what is held on the heap.
void startMeter();
/// Whether it was no more than in proportion to an input of `size` bytes or characters.
std::string checkMeter(std::size_t size);

/// The numbered invariants.
std::string checkInvariants(Node4C const& root);

/// Normalising and laying out again change nothing, the byte form and the notation read back to the same
/// tree, and what is drawn is drawn again. Lays the tree out.
std::string checkTreeForms(Node4C& root);

/// The expression reads back from its prefix text and from its plain text.
std::string checkTexts(AlgebraicExpressionC const& expression);

/// Shown and read again, an expression is the same from the second time at the latest. `wasRead`: it stems
/// from a row, and not from the outside, and so reads again already the first time.
std::string checkTrips(PointerTC<AlgebraicExpressionC> const& expression, bool wasRead);

}  // namespace zolt::fuzz
