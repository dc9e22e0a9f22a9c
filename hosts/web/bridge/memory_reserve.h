#pragma once

#include <cstddef>

namespace zolt::web {

// A WebAssembly module without exceptions ends where memory runs out. So this one keeps a reserve: when
// nothing else is left, it is given back, and the call that goes on has it to come to its end. The bridge
// then takes back what the call did. In a native build memory that runs out is an exception, and nothing here
// has an effect.

/// Sets a new reserve aside if the last one was used. False when there is no room for it.
bool renewReserve();
/// Whether there are so many bytes beside it.
bool hasRoom(std::size_t bytes);
/// Whether the reserve has been used since it was renewed.
bool isShort();

}  // namespace zolt::web
