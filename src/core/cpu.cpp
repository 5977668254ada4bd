#include "core/cpu.h"

#include <cpuid.h>
#include <immintrin.h>

#include <chrono>
#include <cstring>

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

std::uint64_t hardwareTsc() { return __rdtsc(); }

// The steady clock: a wait for its next second ends, also when somebody sets the time of day back.
std::int64_t steadySeconds() {
    using std::chrono::seconds, std::chrono::steady_clock;
    return std::chrono::duration_cast<seconds>(steady_clock::now().time_since_epoch()).count();
}

std::uint32_t hardwareMxcsrFeatureMask() {
    // Zeroed first: processors without the field leave it as it was.
    alignas(16) unsigned char state[512] = {};
    asm volatile("fxsave %0" : "+m"(state));
    constexpr int kMxcsrMaskOffset = 28;
    std::uint32_t mask = 0;
    std::memcpy(&mask, state + kMxcsrMaskOffset, sizeof mask);
    return mask;
}

}  // namespace

constexpr CpuSource kHardwareCpu{hardwareCpuid, hardwareXgetbv, hardwareTsc, steadySeconds,
                                 hardwareMxcsrFeatureMask};
const CpuSource* cpuSource = &kHardwareCpu;

bool zepCpuHasIdentification() { return cpuSource->cpuid != nullptr; }

CpuidRegisters zepCpuid(std::uint32_t leaf, std::uint32_t subleaf) {
    return zepCpuHasIdentification() ? cpuSource->cpuid(leaf, subleaf) : CpuidRegisters{};
}

std::uint32_t zepCpuMaxLeaf() { return zepCpuid(0).eax; }

bool zepCpuIsGenuineIntel() {
    const CpuidRegisters r = zepCpuid(0);
    return r.ebx == 0x756E6547 && r.edx == 0x49656E69 && r.ecx == 0x6C65746E;  // "GenuineIntel"
}

// Leaf 1 ECX bits, and the states that the operating system saves (XCR0).
static bool savesStates(std::uint32_t leaf1Ecx, std::uint64_t states) {
    return (zepCpuid(1).ecx & leaf1Ecx) == leaf1Ecx && (cpuSource->xgetbv(0) & states) == states;
}
constexpr std::uint32_t kOsxsave = 1u << 27, kAvx = 1u << 28;
constexpr std::uint64_t kXmmAndYmmState = 0x6, kOpmaskAndZmmStates = 0xE0;

bool zepCpuAvxUsable() { return savesStates(kOsxsave | kAvx, kXmmAndYmmState); }
bool zepCpuAvx512Usable() { return savesStates(kOsxsave, kXmmAndYmmState | kOpmaskAndZmmStates); }

bool zepCpuHasSse() { return ((zepCpuid(1).edx >> 25) & 1) != 0; }

bool zepCpuHasDenormalsAreZero() {
    constexpr std::uint32_t kDenormalsAreZero = 0x40;
    return (cpuSource->mxcsrFeatureMask() & kDenormalsAreZero) != 0;
}

std::int32_t zepCpuCoresPerPackage() {
    return zepCpuMaxLeaf() < 4 ? 1 : static_cast<std::int32_t>(zepCpuid(4, 0).eax >> 26) + 1;
}

std::uint64_t zepReadTsc() { return cpuSource->tsc(); }

}  // namespace zep
