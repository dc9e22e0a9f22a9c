#include "fuzzing/trip.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "fuzzing/allocations.h"
#include "fuzzing/bytes_text.h"
#include "fuzzing/step_count.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/catalogue_extended/extended_operators.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/mathjson/mathjson.h"
#include "zolt/oss/binary_stream.h"
#include "zolt/oss/binary_string_stream.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/tree/tree_notation.h"
#include "zolt/ved/tree/validate_tree.h"

namespace zolt::fuzz {

using math::algexpr::CASSessionBC;
using namespace math::ved;
using surfaces::RecordingGraphicsC;

namespace {

// The largest increase comes from a typed bracket: four nodes, with the text beside it and the two that are
// supplied for it, in the tree and in the history. Storage that doubles passes through twice its size.
constexpr std::size_t bytes_per_input = 800;
constexpr std::size_t bytes_for_nothing = 20000;
// A reader takes some steps for each character, and fills the tables of operators when it is the first.
constexpr unsigned long steps_per_input = 2000;
constexpr unsigned long steps_for_nothing = 100000;

unsigned long stepsAtStart = 0;

using TreeT = std::unique_ptr<Node4C>;

OperatorListC const& operators() {
  return *OperatorListRepositoryC::lookup(CASSessionBC::getSession()->getEngine());
}

TreeT show(PointerTC<AlgebraicExpressionC> const& expression) {
  return TreeT(Node4C::fromAlgebraicExpression(expression, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC));
}

std::string readBack(bytestring const& bytes, bytestring& again) {
  PointerTC<oss::BinaryStringInputStreamC> const held(new oss::BinaryStringInputStreamC(bytes));
  PointerTC<oss::ObjectInputStreamABC> in(new oss::BinaryInputStreamC(held));
  Node4C root;
  if (!root.readObject(in)) return "the byte form does not read back";
  again = writeBytes(root);
  return {};
}

/// Whether the expression means what it looks like. Names that only expression objects have can also be
/// typed. They then make what no sign makes, such as an exponent on an exponent or pi with arguments, which
/// can be shown but not read. A "!" on a power looks like one on the exponent, and is read as that.
bool isTextbook(wstring const& prefix) {
  struct CallS {
    wstring name;
    bool first;
  };
  std::vector<CallS> calls;
  wstring name;
  for (char16_t const c : prefix) {
    // A name that starts with a colon takes in everything that is shown after it.
    if (name == u":" && (c == u')' || c == u',')) return false;
    if (c == u'(') {
      auto const isPower = [](wstring const& n) { return n == u"^" || n == u"_deg" || n == u"_rad"; };
      bool const onPower = !calls.empty() && calls.back().first && isPower(name);
      if (onPower && (isPower(calls.back().name) || calls.back().name == u"!")) return false;
      if (name == u"_PI") return false;
      calls.push_back({name, true});
      name.clear();
    } else if (c == u')') {
      calls.pop_back();
      name.clear();
    } else if (c == u',') {
      calls.back().first = false;
      name.clear();
    } else {
      name += c;
    }
  }
  return true;
}

}  // namespace

std::string draw(Node4C const& root) {
  RecordingGraphicsC surface;
  root.display(surface, 3, 5, nullptr);
  return surface.getText();
}

void prepare() {
  static bool const registered = [] {
    auto const session = CASSessionBC::getSession();
    OperatorListC& operators = *OperatorListRepositoryC::lookup(session->getEngine());
    catalogue::registerStandardOperators(operators);
    catalogue_extended::registerExtendedOperators(operators);
    // The first text of a notation fills its tables.
    static_cast<void>(exchange::fromPlainText(u"sin(x)", nullptr));
    static_cast<void>(exchange::fromLatex(u"\\sin x", nullptr));
    static_cast<void>(mathjson::fromMathJson(u"[\"Sin\",\"x\"]", nullptr));
    return true;
  }();
  static_cast<void>(registered);
}

void chooseStretches(std::size_t number) {
  [[maybe_unused]] bool const isChosen = math::ved::RowIndexC::setLeastLength(number % 2 * 4);
}

void startMeter() {
  AllocationsS::reset();
  stepsAtStart = countedSteps;
}

std::string checkMeter(std::size_t size) {
  std::size_t const bytes = AllocationsS::get().peak;
  unsigned long const steps = countedSteps - stepsAtStart;
  std::string const forInput = " for an input of " + std::to_string(size);
  if (bytes > bytes_for_nothing + bytes_per_input * size)
    return "takes " + std::to_string(bytes) + " bytes of memory" + forInput;
  if (steps > steps_for_nothing + steps_per_input * size)
    return "takes " + std::to_string(steps) + " steps" + forInput;
  return {};
}

std::string checkInvariants(Node4C const& root) {
  TreeFaultS const fault = validateTree(root);
  return fault.invariant == TREE_VALID ? std::string()
                                       : "broken: " + toBytes(describeInvariant(fault.invariant));
}

std::string checkTreeForms(Node4C& root) {
  bytestring const bytes = writeBytes(root);
  bytestring again;
  if (auto fault = readBack(bytes, again); !fault.empty()) return fault;
  if (again != bytes) return "the byte form reads back as something else";

  wstring const notation = writeTreeNotation(root);
  TreeNotationS read;
  unsigned long position = 0;
  if (!readTreeNotation(notation, operators(), read, position)) return "the notation does not read back";
  if (writeBytes(*read.root) != bytes) return "the notation reads back as something else";

  root.checkTree();
  if (writeBytes(root) != bytes) return "normalising again changes the tree";

  RecordingGraphicsC const surface(RecordingGraphicsC::LOG_NOTHING);
  root.layout(surface);
  if (root.getWidth() < 0 || root.getHeight() <= 0) return "the size is not a size";
  std::string const first = draw(root);
  root.layout(surface);
  if (draw(root) != first) return "laying out again changes the picture";
  TreeT const copy(root.clone());
  copy->layout(surface);
  if (draw(*copy) != first) return "a copy gives another picture";
  return {};
}

std::string checkReader(ReaderT read, std::uint8_t const* data, std::size_t size) {
  prepare();
  wstring const text = toText(data, size);
  math::common::ReadErrorS error;
  startMeter();
  auto const expression = read(text, nullptr, &error);
  if (auto fault = checkMeter(text.size()); !fault.empty()) return fault;
  if (static_cast<bool>(expression) != (error.cause == math::common::READ_ERROR_NONE)) {
    return "neither read nor refused";
  }
  if (expression) return checkTexts(*expression);
  if (error.message.empty()) return "a fault without a sentence";
  return error.begin <= error.end && error.end <= text.size() ? "" : "the fault is not in the text";
}

std::string checkTexts(AlgebraicExpressionC const& expression) {
  wstring const prefix = expression.toPrefixString();
  auto const read = AlgebraicExpressionC::fromPrefixString(prefix);
  if (!read) return "the prefix text does not read back: " + toBytes(prefix);
  if (!read->equals(expression) || !expression.equals(*read)) {
    return "the prefix text reads back as something else: " + toBytes(prefix);
  }
  if (read->toPrefixString() != prefix) return "the prefix text changes: " + toBytes(prefix);

  struct NotationS {
    char const* name;
    wstring text;
    ReaderT read;
  };
  for (NotationS const& notation :
       {NotationS{"plain text", exchange::toPlainText(expression), exchange::fromPlainText},
        NotationS{"LaTeX", exchange::toLatex(expression), exchange::fromLatex},
        NotationS{"MathJSON", mathjson::toMathJson(expression), mathjson::fromMathJson}}) {
    std::string const what = std::string("the ") + notation.name + " " + toBytes(notation.text);
    auto const again = notation.read(notation.text, nullptr, nullptr);
    if (!again) return what + " does not read back";
    if (again->equals(expression)) continue;
    return what + " of " + toBytes(prefix) + " reads back as " + toBytes(again->toPrefixString());
  }
#ifdef ZOLT_HAS_MATHML_TEXT
  return checkMathmlTrips(expression);
#else
  return {};
#endif
}

std::string checkTrips(PointerTC<AlgebraicExpressionC> const& expression, bool wasRead) {
  PointerTC<AlgebraicExpressionC> current = expression;
  wstring prefix = current->toPrefixString();
  for (int trip = 0; trip < 3; ++trip) {
    TreeT const root = show(current);
    if (auto fault = checkInvariants(*root); !fault.empty()) return fault;
    if (trip == 0) {
      if (auto fault = checkTreeForms(*root); !fault.empty()) return fault;
    }
    current = root->getAlgebraicExpression(nullptr);
    if (!current) {
      bool const readable = (wasRead || trip > 0) && isTextbook(prefix);
      return readable ? "what is shown of " + toBytes(prefix) + " does not read" : std::string();
    }
    wstring const next = current->toPrefixString();
    if (next != prefix && trip == 2 && isTextbook(prefix))
      return toBytes(prefix) + " becomes " + toBytes(next) + " on the third trip";
    prefix = next;
  }
  return {};
}

}  // namespace zolt::fuzz
