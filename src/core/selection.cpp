#include "core/selection.h"

#include "core/columns.def"
#include "core/features.h"

namespace zep {

std::int32_t variantIndex = 0;
std::int32_t n8Selected = 0;
std::uint64_t enabledFeatures = feature::kMmx | feature::kSse | feature::kSse2;
ZepStatus staticInitResult = zepStsNoOperation;
std::int32_t avxAllowed = 1;

namespace {

constexpr std::int32_t kFallbackSlot = 0, kSse3Slot = 1, kSsse3Slot = 2, kAtomSlot = 3,
                       kSse41Slot = 4, kAvxSlot = 5;

// Features that the code of a slot may use. The columns behind slot 5 are e9 to a caller.
constexpr std::uint64_t kMasks[kVariantSlots] = {0x7, 0xF, 0x1F, 0x3F, 0xCDF, 0xFDF, 0xFDF, 0xFDF};

void select(std::int32_t slot, std::uint64_t features) {
    variantIndex = slot;
    n8Selected = slot == kAtomSlot ? 1 : 0;
    enabledFeatures = features & kMasks[slot];
}

bool has(std::uint64_t features, std::uint64_t mask) { return (features & mask) == mask; }

struct Needs {
    std::int32_t slot;
    std::uint64_t features;
};

// The best slot last.
using namespace feature;
constexpr Needs kNeeds[] = {{kFallbackSlot, 0},
#define ZEP_NEEDS(arg, slot, column, family, shared, needs, ...) {slot, needs},
                            ZEP_COLUMNS(ZEP_NEEDS, )
#undef ZEP_NEEDS
};

std::int32_t bestSlot(std::uint64_t features) {
    const bool allowsAvx = zepFeatureAllowed(kAvxFeatureId) != 0;
    std::int32_t best = kFallbackSlot;
    for (const Needs& n : kNeeds)
        if (has(features, n.features) && (n.slot < kAvxSlot || allowsAvx)) best = n.slot;
    return best;
}

// 101 is the first priority open to programs: a caller's own static constructors find the variant chosen, also where
// the library is linked statically.
[[gnu::constructor(101)]] void attach() { staticInitResult = zepSelectVariantAuto(); }

}  // namespace

int zepFeaturesEnabled(std::uint64_t mask) { return has(enabledFeatures, mask) ? 1 : 0; }

int zepFeatureAllowed(int id) { return id == kAvxFeatureId && avxAllowed == 0 ? 0 : 1; }

void zepAllowFeature(int id) {
    if (id == kAvxFeatureId) avxAllowed = 1;
}

ZepStatus zepSelectVariantAuto() {
    std::uint64_t features = 0;
    ZepStatus status = zepQueryFeatures(&features, nullptr);
    if (status != zepStsNoErr) {
        select(kFallbackSlot, kMasks[kFallbackSlot]);
    } else {
        select(bestSlot(features | zepQueryWideFeatures()), features);
        if (variantIndex == kFallbackSlot) status = zepStsNotSupportedCpu;
    }
    // A processor of another vendor keeps the variant that its features earn; only the status tells.
    return zepCpuIsGenuineIntel() ? status : zepStsNonIntelCpu;
}

ZepStatus zepSelectVariantForCpu(int cpu) {
    switch (cpu) {
        case -1:
            return zepSelectVariantAuto();
        case 0:
        case 32:
        case 66:
            select(kSse3Slot, kMasks[kSse3Slot]);
            return zepStsNoErr;
        case 33:
        case 34:
        case 67:
            select(kSsse3Slot, kMasks[kSsse3Slot]);
            return zepStsNoErr;
        case 36:
            select(kAtomSlot, kMasks[kAtomSlot]);
            return zepStsNoErr;
        case 35:
        case 68:
            select(kSse41Slot, 0x5F);
            return zepStsNoErr;
        case 37:
        case 69:
            select(kSse41Slot, 0xDF);
            return zepStsNoErr;
        case 38:
        case 71:
            select(kSse41Slot, kMasks[kSse41Slot]);
            return zepStsNoErr;
        case 70:
            select(kAvxSlot, kMasks[kAvxSlot]);
            return zepStsNoErr;
        case 1:
        case 2:
        case 3:
        case 4:
        case 5:
        case 6:
        case 7:
        case 8:
        case 9:
        case 10:
        case 11:
        case 64:
        case 65:
        case 96:
            return zepStsNotSupportedCpu;
        default:
            return zepStsCpuMismatch;
    }
}

ZepStatus zepSelectColumn(int slot) {
    if (slot < 0 || slot >= kVariantSlots) return zepStsCpuMismatch;
    select(slot, kMasks[slot]);
    return zepStsNoErr;
}

}  // namespace zep
