#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "zolt/oss/binary_stream.h"
#include "zolt/oss/binary_string_stream.h"
#include "zolt/oss/byte_format.h"
#include "zolt/oss/castable_id.h"
#include "zolt/oss/serializable.h"

namespace zolt::oss {
namespace {

// A tree of boxes with a number and a label, as simple as an object with parts can be.
class BoxC : public SerializableABC {
 public:
  static char16_t const* getCastableId() { return u"BoxC"; }
  static SerializableABC* create() { return new BoxC; }

  SerializableABC const* lookUpBase(char16_t const* id) const override {
    return equalCastableIds(id, getCastableId()) ? this : SerializableABC::lookUpBase(id);
  }
  char16_t const* qCastableId() const override { return getCastableId(); }

  void writeObject(PointerTC<ObjectOutputStreamABC>& out) const override {
    out->writeStartAggregate(AGGREGATE_RECORD);
    out->writeMember(number);
    out->writeMember(label);
    out->writeMember(static_cast<unsigned long>(parts.size()));
    for (BoxC const& part : parts) part.writeObject(out);
    out->writeEndAggregate();
  }

  bool readObject(PointerTC<ObjectInputStreamABC>& in) override {
    constexpr std::size_t least = byte_format::start_aggregate_size + byte_format::int16_size +
                                  byte_format::empty_string_size + byte_format::uint32_size +
                                  byte_format::end_aggregate_size;
    unsigned long count = 0;
    bool const headRead = in->readStartAggregate(AGGREGATE_RECORD) && in->readMember(number) &&
                          in->readMember(label) && in->readMember(count);
    if (!headRead) return false;
    if (count > in->bytesLeft() / least) {
      in->setError();
      return false;
    }
    parts.resize(count);
    for (BoxC& part : parts) {
      if (!part.readObject(in)) return false;
    }
    return in->readEndAggregate();
  }

  short number = 0;
  wstring label;
  std::vector<BoxC> parts;
};

bool operator==(BoxC const& a, BoxC const& b) {
  return a.number == b.number && a.label == b.label && a.parts == b.parts;
}

BoxC sample() {
  BoxC first;
  first.number = -2;
  first.label = u"a\u2212\xD800";
  BoxC box;
  box.number = 0x1234;
  box.parts = {first, BoxC()};
  return box;
}

PointerTC<ObjectInputStreamABC> readerOf(bytestring const& bytes) {
  return new BinaryInputStreamC(new BinaryStringInputStreamC(bytes));
}

template <class WriteF>
bytestring written(WriteF write) {
  PointerTC<BinaryStringOutputStreamC> const bytes = new BinaryStringOutputStreamC;
  PointerTC<ObjectOutputStreamABC> out = new BinaryOutputStreamC(bytes);
  write(out);
  bytes->flush();
  return bytes->getString();
}

TEST(ObjectStreams, CarryTheWholeRangeOfEachMember) {
  wstring longText;
  for (int i = 0; i < 70000; ++i) longText += static_cast<char16_t>(i);
  bytestring const bytes = written([&](auto& out) {
    for (short const value : {short{-32768}, short{32767}}) out->writeMember(value);
    out->writeMember(0xFFFFFFFFUL);
    out->writeMember(longText);
    out->writeStartAggregate(-1);
  });
  PointerTC<ObjectInputStreamABC> in = readerOf(bytes);
  short least = 0, most = 0;
  unsigned long count = 1;
  wstring text;
  EXPECT_TRUE(in->readMember(least) && in->readMember(most) && in->readMember(count) && in->readMember(text));
  EXPECT_TRUE(least == -32768 && most == 32767 && count == 0xFFFFFFFFUL && text == longText);
  EXPECT_TRUE(in->readStartAggregate(-1));
  EXPECT_EQ(in->bytesLeft(), 0U);
}

TEST(ObjectStreams, FirstFailureLastsAndLeavesValuesAlone) {
  PointerTC<ObjectInputStreamABC> in = readerOf({0x03, 0x07, 0x00, 0x03, 0x08, 0x00});
  wstring text = u"kept";
  short number = 6;
  EXPECT_FALSE(in->readMember(text));
  EXPECT_FALSE(in->readMember(number)) << "the second member would be readable";
  EXPECT_TRUE(in->isError());
  EXPECT_EQ(in->bytesLeft(), 0U);
  EXPECT_TRUE(text == u"kept" && number == 6);
  EXPECT_FALSE(readerOf({0x01, 0x02, 0x00})->readStartAggregate(1)) << "an aggregate of another kind";

  // A byte stream that takes so many bytes and no more.
  class FullStreamC : public ByteOutputStreamABC {
   public:
    void write(unsigned char const*, std::size_t count) override { room_ -= std::min(room_, count); }
    void flush() override {}
    bool isError() const override { return room_ == 0; }

   private:
    std::size_t room_ = 20;
  };
  PointerTC<ObjectOutputStreamABC> out = new BinaryOutputStreamC(new FullStreamC);
  sample().writeObject(out);
  EXPECT_TRUE(out->isError());
  if (sizeof(unsigned long) > 4) {
    out = new BinaryOutputStreamC(new BinaryStringOutputStreamC);
    out->writeMember(static_cast<unsigned long>(0x1'0000'0000ULL));
    EXPECT_TRUE(out->isError()) << "more than the form holds";
  }
}

TEST(SerializableObjects, AreMadeByTheirId) {
  SerializableABC::registerSerializable(BoxC::getCastableId(), &BoxC::create);
  BoxC const box = sample();
  bytestring const bytes = written([&](auto& out) { SerializableABC::writeIdentified(box, out); });

  PointerTC<ObjectInputStreamABC> in = readerOf(bytes);
  std::unique_ptr<SerializableABC> const copy = SerializableABC::readIdentified(in);
  ASSERT_TRUE(copy && copy->lookUpBase(wstring(u"BoxC").c_str()));
  EXPECT_EQ(static_cast<BoxC&>(*copy), box);
  EXPECT_EQ(copy->lookUpBase(u"SerializableABC"), copy.get());
  EXPECT_FALSE(copy->lookUpBase(u"Box"));
  EXPECT_FALSE(copy->lookUpBase(nullptr));

  EXPECT_FALSE(SerializableABC::createById(u"UnknownC"));
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    PointerTC<ObjectInputStreamABC> cut = readerOf(bytes.substr(0, length));
    EXPECT_FALSE(SerializableABC::readIdentified(cut));
    EXPECT_TRUE(cut->isError());
  }
  bytestring unknown = bytes;
  unknown[8] = 'X';  // the first character of the id
  PointerTC<ObjectInputStreamABC> stranger = readerOf(unknown);
  EXPECT_FALSE(SerializableABC::readIdentified(stranger));
  EXPECT_TRUE(stranger->isError());
}

}  // namespace
}  // namespace zolt::oss
