#pragma once

#include "zolt/oss/byte_stream.h"
#include "zolt/oss/object_stream.h"
#include "zolt/oss/pointer.h"

namespace zolt::oss {

/// Writes objects in the byte form that `byte_format.h` describes. A failed byte stream sets the error.
class BinaryOutputStreamC : public ObjectOutputStreamABC {
 public:
  /// `bytes` must not be null.
  explicit BinaryOutputStreamC(PointerTC<ByteOutputStreamABC> bytes);

  void writeStartAggregate(short kind) override;
  void writeMember(short value) override;
  void writeMember(wstring const& value) override;
  void writeMember(unsigned long value) override;
  void writeEndAggregate() override;

 private:
  void write(unsigned char const* bytes, std::size_t count);
  void writeItem(unsigned char tag, std::size_t size, unsigned long value);

  PointerTC<ByteOutputStreamABC> bytes_;
};

/// Reads that form. Bytes from anywhere may be given: nothing is allocated that the bytes left could not
/// fill, and bytes after the last item read are ignored.
class BinaryInputStreamC : public ObjectInputStreamABC {
 public:
  /// `bytes` must not be null.
  explicit BinaryInputStreamC(PointerTC<ByteInputStreamABC> bytes);

  [[nodiscard]] bool readStartAggregate(short kind) override;
  [[nodiscard]] bool readMember(short& value) override;
  [[nodiscard]] bool readMember(wstring& value) override;
  [[nodiscard]] bool readMember(unsigned long& value) override;
  [[nodiscard]] bool readEndAggregate() override;
  std::size_t bytesLeft() const override;

 private:
  bool read(unsigned char* bytes, std::size_t count);
  bool readItem(unsigned char tag, std::size_t size, unsigned long& value);
  bool fail();

  PointerTC<ByteInputStreamABC> bytes_;
};

}  // namespace zolt::oss
