#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <memory>

#include "zolt/script/event_script.h"

class QFile;

namespace zolt::qt {
class FormulaEdit;
}

namespace zolt::desktop {

/// Writes a person's input to formulas into an event script, for a report of a fault. The file is written as
/// things happen, so that it is there after a crash.
class Recorder final : public QObject {
  Q_OBJECT

 public:
  explicit Recorder(QObject* parent);
  ~Recorder() override;

  bool isRecording() const { return bool(file_); }
  /// Returns false, with `error`, when the file cannot be written.
  bool start(QString const& path, QString& error);
  /// Returns false, with `error`, when not everything could be written.
  bool stop(QString& error);
  /// Sets the formula that has the keyboard from now on; null: none.
  void follow(qt::FormulaEdit* formula);

 private:
  void write();

  field::EventScriptT script_;
  std::unique_ptr<QFile> file_;
  QPointer<qt::FormulaEdit> formula_;
  QTimer timer_;
  bool failed_ = false;
};

}  // namespace zolt::desktop
