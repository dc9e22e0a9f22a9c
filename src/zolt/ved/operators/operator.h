#pragma once

#include <stack>
#include <utility>
#include <vector>

#include "zolt/oss/live_count.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/ref_counted.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/geometry/graphics.h"
#include "zolt/ved/operators/operator_words.h"

namespace zolt::math::algexpr {
class NodeABC;
}

namespace zolt::math::ved {

using oss::PointerTC;
using oss::wstring;

class Node4C;
class OperatorListC;
class ViewZNT4C;
struct PlaceS;
struct SelectionS;

/// The finished subtrees of a conversion from an expression to a tree, each with its binding precedence
/// (larger binds looser). The stack owns its subtrees until a parent takes them.
using ConversionStackT = std::stack<std::pair<Node4C*, int>>;

/// Where an operator that is written in a row has its sign or word.
enum OperatorPlaceE : int {
  OPERATOR_BY_NAME,  ///< a function's name before its arguments in brackets, or a construct
  OPERATOR_BEFORE,   ///< before one operand: "−", "not"
  OPERATOR_BETWEEN,  ///< between two operands: "+", "mod"
  OPERATOR_AFTER     ///< after one operand: "!"
};

/// One operation that the editor knows: a sign, a function or a two-dimensional construct.
///
/// An operator is an immutable description shared through `PointerTC`: the host makes each one once and
/// registers it in the `OperatorListC`. Each subclass has its own file pair, with everything that is
/// particular to a construct: how it is built from an expression, how its arguments are written, and how it
/// is laid out, drawn and inserted. This class itself is a function, written in a row as name, "(",
/// arguments, ")"; with arity 0 it is a named constant or a function of any number of arguments.
class OperatorBC : public oss::RefCountedBC, private oss::LiveCountTC<OperatorBC> {
 public:
  /// `name`: the expression library's name, key of the by-name table. `text`: what is typed and shown, key of
  /// the by-text table. `arity` 0: any number of arguments. `precedence`: larger binds looser (the standard
  /// operators: 0 functions, 10 powers, 20 signs before an operand, 30 products, 40 sums, 50 relations, 60
  /// "not", 70 "and", 80 "or", 90 assignments). `linear`: written in a row beside its operands. `coreElement`
  /// and `code` belong to the host; the editor only reports them back.
  OperatorBC(wstring const& name, wstring const& text, unsigned long arity, int precedence, bool linear,
             bool coreElement, int code);

  virtual wstring getName() const { return name_; }
  virtual wstring getText() const { return text_; }
  virtual unsigned long getArity() const { return arity_; }
  virtual int getPrecedence() const { return precedence_; }
  virtual bool isLinear() const { return linear_; }
  virtual bool isCoreElement() const { return coreElement_; }
  virtual int getCode() const { return code_; }

  /// Builds the subtree of an expression node whose children are the topmost entries of `stack` (the last
  /// child on top). Pops the entries that it uses and returns the new subtree, owned by the caller, with its
  /// precedence.
  virtual std::pair<Node4C*, int> fromAlgebraicNode(algexpr::NodeABC& node, ConversionStackT& stack) const;

  /// Joins the prefix texts of a construct's rows, given in tree order, into the argument list of its prefix
  /// call.
  virtual wstring arrangeArgumentList(std::vector<wstring> const& arguments) const;

  /// Called before the rows of `node` are laid out; raises the font depth of the rows that are shown smaller.
  virtual void beforeChildrenLayout(Node4C*, GraphicsABC const&) const {}
  /// Places the laid-out rows of `node` and sets its size and axis. The font of `node` is current.
  virtual void layoutNode4(Node4C*, GraphicsABC const&) const {}
  /// How much of the right end of the laid-out `node` is an index: an exponent after it is placed above that.
  virtual long getIndexWidth(Node4C const& /*node*/) const { return 0; }
  /// Draws the construct without its rows, which draw themselves. (x, y) is the absolute top-left corner.
  virtual void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width,
                            long height, long midHeight) const;

  /// Inserts the construct at the view's caret. False: refused, with the view unchanged.
  virtual bool runOperator(ViewZNT4C& view) const;

  /// Whether the argument at `index` (in the expression's order) gets a row of its own, one nesting level
  /// below the construct's. False for arguments that are written in the row that holds the operator.
  virtual bool hasOwnRow(unsigned long /*index*/) const { return false; }
  /// Whether an expression node of this name with so many arguments is shown in the operator's way; otherwise
  /// as a call, `name(…)`. By default the arguments must be as many as the arity says.
  virtual bool fits(algexpr::NodeABC const& /*node*/, unsigned long numArguments) const {
    return arity_ == 0 || arity_ == numArguments;
  }
  /// How many arguments a call of its name takes that is written in a row, 0: any number. A construct whose
  /// rows are not its arguments overrides it.
  virtual unsigned long getCallArity() const { return arity_; }
  /// Where the sign or word is, for whoever reads rows.
  virtual OperatorPlaceE getPlace() const { return OPERATOR_BY_NAME; }
  /// With how many rows a person inserts the construct; 0: nobody does.
  virtual unsigned long getInsertedRows() const { return arity_; }
  /// Whether a person would take an exponent after the construct for that of its last part.
  virtual bool isAmbiguousBase() const { return false; }

  /// Whether a sign that is typed at `caret`, inside a construct that lists this operator in its
  /// `insideSigns`, means the operator there; otherwise it is typed as everywhere else.
  virtual bool appliesAt(PlaceS const& /*caret*/) const { return true; }
  /// The operator that `construct`, a construct of this one, has when the key Backspace has taken its empty
  /// row number `row` away; null when it keeps its rows.
  virtual PointerTC<OperatorBC> afterLosingRow(OperatorListC const& /*operators*/,
                                               Node4C const& /*construct*/, unsigned long /*row*/) const {
    return nullptr;
  }

  // ---- Variants of a construct -------------------------------------------------------------------------
  // A construct may differ in something that is in no row: the number of columns of a matrix, which ends of
  // an interval are closed. Each such variant is an operator object of its own, with the name of the
  // registered one, and its nodes refer to it. Clipboard bytes and tree notation hold "name variant".

  /// What distinguishes this variant from the registered operator, which has the empty variant. Without
  /// "<", quotes and control characters.
  virtual wstring getVariant() const { return wstring(); }
  /// The variant of that text, which may come from anywhere; null when there is none. Only the registered
  /// operator is asked. Preferably it answers with the same object for the same text, which it may have made
  /// with itself; any thread may ask.
  virtual PointerTC<OperatorBC> findVariant(wstring const& /*variant*/) const { return nullptr; }
  /// The name, and the variant after a blank.
  wstring getStoredName() const;

  // ---- Tables ------------------------------------------------------------------------------------------
  // A construct may show its rows as the cells of a table, row by row. The caret then goes from cell to cell,
  // blocks of cells can be selected, copied and pasted, and there are commands for its rows and columns
  // (`OperatorTableActC`). A table of another number of columns is a variant.

  /// In how many columns the rows are arranged; 0: they are no table.
  virtual unsigned long getColumns() const { return 0; }
  /// The operator with so many columns, this one for its own number; null when there is none. A table whose
  /// columns mean something each, as value and condition, has none for any number: its columns stay where
  /// they are. Only the registered operator is asked.
  virtual PointerTC<OperatorBC> findColumns(unsigned long /*columns*/) const { return nullptr; }

  /// Whether `runOperator` would do something in a view with this selection and these operators, for menus
  /// and palettes.
  virtual bool mayRun(SelectionS const& /*selection*/, OperatorListC const& /*operators*/) const {
    return true;
  }

  /// Whether the operator is a node of its own in a tree (NODE4_OPERATOR). False for operators that are
  /// written as text and for powers, whose nodes have no operator.
  virtual bool isConstruct() const { return hasOwnRow(0); }

  /// How people read and type the operator. All fields are empty until `setWords` is called, which the
  /// maker of an operator does before sharing it.
  OperatorWordsS const& crefWords() const { return words_; }
  void setWords(OperatorWordsS words) { words_ = std::move(words); }

 protected:
  wstring const& crefName() const { return name_; }
  wstring const& crefText() const { return text_; }

 private:
  wstring name_;
  wstring text_;
  unsigned long arity_;
  int precedence_;
  bool linear_;
  bool coreElement_;
  int code_;
  OperatorWordsS words_;
};

}  // namespace zolt::math::ved
