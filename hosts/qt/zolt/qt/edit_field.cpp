#include "zolt/qt/edit_field.h"

#include <QAction>
#include <QActionEvent>
#include <QIcon>
#include <QMenu>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QToolButton>

namespace zolt::qt {

namespace {

constexpr int icon_margin = 3;  // logical pixels around the icon of a button

/// Nothing but its icon, whatever stylesheet the field has.
class IconButton final : public QToolButton {
 public:
  using QToolButton::QToolButton;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    QIcon::Mode const mode = !isEnabled()               ? QIcon::Disabled
                             : isDown() || underMouse() ? QIcon::Active
                                                        : QIcon::Normal;
    QRect box({}, iconSize());
    box.moveCenter(rect().center());
    if (isDown()) painter.setOpacity(0.6);
    icon().paint(&painter, box, Qt::AlignCenter, mode, isChecked() ? QIcon::On : QIcon::Off);
  }
};

}  // namespace

EditField::EditField(QWidget* parent) : QWidget(parent) {}

EditField::~EditField() = default;

void EditField::setFrame(bool frame) {
  if (frame == frame_) return;
  frame_ = frame;
  relayout();
  emit frameChanged(frame);
}

void EditField::setAlignment(Qt::Alignment alignment) {
  if (alignment == alignment_) return;
  alignment_ = alignment;
  update();
  emit alignmentChanged(alignment);
}

void EditField::setPlaceholderText(QString const& text) {
  if (text == placeholder_) return;
  placeholder_ = text;
  updateGeometry();
  update();
  emit placeholderTextChanged(text);
}

void EditField::setUndoRedoEnabled(bool enabled) {
  if (enabled == undoRedo_) return;
  undoRedo_ = enabled;
  emit undoRedoEnabledChanged(enabled);
}

void EditField::setDragEnabled(bool enabled) {
  if (enabled == drag_) return;
  drag_ = enabled;
  emit dragEnabledChanged(enabled);
}

void EditField::setTextMargins(QMargins const& margins) {
  if (margins == textMargins_) return;
  textMargins_ = margins;
  relayout();
}

// ---- Buttons ----------------------------------------------------------------------------------------------

QToolButton* EditField::addButton(QAction* action, ActionPosition position) {
  auto* const button = new IconButton(this);
  int const size = style()->pixelMetric(QStyle::PM_LineEditIconSize, nullptr, this);
  button->setFocusPolicy(Qt::NoFocus);
  button->setCursor(Qt::ArrowCursor);
  button->setIconSize({size, size});
  button->resize(size + 2 * icon_margin, size + 2 * icon_margin);
  if (action) button->setDefaultAction(action);
  button->setVisible(!action || action->isVisible());
  buttons_.push_back({button, position});
  return button;
}

void EditField::addAction(QAction* action, ActionPosition position) {
  QWidget::addAction(action);
  addButton(action, position);
  relayout();
}

QAction* EditField::addAction(QIcon const& icon, ActionPosition position) {
  auto* const action = new QAction(icon, QString(), this);
  addAction(action, position);
  return action;
}

void EditField::actionEvent(QActionEvent* event) {
  QWidget::actionEvent(event);
  for (qsizetype i = buttons_.size(); i-- > 0;) {
    QToolButton* const button = buttons_[i].button;
    if (button->defaultAction() != event->action() || button == clearButton_) continue;
    if (event->type() == QEvent::ActionRemoved) {
      buttons_.removeAt(i);
      button->hide();
      button->deleteLater();
    } else {
      button->setVisible(event->action()->isVisible());
    }
    relayout();
  }
}

void EditField::setClearButtonEnabled(bool enabled) {
  if (enabled == isClearButtonEnabled()) return;
  if (enabled) {
    clearButton_ = addButton(nullptr, TrailingPosition);
    clearButton_->setIcon(style()->standardIcon(QStyle::SP_LineEditClearButton, nullptr, this));
    clearButton_->setAccessibleName(tr("Clear"));
    clearButton_->setToolTip(tr("Clear"));
    clearButton_->setVisible(clearable_);
    connect(clearButton_, &QToolButton::clicked, this, &EditField::onClearButton);
    buttons_.move(buttons_.size() - 1, 0);
  } else {
    buttons_.removeFirst();
    clearButton_->hide();
    clearButton_->deleteLater();
    clearButton_ = nullptr;
  }
  relayout();
  emit clearButtonEnabledChanged(enabled);
}

void EditField::setClearable(bool clearable) {
  if (clearable == clearable_) return;
  clearable_ = clearable;
  // Its place stays, so that the contents do not move when the first key is typed.
  if (clearButton_) clearButton_->setVisible(clearable);
}

// ---- Geometry ---------------------------------------------------------------------------------------------

int EditField::frameWidth() const {
  if (!frame_) return 0;
  QStyleOptionFrame option;
  option.initFrom(this);
  return style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, this);
}

void EditField::placeButtons() {
  int const width = frameWidth();
  QRect const area = contentsRect().adjusted(width, width, -width, -width);
  int leading = 0, trailing = 0;
  for (ButtonS const& each : buttons_) {
    if (!each.button->isVisibleTo(this) && each.button != clearButton_) continue;
    QSize const size = each.button->size();
    bool const first = each.position == LeadingPosition;
    int const x = first ? area.left() + leading : area.right() + 1 - trailing - size.width();
    QRect const box({x, area.top() + (area.height() - size.height()) / 2}, size);
    each.button->setGeometry(QStyle::visualRect(layoutDirection(), area, box));
    (first ? leading : trailing) += size.width();
  }
  bool const mirrored = layoutDirection() == Qt::RightToLeft;
  sides_ = mirrored ? QMargins(trailing, 0, leading, 0) : QMargins(leading, 0, trailing, 0);
}

QMargins EditField::aroundContents() const {
  int const width = frameWidth();
  return contentsMargins() + QMargins(width, width, width, width) + sides_ + textMargins_;
}

QRect EditField::contentsArea() const { return rect().marginsRemoved(aroundContents()); }

void EditField::relayout() {
  placeButtons();
  updateGeometry();
  update();
  onAreaChanged();
}

void EditField::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  placeButtons();
  onAreaChanged();
}

void EditField::changeEvent(QEvent* event) {
  switch (event->type()) {
    case QEvent::StyleChange:
    case QEvent::FontChange:
    case QEvent::ContentsRectChange:
    case QEvent::LayoutDirectionChange:
      relayout();
      break;
    case QEvent::PaletteChange:
    case QEvent::EnabledChange:
    case QEvent::ActivationChange:
      update();
      break;
    default:
      break;
  }
  QWidget::changeEvent(event);
}

void EditField::paintFrame(QPainter& painter, bool readOnly) {
  if (frame_) {
    QStyleOptionFrame option;
    option.initFrom(this);
    option.rect = contentsRect();
    option.lineWidth = frameWidth();
    option.state |= QStyle::State_Sunken;
    option.state.setFlag(QStyle::State_ReadOnly, readOnly);
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &option, &painter, this);
  } else if (autoFillBackground() || backgroundRole() != QPalette::NoRole) {
    painter.fillRect(contentsRect(), palette().brush(backgroundRole()));
  }
}

}  // namespace zolt::qt
