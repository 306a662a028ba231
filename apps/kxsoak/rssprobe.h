#pragma once
// Resident memory of this process, as the kernel counts it.
#include <cstdint>

namespace kxsoak {

// Resident set size in KiB (from /proc/self/statm); 0 where it cannot be read.
int64_t ResidentKiB();
// Peak resident set size in KiB (getrusage); 0 where it cannot be read.
int64_t PeakResidentKiB();
// Bytes the heap has handed out and not had back, in KiB (glibc's mallinfo2); 0 outside
// glibc. Unlike the resident size it does not move with fragmentation or with pages the
// allocator keeps, so a leak shows in it plainly.
int64_t HeapInUseKiB();
// Hands freed heap memory back to the system, so that the resident size counts live
// memory rather than what the allocator keeps for later (a no-op outside glibc).
void ReleaseFreeHeap();
// Makes large blocks always come from mmap, so freeing a big image returns it at once
// instead of leaving a hole in the heap (glibc raises that threshold by itself otherwise).
void PinLargeBlocksToMmap();

}  // namespace kxsoak
