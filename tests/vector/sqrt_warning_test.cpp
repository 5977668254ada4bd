// The warning of a negative element, wherever it stands: before the 16-byte boundary of the
// destination, in a block, and behind the last one.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/sweep.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

class SquareRootWarning : public VariantTest {};

void expectWarning(int skew, int len, int negative) {
    alignas(64) Zep32f src[160], dst[160];
    for (int n = 0; n < len; ++n) src[n] = 9.0f;
    src[negative] = -1.0f;
    for (Zep32f& v : dst) v = 7.0f;
    Zep32f* const y = dst + skew;
    ASSERT_EQ(zepsSqrt_32f(src, y, len), zepStsSqrtNegArg);
    for (int n = 0; n < len; ++n)
        ASSERT_TRUE(n == negative ? std::isnan(y[n]) : std::abs(y[n] - 3.0f) < 1e-5f) << n;
    ASSERT_EQ(y[len], 7.0f);

    Zep32f* const inPlace = dst + skew;
    for (int n = 0; n < len; ++n) inPlace[n] = src[n];
    ASSERT_EQ(zepsSqrt_32f_I(inPlace, len), zepStsSqrtNegArg);
}

TEST_P(SquareRootWarning, ComesForAnElementAtAnyPlace) {
    for (int skew = 0; skew < 16; ++skew)  // 0, 4, 8 and 12 modulo 16, in every position of a line
        for (const int len : {1, 2, 3, 4, 5, 15, 16, 17, 20, 31, 32, 33, 47, 64, 79, 100})
            for (int negative = 0; negative < len; negative += thinStep(3)) {
                expectWarning(skew, len, negative);
                ASSERT_FALSE(HasFailure())
                    << "skew " << skew << " len " << len << " at " << negative;
            }
}

TEST_P(SquareRootWarning, DoesNotComeForMinusZeroAndNaN) {
    alignas(64) Zep32f dst[64];
    for (int skew = 0; skew < 4; ++skew)
        for (int at = 0; at < 20; ++at)
            for (const Zep32f value : {-0.0f, NAN}) {
                std::vector<Zep32f> src(20, 9.0f);
                src[static_cast<std::size_t>(at)] = value;
                ASSERT_EQ(zepsSqrt_32f(src.data(), dst + skew, 20), zepStsNoErr) << at;
            }
}

ZEP_FOR_EACH_VARIANT(SquareRootWarning);

}  // namespace
}  // namespace zep::test
