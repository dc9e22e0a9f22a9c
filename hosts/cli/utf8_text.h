#pragma once

#include <string>
#include <string_view>

#include "zolt/oss/utf8.h"

namespace zolt::cli {

using oss::fromUtf8;
using oss::toUtf8;

/// Arguments, names of files and what else a terminal is to show, as one line that cannot control it.
std::string toShown(std::string_view bytes);

}  // namespace zolt::cli
