#include "zolt/exchange/latex.h"
#include "zolt/mathml/text/mathml_text.h"
#include "zolt/qt/formula_edit_state.h"
#include "zolt/qt/text.h"

// The formula in the notations of others, each read and written by functions of the same kind.

namespace zolt::qt {

using math::algexpr::AlgebraicExpressionC;

bool FormulaEdit::setPrefix(QString const& prefix) {
  return state_->showText(prefix, [](auto const& text, auto const& session, auto* error) {
    return AlgebraicExpressionC::fromPrefixString(text, session, error);
  });
}

QString FormulaEdit::latex() const {
  auto const expression = algebraicExpression();
  return expression ? toQString(exchange::toLatex(*expression)) : QString();
}

bool FormulaEdit::setLatex(QString const& latex) { return state_->showText(latex, exchange::fromLatex); }

QString FormulaEdit::mathMl() const {
  auto const expression = algebraicExpression();
  return expression ? toQString(mathml::toMathml(*expression)) : QString();
}

bool FormulaEdit::setMathMl(QString const& mathMl) {
  return state_->showText(mathMl, mathml::fromMathmlText);
}

bool FormulaEdit::StateS::showText(QString const& text, ReaderT const& read) {
  if (text.trimmed().isEmpty()) return edit.setAlgebraicExpression(nullptr);
  math::common::ReadErrorS error;
  Expression const expression = read(toWstring(text), math::algexpr::CASSessionBC::getSession(), &error);
  if (expression) return edit.setAlgebraicExpression(expression);
  report(error);
  return false;
}

}  // namespace zolt::qt
