// The mixed-radix route: passes that sort as they go, between two arrays (Stockham).
//
// After the passes with product s, element q + s*g is bin q of the s points g, g + N/s, g + 2N/s ...
// of the source. The first stage takes its points N/r apart and writes each group of r bins
// together, vectors running over the groups: the one pass that turns rows into columns. A pass of
// radix r takes the same bin q of r groups, rotates it by W(k*q) of s*r points and writes bins
// q + s*j, vectors running over q. All reads of a pass are in one array and all writes in the other.
//
// Where the first stage writes whole vectors, so do all other passes; the elements of each then
// stand in slot order, which saves the last pass shuffles.
//
// Between the first stage and the last pass the parts stand in arrays of their own, all real parts
// before all imaginary ones, so that passes shuffle nothing. An inverse transform is a forward one
// with the parts exchanged, which costs nothing there.
#pragma once

#include "simd/vec_one.h"
#include "transform/dft_butterfly.h"
#include "transform/dft_schedule.h"
#include "transform/dft_spec.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT::dft {

using fft::kLanes;
using fft::Real;

// Pairs of parts in memory; one lane is a pair as it stands.
template <class V>
[[gnu::always_inline]] inline simd::SplitComplex<V> loadPairs(const typename V::Scalar* p) {
    if constexpr (V::lanes == 1)
        return simd::SplitComplex<V>::load(p);
    else
        return simd::loadInterleaved<V>(p);
}
template <class V>
[[gnu::always_inline]] inline void storePairs(simd::SplitComplex<V> x, typename V::Scalar* p) {
    if constexpr (V::lanes == 1)
        x.store(p);
    else
        simd::storeInterleaved(x, p);
}
template <class V>
constexpr int slotElementOf(int slot) {
    if constexpr (V::lanes == 1)
        return slot;
    else
        return simd::slotElement<V>(slot);
}

// Columns in whole vectors: the widest that the columns fill, single ones where they fill none; the
// last vector begins so that it ends with them. Calls f with such a vector.
template <class T, class F>
[[gnu::always_inline]] inline void withColumnVector(std::ptrdiff_t columns, F f) {
    constexpr int kNarrow = 16 / int{sizeof(T)};
    if (columns >= kLanes<T>) return f(Real<T>{});
    if constexpr (kLanes < T >> 2 * kNarrow)
        if (columns >= 2 * kNarrow) return f(simd::Vec<T, 2 * kNarrow>{});
    if constexpr (kLanes < T >> kNarrow)
        if (columns >= kNarrow) return f(simd::Vec<T, kNarrow>{});
    f(simd::Vec<T, 1>{});
}
constexpr std::ptrdiff_t vectorsOf(std::ptrdiff_t columns, int lanes) {
    return (columns + lanes - 1) / lanes;
}
constexpr std::ptrdiff_t vectorBegin(std::ptrdiff_t vector, std::ptrdiff_t columns, int lanes) {
    return (vector + 1) * lanes <= columns ? vector * lanes : columns - lanes;
}

// Slot order, where the column has one of its own.
template <class T>
constexpr bool slotsDiffer() {
    for (int slot = 0; slot < kLanes<T>; ++slot)
        if (simd::slotElement<Real<T>>(slot) != slot) return true;
    return false;
}
template <class T>
constexpr bool isInSlots(int firstRadix) {
    return slotsDiffer<T>() && firstRadix % kLanes<T> == 0;
}

// Values with their parts in arrays of their own.
template <class T>
struct Parts {
    T* re;
    std::ptrdiff_t toIm;  // from a real part to its imaginary one

    Parts exchanged() const { return {re + toIm, -toIm}; }
};

template <Direction D, class T>
struct Passes {
    // radix groups of stride points each.
    static void first(const T* in, Parts<T> out, int radix, std::ptrdiff_t groups,
                      const T* oddTable);
    // One group of radix * s bins, into pairs, times scale.
    static void last(Parts<const T> in, T* out, int radix, std::ptrdiff_t s, bool inSlots,
                     const T* twiddles, const T* oddTable, T scale);
    // All of them; scratch holds len elements. dst may equal src. Short ones need no scratch, and their
    // tables hold the scale.
    static void run(const T* src, T* dst, std::ptrdiff_t len, const DftObject<T>& spec, T* scratch,
                    T scale);
};

// The table of a radix without code of its own.
template <class T>
inline const T* oddTableOf(const DftObject<T>& spec, int radix) {
    if (!isGeneric(radix)) return nullptr;
    for (int i = 0; i <= spec.lastFactor; ++i)
        if (spec.factors[i].radix == radix) return spec.factors[i].oddTable;
    return spec.factors[spec.lastFactor + 1].oddTable;
}

// G groups of radix * s bins, forward.
template <class T>
struct Middle {
    static void join(Parts<const T> in, Parts<T> out, int radix, std::ptrdiff_t s,
                     std::ptrdiff_t groups, const T* twiddles, const T* oddTable);
};

}  // namespace zep::ZEP_VARIANT::dft
