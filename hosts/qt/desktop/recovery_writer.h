#pragma once

#include <QObject>
#include <QThreadPool>
#include <QTimer>
#include <memory>

#include "hosts/qt/desktop/recovery_file.h"

namespace zolt::desktop {

class SheetView;

/// Keeps the unsaved contents of a view in a recovery file, shortly after every change. The file is written
/// in another thread; the user's thread waits for it only when the sheet is saved or given up.
class RecoveryWriter final : public QObject {
  Q_OBJECT

 public:
  /// Milliseconds from the last change to the write, and the most that may pass while changes continue.
  static constexpr int quiet_time = 2000, longest_time = 10000;

  /// `view` must outlive this object.
  RecoveryWriter(SheetView& view, QString folder, QObject* parent);
  /// The file stays: after asking about the sheet, the caller calls `forget` first if it is no longer needed.
  ~RecoveryWriter() override;

  /// Sets the file that the sheet belongs to; empty when there is none yet.
  void setPath(QString const& path) { path_ = path; }
  /// The view shows what was recovered from `file`, which continues to be its recovery file.
  void adopt(std::unique_ptr<RecoveryFile> file);
  /// The sheet has been saved, or given up.
  void forget();
  /// Writes unsaved changes at once, in this thread.
  void writeNow();

  /// Calls `writeNow` of every object of this class, when the program is about to end.
  static void writeAllNow();

 signals:
  /// The file could not be written. Emitted once, until a write succeeds again.
  void failed(QString const& error);

 private:
  void noteChange();
  void writeSoon();
  void takeResult(QString const& error);

  SheetView& view_;
  QString path_;
  std::unique_ptr<RecoveryFile> file_;  // belongs to the worker while it runs
  QTimer quiet_;
  QTimer deadline_;
  QThreadPool worker_;
  bool working_ = false;
  bool hasFailed_ = false;
};

}  // namespace zolt::desktop
