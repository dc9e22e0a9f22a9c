#include "hosts/cli/command_gallery.h"

#include <filesystem>
#include <memory>
#include <vector>

#include "hosts/cli/gallery.h"
#include "hosts/cli/installed_fonts.h"
#include "hosts/cli/options.h"
#include "hosts/cli/output_file.h"
#include "hosts/cli/picture.h"
#include "hosts/cli/standard_output.h"
#include "hosts/cli/utf8_text.h"
#include "zolt/algexpr/algebraic_expression.h"

namespace zolt::cli {

namespace {

namespace fs = std::filesystem;

constexpr long sheet_width = 500;
constexpr double sheet_margin = 14;

constexpr char footer[] =
    R"(The folder gets one SVG picture per formula, a page that shows them all (index.html) and a sheet
with the choicest ones (gallery.png).

Example:
  ved gallery out/gallery)";

constexpr char page_head[] = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>zolt ved: gallery</title>
<style>
body { font: 16px/1.5 sans-serif; color: #1a1a1a; background: #fff; max-width: 72rem; margin: 2rem auto; padding: 0 1rem; }
h2 { margin: 2.5rem 0 1rem; font-weight: 500; }
main { display: grid; grid-template-columns: repeat(auto-fill, minmax(15rem, 1fr)); gap: 1rem; }
figure { margin: 0; padding: 1.25rem 1rem .75rem; border: 1px solid #ddd; border-radius: .5rem; display: flex; flex-direction: column; }
figure img { margin: auto; max-width: 100%; }
figcaption { margin-top: 1rem; font: .8rem/1.4 monospace; color: #666; overflow-wrap: anywhere; }
</style>
</head>
<body>
<h1>zolt ved</h1>
)";

struct SettingsS {
  std::string folder;
  double scale = 2;
};

std::string escapeHtml(std::string const& text) {
  std::string out;
  for (char const c : text) {
    if (c == '&') {
      out += "&amp;";
    } else if (c == '<') {
      out += "&lt;";
    } else if (c == '"') {
      out += "&quot;";
    } else {
      out += c;
    }
  }
  return out;
}

class GalleryWriterC {
 public:
  GalleryWriterC(SettingsS const& settings, oss::PointerTC<surfaces::TypesetterC> typesetter)
      : folder_(settings.folder), scale_(settings.scale), typesetter_(std::move(typesetter)) {}

  /// Returns false, with `error`, when a file could not be written.
  bool write(std::string& error) {
    std::error_code cause;
    fs::create_directories(folder_, cause);
    if (cause) {
      error = "cannot make the folder " + folder_.string() + ": " + cause.message();
      return false;
    }
    page_ = page_head;
    std::vector<std::unique_ptr<FormulaC>> choicest;
    std::string choicestSection;
    for (GalleryEntryS const& entry : readGallery()) {
      std::unique_ptr<FormulaC> formula = read(entry, error);
      if (!formula || !writePicture(entry, *formula, error)) return false;
      addToPage(entry, *formula);
      if (choicestSection.empty()) choicestSection = entry.section;
      if (entry.section == choicestSection) choicest.push_back(std::move(formula));
    }
    page_ += "</main>\n</body>\n</html>\n";
    return writeSheet(choicest, error) && writeFile(folder_ / "index.html", page_, error);
  }

  std::size_t getCount() const { return count_; }

 private:
  static std::unique_ptr<FormulaC> read(GalleryEntryS const& entry, std::string& error) {
    FaultS fault;
    std::unique_ptr<FormulaC> formula = FormulaC::read(fromUtf8(entry.text), NOTATION_PLAIN, fault);
    if (!formula) error = entry.name + ": " + fault.message;
    return formula;
  }

  bool writePicture(GalleryEntryS const& entry, FormulaC& formula, std::string& error) {
    PictureC picture(typesetter_);
    picture.drawFormula(formula);
    ++count_;
    return picture.write((folder_ / (entry.name + ".svg")).string(), surfaces::PICTURE_SVG, error);
  }

  bool writeSheet(std::vector<std::unique_ptr<FormulaC>> const& formulas, std::string& error) {
    PictureC sheet(typesetter_);
    sheet.refOptions().zoom *= scale_;
    sheet.refOptions().margin = sheet_margin;
    sheet.refOptions().background = {1, 1, 1, 1};
    sheet.drawSheet(formulas, sheet_width);
    return sheet.write((folder_ / "gallery.png").string(), surfaces::PICTURE_PNG, error);
  }

  void addToPage(GalleryEntryS const& entry, FormulaC& formula) {
    if (entry.section != section_) {
      if (!section_.empty()) page_ += "</main>\n";
      section_ = entry.section;
      page_ += "<h2>" + escapeHtml(section_) + "</h2>\n<main>\n";
    }
    FaultS ignored;
    auto const expression = formula.getExpression(ignored);
    std::string const text = escapeHtml(entry.text);
    page_ += "<figure><img src=\"" + entry.name + ".svg\" alt=\"" + text + "\"><figcaption title=\"" +
             escapeHtml(expression ? toUtf8(expression->toPrefixString()) : std::string()) + "\">" + text +
             "</figcaption></figure>\n";
  }

  fs::path folder_;
  double scale_;
  oss::PointerTC<surfaces::TypesetterC> typesetter_;
  std::string page_;
  std::string section_;
  std::size_t count_ = 0;
};

ExitStatusE run(SettingsS const& settings) {
  provideOperators(CATALOGUE_EXTENDED);
  std::string error;
  auto const typesetter = makeTypesetter(error);
  if (!typesetter) {
    printMessage(error);
    return EXIT_STATUS_FAILED;
  }
  GalleryWriterC writer(settings, typesetter);
  if (!writer.write(error)) {
    printMessage(error);
    return EXIT_STATUS_FAILED;
  }
  StandardOutputC output;
  output.writeNames(std::to_string(writer.getCount()) + " pictures, index.html and gallery.png in " +
                    settings.folder);
  return output.finish() ? EXIT_STATUS_OK : EXIT_STATUS_FAILED;
}

}  // namespace

void addGalleryCommand(CLI::App& program, ActionT& action) {
  CLI::App& command =
      addCommand(program, "gallery", "Draw everything that the operators can look like", footer);
  auto const settings = std::make_shared<SettingsS>();
  require(addPath(command, "FOLDER", settings->folder, "DIR", "Folder to write to; made when it is missing"));
  addNumber(command, "--scale", settings->scale, 0.05, 20, "Size of the sheet; 1 sets letters in 21 pixels");
  onChosen(command, [settings, &action] { action = [settings] { return run(*settings); }; });
}

}  // namespace zolt::cli
