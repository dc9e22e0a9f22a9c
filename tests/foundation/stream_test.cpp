#include <gtest/gtest.h>

#include <algorithm>

#include "zolt/oss/binary_stream.h"
#include "zolt/oss/binary_string_stream.h"
#include "zolt/oss/utf8.h"

namespace zolt::oss {
namespace {

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
    std::size_t room_ = 4;
  };
  PointerTC<ObjectOutputStreamABC> out = new BinaryOutputStreamC(new FullStreamC);
  out->writeMember(1UL);
  EXPECT_TRUE(out->isError());
  if (sizeof(unsigned long) > 4) {
    out = new BinaryOutputStreamC(new BinaryStringOutputStreamC);
    out->writeMember(static_cast<unsigned long>(0x1'0000'0000ULL));
    EXPECT_TRUE(out->isError()) << "more than the form holds";
  }
}

// Too long, a surrogate, past the last code point, cut short, cut short by another character.
TEST(Utf8, ReadsBackAndMarksEachWrongSequence) {
  wstring const text = u"a\u00DF\u2208\uFFFD\U00010000\U0010FFFF";
  EXPECT_EQ(fromUtf8(toUtf8(text)), text);
  EXPECT_EQ(toUtf8(wstring{u'a', 0xD800, u'b'}), "a\uFFFDb");
  std::pair<char const*, char const*> const wrong[] = {{"\xC0\xAF", "??"},
                                                       {"\xED\xA0\x80", "???"},
                                                       {"\xF4\x90\x80\x80", "????"},
                                                       {"x\xF0\x90\x80", "x?"},
                                                       {"\xE2\x88x\xFF", "?x?"}};
  for (auto const& [bytes, expected] : wrong) {
    wstring marked;
    Utf8FaultS fault;
    EXPECT_FALSE(fromUtf8(bytes, marked, &fault));
    std::replace(marked.begin(), marked.end(), char16_t(0xFFFD), u'?');
    EXPECT_EQ(toUtf8(marked), expected);
    EXPECT_EQ(fault.character, fault.byte);
  }
}

}  // namespace
}  // namespace zolt::oss
