// Extreme values with the lowest index at which they stand.
//
// The vector goes by in blocks, whose maxima are compared with the best value so far; only the
// first block that holds the best value is remembered, and searched for it at the end. That costs
// hardly more than the maximum alone. The index is the lowest one: a later block replaces the
// remembered one only if it is strictly ahead, so no block before that one holds an equal value, and
// the search goes upwards. Zeros of both signs are equal to the comparison and to the search.
//
// A not-a-number is never ahead and never replaces a running value (see extremes.h). As the first
// element it is the starting value, from which nothing is ahead; the search does not find it and
// leaves index 0.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "vector/extremes.h"
#include "vector/reduce.h"

namespace zep::ZEP_VARIANT {
namespace {

// Long enough that few values are seen twice in the search, whatever the lanes, and that merging
// the accumulators counts little.
template <class V>
constexpr std::ptrdiff_t kBlock = 64 * V::lanes;

// The first of len elements that equals x; 0 where none does.
template <class T>
inline std::ptrdiff_t firstEqual(const T* src, std::ptrdiff_t len, T x) {
    using V = simd::Native<T>;
    constexpr std::ptrdiff_t L = V::lanes;
    const V wanted = V::broadcast(x);
    const auto place = [](auto mask) { return __builtin_ctzll(bits(mask)); };
    std::ptrdiff_t n = 0;
    for (; n + 4 * L <= len; n += 4 * L) {
        const auto a = V::load(src + n) == wanted, b = V::load(src + n + L) == wanted;
        const auto c = V::load(src + n + 2 * L) == wanted, d = V::load(src + n + 3 * L) == wanted;
        if (any((a | b) | (c | d))) break;
    }
    for (; n + L <= len; n += L)
        if (const auto m = V::load(src + n) == wanted; any(m)) return n + place(m);
    const auto rest = static_cast<int>(len - n);
    const auto m = (V::loadPartial(src + n, rest) == wanted) & V::M::first(rest);
    return any(m) ? n + place(m) : 0;
}

// The best value so far and the block that it came from.
template <class Which>
struct Best {
    using V = decltype(Which::value);
    using T = typename V::Scalar;
    T value;
    V everywhere;
    std::ptrdiff_t block = 0;

    explicit Best(T first) : value(first), everywhere(V::broadcast(first)) {}
    void consider(const Which& found, std::ptrdiff_t at) {
        if (!any(Which::ahead(found.value, everywhere))) return;
        value = found.reduced();
        everywhere = V::broadcast(value);
        block = at;
    }
    // The value as it stands in the vector, with its sign of zero.
    void report(const T* src, std::ptrdiff_t len, T* result, int* index) const {
        const std::ptrdiff_t left = len - block;
        const auto n = block + firstEqual(src + block, left < kBlock<V> ? left : kBlock<V>, value);
        simd::writeAny(result, simd::readAny(src + n));
        simd::writeAny(index, static_cast<int>(n));
    }
};

// visit(first of the block, its length).
template <class V, class Visit>
inline void forBlocks(std::ptrdiff_t len, Visit visit) {
    std::ptrdiff_t at = 0;
    for (; at + kBlock<V> <= len; at += kBlock<V>) visit(at, kBlock<V>);
    if (at < len) visit(at, len - at);
}

template <template <class> class Which, class T>
inline ZepStatus checkedIndex(const T* src, int len, T* result, int* index,
                              ZepStatus (*valueOnly)(const T*, int, T*)) {
    if (index == nullptr) return valueOnly(src, len, result);
    if (const ZepStatus s = checkVectors(len, src, result); s != zepStsNoErr) return s;
    using V = simd::Native<T>;
    Best<Which<V>> best(simd::readAny(src));
    forBlocks<V>(len, [&](std::ptrdiff_t at, std::ptrdiff_t count) {
        const Which<V> start{best.everywhere};
        best.consider(foldExtreme<4>(count, start, best.value, src + at), at);
    });
    best.report(src, len, result, index);
    return zepStsNoErr;
}

template <class T>
inline ZepStatus checkedIndices(const T* src, int len, T* smallest, int* smallestIndex, T* largest,
                                int* largestIndex) {
    if (const ZepStatus s = checkVectors(len, src, smallest, smallestIndex, largest, largestIndex);
        s != zepStsNoErr)
        return s;
    using V = simd::Native<T>;
    const T first = simd::readAny(src);
    Best<Smallest<V>> low(first);
    Best<Largest<V>> high(first);
    forBlocks<V>(len, [&](std::ptrdiff_t at, std::ptrdiff_t count) {
        const Extremes<V> start{{low.everywhere}, {high.everywhere}};
        // Between the two bounds, and so neutral for both.
        const auto found = foldExtreme<4>(count, start, first, src + at);
        low.consider(found.smallest, at);
        high.consider(found.largest, at);
    });
    low.report(src, len, smallest, smallestIndex);
    high.report(src, len, largest, largestIndex);
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsMaxIndx_32f(const Zep32f* pSrc, int len, Zep32f* pMax, int* pIndx) {
    return checkedIndex<Largest>(pSrc, len, pMax, pIndx, zepsMax_32f);
}
ZepStatus zepsMaxIndx_32s(const Zep32s* pSrc, int len, Zep32s* pMax, int* pIndx) {
    return checkedIndex<Largest>(pSrc, len, pMax, pIndx, zepsMax_32s);
}
ZepStatus zepsMinIndx_32f(const Zep32f* pSrc, int len, Zep32f* pMin, int* pIndx) {
    return checkedIndex<Smallest>(pSrc, len, pMin, pIndx, zepsMin_32f);
}
ZepStatus zepsMinIndx_32s(const Zep32s* pSrc, int len, Zep32s* pMin, int* pIndx) {
    return checkedIndex<Smallest>(pSrc, len, pMin, pIndx, zepsMin_32s);
}
ZepStatus zepsMinMaxIndx_32f(const Zep32f* pSrc, int len, Zep32f* pMin, int* pMinIndx, Zep32f* pMax,
                             int* pMaxIndx) {
    return checkedIndices(pSrc, len, pMin, pMinIndx, pMax, pMaxIndx);
}
ZepStatus zepsMinMaxIndx_32s(const Zep32s* pSrc, int len, Zep32s* pMin, int* pMinIndx, Zep32s* pMax,
                             int* pMaxIndx) {
    return checkedIndices(pSrc, len, pMin, pMinIndx, pMax, pMaxIndx);
}

}  // namespace zep::ZEP_VARIANT
