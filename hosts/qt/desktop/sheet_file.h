#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <optional>
#include <vector>

#include "hosts/qt/desktop/long_work.h"
#include "hosts/qt/desktop/sheet.h"
#include "zolt/sheet/sheet_document.h"
#include "zolt/sheet/sheet_text.h"

namespace zolt::desktop {

// Reads and writes sheets as files. docs/sheet-format.md describes the format.

/// The extension of the file names, without the dot.
constexpr char sheet_suffix[] = "zved";

/// The most that a file may hold; a larger one is refused before it takes memory.
constexpr qint64 max_sheet_bytes = sheet::max_sheet_characters;

/// Which file it was and what it was like; equal as long as nobody changes or replaces it.
struct FileStamp {
  QDateTime changed;  ///< invalid: there was no file
  qint64 size = 0;
  quint64 device = 0, number = 0;  ///< 0 where the system does not tell
};

inline bool operator==(FileStamp const& a, FileStamp const& b) {
  return a.changed == b.changed && a.size == b.size && a.device == b.device && a.number == b.number;
}

FileStamp stampOf(QString const& path);

/// Returns no value when the bytes are not a sheet; `error` then names the line and what is wrong with it.
/// The same when `goOn` (may be empty), which is told the characters that have been read, stops it.
std::optional<Sheet> readSheet(QByteArray const& bytes, QString& error, Progress const& goOn = {});
/// The readable part of a damaged sheet, with the rest as lines of text. Returns no value when it is no sheet
/// at all, or when `goOn` stops it.
std::optional<Sheet> salvageSheet(QByteArray const& bytes, Progress const& goOn = {});
QByteArray writeSheet(Sheet const& sheet);

/// The contents of a file that may be a sheet, and what the file was like before they were read. Returns no
/// value, with `error`, when it cannot be read or is too large.
std::optional<QByteArray> readSheetFile(QString const& path, FileStamp& stamp, QString& error);
std::optional<Sheet> loadSheet(QString const& path, QString& error);
/// Works as `writeFile`, but also refuses a sheet that could not be opened again.
bool saveSheet(QString const& path, Sheet const& sheet, QString& error);

/// The kind of document that the name of a file asks for; no value for a name of no document.
std::optional<sheet::DocumentKindE> documentKindOf(QString const& path);
/// What a sheet can hold of a document. No value, with `error`, when it is too large or no text.
std::optional<Sheet> readDocument(QByteArray const& bytes, sheet::DocumentKindE kind, QString& error);
QByteArray writeDocument(Sheet const& sheet, sheet::DocumentKindE kind,
                         std::vector<sheet::WrittenResultS> const& results = {});

/// A formula as a line. `tree` is omitted when the expression alone would show the same.
SheetLine makeFormulaLine(QString const& prefix, QString const& tree);

}  // namespace zolt::desktop
