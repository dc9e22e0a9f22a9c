#include "hosts/cli/gallery.h"

namespace zolt::cli {

std::vector<GalleryEntryS> readGallery() {
  std::vector<GalleryEntryS> entries;
  std::string section;
  std::string_view rest = getGalleryText();
  while (!rest.empty()) {
    std::size_t const end = rest.find('\n');
    std::string_view const line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    if (line.empty() || line[0] == '#') continue;
    std::size_t const colon = line.find(": ");
    if (line[0] == '[') {
      section = line.substr(1, line.size() - 2);
    } else if (colon != std::string_view::npos) {
      entries.push_back({section, std::string(line.substr(0, colon)), std::string(line.substr(colon + 2))});
    }
  }
  return entries;
}

}  // namespace zolt::cli
