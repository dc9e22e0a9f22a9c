#include "zolt/field/detail/construct_replacement.h"

#include <algorithm>
#include <utility>

#include "zolt/field/auto_replace.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/input_places.h"
#include "zolt/field/detail/typed_bounds.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view.h"

namespace zolt::field::detail {

using namespace math::ved;

namespace {

wstring textBetween(unsigned int begin, PlaceS end) {
  return end.node->crefText().substr(begin, end.pos - begin);
}

/// The typed bracket may complete a pair; the content of the pair then moves to the row.
void takePair(Node4C const& open, unsigned long row, ConstructReplacementS& found) {
  Node4C const* const close = hasSuppliedClose(*open.getParent()) ? nullptr : findPartner(open);
  if (!close || close->getType() != NODE4_CLOSE) return;
  found.contents.push_back({{placeAfter(open), placeBefore(*close)}, row});
  found.end = placeAfter(*close);
}

/// Handles "log_(base)(" when the second "(" was just typed.
ConstructReplacementS findMarkedConstruct(ViewZNT4C const& view, Node4C const& open) {
  Node4C const* const close = open.goLeft()->sizeText() == 0 ? open.goLeft()->goLeft() : nullptr;
  Node4C const* const first = close && close->getType() == NODE4_CLOSE ? findPartner(*close) : nullptr;
  if (!first || first->getType() != NODE4_OPEN) return {};
  PlaceS const end = placeBefore(*first);
  unsigned int const start = nameStart(end.node->crefText(), end.pos);
  ConstructReplacementS found;
  found.op = findMarkable(view.crefOperatorList(), textBetween(start, end));
  SelectionS const mark{placeAfter(*first), placeBefore(*close)};
  if (!found.op || mark.anchor == mark.caret || hasComma(mark.anchor, mark.caret)) return {};
  auto const rows = argumentRows(*found.op, found.op->getInsertedRows());
  found.begin = {end.node, start};
  found.end = view.getSelection().caret;
  found.contents = {{mark, rows[1]}};
  takePair(open, rows[0], found);
  found.caretRow = rows[0];
  return found;
}

/// Handles "sum_(" when "(" was just typed.
ConstructReplacementS findBoundedConstruct(ViewZNT4C const& view, Node4C const& open) {
  PlaceS const end = placeBefore(open);
  wstring const& text = end.node->crefText();
  unsigned int const start = nameStart(text, end.pos);
  if (end.pos < start + 2 || text[end.pos - 1] != u'_') return {};
  ConstructReplacementS found;
  auto op = findConstruct(view.crefOperatorList(), textBetween(start, {end.node, end.pos - 1})).op;
  bool const isPair = !hasSuppliedClose(*open.getParent()) && findPartner(open);
  if (isPair || !op || !takesBounds(*op)) return found;
  found.begin = {end.node, start};
  found.end = view.getSelection().caret;
  found.caretRow = argumentRows(*op, op->getInsertedRows()).front();
  found.hasBounds = true;
  found.op = std::move(op);
  return found;
}

/// Handles "a_(" when "(" was just typed.
ConstructReplacementS findIndexedConstruct(ViewZNT4C const& view, Node4C const& open,
                                           InputOptionsS const& options) {
  PlaceS const end = placeBefore(open);
  wstring const& text = end.node->crefText();
  unsigned int const start = nameStart(text, end.pos);
  if (end.pos < start + 2 || text[end.pos - 1] != u'_') return {};
  OperatorListC const& operators = view.crefOperatorList();
  ConstructReplacementS found;
  if (!findMarkable(operators, textBetween(start, end))) found.op = findConstruct(operators, u"_").op;
  if (!found.op) return found;
  auto const rows = argumentRows(*found.op, found.op->getInsertedRows());
  PlaceS const nameEnd{end.node, end.pos - 1};
  ReplacementS const letter = findNameReplacement(operators, nameEnd, options);
  found.begin = letter.begin ? letter.begin : PlaceS{end.node, start};
  found.marks = {{letter.begin ? letter.text : textBetween(start, nameEnd), rows[0]}};
  found.end = view.getSelection().caret;
  takePair(open, rows[1], found);
  found.caretRow = rows[1];
  return found;
}

/// Handles "name(" when "(" was just typed.
ConstructReplacementS findOpenedConstruct(ViewZNT4C const& view, Node4C const& open) {
  PlaceS const end = placeBefore(open);
  unsigned int const start = nameStart(end.node->crefText(), end.pos);
  ConstructNameS name = findConstruct(view.crefOperatorList(), textBetween(start, end));
  ConstructReplacementS found;
  if (!name.op || textBetween(start, end) == u"_") return found;
  found.op = name.op;
  found.begin = {end.node, start};
  found.end = view.getSelection().caret;
  auto const rows = argumentRows(*name.op, name.op->getInsertedRows());
  takePair(open, rows.front(), found);
  found.caretRow = rows.front();
  if (!name.mark.empty()) found.marks = {{std::move(name.mark), rows[1]}};
  return found;
}

/// Handles "name(argument," when the comma was just typed and only the closing bracket follows it.
ConstructReplacementS findPairedConstruct(ViewZNT4C const& view, PlaceS caret) {
  ConstructReplacementS found;
  Node4C const* const open = findOpenBracket(caret);
  Node4C const* const next = caret.pos == caret.node->sizeText() ? caret.node->goRight() : nullptr;
  if (!open || !next || !isClosingBracket(next->getType())) return found;
  PlaceS const end = placeBefore(*open);
  unsigned int const start = nameStart(end.node->crefText(), end.pos);
  auto const op = findConstructOfPair(view.crefOperatorList(), textBetween(start, end));
  PlaceS const comma{caret.node, caret.pos - 1};
  if (!op || hasComma(placeAfter(*open), comma)) return found;
  found.op = op;
  found.begin = {end.node, start};
  found.end = next->getType() == NODE4_CLOSE ? placeAfter(*next) : caret;
  auto const rows = argumentRows(*op, op->getInsertedRows());
  found.contents = {{{placeAfter(*open), comma}, rows[0]}};
  found.caretRow = rows[1];
  return found;
}

}  // namespace

ConstructReplacementS makeCall(ViewZNT4C const& view, wstring const& name) {
  ConstructNameS named = findConstruct(view.crefOperatorList(), name);
  SelectionS const stretch = inOneRow(view.getSelection());
  ConstructReplacementS call;
  call.begin = stretch.anchor;
  call.end = stretch.caret;
  auto const rows = argumentRows(*named.op, named.op->getInsertedRows());
  call.contents = {{stretch, rows.front()}};
  call.caretRow = rows.front();
  if (!named.mark.empty()) call.marks = {{std::move(named.mark), rows[1]}};
  call.op = std::move(named.op);
  return call;
}

ConstructReplacementS findConstructReplacement(ViewZNT4C const& view, InputOptionsS const& options) {
  PlaceS const caret = view.getSelection().caret;
  if (caret.pos > 0) {
    return caret.node->crefText()[caret.pos - 1] == u',' ? findPairedConstruct(view, caret)
                                                         : ConstructReplacementS();
  }
  Node4C const* const left = caret.node->goLeft();
  if (!left || left->getType() != NODE4_OPEN) return {};
  ConstructReplacementS found = findOpenedConstruct(view, *left);
  if (!found.op) found = findBoundedConstruct(view, *left);
  if (!found.op) found = findIndexedConstruct(view, *left, options);
  return found.op ? found : findMarkedConstruct(view, *left);
}

ConstructReplacementS findRecountedConstruct(ViewZNT4C const& view, char16_t sign) {
  PlaceS const end = findEndedArgument(view.getSelection().caret);
  if (!end) return {};
  Node4C const& construct = *enclosingItem(*end.node);
  auto const rows = argumentRows(*construct.crefOperator(), construct.numChildren());
  auto const at = std::find(rows.begin(), rows.end(), end.node->getParent()->findChildNumber());
  if (at == rows.end() || (at + 1 == rows.end()) != (sign == u',')) return {};
  auto const filled = static_cast<std::size_t>(at - rows.begin()) + 1;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (isEmptyRow(*construct.child(rows[i])) != (i >= filled)) return {};
  }
  ConstructReplacementS found;
  std::size_t const wanted = sign == u',' ? filled + 1 : filled;
  found.op = findSharing(view.crefOperatorList(), *construct.crefOperator(), wanted);
  if (!found.op) return found;
  found.begin = placeBefore(construct);
  found.end = placeAfter(construct);
  auto const taking = argumentRows(*found.op, found.op->getInsertedRows());
  for (std::size_t i = 0; i < filled; ++i) {
    found.contents.push_back({wholeRow(*construct.child(rows[i])), taking[i]});
  }
  found.caretRow = sign == u',' ? taking.back() : ConstructReplacementS::after_construct;
  return found;
}

}  // namespace zolt::field::detail
