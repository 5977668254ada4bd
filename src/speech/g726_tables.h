// Quantizer tables of ITU-T G.726: blocks QUAN, RECONST, FUNCTW and FUNCTF, per rate.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zep::ZEP_VARIANT::g726 {

inline constexpr int kLowest = -2048;  // stands for minus infinity among the logarithms

struct Level {
    std::int16_t decision;  // lowest normalised logarithm of this magnitude code, Q7
    std::int16_t output;    // normalised logarithm of the quantized difference, Q7
    std::int16_t w;         // step of the fast scale factor
    std::int16_t f;         // how far the code speaks against a stationary signal
};

// Two bits have no code for a difference that is next to nothing: the levels begin at 116.
inline constexpr Level kLevels2[] = {{kLowest, 116, -22, 0}, {261, 365, 439, 7}};
inline constexpr Level kLevels3[] = {
    {kLowest, kLowest, -4, 0}, {8, 135, 30, 1}, {218, 273, 137, 2}, {331, 373, 582, 7}};
inline constexpr Level kLevels4[] = {
    {kLowest, kLowest, -12, 0}, {-124, 4, 18, 0},   {80, 135, 41, 0},   {178, 213, 64, 1},
    {246, 273, 112, 1},         {300, 323, 198, 1}, {349, 373, 355, 3}, {400, 425, 1122, 7}};
inline constexpr Level kLevels5[] = {
    {kLowest, kLowest, 14, 0}, {-122, -66, 14, 0}, {-16, 28, 24, 0},   {68, 104, 39, 0},
    {139, 169, 40, 0},         {198, 224, 41, 1},  {250, 274, 58, 1},  {298, 318, 100, 1},
    {339, 358, 141, 1},        {378, 395, 179, 1}, {413, 429, 219, 2}, {445, 459, 280, 3},
    {475, 488, 358, 4},        {502, 514, 440, 5}, {528, 539, 529, 6}, {553, 566, 696, 6}};

// The tables of a rate, as the coder reads them.
struct Rate {
    int bits;
    int leakShift;               // of the zero section's coefficients
    std::int16_t decisions[16];  // of the magnitude codes from 1 on; the rest is out of reach
    // By the whole code, sign included.
    std::int32_t w32[32];
    std::int16_t output[32], f512[32];

    constexpr int signBit() const { return 1 << (bits - 1); }
    constexpr int codeMask() const { return (1 << bits) - 1; }
};

template <std::size_t size>
constexpr Rate makeRate(const Level (&levels)[size], int bits, int leakShift) {
    constexpr int count = static_cast<int>(size);
    Rate rate{bits, leakShift, {}, {}, {}, {}};
    for (int i = 0; i < 16; ++i)
        rate.decisions[i] = i + 1 < count ? levels[i + 1].decision : std::int16_t{32767};
    for (int code = 0; code < 2 * count; ++code) {
        // The codes of negative differences are the complements.
        const Level& level = levels[code < count ? code : 2 * count - 1 - code];
        rate.output[code] = level.output;
        rate.w32[code] = level.w * 32;
        rate.f512[code] = static_cast<std::int16_t>(level.f * 512);
    }
    return rate;
}

// By rateIndex: 16, 24, 32 and 40 kbit/s.
inline constexpr Rate kRates[] = {makeRate(kLevels2, 2, 8), makeRate(kLevels3, 3, 8),
                                  makeRate(kLevels4, 4, 8), makeRate(kLevels5, 5, 9)};

}  // namespace zep::ZEP_VARIANT::g726
