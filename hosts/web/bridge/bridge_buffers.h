/* How texts and numbers get in and out of a module: through two buffers that all calls share. A caller makes
 * room, writes its text to the start of the buffer, and passes the length; a call that answers with a text
 * leaves it there and returns its length, or -1 for none. Texts are UTF-16. Several texts in one answer are
 * separated by U+0000, which no formula holds. A pointer is valid until the next call (in WebAssembly the
 * whole memory may then be somewhere else). One thread at a time. */
#pragma once

#include <stdint.h>
#ifndef __cplusplus
#include <uchar.h>
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The start of a buffer with so much room. What it holds stays; 0 only asks where it is. */
char16_t* zolt_text(int32_t room);
int32_t* zolt_numbers(int32_t room);
/* How long the last text is that a call has answered with. */
int32_t zolt_text_length(void);

#ifdef __cplusplus
}
#endif
