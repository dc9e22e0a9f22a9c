#pragma once

namespace zolt::math::ved {

/// The key codes that the view handles itself, unless the operator table binds them: the usual virtual-key
/// codes, and two of a calculator's keyboard.
enum KeyCodeE : unsigned long {
  KEY_BACKSPACE = 8,
  KEY_CLEAR = 12,
  KEY_LEFT = 37,
  KEY_UP = 38,
  KEY_RIGHT = 39,
  KEY_DOWN = 40,
  KEY_DELETE = 46,
  KEY_THETA = 153,      ///< types "θ"
  KEY_CAPITAL_E = 206,  ///< types "E"
};

}  // namespace zolt::math::ved
