#include "hosts/cli/command_convert.h"

#include <memory>

#include "hosts/cli/batch.h"
#include "hosts/cli/dump.h"
#include "hosts/cli/installed_fonts.h"
#include "hosts/cli/options.h"
#include "hosts/cli/utf8_text.h"
#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/exchange/typst.h"
#include "zolt/mathjson/mathjson.h"
#include "zolt/mathml/mathml.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::cli {

namespace {

constexpr unsigned long progress_step = 1000;

enum TargetE {
  TO_PLAIN,
  TO_LATEX,
  TO_MATHML,
  TO_CONTENT_MATHML,
  TO_MATHJSON,
  TO_TYPST,
  TO_SPEECH,
  TO_INFIX,
  TO_PREFIX,
  TO_TREE,
  TO_TOKENS,
  TO_LAYOUT,
  TO_DRAWING
};
enum SurfaceE { SURFACE_RECORDING, SURFACE_TYPESET };

constexpr char footer[] =
    R"(Every line of input gives one line of output, an empty one when it is blank or wrong, so that
lines keep their numbers. "layout" and "drawing" give a block of lines followed by a blank line.

Examples:
  ved convert 'sqrt(x^2+1)/2'                             in prefix notation
  ved convert --from prefix --to plain '/(+(a,b),2)'      and back
  ved convert --from latex '\frac{a+b}{2}'                from LaTeX
  ved convert --to speech --language german '1/2'         in words
  ved convert --to tree < formulas.txt                    as the editor holds them
  ved convert --to layout --surface typeset 'x^2'         sizes and places, with the real fonts
  ved convert -- '-x^2'                                   an expression that begins with "-")";

struct SettingsS {
  InputS input;
  NotationE from = NOTATION_PLAIN;
  CatalogueE catalogue = CATALOGUE_EXTENDED;
  TargetE to = TO_PREFIX;
  SurfaceE surface = SURFACE_RECORDING;
  exchange::SpeechStyleS speech;
};

class ConverterC {
 public:
  ConverterC(SettingsS const& settings, oss::PointerTC<math::ved::GraphicsABC> graphics)
      : settings_(settings), graphics_(std::move(graphics)) {}

  /// Returns false, with `fault`, when `text` cannot be read or has no such form.
  bool convert(oss::wstring const& text, std::string& out, FaultS& fault) {
    // Tokens are shown even of text that the grammar refuses: that is when they are most useful.
    if (settings_.from == NOTATION_INFIX && settings_.to == TO_TOKENS) {
      out = dumpTokens(text);
      return true;
    }
    std::unique_ptr<FormulaC> const formula = FormulaC::read(text, settings_.from, fault);
    return formula && write(*formula, out, fault);
  }

 private:
  template <class WriterT>
  static bool writeWith(WriterT writer, FormulaC& formula, std::string& out, FaultS& fault) {
    auto const expression = formula.getExpression(fault);
    if (expression) out = toUtf8(writer(*expression));
    return static_cast<bool>(expression);
  }

  bool write(FormulaC& formula, std::string& out, FaultS& fault) {
    switch (settings_.to) {
      case TO_PLAIN:
        return writeWith([](auto const& one) { return exchange::toPlainText(one); }, formula, out, fault);
      case TO_LATEX:
        return writeWith(exchange::toLatex, formula, out, fault);
      case TO_MATHML:
        return writeWith([](auto const& one) { return mathml::toMathml(one); }, formula, out, fault);
      case TO_CONTENT_MATHML:
        return writeWith(mathml::toContentMathml, formula, out, fault);
      case TO_MATHJSON:
        return writeWith(mathjson::toMathJson, formula, out, fault);
      case TO_TYPST:
        return writeWith(exchange::toTypst, formula, out, fault);
      case TO_SPEECH:
        out = toUtf8(formula.speak(settings_.speech));
        return true;
      case TO_PREFIX: {
        auto const expression = formula.getExpressionOfTree(fault);
        if (expression) out = toUtf8(expression->toPrefixString());
        return static_cast<bool>(expression);
      }
      case TO_INFIX:
      case TO_TOKENS: {
        oss::wstring infix;
        if (!formula.getInfix(infix, fault)) return false;
        out = settings_.to == TO_INFIX ? toUtf8(infix) : dumpTokens(infix);
        return true;
      }
      case TO_TREE:
        out = toUtf8(math::ved::writeTreeNotation(formula.refTree()));
        return true;
      case TO_LAYOUT:
        out = dumpLayout(formula.refTree(), *graphics_);
        return true;
      case TO_DRAWING:
        out = dumpDrawing(formula.refTree());
        return true;
    }
    return false;
  }

  SettingsS const& settings_;
  oss::PointerTC<math::ved::GraphicsABC> graphics_;
};

ExitStatusE run(SettingsS const& settings) {
  provideOperators(settings.catalogue);
  oss::PointerTC<math::ved::GraphicsABC> graphics(new surfaces::RecordingGraphicsC);
  if (settings.surface == SURFACE_TYPESET) {
    std::string error;
    auto const typesetter = makeTypesetter(error);
    if (!typesetter) {
      printMessage(error);
      return EXIT_STATUS_FAILED;
    }
    graphics = oss::PointerTC<math::ved::GraphicsABC>(new MeasuringGraphicsC(typesetter));
  }

  ConverterC converter(settings, graphics);
  StandardOutputC output;
  BatchC batch(settings.input, progress_step, output);
  while (batch.next()) {
    std::string converted;
    FaultS fault;
    if (batch.hasText() && !converter.convert(batch.getText(), converted, fault)) {
      converted.clear();
      batch.report(fault);
    }
    output.write(converted + '\n');
  }
  return batch.finish();
}

}  // namespace

void addConvertCommand(CLI::App& program, ActionT& action) {
  CLI::App& command = addCommand(program, "convert", "Write expressions in another notation", footer);
  auto const settings = std::make_shared<SettingsS>();
  addInputOptions(command, settings->input, settings->from);
  addChoice<TargetE>(command, "--to", settings->to,
                     {{"plain", TO_PLAIN},
                      {"latex", TO_LATEX},
                      {"mathml", TO_MATHML},
                      {"content-mathml", TO_CONTENT_MATHML},
                      {"mathjson", TO_MATHJSON},
                      {"typst", TO_TYPST},
                      {"speech", TO_SPEECH},
                      {"infix", TO_INFIX},
                      {"prefix", TO_PREFIX},
                      {"tree", TO_TREE},
                      {"tokens", TO_TOKENS},
                      {"layout", TO_LAYOUT},
                      {"drawing", TO_DRAWING}},
                     "Notation to write");
  CLI::Option const& surface =
      addChoice<SurfaceE>(command, "--surface", settings->surface,
                          {{"recording", SURFACE_RECORDING}, {"typeset", SURFACE_TYPESET}},
                          "Measures that a layout is made with: fixed ones or those of the real fonts");
  addCatalogue(command, settings->catalogue);
  SpeechOptionsS const speech = addSpeech(command, settings->speech, "speech");
  onChosen(command, [settings, &surface, speech, &action] {
    bool const isSpeech = settings->to == TO_SPEECH;
    if (isGiven(speech.language) && !isSpeech) refuse("--language", "it goes with --to speech only");
    if (isGiven(speech.verbosity) && !isSpeech) refuse("--verbosity", "it goes with --to speech only");
    if (isGiven(surface) && settings->to != TO_LAYOUT) refuse("--surface", "it goes with --to layout only");
    action = [settings] { return run(*settings); };
  });
}

}  // namespace zolt::cli
