#pragma once

#include <QByteArray>
#include <QString>

namespace zolt::desktop {

/// Replaces the file as `support::replaceFile` does. On failure false, with `error` saying why as a sentence
/// without a full stop.
[[nodiscard]] bool writeFile(QString const& path, QByteArray const& bytes, QString& error);

/// Removes the file and what a replacement that was cut short has left beside it.
void removeFile(QString const& path);

}  // namespace zolt::desktop
