// Writes what the component makes of every line of the tests' corpora: the tree, its byte form, its drawing
// on both surfaces without a toolkit, its expression. The output is to be the same on every platform.
//
// usage: state_dump <folder with case files>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/oss/code_point.h"
#include "zolt/oss/quoted_text.h"
#include "zolt/script/script_runner.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/surfaces/typeset/font_set.h"
#include "zolt/surfaces/typeset/typeset_graphics.h"

namespace {

using namespace zolt;
using field::FormulaFieldC;
using math::algexpr::AlgebraicExpressionC;
using oss::PointerTC;
using oss::toUtf8;
using oss::wstring;
using namespace surfaces;

/// Logs the primitives of the textbook look, in thousandths of a unit.
class LoggingGraphicsC final : public TypesetGraphicsABC {
 public:
  using TypesetGraphicsABC::TypesetGraphicsABC;

 protected:
  void fillGlyphs(GlyphRunS const& run) const override {
    log("glyphs", {double(run.face), run.em, run.x, run.baseline});
    for (std::size_t i = 0; i < run.count; ++i) {
      log(" glyph", {double(run.glyphs[i].glyph), run.glyphs[i].x, run.glyphs[i].width});
    }
  }
  void fillPath(PathC const& path, InkE ink) const override { logPath("fill", path, ink, 0); }
  void strokePath(PathC const& path, double thickness, InkE ink) const override {
    logPath("stroke", path, ink, thickness);
  }
  void fillRule(RuleS const& rule, InkE ink) const override {
    log("rule", {rule.x1, rule.y1, rule.x2, rule.y2, rule.thickness, double(ink)});
  }

 private:
  static void log(char const* what, std::initializer_list<double> values) {
    std::cout << what;
    for (double const value : values) std::cout << ' ' << std::llround(value * 1000);
    std::cout << '\n';
  }
  static void logPath(char const* what, PathC const& path, InkE ink, double thickness) {
    log(what, {double(ink), thickness});
    for (PathStepS const& step : path.getSteps()) {
      log(" step", {double(step.verb), step.points[0].x, step.points[0].y, step.points[1].x, step.points[1].y,
                    step.points[2].x, step.points[2].y});
    }
  }
};

class DumperC {
 public:
  explicit DumperC(PointerTC<TypesetterC> typesetter) : textbook_(new LoggingGraphicsC(typesetter)) {}

  /// Reads `text` as everything that it may be: a tree, an expression in each notation, characters to type.
  void dump(std::string const& text) {
    wstring const wide = tests::fromUtf8(text);
    startOver();
    if (fields_[0]->setNotation(wide)) {
      (void)fields_[1]->setNotation(wide);
      write("notation");
      return;
    }
    dump("prefix", AlgebraicExpressionC::fromPrefixString(wide));
    dump("plain", exchange::fromPlainText(wide, nullptr));
    startOver();
    for (auto const& field : fields_) field->insertText(wide);
    write("typed");
  }

  void dumpScript(std::string const& tree, std::string const& text) {
    field::EventScriptT script;
    unsigned long position = 0;
    if (!script::readEventScript(tests::fromUtf8(text), script, position)) return;
    startOver();
    for (auto const& one : fields_) (void)one->setNotation(tests::fromUtf8(tree));
    // Pointers mean the places of this surface.
    script::ScriptRunnerC runner(*fields_[0]);
    for (field::ScriptStepS const& step : script) {
      std::cout << toUtf8(script::writeReport(runner.runAndReport(step))) << '\n';
    }
    write("after the script");
  }

 private:
  void startOver() {
    recording_->clear();
    fields_.clear();
    fields_.push_back(std::make_unique<FormulaFieldC>(recording_));
    fields_.push_back(std::make_unique<FormulaFieldC>(textbook_));
  }

  void dump(char const* what, PointerTC<AlgebraicExpressionC> const& expression) {
    if (!expression) return;
    startOver();
    for (auto const& field : fields_) field->setExpression(expression);
    write(what);
  }

  void write(char const* what) {
    std::cout << what << ": " << toUtf8(fields_[0]->writeNotation()) << '\n';
    fields_[0]->refView().display(0, 0);
    std::cout << recording_->getText();
    std::cout << toUtf8(fields_[1]->writeNotation()) << '\n';
    fields_[1]->refView().display(0, 0);
    for (auto const& field : fields_) {
      math::ved::PointS const size = field->refView().getExpressionSize();
      std::cout << "size " << size.x << ' ' << size.y << '\n';
    }
    FormulaFieldC& field = *fields_[0];
    auto const expression = field.getExpression();
    std::cout << (expression ? toUtf8(expression->toPrefixString()) : "incomplete") << '\n';
    field.run(field::COMMAND_SELECT_ALL);
    field::ClipboardContentS const content = field.copy();
    std::cout << toUtf8(oss::toHexadecimal(content.bytes)) << '\n' << toUtf8(content.plainText) << '\n';
  }

  PointerTC<RecordingGraphicsC> recording_ = new RecordingGraphicsC;
  PointerTC<LoggingGraphicsC> textbook_;
  std::vector<std::unique_ptr<FormulaFieldC>> fields_;
};

void dumpFile(std::string const& path, DumperC& dumper) {
  for (tests::CaseS const& one : tests::readCases(path)) {
    std::cout << "## " << one.where << '\n';
    for (std::string const& side : {one.input, one.expected}) {
      std::size_t const bar = side.find(" | ");
      dumper.dump(side.substr(0, bar));
      if (bar != std::string::npos) dumper.dumpScript(side.substr(0, bar), side.substr(bar + 3));
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::string error;
  PointerTC<FontSetC> const fonts = FontSetC::load(FontSetC::getDefaultFolders(), error);
  if (argc != 2 || !fonts) {
    std::cerr << "usage: state_dump <folder with case files>\n" << error << '\n';
    return 1;
  }
  std::ios::sync_with_stdio(false);
  tests::standardOperators();
  DumperC dumper(new TypesetterC(fonts));
  std::vector<std::filesystem::path> files;
  for (auto const& entry : std::filesystem::recursive_directory_iterator(argv[1])) {
    if (entry.path().extension() == ".cases") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  for (auto const& file : files) dumpFile(file, dumper);
  return std::cout.flush() ? 0 : 1;
}
