#include "zolt/oss/binary_stream.h"

#include <algorithm>
#include <array>
#include <utility>

#include "zolt/oss/byte_format.h"

namespace zolt::oss {

using namespace byte_format;

namespace {

// Text goes through a buffer of this many characters, so that a byte stream sees few calls.
constexpr std::size_t chunk_length = 128;
constexpr unsigned long max_uint32 = 0xFFFFFFFFUL;

// Numbers are little-endian, in as many bytes as their item has after its tag.
void putNumber(unsigned char* bytes, std::size_t count, unsigned long value) {
  for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<unsigned char>(value >> 8 * i & 0xFFU);
}

unsigned long getNumber(unsigned char const* bytes, std::size_t count) {
  unsigned long value = 0;
  for (std::size_t i = count; i-- > 0;) value = value << 8U | bytes[i];
  return value;
}

// Two's complement without relying on what a narrowing conversion does.
short toShort(unsigned long value) {
  return static_cast<short>(static_cast<long>(value) - (value < 0x8000U ? 0L : 0x10000L));
}

}  // namespace

BinaryOutputStreamC::BinaryOutputStreamC(PointerTC<ByteOutputStreamABC> bytes) : bytes_(std::move(bytes)) {}

void BinaryOutputStreamC::write(unsigned char const* bytes, std::size_t count) {
  if (isError()) return;
  bytes_->write(bytes, count);
  if (bytes_->isError()) setError();
}

void BinaryOutputStreamC::writeItem(unsigned char tag, std::size_t size, unsigned long value) {
  std::array<unsigned char, uint32_size> item{tag};
  putNumber(&item[1], size - 1, value);
  write(item.data(), size);
}

void BinaryOutputStreamC::writeStartAggregate(short kind) {
  writeItem(TAG_START_AGGREGATE, start_aggregate_size, static_cast<unsigned short>(kind));
}

void BinaryOutputStreamC::writeMember(short value) {
  writeItem(TAG_INT16, int16_size, static_cast<unsigned short>(value));
}

void BinaryOutputStreamC::writeMember(wstring const& value) {
  if (value.size() > max_uint32) return setError();
  writeItem(TAG_STRING, empty_string_size, static_cast<unsigned long>(value.size()));
  std::array<unsigned char, 2 * chunk_length> chunk{};
  for (std::size_t start = 0; start < value.size(); start += chunk_length) {
    std::size_t const length = std::min(chunk_length, value.size() - start);
    for (std::size_t i = 0; i < length; ++i) putNumber(&chunk[2 * i], 2, value[start + i]);
    write(chunk.data(), 2 * length);
  }
}

void BinaryOutputStreamC::writeMember(unsigned long value) {
  if (value > max_uint32) return setError();
  writeItem(TAG_UINT32, uint32_size, value);
}

void BinaryOutputStreamC::writeEndAggregate() { writeItem(TAG_END_AGGREGATE, end_aggregate_size, 0); }

BinaryInputStreamC::BinaryInputStreamC(PointerTC<ByteInputStreamABC> bytes) : bytes_(std::move(bytes)) {}

bool BinaryInputStreamC::read(unsigned char* bytes, std::size_t count) {
  return (!isError() && bytes_->read(bytes, count)) || fail();
}

bool BinaryInputStreamC::fail() {
  setError();
  return false;
}

bool BinaryInputStreamC::readItem(unsigned char tag, std::size_t size, unsigned long& value) {
  std::array<unsigned char, uint32_size> item{};
  if (!read(item.data(), size)) return false;
  value = getNumber(&item[1], size - 1);
  return item[0] == tag || fail();
}

bool BinaryInputStreamC::readStartAggregate(short kind) {
  unsigned long found = 0;
  return readItem(TAG_START_AGGREGATE, start_aggregate_size, found) && (toShort(found) == kind || fail());
}

bool BinaryInputStreamC::readMember(short& value) {
  unsigned long number = 0;
  if (!readItem(TAG_INT16, int16_size, number)) return false;
  value = toShort(number);
  return true;
}

bool BinaryInputStreamC::readMember(wstring& value) {
  unsigned long length = 0;
  if (!readItem(TAG_STRING, empty_string_size, length)) return false;
  if (length > bytes_->bytesLeft() / 2) return fail();
  wstring text(length, u'\0');
  std::array<unsigned char, 2 * chunk_length> chunk{};
  for (std::size_t start = 0; start < length; start += chunk_length) {
    std::size_t const part = std::min<std::size_t>(chunk_length, length - start);
    if (!read(chunk.data(), 2 * part)) return false;
    for (std::size_t i = 0; i < part; ++i)
      text[start + i] = static_cast<char16_t>(getNumber(&chunk[2 * i], 2));
  }
  value = std::move(text);
  return true;
}

bool BinaryInputStreamC::readMember(unsigned long& value) {
  unsigned long number = 0;
  if (!readItem(TAG_UINT32, uint32_size, number)) return false;
  value = number;
  return true;
}

bool BinaryInputStreamC::readEndAggregate() {
  unsigned long nothing = 0;
  return readItem(TAG_END_AGGREGATE, end_aggregate_size, nothing);
}

std::size_t BinaryInputStreamC::bytesLeft() const { return isError() ? 0 : bytes_->bytesLeft(); }

}  // namespace zolt::oss
