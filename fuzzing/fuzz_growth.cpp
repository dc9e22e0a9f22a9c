// Formulas of one pattern in two sizes. Whatever is done to the larger one takes steps in proportion to its
// length, so that nobody can stop a program with a formula that is not even large.

#include <algorithm>
#include <memory>
#include <vector>

#include "fuzzing/bytes_text.h"
#include "fuzzing/growth.h"
#include "fuzzing/step_count.h"
#include "fuzzing/trip.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/formula_field.h"
#include "zolt/oss/binary_stream.h"
#include "zolt/oss/binary_string_stream.h"
#include "zolt/script/event_script.h"
#include "zolt/sheet/sheet_text.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/operators/operator_list_repository.h"

namespace zolt::fuzz {

using namespace exchange;
using namespace field;
using namespace math::ved;
using surfaces::RecordingGraphicsC;

namespace {

enum ReaderE : std::uint8_t {
  READ_PREFIX,
  READ_PLAIN,
  READ_TYPED,
  READ_NOTATION,
  READ_SHEET,
  READ_SCRIPT,
  READ_LATEX,
  READER_COUNT
};

// The larger formula is so many times as long.
constexpr std::size_t growth = 4;
// What is nested is copied at each of its levels, whose number is limited. Whoever reads it anew there takes
// more.
constexpr unsigned long steps_per_character = 10000;

/// A text of any length: start, so many times before, middle, as many times after, end.
struct PatternS {
  ReaderE reader = READ_PREFIX;
  wstring start, before, middle, after, end;

  wstring make(std::size_t length) const {
    std::size_t const count = length / (before.size() + after.size());
    wstring text = start;
    for (std::size_t i = 0; i < count; ++i) text += before;
    text += middle;
    for (std::size_t i = 0; i < count; ++i) text += after;
    return text + end;
  }
};

PatternS readPattern(std::uint8_t const* data, std::size_t size) {
  PatternS pattern;
  if (size == 0) return pattern;
  pattern.reader = static_cast<ReaderE>(data[0] % READER_COUNT);
  wstring* const parts[] = {&pattern.start, &pattern.before, &pattern.middle, &pattern.after, &pattern.end};
  std::size_t part = 0;
  for (char16_t const c : toText(data + 1, size - 1)) {
    if (c == 0 && part < 4) {
      ++part;
    } else {
      *parts[part] += c;
    }
  }
  return pattern;
}

BytesT toSeed(PatternS const& pattern) {
  BytesT seed{pattern.reader};
  for (wstring const& part : {pattern.start, pattern.before, pattern.middle, pattern.after, pattern.end}) {
    std::string const bytes = toBytes(part);
    seed.insert(seed.end(), bytes.begin(), bytes.end());
    seed.push_back(0);
  }
  seed.pop_back();
  return seed;
}

/// The steps of each thing that was done, in order.
class StagesC {
 public:
  struct StageS {
    char const* name;
    unsigned long steps;
  };

  template <class ActT>
  void run(char const* name, ActT const& act) {
    unsigned long const start = countedSteps;
    act();
    stages_.push_back({name, countedSteps - start});
  }
  std::vector<StageS> const& all() const { return stages_; }

 private:
  std::vector<StageS> stages_;
};

/// Rows of many items, tables of many rows, and documents of many parts. A piece of a table is long enough
/// that both lengths have no more cells than a table may.
PatternS const rows[] = {
    {READ_NOTATION, u"[\"", u"a+", u"\u2038", u"b+", u"c\"]"},
    {READ_NOTATION, u"[\"", u"\u2212", u"\u2038", u"\u2212", u"x\"]"},
    {READ_NOTATION, u"[", u"\"+\", /<[\"a\"] ; [\"b\"]>, ", u"\"+\u2038\"", u", sqrt<[\"a\"]>, \"+\"",
     u", sqrt<[\"1\"]>, \"\"]"},
    {READ_NOTATION, u"[", u"\"x\", P[\"2\"], ", u"\"x\u2038x\"", u", P[\"2\"], \"x\"", u"]"},
    {READ_NOTATION, u"[", u"\"alpha 2x\", sqrt<[\"y\"]>, ", u"\"x\u2038y\"", u", sqrt<[\"y\"]>, \"alpha\"",
     u"]"},
    {READ_NOTATION, u"[", u"\"+\", (, \"a\", ), ", u"\"+\u2038\"", u", (, \"a\", ), \"+\"",
     u", (, \"a\", ), \"\"]"},
    {READ_NOTATION, u"[", u"\"\", (, ", u"\"a\u2038b\"", u", AC, \"\"", u"]"},
    {READ_NOTATION, u"[", u"\"\", (, ", u"\"a\u2038b\"", u", ), \"!\"", u"]"},
    {READ_NOTATION, u"[", u"\"\", (, ", u"\"a\u2038b\"", u", ), \"\", P[\"2\"], \"\"", u"]"},
    {READ_NOTATION, u"[\"\", sqrt<[\"\", (, \"a\", AC, \"\"]>, ", u"\"+\", sqrt<[\"y\"]>, ", u"\"+\u2038\"",
     u", sqrt<[\"y\"]>, \"+\"", u", sqrt<[\"y\"]>, \"\"]"},
    {READ_PREFIX, u"f(x", {}, {}, u",x", u")"},
    {READ_PREFIX, u"list(1", {}, {}, u",list(1)", u")"},
    {READ_PREFIX, {}, u"a", {}, {}, {}},
    {READ_PREFIX, {}, u"7", u".", u"3", {}},
    {READ_PREFIX, {}, u"matrix(list(", u"x", u",b),list(c,d))", {}},
    {READ_PREFIX, {}, u"det(list(a,b),list(c,+(1,", u"x", u")))", {}},
    {READ_PREFIX, {}, u"cases(list(", u"x", u",c),list(y,d))", {}},
    {READ_PREFIX, u"matrix(list(1)", {}, {}, u",list(/(1,a))", u")"},
    {READ_PREFIX, u"set(1", {}, {}, u",/(1,a)", u")"},
    {READ_PLAIN, {}, u"x ", {}, {}, u"x"},
    {READ_PLAIN, {}, u"|", u"x", u"|", {}},
    {READ_PLAIN, u"[1", {}, {}, u";1+a+2+b", u"]"},
    {READ_PLAIN, {}, u"[", u"x", u",1;2,3]", {}},
    {READ_PLAIN, {}, u"2^", {}, {}, u"x"},
    {READ_PLAIN, {}, u"not ", u"x", {}, {}},
    {READ_LATEX, {}, u"x ", {}, {}, u"x"},
    {READ_LATEX, u"\\begin{matrix}1", {}, {}, u"\\\\1+a+b+c", u"\\end{matrix}"},
    {READ_LATEX, {}, u"\\begin{pmatrix}", u"x", u"&1\\\\2&3\\end{pmatrix}", {}},
    {READ_LATEX, {}, u"\\frac", u"x", u"y", {}},
    {READ_LATEX, {}, u"\\int x ", u"x", u"dx", {}},
    {READ_LATEX, {}, u"x_{", u"x", u"}", {}},
    {READ_LATEX, u"\\int ", u"\\frac{", u"dx", u"}2", {}},
    {READ_LATEX, u"\\frac{d", u" y", {}, {}, u"}{dx}"},
    {READ_LATEX, u"\\int ", u"d", u"x", {}, {}},
    {READ_TYPED, {}, u"x)", {}, {}, {}},
    {READ_TYPED, {}, u"a b+", {}, {}, {}},
    {READ_SHEET, u"zolt-sheet 1\n", u"text a\n", {}, {}, {}},
    {READ_SHEET, u"zolt-sheet 1\n", u"formula x\ntree [\"x+\"]\n", {}, {}, {}},
    {READ_SHEET, u"zolt-sheet 1\nformula ", u"*(x,", u"x", u")", u"\nend 1\n"},
    {READ_SHEET, u"zolt-sheet 1\n", u"text ", {}, u"\nwhat", {}},
    {READ_SCRIPT, {}, u"char x key left undo ", {}, {}, {}},
    {READ_SCRIPT, u"type \"", u"\\u0041", {}, u"b", u"\""},
};

/// The place in the middle of the row in the middle of …
PlaceS findMiddle(Node4C const& root) {
  Node4C const* node = &root;
  while (node->numChildren() > 0) node = node->child(node->numChildren() / 2);
  return node->getType() == NODE4_TEXT ? PlaceS{node, static_cast<unsigned>(node->sizeText() / 2)} : PlaceS();
}

/// What a person does to a formula, and what a host asks then.
void playField(FormulaFieldC& field, StagesC& stages) {
  auto const run = [&](char const* name, auto const& act) {
    stages.run(name, [&] {
      act();
      field.takeChange();
      field.refView().getExpressionSize();
    });
  };
  auto const runCommand = [&](char const* name, CommandE command) { run(name, [&] { field.run(command); }); };
  run("lay out", [] {});
  run("draw", [&] { field.refView().display(0, 0); });
  run("ask", [&] { (void)field.diagnose(); });
  runCommand("to the start", COMMAND_FORMULA_START);
  run("type at the start", [&] { field.typeCharacter(u'x'); });
  runCommand("undo", COMMAND_UNDO);
  run("place in the middle", [&] {
    if (PlaceS const middle = findMiddle(field.crefView().crefRoot())) field.setSelection({middle, middle});
  });
  run("type in the middle", [&] { field.typeCharacter(u'('); });
  runCommand("delete in the middle", COMMAND_DELETE_LEFT);
  run("insert a root in the middle", [&] { field.insertOperator(u"sqrt"); });
  runCommand("up", COMMAND_UP);
  runCommand("select a word", COMMAND_SELECT_WORD_LEFT);
  runCommand("grow the selection", COMMAND_GROW_SELECTION);
  runCommand("to the end", COMMAND_FORMULA_END);
  run("type at the end", [&] { field.typeCharacter(u'+'); });
  runCommand("delete at the end", COMMAND_DELETE_LEFT);
  run("ask what can be done", [&] {
    for (unsigned command = 0; command < COMMAND_COUNT; ++command)
      field.isEnabled(static_cast<CommandE>(command));
  });
  runCommand("select to the start", COMMAND_SELECT_FORMULA_START);
  run("show the selection", [&] { field.getSelectionRectangles(); });
  run("put it under a root", [&] { field.insertOperator(u"sqrt"); });
  runCommand("undo the root", COMMAND_UNDO);
  runCommand("redo the root", COMMAND_REDO);
  runCommand("select all", COMMAND_SELECT_ALL);
  runCommand("cut", COMMAND_CUT);
  runCommand("paste", COMMAND_PASTE);
  run("write the tree", [&] { field.writeNotation(); });
  runCommand("undo the paste", COMMAND_UNDO);
  runCommand("undo the cut", COMMAND_UNDO);
  runCommand("clear", COMMAND_CLEAR);
}

/// What programs do with an expression.
void playExpression(PointerTC<AlgebraicExpressionC> const& expression, StagesC& stages) {
  if (!expression) return;
  wstring text;
  stages.run("write prefix", [&] { text = expression->toPrefixString(); });
  PointerTC<AlgebraicExpressionC> again;
  stages.run("read prefix", [&] { again = AlgebraicExpressionC::fromPrefixString(text); });
  stages.run("compare", [&] { (void)expression->equals(*again); });
  stages.run("destroy the expression", [&] { again = nullptr; });
  stages.run("write readable text", [&] { toPlainText(*expression, exchange::PLAIN_TEXT_READABLE); });
  stages.run("write plain text", [&] { text = toPlainText(*expression); });
  stages.run("read plain text", [&] { again = exchange::fromPlainText(text, nullptr); });
  stages.run("write LaTeX", [&] { text = exchange::toLatex(*expression); });
  stages.run("read LaTeX", [&] { again = exchange::fromLatex(text, nullptr); });
  std::unique_ptr<Node4C> tree;
  stages.run("show", [&] {
    tree.reset(Node4C::fromAlgebraicExpression(expression, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC));
  });
  RecordingGraphicsC const surface(RecordingGraphicsC::LOG_NOTHING);
  stages.run("lay the tree out", [&] { tree->layout(surface); });
  stages.run("draw the tree", [&] { tree->display(surface, 0, 0, nullptr); });
  std::unique_ptr<Node4C> copy;
  stages.run("copy the tree", [&] { copy.reset(tree->clone()); });
  stages.run("normalise the tree", [&] { copy->checkTree(); });
  bytestring bytes;
  stages.run("write bytes", [&] { bytes = writeBytes(*tree); });
  stages.run("read bytes", [&] {
    PointerTC<oss::BinaryStringInputStreamC> const held(new oss::BinaryStringInputStreamC(bytes));
    PointerTC<oss::ObjectInputStreamABC> in(new oss::BinaryInputStreamC(held));
    copy = std::make_unique<Node4C>();
    copy->readObject(in);
  });
  stages.run("convert the tree", [&] { (void)tree->getAlgebraicExpression(nullptr); });
  stages.run("destroy the tree", [&] { tree = nullptr; });
}

void play(PatternS const& pattern, std::size_t length, StagesC& stages) {
  wstring const text = pattern.make(length);
  FormulaFieldC field(new RecordingGraphicsC(RecordingGraphicsC::LOG_NOTHING));
  if (pattern.reader == READ_SCRIPT) {
    EventScriptT script;
    unsigned long position = 0;
    stages.run("read the script", [&] { script::readEventScript(text, script, position); });
    stages.run("write the script", [&] { script::writeEventScript(script); });
    return;
  }
  if (pattern.reader == READ_SHEET) {
    sheet::SheetT sheet;
    sheet::SheetErrorS error;
    stages.run("read the sheet", [&] { readSheet(text, sheet, error); });
    stages.run("salvage the sheet", [&] { salvageSheet(text, sheet); });
    stages.run("write the sheet", [&] { writeSheet(sheet); });
    return;
  }
  PointerTC<AlgebraicExpressionC> expression;
  stages.run("read", [&] {
    switch (pattern.reader) {
      case READ_PREFIX:
        expression = AlgebraicExpressionC::fromPrefixString(text);
        break;
      case READ_PLAIN:
        expression = exchange::fromPlainText(text, nullptr);
        break;
      case READ_LATEX:
        expression = exchange::fromLatex(text, nullptr);
        break;
      case READ_NOTATION:
        (void)field.setNotation(text);
        break;
      default:
        field.insertText(text);
    }
  });
  if (pattern.reader == READ_PREFIX || pattern.reader == READ_PLAIN || pattern.reader == READ_LATEX) {
    if (!expression) return;
    playExpression(expression, stages);
    stages.run("put in", [&] { field.setExpression(expression); });
  } else {
    playExpression(field.diagnose().expression, stages);
  }
  playField(field, stages);
  stages.run("save", [&] {
    field.run(COMMAND_UNDO);
    wstring const prefix = expression ? expression->toPrefixString() : wstring();
    sheet::SheetT const sheet{sheet::makeFormulaLine(prefix, field.writeNotation())};
    writeSheet(sheet);
  });
}

/// The call of `op` with `inner` as one of its arguments, and names as the others.
wstring makeCall(OperatorBC const& op, unsigned long argument, wstring const& inner) {
  wstring call = op.getName() + u"(";
  for (unsigned long i = 0; i < op.getArity(); ++i) {
    if (i > 0) call += u',';
    call += i == argument ? inner : wstring(1, static_cast<char16_t>(u'a' + i));
  }
  return call + u")";
}

wstring const hole = u"hole";

/// A pattern that nests `text` at the hole in it.
PatternS nest(ReaderE reader, wstring const& text, wstring const& open, wstring const& close) {
  std::size_t const at = text.find(hole);
  if (at == wstring::npos) return {};
  return {reader, {}, text.substr(0, at) + open, u"x", close + text.substr(at + hole.size()), {}};
}

}  // namespace

// Every operator nested in every argument of itself, and alternately in two arguments of two operators.
std::vector<BytesT> growthSeeds() {
  prepare();
  auto const operators =
      OperatorListRepositoryC::lookup(math::algexpr::CASSessionBC::getSession()->getEngine());
  OperatorBC const* const sum = operators->lookup(u"+").get();
  std::vector<wstring> nestings;
  for (OperatorBC const* const op : operators->crefInOrder()) {
    unsigned long const last = op->getArity() - 1;
    if (op->getArity() == 0) continue;
    for (unsigned long i = 0; i <= last; ++i) nestings.push_back(makeCall(*op, i, hole));
    if (last > 0) nestings.push_back(makeCall(*op, 0, makeCall(*op, last, hole)));
    nestings.push_back(makeCall(*sum, 1, makeCall(*op, last, hole)));
    nestings.push_back(makeCall(*sum, 0, makeCall(*op, 0, hole)));
  }
  std::vector<BytesT> seeds;
  for (wstring const& prefix : nestings) {
    std::vector<PatternS> patterns{nest(READ_PREFIX, prefix, {}, {})};
    if (auto const expression = AlgebraicExpressionC::fromPrefixString(prefix)) {
      wstring const plain = toPlainText(*expression);
      patterns.push_back(nest(READ_PLAIN, plain, {}, {}));
      patterns.push_back(nest(READ_LATEX, toLatex(*expression), u"{", u"}"));
      patterns.push_back(nest(READ_TYPED, plain, u"(", u")"));
    }
    for (PatternS const& pattern : patterns) {
      if (!pattern.middle.empty()) seeds.push_back(toSeed(pattern));
    }
  }
  for (PatternS const& pattern : rows) seeds.push_back(toSeed(pattern));
  return seeds;
}

bool showsTree(BytesT const& seed) { return seed[0] == READ_PREFIX || seed[0] == READ_NOTATION; }

std::vector<BytesT> nestedSeeds(std::string const& target, std::size_t length) {
  constexpr char const* readers[READER_COUNT] = {"prefix", "plain",  "infix", "notation",
                                                 "sheet",  "script", "latex"};
  std::vector<BytesT> seeds;
  for (BytesT const& seed : growthSeeds()) {
    PatternS const pattern = readPattern(seed.data(), seed.size());
    if (target != readers[pattern.reader]) continue;
    std::string const text = toBytes(pattern.make(length));
    seeds.emplace_back(text.begin(), text.end());
  }
  return seeds;
}

std::string checkGrowthFrom(std::size_t length, std::uint8_t const* data, std::size_t size) {
  prepare();
  chooseStretches(0);
  PatternS const pattern = readPattern(data, size);
  std::size_t const piece = pattern.before.size() + pattern.after.size();
  if (piece == 0) return {};
  // Where steps are counted, both formulas nest deeper than rows may, or neither can: what nests too deep is
  // another kind of formula.
  std::size_t const from =
      countedSteps > 0 ? std::max<std::size_t>(length, (limits::max_nested_rows + 100) * piece) : length;
  std::size_t const to = growth * from;
  StagesC small;
  StagesC large;
  play(pattern, from, small);
  play(pattern, to, large);
  std::size_t const stages = std::min(small.all().size(), large.all().size());
  for (std::size_t i = 0; i < stages && small.all()[i].name == large.all()[i].name; ++i) {
    unsigned long const least = small.all()[i].steps;
    unsigned long const most = large.all()[i].steps;
    // Twice the proportion leaves room for sorting.
    if (most > std::min(2 * growth * least + 20 * to, steps_per_character * to)) {
      return std::string(large.all()[i].name) + " takes " + std::to_string(least) + " steps for " +
             std::to_string(from) + " characters, " + std::to_string(most) + " for " + std::to_string(to);
    }
  }
  return {};
}

std::string checkGrowth(std::uint8_t const* data, std::size_t size) {
  // A program that does not count steps looks for crashes only, which need no length.
  return checkGrowthFrom(countedSteps > 0 ? 1ul << 14 : 64, data, size);
}

}  // namespace zolt::fuzz
