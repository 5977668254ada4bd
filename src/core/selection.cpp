#include "core/selection.h"

#include "core/features.h"

namespace zep {

std::int32_t variantIndex = 0;
std::int32_t n8Selected = 0;
std::uint64_t enabledFeatures = feature::kMmx | feature::kSse | feature::kSse2;
ZepStatus staticInitResult = zepStsNoOperation;
std::int32_t avxAllowed = 1;

namespace {

struct Variant {
    std::int32_t index;
    std::uint64_t mask;  // features that its code may use
};
constexpr Variant kFallback{0, 0x7};
constexpr Variant kSse3{1, 0xF};
constexpr Variant kSsse3{2, 0x1F};
constexpr Variant kAtom{3, 0x3F};
constexpr Variant kSse41{4, 0xCDF};
constexpr Variant kAvx{5, 0xFDF};

void select(Variant v, std::uint64_t features) {
    variantIndex = v.index;
    n8Selected = v.index == kAtom.index ? 1 : 0;
    enabledFeatures = features & v.mask;
}

bool has(std::uint64_t features, std::uint64_t mask) { return (features & mask) == mask; }

Variant bestVariant(std::uint64_t features) {
    if (has(features, feature::kAvx | feature::kAvxUsable) && zepFeatureAllowed(kAvxFeatureId) != 0)
        return kAvx;
    if (has(features, feature::kSse41)) return kSse41;
    // MOVBE alone does not make an Atom.
    if (has(features, feature::kMovbe | feature::kSsse3)) return kAtom;
    if (has(features, feature::kSsse3)) return kSsse3;
    if (has(features, feature::kSse3)) return kSse3;
    return kFallback;
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
        select(kFallback, kFallback.mask);
    } else {
        const Variant v = bestVariant(features);
        select(v, features);
        if (v.index == kFallback.index) status = zepStsNotSupportedCpu;
    }
    // A processor of another vendor keeps the variant that its features earn; only the status tells.
    return zepCpuIsGenuineIntel() ? status : zepStsNonIntelCpu;
}

ZepStatus zepSelectVariantForCpu(int cpu) {
    switch (cpu) {
        case -1:
            return zepSelectVariantAuto();
        case 0: case 32: case 66:
            select(kSse3, kSse3.mask);
            return zepStsNoErr;
        case 33: case 34: case 67:
            select(kSsse3, kSsse3.mask);
            return zepStsNoErr;
        case 36:
            select(kAtom, kAtom.mask);
            return zepStsNoErr;
        case 35: case 68:
            select(kSse41, 0x5F);
            return zepStsNoErr;
        case 37: case 69:
            select(kSse41, 0xDF);
            return zepStsNoErr;
        case 38: case 71:
            select(kSse41, kSse41.mask);
            return zepStsNoErr;
        case 70:
            select(kAvx, kAvx.mask);
            return zepStsNoErr;
        case 1: case 2: case 3: case 4: case 5: case 6: case 7: case 8: case 9: case 10: case 11:
        case 64: case 65: case 96:
            return zepStsNotSupportedCpu;
        default:
            return zepStsCpuMismatch;
    }
}

}  // namespace zep
