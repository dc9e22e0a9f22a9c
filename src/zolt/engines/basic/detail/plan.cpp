#include "zolt/engines/basic/detail/plan.h"

#include <deque>
#include <map>
#include <set>

#include "zolt/algexpr/flat_tree.h"
#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"

namespace zolt::engine_basic::detail {

namespace {

class PlannerC {
 public:
  PlannerC(CASDefinitionsC const* definitions, WatchC& watch, PlanS& plan)
      : definitions_(definitions), watch_(watch), plan_(plan) {}

  bool run(NodeABC const& expression) {
    trees_.emplace_back();
    if (!trees_[0].fill(expression)) return watch_.fail(CAS_CAUSE_TOO_LARGE, 0, {});
    if (!open(trees_[0], 0, SHAPE_PLAIN, false)) return false;
    while (!frames_.empty()) {
      if (!watch_.goOn() || !advance()) return false;
      if (plan_.steps.size() > FlatTreeC::max_nodes) return watch_.fail(CAS_CAUSE_TOO_LARGE, 0, {});
    }
    plan_.result = operands_.back().step;
    return true;
  }

 private:
  enum ShapeE : std::uint8_t {
    SHAPE_PLAIN,    // its step comes after its operands
    SHAPE_SUM,      // a sum, difference or sign
    SHAPE_PRODUCT,  // a product or fraction
    SHAPE_SAME,     // brackets
    SHAPE_FOR,      // a sum or integral with bounds
    SHAPE_DIFF,
    SHAPE_WHERE,
    SHAPE_CALL,  // of a defined function
    SHAPE_NAME   // a defined variable
  };

  // What a name means.
  struct MeaningS {
    bool isSlot = false;
    std::uint32_t index = 0;  // a slot, or a step
  };

  struct FrameS {
    FlatTreeC const* tree;
    std::uint32_t node;
    std::uint32_t next;  // child to be read
    unsigned done = 0;   // children that are read
    ShapeE shape = SHAPE_PLAIN;
    ShapeE chain = SHAPE_PLAIN;  // operands go into a sum or product around it
    bool isFlagged = false;      // as an operand
    bool isMerged = false;       // its operands are those of the chain around it
    FunctionS const* function = nullptr;
    std::size_t operandsBelow = 0;
    std::size_t bindingsBelow = 0;
    std::uint32_t begin = 0;  // the step that begins its body
    unsigned long part = 0;
    CASDefinitionS const* definition = nullptr;
  };

  unsigned long partOf(FlatTreeC const& tree, std::uint32_t node) const {
    return &tree == &trees_[0] ? node : outerPart_;
  }

  bool fail(CASCauseE cause, unsigned long part, wstring subject = {}) {
    return watch_.fail(cause, part, std::move(subject));
  }

  // ---- Steps
  // -----------------------------------------------------------------------------------------------

  void push(OperandS operand) { operands_.push_back(operand); }

  std::uint32_t addStep(StepS step) {
    plan_.steps.push_back(step);
    return static_cast<std::uint32_t>(plan_.steps.size() - 1);
  }

  // A step on the operands that are above `below`, which it takes.
  std::uint32_t addStep(StepS step, std::size_t below) {
    step.first = static_cast<std::uint32_t>(plan_.operands.size());
    step.count = static_cast<std::uint32_t>(operands_.size() - below);
    plan_.operands.insert(plan_.operands.end(), operands_.begin() + static_cast<std::ptrdiff_t>(below),
                          operands_.end());
    operands_.resize(below);
    return addStep(step);
  }

  bool checkTypes(std::size_t below, TypeE wanted) {
    for (std::size_t i = below; i < operands_.size(); ++i) {
      StepS const& step = plan_.steps[operands_[i].step];
      if (step.type != wanted && step.type != TYPE_ANY) return fail(CAS_CAUSE_WRONG_ARGUMENT, step.part);
    }
    return true;
  }

  // ---- Names
  // -----------------------------------------------------------------------------------------------

  MeaningS const* findMeaning(wstring const& name) const {
    auto const found = meanings_.find(name);
    return found == meanings_.end() || found->second.empty() ? nullptr : &found->second.back();
  }
  void bind(wstring const& name, MeaningS meaning) {
    meanings_[name].push_back(meaning);
    bindings_.push_back(name);
  }
  void unbind(std::size_t below) {
    for (; bindings_.size() > below; bindings_.pop_back()) meanings_[bindings_.back()].pop_back();
  }

  // A loop's variable must be a name.
  wstring const* variableOf(FrameS const& frame, unsigned child) {
    std::uint32_t const at = frame.tree->child(frame.node, child);
    NodeABC const& node = frame.tree->crefNode(at);
    bool const isName = !node.asParent() && !isNumber(node.crefName()) && node.crefName() != u"_PI";
    if (isName) return &node.crefName();
    fail(CAS_CAUSE_WRONG_ARGUMENT, partOf(*frame.tree, at));
    return nullptr;
  }

  static bool isNumber(wstring const& name) {
    std::size_t const at = math::common::isMinus(name[0]) && name.size() > 1 ? 1 : 0;
    return math::common::startsNumber(name[at]);
  }

  bool openLeaf(FlatTreeC const& tree, std::uint32_t node, bool isFlagged, unsigned long flagPart) {
    wstring const& name = tree.crefNode(node).crefName();
    StepS step;
    step.part = partOf(tree, node);
    if (isNumber(name)) {
      RationalC number;
      if (!RationalC::fromText(name, number)) return fail(CAS_CAUSE_TOO_LARGE, step.part);
      plan_.hasDecimals |= name.find_first_of(u".eE") != name.npos;
      step.index = static_cast<std::uint32_t>(plan_.numbers.size());
      plan_.numbers.push_back(std::move(number));
    } else if (name == u"_PI") {
      step.op = OP_PI;
    } else if (name.size() == 1 && name[0] == math::common::infinity_sign) {
      step.op = OP_INFINITY;
      plan_.hasInfinity = true;
    } else if (MeaningS const* const meaning = findMeaning(name)) {
      if (!meaning->isSlot) {
        push({meaning->index, isFlagged, flagPart});
        return true;
      }
      step.op = OP_SLOT;
      step.index = meaning->index;
    } else if (CASDefinitionS const* const definition = definitions_ ? definitions_->find(name) : nullptr;
               definition && definition->parameters.empty()) {
      return openDefinition(*definition, step.part, isFlagged, flagPart);
    } else if (name == u"true" || name == u"false") {
      step.op = name == u"true" ? OP_TRUE : OP_FALSE;
      step.type = TYPE_TRUTH;
    } else if (name == u"error") {
      return fail(CAS_CAUSE_UNDEFINED, step.part);
    } else {
      step.op = OP_NAME;
      step.type = TYPE_ANY;
      step.index = static_cast<std::uint32_t>(plan_.names.size());
      plan_.names.push_back(name);
    }
    push({addStep(step), isFlagged, flagPart});
    return true;
  }

  // ---- Definitions
  // -----------------------------------------------------------------------------------------

  bool isOpen(CASDefinitionS const& definition) const { return expanding_.count(&definition) > 0; }

  // Names in a definition mean what they mean outside, whatever is bound where it is used.
  void enterDefinition(FrameS& frame, CASDefinitionS const& definition, unsigned long part) {
    frame.definition = &definition;
    expanding_.insert(&definition);
    scopes_.emplace_back(std::move(meanings_), std::move(bindings_));
    meanings_.clear();
    bindings_.clear();
    outerParts_.push_back(outerPart_);
    outerPart_ = part;
  }
  void leaveDefinition() {
    outerPart_ = outerParts_.back();
    outerParts_.pop_back();
    meanings_ = std::move(scopes_.back().first);
    bindings_ = std::move(scopes_.back().second);
    scopes_.pop_back();
  }

  FlatTreeC const* flatten(NodeABC const& node, unsigned long part) {
    auto const found = flattened_.find(&node);
    if (found != flattened_.end()) return found->second;
    trees_.emplace_back();
    if (!trees_.back().fill(node)) {
      fail(CAS_CAUSE_TOO_LARGE, part);
      return nullptr;
    }
    return flattened_[&node] = &trees_.back();
  }

  // The value of a variable is the same wherever it is used, outside of loops, so it is computed once.
  bool openDefinition(CASDefinitionS const& definition, unsigned long part, bool isFlagged,
                      unsigned long flagPart) {
    if (isOpen(definition)) return fail(CAS_CAUSE_CIRCULAR, part, definition.name);
    auto const known = computed_.find(&definition);
    if (known != computed_.end()) {
      push({known->second, isFlagged, flagPart});
      return true;
    }
    FlatTreeC const* const tree = flatten(*definition.value, part);
    if (!tree) return false;
    FrameS frame{tree, 0, 0};
    frame.shape = SHAPE_NAME;
    frame.isFlagged = isFlagged;
    frame.operandsBelow = operands_.size();
    frame.part = flagPart;
    enterDefinition(frame, definition, part);
    frames_.push_back(frame);
    return true;
  }

  // ---- Frames
  // ----------------------------------------------------------------------------------------------

  bool open(FlatTreeC const& tree, std::uint32_t node, ShapeE chain, bool isFlagged,
            unsigned long flagPart = 0) {
    NodeABC const& expression = tree.crefNode(node);
    if (!expression.asParent()) return openLeaf(tree, node, isFlagged, flagPart);
    wstring const& name = expression.crefName();
    unsigned long const count = tree.numChildren(node);
    FrameS frame{&tree, node, node + 1};
    frame.chain = chain;
    frame.isFlagged = isFlagged;
    frame.part = flagPart;
    frame.operandsBelow = operands_.size();
    frame.bindingsBelow = bindings_.size();
    if (!findShape(frame, name, count)) return false;
    if (frame.shape == SHAPE_SUM && chain == SHAPE_SUM) frame.isMerged = true;
    // The denominator of a denominator is not a factor: it must not be 0 either.
    if (frame.shape == SHAPE_PRODUCT && chain == SHAPE_PRODUCT) frame.isMerged = !isFlagged || name == u"*";
    frames_.push_back(frame);
    return true;
  }

  bool findShape(FrameS& frame, wstring const& name, unsigned long count) {
    unsigned long const part = partOf(*frame.tree, frame.node);
    if ((name == u"+" || name == u"-") && count == 2) {
      frame.shape = SHAPE_SUM;
    } else if ((name == u"_neg" || name == u"_pos") && count == 1) {
      frame.shape = SHAPE_SUM;
    } else if ((name == u"*" || name == u"/") && count == 2) {
      frame.shape = SHAPE_PRODUCT;
    } else if (name == u"_quietpos" && count == 1) {
      frame.shape = SHAPE_SAME;
    } else if (name == u"where" && count == 3) {
      frame.shape = SHAPE_WHERE;
      frame.next = frame.tree->child(frame.node, 2);
    } else if (FunctionS const* const function = findFunction(name);
               function && (function->arity == 0 || function->arity == count)) {
      frame.function = function;
      if (function->op == OP_TOTAL || function->op == OP_INTEGRAL) frame.shape = SHAPE_FOR;
      if (function->op == OP_DIFF || function->op == OP_ANTIDERIVATIVE) {
        frame.shape = SHAPE_DIFF;
        frame.next = frame.tree->child(frame.node, 1);
        plan_.needsTerms = true;
      }
      if (function->op == OP_TOTAL) frame.next = frame.tree->child(frame.node, 1);
    } else if (name == u"error") {
      return fail(CAS_CAUSE_UNDEFINED, part);
    } else if (CASDefinitionS const* const definition = definitions_ ? definitions_->find(name) : nullptr;
               definition && definition->parameters.size() == count) {
      if (isOpen(*definition)) return fail(CAS_CAUSE_CIRCULAR, part, name);
      frame.shape = SHAPE_CALL;
      frame.definition = definition;
    } else if (definitions_ && definitions_->find(name) && !definitions_->find(name)->parameters.empty()) {
      return fail(CAS_CAUSE_WRONG_ARGUMENT, part);
    } else {
      bool const isKnown = isKnownFunction(name);
      return fail(isKnown ? CAS_CAUSE_NEEDS_ALGEBRA : CAS_CAUSE_NO_FUNCTION, part,
                  isKnown ? wstring() : name);
    }
    return true;
  }

  bool advance() {
    FrameS& frame = frames_.back();
    switch (frame.shape) {
      case SHAPE_FOR:
        return advanceFor(frame);
      case SHAPE_DIFF:
        return advanceDiff(frame);
      case SHAPE_WHERE:
        return advanceWhere(frame);
      case SHAPE_NAME:
        return advanceDefinition(frame);
      case SHAPE_CALL:
        return advanceCall(frame);
      default:
        break;
    }
    if (frame.done == frame.tree->numChildren(frame.node)) return finish();
    std::uint32_t const child = frame.next;
    frame.next = frame.tree->end(child);
    ++frame.done;
    return openOperand(frame, child);
  }

  // The flag of an operand tells whether it is subtracted, or divided by, in the whole chain.
  bool openOperand(FrameS const& frame, std::uint32_t child) {
    unsigned long const part = partOf(*frame.tree, frame.node);
    if (frame.shape == SHAPE_SAME) {
      return open(*frame.tree, child, frame.chain, frame.isFlagged, frame.part);
    }
    if (frame.shape == SHAPE_PLAIN) return open(*frame.tree, child, SHAPE_PLAIN, false);
    wstring const& name = frame.tree->crefNode(frame.node).crefName();
    bool const isTurned = name == u"_neg" || ((name == u"-" || name == u"/") && frame.done == 2);
    bool const isFlagged = isTurned != (frame.isMerged && frame.isFlagged);
    return open(*frame.tree, child, frame.shape, isFlagged, isTurned ? part : frame.part);
  }

  bool finish() {
    FrameS const frame = frames_.back();
    frames_.pop_back();
    if (frame.isMerged || frame.shape == SHAPE_SAME) return true;
    StepS step;
    step.part = partOf(*frame.tree, frame.node);
    TypeE operands = TYPE_NUMBER;
    if (frame.shape == SHAPE_SUM) {
      step.op = OP_SUM;
    } else if (frame.shape == SHAPE_PRODUCT) {
      step.op = OP_PRODUCT;
    } else {
      step.op = frame.function->op;
      step.type = frame.function->type;
      operands = frame.function->operands;
    }
    if (!checkTypes(frame.operandsBelow, operands)) return false;
    push({addStep(step, frame.operandsBelow), frame.isFlagged, frame.part});
    return true;
  }

  // ---- Constructs with a variable
  // --------------------------------------------------------------------------

  // Begins the body of `frame`, in which the variable is a slot.
  bool beginBody(FrameS& frame, wstring const& variable) {
    if (!checkTypes(frame.operandsBelow, TYPE_NUMBER)) return false;
    StepS step;
    step.op = OP_BEGIN;
    step.part = partOf(*frame.tree, frame.node);
    auto const [slot, isNew] =
        slots_.emplace(std::make_pair(depth_++, variable), static_cast<std::uint32_t>(plan_.slots.size()));
    if (isNew) plan_.slots.push_back(variable);
    step.index = slot->second;
    // The operands stay on the stack for the step of the construct itself.
    step.first = static_cast<std::uint32_t>(plan_.operands.size());
    step.count = static_cast<std::uint32_t>(operands_.size() - frame.operandsBelow);
    plan_.operands.insert(plan_.operands.end(),
                          operands_.begin() + static_cast<std::ptrdiff_t>(frame.operandsBelow),
                          operands_.end());
    frame.begin = addStep(step);
    bind(variable, {true, step.index});
    return true;
  }
  bool endBody() {
    FrameS const frame = frames_.back();
    frames_.pop_back();
    unbind(frame.bindingsBelow);
    --depth_;
    if (!checkTypes(frame.operandsBelow, TYPE_NUMBER)) return false;
    StepS step;
    step.op = frame.function->op;
    step.part = partOf(*frame.tree, frame.node);
    step.index = plan_.steps[frame.begin].index;
    std::uint32_t const end = addStep(step, frame.operandsBelow);
    plan_.steps[frame.begin].end = end;
    plan_.steps[end].end = frame.begin;
    push({end, frame.isFlagged, frame.part});
    return true;
  }

  bool advanceFor(FrameS& frame) {
    bool const isSum = frame.function->op == OP_TOTAL;
    FlatTreeC const& tree = *frame.tree;
    if (frame.done == 3) return endBody();
    std::uint32_t const child = frame.next;
    frame.next = tree.end(child);
    if (++frame.done == 3) {
      wstring const* const variable = variableOf(frame, isSum ? 0 : 3);
      if (!variable || !beginBody(frame, *variable)) return false;
    }
    return open(tree, child, SHAPE_PLAIN, false);
  }

  bool advanceDiff(FrameS& frame) {
    FlatTreeC const& tree = *frame.tree;
    if (frame.done == 2) return endBody();
    std::uint32_t const child = frame.done == 0 ? frame.next : tree.child(frame.node, 0);
    wstring const* const variable = variableOf(frame, 1);
    if (!variable) return false;
    if (++frame.done == 2 && !beginBody(frame, *variable)) return false;
    return open(tree, child, SHAPE_PLAIN, false);
  }

  bool advanceWhere(FrameS& frame) {
    FlatTreeC const& tree = *frame.tree;
    if (frame.done == 2) {
      unbind(frame.bindingsBelow);
      OperandS body = operands_.back();
      operands_.resize(frame.operandsBelow);
      body.isFlagged = frame.isFlagged;
      body.part = frame.part;
      push(body);
      frames_.pop_back();
      return true;
    }
    wstring const* const variable = variableOf(frame, 1);
    if (!variable) return false;
    std::uint32_t const child = frame.done == 0 ? frame.next : tree.child(frame.node, 0);
    if (++frame.done == 2) bind(*variable, {false, operands_.back().step});
    return open(tree, child, SHAPE_PLAIN, false);
  }

  bool advanceCall(FrameS& frame) {
    FlatTreeC const& tree = *frame.tree;
    if (frame.done < tree.numChildren(frame.node)) {
      std::uint32_t const child = frame.next;
      frame.next = tree.end(child);
      ++frame.done;
      return open(tree, child, SHAPE_PLAIN, false);
    }
    CASDefinitionS const& definition = *frame.definition;
    unsigned long const part = partOf(tree, frame.node);
    FlatTreeC const* const body = flatten(*definition.value, part);
    if (!body) return false;
    std::vector<OperandS> const arguments(
        operands_.begin() + static_cast<std::ptrdiff_t>(frame.operandsBelow), operands_.end());
    operands_.resize(frame.operandsBelow);
    frame.shape = SHAPE_NAME;
    frame.tree = body;
    frame.done = 0;
    enterDefinition(frame, definition, part);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      bind(definition.parameters[i], {false, arguments[i].step});
    }
    return true;
  }

  bool advanceDefinition(FrameS& frame) {
    if (frame.done++ == 0) return open(*frame.tree, 0, SHAPE_PLAIN, false);
    OperandS value = operands_.back();
    operands_.pop_back();
    leaveDefinition();
    expanding_.erase(frame.definition);
    if (frame.definition->parameters.empty() && depth_ == 0) computed_[frame.definition] = value.step;
    value.isFlagged = frame.isFlagged;
    value.part = frame.part;
    frames_.pop_back();
    push(value);
    return true;
  }

  CASDefinitionsC const* definitions_;
  WatchC& watch_;
  PlanS& plan_;
  std::deque<FlatTreeC> trees_;  // the first is that of the request
  std::map<NodeABC const*, FlatTreeC const*> flattened_;
  std::vector<FrameS> frames_;
  std::vector<OperandS> operands_;
  std::size_t depth_ = 0;  // of loops
  std::map<std::pair<std::size_t, wstring>, std::uint32_t> slots_;
  using MeaningsT = std::map<wstring, std::vector<MeaningS>>;
  MeaningsT meanings_;
  std::vector<wstring> bindings_;
  std::vector<std::pair<MeaningsT, std::vector<wstring>>> scopes_;
  std::set<CASDefinitionS const*> expanding_;
  std::map<CASDefinitionS const*, std::uint32_t> computed_;
  unsigned long outerPart_ = 0;
  std::vector<unsigned long> outerParts_;
};

}  // namespace

bool makePlan(NodeABC const& expression, CASDefinitionsC const* definitions, WatchC& watch, PlanS& plan) {
  return PlannerC(definitions, watch, plan).run(expression);
}

}  // namespace zolt::engine_basic::detail
