#pragma once

namespace zolt::bench {

/// Bytes in use on the heap since this process began, including one word per block for the allocator. Counted
/// by the replacements of the global allocation functions in allocations.cpp.
long heapBytesInUse();
/// How many allocations have been made so far.
long heapAllocations();

}  // namespace zolt::bench
