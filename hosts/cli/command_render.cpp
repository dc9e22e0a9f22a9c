#include "hosts/cli/command_render.h"

#include <memory>

#include "hosts/cli/batch.h"
#include "hosts/cli/installed_fonts.h"
#include "hosts/cli/options.h"
#include "hosts/cli/picture.h"

namespace zolt::cli {

namespace {

constexpr unsigned long progress_step = 20;

constexpr char footer[] =
    R"(One expression goes into the file itself, several into numbered ones: formula.svg becomes
formula-1.svg, formula-2.svg and so on, numbered as the expressions or lines are. The names of the files are
printed. The picture holds the expression in prefix notation, too.

Examples:
  ved render '(-b+sqrt(b^2-4*a*c))/(2*a)'                 formula.svg
  ved render -o root.png --scale 3 'nthroot(x,3)'         a PNG picture, three times as large
  ved render -o page.pdf -i formulas.txt                  page-1.pdf, page-2.pdf, …
  ved render -o - --format png 'x^2' | display            to standard output
  ved render -- '-x^2'                                    an expression that begins with "-")";

struct SettingsS {
  InputS input;
  NotationE from = NOTATION_PLAIN;
  std::string path = "formula.svg";
  surfaces::PictureFormatE format = surfaces::PICTURE_SVG;
  double scale = 1;
  surfaces::PictureOptionsS options;
};

/// `formula.svg` and 3 make `formula-3.svg`.
std::string numberPath(std::string const& path, unsigned long number) {
  std::size_t const dot = path.find_last_of("./");
  std::size_t const end = dot == std::string::npos || path[dot] == '/' ? path.size() : dot;
  return path.substr(0, end) + '-' + std::to_string(number) + path.substr(end);
}

class RendererC {
 public:
  RendererC(SettingsS const& settings, oss::PointerTC<surfaces::TypesetterC> typesetter,
            StandardOutputC& output)
      : settings_(settings), typesetter_(std::move(typesetter)), output_(output) {}

  /// Returns false, with `error`, when the picture cannot be written.
  bool render(FormulaC& formula, std::string const& path, std::string& error) {
    PictureC picture(typesetter_);
    picture.refOptions() = settings_.options;
    picture.refOptions().zoom *= settings_.scale;
    picture.drawFormula(formula);
    if (path == "-") {
      std::string bytes;
      if (!picture.toBytes(settings_.format, bytes, error)) return false;
      output_.write(bytes);
      return true;
    }
    if (!picture.write(path, settings_.format, error)) return false;
    output_.writeNames(path);
    return true;
  }

 private:
  SettingsS const& settings_;
  oss::PointerTC<surfaces::TypesetterC> typesetter_;
  StandardOutputC& output_;
};

ExitStatusE run(SettingsS const& settings) {
  std::string error;
  auto const typesetter = makeTypesetter(error);
  if (!typesetter) {
    printMessage(error);
    return EXIT_STATUS_FAILED;
  }
  StandardOutputC output;
  RendererC renderer(settings, typesetter, output);
  BatchC batch(settings.input, progress_step, output);
  bool const toOutput = settings.path == "-";
  while (batch.next()) {
    bool const isOnly = batch.getNumber() == 1 && !batch.hasNext();
    if (!batch.hasText()) continue;
    if (toOutput && !isOnly) {
      batch.report("standard output takes a single picture; name a file with -o for several");
      break;
    }
    FaultS fault;
    std::unique_ptr<FormulaC> const formula = FormulaC::read(batch.getText(), settings.from, fault);
    if (!formula) {
      batch.report(fault);
    } else if (!renderer.render(
                   *formula, isOnly ? settings.path : numberPath(settings.path, batch.getNumber()), error)) {
      batch.report(error);
    }
  }
  return batch.finish();
}

void addColour(CLI::App& command, std::string const& name, surfaces::ColourS& colour,
               std::string const& help) {
  auto const take = [&colour, name](std::string const& given) {
    if (!readColour(given, colour))
      throw CLI::ValidationError(name, '"' + given + "\" is no colour; write #rrggbb, black, white or none");
  };
  command.add_option_function<std::string>(name, take, help)->type_name("COLOUR");
}

}  // namespace

void addRenderCommand(CLI::App& program, ActionT& action) {
  CLI::App* const command = program.add_subcommand("render", "Draw expressions: SVG, PNG, PDF");
  auto const settings = std::make_shared<SettingsS>();
  addPath(*command, "-o,--output", settings->path, "FILE",
          "File to write, \"-\" for standard output; its extension chooses the format")
      ->default_str(settings->path);
  CLI::Option* const format = addChoice<surfaces::PictureFormatE>(
      *command, "--format", settings->format,
      {{"svg", surfaces::PICTURE_SVG}, {"png", surfaces::PICTURE_PNG}, {"pdf", surfaces::PICTURE_PDF}},
      "Format of the picture, whatever the file is called");
  format->default_str({});
  addNumber(*command, "--scale", settings->scale, 0.05, 100,
            "Size; 1 sets letters in 21 pixels, 16 points in PDF");
  addNumber(*command, "--margin", settings->options.margin, 0, 1000,
            "Free space around, a letter's size being 12");
  addColour(*command, "--foreground", settings->options.foreground, "Colour of the formula [black]");
  addColour(*command, "--background", settings->options.background, "Colour behind it [none]");
  addChoice<surfaces::SvgTextE>(
      *command, "--svg-text", settings->options.svgText,
      {{"outlines", surfaces::SVG_TEXT_OUTLINES},
       {"named", surfaces::SVG_TEXT_NAMED},
       {"embedded", surfaces::SVG_TEXT_EMBEDDED}},
      "Letters of SVG pictures: shapes, text in fonts that the viewer has, or text with "
      "the fonts inside");
  addInputOptions(*command, settings->input, settings->from);
  command->footer(footer);
  command->callback([settings, format, &action] {
    if (format->count() == 0 && settings->path != "-" && !findPictureFormat(settings->path, settings->format))
      throw CLI::ValidationError("--output", "the extension of \"" + settings->path +
                                                 "\" names no format; use .svg, .png or .pdf, or --format");
    action = [settings] { return run(*settings); };
  });
}

}  // namespace zolt::cli
