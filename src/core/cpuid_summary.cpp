#include "core/cpuid_summary.h"

#include "core/cpu.h"

namespace zep {
namespace {

constexpr std::int32_t bits(std::uint32_t reg, int low, int count) {
    return static_cast<std::int32_t>((reg >> low) & ((1u << count) - 1));
}
constexpr std::int32_t bit(std::uint32_t reg, int n) { return bits(reg, n, 1); }

std::int32_t hasLongMode() {
    constexpr std::uint32_t kExtendedBase = 0x80000000, kExtendedFeatures = 0x80000001;
    return zepCpuid(kExtendedBase).eax < kExtendedFeatures
               ? 0
               : bit(zepCpuid(kExtendedFeatures).edx, 29);
}

}  // namespace

void zepCpuidSummary(CpuidSummary* pSummary) {
    CpuidSummary& s = *pSummary;
    const CpuidRegisters leaf1 = zepCpuid(1);
    s.stepping = bits(leaf1.eax, 0, 4);
    s.model = bits(leaf1.eax, 4, 4);
    s.family = bits(leaf1.eax, 8, 4);
    s.processorType = bits(leaf1.eax, 11, 2);
    s.extendedModel = bits(leaf1.eax, 16, 4);
    s.extendedFamily = bits(leaf1.eax, 20, 8);

    s.featureEdx = static_cast<std::int32_t>(leaf1.edx);
    s.hasMmx = bit(leaf1.edx, 23);
    s.hasSse = bit(leaf1.edx, 25);
    s.hasSse2 = bit(leaf1.edx, 26);
    s.hasHyperThreading = bit(leaf1.edx, 28) & (bits(leaf1.ebx, 16, 8) > 1 ? 1 : 0);

    s.hasSse3 = bit(leaf1.ecx, 0);
    s.hasSsse3 = bit(leaf1.ecx, 9);
    s.hasSse41 = bit(leaf1.ecx, 19);
    s.hasSse42 = bit(leaf1.ecx, 20);
    s.hasMovbe = bit(leaf1.ecx, 22);
    s.hasOsxsave = bit(leaf1.ecx, 27);
    s.hasAvx = bit(leaf1.ecx, 28);

    const CpuidRegisters leaf2 = zepCpuid(2);
    s.cacheDescEax = static_cast<std::int32_t>(leaf2.eax);
    s.cacheDescEdx = static_cast<std::int32_t>(leaf2.edx);
    s.hasLongMode = hasLongMode();
    s.coresPerPackage = zepCpuCoresPerPackage();
}

}  // namespace zep
