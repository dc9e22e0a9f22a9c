#include "hosts/qt/desktop/sheet_file.h"

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>

#include "zolt/field/sheet_text.h"
#include "zolt/qt/text.h"

namespace zolt::desktop {

using qt::toQString;
using qt::toWstring;

namespace {

QString tr(char const* text) { return QCoreApplication::translate("zolt::desktop::SheetFile", text); }

constexpr LineKind toLineKind(field::SheetLineKindE kind) {
  if (kind == field::SHEET_FORMULA) return LineKind::Formula;
  return kind == field::SHEET_TEXT ? LineKind::Text : LineKind::Heading;
}

constexpr field::SheetLineKindE toKind(LineKind kind) {
  if (kind == LineKind::Formula) return field::SHEET_FORMULA;
  return kind == LineKind::Text ? field::SHEET_TEXT : field::SHEET_HEADING;
}

SheetLine toLine(field::SheetLineS const& line) {
  return {toLineKind(line.kind), toQString(line.text), toQString(line.prefix), toQString(line.tree)};
}

}  // namespace

std::optional<Sheet> readSheet(QByteArray const& bytes, QString& error) {
  if (bytes.size() > max_sheet_bytes) {
    error = tr("The file is too large for a sheet");
    return std::nullopt;
  }
  QStringDecoder decoder(QStringDecoder::Utf8);
  QString const text = decoder.decode(bytes);
  if (decoder.hasError()) {
    error = tr("The file is no text in UTF-8");
    return std::nullopt;
  }
  field::SheetT lines;
  field::SheetErrorS cause;
  if (!field::readSheet(toWstring(text), lines, cause)) {
    error = toQString(field::describe(cause));
    return std::nullopt;
  }
  Sheet sheet;
  sheet.reserve(qsizetype(lines.size()));
  for (field::SheetLineS const& line : lines) sheet.push_back(toLine(line));
  return sheet;
}

QByteArray writeSheet(Sheet const& sheet) {
  field::SheetT lines;
  lines.reserve(std::size_t(sheet.size()));
  for (SheetLine const& line : sheet) {
    lines.push_back({toKind(line.kind), toWstring(line.text), toWstring(line.prefix), toWstring(line.tree)});
  }
  return toQString(field::writeSheet(lines)).toUtf8();
}

std::optional<Sheet> loadSheet(QString const& path, QString& error) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    error = file.errorString();
    return std::nullopt;
  }
  QByteArray const bytes = file.read(max_sheet_bytes + 1);
  if (file.error() != QFileDevice::NoError) {
    error = file.errorString();
    return std::nullopt;
  }
  return readSheet(bytes, error);
}

bool replaceFile(QString const& path, QByteArray const& bytes, QString& error) {
  QSaveFile file(path);
  if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit()) return true;
  error = file.errorString();
  return false;
}

SheetLine makeFormulaLine(QString const& prefix, QString const& tree) {
  return toLine(field::makeFormulaLine(toWstring(prefix), toWstring(tree)));
}

}  // namespace zolt::desktop
