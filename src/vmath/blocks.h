// The loop of all element-wise functions: blocks of one vector by the usual formula, and what it
// does not serve one element at a time.
//
// A kernel has
//     static constexpr int kOutputs;
//     M usual(V (&y)[kOutputs], V x...) const;       the formula; true where it does not hold
//     void exact(Zep32f* y, ZepStatus& status, Zep32f x...) const;   any element at all
// Whether an element goes one way or the other depends on that element alone, so neither its
// position nor its neighbours change a result. All sources of a block are read before its results
// are stored: a destination may be a source.
#pragma once

#include <cstddef>

#include "core/checks.h"
#include "simd/control_word.h"
#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT::vmath {

using V = simd::Native<Zep32f>;
using M = V::M;
template <class W>
using IntsOf = simd::Vec<std::int32_t, W::lanes>;

template <int count>
struct Outputs {
    Zep32f* at[count];
};

// The special ones of up to a vector of elements: y is already filled with what usual gave.
template <class Kernel, class... X>
[[gnu::noinline]] ZepStatus exactLanes(const Kernel& kernel, std::uint64_t special,
                                       Zep32f (*y)[V::lanes], ZepStatus status, const X*... x) {
    for (; special != 0; special &= special - 1) {
        const int lane = __builtin_ctzll(special);
        Zep32f result[Kernel::kOutputs];
        kernel.exact(result, status, x[lane]...);
        for (int k = 0; k < Kernel::kOutputs; ++k) y[k][lane] = result[k];
    }
    return status;
}

template <class Kernel, int... k, class... X>
[[gnu::always_inline]] inline ZepStatus anyBlock(std::integer_sequence<int, k...>,
                                                 const Kernel& kernel,
                                                 const Outputs<Kernel::kOutputs>& dst,
                                                 std::ptrdiff_t n, int count, ZepStatus status,
                                                 const X*... src) {
    constexpr int kInputs = sizeof...(X);
    alignas(64) Zep32f x[kInputs][V::lanes], y[Kernel::kOutputs][V::lanes];
    int input = 0;
    (V::loadPartial(src + n, count, 1.0f).storeAligned(x[input++]), ...);
    V result[Kernel::kOutputs];
    const M special = kernel.usual(result, V::loadAligned(x[k])...);
    for (int o = 0; o < Kernel::kOutputs; ++o) result[o].storeAligned(y[o]);
    const std::uint64_t lanes = bits(special) & simd::lowBits(count);
    if (lanes != 0) status = exactLanes(kernel, lanes, y, status, x[k]...);
    for (int o = 0; o < Kernel::kOutputs; ++o)
        V::loadAligned(y[o]).storePartial(dst.at[o] + n, count);
    return status;
}

// The elements n .. n + count - 1, at most a vector.
template <class Kernel, class... X>
[[gnu::noinline]] ZepStatus oneBlock(const Kernel& kernel, const Outputs<Kernel::kOutputs>& dst,
                                     std::ptrdiff_t n, int count, ZepStatus status,
                                     const X*... src) {
    return anyBlock(std::make_integer_sequence<int, sizeof...(X)>{}, kernel, dst, n, count, status,
                    src...);
}

// Vectors of one block of the fast loop: a single one's chain of operations is longer than what the
// processor looks ahead.
inline constexpr int kTogether = simd::kVectorRegisters / 8;

// As many whole blocks from n on as the formula serves; returns the end.
template <int together, class Kernel, class... X>
[[gnu::always_inline]] inline std::ptrdiff_t usualBlocks(const Kernel& kernel,
                                                         const Outputs<Kernel::kOutputs>& dst,
                                                         std::ptrdiff_t n, std::ptrdiff_t len,
                                                         const X*... src) {
    constexpr int kBlock = together * V::lanes;
    for (; n + kBlock <= len; n += kBlock) {
        V y[together][Kernel::kOutputs];
        M special = M::none();
        simd::unroll<together>([&](auto j) {
            special = special | kernel.usual(y[j], V::load(src + n + j * V::lanes)...);
        });
        if (any(special)) [[unlikely]]
            break;
        simd::unroll<together>([&](auto j) {
            simd::unroll<Kernel::kOutputs>(
                [&](auto k) { y[j][k].store(dst.at[k] + n + j * V::lanes); });
        });
    }
    return n;
}

// The status of the last special element.
template <class Kernel, class... X>
[[gnu::always_inline]] inline ZepStatus overBlocks(const Kernel& kernel,
                                                   const Outputs<Kernel::kOutputs>& dst,
                                                   std::ptrdiff_t len, const X*... src) {
    ZepStatus status = zepStsNoErr;
    for (std::ptrdiff_t n = 0;;) {
        n = usualBlocks<kTogether>(kernel, dst, n, len, src...);
        if (n == len) return status;
        const int count = len - n < V::lanes ? static_cast<int>(len - n) : V::lanes;
        status = oneBlock(kernel, dst, n, count, status, src...);
        n += count;
    }
}

}  // namespace zep::ZEP_VARIANT::vmath
