#pragma once

#include <QByteArray>
#include <QString>

namespace zolt::desktop {

/// Replaces the file as `support::replaceFile` does. On failure it returns false, and `error` gives the
/// reason as a sentence without a full stop.
[[nodiscard]] bool writeFile(QString const& path, QByteArray const& bytes, QString& error);

/// Removes the file and the remains of an interrupted replacement beside it.
void removeFile(QString const& path);

}  // namespace zolt::desktop
