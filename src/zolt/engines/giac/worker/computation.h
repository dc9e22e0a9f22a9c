// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zolt/engines/giac/detail/messages.h"
#include "zolt/engines/giac/worker/evaluator.h"
#include "zolt/engines/giac/worker/result_writer.h"

namespace zolt::giac_worker {

/// One request: everything is made anew for it, and nothing is left afterwards.
class ComputationC {
 public:
  explicit ComputationC(engine_giac::detail::QuestionS const& question);

  engine_giac::detail::AnswerS run();

 private:
  using AnswerS = engine_giac::detail::AnswerS;
  using ActT = std::function<gen(gen const& value)>;

  AnswerS compute();
  gen evaluate();
  AnswerS finish(gen const& found);
  AnswerS approximateAll(gen const& value);
  ResultWriterC::NodeP approximateNode(gen const& value, unsigned& certain);
  AnswerS solve();
  gen solveQuadratic(gen const& equation, gen const& variable);
  gen findSolutions(gen const& equation, gen const& variable);
  bool addSolution(gen const& solution, gen const& variable, std::vector<ResultWriterC::NodeP>& nodes);

  /// Does `act` with the sides of relations and the elements of lists, sets and tables.
  gen forParts(gen const& value, ActT const& act) const;
  gen shorten(gen const& value);
  gen inDegrees(gen const& value);
  gen factorize(gen const& value) const;
  ResultWriterC makeWriter() const;

  engine_giac::detail::QuestionS const& question_;
  giac::context context_;
  GiacNamesC names_;
  algexpr::FlatTreeC tree_;
  EvaluatorC evaluator_;
};

}  // namespace zolt::giac_worker
