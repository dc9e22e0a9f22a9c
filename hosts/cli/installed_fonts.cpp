#include "hosts/cli/installed_fonts.h"

namespace zolt::cli {

oss::PointerTC<surfaces::TypesetterC> makeTypesetter(std::string& error) {
  auto const fonts = surfaces::FontSetC::load(surfaces::FontSetC::getDefaultFolders(), error);
  if (!fonts) return {};
  return oss::PointerTC<surfaces::TypesetterC>(new surfaces::TypesetterC(fonts));
}

}  // namespace zolt::cli
