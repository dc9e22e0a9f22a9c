#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "hosts/qt/desktop/sheet.h"
#include "zolt/sheet/sheet_text.h"

namespace zolt::desktop {

// Sheets as files. docs/sheet-format.md describes the format.

/// Ending of the files' names, without the point.
constexpr char sheet_suffix[] = "zved";

/// What a file may hold at most; more is refused before it takes memory.
constexpr qint64 max_sheet_bytes = sheet::max_sheet_characters;

/// Nothing, with `error` naming the line and what is wrong with it, when the bytes are no sheet.
std::optional<Sheet> readSheet(QByteArray const& bytes, QString& error);
/// What is readable of a damaged sheet, and the rest as lines of text. Nothing when it is no sheet at all.
std::optional<Sheet> salvageSheet(QByteArray const& bytes);
QByteArray writeSheet(Sheet const& sheet);

/// The contents of a file that may be a sheet. Nothing, with `error`, when it cannot be read or is too large.
std::optional<QByteArray> readSheetFile(QString const& path, QString& error);
std::optional<Sheet> loadSheet(QString const& path, QString& error);
/// As `writeFile`; what could not be opened again is refused, too.
bool saveSheet(QString const& path, Sheet const& sheet, QString& error);

/// A formula as a line: `tree` is left out when the expression alone would show the same.
SheetLine makeFormulaLine(QString const& prefix, QString const& tree);

}  // namespace zolt::desktop
