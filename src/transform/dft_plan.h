// Which route a length takes, and its factors: decisions without tables.
#pragma once

#include <cstdint>

#include "core/variant_exports.h"

namespace zep::ZEP_VARIANT::dft {

constexpr int kDirectMaxLength = 16;  // straight-line code
constexpr int kMaxFactors = 20;

// Limits of the routes by scalar type.
template <class T>
struct Limits;
template <>
struct Limits<float> {
    static constexpr int length = 134217727;
    static constexpr int chirpLength = 67108863;
    static constexpr int divisor = 50;       // largest that is tried
    static constexpr int oddLength = 50;     // longest of the route by the definition
    static constexpr int largestLast = 150;  // last factor of a length with wideLast as divisor
    static constexpr int wideLast = 4;
};
template <>
struct Limits<double> {
    static constexpr int length = 67108863;
    static constexpr int chirpLength = 33554431;
    static constexpr int divisor = 90;
    static constexpr int oddLength = 90;
    static constexpr int largestLast = 150;
    static constexpr int wideLast = 2;
};

// radix[0 .. count-1] are the passes in the order of the records, the last pass to run first;
// first is the length of the stage that runs before all of them. count is 0 where there is no plan.
struct Factors {
    int count = 0;
    int radix[kMaxFactors] = {};
    int first = 0;
};

template <class T>
Factors factorise(int len);

enum class Route { Direct, Fft, MixedRadix, Odd, Chirp, None };

// The route of len complex points.
template <class T>
Route routeOf(int len, const Factors& factors) {
    if (len <= kDirectMaxLength) return Route::Direct;
    if ((len & (len - 1)) == 0) return Route::Fft;
    if (factors.count > 0) return Route::MixedRadix;
    if (len <= Limits<T>::oddLength) return Route::Odd;
    return len <= Limits<T>::chirpLength ? Route::Chirp : Route::None;
}

// Radices without code of their own.
constexpr bool isGeneric(int radix) { return radix > 13 && radix % 2 == 1; }

// Length of the inner transform of a chirp convolution of len points.
int convolutionLength(int len);

}  // namespace zep::ZEP_VARIANT::dft
