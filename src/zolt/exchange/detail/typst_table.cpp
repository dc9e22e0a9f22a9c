#include "zolt/exchange/detail/typst_table.h"

#include <deque>
#include <map>
#include <utility>
#include <vector>

#include "zolt/exchange/typst.h"

namespace zolt::exchange::detail {

namespace {

/// Of sums, integrals and their like: beside a sign they need no brackets, among factors they do.
constexpr RuleE big_rule = tighterThan(RULE_SUM);
constexpr RuleE implies_rule = ruleOf(84);
constexpr RuleE iff_rule = ruleOf(86);
constexpr RuleE intersect_rule = ruleOf(42);
constexpr RuleE union_rule = ruleOf(44);

constexpr TypstRowS rows[] = {{u"+", 2, u"@1 + &2", RULE_SUM},
                              {u"-", 2, u"@1 - &2", RULE_SUM},
                              {u"+-", 2, u"@1 plus.minus &2", RULE_SUM},
                              {u"-+", 2, u"@1 minus.plus &2", RULE_SUM},
                              {u"*", 2, u"*", RULE_PRODUCT},
                              {u"/", 2, u"frac(#1, #2)", RULE_PRODUCT},
                              {u"div", 2, u"@1 op(\"div\") &2", RULE_PRODUCT},
                              {u"mod", 2, u"@1 mod &2", RULE_PRODUCT},
                              {u"_neg", 1, u"-&1", RULE_SUM},
                              {u"_pos", 1, u"+&1", RULE_SUM},
                              {u"_posneg", 1, u"plus.minus &1", RULE_SUM},
                              {u"_negpos", 1, u"minus.plus &1", RULE_SUM},
                              {u"^", 2, u"&1^(#2)", RULE_POWER},
                              {u"!", 1, u"@1!", RULE_POSTFIX},
                              {u"_deg", 1, u"@1 degree", RULE_POSTFIX},
                              {u"_rad", 1, u"@1^\"r\"", RULE_POSTFIX},
                              {u"percent", 1, u"@1 percent", RULE_POSTFIX},
                              {u"permille", 1, u"@1 permille", RULE_POSTFIX},
                              {u"=", 2, u"@1 = &2", RULE_RELATION},
                              {u"<>", 2, u"@1 != &2", RULE_RELATION},
                              {u"<", 2, u"@1 < &2", RULE_RELATION},
                              {u"<=", 2, u"@1 <= &2", RULE_RELATION},
                              {u">", 2, u"@1 > &2", RULE_RELATION},
                              {u">=", 2, u"@1 >= &2", RULE_RELATION},
                              {u"approx", 2, u"@1 approx &2", RULE_RELATION},
                              {u"equiv", 2, u"@1 equiv &2", RULE_RELATION},
                              {u"propto", 2, u"@1 prop &2", RULE_RELATION},
                              {u"sim", 2, u"@1 tilde.op &2", RULE_RELATION},
                              {u"simeq", 2, u"@1 tilde.eq &2", RULE_RELATION},
                              {u"cong", 2, u"@1 tilde.equiv &2", RULE_RELATION},
                              {u"ll", 2, u"@1 << &2", RULE_RELATION},
                              {u"gg", 2, u"@1 >> &2", RULE_RELATION},
                              {u"mapsto", 2, u"@1 |-> &2", RULE_RELATION},
                              {u"supset", 2, u"@1 supset &2", RULE_RELATION},
                              {u"supseteq", 2, u"@1 supset.eq &2", RULE_RELATION},
                              {u"oplus", 2, u"@1 plus.circle &2", RULE_SUM},
                              {u"otimes", 2, u"@1 times.circle &2", RULE_PRODUCT},
                              {u"given", 2, u"@1 divides &2", ruleOf(88)},
                              {u"parallel", 2, u"@1 parallel &2", RULE_RELATION},
                              {u"perp", 2, u"@1 perp &2", RULE_RELATION},
                              {u"to", 2, u"@1 -> &2", RULE_RELATION},
                              {u"in", 2, u"@1 in &2", RULE_RELATION},
                              {u"notin", 2, u"@1 in.not &2", RULE_RELATION},
                              {u"subset", 2, u"@1 subset &2", RULE_RELATION},
                              {u"subseteq", 2, u"@1 subset.eq &2", RULE_RELATION},
                              {u"union", 2, u"@1 union &2", union_rule},
                              {u"setminus", 2, u"@1 without &2", union_rule},
                              {u"intersect", 2, u"@1 inter &2", intersect_rule},
                              {u"implies", 2, u"@1 => &2", implies_rule},
                              {u"iff", 2, u"@1 <=> &2", iff_rule},
                              {u"not", 1, u"not @1", RULE_NOT},
                              {u"and", 2, u"@1 and &2", RULE_AND},
                              {u"or", 2, u"@1 or &2", RULE_OR},
                              {u":=", 2, u"&1 := &2", RULE_ASSIGNMENT},
                              {u":>", 2, u"&1 triangle.stroked.r &2", RULE_ASSIGNMENT},
                              {u"_quietpos", 1, u"(#1)"},
                              {u"_PI", 0, u"pi"},
                              {u"∞", 0, u"infinity"},
                              {u"∅", 0, u"emptyset"},
                              {u"sqrt", 1, u"sqrt(#1)"},
                              {u"nthroot", 2, u"root(#2, #1)"},
                              {u"abs", 1, u"abs(#1)"},
                              {u"floor", 1, u"floor(#1)"},
                              {u"ceil", 1, u"ceil(#1)"},
                              {u"norm", 1, u"norm(#1)"},
                              {u"log10", 1, u"log(#1)"},
                              {u"log", 2, u"log_(#2)(#1)"},
                              {u"sum", 4, u"sum_(#1 = #2)^(#3) &4", big_rule},
                              {u"product", 4, u"product_(#1 = #2)^(#3) &4", big_rule},
                              {u"integral", 4, u"integral_(#1)^(#2) &3 dif #4", big_rule},
                              {u"antiderivative", 2, u"integral &1 dif #2", big_rule},
                              {u"limit", 3, u"lim_(#2 -> #3) &1", big_rule},
                              {u"where", 3, u"lr(&1 |)_(#2 = #3)", big_rule},
                              {u"diff", 2, u"frac(dif, dif #2) &1", big_rule},
                              {u"pdiff", 2, u"frac(partial, partial #2) &1", big_rule},
                              {u"nabla", 1, u"nabla @1", RULE_SIGN},
                              {u"partial", 1, u"partial @1", RULE_SIGN},
                              {u"binomial", 2, u"binom(#1, #2)"},
                              {u"conj", 1, u"overline(#1)"},
                              {u"vec", 1, u"arrow(#1)"},
                              {u"hat", 1, u"hat(#1)"},
                              {u"dot", 1, u"dot(#1)"},
                              {u"set", 0, u"{#*}"},
                              {u"asin", 1, u"arcsin(#1)"},
                              {u"acos", 1, u"arccos(#1)"},
                              {u"atan", 1, u"arctan(#1)"},
                              {u"asinh", 1, u"op(\"arsinh\")(#1)"},
                              {u"acosh", 1, u"op(\"arcosh\")(#1)"},
                              {u"atanh", 1, u"op(\"artanh\")(#1)"},
                              {u"acot", 1, u"op(\"arccot\")(#1)"},
                              {u"asec", 1, u"op(\"arcsec\")(#1)"},
                              {u"acsc", 1, u"op(\"arccsc\")(#1)"},
                              {u"acoth", 1, u"op(\"arcoth\")(#1)"},
                              {u"asech", 1, u"op(\"arsech\")(#1)"},
                              {u"acsch", 1, u"op(\"arcsch\")(#1)"},
                              {u"Re", 1, u"op(\"Re\")(#1)"},
                              {u"Im", 1, u"op(\"Im\")(#1)"},
                              {u"sin", 1, u"sin(#1)"},
                              {u"cos", 1, u"cos(#1)"},
                              {u"tan", 1, u"tan(#1)"},
                              {u"cot", 1, u"cot(#1)"},
                              {u"sec", 1, u"sec(#1)"},
                              {u"csc", 1, u"csc(#1)"},
                              {u"sinh", 1, u"sinh(#1)"},
                              {u"cosh", 1, u"cosh(#1)"},
                              {u"tanh", 1, u"tanh(#1)"},
                              {u"coth", 1, u"coth(#1)"},
                              {u"sech", 1, u"sech(#1)"},
                              {u"csch", 1, u"csch(#1)"},
                              {u"ln", 1, u"ln(#1)"},
                              {u"exp", 1, u"exp(#1)"},
                              {u"gcd", 0, u"gcd(#*)"},
                              {u"lcm", 0, u"lcm(#*)"},
                              {u"min", 0, u"min(#*)"},
                              {u"max", 0, u"max(#*)"},
                              {u"sup", 0, u"sup(#*)"},
                              {u"inf", 0, u"inf(#*)"},
                              {u"arg", 1, u"arg(#1)"},
                              {u"deg", 1, u"deg(#1)"},
                              {u"dim", 1, u"dim(#1)"},
                              {u"ker", 1, u"ker(#1)"},
                              {u"det", 1, u"det(#1)"}};

/// What an operator is found by: the last row of one wins.
struct IndexS {
  IndexS() {
    for (TypstRowS const& row : rows) byName[row.name].push_back(&row);
  }

  std::map<std::u16string_view, std::vector<TypstRowS const*>> byName;
  std::deque<TypstOperatorS> added;
  std::deque<TypstRowS> addedRows;
};

IndexS& index() {
  static IndexS tables;
  return tables;
}

}  // namespace

TypstRowS const* findTypst(std::u16string_view name, unsigned long numOperands) {
  auto const found = index().byName.find(name);
  if (found == index().byName.end()) return nullptr;
  for (auto row = found->second.rbegin(); row != found->second.rend(); ++row) {
    bool const isAny = (*row)->written.find(u"#*") != std::u16string_view::npos;
    if (isAny ? numOperands > 0 : (*row)->arity == numOperands) return *row;
  }
  return nullptr;
}

}  // namespace zolt::exchange::detail

namespace zolt::exchange {

void registerTypstOperator(TypstOperatorS op) {
  detail::IndexS& all = detail::index();
  TypstOperatorS const& kept = all.added.emplace_back(std::move(op));
  detail::TypstRowS const& row = all.addedRows.emplace_back(
      detail::TypstRowS{kept.name, kept.arity, kept.written, detail::ruleOf(kept.precedence)});
  all.byName[row.name].push_back(&row);
}

}  // namespace zolt::exchange
