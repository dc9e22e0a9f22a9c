#include "zolt/surfaces/typeset/font_set.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <utility>

namespace zolt::surfaces {

namespace {

#ifdef _WIN32
constexpr char folder_separator = ';';
#else
constexpr char folder_separator = ':';
#endif

struct KnownFileS {
  char const* name;
  char const* file;
  bool required = false;
  FaceUseE use = FACE_FOR_ALL;
};

constexpr KnownFileS known_files[] = {{"KaTeX_Main", "KaTeX_Main-Regular.ttf", true},
                                      {"KaTeX_Math", "KaTeX_Math-Italic.ttf", true},
                                      {"DejaVu Serif", "DejaVuSerif.ttf"},
                                      {"DejaVu Sans", "DejaVuSans.ttf"},
                                      {"KaTeX_Main", "KaTeX_Main-Italic.ttf", false, FACE_FOR_WORDS},
                                      {"KaTeX_AMS", "KaTeX_AMS-Regular.ttf", false, FACE_FOR_DOUBLED}};

void appendFolders(std::vector<std::string>& folders, std::string const& list) {
  for (std::size_t start = 0; start <= list.size();) {
    std::size_t end = list.find(folder_separator, start);
    if (end == std::string::npos) end = list.size();
    if (end > start) folders.push_back(list.substr(start, end - start));
    start = end + 1;
  }
}

bool readFromFolders(std::vector<std::string> const& folders, std::string const& name, std::string& bytes) {
  for (std::string const& folder : folders) {
    std::ifstream file(folder + '/' + name, std::ios::binary);
    if (!file) continue;
    bytes.assign(std::istreambuf_iterator<char>(file), {});
    if (!file.bad()) return true;
  }
  return false;
}

}  // namespace

std::vector<std::string> FontSetC::getDefaultFolders() {
  std::vector<std::string> folders;
  if (char const* const chosen = std::getenv("ZOLT_FONT_DIR")) appendFolders(folders, chosen);
  appendFolders(folders, ZOLT_DEFAULT_FONT_DIRS);
  return folders;
}

oss::PointerTC<FontSetC> FontSetC::load(std::vector<std::string> const& folders, std::string& error) {
  std::vector<FileS> files;
  for (KnownFileS const& known : known_files) {
    std::string bytes, cause;
    if (readFromFolders(folders, known.file, bytes) && (known.required || SfntFontC().parse(bytes, cause))) {
      files.push_back({known.name, std::move(bytes), known.use});
    } else if (known.required) {
      error = std::string("font file ") + known.file + " not found in:";
      for (std::string const& folder : folders) error += " " + folder;
      error += "; name its folder in the environment variable ZOLT_FONT_DIR";
      return nullptr;
    }
  }
  return fromMemory(std::move(files), error);
}

oss::PointerTC<FontSetC> FontSetC::fromMemory(std::vector<FileS> files, std::string& error) {
  if (files.size() < FACE_FALLBACK) {
    error = "formulas need two faces, KaTeX Main and KaTeX Math";
    return nullptr;
  }
  oss::PointerTC<FontSetC> set(new FontSetC);
  set->faces_.reserve(files.size());
  for (FileS& file : files) {
    SfntFontC font;
    std::string cause;
    if (!font.parse(std::move(file.bytes), cause)) {
      error = "font " + file.name + ": " + cause;
      return nullptr;
    }
    if (file.use == FACE_FOR_WORDS) set->wordFace_ = set->getFaceCount();
    if (file.use == FACE_FOR_DOUBLED) set->doubledFace_ = set->getFaceCount();
    set->faces_.push_back({std::move(file.name), std::move(font)});
  }
  return set;
}

}  // namespace zolt::surfaces
