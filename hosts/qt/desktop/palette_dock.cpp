#include "hosts/qt/desktop/palette_dock.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>

#include "hosts/qt/desktop/icons.h"
#include "hosts/qt/desktop/size_grid.h"
#include "zolt/field/formula_field.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/qt/formula_fonts.h"
#include "zolt/qt/qt_graphics.h"
#include "zolt/qt/text.h"

namespace zolt::desktop {

using qt::toQString;

namespace {

constexpr int column_count = 5;
constexpr QSize icon_size(44, 34);
constexpr QSize button_size(50, 40);

}  // namespace

PaletteDock::PaletteDock(std::shared_ptr<qt::FormulaFonts> fonts, QWidget* parent)
    : QDockWidget(tr("Palette"), parent), fonts_(std::move(fonts)) {
  setObjectName(QStringLiteral("palette"));
  setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);

  auto* const body = new QWidget(this);
  auto* const column = new QVBoxLayout(body);
  column->setContentsMargins(8, 8, 4, 0);
  search_ = new QLineEdit(body);
  search_->setPlaceholderText(tr("Search"));
  search_->setAccessibleName(tr("Search the palette"));
  search_->setClearButtonEnabled(true);
  connect(search_, &QLineEdit::textChanged, this, &PaletteDock::filter);
  connect(search_, &QLineEdit::returnPressed, this, &PaletteDock::pickFirst);
  column->addWidget(search_);

  auto* const area = new QScrollArea(body);
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setFocusPolicy(Qt::NoFocus);
  auto* const page = new QWidget(area);
  auto* const list = new QVBoxLayout(page);
  list->setContentsMargins(0, 0, 4, 8);
  list->setSpacing(2);

  groups_ = field::makePalette(field::FormulaFieldC(new qt::QtGraphicsC(fonts_)).crefView());
  for (field::PaletteGroupS const& group : groups_) {
    SectionS section{new QLabel(toQString(group.title), page), new QGridLayout, {}};
    QFont font = section.title->font();
    font.setWeight(QFont::DemiBold);
    section.title->setFont(font);
    section.title->setContentsMargins(2, 8, 0, 2);
    section.grid->setSpacing(1);
    section.grid->setColumnStretch(column_count, 1);
    for (field::PaletteEntryS const& entry : group.entries) section.buttons.push_back(makeButton(entry));
    list->addWidget(section.title);
    list->addLayout(section.grid);
    arrange(section, group.entries, QString());
    sections_.push_back(std::move(section));
  }
  nothing_ = new QLabel(tr("Nothing of that name"), page);
  nothing_->setEnabled(false);
  nothing_->hide();
  list->addWidget(nothing_);
  list->addStretch(1);
  area->setWidget(page);
  area->setMinimumWidth(column_count * (button_size.width() + 1) + 24);
  column->addWidget(area);
  setWidget(body);
}

PaletteDock::~PaletteDock() = default;

QToolButton* PaletteDock::makeButton(field::PaletteEntryS const& entry) {
  auto* const button = new QToolButton(this);
  if (!entry.picture.empty()) button->setIcon(formulaIcon(toQString(entry.picture), fonts_));
  button->setIconSize(icon_size);
  button->setFixedSize(button_size);
  button->setAutoRaise(true);
  // The keyboard focus remains in the formula.
  button->setFocusPolicy(Qt::NoFocus);
  button->setText(toQString(entry.label));
  button->setToolTip(toQString(entry.toolTip).toHtmlEscaped());
  button->setAccessibleName(toQString(entry.title));
  button->setAccessibleDescription(toQString(entry.toolTip));
  connect(button, &QToolButton::clicked, this, [this, &entry] { emit picked(entry); });
  if (entry.takesSize) {
    auto* const menu = new QMenu(button);
    connect(SizeGrid::addTo(*menu), &SizeGrid::picked, this, [this, &entry](int rows, int columns) {
      emit picked(
          field::withSize(entry, static_cast<unsigned long>(rows), static_cast<unsigned long>(columns)));
    });
    button->setMenu(menu);
    button->setPopupMode(QToolButton::MenuButtonPopup);
    button->setToolTip(button->toolTip() + tr("<br>The arrow: of any size"));
  }
  return button;
}

void PaletteDock::arrange(SectionS const& section, std::vector<field::PaletteEntryS> const& entries,
                          QString const& wanted) {
  int place = 0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    bool const shown = field::matchSearch(entries[i], wanted.toStdU16String()) != field::SEARCH_MATCH_NONE;
    section.buttons[i]->setVisible(shown);
    if (!shown) continue;
    section.grid->addWidget(section.buttons[i], place / column_count, place % column_count);
    ++place;
  }
  section.title->setVisible(place > 0);
}

void PaletteDock::filter(QString const& wanted) {
  bool any = false;
  for (std::size_t i = 0; i < sections_.size(); ++i) {
    arrange(sections_[i], groups_[i].entries, wanted.trimmed());
    any = any || sections_[i].title->isVisibleTo(this);
  }
  nothing_->setVisible(!any);
}

void PaletteDock::pickFirst() {
  std::u16string const wanted = search_->text().trimmed().toStdU16String();
  field::PaletteEntryS const* best = nullptr;
  field::SearchMatchE bestMatch = field::SEARCH_MATCH_NONE;
  for (field::PaletteGroupS const& group : groups_) {
    for (field::PaletteEntryS const& entry : group.entries) {
      field::SearchMatchE const match = field::matchSearch(entry, wanted);
      if (match <= bestMatch) continue;
      best = &entry;
      bestMatch = match;
    }
  }
  if (!best) return;
  search_->clear();
  emit picked(*best);
}

void PaletteDock::follow(qt::FormulaEdit const* formula) {
  for (std::size_t i = 0; i < sections_.size(); ++i) {
    for (std::size_t k = 0; k < sections_[i].buttons.size(); ++k) {
      sections_[i].buttons[k]->setEnabled(formula && formula->isEntryEnabled(groups_[i].entries[k]));
    }
  }
}

void PaletteDock::search() {
  show();
  raise();
  search_->setFocus(Qt::ShortcutFocusReason);
  search_->selectAll();
}

}  // namespace zolt::desktop
