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

// These checks hold for every formula. Each returns the first promise that is not kept, or an empty text.

/// Whether this build only searches for inputs: it is much faster, because it checks only at the end what
/// other builds check after every event. Another build then checks what was found.
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

/// Starts to count the bytes held on the heap, and the steps in programs that count them.
void startMeter();
/// Checks that both were at most in proportion to an input of `size` bytes or characters.
std::string checkMeter(std::size_t size);

/// What is drawn of a formula that is laid out.
std::string draw(Node4C const& root);

/// Checks the numbered invariants.
std::string checkInvariants(Node4C const& root);

/// Checks that normalising and laying out again change nothing, that the byte form and the notation read back
/// to the same tree, and that it is drawn the same again. Lays the tree out.
std::string checkTreeForms(Node4C& root);

/// A reader of another notation.
using ReaderT = PointerTC<AlgebraicExpressionC> (*)(wstring const&, PointerTC<math::algexpr::CASSessionBC>,
                                                    math::common::ReadErrorS*);

/// Checks that the reader makes an expression of the text, for which `checkTexts` holds, or refuses it with a
/// place and a sentence, and that it needs no more memory and time than it may.
std::string checkReader(ReaderT read, std::uint8_t const* data, std::size_t size);

/// Checks that the expression reads back from every notation that is written.
std::string checkTexts(AlgebraicExpressionC const& expression);

#ifdef ZOLT_HAS_MATHML_TEXT
/// Checks that it reads back from both forms of MathML.
std::string checkMathmlTrips(AlgebraicExpressionC const& expression);
#endif

/// Checks that an expression, when shown and read again, is the same at the latest from the second time on.
/// `wasRead`: the expression was read from a row, so that it is the same already the first time.
std::string checkTrips(PointerTC<AlgebraicExpressionC> const& expression, bool wasRead);

}  // namespace zolt::fuzz
