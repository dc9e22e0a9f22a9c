#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "hosts/qt/desktop/sheet.h"
#include "zolt/field/sheet_text.h"

namespace zolt::desktop {

// Sheets as files. docs/sheet-format.md describes the format.

/// Ending of the files' names, without the point.
constexpr char sheet_suffix[] = "zved";

/// What a file may hold at most; more is refused before it takes memory.
constexpr qint64 max_sheet_bytes = field::max_sheet_characters;

/// Nothing, with `error` naming the line and what is wrong with it, when the bytes are no sheet.
std::optional<Sheet> readSheet(QByteArray const& bytes, QString& error);
QByteArray writeSheet(Sheet const& sheet);

std::optional<Sheet> loadSheet(QString const& path, QString& error);

/// Makes `bytes` the contents of the file: at once, or, when anything fails (a full disk, a folder that may
/// not be written), not at all; `error` then says why.
bool replaceFile(QString const& path, QByteArray const& bytes, QString& error);

/// A formula as a line: `tree` is left out when the expression alone would show the same.
SheetLine makeFormulaLine(QString const& prefix, QString const& tree);

}  // namespace zolt::desktop
