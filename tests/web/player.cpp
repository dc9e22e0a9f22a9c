#include "tests/web/player.h"

#include "hosts/web/bridge/bridge_state.h"
#include "zolt/script/script_runner.h"

using namespace zolt::web;

std::int32_t zolt_play(std::int32_t field, std::int32_t length) {
  zolt::script::EventScriptT script;
  unsigned long position = 0;
  if (!zolt::script::readEventScript(buffers().takeText(length), script, position)) return -1;
  std::uint64_t sum = 0xCBF29CE484222325;
  FieldS* const shown = module().find(field);
  zolt::script::ScriptRunnerC runner(shown->field);
  for (auto const& step : script) {
    withField(field, [&](FieldS&) { return runner.run(step); });
    std::int32_t const* const words = zolt_frame(field, 0, 0, 0, 0);
    for (std::int32_t i = 0; i < words[ZOLT_FRAME_WORDS]; ++i) {
      sum = (sum ^ static_cast<std::uint32_t>(words[i])) * 0x100000001B3;
    }
  }
  // The runner has a clipboard of its own, which it leaves to the field.
  shown->field.setClipboard(module().getClipboard());
  buffers().answer({static_cast<std::int32_t>(sum), static_cast<std::int32_t>(sum >> 32)});
  return toNumber(script.size());
}
