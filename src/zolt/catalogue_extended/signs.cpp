#include "zolt/catalogue_extended/signs.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "zolt/exchange/latex_operator.h"
#include "zolt/exchange/plain_operator.h"
#include "zolt/ved/operators/operator_binary_infix.h"
#include "zolt/ved/operators/operator_unary_postfix.h"
#include "zolt/ved/operators/operator_unary_prefix.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

namespace {

enum PrecedenceE {
  PRECEDENCE_NONE = 0,
  PRECEDENCE_AFTER = 5,
  PRECEDENCE_SIGN = 20,
  PRECEDENCE_PRODUCT = 30,
  PRECEDENCE_SUM = 40,
  PRECEDENCE_INTERSECTION = 42,
  PRECEDENCE_UNION = 44,
  PRECEDENCE_RELATION = 50,
  PRECEDENCE_IMPLICATION = 84,
  PRECEDENCE_EQUIVALENCE = 86,
  PRECEDENCE_CONDITION = 88
};

constexpr char16_t const* arithmetic = u"Arithmetic";
constexpr char16_t const* relations = u"Relations";
constexpr char16_t const* logic = u"Logic";
constexpr char16_t const* sets = u"Sets";
constexpr char16_t const* calculus = u"Calculus";

/// One sign or constant. Where a field has several texts, a blank is between them.
struct SignS {
  char16_t const* name;
  char16_t sign;
  OperatorPlaceE place;
  int precedence;
  char16_t const* group;  // null: palettes leave it out
  char16_t const* title;
  char16_t const* plain;  // in plain text: first what is written; null: the standard table has it
  char16_t const* latex;  // the same in LaTeX
  char16_t const* aliases = u"";
  char16_t const* typed = u"";  // what is typed for it, other than the first in plain text
  char16_t const* runs = u"";   // of signs that become it
  char16_t const* signs = u"";  // characters that are taken for it
};

// Groups and their entries come in palettes in this order.
constexpr SignS signs[] = {
    {u"in", u'∈', OPERATOR_BETWEEN, PRECEDENCE_RELATION, sets, u"element of", u"in ∈", u"\\in ∈",
     u"element isin"},
    {u"notin", u'∉', OPERATOR_BETWEEN, PRECEDENCE_RELATION, sets, u"not an element of", u"notin ∉",
     u"\\notin ∉"},
    {u"subset", u'⊂', OPERATOR_BETWEEN, PRECEDENCE_RELATION, sets, u"subset", u"subset ⊂", u"\\subset ⊂"},
    {u"subseteq", u'⊆', OPERATOR_BETWEEN, PRECEDENCE_RELATION, sets, u"subset or equal", u"subseteq ⊆",
     u"\\subseteq ⊆ \\subseteqq"},
    {u"supset", u'⊃', OPERATOR_BETWEEN, PRECEDENCE_RELATION, sets, u"superset", u"supset ⊃", u"\\supset ⊃"},
    {u"supseteq", u'⊇', OPERATOR_BETWEEN, PRECEDENCE_RELATION, sets, u"superset or equal", u"supseteq ⊇",
     u"\\supseteq ⊇ \\supseteqq"},
    {u"union", u'∪', OPERATOR_BETWEEN, PRECEDENCE_UNION, sets, u"union", u"union ∪ cup", u"\\cup ∪"},
    {u"intersect", u'∩', OPERATOR_BETWEEN, PRECEDENCE_INTERSECTION, sets, u"intersection", u"intersect ∩ cap",
     u"\\cap ∩"},
    {u"setminus", u'∖', OPERATOR_BETWEEN, PRECEDENCE_UNION, sets, u"difference of sets", u"setminus ∖",
     u"\\setminus ∖ \\smallsetminus \\backslash", u"without backslash"},
    {u"∅", u'∅', OPERATOR_BY_NAME, PRECEDENCE_NONE, sets, u"empty set", u"emptyset ∅",
     u"\\emptyset ∅ \\varnothing", u"varnothing"},
    {u"ℕ", u'ℕ', OPERATOR_BY_NAME, PRECEDENCE_NONE, sets, u"natural numbers", u"NN ℕ", nullptr, u"naturals"},
    {u"ℤ", u'ℤ', OPERATOR_BY_NAME, PRECEDENCE_NONE, sets, u"whole numbers", u"ZZ ℤ", nullptr, u"integers"},
    {u"ℚ", u'ℚ', OPERATOR_BY_NAME, PRECEDENCE_NONE, sets, u"rational numbers", u"QQ ℚ", nullptr,
     u"rationals"},
    {u"ℝ", u'ℝ', OPERATOR_BY_NAME, PRECEDENCE_NONE, sets, u"real numbers", u"RR ℝ", nullptr, u"reals"},
    {u"ℂ", u'ℂ', OPERATOR_BY_NAME, PRECEDENCE_NONE, sets, u"complex numbers", u"CC ℂ", nullptr, u"complexes"},
    {u"to", u'→', OPERATOR_BETWEEN, PRECEDENCE_RELATION, relations, u"arrow", u"-> → to",
     u"\\to → \\rightarrow \\longrightarrow", u"tends rightarrow", u"->", u"−>", u"→⟶"},
    {u"approx", u'≈', OPERATOR_BETWEEN, PRECEDENCE_RELATION, relations, u"approximately equal", u"approx ≈",
     u"\\approx ≈", u"about"},
    {u"sim", u'∼', OPERATOR_BETWEEN, PRECEDENCE_RELATION, relations, u"similar to, distributed as",
     u"sim ∼ ~", u"\\sim ∼", u"similar distributed", u"~", u"", u"~"},
    {u"simeq", u'≃', OPERATOR_BETWEEN, PRECEDENCE_RELATION, relations, u"asymptotically equal", u"simeq ≃",
     u"\\simeq ≃", u"asymptotic"},
    {u"cong", u'≅', OPERATOR_BETWEEN, PRECEDENCE_RELATION, relations, u"congruent, isomorphic", u"cong ≅",
     u"\\cong ≅", u"congruent isomorphic"},
    {u"ll", u'≪', OPERATOR_BETWEEN, PRECEDENCE_RELATION, relations, u"much less", u"<< ≪ ll", u"\\ll ≪", u"",
     u"<<", u"<<"},
    {u"gg", u'≫', OPERATOR_BETWEEN, PRECEDENCE_RELATION, relations, u"much greater", u">> ≫ gg", u"\\gg ≫",
     u"", u">>", u">>"},
    {u"mapsto", u'↦', OPERATOR_BETWEEN, PRECEDENCE_RELATION, relations, u"maps to", u"mapsto ↦",
     u"\\mapsto ↦ \\longmapsto", u"maps"},
    {u"equiv", u'≡', OPERATOR_BETWEEN, PRECEDENCE_RELATION, relations, u"identical, congruent", u"equiv ≡",
     u"\\equiv ≡", u"congruent identical"},
    {u"propto", u'∝', OPERATOR_BETWEEN, PRECEDENCE_RELATION, relations, u"proportional to", u"propto ∝",
     u"\\propto ∝ \\varpropto", u"proportional"},
    {u"parallel", u'∥', OPERATOR_BETWEEN, PRECEDENCE_RELATION, relations, u"parallel to", u"parallel ∥",
     u"\\parallel ∥"},
    {u"perp", u'⊥', OPERATOR_BETWEEN, PRECEDENCE_RELATION, relations, u"perpendicular to", u"perp ⊥",
     u"\\perp ⊥ \\bot", u"perpendicular orthogonal", u"", u"", u"⟂"},
    {u"implies", u'⇒', OPERATOR_BETWEEN, PRECEDENCE_IMPLICATION, logic, u"implies", u"implies ⇒ =>",
     u"\\Rightarrow ⇒ \\implies \\Longrightarrow", u"Rightarrow", u"=>", u"=>", u"⟹"},
    {u"iff", u'⇔', OPERATOR_BETWEEN, PRECEDENCE_EQUIVALENCE, logic, u"if and only if", u"iff ⇔ <=>",
     u"\\Leftrightarrow ⇔ \\iff \\Longleftrightarrow", u"equivalent Leftrightarrow", u"<=>", u"≤>", u"⟺"},
    {u"given", u'∣', OPERATOR_BETWEEN, PRECEDENCE_CONDITION, logic, u"given, such that", u"given ∣",
     u"\\mid ∣", u"condition suchthat mid"},
    // The text is one of two operators, like "+"; the one between operands is what a key inserts for both.
    {u"_negpos", u'∓', OPERATOR_BEFORE, PRECEDENCE_SIGN, nullptr, u"", u"∓", u"\\mp ∓"},
    {u"-+", u'∓', OPERATOR_BETWEEN, PRECEDENCE_SUM, arithmetic, u"minus or plus", u"∓", u"\\mp ∓",
     u"mp minusplus"},
    {u"oplus", u'⊕', OPERATOR_BETWEEN, PRECEDENCE_SUM, arithmetic, u"direct sum, exclusive or", u"oplus ⊕",
     u"\\oplus ⊕", u"xor"},
    {u"otimes", u'⊗', OPERATOR_BETWEEN, PRECEDENCE_PRODUCT, arithmetic, u"tensor product", u"otimes ⊗",
     u"\\otimes ⊗", u"tensor"},
    {u"…", u'…', OPERATOR_BY_NAME, PRECEDENCE_NONE, arithmetic, u"dots", u"… ...",
     u"\\dots … \\ldots \\cdots \\dotsc \\dotsb \\dotsm", u"ellipsis", u"...", u"..."},
    {u"percent", u'%', OPERATOR_AFTER, PRECEDENCE_AFTER, arithmetic, u"percent", u"% percent", u"\\%", u"",
     u"", u"", u"%"},
    {u"permille", u'‰', OPERATOR_AFTER, PRECEDENCE_AFTER, arithmetic, u"per mille", u"‰ permille", u"‰",
     u"permil"},
    {u"∂", u'∂', OPERATOR_BY_NAME, PRECEDENCE_NONE, nullptr, u"", nullptr, nullptr},
    {u"partial", u'∂', OPERATOR_BEFORE, PRECEDENCE_SIGN, calculus, u"partial differential", u"∂ partial",
     u"\\partial ∂", u"del"},
    {u"∇", u'∇', OPERATOR_BY_NAME, PRECEDENCE_NONE, nullptr, u"", nullptr, nullptr},
    {u"nabla", u'∇', OPERATOR_BEFORE, PRECEDENCE_SIGN, calculus, u"gradient", u"∇ nabla", u"\\nabla ∇",
     u"grad del"}};

std::vector<wstring> split(std::u16string_view texts) {
  std::vector<wstring> all;
  while (!texts.empty()) {
    std::size_t const end = std::min(texts.find(u' '), texts.size());
    all.emplace_back(texts.substr(0, end));
    texts.remove_prefix(std::min(end + 1, texts.size()));
  }
  return all;
}

PointerTC<OperatorBC> makeOperator(SignS const& row) {
  wstring const name = row.name, text(1, row.sign);
  switch (row.place) {
    case OPERATOR_BETWEEN:
      return new OperatorBinaryInfixC(name, text, row.precedence, false, false, false, 0);
    case OPERATOR_BEFORE:
      return new OperatorUnaryPrefixC(name, text, row.precedence, false, false, 0);
    case OPERATOR_AFTER:
      return new OperatorUnaryPostfixC(name, text, row.precedence, false, 0);
    default:
      return new OperatorBC(name, text, 0, row.precedence, false, false, 0);
  }
}

OperatorWordsS wordsOf(SignS const& row) {
  OperatorWordsS words;
  words.group = row.group;
  words.title = row.title;
  words.shortcut = row.typed[0] != u'\0' ? wstring(row.typed) : split(row.plain)[0];
  words.aliases = split(row.aliases);
  for (wstring const& other : split(row.plain)) {
    bool const isWord = other[0] >= u'a' && other[0] <= u'z';
    if (row.place == OPERATOR_BETWEEN && isWord && other != row.name) words.names.push_back({other, {}});
  }
  words.signRuns = split(row.runs);
  words.signs = row.signs;
  return words;
}

/// How many operands plain text and LaTeX write it with, and where.
void addNotations(SignS const& row) {
  bool const isBetween = row.place == OPERATOR_BETWEEN, isBefore = row.place == OPERATOR_BEFORE;
  bool const isAfter = row.place == OPERATOR_AFTER;
  if (row.plain) {
    std::vector<wstring> read = split(row.plain);
    bool const isLetter = read[0][0] >= u'a' && read[0][0] <= u'z';
    bool const isWord = isBetween && (isLetter || row.precedence > PRECEDENCE_SUM);
    wstring const written = isWord ? u" " + read[0] + u" " : read[0];
    exchange::PlainPlaceE const place = isBetween  ? exchange::PLAIN_BETWEEN
                                        : isBefore ? exchange::PLAIN_BEFORE
                                        : isAfter  ? exchange::PLAIN_AFTER
                                                   : exchange::PLAIN_ALONE;
    bool const isName = isBefore && row.group;
    exchange::registerPlainOperator({row.name, place, row.precedence, written, std::move(read), isName});
  }
  if (row.latex) {
    std::vector<wstring> read = split(row.latex);
    wstring const written = read[0];
    read.erase(read.begin());
    exchange::LatexPlaceE const place = isBetween  ? exchange::LATEX_BETWEEN
                                        : isBefore ? exchange::LATEX_BEFORE
                                        : isAfter  ? exchange::LATEX_AFTER
                                                   : exchange::LATEX_ALONE;
    exchange::registerLatexOperator({row.name, place, row.precedence, 0, written, std::move(read)});
  }
}

}  // namespace

void addSigns(OperatorListC& operators) {
  static bool const notated = [] {
    // The arrow is no longer the store operator's.
    exchange::registerLatexOperator({u":>", exchange::LATEX_BETWEEN, 90, 0, u"\\triangleright", {u"»"}});
    for (SignS const& row : signs) addNotations(row);
    return true;
  }();
  static_cast<void>(notated);
  for (SignS const& row : signs) {
    PointerTC<OperatorBC> const op = makeOperator(row);
    if (row.group) op->setWords(wordsOf(row));
    operators.add(op);
  }
}

}  // namespace zolt::catalogue_extended
