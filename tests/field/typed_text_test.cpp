#include <gtest/gtest.h>

#include "tests/formula/random_formula.h"
#include "tests/support/stage.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/latex.h"
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

/// Whether people type all that is in a text of LaTeX: no braces that only group, no texts and names in
/// another type, no bases of logarithms but names, and no products that look like calls: "y(x+1)".
bool isTypedLatex(wstring const& text) {
  for (wstring const part : {u"{+", u"{-", u"{{", u"[{", u")_{", u"{\\partial", u"\\partial^", u"\\text",
                             u"\\mathrm", u"\\mathord", u"\\left.", u"\\log_{", u"\\operatorname"}) {
    if (text.find(part) != wstring::npos) return false;
  }
  for (std::size_t i = 1; i < text.size(); ++i) {
    bool const isLetter = text[i] == u'(' && math::common::isAsciiLetter(text[i - 1]);
    bool const isLong = i > 1 && (math::common::isAsciiLetter(text[i - 2]) || text[i - 2] == u'\\');
    if (isLetter && !isLong && text[i - 1] != u'f' && text[i - 1] != u'g') return false;
  }
  return true;
}

/// Types the text of random expressions and compares what it means to `read(text)`. Returns how many.
template <class WriteT, class ReadT>
unsigned typeRandomExpressions(WriteT write, ReadT read, bool singleLetters) {
  standardOperators();
  unsigned typed = 0;
  for (unsigned seed = 0; seed < 3000; ++seed) {
    ExpressionT const expression = RandomExpressionC(seed, RandomExpressionC::WELL_MADE).make(1 + seed % 25);
    wstring const text = write(*expression);
    // Nobody types quotes.
    if (text.empty() || text.find(u'"') != wstring::npos || isNeverTyped(*expression->getNode())) continue;
    SCOPED_TRACE(toUtf8(text));
    ++typed;
    StageC stage;
    InputOptionsS options = stage.refField().getOptions();
    options.singleLetters = singleLetters;
    stage.refField().setOptions(options);
    for (char16_t const c : text) EXPECT_TRUE(stage.refField().typeCharacter(c));
    stage.refField().completeName();
    EXPECT_EQ(meaningOf(stage.refField().diagnose().expression), meaningOf(read(text))) << stage.notation();
  }
  return typed;
}

TEST(TypedText, MeansWhatPastedTextMeans) {
  auto const write = [](auto const& expression) {
    return exchange::toPlainText(expression, exchange::PLAIN_TEXT_READABLE);
  };
  auto const read = [](wstring const& text) {
    return exchange::fromPlainText(text, math::algexpr::CASSessionBC::getSession());
  };
  EXPECT_GT(typeRandomExpressions(write, read, false), 800u);
}

TEST(TypedText, MeansWhatPastedLatexMeans) {
  auto const write = [](auto const& expression) {
    wstring const text = exchange::toLatex(expression);
    return isTypedLatex(text) ? text : wstring();
  };
  auto const read = [](wstring const& text) {
    return exchange::fromLatex(text, math::algexpr::CASSessionBC::getSession());
  };
  EXPECT_GT(typeRandomExpressions(write, read, true), 200u);
}

}  // namespace
}  // namespace zolt::tests
