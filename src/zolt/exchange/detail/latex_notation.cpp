#include "zolt/exchange/detail/latex_notation.h"

#include <algorithm>
#include <array>
#include <deque>
#include <iterator>
#include <vector>

#include "zolt/common/signs.h"
#include "zolt/exchange/detail/latex_brackets.h"
#include "zolt/exchange/detail/latex_names.h"
#include "zolt/exchange/detail/latex_words.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/latex_operator.h"
#include "zolt/oss/code_point.h"

namespace zolt::exchange::detail {

namespace {

// The table has one row for each form of an operator; the first of an operator is the one that is written.
constexpr LatexNotationS rows[] = {
    {u"+", LATEX_INFIX, 2, u"+"},
    {u"-", LATEX_INFIX, 2, u"-"},
    {u"*", LATEX_INFIX, 2, u"\\cdot", u"⋅ \\times \\ast \\cdotp * ×"},
    {u"/", LATEX_COMMAND, 2, u"\\frac{#1}{#2}", u"\\dfrac \\tfrac \\cfrac"},
    {u"/", LATEX_INFIX, 2, {}, u"/ \\div \\slash"},
    {u"div", LATEX_INFIX, 2, u"\\mathbin{\\mathrm{div}}", u"div"},
    {u"mod", LATEX_INFIX, 2, u"\\bmod", u"\\mod mod"},
    {u"_pos", LATEX_PREFIX, 1, u"{+}"},
    {u"_neg", LATEX_PREFIX, 1, u"-"},
    {u"+-", LATEX_INFIX, 2, u"\\pm", u"±"},
    {u"_posneg", LATEX_PREFIX, 1, u"\\pm", u"±"},
    {u"!", LATEX_POSTFIX, 1, u"!"},
    {u"_deg", LATEX_POSTFIX, 1, u"^{\\circ}", u"° \\degree"},
    {u"_rad", LATEX_POSTFIX, 1, u"^{\\mathrm{r}}"},
    {u"=", LATEX_INFIX, 2, u"="},
    {u"<>", LATEX_INFIX, 2, u"\\neq", u"\\ne ≠ <>"},
    {u"<", LATEX_INFIX, 2, u"<", u"\\lt"},
    {u"<=", LATEX_INFIX, 2, u"\\leq", u"\\le \\leqslant \\leqq ≤ <= ⩽"},
    {u">", LATEX_INFIX, 2, u">", u"\\gt"},
    {u">=", LATEX_INFIX, 2, u"\\geq", u"\\ge \\geqslant \\geqq ≥ >= ⩾"},
    {u"not", LATEX_PREFIX, 1, u"\\lnot", u"\\neg ¬ not"},
    {u"and", LATEX_INFIX, 2, u"\\land", u"\\wedge ∧ and"},
    {u"or", LATEX_INFIX, 2, u"\\lor", u"\\vee ∨ or"},
    {u":=", LATEX_INFIX, 2, u":=", u"\\coloneqq \\coloneq \\gets ≔"},
    {u":>", LATEX_INFIX, 2, u"\\to", u"→ \\rightarrow »"},
    {bracket_name, LATEX_COMMAND, 1, u"\\mathord{(#1)}"},
    {pi_name, LATEX_CONSTANT, 0, u"\\pi", u"π"},
    {u"∞", LATEX_CONSTANT, 0, u"\\infty", u"∞"},
    {u"sqrt", LATEX_COMMAND, 1, u"\\sqrt{#1}", u"√"},
    {u"nthroot", LATEX_COMMAND, 2, u"\\sqrt[#2]{#1}"},
    {u"abs", LATEX_BRACKETS, 1, u"\\lvert #1\\rvert"},
    {u"floor", LATEX_BRACKETS, 1, u"\\lfloor #1\\rfloor"},
    {u"ceil", LATEX_BRACKETS, 1, u"\\lceil #1\\rceil"},
    {u"norm", LATEX_BRACKETS, 1, u"\\lVert #1\\rVert"},
    {u"sqrt", LATEX_FUNCTION, 1, {}, u"sqrt"},
    {u"nthroot", LATEX_FUNCTION, 2, {}, u"nthroot root"},
    {u"abs", LATEX_FUNCTION, 1, {}, u"abs"},
    {u"floor", LATEX_FUNCTION, 1, {}, u"floor"},
    {u"ceil", LATEX_FUNCTION, 1, {}, u"ceil ceiling"},
    {u"log10", LATEX_FUNCTION, 1, u"\\log", u"\\lg log lg log10"},
    {u"log", LATEX_INDEXED, 2, u"\\log_{#2}", u"log"},
    {u"log", LATEX_FUNCTION, 2, {}, u"log"},
    {u"diff", LATEX_DERIVATIVE, 2, u"\\mathrm{d}"},
    {u"diffn", LATEX_DERIVATIVE, 3, u"\\mathrm{d}"},
    {u"pdiff", LATEX_DERIVATIVE, 2, u"\\partial"},
    {u"pdiffn", LATEX_DERIVATIVE, 3, u"\\partial"},
    {u"integral", LATEX_INTEGRAL, 4, u"\\int_{#1}^{#2}#3\\,\\mathrm{d}#4", u"∫"},
    {u"antiderivative", LATEX_PRIMITIVE, 2, u"\\int #1\\,\\mathrm{d}#2", u"\\iint \\iiint ∬ ∭"},
    {u"sum", LATEX_RANGE, 4, u"\\sum_{#1=#2}^{#3}#4", u"∑"},
    {u"product", LATEX_RANGE, 4, u"\\prod_{#1=#2}^{#3}#4", u"∏"},
    {u"limit", LATEX_LIMIT, 3, u"\\lim_{#2\\to #3}#1", u"lim"},
    {u"limit", LATEX_LIMIT, 4, u"\\lim_{#2\\to #3^{+}}#1"},
    {u"where", LATEX_WHERE, 3, u"\\left.#1\\right|_{#2=#3}"},
    {u"binomial", LATEX_COMMAND, 2, u"\\binom{#1}{#2}", u"\\dbinom \\tbinom"},
    {u"binomial", LATEX_OVER, 2, {}, u"\\choose"},
    {u"/", LATEX_OVER, 2, {}, u"\\over"},
    {u"matrix", LATEX_TABLE, 0, u"{bmatrix}",
     u"{matrix} {pmatrix} {Bmatrix} {smallmatrix} {array} {aligned} {gathered} "
     u"{alignedat}"},
    {u"det", LATEX_TABLE, 0, u"{vmatrix}"},
    {u"norm", LATEX_TABLE, 0, {}, u"{Vmatrix}"},
    {u"cases", LATEX_TABLE, 0, u"{cases}", u"{dcases}"},
    {u"set", LATEX_SET, 0, u"\\{#1\\}"},
    {u"interval", LATEX_INTERVAL, 4, u"[#1,#2]"},
    {u"index", LATEX_INDEX, 0, u"#1_{#2}"},
    {u"det", LATEX_FUNCTION, 1, u"\\det", u"det"},
    {u"conj", LATEX_COMMAND, 1, u"\\overline{#1}", u"\\bar"},
    {u"vec", LATEX_COMMAND, 1, u"\\vec{#1}", u"\\overrightarrow"},
    {u"hat", LATEX_COMMAND, 1, u"\\hat{#1}", u"\\widehat"},
    {u"dot", LATEX_COMMAND, 1, u"\\dot{#1}"},
    {u"sin", LATEX_FUNCTION, 1, u"\\sin", u"sin", u"asin"},
    {u"cos", LATEX_FUNCTION, 1, u"\\cos", u"cos", u"acos"},
    {u"tan", LATEX_FUNCTION, 1, u"\\tan", u"tan tg \\tg", u"atan"},
    {u"asin", LATEX_FUNCTION, 1, u"\\arcsin", u"arcsin asin", u"sin"},
    {u"acos", LATEX_FUNCTION, 1, u"\\arccos", u"arccos acos", u"cos"},
    {u"atan", LATEX_FUNCTION, 1, u"\\arctan", u"arctan atan", u"tan"},
    {u"sinh", LATEX_FUNCTION, 1, u"\\sinh", u"sinh", u"asinh"},
    {u"cosh", LATEX_FUNCTION, 1, u"\\cosh", u"cosh", u"acosh"},
    {u"tanh", LATEX_FUNCTION, 1, u"\\tanh", u"tanh", u"atanh"},
    {u"ln", LATEX_FUNCTION, 1, u"\\ln", u"ln", u"exp"},
    {u"exp", LATEX_FUNCTION, 1, u"\\exp", u"exp", u"ln"},
    {u"cot", LATEX_FUNCTION, 1, u"\\cot", u"cot ctg \\ctg", u"acot"},
    {u"sec", LATEX_FUNCTION, 1, u"\\sec", u"sec", u"asec"},
    {u"csc", LATEX_FUNCTION, 1, u"\\csc", u"csc cosec \\cosec", u"acsc"},
    {u"coth", LATEX_FUNCTION, 1, u"\\coth", u"coth", u"acoth"},
    {u"sech", LATEX_FUNCTION, 1, u"\\operatorname{sech}", u"sech \\sech", u"asech"},
    {u"csch", LATEX_FUNCTION, 1, u"\\operatorname{csch}", u"csch \\csch", u"acsch"},
    {u"acot", LATEX_FUNCTION, 1, u"\\operatorname{arccot}", u"arccot acot \\arccot", u"cot"},
    {u"asec", LATEX_FUNCTION, 1, u"\\operatorname{arcsec}", u"arcsec asec", u"sec"},
    {u"acsc", LATEX_FUNCTION, 1, u"\\operatorname{arccsc}", u"arccsc acsc", u"csc"},
    {u"asinh", LATEX_FUNCTION, 1, u"\\operatorname{arsinh}", u"arsinh asinh arcsinh \\arsinh \\arcsinh",
     u"sinh"},
    {u"acosh", LATEX_FUNCTION, 1, u"\\operatorname{arcosh}", u"arcosh acosh arccosh \\arcosh \\arccosh",
     u"cosh"},
    {u"atanh", LATEX_FUNCTION, 1, u"\\operatorname{artanh}", u"artanh atanh arctanh \\artanh \\arctanh",
     u"tanh"},
    {u"acoth", LATEX_FUNCTION, 1, u"\\operatorname{arcoth}", u"arcoth acoth arccoth", u"coth"},
    {u"asech", LATEX_FUNCTION, 1, u"\\operatorname{arsech}", u"arsech asech arcsech", u"sech"},
    {u"acsch", LATEX_FUNCTION, 1, u"\\operatorname{arcsch}", u"arcsch acsch arccsch", u"csch"},
    {u"gcd", LATEX_FUNCTION, 0, u"\\gcd", u"gcd"},
    {u"lcm", LATEX_FUNCTION, 0, u"\\operatorname{lcm}", u"lcm"},
    {u"min", LATEX_FUNCTION, 0, u"\\min", u"min"},
    {u"max", LATEX_FUNCTION, 0, u"\\max", u"max"},
    {u"sup", LATEX_FUNCTION, 0, u"\\sup", u"sup"},
    {u"inf", LATEX_FUNCTION, 0, u"\\inf", u"inf"},
    {u"arg", LATEX_FUNCTION, 1, u"\\arg", u"arg"},
    {u"deg", LATEX_FUNCTION, 1, u"\\deg", u"deg"},
    {u"dim", LATEX_FUNCTION, 1, u"\\dim", u"dim"},
    {u"ker", LATEX_FUNCTION, 1, u"\\ker", u"ker"},
    {u"Pr", LATEX_FUNCTION, 0, u"\\Pr", u"Pr"},
    {u"Re", LATEX_FUNCTION, 1, u"\\operatorname{Re}", u"Re \\Re"},
    {u"Im", LATEX_FUNCTION, 1, u"\\operatorname{Im}", u"Im \\Im"}};

// The variants of a letter are names of their own, since a formula may have both.
constexpr LetterS letters[] = {
    {u"varepsilon", u"ϵ"}, {u"vartheta", u"ϑ"}, {u"varphi", u"ϕ"}, {u"varrho", u"ϱ"},   {u"varsigma", u"ς"},
    {u"varpi", u"ϖ"},      {u"varkappa", u"ϰ"}, {u"hbar", u"ℏ"},   {u"ell", u"ℓ"},      {u"aleph", u"ℵ"},
    {u"wp", u"℘"},         {u"partial", u"∂"},  {u"nabla", u"∇"},  {u"emptyset", u"∅"}, {u"varnothing", u"∅"},
    {u"imath", u"ı"},      {u"jmath", u"ȷ"}};

constexpr LetterS double_struck = {u"RCNZQPH", u"ℝℂℕℤℚℙℍ"};

// An opening bracket, the one that closes it, the function of both.
constexpr std::u16string_view bracket_pairs[] = {u"()",     u"[]",      u"{}",    u"||abs",
                                                 u"‖‖norm", u"⌊⌋floor", u"⌈⌉ceil"};

/// The command at the beginning of a written form: "\frac" of "\frac{#1}{#2}".
std::u16string_view commandOf(LatexNotationS const& row) {
  bool const hasCommand = row.kind != LATEX_BRACKETS && row.kind != LATEX_WHERE &&
                          row.kind != LATEX_DERIVATIVE && row.kind < LATEX_SET;
  if (row.written.empty() || !hasCommand || row.written[0] == u'^') return {};
  if (row.kind == LATEX_TABLE) return row.written;
  if (row.written[0] == u'{') return {};
  if (row.written[0] != u'\\') return row.written;
  auto const end = std::find_if_not(row.written.begin() + 1, row.written.end(), math::common::isAsciiLetter);
  // "\%" has no letters.
  std::size_t const size = std::max<std::size_t>(2, static_cast<std::size_t>(end - row.written.begin()));
  std::u16string_view const command = row.written.substr(0, size);
  LatexWordE const word = findLatexWord(command);
  bool const isFree = word == LATEX_WORD_UNKNOWN || word == LATEX_WORD_MEANINGLESS;
  return isFree ? command : std::u16string_view();
}

/// What hosts add before anything is looked up waits here: a program that never meets LaTeX needs no tables.
std::vector<LatexOperatorS>& waiting() {
  static std::vector<LatexOperatorS> operators;
  return operators;
}

bool isBuilt = false;

/// The tables, sorted for looking up.
struct IndexS {
  IndexS();
  void add(LatexOperatorS op);

  std::vector<LatexNotationS> notations;
  std::deque<LatexOperatorS> added;  // what hosts added, to whose texts its rows refer
  std::deque<LatexNotationS> addedNotations;
  std::vector<LatexReadingS> readings;  // of one text, the first one wins
};

bool isBefore(LatexReadingS const& reading, std::u16string_view text) { return reading.text < text; }

IndexS::IndexS() : notations(std::begin(rows), std::end(rows)) {
  for (LatexNotationS& row : notations) {
    if (row.kind == LATEX_OVER) row.rule = row.leftRule = row.rightRule = over_rule;
    NotationS const* const notation = findNotation(row.name);
    if (!notation || (row.kind != LATEX_INFIX && row.kind != LATEX_PREFIX)) continue;
    row.rule = notation->rule;
    row.leftRule = notation->leftRule;
    row.rightRule = notation->rightRule;
  }
  for (LatexNotationS const& row : notations) {
    if (!commandOf(row).empty()) readings.push_back({commandOf(row), &row});
    forEachLatexWord(row.read, [&](std::u16string_view text) { readings.push_back({text, &row}); });
  }
  std::stable_sort(readings.begin(), readings.end(),
                   [](auto const& a, auto const& b) { return a.text < b.text; });
  for (LatexOperatorS& op : waiting()) add(std::move(op));
  waiting().clear();
  isBuilt = true;
}

void IndexS::add(LatexOperatorS op) {
  static constexpr LatexKindE kinds[] = {LATEX_PREFIX,   LATEX_INFIX,    LATEX_POSTFIX,
                                         LATEX_CONSTANT, LATEX_FUNCTION, LATEX_COMMAND};
  static constexpr unsigned long arities[] = {1, 2, 1, 0};
  LatexOperatorS const& kept = added.emplace_front(std::move(op));
  bool const isSign = kept.place < LATEX_ARGUMENT;
  LatexNotationS& row = addedNotations.emplace_front(
      LatexNotationS{kept.name, kinds[kept.place], isSign ? arities[kept.place] : kept.arity, kept.written});
  if (kept.place <= LATEX_BETWEEN) {
    row.rule = ruleOf(kept.precedence);
    row.leftRule = beforeSign(row.rule);
    row.rightRule = tighterThan(row.rule);
  }
  auto const addReading = [&](std::u16string_view text) {
    readings.insert(std::lower_bound(readings.begin(), readings.end(), text, isBefore), {text, &row});
  };
  for (wstring const& text : kept.read) addReading(text);
  if (!commandOf(row).empty()) addReading(commandOf(row));
}

IndexS& index() {
  static IndexS tables;
  return tables;
}

template <class TableT, class TestT>
auto find(TableT const& table, TestT test) {
  auto const found = std::find_if(std::begin(table), std::end(table), test);
  return found == std::end(table) ? nullptr : &*found;
}

template <class TestT>
LetterS const* findLetter(TestT test) {
  auto const [first, last] = greekLetters();
  LetterS const* const greek = std::find_if(first, last, test);
  return greek != last ? greek : find(letters, test);
}

/// By how many letters two words differ, at most `limit`; two letters in the wrong order count as one.
std::size_t distance(std::u16string_view a, std::u16string_view b, std::size_t limit) {
  if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) >= limit) return limit;
  std::array<std::vector<std::size_t>, 3> rows_of{};
  for (auto& row : rows_of) row.resize(a.size() + 1);
  for (std::size_t i = 0; i <= a.size(); ++i) rows_of[0][i] = i;
  for (std::size_t j = 1; j <= b.size(); ++j) {
    std::vector<std::size_t> const& last = rows_of[(j - 1) % 3];
    std::vector<std::size_t> const& before = rows_of[(j + 1) % 3];
    std::vector<std::size_t>& row = rows_of[j % 3];
    row[0] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
      row[i] = std::min({last[i] + 1, row[i - 1] + 1, last[i - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        row[i] = std::min(row[i], before[i - 2] + 1);
      }
    }
  }
  return std::min(rows_of[b.size() % 3][a.size()], limit);
}

}  // namespace

LatexNotationS const* findLatex(std::u16string_view name, unsigned long numOperands) {
  auto const writes = [&](LatexNotationS const& row) {
    bool const fits = row.arity == 0 ? row.kind == LATEX_CONSTANT ? numOperands == 0 : numOperands > 0
                                     : row.arity == numOperands;
    return fits && !row.written.empty() && row.name == name;
  };
  LatexNotationS const* const own = find(index().addedNotations, writes);
  return own ? own : find(index().notations, writes);
}

LatexNotationS const* findLatex(LatexKindE kind) {
  return find(index().notations, [&](LatexNotationS const& row) { return row.kind == kind; });
}

LatexReadingsT findLatexReadings(std::u16string_view text) {
  std::vector<LatexReadingS> const& readings = index().readings;
  auto const first = std::lower_bound(readings.begin(), readings.end(), text, isBefore);
  auto const last =
      std::find_if(first, readings.end(), [&](LatexReadingS const& entry) { return entry.text != text; });
  LatexReadingS const* const begin = readings.data() + (first - readings.begin());
  return {begin, begin + (last - first)};
}

LatexNotationS const* findLatexReading(std::u16string_view text, LatexKindE kind) {
  auto const [first, last] = findLatexReadings(text);
  auto const* found =
      std::find_if(first, last, [&](auto const& entry) { return entry.notation->kind == kind; });
  return found == last ? nullptr : found->notation;
}

LatexNotationS const* findLatexWithOption(std::u16string_view command) {
  auto const [first, last] = findLatexReadings(command);
  auto const* found = std::find_if(first, last, [&](LatexReadingS const& entry) {
    std::u16string_view const written = entry.notation->written;
    return written.size() > command.size() && written[command.size()] == u'[';
  });
  return found == last ? nullptr : found->notation;
}

LatexNotationS const* findLatexFunction(std::u16string_view text, unsigned long numOperands) {
  auto const [first, last] = findLatexReadings(text);
  auto const* found = std::find_if(first, last, [&](LatexReadingS const& entry) {
    unsigned long const arity = entry.notation->arity;
    return entry.notation->kind == LATEX_FUNCTION && (arity == 0 || arity == numOperands);
  });
  return found == last ? nullptr : found->notation;
}

std::u16string_view findLatexLetter(std::u16string_view command) {
  LetterS const* const found = findLetter([&](LetterS const& entry) { return entry.name == command; });
  return found ? found->letter : std::u16string_view();
}

std::u16string_view findLetterCommand(std::u16string_view letter) {
  if (letter == std::u16string_view(&greek_pi, 1)) return u"pi";
  LetterS const* const found = findLetter([&](LetterS const& entry) { return entry.letter == letter; });
  return found ? found->name : std::u16string_view();
}

char16_t toDoubleStruck(char16_t letter) {
  std::size_t const place = double_struck.name.find(letter);
  return place == double_struck.name.npos ? u'\0' : double_struck.letter[place];
}

char16_t fromDoubleStruck(char16_t letter) {
  std::size_t const place = double_struck.letter.find(letter);
  return place == double_struck.letter.npos ? u'\0' : double_struck.name[place];
}

LatexNotationS const* findRaisedSign(std::u16string_view text) {
  auto const begins = [&](LatexNotationS const& row) {
    if (row.kind != LATEX_POSTFIX || row.written[0] != u'^') return false;
    std::u16string_view const raised = row.written.substr(2, row.written.size() - 3);
    return text.substr(0, raised.size()) == raised;
  };
  LatexNotationS const* const own = find(index().addedNotations, begins);
  return own ? own : find(index().notations, begins);
}

LatexNotationS const* findLatexBrackets(char16_t open) {
  auto const* const pair = find(bracket_pairs, [&](std::u16string_view entry) { return entry[0] == open; });
  return pair && pair->size() > 2 ? findLatex(pair->substr(2), 1) : nullptr;
}

char16_t findClosing(char16_t open) {
  auto const* const pair = find(bracket_pairs, [&](std::u16string_view entry) { return entry[0] == open; });
  return pair ? (*pair)[1] : open;
}

std::u16string findNearestCommand(std::u16string_view command) {
  constexpr std::size_t longest = 30;
  if (command.size() > longest) return {};
  std::size_t least = std::min<std::size_t>(4, 1 + command.size() / 3);
  std::u16string nearest;
  auto const consider = [&](std::u16string_view known) {
    if (known.size() < 3 || known[0] != u'\\') return;
    std::size_t const far = distance(command, known, least);
    if (far >= least) return;
    least = far;
    nearest = known;
  };
  for (LatexReadingS const& reading : index().readings) consider(reading.text);
  for (LatexWordS const& word : latexWords()) consider(word.text);
  for (LetterS const& letter : letters) consider(u"\\" + std::u16string(letter.name));
  auto const [first, last] = greekLetters();
  for (auto const* letter = first; letter != last; ++letter) consider(u"\\" + std::u16string(letter->name));
  return nearest;
}

}  // namespace zolt::exchange::detail

namespace zolt::exchange {

using namespace detail;
using oss::isHighSurrogate;

void registerLatexOperator(LatexOperatorS op) {
  if (isBuilt) {
    index().add(std::move(op));
  } else {
    waiting().push_back(std::move(op));
  }
}

wstring findLatexSign(std::u16string_view command) {
  auto const [first, last] = findLatexReadings(command);
  if (first == last) return wstring(findLatexLetter(command.substr(1)));
  LatexNotationS const& row = *first->notation;
  if (row.kind == LATEX_COMMAND) return {};
  if (row.kind == LATEX_CONSTANT && row.name.size() == 1) return wstring(row.name);
  wstring sign;
  wstring word;
  auto const consider = [&](std::u16string_view text) {
    bool const isCharacter = text.size() == 1 || (text.size() == 2 && isHighSurrogate(text[0]));
    if (sign.empty() && isCharacter && text[0] >= 0x80) sign = text;
    if (word.empty() && text[0] != u'\\') word = text;
  };
  forEachLatexWord(row.read, consider);
  for (LatexOperatorS const& op : index().added) {
    if (row.name.data() != op.name.data()) continue;
    for (wstring const& text : op.read) consider(text);
  }
  return !sign.empty() ? sign : !word.empty() ? word : wstring(command.substr(1));
}

char16_t findLatexBracket(std::u16string_view command) { return findDelimiter(command); }

bool isLatexStyle(std::u16string_view command) {
  switch (findLatexWord(command)) {
    case LATEX_WORD_NOTHING:
    case LATEX_WORD_SIZE:
    case LATEX_WORD_LEFT:
    case LATEX_WORD_RIGHT:
    case LATEX_WORD_NAME:
    case LATEX_WORD_OPERATOR:
    case LATEX_WORD_FUNCTION:
    case LATEX_WORD_TEXT:
      return true;
    default:
      return false;
  }
}

}  // namespace zolt::exchange
