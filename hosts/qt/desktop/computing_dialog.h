#pragma once

#include <QDialog>
#include <vector>

#include "hosts/qt/desktop/engine_choice.h"
#include "zolt/engines/sheet/sheet_engine.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QSpinBox;

namespace zolt::desktop {

/// The settings of computing: the engine, what a plain number is as an angle, digits, how long to wait.
class ComputingDialog final : public QDialog {
  Q_OBJECT

 public:
  ComputingDialog(std::vector<EngineChoice> const& engines, QString const& engine,
                  engine_sheet::ComputingS const& computing, QWidget* parent);
  ~ComputingDialog() override;

  /// As the user has set them; the engine by its id.
  engine_sheet::ComputingS computing() const;
  QString engine() const;

 private:
  std::vector<EngineChoice> engines_;
  engine_sheet::ComputingS computing_;
  QButtonGroup* engine_;
  QCheckBox* isOn_;
  QComboBox* angle_;
  QSpinBox* digits_;
  QSpinBox* seconds_;
};

}  // namespace zolt::desktop
