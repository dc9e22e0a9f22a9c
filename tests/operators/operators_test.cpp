#include <gtest/gtest.h>

#include <set>

#include "tests/support/cases.h"
#include "zolt/algexpr/cas_engine.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/ved/operators/operator_list_repository.h"

namespace zolt::tests {
namespace {

using namespace math::ved;

class ProbeC : public OperatorBC {
 public:
  ProbeC(wstring const& name, wstring const& text) : OperatorBC(name, text, 1, 0, false, false, 0) {}
  ~ProbeC() override { gone += getName(); }

  static wstring gone;  // the names of the destroyed ones
};

wstring ProbeC::gone;

TEST(OperatorList, HoldsTheLastOfEachNameTextAndKey) {
  ProbeC::gone.clear();
  auto* const a = new ProbeC(u"a", u"t");
  auto* const b = new ProbeC(u"b", u"t");
  {
    OperatorListC list;
    EXPECT_FALSE(list.lookup(u"a") || list.lookupText(u"t") || list.lookupKey(0x100));
    list.add(a);
    list.add(a);
    list.add(b);
    EXPECT_EQ(a, list.lookup(u"a").get());
    EXPECT_EQ(b, list.lookupText(u"t").get());
    EXPECT_FALSE(list.lookup(u"t") || list.lookupText(u"a"));
    list.addKey(0x100, a);
    EXPECT_EQ(a, list.lookupKey(0x100).get());
    list.addKey(0x100, b);
    EXPECT_EQ(b, list.lookupKey(0x100).get());

    OperatorListC const copy(list);
    list.remove(u"a");
    EXPECT_EQ(u"", ProbeC::gone) << "the copy holds it";
    EXPECT_EQ(a, copy.lookup(u"a").get());
    list = copy;
    list.remove(u"b");
    EXPECT_TRUE(!list.lookup(u"b") && list.lookupText(u"t") && list.lookupKey(0x100));
  }
  EXPECT_EQ(u"ba", ProbeC::gone);
}

TEST(OperatorList, IsOneForEveryEngine) {
  math::algexpr::StandardEngineC const first;
  math::algexpr::StandardEngineC const second;
  auto const list = OperatorListRepositoryC::lookup(first);
  ASSERT_TRUE(list);
  OperatorListRepositoryC::remove(first);
  EXPECT_EQ(list, OperatorListRepositoryC::lookup(second));
}

TEST(StandardOperators, HaveCodesOfTheirOwn) {
  OperatorListC list;
  catalogue::registerStandardOperators(list);
  std::set<int> codes;
  for (auto const& [name, op] : list.crefByName()) {
    EXPECT_TRUE(op->isCoreElement() && codes.insert(op->getCode()).second) << toUtf8(name);
  }
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

  // A mark, a letter, typed parentheses and a sign that another one inserts are not commands.
  for (char16_t const* name : {u"error", u"d", u"_quietpos", u"_posneg"})
    EXPECT_TRUE(keyed.insert(name).second);
  for (auto const& entry : list.crefByName()) EXPECT_EQ(1u, keyed.count(entry.first)) << toUtf8(entry.first);
}

}  // namespace
}  // namespace zolt::tests
