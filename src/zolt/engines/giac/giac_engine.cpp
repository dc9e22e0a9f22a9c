#include "zolt/engines/giac/giac_engine.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "zolt/algexpr/cas_assignment.h"
#include "zolt/algexpr/flat_tree.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/engines/basic/basic_engine.h"
#include "zolt/engines/giac/detail/messages.h"
#include "zolt/engines/giac/detail/worker_process.h"
#include "zolt/engines/giac/detail/written_form.h"

namespace zolt::engine_giac {

using namespace math::algexpr;
using namespace detail;

namespace {

using WorkerP = std::unique_ptr<WorkerProcessC>;
using EndT = WorkerProcessC::EndT;

constexpr std::size_t most_nodes = 200000;
constexpr unsigned most_nested = 1000;
// What a worker does not give back to the system goes when another one takes its place.
constexpr unsigned long most_asked = 2000;
constexpr std::size_t most_idle = 2;

bool isChain(wstring const& name) { return name == u"+" || name == u"-" || name == u"*"; }

/// Whether an expression is within the limits of what is sent. Chains of signs do not nest.
bool isWithinLimits(FlatTreeC const& tree) {
  struct OpenS {
    std::uint32_t node, end;
    unsigned depth;
  };
  std::vector<OpenS> open;
  std::uint32_t const all = tree.end(0);
  if (all > most_nodes) return false;
  for (std::uint32_t i = 0; i < all; ++i) {
    while (!open.empty() && open.back().end <= i) open.pop_back();
    unsigned depth = open.empty() ? 0 : open.back().depth + 1;
    bool const isFirst = !open.empty() && open.back().node + 1 == i && isChain(tree.crefNode(i).crefName());
    if (isFirst && isChain(tree.crefNode(open.back().node).crefName())) --depth;
    if (depth > most_nested) return false;
    if (tree.numChildren(i) > 0) open.push_back({i, tree.end(i), depth});
  }
  return true;
}

/// Adds the definitions of the names in an expression, and of those in them. False: it is all too large.
bool addDefinitions(NodeABC const& node, CASDefinitionsC const* all, QuestionS& question,
                    std::size_t& nodes) {
  std::vector<NodeABC const*> waiting{&node};
  while (!waiting.empty()) {
    FlatTreeC tree;
    NodeABC const& next = *waiting.back();
    waiting.pop_back();
    if (!tree.fill(next) || !isWithinLimits(tree)) return false;
    nodes += tree.end(0);
    if (nodes > most_nodes) return false;
    for (std::uint32_t i = 0; all && i < tree.end(0); ++i) {
      CASDefinitionS const* const definition = all->find(tree.crefNode(i).crefName());
      bool const isNew = definition && question.definitions.emplace(definition->name, *definition).second;
      if (isNew) waiting.push_back(definition->value.get());
    }
  }
  return true;
}

CASResultS toResult(WorkerProcessC::OutcomeE outcome, wstring const& message, CASRequestS const& request) {
  if (outcome == WorkerProcessC::LATE) return refuse(CAS_CAUSE_DEADLINE, 0);
  if (outcome == WorkerProcessC::STOPPED) return refuse(CAS_CAUSE_STOPPED, 0);
  AnswerS answer;
  bool const isAnswer = outcome == WorkerProcessC::ANSWERED && readAnswer(message, answer);
  if (!isAnswer) return refuse(CAS_CAUSE_ENGINE_LOST, 0);
  if (!answer.value) return refuse(answer.cause, answer.part, answer.subject);
  PointerTC<NodeABC> const written = writeForPeople(*answer.value);
  if (!written) return refuse(CAS_CAUSE_TOO_LARGE, 0);
  CASResultS result;
  result.outcome = CAS_VALUE;
  result.cause = CAS_CAUSE_NONE;
  result.value = new AlgebraicExpressionC(written, request.expression->getCASSession());
  result.certainDigits = answer.digits;
  return result;
}

std::chrono::milliseconds timeUntil(EndT last) {
  auto const left =
      std::chrono::duration_cast<std::chrono::milliseconds>(last - std::chrono::steady_clock::now());
  return std::max(left, std::chrono::milliseconds(1));
}

bool isProgram(std::string const& path) { return !path.empty() && access(path.c_str(), X_OK) == 0; }

std::string folderOfThisProgram() {
  std::vector<char> path(4096);
  ssize_t const size = readlink("/proc/self/exe", path.data(), path.size());
  if (size <= 0) return {};
  std::string const text(path.data(), static_cast<std::size_t>(size));
  return text.substr(0, text.rfind('/') + 1);
}

}  // namespace

struct GiacEngineC::SharedS {
  WorkerP take() {
    std::lock_guard<std::mutex> const locked(lock);
    if (idle.empty()) return std::make_unique<WorkerProcessC>(path);
    WorkerP worker = std::move(idle.back());
    idle.pop_back();
    return worker;
  }
  void giveBack(WorkerP worker) {
    if (worker->numAsked() >= most_asked) worker->end();
    std::lock_guard<std::mutex> const locked(lock);
    if (idle.size() < most_idle) idle.push_back(std::move(worker));
  }

  CASResultS compute(CASRequestS const& request, PointerTC<NodeABC> const& node, EndT last,
                     CASStopC const* stop) {
    bool const isAboutVariable = request.operation & (CAS_SOLVE | CAS_DIFFERENTIATE | CAS_INTEGRATE);
    QuestionS question;
    question.operation = request.operation;
    question.expression = node;
    question.angle = request.angle;
    question.digits = std::clamp(request.digits, 1U, 10000U);
    PointerTC<CASDefinitionsC> definitions = request.definitions;
    if (isAboutVariable) {
      if (!isWritableName(request.variable)) return refuse(CAS_CAUSE_WRONG_ARGUMENT);
      question.variable = request.variable;
      if (definitions) definitions = definitions->without(request.variable);
    }
    std::size_t nodes = 0;
    if (!addDefinitions(*node, definitions.get(), question, nodes)) return refuse(CAS_CAUSE_TOO_LARGE, 0);
    question.deadline = timeUntil(last);
    // The embedded engine has a part of the time.
    bool const isShared = request.operation == CAS_APPROXIMATE || request.operation == CAS_SOLVE;
    EndT const end = isShared ? last - question.deadline / 3 : last;
    wstring answer;
    WorkerP worker = take();
    auto const outcome = worker->ask(writeQuestion(question), end, stop, answer);
    giveBack(std::move(worker));
    CASResultS result = toResult(outcome, answer, request);
    if (isShared) result = tryEmbedded(result, request, node, last, stop);
    if (result.cause == CAS_CAUSE_NEEDS_ALGEBRA) result.cause = CAS_CAUSE_NOT_FOUND;
    return result;
  }

  // A number that has no exact value, or few digits that are certain; an equation without an exact solution.
  static CASResultS tryEmbedded(CASResultS const& result, CASRequestS const& request,
                                PointerTC<NodeABC> const& node, EndT last, CASStopC const* stop) {
    bool const isOpen = result.outcome == CAS_UNEVALUATED && result.cause != CAS_CAUSE_STOPPED &&
                        result.cause != CAS_CAUSE_NO_VALUE;
    bool const isRough = request.operation == CAS_APPROXIMATE && result.outcome == CAS_VALUE &&
                         result.certainDigits < request.digits;
    if (!isOpen && !isRough) return result;
    CASRequestS open = request;
    open.expression = new AlgebraicExpressionC(node, request.expression->getCASSession());
    open.deadline = timeUntil(last);
    CASResultS const known = engine_basic::BasicEngineC().compute(open, stop);
    bool const isBetter =
        known.outcome == CAS_VALUE && (isOpen || known.certainDigits > result.certainDigits);
    return isBetter || known.cause == CAS_CAUSE_ONLY_ROUNDED ? known : result;
  }

  std::string path;
  std::mutex lock;
  std::vector<WorkerP> idle;
};

GiacEngineC::GiacEngineC(std::string worker) : shared_(std::make_unique<SharedS>()) {
  shared_->path = worker.empty() ? findWorker() : std::move(worker);
}

GiacEngineC::~GiacEngineC() = default;

unsigned GiacEngineC::getCapabilities() const {
  return CAS_EVALUATE | CAS_APPROXIMATE | CAS_SIMPLIFY | CAS_EXPAND | CAS_FACTOR | CAS_SOLVE |
         CAS_DIFFERENTIATE | CAS_INTEGRATE | CAS_SUBSTITUTE;
}

CASResultS GiacEngineC::compute(CASRequestS const& request, CASStopC const* stop) const {
  EndT const last = std::chrono::steady_clock::now() + request.deadline;
  auto const isReserved = [](wstring const&) { return false; };
  return computeRequest(request, isReserved, [&](CASRequestS const& asked, PointerTC<NodeABC> const& node) {
    return shared_->compute(asked, node, last, stop);
  });
}

std::string GiacEngineC::findWorker() {
  char const* const named = std::getenv("ZOLT_GIAC_WORKER");
  if (named && *named) return isProgram(named) ? named : std::string();
  std::string const here = folderOfThisProgram();
  for (std::string const& path :
       {here + "ved-giac-worker", here + "../libexec/zolt/ved-giac-worker",
        std::string(ZOLT_GIAC_WORKER_BUILT), std::string(ZOLT_GIAC_WORKER_INSTALLED)}) {
    if (isProgram(path)) return path;
  }
  return {};
}

}  // namespace zolt::engine_giac
