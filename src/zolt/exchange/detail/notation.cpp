#include "zolt/exchange/detail/notation.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

#include "zolt/common/signs.h"

namespace zolt::exchange::detail {

using namespace math::common;

namespace {

constexpr NotationS infix(std::u16string_view name, RuleE rule, RuleE left, RuleE right, char16_t sign,
                          PlainFormS plain) {
  return {name, FORM_INFIX, 2, rule, left, right, sign, plain};
}

constexpr NotationS sum(std::u16string_view name, PlainFormS plain) {
  return infix(name, RULE_SUM, RULE_SUM, RULE_PRODUCT, u'\0', plain);
}

constexpr NotationS product(std::u16string_view name, PlainFormS plain) {
  return infix(name, RULE_PRODUCT, RULE_PRODUCT, RULE_SIGN, u'\0', plain);
}

constexpr NotationS relation(std::u16string_view name, char16_t sign, PlainFormS plain) {
  return infix(name, RULE_RELATION, RULE_RELATION, RULE_SUM, sign, plain);
}

constexpr NotationS assignment(std::u16string_view name, char16_t sign, PlainFormS plain) {
  return infix(name, RULE_ASSIGNMENT, RULE_OR, RULE_OR, sign, plain);
}

constexpr NotationS prefix(std::u16string_view name, RuleE rule, PlainFormS plain) {
  return {name, FORM_PREFIX, 1, rule, rule, rule, u'\0', plain};
}

constexpr NotationS postfix(std::u16string_view name, std::u16string_view sign) {
  return {name, FORM_POSTFIX, 1, RULE_POSTFIX, RULE_POSTFIX, RULE_POSTFIX, u'\0', {sign, sign}};
}

constexpr NotationS function(std::u16string_view name, unsigned long arity, PlainFormS plain) {
  return {name, FORM_FUNCTION, arity, RULE_ATOM, RULE_ASSIGNMENT, RULE_ASSIGNMENT, u'\0', plain};
}

constexpr NotationS function(std::u16string_view name) { return function(name, 1, {name, name}); }

// One row an operator.
constexpr NotationS notations[] = {
    sum(u"+", {u"+", u"+"}),
    sum(u"-", {u"-", u"-"}),
    product(u"*", {u"*", u"*"}),
    product(u"/", {u"/", u"/"}),
    product(u"div", {u" div ", u"div"}),
    product(u"mod", {u" mod ", u"mod"}),
    prefix(u"_pos", RULE_SIGN, {u"+", {}}),
    prefix(u"_neg", RULE_SIGN, {u"-", {}}),
    infix(u"^", RULE_POWER, RULE_POSTFIX, RULE_POWER, u'\0', {u"^", u"^ **"}),
    postfix(u"!", u"!"),
    postfix(u"_deg", u"°"),
    postfix(u"_rad", u"ʳ"),
    relation(u"=", u'\0', {u" = ", u"= =="}),
    relation(u"<>", not_equal_sign, {u" <> ", u"<> !="}),
    relation(u"<", u'\0', {u" < ", u"<"}),
    relation(u"<=", less_or_equal_sign, {u" <= ", u"<="}),
    relation(u">", u'\0', {u" > ", u">"}),
    relation(u">=", greater_or_equal_sign, {u" >= ", u">="}),
    prefix(u"not", RULE_NOT, {u"not ", u"not ¬"}),
    infix(u"and", RULE_AND, RULE_AND, RULE_NOT, u'\0', {u" and ", u"and ∧ &&"}),
    infix(u"or", RULE_OR, RULE_OR, RULE_AND, u'\0', {u" or ", u"or ∨"}),
    assignment(u":=", u'\0', {u" := ", u":= ≔"}),
    assignment(u":>", store_sign, {u" :> ", u":> →"}),
    {bracket_name, FORM_BRACKETS, 1, RULE_ATOM, RULE_ASSIGNMENT, RULE_ASSIGNMENT, u'\0', {}},
    {pi_name, FORM_CONSTANT, 0, RULE_ATOM, RULE_ATOM, RULE_ATOM, pi_sign, {u"pi", u"pi Pi"}},
    function(u"sqrt", 1, {u"sqrt", u"sqrt √"}),
    function(u"nthroot", 2, {u"nthroot", u"nthroot root cbrt:3 ∛:3 ∜:4"}),
    function(u"abs", 1, {u"abs", u"abs", u"||"}),
    function(u"floor", 1, {u"floor", u"floor", u"⌊⌋"}),
    function(u"ceil", 1, {u"ceil", u"ceil ceiling", u"⌈⌉"}),
    function(u"log", 2, {u"log", u"log"}),
    function(u"log10", 1, {u"log", u"log log10"}),
    function(u"diff", 2, {u"diff", u"diff"}),
    function(u"integral", 4, {u"int", u"int integral"}),
    function(u"sum", 4, {u"sum", u"sum"}),
    function(u"where", 3, {u"where", u"where"}),
    function(u"error", 0, {u"error", u"error"}),
    function(u"sin", 1, {u"sin", u"sin", {}, u"asin"}),
    function(u"cos", 1, {u"cos", u"cos", {}, u"acos"}),
    function(u"tan", 1, {u"tan", u"tan", {}, u"atan"}),
    function(u"asin", 1, {u"arcsin", u"arcsin asin"}),
    function(u"acos", 1, {u"acos", u"acos arccos"}),
    function(u"atan", 1, {u"arctan", u"arctan atan"}),
    function(u"sinh"),
    function(u"cosh"),
    function(u"tanh"),
    function(u"ln"),
    function(u"exp")};

struct LetterS {
  std::u16string_view name;
  std::u16string_view letter;
};

constexpr LetterS greek_letters[] = {
    {u"alpha", u"α"},  {u"beta", u"β"},   {u"gamma", u"γ"}, {u"delta", u"δ"},   {u"epsilon", u"ε"},
    {u"zeta", u"ζ"},   {u"eta", u"η"},    {u"theta", u"θ"}, {u"iota", u"ι"},    {u"kappa", u"κ"},
    {u"lambda", u"λ"}, {u"mu", u"μ"},     {u"nu", u"ν"},    {u"xi", u"ξ"},      {u"omicron", u"ο"},
    {u"rho", u"ρ"},    {u"sigma", u"σ"},  {u"tau", u"τ"},   {u"upsilon", u"υ"}, {u"phi", u"φ"},
    {u"chi", u"χ"},    {u"psi", u"ψ"},    {u"omega", u"ω"}, {u"Gamma", u"Γ"},   {u"Delta", u"Δ"},
    {u"Theta", u"Θ"},  {u"Lambda", u"Λ"}, {u"Xi", u"Ξ"},    {u"Sigma", u"Σ"},   {u"Upsilon", u"Υ"},
    {u"Phi", u"Φ"},    {u"Psi", u"Ψ"},    {u"Omega", u"Ω"}};

template <class TableT, class TestT>
auto find(TableT const& table, TestT test) {
  auto const* const found = std::find_if(std::begin(table), std::end(table), test);
  return found == std::end(table) ? nullptr : found;
}

std::vector<ReadingS> makeReadings() {
  std::vector<ReadingS> readings;
  for (NotationS const& notation : notations) {
    if (notation.sign != u'\0') readings.push_back({{&notation.sign, 1}, &notation, {}});
    std::u16string_view rest = notation.plain.read;
    while (!rest.empty()) {
      std::u16string_view const text = rest.substr(0, rest.find(u' '));
      rest.remove_prefix(std::min(text.size() + 1, rest.size()));
      std::size_t const colon = text.size() > 2 ? text.find(u':', 1) : text.npos;
      bool const adds = colon != text.npos;
      readings.push_back(
          {text.substr(0, colon), &notation, adds ? text.substr(colon + 1) : std::u16string_view()});
    }
  }
  std::sort(readings.begin(), readings.end(),
            [](ReadingS const& a, ReadingS const& b) { return a.text < b.text; });
  return readings;
}

/// The readings of `text`, as a range in the order of the texts.
std::pair<ReadingS const*, ReadingS const*> findReadings(std::u16string_view text) {
  static std::vector<ReadingS> const readings = makeReadings();
  auto const* const end = readings.data() + readings.size();
  auto const* const first =
      std::lower_bound(readings.data(), end, text, [](ReadingS const& r, auto t) { return r.text < t; });
  return {first, std::find_if(first, end, [&](ReadingS const& r) { return r.text != text; })};
}

}  // namespace

NotationS const* findNotation(std::u16string_view name) {
  return find(notations, [&](NotationS const& notation) { return notation.name == name; });
}

NotationS const* findInfix(std::u16string_view name) {
  NotationS const* const found = findNotation(name);
  return found && found->form == FORM_INFIX ? found : nullptr;
}

ReadingS const* findReading(std::u16string_view text) {
  auto const [first, last] = findReadings(text);
  return first == last ? nullptr : first;
}

ReadingS const* findFunction(std::u16string_view text, unsigned long numArguments) {
  auto const [first, last] = findReadings(text);
  auto const found = std::find_if(first, last, [&](ReadingS const& reading) {
    unsigned long const arity = reading.notation->arity;
    bool const fits = arity == 0 || numArguments + (reading.addedArgument.empty() ? 0 : 1) == arity;
    return reading.notation->form == FORM_FUNCTION && fits;
  });
  return found == last ? nullptr : found;
}

bool isFunction(std::u16string_view text) {
  ReadingS const* const reading = findReading(text);
  return reading && reading->notation->form == FORM_FUNCTION;
}

NotationS const* findBrackets(char16_t sign) {
  return find(notations, [&](NotationS const& notation) {
    return notation.plain.brackets.find(sign) != std::u16string_view::npos;
  });
}

std::u16string_view findGreekLetter(std::u16string_view name) {
  LetterS const* const found = find(greek_letters, [&](LetterS const& entry) { return entry.name == name; });
  return found ? found->letter : std::u16string_view();
}

}  // namespace zolt::exchange::detail
