#pragma once

namespace zolt::math::ved {

class GraphicsABC;
class Node4C;

/// Where the contents of a column are in it.
enum AlignmentE { ALIGNED_LEFT, ALIGNED_CENTRE };

/// What a table leaves free, in surface units.
struct TableSpacesS {
  long left;     ///< before the first column, for brackets
  long right;    ///< after the last one
  long columns;  ///< between two columns
  long rows;     ///< between two rows
};

/// Places the cells of a table, a construct whose operator says how many columns it has, and sets its size:
/// the cells of a row are on one axis, and those of a column on one line. The table's own axis is in its
/// middle, where a single line of text has it. For `OperatorBC::layoutNode4`.
void layoutTable(Node4C& table, TableSpacesS const& spaces, AlignmentE alignment,
                 GraphicsABC const& graphics);

}  // namespace zolt::math::ved
