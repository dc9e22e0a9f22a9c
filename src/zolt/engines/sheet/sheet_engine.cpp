#include "zolt/engines/sheet/sheet_engine.h"

#include <algorithm>
#include <utility>

#include "zolt/engines/sheet/detail/line_names.h"
#include "zolt/engines/sheet/worth_showing.h"

namespace zolt::engine_sheet {

using namespace math::algexpr;

namespace {

bool mentions(NodeABC const& expression, wstring const& name) {
  std::vector<wstring> const names = detail::findNames(expression);
  return std::binary_search(names.begin(), names.end(), name);
}

}  // namespace

SheetEngineC::SheetEngineC() = default;
SheetEngineC::~SheetEngineC() = default;

SheetEngineC::LineS const* SheetEngineC::find(LineT line) const {
  auto const found = lines_.find(line);
  return found == lines_.end() ? nullptr : &found->second;
}

LineStateE SheetEngineC::getState(LineT line) const {
  LineS const* const data = find(line);
  return data ? data->state : LINE_EMPTY;
}

LineResultS const* SheetEngineC::findResult(LineT line) const {
  LineS const* const data = find(line);
  return data && data->result && computing_.isOn ? &*data->result : nullptr;
}

bool SheetEngineC::isCurrent(LineT line) const {
  LineS const* const data = find(line);
  return data && isSettled(*data);
}

PointerTC<AlgebraicExpressionC> SheetEngineC::getExpression(LineT line) const {
  LineS const* const data = find(line);
  return data ? data->expression : nullptr;
}

std::vector<LineT> SheetEngineC::takeChanged() {
  std::vector<LineT> const changed(changed_.begin(), changed_.end());
  changed_.clear();
  return changed;
}

// ---- Dependencies
// -----------------------------------------------------------------------------------------

LineT SheetEngineC::findDefiner(wstring const& name, std::size_t position) const {
  auto const found = definers_.find(name);
  if (found == definers_.end()) return 0;
  auto const below = found->second.lower_bound(position);
  return below == found->second.begin() ? 0 : std::prev(below)->second;
}

bool SheetEngineC::findInputs(std::vector<wstring> const& names, std::size_t position, InputsT& inputs,
                              LineT* blocker) const {
  std::map<wstring, unsigned long> found;
  std::vector<wstring> waiting = names;
  bool isComplete = true;
  while (!waiting.empty() && (isComplete || !blocker)) {
    wstring const name = std::move(waiting.back());
    waiting.pop_back();
    auto const added = found.emplace(name, 0);
    LineT const definer = added.second ? findDefiner(name, position) : 0;
    if (definer == 0) continue;
    LineS const& data = *find(definer);
    added.first->second = data.version;
    if (!isSettled(data)) {
      isComplete = false;
      if (blocker) *blocker = definer;
    }
    std::vector<wstring> const& next = isSettled(data) ? data.openNames : data.names;
    waiting.insert(waiting.end(), next.begin(), next.end());
  }
  inputs.assign(found.begin(), found.end());
  return isComplete;
}

PointerTC<CASDefinitionsC> SheetEngineC::collect(InputsT const& inputs, std::size_t position,
                                                 wstring* missing) const {
  std::map<wstring, CASDefinitionS> all;
  for (auto const& input : inputs) {
    LineT const definer = findDefiner(input.first, position);
    if (definer == 0) continue;
    LineS const& data = *find(definer);
    CASDefinitionS const& definition = isSettled(data) ? data.definition : data.written;
    if (definition.value) {
      all[input.first] = definition;
    } else if (missing) {
      *missing = input.first;
    }
  }
  return all.empty() ? nullptr : PointerTC<CASDefinitionsC>(new CASDefinitionsC(std::move(all)));
}

// ---- Tasks ------------------------------------------------------------------------------------------------

LineT SheetEngineC::findPending() {
  while (!chain_.empty()) {
    LineT const line = chain_.back();
    LineS const& data = at(line);
    if (!isSettled(data) && isPending(line, data)) return line;
    chain_.pop_back();
  }
  if (pending_.empty()) return 0;
  LineS const* const favourite = find(favourite_);
  if (favourite && isPending(favourite_, *favourite)) return favourite_;
  auto const visible = pending_.lower_bound({visible_, 0});
  return visible == pending_.end() ? pending_.begin()->second : visible->second;
}

void SheetEngineC::setFavourite(LineT line) {
  favourite_ = line;
  LineS const* const data = find(line);
  if (!data || !underWay_ || underWay_->line == line || !isPending(line, *data)) return;
  // What it depends on goes on.
  InputsT inputs;
  LineT blocker = 0;
  if (!findInputs(data->names, data->position, inputs, &blocker)) return;
  postpone();
}

void SheetEngineC::postpone() {
  if (!underWay_) return;
  LineT const line = std::exchange(underWay_, std::nullopt)->line;
  setState(line, at(line), LINE_WAITING);
}

bool SheetEngineC::takeTask(TaskS& task) {
  if (underWay_ || !computing_.isOn) return false;
  while (LineT const line = findPending()) {
    LineS& data = at(line);
    InputsT inputs;
    LineT blocker = 0;
    if (!findInputs(data.names, data.position, inputs, &blocker)) {
      LineS const& definer = at(blocker);
      if (isPending(blocker, definer)) {
        if (chain_.empty()) chain_.push_back(line);
        chain_.push_back(blocker);
      } else {
        // It waits until a line that is being changed is known; then its users are looked at again.
        use(line, data, inputs);
        pending_.erase({data.position, line});
      }
      continue;
    }
    if (inputs != data.inputs) {
      data.isValueDue = true;
      data.inputs = inputs;
    }
    use(line, data, inputs);
    data.isSuspect = false;
    if (begin(line, data, task)) return true;
  }
  return false;
}

bool SheetEngineC::begin(LineT line, LineS& data, TaskS& task) {
  if (!data.isValueDue && !data.isNumberDue) {
    finish(line, data);
    return false;
  }
  TaskUnderWayS underWay{++tasks_, line, data.isValueDue ? CAS_EVALUATE : CAS_APPROXIMATE, {}};
  task = {line, underWay.number, {}};
  task.request.operation = underWay.operation;
  task.request.expression = data.expression;
  task.request.definitions = collect(data.inputs, data.position, &underWay.missing);
  task.request.angle = computing_.angle;
  task.request.digits = computing_.digits;
  task.request.deadline = computing_.deadline;
  underWay_ = std::move(underWay);
  setState(line, data, LINE_UNDER_WAY);
  return true;
}

void SheetEngineC::deliver(TaskS const& task, CASResultS result) {
  if (!isWanted(task)) return;
  TaskUnderWayS const done = *std::exchange(underWay_, std::nullopt);
  LineS& data = at(done.line);
  ++numComputed_;
  changed_.insert(done.line);
  if (done.operation == CAS_EVALUATE) {
    takeValue(done.line, data, std::move(result), done.missing);
    return;
  }
  data.result->number = std::move(result);
  data.isNumberDue = false;
  finish(done.line, data);
}

void SheetEngineC::takeValue(LineT line, LineS& data, CASResultS result, wstring const& missing) {
  data.isValueDue = false;
  bool const isMissed = !missing.empty() && (!result.value || mentions(*result.value->getNode(), missing));
  if (isMissed) {
    result = {};
    result.cause = CAS_CAUSE_NO_VALUE;
    result.subject = missing;
  }
  if (!data.written.name.empty()) {
    CASDefinitionS known = result.definition.name == data.written.name ? result.definition : data.written;
    if (result.outcome == CAS_ERROR || isMissed) known = {};
    define(data, std::move(known));
  }
  bool const isFunction = !data.written.parameters.empty();
  data.isNumberDue = !isMissed && !isFunction && wantsNumber(result, computing_.digits);
  bool const usesDefinitions = std::any_of(data.inputs.begin(), data.inputs.end(),
                                           [](auto const& input) { return input.second != 0; });
  data.result = LineResultS{std::move(result), {}, usesDefinitions};
  data.result->number.cause = CAS_CAUSE_NONE;
  if (!data.isNumberDue) finish(line, data);
}

void SheetEngineC::define(LineS& data, CASDefinitionS definition) {
  bool const isSame = data.version != 0 && detail::areEqual(data.definition, definition);
  if (isSame) return;
  data.definition = std::move(definition);
  data.openNames.clear();
  if (data.definition.value) data.openNames = detail::findOpenNames(data.definition);
  data.version = ++versions_;
  suspect(data.written.name, data.position + 1);
}

void SheetEngineC::finish(LineT line, LineS& data) {
  pending_.erase({data.position, line});
  bool const isStopped = data.result && data.result->value.cause == CAS_CAUSE_STOPPED;
  setState(line, data, isStopped ? LINE_STOPPED : LINE_DONE);
}

void SheetEngineC::stop(LineT line) {
  if (!underWay_ || underWay_->line != line) return;
  bool const isValue = underWay_->operation == CAS_EVALUATE;
  underWay_.reset();
  LineS& data = at(line);
  CASResultS stopped;
  stopped.cause = CAS_CAUSE_STOPPED;
  if (isValue) {
    takeValue(line, data, std::move(stopped), {});
  } else {
    data.result->number = std::move(stopped);
  }
  data.isNumberDue = false;
  finish(line, data);
}

CASRequestS SheetEngineC::makeRequest(LineT line, PointerTC<AlgebraicExpressionC> expression,
                                      CASOperationE operation) const {
  CASRequestS request;
  request.operation = operation;
  request.angle = computing_.angle;
  request.digits = computing_.digits;
  request.deadline = computing_.deadline;
  LineS const* const data = find(line);
  if (data && expression && expression->getNode()) {
    InputsT inputs;
    static_cast<void>(findInputs(detail::findNames(*expression->getNode()), data->position, inputs, nullptr));
    request.definitions = collect(inputs, data->position, nullptr);
  }
  request.expression = std::move(expression);
  return request;
}

}  // namespace zolt::engine_sheet
