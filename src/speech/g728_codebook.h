// The shape codebook of G.728, laid out for products of pairs.
#pragma once

#include <cstdint>

namespace zep::ZEP_VARIANT::g728 {

inline constexpr int kShapes = 128;
inline constexpr std::int16_t kShapeCodebook[kShapes][5] = {
#include "speech/g728_shapes.inc"
};

}  // namespace zep::ZEP_VARIANT::g728
