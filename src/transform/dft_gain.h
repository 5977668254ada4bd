// What the rounding of a butterfly's constants does to the norm of its output on the average. All
// other effects of roundings are as good as random, but this one passes add up: left alone it makes
// up to a seventh of the square of a transform's error. The twiddles can take it back.
#pragma once

#include "transform/dft_butterfly.h"
#include "transform/dft_schedule.h"

namespace zep::ZEP_VARIANT::dft {

template <class T>
constexpr long double roundingOf(long double exact) {
    return static_cast<long double>(static_cast<T>(exact)) - exact;
}

// Of bins j and N-j: the errors of sines and cosines, each by its weight.
template <class T, int N>
constexpr long double gainOfBins(int j) {
    const Products<T> sines = bestProducts<T, N>(j);
    long double gain = 0;
    for (int k = 1; k <= (N - 1) / 2; ++k) {
        const long double c = kUnitRoots<long double, N>.cosine[j * k % N];
        const long double s = kUnitRoots<long double, N>.sine[j * k % N];
        gain += roundingOf<T>(c) * c +
                (sines.divisor * static_cast<long double>(sines.ratio[k]) - s) * s;
    }
    return 4 * gain / (N * N);
}

// Relative.
template <class T, int N>
constexpr long double gainOf() {
    constexpr auto sine = [](int k, int n) { return unitSine(k, n); };
    if constexpr (N == 2 || N == 4) {
        return 0;
    } else if constexpr (N == 8) {  // a quarter of the products has the root of a half
        return roundingOf<T>(sine(1, 8)) / sine(1, 8) / 4;
    } else if constexpr (N == 16) {  // and another one sixteenths of a turn
        const long double s = sine(1, 16), c = sine(3, 16);
        return gainOf<T, 8>() + (roundingOf<T>(s) * s + roundingOf<T>(c) * c) / 4;
    } else if constexpr (N == 9) {
        const long double s = sine(3, 9);
        return gainOfBins<T, 9>(1) + gainOfBins<T, 9>(2) + gainOfBins<T, 9>(4) +
               4 * (3 * roundingOf<T>(s) * s) / (9 * 9);
    } else if constexpr (N % 4 == 0) {
        return gainOf<T, N / 4>();
    } else if constexpr (N % 2 == 0) {
        return gainOf<T, N / 2>();
    } else if constexpr (N == 15) {
        return gainOf<T, 3>() + gainOf<T, 5>();
    } else {
        long double gain = 0;
        for (int j = 1; j <= (N - 1) / 2; ++j) gain += gainOfBins<T, N>(j);
        return gain;
    }
}

// Factor for the roots that become twiddles. One root stays, 1: half a unit of it is the limit.
template <class T>
long double rootScale(const Schedule& schedule) {
    constexpr long double kLimit = sizeof(T) == 4 ? 0x1.Cp-26L : 0x1.Cp-55L;
    long double gain = 0, rotated = 0;
    std::int64_t columns = 1;
    for (int i = 0; i < schedule.count; ++i) {
        const int r = schedule.radix[i];
        bool known = false;
        withRadix(r, [&](auto R) {
            if constexpr (R > 0) {
                constexpr long double kGain = gainOf<T, R>();
                gain += kGain;
                known = true;
            }
        });
        if (!known) return 1;
        // All but a first leg and a first column are rotated.
        rotated += static_cast<long double>((r - 1) * (columns - 1)) /
                   static_cast<long double>(r * columns);
        columns *= r;
    }
    const long double correction = gain / rotated;
    return 1 - (correction > kLimit ? kLimit : correction < -kLimit ? -kLimit : correction);
}

}  // namespace zep::ZEP_VARIANT::dft
