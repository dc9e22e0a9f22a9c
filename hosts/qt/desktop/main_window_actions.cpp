#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QToolBar>
#include <cmath>

#include "hosts/qt/desktop/help_dialog.h"
#include "hosts/qt/desktop/icons.h"
#include "hosts/qt/desktop/main_window.h"
#include "hosts/qt/desktop/palette_dock.h"
#include "hosts/qt/desktop/result_view.h"
#include "hosts/qt/desktop/sheet_computer.h"
#include "hosts/qt/desktop/sheet_view.h"
#include "hosts/qt/desktop/size_grid.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/qt/mnemonics.h"
#include "zolt/qt/text.h"

namespace zolt::desktop {

using qt::toQString;

namespace {

constexpr int tool_icon_size = 20;

}  // namespace

QAction* MainWindow::add(QMenu& menu, ActionS const& entry, std::function<void()> run) {
  auto* const action = new QAction(commandIcon(QLatin1String(entry.name)), tr(entry.text), this);
  QList<QKeySequence> keys;
  for (QString const& chord :
       QString::fromLatin1(entry.keys).split(QStringLiteral(", "), Qt::SkipEmptyParts)) {
    keys << QKeySequence(chord, QKeySequence::PortableText);
  }
  action->setShortcuts(keys);
  QString tip = action->text();
  tip.remove(u'&').remove(QStringLiteral("…"));
  if (!keys.isEmpty()) tip += QStringLiteral(" (%1)").arg(keys.front().toString(QKeySequence::NativeText));
  action->setToolTip(tip);
  connect(action, &QAction::triggered, this, [run = std::move(run)] { run(); });
  menu.addAction(action);
  actions_.insert(QLatin1String(entry.name), action);
  return action;
}

QAction* MainWindow::addToggle(QMenu& menu, ActionS const& entry, std::function<void(bool)> run) {
  QAction* const action = add(menu, entry, [] {});
  action->setCheckable(true);
  connect(action, &QAction::toggled, this, std::move(run));
  return action;
}

void MainWindow::makeActions() {
  makeFileMenu();
  makeEditMenu();
  makeInsertMenu();
  makeComputeMenu();
  makeViewMenu();
  makeHelpMenu();
  makeToolBar();
  QList<QAction*> rowActions;
  for (char const* const name :
       {"add-formula", "add-text", "add-heading", "duplicate", "move-up", "move-down", "delete"}) {
    rowActions << action(QLatin1String(name));
  }
  view_->setRowActions(rowActions);
}

void MainWindow::makeFileMenu() {
  QMenu& menu = *menuBar()->addMenu(tr("&File"));
  add(menu, {"new", "&New", "Ctrl+N"}, [this] { newSheet(); });
  add(menu, {"open", "&Open…", "Ctrl+O"}, [this] { openAsked(); });
  recentMenu_ = menu.addMenu(tr("Open &Recent"));
  connect(recentMenu_, &QMenu::aboutToShow, this, &MainWindow::fillRecentMenu);
  add(menu, {"sample", "Open Sa&mple", ""}, [this] {
    if (mayLeave()) openSample();
  });
  menu.addSeparator();
  add(menu, {"save", "&Save", "Ctrl+S"}, [this] { save(); });
  add(menu, {"save-as", "Save &As…", "Ctrl+Shift+S"}, [this] { saveAs(); });
  menu.addSeparator();
  add(menu, {"import", "&Import…", ""}, [this] { importAsked(); });
  add(menu, {"export", "&Export Sheet…", "Ctrl+E"}, [this] { exportSheet(); });
  add(menu, {"export-formula", "Export &Formula…", "Ctrl+Shift+E"}, [this] { exportFormula(); });
  add(menu, {"print", "&Print…", "Ctrl+P"}, [this] { printAsked(); });
  menu.addSeparator();
  add(menu, {"quit", "&Quit", "Ctrl+Q"}, [this] { close(); })->setMenuRole(QAction::QuitRole);
}

void MainWindow::makeEditMenu() {
  QMenu& menu = *menuBar()->addMenu(tr("&Edit"));
  QAction* const undo =
      add(menu, {"undo", "&Undo", "Ctrl+Z, Alt+Backspace"}, [this] { view_->history().undo(); });
  QAction* const redo =
      add(menu, {"redo", "&Redo", "Ctrl+Y, Ctrl+Shift+Z"}, [this] { view_->history().redo(); });
  undo->setEnabled(false);
  redo->setEnabled(false);
  connect(&view_->history(), &QUndoStack::canUndoChanged, undo, &QAction::setEnabled);
  connect(&view_->history(), &QUndoStack::canRedoChanged, redo, &QAction::setEnabled);
  connect(&view_->history(), &QUndoStack::undoTextChanged, undo,
          [=](QString const& what) { undo->setText(tr("&Undo %1").arg(what).trimmed()); });
  connect(&view_->history(), &QUndoStack::redoTextChanged, redo,
          [=](QString const& what) { redo->setText(tr("&Redo %1").arg(what).trimmed()); });
  menu.addSeparator();
  add(menu, {"cut", "Cu&t", "Ctrl+X"}, [this] { runInFormula(field::COMMAND_CUT); });
  add(menu, {"copy", "&Copy", "Ctrl+C"}, [this] { runInFormula(field::COMMAND_COPY); });
  makeCopyMenu(*menu.addMenu(tr("Copy F&ormula As")));
  add(menu, {"paste", "&Paste", "Ctrl+V"}, [this] { runInFormula(field::COMMAND_PASTE); });
  menu.addSeparator();
  add(menu, {"select-all", "Select &All", "Ctrl+A"}, [this] { runInFormula(field::COMMAND_SELECT_ALL); });
  add(menu, {"grow", "&Grow Selection", "Alt+Shift+Right"},
      [this] { runInFormula(field::COMMAND_GROW_SELECTION); });
  add(menu, {"clear", "C&lear Formula", "Ctrl+Shift+Delete"}, [this] { runInFormula(field::COMMAND_CLEAR); });
  makeTableMenu(*menu.addMenu(tr("Row&s and Columns")));
  menu.addSeparator();
  add(menu, {"check", "Chec&k Formula", "F5"}, [this] {
    qt::FormulaEdit* const formula = view_->currentFormula();
    // A formula that is in order may still have no value.
    if (formula && formula->check() && computer_->selectFault(*view_->currentRow())) {
      showError(view_->currentRow()->results().result().reason);
    }
  });
  menu.addSeparator();
  add(menu, {"duplicate", "&Duplicate Line", "Ctrl+D"}, [this] { view_->duplicateCurrent(); });
  add(menu, {"move-up", "Move L&ine Up", "Ctrl+Shift+Up"}, [this] { view_->moveCurrent(-1); });
  add(menu, {"move-down", "Move Line Do&wn", "Ctrl+Shift+Down"}, [this] { view_->moveCurrent(1); });
  add(menu, {"delete", "D&elete Line", "Ctrl+Shift+D"}, [this] { view_->removeCurrent(); });
}

// The field takes their keys itself, so that they keep their other uses outside of tables.
void MainWindow::makeTableMenu(QMenu& menu) {
  for (int command = field::COMMAND_ROW_ABOVE; command <= field::COMMAND_NEXT_ROW; ++command) {
    if (command == field::COMMAND_DELETE_ROWS || command == field::COMMAND_ROWS_UP) menu.addSeparator();
    field::CommandS const& entry = field::commands()[std::size_t(command)];
    QString const title = qt::toQString(entry.title) + QLatin1Char('\t') + qt::toQString(entry.keys);
    QAction* const action = menu.addAction(title, this, [=] { runInFormula(entry.command); });
    connect(&menu, &QMenu::aboutToShow, action, [=] {
      qt::FormulaEdit const* const formula = view_->currentFormula();
      action->setEnabled(formula && formula->isCommandEnabled(entry.command));
    });
  }
  qt::giveLetters(menu.actions());
}

void MainWindow::makeInsertMenu() {
  QMenu& menu = *menuBar()->addMenu(tr("&Insert"));
  add(menu, {"add-formula", "&Formula Below", "Ctrl+Return, Ctrl+Enter"}, [this] { view_->insertBelow({}); });
  add(menu, {"add-text", "&Text Below", "Ctrl+T"}, [this] {
    view_->insertBelow({LineKind::Text, {}, {}, {}});
  });
  add(menu, {"add-heading", "&Heading Below", "Ctrl+H"}, [this] {
    view_->insertBelow({LineKind::Heading, {}, {}, {}});
  });
  menu.addSeparator();
  for (field::PaletteGroupS const& group : palette_->groups()) {
    QMenu& sub = *menu.addMenu(toQString(group.title));
    for (field::PaletteEntryS const& entry : group.entries) {
      QIcon const icon = entry.picture.empty() ? QIcon() : formulaIcon(toQString(entry.picture), fonts_);
      QAction* const action = sub.addAction(icon, toQString(entry.title));
      connect(action, &QAction::triggered, this, [this, &entry] { pick(entry); });
      connect(&sub, &QMenu::aboutToShow, action, [this, action, &entry] {
        qt::FormulaEdit const* const formula = view_->currentFormula();
        action->setEnabled(formula && formula->isEntryEnabled(entry));
      });
      if (!entry.takesSize) continue;
      QMenu& sizes = *sub.addMenu(action->icon(), tr("%1 of Any Size").arg(action->text()));
      connect(SizeGrid::addTo(sizes), &SizeGrid::picked, this, [this, &entry](int rows, int columns) {
        pick(field::withSize(entry, static_cast<unsigned long>(rows), static_cast<unsigned long>(columns)));
      });
    }
  }
}

void MainWindow::makeViewMenu() {
  QMenu& menu = *menuBar()->addMenu(tr("&View"));
  QAction* const toggle = palette_->toggleViewAction();
  toggle->setText(tr("&Palette"));
  toggle->setIcon(commandIcon(QStringLiteral("palette")));
  toggle->setShortcut(QKeySequence(Qt::Key_F9));
  toggle->setToolTip(tr("Palette (F9)"));
  actions_.insert(QStringLiteral("palette"), toggle);
  menu.addAction(toggle);
  add(menu, {"search-palette", "&Search Palette", "Ctrl+F"}, [this] { palette_->search(); });
  menu.addSeparator();
  add(menu, {"zoom-in", "Zoom &In", "Ctrl++, Ctrl+="}, [this] { emit view_->zoomRequested(1); });
  add(menu, {"zoom-out", "Zoom &Out", "Ctrl+-"}, [this] { emit view_->zoomRequested(-1); });
  add(menu, {"zoom-normal", "&Normal Size", "Ctrl+0"}, [this] { setZoom(1); });
  menu.addSeparator();
  addToggle(menu, {"decimal-comma", "Decimal &Comma", ""}, [this](bool on) { setDecimalComma(on); });
  add(menu, {"restrict", "&Restrict Formulas…", ""}, [this] { askAllowedFormulas(); });
  auto const addRule = [&](ActionS const& entry, bool field::InputOptionsS::*rule) {
    QString const name = QString::fromLatin1(entry.name);
    addToggle(menu, entry, [=](bool on) { setTyping(name, rule, on); });
  };
  addRule({"single-letters", "Sin&gle Letters", ""}, &field::InputOptionsS::singleLetters);
  addRule({"suggestions", "S&uggest Names", ""}, &field::InputOptionsS::suggestions);
  QMenu& forms = *menu.addMenu(tr("Formula in the Status &Line"));
  auto* const formGroup = new QActionGroup(this);
  auto const addForm = [&](ActionS const& entry) {
    QString const form = QString::fromLatin1(entry.name).section(u'-', 1);
    addToggle(forms, entry, [=](bool on) {
      if (on && form != statusForm_) setStatusForm(form);
    })->setActionGroup(formGroup);
  };
  addForm({"status-text", "As &Text", ""});
  addForm({"status-latex", "As &LaTeX", ""});
  addForm({"status-words", "In &Words", ""});
  addForm({"status-prefix", "In &Prefix Notation", ""});
  QMenu& looks = *menu.addMenu(tr("&Appearance"));
  auto* const group = new QActionGroup(this);
  auto const addLook = [&](ActionS const& entry, Appearance appearance) {
    addToggle(looks, entry, [=](bool on) {
      if (on && appearance != appearance_) setAppearance(appearance);
    })->setActionGroup(group);
  };
  addLook({"appearance-system", "As the &System", ""}, Appearance::System);
  addLook({"appearance-light", "&Light", ""}, Appearance::Light);
  addLook({"appearance-dark", "&Dark", ""}, Appearance::Dark);
  action(QStringLiteral("appearance-system"))->setChecked(true);
}

void MainWindow::makeHelpMenu() {
  QMenu& menu = *menuBar()->addMenu(tr("&Help"));
  add(menu, {"help", "&Keys and Typing", "F1"}, [this] { showHelp(); });
  menu.addSeparator();
  QAction* const recording =
      addToggle(menu, {"record", "&Record Input…", ""}, [this](bool on) { record(on); });
  recording->setToolTip(tr("Writes what you do to formulas into a file, for a report of what went wrong"));
  menu.addSeparator();
  add(menu, {"about", "&About", ""}, [this] { showAbout(); })->setMenuRole(QAction::AboutRole);
}

void MainWindow::makeToolBar() {
  QToolBar& bar = *addToolBar(tr("Tools"));
  bar.setObjectName(QStringLiteral("tools"));
  bar.setMovable(false);
  bar.setIconSize({tool_icon_size, tool_icon_size});
  for (char const* const name : {"new",      "open",        "save", "",        "undo",      "redo",
                                 "",         "cut",         "copy", "paste",   "",          "add-formula",
                                 "add-text", "add-heading", "",     "move-up", "move-down", "delete",
                                 "",         "check",       "",     "export",  "print",     "",
                                 "palette",  "help"}) {
    if (*name) {
      bar.addAction(action(QLatin1String(name)));
    } else {
      bar.addSeparator();
    }
  }
}

void MainWindow::showHelp() {
  auto* const dialog = new HelpDialog(palette_->groups(), actions_.values(), this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->show();
}

void MainWindow::showAbout() {
  QMessageBox::about(
      this, tr("About zolt ved"),
      tr("<h3>zolt ved %1</h3><p>Formulas as they are written by hand, edited as text is.</p>"
         "<p>MIT licence. Set in the KaTeX fonts (SIL Open Font License). Made with Qt %2.</p>")
          .arg(QApplication::applicationVersion(), QString::fromLatin1(qVersion())));
}

}  // namespace zolt::desktop
