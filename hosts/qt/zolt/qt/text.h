#pragma once

#include <QString>

#include "zolt/oss/wstring.h"

namespace zolt::qt {

/// The text in Qt's type; both hold the same 16-bit characters.
inline QString toQString(oss::wstring const& text) { return QString::fromStdU16String(text); }
/// And back.
inline oss::wstring toWstring(QString const& text) { return text.toStdU16String(); }

}  // namespace zolt::qt
