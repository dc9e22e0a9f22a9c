#include <iostream>

#include "character_grid.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/ved/ved.h"

using namespace zolt::math;

int main() {
  // Once per process: the operators that the editor is to know.
  auto const session = algexpr::CASSessionBC::getSession();
  zolt::catalogue::registerStandardOperators(*ved::OperatorListRepositoryC::lookup(session->getEngine()));

  // A view on a drawing surface of ours, with an expression to edit.
  zolt::oss::PointerTC<CharacterGridC> const grid(new CharacterGridC);
  ved::ViewZNT4C view(grid);
  view.setAlgebraicExpression(algexpr::AlgebraicExpressionC::fromPrefixString(u"/(+(^(x,2),1),sqrt(x))"),
                              nullptr, 0, algexpr::NUMBER_FORMAT_AUTOMATIC);

  // What a person does: the right arrow gives up the selection, then "+1" goes behind the fraction.
  view.addEvent(ved::EVENT_KEY, ved::KEY_RIGHT, false, false, false, 0, 0);
  view.addEvent(ved::EVENT_CHAR, u'+', false, false, false, 0, 0);
  view.addEvent(ved::EVENT_CHAR, u'1', false, false, false, 0, 0);

  // What the person sees, and what the algebra engine gets.
  view.display(0, 0);
  std::cout << grid->toString();
  ved::ErrorCauseE cause = ved::ERROR_CAUSE_SYNTAX;
  auto const result = view.getAlgebraicExpression(&cause);
  std::cout << (result ? toUtf8(result->toPrefixString()) : "incomplete") << '\n';
  return result ? 0 : 1;
}
