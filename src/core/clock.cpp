#include <x86intrin.h>

#include "core/cpu.h"
#include "zepcore.h"

namespace zep {
namespace {

// Counts of the time stamp counter until the clock shows another second. A pass that starts at a
// second's boundary, as one that follows another does, covers a whole second.
std::int64_t countsToNextSecond() {
    const std::uint64_t first = zepReadTsc();
    const std::int64_t second = cpuSource->wallClockSeconds();
    while (cpuSource->wallClockSeconds() - second < 1) {
    }
    return static_cast<std::int64_t>(zepReadTsc() - first);
}

// A counter that jumps, as under a migrated virtual machine, must not make the conversion
// undefined.
int truncateToInt(double x) {
    constexpr double kMax = 2147483647.0;
    if (x < -kMax) return -2147483647;
    return x > kMax ? 2147483647 : static_cast<int>(x);
}

}  // namespace
}  // namespace zep

Zep64u zepGetCpuClocks(void) { return __rdtsc(); }

ZepStatus zepGetCpuFreqMhz(int* pMhz) {
    using namespace zep;
    if (pMhz == nullptr) return zepStsNullPtrErr;
    countsToNextSecond();  // a fraction of a second: only finds the boundary
    const auto second = static_cast<float>(countsToNextSecond());
    const auto third = static_cast<float>(countsToNextSecond());
    *pMhz = truncateToInt(double{second + third} / 1000000.0 * 0.5);
    return zepStsNoErr;
}
