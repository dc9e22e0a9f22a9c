#pragma once

namespace zolt::tests {

/// How much work the libraries have done since the program started: a step is a basic block that was entered,
/// or 32 bytes of memory that were copied. The same program with the same input takes the same steps, however
/// busy the machine is.
unsigned long countSteps();

}  // namespace zolt::tests
