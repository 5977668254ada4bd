#include "transform/dft_passes.h"

#include "transform/dft_odd.h"

namespace zep::ZEP_VARIANT::dft {
namespace {

// The R values of each lane in a row, from out on: lane n of x goes to out + 2*R*n. Rows are written
// in 32-byte pieces in ascending order, the last of which reach into the next row: less than a
// piece behind the very last one is written too.
template <int R, class V>
[[gnu::always_inline]] inline void storeRows(const simd::SplitComplex<V> (&x)[R],
                                             typename V::Scalar* out) {
    using T = typename V::Scalar;
    constexpr int P = simd::kBlock<V>, W = V::lanes, kPieces = (R + P - 1) / P;
    alignas(64) T piece[kPieces][P][2 * W];  // by lane within a block, then by block
#pragma GCC unroll 16
    for (int c = 0; c < kPieces; ++c) {
        V re[P], im[P];
#pragma GCC unroll 4
        for (int i = 0; i < P; ++i) {
            re[i] = x[c * P + i < R ? c * P + i : 0].re;
            im[i] = x[c * P + i < R ? c * P + i : 0].im;
        }
        simd::transposeLanes(re);
        simd::transposeLanes(im);
#pragma GCC unroll 4
        for (int i = 0; i < P; ++i) {
            simd::interleaveFront(re[i], im[i]).store(piece[c][i]);
            simd::interleaveBack(re[i], im[i]).store(piece[c][i] + W);
        }
    }
#pragma GCC unroll 16
    for (int n = 0; n < W; ++n) {
        const int slot = simd::elementSlot<V>(n);
#pragma GCC unroll 16
        for (int c = 0; c < kPieces; ++c)
            __builtin_memcpy(out + 2 * (R * n + P * c), piece[c][slot % P] + slot / P * 2 * P, 32);
    }
}

template <Direction D, int R, class T>
void firstStage(const T* in, T* out, std::ptrdiff_t groups) {
    using V = Real<T>;
    using C = simd::SplitComplex<V>;
    constexpr std::ptrdiff_t W = V::lanes;
    constexpr std::ptrdiff_t kMargin = 2 * simd::kBlock<V>;
    std::ptrdiff_t g = 0;
    for (; g + W < groups; g += W) {
        C x[R];
#pragma GCC unroll 16
        for (int k = 0; k < R; ++k) x[k] = simd::loadInterleaved<V>(in + 2 * (g + k * groups));
        butterfly<D, R>(x);
        storeRows<R>(x, out + 2 * R * g);
    }
    // The last vector: nothing may be touched behind the arrays.
    const int rest = static_cast<int>(groups - g);
    alignas(64) T rows[2 * R * W + kMargin];
    C x[R];
#pragma GCC unroll 16
    for (int k = 0; k < R; ++k)
        x[k] = simd::loadInterleavedPartial<V>(in + 2 * (g + k * groups), rest);
    butterfly<D, R>(x);
    storeRows<R>(x, rows);
    const int count = 2 * R * rest;
    T* to = out + 2 * R * g;
    int i = 0;
    for (; i + V::lanes <= count; i += V::lanes) V::load(rows + i).store(to + i);
    if (i < count) V::load(rows + i).storePartial(to + i, count - i);
}

template <Direction D, class T>
void firstStageOdd(const T* in, T* out, int r, std::ptrdiff_t groups, const T* table) {
    using V = Real<T>;
    using C = simd::SplitComplex<V>;
    constexpr std::ptrdiff_t W = V::lanes;
    const std::ptrdiff_t step = 2 * std::ptrdiff_t{r};
    for (std::ptrdiff_t g = 0; g < groups; g += W) {
        const std::ptrdiff_t n = groups - g < W ? groups - g : W;
        C x[kMaxOdd];
        T lanes[2 * W] = {};
        for (int k = 0; k < r; ++k) {
            __builtin_memcpy(lanes, in + 2 * (g + k * groups),
                             static_cast<std::size_t>(2 * n) * sizeof(T));
            x[k] = simd::loadInterleaved<V>(lanes);
        }
        oddTransform<D, V>(x, r, table);
        for (int k = 0; k < r; ++k) {
            simd::storeInterleaved(x[k], lanes);
            for (std::ptrdiff_t i = 0; i < n; ++i)
                __builtin_memcpy(out + step * (g + i) + 2 * k, lanes + 2 * i, 2 * sizeof(T));
        }
    }
}

template <Direction D, int R, class V, class T>
void joinGroups(const T* in, T* out, std::ptrdiff_t s, std::ptrdiff_t groups, const T* twiddles) {
    using C = simd::SplitComplex<V>;
    constexpr int W = V::lanes;
    const std::ptrdiff_t vectors = vectorsOf(s, W), leg = 2 * s * groups;
    for (std::ptrdiff_t g = 0; g < groups; ++g, in += 2 * s, out += 2 * R * s) {
        const T* w = twiddles;
        for (std::ptrdiff_t v = 0; v < vectors; ++v, w += (R - 1) * 2 * W) {
            const std::ptrdiff_t q = 2 * vectorBegin(v, s, W);
            C x[R];
            x[0] = loadPairs<V>(in + q);
#pragma GCC unroll 16
            for (int k = 1; k < R; ++k)
                x[k] = fft::rotate<D>(loadPairs<V>(in + q + k * leg), C::load(w + (k - 1) * 2 * W));
            butterfly<D, R>(x);
#pragma GCC unroll 16
            for (int j = 0; j < R; ++j) storePairs<V>(x[j], out + q + 2 * j * s);
        }
    }
}

template <Direction D, class V, class T>
void joinGroupsOdd(const T* in, T* out, int r, std::ptrdiff_t s, std::ptrdiff_t groups,
                   const T* twiddles, const T* table) {
    using C = simd::SplitComplex<V>;
    constexpr int W = V::lanes;
    const std::ptrdiff_t vectors = vectorsOf(s, W), leg = 2 * s * groups;
    for (std::ptrdiff_t g = 0; g < groups; ++g, in += 2 * s, out += 2 * r * s) {
        const T* w = twiddles;
        for (std::ptrdiff_t v = 0; v < vectors; ++v) {
            const std::ptrdiff_t q = 2 * vectorBegin(v, s, W);
            C x[kMaxOdd];
            x[0] = loadPairs<V>(in + q);
            for (int k = 1; k < r; ++k, w += 2 * W)
                x[k] = fft::rotate<D>(loadPairs<V>(in + q + k * leg), C::load(w));
            oddTransform<D, V>(x, r, table);
            for (int j = 0; j < r; ++j) storePairs<V>(x[j], out + q + 2 * j * s);
        }
    }
}

}  // namespace

template <Direction D, class T>
void Passes<D, T>::first(const T* in, T* out, int radix, std::ptrdiff_t groups, const T* oddTable) {
    switch (radix) {
        case 2:
            return firstStage<D, 2>(in, out, groups);
        case 3:
            return firstStage<D, 3>(in, out, groups);
        case 4:
            return firstStage<D, 4>(in, out, groups);
        case 5:
            return firstStage<D, 5>(in, out, groups);
        case 6:
            return firstStage<D, 6>(in, out, groups);
        case 7:
            return firstStage<D, 7>(in, out, groups);
        case 8:
            return firstStage<D, 8>(in, out, groups);
        case 11:
            return firstStage<D, 11>(in, out, groups);
        case 13:
            return firstStage<D, 13>(in, out, groups);
        case 16:
            return firstStage<D, 16>(in, out, groups);
        default:
            return firstStageOdd<D>(in, out, radix, groups, oddTable);
    }
}

template <Direction D, class T>
void Passes<D, T>::join(const T* in, T* out, int radix, std::ptrdiff_t s, std::ptrdiff_t groups,
                        const T* twiddles, const T* oddTable) {
    withColumnVector<T>(s, [&]<class V>(V) {
        switch (radix) {
            case 3:
                return joinGroups<D, 3, V>(in, out, s, groups, twiddles);
            case 4:
                return joinGroups<D, 4, V>(in, out, s, groups, twiddles);
            case 5:
                return joinGroups<D, 5, V>(in, out, s, groups, twiddles);
            case 7:
                return joinGroups<D, 7, V>(in, out, s, groups, twiddles);
            case 11:
                return joinGroups<D, 11, V>(in, out, s, groups, twiddles);
            case 13:
                return joinGroups<D, 13, V>(in, out, s, groups, twiddles);
            default:
                return joinGroupsOdd<D, V>(in, out, radix, s, groups, twiddles, oddTable);
        }
    });
}

template <Direction D, class T>
void Passes<D, T>::run(const T* src, T* dst, std::ptrdiff_t len, const DftObject<T>& spec,
                       T* scratch) {
    const int last = spec.lastFactor;
    // The passes write the two arrays in turn, the final one dst.
    const bool firstToDst = last % 2 != 0;
    if (src == dst && firstToDst) {
        __builtin_memcpy(scratch, src, static_cast<std::size_t>(2 * len) * sizeof(T));
        src = scratch;
    }
    T* to = firstToDst ? dst : scratch;
    std::ptrdiff_t s = spec.factors[last].subLength;
    first(src, to, static_cast<int>(s), len / s, spec.factors[last + 1].oddTable);
    for (int i = last; i >= 0; --i) {
        const DftFactor<T>& f = spec.factors[i];
        const T* from = to;
        to = to == dst ? scratch : dst;
        join(from, to, f.radix, s, len / (s * f.radix), f.twiddles, f.oddTable);
        s *= f.radix;
    }
}

template struct Passes<Direction::Forward, float>;
template struct Passes<Direction::Inverse, float>;
template struct Passes<Direction::Forward, double>;
template struct Passes<Direction::Inverse, double>;

}  // namespace zep::ZEP_VARIANT::dft
