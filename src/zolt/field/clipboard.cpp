#include "zolt/field/clipboard.h"

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/decimal_comma_graphics.h"
#include "zolt/field/detail/implied_signs.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;
using math::algexpr::CASSessionBC;
using oss::PointerTC;

namespace {

PointerTC<AlgebraicExpressionC> readPlainText(wstring const& text, InputOptionsS const& options,
                                              ReadErrorS* error) {
  auto const session = CASSessionBC::getSession();
  // Text from another program may use points even so.
  if (options.decimalComma) {
    if (auto expression = exchange::fromPlainText(toPoints(text), session)) return expression;
  }
  return exchange::fromPlainText(text, session, error);
}

/// Whether the text keeps its meaning when its characters are typed one by one. A typed fraction bar or
/// exponent may apply to more or less than the text says.
bool isTypable(wstring const& text) {
  static wstring const construct_signs = u"/^\u00F7\u2044\u2215\u221A";
  return text.find_first_of(construct_signs) == wstring::npos;
}

bool typeCharacters(ViewZNT4C& view, wstring const& text) {
  if (!view.crefOperatorList().lookup(text)) return view.insertText(text);
  // A text that is an operator's name would insert the operator.
  for (char16_t const c : text) {
    if (!view.insertText(wstring(1, c))) return false;
  }
  return true;
}

wstring withoutLineEnds(wstring text) {
  while (!text.empty() && (text.back() == u'\n' || text.back() == u'\r')) text.pop_back();
  for (char16_t& c : text) {
    if (c == u'\n' || c == u'\r' || c == u'\t') c = u' ';
  }
  return text;
}

PasteE pastePlainText(ViewZNT4C& view, wstring const& text, InputOptionsS const& options, ReadErrorS* error) {
  if (auto const expression = readPlainText(text, options, error)) {
    return view.paste(expression) ? PASTE_DONE : PASTE_REFUSED;
  }
  wstring const characters = withoutLineEnds(options.decimalComma ? toPoints(text) : text);
  if (!isTypable(characters) || !typeCharacters(view, characters)) return PASTE_REFUSED;
  return PASTE_AS_CHARACTERS;
}

wstring writeRowText(SelectionS const& stretch, OperatorListC const& operators);

/// The signs that the operators have in plain text.
wstring writeSigns(wstring const& text, OperatorListC const& operators) {
  wstring out;
  for (char16_t const c : text) {
    auto const op = c < 0x80 ? nullptr : operators.lookupText(wstring(1, c));
    bool const isSign = op && (op->isLinear() || op->getArity() == 0);
    out += isSign ? typedForm(*op) : wstring(1, c);
  }
  return out;
}

wstring bracketed(wstring const& text) { return wordEnd(text, 0) == text.size() ? text : u"(" + text + u")"; }

// Recursion is safe, since the nesting of rows is limited.
wstring writeConstruct(Node4C const& construct, OperatorListC const& operators) {
  std::vector<wstring> rows;
  for (unsigned long i = 0; i < construct.numChildren(); ++i) {
    rows.push_back(writeRowText(wholeRow(*construct.child(i)), operators));
  }
  wstring const& name = construct.crefText();
  if (construct.getType() == NODE4_POWER) return u"^" + bracketed(rows[0]);
  OperatorBC const& op = *construct.crefOperator();
  if (rows.size() == 2 && !isWrittenAsCall(op)) return bracketed(rows[0]) + name + bracketed(rows[1]);
  return name + u"(" + op.arrangeArgumentList(rows) + u")";
}

/// Plain text for a stretch of a row, given in reading order, which may be incomplete: an empty slot adds no
/// text, a construct is written as a call, and signs are written as they are typed. For a complete stretch
/// the text of its expression is better.
wstring writeRowText(SelectionS const& stretch, OperatorListC const& operators) {
  auto const [begin, end] = stretch;
  wstring out;
  for (Node4C const* item = begin.node;; item = item->goRight()) {
    if (item->getType() == NODE4_TEXT) {
      unsigned int const first = item == begin.node ? begin.pos : 0;
      unsigned int const last = (item == end.node ? end : endOf(item)).pos;
      out += writeSigns(item->crefText().substr(first, last - first), operators);
    } else if (isConstruct(item->getType())) {
      out += writeConstruct(*item, operators);
    } else {
      out += isOpeningBracket(item->getType()) ? u'(' : u')';
    }
    if (item == end.node) return out;
  }
}

}  // namespace

ClipboardABC::~ClipboardABC() = default;

MemoryClipboardC::~MemoryClipboardC() = default;

ClipboardContentS copyRange(ViewZNT4C const& view, SelectionS const& range, InputOptionsS const& options) {
  ClipboardContentS content;
  if (!range.anchor || range.anchor == range.caret) return content;
  auto const row = view.copyRow(range);
  content.bytes = writeBytes(*row);
  if (auto const expression = diagnoseTyped(*row, view.crefOperatorList(), options).expression) {
    content.prefix = expression->toPrefixString();
    content.plainText = exchange::toPlainText(*expression, exchange::PLAIN_TEXT_READABLE);
  } else {
    content.plainText = writeRowText(inOneRow(range), view.crefOperatorList());
  }
  if (options.decimalComma) content.plainText = toCommas(content.plainText);
  return content;
}

PasteE pasteContent(ViewZNT4C& view, ClipboardContentS& content, InputOptionsS const& options,
                    ReadErrorS* error) {
  if (!view.isEditable()) return PASTE_REFUSED;
  if (!content.bytes.empty() && view.paste(content.bytes)) return PASTE_DONE;
  content.bytes.clear();
  if (!content.prefix.empty() && view.paste(AlgebraicExpressionC::fromPrefixString(content.prefix))) {
    return PASTE_DONE;
  }
  content.prefix.clear();
  return content.plainText.empty() ? PASTE_REFUSED : pastePlainText(view, content.plainText, options, error);
}

}  // namespace zolt::field
