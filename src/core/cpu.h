// Processor identification. Every query goes through one seam, so that a test can put an invented processor in place
// of the real one.
#pragma once

#include <cstdint>

namespace zep {

struct CpuidRegisters {
    std::uint32_t eax, ebx, ecx, edx;
};

// What the processor answers. Tests install their own; the library installs the machine's at load.
struct CpuSource {
    CpuidRegisters (*cpuid)(std::uint32_t leaf, std::uint32_t subleaf);
    std::uint64_t (*xgetbv)(std::uint32_t index);
};

extern const CpuSource kHardwareCpu;
extern const CpuSource* cpuSource;  // never null

CpuidRegisters zepCpuid(std::uint32_t leaf, std::uint32_t subleaf = 0);
bool zepCpuIsGenuineIntel();
bool zepCpuAvxUsable();  // the processor has AVX and the operating system saves its state

}  // namespace zep
