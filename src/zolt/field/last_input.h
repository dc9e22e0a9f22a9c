#pragma once

#include "zolt/ved/tree/tree_path.h"

namespace zolt::field {

/// What the last typed character did, as far as the next one may change its meaning.
struct LastInputS {
  char16_t ended = u'\0';  ///< the sign by which it left a construct
  bool ungrouped = false;  ///< it closed brackets, which vanished
  bool separated = false;  ///< it was ";" under a decimal comma, which may turn out to end a row of a table
  unsigned long historyBefore = 0;  ///< `ViewZNT4C::getHistoryPosition`
  math::ved::SelectionPathS selectionBefore;
};

/// What was completed just before: a blank keeps what is typed next apart from it.
enum CompletedE { COMPLETED_NOTHING, COMPLETED_LETTER, COMPLETED_FUNCTION };

}  // namespace zolt::field
