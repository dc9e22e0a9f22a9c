#include "hosts/qt/desktop/main_window.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QFontDatabase>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMimeData>
#include <QSettings>
#include <QStatusBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <cmath>

#include "hosts/qt/desktop/elided_label.h"
#include "hosts/qt/desktop/icons.h"
#include "hosts/qt/desktop/notice_bar.h"
#include "hosts/qt/desktop/palette_dock.h"
#include "hosts/qt/desktop/recorder.h"
#include "hosts/qt/desktop/recovery_writer.h"
#include "hosts/qt/desktop/sheet_computer.h"
#include "hosts/qt/desktop/sheet_view.h"
#include "hosts/qt/desktop/text_line.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/qt/formula_mime.h"

namespace zolt::desktop {

using qt::FormulaEdit;

namespace {

constexpr QSize first_size(1180, 780);
constexpr int status_delay = 150;  // ms
constexpr qreal zoom_step = 1.15;

constexpr QRgb neutral_colour = 0xff8a9099;
constexpr QRgb complete_colour = 0xff3a9a5b;
constexpr QRgb incomplete_colour = 0xffe09a20;
constexpr QRgb error_colour = 0xffd64545;

}  // namespace

MainWindow::MainWindow(std::shared_ptr<qt::FormulaFonts> fonts, QSettings* settings,
                       QString const& recoveryFolder)
    : fonts_(std::move(fonts)),
      settings_(settings),
      view_(new SheetView(this)),
      palette_(new PaletteDock(fonts_, this)),
      recorder_(new Recorder(this)),
      notices_(new NoticeBar(this)),
      computer_(new SheetComputer(*view_, this)) {
  auto* const centre = new QWidget(this);
  auto* const column = new QVBoxLayout(centre);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(notices_);
  column->addWidget(view_, 1);
  setCentralWidget(centre);
  addDockWidget(Qt::LeftDockWidgetArea, palette_);
  makeActions();
  makeStatusBar();
  connectView();
  if (!recoveryFolder.isEmpty()) {
    recovery_ = new RecoveryWriter(*view_, recoveryFolder, this);
    connect(recovery_, &RecoveryWriter::failed, this, [this](QString const& error) {
      tell(tr("Unsaved changes are not protected against a crash. %1.").arg(error));
    });
  }
  resize(first_size);
  restore();
  setPath({});
  updateActions();
  updateStatus();
}

MainWindow::~MainWindow() {
  delete computer_;
  // The view emits signals while it is destroyed, when this window is half destroyed.
  view_->disconnect(this);
  view_->history().disconnect(this);
}

void MainWindow::connectView() {
  connect(view_, &SheetView::modifiedChanged, this, &QWidget::setWindowModified);
  connect(view_, &SheetView::currentChanged, this, [this] {
    recorder_->follow(view_->currentFormula());
    updateGraphAction();
    updateActions();
    updateStatus();
  });
  connect(view_, &SheetView::edited, this, &MainWindow::updateGraphAction);
  statusTimer_.setSingleShot(true);
  statusTimer_.setInterval(status_delay);
  connect(&statusTimer_, &QTimer::timeout, this, &MainWindow::updateStatus);
  connect(view_, &SheetView::formulaChanged, this, [this] {
    updateActions();
    statusTimer_.start();
  });
  // An error that has been told stays: what is settled then is what was typed before.
  connect(view_, &SheetView::formulaSettled, this, [this](SheetRow const* row) {
    if (row == view_->currentRow() && !tellsError_) statusTimer_.start();
  });
  connect(view_, &SheetView::caretMoved, this, [this] { palette_->follow(view_->currentFormula()); });
  connect(view_, &SheetView::errorOccurred, this, &MainWindow::showError);
  connect(view_, &SheetView::zoomRequested, this,
          [this](int steps) { setZoom(view_->zoom() * std::pow(zoom_step, steps)); });
  connect(palette_, &PaletteDock::picked, this, &MainWindow::pick);
  // The clipboard is examined only when it changes: the answer may come from another program.
  auto const lookAtClipboard = [this] {
    mayPaste_ = qt::FormulaMimeData::canRead(QGuiApplication::clipboard()->mimeData());
    updateActions();
  };
  connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, lookAtClipboard);
  lookAtClipboard();
}

void MainWindow::tell(QString const& text) { notices_->tell(text); }

// ---- Status line ------------------------------------------------------------------------------------------

void MainWindow::makeStatusBar() {
  stateDot_ = new QLabel(this);
  state_ = new ElidedLabel(this);
  source_ = new ElidedLabel(this);
  source_->setAccessibleName(tr("The formula in one line"));
  auto const makeZoomButton = [this](QAction* action) {
    auto* const button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setDefaultAction(action);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
  };
  zoomLabel_ = makeZoomButton(action(QStringLiteral("zoom-normal")));
  statusBar()->addWidget(stateDot_);
  statusBar()->addWidget(state_, 2);
  statusBar()->addPermanentWidget(source_, 3);
  // A message needs the room: it is below what is permanent.
  connect(statusBar(), &QStatusBar::messageChanged, this,
          [this](QString const& message) { source_->setVisible(message.isEmpty() && !tellsError_); });
  statusBar()->addPermanentWidget(makeZoomButton(action(QStringLiteral("zoom-out"))));
  statusBar()->addPermanentWidget(zoomLabel_);
  statusBar()->addPermanentWidget(makeZoomButton(action(QStringLiteral("zoom-in"))));
}

void MainWindow::showState(QString const& text, QRgb colour) {
  stateDot_->setText(QStringLiteral("<span style='color:%1'>●</span>").arg(QColor(colour).name()));
  state_->setFullText(text);
  state_->setAccessibleName(text);
}

void MainWindow::showError(QString const& text) {
  // It stays although what it is about is selected.
  statusTimer_.stop();
  tellsError_ = true;
  // A reason may need all of the line.
  source_->hide();
  showState(text, error_colour);
}

void MainWindow::updateStatus() {
  tellsError_ = false;
  source_->show();
  FormulaEdit const* const formula = view_->currentFormula();
  if (!formula || formula->isEmpty()) {
    bool const isText = view_->currentRow()->kind() != LineKind::Formula;
    showState(formula  ? tr("Type a formula, or pick from the palette")
              : isText ? tr("Text")
                       : tr("A long formula – the Enter key shows it"),
              neutral_colour);
    source_->setFullText({});
    return;
  }
  if (formula->isComplete()) {
    showState(tr("Complete"), complete_colour);
  } else {
    showState(tr("%1 (the Enter key marks it)").arg(formula->incompleteReason()), incomplete_colour);
  }
  // There is nothing in one line to be told, and a reason may need all of it.
  source_->setVisible(formula->isComplete());
  source_->setFullText(inOneLine(*formula));
}

QString MainWindow::inOneLine(FormulaEdit const& formula) const {
  if (!formula.isComplete()) return {};
  if (statusForm_ == QLatin1String("words")) return formula.readableText();
  if (statusForm_ == QLatin1String("prefix")) return formula.prefix();
  if (statusForm_ == QLatin1String("latex")) return formula.latex();
  // The text for people has no marks of visible brackets.
  std::unique_ptr<QMimeData> const copied(formula.createMimeData());
  return copied ? copied->text() : QString();
}

void MainWindow::updateActions() {
  FormulaEdit const* const formula = view_->currentFormula();
  TextLine const* const text = view_->currentRow()->text();
  bool const selected = formula ? formula->hasSelection() : text->hasSelectedText();
  auto const enable = [this](char const* name, bool enabled) {
    action(QLatin1String(name))->setEnabled(enabled);
  };
  enable("cut", selected);
  enable("copy", selected || !formula);
  enable("paste", mayPaste_);
  enable("clear", formula && !formula->isEmpty());
  enable("check", formula && !formula->isEmpty());
  for (char const* const name : {"copy-picture", "export-formula", "grow"})
    enable(name, formula && !formula->isEmpty());
  enableCopies();
  qsizetype const index = view_->rows().indexOf(view_->currentRow());
  enable("move-up", index > 0);
  enable("move-down", index + 1 < view_->rows().size());
  palette_->follow(formula);
}

// ---- Settings ---------------------------------------------------------------------------------------------

void MainWindow::restore() {
  bool const localComma = QLocale().decimalPoint() == QLatin1String(",");
  setZoom(1);
  restoreComputing();
  if (!settings_) {
    setDecimalComma(false);
    setTyping(QStringLiteral("suggestions"), &field::InputOptionsS::suggestions, true);
    setStatusForm({});
    return;
  }
  restoreGeometry(settings_->value(QStringLiteral("geometry")).toByteArray());
  restoreState(settings_->value(QStringLiteral("state")).toByteArray());
  setZoom(settings_->value(QStringLiteral("zoom"), 1.0).toDouble());
  setDecimalComma(settings_->value(QStringLiteral("decimalComma"), localComma).toBool());
  setTyping(QStringLiteral("single-letters"), &field::InputOptionsS::singleLetters,
            settings_->value(QStringLiteral("singleLetters")).toBool());
  setTyping(QStringLiteral("suggestions"), &field::InputOptionsS::suggestions,
            settings_->value(QStringLiteral("suggestions"), true).toBool());
  setStatusForm(settings_->value(QStringLiteral("statusLine")).toString());
  setAppearance(appearanceOf(settings_->value(QStringLiteral("appearance")).toString()));
}

void MainWindow::remember() {
  if (!settings_) return;
  settings_->setValue(QStringLiteral("geometry"), saveGeometry());
  settings_->setValue(QStringLiteral("state"), saveState());
  settings_->setValue(QStringLiteral("zoom"), view_->zoom());
  settings_->setValue(QStringLiteral("decimalComma"), decimalComma_);
  settings_->setValue(QStringLiteral("singleLetters"), view_->typing().singleLetters);
  settings_->setValue(QStringLiteral("suggestions"), view_->typing().suggestions);
  settings_->setValue(QStringLiteral("statusLine"), statusForm_);
  settings_->setValue(QStringLiteral("appearance"), appearanceName(appearance_));
  rememberComputing();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!mayLeave()) {
    event->ignore();
    return;
  }
  if (recorder_->isRecording()) action(QStringLiteral("record"))->setChecked(false);
  if (recovery_) recovery_->forget();
  remember();
  event->accept();
}

void MainWindow::setZoom(qreal zoom) {
  // An equal number of steps up and down ends at the original size.
  view_->setZoom(std::isfinite(zoom) && std::abs(zoom - 1) > 0.02 ? zoom : 1);
  if (zoomLabel_) zoomLabel_->setText(tr("%1 %").arg(qRound(view_->zoom() * 100)));
}

void MainWindow::setDecimalComma(bool decimalComma) {
  decimalComma_ = decimalComma;
  view_->setDecimalComma(decimalComma);
  action(QStringLiteral("decimal-comma"))->setChecked(decimalComma);
}

// A rule is not kept beyond the window: one that somebody has forgotten would only seem to be broken keys.
void MainWindow::askAllowedFormulas() {
  QString const label =
      tr("What may be entered, such as “number”, “names x y”, “polynomial x” or\n"
         "“nodes 50”, with “or” between alternatives and “;” between what must\n"
         "all hold. Nothing: every formula.");
  QInputDialog dialog(this);
  dialog.setWindowTitle(tr("Restrict Formulas"));
  dialog.setOkButtonText(tr("&OK"));
  dialog.setCancelButtonText(tr("&Cancel"));
  dialog.setTextValue(view_->allowedFormulas());
  dialog.setLabelText(label);
  while (dialog.exec() == QDialog::Accepted && !view_->setAllowedFormulas(dialog.textValue())) {
    dialog.setLabelText(tr("“%1” is no such rule.").arg(dialog.textValue()) + QStringLiteral("\n\n") + label);
  }
}

void MainWindow::setTyping(QString const& name, bool field::InputOptionsS::*rule, bool on) {
  view_->setTyping(rule, on);
  action(name)->setChecked(on);
}

void MainWindow::setStatusForm(QString const& form) {
  QAction* const chosen = action(QStringLiteral("status-") + form);
  statusForm_ = chosen ? form : QStringLiteral("text");
  action(QStringLiteral("status-") + statusForm_)->setChecked(true);
  source_->setFont(
      statusForm_ == QLatin1String("words") ? font() : QFontDatabase::systemFont(QFontDatabase::FixedFont));
  updateStatus();
}

void MainWindow::setAppearance(Appearance appearance) {
  appearance_ = appearance;
  applyAppearance(appearance);
  action(QStringLiteral("appearance-") + appearanceName(appearance))->setChecked(true);
}

// ---- The current line -------------------------------------------------------------------------------------

void MainWindow::pick(field::PaletteEntryS const& entry) {
  FormulaEdit* const formula = view_->currentFormula();
  if (!formula) return;
  formula->setFocus(Qt::OtherFocusReason);
  formula->insertEntry(entry);
}

void MainWindow::runInFormula(field::CommandE command) {
  if (FormulaEdit* const formula = view_->focusedFormula()) {
    formula->runCommand(command);
    return;
  }
  TextLine& text = *view_->currentRow()->text();
  switch (command) {
    case field::COMMAND_CUT:
      if (!text.isReadOnly()) text.cut();
      break;
    case field::COMMAND_COPY:
      text.copy();
      break;
    case field::COMMAND_PASTE:
      if (!text.isReadOnly()) text.paste();
      break;
    case field::COMMAND_SELECT_ALL:
      text.selectAll();
      break;
    default:
      break;
  }
}

}  // namespace zolt::desktop
