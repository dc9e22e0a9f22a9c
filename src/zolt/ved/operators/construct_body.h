#pragma once

namespace zolt::math::ved {

class GraphicsABC;
class Node4C;

/// What may be in a row without brackets around it.
enum BodyE {
  BODY_PRODUCT,  ///< factors, as after a product sign
  BODY_OPERAND   ///< one operand, as before an index
};

/// Whether a reader would take only a part of the row for what a sign beside it applies to. A row that is too
/// long to be looked at in constant time counts as one.
bool isLoose(Node4C const& row, BodyE body);

/// The room beside the last row of a construct such as a limit. A pair of brackets is drawn there when
/// something in the row, or after the construct, would be misread without it. What is after the construct is
/// not known when it is laid out, so that there is some room at all times.
struct BodyRoomS {
  long left;
  long right;
};
BodyRoomS bodyRoom(Node4C const& body, BodyE kind, GraphicsABC const& graphics);
/// Draws the brackets where they are needed; (x, y) is the construct's corner.
void drawBodyBrackets(Node4C const& construct, Node4C const& body, BodyE kind, GraphicsABC const& graphics,
                      long x, long y);
/// The same for a construct with room for both brackets at all times. Where they are not needed, the surface
/// decides (`GraphicsABC::drawSpareBrackets`).
void drawRoomyBrackets(Node4C const& construct, Node4C const& body, BodyE kind, GraphicsABC const& graphics,
                       long x, long y);

}  // namespace zolt::math::ved
