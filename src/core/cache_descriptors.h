// Cache size from the descriptors of processor identification leaf 2.
#pragma once

#include <cstdint>

#include "core/cpu.h"

namespace zep {

inline constexpr std::int32_t kNoCacheDescriptor = -1;

// Bytes of the cache that the descriptors of leaf 2 name, the largest first; kNoCacheDescriptor
// where none is known or the leaf has another form (AL not 1).
std::int32_t describedCacheBytes(const CpuidRegisters& leaf2);

// The same, asked of the processor: kNoCacheDescriptor on a processor that is not Intel's. The
// answer is not remembered, and identification is slow (some 100 cycles, microseconds under a
// hypervisor): for large blocks only.
std::int32_t probeDescribedCacheBytes();

// The same, as the share of one logical processor: divided by the number that leaf 4 reports.
std::int32_t probeDescribedCacheBytesPerProcessor();

}  // namespace zep
