#include "hosts/qt/desktop/sheet_computer.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "hosts/qt/desktop/graph_view.h"
#include "hosts/qt/desktop/result_view.h"
#include "hosts/qt/desktop/sheet_view.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/engines/basic/basic_engine.h"
#include "zolt/engines/sheet/variables.h"
#include "zolt/engines/sheet/worth_showing.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/qt/text.h"

namespace zolt::desktop {

using namespace math::algexpr;
using engine_sheet::LineResultS;
using engine_sheet::ShownS;
using engine_sheet::TaskS;

namespace {

constexpr int busy_delay = 300;  // ms
constexpr int show_pause = 40;   // ms: each time all lines below are moved
constexpr int show_budget = 8;   // ms, so that no key waits for results to be shown

SheetComputer::Expression expressionOf(SheetRow const& row) {
  if (!row.formula()) return nullptr;
  // The line of a formula that nobody has edited is at hand.
  SheetLine const line = row.draft();
  if (line.prefix.isEmpty()) return row.formula()->algebraicExpression();
  return AlgebraicExpressionC::fromPrefixString(qt::toWstring(line.prefix));
}

ShownResult toShown(AlgebraicExpressionC const& expression, LineResultS const& result, unsigned digits) {
  ShownS const shown = engine_sheet::findShown(expression, result, digits);
  ShownResult all;
  if (shown.isValue) all.value = result.value.value;
  if (shown.isNumber) all.number = result.number.value;
  all.isNumberExact = shown.isNumberExact;
  all.isImplied = shown.isImplied;
  if (shown.reason) {
    all.reason = qt::toQString(describe(*shown.reason));
    all.isError = shown.reason->outcome == CAS_ERROR;
    all.part = shown.reason->part;
  }
  return all;
}

}  // namespace

SheetComputer::SheetComputer(SheetView& view, QObject* parent) : QObject(parent), view_(view) {
  for (QTimer* const timer : {&rowsTimer_, &showTimer_, &busyTimer_}) timer->setSingleShot(true);
  busyTimer_.setInterval(busy_delay);
  connect(&rowsTimer_, &QTimer::timeout, this, &SheetComputer::takeRows);
  connect(&showTimer_, &QTimer::timeout, this, &SheetComputer::showChanged);
  connect(&busyTimer_, &QTimer::timeout, this, [this] {
    if (asked_ || task_) setBusy(asked_ ? askedLine_ : task_->line);
  });
  // Moving a row takes it away and brings it back.
  connect(&view, &SheetView::rowsChanged, &rowsTimer_, QOverload<>::of(&QTimer::start));
  connect(&view, &SheetView::formulaTouched, this, [this](SheetRow* row) {
    if (!known_.contains(row->id())) return;
    sheet_.touch(row->id());
    pump();
  });
  connect(&view, &SheetView::formulaSettled, this, [this](SheetRow* row) {
    if (!known_.contains(row->id())) return;
    settle(*row);
    pump();
  });
  connect(&view, &SheetView::resultsMade, this, [this](SheetRow* row) {
    connect(&row->results(), &ResultView::stopChosen, this, [this, row] { stop(*row); });
    connect(&row->results(), &ResultView::faultChosen, this, [this, row] { selectFault(*row); });
  });
  connect(&view, &SheetView::graphMade, this,
          [this](SheetRow* row) { row->graph()->setFunction(graphedFunction(*row)); });
  // What somebody is at is computed first.
  connect(&view, &SheetView::currentChanged, this, &SheetComputer::pump);
  setEngine(new engine_basic::BasicEngineC);
  takeRows();
}

SheetComputer::~SheetComputer() = default;

void SheetComputer::setEngine(Engine const& engine) {
  asked_ = 0;
  queue_.reset();
  task_.reset();
  engine_ = engine;
  queue_ = std::make_unique<engine_queue::EngineQueueC>(engine, [this] {
    QMetaObject::invokeMethod(
        this, [this] { poll(); }, Qt::QueuedConnection);
  });
  sheet_.computeAll();
  pump();
}

void SheetComputer::setComputing(engine_sheet::ComputingS const& computing) {
  sheet_.setComputing(computing);
  pump();
}

void SheetComputer::takeRows() {
  std::vector<engine_sheet::LineT> order;
  QSet<unsigned long> now;
  for (SheetRow const* const row : view_.rows()) {
    order.push_back(row->id());
    now.insert(row->id());
  }
  sheet_.setOrder(order);
  QSet<unsigned long> const before = std::exchange(known_, now);
  for (SheetRow* const row : view_.rows()) {
    if (!before.contains(row->id())) settle(*row);
  }
  pump();
}

void SheetComputer::settle(SheetRow& row) { sheet_.setExpression(row.id(), expressionOf(row)); }

// ---- The queue --------------------------------------------------------------------------------------------

void SheetComputer::pump() {
  if (SheetRow const* const current = view_.currentRow()) sheet_.setFavourite(current->id());
  if (task_ && !sheet_.isWanted(*task_)) {
    queue_->cancel(ticket_);
    task_.reset();
  }
  sheet_.setVisible(std::size_t(view_.firstVisible()));
  TaskS next;
  while (sheet_.takeTask(next)) {
    task_ = std::move(next);
    ticket_ = queue_->submit(task_->request, [this](CASResultS const& result) {
      TaskS const done = *std::exchange(task_, std::nullopt);
      sheet_.deliver(done, result);
    });
    busyTimer_.start();
  }
  showLater();
}

void SheetComputer::poll() {
  queue_->poll();
  pump();
}

void SheetComputer::ask(SheetRow const& row, CASRequestS request, std::function<void(Result const&)> take) {
  if (asked_) queue_->cancel(asked_);
  // A command does not wait for the lines.
  sheet_.postpone();
  if (task_) queue_->cancel(ticket_);
  task_.reset();
  askedLine_ = row.id();
  asked_ = queue_->submit(std::move(request), [this, take = std::move(take)](CASResultS const& result) {
    asked_ = 0;
    setBusy(0);
    take(result);
  });
  pump();
  busyTimer_.start();
}

bool SheetComputer::isComputing(SheetRow const& row) const {
  return (asked_ && askedLine_ == row.id()) || (task_ && task_->line == row.id());
}

bool SheetComputer::stop(SheetRow const& row) {
  if (asked_ && askedLine_ == row.id()) {
    queue_->cancel(std::exchange(asked_, 0));
    setBusy(0);
    return true;
  }
  if (!task_ || task_->line != row.id()) return false;
  sheet_.stop(row.id());
  pump();
  return true;
}

LineResultS const* SheetComputer::result(SheetRow const& row) const { return sheet_.findResult(row.id()); }

CASRequestS SheetComputer::makeRequest(SheetRow const& row, Expression const& expression,
                                       CASOperationE operation) const {
  return sheet_.makeRequest(row.id(), expression, operation);
}

std::optional<GraphedFunction> SheetComputer::graphedFunction(SheetRow const& row) const {
  LineResultS const* const result = this->result(row);
  Expression expression = sheet_.getExpression(row.id());
  if (result && result->value.outcome == CAS_VALUE) expression = result->value.value;
  if (!expression) return std::nullopt;
  // Of y = x^2 the right side is the function.
  ParentNodeABC const* const equation = expression->getNode()->asParent();
  if (equation && equation->crefName() == u"=" && !equation->child(0).asParent()) {
    expression = new AlgebraicExpressionC(equation->childPointer(1), expression->getCASSession());
  }
  std::vector<oss::wstring> const variables = engine_sheet::findVariables(*expression);
  if (variables.size() != 1) return std::nullopt;
  GraphedFunction function;
  function.expression = expression;
  function.variable = variables.front();
  function.definitions = sheet_.makeRequest(row.id(), expression, CAS_EVALUATE).definitions;
  function.angle = computing().angle;
  function.isTrigonometric = isTrigonometric(*expression->getNode(), function.variable);
  return function;
}

bool SheetComputer::selectFault(SheetRow& row) {
  if (!row.hasResults() || !row.formula()) return false;
  ShownResult const& shown = row.results().result();
  if (shown.reason.isEmpty() || row.results().isStale()) return false;
  row.formula()->setFocus(Qt::OtherFocusReason);
  // What is about no part is about all of it.
  return row.formula()->selectPart(shown.part == CASResultS::no_part ? 0 : shown.part);
}

bool SheetComputer::isIdle() const {
  return !rowsTimer_.isActive() && !task_ && !asked_ && unshown_.isEmpty();
}

// ---- On the sheet -----------------------------------------------------------------------------------------

void SheetComputer::showLater() {
  for (unsigned long const line : sheet_.takeChanged()) {
    if (isUnshown_.contains(line)) continue;
    isUnshown_.insert(line);
    unshown_.push_back(line);
  }
  if (unshown_.isEmpty() || showTimer_.isActive()) return;
  qint64 const since = sinceShown_.isValid() ? sinceShown_.elapsed() : show_pause;
  showTimer_.start(int(std::max<qint64>(0, show_pause - since)));
}

void SheetComputer::showChanged() {
  QList<SheetRow*> changed;
  view_.keepPlace([&] {
    QElapsedTimer clock;
    clock.start();
    while (!unshown_.isEmpty() && clock.elapsed() < show_budget) {
      unsigned long const line = unshown_.takeFirst();
      isUnshown_.remove(line);
      SheetRow* const row = view_.findRow(line);
      if (row && row->formula() && showRow(*row)) changed.push_back(row);
    }
    return changed;
  });
  if (changed.contains(view_.currentRow())) view_.showBelow();
  sinceShown_.start();
  showLater();
}

bool SheetComputer::showRow(SheetRow& row) {
  LineResultS const* const result = sheet_.findResult(row.id());
  auto const expression = sheet_.getExpression(row.id());
  if (busy_ == row.id() && (!task_ || task_->line != busy_) && !asked_) setBusy(0);
  bool const isSettled = sheet_.isCurrent(row.id()) || !computing().isOn;
  if (row.graph() && isSettled) row.graph()->setFunction(graphedFunction(row));
  if (!result && !row.hasResults()) return false;
  int const height = row.hasResults() ? row.results().height() : 0;
  row.showResult(result && expression ? toShown(*expression, *result, computing().digits) : ShownResult());
  if (!row.hasResults()) return false;
  row.results().setStale(!sheet_.isCurrent(row.id()));
  return row.results().height() != height;
}

void SheetComputer::setBusy(unsigned long line) {
  if (line == busy_) return;
  auto const mark = [this](unsigned long which, bool busy) {
    SheetRow* const row = view_.findRow(which);
    if (!row || !row->formula() || (!busy && !row->hasResults())) return;
    row->results().setBusy(busy);
  };
  mark(busy_, false);
  busy_ = line;
  mark(line, true);
}

}  // namespace zolt::desktop
