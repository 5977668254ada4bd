// Shifts of a stream of bits, most significant bit first, that runs on from byte to byte.
#pragma once

#include "simd/block.h"

namespace zep::ZEP_VARIANT::simd {

// The bytes that start offset bits behind those of x, next being the bytes one behind x; 1 <=
// offset <= 7. Bytes are shifted as halves of 16-bit lanes, and the masks take out what came over
// from the other half.
template <class B>
class BitShift;

template <>
class BitShift<Block<16>> {
public:
    explicit BitShift(int offset)
        : left_(_mm_cvtsi32_si128(offset)),
          right_(_mm_cvtsi32_si128(8 - offset)),
          keepLeft_(_mm_set1_epi8(static_cast<char>(0xFF << offset))) {}

    Block<16> operator()(Block<16> x, Block<16> next) const {
        const __m128i high = _mm_and_si128(_mm_sll_epi16(x.v, left_), keepLeft_);
        const __m128i low = _mm_andnot_si128(keepLeft_, _mm_srl_epi16(next.v, right_));
        return {_mm_or_si128(high, low)};
    }

private:
    __m128i left_, right_, keepLeft_;
};

}  // namespace zep::ZEP_VARIANT::simd
