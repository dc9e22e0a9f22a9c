#include "zolt/ved/view/detail/event_guard.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

namespace {

std::unique_ptr<Node4C> makeNode(Node4TypeE type) { return std::make_unique<Node4C>(type); }

/// Whether the text is outside a supplied bracket. Typing there turns the bracket into a typed one.
bool isOutsideAutoBracket(Node4C const& text) {
  Node4C const* const left = text.goLeft();
  Node4C const* const right = text.goRight();
  return (left && left->getType() == NODE4_AUTO_CLOSE) || (right && right->getType() == NODE4_AUTO_OPEN);
}

/// The text after the caret is split off when it is longer than this and more characters than this are to
/// come.
constexpr std::size_t long_text = 16;

bool isWrittenAsText(OperatorBC const& op) {
  return op.isLinear() || (op.getArity() == 0 && !op.isConstruct());
}

}  // namespace

bool ViewZNT4C::insertText(wstring const& text) {
  return insert([&] { return doAddText(text); });
}

bool ViewZNT4C::insertOperator(PointerTC<OperatorBC> const& op) {
  return insert([&] { return doRunOperator(op); });
}

template <class EditT>
bool ViewZNT4C::insert(EditT edit) {
  if (isBusy()) return bip();
  EventC guard(*this);
  bool taken = edit();
  if (taken) {
    taken = finishEdit();
  } else if (history_->isStepOpen()) {
    takeBack();
    needRedraw();
  }
  guard.finish();
  return taken;
}

bool ViewZNT4C::doAddText(wstring const& text) {
  if (!editable_ || text.empty()) return bip();
  if (auto const op = operatorList_->lookup(text)) {
    bool const ran = doRunOperator(op);
    // A letter that names an operator is typed like any other.
    if (ran && text.size() == 1 && Node4C::isAcceptable(text[0], true)) history_->markTyping(true);
    return ran;
  }
  if (text.size() > 1) return addTexts(text);

  char16_t const c = text[0];
  if (!Node4C::isTypable(c) || !deleteSelection()) return bip();
  if (c == Node4C::OPEN_C) {
    addBracket(NODE4_OPEN);
  } else if (c == Node4C::CLOSE_C) {
    addBracket(NODE4_CLOSE);
  } else {
    addCharacter(c);
  }
  return true;
}

// The result is the same as with one event, and one normalisation, for each character. That would take
// quadratic time for a long text, so the row is normalised only when something depends on it: characters and
// brackets do not, as long as there is no supplied bracket beside the caret. For the same reason the text
// after the caret is split off, so that typed characters do not move it.
bool ViewZNT4C::addTexts(wstring const& text) {
  bool pending = false;
  auto const normalise = [&] {
    root_->checkTree(selection_);
    pending = false;
  };
  PlaceS const& caret = selection_.caret;
  for (std::size_t i = 0; i < text.size(); ++i) {
    char16_t const c = text[i];
    wstring const one(1, c);
    auto const op = operatorList_->lookup(one);
    bool const written = !op || isWrittenAsText(*op);
    if (pending && !written) normalise();

    bool const selected = isSelected();
    bool const farFromEnds = text.size() - i > long_text && endOf(caret.node).pos - caret.pos > long_text;
    if (i > 0 && written && !selected && farFromEnds) {
      splitText(false);
      pending = true;
    }
    Node4C const* const node = caret.node;
    Node4C const* const row = node->getParent();
    unsigned long const count = row->numChildren();
    if (!doAddText(one)) return false;
    bool const bracket = !op && (c == Node4C::OPEN_C || c == Node4C::CLOSE_C);
    bool const onlyText = caret.node == node && node->getParent() == row && row->numChildren() == count;
    if (selected || !(bracket || onlyText) || isOutsideAutoBracket(*caret.node)) {
      normalise();
    } else if (bracket) {
      pending = true;
    }
  }
  if (pending) normalise();
  history_->markTyping(false);
  return true;
}

void ViewZNT4C::addCharacter(char16_t c) {
  refCaretNode().refText().insert(selection_.caret.pos++, 1, c);
  history_->markTyping(true);
}

void ViewZNT4C::addBracket(Node4TypeE type) {
  if (selection_.caret.pos == 0) {
    if (promoteAutoBracket(type)) return;
  } else {
    splitText(true);
  }
  Node4C const& text = *selection_.caret.node;
  text.getParent()->insertChild(text.findChildNumber(), makeNode(type).release());
}

/// At an end of a row, turns the supplied bracket there into a typed one. False when there is none.
bool ViewZNT4C::promoteAutoBracket(Node4TypeE type) {
  Node4C const* const text = selection_.caret.node;
  Node4C* const row = text->getParent();
  unsigned long const count = row->numChildren();
  if (count < 2) return false;
  bool const open = type == NODE4_OPEN;
  if (text != row->child(open ? 0 : count - 1)) return false;
  Node4C* const bracket = row->child(open ? 1 : count - 2);
  if (bracket->getType() != (open ? NODE4_AUTO_OPEN : NODE4_AUTO_CLOSE)) return false;
  bracket->setType(type);
  return true;
}

void ViewZNT4C::splitText(bool toRight) {
  PlaceS& caret = selection_.caret;
  Node4C& text = refCaretNode();
  unsigned long const place = text.findChildNumber();
  Node4C* const part = makeNode(NODE4_TEXT).release();
  if (caret.pos == 0) {
    text.getParent()->insertChild(place, part);
    if (!toRight) caret.node = part;
    return;
  }
  text.getParent()->insertChild(place + 1, part);
  part->refText() = text.crefText().substr(caret.pos);
  text.refText().erase(caret.pos);
  if (toRight) caret = startOf(part);
}

}  // namespace zolt::math::ved
