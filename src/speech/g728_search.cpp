// Codebook search of G.728 (blocks 17 and 18).
#include "core/checks.h"
#include "speech/fixed_point.h"
#include "speech/g728_codebook.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT {

using namespace g728;

namespace {

struct GainPair {
    std::int32_t a, b;  // -2 * gain, gain^2
};

struct RateTable {
    int shapes, levels;
    std::int32_t thresholds[3];  // rising; times the energy
    GainPair pairs[4];
};

constexpr RateTable kRate16{
    128, 4, {5808, 10164, 17787}, {{-4224, 545}, {-7392, 1668}, {-12936, 5107}, {-22638, 15640}}};
constexpr RateTable kRate12_8{64, 2, {7126}, {{-4308, 566}, {-12800, 5000}}};
constexpr RateTable kRate9_6{16, 2, {8253}, {{-4626, 653}, {-15874, 7690}}};

const RateTable* findRate(Zep32s rate) {
    switch (rate) {
        case ZEP_SPCHBR_16000:
            return &kRate16;
        case ZEP_SPCHBR_12800:
            return &kRate12_8;
        case ZEP_SPCHBR_9600:
            return &kRate9_6;
        default:
            return nullptr;
    }
}

std::int32_t correlate(const Vector5& target, int shape) {
    std::int32_t sum = 0;
    for (int n = 0; n < 5; ++n) sum += target[n] * kShapeCodebook[shape][n];
    return sum;
}

}  // namespace

ZepStatus zepsCodebookSearch_G728_16s(const Zep16s* pCorr, const Zep16s* pEnergy, Zep32s* pShape,
                                      Zep32s* pGain, Zep16s* pCode, Zep32s rate) {
    if (anyNull(pCorr, pEnergy, pShape, pGain, pCode)) return zepStsNullPtrErr;
    const RateTable* const t = findRate(rate);
    if (t == nullptr) return zepStsRangeErr;
    const auto target = fetch<Vector5>(pCorr);
    std::int32_t best = 0x7FFFFFFF;
    int shape = 0, gain = 0;
    for (int j = 0; j < t->shapes; ++j) {
        const std::int32_t p = correlate(target, j), q = p < 0 ? -p : p;
        const std::int32_t energy = fetch<Zep16u>(pEnergy + j);
        int level = t->levels - 1;
        while (level > 0 && q < t->thresholds[level - 1] * energy) --level;
        const std::int32_t d = t->pairs[level].a * sat16(q >> 14) + t->pairs[level].b * energy;
        if (d < best) best = d, shape = j, gain = level;
    }
    if (correlate(target, shape) < 1) gain += 4;
    put(shape, pShape);
    put(gain, pGain);
    put(static_cast<Zep16s>(gain + 8 * shape), pCode);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
