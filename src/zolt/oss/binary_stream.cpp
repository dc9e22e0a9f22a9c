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

void putUint16(unsigned char* bytes, unsigned value) {
  bytes[0] = static_cast<unsigned char>(value & 0xFFU);
  bytes[1] = static_cast<unsigned char>(value >> 8U & 0xFFU);
}

void putUint32(unsigned char* bytes, unsigned long value) {
  putUint16(bytes, static_cast<unsigned>(value & 0xFFFFU));
  putUint16(bytes + 2, static_cast<unsigned>(value >> 16U & 0xFFFFU));
}

unsigned getUint16(unsigned char const* bytes) { return bytes[0] | static_cast<unsigned>(bytes[1]) << 8U; }

unsigned long getUint32(unsigned char const* bytes) {
  return getUint16(bytes) | static_cast<unsigned long>(getUint16(bytes + 2)) << 16U;
}

// Two's complement without relying on what a narrowing conversion does.
short toShort(unsigned value) {
  return static_cast<short>(value < 0x8000U ? static_cast<int>(value) : static_cast<int>(value) - 0x10000);
}

}  // namespace

BinaryOutputStreamC::BinaryOutputStreamC(PointerTC<ByteOutputStreamABC> bytes) : bytes_(std::move(bytes)) {}

void BinaryOutputStreamC::write(unsigned char const* bytes, std::size_t count) {
  if (isError()) return;
  bytes_->write(bytes, count);
  if (bytes_->isError()) setError();
}

void BinaryOutputStreamC::writeStartAggregate(short kind) {
  std::array<unsigned char, start_aggregate_size> item{TAG_START_AGGREGATE};
  putUint16(&item[1], static_cast<unsigned short>(kind));
  write(item.data(), item.size());
}

void BinaryOutputStreamC::writeMember(short value) {
  std::array<unsigned char, int16_size> item{TAG_INT16};
  putUint16(&item[1], static_cast<unsigned short>(value));
  write(item.data(), item.size());
}

void BinaryOutputStreamC::writeMember(wstring const& value) {
  if (value.size() > max_uint32) {
    setError();
    return;
  }
  std::array<unsigned char, empty_string_size> head{TAG_STRING};
  putUint32(&head[1], static_cast<unsigned long>(value.size()));
  write(head.data(), head.size());
  std::array<unsigned char, 2 * chunk_length> chunk{};
  for (std::size_t start = 0; start < value.size(); start += chunk_length) {
    std::size_t const length = std::min(chunk_length, value.size() - start);
    for (std::size_t i = 0; i < length; ++i) putUint16(&chunk[2 * i], value[start + i]);
    write(chunk.data(), 2 * length);
  }
}

void BinaryOutputStreamC::writeMember(unsigned long value) {
  if (value > max_uint32) {
    setError();
    return;
  }
  std::array<unsigned char, uint32_size> item{TAG_UINT32};
  putUint32(&item[1], value);
  write(item.data(), item.size());
}

void BinaryOutputStreamC::writeEndAggregate() {
  unsigned char const tag = TAG_END_AGGREGATE;
  write(&tag, end_aggregate_size);
}

BinaryInputStreamC::BinaryInputStreamC(PointerTC<ByteInputStreamABC> bytes) : bytes_(std::move(bytes)) {}

bool BinaryInputStreamC::read(unsigned char* bytes, std::size_t count) {
  return !isError() && bytes_->read(bytes, count) ? true : fail();
}

bool BinaryInputStreamC::fail() {
  setError();
  return false;
}

bool BinaryInputStreamC::readStartAggregate(short kind) {
  std::array<unsigned char, start_aggregate_size> item{};
  if (!read(item.data(), item.size())) return false;
  return item[0] == TAG_START_AGGREGATE && toShort(getUint16(&item[1])) == kind ? true : fail();
}

bool BinaryInputStreamC::readMember(short& value) {
  std::array<unsigned char, int16_size> item{};
  if (!read(item.data(), item.size())) return false;
  if (item[0] != TAG_INT16) return fail();
  value = toShort(getUint16(&item[1]));
  return true;
}

bool BinaryInputStreamC::readMember(wstring& value) {
  std::array<unsigned char, empty_string_size> head{};
  if (!read(head.data(), head.size())) return false;
  unsigned long const length = getUint32(&head[1]);
  if (head[0] != TAG_STRING || length > bytes_->bytesLeft() / 2) return fail();
  wstring text(length, u'\0');
  std::array<unsigned char, 2 * chunk_length> chunk{};
  for (std::size_t start = 0; start < length; start += chunk_length) {
    std::size_t const part = std::min<std::size_t>(chunk_length, length - start);
    if (!read(chunk.data(), 2 * part)) return false;
    for (std::size_t i = 0; i < part; ++i) text[start + i] = static_cast<char16_t>(getUint16(&chunk[2 * i]));
  }
  value = std::move(text);
  return true;
}

bool BinaryInputStreamC::readMember(unsigned long& value) {
  std::array<unsigned char, uint32_size> item{};
  if (!read(item.data(), item.size())) return false;
  if (item[0] != TAG_UINT32) return fail();
  value = getUint32(&item[1]);
  return true;
}

bool BinaryInputStreamC::readEndAggregate() {
  unsigned char tag = 0;
  if (!read(&tag, end_aggregate_size)) return false;
  return tag == TAG_END_AGGREGATE ? true : fail();
}

std::size_t BinaryInputStreamC::bytesLeft() const { return isError() ? 0 : bytes_->bytesLeft(); }

}  // namespace zolt::oss
