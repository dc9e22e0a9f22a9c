#pragma once

#include <vector>

#include "zolt/field/input_options.h"
#include "zolt/oss/pointer.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class OperatorBC;
class ViewZNT4C;
}  // namespace zolt::math::ved

namespace zolt::field::detail {

using math::ved::PlaceS;
using oss::PointerTC;

/// A stretch of a row and the construct that replaces it.
struct ConstructReplacementS {
  struct ContentS {
    math::ved::SelectionS range;
    unsigned long row;
  };
  struct MarkS {
    oss::wstring text;
    unsigned long row;
  };
  static constexpr unsigned long after_construct = static_cast<unsigned long>(-1);

  PointerTC<math::ved::OperatorBC> op;  ///< null: nothing is replaced
  PlaceS begin;
  PlaceS end;
  std::vector<ContentS> contents;  ///< what moves into rows of the construct
  std::vector<MarkS> marks;        ///< what is typed into rows: "2" of "log_2(", "a" of "a_("
  unsigned long caretRow = 0;      ///< may be `after_construct`
  bool hasBounds = false;          ///< its bounds or its operand follow as in text: "sum_(", "d/dx "
};

/// What puts the construct of that name in the place of the selection, which becomes its first argument.
ConstructReplacementS makeCall(math::ved::ViewZNT4C const& view, wstring const& name);

/// The replacement for the call whose "(" (or first ",") was just typed before the caret. A name that is also
/// the text of a plain function stays that function until the comma: "log(x)" is a decimal logarithm.
ConstructReplacementS findConstructReplacement(math::ved::ViewZNT4C const& view,
                                               InputOptionsS const& options);

/// The replacement for the construct that `sign` leaves with fewer arguments than it has, ")" as in
/// "int(f,x)", or gives one more, "," as in "diff(f,x,": the construct that is typed by the same name with so
/// many.
ConstructReplacementS findRecountedConstruct(math::ved::ViewZNT4C const& view, char16_t sign);

}  // namespace zolt::field::detail
