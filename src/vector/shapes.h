// Loop shapes of the element-wise families, each written once.
//
// map:  dst[n] = op(a[n], b[n], ...) for any number of sources, dst itself among them for
// accumulation. op is a generic lambda that works on vectors of any width.
// mapComplex: the same on interleaved pairs.
//
// No scalar loop: a length between two widths is covered by vectors that overlap, one below the
// narrowest vector by a partial one, whose other lanes hold zeros. All operands of overlapping
// vectors are read before anything is written over them, so a destination that equals a source is
// safe and every element is computed from original values, with the same result wherever it stands.
// Short lengths end in one chain of compares; longer ones have a first vector up to the alignment
// of dst or a source, a main loop of aligned accesses, and the last vectors.
//
// mapSplit: dst = op(a, b, ...) on complex elements whose parts op gets apart, as simd::Complex of
// the widest vector.
//
// Streaming stores are a policy: with StreamAbove the main loop stores around the cache when it has
// more 32-byte blocks than the limit, so that a vector that cannot stay in the cache does not evict
// everything else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "core/checks.h"
#include "simd/complex.h"
#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {

struct NeverStream {
    static constexpr bool enabled = false;
    static constexpr std::ptrdiff_t blocks = 0;
};

template <std::ptrdiff_t kBlocks>
struct StreamAbove {
    static constexpr bool enabled = true;
    static constexpr std::ptrdiff_t blocks = kBlocks;
};

namespace shape {

enum class Store { Plain, Stream };

template <class V, Store kStore>
[[gnu::always_inline]] inline void put(V v, typename V::Scalar* p) {
    if constexpr (kStore == Store::Stream)
        v.storeStream(p);
    else
        v.store(p);
}

// kCount vectors from each end, which meet or overlap: kCount * lanes <= len <= 2 * kCount * lanes.
template <class V, int kCount, class Op, class T, class... Src>
[[gnu::always_inline]] inline void bothEnds(Op op, T* dst, std::ptrdiff_t len, const Src*... src) {
    const std::ptrdiff_t last = len - kCount * V::lanes;
    V tail[kCount];
    simd::unroll<kCount>([&](auto k) { tail[k] = op(V::load(src + last + k * V::lanes)...); });
    simd::unroll<kCount>(
        [&](auto k) { op(V::load(src + k * V::lanes)...).store(dst + k * V::lanes); });
    simd::unroll<kCount>([&](auto k) { tail[k].store(dst + last + k * V::lanes); });
}

// Fewer scalars than a vector of V has lanes.
template <class V, class Op, class T, class... Src>
[[gnu::always_inline]] inline void belowOne(Op op, T* dst, std::ptrdiff_t len, const Src*... src) {
    if constexpr (simd::kMaskedMemory || simd::isNarrow<V>) {
        const auto n = static_cast<int>(len);
        op(V::loadPartial(src, n)...).storePartial(dst, n);
    } else {
        using H = simd::Half<V>;
        if (len < H::lanes) return belowOne<H>(op, dst, len, src...);
        bothEnds<H, 1>(op, dst, len, src...);
    }
}

// More than 8 vectors: up to two in front of a boundary of two vectors, a loop from there, and the
// last four. The loop then fills whole cache lines, and its loads and stores take turns: that keeps
// all ports of the first-level cache busy.
template <class V, Store kStore, class Op, class T, class... Src>
[[gnu::always_inline]] inline void longLoop(Op op, T* dst, std::ptrdiff_t from, std::ptrdiff_t len,
                                            const Src*... src) {
    constexpr std::ptrdiff_t L = V::lanes;
    const std::ptrdiff_t last = len - 4 * L;
    V head[2] = {}, tail[4];
    if (from != 0) simd::unroll<2>([&](auto k) { head[k] = op(V::load(src + k * L)...); });
    simd::unroll<4>([&](auto k) { tail[k] = op(V::load(src + last + k * L)...); });
    for (std::ptrdiff_t n = from; n < last; n += 4 * L)
        simd::unroll<4>(
            [&](auto k) { put<V, kStore>(op(V::load(src + n + k * L)...), dst + n + k * L); });
    if constexpr (kStore == Store::Stream) simd::streamFence();
    if (from != 0) simd::unroll<2>([&](auto k) { head[k].store(dst + k * L); });
    simd::unroll<4>([&](auto k) { tail[k].store(dst + last + k * L); });
}

// Scalars from p to the next boundary of two vectors, in whole elements. A vector that is not
// aligned to its elements has none, and any start serves.
template <class V, int kGranule, class T>
inline std::ptrdiff_t toBoundary(const T* p) {
    const auto scalar =
        static_cast<std::ptrdiff_t>(reinterpret_cast<std::uintptr_t>(p) / sizeof(T));
    return -scalar & (2 * V::lanes - kGranule);
}

template <int kGranule, class Stream, class Op, class T, class... Src>
[[gnu::always_inline]] inline void map(Op op, T* dst, std::ptrdiff_t len, const Src*... src) {
    using V = simd::Native<T>;
    constexpr std::ptrdiff_t L = V::lanes;
    if (len < L) return belowOne<V>(op, dst, len, src...);
    if (len <= 2 * L) return bothEnds<V, 1>(op, dst, len, src...);
    if (len <= 4 * L) return bothEnds<V, 2>(op, dst, len, src...);
    if (len <= 8 * L) return bothEnds<V, 4>(op, dst, len, src...);
    if constexpr (Stream::enabled) {
        const std::ptrdiff_t from = toBoundary<V, kGranule>(dst);
        const std::ptrdiff_t blocks = (len - from) * std::ptrdiff_t{sizeof(T)} / 32;
        const bool aligned = reinterpret_cast<std::uintptr_t>(dst + from) % sizeof(V) == 0;
        if (blocks > Stream::blocks && aligned)
            return longLoop<V, Store::Stream>(op, dst, from, len, src...);
    }
    // One source: stores are the narrow place, and dst is aligned. More: the loads are, and
    // aligning the last source was never slower than aligning dst.
    const T* anchor = dst;
    if constexpr (sizeof...(Src) > 1) static_cast<void>(((anchor = src), ...));
    longLoop<V, Store::Plain>(op, dst, toBoundary<V, kGranule>(anchor), len, src...);
}

// A cast, not the address of the first part: elements may stand at any address.
template <class C>
auto* parts(C* p) {
    using Part = decltype(C::re);
    if constexpr (std::is_const_v<C>)
        return reinterpret_cast<const Part*>(p);
    else
        return reinterpret_cast<Part*>(p);
}

}  // namespace shape

// dst[n] = op(src[n]...), 0 <= n < len. dst may equal a source, other overlap is not supported.
template <class Stream = NeverStream, class Op, class T, class... Src>
[[gnu::always_inline]] inline void map(Op op, T* dst, int len, const Src*... src) {
    shape::map<1, Stream>(op, dst, len, src...);
}

// The same for complex elements: op takes vectors of interleaved pairs.
template <class Stream = NeverStream, class Op, class C, class... Src>
[[gnu::always_inline]] inline void mapComplex(Op op, C* dst, int len, const Src*... src) {
    shape::map<2, Stream>(op, shape::parts(dst), std::ptrdiff_t{2} * len, shape::parts(src)...);
}

// dst[n] = op(src[n]...) on split parts. Elements are independent, so op may gather flags by
// reference: lanes without an element hold 1 + 1i.
template <class Op, class C, class... Src>
[[gnu::always_inline]] inline void mapSplit(Op op, C* dst, int len, const Src*... src) {
    using T = decltype(C::re);
    using Z = simd::Complex<simd::Native<T>>;
    if (len < Z::lanes) {
        op(Z::loadPartial(shape::parts(src), len, T{1})...).storePartial(shape::parts(dst), len);
        return;
    }
    const std::ptrdiff_t last = len - Z::lanes;
    const Z tail = op(Z::load(shape::parts(src + last))...);
    for (std::ptrdiff_t n = 0; n < last; n += Z::lanes)
        op(Z::load(shape::parts(src + n))...).store(shape::parts(dst + n));
    tail.store(shape::parts(dst + last));
}

// With the checks that every entry starts with.
template <class Stream = NeverStream, class Op, class T, class... Src>
[[gnu::always_inline]] inline ZepStatus checkedMap(Op op, T* dst, int len, const Src*... src) {
    if (const ZepStatus s = checkVectors(len, src..., dst); s != zepStsNoErr) return s;
    map<Stream>(op, dst, len, src...);
    return zepStsNoErr;
}

template <class Stream = NeverStream, class Op, class C, class... Src>
[[gnu::always_inline]] inline ZepStatus checkedMapComplex(Op op, C* dst, int len,
                                                          const Src*... src) {
    if (const ZepStatus s = checkVectors(len, src..., dst); s != zepStsNoErr) return s;
    mapComplex<Stream>(op, dst, len, src...);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
