#pragma once

#include <string>

// Internal to the Cairo library.

namespace zolt::surfaces {

/// Puts a text in UTF-8 under a keyword (1 to 79 Latin letters) into the bytes of a PNG picture, before its
/// pixels. Returns false when the bytes are not a PNG picture.
bool insertPngText(std::string& png, std::string const& keyword, std::string const& text);

}  // namespace zolt::surfaces
