#pragma once

#include "zolt/oss/byte_stream.h"
#include "zolt/oss/wstring.h"

namespace zolt::oss {

/// Collects bytes in memory, as the clipboard takes them.
class BinaryStringOutputStreamC : public ByteOutputStreamABC {
 public:
  void write(unsigned char const* bytes, std::size_t count) override;
  void flush() override {}
  bool isError() const override { return false; }

  bytestring getString() const { return bytes_; }

 private:
  bytestring bytes_;
};

/// Reads bytes from its own copy of a byte string.
class BinaryStringInputStreamC : public ByteInputStreamABC {
 public:
  explicit BinaryStringInputStreamC(bytestring bytes);

  [[nodiscard]] bool read(unsigned char* bytes, std::size_t count) override;
  std::size_t bytesLeft() const override { return bytes_.size() - next_; }

 private:
  bytestring bytes_;
  std::size_t next_ = 0;
};

}  // namespace zolt::oss
