#include "core/features.h"

#include <atomic>
#include <cstddef>

namespace zep {
namespace {

// Filled at start-up; a race on the first query computes the same value twice. The flag goes last,
// so who sees it sees the mask.
std::atomic<std::uint64_t> cachedFeatures{0};
std::atomic<bool> featuresCached{false};

struct FeatureBit {
    std::uint64_t feature;
    std::uint32_t CpuidRegisters::*reg;
    int bit;
};

template <std::size_t N>
std::uint64_t collect(const CpuidRegisters& registers, const FeatureBit (&bits)[N]) {
    std::uint64_t mask = 0;
    for (const FeatureBit& b : bits)
        if ((registers.*b.reg >> b.bit) & 1) mask |= b.feature;
    return mask;
}

std::uint64_t detectFeatures() {
    static constexpr FeatureBit kLeaf1[] = {
        {feature::kMmx, &CpuidRegisters::edx, 23},      {feature::kSse, &CpuidRegisters::edx, 25},
        {feature::kSse2, &CpuidRegisters::edx, 26},     {feature::kSse3, &CpuidRegisters::ecx, 0},
        {feature::kSsse3, &CpuidRegisters::ecx, 9},     {feature::kMovbe, &CpuidRegisters::ecx, 22},
        {feature::kSse41, &CpuidRegisters::ecx, 19},    {feature::kSse42, &CpuidRegisters::ecx, 20},
        {feature::kAvx, &CpuidRegisters::ecx, 28},      {feature::kAes, &CpuidRegisters::ecx, 25},
        {feature::kPclmulqdq, &CpuidRegisters::ecx, 1},
    };
    const CpuidRegisters leaf1 = zepCpuid(1);
    std::uint64_t mask = collect(leaf1, kLeaf1);
    if (zepCpuAvxUsable()) mask |= feature::kAvxUsable;
    if (((leaf1.eax >> 8) & 0xF) == 0xB && (zepCpuid(0x20000001).edx & 2) != 0)
        mask |= feature::kExtendedFamily;
    return mask;
}

// Zeros where the processor does not have the leaf: Intel's answer with those of their last one.
CpuidRegisters leafOrZeros(std::uint32_t leaf) {
    const std::uint32_t group = leaf & 0x80000000;
    const std::uint32_t last = zepCpuid(group).eax;
    return last >= leaf && (last & 0x80000000) == group ? zepCpuid(leaf) : CpuidRegisters{};
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

std::uint64_t zepQueryWideFeatures() {
    static constexpr FeatureBit kLeaf1[] = {
        {feature::kFma, &CpuidRegisters::ecx, 12},
        {feature::kF16c, &CpuidRegisters::ecx, 29},
    };
    static constexpr FeatureBit kLeaf7[] = {
        {feature::kBmi1, &CpuidRegisters::ebx, 3},
        {feature::kAvx2, &CpuidRegisters::ebx, 5},
        {feature::kBmi2, &CpuidRegisters::ebx, 8},
        {feature::kAvx512f, &CpuidRegisters::ebx, 16},
        {feature::kAvx512dq, &CpuidRegisters::ebx, 17},
        {feature::kAvx512cd, &CpuidRegisters::ebx, 28},
        {feature::kAvx512bw, &CpuidRegisters::ebx, 30},
        {feature::kAvx512vl, &CpuidRegisters::ebx, 31},
        {feature::kAvx512vbmi, &CpuidRegisters::ecx, 1},
        {feature::kAvx512vbmi2, &CpuidRegisters::ecx, 6},
    };
    static constexpr FeatureBit kExtended[] = {{feature::kLzcnt, &CpuidRegisters::ecx, 5}};
    const std::uint64_t mask = collect(leafOrZeros(1), kLeaf1) | collect(leafOrZeros(7), kLeaf7) |
                               collect(leafOrZeros(0x80000001), kExtended);
    return zepCpuAvx512Usable() ? mask | feature::kAvx512Usable : mask;
}

void resetFeatureCache() { featuresCached.store(false, std::memory_order_release); }

}  // namespace zep
