// Lane operations as operations on blocks, for the loops of block_map.h.
#pragma once

#include <bit>
#include <cstring>

#include "simd/block.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {

// Integer lanes stop at this width.
using IntBlock = simd::Block<simd::kIntBytes>;

// op, which takes a T or a vector of T, as an operation on blocks of whole lanes. Blocks below the
// lane are never met when the vector has whole elements.
template <class T, class Op>
inline auto onLanes(Op op) {
    return [=]<int N>(simd::Block<N> x) {
        if constexpr (N >= 16) {
            using V = simd::Vec<T, N / int{sizeof(T)}>;
            return std::bit_cast<simd::Block<N>>(op(std::bit_cast<V>(x)));
        } else if constexpr (N >= int{sizeof(T)}) {
            T lanes[N / int{sizeof(T)}];
            std::memcpy(lanes, &x, sizeof lanes);
            for (T& lane : lanes) lane = op(lane);
            return simd::Block<N>::load(lanes);
        } else {
            return x;
        }
    };
}

}  // namespace zep::ZEP_VARIANT
