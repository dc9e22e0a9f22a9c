#pragma once

#include <QList>
#include <QMargins>
#include <QString>
#include <QWidget>

class QAction;
class QIcon;
class QMenu;
class QPainter;
class QToolButton;

namespace zolt::qt {

/// What an edit field has, as a `QLineEdit` does, whatever is edited in it: the panel of the style, margins,
/// buttons at the sides, a placeholder, and what the user may do.
class EditField : public QWidget {
  Q_OBJECT
  Q_MOC_INCLUDE(<QMenu>)
  Q_PROPERTY(bool frame READ hasFrame WRITE setFrame NOTIFY frameChanged)
  Q_PROPERTY(Qt::Alignment alignment READ alignment WRITE setAlignment NOTIFY alignmentChanged)
  /// Shown in place of empty contents.
  Q_PROPERTY(
      QString placeholderText READ placeholderText WRITE setPlaceholderText NOTIFY placeholderTextChanged)
  /// A button at the trailing side that empties the field while there is something in it.
  Q_PROPERTY(bool clearButtonEnabled READ isClearButtonEnabled WRITE setClearButtonEnabled NOTIFY
                 clearButtonEnabledChanged)

  /// When off, the keys and menu entries of undo and redo are left to the window, which runs the commands
  /// itself.
  Q_PROPERTY(
      bool undoRedoEnabled READ isUndoRedoEnabled WRITE setUndoRedoEnabled NOTIFY undoRedoEnabledChanged)
  /// Whether the selection can be dragged to another place.
  Q_PROPERTY(bool dragEnabled READ dragEnabled WRITE setDragEnabled NOTIFY dragEnabledChanged)

 public:
  enum ActionPosition { LeadingPosition, TrailingPosition };
  Q_ENUM(ActionPosition)

  ~EditField() override;

  bool hasFrame() const { return frame_; }
  void setFrame(bool frame);
  Qt::Alignment alignment() const { return alignment_; }
  void setAlignment(Qt::Alignment alignment);
  QString placeholderText() const { return placeholder_; }
  void setPlaceholderText(QString const& text);
  bool isClearButtonEnabled() const { return clearButton_; }
  void setClearButtonEnabled(bool enabled);
  /// Logical pixels between the frame, or the buttons, and the contents.
  QMargins textMargins() const { return textMargins_; }
  void setTextMargins(QMargins const& margins);
  void setTextMargins(int left, int top, int right, int bottom) {
    setTextMargins({left, top, right, bottom});
  }
  using QWidget::addAction;
  /// Shows the action as a button; `removeAction` takes it away.
  void addAction(QAction* action, ActionPosition position);
  /// The field owns the action.
  QAction* addAction(QIcon const& icon, ActionPosition position);

  bool isUndoRedoEnabled() const { return undoRedo_; }
  void setUndoRedoEnabled(bool enabled);
  bool dragEnabled() const { return drag_; }
  void setDragEnabled(bool enabled);

 signals:
  void frameChanged(bool frame);
  void alignmentChanged(Qt::Alignment alignment);
  void placeholderTextChanged(QString const& text);
  void clearButtonEnabledChanged(bool enabled);
  void undoRedoEnabledChanged(bool enabled);
  void dragEnabledChanged(bool enabled);
  /// The menu of the right button is about to be shown; what is added to it is part of it.
  void contextMenuMade(QMenu* menu);

 protected:
  explicit EditField(QWidget* parent);

  /// The part of the widget that is left for the contents.
  QRect contentsArea() const;
  /// What the rest takes on each side.
  QMargins aroundContents() const;
  void paintFrame(QPainter& painter, bool readOnly);
  /// Whether the clear button, where it is enabled, has something to do.
  void setClearable(bool clearable);

  /// The person pressed the clear button.
  virtual void onClearButton() = 0;
  /// `contentsArea` is another one now.
  virtual void onAreaChanged() = 0;

  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void actionEvent(QActionEvent* event) override;

 private:
  struct ButtonS {
    QToolButton* button;
    ActionPosition position;
  };

  int frameWidth() const;
  QToolButton* addButton(QAction* action, ActionPosition position);
  void placeButtons();
  void relayout();

  bool frame_ = true;
  Qt::Alignment alignment_ = Qt::AlignLeft | Qt::AlignVCenter;
  QString placeholder_;
  bool undoRedo_ = true;
  bool drag_ = true;
  QMargins textMargins_;
  QList<ButtonS> buttons_;  // from the edges inwards
  QMargins sides_;          // what they take
  QToolButton* clearButton_ = nullptr;
  bool clearable_ = false;
};

}  // namespace zolt::qt
