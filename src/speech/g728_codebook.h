// The shape codebook of G.728, laid out for products of pairs: for each pair of samples the words
// of all shapes in turn, the fifth sample being paired with 0.
#pragma once

#include <cstdint>

#include "simd/vec.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT::g728 {

inline constexpr int kShapes = 128;

struct ShapePairs {
    alignas(64) std::int16_t words[3][kShapes][2];
};
constexpr ShapePairs makeShapePairs() {
    constexpr std::int16_t rows[kShapes][6] = {
#include "speech/g728_shapes.inc"
    };
    ShapePairs t{};
    for (int j = 0; j < kShapes; ++j)
        for (int n = 0; n < 6; ++n) t.words[n / 2][j][n % 2] = rows[j][n];
    return t;
}
inline constexpr ShapePairs kShapePairs = makeShapePairs();

// As many shapes as there are 32-bit lanes.
using Words16 = simd::Native<std::int16_t>;
using Words32 = simd::Native<std::int32_t>;

// The three pairs of the shapes from j on.
struct Shapes {
    Words16 pairs[3];

    [[gnu::always_inline]] static Shapes load(int j) {
        return {{Words16::load(kShapePairs.words[0][j]), Words16::load(kShapePairs.words[1][j]),
                 Words16::load(kShapePairs.words[2][j])}};
    }
};

// Five words as the other side of the products.
struct Pairs {
    Words16 pairs[3];

    [[gnu::always_inline]] explicit Pairs(const Vector5& x)
        : pairs{Words16::broadcastPair(x[0], x[1]), Words16::broadcastPair(x[2], x[3]),
                Words16::broadcastPair(x[4], 0)} {}
};

}  // namespace zep::ZEP_VARIANT::g728
