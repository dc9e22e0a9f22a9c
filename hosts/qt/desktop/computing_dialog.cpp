#include "hosts/qt/desktop/computing_dialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "hosts/qt/desktop/mnemonics.h"

namespace zolt::desktop {

namespace {

constexpr int most_digits = 1000;
constexpr int most_seconds = 3600;

}  // namespace

ComputingDialog::ComputingDialog(std::vector<EngineChoice> const& engines, QString const& engine,
                                 engine_sheet::ComputingS const& computing, QWidget* parent)
    : QDialog(parent), engines_(engines), computing_(computing), engine_(new QButtonGroup(this)) {
  setWindowTitle(tr("Computing"));
  auto* const layout = new QVBoxLayout(this);
  isOn_ = new QCheckBox(tr("Show &results under formulas"), this);
  isOn_->setChecked(computing.isOn);
  layout->addWidget(isOn_);

  auto* const box = new QGroupBox(tr("What computes"), this);
  auto* const choices = new QVBoxLayout(box);
  for (std::size_t i = 0; i < engines.size(); ++i) {
    EngineChoice const& each = engines[i];
    auto* const button = new QRadioButton(each.title, box);
    button->setEnabled(bool(each.engine));
    button->setChecked(each.id == engine);
    button->setAccessibleDescription(each.reason);
    engine_->addButton(button, int(i));
    choices->addWidget(button);
    if (each.reason.isEmpty()) continue;
    auto* const why = new QLabel(each.reason, box);
    why->setWordWrap(true);
    why->setIndent(24);
    why->setForegroundRole(QPalette::PlaceholderText);
    choices->addWidget(why);
  }
  if (!engine_->checkedButton()) engine_->button(0)->setChecked(true);
  layout->addWidget(box);

  auto* const form = new QFormLayout;
  angle_ = new QComboBox(this);
  angle_->addItem(tr("Radians"), int(math::algexpr::CAS_RADIANS));
  angle_->addItem(tr("Degrees"), int(math::algexpr::CAS_DEGREES));
  angle_->setCurrentIndex(angle_->findData(int(computing.angle)));
  form->addRow(tr("&Angles without a unit:"), angle_);
  digits_ = new QSpinBox(this);
  digits_->setRange(2, most_digits);
  digits_->setValue(int(computing.digits));
  form->addRow(tr("&Digits of decimal numbers:"), digits_);
  seconds_ = new QSpinBox(this);
  seconds_->setRange(1, most_seconds);
  seconds_->setSuffix(tr(" s"));
  seconds_->setValue(int(computing.deadline.count() / 1000));
  form->addRow(tr("&Time for a line:"), seconds_);
  layout->addLayout(form);

  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
  giveMnemonics(*this);
}

ComputingDialog::~ComputingDialog() = default;

engine_sheet::ComputingS ComputingDialog::computing() const {
  engine_sheet::ComputingS computing = computing_;
  computing.isOn = isOn_->isChecked();
  computing.angle = math::algexpr::CASAngleE(angle_->currentData().toInt());
  computing.digits = unsigned(digits_->value());
  computing.deadline = std::chrono::seconds(seconds_->value());
  return computing;
}

QString ComputingDialog::engine() const { return engines_[std::size_t(engine_->checkedId())].id; }

}  // namespace zolt::desktop
