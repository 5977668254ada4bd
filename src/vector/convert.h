// convert: dst[n] = op(a[n], b[n], ...), the types of sources and destination being any.
//
// A step makes one vector of the destination's type (a group of them, where that is what comes out
// evenly). op is a lambda that takes, for each source, the same number of elements as that vector has:
// - a type narrower than the destination's: a vector already widened by its load, integers to
//   integers of the destination's size, everything to double where that is the destination;
// - a type of the same size: a vector;
// - a wider type: a simd::Group of vectors;
// - simd::Packed24: 32-bit lanes.
// The vector it returns is the destination's.
//
// There is no scalar form: below one step there are partial loads and stores, up to two steps two
// vectors that overlap, above that a loop of aligned stores between a first and a last vector. These
// two are made before the loop stores anything and stored after it, so a destination that equals a
// source of the same size is safe. Other overlap is not supported.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/checks.h"
#include "simd/group.h"
#include "simd/load_as.h"
#include "simd/packed24.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT {

namespace shape {

using simd::Packed24;

// Elements of a step.
template <class D, class... S>
inline constexpr int kStep = [] {
    if constexpr (std::is_same_v<D, Packed24>)
        return simd::kLanes24;
    else if constexpr ((... || std::is_same_v<S, Packed24>))
        return simd::kSamples24;
    else if constexpr (std::is_same_v<D, std::int32_t> && (... || std::is_same_v<S, float>))
        return simd::Native<float>::lanes;  // more of them where only the floating unit is wide
    else
        return simd::Native<D>::lanes;
}();

// How a step gets N elements of S on their way to D.
template <class S, class D, int N>
struct Source {
    using Wide =
        simd::Vec<std::conditional_t<
                      sizeof(D) == 4,
                      std::conditional_t<std::is_unsigned_v<S>, std::uint32_t, std::int32_t>, D>,
                  N>;
    static Wide load(const S* p) { return simd::loadAs<Wide>(p); }
    static Wide loadPartial(const S* p, int n) { return simd::loadPartialAs<Wide>(p, n); }
};
template <class S, class D, int N>
requires(sizeof(S) == sizeof(D)) struct Source<S, D, N> : simd::Vec<S, N> {
};
template <class S, class D, int N>
requires(sizeof(S) > sizeof(D)) struct Source<S, D, N>
    : simd::Group<simd::Native<S>, N / simd::Native<S>::lanes> {
};
template <class D, int N>
struct Source<Packed24, D, N> {
    static auto load(const Packed24* p) { return simd::load24(p); }
    static auto loadPartial(const Packed24* p, int n) { return simd::loadPartial24(p, n); }
};

// Elements from p, 1 to N, to where a vector of N is aligned. A vector that is not aligned to its
// elements has no such place, and any start serves.
template <int N, class D>
inline std::ptrdiff_t toVectorBoundary(const D* p) {
    const auto address = reinterpret_cast<std::uintptr_t>(p);
    std::uintptr_t before;
    if constexpr (std::is_same_v<D, Packed24>)
        before =
            -address * 43;  // 3 * 43 = 1 modulo 128: so many samples fill up to a boundary of N
    else
        before = -(address / sizeof(D));
    static_assert(N <= 64 && (N & (N - 1)) == 0);
    before &= N - 1;
    return before == 0 ? N : static_cast<std::ptrdiff_t>(before);
}

template <int N, int kUnroll, Store kStore, class At, class D>
[[gnu::always_inline]] inline void stepsBetween(At at, D* dst, std::ptrdiff_t n,
                                                std::ptrdiff_t last) {
    const auto put = [&](std::ptrdiff_t i) __attribute__((always_inline)) {
        if constexpr (kStore == Store::Stream)
            at(i).storeStream(dst + i);
        else
            at(i).store(dst + i);
    };
    if constexpr (kUnroll > 1)
        for (; n < last - (kUnroll - 1) * N; n += kUnroll * N)
            simd::unroll<kUnroll>([&](auto k) __attribute__((always_inline)) { put(n + k * N); });
    for (; n < last; n += N) put(n);
}

}  // namespace shape

template <class Stream = NeverStream, class Op, class D, class... S>
[[gnu::always_inline]] inline void convert(Op op, D* dst, int len, const S*... src) {
    constexpr int N = shape::kStep<D, S...>;
    if (len < N) return op(shape::Source<S, D, N>::loadPartial(src, len)...).storePartial(dst, len);
    const auto at = [&](std::ptrdiff_t n) __attribute__((always_inline)) {
        return op(shape::Source<S, D, N>::load(src + n)...);
    };
    const std::ptrdiff_t last = len - N;
    const auto tail = at(last), head = at(0);
    if (len > 2 * N) {
        const std::ptrdiff_t from = shape::toVectorBoundary<N>(dst);
        // As many steps as write about four vectors.
        constexpr int kRegisters = int{sizeof(tail)} / simd::kIntBytes;
        constexpr bool kNarrows = (... || (sizeof(S) > sizeof(D)));
        constexpr int kUnroll = kRegisters > 2 ? 1 : kNarrows ? 2 : 4;
        bool stream = false;
        if constexpr (Stream::enabled)
            stream = len * std::ptrdiff_t{sizeof(D)} / 32 > Stream::blocks &&
                     reinterpret_cast<std::uintptr_t>(dst + from) % sizeof(tail) == 0;
        if (stream) {
            if constexpr (Stream::enabled) {
                shape::stepsBetween<N, kUnroll, shape::Store::Stream>(at, dst, from, last);
                simd::streamFence();
            }
        } else {
            shape::stepsBetween<N, kUnroll, shape::Store::Plain>(at, dst, from, last);
        }
    }
    head.store(dst);
    tail.store(dst + last);
}

// With the checks that every entry starts with.
template <class Stream = NeverStream, class Op, class D, class... S>
[[gnu::always_inline]] inline ZepStatus checkedConvert(Op op, D* dst, int len, const S*... src) {
    if (const ZepStatus s = checkVectors(len, src..., dst); s != zepStsNoErr) return s;
    convert<Stream>(op, dst, len, src...);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
