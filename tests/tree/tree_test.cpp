#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "tests/support/trees.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_notation.h"
#include "zolt/ved/tree/validate_tree.h"

namespace zolt::tests {

namespace {

using namespace math::ved;

TreeT make(Node4TypeE type, oss::wstring const& text = oss::wstring()) {
  return std::make_unique<Node4C>(type, nullptr, text, 0);
}

void append(Node4C& parent, TreeT node) { parent.insertChild(parent.numChildren(), node.release()); }

std::string write(TreeNotationS const& tree) { return toUtf8(writeTreeNotation(*tree.root, tree.selection)); }

void normalise(TreeNotationS& tree) { tree.root->checkTree(tree.selection); }

TEST(NormalisationTest, Cases) {
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/check.cases")) {
    SCOPED_TRACE(one.where);
    TreeNotationS tree = readTree(one.input);
    normalise(tree);
    EXPECT_EQ(one.expected, write(tree));
    EXPECT_EQ(TREE_VALID, validateTree(*tree.root).invariant);
    normalise(tree);
    std::string const again = write({std::move(tree.root), {}});
    EXPECT_EQ(write({readTree(one.expected).root, {}}), again);
  }
}

TEST(NormalisationTest, ValidationNamesWhatIsBroken) {
  std::pair<char const*, TreeInvariantE> const faults[] = {
      {"[\"a\", \"b\"]", TREE_TEXTS_ALTERNATE},
      {"[\"a\", (]", TREE_TEXTS_ALTERNATE},
      {"[\"a\", [\"b\"], \"c\"]", TREE_ROW_ITEM_KINDS},
      {"[\"a\", (, \"b\"]", TREE_BRACKETS_BALANCE},
      {"[\"\", AO, \"b\"]", TREE_BRACKETS_BALANCE},
      {"[\"a\", AO, \"b\", ), \"\"]", TREE_AUTO_BRACKETS_AT_ENDS},
      {"[\"\", (, \"b\", AC, \"c\"]", TREE_AUTO_BRACKETS_AT_ENDS},
      {"[\"\", sqrt<[\"b\"] ; [\"c\"]>, \"\"]", TREE_OPERATOR_HOLDS_ITS_ROWS},
  };
  for (auto const& [notation, invariant] : faults) {
    EXPECT_EQ(invariant, validateTree(*readTree(notation).root).invariant) << notation;
  }
  TreeNotationS tree = readTree("[\"ab‸\"]");
  EXPECT_EQ(TREE_PLACE_IN_TEXT, validatePlace(*tree.root, {tree.selection.caret.node, 3}).invariant);
  EXPECT_EQ(TREE_PLACE_IN_TEXT,
            validatePlace(*tree.root, {readTree("[\"ab‸\"]").root->child(0), 0}).invariant);
}

TEST(NodeTest, ChildOperationsKeepParentsAndOrder) {
  TreeT row = make(NODE4_LINE);
  for (char16_t c = u'a'; c < u'h'; ++c)
    row->insertChild(row->numChildren() / 2, make(NODE4_TEXT, {c}).release());
  oss::wstring order;
  for (unsigned long i = 0; i < row->numChildren(); ++i) {
    order += row->child(i)->crefText();
    EXPECT_EQ(row.get(), row->child(i)->getParent());
    EXPECT_EQ(i, row->child(i)->findChildNumber());
  }
  EXPECT_EQ(u"bdfgeca", order);

  Node4C* const cut = row->cutChild(1);
  TreeT const holdCut(cut);
  EXPECT_EQ(7u, row->numChildren());
  EXPECT_EQ(nullptr, row->child(1));
  EXPECT_EQ(row.get(), cut->getParent());
  EXPECT_EQ(0u, cut->findChildNumber());
  row->deleteChild(1);

  TreeT const removed(row->child(0));
  row->removeChild(0);
  EXPECT_EQ(nullptr, removed->getParent());

  Node4C* const kept = row->child(2);
  row->replaceChild(2, kept);
  EXPECT_EQ(u"e", row->child(2)->crefText());
  row->replaceChild(2, make(NODE4_TEXT, u"new").release());
  EXPECT_EQ(u"new", row->child(2)->crefText());

  TreeT other = make(NODE4_LINE);
  append(*other, make(NODE4_TEXT, u"1"));
  append(*other, make(NODE4_TEXT, u"2"));
  row->spliceChildren(1, other.release());
  EXPECT_EQ("[\"f\", \"1\", \"2\", \"g\", \"new\", \"c\", \"a\"]", toUtf8(writeTreeNotation(*row)));
}

TEST(NodeTest, ChildrenComeAndGoAnywhere) {
  std::vector<Node4C> nodes(1000);
  std::mt19937 random(7);
  auto const upTo = [&](std::size_t most) { return random() % (most + 1); };
  ChildArrayC array;
  std::vector<Node4C*> model;
  auto const placeOf = [&](std::size_t i) { return model.begin() + static_cast<std::ptrdiff_t>(i); };
  for (int round = 0; round < 20000; ++round) {
    std::size_t const at = upTo(model.size());
    std::size_t const count = upTo(round % 100 == 0 ? 40 : 2);
    switch (upTo(9)) {
      case 0:
        array.resize(count);
        model.resize(count);
        break;
      case 1:
        array.shrink();
        break;
      case 2:
      case 3:
      case 4: {
        std::size_t const removed = std::min(count, model.size() - at);
        array.erase(at, removed);
        model.erase(placeOf(at), placeOf(at + removed));
        break;
      }
      default:
        array.insertSlots(at, count);
        model.insert(placeOf(at), count, nullptr);
        for (std::size_t i = at; i < at + count; ++i) array[i] = model[i] = &nodes[upTo(nodes.size() - 1)];
    }
    ASSERT_EQ(model.size(), array.size());
    ASSERT_LE(array.capacity(), 400u) << round;
    for (std::size_t i = 0; i < model.size(); ++i) ASSERT_EQ(model[i], array[i]) << round;
  }
}

TEST(NodeTest, AcceptableCharacters) {
  EXPECT_FALSE(Node4C::isAcceptable(':', true));
  EXPECT_TRUE(Node4C::isAcceptable(':', false));
  EXPECT_TRUE(Node4C::isAcceptable(' ', false));
  EXPECT_FALSE(Node4C::isAcceptable(' ', true));
  for (char16_t const c :
       oss::wstring(u"\u2013\u2212\u2219\u2260\u2264\u2265\u00BB+-*/^=<>!,;()[]`\\\"'#$%&~|?\u0007")) {
    EXPECT_FALSE(Node4C::isAcceptable(c, false)) << static_cast<unsigned>(c);
    EXPECT_FALSE(Node4C::isAcceptable(c, true)) << static_cast<unsigned>(c);
  }
  for (char16_t const c : oss::wstring(u"aZ09_.@{}\u03B8\u00AB\u2261\uFFFF")) {
    EXPECT_TRUE(Node4C::isAcceptable(c, true)) << static_cast<unsigned>(c);
  }
  EXPECT_TRUE(Node4C::isAcceptable(0x0960, false));
  EXPECT_FALSE(Node4C::isAcceptable(0x0960, true));
}

TEST(StreamTest, GoldenBytes) {
  unsigned char const golden[] = {
      1, 2, 0, 3, 1, 0, 5, 0, 0, 0, 0, 4,    3,    0,   0, 0,                         // row
      1, 2, 0, 3, 2, 0, 5, 1, 0, 0, 0, 0xB1, 0x03, 4,   0, 0,   0, 0, 2,              // "α"
      1, 2, 0, 3, 3, 0, 5, 3, 0, 0, 0, 'a',  0,    'b', 0, 's', 0, 4, 1, 0, 0, 0,     // abs
      1, 2, 0, 3, 1, 0, 5, 0, 0, 0, 0, 4,    1,    0,   0, 0,                         // its row
      1, 2, 0, 3, 2, 0, 5, 2, 0, 0, 0, 'x',  0,    'y', 0, 4,   0, 0, 0, 0, 2, 2, 2,  // "xy"
      1, 2, 0, 3, 2, 0, 5, 0, 0, 0, 0, 4,    0,    0,   0, 0,   2, 2};                // ""
  TreeNotationS const tree = readTree(R"(["α", abs<["xy"]>, ""])");
  EXPECT_EQ(oss::bytestring(golden, sizeof golden), writeBytes(*tree.root->child(0)));
}

TEST(StreamTest, ReadsBackWhatItWroteAndNothingElse) {
  TreeNotationS const tree =
      readTree(R"(["a+", /<["", (, "b", ), ""] ; ["c", P["2"], ""]>, "", error<>, "x", AC, "", AC, ""])");
  oss::bytestring const bytes = writeBytes(*tree.root);
  Node4C copy;
  ASSERT_TRUE(readBytes(bytes + oss::bytestring(3, 7), copy));
  EXPECT_EQ(writeTreeNotation(*tree.root), writeTreeNotation(copy));
  EXPECT_EQ(standardOperators().lookup(u"/"), copy.child(0)->child(1)->getOperator());

  for (std::size_t size = 0; size < bytes.size(); ++size) {
    Node4C part;
    EXPECT_FALSE(readBytes(bytes.substr(0, size), part)) << size;
    EXPECT_EQ(describe(part).find("null"), std::string::npos);
  }
}

TEST(StreamTest, NodesAreMadeByTheirId) {
  auto const made = oss::SerializableABC::createById(u"Node4C");
  ASSERT_TRUE(made && made->lookUpBase(std::u16string(u"Node4C").c_str()));
  EXPECT_EQ(made->lookUpBase(u"SerializableABC"), made.get());
  EXPECT_FALSE(made->lookUpBase(u"Node") || made->lookUpBase(nullptr));
  EXPECT_FALSE(oss::SerializableABC::createById(u"UnknownC"));
}

TEST(StreamTest, RefusesUnknownOperatorsAndRowsNestedTooDeep) {
  oss::bytestring bytes = writeBytes(*readTree(R"(["", sqrt<["x"]>, ""])").root);
  bytes[bytes.find(static_cast<unsigned char>('s'))] = 'z';
  Node4C unknown;
  EXPECT_FALSE(readBytes(bytes, unknown));
  EXPECT_EQ(u"zqrt", unknown.child(0)->child(1)->crefText());

  for (unsigned long const rows : {limits::max_nested_rows, limits::max_nested_rows + 2}) {
    TreeT top = make(NODE4_LINE);
    Node4C* row = top.get();
    for (unsigned long made = 1; made < rows; ++made, row = row->child(0)->child(0)) {
      append(*row, make(NODE4_POWER));
      append(*row->child(0), make(NODE4_LINE));
    }
    Node4C read;
    EXPECT_EQ(rows == limits::max_nested_rows, readBytes(writeBytes(*top), read));
  }
}

TEST(NotationTest, WritesWhatItReadsAndSaysWhereItStops) {
  for (char const* notation :
       {R"([""])", R"(["a\"b\\c\‸\⚑‸d⚑"])", R"(["\u0007\uD800"])",
        R"(["a", (, "b", ), "", P["2"], "", integral<["0"] ; ["1"] ; ["x⚑"] ; ["x"]>, "", error<>, ""])"}) {
    EXPECT_EQ(notation, write(readTree(notation)));
  }
  std::pair<char16_t const*, unsigned long> const broken[] = {
      {u"", 0},
      {u"[", 1},
      {u"[\"a\"", 4},
      {u"[\"a\"]x", 5},
      {u"[\"a\" \"b\"]", 5},
      {u"[nope<[]>]", 1},
      {u"[\"\\u12G4\"]", 6},
      {u"[sqrt<[\"\"]", 10},
      {u"[\"a", 3},
  };
  for (auto const& [text, stop] : broken) {
    TreeNotationS tree;
    unsigned long position = 99;
    EXPECT_FALSE(readTreeNotation(text, standardOperators(), tree, position)) << toUtf8(text);
    EXPECT_EQ(stop, position) << toUtf8(text);
    EXPECT_EQ(nullptr, tree.root);
  }
}

}  // namespace

}  // namespace zolt::tests
