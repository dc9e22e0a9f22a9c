#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

namespace zolt::oss {

/// Shared pointer to a `RefCountedBC`: the count is inside the object, so a raw pointer can be wrapped again
/// at any time. The last `PointerTC` to let go destroys the object through its virtual destructor.
/// Null by default. Pointers on several threads may share an object; one pointer is used by one at a time.
template <class T>
class PointerTC {
 public:
  PointerTC() noexcept = default;
  PointerTC(std::nullptr_t) noexcept {}
  /// Shares `object` (may be null). A freshly made object is owned by the pointer from here on.
  PointerTC(T* object) : object_(object) { acquire(); }
  PointerTC(PointerTC const& other) : object_(other.object_) { acquire(); }
  PointerTC(PointerTC&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  PointerTC(PointerTC<U> const& other) : object_(other.get()) {
    acquire();
  }
  ~PointerTC() { release(); }

  PointerTC& operator=(PointerTC other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }
  T* get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

  /// Lets go of the object; the pointer is null afterwards.
  void reset() { PointerTC().swap(*this); }
  /// The object, still counted as held: that share is the caller's, the pointer is null afterwards.
  [[nodiscard]] T* detach() { return std::exchange(object_, nullptr); }
  void swap(PointerTC& other) noexcept { std::swap(object_, other.object_); }

 private:
  void acquire() const {
    if (object_) object_->reference();
  }
  void release() {
    if (object_ && object_->dereference() == 0) delete object_;
  }

  T* object_ = nullptr;
};

template <class T, class U>
bool operator==(PointerTC<T> const& a, PointerTC<U> const& b) {
  return a.get() == b.get();
}
template <class T, class U>
bool operator!=(PointerTC<T> const& a, PointerTC<U> const& b) {
  return a.get() != b.get();
}
template <class T, class U>
bool operator==(PointerTC<T> const& a, U const* b) {
  return a.get() == b;
}
template <class T, class U>
bool operator!=(PointerTC<T> const& a, U const* b) {
  return a.get() != b;
}
template <class T, class U>
bool operator==(U const* a, PointerTC<T> const& b) {
  return a == b.get();
}
template <class T, class U>
bool operator!=(U const* a, PointerTC<T> const& b) {
  return a != b.get();
}
template <class T>
bool operator==(PointerTC<T> const& a, std::nullptr_t) {
  return !a;
}
template <class T>
bool operator!=(PointerTC<T> const& a, std::nullptr_t) {
  return bool(a);
}
template <class T>
bool operator==(std::nullptr_t, PointerTC<T> const& b) {
  return !b;
}
template <class T>
bool operator!=(std::nullptr_t, PointerTC<T> const& b) {
  return bool(b);
}

}  // namespace zolt::oss
