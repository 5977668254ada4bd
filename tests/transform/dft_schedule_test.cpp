// Every length of the mixed-radix route has passes, whatever it is made of.
#include "support/sweep.h"
#include "transform/fft_steps.h"

namespace zep::test {
namespace {

class DftSchedule : public VariantTest {
protected:
    // What is wrong with the passes of len points; empty: nothing.
    static std::string fault(int (*radicesOf)(int, int (&)[32]), int len) {
        int radices[32] = {};
        const int count = radicesOf(len, radices);
        if (count < 0) return {};
        std::int64_t product = 1;
        std::string text;
        for (int i = 0; i < count; ++i) {
            product *= radices[i];
            text += std::to_string(radices[i]) + ' ';
            if (radices[i] < 2) return "a radix below 2: " + text;
        }
        if (count < 2) return "fewer than two passes: " + text;
        return product == len ? std::string{} : "the product is another one: " + text;
    }
};

TEST_P(DftSchedule, MultipliesUpToTheLength) {
    const DftRadices& radices = dftRadicesOf(GetParam());
    int planned = 0;
    for (int len = 17; len <= 1000000; len += len < 5000 ? 1 : thinStep(7)) {
        int unused[32];
        planned += radices.single(len, unused) > 0;
        ASSERT_EQ(fault(radices.single, len), "") << len << " points, single precision";
        ASSERT_EQ(fault(radices.wide, len), "") << len << " points, double precision";
    }
    EXPECT_GT(planned, 5000);  // of 54170 without powers of two, when none is left out
}
ZEP_FOR_EACH_VARIANT(DftSchedule);

}  // namespace
}  // namespace zep::test
