#pragma once

#include <map>

#include "zolt/exchange/plain_operator.h"
#include "zolt/ved/ved.h"

namespace zolt::tests {

using math::ved::Node4C;

/// Rows side by side, for constructs that are only to be there: list(a,b), and an integral of a kind.
class HostRowsC : public math::ved::ConstructBC {
 public:
  using ConstructBC::ConstructBC;

  void layoutNode4(Node4C* node, math::ved::GraphicsABC const&) const override {
    long x = 0;
    for (unsigned long i = 0; i < node->numChildren(); ++i) {
      node->child(i)->setDX(x);
      node->child(i)->setDY(0);
      x += node->child(i)->getWidth();
      node->setHeight(node->child(i)->getHeight());
    }
    node->setWidth(x);
    node->setMidHeight(node->getHeight() / 2);
  }
};

/// A matrix of two rows, whose variants have other numbers of columns: grid(list(a,b),list(c,d)). The
/// registered one, of two columns, keeps the others.
class HostGridC : public HostRowsC {
 public:
  explicit HostGridC(unsigned long columns)
      : HostRowsC(u"grid", u"grid", {2 * columns}, 0, false, 0), columns_(columns) {
    math::ved::OperatorWordsS words;
    words.insideSigns = {{u',', u"grid_column"}};
    setWords(words);
    if (columns != 2) return;
    for (unsigned long const others : {1ul, 3ul, 4ul}) variants_[variantOf(others)] = new HostGridC(others);
  }

  unsigned long getColumns() const override { return columns_; }
  unsigned long getCallArity() const override { return 0; }
  bool fits(math::algexpr::NodeABC const& node, unsigned long count) const override {
    auto const* const first = node.asParent()->child(0).asParent();
    auto const* const second = count == 2 ? node.asParent()->child(1).asParent() : nullptr;
    if (!first || !second || first->crefName() != u"list" || second->crefName() != u"list") return false;
    unsigned long const columns = first->numChildren();
    return second->numChildren() == columns && (columns == 2 || findVariant(variantOf(columns)));
  }
  oss::wstring getVariant() const override { return columns_ == 2 ? oss::wstring() : variantOf(columns_); }
  oss::PointerTC<OperatorBC> findVariant(oss::wstring const& variant) const override {
    auto const found = variants_.find(variant);
    return found == variants_.end() ? nullptr : found->second;
  }
  oss::wstring arrangeArgumentList(std::vector<oss::wstring> const& cells) const override {
    auto const middle = cells.begin() + static_cast<long>(columns_);
    return u"list(" + OperatorBC::arrangeArgumentList({cells.begin(), middle}) + u"),list(" +
           OperatorBC::arrangeArgumentList({middle, cells.end()}) + u")";
  }

 protected:
  RowT fromArguments(math::algexpr::NodeABC const&, std::vector<RowT> lists) const override {
    std::vector<RowT> cells;
    for (RowT const& list : lists) {
      for (Node4C* construct = list->child(0); construct->numChildren() > 0; construct->removeChild(0)) {
        cells.emplace_back(construct->child(0));
      }
    }
    auto const variant = findVariant(variantOf(cells.size() / 2));
    return math::ved::rows::makeConstruct(variant ? *variant : static_cast<OperatorBC const&>(*this),
                                          std::move(cells));
  }

 private:
  static oss::wstring variantOf(unsigned long columns) {
    return oss::wstring(1, static_cast<char16_t>(u'0' + columns));
  }

  unsigned long columns_;
  std::map<oss::wstring, oss::PointerTC<OperatorBC>> variants_;
};

/// Adds a column after the caret's.
class HostColumnC : public math::ved::OperatorBC {
 public:
  HostColumnC() : OperatorBC(u"grid_column", u"grid_column", 0, 0, false, false, 0) {}

  bool runOperator(math::ved::ViewZNT4C& view) const override {
    math::ved::ViewInsertionC insertion(view);
    Node4C* const grid = insertion.refEnclosing(u"grid");
    if (!grid) return false;
    unsigned long const columns = static_cast<HostGridC const&>(*grid->crefOperator()).getColumns();
    auto const wider = insertion.crefOperatorList().lookupStored(oss::wstring(u"grid ") +
                                                                 static_cast<char16_t>(u'1' + columns));
    if (!wider) return false;
    unsigned long const cell = insertion.enclosingRow(*grid);
    for (unsigned long i = 2; i-- > 0;) {
      grid->insertChild(i * columns + cell % columns + 1, math::ved::rows::makeEmptyRow().release());
    }
    grid->setOperator(wider);
    insertion.placeCaret(rowStart(*grid->child(cell + 1 + cell / columns)));
    return true;
  }
};

/// Registers these, and signs and words with precedences between those of the standard ones.
inline void addHostOperators(math::ved::OperatorListC& list) {
  using namespace math::ved;
  list.add(new HostRowsC(u"list", u"list", ConstructRowsS{0}, 0, false, 0));
  list.add(
      new HostRowsC(u"anti", u"anti", {1, 0, 0, {}, ROWS_LIKE_ARGUMENTS, EXPONENT_AMBIGUOUS}, 0, false, 0));
  list.add(new HostGridC(2));
  list.add(new HostColumnC);
  list.add(new OperatorBinaryInfixC(u"in", u"∈", 50, false, false, false, 0));
  list.add(new OperatorBinaryInfixC(u"cup", u"cup", 45, true, true, false, 0));
  list.add(new OperatorBinaryInfixC(u"implies", u"⇒", 85, false, false, false, 0));
  list.add(new OperatorUnaryPrefixC(u"_grad", u"∇", 20, false, false, 0));
  list.add(new OperatorBinaryInfixC(u"_wedge", u"∇", 40, false, false, false, 0));
  list.add(new OperatorUnaryPostfixC(u"_percent", u"%", 5, false, 0));
  using namespace exchange;
  registerPlainOperator({u"in", PLAIN_BETWEEN, 50, u" in ", {u"in", u"∈"}});
  registerPlainOperator({u"cup", PLAIN_BETWEEN, 45, u" cup ", {u"cup", u"∪"}});
  registerPlainOperator({u"implies", PLAIN_BETWEEN, 85, u" => ", {u"=>"}});
  registerPlainOperator({u"_grad", PLAIN_BEFORE, 20, u"∇", {u"∇"}});
  registerPlainOperator({u"_percent", PLAIN_AFTER, 5, u"%", {u"%"}});
  registerPlainOperator({u"RR", PLAIN_ALONE, 0, u"RR", {u"RR", u"ℝ"}});
}

}  // namespace zolt::tests
