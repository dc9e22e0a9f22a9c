#include "zolt/exchange/detail/notation.h"

#include <algorithm>
#include <array>
#include <deque>
#include <iterator>
#include <map>
#include <numeric>
#include <utility>
#include <vector>

#include "zolt/algexpr/parent_node.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/detail/plain_lexer.h"
#include "zolt/exchange/plain_operator.h"

namespace zolt::exchange::detail {

using namespace math::common;

namespace {

// "sum(k=1,n,k)" and "where(f,x=3)" are read as they are spoken.
constexpr CallPatternS::ArgumentS sum_arguments[] = {{1, u"=", 2}, {3, {}, 0}, {4, {}, 0}};
constexpr CallPatternS::ArgumentS where_arguments[] = {{1, {}, 0}, {2, u"=", 3}};
constexpr CallPatternS sum_pattern{sum_arguments, std::size(sum_arguments)};
constexpr CallPatternS where_pattern{where_arguments, std::size(where_arguments)};

constexpr NotationS makeEquationForm(std::u16string_view name, unsigned long arity, std::u16string_view read,
                                     CallPatternS const& pattern) {
  NotationS form{name, FORM_FUNCTION, arity, {name, read}};
  form.pattern = &pattern;
  return form;
}

// The table has one row for each operator; what else is read as it comes later.
constexpr NotationS notations[] = {
    {u"+", FORM_INFIX, 2, {u"+", u"+"}, RULE_SUM, RULE_SUM, tighterThan(RULE_SUM)},
    {u"-", FORM_INFIX, 2, {u"-", u"-"}, RULE_SUM, RULE_SUM, tighterThan(RULE_SUM)},
    {u"+-", FORM_INFIX, 2, {u"±", u"±"}, RULE_SUM, RULE_SUM, tighterThan(RULE_SUM)},
    {u"*", FORM_INFIX, 2, {u"*", u"*"}, RULE_PRODUCT, RULE_PRODUCT, tighterThan(RULE_PRODUCT)},
    {u"/", FORM_INFIX, 2, {u"/", u"/"}, RULE_PRODUCT, RULE_PRODUCT, tighterThan(RULE_PRODUCT)},
    {u"div", FORM_INFIX, 2, {u" div ", u"div"}, RULE_PRODUCT, RULE_PRODUCT, tighterThan(RULE_PRODUCT)},
    {u"mod", FORM_INFIX, 2, {u" mod ", u"mod"}, RULE_PRODUCT, RULE_PRODUCT, tighterThan(RULE_PRODUCT)},
    {u"_pos", FORM_PREFIX, 1, {u"+", {}}, RULE_SIGN},
    {u"_neg", FORM_PREFIX, 1, {u"-", {}}, RULE_SIGN},
    {u"_posneg", FORM_PREFIX, 1, {u"±", {}}, RULE_SIGN},
    {u"^", FORM_INFIX, 2, {u"^", u"^ **"}, RULE_POWER, RULE_POSTFIX, RULE_POWER},
    {u"!", FORM_POSTFIX, 1, {u"!", u"!"}, RULE_POSTFIX},
    {u"_deg", FORM_POSTFIX, 1, {u"°", u"°"}, RULE_POSTFIX},
    {u"_rad", FORM_POSTFIX, 1, {u"ʳ", u"ʳ"}, RULE_POSTFIX},
    {u"=", FORM_INFIX, 2, {u" = ", u"= =="}, RULE_RELATION, RULE_RELATION, tighterThan(RULE_RELATION)},
    {u"<>",
     FORM_INFIX,
     2,
     {u" <> ", u"<> !="},
     RULE_RELATION,
     RULE_RELATION,
     tighterThan(RULE_RELATION),
     not_equal_sign},
    {u"<", FORM_INFIX, 2, {u" < ", u"<"}, RULE_RELATION, RULE_RELATION, tighterThan(RULE_RELATION)},
    {u"<=",
     FORM_INFIX,
     2,
     {u" <= ", u"<="},
     RULE_RELATION,
     RULE_RELATION,
     tighterThan(RULE_RELATION),
     less_or_equal_sign},
    {u">", FORM_INFIX, 2, {u" > ", u">"}, RULE_RELATION, RULE_RELATION, tighterThan(RULE_RELATION)},
    {u">=",
     FORM_INFIX,
     2,
     {u" >= ", u">="},
     RULE_RELATION,
     RULE_RELATION,
     tighterThan(RULE_RELATION),
     greater_or_equal_sign},
    {u"not", FORM_PREFIX, 1, {u"not ", u"not ¬"}, RULE_NOT},
    {u"and", FORM_INFIX, 2, {u" and ", u"and ∧ &&"}, RULE_AND, RULE_AND, tighterThan(RULE_AND)},
    {u"or", FORM_INFIX, 2, {u" or ", u"or ∨"}, RULE_OR, RULE_OR, tighterThan(RULE_OR)},
    {u":=",
     FORM_INFIX,
     2,
     {u" := ", u":= ≔"},
     RULE_ASSIGNMENT,
     tighterThan(RULE_ASSIGNMENT),
     tighterThan(RULE_ASSIGNMENT)},
    {u":>",
     FORM_INFIX,
     2,
     {u" :> ", u":> →"},
     RULE_ASSIGNMENT,
     tighterThan(RULE_ASSIGNMENT),
     tighterThan(RULE_ASSIGNMENT),
     store_sign},
    {bracket_name, FORM_BRACKETS, 1, {}},
    {pi_name, FORM_CONSTANT, 0, {u"pi", u"pi Pi"}, RULE_ATOM, RULE_ATOM, RULE_ATOM, pi_sign},
    {u"∞", FORM_CONSTANT, 0, {u"∞", u"∞ infinity infty inf oo"}},
    {u"sqrt", FORM_FUNCTION, 1, {u"sqrt", u"sqrt √"}},
    {u"nthroot", FORM_FUNCTION, 2, {u"nthroot", u"nthroot root cbrt:3 ∛:3 ∜:4"}},
    {u"abs", FORM_FUNCTION, 1, {u"abs", u"abs", u"||"}},
    {u"floor", FORM_FUNCTION, 1, {u"floor", u"floor", u"⌊⌋"}},
    {u"ceil", FORM_FUNCTION, 1, {u"ceil", u"ceil ceiling", u"⌈⌉"}},
    {u"log", FORM_FUNCTION, 2, {u"log", u"log"}},
    {u"log10", FORM_FUNCTION, 1, {u"log", u"log log10 lg"}},
    {u"diff", FORM_FUNCTION, 2, {u"diff", u"diff"}},
    {u"integral", FORM_FUNCTION, 4, {u"int", u"int integral ∫"}},
    {u"sum", FORM_FUNCTION, 4, {u"sum", u"sum ∑"}},
    {u"where", FORM_FUNCTION, 3, {u"where", u"where"}},
    {u"error", FORM_FUNCTION, 0, {u"error", u"error"}},
    {u"sin", FORM_FUNCTION, 1, {u"sin", u"sin", {}, u"asin"}},
    {u"cos", FORM_FUNCTION, 1, {u"cos", u"cos", {}, u"acos"}},
    {u"tan", FORM_FUNCTION, 1, {u"tan", u"tan", {}, u"atan"}},
    {u"asin", FORM_FUNCTION, 1, {u"arcsin", u"arcsin asin"}},
    {u"acos", FORM_FUNCTION, 1, {u"acos", u"acos arccos"}},
    {u"atan", FORM_FUNCTION, 1, {u"arctan", u"arctan atan"}},
    {u"sinh", FORM_FUNCTION, 1, {u"sinh", u"sinh"}},
    {u"cosh", FORM_FUNCTION, 1, {u"cosh", u"cosh"}},
    {u"tanh", FORM_FUNCTION, 1, {u"tanh", u"tanh"}},
    {u"ln", FORM_FUNCTION, 1, {u"ln", u"ln"}},
    {u"exp", FORM_FUNCTION, 1, {u"exp", u"exp"}},
    makeEquationForm(u"sum", 4, u"sum ∑", sum_pattern),
    makeEquationForm(u"where", 3, u"where", where_pattern)};

constexpr LetterS greek_letters[] = {
    {u"alpha", u"α"},  {u"beta", u"β"},   {u"gamma", u"γ"}, {u"delta", u"δ"},   {u"epsilon", u"ε"},
    {u"zeta", u"ζ"},   {u"eta", u"η"},    {u"theta", u"θ"}, {u"iota", u"ι"},    {u"kappa", u"κ"},
    {u"lambda", u"λ"}, {u"mu", u"μ"},     {u"nu", u"ν"},    {u"xi", u"ξ"},      {u"omicron", u"ο"},
    {u"rho", u"ρ"},    {u"sigma", u"σ"},  {u"tau", u"τ"},   {u"upsilon", u"υ"}, {u"phi", u"φ"},
    {u"chi", u"χ"},    {u"psi", u"ψ"},    {u"omega", u"ω"}, {u"Gamma", u"Γ"},   {u"Delta", u"Δ"},
    {u"Theta", u"Θ"},  {u"Lambda", u"Λ"}, {u"Xi", u"Ξ"},    {u"Sigma", u"Σ"},   {u"Upsilon", u"Υ"},
    {u"Phi", u"Φ"},    {u"Psi", u"Ψ"},    {u"Omega", u"Ω"}};

/// What a name's parts end with: the underscore before an index, primes.
constexpr char16_t name_joints[] = {u'_', prime_sign, u'\0'};

template <class TableT, class TestT>
auto find(TableT const& table, TestT test) {
  auto const found = std::find_if(std::begin(table), std::end(table), test);
  return found == std::end(table) ? nullptr : &*found;
}

/// All readings in the order of their texts, with an index by their first characters, since every sign and
/// name of a text is looked up here.
class ReadingsC {
 public:
  ReadingsC();

  /// The readings of `text`, which is not empty.
  std::pair<ReadingS const*, ReadingS const*> find(std::u16string_view text) const {
    std::size_t const start = std::min<std::size_t>(text[0], ascii_size);
    auto const* const end = readings_.data() + starts_[start + 1];
    auto const* first = readings_.data() + starts_[start];
    while (first != end && first->text != text) ++first;
    auto const* last = first;
    while (last != end && last->text == text) ++last;
    return {first, last};
  }

 private:
  static constexpr std::size_t ascii_size = 0x80;

  std::vector<ReadingS> readings_;
  std::array<std::size_t, ascii_size + 2> starts_{};  // the last entry is for all characters beyond ASCII
};

ReadingsC::ReadingsC() {
  for (NotationS const& notation : notations) {
    if (notation.sign != u'\0') readings_.push_back({{&notation.sign, 1}, &notation, {}});
    std::u16string_view rest = notation.plain.read;
    while (!rest.empty()) {
      std::u16string_view const text = rest.substr(0, rest.find(u' '));
      rest.remove_prefix(std::min(text.size() + 1, rest.size()));
      std::size_t const colon = text.size() > 2 ? text.find(u':', 1) : text.npos;
      bool const adds = colon != text.npos;
      readings_.push_back(
          {text.substr(0, colon), &notation, adds ? text.substr(colon + 1) : std::u16string_view()});
    }
  }
  std::sort(readings_.begin(), readings_.end(),
            [](ReadingS const& a, ReadingS const& b) { return a.text < b.text; });
  for (ReadingS const& reading : readings_) ++starts_[std::min<std::size_t>(reading.text[0], ascii_size) + 1];
  std::partial_sum(starts_.begin(), starts_.end(), starts_.begin());
}

/// What hosts added. The notations refer to the texts of their operators.
struct AddedS {
  std::deque<std::pair<PlainOperatorS, NotationS>> operators;
  std::map<std::u16string_view, NotationS const*> byName;
  std::map<std::u16string_view, std::vector<ReadingS>> byText;  // calls with different numbers of arguments
  std::deque<std::pair<std::vector<CallPatternS::ArgumentS>, CallPatternS>> patterns;
  std::deque<PlainListS> lists;  // the last one first
  wstring doubleBars;
  std::deque<PlainTableS> tables;
};

AddedS& added() {
  static AddedS all;
  return all;
}

std::pair<ReadingS const*, ReadingS const*> findOurReadings(std::u16string_view text) {
  static ReadingsC const readings;
  return readings.find(text);
}

std::pair<ReadingS const*, ReadingS const*> findReadings(std::u16string_view text) {
  if (auto const& own = added().byText; !own.empty()) {
    auto const found = own.find(text);
    if (found != own.end()) return {found->second.data(), found->second.data() + found->second.size()};
  }
  return findOurReadings(text);
}

/// Reads the written form of a call, "lim(#2->#3,#1)", from the bracket on.
std::vector<CallPatternS::ArgumentS> readPattern(std::u16string_view written) {
  std::vector<CallPatternS::ArgumentS> arguments;
  CallPatternS::ArgumentS argument{};
  std::size_t sign = 0;
  for (std::size_t i = 1; i < written.size(); ++i) {
    if (written[i] == u'#' && i + 1 < written.size()) {
      auto const number = static_cast<unsigned long>(written[++i] - u'0');
      if (argument.first == 0) {
        argument.first = number;
        sign = i + 1;
      } else if (sign + 1 == i) {
        argument.side = number;
      } else {
        argument.second = number;
        argument.sign = written.substr(sign, i - 1 - sign);
        sign = i + 1;
      }
    } else if (written[i] == u',' || written[i] == u')') {
      arguments.push_back(argument);
      argument = {};
    }
  }
  return arguments;
}

bool isInList(PlainListS const& list, char16_t open, char16_t close) {
  return list.open == open && list.close == close;
}

constexpr FormE formOf(PlainPlaceE place) {
  return place == PLAIN_BEFORE    ? FORM_PREFIX
         : place == PLAIN_BETWEEN ? FORM_INFIX
         : place == PLAIN_AFTER   ? FORM_POSTFIX
         : place == PLAIN_CALL    ? FORM_FUNCTION
                                  : FORM_CONSTANT;
}

}  // namespace

std::pair<LetterS const*, LetterS const*> greekLetters() {
  return {std::begin(greek_letters), std::end(greek_letters)};
}

NotationS const* findNotation(std::u16string_view name) {
  if (auto const& own = added().byName; !own.empty()) {
    auto const found = own.find(name);
    if (found != own.end()) return found->second;
  }
  return find(notations, [&](NotationS const& notation) { return notation.name == name; });
}

NotationS const* findCall(std::u16string_view name, unsigned long numArguments) {
  auto const& own = added().operators;
  auto const found = std::find_if(own.rbegin(), own.rend(), [&](auto const& entry) {
    NotationS const& notation = entry.second;
    return notation.form == FORM_FUNCTION && notation.arity == numArguments && notation.name == name;
  });
  return found == own.rend() ? findNotation(name) : &found->second;
}

NotationS const* findInfix(std::u16string_view name) {
  NotationS const* const found = findNotation(name);
  return found && found->form == FORM_INFIX ? found : nullptr;
}

NotationS const* findPrefix(NotationS const& infix) {
  auto const isSame = [&](NotationS const& notation) {
    return notation.form == FORM_PREFIX && notation.plain.written == infix.plain.written;
  };
  for (auto const& own : added().operators) {
    if (isSame(own.second)) return &own.second;
  }
  return find(notations, isSame);
}

ReadingS const* findReading(std::u16string_view text) {
  auto const [first, last] = findReadings(text);
  return first == last ? nullptr : first;
}

CallPatternS::ArgumentS const* CallPatternS::findSide() const {
  auto const* const end = arguments + count;
  auto const* const found = std::find_if(arguments, end, [](ArgumentS const& one) { return one.side > 0; });
  return found == end ? nullptr : found;
}

namespace {

bool hasSide(ReadingS const& reading) {
  return reading.notation->pattern && reading.notation->pattern->findSide();
}

}  // namespace

ReadingS const* findFunction(std::u16string_view text, unsigned long numArguments) {
  auto const [first, last] = findReadings(text);
  auto const found = std::find_if(first, last, [&](ReadingS const& reading) {
    unsigned long const arity = reading.notation->arity;
    unsigned long const count = arity == 0 ? 0 : reading.notation->countWritten();
    bool const fits = count == 0 || numArguments + (reading.addedArgument.empty() ? 0 : 1) == count;
    return reading.notation->form == FORM_FUNCTION && fits && !hasSide(reading);
  });
  return found == last ? nullptr : found;
}

ReadingS const* findSidedFunction(std::u16string_view text) {
  auto const [first, last] = findReadings(text);
  auto const found = std::find_if(first, last, hasSide);
  return found == last ? nullptr : found;
}

bool isFunction(std::u16string_view text) {
  ReadingS const* const reading = findReading(text);
  return reading && reading->notation->form == FORM_FUNCTION;
}

bool isAddedFunction(std::u16string_view text) {
  auto const [first, last] = findOurReadings(text);
  return first == last && isFunction(text);
}

wstring const& findDoubleBars() { return added().doubleBars; }

PlainListS const* findList(char16_t open, char16_t close, unsigned long count) {
  return find(added().lists, [&](PlainListS const& list) {
    return isInList(list, open, close) && (list.count == 0 || list.count == count);
  });
}

bool opensList(char16_t open) {
  return find(added().lists, [&](PlainListS const& list) { return list.open == open; }) != nullptr;
}

bool closesList(char16_t open, char16_t close) {
  return find(added().lists, [&](PlainListS const& list) { return isInList(list, open, close); }) != nullptr;
}

PlainListS const* findListOf(math::algexpr::ParentNodeABC const& node) {
  unsigned long const count = node.numChildren();
  return find(added().lists, [&](PlainListS const& list) {
    std::size_t const further = list.added.size();
    if (list.name != node.crefName() || count <= further) return false;
    if (list.count != 0 && list.count + further != count) return false;
    for (std::size_t i = 0; i < further; ++i) {
      if (node.child(static_cast<unsigned long>(count - further + i)).crefName() != list.added[i])
        return false;
    }
    return true;
  });
}

std::size_t findMark(std::u16string_view name) {
  std::size_t const end = name.find(u'_');
  if (end == name.npos) return name.npos;
  NotationS const* const notation = findNotation(name.substr(0, end));
  bool const takesMark = notation && notation->form == FORM_FUNCTION && notation->arity == 2;
  return takesMark ? end : name.npos;
}

ReadingS const* findIndexing(std::u16string_view name, unsigned long numArguments) {
  bool const isOpen = name.size() > 1 && name.back() == u'_' && findMark(name) == name.npos;
  return isOpen ? findFunction(u"_", numArguments + 1) : nullptr;
}

bool isIntegral(std::u16string_view name) {
  std::u16string_view const base = name.substr(0, name.find(u'_'));
  ReadingS const* const function = base.empty() ? nullptr : findFunction(base, 4);
  return function && function->notation->name == u"integral";
}

bool isDifferential(std::u16string_view name) {
  if (name.size() < 2 || name[0] != u'd') return false;
  std::u16string const variable = toLetters(name.substr(1));
  bool const isLetter = !math::common::isDigit(variable[0]) && variable[0] != u'_';
  bool const isOne = variable.size() == 1 || variable[1] == u'_' || variable[1] == math::common::prime_sign;
  return isLetter && isOne && !isFunction(name) && toLetters(name) == name;
}

NotationS const* findBrackets(char16_t sign) {
  return find(notations, [&](NotationS const& notation) {
    return notation.plain.brackets.find(sign) != std::u16string_view::npos;
  });
}

std::u16string toLetters(std::u16string_view name) {
  std::u16string meant;
  std::size_t begin = 0;
  for (std::size_t end = 0; begin <= name.size(); begin = end + 1) {
    end = std::min(name.find_first_of(name_joints, begin), name.size());
    std::u16string_view const part = name.substr(begin, end - begin);
    LetterS const* letter = find(greek_letters, [&](LetterS const& entry) { return entry.name == part; });
    // A constant has no other parts.
    ReadingS const* const reading = part.size() < name.size() && !part.empty() ? findReading(part) : nullptr;
    if (letter) {
      meant += letter->letter;
    } else if (reading && reading->notation->name == pi_name) {
      meant += greek_pi;
    } else if (reading && begin > 0 && reading->notation->form == FORM_CONSTANT) {
      meant += reading->notation->plain.written;
    } else {
      meant += part;
    }
    if (end < name.size()) meant += name[end];
  }
  return meant;
}

std::u16string toCalledLetters(std::u16string_view name) {
  constexpr std::u16string_view known[] = {u"Gamma", u"Psi"};
  bool const isKnown = std::find(std::begin(known), std::end(known), name) != std::end(known);
  return isKnown ? std::u16string(name) : toLetters(name);
}

namespace {

template <class TestT>
PlainTableS const* findLastTable(TestT test) {
  auto const& all = added().tables;
  auto const found = std::find_if(all.rbegin(), all.rend(), test);
  return found == all.rend() ? nullptr : &*found;
}

}  // namespace

PlainTableS const* findTable(char16_t close) {
  return findLastTable([=](PlainTableS const& table) { return close != u'\0' && table.close == close; });
}

PlainTableS const* findTable(std::u16string_view name) {
  return findLastTable([=](PlainTableS const& table) { return table.name == name; });
}

bool hasTables() { return !added().tables.empty(); }

}  // namespace zolt::exchange::detail

namespace zolt::exchange {

using namespace detail;

void registerPlainOperator(PlainOperatorS op) {
  AddedS& all = added();
  auto& [kept, notation] = all.operators.emplace_back(std::move(op), NotationS{});
  RuleE const rule = kept.place == PLAIN_AFTER ? RULE_POSTFIX : ruleOf(kept.precedence);
  notation = {kept.name,        formOf(kept.place), 0, {kept.written, {}}, rule,
              beforeSign(rule), tighterThan(rule)};
  // A word that is shown as another sign is only that sign beside an operand.
  bool const takesOperandBefore = kept.place == PLAIN_BETWEEN || kept.place == PLAIN_AFTER;
  notation.isName =
      kept.isName || (takesOperandBefore && !std::all_of(kept.read.begin(), kept.read.end(), isBareName));
  notation.arity = kept.place == PLAIN_ALONE     ? 0
                   : kept.place == PLAIN_CALL    ? kept.arity
                   : kept.place == PLAIN_BETWEEN ? 2
                                                 : 1;
  bool const isCall = kept.place == PLAIN_CALL;
  std::size_t const bracket = isCall ? kept.written.find(u'(') : wstring::npos;
  if (bracket != wstring::npos) {
    std::u16string_view const written = kept.written;
    notation.plain.written = written.substr(0, bracket);
    auto& [arguments, pattern] =
        all.patterns.emplace_back(readPattern(written.substr(bracket)), CallPatternS{});
    pattern = {arguments.data(), arguments.size()};
    notation.pattern = &pattern;
  }
  all.byName[notation.name] = &notation;
  for (wstring const& text : kept.read) {
    std::vector<ReadingS>& readings = all.byText[text];
    if (!isCall) {
      readings.clear();
    } else if (readings.empty()) {
      auto const [first, last] = findOurReadings(text);
      readings.assign(first, last);
    }
    readings.insert(readings.begin(), {text, &notation, {}});
  }
}

void registerPlainTable(PlainTableS table) { added().tables.push_back(std::move(table)); }

void registerPlainDoubleBars(wstring name) { added().doubleBars = std::move(name); }

void registerPlainList(PlainListS list) { added().lists.push_front(std::move(list)); }

}  // namespace zolt::exchange
