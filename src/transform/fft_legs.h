// Vectors of twiddles, as the passes read them: cosines of as many columns as lanes, then their negated
// sines, lanes in slot order (simd/split_complex.h) or in that of memory.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "simd/split_complex.h"
#include "simd/unroll.h"
#include "transform/fft_sines.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT::fft {

enum class LaneOrder { Slots, Memory };

template <class V, LaneOrder kOrder>
constexpr int laneElement(int lane) {
    return kOrder == LaneOrder::Slots ? simd::slotElement<V>(lane) : lane;
}

// Pairs for the entries first, first + 1, ... in blocks of a vector's lanes: of each block the
// first parts of entry(k), then the second.
template <class V, LaneOrder kOrder = LaneOrder::Slots, class T, class Entry>
T* fillVectors(T* out, std::uint64_t first, std::uint64_t count, Entry entry) {
    for (std::uint64_t k = first; k < first + count; k += V::lanes, out += 2 * V::lanes)
        for (int s = 0; s < V::lanes; ++s) {
            const auto element = static_cast<std::uint64_t>(laneElement<V, kOrder>(s));
            const Twiddle<T> pair = entry(k + element);
            out[s] = pair.cos;
            out[s + V::lanes] = pair.sin;
        }
    return out;
}

// First the vector a, then b.
template <LaneOrder kOrder, class V>
[[gnu::always_inline]] inline void storeLanes(V a, V b, typename V::Scalar* out) {
    constexpr auto order = [](int s) { return laneElement<V, kOrder>(s); };
    shuffle(a, a, order).store(out);
    shuffle(b, b, order).store(out + V::lanes);
}

// Leg e of one vector of columns: cosines and negated sines of the angles e*column / 2^joined turns.
// Within a quadrant one index rises as the other falls; legs that are powers of two
// read neighbours out of the table of a lower order.
template <LaneOrder kOrder, class T>
void fillLeg(T* out, int e, std::uint64_t column, int joined, const Sines<T>& sines) {
    using V = Real<T>;
    const int shift = std::countr_zero(static_cast<unsigned>(e)), order = joined - shift;
    const std::uint64_t stride = static_cast<std::uint64_t>(e) >> shift, k = stride * column;
    const std::uint64_t quadrant = k >> (order < 2 ? 0 : order - 2);
    if (order < 2 || (k + stride * (V::lanes - 1)) >> (order - 2) != quadrant) {
        fillVectors<V, kOrder>(out, column, V::lanes, [&](std::uint64_t c) {
            const Twiddle<T> w = sines.at(static_cast<std::uint64_t>(e) * c, joined);
            return Twiddle<T>{w.cos, -w.sin};
        });
        return;
    }
    const std::uint64_t quarter = std::uint64_t{1} << (order - 2), place = k & (quarter - 1);
    const T *rising = sines.quarterWave(order) + place,
            *falling = sines.quarterWave(order) + (quarter - place);
    const bool odd = (quadrant & 1) != 0;
    const T cosSign = ((quadrant + 1) & 2) != 0 ? T{-1} : T{1};
    const T sinSign = (quadrant & 2) != 0 ? T{1} : T{-1};
    if (stride == 1) {
        const V up = V::load(rising), down = reverse(V::load(falling - (V::lanes - 1)));
        storeLanes<kOrder>(V::broadcast(cosSign) * (odd ? up : down),
                           V::broadcast(sinSign) * (odd ? down : up), out);
        return;
    }
    T *up = out, *down = out;
    (odd ? down : up) += V::lanes;
    const T upSign = odd ? cosSign : sinSign, downSign = odd ? sinSign : cosSign;
    const auto step = static_cast<std::ptrdiff_t>(stride);
    simd::unroll<V::lanes>([&](auto s) __attribute__((always_inline)) {
        up[s] = upSign * rising[laneElement<V, kOrder>(s) * step];
        down[s] = downSign * falling[-laneElement<V, kOrder>(s) * step];
    });
}

}  // namespace zep::ZEP_VARIANT::fft
