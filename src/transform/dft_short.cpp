// The mixed-radix route of the shortest lengths: two passes, at most 16 points each, through a
// buffer of whole vectors. What the second pass loads is what the first one stored, so neither waits
// for the other's stores.
#include "transform/dft_join.h"

namespace zep::ZEP_VARIANT::dft {
namespace {

constexpr int kRows = 16;

// Bins of a group in a row.
template <class T>
constexpr std::ptrdiff_t pitchOf(int radix) {
    return vectorsOf(radix, kLanes<T>) * kLanes<T>;
}

template <int R, class V, class Part>
[[gnu::always_inline]] inline void storeSquares(Part part, typename V::Scalar* out) {
    constexpr int W = V::lanes;
    constexpr std::ptrdiff_t pitch = pitchOf<typename V::Scalar>(R);
    simd::unroll<vectorsOf(R, W)>([&](auto square) __attribute__((always_inline)) {
        constexpr int first = square * W;
        V x[W];
#pragma GCC unroll 16
        for (int k = 0; k < W; ++k) x[k] = part(first + k < R ? first + k : first);
        simd::transpose(x);
        simd::unroll<W>([&](auto n) __attribute__((always_inline)) {
            x[simd::elementSlot<V>(n)].storeAligned(out + first + n * pitch);
        });
    });
}

template <Direction D, int R, class T>
void firstPass(const T* in, T* rows, int groups) {
    using V = Real<T>;
    constexpr int W = V::lanes;
    constexpr std::ptrdiff_t pitch = pitchOf<T>(R);
    for (int g = 0; g < groups; g += W) {
        simd::SplitComplex<V> x[R];
        if (groups - g >= W) {
#pragma GCC unroll 16
            for (int k = 0; k < R; ++k)
                x[k] = simd::loadInterleaved<V>(in + 2 * (g + k * std::ptrdiff_t{groups}));
        } else {
#pragma GCC unroll 16
            for (int k = 0; k < R; ++k)
                x[k] = simd::loadInterleavedPartial<V>(in + 2 * (g + k * std::ptrdiff_t{groups}),
                                                       groups - g);
        }
        butterfly<D, R>(x);
        storeSquares<R, V>([&](int k) { return x[k].re; }, rows + g * pitch);
        storeSquares<R, V>([&](int k) { return x[k].im; }, rows + (kRows + g) * pitch);
    }
}

// Vectors in descending order: one that the columns do not fill reaches into the next row of bins,
// whose first vector is still to come. Only the last row has none behind it.
template <Direction D, int R, class T>
void secondPass(const T* rows, T* out, int s, const T* twiddles, T scale) {
    using V = Real<T>;
    using C = simd::SplitComplex<V>;
    constexpr int W = V::lanes;
    const std::ptrdiff_t pitch = pitchOf<T>(s);
    const T* end = out + 2 * R * s;
    const ToPairs<D, T> sink{out, scale};
    for (std::ptrdiff_t v = vectorsOf(s, W) - 1; v >= 0; --v) {
        const T* w = twiddles + v * (R - 1) * 2 * W;
        const T* p = rows + v * W;
        C x[R];
#pragma GCC unroll 16
        for (int k = 0; k < R; ++k) {
            x[k] = {V::loadAligned(p), V::loadAligned(p + kRows * pitch)};
            if (k > 0) x[k] = fft::rotate<D>(x[k], C::load(w + (k - 1) * 2 * W));
            p = simd::madeHere(p + pitch);
        }
        butterfly<D, R>(x);
        sink.finish(x, R);
        const int columns = static_cast<int>(s - v * W);
        T* to = sink.at(v * W);
#pragma GCC unroll 16
        for (int j = 0; j < R; ++j) {
            if (columns >= W || (!simd::kMaskedMemory && end - to >= 2 * W))
                sink.store(x[j], to);
            else
                sink.storePartial(x[j], to, columns);
            to = simd::madeHere(to + 2 * s);
        }
    }
}

}  // namespace

template <Direction D, class T>
void Passes<D, T>::runShort(const T* src, T* dst, int radix, int s, const T* twiddles, T scale) {
    constexpr int W = kLanes<T>;
    static_assert(kRows % W == 0);
    alignas(64) T rows[2 * kRows * kMaxShortRadix];
    withRadix(s, [&](auto R) {
        if constexpr (R > 0) firstPass<D, R>(src, rows, radix);
    });
    withRadix(radix, [&](auto R) {
        if constexpr (R > 0) secondPass<D, R>(rows, dst, s, twiddles, scale);
    });
}

template struct Passes<Direction::Forward, float>;
template struct Passes<Direction::Inverse, float>;
template struct Passes<Direction::Forward, double>;
template struct Passes<Direction::Inverse, double>;

}  // namespace zep::ZEP_VARIANT::dft
