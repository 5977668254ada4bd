// zepGetMaxCacheSizeB asks the processor once and remembers the answer, a failure like a success.
// Newer processors describe each of their caches by geometry (leaf 4); older ones have descriptors
// (leaf 2).
#include "core/cache_size.h"

#include <atomic>

#include "core/cache_descriptors.h"
#include "core/cpu.h"
#include "zepcore.h"

namespace zep {
namespace {

struct CacheSize {
    std::int32_t bytes;
    ZepStatus status;
};

constexpr CacheSize kUnknown{0, zepStsUnknownCacheSize};

CacheSize sizeByDescriptors() {
    const std::int32_t bytes = describedCacheBytes(zepCpuid(2));
    return bytes == kNoCacheDescriptor ? kUnknown : CacheSize{bytes, zepStsNoErr};
}

CacheSize sizeByGeometry() {
    constexpr std::uint32_t kSubleaves = 32, kNoMoreCaches = 0, kInstructionCache = 2;
    std::int32_t largest = 0;
    for (std::uint32_t subleaf = 0; subleaf < kSubleaves; ++subleaf) {
        const CpuidRegisters r = zepCpuid(4, subleaf);
        const std::uint32_t type = r.eax & 0x1F;
        if (type == kNoMoreCaches) break;
        if (type == kInstructionCache) continue;
        const std::uint32_t ways = (r.ebx >> 22) + 1, partitions = ((r.ebx >> 12) & 0x3FF) + 1;
        const std::uint32_t lineBytes = (r.ebx & 0xFFF) + 1, sets = r.ecx + 1;
        const auto bytes = static_cast<std::int32_t>(ways * partitions * lineBytes * sets);
        if (bytes > largest) largest = bytes;
    }
    return largest == 0 ? kUnknown : CacheSize{largest, zepStsNoErr};
}

CacheSize findCacheSize() {
    if (!zepCpuHasIdentification() || zepCpuMaxLeaf() < 2 || !zepCpuIsGenuineIntel())
        return {0, zepStsNotSupportedCpu};
    return zepCpuMaxLeaf() < 4 ? sizeByDescriptors() : sizeByGeometry();
}

// Threads that race on the first call store the same values; the status goes last, so who sees it
// sees the size.
constexpr ZepStatus kNotAskedYet = zepStsNoOperation;
std::atomic<std::int32_t> rememberedBytes{0};
std::atomic<ZepStatus> rememberedStatus{kNotAskedYet};

}  // namespace

void resetCacheSize() { rememberedStatus.store(kNotAskedYet, std::memory_order_release); }

}  // namespace zep

ZepStatus zepGetMaxCacheSizeB(int* pSizeByte) {
    using namespace zep;
    if (pSizeByte == nullptr) return zepStsNullPtrErr;
    ZepStatus status = rememberedStatus.load(std::memory_order_acquire);
    if (status == kNotAskedYet) {
        const CacheSize found = findCacheSize();
        rememberedBytes.store(found.bytes, std::memory_order_relaxed);
        rememberedStatus.store(found.status, std::memory_order_release);
        status = found.status;
    }
    *pSizeByte = rememberedBytes.load(std::memory_order_relaxed);
    return status;
}
