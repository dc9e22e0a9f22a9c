#include "hosts/cli/formula.h"

#include <utility>

#include "hosts/cli/utf8_text.h"
#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/catalogue_extended/extended_operators.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/error_text.h"
#include "zolt/field/readable_text.h"
#include "zolt/mathjson/mathjson.h"
#include "zolt/mathml/text/mathml_text.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_notation.h"
#include "zolt/ved/tree/validate_tree.h"

namespace zolt::cli {

using math::algexpr::AlgebraicExpressionC;
using math::algexpr::CASSessionBC;
using math::ved::Node4C;
using oss::PointerTC;
using oss::wstring;

namespace {

/// Reads with a reader of another notation.
template <class ReaderT>
PointerTC<AlgebraicExpressionC> readWith(ReaderT reader, wstring const& text, FaultS& fault) {
  math::common::ReadErrorS error;
  auto expression = reader(text, CASSessionBC::getSession(), &error);
  if (!expression) fault = {toUtf8(error.message), true, error.begin, error.end};
  return expression;
}

PointerTC<AlgebraicExpressionC> readInfix(wstring const& text, FaultS& fault) {
  wstring prefix;
  unsigned int first = 0;
  unsigned int second = 0;
  auto cause = math::ved::ERROR_CAUSE_SYNTAX;
  if (!Node4C::convertInfixToPrefix(text, prefix, first, second, cause)) {
    fault = {toUtf8(field::describe(cause)), true, first, second};
    return {};
  }
  auto expression = AlgebraicExpressionC::fromPrefixString(prefix);
  // Text in grave accents is passed on unread, so an error in it shows only now, when its place is unknown.
  if (!expression) fault = {toUtf8(field::describe(math::ved::ERROR_CAUSE_SYNTAX)), true, 0, text.size()};
  return expression;
}

std::unique_ptr<Node4C> readTree(wstring const& text, FaultS& fault) {
  auto const operators = math::ved::OperatorListRepositoryC::lookup(CASSessionBC::getSession()->getEngine());
  math::ved::TreeNotationS tree;
  unsigned long position = 0;
  if (!math::ved::readTreeNotation(text, *operators, tree, position)) {
    fault = {toUtf8(field::describe(math::ved::ERROR_CAUSE_SYNTAX)), true, position, position + 1};
    return nullptr;
  }
  // Layout and conversion trust a tree's shape.
  auto const invariant = math::ved::validateTree(*tree.root).invariant;
  if (invariant != math::ved::TREE_VALID) {
    fault.message = "In an editor's tree " + toUtf8(math::ved::describeInvariant(invariant));
    return nullptr;
  }
  return std::move(tree.root);
}

}  // namespace

void provideOperators(CatalogueE catalogue) {
  auto const operators = math::ved::OperatorListRepositoryC::lookup(CASSessionBC::getSession()->getEngine());
  catalogue::registerStandardOperators(*operators);
  if (catalogue == CATALOGUE_EXTENDED) catalogue_extended::registerExtendedOperators(*operators);
}

FormulaC::FormulaC() = default;
FormulaC::~FormulaC() = default;

std::unique_ptr<FormulaC> FormulaC::read(wstring const& text, NotationE notation, FaultS& fault) {
  std::unique_ptr<FormulaC> formula(new FormulaC);
  if (notation == NOTATION_TREE) {
    formula->tree_ = readTree(text, fault);
  } else {
    auto const readPrefix = [](wstring const& prefix, auto session, auto* error) {
      return AlgebraicExpressionC::fromPrefixString(prefix, std::move(session), error);
    };
    formula->expression_ = notation == NOTATION_PLAIN      ? readWith(exchange::fromPlainText, text, fault)
                           : notation == NOTATION_LATEX    ? readWith(exchange::fromLatex, text, fault)
                           : notation == NOTATION_MATHML   ? readWith(mathml::fromMathmlText, text, fault)
                           : notation == NOTATION_MATHJSON ? readWith(mathjson::fromMathJson, text, fault)
                           : notation == NOTATION_PREFIX   ? readWith(readPrefix, text, fault)
                                                           : readInfix(text, fault);
  }
  if (!formula->expression_ && !formula->tree_) return nullptr;
  return formula;
}

Node4C& FormulaC::refTree() {
  if (!tree_)
    tree_.reset(Node4C::fromAlgebraicExpression(expression_, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC));
  return *tree_;
}

PointerTC<AlgebraicExpressionC> FormulaC::getExpression(FaultS& fault) {
  if (!expression_) return getExpressionOfTree(fault);
  return expression_;
}

PointerTC<AlgebraicExpressionC> FormulaC::getExpressionOfTree(FaultS& fault) {
  math::ved::ErrorSelectionS error;
  auto expression = refTree().getAlgebraicExpression(&error);
  if (!expression) fault.message = toUtf8(field::describe(error.cause));
  return expression;
}

bool FormulaC::getInfix(wstring& infix, FaultS& fault) {
  math::ved::ErrorSelectionS error;
  bool const isComplete = refTree().child(0)->getInfixString(infix, error);
  if (!isComplete) fault.message = toUtf8(field::describe(error.cause));
  return isComplete;
}

wstring FormulaC::speak(exchange::SpeechStyleS style) {
  auto const operators = math::ved::OperatorListRepositoryC::lookup(CASSessionBC::getSession()->getEngine());
  return field::makeReadableText(refTree(), *operators, style).text;
}

}  // namespace zolt::cli
