#include <gtest/gtest.h>

#include "tests/formula/random_formula.h"
#include "tests/support/stage.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/exchange/plain_text.h"

namespace zolt::tests {
namespace {

using namespace field;
using math::algexpr::NodeABC;

/// The expression without a record of brackets, with "-" in every number, and with the sign of a product's
/// first factor before the product: people type "-a/b" for a fraction with a sign before it, and pasted text
/// has that sign in the numerator.
std::string meaningOf(NodeABC const& node, std::string& sign) {
  std::string name = toUtf8(node.getName());
  for (std::size_t at; (at = name.find("−")) != std::string::npos;) name.replace(at, 3, "-");
  auto const* const parent = node.asParent();
  unsigned long const count = parent ? parent->numChildren() : 0;
  sign = count == 0 && name[0] == '-' ? "-" : "";
  if (count == 0) return name.substr(sign.size());
  std::string first;
  std::string out = meaningOf(parent->child(0), first);
  if (name == "_quietpos" || name == "_neg" || name == "_pos" || name == "_posneg" || name == "_negpos") {
    sign = (name == "_neg"      ? "-"
            : name == "_pos"    ? "+"
            : name == "_posneg" ? "±"
            : name == "_negpos" ? "∓"
                                : "") +
           first;
    return out;
  }
  (count == 2 && (name == "*" || name == "/") ? sign : out).insert(0, first);
  for (unsigned long i = 1; i < count; ++i) {
    std::string const operand = meaningOf(parent->child(i), first);
    out += "," + first + operand;
  }
  return name + "(" + out + ")";
}

std::string meaningOf(ExpressionT const& expression) {
  std::string sign;
  std::string const meaning = expression ? meaningOf(*expression->getNode(), sign) : "none";
  return sign + meaning;
}

bool contains(NodeABC const& node, wstring const& name) {
  auto const* const parent = node.asParent();
  bool found = parent && node.getName() == name;
  for (unsigned long i = 0; parent && i < parent->numChildren(); ++i)
    found = found || contains(parent->child(i), name);
  return found;
}

/// What nobody types so: a relation as the variable of a sum, from which "=" goes on to its value; tables
/// whose arguments are no rows.
bool isNeverTyped(NodeABC const& node) {
  auto const* const parent = node.asParent();
  if (!parent) return false;
  std::string const name = toUtf8(node.getName());
  if (name == "matrix" || name == "det" || name == "cases") return true;
  unsigned long const variable = name == "where" || name == "limit" ? 1 : 0;
  bool const leads = name == "where" || name == "sum" || name == "product" || name == "limit";
  if (leads && contains(parent->child(variable), name == "limit" ? u"to" : u"=")) return true;
  for (unsigned long i = 0; i < parent->numChildren(); ++i) {
    if (isNeverTyped(parent->child(i))) return true;
  }
  return false;
}

TEST(TypedText, MeansWhatPastedTextMeans) {
  standardOperators();
  unsigned typed = 0;
  for (unsigned seed = 0; seed < 3000; ++seed) {
    ExpressionT const expression = RandomExpressionC(seed, RandomExpressionC::WELL_MADE).make(1 + seed % 25);
    wstring const text = exchange::toPlainText(*expression, exchange::PLAIN_TEXT_READABLE);
    // Nobody types quotes.
    if (text.find(u'"') != wstring::npos || isNeverTyped(*expression->getNode())) continue;
    SCOPED_TRACE(toUtf8(text));
    ++typed;
    StageC stage;
    for (char16_t const c : text) EXPECT_TRUE(stage.refField().typeCharacter(c));
    ExpressionT const pasted = exchange::fromPlainText(text, math::algexpr::CASSessionBC::getSession());
    EXPECT_EQ(meaningOf(stage.refField().diagnose().expression), meaningOf(pasted)) << stage.notation();
  }
  EXPECT_GT(typed, 800u);
}

}  // namespace
}  // namespace zolt::tests
