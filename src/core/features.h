// Processor features as one mask, detected once.
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "zepstatus.h"

namespace zep {

namespace feature {
inline constexpr std::uint64_t kMmx = 0x1;
inline constexpr std::uint64_t kSse = 0x2;
inline constexpr std::uint64_t kSse2 = 0x4;
inline constexpr std::uint64_t kSse3 = 0x8;
inline constexpr std::uint64_t kSsse3 = 0x10;
inline constexpr std::uint64_t kMovbe = 0x20;
inline constexpr std::uint64_t kSse41 = 0x40;
inline constexpr std::uint64_t kSse42 = 0x80;
inline constexpr std::uint64_t kAvx = 0x100;
inline constexpr std::uint64_t kAvxUsable = 0x200;
inline constexpr std::uint64_t kAes = 0x400;
inline constexpr std::uint64_t kPclmulqdq = 0x800;
inline constexpr std::uint64_t kExtendedFamily = 0x1000;

// Beyond the mask that zepQueryFeatures reports: what the wider columns need.
constexpr std::uint64_t wide(int n) { return std::uint64_t{1} << (32 + n); }
inline constexpr std::uint64_t kFma = wide(0), kF16c = wide(1), kBmi1 = wide(2), kAvx2 = wide(3),
                               kBmi2 = wide(4), kLzcnt = wide(5), kAvx512f = wide(6),
                               kAvx512dq = wide(7), kAvx512cd = wide(8), kAvx512bw = wide(9),
                               kAvx512vl = wide(10), kAvx512vbmi = wide(11),
                               kAvx512vbmi2 = wide(12);
// The operating system saves mask registers and the whole of all vector registers.
inline constexpr std::uint64_t kAvx512Usable = wide(13);
}  // namespace feature

// zepStsNotSupportedCpu on a processor without identification, then zepStsNullPtrErr where
// pFeatures is null. Stores the detected mask in *pFeatures. Where pRegs is not null, four
// registers (EAX, EBX, ECX, EDX) go there: of leaf 1, or, where *pFeatures held kGetInfoRequest, of
// the leaf pRegs[0] and sub-leaf pRegs[2].
ZepStatus zepQueryFeatures(std::uint64_t* pFeatures, std::uint32_t* pRegs);
inline constexpr std::uint64_t kGetInfoRequest = 0x616F666E69746567;  // the bytes "getinfoa"

// The features beyond those of zepQueryFeatures; asked of the processor at each call.
std::uint64_t zepQueryWideFeatures();

// Forgets what has been detected; for tests that change cpuSource.
void resetFeatureCache();

}  // namespace zep
