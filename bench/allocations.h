#pragma once

namespace zolt::bench {

/// Bytes in use on the heap, with the allocator's own word a block, since this process began. Counted by the
/// replacements of the global allocation functions in allocations.cpp.
long heapBytesInUse();
/// How many allocations were made so far.
long heapAllocations();

}  // namespace zolt::bench
