#include "transform/dft_real.h"

#include "transform/dft_odd.h"

namespace zep::ZEP_VARIANT::dft {
namespace {

template <class V>
[[gnu::always_inline]] inline simd::SplitComplex<V> loadPairsReversed(const float* p) {
    if constexpr (V::lanes == 1)
        return simd::SplitComplex<V>::load(p);
    else
        return simd::loadReversed<V>(p);
}
template <class V>
[[gnu::always_inline]] inline void storePairsReversed(simd::SplitComplex<V> x, float* p) {
    if constexpr (V::lanes == 1)
        x.store(p);
    else
        simd::storeReversed<V>(x, p);
}

inline void endPoints(float* z, float scale) {
    const float re = simd::readAny(z), im = simd::readAny(z + 1);
    simd::writeAny(z, (re + im) * scale);
    simd::writeAny(z + 1, (re - im) * scale);
}
// The partner of itself.
inline void middle(float* z, std::int64_t h, float scale) {
    if (h % 2 != 0) return;
    simd::writeAny(z + h, simd::readAny(z + h) * scale);
    simd::writeAny(z + h + 1, -simd::readAny(z + h + 1) * scale);
}

using FoldVector = simd::Pairs<Real<float>>;
static_assert(foldCount(2 * (kDirectMaxLength + 1)) >= FoldVector::lanes);

template <bool kScaled>
void foldVectors(float* z, std::int64_t h, std::int64_t count, const float* table, float scale) {
    using C = FoldVector;
    constexpr int L = C::lanes;
    const std::ptrdiff_t vectors = vectorsOf(count, L);
    // In place: the last vector overlaps the one before, so it is read before that is written.
    const auto load = [&](std::ptrdiff_t v, C& a, C& b) {
        const std::ptrdiff_t k = 1 + vectorBegin(v, count, L);
        a = C::load(z + 2 * k);
        b = reversed(C::load(z + 2 * (h - k - L + 1)));
    };
    const auto store = [&](std::ptrdiff_t v, C a, C b) {
        const std::ptrdiff_t k = 1 + vectorBegin(v, count, L);
        foldPair(a, b, C::Turn::of(C::load(table + 2 * (k - 1))));
        if constexpr (kScaled) {
            a = a * C::Part::broadcast(scale);
            b = b * C::Part::broadcast(scale);
        }
        reversed(b).store(z + 2 * (h - k - L + 1));
        a.store(z + 2 * k);
    };
    C lastA, lastB;
    load(vectors - 1, lastA, lastB);
    for (std::ptrdiff_t v = 0; v + 1 < vectors; ++v) {
        C a, b;
        load(v, a, b);
        store(v, a, b);
    }
    store(vectors - 1, lastA, lastB);
}

}  // namespace

void foldReal(float* z, const DftObject<float>& spec, float scale) {
    const std::int64_t h = spec.len / 2, count = foldCount(spec.len);
    endPoints(z, scale);
    middle(z, h, scale);
    if (scale == 1)
        foldVectors<false>(z, h, count, spec.foldTwiddles, scale);
    else
        foldVectors<true>(z, h, count, spec.foldTwiddles, scale);
}

namespace {

// The real first stage: points are real, R values of each group follow one another.
template <int R>
void realFirstStage(const float* in, float* out, std::ptrdiff_t groups) {
    using V = Real<float>;
    using C = simd::SplitComplex<V>;
    constexpr std::ptrdiff_t W = V::lanes;
    for (std::ptrdiff_t g = 0; g < groups; g += W) {
        const int n = static_cast<int>(groups - g < W ? groups - g : W);
        C x[R];
#pragma GCC unroll 16
        for (int k = 0; k < R; ++k) {
            const float* p = in + g + k * groups;
            x[k] = {n == W ? V::load(p) : V::loadPartial(p, n), V::broadcast(0)};
        }
        butterfly<Direction::Forward, R>(x);
        alignas(64) float value[R][W];
        x[0].re.store(value[0]);
#pragma GCC unroll 16
        for (int j = 1; j <= (R - 1) / 2; ++j) {
            x[j].re.store(value[2 * j - 1]);
            x[j].im.store(value[2 * j]);
        }
        for (int i = 0; i < n; ++i)
#pragma GCC unroll 16
            for (int j = 0; j < R; ++j) simd::writeAny(out + R * (g + i) + j, value[j][i]);
    }
}

void realFirstStageOdd(const float* in, float* out, int r, std::ptrdiff_t groups,
                       const float* table) {
    using V = Real<float>;
    using C = simd::SplitComplex<V>;
    constexpr std::ptrdiff_t W = V::lanes;
    for (std::ptrdiff_t g = 0; g < groups; g += W) {
        const int n = static_cast<int>(groups - g < W ? groups - g : W);
        C x[kMaxOdd];
        for (int k = 0; k < r; ++k)
            x[k] = {V::loadPartial(in + g + k * groups, n), V::broadcast(0)};
        oddTransform<Direction::Forward, V>(x, r, table);
        for (int j = 0; j <= (r - 1) / 2; ++j) {
            float re[W], im[W];
            x[j].re.store(re);
            x[j].im.store(im);
            for (int i = 0; i < n; ++i) {
                float* group = out + r * (g + i);
                if (j > 0) simd::writeAny(group + 2 * j, im[i]);
                simd::writeAny(group + (j > 0 ? 2 * j - 1 : 0), re[i]);
            }
        }
    }
}

// Transforms x[0 .. r-1]; R is the radix where it has code of its own, else 0.
template <int R, class V>
[[gnu::always_inline]] inline void anyButterfly(simd::SplitComplex<V>* x, int r,
                                                const float* table) {
    if constexpr (R > 0)
        butterfly<Direction::Forward, R>(*reinterpret_cast<simd::SplitComplex<V>(*)[R]>(x));
    else
        oddTransform<Direction::Forward, V>(x, r, table);
}

// Column 0 of a group: r real values, s apart.
template <int R>
void joinColumnZero(const float* in, float* out, int r, std::ptrdiff_t s, std::ptrdiff_t leg,
                    const float* table, float scale) {
    using V = simd::Vec<float, 1>;
    simd::SplitComplex<V> x[R > 0 ? R : kMaxOdd];
    for (int k = 0; k < r; ++k) x[k] = {V::load(in + k * leg), V::broadcast(0)};
    anyButterfly<R, V>(x, r, table);
    const V factor = V::broadcast(scale);
    (x[0].re * factor).store(out);
    for (int j = 1; j <= (r - 1) / 2; ++j) (x[j] * factor).store(out + 2 * j * s - 1);
}

template <int R, class V>
void joinRealGroups(const float* in, float* out, int radix, std::ptrdiff_t s, std::ptrdiff_t groups,
                    const float* twiddles, const float* table, float scale) {
    using C = simd::SplitComplex<V>;
    constexpr int W = V::lanes;
    const int r = R > 0 ? R : radix, half = (r - 1) / 2;
    const std::ptrdiff_t columns = (s - 1) / 2, leg = s * groups;
    for (std::ptrdiff_t g = 0; g < groups; ++g, in += s, out += r * s) {
        joinColumnZero<R>(in, out, r, s, leg, table, scale);
        const float* w = twiddles;
        for (std::ptrdiff_t v = 0; v < vectorsOf(columns, W); ++v) {
            const std::ptrdiff_t q = 1 + vectorBegin(v, columns, W);
            C x[R > 0 ? R : kMaxOdd];
            x[0] = loadPairs<V>(in + 2 * q - 1);
#pragma GCC unroll 16
            for (int k = 1; k < r; ++k, w += 2 * W)
                x[k] = fft::rotate<Direction::Forward>(loadPairs<V>(in + k * leg + 2 * q - 1),
                                                       C::load(w));
            anyButterfly<R, V>(x, r, table);
            if (scale != 1) {
                const V factor = V::broadcast(scale);
#pragma GCC unroll 16
                for (int j = 0; j < r; ++j) x[j] = x[j] * factor;
            }
#pragma GCC unroll 16
            for (int j = 0; j <= half; ++j) storePairs<V>(x[j], out + 2 * (q + j * s) - 1);
#pragma GCC unroll 16
            for (int j = half + 1; j < r; ++j)
                storePairsReversed<V>(C{x[j].re, V::broadcast(0) - x[j].im},
                                      out + 2 * (s * (r - j) - q - W + 1) - 1);
        }
    }
}

// Calls f with an odd radix as a constant, where it has code of its own, else with 0.
template <class F>
[[gnu::always_inline]] inline void withOddRadix(int radix, F f) {
    withRadix(radix, [&](auto R) {
        if constexpr (R % 2 == 1 || R == 0) f(R);
    });
}

}  // namespace

void realPasses(const float* src, float* dst, const DftObject<float>& spec, float* scratch,
                float scale) {
    const std::int32_t* radix = spec.digitPermutation;
    const std::ptrdiff_t len = spec.len;
    int count = 2;
    while (radix[count] != 0) ++count;
    const bool firstToDst = count % 2 != 0;
    if (src == dst && firstToDst) {
        __builtin_memcpy(scratch, src, static_cast<std::size_t>(len) * sizeof(float));
        src = scratch;
    }
    float* to = firstToDst ? dst : scratch;
    std::ptrdiff_t s = radix[0];
    withOddRadix(radix[0], [&](auto R) {
        if constexpr (R > 0)
            realFirstStage<R>(src, to, len / s);
        else
            realFirstStageOdd(src, to, radix[0], len / s, oddTableOf(spec, radix[0]));
    });
    const DftFactor<float>* record = spec.factors + spec.lastFactor;
    for (int i = 1; i < count; ++i, --record) {
        const float* from = to;
        to = to == dst ? scratch : dst;
        const int r = radix[i];
        withOddRadix(r, [&](auto R) {
            withColumnVector<float>((s - 1) / 2, [&]<class V>(V) {
                joinRealGroups<R, V>(from, to, r, s, len / (s * r), record->twiddles,
                                     oddTableOf(spec, r), i + 1 < count ? 1.0f : scale);
            });
        });
        s *= r;
    }
}

}  // namespace zep::ZEP_VARIANT::dft
