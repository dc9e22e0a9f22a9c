#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zolt::cli {

/// One formula of the gallery.
struct GalleryEntryS {
  std::string section;
  std::string name;  ///< of its picture, without the extension
  std::string text;  ///< in plain notation
};

/// The formulas of gallery.txt, which is compiled into the program.
std::vector<GalleryEntryS> readGallery();

/// The contents of gallery.txt; the build generates this function from the file.
std::string_view getGalleryText();

}  // namespace zolt::cli
