// A formula field in a window, and under it what an algebra engine would get.
#include <QApplication>
#include <QLabel>
#include <QVBoxLayout>

#include "zolt/qt/formula_edit.h"

using zolt::qt::FormulaEdit;

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  QWidget window;
  auto* const layout = new QVBoxLayout(&window);
  auto* const edit = new FormulaEdit(QStringLiteral("sqrt(x^2+1)/2"));
  auto* const result = new QLabel(edit->prefix());
  QObject::connect(edit, &FormulaEdit::expressionChanged, result,
                   [=] { result->setText(edit->isComplete() ? edit->prefix() : edit->incompleteReason()); });
  layout->addWidget(edit);
  layout->addWidget(result);
  window.show();
  return QApplication::exec();
}
