#pragma once

#include <QDialog>
#include <functional>
#include <memory>
#include <vector>

#include "hosts/qt/desktop/recovery_file.h"

class QListWidget;
class QPushButton;

namespace zolt::desktop {

/// Offers the sheets that were unsaved when the program ended. Those that are neither recovered nor discarded
/// stay where they are and are offered again at the next start.
class RecoveryDialog final : public QDialog {
  Q_OBJECT

 public:
  /// Takes a sheet that is to be opened, and its recovery file, which is null when that is damaged.
  using Recover = std::function<void(RecoveredSheet const&, std::unique_ptr<RecoveryFile>)>;

  /// Offers what programs that have ended left in the folder, if anything.
  static void offer(QString const& folder, Recover const& recover, QWidget* parent);

  RecoveryDialog(std::vector<std::unique_ptr<RecoveryFile>> files, Recover recover, QWidget* parent);
  ~RecoveryDialog() override;

 private:
  struct EntryS;

  void addEntry(std::unique_ptr<RecoveryFile> file);
  QList<int> chosenRows() const;
  void updateButtons();
  void recoverChosen();
  void discardChosen();
  void removeRow(int row);

  Recover recover_;
  std::vector<std::unique_ptr<EntryS>> entries_;  // one for each row of the list
  QListWidget* list_;
  QPushButton* recoverButton_;
  QPushButton* discardButton_;
};

}  // namespace zolt::desktop
