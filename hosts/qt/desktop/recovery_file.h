#pragma once

#include <QDateTime>
#include <QFile>
#include <QString>
#include <memory>
#include <optional>
#include <vector>

#include "hosts/qt/desktop/sheet.h"

namespace zolt::desktop {

/// The contents of a recovery file.
struct RecoveredSheet {
  QString path;  ///< of the file that the sheet belongs to; empty when it was never saved
  QDateTime written;
  Sheet sheet;
};

/// A file that keeps an unsaved sheet in case the program ends without asking. While the file exists, a
/// locked file beside it shows that its program is running, so that no other program takes it. The system
/// releases the lock when the program ends; what the locked file holds is of no account.
///
/// Writing and removing may happen in any thread, but not at the same time.
class RecoveryFile {
 public:
  /// For a sheet of this program; no file exists yet.
  static std::unique_ptr<RecoveryFile> create(QString const& folder);
  /// Takes over all files of programs that have ended, and removes anything else that they left.
  static std::vector<std::unique_ptr<RecoveryFile>> adoptAll(QString const& folder);

  /// Releases the lock; the file stays, so that a later program can adopt it.
  ~RecoveryFile() { unlock(); }

  /// Replaces the contents, completely or not at all. Returns false, with `error`, on failure.
  bool write(QString const& path, Sheet const& sheet, QString& error);
  /// Returns no value, with `error`, when the file is damaged.
  std::optional<RecoveredSheet> read(QString& error) const;
  /// The readable part of a damaged file. Its path is empty, since the missing part is unknown.
  std::optional<RecoveredSheet> salvage() const;
  void remove();

  QString const& name() const { return name_; }

 private:
  explicit RecoveryFile(QString name);
  bool tryLock();
  void unlock();

  QString name_;
  QFile lock_;  // open while it is locked
};

}  // namespace zolt::desktop
