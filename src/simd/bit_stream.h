// Shifts of a stream of bits, most significant bit first, that runs on from byte to byte.
#pragma once

#include "simd/block.h"

namespace zep::ZEP_VARIANT::simd {

// The bytes that start offset bits behind those of x, next being the bytes one behind x; 1 <=
// offset <= 7. Bytes are shifted as halves of 16-bit lanes, and the masks take out what came over
// from the other half.
template <class B>
class BitShift {
public:
    explicit BitShift(int offset)
        : offset_(offset),
          keepLeft_(blockOf(
              Vec<std::uint8_t, B::bytes>::broadcast(static_cast<std::uint8_t>(0xFF << offset)))) {}

    B operator()(B x, B next) const {
        const auto left = blockOf(lanesOf<std::uint16_t>(x) << offset_);
        const auto right = blockOf(lanesOf<std::uint16_t>(next) >> (8 - offset_));
        return {(left.v & keepLeft_.v) | (right.v & ~keepLeft_.v)};
    }

private:
    int offset_;
    B keepLeft_;
};

}  // namespace zep::ZEP_VARIANT::simd
