#pragma once

#include <memory>
#include <string>

#include "hosts/cli/message.h"
#include "zolt/exchange/speech.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"

namespace zolt::math::algexpr {
class AlgebraicExpressionC;
}
namespace zolt::math::ved {
class Node4C;
}

namespace zolt::cli {

enum NotationE {
  NOTATION_PLAIN,   ///< as people type formulas
  NOTATION_INFIX,   ///< the component's own infix text
  NOTATION_PREFIX,  ///< as the algebra engine reads it
  NOTATION_LATEX,
  NOTATION_MATHML,  ///< presentation or content
  NOTATION_MATHJSON,
  NOTATION_TREE  ///< the editor's tree, incomplete formulas too
};

enum CatalogueE {
  CATALOGUE_STANDARD,
  CATALOGUE_EXTENDED  ///< those of the standard one, and more
};

/// Makes the operators of the catalogue known, once, before formulas are read or drawn.
void provideOperators(CatalogueE catalogue);

/// One formula that was read, as an expression and as a tree; each is made from the other on demand.
class FormulaC {
 public:
  /// Returns null, with `fault` filled, when `text` is not a formula.
  static std::unique_ptr<FormulaC> read(oss::wstring const& text, NotationE notation, FaultS& fault);
  ~FormulaC();

  /// The tree, normalised; the formula keeps it.
  math::ved::Node4C& refTree();
  /// The expression as it was read. Returns null, with `fault` filled, when a tree was read and is
  /// incomplete.
  oss::PointerTC<math::algexpr::AlgebraicExpressionC> getExpression(FaultS& fault);
  /// The expression of the tree, as an editor would return it. Returns null, with `fault` filled, when the
  /// tree is incomplete.
  oss::PointerTC<math::algexpr::AlgebraicExpressionC> getExpressionOfTree(FaultS& fault);
  /// Writes the tree as infix text. Returns false, with `fault` filled, when the tree is incomplete.
  bool getInfix(oss::wstring& infix, FaultS& fault);
  /// What is said for the tree, complete or not.
  oss::wstring speak(exchange::SpeechStyleS style);

 private:
  FormulaC();

  oss::PointerTC<math::algexpr::AlgebraicExpressionC> expression_;
  std::unique_ptr<math::ved::Node4C> tree_;
};

}  // namespace zolt::cli
