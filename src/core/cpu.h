// Processor identification. Every query goes through one seam, so that a test can put an invented
// processor, and an invented clock, in place of the real ones.
#pragma once

#include <cstdint>

namespace zep {

struct CpuidRegisters {
    std::uint32_t eax, ebx, ecx, edx;
};

// What the machine answers. Tests install their own; the library starts with kHardwareCpu.
struct CpuSource {
    // Null: a processor without identification.
    CpuidRegisters (*cpuid)(std::uint32_t leaf, std::uint32_t subleaf);
    std::uint64_t (*xgetbv)(std::uint32_t index);
    std::uint64_t (*tsc)();
    std::int64_t (*wallClockSeconds)();
    // Bits of MXCSR that the processor has, from its saved floating-point state; 0: it saves none.
    std::uint32_t (*mxcsrFeatureMask)();
};

extern const CpuSource kHardwareCpu;
extern const CpuSource* cpuSource;  // never null

bool zepCpuHasIdentification();
// All zero on a processor without identification.
CpuidRegisters zepCpuid(std::uint32_t leaf, std::uint32_t subleaf = 0);
std::uint32_t zepCpuMaxLeaf();
bool zepCpuIsGenuineIntel();
bool zepCpuAvxUsable();     // the processor has AVX and the operating system saves its state
bool zepCpuAvx512Usable();  // the same for the operating system's part of AVX-512 alone
bool zepCpuHasSse();
bool zepCpuHasDenormalsAreZero();
// As leaf 4 has it; 1 where the processor has no such leaf.
std::int32_t zepCpuCoresPerPackage();
std::uint64_t zepReadTsc();

}  // namespace zep
