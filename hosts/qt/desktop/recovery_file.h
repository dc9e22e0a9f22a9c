#pragma once

#include <QDateTime>
#include <QLockFile>
#include <QString>
#include <memory>
#include <optional>
#include <vector>

#include "hosts/qt/desktop/sheet.h"

namespace zolt::desktop {

/// What a recovery file holds.
struct RecoveredSheet {
  QString path;  ///< of the file that the sheet belongs to; empty when it was never saved
  QDateTime written;
  Sheet sheet;
};

/// A file that keeps an unsaved sheet for the case that the program ends without asking. While it is there, a
/// lock beside it tells that its program is running, so that no other one takes it.
///
/// Writing and removing may be done in any thread, but not at the same time.
class RecoveryFile {
 public:
  /// Of a sheet of this program; there is no file yet.
  static std::unique_ptr<RecoveryFile> create(QString const& folder);
  /// Takes over all that programs have left which are no more. What else they left goes.
  static std::vector<std::unique_ptr<RecoveryFile>> adoptAll(QString const& folder);

  /// Gives up the lock; the file stays, for the next one to adopt.
  ~RecoveryFile() = default;

  /// Replaces the contents, at once or not at all; false with `error`.
  bool write(QString const& path, Sheet const& sheet, QString& error);
  /// Nothing, with `error`, when the file is damaged.
  std::optional<RecoveredSheet> read(QString& error) const;
  /// What is readable of a damaged file; its path is empty, since nobody knows what is missing.
  std::optional<RecoveredSheet> salvage() const;
  void remove();

  QString const& name() const { return name_; }

 private:
  explicit RecoveryFile(QString name);

  QString name_;
  QLockFile lock_;
};

}  // namespace zolt::desktop
