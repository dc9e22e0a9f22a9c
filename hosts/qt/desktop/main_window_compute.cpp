#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QSettings>
#include <QSignalBlocker>
#include <memory>

#include "hosts/qt/desktop/computing_dialog.h"
#include "hosts/qt/desktop/engine_choice.h"
#include "hosts/qt/desktop/graph_view.h"
#include "hosts/qt/desktop/main_window.h"
#include "hosts/qt/desktop/result_view.h"
#include "hosts/qt/desktop/sheet_computer.h"
#include "hosts/qt/desktop/sheet_view.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/engines/sheet/variables.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/qt/formula_mime.h"
#include "zolt/qt/mnemonics.h"
#include "zolt/qt/text.h"

namespace zolt::desktop {

using namespace math::algexpr;
using qt::FormulaEdit;
using qt::toQString;

namespace {

using ExpressionT = SheetComputer::Expression;

/// The selection of the formula, or all of it; null when that is no expression.
ExpressionT chosenPart(FormulaEdit const& formula) {
  if (!formula.hasSelection()) return formula.algebraicExpression();
  std::unique_ptr<QMimeData> const copied(formula.createMimeDataFromSelection());
  if (!copied) return nullptr;
  QByteArray const prefix = copied->data(QLatin1String(qt::prefix_mime_type));
  return prefix.isEmpty() ? nullptr
                          : AlgebraicExpressionC::fromPrefixString(qt::toWstring(QString::fromUtf8(prefix)));
}

/// What is to be read of a result, each part as a line of its own: solutions are a list.
std::vector<ExpressionT> linesOf(ExpressionT const& value) {
  ParentNodeABC const* const list = value->getNode()->asParent();
  if (!list || list->crefName() != u"list") return {value};
  std::vector<ExpressionT> lines;
  for (unsigned long i = 0; i < list->numChildren(); ++i) {
    lines.emplace_back(new AlgebraicExpressionC(list->childPointer(i), value->getCASSession()));
  }
  return lines;
}

QString engineTitle(QString const& id) {
  for (EngineChoice const& choice : engineChoices()) {
    if (choice.id == id) return choice.title;
  }
  return {};
}

/// What to do where the engine in use does not suffice, after a sentence that says so.
QString otherEngine(QString const& used) {
  for (EngineChoice const& choice : engineChoices()) {
    if (choice.id == used || choice.id == QLatin1String("basic")) continue;
    if (!choice.engine) return MainWindow::tr(". %1 is not installed: %2").arg(choice.title, choice.reason);
    return MainWindow::tr(". %1 may: it is chosen in Compute > Computing Settings").arg(choice.title);
  }
  return {};
}

}  // namespace

void MainWindow::makeComputeMenu() {
  QMenu& menu = *menuBar()->addMenu(tr("&Compute"));
  auto const addPlain = [&](ActionS const& entry, CASOperationE operation) {
    add(menu, entry, [=] { compute(operation, {}); });
  };
  addPlain({"simplify", "&Simplify", "Ctrl+Shift+I"}, CAS_SIMPLIFY);
  addPlain({"expand", "&Expand", ""}, CAS_EXPAND);
  addPlain({"factor", "&Factor", ""}, CAS_FACTOR);
  addPlain({"approximate", "&Decimal Number", ""}, CAS_APPROXIMATE);
  menu.addSeparator();
  auto const addByVariable = [&](QString const& title, char const* name, CASOperationE operation) {
    QMenu* const sub = menu.addMenu(title);
    sub->menuAction()->setObjectName(QLatin1String(name));
    actions_.insert(QLatin1String(name), sub->menuAction());
    connect(sub, &QMenu::aboutToShow, this, [=] { fillVariables(*sub, operation); });
  };
  addByVariable(tr("S&olve For"), "solve", CAS_SOLVE);
  addByVariable(tr("D&ifferentiate By"), "differentiate", CAS_DIFFERENTIATE);
  addByVariable(tr("I&ntegrate By"), "integrate", CAS_INTEGRATE);
  menu.addSeparator();
  addToggle(menu, {"graph", "Show &Graph", "Ctrl+G"}, [this](bool on) { showGraph(on); });
  add(menu, {"enter-result", "Go to Resu&lt or Graph", "F6"}, [this] { enterBelow(); });
  add(menu, {"copy-result", "Cop&y Result", "Ctrl+Shift+R"}, [this] { copyResult(); });
  add(menu, {"insert-result", "&Result as New Line", "Ctrl+Shift+Return"}, [this] { insertResult(); });
  add(menu, {"stop", "S&top", ""}, [this] { computer_->stop(*view_->currentRow()); });
  menu.addSeparator();
  addToggle(menu, {"results", "Results &Under Formulas", ""}, [this](bool on) {
    engine_sheet::ComputingS computing = computer_->computing();
    computing.isOn = on;
    computer_->setComputing(computing);
  });
  add(menu, {"computing", "&Computing Settings…", ""}, [this] { askComputing(); });
  menu.setToolTipsVisible(true);
  connect(&menu, &QMenu::aboutToShow, this, &MainWindow::updateComputeActions);
  // Their keys work whatever it was when the menu was last open.
  connect(&menu, &QMenu::aboutToHide, this, [&menu] {
    for (QAction* const action : menu.actions()) action->setEnabled(true);
  });
  connect(view_, &SheetView::contextMenuMade, this, [&menu](QMenu* formulaMenu) {
    formulaMenu->addSeparator();
    // The menu bar's letter is the one of "Copy" here. An entry for tables that has the other one gets a
    // third.
    for (QAction* const entry : formulaMenu->actions()) {
      if (qt::letterOf(entry->text()) == Qt::Key_M) entry->setText(entry->text().remove(u'&'));
    }
    formulaMenu->addAction(tr("Co&mpute"))->setMenu(&menu);
    qt::giveLetters(formulaMenu->actions());
  });
  connect(view_, &SheetView::resultMenuMade, this, [this](QMenu* resultMenu) {
    updateComputeActions();
    resultMenu->addSeparator();
    resultMenu->addAction(action(QStringLiteral("copy-result")));
    resultMenu->addAction(action(QStringLiteral("insert-result")));
  });
  connect(view_, &SheetView::stopWanted, this, [this] { computer_->stop(*view_->currentRow()); });
}

void MainWindow::updateComputeActions() {
  FormulaEdit const* const formula = view_->currentFormula();
  QString const noFormula = formula && !formula->isEmpty() ? QString() : tr("This line has no formula");
  // The reason is the tool tip of an entry that cannot be chosen.
  auto const enable = [this](char const* name, QString const& whyNot) {
    action(QLatin1String(name))->setEnabled(whyNot.isEmpty());
    action(QLatin1String(name))->setToolTip(whyNot);
  };
  auto const noAbility = [this] {
    return tr("%1 cannot do this").arg(engineTitle(engine_)) + otherEngine(engine_);
  };
  unsigned const able = computer_->engine().getCapabilities();
  struct NeedS {
    char const* name;
    CASOperationE operation;
  };
  for (NeedS const& need :
       {NeedS{"simplify", CAS_SIMPLIFY}, NeedS{"expand", CAS_EXPAND}, NeedS{"factor", CAS_FACTOR},
        NeedS{"approximate", CAS_APPROXIMATE}, NeedS{"solve", CAS_SOLVE},
        NeedS{"differentiate", CAS_DIFFERENTIATE}, NeedS{"integrate", CAS_INTEGRATE}}) {
    enable(need.name, able & need.operation ? noFormula : noAbility());
  }
  QString const noResult = !noFormula.isEmpty() ? noFormula
                           : shownResult()      ? QString()
                                                : tr("The formula has no result now");
  enable("insert-result", noResult);
  enable("copy-result", noResult);
  SheetRow const& row = *view_->currentRow();
  enable("enter-result", row.graph() ? QString() : noResult);
  bool const isGraph = row.graph() || (row.formula() && computer_->graphedFunction(row));
  enable("graph", isGraph ? QString() : tr("A graph needs an expression in one variable"));
  updateGraphAction();
  enable("stop", computer_->isComputing(row) ? QString() : tr("Nothing is being computed for this line"));
}

void MainWindow::fillVariables(QMenu& menu, CASOperationE operation) {
  menu.clear();
  FormulaEdit const* const formula = view_->currentFormula();
  ExpressionT const part = formula ? chosenPart(*formula) : nullptr;
  if (part) {
    for (oss::wstring const& variable : engine_sheet::findVariables(*part)) {
      menu.addAction(toQString(variable), this, [=] { compute(operation, toQString(variable)); });
    }
  }
  if (menu.isEmpty()) menu.addAction(tr("No variables"))->setEnabled(false);
}

void MainWindow::compute(CASOperationE operation, QString const& variable) {
  FormulaEdit* const formula = view_->currentFormula();
  if (!formula || formula->isEmpty()) return;
  ExpressionT const part = chosenPart(*formula);
  if (!part) {
    if (!formula->hasSelection()) {
      formula->check();
    } else {
      showError(tr("What is selected is no expression"));
    }
    return;
  }
  // What an earlier one came to is over, however this one ends.
  updateStatus();
  SheetRow& row = *view_->currentRow();
  CASRequestS request = computer_->makeRequest(row, part, operation);
  request.variable = qt::toWstring(variable);
  ask(row, request);
}

void MainWindow::ask(SheetRow const& row, CASRequestS const& request) {
  computer_->ask(row, request, [this, id = row.id(), request](CASResultS const& result) {
    SheetRow* const asked = view_->findRow(id);
    if (!asked) return;
    if (result.cause == CAS_CAUSE_ONLY_ROUNDED && request.numbers == CAS_EXACT_NUMBERS) {
      CASRequestS rounded = request;
      rounded.numbers = CAS_ROUNDED_NUMBERS;
      return ask(*asked, rounded);
    }
    if (result.outcome != CAS_VALUE) return showError(whyNoResult(result));
    oss::wstring const& name = result.value->getNode()->crefName();
    bool const isSolved = request.operation == CAS_SOLVE;
    if (isSolved && name == u"false") return showError(tr("There is no solution"));
    if (isSolved && name == u"true") return showError(tr("Every value is a solution"));
    insertLines(*asked, linesOf(result.value));
  });
}

void MainWindow::insertLines(SheetRow& below, std::vector<ExpressionT> const& lines) {
  view_->history().beginMacro(tr("inserting a result"));
  SheetRow* last = &below;
  for (ExpressionT const& line : lines) {
    view_->insertBelow(last, makeFormulaLine(toQString(line->toPrefixString()), {}));
    last = view_->currentRow();
  }
  view_->history().endMacro();
}

ExpressionT MainWindow::shownResult() const {
  SheetRow* const row = view_->currentRow();
  if (!row->formula() || !row->hasResults() || row->results().isStale()) return nullptr;
  ShownResult const& shown = row->results().result();
  FormulaEdit const* const number = row->results().numberEdit();
  bool const isAtNumber = number && number == view_->focusedFormula();
  return shown.value && !isAtNumber ? shown.value : shown.number;
}

FormulaEdit* MainWindow::shownResultEdit() const {
  if (!shownResult()) return nullptr;
  ResultView const& results = *view_->currentRow()->resultView();
  FormulaEdit* const focused = view_->focusedFormula();
  if (focused && focused == results.numberEdit()) return focused;
  return results.valueEdit() ? results.valueEdit() : results.numberEdit();
}

void MainWindow::copyResult() {
  FormulaEdit const* const edit = shownResultEdit();
  if (!edit) return showError(tr("The formula has no result now"));
  QGuiApplication::clipboard()->setMimeData(edit->createMimeData());
}

void MainWindow::enterBelow() {
  SheetRow& row = *view_->currentRow();
  if (!row.formula()) return;
  ResultView const* const results = row.resultView();
  QList<QWidget*> stops{row.formula()};
  if (results && results->valueEdit()) stops << results->valueEdit();
  if (results && results->numberEdit()) stops << results->numberEdit();
  if (row.graph()) stops << row.graph();
  QWidget* const next = stops[(stops.indexOf(focusWidget()) + 1) % stops.size()];
  next->setFocus(Qt::OtherFocusReason);
  if (auto* const edit = qobject_cast<FormulaEdit*>(next)) {
    if (edit != row.formula()) edit->selectAll();
  }
  view_->ensureWidgetVisible(next);
}

QString MainWindow::whyNoResult(CASResultS const& result) const {
  QString const why = toQString(describe(result));
  return result.cause == CAS_CAUSE_NEEDS_ALGEBRA ? why + otherEngine(engine_) : why;
}

void MainWindow::insertResult() {
  if (ExpressionT const result = shownResult()) insertLines(*view_->currentRow(), {result});
}

void MainWindow::showGraph(bool on) {
  SheetRow& row = *view_->currentRow();
  if (!row.formula() || bool(row.graph()) == on) return;
  if (on && !computer_->graphedFunction(row)) {
    showError(tr("A graph needs an expression in one variable"));
    return updateGraphAction();
  }
  view_->toggleGraph(row);
}

void MainWindow::updateGraphAction() {
  SheetRow const& row = *view_->currentRow();
  QAction& graph = *action(QStringLiteral("graph"));
  QSignalBlocker const quiet(graph);
  graph.setChecked(row.graph());
}

void MainWindow::askComputing() {
  std::vector<EngineChoice> const engines = engineChoices();
  ComputingDialog dialog(engines, engine_, computer_->computing(), this);
  if (dialog.exec() != QDialog::Accepted) return;
  setComputing(dialog.computing());
  setEngine(dialog.engine());
  // For windows that are opened while this one is.
  if (settings_) rememberComputing();
}

void MainWindow::setComputing(engine_sheet::ComputingS const& computing) {
  computer_->setComputing(computing);
  action(QStringLiteral("results"))->setChecked(computing.isOn);
}

void MainWindow::setEngine(QString const& id) {
  if (id == engine_) return;
  for (EngineChoice const& choice : engineChoices()) {
    if (choice.id != id || !choice.engine) continue;
    engine_ = id;
    computer_->setEngine(choice.engine);
  }
}

void MainWindow::restoreComputing() {
  engine_sheet::ComputingS computing;
  engine_ = QStringLiteral("basic");
  if (settings_) {
    computing.isOn = settings_->value(QStringLiteral("computing"), true).toBool();
    bool const inDegrees = settings_->value(QStringLiteral("degrees")).toBool();
    computing.angle = inDegrees ? CAS_DEGREES : CAS_RADIANS;
    bool isNumber = false;
    int const digits = settings_->value(QStringLiteral("digits")).toInt(&isNumber);
    if (isNumber && digits > 1) computing.digits = unsigned(digits);
    int const seconds = settings_->value(QStringLiteral("seconds")).toInt(&isNumber);
    if (isNumber && seconds > 0) computing.deadline = std::chrono::seconds(seconds);
    setEngine(settings_->value(QStringLiteral("engine")).toString());
  }
  setComputing(computing);
}

void MainWindow::rememberComputing() {
  engine_sheet::ComputingS const& computing = computer_->computing();
  settings_->setValue(QStringLiteral("computing"), computing.isOn);
  settings_->setValue(QStringLiteral("degrees"), computing.angle == CAS_DEGREES);
  settings_->setValue(QStringLiteral("digits"), computing.digits);
  settings_->setValue(QStringLiteral("seconds"), int(computing.deadline.count() / 1000));
  settings_->setValue(QStringLiteral("engine"), engine_);
}

}  // namespace zolt::desktop
