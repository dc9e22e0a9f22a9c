#include "hosts/cli/command_render.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "hosts/cli/batch.h"
#include "hosts/cli/installed_fonts.h"
#include "hosts/cli/options.h"
#include "hosts/cli/ordered_work.h"
#include "hosts/cli/output_file.h"
#include "hosts/cli/picture.h"

namespace zolt::cli {

namespace {

constexpr unsigned long progress_step = 20;

constexpr char footer[] =
    R"(One expression goes into the file itself, several into numbered ones: formula.svg becomes
formula-1.svg, formula-2.svg and so on, numbered as the expressions or lines are and, from ten on,
with zeros ahead: formula-01.svg. The names of the files are printed. The picture holds the
expression in prefix notation, too, and says it in words to people who listen.

A formula stands on the line of the text around it when the picture is lowered by its depth. SVG
pictures inside an HTML page do it by themselves; with --sizes each name is followed by width, height
and depth of the picture, parted by tabs. docs/pictures.md shows pages made that way.

With --stream all pictures go to standard output, each as a line with its number, its count of bytes
and its sizes, the bytes, and a line end. For a blank or a wrong line the count is 0. The answer to a
line comes before the next line is waited for.

Examples:
  ved render '(-b+sqrt(b^2-4*a*c))/(2*a)'                 formula.svg
  ved render -o root.png --scale 3 'nthroot(x,3)'         a PNG picture, three times as large
  ved render -o page.pdf -i formulas.txt                  page-1.pdf, page-2.pdf, …
  ved render -o page.svg --svg-unit em -j 4 < formulas.txt    as large as the text around, on 4 threads
  ved render -o x.pdf --sizes 'x/2'                       x.pdf, 22.312pt, 48.562pt, 20.344pt
  ved render -o - --format png 'x^2' | display            to standard output
  ved render -- '-x^2'                                    an expression that begins with "-")";

struct SettingsS {
  InputS input;
  NotationE from = NOTATION_PLAIN;
  CatalogueE catalogue = CATALOGUE_EXTENDED;
  std::string path = "formula.svg";
  surfaces::PictureFormatE format = surfaces::PICTURE_SVG;
  double scale = 1;
  surfaces::PictureOptionsS options;
  exchange::SpeechStyleS speech;
  bool showsSizes = false;
  bool isStream = false;
  bool showsPowers = false;
  unsigned threads = 1;
};

/// `formula.svg`, 3 and two digits make `formula-03.svg`.
std::string numberPath(std::string const& path, unsigned long number, std::size_t digits) {
  std::size_t const dot = path.find_last_of("./");
  std::size_t const end = dot == std::string::npos || path[dot] == '/' ? path.size() : dot;
  std::string const text = std::to_string(number);
  return path.substr(0, end) + '-' + std::string(digits - std::min(digits, text.size()), '0') + text +
         path.substr(end);
}

/// A line of the input, and what becomes of it.
struct PieceS {
  oss::wstring text;
  std::string place;
  unsigned long number = 0;
  std::string path;  ///< empty for standard output
  FaultS fault;
  bool isWrong = false;
  bool isDrawn = false;
  std::string error, sizes, bytes;
};

class RendererC {
 public:
  RendererC(SettingsS const& settings, BatchC& batch, StandardOutputC& output)
      : settings_(settings), batch_(batch), output_(output), work_(settings.threads) {
    batch_.onSettle([this] { work_.drain(); });
  }

  /// Returns false, with `error`, when fonts are missing.
  bool loadFonts(std::string& error) {
    // What is kept of glyphs is not for two threads at a time.
    while (typesetters_.size() < settings_.threads) {
      typesetters_.push_back(makeTypesetter(error));
      if (!typesetters_.back()) return false;
      if (settings_.showsPowers) typesetters_.back()->setNumberLook(surfaces::NUMBERS_WITH_POWERS);
    }
    return true;
  }

  /// Goes through the input and writes all pictures. Returns false when standard output was to take several
  /// that are not a stream.
  bool run() {
    bool const isSingle = settings_.path == "-" && !settings_.isStream;
    unsigned long const count = settings_.path == "-" ? 0 : batch_.countAhead();
    while (batch_.next()) {
      if (isSingle && (batch_.getNumber() > 1 || batch_.hasNext())) return false;
      auto const piece = std::make_shared<PieceS>();
      piece->number = batch_.getNumber();
      if (batch_.hasText()) {
        piece->text = batch_.getText();
        piece->place = batch_.getPlace();
      } else if (!settings_.isStream) {
        continue;
      }
      if (settings_.path != "-")
        piece->path = count == 1 ? settings_.path
                                 : numberPath(settings_.path, piece->number, std::to_string(count).size());
      work_.add([this, piece](unsigned thread) { draw(*piece, typesetters_[thread]); },
                [this, piece] { finish(*piece); });
    }
    work_.drain();
    return true;
  }

 private:
  /// Runs on any thread.
  void draw(PieceS& piece, oss::PointerTC<surfaces::TypesetterC> const& typesetter) const {
    if (piece.text.empty()) return;
    std::unique_ptr<FormulaC> const formula = FormulaC::read(piece.text, settings_.from, piece.fault);
    piece.isWrong = !formula;
    if (!formula) return;
    PictureC picture(typesetter);
    picture.refOptions() = settings_.options;
    picture.refOptions().zoom *= settings_.scale;
    picture.drawFormula(*formula, settings_.speech);
    piece.sizes = picture.writeSizes(settings_.format);
    piece.isDrawn = picture.toBytes(settings_.format, piece.bytes, piece.error) &&
                    (piece.path.empty() || writeFile(piece.path, piece.bytes, piece.error));
  }

  void finish(PieceS const& piece) {
    if (piece.isWrong) {
      batch_.report(piece.place, piece.text, piece.fault);
    } else if (!piece.error.empty()) {
      batch_.report(piece.error);
    }
    if (settings_.isStream) {
      std::string const size = std::to_string(piece.isDrawn ? piece.bytes.size() : 0);
      output_.write(std::to_string(piece.number) + '\t' + size + (piece.isDrawn ? '\t' + piece.sizes : "") +
                    '\n');
      output_.write(piece.isDrawn ? piece.bytes + '\n' : "\n");
    } else if (piece.isDrawn && piece.path.empty()) {
      output_.write(piece.bytes);
    } else if (piece.isDrawn) {
      output_.writeNames(piece.path + (settings_.showsSizes ? '\t' + piece.sizes : ""));
    }
  }

  SettingsS const& settings_;
  BatchC& batch_;
  StandardOutputC& output_;
  std::vector<oss::PointerTC<surfaces::TypesetterC>> typesetters_;  // one for each thread
  OrderedWorkC work_;
};

constexpr char too_many[] = "standard output takes a single picture; use --stream, or name a file with -o";

ExitStatusE run(SettingsS const& settings) {
  provideOperators(settings.catalogue);
  StandardOutputC output;
  BatchC batch(settings.input, progress_step, output);
  RendererC renderer(settings, batch, output);
  std::string error;
  if (!renderer.loadFonts(error)) {
    printMessage(error);
    return EXIT_STATUS_FAILED;
  }
  if (!renderer.run()) {
    printMessage(too_many);
    return EXIT_STATUS_USAGE;
  }
  return batch.finish();
}

void addColour(CLI::App& command, std::string const& name, surfaces::ColourS& colour,
               std::string const& help) {
  auto const take = [&colour, name](std::string const& given) {
    if (!readColour(given, colour))
      refuse(name, '"' + given + "\" is no colour; write #rrggbb, black, white or none");
  };
  addText(command, name, "COLOUR", take, help);
}

void check(SettingsS& settings, bool hasPath, bool hasFormat) {
  if (settings.isStream) {
    if (hasPath && settings.path != "-") refuse("--stream", "it writes to standard output");
    if (settings.showsSizes) refuse("--stream", "it tells the sizes by itself");
    settings.path = "-";
  }
  if (settings.path == "-") {
    if (settings.input.expressions.size() > 1 && !settings.isStream) refuse("--output", too_many);
    if (settings.showsSizes)
      refuse("--sizes", "the picture itself goes to standard output; name a file with -o");
  } else if (!hasFormat && !findPictureFormat(settings.path, settings.format)) {
    refuse("--output",
           "the extension of \"" + settings.path + "\" names no format; use .svg, .png or .pdf, or --format");
  }
}

}  // namespace

void addRenderCommand(CLI::App& program, ActionT& action) {
  CLI::App& command = addCommand(program, "render", "Draw expressions: SVG, PNG, PDF", footer);
  auto const settings = std::make_shared<SettingsS>();
  CLI::Option const& path =
      addPath(command, "-o,--output", settings->path, "FILE",
              "File to write, \"-\" for standard output; its extension chooses the format");
  CLI::Option const& format = addWord(
      command, "--format", {"svg", "png", "pdf"}, 3,
      [settings](std::size_t chosen) {
        constexpr surfaces::PictureFormatE formats[] = {surfaces::PICTURE_SVG, surfaces::PICTURE_PNG,
                                                        surfaces::PICTURE_PDF};
        settings->format = formats[chosen];
      },
      "Format of the picture, whatever the file is called");
  addNumber(command, "--scale", settings->scale, 0.05, 100,
            "Size; 1 sets letters in 21 pixels, 16 points in PDF");
  addNumber(command, "--margin", settings->options.margin, 0, 1000,
            "Free space around, a letter's size being 12");
  addColour(command, "--foreground", settings->options.foreground, "Colour of the formula [black]");
  addColour(command, "--background", settings->options.background, "Colour behind it [none]");
  addChoice<surfaces::SvgTextE>(
      command, "--svg-text", settings->options.svgText,
      {{"outlines", surfaces::SVG_TEXT_OUTLINES},
       {"named", surfaces::SVG_TEXT_NAMED},
       {"embedded", surfaces::SVG_TEXT_EMBEDDED}},
      "Letters of SVG pictures: shapes, text in fonts that the viewer has, or text with "
      "the fonts inside");
  addChoice<surfaces::SvgUnitE>(
      command, "--svg-unit", settings->options.svgUnit,
      {{"px", surfaces::SVG_UNIT_PX}, {"em", surfaces::SVG_UNIT_EM}},
      "Size of SVG pictures: in pixels, or by the letters of the text around, as large as these at scale 1");
  addFlag(command, "--powers-of-ten", settings->showsPowers,
          "Show a number such as 6.02e23 as a product with a power of ten");
  addFlag(command, "--sizes", settings->showsSizes,
          "Print width, height and depth of each picture after its name");
  addFlag(command, "--stream", settings->isStream,
          "Write all pictures to standard output, one after the other");
  addCount(command, "-j,--jobs", settings->threads, 1, 64, "Pictures that are drawn at the same time");
  addSpeech(command, settings->speech, "what pictures say to people who listen");
  addInputOptions(command, settings->input, settings->from);
  addCatalogue(command, settings->catalogue);
  onChosen(command, [settings, &path, &format, &action] {
    check(*settings, isGiven(path), isGiven(format));
    action = [settings] { return run(*settings); };
  });
}

}  // namespace zolt::cli
