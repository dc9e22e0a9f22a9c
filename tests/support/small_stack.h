#pragma once

#include <functional>

namespace zolt::tests {

/// Runs `work` on a thread with a stack of 1 MiB (more under the address sanitizer) and waits for it.
void onSmallStack(std::function<void()> work);

}  // namespace zolt::tests
