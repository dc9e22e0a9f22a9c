#include "zolt/exchange/latex.h"
#include "zolt/exchange/typst.h"
#include "zolt/mathjson/mathjson.h"
#include "zolt/mathml/text/mathml_text.h"
#include "zolt/qt/formula_edit_state.h"
#include "zolt/qt/text.h"

// The formula in the notations of others, each read and written by functions of the same kind.

namespace zolt::qt {

using math::algexpr::AlgebraicExpressionC;

namespace {

template <class WriterT>
QString write(FormulaEdit::Expression const& expression, WriterT writer) {
  return expression ? toQString(writer(*expression)) : QString();
}

}  // namespace

bool FormulaEdit::setPrefix(QString const& prefix) {
  return state_->showText(prefix, [](auto const& text, auto const& session, auto* error) {
    return AlgebraicExpressionC::fromPrefixString(text, session, error);
  });
}

QString FormulaEdit::latex() const { return write(algebraicExpression(), exchange::toLatex); }
bool FormulaEdit::setLatex(QString const& latex) { return state_->showText(latex, exchange::fromLatex); }

QString FormulaEdit::mathMl() const {
  return write(algebraicExpression(), [](auto const& expression) { return mathml::toMathml(expression); });
}
bool FormulaEdit::setMathMl(QString const& mathMl) {
  return state_->showText(mathMl, mathml::fromMathmlText);
}

QString FormulaEdit::mathJson() const { return write(algebraicExpression(), mathjson::toMathJson); }
bool FormulaEdit::setMathJson(QString const& mathJson) {
  return state_->showText(mathJson, mathjson::fromMathJson);
}

QString FormulaEdit::typst() const { return write(algebraicExpression(), exchange::toTypst); }

bool FormulaEdit::StateS::showText(QString const& text, ReaderT const& read) {
  if (text.trimmed().isEmpty()) return edit.setAlgebraicExpression(nullptr);
  math::common::ReadErrorS error;
  Expression const expression = read(toWstring(text), math::algexpr::CASSessionBC::getSession(), &error);
  if (expression) return edit.setAlgebraicExpression(expression);
  report(error);
  return false;
}

}  // namespace zolt::qt
