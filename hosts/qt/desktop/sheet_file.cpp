#include "hosts/qt/desktop/sheet_file.h"

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>

#include "zolt/field/formula_field.h"
#include "zolt/qt/text.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::desktop {

using qt::toQString;
using qt::toWstring;

namespace {

constexpr QLatin1String magic("zolt-sheet");
constexpr int version = 1;

QString tr(char const* text) { return QCoreApplication::translate("zolt::desktop::SheetFile", text); }

/// Tries formulas before anybody shows them.
class FormulaTester {
 public:
  FormulaTester() : field_(new surfaces::RecordingGraphicsC) {}

  /// Whether it reads; it then is the formula tried.
  bool tryPrefix(QString const& prefix) {
    auto expression = math::algexpr::AlgebraicExpressionC::fromPrefixString(toWstring(prefix));
    if (!expression) return false;
    field_.setExpression(std::move(expression));
    return true;
  }
  bool tryTree(QString const& tree) { return field_.setNotation(toWstring(tree)); }

  QString tree() const { return toQString(writeTreeNotation(field_.crefView().crefRoot())); }
  QString prefix() {
    auto const expression = field_.getExpression();
    return expression ? toQString(expression->toPrefixString()) : QString();
  }

 private:
  field::FormulaFieldC field_;
};

/// Reads the lines of a file one by one.
class SheetReader {
 public:
  explicit SheetReader(QStringList lines) : lines_(std::move(lines)) {}

  bool read() {
    if (!readHeader()) return false;
    for (number_ = 2; number_ <= lines_.size(); ++number_) {
      QString const& line = lines_[number_ - 1];
      QString const word = line.section(u' ', 0, 0);
      QString const rest = line.mid(word.size() + 1);
      if (word == QLatin1String("end")) return readEnd(rest);
      if (!readLine(word, rest)) return false;
    }
    return fail(tr("the file ends too early; its last line, \"end\", is missing"));
  }

  Sheet const& sheet() const { return sheet_; }
  QString const& error() const { return error_; }

 private:
  bool fail(QString const& why) {
    error_ = tr("Line %1: %2").arg(number_).arg(why);
    return false;
  }

  bool readHeader() {
    QStringList const words = lines_.value(0).split(u' ');
    if (words.value(0) != magic) return fail(tr("this is no sheet: it does not start with \"zolt-sheet\""));
    bool known = false;
    int const written = words.value(1).toInt(&known);
    if (known && words.size() == 2 && written > version) {
      return fail(tr("the sheet was written by a newer program (version %1)").arg(written));
    }
    return (known && words.size() == 2 && written == version) || fail(tr("the version cannot be read"));
  }

  bool readEnd(QString const& rest) {
    bool known = false;
    qlonglong const count = rest.toLongLong(&known);
    if (!known || count != sheet_.size()) {
      return fail(tr("the sheet should have %1 lines and has %2").arg(rest).arg(sheet_.size()));
    }
    for (++number_; number_ <= lines_.size(); ++number_) {
      if (!lines_[number_ - 1].isEmpty()) return fail(tr("there is something behind the end"));
    }
    return true;
  }

  bool readLine(QString const& word, QString const& rest) {
    if (word == QLatin1String("tree")) return readTree(rest);
    if (sheet_.size() == max_sheet_lines) {
      return fail(tr("a sheet has %1 lines at most").arg(max_sheet_lines));
    }
    if (word == QLatin1String("formula")) {
      if (!rest.isEmpty() && !tester_.tryPrefix(rest)) return fail(tr("the expression cannot be read"));
      sheet_.push_back({LineKind::Formula, {}, rest, {}});
    } else if (word == QLatin1String("text")) {
      sheet_.push_back({LineKind::Text, rest, {}, {}});
    } else if (word == QLatin1String("heading")) {
      sheet_.push_back({LineKind::Heading, rest, {}, {}});
    } else {
      return fail(tr("\"%1\" means nothing in a sheet").arg(word.left(40)));
    }
    return true;
  }

  bool readTree(QString const& rest) {
    if (sheet_.isEmpty() || sheet_.back().kind != LineKind::Formula || !sheet_.back().tree.isEmpty()) {
      return fail(tr("\"tree\" stands behind no formula"));
    }
    if (!tester_.tryTree(rest)) return fail(tr("the formula cannot be read"));
    // Somebody may have changed the expression by hand.
    QString const& prefix = sheet_.back().prefix;
    if (prefix.isEmpty() || prefix == tester_.prefix()) sheet_.back().tree = rest;
    return true;
  }

  QStringList lines_;
  qsizetype number_ = 1;
  Sheet sheet_;
  QString error_;
  FormulaTester tester_;
};

}  // namespace

std::optional<Sheet> readSheet(QByteArray const& bytes, QString& error) {
  if (bytes.size() > max_sheet_bytes) {
    error = tr("The file is too large for a sheet");
    return std::nullopt;
  }
  QStringDecoder decoder(QStringDecoder::Utf8);
  QString text = decoder.decode(bytes);
  if (decoder.hasError()) {
    error = tr("The file is no text in UTF-8");
    return std::nullopt;
  }
  text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  SheetReader reader(text.split(u'\n'));
  if (!reader.read()) {
    error = reader.error();
    return std::nullopt;
  }
  return reader.sheet();
}

QByteArray writeSheet(Sheet const& sheet) {
  QString text = QStringLiteral("%1 %2\n").arg(magic).arg(version);
  for (SheetLine const& line : sheet) {
    switch (line.kind) {
      case LineKind::Formula:
        text += line.prefix.isEmpty() ? QStringLiteral("formula\n")
                                      : QStringLiteral("formula ") + line.prefix + QLatin1Char('\n');
        if (!line.tree.isEmpty()) text += QStringLiteral("tree ") + line.tree + QLatin1Char('\n');
        break;
      case LineKind::Text:
        text += QStringLiteral("text ") + line.text + QLatin1Char('\n');
        break;
      case LineKind::Heading:
        text += QStringLiteral("heading ") + line.text + QLatin1Char('\n');
        break;
    }
  }
  text += QStringLiteral("end %1\n").arg(sheet.size());
  return text.toUtf8();
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
  SheetLine line{LineKind::Formula, {}, prefix, tree};
  FormulaTester tester;
  bool const tellsAll = prefix.isEmpty() || tester.tryPrefix(prefix);
  if (tellsAll && tester.tree() == tree) line.tree.clear();
  return line;
}

}  // namespace zolt::desktop
