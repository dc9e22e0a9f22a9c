// Plays any events of a person and a host on a view.

#include "fuzzing/bytes_text.h"
#include "fuzzing/event_bytes.h"
#include "fuzzing/trip.h"
#include "fuzzing/view_session.h"

namespace zolt::fuzz {

std::string checkEvents(std::uint8_t const* data, std::size_t size) {
  chooseStretches(size);
  field::EventScriptT const script = toEvents(data, size);
  ViewSessionC session;
  std::string fault = session.play(script);
  if (fault.empty()) fault = session.finish();
  return fault.empty() ? fault : fault + "\n" + toBytes(script::writeEventScript(script));
}

}  // namespace zolt::fuzz
