#pragma once

namespace zolt::fuzz {

/// How much work the libraries have done since the program started: a step is a basic block that was entered,
/// or 32 bytes of memory that were copied. The same program with the same input takes the same steps, however
/// busy the machine is. Only programs that link `zolt_step_count`, with libraries that are compiled for it,
/// count; in others the number stays 0.
inline unsigned long countedSteps = 0;

}  // namespace zolt::fuzz
