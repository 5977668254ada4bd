#include "core/cpu.h"
#include "zepcore.h"

namespace zep {
namespace {

// Where the topology leaf lists processors of this package, its second level counts them; bit 1 of
// the first level's count tells whether two of them share a core.
int intelCores() {
    const std::uint32_t maxLeaf = zepCpuMaxLeaf();
    if (maxLeaf < 4) return 1;
    constexpr std::uint32_t kTopologyLeaf = 11;
    if (maxLeaf >= kTopologyLeaf) {
        const std::uint32_t firstLevel = zepCpuid(kTopologyLeaf, 0).ebx;
        if (firstLevel != 0) {
            const std::uint32_t processors = zepCpuid(kTopologyLeaf, 1).ebx & 0xFFFF;
            return static_cast<int>((firstLevel & 2) != 0 ? processors >> 1 : processors);
        }
    }
    return zepCpuCoresPerPackage();
}

int otherCores() {
    constexpr std::uint32_t kAmdVendorEnd = 0x444D4163;  // "cAMD"
    if (zepCpuid(0).ecx != kAmdVendorEnd || (zepCpuid(0x80000000).eax & 0xF) < 8) return 1;
    return static_cast<int>(zepCpuid(0x80000008).ecx & 0xFF) + 1;
}

}  // namespace
}  // namespace zep

int zepGetNumCoresOnDie(void) {
    return zep::zepCpuIsGenuineIntel() ? zep::intelCores() : zep::otherCores();
}
