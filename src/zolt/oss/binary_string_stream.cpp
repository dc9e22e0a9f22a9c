#include "zolt/oss/binary_string_stream.h"

#include <algorithm>
#include <utility>

namespace zolt::oss {

void BinaryStringOutputStreamC::write(unsigned char const* bytes, std::size_t count) {
  bytes_.append(bytes, count);
}

BinaryStringInputStreamC::BinaryStringInputStreamC(bytestring bytes) : bytes_(std::move(bytes)) {}

bool BinaryStringInputStreamC::read(unsigned char* bytes, std::size_t count) {
  if (count > bytesLeft()) return false;
  std::copy_n(bytes_.data() + next_, count, bytes);
  next_ += count;
  return true;
}

}  // namespace zolt::oss
