#pragma once

#include "fuzzing/targets.h"
#include "zolt/script/event_script.h"

namespace zolt::fuzz {

/// Reads any bytes as events: a byte below 0x80 is that typed character, one above it another kind of event,
/// followed by its arguments. So a small change of the bytes is a small change of the events, and plain ASCII
/// text is typed as it is.
field::EventScriptT toEvents(std::uint8_t const* data, std::size_t size);

/// The bytes that `toEvents` reads as the script. They omit steps with texts longer than 255 bytes, the
/// format of shown numbers, and places deeper or farther to the right than a byte can say.
BytesT fromEvents(field::EventScriptT const& script);

}  // namespace zolt::fuzz
