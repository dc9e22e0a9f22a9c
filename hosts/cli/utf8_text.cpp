#include "hosts/cli/utf8_text.h"

#include "hosts/support/terminal_text.h"

namespace zolt::cli {

std::string toShown(std::string_view bytes) { return toUtf8(support::getShown(fromUtf8(bytes))); }

}  // namespace zolt::cli
