// What mozep spectrum says of a block length is what the library does with it.
#include "dft_route.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "transform/dft_plan.h"

namespace zep::test {
namespace {

namespace dft = ZEP_VARIANT::dft;
using mozep_program::DftRoute;

DftRoute routeOfLibrary(int N) {
    if ((N & (N - 1)) == 0) return DftRoute::PowerOfTwo;
    const int points = N % 2 == 0 ? N / 2 : N;
    const dft::Factors factors = dft::factorise<float>(points);
    switch (dft::routeOf<float>(points, factors)) {
        case dft::Route::Direct:
            return DftRoute::SmallFactors;
        case dft::Route::MixedRadix: {
            const bool generic =
                dft::isGeneric(factors.first) ||
                std::any_of(factors.radix, factors.radix + factors.count, dft::isGeneric);
            return generic ? DftRoute::GenericFactors : DftRoute::SmallFactors;
        }
        case dft::Route::Odd:
            return DftRoute::GenericFactors;
        default:
            return DftRoute::Chirp;
    }
}

TEST(DftRoute, IsThatOfTheLibrary) {
    int counts[4] = {};
    const auto expectSame = [&](int N) {
        ASSERT_EQ(mozep_program::dftRoute(N), routeOfLibrary(N)) << N;
        ++counts[static_cast<int>(routeOfLibrary(N))];
    };
    for (int N = 16; N < 12000; ++N) expectSame(N);
    for (int N = 4194304 - 400; N <= 4194304; ++N) expectSame(N);
    // One prime above 47 is taken where the points are a multiple of 4, two are not.
    for (const int prime : {47, 53, 59, 149, 151})
        for (const int other : {1, 13, 47, 53, 149})
            for (const int power : {1, 2, 4, 8, 16}) expectSame(prime * other * power);
    for (const int count : counts) EXPECT_GT(count, 0);
}

}  // namespace
}  // namespace zep::test
