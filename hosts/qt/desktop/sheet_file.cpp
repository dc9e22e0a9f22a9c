#include "hosts/qt/desktop/sheet_file.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QStringDecoder>

#include "hosts/qt/desktop/write_file.h"
#include "zolt/qt/text.h"
#include "zolt/sheet/sheet_text.h"

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace zolt::desktop {

using qt::toQString;
using qt::toWstring;

namespace {

QString tr(char const* text) { return QCoreApplication::translate("zolt::desktop::SheetFile", text); }

constexpr LineKind toLineKind(sheet::SheetLineKindE kind) {
  if (kind == sheet::SHEET_FORMULA) return LineKind::Formula;
  return kind == sheet::SHEET_TEXT ? LineKind::Text : LineKind::Heading;
}

constexpr sheet::SheetLineKindE toKind(LineKind kind) {
  if (kind == LineKind::Formula) return sheet::SHEET_FORMULA;
  return kind == LineKind::Text ? sheet::SHEET_TEXT : sheet::SHEET_HEADING;
}

SheetLine toLine(sheet::SheetLineS const& line) {
  return {toLineKind(line.kind), toQString(line.text), toQString(line.prefix), toQString(line.tree),
          line.graph};
}

Sheet toSheet(sheet::SheetT const& lines) {
  Sheet sheet;
  sheet.reserve(qsizetype(lines.size()));
  for (sheet::SheetLineS const& line : lines) sheet.push_back(toLine(line));
  return sheet;
}

/// Asks the open file, whatever has its name by now.
FileStamp stampOf(QFile const& file) {
  FileStamp stamp{file.fileTime(QFileDevice::FileModificationTime), file.size()};
#ifdef Q_OS_UNIX
  struct stat found = {};
  if (::fstat(file.handle(), &found) == 0) {
    stamp.device = found.st_dev;
    stamp.number = found.st_ino;
  }
#endif
  return stamp;
}

/// Opening a pipe would wait until another program writes into it.
bool isOpenable(QString const& path) {
  QFileInfo const info(path);
  return !info.exists() || info.isFile();
}

sheet::ProgressT toProgress(Progress const& goOn) {
  if (!goOn) return {};
  return [&goOn](unsigned long characters) { return goOn(qsizetype(characters)); };
}

sheet::SheetT toLines(Sheet const& sheet) {
  sheet::SheetT lines;
  lines.reserve(std::size_t(sheet.size()));
  for (SheetLine const& line : sheet) {
    lines.push_back(
        {toKind(line.kind), toWstring(line.text), toWstring(line.prefix), toWstring(line.tree), line.graph});
  }
  return lines;
}

std::optional<QString> decode(QByteArray const& bytes, QString& error) {
  QStringDecoder decoder(QStringDecoder::Utf8);
  QString text = decoder.decode(bytes);
  if (!decoder.hasError()) return text;
  error = tr("The file is no text in UTF-8");
  return std::nullopt;
}

}  // namespace

std::optional<Sheet> readSheet(QByteArray const& bytes, QString& error, Progress const& goOn) {
  std::optional<QString> const text = decode(bytes, error);
  if (!text) return std::nullopt;
  sheet::SheetT lines;
  sheet::SheetErrorS cause;
  if (!sheet::readSheet(toWstring(*text), lines, cause, toProgress(goOn))) {
    error = toQString(sheet::describe(cause));
    return std::nullopt;
  }
  return toSheet(lines);
}

std::optional<Sheet> salvageSheet(QByteArray const& bytes, Progress const& goOn) {
  sheet::SheetT lines;
  if (bytes.size() > max_sheet_bytes ||
      !sheet::salvageSheet(toWstring(QString::fromUtf8(bytes)), lines, toProgress(goOn))) {
    return std::nullopt;
  }
  return toSheet(lines);
}

QByteArray writeSheet(Sheet const& sheet) { return toQString(sheet::writeSheet(toLines(sheet))).toUtf8(); }

FileStamp stampOf(QString const& path) {
  QFile file(path);
  return isOpenable(path) && file.open(QIODevice::ReadOnly) ? stampOf(file) : FileStamp();
}

std::optional<QByteArray> readSheetFile(QString const& path, FileStamp& stamp, QString& error) {
  QFile file(path);
  if (!isOpenable(path)) {
    error = tr("This is a folder or a device, not a file");
    return std::nullopt;
  }
  QByteArray bytes;
  if (file.open(QIODevice::ReadOnly)) {
    stamp = stampOf(file);
    bytes = file.read(max_sheet_bytes + 1);
  }
  if (file.error() != QFileDevice::NoError) {
    error = file.errorString();
    return std::nullopt;
  }
  if (bytes.size() > max_sheet_bytes) {
    error = tr("The file has %1, and a sheet has %2 at most")
                .arg(QLocale().formattedDataSize(file.size(), 1),
                     QLocale().formattedDataSize(max_sheet_bytes, 0));
    return std::nullopt;
  }
  return bytes;
}

std::optional<Sheet> loadSheet(QString const& path, QString& error) {
  FileStamp ignored;
  auto const bytes = readSheetFile(path, ignored, error);
  return bytes ? readSheet(*bytes, error) : std::nullopt;
}

bool saveSheet(QString const& path, Sheet const& sheet, QString& error) {
  sheet::SheetT const lines = toLines(sheet);
  QByteArray const bytes =
      sheet::isWithinLimits(lines) ? toQString(sheet::writeSheet(lines)).toUtf8() : QByteArray();
  if (bytes.isEmpty() || bytes.size() > max_sheet_bytes) {
    error = tr("The sheet is too large: it could not be opened again");
    return false;
  }
  return writeFile(path, bytes, error);
}

std::optional<sheet::DocumentKindE> documentKindOf(QString const& path) {
  if (path.endsWith(QLatin1String(".tex"), Qt::CaseInsensitive)) return sheet::DOCUMENT_LATEX;
  if (path.endsWith(QLatin1String(".md"), Qt::CaseInsensitive)) return sheet::DOCUMENT_MARKDOWN;
  return std::nullopt;
}

std::optional<Sheet> readDocument(QByteArray const& bytes, sheet::DocumentKindE kind, QString& error) {
  std::optional<QString> const text = decode(bytes, error);
  if (!text) return std::nullopt;
  sheet::SheetT lines;
  if (sheet::readDocument(toWstring(*text), kind, lines)) return toSheet(lines);
  error = tr("The document is too large for a sheet");
  return std::nullopt;
}

QByteArray writeDocument(Sheet const& sheet, sheet::DocumentKindE kind,
                         std::vector<sheet::WrittenResultS> const& results) {
  return toQString(sheet::writeDocument(toLines(sheet), kind, results)).toUtf8();
}

SheetLine makeFormulaLine(QString const& prefix, QString const& tree) {
  return toLine(sheet::makeFormulaLine(toWstring(prefix), toWstring(tree)));
}

}  // namespace zolt::desktop
