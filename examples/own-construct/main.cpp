// A construct of a host's own, the binomial coefficient: how it is drawn, typed, written and read aloud.
#include <algorithm>
#include <iostream>

#include "zolt/catalogue/standard_operators.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/exchange/speech.h"
#include "zolt/field/formula_field.h"
#include "zolt/field/palette_model.h"
#include "zolt/field/readable_text.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/ved.h"

namespace ved = zolt::math::ved;
using zolt::oss::toUtf8;

/// n above k between brackets; binomial(n,k) as an expression and as plain text.
class OperatorBinomialC : public ved::ConstructBC {
 public:
  // Two rows; a selection becomes the first, and the caret then goes to the second.
  OperatorBinomialC() : ConstructBC(u"binomial", u"binomial", {2, 0, 1}, 0, false, 1000) {
    ved::OperatorWordsS words;
    words.group = u"Probability";
    words.title = u"binomial coefficient";
    words.label = u"(n k)";
    words.shortcut = u"binom(";
    words.names = {{u"binom", {}}, {u"choose", {}}};
    setWords(words);
  }

  void layoutNode4(ved::Node4C* node, ved::GraphicsABC const& graphics) const override {
    ved::Node4C* const n = node->child(0);
    ved::Node4C* const k = node->child(1);
    long const bracket = graphics.getMetric(1);
    long const gap = graphics.getMetric(3);
    long const inner = std::max(n->getWidth(), k->getWidth());
    n->setDX(bracket + (inner - n->getWidth()) / 2);
    n->setDY(0);
    k->setDX(bracket + (inner - k->getWidth()) / 2);
    k->setDY(n->getHeight() + gap);
    node->setWidth(inner + 2 * bracket);
    node->setHeight(k->getDY() + k->getHeight());
    node->setMidHeight(n->getHeight() + gap / 2);
  }

  void displayNode4(ved::Node4C*, ved::GraphicsABC const& graphics, long x, long y, long width, long height,
                    long) const override {
    long const bracket = graphics.getMetric(1);
    graphics.drawBracketPair(x + bracket, y, width - 2 * bracket, height, false);
  }
};

int main() {
  // Once per process. From here on palettes show it, and people type and hear it.
  auto const session = zolt::math::algexpr::CASSessionBC::getSession();
  auto const operators = ved::OperatorListRepositoryC::lookup(session->getEngine());
  zolt::catalogue::registerStandardOperators(*operators);
  operators->add(new OperatorBinomialC);
  zolt::exchange::registerSpeechOperator({u"binomial", u"the binomial coefficient # over #, end binomial",
                                          u"binomial # over # end binomial", u"# choose #",
                                          u"binomial coefficient,upper entry,lower entry"});

  zolt::field::FormulaFieldC field(new zolt::surfaces::RecordingGraphicsC);
  field.insertText(u"binom(n,k)+1");
  for (auto const& group : zolt::field::makePalette(field.crefView())) {
    if (group.title != u"Probability") continue;
    std::cout << "palette: " << toUtf8(group.entries[0].title) << ", type "
              << toUtf8(group.entries[0].shortcut) << '\n';
  }
  std::cout << "read aloud: " << toUtf8(zolt::field::makeReadableText(field.crefView()).text) << '\n';
  auto const expression = field.diagnose().expression;
  if (!expression) return 1;
  std::cout << "expression: " << toUtf8(expression->toPrefixString()) << '\n'
            << "plain text: " << toUtf8(zolt::exchange::toPlainText(*expression)) << '\n';
  return field.setPlainText(u"binomial(n+1,k)^2") ? 0 : 1;
}
