#include "hosts/qt/desktop/recovery_dialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyle>
#include <QVBoxLayout>

#include "hosts/qt/desktop/plain_message_box.h"

namespace zolt::desktop {

namespace {

constexpr QSize first_size(620, 340);

QString timeText(QDateTime const& utc) {
  QDateTime const time = utc.toLocalTime();
  QString const clock = QLocale().toString(time.time(), QLocale::ShortFormat);
  qint64 const days = time.date().daysTo(QDate::currentDate());
  if (days == 0) return RecoveryDialog::tr("today at %1").arg(clock);
  if (days == 1) return RecoveryDialog::tr("yesterday at %1").arg(clock);
  return QLocale().toString(time, QLocale::ShortFormat);
}

}  // namespace

struct RecoveryDialog::EntryS {
  std::unique_ptr<RecoveryFile> file;
  std::optional<RecoveredSheet> sheet;  // no value: not even a part is readable
  bool damaged = false;
};

void RecoveryDialog::offer(QString const& folder, Recover const& recover, QWidget* parent) {
  auto files = RecoveryFile::adoptAll(folder);
  if (!files.empty()) RecoveryDialog(std::move(files), recover, parent).exec();
}

RecoveryDialog::RecoveryDialog(std::vector<std::unique_ptr<RecoveryFile>> files, Recover recover,
                               QWidget* parent)
    : QDialog(parent), recover_(std::move(recover)), list_(new QListWidget(this)) {
  setWindowTitle(tr("Recover Unsaved Sheets"));
  auto* const explanation =
      new QLabel(files.size() == 1
                     ? tr("The program ended before this sheet was saved. It opens as it was, still unsaved.")
                     : tr("The program ended before these sheets were saved. They open as they were, still "
                          "unsaved."),
                 this);
  explanation->setWordWrap(true);
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setAlternatingRowColors(true);
  list_->setWordWrap(true);
  list_->setSpacing(2);
  list_->setAccessibleName(windowTitle());

  auto* const buttons = new QDialogButtonBox(this);
  recoverButton_ = buttons->addButton(tr("&Recover"), QDialogButtonBox::AcceptRole);
  discardButton_ = buttons->addButton(tr("&Discard"), QDialogButtonBox::DestructiveRole);
  QPushButton* const later = buttons->addButton(tr("Decide &Later"), QDialogButtonBox::RejectRole);
  recoverButton_->setDefault(true);
  connect(recoverButton_, &QPushButton::clicked, this, &RecoveryDialog::recoverChosen);
  connect(discardButton_, &QPushButton::clicked, this, &RecoveryDialog::discardChosen);
  connect(later, &QPushButton::clicked, this, &QDialog::reject);
  connect(list_, &QListWidget::itemActivated, this, &RecoveryDialog::recoverChosen);
  connect(list_, &QListWidget::itemSelectionChanged, this, &RecoveryDialog::updateButtons);

  auto* const layout = new QVBoxLayout(this);
  layout->setSpacing(12);
  layout->addWidget(explanation);
  layout->addWidget(list_);
  layout->addWidget(buttons);
  for (auto& file : files) addEntry(std::move(file));
  updateButtons();
  list_->setFocus();
  resize(first_size);
}

RecoveryDialog::~RecoveryDialog() = default;

void RecoveryDialog::addEntry(std::unique_ptr<RecoveryFile> file) {
  auto entry = std::make_unique<EntryS>();
  QString error;
  entry->sheet = file->read(error);
  entry->damaged = !entry->sheet;
  QString name = tr("A damaged recovery file"), about;
  if (entry->damaged) {
    entry->sheet = file->salvage();
    QString const kept =
        tr("The file stays at %1 until you discard it.").arg(QDir::toNativeSeparators(file->name()));
    about = (entry->sheet ? tr("%1. What is readable of it can be recovered. %2") : tr("%1. %2"))
                .arg(error, kept);
  } else {
    RecoveredSheet const& sheet = *entry->sheet;
    QFileInfo const saved(sheet.path);
    name = sheet.path.isEmpty() ? tr("A sheet that was never saved") : saved.fileName();
    about = tr("Changed %1").arg(timeText(sheet.written)) + QStringLiteral(", ") +
            (sheet.sheet.size() == 1 ? tr("1 line") : tr("%1 lines").arg(sheet.sheet.size()));
    if (!sheet.path.isEmpty()) {
      about += QStringLiteral(" – ") + QDir::toNativeSeparators(saved.path());
      if (saved.exists() && saved.lastModified() > sheet.written) {
        about += u'\n' + tr("The file itself was changed later.");
      }
    }
  }
  auto* const item = new QListWidgetItem(name + u'\n' + about, list_);
  item->setIcon(style()->standardIcon(entry->damaged ? QStyle::SP_MessageBoxWarning : QStyle::SP_FileIcon));
  bool const whole = !entry->damaged;
  entry->file = std::move(file);
  entries_.push_back(std::move(entry));
  item->setSelected(whole);
}

void RecoveryDialog::updateButtons() {
  bool readable = false;
  QList<int> const rows = chosenRows();
  for (int const row : rows) readable = readable || entries_[std::size_t(row)]->sheet;
  recoverButton_->setEnabled(readable);
  discardButton_->setEnabled(!rows.isEmpty());
}

QList<int> RecoveryDialog::chosenRows() const {
  QList<int> rows;
  for (int row = 0; row < list_->count(); ++row) {
    if (list_->item(row)->isSelected()) rows << row;
  }
  return rows;
}

void RecoveryDialog::recoverChosen() {
  // Opening a large sheet processes events; another choice would then meet entries that are half removed, and
  // a window that already has a sheet.
  setEnabled(false);
  int done = 0;
  for (int const row : chosenRows()) {
    EntryS& entry = *entries_[std::size_t(row - done)];
    if (!entry.sheet) continue;
    recover_(*entry.sheet, entry.damaged ? nullptr : std::move(entry.file));
    removeRow(row - done++);
  }
  setEnabled(true);
  list_->setFocus();
}

void RecoveryDialog::discardChosen() {
  QList<int> const rows = chosenRows();
  PlainMessageBox question(
      QMessageBox::Warning, windowTitle(),
      rows.size() == 1 ? tr("Discard this sheet?") : tr("Discard %1 sheets?").arg(rows.size()),
      QMessageBox::Discard | QMessageBox::Cancel, this);
  question.setInformativeText(tr("What was not saved is then lost."));
  question.setDefaultButton(QMessageBox::Cancel);
  if (question.exec() != QMessageBox::Discard) return;
  int done = 0;
  for (int const row : rows) {
    entries_[std::size_t(row - done)]->file->remove();
    removeRow(row - done++);
  }
}

void RecoveryDialog::removeRow(int row) {
  {
    // Between the two statements the rows do not match the entries.
    QSignalBlocker const silence(list_);
    entries_.erase(entries_.begin() + row);
    delete list_->takeItem(row);
  }
  updateButtons();
  if (entries_.empty()) accept();
}

}  // namespace zolt::desktop
