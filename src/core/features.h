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
}  // namespace feature

// zepStsNotSupportedCpu on a processor without identification, then zepStsNullPtrErr where
// pFeatures is null. Stores the detected mask in *pFeatures. Where pRegs is not null, four
// registers (EAX, EBX, ECX, EDX) go there: of leaf 1, or, where *pFeatures held kGetInfoRequest, of
// the leaf pRegs[0] and sub-leaf pRegs[2].
ZepStatus zepQueryFeatures(std::uint64_t* pFeatures, std::uint32_t* pRegs);
inline constexpr std::uint64_t kGetInfoRequest = 0x616F666E69746567;  // the bytes "getinfoa"

// Forgets what has been detected; for tests that change cpuSource.
void resetFeatureCache();

}  // namespace zep
