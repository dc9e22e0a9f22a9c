#pragma once

#include <QList>
#include <QString>

#include "zolt/sheet/sheet_text.h"

namespace zolt::desktop {

enum class LineKind { Formula, Text, Heading };

/// One line of a sheet.
struct SheetLine {
  LineKind kind = LineKind::Formula;
  QString text;                    ///< of a text or heading, without line ends
  QString prefix;                  ///< of a formula, in prefix notation; empty when it is incomplete
  QString tree;                    ///< of a formula, in tree notation; empty when its expression says it all
  sheet::GraphWindowS graph = {};  ///< of a formula
};

inline bool operator==(SheetLine const& a, SheetLine const& b) {
  return a.kind == b.kind && a.text == b.text && a.prefix == b.prefix && a.tree == b.tree &&
         a.graph == b.graph;
}

using Sheet = QList<SheetLine>;

}  // namespace zolt::desktop
