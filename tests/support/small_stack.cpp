#include "tests/support/small_stack.h"

#include <gtest/gtest.h>

#ifdef __EMSCRIPTEN__

// The only thread there is was linked with the small stack.
void zolt::tests::onSmallStack(std::function<void()> work) { work(); }

#else

#include <pthread.h>

namespace zolt::tests {

namespace {

// The sanitizers' frames are several times as large as those of a release build, for which the limit counts.
#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t stack_size = 8u << 20;
#elif defined(__has_feature)
constexpr std::size_t stack_size = __has_feature(address_sanitizer) ? 8u << 20 : 1u << 20;
#else
constexpr std::size_t stack_size = 1u << 20;
#endif

}  // namespace

void onSmallStack(std::function<void()> work) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, stack_size));
  auto const run = [](void* function) -> void* {
    (*static_cast<std::function<void()>*>(function))();
    return nullptr;
  };
  pthread_t thread;
  ASSERT_EQ(0, pthread_create(&thread, &attributes, run, &work));
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

}  // namespace zolt::tests

#endif
