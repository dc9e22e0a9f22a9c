#include <algorithm>

#include "hosts/web/bridge/bridge_state.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/readable_text.h"
#include "zolt/mathml/mathml.h"

// Values and the clipboard.

using namespace zolt::web;
using namespace zolt::field;
using zolt::math::algexpr::AlgebraicExpressionC;
using zolt::math::algexpr::CASSessionBC;

namespace {

enum SetE : std::int32_t { SET_REFUSED = 0, SET_DONE = 1, SET_SAME = 2 };

/// Null without an error: the text is that of an empty formula.
ExpressionT read(wstring const& text, std::int32_t form, ReadErrorS& error) {
  bool const isBlank = text.find_first_not_of(u" \t\r\n") == text.npos;
  if (isBlank) return nullptr;
  auto const session = CASSessionBC::getSession();
  switch (form) {
    case ZOLT_PLAIN:
      return zolt::exchange::fromPlainText(text, session, &error);
    case ZOLT_PREFIX:
      return AlgebraicExpressionC::fromPrefixString(text, session, &error);
    case ZOLT_LATEX:
      return zolt::exchange::fromLatex(text, session, &error);
    default:
      error.cause = zolt::math::common::READ_ERROR_NO_MEANING;
      error.message = describe(error.cause);
      return nullptr;
  }
}

bool isShown(FieldS const& shown, ExpressionT const& expression) {
  auto const [start, end] = shown.field.crefView().getWhole();
  if (!expression) return start == end;
  auto const now = shown.field.diagnose().expression;
  return now && now->equals(*expression);
}

SetE show(FieldS& shown, ExpressionT const& expression, ReadErrorS& error) {
  if (error.cause != zolt::math::common::READ_ERROR_NONE) return SET_REFUSED;
  if (isShown(shown, expression)) return SET_SAME;
  if (shown.field.setExpression(expression, shown.precision, shown.format)) return SET_DONE;
  error.cause = zolt::math::common::READ_ERROR_NOT_ALLOWED;
  error.message = shown.field.explainRefusal(*expression);
  return SET_REFUSED;
}

std::int32_t finishSet(FieldS& shown, SetE done, ReadErrorS const& error) {
  // What is laid out now needs no memory when it is shown.
  if (done == SET_DONE) shown.field.crefView().getExpressionSize();
  settle(shown, shown.field.crefView().getHistoryPosition());
  if (done == SET_REFUSED) answerError(error);
  return done;
}

std::int32_t answerShortage() {
  ReadErrorS error;
  error.message = u"There is not enough memory for this";
  answerError(error);
  return SET_REFUSED;
}

zolt::oss::wstring toUnits(zolt::oss::bytestring const& bytes) { return {bytes.begin(), bytes.end()}; }

std::int32_t answerDiagnosis(FormulaErrorS const& error, bool isExpression) {
  return isExpression ? answerError({}) : answerError(error, error.box);
}

}  // namespace

std::int32_t zolt_get(std::int32_t field, std::int32_t form) {
  // A new field is empty, and needs no operators yet.
  FieldS const* const found = module().findShown(field);
  if (found && form != ZOLT_WORDS && isShown(*found, nullptr))
    return buffers().answer(form == ZOLT_TREE ? found->field.writeNotation() : wstring());
  return askAll(field, -1, [&](FieldS const& shown) {
    if (form == ZOLT_TREE) return buffers().answer(shown.field.writeNotation());
    if (form == ZOLT_WORDS) {
      return buffers().answer(makeReadableText(shown.field.crefView(), shown.speech.getStyle()).text);
    }
    return answerExpression(shown.field.diagnose().expression, form, shown);
  });
}

std::int32_t zolt_convert(std::int32_t length, std::int32_t form) {
  return answerExpression(AlgebraicExpressionC::fromPrefixString(buffers().takeText(length)), form,
                          module().refScratch());
}

std::int32_t zolt_set(std::int32_t field, std::int32_t form, std::int32_t length) {
  return askField(field, SET_REFUSED, [&](FieldS& shown) -> std::int32_t {
    if (!mayBegin(toCount(length) + shown.weight)) return answerShortage();
    auto const text = buffers().takeText(length);
    ReadErrorS error;
    if (form == ZOLT_TREE) {
      bool const done = shown.field.setNotation(text);
      if (!done) error.cause = zolt::math::common::READ_ERROR_NO_MEANING;
      if (!done) error.message = describe(error.cause);
      return finishSet(shown, done ? SET_DONE : SET_REFUSED, error);
    }
    bool const isRepeated =
        shown.setForm == form && shown.setRevision == shown.revision && shown.setText == text;
    if (isRepeated) return SET_SAME;
    ExpressionT const expression = read(text, form, error);
    std::int32_t const done = finishSet(shown, show(shown, expression, error), error);
    shown.setForm = done == SET_REFUSED ? -1 : form;
    shown.setRevision = shown.revision;
    shown.setText = text;
    if (done == SET_DONE) shown.weight = text.size();
    return done;
  });
}

std::int32_t zolt_set_mathml(std::int32_t field, std::int32_t length, std::int32_t numbers) {
  return askField(field, SET_REFUSED, [&](FieldS& shown) -> std::int32_t {
    if (!mayBegin(toCount(length) + toCount(numbers) + shown.weight)) return answerShortage();
    ReadErrorS error;
    ExpressionT const expression = numbers > 0 ? readMathml(length, numbers, error) : nullptr;
    std::int32_t const done = finishSet(shown, show(shown, expression, error), error);
    if (done == SET_DONE) shown.weight = toCount(length);
    return done;
  });
}

void zolt_clear(std::int32_t field) {
  FieldS* const found = module().find(field);
  // A formula without its history gives memory back.
  if (found && !renewReserve()) found->field.setExpression(nullptr);
  if (found) found->weight = 0;
  withField(field, [](FieldS& shown) {
    shown.field.clear();
    return true;
  });
}

std::int32_t zolt_diagnose(std::int32_t field) {
  return askAll(field, 0, [](FieldS const& shown) {
    FormulaDiagnosisS const found = shown.field.diagnose();
    return answerDiagnosis(found.error, bool(found.expression));
  });
}

std::int32_t zolt_check(std::int32_t field) {
  std::int32_t cause = 0;
  if (!askAll(field, 0, [](FieldS const&) { return 1; })) return 0;
  withField(field, [&](FieldS& shown) {
    FormulaErrorS error;
    bool const isExpression = bool(shown.field.getExpression(&error));
    cause = answerDiagnosis(error, isExpression);
    return isExpression;
  });
  return cause;
}

std::int32_t zolt_select_part(std::int32_t field, std::int32_t number) {
  return withField(field, [&](FieldS& shown) { return shown.field.selectPart(toCount(number)); });
}

// ---- Clipboard

std::int32_t zolt_clipboard_get(std::int32_t form) {
  if (!mayBegin(module().getClipboard()->read().prefix.size())) return -1;
  ClipboardContentS const content = module().getClipboard()->read();
  wstring const own = form == ZOLT_PLAIN    ? content.plainText
                      : form == ZOLT_PREFIX ? content.prefix
                      : form == ZOLT_BYTES  ? toUnits(content.bytes)
                      : form == ZOLT_HTML   ? content.html
                                            : wstring();
  if (!own.empty()) return buffers().answer(own);
  bool const isKept = form == ZOLT_PLAIN || form == ZOLT_PREFIX || form == ZOLT_BYTES || form == ZOLT_HTML;
  if (isKept || content.prefix.empty()) return -1;
  return answerExpression(AlgebraicExpressionC::fromPrefixString(content.prefix), form,
                          module().refScratch());
}

void zolt_clipboard_set(std::int32_t plain, std::int32_t prefix, std::int32_t latex, std::int32_t bytes,
                        std::int32_t html) {
  if (!mayBegin()) return;
  ClipboardContentS content;
  std::int32_t at = 0;
  auto const take = [&](std::int32_t length) {
    std::u16string_view const text = buffers().viewText(at, length);
    at += static_cast<std::int32_t>(text.size());
    return text;
  };
  content.plainText = take(plain);
  content.prefix = take(prefix);
  content.latex = take(latex);
  for (char16_t const unit : take(bytes)) content.bytes += static_cast<unsigned char>(unit);
  content.html = take(html);
  module().getClipboard()->write(content);
}

std::int32_t zolt_clipboard_set_mathml(std::int32_t length, std::int32_t numbers) {
  ReadErrorS error;
  ExpressionT const expression = readMathml(length, numbers, error);
  if (!expression) return 0;
  ClipboardContentS content;
  content.prefix = expression->toPrefixString();
  module().getClipboard()->write(content);
  return 1;
}

std::int32_t zolt_paste(std::int32_t field) {
  PasteE pasted = PASTE_REFUSED;
  ClipboardContentS const content = module().getClipboard()->read();
  // A copied character has at least so many bytes.
  constexpr std::size_t bytes_of_character = 8;
  std::size_t const size = std::max({content.bytes.size() / bytes_of_character, content.plainText.size(),
                                     content.prefix.size(), content.latex.size(), content.html.size()});
  bool const stays = withField(
                         field,
                         [&](FieldS& shown) {
                           pasted = shown.field.paste(content);
                           return pasted != PASTE_REFUSED;
                         },
                         toNumber(size)) != 0;
  return !stays ? 0 : pasted == PASTE_DONE ? 1 : 2;
}
