#include "zolt/qt/formula_mime.h"

#include <QRegularExpression>
#include <QTextDocumentFragment>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/exchange/latex.h"
#include "zolt/mathml/text/mathml_text.h"
#include "zolt/qt/formula_picture.h"
#include "zolt/qt/text.h"

namespace zolt::qt {

namespace {

constexpr char text_type[] = "text/plain";
constexpr char svg_type[] = "image/svg+xml";
constexpr char png_type[] = "image/png";
constexpr char image_type[] = "application/x-qt-image";  // Qt turns it into the platform's own pictures

constexpr qreal picture_zoom = 3;
constexpr qreal picture_margin = 2;

/// A longer text is not a formula that a person copied.
constexpr qsizetype max_text = 1 << 20;

template <class WriterT>
QByteArray writeAs(WriterT writer, oss::wstring const& prefix) {
  auto const expression = math::algexpr::AlgebraicExpressionC::fromPrefixString(prefix);
  return expression ? toQString(writer(*expression)).toUtf8() : QByteArray();
}

/// The prefix text of the formula that MathML means, as such or in a page; empty when there is none.
oss::wstring readMathml(QMimeData const& data) {
  QByteArray const bytes = data.data(QLatin1String(mathml_mime_type));
  oss::wstring text;
  if (bytes.isEmpty() || bytes.size() > max_text ||
      !mathml::decodeXml(oss::bytestring(bytes.begin(), bytes.end()), text)) {
    QString const page = data.hasHtml() ? data.html() : data.text();
    text = page.size() <= max_text ? toWstring(page) : oss::wstring();
  }
  if (!mathml::hasMathml(text)) return {};
  auto const expression = mathml::fromMathmlText(text, math::algexpr::CASSessionBC::getSession());
  return expression ? expression->toPrefixString() : oss::wstring();
}

/// The LaTeX that web pages leave beside what they show: in an annotation, where the texts of a page have
/// entities.
QString findLatex(QString const& html) {
  static QRegularExpression const annotation(
      QStringLiteral(
          "<annotation[^>]*encoding=\"(?:application/x-tex|TeX|LaTeX)\"[^>]*>([^<]*)</annotation>"),
      QRegularExpression::CaseInsensitiveOption);
  QRegularExpressionMatch const found = annotation.match(html);
  return found.hasMatch() ? QTextDocumentFragment::fromHtml(found.captured(1)).toPlainText() : QString();
}

QByteArray toByteArray(oss::bytestring const& bytes) {
  return QByteArray(reinterpret_cast<char const*>(bytes.data()), qsizetype(bytes.size()));
}

oss::bytestring toBytes(QByteArray const& bytes) { return oss::bytestring(bytes.begin(), bytes.end()); }

}  // namespace

FormulaMimeData::FormulaMimeData(field::ClipboardContentS content, std::shared_ptr<FormulaFonts> fonts,
                                 bool decimalComma)
    : content_(std::move(content)), fonts_(std::move(fonts)), decimalComma_(decimalComma) {}

FormulaMimeData::~FormulaMimeData() = default;

field::ClipboardContentS FormulaMimeData::read(QMimeData const& data) {
  field::ClipboardContentS content;
  content.bytes = toBytes(data.data(QLatin1String(formula_mime_type)));
  content.prefix = toWstring(QString::fromUtf8(data.data(QLatin1String(prefix_mime_type))));
  if (content.bytes.empty() && content.prefix.empty()) content.prefix = readMathml(data);
  QString latex = QString::fromUtf8(data.data(QLatin1String(latex_mime_type)));
  if (latex.isEmpty() && data.hasHtml() && data.html().size() <= max_text) latex = findLatex(data.html());
  if (latex.size() <= max_text) content.latex = toWstring(latex);
  QString const text = data.text();
  if (text.size() <= max_text) content.plainText = toWstring(text);
  return content;
}

bool FormulaMimeData::canRead(QMimeData const* data) {
  return data && (data->hasFormat(QLatin1String(formula_mime_type)) ||
                  data->hasFormat(QLatin1String(prefix_mime_type)) ||
                  data->hasFormat(QLatin1String(mathml_mime_type)) ||
                  data->hasFormat(QLatin1String(latex_mime_type)) || data->hasHtml() || data->hasText());
}

QStringList FormulaMimeData::formats() const {
  QStringList types;
  if (!content_.bytes.empty()) types << QLatin1String(formula_mime_type);
  if (!content_.prefix.empty())
    types << QLatin1String(prefix_mime_type) << QLatin1String(mathml_mime_type)
          << QLatin1String(latex_mime_type);
  if (!content_.plainText.empty()) types << QLatin1String(text_type);
  if (!content_.bytes.empty() && fonts_) {
    types << QLatin1String(svg_type) << QLatin1String(png_type) << QLatin1String(image_type);
  }
  return types;
}

bool FormulaMimeData::hasFormat(QString const& type) const { return formats().contains(type); }

QVariant FormulaMimeData::retrieveData(QString const& type, QMetaType) const {
  if (type == QLatin1String(formula_mime_type)) return toByteArray(content_.bytes);
  if (type == QLatin1String(prefix_mime_type)) return toQString(content_.prefix).toUtf8();
  if (type == QLatin1String(latex_mime_type)) return writeAs(exchange::toLatex, content_.prefix);
  if (type == QLatin1String(mathml_mime_type)) {
    return writeAs([](auto const& one) { return mathml::toMathml(one); }, content_.prefix);
  }
  if (type == QLatin1String(text_type)) return toQString(content_.plainText);
  if (!fonts_ || !hasFormat(type)) return {};
  FormulaPicture picture(fonts_, decimalComma_);
  if (!picture.setContent(content_)) return {};
  if (type == QLatin1String(svg_type)) return picture.toSvg(picture_zoom, picture_margin, Qt::black);
  if (type == QLatin1String(png_type)) {
    return picture.toPng(picture_zoom, picture_margin, Qt::black, Qt::white);
  }
  return picture.toImage(picture_zoom, picture_margin, Qt::black, Qt::white);
}

}  // namespace zolt::qt
