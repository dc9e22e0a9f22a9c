#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QSet>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

#include "hosts/qt/desktop/graph.h"
#include "zolt/algexpr/cas_request.h"
#include "zolt/engines/queue/engine_queue.h"
#include "zolt/engines/sheet/sheet_engine.h"

namespace zolt::desktop {

class SheetRow;
class SheetView;

/// Has an engine compute the lines of the open sheet on a thread of its own, and shows what comes out under
/// the formulas.
class SheetComputer final : public QObject {
  Q_OBJECT

 public:
  using Expression = oss::PointerTC<math::algexpr::AlgebraicExpressionC>;
  using Engine = oss::PointerTC<math::algexpr::CASEngineABC>;
  using Result = math::algexpr::CASResultS;

  /// Computes with the embedded engine until another one is set. The view outlives it.
  explicit SheetComputer(SheetView& view, QObject* parent = nullptr);
  ~SheetComputer() override;

  /// Everything is computed again. It is not null.
  void setEngine(Engine const& engine);
  math::algexpr::CASEngineABC const& engine() const { return *engine_; }
  void setComputing(engine_sheet::ComputingS const& computing);
  engine_sheet::ComputingS const& computing() const { return sheet_.crefComputing(); }

  /// Whether something is computed for the row, or a command of it.
  bool isComputing(SheetRow const& row) const;
  /// Ends what is computed for the row, or for a command. Returns false when that is nothing.
  bool stop(SheetRow const& row);
  /// Selects what the reason under the formula is about. Returns false when there is none.
  bool selectFault(SheetRow& row);
  /// The line's result; null while there is none.
  engine_sheet::LineResultS const* result(SheetRow const& row) const;
  /// A request about `expression` as it would stand in that row, with what is defined there.
  math::algexpr::CASRequestS makeRequest(SheetRow const& row, Expression const& expression,
                                         math::algexpr::CASOperationE operation) const;
  /// Has the engine do the request. `take` is called later, unless the user stops it or asks for something
  /// else; it must be good for as long as this object is.
  void ask(SheetRow const& row, math::algexpr::CASRequestS request, std::function<void(Result const&)> take);
  /// The function of one variable whose graph the row can show: the value of its formula or definition, or
  /// the right side of an equation that gives one. No value when there is none.
  std::optional<GraphedFunction> graphedFunction(SheetRow const& row) const;
  /// Whether all that was to be computed has been, and is shown.
  bool isIdle() const;

 private:
  void takeRows();
  void settle(SheetRow& row);
  void pump();
  void poll();
  void showLater();
  void showChanged();
  /// Whether that has changed the height of the row.
  bool showRow(SheetRow& row);
  void setBusy(unsigned long line);

  SheetView& view_;
  Engine engine_;
  engine_sheet::SheetEngineC sheet_;
  std::unique_ptr<engine_queue::EngineQueueC> queue_;
  std::optional<engine_sheet::TaskS> task_;  // under way
  engine_queue::EngineQueueC::TicketT ticket_ = 0;
  engine_queue::EngineQueueC::TicketT asked_ = 0;  // of a command; 0: none
  unsigned long askedLine_ = 0;
  QSet<unsigned long> known_;      // the rows in `sheet_`
  QList<unsigned long> unshown_;   // rows whose results have changed
  QSet<unsigned long> isUnshown_;  // the same
  unsigned long busy_ = 0;         // the row with the mark; 0: none
  QTimer rowsTimer_, showTimer_, busyTimer_;
  QElapsedTimer sinceShown_;
};

}  // namespace zolt::desktop
