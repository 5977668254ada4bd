// Normally distributed numbers by the polar form of the Box-Muller method (Marsaglia and Bray, 1964:
// pairs in the unit disc, scaled by sqrt(-2 ln s / s)).
//
// The uniform source adds two sequences: a subtract-with-borrow of lag 3 modulo 2^32 - 18, and a
// linear congruential one. Pairs are drawn in batches, rejected ones overwritten, so that neither a
// mispredicted branch nor the latency of a logarithm stands between two draws.
//
// The numbers are defined by the C library's logarithm. Vectors take a polynomial for it, which is as
// near as kMargin: where both ends of that interval narrow to the same float, that is the number.
// Once in some three million numbers they do not, and the library is asked.
#include <cmath>
#include <cstdint>
#include <utility>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "generate/gauss_factor.h"
#include "generate/gauss_state.h"
#include "simd/shuffle.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr std::int32_t kContext = 40;
constexpr std::uint32_t kMultiplier = 69069, kIncrement = 1013904243;

using D = simd::Native<double>;
using F = simd::Native<float>;

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
        // Both steps from the same word: a chain of two products would hold up all else.
        constexpr std::uint32_t kTwice = kMultiplier * kMultiplier;
        const std::uint32_t w = congruential(lcg);
        lcg = lcg * kTwice + congruential(kIncrement);
        return {static_cast<std::int32_t>(x1 + w) * kScale,
                static_cast<std::int32_t>(x0 + lcg) * kScale};
    }
};

constexpr int kBatch = 256;

// Points of the unit disc.
struct Points {
    alignas(64) double u1[kBatch], u2[kBatch], square[kBatch];
};

// count points, 1 <= count <= kBatch.
inline void drawPoints(Source& source, Points& points, int count) {
    Source s = source;  // in registers
    // As integers, less one: 0 becomes the greatest of all.
    constexpr std::uint64_t kOne = 0x3FF0000000000000;
    for (std::ptrdiff_t n = 0; n < count;) {
        const auto [u1, u2] = s.next();
        const double square = u1 * u1 + u2 * u2;
        points.u1[n] = u1, points.u2[n] = u2, points.square[n] = square;
        n += simd::bitsAs<std::uint64_t>(square) - 1 < kOne - 1 ? 1 : 0;
    }
    source = s;
}

// The factor of a pair.
inline double polarFactor(double square) { return std::sqrt(-2.0 * std::log(square) / square); }

struct Pair {
    double u1, u2, factor;
};
inline Pair drawPair(Source& source) {
    Points points;
    drawPoints(source, points, 1);
    return {points.u1[0], points.u2[0], polarFactor(points.square[0])};
}

struct Normal {
    double stdDev;
    float mean;

    float operator()(double u, double factor) const {
        return static_cast<float>(u * stdDev * factor) + mean;
    }
};

// The pairs from `first` to `end` by the C library's logarithm, which the results are defined by.
[[gnu::noinline]] void putDefined(const Points& points, int first, int end, const Normal& normal,
                                  Zep32f* dst) {
    for (int n = first; n < end; ++n) {
        const double factor = polarFactor(points.square[n]);
        simd::writeAny(dst + 2 * n, normal(points.u2[n], factor));
        simd::writeAny(dst + 2 * n + 1, normal(points.u1[n], factor));
    }
}

// Whole pairs of outputs.
void fillPairs(Source& source, const Normal& normal, Zep32f* dst, std::ptrdiff_t pairs) {
    constexpr int L = D::lanes;
    Points points;
    while (pairs > 0) {
        const int count = static_cast<int>(pairs < kBatch ? pairs : kBatch);
        drawPoints(source, points, count);
        int n = 0;
        for (; n + L <= count; n += L) {
            const D factor = nearFactor(D::loadAligned(points.square + n));
            const D scaled = D::broadcast(normal.stdDev);
            const D x1 = D::loadAligned(points.u1 + n) * scaled * factor;
            const D x2 = D::loadAligned(points.u2 + n) * scaled * factor;
            const D front = interleaveFront(x2, x1), back = interleaveBack(x2, x1);
            const D below = D::broadcast(1 - kMargin), above = D::broadcast(1 + kMargin);
            const F result = narrow(front * below, back * below);
            if (all(result == narrow(front * above, back * above)))
                (result + F::broadcast(normal.mean)).store(dst + 2 * n);
            else
                putDefined(points, n, n + L, normal, dst);
        }
        putDefined(points, n, count, normal, dst);
        dst += 2 * count;
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
        const Pair pair = drawPair(source);
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
    const Pair pair = drawPair(source);
    if (len % 2 != 0) simd::writeAny(pDst + len - 1, normal(pair.u2, pair.factor));
    simd::writeAny(pSeed, source.x0);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
