// State of a G.726 stream as the caller keeps it.
#pragma once

#include <cstdint>

namespace zep::ZEP_VARIANT::g726 {

inline constexpr int kEncoderBytes = 88, kDecoderBytes = 92;

// The predictor's eight taps stand side by side: six of the zero section, then two of the pole
// section.
struct StateWords {
    std::int16_t pk0 = 0, pk1 = 0, pk2 = 0;  // signs of the partial reconstruction, newest first
    std::int16_t rateIndex = 0;
    std::int16_t yu = 544;          // fast scale factor
    std::int16_t ap = 0;            // speed control
    std::int32_t yl = 34816;        // slow scale factor
    std::int16_t dms = 0, dml = 0;  // averages of f, short-term and long-term
    std::int16_t td = 0;            // tone flag
    std::int16_t sr0 = 0;
    std::int16_t coefficients[8] = {};                           // b1 to b6, a1, a2
    std::int16_t samples[8] = {32, 32, 32, 32, 32, 32, 32, 32};  // dq1 to dq6, sr1, sr2
    std::int16_t signs[8] = {};
    std::int16_t lawMode = 0;
};
static_assert(sizeof(StateWords) <= kEncoderBytes);

}  // namespace zep::ZEP_VARIANT::g726
