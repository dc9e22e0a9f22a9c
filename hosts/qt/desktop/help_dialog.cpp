#include "hosts/qt/desktop/help_dialog.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QKeySequence>
#include <QLineEdit>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

#include "hosts/qt/desktop/mnemonics.h"
#include "zolt/field/commands.h"
#include "zolt/qt/text.h"

namespace zolt::desktop {

using qt::toQString;

namespace {

QString tr(char const* text) { return HelpDialog::tr(text); }

/// Key chords as the platform writes them.
QString nativeKeys(QString const& keys) {
  QStringList chords;
  for (QString const& chord : keys.split(QStringLiteral(", "), Qt::SkipEmptyParts)) {
    chords
        << QKeySequence(chord, QKeySequence::PortableText).toString(QKeySequence::NativeText).toHtmlEscaped();
  }
  return chords.join(QStringLiteral("<br/>"));
}

QString heading(QString const& text) { return QStringLiteral("<h3>%1</h3>").arg(text.toHtmlEscaped()); }

QString paragraph(QString const& html) { return QStringLiteral("<p>%1</p>").arg(html); }

class Table {
 public:
  void add(QString const& left, QString const& right) {
    rows_ += QStringLiteral(
                 "<tr><td style='padding:2px 18px 2px 0; white-space:nowrap'><b>%1</b></td>"
                 "<td style='padding:2px 0'>%2</td></tr>")
                 .arg(left, right);
  }
  QString html() const { return QStringLiteral("<table cellspacing='0'>%1</table>").arg(rows_); }

 private:
  QString rows_;
};

QString makeTyping() {
  QString html = heading(tr("Typing"));
  html += paragraph(tr(
      "Type a formula as you would in one line: it takes its shape as you go. <b>1/2</b> becomes a "
      "fraction, <b>x^2</b> a power, <b>sqrt(</b> a root; <b>pi</b> and the names of Greek letters "
      "become the letters, <b>x_1</b> gets an index, <b>f'</b> a prime, <b>oo</b> is infinity, <b>&lt;=</b> "
      "becomes ≤. Whatever was done for you, one undo takes back."));
  html += paragraph(
      tr("Exponents and denominators end where they end in such a line: <b>x^2/2+1/3</b> is a sum of two "
         "fractions. Brackets hold more together, <b>1/(1+x)</b>, <b>e^(i*pi)</b>, and vanish when they are "
         "closed."));
  html += paragraph(
      tr("<b>[0,1)</b> is an interval, <b>{a,b}</b> a set, <b>lim(x-&gt;0,</b> a limit, from one side with "
         "<b>0^+</b>, <b>||x||</b> a norm; <b>prod(</b>, <b>binom(</b>, <b>vec(</b>, <b>index(</b> and their "
         "like are typed as "
         "<b>sqrt(</b> is."));
  html += paragraph(tr(
      "<b>[a,b;c,d]</b> is a matrix, <b>det(</b> a determinant; <b>cases(</b> has values and conditions. In "
      "a cell <b>,</b> leads to the next one or a new column, <b>;</b> or <b>Enter</b> to the next row or "
      "a new one, <b>Tab</b> to the next cell and out of the last one. The right button has what inserts, "
      "deletes and moves rows and columns. Shift with an arrow, or dragging, selects cells, which are "
      "copied to and pasted from spreadsheets as they are."));
  html += paragraph(
      tr("A backslash opens a list of everything that can be inserted: type a part of its name, as in "
         "<b>\\fr</b> or <b>\\alpha</b>, and press <b>Tab</b> or <b>Enter</b>. Names that you type without "
         "it are suggested after a while; <b>↓</b> leads into that list."));
  html += paragraph(
      tr("<b>Tab</b> leads to the next empty place, <b>→</b> or a blank out of an exponent or a fraction. "
         "What is selected when you type an operator becomes its operand. On an incomplete formula the "
         "Enter key marks what is missing and goes on."));
  return html;
}

QString makeComputing() {
  QString html = heading(tr("Computing"));
  html += paragraph(tr(
      "Under a formula is its result, exact after = and as a decimal number after ≈, a moment after you "
      "have typed it. Results can be selected, copied and dragged. One that is pale is being computed "
      "again; <b>Esc</b> stops what takes long. <b>F6</b> leads to the result, from there to the graph and "
      "back; <b>Ctrl+Shift+R</b> copies the result, <b>Ctrl+Shift+Return</b> makes a line of it. Exports "
      "and prints have the results that are shown."));
  html += paragraph(
      tr("<b>a:=2</b>, <b>f(x):=x^2</b> and <b>2:>a</b> define names for the lines below. A change computes "
         "again what depends on it, and nothing else."));
  html += paragraph(
      tr("The menu Compute, also under the right button, simplifies, expands, factors, solves, "
         "differentiates and integrates the selection, or else the formula; what comes out is a new line "
         "below. When a formula has no value, a click on the reason, or <b>F5</b>, selects the part that it "
         "is about."));
  html += paragraph(
      tr("<b>Ctrl+G</b> shows the graph of an expression in one variable. Click on it: the wheel then zooms "
         "about the pointer, dragging moves; so do the arrow keys, <b>+</b> and <b>−</b>; <b>Home</b> shows "
         "the first view again, <b>Shift</b> with the arrow keys reads values, <b>Esc</b> leads back to the "
         "formula. Graphs are saved and exported with the sheet."));
  html += paragraph(
      tr("Compute > Computing Settings has the engine, the unit of angles, the digits and the time that a "
         "line may take. Giac, a whole algebra system, can be chosen where its package is installed."));
  html += heading(tr("Restricting formulas"));
  html += paragraph(
      tr("View > Restrict Formulas lets only certain formulas be entered: <b>number</b>; <b>names x y</b>, "
         "only these; <b>polynomial x</b>; <b>nodes 50</b>, at most so many numbers, names and operations. "
         "<b>or</b> is between alternatives, <b>;</b> between what must all hold: <b>number or names x y; "
         "nodes 50</b>. What is refused is said in the status line. Formulas that are there stay."));
  return html;
}

QString makeCommands() {
  Table table;
  for (field::CommandS const& command : field::commands()) {
    if (command.keys.empty()) continue;
    table.add(nativeKeys(toQString(command.keys)), toQString(command.help).toHtmlEscaped());
  }
  return heading(tr("Keys in a formula")) + table.html();
}

QString makeActions(QList<QAction*> const& actions) {
  Table table;
  table.add(nativeKeys(QStringLiteral("Return")), tr("Goes to the next formula, at the end to a new one."));
  table.add(nativeKeys(QStringLiteral("Up, Down")),
            tr("At the edge of a formula: to the line before or after."));
  table.add(nativeKeys(QStringLiteral("Backspace, Delete")), tr("On an empty line: deletes the line."));
  table.add(tr("Ctrl and the wheel").toHtmlEscaped(),
            tr("Zooms, and keeps what is under the pointer in place."));
  for (QAction const* const action : actions) {
    QStringList keys;
    for (QKeySequence const& key : action->shortcuts()) keys << key.toString(QKeySequence::PortableText);
    if (keys.isEmpty()) continue;
    QString text = action->text();
    text.remove(u'&').remove(QStringLiteral("…"));
    table.add(nativeKeys(keys.join(QStringLiteral(", "))), text.toHtmlEscaped());
  }
  return heading(tr("Keys of the sheet")) + table.html();
}

QString makePointer() {
  Table table;
  table.add(tr("Double click"), tr("Selects the name, number or construct there."));
  table.add(tr("Triple click"), tr("Selects the row."));
  table.add(tr("Drag the selection"), tr("Moves it to another place or formula; with Ctrl, copies it."));
  table.add(tr("The bar below a long formula"),
            tr("Shows how much of it is seen; dragging it shows the rest."));
  table.add(tr("Middle button"), tr("Inserts what was selected last, where the platform has this."));
  return heading(tr("Pointer")) + table.html();
}

QString makePalette(std::vector<field::PaletteGroupS> const& palette) {
  QString html = heading(tr("What can be typed for the buttons of the palette"));
  for (field::PaletteGroupS const& group : palette) {
    Table table;
    for (field::PaletteEntryS const& entry : group.entries) {
      if (entry.shortcut.empty()) continue;
      QString const what = entry.label == entry.insert
                               ? toQString(entry.title)
                               : toQString(entry.title) + QStringLiteral("  ") + toQString(entry.label);
      table.add(toQString(entry.shortcut).toHtmlEscaped(), what.toHtmlEscaped());
    }
    html += QStringLiteral("<h4>%1</h4>").arg(toQString(group.title).toHtmlEscaped()) + table.html();
  }
  return html;
}

}  // namespace

QString makeHelp(std::vector<field::PaletteGroupS> const& palette, QList<QAction*> const& actions) {
  return makeTyping() + makeComputing() + makeCommands() + makeActions(actions) + makePointer() +
         makePalette(palette);
}

HelpDialog::HelpDialog(std::vector<field::PaletteGroupS> const& palette, QList<QAction*> const& actions,
                       QWidget* parent)
    : QDialog(parent) {
  setWindowTitle(tr("Keys and Typing"));
  resize(640, 720);
  auto* const layout = new QVBoxLayout(this);
  auto* const search = new QLineEdit(this);
  search->setPlaceholderText(tr("Search"));
  search->setClearButtonEnabled(true);
  auto* const page = new QTextBrowser(this);
  page->setFrameShape(QFrame::NoFrame);
  page->setHtml(makeHelp(palette, actions));
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  giveMnemonics(*this);
  // Enter continues the search.
  buttons->button(QDialogButtonBox::Close)->setAutoDefault(false);
  auto const find = [page, search] {
    if (search->text().isEmpty() || page->find(search->text())) return;
    page->moveCursor(QTextCursor::Start);
    page->find(search->text());
  };
  connect(search, &QLineEdit::textChanged, page, [=] {
    page->moveCursor(QTextCursor::Start);
    find();
  });
  connect(search, &QLineEdit::returnPressed, page, find);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(search);
  layout->addWidget(page);
  layout->addWidget(buttons);
  search->setFocus();
}

HelpDialog::~HelpDialog() = default;

}  // namespace zolt::desktop
