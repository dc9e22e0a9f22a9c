#include "zolt/ved/operators/construct_body.h"

#include <string_view>

#include "zolt/common/signs.h"
#include "zolt/ved/geometry/graphics.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::math::ved {

namespace {

// A key costs the same in every formula, so no more than this is looked at.
constexpr unsigned long most_items = 48;
constexpr unsigned long most_characters = 64;

/// Whether the character is a part of a name or number, or belongs to the one before it.
bool isTight(char16_t c) {
  constexpr std::u16string_view others = u"._!%°";
  return common::isDigit(c) || common::isAsciiLetter(c) || others.find(c) != others.npos ||
         c == common::prime_sign || c == common::infinity_sign ||
         (c >= u'\u00C0' && c < u'\u2000' && c != u'\u00D7' && c != u'\u00F7');
}

/// Whether there is a word beside a blank, which may be an operator: "a and b".
bool hasLooseWord(oss::wstring const& text) {
  if (text.find(u' ') == text.npos) return false;
  std::size_t letters = 0;
  for (char16_t const c : text) {
    letters = common::isAsciiLetter(c) ? letters + 1 : 0;
    if (letters > 1) return true;
  }
  return false;
}

/// Counts the operands of a row as far as it has been read.
class OperandCountC {
 public:
  explicit OperandCountC(BodyE body) : body_(body) {}

  /// False when the row needs brackets.
  bool read(Node4C const& item) {
    if (isOpeningBracket(item.getType())) {
      if (depth_++ == 0 && !afterName_) ++operands_;
    } else if (isClosingBracket(item.getType())) {
      --depth_;
    } else if (depth_ == 0 && item.getType() == NODE4_OPERATOR) {
      ++operands_;
    } else if (depth_ == 0 && item.getType() == NODE4_TEXT && !readText(item.crefText())) {
      return false;
    }
    afterName_ = item.getType() == NODE4_TEXT && item.sizeText() > 0;
    return body_ == BODY_PRODUCT || operands_ <= 1;
  }

 private:
  bool readText(oss::wstring const& text) {
    if (text.size() > most_characters || hasLooseWord(text)) return false;
    bool inWord = false;
    for (char16_t const c : text) {
      bool const isBetween = c == u' ' || (c == common::times_sign && body_ == BODY_PRODUCT);
      if (!isBetween && !isTight(c)) return false;
      if (!isBetween && !inWord) ++operands_;
      inWord = !isBetween;
    }
    return true;
  }

  BodyE body_;
  unsigned long operands_ = 0;
  unsigned long depth_ = 0;
  bool afterName_ = false;
};

/// Whether what comes after the construct in its row could be taken for a part of the construct's body.
bool isFollowed(Node4C const& construct) {
  Node4C const* item = construct.goRight();
  if (!item) return false;
  oss::wstring const& text = item->crefText();
  if (item->getType() == NODE4_TEXT && !text.empty()) {
    std::size_t const first = text.find_first_not_of(u' ');
    return first != text.npos && (isTight(text[first]) || text[first] == common::times_sign);
  }
  if (item->isEmptyText()) item = item->goRight();
  return item && !isClosingBracket(item->getType());
}

/// Brackets that only what follows makes necessary come close to it.
long narrowRoom(GraphicsABC const& graphics) { return graphics.getMetric(1) - 2; }

/// Whether the row ends with a construct that has such room, empty, at its own end.
bool endsWithRoom(Node4C const& body, GraphicsABC const& graphics) {
  Node4C const* last = body.child(body.numChildren() - 1);
  if (last->isEmptyText()) last = last->goLeft();
  if (!last || last->getType() != NODE4_OPERATOR || !last->crefOperator()->isAmbiguousBase()) return false;
  Node4C const& row = *last->child(last->numChildren() - 1);
  return last->getWidth() - row.getDX() - row.getWidth() == narrowRoom(graphics);
}

}  // namespace

bool isLoose(Node4C const& row, BodyE body) {
  if (row.numChildren() > most_items) return true;
  OperandCountC count(body);
  for (unsigned long i = 0; i < row.numChildren(); ++i) {
    if (!count.read(*row.child(i))) return true;
  }
  return false;
}

BodyRoomS bodyRoom(Node4C const& body, BodyE kind, GraphicsABC const& graphics) {
  long const cell = graphics.getMetric(1);
  if (isLoose(body, kind)) return {cell, cell};
  return {cell - 1, endsWithRoom(body, graphics) ? 0 : narrowRoom(graphics)};
}

void drawBodyBrackets(Node4C const& construct, Node4C const& body, BodyE kind, GraphicsABC const& graphics,
                      long x, long y) {
  bool const loose = isLoose(body, kind);
  if (!loose && !isFollowed(construct)) return;
  long const inner = !loose && endsWithRoom(body, graphics) ? narrowRoom(graphics) : 0;
  graphics.beginsWith(crefFirstText(body));
  graphics.drawBracketPair(x + body.getDX(), y + body.getDY(), body.getWidth() - inner, body.getHeight(),
                           true);
}

void drawRoomyBrackets(Node4C const& construct, Node4C const& body, BodyE kind, GraphicsABC const& graphics,
                       long x, long y) {
  bool const isNeeded = isLoose(body, kind) || isFollowed(construct);
  long const left = x + body.getDX(), top = y + body.getDY();
  graphics.beginsWith(crefFirstText(body));
  if (isNeeded) return graphics.drawBracketPair(left, top, body.getWidth(), body.getHeight(), true);
  graphics.drawSpareBrackets(left, top, body.getWidth(), body.getHeight());
}

}  // namespace zolt::math::ved
