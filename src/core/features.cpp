#include "core/features.h"

#include <atomic>

namespace zep {
namespace {

// Filled at start-up; a race on the first query computes the same value twice. The flag goes last,
// so who sees it sees the mask.
std::atomic<std::uint64_t> cachedFeatures{0};
std::atomic<bool> featuresCached{false};

std::uint64_t detectFeatures() {
    struct Source {
        std::uint64_t feature;
        std::uint32_t CpuidRegisters::*reg;
        int bit;
    };
    static constexpr Source kLeaf1[] = {
        {feature::kMmx, &CpuidRegisters::edx, 23},      {feature::kSse, &CpuidRegisters::edx, 25},
        {feature::kSse2, &CpuidRegisters::edx, 26},     {feature::kSse3, &CpuidRegisters::ecx, 0},
        {feature::kSsse3, &CpuidRegisters::ecx, 9},     {feature::kMovbe, &CpuidRegisters::ecx, 22},
        {feature::kSse41, &CpuidRegisters::ecx, 19},    {feature::kSse42, &CpuidRegisters::ecx, 20},
        {feature::kAvx, &CpuidRegisters::ecx, 28},      {feature::kAes, &CpuidRegisters::ecx, 25},
        {feature::kPclmulqdq, &CpuidRegisters::ecx, 1},
    };
    const CpuidRegisters leaf1 = zepCpuid(1);
    std::uint64_t mask = 0;
    for (const Source& s : kLeaf1)
        if ((leaf1.*s.reg >> s.bit) & 1) mask |= s.feature;
    if (zepCpuAvxUsable()) mask |= feature::kAvxUsable;
    if (((leaf1.eax >> 8) & 0xF) == 0xB && (zepCpuid(0x20000001).edx & 2) != 0)
        mask |= feature::kExtendedFamily;
    return mask;
}

}  // namespace

ZepStatus zepQueryFeatures(std::uint64_t* pFeatures, std::uint32_t* pRegs) {
    if (!zepCpuHasIdentification()) return zepStsNotSupportedCpu;
    if (!featuresCached.load(std::memory_order_acquire)) {
        cachedFeatures.store(detectFeatures(), std::memory_order_relaxed);
        featuresCached.store(true, std::memory_order_release);
    }
    if (pFeatures == nullptr) return zepStsNullPtrErr;
    const std::uint64_t request = *pFeatures;
    *pFeatures = cachedFeatures.load(std::memory_order_relaxed);
    if (pRegs != nullptr) {
        const CpuidRegisters r =
            request == kGetInfoRequest ? zepCpuid(pRegs[0], pRegs[2]) : zepCpuid(1, 0);
        pRegs[0] = r.eax;
        pRegs[1] = r.ebx;
        pRegs[2] = r.ecx;
        pRegs[3] = r.edx;
    }
    return zepStsNoErr;
}

void resetFeatureCache() { featuresCached.store(false, std::memory_order_release); }

}  // namespace zep
