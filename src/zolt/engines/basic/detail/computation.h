#pragma once

#include "zolt/engines/basic/detail/ball.h"
#include "zolt/engines/basic/detail/term_writer.h"

namespace zolt::engine_basic::detail {

/// One request to the engine, apart from assignments.
class ComputationC {
 public:
  ComputationC(CASRequestS const& request, WatchC& watch);

  /// Does the request's operation on `node`. Parts of the result are numbered in `node`.
  CASResultS run(PointerTC<NodeABC> const& node);

 private:
  using NodeP = PointerTC<NodeABC>;

  /// The exact value of the expression that was planned.
  bool evaluate(TermT* term);
  CASResultS finish(TermT term);
  CASResultS fail(FaultS const& fault) const;
  CASResultS fail() { return fail(watch_.crefFault()); }
  CASResultS value(NodeP const& node) const;
  CASResultS decimal(RationalC const& number, unsigned digits, bool isValueExact) const;

  CASResultS evaluateInfinite();
  CASResultS approximate();
  CASResultS approximate(BallS const& ball, TypeE type);
  TermT simplify(TermT term);
  CASResultS factor(TermT term);
  CASResultS solve(TermT term);
  CASResultS integrate(TermT term);
  /// The numeric value of a term; false with the watch's fault.
  bool runTerm(TermT term, BallS& ball);
  TermT variable();

  CASRequestS const& request_;
  WatchC& watch_;
  PlanS plan_;
  TermPoolC pool_;
  PointerTC<CASDefinitionsC> definitions_;
  unsigned long openPart_ = CASResultS::no_part;
};

}  // namespace zolt::engine_basic::detail
