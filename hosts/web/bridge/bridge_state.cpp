#include "hosts/web/bridge/bridge_state.h"

#include <algorithm>

#include "hosts/web/bridge/font_metrics.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/catalogue_extended/extended_operators.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/readable_text.h"
#include "zolt/mathml/mathml.h"
#include "zolt/ved/operators/operator_list_repository.h"

namespace zolt::web {

using math::algexpr::AlgebraicExpressionC;
using math::algexpr::CASSessionBC;

namespace {

PointerTC<surfaces::TypesetterC> makeTypesetter() {
  std::string error;
  return new surfaces::TypesetterC(surfaces::FontSetC::fromMemory(getFontMetrics(), error));
}

}  // namespace

FieldS::FieldS(PointerTC<field::ClipboardABC> const& clipboard)
    : surface(new DisplayListC(module().getTypesetter())), field(surface) {
  field.setClipboard(clipboard);
  field.takeChange();
}

ModuleC& ModuleC::get() {
  // It is never destroyed: a module ends with its page.
  static ModuleC& module = *new ModuleC;
  return module;
}

ModuleC::ModuleC() : clipboard_(new field::MemoryClipboardC), typesetter_(makeTypesetter()) {}

bool ModuleC::start(bool extended) {
  if (operators_ != OPERATORS_NOT_CHOSEN) return false;
  operators_ = extended ? OPERATORS_EXTENDED : OPERATORS_STANDARD;
  renewReserve();
  return true;
}

void ModuleC::prepare() {
  if (operators_ == OPERATORS_NOT_CHOSEN || operators_ == OPERATORS_THERE) return;
  auto const operators = math::ved::OperatorListRepositoryC::lookup(CASSessionBC::getSession()->getEngine());
  catalogue::registerStandardOperators(*operators);
  if (operators_ == OPERATORS_EXTENDED) catalogue_extended::registerExtendedOperators(*operators);
  operators_ = OPERATORS_THERE;
}

FieldS* ModuleC::find(std::int32_t number) {
  prepare();
  return findShown(number);
}

FieldS* ModuleC::findShown(std::int32_t number) const {
  std::size_t const index = toCount(number);
  return index == 0 || index > fields_.size() ? nullptr : fields_[index - 1].get();
}

std::int32_t ModuleC::open() {
  if (!mayBegin()) return 0;
  auto const free = std::find(fields_.begin(), fields_.end(), nullptr);
  auto field = std::make_unique<FieldS>(clipboard_);
  if (free != fields_.end()) {
    *free = std::move(field);
    return static_cast<std::int32_t>(free - fields_.begin()) + 1;
  }
  fields_.push_back(std::move(field));
  return static_cast<std::int32_t>(fields_.size());
}

void ModuleC::close(std::int32_t number) {
  if (!findShown(number)) return;
  fields_[toCount(number) - 1] = nullptr;
  while (!fields_.empty() && !fields_.back()) fields_.pop_back();
}

PointerTC<surfaces::TypesetterC> const& ModuleC::getPowersTypesetter() {
  if (!powersTypesetter_) {
    powersTypesetter_ = makeTypesetter();
    powersTypesetter_->setNumberLook(surfaces::NUMBERS_WITH_POWERS);
  }
  return powersTypesetter_;
}

FieldS& ModuleC::refScratch() {
  prepare();
  if (!scratch_) scratch_ = std::make_unique<FieldS>(new field::MemoryClipboardC);
  return *scratch_;
}

bool mayBegin(std::size_t characters) {
  // What readers, trees and layouts take of memory for a character, all at once.
  constexpr std::size_t bytes_per_character = 150;
  bool const may = renewReserve() && hasRoom(characters * bytes_per_character);
  if (!may) module().noteShortage();
  return may;
}

bool settle(FieldS& field, unsigned long position) {
  bool const stays = !isShort();
  if (!stays) {
    auto& view = field.field.refView();
    while (view.getHistoryPosition() > position && view.undo()) continue;
    module().noteShortage();
    renewReserve();
  }
  math::ved::SelectionS const selection = field.field.crefView().getSelection();
  if (selection.caret != field.seen.caret || selection.anchor != field.seen.anchor) ++field.moves;
  field.seen = selection;
  if (field.field.takeChange()) {
    ++field.revision;
    field.announcesEdit = true;
  }
  return stays;
}

std::int32_t answerError(math::common::ReadErrorS const& error, math::ved::RectangleS const& box) {
  std::vector<std::int32_t> numbers{error.cause, toNumber(error.begin), toNumber(error.end)};
  append(numbers, box);
  buffers().answer(std::move(numbers));
  buffers().answer(error.message);
  return error.cause;
}

std::int32_t answerExpression(ExpressionT const& expression, std::int32_t form, FieldS const& field) {
  if (!expression) return -1;
  switch (form) {
    case ZOLT_PLAIN:
      return buffers().answer(exchange::toPlainText(*expression));
    case ZOLT_PREFIX:
      return buffers().answer(expression->toPrefixString());
    case ZOLT_LATEX:
      return buffers().answer(exchange::toLatex(*expression));
    case ZOLT_MATHML:
      return buffers().answer(mathml::toMathml(*expression));
    case ZOLT_CONTENT_MATHML:
      return buffers().answer(mathml::toContentMathml(*expression));
    case ZOLT_WORDS:
      return buffers().answer(field::toSpeech(expression, field.speech.getStyle()));
    default:
      return -1;
  }
}

ExpressionT readMathml(std::int32_t length, std::int32_t numbers, math::common::ReadErrorS& error) {
  module().prepare();
  std::vector<std::int32_t> const& words = buffers().crefNumbers();
  std::size_t const count = std::min(toCount(numbers), static_cast<unsigned long>(words.size()));
  mathml::MathmlTreeC tree;
  std::int32_t at = 0;
  for (std::size_t i = 0; i + 1 < count; i += 2) {
    std::int32_t const size = words[i + 1];
    if (size < 0 || size > length - at) break;
    std::u16string_view const text = buffers().viewText(at, size);
    at += size;
    switch (words[i]) {
      case ZOLT_MATHML_OPEN:
        tree.open(text, 0);
        break;
      case ZOLT_MATHML_ATTRIBUTE: {
        std::size_t const name = i + 2 < count ? toCount(words[i + 2]) : 0;
        tree.addAttribute(text.substr(0, name), text.substr(std::min(name, text.size())));
        ++i;
        break;
      }
      case ZOLT_MATHML_TEXT:
        tree.addText(text);
        break;
      default:
        if (!tree.close(0)) return nullptr;
    }
  }
  if (!tree.isComplete()) {
    error.cause = math::common::READ_ERROR_BAD_MARKUP;
    error.message = describe(error.cause);
    return nullptr;
  }
  return mathml::fromMathml(tree, CASSessionBC::getSession(), &error);
}

void append(std::vector<std::int32_t>& words, math::ved::RectangleS const& box) {
  for (long const edge : {box.left, box.top, box.right, box.bottom}) {
    words.push_back(static_cast<std::int32_t>(edge));
  }
}

}  // namespace zolt::web
