// Codebook search of G.728 (blocks 17 and 18), as many shapes side by side as there are lanes. Gain
// levels come from comparisons and choices, never from branches.
#include "core/checks.h"
#include "simd/vec.h"
#include "speech/fixed_point.h"
#include "speech/g728_codebook.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT {

using namespace g728;

namespace {

struct GainPair {
    std::int32_t a, b;  // -2 * gain, gain^2
};

// Where there are but two levels the three thresholds are one, and the pairs in the middle are out
// of reach.
struct RateTable {
    int shapes, top;  // level
    std::int32_t thresholds[3];
    GainPair pairs[4];
};

constexpr RateTable twoLevels(int shapes, std::int32_t t, GainPair low, GainPair high) {
    return {shapes, 1, {t, t, t}, {low, {}, {}, high}};
}
constexpr RateTable kRate16{
    128, 3, {5808, 10164, 17787}, {{-4224, 545}, {-7392, 1668}, {-12936, 5107}, {-22638, 15640}}};
constexpr RateTable kRate12_8 = twoLevels(64, 7126, {-4308, 566}, {-12800, 5000});
constexpr RateTable kRate9_6 = twoLevels(16, 8253, {-4626, 653}, {-15874, 7690});

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

// |y| sums to less than 2^16 in every shape: a correlation keeps within 32 bits.
[[gnu::always_inline]] inline Words32 correlations(const Shapes& y, const Pairs& target) {
    return simd::mulAddPairs(y.pairs[0], target.pairs[0]) +
           simd::mulAddPairs(y.pairs[1], target.pairs[1]) +
           simd::mulAddPairs(y.pairs[2], target.pairs[2]);
}

std::int32_t correlation(int j, const Vector5& target) {
    std::int32_t sum = 0;
    for (int n = 0; n < 5; ++n) sum += target[n] * kShapePairs.words[n / 2][j][n % 2];
    return sum;
}

[[gnu::always_inline]] inline Words32 distances(Words32 correlation, Words32 energy,
                                                const RateTable& t) {
    const Words32 q = simd::abs(correlation);
    Words32 a = Words32::broadcast(t.pairs[3].a), b = Words32::broadcast(t.pairs[3].b);
    for (int level = 2; level >= 0; --level) {
        const auto below = q < energy * t.thresholds[level];
        a = simd::select(below, Words32::broadcast(t.pairs[level].a), a);
        b = simd::select(below, Words32::broadcast(t.pairs[level].b), b);
    }
    return a * simd::min(q >> 14, Words32::broadcast(32767)) + b * energy;
}

// Per lane the least distance so far and its shape.
struct Best {
    Words32 distance = Words32::broadcast(0x7FFFFFFF), shape = Words32::zero();

    [[gnu::always_inline]] void take(Words32 d, Words32 j) {
        const auto nearer = d < distance;
        distance = simd::select(nearer, d, distance);
        shape = simd::select(nearer, j, shape);
    }
    // The lowest of the shapes of least distance.
    int winner() const {
        const auto least = Words32::broadcast(simd::reduceMin(distance));
        return simd::reduceMin(simd::select(distance == least, shape, Words32::broadcast(kShapes)));
    }
};

Words32 lanesFromZero() {
    alignas(64) std::int32_t n[Words32::lanes];
    for (int i = 0; i < Words32::lanes; ++i) n[i] = i;
    return Words32::load(n);
}

}  // namespace

ZepStatus zepsCodebookSearch_G728_16s(const Zep16s* pCorr, const Zep16s* pEnergy, Zep32s* pShape,
                                      Zep32s* pGain, Zep16s* pCode, Zep32s rate) {
    if (anyNull(pCorr, pEnergy, pShape, pGain, pCode)) return zepStsNullPtrErr;
    const RateTable* const t = findRate(rate);
    if (t == nullptr) return zepStsRangeErr;
    const auto x = fetch<Vector5>(pCorr);
    const Pairs target(x);
    constexpr int lanes = Words32::lanes;
    const Words32 shapes = Words32::broadcast(t->shapes);
    Words32 index = lanesFromZero();
    Best best;
    for (int j = 0; j < t->shapes; j += 2 * lanes) {
        const auto energy = simd::lanesAs<std::uint16_t>(Words16::load(pEnergy + j));
        const auto consider = [&](int from, auto energies) {
            const Words32 d = distances(correlations(Shapes::load(from), target),
                                        simd::lanesAs<std::int32_t>(energies), *t);
            // A wide step may reach beyond the shapes of a low rate.
            best.take(simd::select(index < shapes, d, best.distance), index);
            index = index + lanes;
        };
        consider(j, simd::widenLow(energy));
        consider(j + lanes, simd::widenHigh(energy));
    }
    const int shape = best.winner();
    const std::int32_t p = correlation(shape, x), q = p < 0 ? -p : p;
    const std::int32_t energy = fetch<Zep16u>(pEnergy + shape);
    int gain = t->top;
    for (int level = 0; level < t->top; ++level) gain -= q < t->thresholds[level] * energy;
    if (p < 1) gain += 4;
    put(shape, pShape);
    put(gain, pGain);
    put(static_cast<Zep16s>(gain + 8 * shape), pCode);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
