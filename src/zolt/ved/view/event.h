#pragma once

namespace zolt::math::ved {

/// Kinds of input event. The values are fixed: hosts and recorded scripts use them.
enum EventE {
  EVENT_CHAR = 0,      ///< a character was typed; its code is the code's low 16 bits
  EVENT_KEY = 1,       ///< a key was pressed; the code is a `KeyCodeE`, or one that the operator table binds
  EVENT_PEN_DOWN = 2,  ///< the pointer was pressed at x, y
  EVENT_PEN_UP = 3,    ///< the pointer was released
  EVENT_PEN_MOVE = 4,  ///< the pointer is at x, y
};

}  // namespace zolt::math::ved
