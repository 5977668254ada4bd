// The one index that every stub reads.
#pragma once

#include <cstdint>

namespace zep {

inline constexpr int kVariantSlots = 8;

// Slot in every dispatch table, 0 to 7; written by the selection only. The stubs name it, hence the fixed symbol.
[[gnu::visibility("hidden")]] extern std::int32_t variantIndex asm("zep_variantIndex");

}  // namespace zep
