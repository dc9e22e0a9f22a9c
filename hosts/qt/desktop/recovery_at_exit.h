#pragma once

#include <QObject>
#include <memory>

namespace zolt::desktop {

/// Writes all unsaved sheets (`RecoveryWriter::writeAllNow`) when the program is made to end: by a signal to
/// terminate, at the end of the session, or because the display goes away, after which the toolkit ends the
/// program. A full disk and a vanished reader become errors and do not end the program.
///
/// It lives as long as the program's windows; a program has at most one.
class RecoveryAtExit final : public QObject {
  Q_OBJECT

 public:
  RecoveryAtExit();
  ~RecoveryAtExit() override;

  /// The exit status that a signal has asked for; 0 when none has. A program that has no event loop yet, or
  /// is busy before it, asks for it to end even so.
  static int requestedStatus();

 private:
  struct SignalsS;
  std::unique_ptr<SignalsS> signals_;
};

}  // namespace zolt::desktop
