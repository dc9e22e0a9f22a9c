#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMenu>
#include <QMimeData>
#include <algorithm>
#include <memory>

#include "hosts/qt/desktop/main_window.h"
#include "hosts/qt/desktop/sheet_view.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/typst.h"
#include "zolt/mathjson/mathjson.h"
#include "zolt/mathml/mathml.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/qt/formula_mime.h"
#include "zolt/qt/text.h"

// The formula, or what is selected of it, as a text for other programs.

namespace zolt::desktop {

using math::algexpr::AlgebraicExpressionC;
using qt::FormulaEdit;

namespace {

constexpr QChar preview_mark = u'\u2003';  // between a name and what it would copy
constexpr int preview_width = 360;
constexpr qsizetype preview_length = 400;  // more than fits, since a long text takes time to measure

std::unique_ptr<QMimeData> copyOf(FormulaEdit const& formula) {
  return std::unique_ptr<QMimeData>(formula.hasSelection() ? formula.createMimeDataFromSelection()
                                                           : formula.createMimeData());
}

QString asText(FormulaEdit const& formula) {
  auto const copied = copyOf(formula);
  return copied ? copied->text() : QString();
}

QString asWords(FormulaEdit const& formula) {
  return formula.hasSelection() ? formula.selectedWords() : formula.readableText();
}

QString asPrefix(FormulaEdit const& formula) {
  auto const copied = copyOf(formula);
  return copied ? QString::fromUtf8(copied->data(QLatin1String(qt::prefix_mime_type))) : QString();
}

/// What distinguishes one text from another: of MathML what is in its outermost element.
QString previewOf(QString text) {
  if (text.startsWith(QLatin1String("<math"))) {
    text = text.mid(text.indexOf(u'>') + 1);
    text.chop(qsizetype(sizeof("</math>") - 1));
  }
  return text.left(preview_length);
}

/// In the notation of a writer.
template <class WriterT>
QString write(FormulaEdit const& formula, WriterT writer) {
  auto const expression = AlgebraicExpressionC::fromPrefixString(qt::toWstring(asPrefix(formula)));
  return expression ? qt::toQString(writer(*expression)) : QString();
}

}  // namespace

struct MainWindow::CopyFormS {
  ActionS entry;
  /// What is copied; empty where the formula has no such form.
  QString (*text)(FormulaEdit const&);
};

std::vector<MainWindow::CopyFormS> const& MainWindow::copyForms() {
  using FormulaT = FormulaEdit const&;
  static std::vector<CopyFormS> const forms{
      {{"copy-text", "&Text", "Ctrl+Shift+C"}, asText},
      {{"copy-latex", "&LaTeX", ""}, [](FormulaT formula) { return write(formula, exchange::toLatex); }},
      {{"copy-mathml", "&MathML", ""},
       [](FormulaT formula) {
         return write(formula, [](auto const& expression) { return mathml::toMathml(expression); });
       }},
      {{"copy-content-mathml", "&Content MathML", ""},
       [](FormulaT formula) { return write(formula, mathml::toContentMathml); }},
      {{"copy-mathjson", "Math&JSON", ""},
       [](FormulaT formula) { return write(formula, mathjson::toMathJson); }},
      {{"copy-typst", "T&ypst", ""}, [](FormulaT formula) { return write(formula, exchange::toTypst); }},
      {{"copy-words", "&Words", ""}, asWords},
      {{"copy-prefix", "&Prefix Notation", ""}, asPrefix}};
  return forms;
}

void MainWindow::makeCopyMenu(QMenu& menu) {
  for (CopyFormS const& form : copyForms()) {
    add(menu, form.entry, [this, &form] {
      FormulaEdit const* const formula = view_->currentFormula();
      if (formula) copyText(form.text(*formula));
    });
  }
  add(menu, {"copy-picture", "P&icture", ""}, [this] { copyPicture(); });
  connect(&menu, &QMenu::aboutToShow, this, &MainWindow::previewCopies);
  connect(&menu, &QMenu::aboutToHide, this, [this, &menu] {
    for (QAction* const copy : menu.actions()) copy->setText(copy->text().section(preview_mark, 0, 0));
    enableCopies();
  });
}

// What a form would copy is only looked at when the menu opens, so keys work for incomplete formulas, too.
void MainWindow::enableCopies() {
  FormulaEdit const* const formula = view_->currentFormula();
  for (CopyFormS const& form : copyForms())
    action(QLatin1String(form.entry.name))->setEnabled(formula && !formula->isEmpty());
}

void MainWindow::copyText(QString const& text) {
  if (text.isEmpty()) {
    showError(tr("Not copied: the formula is incomplete"));
  } else {
    QGuiApplication::clipboard()->setText(text);
  }
}

void MainWindow::copyPicture() {
  FormulaEdit const* const formula = view_->currentFormula();
  auto const copied = formula ? copyOf(*formula) : nullptr;
  if (copied) QGuiApplication::clipboard()->setImage(copied->imageData().value<QImage>());
}

// The previews begin side by side. The column that menus have after a tab is flush right, and far away.
void MainWindow::previewCopies() {
  FormulaEdit const* const formula = view_->currentFormula();
  QFontMetrics const metrics = fontMetrics();
  auto const nameOf = [this](CopyFormS const& form) {
    return action(QLatin1String(form.entry.name))->text().section(preview_mark, 0, 0);
  };
  auto const widthOf = [&](QString name) { return metrics.horizontalAdvance(name.remove(u'&')); };
  int widest = 0;
  for (CopyFormS const& form : copyForms()) widest = std::max(widest, widthOf(nameOf(form)));
  int const blank = std::max(1, metrics.horizontalAdvance(QChar::Nbsp));
  for (CopyFormS const& form : copyForms()) {
    QAction& copy = *action(QLatin1String(form.entry.name));
    QString const name = nameOf(form);
    QString preview = previewOf(formula ? form.text(*formula) : QString());
    preview = metrics.elidedText(preview, Qt::ElideRight, preview_width).replace(u'&', QLatin1String("&&"));
    copy.setEnabled(!preview.isEmpty());
    QString const room((widest - widthOf(name)) / blank, QChar::Nbsp);
    copy.setText(preview.isEmpty() ? name : name + preview_mark + room + preview);
  }
}

}  // namespace zolt::desktop
