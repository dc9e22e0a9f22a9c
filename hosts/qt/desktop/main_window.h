#pragma once

#include <QHash>
#include <QMainWindow>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "hosts/qt/desktop/appearance.h"
#include "hosts/qt/desktop/exporter.h"
#include "hosts/qt/desktop/sheet_file.h"
#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/field/commands.h"
#include "zolt/field/input_options.h"
#include "zolt/field/palette_model.h"

class QLabel;
class QMenu;
class QSettings;
class QToolButton;

namespace zolt::engine_sheet {
struct ComputingS;
}

namespace zolt::qt {
class FormulaEdit;
}

namespace zolt::desktop {

class ElidedLabel;
class HelpDialog;
class NoticeBar;
class PaletteDock;
class Recorder;
class RecoveryFile;
class RecoveryWriter;
class SheetComputer;
class SheetRow;
class SheetView;
struct RecoveredSheet;

/// The program's window: one sheet with its palette, menus and status line.
class MainWindow final : public QMainWindow {
  Q_OBJECT

 public:
  /// `fonts` must not be null. With `settings` (may be null; the caller owns them) the window opens as it was
  /// left. Unsaved changes are kept in `recoveryFolder`, unless that is empty.
  MainWindow(std::shared_ptr<qt::FormulaFonts> fonts, QSettings* settings,
             QString const& recoveryFolder = {});
  ~MainWindow() override;

  SheetView& view() { return *view_; }
  SheetComputer& computer() { return *computer_; }
  QString path() const { return path_; }
  QAction* action(QString const& name) const { return actions_.value(name); }

  /// Shows the file or, after a question, the readable part of a damaged one. On failure it reports the
  /// reason and changes nothing.
  bool open(QString const& path);
  void openSample();
  /// Shows a recovered sheet as it was: unsaved, and with its file name. `file` (may be null) continues to be
  /// its recovery file.
  void showRecovered(RecoveredSheet const& recovered, std::unique_ptr<RecoveryFile> file);
  /// Whether showing another sheet would lose nothing.
  bool isUntouched() const;
  /// Shows a notice at the top of the window about a condition that lasts.
  void tell(QString const& text);
  void setAppearance(Appearance appearance);

 public slots:
  bool save();
  bool saveAs();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  // main_window.cpp
  void connectView();
  void makeStatusBar();
  void restore();
  void remember();
  void setZoom(qreal zoom);
  void setDecimalComma(bool decimalComma);
  void askAllowedFormulas();
  void setTyping(QString const& name, bool field::InputOptionsS::*rule, bool on);
  void setStatusForm(QString const& form);
  QString inOneLine(qt::FormulaEdit const& formula) const;
  void updateActions();
  void updateStatus();
  void showState(QString const& text, QRgb colour);
  void showError(QString const& text);
  void pick(field::PaletteEntryS const& entry);
  void runInFormula(field::CommandE command);

  // main_window_compute.cpp
  using ExpressionT = oss::PointerTC<math::algexpr::AlgebraicExpressionC>;
  void makeComputeMenu();
  void updateComputeActions();
  void fillVariables(QMenu& menu, math::algexpr::CASOperationE operation);
  void compute(math::algexpr::CASOperationE operation, QString const& variable);
  /// Inserts the result below the row; rounded solutions where there are no others.
  void ask(SheetRow const& row, math::algexpr::CASRequestS const& request);
  void insertLines(SheetRow& below, std::vector<ExpressionT> const& lines);
  /// The result that is shown under the current formula; null when there is none.
  ExpressionT shownResult() const;
  /// Null when none of them has the place that the keyboard is at.
  qt::FormulaEdit* shownResultEdit() const;
  void insertResult();
  void copyResult();
  /// Gives the keyboard to what is next below the formula, or back to it.
  void enterBelow();
  QString whyNoResult(math::algexpr::CASResultS const& result) const;
  void showGraph(bool on);
  void updateGraphAction();
  void askComputing();
  void setComputing(engine_sheet::ComputingS const& computing);
  void setEngine(QString const& id);
  void restoreComputing();
  void rememberComputing();

  // main_window_actions.cpp
  struct ActionS {
    char const* name;
    char const* text;
    char const* keys;  // portable; separated by ", "
  };
  void makeActions();
  QAction* add(QMenu& menu, ActionS const& entry, std::function<void()> run);
  QAction* addToggle(QMenu& menu, ActionS const& entry, std::function<void(bool)> run);
  void makeFileMenu();
  void makeEditMenu();
  void makeTableMenu(QMenu& menu);
  void makeInsertMenu();
  void makeViewMenu();
  void makeHelpMenu();
  void makeToolBar();
  void showHelp();
  void showAbout();

  // main_window_copies.cpp
  struct CopyFormS;
  static std::vector<CopyFormS> const& copyForms();
  void makeCopyMenu(QMenu& menu);
  void enableCopies();
  /// Puts a text on the clipboard; an empty one is none.
  void copyText(QString const& text);
  void copyPicture();
  /// Shows in the menu what each form would copy.
  void previewCopies();

  // main_window_files.cpp
  /// Asks what to do with unsaved changes. Returns false when the sheet is to stay.
  bool mayLeave();
  void newSheet();
  /// The folder that file dialogs open first.
  QString folder() const;
  void openAsked();
  bool showSheet(Sheet const& sheet, QString const& path);
  bool openDamaged(QString const& path, Sheet const& readable, QString const& why);
  bool saveTo(QString const& path);
  /// Asks when the file has been changed by others meanwhile. Returns false when it must not be replaced.
  bool mayReplace(QString const& path);
  void setPath(QString const& path);
  QStringList recentFiles() const;
  void addRecentFile(QString const& path);
  void fillRecentMenu();
  bool importDocument(QString const& path);
  void importAsked();
  Exporter makeExporter() const;
  /// With a picture beside it of each graph.
  void exportDocument(QString const& path, sheet::DocumentKindE kind);
  void exportSheet();
  void exportFormula();
  QString askExportPath(QString const& title, QString const& others = {});
  /// Empty `bytes` mean that the picture would be too large.
  /// False, after telling so, when the file could not be written.
  bool writeExport(QString const& path, QByteArray const& bytes);
  void printAsked();
  void record(bool on);
  void complain(QString const& what, QString const& why);
  QString askPathToWrite(QString const& title, QString const& filter, QString const& suffix);

  std::shared_ptr<qt::FormulaFonts> fonts_;
  QSettings* settings_;
  SheetView* view_;
  PaletteDock* palette_;
  Recorder* recorder_;
  NoticeBar* notices_;
  SheetComputer* computer_;
  RecoveryWriter* recovery_ = nullptr;  // null: nothing is kept for recovery
  QHash<QString, QAction*> actions_;
  QMenu* recentMenu_ = nullptr;
  QString engine_;  // its id
  QLabel* stateDot_ = nullptr;
  ElidedLabel* state_ = nullptr;
  ElidedLabel* source_ = nullptr;
  bool tellsError_ = false;  ///< the status line, until the formula changes
  QToolButton* zoomLabel_ = nullptr;
  QTimer statusTimer_;
  QString path_;
  FileStamp savedAt_;  // the file when it was last read or written here
  Appearance appearance_ = Appearance::System;
  QString statusForm_;  // of the formula in the status line: "text", "words" or "prefix"
  bool decimalComma_ = false;
  bool mayPaste_ = false;
};

}  // namespace zolt::desktop
