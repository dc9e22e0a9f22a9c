#include "hosts/qt/desktop/recorder.h"

#include <QFile>

#include "zolt/qt/formula_edit.h"
#include "zolt/qt/text.h"

namespace zolt::desktop {

namespace {

constexpr int write_interval = 200;  // ms

}  // namespace

Recorder::Recorder(QObject* parent) : QObject(parent) {
  timer_.setInterval(write_interval);
  connect(&timer_, &QTimer::timeout, this, &Recorder::write);
}

Recorder::~Recorder() {
  QString error;
  if (isRecording()) stop(error);
}

bool Recorder::start(QString const& path, QString& error) {
  auto file = std::make_unique<QFile>(path);
  QByteArray const head = "# Recorded by ved-desktop; docs/event-scripts.md describes the format.\n";
  if (!file->open(QIODevice::WriteOnly | QIODevice::Truncate) || file->write(head) != head.size() ||
      !file->flush()) {
    error = file->errorString();
    return false;
  }
  file_ = std::move(file);
  failed_ = false;
  timer_.start();
  qt::FormulaEdit* const formula = formula_;
  formula_ = nullptr;
  follow(formula);
  return true;
}

bool Recorder::stop(QString& error) {
  if (formula_) formula_->record(nullptr);
  write();
  timer_.stop();
  if (failed_) error = file_->errorString();
  file_.reset();
  return !failed_;
}

void Recorder::follow(qt::FormulaEdit* formula) {
  if (formula == formula_) return;
  if (formula_) formula_->record(nullptr);
  formula_ = formula;
  if (!isRecording() || !formula) return;
  // A script plays on one formula. From here on it is this one, whose recording switches its own options on.
  field::ScriptStepS plain;
  plain.word = field::SCRIPT_SET;
  for (auto const* const option : {u"decimal-comma", u"single-letters", u"suggestions"}) {
    plain.text = option;
    plain.on = plain.text == u"suggestions";
    script_.push_back(plain);
  }
  formula->record(&script_);
}

void Recorder::write() {
  if (script_.empty()) return;
  QByteArray const text = qt::toQString(script::writeEventScript(script_)).toUtf8();
  script_.clear();
  if (file_->write(text) != text.size() || !file_->flush()) failed_ = true;
}

}  // namespace zolt::desktop
