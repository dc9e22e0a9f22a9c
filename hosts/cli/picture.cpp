#include "hosts/cli/picture.h"

#include <algorithm>
#include <cstdio>

#include "hosts/cli/output_file.h"
#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/surfaces/typeset/font_size.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::cli {

namespace {

// The space between the formulas of a sheet, in surface units.
constexpr long column_gap = 24;
constexpr long row_gap = 18;

bool readHexDigit(char c, unsigned& value) {
  if (c >= '0' && c <= '9') {
    value = static_cast<unsigned>(c - '0');
  } else if ((c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F')) {
    value = static_cast<unsigned>((c | 0x20) - 'a') + 10;
  } else {
    return false;
  }
  return true;
}

char toLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

PictureC::PictureC(oss::PointerTC<surfaces::TypesetterC> const& typesetter)
    : graphics_(new surfaces::CairoGraphicsC(typesetter)) {}

void PictureC::drawFormula(FormulaC& formula, exchange::SpeechStyleS speech) {
  math::ved::Node4C& tree = formula.refTree();
  tree.layout(*graphics_);
  tree.display(*graphics_, 0, 0, &tree);
  width_ = tree.getWidth();
  height_ = tree.getHeight();
  auto const& size = surfaces::getFontSize(0);
  options_.baseline = double(tree.getMidHeight()) - double(size.midHeight) + size.baseline;
  FaultS ignored;
  auto const expression = formula.getExpression(ignored);
  if (expression) {
    options_.expression = expression->toPrefixString();
    options_.plainText = exchange::toPlainText(*expression, exchange::PLAIN_TEXT_READABLE);
  }
  options_.spokenText = formula.speak(speech);
  // The language of the text around is supposed to be English.
  if (speech.language == exchange::SPEECH_GERMAN) options_.spokenLanguage = "de";
}

void PictureC::drawSheet(std::vector<std::unique_ptr<FormulaC>> const& formulas, long width) {
  std::vector<math::ved::Node4C*> row;
  long room = width;
  width_ = width;
  for (auto const& formula : formulas) {
    math::ved::Node4C& tree = formula->refTree();
    tree.layout(*graphics_);
    if (!row.empty() && room < tree.getWidth() + static_cast<long>(row.size()) * column_gap) {
      drawRow(row, room);
      row.clear();
      room = width;
    }
    row.push_back(&tree);
    room -= tree.getWidth();
  }
  if (!row.empty()) drawRow(row, room);
}

void PictureC::drawRow(std::vector<math::ved::Node4C*> const& trees, long room) {
  long height = 0;
  for (math::ved::Node4C const* tree : trees) height = std::max(height, tree->getHeight());
  long const top = height_ > 0 ? height_ + row_gap : 0;
  long const gap = std::max(0L, room) / static_cast<long>(trees.size());
  long left = gap / 2;
  for (math::ved::Node4C* tree : trees) {
    tree->display(*graphics_, left, top + (height - tree->getHeight()) / 2, tree);
    left += tree->getWidth() + gap;
  }
  width_ = std::max(width_, left - gap);
  height_ = top + height;
}

bool PictureC::write(std::string const& path, surfaces::PictureFormatE format, std::string& error) const {
  std::string bytes;
  return toBytes(format, bytes, error) && writeFile(path, bytes, error);
}

std::string PictureC::writeSizes(surfaces::PictureFormatE format) const {
  auto const size = surfaces::CairoGraphicsC::measure(format, width_, height_, options_);
  std::string out;
  for (double const length : {size.width, size.height, size.depth}) {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.3f", length);
    std::string number = digits;
    number.erase(number.find_last_not_of('0') + 1);
    if (number.back() == '.') number.pop_back();
    out += (out.empty() ? "" : "\t") + number + size.unit;
  }
  return out;
}

bool PictureC::toBytes(surfaces::PictureFormatE format, std::string& bytes, std::string& error) const {
  return graphics_->render(format, width_, height_, options_, bytes, error);
}

bool findPictureFormat(std::string const& path, surfaces::PictureFormatE& format) {
  std::size_t const dot = path.find_last_of("./");
  if (dot == std::string::npos || path[dot] != '.') return false;
  std::string extension = path.substr(dot + 1);
  std::transform(extension.begin(), extension.end(), extension.begin(), toLower);
  if (extension == "svg") {
    format = surfaces::PICTURE_SVG;
  } else if (extension == "png") {
    format = surfaces::PICTURE_PNG;
  } else if (extension == "pdf") {
    format = surfaces::PICTURE_PDF;
  } else {
    return false;
  }
  return true;
}

bool readColour(std::string const& text, surfaces::ColourS& colour) {
  if (text == "none" || text == "transparent") {
    colour = {1, 1, 1, 0};
  } else if (text == "black") {
    colour = {0, 0, 0, 1};
  } else if (text == "white") {
    colour = {1, 1, 1, 1};
  } else {
    if (text.empty() || text[0] != '#') return false;
    std::size_t const digits = text.size() - 1;
    if (digits != 3 && digits != 6 && digits != 8) return false;
    double parts[4] = {0, 0, 0, 1};
    std::size_t const width = digits == 3 ? 1 : 2;
    for (std::size_t i = 0; i * width < digits; ++i) {
      unsigned high = 0;
      unsigned low = 0;
      if (!readHexDigit(text[1 + i * width], high) || !readHexDigit(text[i * width + width], low))
        return false;
      parts[i] = (high * 16 + low) / 255.0;
    }
    colour = {parts[0], parts[1], parts[2], parts[3]};
  }
  return true;
}

}  // namespace zolt::cli
