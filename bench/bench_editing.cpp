// Measures the cost of a key in formulas of growing size, in the middle of a sum of fractions, each with the
// layout that follows and without drawing: a character typed, a caret move and a character erased in a
// numerator, an undo and a redo; and between two fractions a root and a bracket, each removed again, and a
// character after a bracket that is still open. Prints processor time, texts measured and allocations.

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <limits>

#include "bench/allocations.h"
#include "bench/expressions.h"
#include "bench/stages.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/view/view.h"

namespace {

using namespace zolt::bench;
using namespace zolt::math::ved;
using zolt::surfaces::RecordingGraphicsC;
using SurfaceT = zolt::oss::PointerTC<RecordingGraphicsC>;

zolt::oss::wstring makeFractions(long terms) {
  zolt::oss::wstring out;
  for (long i = 1; i < terms; ++i) out += u"+(";
  for (long i = 0; i < terms; ++i) {
    if (i > 0) out += u',';
    out += u"/(+(a,1),*(2,x))";
    if (i > 0) out += u')';
  }
  return out;
}

/// Puts the caret into a numerator in the middle of the formula.
void placeInTheMiddle(ViewZNT4C& view) {
  Node4C const& row = *view.crefRoot().child(0);
  unsigned long i = row.numChildren() / 2;
  while (row.child(i)->getType() != NODE4_OPERATOR) ++i;
  view.selectRange(nullptr, 0, row.child(i)->child(0)->child(0), 1);
}

/// Puts the caret between two fractions there.
void placeInTheRow(ViewZNT4C& view) {
  Node4C const& row = *view.crefRoot().child(0);
  unsigned long i = row.numChildren() / 2;
  while (row.child(i)->getType() != NODE4_TEXT) ++i;
  view.selectRange(nullptr, 0, row.child(i), static_cast<unsigned>(row.child(i)->sizeText()));
}

struct CostS {
  double seconds = std::numeric_limits<double>::max();
  unsigned long measured = 0;
  long allocations = 0;
};

template <class EventF>
CostS measure(RecordingGraphicsC& surface, ViewZNT4C& view, EventF const& event) {
  constexpr int count = 20;
  CostS cost;
  for (int round = 0; round < 5; ++round) {
    surface.resetCounts();
    long const allocated = heapAllocations();
    std::clock_t const start = std::clock();
    for (int i = 0; i < count; ++i) {
      event();
      view.getExpressionSize();
    }
    cost.seconds = std::min(cost.seconds, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC / count);
    cost.measured = surface.getMeasureCount() / count;
    cost.allocations = (heapAllocations() - allocated) / count;
  }
  return cost;
}

void print(long terms, char const* event, CostS const& cost) {
  std::printf("%7ld %-10s %10.1f %10lu %12ld\n", terms, event, cost.seconds * 1e6, cost.measured,
              cost.allocations);
}

void measureKeys(long terms) {
  SurfaceT const surface(new RecordingGraphicsC(RecordingGraphicsC::LOG_NOTHING));
  ViewZNT4C view(surface);
  view.setAlgebraicExpression(readPrefix(makeFractions(terms)), nullptr, 0,
                              zolt::math::algexpr::NUMBER_FORMAT_AUTOMATIC);
  view.getExpressionSize();
  placeInTheMiddle(view);
  auto const key = [&view](unsigned long code) { view.addEvent(EVENT_KEY, code, false, false, false, 0, 0); };

  print(terms, "character",
        measure(*surface, view, [&] { view.addEvent(EVENT_CHAR, u'y', false, false, false, 0, 0); }));
  bool left = false;
  print(terms, "caret", measure(*surface, view, [&] { key((left = !left) ? KEY_LEFT : KEY_RIGHT); }));
  print(terms, "backspace", measure(*surface, view, [&] { key(KEY_BACKSPACE); }));
  print(terms, "undo, redo", measure(*surface, view, [&] {
          view.undo();
          view.redo();
        }));

  placeInTheRow(view);
  auto const type = [&view](char16_t c) { view.addEvent(EVENT_CHAR, c, false, false, false, 0, 0); };
  print(terms, "root, back", measure(*surface, view, [&] {
          view.insertText(u"sqrt");
          key(KEY_BACKSPACE);
        }));
  print(terms, "open, back", measure(*surface, view, [&] {
          type(u'(');
          key(KEY_BACKSPACE);
        }));
  type(u'(');
  print(terms, "in bracket", measure(*surface, view, [&] { type(u'y'); }));
}

}  // namespace

int main() {
  registerOperators();
  std::printf("%7s %-10s %10s %10s %12s\n", "terms", "event", "us", "measured", "allocations");
  for (long terms : {20, 200, 2000, 20000}) measureKeys(terms);
  return 0;
}
