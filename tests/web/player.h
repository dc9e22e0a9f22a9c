/* Plays event scripts on a field of the bridge, for tests that compare modules. */
#pragma once

#include "hosts/web/bridge/bridge_buffers.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Plays a script that is in the text, step by step, and returns how many steps it has; -1 when it is none.
 * Numbers: two that sum up all words of all frames after the steps. */
int32_t zolt_play(int32_t field, int32_t length);

#ifdef __cplusplus
}
#endif
