#include "core/cpu.h"

#include <cpuid.h>

namespace zep {
namespace {

CpuidRegisters hardwareCpuid(std::uint32_t leaf, std::uint32_t subleaf) {
    CpuidRegisters r{};
    __cpuid_count(leaf, subleaf, r.eax, r.ebx, r.ecx, r.edx);
    return r;
}

// Callers have seen OSXSAVE (leaf 1 ECX bit 27), without which the instruction faults.
std::uint64_t hardwareXgetbv(std::uint32_t index) {
    std::uint32_t low = 0, high = 0;
    asm volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(index));
    return (std::uint64_t{high} << 32) | low;
}

}  // namespace

constexpr CpuSource kHardwareCpu{hardwareCpuid, hardwareXgetbv};
const CpuSource* cpuSource = &kHardwareCpu;

CpuidRegisters zepCpuid(std::uint32_t leaf, std::uint32_t subleaf) {
    return cpuSource->cpuid(leaf, subleaf);
}

bool zepCpuIsGenuineIntel() {
    const CpuidRegisters r = zepCpuid(0);
    return r.ebx == 0x756E6547 && r.edx == 0x49656E69 && r.ecx == 0x6C65746E;  // "Genu", "ineI", "ntel"
}

bool zepCpuAvxUsable() {
    constexpr std::uint32_t kOsxsaveAndAvx = (1u << 27) | (1u << 28);
    constexpr std::uint64_t kXmmAndYmmState = 0x6;
    if ((zepCpuid(1).ecx & kOsxsaveAndAvx) != kOsxsaveAndAvx) return false;
    return (cpuSource->xgetbv(0) & kXmmAndYmmState) == kXmmAndYmmState;
}

}  // namespace zep
