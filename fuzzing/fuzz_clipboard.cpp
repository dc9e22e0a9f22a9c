// Pastes bytes from a clipboard into a formula that is not empty, and plays the events that may follow.
//
// The first byte of an input chooses the formula, the second is the number of bytes of events that follow;
// the rest is pasted.

#include <algorithm>
#include <iterator>

#include "fuzzing/bytes_text.h"
#include "fuzzing/event_bytes.h"
#include "fuzzing/view_session.h"
#include "zolt/oss/binary_stream.h"
#include "zolt/oss/binary_string_stream.h"
#include "zolt/oss/quoted_text.h"

namespace zolt::fuzz {

using namespace math::ved;

namespace {

constexpr char16_t const* formulas[] = {
    u"tree \"[\\\"\\\"]\"", u"tree \"[\\\"a+\\\", /<[\\\"b\\\"] ; [\\\"c\\\"]>, \\\"\\\"]\" key left",
    u"tree \"[\\\"\\\", (, \\\"a\\\", AC, \\\"\\\"]\" key left key left",
    u"tree \"[\\\"x\\\", P[\\\"2\\\"], \\\"+y\\\"]\" key left shift key left shift key left shift",
    u"show \"sqrt(+(a,b))\""};

/// Reading makes either nothing or a tree that can be walked, with no more memory than the bytes account for.
std::string checkReading(bytestring const& bytes) {
  PointerTC<oss::BinaryStringInputStreamC> const held(new oss::BinaryStringInputStreamC(bytes));
  PointerTC<oss::ObjectInputStreamABC> in(new oss::BinaryInputStreamC(held));
  Node4C node;
  startMeter();
  bool const read = node.readObject(in);
  if (auto fault = checkMeter(bytes.size()); !fault.empty()) return fault;
  writeBytes(node);
  if (!read) return {};
  bytestring const written = writeBytes(node);
  return bytes.compare(0, written.size(), written) == 0 ? "" : "what was read is not what stands there";
}

}  // namespace

std::string checkClipboard(std::uint8_t const* data, std::size_t size) {
  if (size < 2) return {};
  std::size_t const events = std::min<std::size_t>(data[1], size - 2);
  bytestring const bytes(data + 2 + events, data + size);
  prepare();
  if (auto fault = checkReading(bytes); !fault.empty()) return fault;

  field::EventScriptT script;
  unsigned long position = 0;
  script::readEventScript(formulas[data[0] % std::size(formulas)], script, position);
  field::ScriptStepS paste;
  paste.word = field::SCRIPT_PASTE_BYTES;
  paste.text = oss::toHexadecimal(bytes);
  script.push_back(paste);
  field::EventScriptT const rest = toEvents(data + 2, events);
  script.insert(script.end(), rest.begin(), rest.end());

  ViewSessionC session;
  std::string fault = session.play(script);
  if (fault.empty()) fault = session.finish();
  return fault.empty() ? fault : fault + "\n" + toBytes(script::writeEventScript(script));
}

}  // namespace zolt::fuzz
