// Normally distributed numbers by the polar form of the Box-Muller method (Marsaglia and Bray, 1964:
// pairs in the unit disc, scaled by sqrt(-2 ln s / s)).
//
// The uniform source adds two sequences: a subtract-with-borrow of lag 3 modulo 2^32 - 18, and a
// linear congruential one. Pairs are drawn in batches, rejected ones overwritten, so that neither a
// mispredicted branch nor the latency of a logarithm stands between two draws.
#include <cmath>
#include <cstdint>
#include <utility>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "generate/gauss_state.h"
#include "simd/vec_fwd.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr std::int32_t kContext = 40;
constexpr std::uint32_t kMultiplier = 69069, kIncrement = 1013904243;

constexpr std::uint32_t congruential(std::uint32_t x) { return x * kMultiplier + kIncrement; }

// The words of the uniform source.
struct Source {
    std::uint32_t lcg, x0, x1, x2, carry;

    explicit Source(std::uint32_t seed)
        : lcg(1131199209), x0(seed), x1(congruential(seed)), x2(congruential(x1)), carry(~0u) {}
    explicit Source(const ZepRandGaussState& s)
        : lcg(s.lcg), x0(s.x0), x1(s.x1), x2(s.x2), carry(static_cast<std::uint32_t>(s.carry)) {}

    void keepIn(ZepRandGaussState& s) const {
        s.lcg = lcg, s.x0 = x0, s.x1 = x1, s.x2 = x2, s.carry = static_cast<std::int32_t>(carry);
    }

    static std::uint32_t borrowOf(std::uint32_t x) {
        return static_cast<std::uint32_t>(static_cast<std::int32_t>(x) >> 31);
    }
    // Two numbers in about (-1, 1).
    std::pair<double, double> next() {
        constexpr double kScale = 4.656612873077e-10;
        const std::uint32_t t = carry + x1 - x2;
        const std::uint32_t borrow = borrowOf(t);
        const std::uint32_t v = borrow + x0 - x1;
        x2 = x0;
        x1 = t - (borrow & 18);
        carry = borrowOf(v);
        x0 = v - (carry & 18);
        const std::uint32_t w = congruential(lcg);
        lcg = congruential(w);
        return {static_cast<std::int32_t>(x1 + w) * kScale,
                static_cast<std::int32_t>(x0 + lcg) * kScale};
    }
};

struct Pair {
    double u1, u2, factor;
};

constexpr int kBatch = 64;

// count pairs, 1 <= count <= kBatch.
inline void drawPairs(Source& source, Pair* pairs, int count) {
    double squares[kBatch];
    Source s = source;  // in registers
    for (int n = 0; n < count;) {
        const auto [u1, u2] = s.next();
        const double square = u1 * u1 + u2 * u2;
        pairs[n].u1 = u1, pairs[n].u2 = u2, squares[n] = square;
        n += static_cast<int>(square < 1.0) & static_cast<int>(square != 0.0);
    }
    source = s;
    for (int n = 0; n < count; ++n)
        pairs[n].factor = std::sqrt(-2.0 * std::log(squares[n]) / squares[n]);
}

struct Normal {
    double stdDev;
    float mean;

    float operator()(double u, double factor) const {
        return static_cast<float>(u * stdDev * factor) + mean;
    }
};

// Whole pairs of outputs.
void fillPairs(Source& source, const Normal& normal, Zep32f* dst, std::ptrdiff_t pairs) {
    Pair drawn[kBatch];
    while (pairs > 0) {
        const int count = static_cast<int>(pairs < kBatch ? pairs : kBatch);
        drawPairs(source, drawn, count);
        for (int n = 0; n < count; ++n, dst += 2) {
            simd::writeAny(dst, normal(drawn[n].u2, drawn[n].factor));
            simd::writeAny(dst + 1, normal(drawn[n].u1, drawn[n].factor));
        }
        pairs -= count;
    }
}

}  // namespace

ZepStatus zepsRandGaussInitAlloc_32f(ZepRandGaussState** ppState, Zep32f mean, Zep32f stdDev,
                                     Zep32u seed) {
    if (ppState == nullptr) return zepStsNullPtrErr;
    void* memory = zepMalloc(sizeof(ZepRandGaussState));
    if (memory == nullptr) return zepStsMemAllocErr;
    auto* state = static_cast<ZepRandGaussState*>(memory);
    *state = {};
    state->idCtx = kContext;
    state->seed = seed;
    state->mean = mean;
    state->stdDev = stdDev;
    Source(seed).keepIn(*state);
    state->needPair = 1;
    *ppState = state;
    return zepStsNoErr;
}

ZepStatus zepsRandGaussFree_32f(ZepRandGaussState* pState) {
    if (pState == nullptr) return zepStsNullPtrErr;
    if (pState->idCtx != kContext) return zepStsContextMatchErr;
    pState->idCtx = 0;
    zepFree(pState);
    return zepStsNoErr;
}

ZepStatus zepsRandGauss_32f(Zep32f* pDst, int len, ZepRandGaussState* pState) {
    if (const ZepStatus s = checkVectors(len, pDst, pState); s != zepStsNoErr) return s;
    if (pState->idCtx != kContext) return zepStsContextMatchErr;
    const Normal normal{pState->stdDev, pState->mean};
    Source source(*pState);
    std::ptrdiff_t rest = len;
    if (pState->needPair == 0) {
        simd::writeAny(pDst++, normal(pState->pendingValue, pState->pendingFactor));
        pState->needPair = 1;
        --rest;
    }
    fillPairs(source, normal, pDst, rest / 2);
    if (rest % 2 != 0) {
        Pair pair;
        drawPairs(source, &pair, 1);
        simd::writeAny(pDst + rest - 1, normal(pair.u2, pair.factor));
        pState->pendingFactor = pair.factor;
        pState->pendingValue = pair.u1;
        pState->needPair = 0;
    }
    source.keepIn(*pState);
    return zepStsNoErr;
}

// One pair more is drawn than is used, unless a last odd element uses half of it.
ZepStatus zepsRandGauss_Direct_32f(Zep32f* pDst, int len, Zep32f mean, Zep32f stdDev,
                                   Zep32u* pSeed) {
    if (const ZepStatus s = checkVectors(len, pDst, pSeed); s != zepStsNoErr) return s;
    const Normal normal{stdDev, mean};
    Source source(simd::readAny(pSeed));
    fillPairs(source, normal, pDst, len / 2);
    Pair pair;
    drawPairs(source, &pair, 1);
    if (len % 2 != 0) simd::writeAny(pDst + len - 1, normal(pair.u2, pair.factor));
    simd::writeAny(pSeed, source.x0);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
