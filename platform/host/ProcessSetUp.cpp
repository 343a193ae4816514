// The host's start in a process whose heap is kept in huge pages.
#include "host/ProcessSetUp.h"

#include <cstdlib>
#include <limits>
#include <malloc.h>
#include <string>
#include <unistd.h>

namespace vhost {

namespace {

constexpr const char* kTunables = "GLIBC_TUNABLES";
constexpr const char* kHugePages = "glibc.malloc.hugetlb=1";
/// Set in the program started anew, so that it never starts itself again (the C library may
/// drop a setting it does not allow).
constexpr const char* kStarted = "VORTA_HEAP_IN_HUGE_PAGES";

} // namespace

void HeapInHugePages(char** argv) {
    if (argv == nullptr || argv[0] == nullptr || std::getenv(kStarted) != nullptr)
        return;
    const char* before = std::getenv(kTunables);
    const std::string tunables = before != nullptr ? before : "";
    // A setting of the user's own is kept as it is.
    if (tunables.find("glibc.malloc.hugetlb=") != std::string::npos)
        return;
    const std::string with = tunables.empty() ? kHugePages : tunables + ":" + kHugePages;
    if (::setenv(kTunables, with.c_str(), 1) != 0 || ::setenv(kStarted, "1", 1) != 0)
        return;
    ::execv("/proc/self/exe", argv);
    // Not started anew: the program goes on as it was started.
    if (before != nullptr)
        ::setenv(kTunables, tunables.c_str(), 1);
    else
        ::unsetenv(kTunables);
    ::unsetenv(kStarted);
}

void KeepFreedMemory() {
    // Blocks up to the largest the C library allows are taken from the heap rather than mapped
    // on their own, and the top of the heap is never given back.
    constexpr int kLargestHeapBlock = 32 << 20;
    ::mallopt(M_MMAP_THRESHOLD, kLargestHeapBlock);
    ::mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
}

} // namespace vhost
