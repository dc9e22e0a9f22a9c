#pragma once

#include <QString>

#include "zolt/oss/wstring.h"

namespace zolt::qt {

inline QString toQString(oss::wstring const& text) { return QString::fromStdU16String(text); }
inline oss::wstring toWstring(QString const& text) { return text.toStdU16String(); }

}  // namespace zolt::qt
