#pragma once

#include <QObject>
#include <QThreadPool>
#include <QTimer>
#include <memory>

#include "hosts/qt/desktop/recovery_file.h"

namespace zolt::desktop {

class SheetView;

/// Keeps what is unsaved in a view in a recovery file, shortly after every change. The file is made in
/// another thread; the user's waits for it only when the sheet is saved or given up.
class RecoveryWriter final : public QObject {
  Q_OBJECT

 public:
  /// Milliseconds from the last change to the file, and the most that may pass while changes go on.
  static constexpr int quiet_time = 2000, longest_time = 10000;

  /// `view` outlives it.
  RecoveryWriter(SheetView& view, QString folder, QObject* parent);
  /// The file stays: whoever has asked what becomes of the sheet calls `forget` before.
  ~RecoveryWriter() override;

  /// The file that the sheet belongs to; empty when there is none yet.
  void setPath(QString const& path) { path_ = path; }
  /// The view shows what was recovered from this file, which goes on being its file.
  void adopt(std::unique_ptr<RecoveryFile> file);
  /// The sheet is saved, or given up.
  void forget();
  /// Writes what is unsaved at once, in this thread.
  void writeNow();

  /// `writeNow` of all that there are, for the program's last moment.
  static void writeAllNow();

 signals:
  /// The file could not be written. Emitted once, until it could be written again.
  void failed(QString const& error);

 private:
  void noteChange();
  void writeSoon();
  void takeResult(QString const& error);

  SheetView& view_;
  QString path_;
  std::unique_ptr<RecoveryFile> file_;  // the worker's while it is at work
  QTimer quiet_;
  QTimer deadline_;
  QThreadPool worker_;
  bool working_ = false;
  bool hasFailed_ = false;
};

}  // namespace zolt::desktop
