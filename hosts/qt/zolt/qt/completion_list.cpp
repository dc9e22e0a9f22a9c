#include "zolt/qt/completion_list.h"

#include <QAbstractListModel>
#include <QEvent>
#include <QHash>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>

#include "zolt/qt/formula_edit.h"
#include "zolt/qt/formula_picture.h"
#include "zolt/qt/text.h"

namespace zolt::qt {

namespace {

constexpr int most_rows = 8;
constexpr int most_width = 460;
constexpr QSize picture_box(46, 30);
constexpr qreal picture_zoom = 1.2;
constexpr int gap = 8;
constexpr int shortcut_role = Qt::UserRole;
constexpr int picture_role = Qt::UserRole + 1;

}  // namespace

class CompletionList::Model final : public QAbstractListModel {
 public:
  using QAbstractListModel::QAbstractListModel;

  void setEntries(std::vector<field::PaletteEntryS const*> const& entries) {
    beginResetModel();
    entries_ = entries;
    endResetModel();
  }
  bool holds(std::vector<field::PaletteEntryS const*> const& entries) const { return entries_ == entries; }

  /// Without entries there is one row that says so.
  int rowCount(QModelIndex const& parent = {}) const override {
    return parent.isValid() ? 0 : std::max(1, int(entries_.size()));
  }
  Qt::ItemFlags flags(QModelIndex const& index) const override {
    return entries_.empty() ? Qt::NoItemFlags : QAbstractListModel::flags(index);
  }
  QVariant data(QModelIndex const& index, int role) const override {
    if (entries_.empty()) return role == Qt::DisplayRole ? tr("Nothing of that name") : QVariant();
    field::PaletteEntryS const& entry = *entries_[std::size_t(index.row())];
    switch (role) {
      case Qt::DisplayRole:
        return toQString(entry.title);
      case Qt::AccessibleTextRole:
        return toQString(entry.toolTip);
      case shortcut_role:
        return toQString(entry.shortcut);
      case picture_role:
        return toQString(entry.picture);
      default:
        return {};
    }
  }

 private:
  std::vector<field::PaletteEntryS const*> entries_;
};

class CompletionList::Delegate final : public QStyledItemDelegate {
 public:
  Delegate(std::shared_ptr<FormulaFonts> fonts, QObject* parent)
      : QStyledItemDelegate(parent), fonts_(std::move(fonts)) {}

  QSize sizeHint(QStyleOptionViewItem const& option, QModelIndex const& index) const override {
    QFontMetrics const metrics(option.font);
    int const words = metrics.horizontalAdvance(index.data().toString());
    int const typed = metrics.horizontalAdvance(index.data(shortcut_role).toString());
    return {picture_box.width() + words + 3 * gap + typed + 2 * gap,
            std::max(picture_box.height(), metrics.height() + gap)};
  }

  void paint(QPainter* painter, QStyleOptionViewItem const& given, QModelIndex const& index) const override {
    QStyleOptionViewItem option = given;
    initStyleOption(&option, index);
    option.text.clear();
    QStyle const* const style = option.widget->style();
    style->drawControl(QStyle::CE_ItemViewItem, &option, painter, option.widget);
    bool const selected = option.state & QStyle::State_Selected;
    bool const enabled = option.state & QStyle::State_Enabled;
    auto const group = enabled ? QPalette::Active : QPalette::Disabled;
    QColor const ink = option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
    QRect const row = option.rect.adjusted(gap, 0, -gap, 0);
    QRect box(row.topLeft(), QSize(picture_box.width(), row.height()));
    QRect words = row.adjusted(picture_box.width() + gap, 0, 0, 0);
    painter->save();
    if (index.data(picture_role).isValid()) {
      paintPicture(*painter, box, index.data(picture_role).toString(), ink);
    } else {
      words = row;
    }
    painter->setPen(ink);
    painter->drawText(words, int(Qt::AlignLeft | Qt::AlignVCenter), index.data().toString());
    QColor faint = ink;
    faint.setAlphaF(0.6F);
    painter->setPen(faint);
    painter->drawText(words, int(Qt::AlignRight | Qt::AlignVCenter), index.data(shortcut_role).toString());
    painter->restore();
  }

 private:
  void paintPicture(QPainter& painter, QRect const& box, QString const& tree, QColor const& ink) const {
    if (!fonts_) return;
    std::shared_ptr<FormulaPicture>& picture = pictures_[tree];
    if (!picture) {
      picture = std::make_shared<FormulaPicture>(fonts_);
      if (!picture->setTree(toWstring(tree))) return;
    }
    QSizeF const size = picture->size();
    qreal const zoom = std::min({picture_zoom, (box.width() - 2) / std::max(1.0, size.width()),
                                 (box.height() - 2) / std::max(1.0, size.height())});
    QPointF const spare((box.width() - size.width() * zoom) / 2, (box.height() - size.height() * zoom) / 2);
    painter.save();
    painter.setClipRect(box);
    picture->paint(painter, QPointF(box.topLeft()) + spare, zoom, ink);
    painter.restore();
  }

  std::shared_ptr<FormulaFonts> fonts_;
  mutable QHash<QString, std::shared_ptr<FormulaPicture>> pictures_;
};

CompletionList::CompletionList(FormulaEdit& edit, std::shared_ptr<FormulaFonts> fonts)
    : QListView(&edit),
      edit_(edit),
      model_(new Model(this)),
      delegate_(new Delegate(std::move(fonts), this)) {
  // A window of this kind takes neither the focus nor the pointer from the field.
  setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setFocusPolicy(Qt::NoFocus);
  setAccessibleName(tr("Completions"));
  setFrameStyle(int(QFrame::Box) | int(QFrame::Plain));
  setLineWidth(1);
  setModel(model_);
  setItemDelegate(delegate_);
  setUniformItemSizes(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setCursor(Qt::ArrowCursor);
  connect(this, &QListView::clicked, this, [this](QModelIndex const& index) { emit picked(index.row()); });
}

CompletionList::~CompletionList() = default;

void CompletionList::showEntries(field::CompletionC const& completion, QRect const& box) {
  if (!model_->holds(completion.crefEntries()) || !isVisible()) model_->setEntries(completion.crefEntries());
  int const count = model_->rowCount();
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  int width = 0;
  for (int i = 0; i < count; ++i) {
    width = std::max(width, delegate_->sizeHint(option, model_->index(i)).width());
  }
  bool const scrolls = count > most_rows;
  int const bar = scrolls ? verticalScrollBar()->sizeHint().width() : 0;
  setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
  int const row = delegate_->sizeHint(option, model_->index(0)).height();
  QSize const size(std::min(most_width, width + bar) + 2 * frameWidth(),
                   row * std::min(count, most_rows) + 2 * frameWidth());

  // Below what is typed; above it where the screen ends.
  QRect const anchor(edit_.mapToGlobal(box.topLeft()), box.size());
  QRect const screen = edit_.screen()->availableGeometry();
  QPoint at(anchor.left() - gap, anchor.bottom() + 4);
  if (at.y() + size.height() > screen.bottom() && anchor.top() - 4 - size.height() >= screen.top()) {
    at.setY(anchor.top() - 4 - size.height());
  }
  at.setX(std::max(screen.left(), std::min(at.x(), screen.right() - size.width())));
  setGeometry(QRect(at, size));
  if (!isVisible()) {
    watchParents(true);
    show();
  }
  std::size_t const current = completion.getCurrent();
  if (current == field::CompletionC::none) {
    setCurrentIndex({});
    clearSelection();
    scrollToTop();
  } else {
    setCurrentIndex(model_->index(int(current)));
    scrollTo(currentIndex());
  }
}

void CompletionList::watchParents(bool watch) {
  for (QWidget* widget = &edit_; widget; widget = widget->isWindow() ? nullptr : widget->parentWidget()) {
    widget->removeEventFilter(this);
    if (watch) widget->installEventFilter(this);
  }
}

bool CompletionList::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
      emit displaced();
      break;
    case QEvent::Hide:
      hide();
      break;
    default:
      break;
  }
  return QListView::eventFilter(watched, event);
}

void CompletionList::hideEvent(QHideEvent* event) {
  watchParents(false);
  QListView::hideEvent(event);
}

}  // namespace zolt::qt
