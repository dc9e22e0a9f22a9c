#include "zolt/qt/formula_edit.h"
#include "zolt/mathml/text/mathml_text.h"

#include <QAction>
#include <QFontInfo>
#include <QMenu>
#include <QMetaMethod>
#include <QPointer>
#include <algorithm>
#include <cmath>
#include <utility>

#include "zolt/catalogue/standard_operators.h"
#include "zolt/catalogue_extended/extended_operators.h"
#include "zolt/constraints/constraints.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/palette_model.h"
#include "zolt/qt/formula_accessible.h"
#include "zolt/qt/formula_edit_state.h"
#include "zolt/qt/formula_mime.h"
#include "zolt/qt/mnemonics.h"
#include "zolt/qt/text.h"
#include "zolt/ved/geometry/blind_graphics.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list_repository.h"

namespace zolt::qt {

using math::algexpr::AlgebraicExpressionC;

namespace {

FormulaEdit::Catalogue chosen_catalogue = FormulaEdit::Catalogue::Extended;

void provideOperators() {
  auto const session = math::algexpr::CASSessionBC::getSession();
  auto const operators = math::ved::OperatorListRepositoryC::lookup(session->getEngine());
  if (!operators->crefByName().empty()) return;
  catalogue::registerStandardOperators(*operators);
  if (chosen_catalogue == FormulaEdit::Catalogue::Extended)
    catalogue_extended::registerExtendedOperators(*operators);
}

}  // namespace

void FormulaEdit::setCatalogue(Catalogue catalogue) { chosen_catalogue = catalogue; }

// ---- State ------------------------------------------------------------------------------------------------

FormulaEdit::StateS::StateS(FormulaEdit& owner) : edit(owner) {
  provideOperators();
  fonts = FormulaFonts::share(fontError);
  oss::PointerTC<math::ved::GraphicsABC> surface;
  if (fonts) {
    graphics = new QtGraphicsC(fonts);
    graphics->onInvalidate([this] { edit.update(); });
    surface = graphics;
  } else {
    surface = new math::ved::BlindGraphicsC;
  }
  field = std::make_unique<field::FormulaFieldC>(surface);
  field->setMathmlReader(mathml::fromMathmlText);
  clipboard = new SystemClipboardC(fonts);
  primary = new SystemClipboardC(fonts, QClipboard::Selection);
  field->setClipboard(clipboard);
  field->takeChange();
}

FormulaEdit::StateS::~StateS() {
  if (graphics) graphics->onInvalidate({});
}

bool FormulaEdit::StateS::act(std::function<bool()> const& action, Actor actor) {
  math::ved::ViewZNT4C const& view = field->crefView();
  unsigned long const position = view.getHistoryPosition();
  bool const taken = action();
  bool const changed = field->takeChange();

  math::ved::SelectionS const selection = view.getSelection();
  bool const moved = changed || selection.caret != selectionSeen.caret;
  bool const selected = selection.anchor != selectionSeen.anchor || (selection.anchor && moved);
  selectionSeen = selection;

  QSize const size = contentSize();
  if (size != contentSeen) {
    contentSeen = size;
    edit.updateGeometry();
  }
  math::ved::RectangleS box;
  if (actor == Actor::Program && changed) scroll = QPoint();
  if (field->takeRevealRequest(box) && actor == Actor::User) reveal(box);
  clampScroll();
  // A mark stays while the user is elsewhere.
  if (moved || selected) faultyBox.reset();
  if (moved || selected) restartBlinking();
  suggestionTimer.stop();
  edit.update();
  edit.updateMicroFocus();
  showCompletion();

  // The steps are collected before a slot makes further ones.
  std::vector<StepS> const steps =
      actor == Actor::User ? stepsSince(position, changed) : std::vector<StepS>();
  QPointer<FormulaEdit> const alive(&edit);
  if (changed) emit alive->expressionChanged();
  for (StepS const& step : steps) {
    if (alive) emit alive->edited(step.step, step.position);
  }
  if (alive && selected) emit alive->selectionChanged();
  if (alive && moved) emit alive->caretMoved();
  if (alive) followHistory(position);
  if (alive && (moved || selected)) notifyListener(changed);
  return taken;
}

std::vector<FormulaEdit::StateS::StepS> FormulaEdit::StateS::stepsSince(unsigned long position,
                                                                        bool changed) const {
  math::ved::ViewZNT4C const& view = field->crefView();
  unsigned long const end = view.getHistoryPosition();
  std::vector<StepS> steps;
  if (end > position) {
    steps.push_back({view.isContinuation(position) ? Step::Continues : Step::Begins, position});
  }
  for (unsigned long i = position + 1; i < end; ++i) {
    if (!view.isContinuation(i)) steps.push_back({Step::Begins, i});
  }
  // An undo is a change, too.
  if (steps.empty() && changed) steps.push_back({Step::Begins, end});
  return steps;
}

bool FormulaEdit::StateS::show(std::function<bool()> const& action, math::common::ReadErrorS const& error) {
  QPointer<FormulaEdit> const alive(&edit);
  auto const set = [&] {
    bool const done = action();
    if (done) unmodifiedAt = field->crefView().getHistoryPosition();
    if (done) untold.reset();
    return done;
  };
  bool const done = act(set, Actor::Program);
  if (alive && !done) report(error);
  return done;
}

void FormulaEdit::StateS::followHistory(unsigned long before) {
  unsigned long const position = field->crefView().getHistoryPosition();
  // An edit after an undo takes the way back to what was later.
  if (unmodifiedAt && before < *unmodifiedAt && position > before && !redoing) unmodifiedAt.reset();
  bool const modified = edit.isModified(), undo = edit.isUndoAvailable(), redo = edit.isRedoAvailable();
  edit.setClearable(!edit.isEmpty() && !edit.isReadOnly());
  QPointer<FormulaEdit> const alive(&edit);
  if (std::exchange(modifiedSeen, modified) != modified) emit alive->modifiedChanged(modified);
  if (alive && std::exchange(undoSeen, undo) != undo) emit alive->undoAvailableChanged(undo);
  if (alive && std::exchange(redoSeen, redo) != redo) emit alive->redoAvailableChanged(redo);
}

void FormulaEdit::StateS::report(math::common::ReadErrorS const& error) {
  if (!edit.isSignalConnected(QMetaMethod::fromSignal(&FormulaEdit::errorOccurred))) {
    untold = error;
    return;
  }
  emit edit.errorOccurred(error.cause, toQString(error.message), int(error.begin), int(error.end));
}

void FormulaEdit::StateS::change(std::function<void()> const& action) {
  act(
      [&] {
        action();
        return true;
      },
      Actor::Program);
}

// ---- Formula ----------------------------------------------------------------------------------------------

FormulaEdit::FormulaEdit(QWidget* parent) : EditField(parent), state_(std::make_unique<StateS>(*this)) {
  installAccessibility();
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_InputMethodEnabled);
  setAttribute(Qt::WA_KeyCompression);
  setInputMethodHints(Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText);
  setAcceptDrops(true);
  setMouseTracking(true);
  setCursor(Qt::IBeamCursor);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  state_->fontSize = QFontInfo(font()).pixelSize();
  state_->contentSeen = state_->contentSize();
}

FormulaEdit::FormulaEdit(QString const& expression, QWidget* parent) : FormulaEdit(parent) {
  setExpression(expression);
}

FormulaEdit::~FormulaEdit() = default;

QString FormulaEdit::expression() const {
  auto const expression = algebraicExpression();
  return expression ? toQString(exchange::toPlainText(*expression)) : QString();
}

bool FormulaEdit::setExpression(QString const& expression) {
  if (expression.trimmed().isEmpty()) return setAlgebraicExpression(nullptr);
  math::common::ReadErrorS error;
  auto read =
      exchange::fromPlainText(toWstring(expression), math::algexpr::CASSessionBC::getSession(), &error);
  if (!read) {
    state_->report(error);
    return false;
  }
  return setAlgebraicExpression(read);
}

QString FormulaEdit::prefix() const {
  auto const expression = algebraicExpression();
  return expression ? toQString(expression->toPrefixString()) : QString();
}

QString FormulaEdit::tree() const { return toQString(state_->field->writeTree()); }

bool FormulaEdit::setTree(QString const& tree) {
  auto const show = [&] {
    bool const done = state_->field->setNotation(toWstring(tree));
    if (done && !tree.contains(u'‸')) state_->field->run(field::COMMAND_FORMULA_END);
    return done;
  };
  return state_->show(
      show, {math::common::READ_ERROR_NONE, 0, 0, toWstring(tr("This is no formula in tree notation"))});
}

FormulaEdit::Expression FormulaEdit::algebraicExpression() const {
  return state_->field->diagnose().expression;
}

bool FormulaEdit::setAlgebraicExpression(Expression const& expression) {
  auto const show = [&] {
    bool const accepted = state_->field->setExpression(expression, state_->precision, state_->format);
    if (accepted) state_->field->run(field::COMMAND_FORMULA_END);
    return accepted;
  };
  oss::wstring const refusal = expression ? state_->field->explainRefusal(*expression) : oss::wstring();
  return state_->show(show, {math::common::READ_ERROR_NOT_ALLOWED, 0, 0, refusal});
}

void FormulaEdit::setNumberFormat(unsigned long precision, math::algexpr::NumberDisplayFormatE format) {
  state_->precision = precision;
  state_->format = format;
}

bool FormulaEdit::isComplete() const { return bool(algebraicExpression()); }

QString FormulaEdit::incompleteReason() const { return toQString(state_->field->diagnose().error.message); }

bool FormulaEdit::isEmpty() const {
  auto const [start, end] = state_->field->crefView().getWhole();
  return start == end;
}

bool FormulaEdit::check() {
  field::FormulaErrorS error;
  QPointer<FormulaEdit> const alive(this);
  bool const complete = state_->act([&] { return bool(state_->field->getExpression(&error)); });
  if (!alive || complete) return alive && complete;
  state_->faultyBox = error.box;
  state_->report(error);
  return false;
}

// ---- Properties -------------------------------------------------------------------------------------------

bool FormulaEdit::selectPart(unsigned long number) {
  return state_->act([&] { return state_->field->selectPart(number); });
}

bool FormulaEdit::isReadOnly() const { return !state_->field->isEditable(); }

void FormulaEdit::setReadOnly(bool readOnly) {
  if (readOnly == isReadOnly()) return;
  QPointer<FormulaEdit> const alive(this);
  state_->change([&] { state_->field->setEditable(!readOnly); });
  if (!alive) return;
  setAttribute(Qt::WA_InputMethodEnabled, !readOnly);
  emit readOnlyChanged(readOnly);
}

qreal FormulaEdit::zoom() const { return state_->zoom; }

void FormulaEdit::setZoom(qreal zoom) { setZoomAround(zoom, state_->focus().toPoint()); }

void FormulaEdit::setZoomAround(qreal zoom, QPoint place) {
  qreal const clamped = std::clamp(zoom, min_zoom, max_zoom);
  if (!std::isfinite(zoom) || qFuzzyCompare(clamped, state_->zoom)) return;
  state_->resize([&] { state_->zoom = clamped; }, place);
  emit zoomChanged(clamped);
}

FormulaEdit::Constraints FormulaEdit::constraints() const { return state_->field->getConstraints(); }

void FormulaEdit::setConstraints(Constraints const& constraints) {
  if (constraints.get() == this->constraints().get()) return;
  state_->field->setConstraints(constraints);
  state_->allowed.clear();
  emit constraintsChanged();
}

QString FormulaEdit::allowedFormulas() const { return state_->allowed; }

bool FormulaEdit::setAllowedFormulas(QString const& rules) {
  Constraints const constraints = constraints::fromText(toWstring(rules), nullptr);
  if (!constraints && !rules.trimmed().isEmpty()) return false;
  if (rules == state_->allowed && bool(constraints) == bool(this->constraints())) return true;
  state_->field->setConstraints(constraints);
  state_->allowed = constraints ? rules : QString();
  emit constraintsChanged();
  return true;
}

bool FormulaEdit::powersOfTen() const { return state_->powersOfTen; }

void FormulaEdit::setPowersOfTen(bool powersOfTen) {
  if (powersOfTen == state_->powersOfTen) return;
  state_->powersOfTen = powersOfTen;
  if (state_->graphics) {
    auto const look = powersOfTen ? surfaces::NUMBERS_WITH_POWERS : surfaces::NUMBERS_AS_TYPED;
    state_->graphics->setTypesetter(state_->fonts->getTypesetter(look));
    QPointer<FormulaEdit> const alive(this);
    state_->change([&] { state_->field->refView().measureAgain(); });
    if (!alive) return;
  }
  emit powersOfTenChanged(powersOfTen);
}

bool FormulaEdit::decimalComma() const { return state_->field->getOptions().decimalComma; }

void FormulaEdit::setDecimalComma(bool decimalComma) {
  if (decimalComma == this->decimalComma()) return;
  state_->clipboard->setDecimalComma(decimalComma);
  state_->primary->setDecimalComma(decimalComma);
  QPointer<FormulaEdit> const alive(this);
  state_->change([&] {
    field::InputOptionsS options = state_->field->getOptions();
    options.decimalComma = decimalComma;
    state_->field->setOptions(options);
  });
  if (alive) emit decimalCommaChanged(decimalComma);
}

bool FormulaEdit::isModified() const { return state_->unmodifiedAt != historyPosition(); }

void FormulaEdit::setModified(bool modified) {
  state_->unmodifiedAt.reset();
  if (!modified) state_->unmodifiedAt = historyPosition();
  state_->followHistory(historyPosition());
}

bool FormulaEdit::isUndoAvailable() const { return isCommandEnabled(field::COMMAND_UNDO); }
bool FormulaEdit::isRedoAvailable() const { return isCommandEnabled(field::COMMAND_REDO); }
unsigned long FormulaEdit::historyPosition() const { return state_->field->crefView().getHistoryPosition(); }
QString FormulaEdit::fontError() const { return state_->fontError; }

// ---- Commands ---------------------------------------------------------------------------------------------

bool FormulaEdit::isCommandEnabled(field::CommandE command) const {
  return state_->field->isEnabled(command);
}

bool FormulaEdit::runCommand(field::CommandE command) {
  if (command == field::COMMAND_PASTE) return !isReadOnly() && state_->paste(state_->clipboard->read());
  QPointer<FormulaEdit> const alive(this);
  state_->redoing = command == field::COMMAND_REDO;
  bool const done = state_->act([&] { return state_->field->run(command); });
  if (alive) state_->redoing = false;
  return done;
}

bool FormulaEdit::insertOperator(QString const& name) {
  return state_->act([&] { return state_->field->insertOperator(toWstring(name)); });
}

bool FormulaEdit::insertText(QString const& text) {
  return state_->act([&] { return state_->field->insertText(toWstring(text)); });
}

bool FormulaEdit::insertEntry(field::PaletteEntryS const& entry) {
  return state_->act([&] { return field::runEntry(entry, *state_->field); });
}

bool FormulaEdit::isEntryEnabled(field::PaletteEntryS const& entry) const {
  return field::isEnabled(entry, *state_->field);
}

void FormulaEdit::setCaretNear(QPoint pos) {
  QPoint const at = state_->toUnits(pos);
  state_->act([&] {
    bool const done = state_->field->pressPointer(at.x(), at.y());
    state_->field->releasePointer();
    return done;
  });
}

QMimeData* FormulaEdit::createMimeData() const {
  return state_->createMimeData(state_->field->crefView().getWhole());
}

QMimeData* FormulaEdit::createMimeDataFromSelection() const {
  return state_->createMimeData(state_->field->crefView().getSelection());
}

QMimeData* FormulaEdit::StateS::createMimeData(math::ved::SelectionS const& range) const {
  field::ClipboardContentS content = field->copy(range);
  if (content.isEmpty()) return nullptr;
  return new FormulaMimeData(std::move(content), fonts, edit.decimalComma());
}

void FormulaEdit::record(field::EventScriptT* script) {
  if (script) {
    field::ScriptStepS tree;
    tree.word = field::SCRIPT_TREE;
    tree.text = state_->field->writeNotation();
    script->push_back(tree);
  }
  state_->field->record(script);
}

void FormulaEdit::undo() { runCommand(field::COMMAND_UNDO); }
void FormulaEdit::redo() { runCommand(field::COMMAND_REDO); }
void FormulaEdit::cut() { runCommand(field::COMMAND_CUT); }
void FormulaEdit::copy() { runCommand(field::COMMAND_COPY); }
void FormulaEdit::paste() { runCommand(field::COMMAND_PASTE); }
void FormulaEdit::selectAll() { runCommand(field::COMMAND_SELECT_ALL); }
void FormulaEdit::clear() {
  state_->change([&] { state_->field->clear(); });
}

void FormulaEdit::onClearButton() { runCommand(field::COMMAND_CLEAR); }

void FormulaEdit::connectNotify(QMetaMethod const& signal) {
  EditField::connectNotify(signal);
  if (!state_->untold || signal != QMetaMethod::fromSignal(&FormulaEdit::errorOccurred)) return;
  // The listener may not be ready yet.
  auto const tell = [this] {
    if (auto const error = std::exchange(state_->untold, std::nullopt)) state_->report(*error);
  };
  QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

QMenu* FormulaEdit::createStandardContextMenu() {
  auto* const menu = new QMenu(this);
  auto const add = [&](field::CommandE command, char letter = 0) {
    field::CommandS const& entry = field::commands()[command];
    QString title = toQString(entry.title);
    if (letter) title.insert(title.indexOf(QLatin1Char(letter)), u'&');
    QString const keys = toQString(entry.keys).section(QStringLiteral(", "), 0, 0);
    QAction* const action = menu->addAction(title, this, [=] { runCommand(command); });
    // The shortcuts are only shown: the widget handles the keys itself.
    action->setShortcut(QKeySequence(keys));
    action->setShortcutContext(Qt::WidgetShortcut);
    action->setShortcutVisibleInContextMenu(true);
    action->setEnabled(isCommandEnabled(command));
  };
  if (!isReadOnly() && isUndoRedoEnabled()) {
    add(field::COMMAND_UNDO, 'U');
    add(field::COMMAND_REDO, 'R');
    menu->addSeparator();
  }
  if (!isReadOnly()) add(field::COMMAND_CUT, 't');
  add(field::COMMAND_COPY, 'C');
  if (!isReadOnly()) {
    add(field::COMMAND_PASTE, 'P');
    add(field::COMMAND_CLEAR, 'l');
  }
  menu->addSeparator();
  add(field::COMMAND_SELECT_ALL, 'a');
  add(field::COMMAND_GROW_SELECTION, 'G');
  if (!isReadOnly() && isCommandEnabled(field::COMMAND_DELETE_ROWS)) {
    menu->addSeparator();
    for (int command = field::COMMAND_ROW_ABOVE; command < field::COMMAND_NEXT_ROW; ++command) {
      add(static_cast<field::CommandE>(command));
    }
  }
  giveLetters(menu->actions());
  return menu;
}

}  // namespace zolt::qt
