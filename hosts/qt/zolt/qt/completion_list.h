#pragma once

#include <QListView>
#include <memory>

#include "zolt/field/completion.h"
#include "zolt/qt/formula_fonts.h"

namespace zolt::qt {

class FormulaEdit;

/// The list of completions of a formula field, as a small window beside what is being typed: each entry with
/// its picture, what it is and what can be typed for it. It never has the keyboard focus; the field shows and
/// hides it and handles the keys.
class CompletionList final : public QListView {
  Q_OBJECT

 public:
  /// It belongs to `edit`. `fonts` may be null; then there are no pictures.
  CompletionList(FormulaEdit& edit, std::shared_ptr<FormulaFonts> fonts);
  ~CompletionList() override;

  /// Shows what the list holds next to `box`, which is in the field's coordinates.
  void showEntries(field::CompletionC const& completion, QRect const& box);

 signals:
  void picked(int number);
  /// The field has moved away from the list.
  void displaced();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  class Model;
  class Delegate;

  /// Follows, or forgets, the widgets around the field, whose moves leave the list behind.
  void watchParents(bool watch);

  FormulaEdit& edit_;
  Model* model_;
  Delegate* delegate_;
};

}  // namespace zolt::qt
