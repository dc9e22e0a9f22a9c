#include "hosts/cli/command_eval.h"

#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include "hosts/cli/batch.h"
#include "hosts/cli/formula.h"
#include "hosts/cli/options.h"
#include "hosts/cli/utf8_text.h"
#include "zolt/algexpr/cas_request.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/engines/list/engine_list.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/plain_text.h"

namespace zolt::cli {

using namespace math::algexpr;

namespace {

constexpr unsigned long progress_step = 1000;

enum EngineE { ENGINE_BASIC, ENGINE_GIAC };
enum ResultNotationE { RESULT_PLAIN, RESULT_LATEX, RESULT_PREFIX };

constexpr char footer[] =
    R"(Every line of input gives one line of output, an empty one when it has no value; then a message says why.
Results are exact unless --numeric is given; a numeric one has no more digits than are certain. What a line
assigns with ":=" or ":>" is known to later ones. Solutions are written "x = 1", several as a list.

Examples:
  ved eval '1/3+1/6'                       1/2
  ved eval --numeric --digits 5 'sqrt(2)'  1.4142
  ved eval --solve x 'x^2-x-1=0'           list(x = 1/2-sqrt(5)/2,x = sqrt(5)/2+1/2)
  ved eval --diff x 'x^2*sin(x)'           x^2*cos(x)+2*x*sin(x)
  ved eval 'a := 2' 'f(x) := a*x' 'f(3)'   2, a*x, 6
  ved eval --numeric 'int(0,1,exp(-x^2),x)'
  ved eval --numeric --solve x 'x^5=x+1'   x = 1.16730397826142

The engine "basic" knows arithmetic, the functions of the palette, derivatives, finite sums, simple antiderivatives,
definite integrals, polynomial equations; what it does not know it says. The engine "giac" is an algebra system in
a process of its own, where it is installed; to it "i" is the imaginary unit.)";

struct SettingsS {
  InputS input;
  NotationE from = NOTATION_PLAIN;
  CatalogueE catalogue = CATALOGUE_EXTENDED;
  ResultNotationE to = RESULT_PLAIN;
  EngineE engine = ENGINE_BASIC;
  CASRequestS request;
  double deadline = 2;
  bool isInDegrees = false;
  bool isNumeric = false;
  unsigned operations = 0;  ///< how many were asked for
};

std::string write(AlgebraicExpressionC const& expression, ResultNotationE notation) {
  if (notation == RESULT_LATEX) return toUtf8(exchange::toLatex(expression));
  if (notation == RESULT_PREFIX) return toUtf8(expression.toPrefixString());
  return toUtf8(exchange::toPlainText(expression));
}

/// The reason, and the part that it is about unless that is all of the expression.
FaultS describeFault(CASResultS const& result, AlgebraicExpressionC const& expression) {
  constexpr std::size_t longest_part = 100;
  FaultS fault;
  fault.message = toUtf8(describe(result));
  if (result.cause == CAS_CAUSE_ONLY_ROUNDED) fault.message += "; --numeric gives them";
  PointerTC<NodeABC> const part = result.part == 0 ? nullptr : findPart(expression, result.part);
  if (!part) return fault;
  std::string const text = write(AlgebraicExpressionC(part, nullptr), RESULT_PLAIN);
  if (text.size() <= longest_part) fault.message += ": " + text;
  return fault;
}

/// The value of `text`; false, with `fault`, when it has none.
bool evaluate(SettingsS const& settings, CASSessionBC& session, oss::wstring const& text, std::string& out,
              FaultS& fault) {
  std::unique_ptr<FormulaC> const formula = FormulaC::read(text, settings.from, fault);
  auto const expression = formula ? formula->getExpression(fault) : nullptr;
  if (!expression) return false;
  CASRequestS request = settings.request;
  request.expression = expression;
  CASResultS const result = session.compute(std::move(request));
  if (result.outcome != CAS_VALUE) {
    fault = describeFault(result, *expression);
    return false;
  }
  out = write(*result.value, settings.to);
  return true;
}

ExitStatusE run(SettingsS const& settings) {
  oss::wstring const name = settings.engine == ENGINE_GIAC ? u"giac" : u"basic";
  auto const engine = engine_list::makeEngine(name);
  if (!engine) {
    std::string reason = "it is not part of this program";
    for (auto const& entry : engine_list::listEngines()) {
      if (entry.name == name) reason = toUtf8(entry.reason);
    }
    printMessage("the engine \"" + toUtf8(name) + "\" cannot be used: " + reason);
    return EXIT_STATUS_FAILED;
  }
  provideOperators(settings.catalogue);
  CASSessionBC session(engine);
  StandardOutputC output;
  BatchC batch(settings.input, progress_step, output);
  while (batch.next()) {
    std::string result;
    FaultS fault;
    if (batch.hasText() && !evaluate(settings, session, batch.getText(), result, fault)) {
      result.clear();
      batch.report(fault);
    }
    output.write(result + '\n');
  }
  return batch.finish();
}

void addOperation(CLI::App& command, SettingsS& settings, std::string const& name, CASOperationE operation,
                  std::string const& help) {
  auto const choose = [&settings, operation] {
    settings.request.operation = operation;
    ++settings.operations;
  };
  addAction(command, name, choose, help);
}

void addVariableOperation(CLI::App& command, SettingsS& settings, std::string const& name,
                          CASOperationE operation, std::string const& help) {
  auto const choose = [&settings, operation, name](std::string const& variable) {
    if (!fromUtf8(variable, settings.request.variable, nullptr)) refuse(name, "the name is not UTF-8");
    if (!isWritableName(settings.request.variable)) refuse(name, "\"" + variable + "\" is no name");
    settings.request.operation = operation;
    ++settings.operations;
  };
  addText(command, name, "VAR", choose, help);
}

}  // namespace

void addEvalCommand(CLI::App& program, ActionT& action) {
  CLI::App& command = addCommand(program, "eval", "Compute expressions", footer);
  auto const settings = std::make_shared<SettingsS>();
  SettingsS& s = *settings;
  addInputOptions(command, s.input, s.from);
  addChoice<ResultNotationE>(command, "--to", s.to,
                             {{"plain", RESULT_PLAIN}, {"latex", RESULT_LATEX}, {"prefix", RESULT_PREFIX}},
                             "Notation of the results");
  addFlag(command, "--numeric", s.isNumeric, "Answer with decimal numbers; also with the operations below");
  addCount(command, "--digits", s.request.digits, 1, 10000, "Digits of decimal numbers, at most");
  addOperation(command, s, "--simplify", CAS_SIMPLIFY, "Answer with a shorter equal expression");
  addOperation(command, s, "--expand", CAS_EXPAND, "Multiply products of sums out");
  addOperation(command, s, "--factor", CAS_FACTOR, "Answer with a product of factors");
  addVariableOperation(command, s, "--solve", CAS_SOLVE, "Solve equations for this variable");
  addVariableOperation(command, s, "--diff", CAS_DIFFERENTIATE, "Derive by this variable");
  addVariableOperation(command, s, "--integrate", CAS_INTEGRATE, "Find antiderivatives by this variable");
  addCatalogue(command, s.catalogue);
  addFlag(command, "--degrees", s.isInDegrees, "Take plain numbers as angles in degrees");
  addNumber(command, "--deadline", s.deadline, 0.001, 86400, "Seconds for each expression");
  addChoice<EngineE>(command, "--engine", s.engine, {{"basic", ENGINE_BASIC}, {"giac", ENGINE_GIAC}},
                     "What computes");
  onChosen(command, [settings, &action] {
    if (settings->operations > 1) refuse("eval", "only one operation can be done");
    if (settings->isNumeric) settings->request.numbers = CAS_ROUNDED_NUMBERS;
    settings->request.angle = settings->isInDegrees ? CAS_DEGREES : CAS_RADIANS;
    settings->request.deadline = std::chrono::milliseconds(static_cast<long>(settings->deadline * 1000));
    action = [settings] { return run(*settings); };
  });
}

}  // namespace zolt::cli
