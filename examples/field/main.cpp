// A formula field without a window: everything that a host does with it, on a drawing surface made of
// characters.
#include <iostream>

#include "character_grid.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/field/formula_field.h"

using namespace zolt::field;
using namespace zolt::math;
using zolt::oss::PointerTC;

namespace {

/// A clipboard that would be the system's. This one prints what a person copies.
class PrintingClipboardC : public ClipboardABC {
 public:
  void write(ClipboardContentS const& content) override {
    content_ = content;
    std::cout << "copied: " << toUtf8(content.plainText) << "\n\n";
  }
  ClipboardContentS read() const override { return content_; }
  bool hasContent() const override { return !content_.isEmpty(); }

 private:
  ClipboardContentS content_;
};

/// Allows expressions in which there is no "y".
class WithoutYC : public algexpr::ConstraintsBC {
 public:
  bool check(PointerTC<algexpr::AlgebraicExpressionC> expression) const override {
    return expression->toPrefixString().find(u'y') == wstring::npos;
  }
};

void paint(FormulaFieldC const& field, CharacterGridC const& grid) {
  field.crefView().display(0, 0);
  for (ved::RectangleS const& band : field.getSelectionRectangles()) {
    std::cout << "selected from " << band.left << " to " << band.right << '\n';
  }
  std::cout << grid.toString() << "caret at " << field.getCaretRectangle().left << "\n\n";
}

void type(FormulaFieldC& field, wstring const& text) {
  for (char16_t const& c : text) {
    if (!field.typeCharacter(c)) std::cout << "refused: " << toUtf8({&c, 1}) << "\n\n";
  }
}

void report(FormulaFieldC const& field) {
  FormulaDiagnosisS const found = field.diagnose();
  if (found.expression) {
    std::cout << "expression: " << toUtf8(found.expression->toPrefixString()) << "\n\n";
  } else {
    auto const& box = found.error.box;
    std::cout << toUtf8(found.error.message) << ", at " << box.left << ',' << box.top << " to " << box.right
              << ',' << box.bottom << "\n\n";
  }
}

}  // namespace

int main() {
  // Once per process: the operators that the editor is to know.
  auto const session = algexpr::CASSessionBC::getSession();
  zolt::catalogue::registerStandardOperators(*ved::OperatorListRepositoryC::lookup(session->getEngine()));

  // A field on a surface of ours, with a formula to edit.
  PointerTC<CharacterGridC> const grid(new CharacterGridC);
  FormulaFieldC field(grid);
  common::ReadErrorS error;
  if (!field.setPlainText(u"(x^2+1)/sqrt(x)", &error)) return 1;
  paint(field, *grid);

  // What a person does: Right gives up the selection, "+1" is typed after the fraction.
  field.pressKey(ved::KEY_RIGHT, false);
  type(field, u"+1");
  paint(field, *grid);
  report(field);

  // A typed run is one step to undo. Commands have names, titles and keys for menus.
  field.run(COMMAND_UNDO);
  std::cout << toUtf8(commands()[COMMAND_REDO].title) << (field.isEnabled(COMMAND_REDO) ? "" : " (disabled)")
            << "\n\n";
  field.run(COMMAND_REDO);

  // Something is missing: the sentence, and the box to mark. Asking moves nothing.
  type(field, u"-");
  report(field);

  // Copied in several forms, pasted in the best one that the clipboard has.
  field.setClipboard(new PrintingClipboardC);
  field.run(COMMAND_UNDO);
  field.run(COMMAND_SELECT_ALL);
  field.run(COMMAND_COPY);
  field.pressPointer(1000, 50);
  field.releasePointer();
  type(field, u"-");
  field.run(COMMAND_PASTE);
  paint(field, *grid);

  // Constraints refuse what the program cannot use, typed or set.
  field.setConstraints(new WithoutYC);
  type(field, u"*y");
  if (!field.setPlainText(u"x+y", &error)) std::cout << toUtf8(error.message) << '\n';
  return 0;
}
