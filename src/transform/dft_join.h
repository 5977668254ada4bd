// A pass that joins groups; where its values go is the caller's.
#pragma once

#include "transform/dft_odd.h"
#include "transform/dft_passes.h"

namespace zep::ZEP_VARIANT::dft {

// All passes but the last: parts apart.
template <class T>
struct ToParts {
    static constexpr Direction direction = Direction::Forward;
    using V = Real<T>;
    Parts<T> out;

    [[gnu::always_inline]] T* at(std::ptrdiff_t n) const { return out.re + n; }
    static constexpr int kStep = 1;  // scalars from one element to the next
    [[gnu::always_inline]] void finish(simd::SplitComplex<V>*, int) const {}
    [[gnu::always_inline]] void store(simd::SplitComplex<V> x, T* p) const {
        x.re.store(p);
        x.im.store(p + out.toIm);
    }
    [[gnu::always_inline]] void storePartial(simd::SplitComplex<V> x, T* p, int count) const {
        x.re.storePartial(p, count);
        x.im.storePartial(p + out.toIm, count);
    }
};

// The last one: pairs, multiplied by the scale; its columns fill a vector. kSlots: the lanes are in
// slot order, so that one shuffle makes a vector.
template <Direction D, class T, bool kSlots = false>
struct ToPairs {
    static constexpr Direction direction = D;
    using V = Real<T>;
    T* out;
    T scale;

    [[gnu::always_inline]] T* at(std::ptrdiff_t n) const { return out + 2 * n; }
    static constexpr int kStep = 2;
    // With few registers multiplications by 1 are not free: a branch goes around them.
    [[gnu::always_inline]] void finish(simd::SplitComplex<V>* x, int r) const {
        if (simd::kVectorRegisters <= 16 && scale == 1) return;
        const V factor = V::broadcast(scale);
#pragma GCC unroll 16
        for (int j = 0; j < r; ++j) x[j] = x[j] * factor;
    }
    [[gnu::always_inline]] void store(simd::SplitComplex<V> x, T* p) const {
        if constexpr (kSlots) {
            simd::storeInterleaved(x, p);
        } else {
            interleaveFront(x.re, x.im).store(p);
            interleaveBack(x.re, x.im).store(p + V::lanes);
        }
    }
};

// kPartial: the columns fill no vector.
template <int R, bool kPartial, class T, class Sink>
inline void joinColumns(Parts<const T> in, Sink sink, int radix, std::ptrdiff_t s,
                        std::ptrdiff_t groups, const T* twiddles, const T* oddTable) {
    using V = Real<T>;
    using C = simd::SplitComplex<V>;
    constexpr Direction D = Sink::direction;
    constexpr int W = V::lanes;
    const int r = R > 0 ? R : radix, columns = static_cast<int>(s);
    const std::ptrdiff_t vectors = kPartial ? 1 : vectorsOf(s, W), leg = s * groups;
    for (std::ptrdiff_t g = 0; g < groups; ++g) {
        const T* w = twiddles;
        for (std::ptrdiff_t v = 0; v < vectors; ++v, w += (r - 1) * 2 * W) {
            const std::ptrdiff_t q = kPartial ? 0 : vectorBegin(v, s, W);
            // One address steps over the legs: left to itself the compiler keeps all of their
            // distances, and spills them.
            const T* p = in.re + s * g + q;
            const auto load = [&]() __attribute__((always_inline)) {
                C y;
                if constexpr (kPartial)
                    y = {V::loadPartial(p, columns), V::loadPartial(p + in.toIm, columns)};
                else
                    y = {V::load(p), V::load(p + in.toIm)};
                p = simd::madeHere(p + leg);
                return y;
            };
            C x[R > 0 ? R : kMaxOdd];
            x[0] = load();
#pragma GCC unroll 16
            for (int k = 1; k < r; ++k) x[k] = fft::rotate<D>(load(), C::load(w + (k - 1) * 2 * W));
            if constexpr (R > 0)
                butterfly<D, R>(x);
            else
                oddTransform<D, V>(x, r, oddTable);
            sink.finish(x, r);
            T* to = sink.at(s * r * g + q);
#pragma GCC unroll 16
            for (int j = 0; j < r; ++j) {
                if constexpr (kPartial)
                    sink.storePartial(x[j], to, columns);
                else
                    sink.store(x[j], to);
                to = simd::madeHere(to + Sink::kStep * s);
            }
        }
    }
}

}  // namespace zep::ZEP_VARIANT::dft
