#include "tests/support/small_stack.h"

#include <gtest/gtest.h>
#include <pthread.h>

namespace zolt::tests {

void onSmallStack(std::function<void()> work) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, 1u << 20));
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
