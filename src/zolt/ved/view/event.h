#pragma once

namespace zolt::math::ved {

/// Kinds of input event. The values are fixed: hosts and recorded scripts use them.
enum EventE {
  EVENT_CHAR = 0,      ///< a typed character (the code's low 16 bits)
  EVENT_KEY = 1,       ///< a key code
  EVENT_PEN_DOWN = 2,  ///< pointer pressed at x, y
  EVENT_PEN_UP = 3,    ///< pointer released
  EVENT_PEN_MOVE = 4,  ///< pointer at x, y
};

}  // namespace zolt::math::ved
