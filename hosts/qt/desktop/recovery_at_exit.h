#pragma once

#include <QObject>
#include <memory>

namespace zolt::desktop {

/// Has all unsaved sheets kept (`RecoveryWriter::writeAllNow`) when the program is made to end: by a signal
/// to terminate, at the end of the session, and when the display goes away, upon which the toolkit ends the
/// program. A full disk and a reader who has gone away become errors instead of the program's end.
///
/// Lives as long as the event loop, at most once in a program.
class RecoveryAtExit final : public QObject {
  Q_OBJECT

 public:
  RecoveryAtExit();
  ~RecoveryAtExit() override;

 private:
  struct SignalsS;
  std::unique_ptr<SignalsS> signals_;
};

}  // namespace zolt::desktop
