#pragma once

#include <cstddef>

#include "zolt/oss/ref_counted.h"

namespace zolt::oss {

/// Destination of raw bytes. The first failure lasts: every later write is ignored.
class ByteOutputStreamABC : public RefCountedBC {
 public:
  /// Appends `count` bytes.
  virtual void write(unsigned char const* bytes, std::size_t count) = 0;
  /// Hands on everything written so far.
  virtual void flush() = 0;
  [[nodiscard]] virtual bool isError() const = 0;
};

/// Source of raw bytes of known length.
class ByteInputStreamABC : public RefCountedBC {
 public:
  /// Reads exactly `count` bytes; false, with nothing consumed, when fewer are left.
  [[nodiscard]] virtual bool read(unsigned char* bytes, std::size_t count) = 0;
  /// How many bytes can still be read. No count found in the stream can honestly ask for more items than
  /// that.
  virtual std::size_t bytesLeft() const = 0;
};

}  // namespace zolt::oss
