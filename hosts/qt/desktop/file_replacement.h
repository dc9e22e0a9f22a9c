#pragma once

#include <QByteArray>
#include <QString>

namespace zolt::desktop {

/// Makes `bytes` the contents of the file: all of them or, whatever fails and whenever the program or the
/// computer ends, none. They are on the disk before they take over the file's name. A link stays a link, and
/// permissions stay as they are. False, with `error` saying why as a sentence without a full stop, when the
/// file is as it was.
///
/// What a program that was killed in the middle has left beside the file, one file at most, goes with the
/// next replacement.
bool replaceFile(QString const& path, QByteArray const& bytes, QString& error);

/// Removes the file and what a replacement that was cut short has left beside it.
void removeFile(QString const& path);

}  // namespace zolt::desktop
