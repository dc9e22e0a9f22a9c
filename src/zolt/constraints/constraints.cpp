#include "zolt/constraints/constraints.h"

#include <algorithm>
#include <utility>

#include "zolt/algexpr/nodes.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/common/signs.h"
#include "zolt/oss/quoted_text.h"

namespace zolt::constraints {

using namespace math::algexpr;

namespace {

/// Calls `visit` for each node below `root`, which it is, before its children; false as soon as that is.
template <class VisitT>
bool forEachNode(NodeABC const& root, VisitT const& visit) {
  std::vector<NodeABC const*> waiting{&root};
  while (!waiting.empty()) {
    NodeABC const& node = *waiting.back();
    waiting.pop_back();
    if (!visit(node)) return false;
    ParentNodeABC const* const parent = node.asParent();
    for (unsigned long i = parent ? parent->numChildren() : 0; i > 0; --i) {
      waiting.push_back(&parent->child(i - 1));
    }
  }
  return true;
}

class RuleC : public ConstraintsBC {
 public:
  bool check(PointerTC<AlgebraicExpressionC> expression) const override {
    return !expression || !expression->getNode() || accepts(*expression->getNode());
  }

 private:
  virtual bool accepts(NodeABC const& node) const = 0;
};

class NamesC final : public RuleC {
 public:
  NamesC(std::set<wstring> names, NamesE which) : names_(std::move(names)), which_(which) {}

  wstring explain(AlgebraicExpressionC const& expression) const override {
    wstring refused;
    forEachNode(*expression.getNode(), [&](NodeABC const& node) {
      if (isAllowed(node)) return true;
      refused = node.crefName();
      return false;
    });
    if (names_.empty()) return u"No names are allowed here, such as \u201C" + refused + u"\u201D";
    wstring list;
    for (wstring const& name : names_) list += (list.empty() ? u"" : u", ") + name;
    return u"Only these names are allowed here: " + list + u"; not \u201C" + refused + u"\u201D";
  }

 private:
  bool accepts(NodeABC const& root) const override {
    return forEachNode(root, [&](NodeABC const& node) { return isAllowed(node); });
  }

  bool isAllowed(NodeABC const& node) const {
    bool const isCall = castNode<UserFunctionNodeC>(node) != nullptr;
    bool const isName = isCall || castNode<SymbolNodeC>(node);
    wstring const& name = node.crefName();
    bool const isSign = name.size() == 1 && name[0] == math::common::infinity_sign;
    if (!isName || isSign || names_.count(name) > 0) return true;
    return which_ == NAMES_BEGUN && !isCall && isBegun(name);
  }

  bool isBegun(wstring const& name) const {
    auto const begins = [&](wstring const& whole) { return whole.compare(0, name.size(), name) == 0; };
    auto const next = names_.lower_bound(name);
    if (next != names_.end() && begins(*next)) return true;
    static wstring const functions[] = {
        u"sqrt",   u"nthroot", u"root", u"abs",  u"floor", u"ceil",     u"log",  u"sin",    u"cos",
        u"tan",    u"asin",    u"acos", u"atan", u"sinh",  u"cosh",     u"tanh", u"arcsin", u"arccos",
        u"arctan", u"ln",      u"exp",  u"diff", u"int",   u"integral", u"sum",  u"where",  u"div",
        u"mod",    u"and",     u"or",   u"not",  u"pi",    u"infinity"};
    return std::any_of(std::begin(functions), std::end(functions), begins);
  }

  std::set<wstring> const names_;
  NamesE const which_;
};

class NumberC final : public RuleC {
 public:
  wstring explain(AlgebraicExpressionC const&) const override { return u"Only a number is allowed here"; }

 private:
  bool accepts(NodeABC const& root) const override {
    return forEachNode(root, [](NodeABC const& node) {
      wstring const& name = node.crefName();
      return isNumber(node) ||
             (node.asParent() && (name == u"_neg" || name == u"_pos" || name == u"_quietpos"));
    });
  }
};

class PolynomialC final : public RuleC {
 public:
  explicit PolynomialC(wstring variable) : variable_(std::move(variable)) {}

  wstring explain(AlgebraicExpressionC const&) const override {
    return u"Only a polynomial in " + variable_ + u" is allowed here";
  }

 private:
  bool isFree(NodeABC const& root) const {
    return forEachNode(root, [&](NodeABC const& node) { return node.crefName() != variable_; });
  }

  static bool isWholeNumber(NodeABC const& node) {
    return castNode<IntegerNodeC>(node) && node.crefName()[0] != math::common::minus_sign;
  }
  static bool isNumeric(wstring const& name) {
    static std::set<wstring> const others{u"=",   u"<>", u"<",  u">",  u"<=",      u">=",    u"and", u"or",
                                          u"not", u":=", u":>", u"+-", u"_posneg", u"error", u"list"};
    return others.count(name) == 0;
  }

  // The operands that may have the variable wait; each of the others is looked at once.
  bool accepts(NodeABC const& root) const override {
    bool const isValue = forEachNode(root, [](NodeABC const& node) { return isNumeric(node.crefName()); });
    if (!isValue) return false;
    std::vector<NodeABC const*> waiting{&root};
    while (!waiting.empty()) {
      NodeABC const& node = *waiting.back();
      waiting.pop_back();
      ParentNodeABC const* const parent = node.asParent();
      if (!parent) continue;
      wstring const& name = node.crefName();
      bool const isSum = name == u"+" || name == u"-" || name == u"*" || name == u"_neg" || name == u"_pos" ||
                         name == u"_quietpos";
      unsigned long open = isSum ? parent->numChildren() : 0;
      if (name == u"/" && parent->numChildren() == 2 && isFree(parent->child(1))) open = 1;
      if (name == u"^" && parent->numChildren() == 2 && isWholeNumber(parent->child(1))) open = 1;
      for (unsigned long i = 0; i < open; ++i) waiting.push_back(&parent->child(i));
      if (open == 0 && !isFree(node)) return false;
    }
    return true;
  }

  wstring const variable_;
};

class SizeC final : public RuleC {
 public:
  explicit SizeC(unsigned long most) : most_(most) {}

  wstring explain(AlgebraicExpressionC const&) const override {
    return u"This formula would be too large: at most " + oss::toDigits(most_) +
           u" numbers, names and signs are allowed here";
  }

 private:
  bool accepts(NodeABC const& root) const override {
    unsigned long left = most_;
    return forEachNode(root, [&](NodeABC const&) { return left-- > 0; });
  }

  unsigned long const most_;
};

class AllC final : public ConstraintsBC {
 public:
  explicit AllC(std::vector<ConstraintsT> parts) : parts_(std::move(parts)) {}

  bool check(PointerTC<AlgebraicExpressionC> expression) const override {
    return std::all_of(parts_.begin(), parts_.end(),
                       [&](ConstraintsT const& part) { return part->check(expression); });
  }
  wstring explain(AlgebraicExpressionC const& expression) const override {
    PointerTC<AlgebraicExpressionC> const same(new AlgebraicExpressionC(expression.getNode(), nullptr));
    for (ConstraintsT const& part : parts_) {
      if (!part->check(same)) return part->explain(expression);
    }
    return {};
  }

 private:
  std::vector<ConstraintsT> const parts_;
};

class AnyC final : public ConstraintsBC {
 public:
  explicit AnyC(std::vector<ConstraintsT> parts) : parts_(std::move(parts)) {}

  bool check(PointerTC<AlgebraicExpressionC> expression) const override {
    return std::any_of(parts_.begin(), parts_.end(),
                       [&](ConstraintsT const& part) { return part->check(expression); });
  }
  wstring explain(AlgebraicExpressionC const& expression) const override {
    wstring sentences;
    for (ConstraintsT const& part : parts_) {
      sentences += (sentences.empty() ? u"" : u". Or: ") + part->explain(expression);
    }
    return sentences;
  }

 private:
  std::vector<ConstraintsT> const parts_;
};

// ---- Text
// --------------------------------------------------------------------------------------------------

class ReaderC {
 public:
  explicit ReaderC(wstring const& text) : text_(text) {}

  std::size_t getPosition() const { return wordAt_; }

  ConstraintsT read() {
    std::vector<ConstraintsT> all;
    for (next(); !word_.empty();) {
      std::vector<ConstraintsT> any;
      do {
        if (word_ == u"or") next();
        ConstraintsT rule = readRule();
        if (!rule) return nullptr;
        any.push_back(std::move(rule));
      } while (word_ == u"or");
      all.push_back(any.size() == 1 ? any[0] : anyOf(std::move(any)));
      if (word_ == u";") next();
    }
    if (all.empty()) return nullptr;
    return all.size() == 1 ? all[0] : allOf(std::move(all));
  }

 private:
  // A word, or ";", or nothing at the end.
  void next() {
    wordAt_ = std::min(text_.find_first_not_of(u" ,\t", at_), text_.size());
    at_ = std::min(text_.find_first_of(u" ,\t;", wordAt_), text_.size());
    if (at_ == wordAt_ && at_ < text_.size()) ++at_;
    word_ = text_.substr(wordAt_, at_ - wordAt_);
  }
  bool isAtEnd() const { return word_.empty() || word_ == u";" || word_ == u"or"; }

  ConstraintsT readRule() {
    wstring const kind = word_;
    if (kind == u"number") {
      next();
      return isAtEnd() ? onlyNumber() : nullptr;
    }
    if (kind != u"names" && kind != u"polynomial" && kind != u"nodes") return nullptr;
    std::vector<wstring> words;
    for (next(); !isAtEnd(); next()) {
      words.push_back(word_);
      if (kind == u"nodes" && word_.find_first_not_of(u"0123456789") != word_.npos) return nullptr;
      if (kind != u"names" && words.size() > 1) return nullptr;
    }
    if (kind == u"names") return onlyNames({words.begin(), words.end()});
    if (words.empty()) return nullptr;
    if (kind == u"polynomial") return onlyPolynomial(words[0]);
    unsigned long most = 0;
    for (char16_t const digit : words[0]) most = std::min(most * 10 + (digit - u'0'), 100000000UL);
    return atMostNodes(most);
  }

  wstring const& text_;
  std::size_t at_ = 0;
  std::size_t wordAt_ = 0;
  wstring word_;
};

}  // namespace

ConstraintsT onlyNames(std::set<wstring> names, NamesE which) { return new NamesC(std::move(names), which); }
ConstraintsT onlyNumber() { return new NumberC; }
ConstraintsT onlyPolynomial(wstring variable) { return new PolynomialC(std::move(variable)); }
ConstraintsT atMostNodes(unsigned long most) { return new SizeC(most); }
ConstraintsT allOf(std::vector<ConstraintsT> parts) { return new AllC(std::move(parts)); }
ConstraintsT anyOf(std::vector<ConstraintsT> parts) { return new AnyC(std::move(parts)); }

ConstraintsT fromText(wstring const& text, std::size_t* fault) {
  ReaderC reader(text);
  ConstraintsT constraints = reader.read();
  if (fault) *fault = constraints ? text.size() : reader.getPosition();
  return constraints;
}

}  // namespace zolt::constraints
