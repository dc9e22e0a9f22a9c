#pragma once

#include "zolt/mathml/mathml.h"
#include "zolt/oss/wstring.h"

namespace zolt::mathml {

// MathML as text. Expat reads it. Only the first `math` element is read, from the start tag on: nothing that
// comes before, no document type and no entity that it declares, is looked at. The named characters of HTML
// and MathML ("&InvisibleTimes;") are known.

/// Reads the `math` element of a text, which may be a whole page, as elements. False, with `tree` in any
/// state, when there is none, more than one, or it is not well-formed; `*error` (may be null) then says where
/// and why.
[[nodiscard]] bool readMathmlTree(wstring const& text, MathmlTreeC& tree, ReadErrorS* error = nullptr);

/// The expression of that element (`fromMathml`).
[[nodiscard]] PointerTC<AlgebraicExpressionC> fromMathmlText(wstring const& text,
                                                             PointerTC<CASSessionBC> session,
                                                             ReadErrorS* error = nullptr);

/// The text of an XML file or of a clipboard: UTF-16 or UTF-8 by its byte order mark, Latin 1 where the XML
/// declaration says so, else UTF-8. False when the bytes are not in that encoding or it is another one.
[[nodiscard]] bool decodeXml(oss::bytestring const& bytes, wstring& text);

}  // namespace zolt::mathml
