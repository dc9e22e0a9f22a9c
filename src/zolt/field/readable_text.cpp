#include "zolt/field/readable_text.h"

#include <algorithm>
#include <memory>

#include "zolt/algexpr/cas_session.h"
#include "zolt/field/detail/speaker.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view.h"

namespace zolt::field {

using namespace math::ved;

namespace {

auto findMarkAfter(std::vector<ReadableTextS::MarkS> const& marks, unsigned long offset) {
  return std::upper_bound(
      marks.begin(), marks.end(), offset,
      [](unsigned long wanted, ReadableTextS::MarkS const& mark) { return wanted < mark.offset; });
}

}  // namespace

unsigned long ReadableTextS::offsetOf(PlaceS place) const {
  for (MarkS const& mark : marks) {
    if (mark.place == place) return mark.offset;
  }
  return static_cast<unsigned long>(text.size());
}

PlaceS ReadableTextS::placeAt(unsigned long offset) const {
  auto const after = findMarkAfter(marks, offset);
  if (marks.empty()) return {};
  return after == marks.begin() ? marks.front().place : (after - 1)->place;
}

PlaceS ReadableTextS::placeAfter(unsigned long offset) const {
  auto const after = findMarkAfter(marks, offset);
  return after == marks.end() ? PlaceS() : after->place;
}

ReadableTextS makeReadableText(ViewZNT4C const& view, SpeechStyleS style) {
  return makeReadableText(view.crefRoot(), view.crefOperatorList(), style);
}

ReadableTextS makeReadableText(Node4C const& tree, OperatorListC const& operators, SpeechStyleS style) {
  Node4C const& row = tree.getType() == NODE4_ROOT ? *tree.child(0) : tree;
  return row.numChildren() == 0 ? ReadableTextS() : makeReadableText(wholeRow(row), operators, style);
}

ReadableTextS makeReadableText(SelectionS const& stretch, OperatorListC const& operators,
                               SpeechStyleS style) {
  ReadableTextS readable;
  detail::SpeakerC speaker(readable, operators, style);
  speaker.speak(inOneRow(stretch));
  speaker.finish();
  return readable;
}

wstring toSpeech(oss::PointerTC<math::algexpr::AlgebraicExpressionC> const& expression, SpeechStyleS style) {
  if (!expression) return {};
  auto session = expression->getCASSession();
  if (!session) session = math::algexpr::CASSessionBC::getSession();
  auto const operators = OperatorListRepositoryC::lookup(session->getEngine());
  std::unique_ptr<Node4C> const tree(
      Node4C::fromAlgebraicExpression(expression, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC));
  return makeReadableText(*tree, *operators, style).text;
}

}  // namespace zolt::field
