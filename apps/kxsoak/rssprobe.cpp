#include "rssprobe.h"

#include <sys/resource.h>
#include <unistd.h>

#include <fstream>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace kxsoak {

int64_t ResidentKiB() {
    std::ifstream statm("/proc/self/statm");
    int64_t sizePages = 0;
    int64_t residentPages = 0;
    if (!(statm >> sizePages >> residentPages)) return 0;
    return residentPages * (sysconf(_SC_PAGESIZE) / 1024);
}

int64_t PeakResidentKiB() {
    rusage usage{};
    if (getrusage(RUSAGE_SELF, &usage) != 0) return 0;
    return usage.ru_maxrss;  // KiB on Linux
}

int64_t HeapInUseKiB() {
#if defined(__GLIBC__)
    const struct mallinfo2 info = mallinfo2();
    return int64_t((info.uordblks + info.hblkhd) / 1024);
#else
    return 0;
#endif
}

void ReleaseFreeHeap() {
#if defined(__GLIBC__)
    malloc_trim(0);
#endif
}

void PinLargeBlocksToMmap() {
#if defined(__GLIBC__)
    mallopt(M_MMAP_THRESHOLD, 256 * 1024);
#endif
}

}  // namespace kxsoak
