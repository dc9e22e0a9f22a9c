#include <utility>

#include "zolt/engines/sheet/detail/line_names.h"
#include "zolt/engines/sheet/sheet_engine.h"

namespace zolt::engine_sheet {

using namespace math::algexpr;

void SheetEngineC::setOrder(std::vector<LineT> const& lines) {
  chain_.clear();
  pending_.clear();
  definers_.clear();
  std::unordered_map<LineT, LineS> before;
  before.swap(lines_);
  bool isMoved = false;
  std::size_t last = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    auto const found = before.find(lines[i]);
    LineS& data = lines_[lines[i]];
    if (found != before.end()) {
      data = std::move(found->second);
      before.erase(found);
      if (data.position < last) isMoved = true;
      last = data.position;
    }
    data.position = i;
    bool const isPending = !data.isTouched && (data.isSuspect || data.isValueDue || data.isNumberDue);
    if (data.expression && isPending) pending_.insert({i, lines[i]});
    addDefiner(lines[i], data);
  }
  for (auto& gone : before) {
    abandon(gone.first);
    use(gone.first, gone.second, {});
    changed_.erase(gone.first);
    if (!gone.second.written.name.empty()) suspect(gone.second.written.name, 0);
  }
  if (!isMoved) return;
  for (auto const& name : definers_) suspect(name.first, 0);
}

void SheetEngineC::touch(LineT line) {
  LineS& data = at(line);
  if (data.isTouched) return;
  chain_.clear();
  abandon(line);
  data.isTouched = true;
  pending_.erase({data.position, line});
  if (data.expression) setState(line, data, LINE_WAITING);
  if (!data.written.name.empty()) suspect(data.written.name, data.position + 1);
}

void SheetEngineC::setExpression(LineT line, PointerTC<AlgebraicExpressionC> expression) {
  LineS& data = at(line);
  chain_.clear();
  data.isTouched = false;
  bool const isSame = expression && data.expression && expression->equals(*data.expression);
  if (!isSame) {
    abandon(line);
    removeDefiner(data);
    wstring const before = std::exchange(data.written, {}).name;
    data.names.clear();
    NodeABC const* const node = expression ? expression->getNode().get() : nullptr;
    if (node) {
      data.written = detail::readDefinition(*node);
      data.names = data.written.name.empty() ? detail::findNames(*node) : detail::findOpenNames(data.written);
    }
    data.expression = node ? std::move(expression) : nullptr;
    data.isValueDue = node;
    data.isNumberDue = false;
    addDefiner(line, data);
    if (before != data.written.name && !before.empty()) suspect(before, data.position + 1);
  }
  if (!data.written.name.empty()) suspect(data.written.name, data.position + 1);
  if (data.expression) {
    wait(line, data);
    return;
  }
  pending_.erase({data.position, line});
  data.isSuspect = false;
  data.result.reset();
  data.definition = {};
  use(line, data, {});
  setState(line, data, LINE_EMPTY);
}

void SheetEngineC::setComputing(ComputingS const& computing) {
  bool const isSame = computing.isOn == computing_.isOn && computing.angle == computing_.angle &&
                      computing.digits == computing_.digits && computing.deadline == computing_.deadline;
  computing_ = computing;
  if (isSame) return;
  if (!computing.isOn) {
    underWay_.reset();
    for (auto& line : lines_) changed_.insert(line.first);
  }
  computeAll();
}

void SheetEngineC::computeAll() {
  underWay_.reset();
  chain_.clear();
  for (auto& line : lines_) {
    if (!line.second.expression) continue;
    line.second.isValueDue = true;
    wait(line.first, line.second);
  }
}

void SheetEngineC::use(LineT line, LineS& data, InputsT const& inputs) {
  for (wstring const& name : data.used) {
    auto const found = users_.find(name);
    if (found == users_.end()) continue;
    found->second.erase(line);
    if (found->second.empty()) users_.erase(found);
  }
  data.used.clear();
  for (auto const& input : inputs) {
    users_[input.first].insert(line);
    data.used.push_back(input.first);
  }
}

void SheetEngineC::addDefiner(LineT line, LineS const& data) {
  if (!data.written.name.empty()) definers_[data.written.name][data.position] = line;
}

void SheetEngineC::removeDefiner(LineS const& data) {
  auto const found = definers_.find(data.written.name);
  if (found == definers_.end()) return;
  found->second.erase(data.position);
  if (found->second.empty()) definers_.erase(found);
}

void SheetEngineC::suspect(wstring const& name, std::size_t position) {
  // Where a name has been followed from. From further up it is followed again, from further down not.
  std::map<wstring, std::size_t> seen{{name, position}};
  std::vector<std::pair<wstring, std::size_t>> waiting{{name, position}};
  while (!waiting.empty()) {
    auto const [changed, from] = waiting.back();
    waiting.pop_back();
    auto const found = users_.find(changed);
    if (found == users_.end()) continue;
    for (LineT const user : found->second) {
      auto const entry = lines_.find(user);
      if (entry == lines_.end() || entry->second.position < from) continue;
      LineS& data = entry->second;
      if (underWay_ && underWay_->line == user) underWay_.reset();
      data.isSuspect = true;
      wait(user, data);
      wstring const& next = data.written.name;
      if (next.empty()) continue;
      auto const known = seen.find(next);
      if (known != seen.end() && known->second <= data.position + 1) continue;
      seen[next] = data.position + 1;
      waiting.push_back({next, data.position + 1});
    }
  }
}

void SheetEngineC::wait(LineT line, LineS& data) {
  if (!data.expression || data.isTouched) return;
  pending_.insert({data.position, line});
  setState(line, data, LINE_WAITING);
}

void SheetEngineC::setState(LineT line, LineS& data, LineStateE state) {
  data.state = state;
  changed_.insert(line);
}

void SheetEngineC::abandon(LineT line) {
  if (underWay_ && underWay_->line == line) underWay_.reset();
}

}  // namespace zolt::engine_sheet
