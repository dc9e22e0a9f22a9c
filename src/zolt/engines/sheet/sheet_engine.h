#pragma once

#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

#include "zolt/algexpr/cas_request.h"

namespace zolt::engine_sheet {

using math::algexpr::AlgebraicExpressionC;
using math::algexpr::CASDefinitionS;
using math::algexpr::CASDefinitionsC;
using math::algexpr::CASOperationE;
using math::algexpr::CASRequestS;
using math::algexpr::CASResultS;
using oss::PointerTC;
using oss::wstring;

/// A line of a sheet, whatever its place. The host chooses the numbers, which are not 0, and uses each for
/// one line.
using LineT = unsigned long;

enum LineStateE {
  LINE_EMPTY,    ///< no expression, and so no results
  LINE_WAITING,  ///< what is there of results may be out of date
  LINE_UNDER_WAY,
  LINE_DONE,
  LINE_STOPPED  ///< by `stop`; it stays without further results until something changes
};

/// What a line has been computed to.
struct LineResultS {
  CASResultS value;   ///< exact, or why there is none; of an assignment, its value
  CASResultS number;  ///< approximate; its cause is none and its value null where nobody would ask for one
  bool usesDefinitions = false;  ///< of other lines
};

/// A request for an engine, and what it is for.
struct TaskS {
  LineT line = 0;
  unsigned long number = 0;  ///< of the task
  CASRequestS request;
};

/// How a sheet is computed.
struct ComputingS {
  bool isOn = true;
  math::algexpr::CASAngleE angle = math::algexpr::CAS_RADIANS;
  unsigned digits = 10;
  std::chrono::milliseconds deadline{2000};
};

/// Which lines of a sheet have to be computed, with which definitions, and what came out. A line sees what
/// the lines above it define; of several definitions of a name it is the nearest one. A line is computed
/// again when it, or a definition that it depends on, has another value than before.
///
/// It computes nothing itself: the host takes a task, has an engine do it on whatever thread, and delivers
/// the result. One task is under way at a time. No member waits. Used by one thread at a time.
class SheetEngineC {
 public:
  SheetEngineC();
  ~SheetEngineC();
  SheetEngineC(SheetEngineC const&) = delete;
  SheetEngineC& operator=(SheetEngineC const&) = delete;

  // ---- The sheet (sheet_engine_order.cpp) -----------------------------------------------------------------
  /// The lines from top to bottom. New ones are empty; ones that are gone are forgotten.
  void setOrder(std::vector<LineT> const& lines);
  /// The line has changed, and its expression is not known yet: its results, and those of what depends on it,
  /// are out of date and wait for `setExpression`.
  void touch(LineT line);
  /// Null for a line that is empty, incomplete or no formula.
  void setExpression(LineT line, PointerTC<AlgebraicExpressionC> expression);
  /// Everything is computed again if they differ.
  void setComputing(ComputingS const& computing);
  ComputingS const& crefComputing() const { return computing_; }
  /// Everything is computed again: with another engine.
  void computeAll();
  /// Computes these first: the lines from the one at `first`, counted from 0.
  void setVisible(std::size_t first) { visible_ = first; }
  /// Before all others: the line that somebody is at; 0: none. When it can be computed at once, what is under
  /// way gives way to it, and is begun again later.
  void setFavourite(LineT line);
  /// What is under way is begun again later: the engine is wanted for something else.
  void postpone();

  // ---- Computing (sheet_engine.cpp) -----------------------------------------------------------------------
  /// False when there is nothing to do, or a task is under way that is still wanted.
  [[nodiscard]] bool takeTask(TaskS& task);
  /// Whether the task's result would be used.
  bool isWanted(TaskS const& task) const { return underWay_ && task.number == underWay_->number; }
  /// A result that is not wanted is dropped.
  void deliver(TaskS const& task, CASResultS result);
  /// Ends the computation of the line. What depends on it takes its definition as it is written.
  void stop(LineT line);

  LineStateE getState(LineT line) const;
  /// Null while nothing has been computed since the line got its first expression.
  LineResultS const* findResult(LineT line) const;
  /// Whether the result's value is that of the line as it is now, as far as is known.
  bool isCurrent(LineT line) const;
  PointerTC<AlgebraicExpressionC> getExpression(LineT line) const;
  /// The lines whose state or result has changed since the last call, in no order.
  std::vector<LineT> takeChanged();

  /// A request for something else at the place of a line, with the definitions that are known there.
  CASRequestS makeRequest(LineT line, PointerTC<AlgebraicExpressionC> expression,
                          CASOperationE operation) const;

  /// How many values and approximations have been computed, for tests and measurements.
  unsigned long numComputed() const { return numComputed_; }

 private:
  /// What a line depended on: the versions of the definitions of names; 0: there was none.
  using InputsT = std::vector<std::pair<wstring, unsigned long>>;
  using PendingT = std::set<std::pair<std::size_t, LineT>>;

  struct LineS {
    PointerTC<AlgebraicExpressionC> expression;
    std::vector<wstring> names;      ///< that its value depends on
    CASDefinitionS written;          ///< what it defines, as it is written
    CASDefinitionS definition;       ///< what it defines, computed; without a value when that failed
    std::vector<wstring> openNames;  ///< of the definition
    unsigned long version = 0;       ///< of the definition
    std::size_t position = 0;
    LineStateE state = LINE_EMPTY;
    bool isTouched = false;
    bool isSuspect = false;  ///< a definition that it depends on may be another one by now
    bool isValueDue = false, isNumberDue = false;
    std::optional<LineResultS> result;
    InputsT inputs;             ///< of the result
    std::vector<wstring> used;  ///< the names under which it is among the users
  };

  struct TaskUnderWayS {
    unsigned long number;
    LineT line;
    CASOperationE operation;
    wstring missing;  ///< a name whose definition failed
  };

  LineS& at(LineT line) { return lines_.find(line)->second; }
  LineS const* find(LineT line) const;

  // sheet_engine_order.cpp
  void use(LineT line, LineS& data, InputsT const& inputs);
  void addDefiner(LineT line, LineS const& data);
  void removeDefiner(LineS const& data);
  /// Marks what depends on a name from a place on, directly or by what that defines.
  void suspect(wstring const& name, std::size_t position);
  void wait(LineT line, LineS& data);
  void setState(LineT line, LineS& data, LineStateE state);
  /// A task under way for the line is not wanted any more.
  void abandon(LineT line);

  // sheet_engine.cpp
  /// The nearest line above `position` that defines the name; 0: none.
  LineT findDefiner(wstring const& name, std::size_t position) const;
  /// The definitions that an expression at `position` with these names depends on. False when one of them is
  /// yet to be computed: `*blocker` (may be null: nobody minds) then is its line.
  bool findInputs(std::vector<wstring> const& names, std::size_t position, InputsT& inputs,
                  LineT* blocker) const;
  /// `missing` (may be null) becomes the name of a definition that failed.
  PointerTC<CASDefinitionsC> collect(InputsT const& inputs, std::size_t position, wstring* missing) const;
  static bool isSettled(LineS const& data) { return !data.isTouched && !data.isSuspect && !data.isValueDue; }
  bool isPending(LineT line, LineS const& data) const { return pending_.count({data.position, line}) != 0; }
  LineT findPending();
  bool begin(LineT line, LineS& data, TaskS& task);
  void takeValue(LineT line, LineS& data, CASResultS result, wstring const& missing);
  void define(LineS& data, CASDefinitionS definition);
  void finish(LineT line, LineS& data);

  std::unordered_map<LineT, LineS> lines_;
  std::map<wstring, std::map<std::size_t, LineT>> definers_;  // by position
  std::map<wstring, std::set<LineT>> users_;
  PendingT pending_;
  std::vector<LineT> chain_;  // of lines, each of which waits for the next one
  std::set<LineT> changed_;
  std::optional<TaskUnderWayS> underWay_;
  ComputingS computing_;
  std::size_t visible_ = 0;
  LineT favourite_ = 0;
  unsigned long versions_ = 0, tasks_ = 0, numComputed_ = 0;
};

}  // namespace zolt::engine_sheet
