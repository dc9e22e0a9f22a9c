#include <iostream>
#include <string>

#include "operator_binomial.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/field/formula_field.h"
#include "zolt/field/palette_model.h"
#include "zolt/field/readable_text.h"
#include "zolt/surfaces/recording/recording_graphics.h"

namespace {

// Everything that this program prints is in ASCII.
std::string narrow(zolt::oss::wstring const& text) {
  std::string out;
  for (char16_t const c : text) out += c < 0x80 ? static_cast<char>(c) : '?';
  return out;
}

}  // namespace

int main() {
  // Once per process: the standard operators, then ours. From here on palettes show it, and people type and
  // hear it.
  auto const session = zolt::math::algexpr::CASSessionBC::getSession();
  auto const operators = ved::OperatorListRepositoryC::lookup(session->getEngine());
  zolt::catalogue::registerStandardOperators(*operators);
  operators->add(new OperatorBinomialC);

  zolt::oss::PointerTC<zolt::surfaces::RecordingGraphicsC> const surface(
      new zolt::surfaces::RecordingGraphicsC);
  zolt::field::FormulaFieldC field(surface);
  field.insertText(u"binom(n,k)+1");

  for (zolt::field::PaletteGroupS const& group : zolt::field::makePalette(field.crefView())) {
    if (group.title != u"Probability") continue;
    std::cout << "palette: " << narrow(group.entries[0].title) << ", type "
              << narrow(group.entries[0].shortcut) << '\n';
  }
  std::cout << "read aloud: " << narrow(zolt::field::makeReadableText(field.crefView()).text) << '\n';
  auto const expression = field.getExpression();
  std::cout << "expression: " << (expression ? narrow(expression->toPrefixString()) : "incomplete") << '\n';
  return expression ? 0 : 1;
}
