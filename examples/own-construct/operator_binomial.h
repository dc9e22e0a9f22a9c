#pragma once

#include <algorithm>

#include "zolt/ved/ved.h"

namespace ved = zolt::math::ved;

/// A binomial coefficient: n above k between brackets.
class OperatorBinomialC : public ved::ConstructBC {
 public:
  OperatorBinomialC() : ConstructBC(u"binomial", u"binomial", {2, 0, 1}, 0, false, 1000) {
    ved::OperatorWordsS words;
    words.group = u"Probability";
    words.title = u"binomial coefficient";
    words.label = u"(n k)";
    words.shortcut = u"binom(";
    words.names = {{u"binom", {}}, {u"choose", {}}};
    words.spoken = {u"binomial coefficient ", u" over ", u" end binomial coefficient"};
    setWords(words);
  }

  void layoutNode4(ved::Node4C* node, ved::GraphicsABC const& graphics) const override {
    long const bracket = graphics.getMetric(1);
    long const gap = graphics.getMetric(3);
    ved::Node4C* const n = node->child(0);
    ved::Node4C* const k = node->child(1);
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
    graphics.drawBracketPair(x + bracket, y, width - 2 * bracket, height, true);
  }
};
