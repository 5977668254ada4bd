#include "dft_route.h"

#include <bit>

namespace mozep_program {
namespace {

constexpr int kLargestSmallPrime = 13, kLargestGenericPrime = 47, kLargestLastPrime = 149;

}  // namespace

DftRoute dftRoute(int N) {
    if (std::has_single_bit(static_cast<unsigned>(N))) return DftRoute::PowerOfTwo;
    const int points = N % 2 == 0 ? N / 2 : N;
    int rest = points;
    const auto divideOut = [&rest](int divisor) {
        while (rest % divisor == 0) rest /= divisor;
    };
    // Composite divisors divide nothing any more.
    for (int p = 2; p <= kLargestSmallPrime; ++p) divideOut(p);
    if (rest == 1) return DftRoute::SmallFactors;
    for (int p = kLargestSmallPrime + 1; p <= kLargestGenericPrime; ++p) divideOut(p);
    // Below 53 * 53, what is left is a prime.
    const bool mayEndInLargerPrime = points % 4 == 0;
    if (rest == 1 || (mayEndInLargerPrime && rest <= kLargestLastPrime))
        return DftRoute::GenericFactors;
    return DftRoute::Chirp;
}

const char* describe(DftRoute route) {
    switch (route) {
        case DftRoute::PowerOfTwo:
            return "power of two";
        case DftRoute::SmallFactors:
            return "small prime factors";
        case DftRoute::GenericFactors:
            return "generic factors";
        case DftRoute::Chirp:
            break;
    }
    return "chirp";
}

}  // namespace mozep_program
