#pragma once

#include <string>

namespace zolt::cli {

struct ProgramS;

/// The manual page of the program, for section 1, in the language of man(7).
std::string writeManualPage(ProgramS const& described);

}  // namespace zolt::cli
