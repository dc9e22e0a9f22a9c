#include "zolt/qt/formula_mime.h"

#include <algorithm>
#include <vector>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/exchange/latex.h"
#include "zolt/mathml/text/mathml_text.h"
#include "zolt/qt/formula_picture.h"
#include "zolt/qt/text.h"

namespace zolt::qt {

namespace {

constexpr char text_type[] = "text/plain";
constexpr char html_type[] = "text/html";
constexpr char svg_type[] = "image/svg+xml";
constexpr char png_type[] = "image/png";
constexpr char image_type[] = "application/x-qt-image";  // Qt turns it into the platform's own pictures

constexpr qreal picture_zoom = 3;
constexpr qreal picture_margin = 2;

/// A longer text is not a formula that a person copied.
constexpr std::size_t max_text = field::max_pasted_markup;

template <class WriterT>
QByteArray writeAs(WriterT writer, oss::wstring const& prefix) {
  auto const expression = math::algexpr::AlgebraicExpressionC::fromPrefixString(prefix);
  return expression ? toQString(writer(*expression)).toUtf8() : QByteArray();
}

QByteArray toByteArray(oss::bytestring const& bytes) {
  return QByteArray(reinterpret_cast<char const*>(bytes.data()), qsizetype(bytes.size()));
}

oss::bytestring toBytes(QByteArray const& bytes) { return oss::bytestring(bytes.begin(), bytes.end()); }

struct TypeS {
  QString name;
  oss::wstring field::ClipboardContentS::*form;
};

/// The types of texts that are read, by Qt's names: some systems have their own for MathML.
std::vector<TypeS> const& readTypes() {
  static std::vector<TypeS> const types = [] {
    std::vector<TypeS> all;
    for (auto const& [type, form] : field::getClipboardTypes()) all.push_back({QLatin1String(type), form});
    for (char const* const name : {"MathML", "MathML Presentation", "MathML Content"})
      all.push_back({QStringLiteral("application/x-qt-windows-mime;value=\"%1\"").arg(QLatin1String(name)),
                     &field::ClipboardContentS::mathml});
    return all;
  }();
  return types;
}

/// Such a text, of MathML in its own encoding.
oss::wstring readAs(QMimeData const& data, QString const& type) {
  if (type == QLatin1String(text_type)) return toWstring(data.text());
  if (type == QLatin1String(html_type)) return toWstring(data.html());
  oss::wstring text;
  bool const isText = mathml::decodeXml(toBytes(data.data(type)), text);
  return isText ? text : oss::wstring();
}

}  // namespace

FormulaMimeData::FormulaMimeData(field::ClipboardContentS content, std::shared_ptr<FormulaFonts> fonts,
                                 bool decimalComma)
    : content_(std::move(content)), fonts_(std::move(fonts)), decimalComma_(decimalComma) {}

FormulaMimeData::~FormulaMimeData() = default;

field::ClipboardContentS FormulaMimeData::read(QMimeData const& data) {
  field::ClipboardContentS content;
  content.bytes = toBytes(data.data(QLatin1String(formula_mime_type)));
  content.prefix = toWstring(QString::fromUtf8(data.data(QLatin1String(prefix_mime_type))));
  for (auto const& [type, form] : readTypes()) {
    oss::wstring& text = content.*form;
    if (text.empty()) text = readAs(data, type);
    if (text.size() > max_text) text.clear();
  }
  return content;
}

bool FormulaMimeData::canRead(QMimeData const* data) {
  auto const hasFormat = [&](QString const& type) { return data->hasFormat(type); };
  return data && (data->hasText() || hasFormat(QLatin1String(formula_mime_type)) ||
                  hasFormat(QLatin1String(prefix_mime_type)) ||
                  std::any_of(readTypes().begin(), readTypes().end(),
                              [&](TypeS const& type) { return hasFormat(type.name); }));
}

QStringList FormulaMimeData::formats() const {
  QStringList types;
  if (!content_.bytes.empty()) types << QLatin1String(formula_mime_type);
  if (!content_.prefix.empty())
    types << QLatin1String(prefix_mime_type) << QLatin1String(mathml_mime_type)
          << QLatin1String(latex_mime_type);
  if (!content_.plainText.empty()) types << QLatin1String(text_type);
  if (!content_.html.empty()) types << QLatin1String(html_type);
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
  if (type == QLatin1String(html_type)) return toQString(content_.html);
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
