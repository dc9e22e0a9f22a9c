#include "hosts/cli/command_replay.h"

#include <algorithm>
#include <memory>

#include "hosts/cli/installed_fonts.h"
#include "hosts/cli/options.h"
#include "hosts/cli/picture.h"
#include "hosts/cli/standard_output.h"
#include "hosts/cli/utf8_text.h"
#include "zolt/script/script_runner.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::cli {

namespace {

constexpr char footer[] =
    R"(Event scripts are what a person does to a formula field, a step on each line; docs/event-scripts.md
describes them. Without -o and --trace the formula at the end is written in tree notation, with its caret
and selection.

Examples:
  printf 'type "sqrt(x)/2"\nundo\n' | ved replay --trace -     every step with the formula after it
  ved replay -o end.svg session.txt                           a picture of the end)";

enum SurfaceE { SURFACE_TYPESET, SURFACE_RECORDING };

struct SettingsS {
  std::string script;
  CatalogueE catalogue = CATALOGUE_EXTENDED;
  std::string output;
  bool trace = false;
  SurfaceE surface = SURFACE_TYPESET;
};

/// Where the text begins that no quote ends; `end` when there is none.
std::size_t findOpenQuote(oss::wstring const& text, std::size_t begin, std::size_t end) {
  std::size_t open = end;
  for (std::size_t i = begin; i < end; ++i) {
    if (text[i] == u'\\' && open < end) {
      ++i;
    } else if (text[i] == u'"') {
      open = open == end && i > begin && text[i - 1] == u' ' ? i : end;
    }
  }
  return open;
}

/// Returns false, and prints the reason, when the file cannot be read or is not a script.
bool readScript(std::string const& path, field::EventScriptT& script) {
  LineSourceC source({{}, path});
  oss::wstring text;
  std::vector<std::size_t> starts;
  LineS line;
  while (source.next(line)) {
    oss::wstring decoded;
    oss::Utf8FaultS bad;
    if (line.tooLong || !fromUtf8(line.bytes, decoded, &bad)) {
      printFault(line.place, decoded,
                 {line.tooLong ? "the line is too long" : "this is not UTF-8", !line.tooLong, bad.character,
                  bad.character + 1});
      return false;
    }
    starts.push_back(text.size());
    text += decoded + u'\n';
  }
  if (!source.finish()) return false;

  unsigned long position = 0;
  if (script::readEventScript(text, script, position)) return true;
  auto const after = std::upper_bound(starts.begin(), starts.end(), position);
  std::size_t const start = *(after - 1);
  std::size_t const end = std::min(text.find(u'\n', start), text.size());
  std::string const name = path == "-" ? "standard input" : path;
  std::size_t const quote = findOpenQuote(text, position, end);
  FaultS fault{"this is no step of a script", true, position - start, end - start};
  if (quote < end) fault = {"the quote after this text is missing", true, quote - start, end - start};
  printFault(name + ':' + std::to_string(after - starts.begin()), text.substr(start, end - start), fault);
  return false;
}

/// Returns null, and prints the reason, when the fonts are missing.
oss::PointerTC<math::ved::GraphicsABC> makeSurface(SurfaceE surface) {
  if (surface == SURFACE_RECORDING) {
    return new surfaces::RecordingGraphicsC(surfaces::RecordingGraphicsC::LOG_NOTHING);
  }
  std::string error;
  auto const typesetter = makeTypesetter(error);
  if (typesetter) return new MeasuringGraphicsC(typesetter);
  printMessage(error);
  return nullptr;
}

bool writePicture(field::FormulaFieldC const& field, std::string const& path, std::string& error) {
  auto const typesetter = makeTypesetter(error);
  if (!typesetter) return false;
  FaultS fault;
  auto const formula =
      FormulaC::read(math::ved::writeTreeNotation(field.crefView().crefRoot()), NOTATION_TREE, fault);
  if (!formula) {
    error = fault.message;
    return false;
  }
  PictureC picture(typesetter);
  picture.drawFormula(*formula);
  surfaces::PictureFormatE format = surfaces::PICTURE_SVG;
  findPictureFormat(path, format);
  return picture.write(path, format, error);
}

ExitStatusE run(SettingsS const& settings) {
  provideOperators(settings.catalogue);
  field::EventScriptT script;
  if (!readScript(settings.script, script)) return EXIT_STATUS_FAILED;
  auto const surface = makeSurface(settings.surface);
  if (!surface) return EXIT_STATUS_FAILED;

  field::FormulaFieldC field(surface);
  script::ScriptRunnerC runner(field);
  StandardOutputC output;
  for (field::ScriptStepS const& step : script) {
    script::StepReportS const report = runner.runAndReport(step);
    if (settings.trace) output.write(toUtf8(script::writeReport(report)) + '\n');
  }
  if (!settings.output.empty()) {
    std::string error;
    if (!writePicture(field, settings.output, error)) {
      printMessage(error);
      return EXIT_STATUS_FAILED;
    }
    output.writeNames(settings.output);
  } else if (!settings.trace) {
    output.write(toUtf8(field.writeNotation()) + '\n');
  }
  return output.finish() ? EXIT_STATUS_OK : EXIT_STATUS_FAILED;
}

}  // namespace

void addReplayCommand(CLI::App& program, ActionT& action) {
  CLI::App& command = addCommand(program, "replay", "Play an event script on a formula field", footer);
  auto const settings = std::make_shared<SettingsS>();
  require(addPath(command, "SCRIPT", settings->script, "FILE", "The script; \"-\" for standard input"));
  addPath(command, "-o,--output", settings->output, "FILE",
          "Draw the formula at the end into this picture: .svg, .png or .pdf");
  addFlag(command, "--trace", settings->trace, "Write every step with the formula after it");
  addChoice<SurfaceE>(command, "--surface", settings->surface,
                      {{"typeset", SURFACE_TYPESET}, {"recording", SURFACE_RECORDING}},
                      "Measures that places of the pointer are in: those of the real fonts or fixed ones");
  addCatalogue(command, settings->catalogue);
  onChosen(command, [settings, &action] {
    surfaces::PictureFormatE format = surfaces::PICTURE_SVG;
    if (!settings->output.empty() && !findPictureFormat(settings->output, format)) {
      refuse("--output",
             "the extension of \"" + settings->output + "\" names no format; use .svg, .png or .pdf");
    }
    action = [settings] { return run(*settings); };
  });
}

}  // namespace zolt::cli
