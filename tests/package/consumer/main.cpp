// A user of the package: it derives a class of its own with RTTI, and makes one edit from end to end.
#include <cstdio>
#include <typeinfo>

#include "zolt/catalogue/standard_operators.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/ved.h"

namespace {

using namespace zolt::math;
using zolt::oss::PointerTC;

class CountingConstraintsC : public algexpr::ConstraintsBC {
 public:
  bool check(PointerTC<algexpr::AlgebraicExpressionC>) const override { return ++checks < 2; }

  mutable int checks = 0;
};

bool edit() {
  auto const session = algexpr::CASSessionBC::getSession();
  zolt::catalogue::registerStandardOperators(*ved::OperatorListRepositoryC::lookup(session->getEngine()));

  PointerTC<zolt::surfaces::RecordingGraphicsC> const graphics(new zolt::surfaces::RecordingGraphicsC);
  PointerTC<CountingConstraintsC> const constraints(new CountingConstraintsC);
  algexpr::ConstraintsBC const& base = *constraints;
  if (typeid(base) != typeid(CountingConstraintsC)) return false;

  ved::ViewZNT4C view(graphics);
  view.setAlgebraicExpression(algexpr::AlgebraicExpressionC::fromPrefixString(u"sqrt(x)"), constraints, 0,
                              algexpr::NUMBER_FORMAT_AUTOMATIC);
  view.addEvent(ved::EVENT_CHAR, u'7', false, false, false, 0, 0);
  view.addEvent(ved::EVENT_CHAR, u'8', false, false, false, 0, 0);
  view.display(0, 0);
  auto const result = view.getAlgebraicExpression(nullptr);
  return result && result->toPrefixString() == u"7" && graphics->getText() == "drawText \"7\" 0 0\n";
}

}  // namespace

int main() {
  bool const ok = edit();
  std::puts(ok ? "ok" : "the edit went wrong");
  return ok ? 0 : 1;
}
