#include "zolt/engines/giac/detail/messages.h"

#include <string>
#include <utility>

#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/nodes.h"

namespace zolt::engine_giac::detail {

namespace {

using NodeP = PointerTC<NodeABC>;

wstring const nothing = u"nothing";
constexpr unsigned long question_fields = 6;
constexpr unsigned long answer_fields = 5;

NodeP writeNumber(unsigned long number) {
  std::string const text = std::to_string(number);
  return makeNumber(wstring(text.begin(), text.end()));
}

NodeP writeName(wstring const& name) {
  return makeFunction(u"name", {makeNamed(isWritableName(name) ? name : nothing)});
}

bool readNumber(NodeABC const& node, unsigned long most, unsigned long& number) {
  if (!castNode<IntegerNodeC>(node)) return false;
  unsigned long value = 0;
  for (char16_t const c : node.crefName()) {
    if (c < u'0' || c > u'9' || value > most / 10) return false;
    value = value * 10 + static_cast<unsigned long>(c - u'0');
  }
  number = value;
  return value <= most;
}

bool readName(NodeABC const& node, wstring& name) {
  ParentNodeABC const* const parent = node.asParent();
  if (!parent || parent->crefName() != u"name" || parent->numChildren() != 1) return false;
  name = parent->child(0).asParent() ? wstring() : parent->child(0).crefName();
  return !name.empty();
}

wstring toText(wstring const& name, std::vector<NodeP> fields) {
  NodeP const node = makeFunction(name, std::move(fields));
  return AlgebraicExpressionC(node, nullptr).toPrefixString();
}

// The expression stays with its pointer, the node being the root.
ParentNodeABC const* fromText(wstring const& message, wstring const& name, NodeP& root) {
  auto const expression = AlgebraicExpressionC::fromPrefixString(message, nullptr);
  root = expression ? expression->getNode() : nullptr;
  ParentNodeABC const* const parent = root ? root->asParent() : nullptr;
  return parent && parent->crefName() == name ? parent : nullptr;
}

}  // namespace

wstring writeQuestion(QuestionS const& question) {
  std::vector<NodeP> fields{writeNumber(question.operation),
                            writeNumber(question.angle),
                            writeNumber(question.digits),
                            writeNumber(static_cast<unsigned long>(question.deadline.count())),
                            question.variable.empty() ? makeNamed(nothing) : writeName(question.variable),
                            question.expression};
  for (auto const& [name, definition] : question.definitions) {
    std::vector<NodeP> parts{definition.value, writeName(name)};
    for (wstring const& parameter : definition.parameters) parts.push_back(writeName(parameter));
    fields.push_back(makeFunction(u"define", std::move(parts)));
  }
  return toText(u"question", std::move(fields));
}

bool readQuestion(wstring const& message, QuestionS& question) {
  NodeP root;
  ParentNodeABC const* const all = fromText(message, u"question", root);
  if (!all || all->numChildren() < question_fields) return false;
  unsigned long operation = 0, angle = 0, digits = 0, deadline = 0;
  bool const isRead =
      readNumber(all->child(0), CAS_SUBSTITUTE, operation) && readNumber(all->child(1), CAS_DEGREES, angle) &&
      readNumber(all->child(2), 1000000, digits) && readNumber(all->child(3), 1000000000, deadline);
  if (!isRead) return false;
  question.operation = static_cast<CASOperationE>(operation);
  question.angle = static_cast<CASAngleE>(angle);
  question.digits = static_cast<unsigned>(digits);
  question.deadline = std::chrono::milliseconds(deadline);
  if (all->child(4).asParent() && !readName(all->child(4), question.variable)) return false;
  question.expression = all->childPointer(5);
  for (unsigned long i = question_fields; i < all->numChildren(); ++i) {
    ParentNodeABC const* const parts = all->child(i).asParent();
    CASDefinitionS definition;
    if (!parts || parts->numChildren() < 2 || !readName(parts->child(1), definition.name)) return false;
    definition.value = parts->childPointer(0);
    for (unsigned long k = 2; k < parts->numChildren(); ++k) {
      definition.parameters.emplace_back();
      if (!readName(parts->child(k), definition.parameters.back())) return false;
    }
    wstring const name = definition.name;
    question.definitions[name] = std::move(definition);
  }
  return true;
}

wstring writeAnswer(AnswerS const& answer) {
  std::vector<NodeP> fields{
      writeNumber(answer.cause),
      answer.digits == CASResultS::all_digits ? makeNamed(nothing) : writeNumber(answer.digits),
      answer.part == CASResultS::no_part ? makeNamed(nothing) : writeNumber(answer.part),
      answer.subject.empty() ? makeNamed(nothing) : writeName(answer.subject),
      answer.value ? answer.value : makeNamed(nothing)};
  return toText(u"answer", std::move(fields));
}

bool readAnswer(wstring const& message, AnswerS& answer) {
  NodeP root;
  ParentNodeABC const* const all = fromText(message, u"answer", root);
  if (!all || all->numChildren() != answer_fields) return false;
  unsigned long cause = 0, digits = CASResultS::all_digits, part = CASResultS::no_part;
  auto const isNothing = [&](unsigned long i) {
    return !all->child(i).asParent() && all->child(i).crefName() == nothing;
  };
  bool const isRead = readNumber(all->child(0), CAS_CAUSE_CIRCULAR, cause) &&
                      (isNothing(1) || readNumber(all->child(1), 1000000, digits)) &&
                      (isNothing(2) || readNumber(all->child(2), 100000000, part)) &&
                      (isNothing(3) || readName(all->child(3), answer.subject));
  if (!isRead) return false;
  answer.cause = static_cast<CASCauseE>(cause);
  answer.digits = static_cast<unsigned>(digits);
  answer.part = part;
  if (answer.cause == CAS_CAUSE_NONE) answer.value = all->childPointer(4);
  return true;
}

}  // namespace zolt::engine_giac::detail
