#include <gtest/gtest.h>

#include <set>

#include "tests/support/cases.h"
#include "zolt/algexpr/standard_engine.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/ved/operators/operator_abs.h"
#include "zolt/ved/operators/operator_binary_infix.h"
#include "zolt/ved/operators/operator_ceil.h"
#include "zolt/ved/operators/operator_diff.h"
#include "zolt/ved/operators/operator_div.h"
#include "zolt/ved/operators/operator_error.h"
#include "zolt/ved/operators/operator_floor.h"
#include "zolt/ved/operators/operator_integral.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/operators/operator_log.h"
#include "zolt/ved/operators/operator_nth_root.h"
#include "zolt/ved/operators/operator_power.h"
#include "zolt/ved/operators/operator_sigma.h"
#include "zolt/ved/operators/operator_sqrt.h"
#include "zolt/ved/operators/operator_unary_postfix.h"
#include "zolt/ved/operators/operator_unary_prefix.h"
#include "zolt/ved/operators/operator_where.h"

namespace zolt::tests {
namespace {

using namespace math::ved;

// ---- Attributes -------------------------------------------------------------------------------------------

TEST(Operators, KeepWhatTheHostGivesAndFixTheRest) {
  constexpr int own = 7;
  struct {
    PointerTC<OperatorBC> op;
    unsigned long arity;
    int precedence;
    bool linear;
  } const cases[] = {
      {new OperatorBC(u"n", u"t", 3, own, true, true, 42), 3, own, true},
      {new OperatorAbsC(u"n", u"t", true, 42), 1, 0, false},
      {new OperatorCeilC(u"n", u"t", true, 42), 1, 0, false},
      {new OperatorFloorC(u"n", u"t", true, 42), 1, 0, false},
      {new OperatorSqrtC(u"n", u"t", true, 42), 1, 0, false},
      {new OperatorDivC(u"n", u"t", true, 42), 2, 0, false},
      {new OperatorNthRootC(u"n", u"t", true, 42), 2, 0, false},
      {new OperatorWhereC(u"n", u"t", true, 42), 3, 0, false},
      {new OperatorIntegralC(u"n", u"t", true, 42), 4, 0, false},
      {new OperatorSigmaC(u"n", u"t", true, 42), 4, 0, false},
      {new OperatorErrorC(u"n", u"t", true, 42), 0, 0, false},
      {new OperatorDiffC(u"n", u"t", own, true, 42), 2, own, false},
      {new OperatorLogC(u"n", u"t", own, true, 42), 2, own, false},
      {new OperatorUnaryPostfixC(u"n", u"t", own, true, 42), 1, own, true},
      {new OperatorUnaryPrefixC(u"n", u"t", own, false, true, 42), 1, own, true},
      {new OperatorBinaryInfixC(u"n", u"t", own, false, false, true, 42), 2, own, true},
      {new OperatorPowerC(u"n", u"t", own, wstring(), true, true, 42), 2, own, false},
      {new OperatorPowerC(u"n", u"t", own, u"2", true, true, 42), 1, own, false},
      {new OperatorPowerC(u"n", u"t", own, u"e", false, true, 42), 1, own, false},
  };
  for (auto const& one : cases) {
    SCOPED_TRACE(&one - cases);
    EXPECT_EQ(u"n", one.op->getName());
    EXPECT_EQ(u"t", one.op->getText());
    EXPECT_EQ(one.arity, one.op->getArity());
    EXPECT_EQ(one.precedence, one.op->getPrecedence());
    EXPECT_EQ(one.linear, one.op->isLinear());
    EXPECT_TRUE(one.op->isCoreElement());
    EXPECT_EQ(42, one.op->getCode());
  }
}

TEST(Operators, SpacedSignsShowBlanks) {
  EXPECT_EQ(u" + ", OperatorBinaryInfixC(u"n", u"+", 1, true, false, false, 0).crefDisplayText());
  EXPECT_EQ(u"+", OperatorBinaryInfixC(u"n", u"+", 1, false, true, false, 0).crefDisplayText());
  EXPECT_EQ(u"- ", OperatorUnaryPrefixC(u"n", u"-", 1, true, false, 0).crefDisplayText());
  EXPECT_EQ(u"-", OperatorUnaryPrefixC(u"n", u"-", 1, false, false, 0).crefDisplayText());
  EXPECT_EQ(u"+", OperatorBinaryInfixC(u"n", u"+", 1, true, false, false, 0).getText());
}

// ---- Table ------------------------------------------------------------------------------------------------

class ProbeC : public OperatorBC {
 public:
  ProbeC(wstring const& name, wstring const& text) : OperatorBC(name, text, 1, 0, false, false, 0) {}
  ~ProbeC() override { gone += getName(); }

  unsigned long countHolders() const {
    reference();
    return dereference();
  }

  static wstring gone;  // the names of the destroyed ones
};

wstring ProbeC::gone;

TEST(OperatorList, LastRegistrationWinsInEachTableByItself) {
  ProbeC::gone.clear();
  auto* const a = new ProbeC(u"a", u"t");
  auto* const b = new ProbeC(u"b", u"t");
  OperatorListC list;
  EXPECT_FALSE(list.lookup(u"a"));
  EXPECT_FALSE(list.lookupText(u"t"));
  EXPECT_FALSE(list.lookupKey(0x100));

  list.add(a);
  EXPECT_EQ(2u, a->countHolders());
  list.add(a);
  EXPECT_EQ(2u, a->countHolders());
  list.add(b);
  EXPECT_EQ(a, list.lookup(u"a").get());
  EXPECT_EQ(b, list.lookup(u"b").get());
  EXPECT_EQ(b, list.lookupText(u"t").get());
  EXPECT_FALSE(list.lookup(u"t"));
  EXPECT_FALSE(list.lookupText(u"a"));
  EXPECT_EQ(1u, a->countHolders());

  list.addKey(0x100, a);
  list.addKey(0x100, a);
  EXPECT_EQ(2u, a->countHolders());
  EXPECT_EQ(a, list.lookupKey(0x100).get());
  list.addKey(0x100, b);
  EXPECT_EQ(b, list.lookupKey(0x100).get());
  EXPECT_EQ(u"", ProbeC::gone);

  list.remove(u"a");
  EXPECT_EQ(u"a", ProbeC::gone);
  list.remove(u"a");
  list.remove(u"b");
  EXPECT_FALSE(list.lookup(u"b"));
  EXPECT_EQ(b, list.lookupText(u"t").get());
  EXPECT_EQ(b, list.lookupKey(0x100).get());
  EXPECT_TRUE(list.crefByName().empty());

  list.addKey(0x101, new ProbeC(u"c", u"u"));
  list.addKey(0x101, b);
  EXPECT_EQ(u"ac", ProbeC::gone);
}

TEST(OperatorList, CopiesHoldTheirOperatorsAndLetGoKeysFirst) {
  ProbeC::gone.clear();
  {
    OperatorListC list;
    list.addKey(1, new ProbeC(u"k", u"1"));
    list.add(new ProbeC(u"n", u"2"));
    list.add(new ProbeC(u"t", u"2"));
    list.remove(u"t");
    EXPECT_EQ(u"", ProbeC::gone);
    {
      OperatorListC copy(list);
      copy.remove(u"n");
      EXPECT_TRUE(list.lookup(u"n"));
      EXPECT_TRUE(copy.lookupText(u"2"));
      OperatorListC assigned;
      assigned.add(new ProbeC(u"x", u"x"));
      assigned = copy;
      EXPECT_EQ(u"x", ProbeC::gone);
      EXPECT_TRUE(assigned.lookupKey(1));
      EXPECT_FALSE(assigned.lookup(u"n"));
    }
    EXPECT_EQ(u"x", ProbeC::gone);
    auto const* const kept = static_cast<ProbeC const*>(list.lookup(u"n").get());
    EXPECT_EQ(1u, kept->countHolders());
  }
  EXPECT_EQ(u"xktn", ProbeC::gone);
}

TEST(OperatorList, IsOneForEveryEngine) {
  math::algexpr::StandardEngineC const first;
  math::algexpr::StandardEngineC const second;
  auto const list = OperatorListRepositoryC::lookup(first);
  ASSERT_TRUE(list);
  OperatorListRepositoryC::remove(first);
  EXPECT_EQ(list, OperatorListRepositoryC::lookup(second));
}

// ---- Standard operators -----------------------------------------------------------------------------------

std::string describe(OperatorBC const& op) {
  std::string text = "\"" + toUtf8(op.getText()) + "\" " + std::to_string(op.getArity()) + " " +
                     std::to_string(op.getPrecedence());
  if (op.isLinear()) text += " linear";
  if (op.isConstruct()) text += " construct";
  return text;
}

TEST(StandardOperators, AreRegisteredAsListed) {
  OperatorListC list;
  catalogue::registerStandardOperators(list);
  std::set<wstring> names;
  std::set<int> codes;
  for (CaseS const& line : readCases(ZOLT_TEST_DATA "/catalogue.cases")) {
    auto const op = list.lookup(toText(line.input));
    ASSERT_TRUE(op) << line.where;
    EXPECT_EQ(line.expected, describe(*op)) << line.where;
    EXPECT_TRUE(op->isCoreElement());
    names.insert(op->getName());
    codes.insert(op->getCode());
  }
  EXPECT_EQ(names.size(), list.crefByName().size());
  EXPECT_EQ(names.size(), codes.size());
}

TEST(StandardOperators, TextsReadAsTheLaterOfTwo) {
  OperatorListC list;
  catalogue::registerStandardOperators(list);
  std::pair<char16_t const*, char16_t const*> const texts[] = {{u"log", u"log10"}, {u"d", u"d"},
                                                               {u"+", u"_pos"},    {u"\u2212", u"_neg"},
                                                               {u"/", u"/"},       {u"\u0960", u"_PI"}};
  for (auto const& [text, name] : texts) EXPECT_EQ(list.lookup(name), list.lookupText(text)) << toUtf8(name);
  for (char16_t const* name : {u"log", u"diff", u"/"}) EXPECT_FALSE(list.lookup(name)->isLinear());
}

TEST(StandardOperators, HaveAKeyWhenTheyCanBeInserted) {
  OperatorListC list;
  catalogue::registerStandardOperators(list);
  std::set<wstring> keyed;
  std::set<unsigned long> keys;
  for (auto const& entry : catalogue::standardOperators()) {
    EXPECT_GE(entry.key, 0x100u);
    keys.insert(entry.key);
    keyed.insert(entry.name);
    ASSERT_TRUE(list.lookupKey(entry.key)) << toUtf8(entry.name);
    EXPECT_EQ(entry.name, list.lookupKey(entry.key)->getName());
  }
  EXPECT_EQ(keys.size(), catalogue::standardOperators().size());
  EXPECT_EQ(keys.size(), *keys.rbegin() - *keys.begin() + 1);
  for (unsigned long const key : {8ul, 12ul, 37ul, 38ul, 39ul, 40ul, 46ul, 153ul, 206ul})
    EXPECT_FALSE(list.lookupKey(key)) << key;

  // A mark, a letter and typed parentheses are not commands.
  for (char16_t const* name : {u"error", u"d", u"_quietpos"}) EXPECT_TRUE(keyed.insert(name).second);
  for (auto const& entry : list.crefByName()) EXPECT_EQ(1u, keyed.count(entry.first)) << toUtf8(entry.first);
}

}  // namespace
}  // namespace zolt::tests
