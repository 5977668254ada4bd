// The choice of the variant: made once, when the library is loaded.
#pragma once

#include <cstdint>

#include "core/variant_index.h"
#include "zepstatus.h"

namespace zep {

extern std::int32_t n8Selected;        // 1 exactly when slot 3 was selected
extern std::uint64_t enabledFeatures;  // detected features that the selected variant may use
extern ZepStatus staticInitResult;     // result of the selection at load
extern std::int32_t avxAllowed;        // 0 vetoes AVX

int zepFeaturesEnabled(std::uint64_t mask);  // 1 when every bit of mask is enabled

inline constexpr int kAvxFeatureId = 0x46;
int zepFeatureAllowed(int id);
void zepAllowFeature(int id);

// By the processor's features. The processor always gets a variant; the status is a report.
ZepStatus zepSelectVariantAuto();

// Forces the variant of a processor type (ZepCpuType value); -1 selects as at load. Not exported.
ZepStatus zepSelectVariantForCpu(int cpu);

// Forces a slot of the tables with all features that its code may use; zepStsCpuMismatch where there is no such slot. The
// tests' and benchmarks' way to each column (core/columns.h); whether the machine can run it is for them to know.
ZepStatus zepSelectColumn(int slot);

}  // namespace zep
