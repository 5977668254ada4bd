// Pitch extraction and the postfilter.
#include <cmath>

#include "speech/g728_support.h"

namespace zep::test {
namespace {

using reference::PitchModel;
using reference::PostfilterModel;

class G728Postfilter : public VariantTest {};

TEST_P(G728Postfilter, FollowsTheModelOnAnyWords) {
    for (int trial = 0; trial < 40; ++trial) {
        StateMemory<ZepPostFilterState> state(64);
        ASSERT_EQ(zepsPostFilterInit_G728_16s(state.get()), zepStsNoErr);
        EXPECT_TRUE(state.isZero());
        PostfilterModel model;
        const Ints coefficients = randomWords(20);
        WordBuffer c(coefficients, 1);
        for (int call = 0; call < 10; ++call) {
            const int kp = call == 0 ? 140 : randomValue<Zep8u>() % 141;
            const Ints x = randomWords(kp + 5), words = randomWords(3);
            WordBuffer source(x, call & 1), out(5, 1);
            Zep16s* const pSrc = source.data() + kp;
            Zep16s* const pDst = call % 3 == 0 ? pSrc : out.data();
            ASSERT_EQ(zepsPostFilter_G728_16s(
                          static_cast<Zep16s>(words[0]), static_cast<Zep16s>(words[1]),
                          static_cast<Zep16s>(kp), static_cast<Zep16s>(words[2]), c.data(), pSrc,
                          pDst, state.get()),
                      zepStsNoErr);
            Ints result = (call % 3 == 0 ? source : out).values();
            result.erase(result.begin(), result.end() - 5);
            ASSERT_EQ(result, model.filter(words[0], words[1], kp, words[2], coefficients, x))
                << trial << ' ' << call;
        }
    }
}

TEST_P(G728Postfilter, ATransparentFilterPassesSpeechAtUnityGain) {
    StateMemory<ZepPostFilterState> state(64);
    zepsPostFilterInit_G728_16s(state.get());
    WordBuffer coefficients(Ints(20)), source(Ints{100, -2000, 8191, -8192, 3}), out(5);
    for (int call = 0; call < 5; ++call) {
        ASSERT_EQ(zepsPostFilter_G728_16s(16384, 0, 0, 0, coefficients.data(), source.data(),
                                          out.data(), state.get()),
                  zepStsNoErr);
        // The gain settles within 1 part in 2^12 of unity.
        for (std::size_t n = 0; n < 5; ++n) EXPECT_NEAR(out.values()[n], source.values()[n], 2);
    }
}

TEST_P(G728Postfilter, PitchFollowsTheModel) {
    for (int trial = 0; trial < 12; ++trial) {
        StateMemory<ZepPostFilterAdapterState> state(176);
        ASSERT_EQ(zepsPostFilterAdapterStateInit_G728(state.get()), zepStsNoErr);
        EXPECT_TRUE(state.isZero());
        PitchModel model;
        // Pulses whose period drifts, under noise; or any words.
        Ints signal(240);
        const int loudness = randomValue<Zep8u>() % 14;
        const double start = 20 + randomValue<Zep8u>() % 120;
        int next = 240;
        for (int call = 0; call < 12; ++call) {
            for (int n = 0; n < 20; ++n) {
                const int now = 240 + 20 * call + n;
                const bool pulse = now >= next;
                if (pulse) next = now + static_cast<int>(start * (1 + 0.02 * call));
                const int noise = randomValue<Zep16s>() >> (trial % 3 == 0 ? 0 : 6);
                signal.push_back((pulse && trial % 3 != 0 ? 30000 + noise : noise) >> loudness);
            }
            const Ints residual(signal.end() - 240, signal.end());
            WordBuffer source(residual, call & 1);
            Zep32s period = -1;
            ASSERT_EQ(zepsPitchPeriodExtraction_G728_16s(source.data() + 220, &period, state.get()),
                      zepStsNoErr);
            ASSERT_EQ(period, model.extract(residual)) << trial << ' ' << call;
            ASSERT_GE(period, 20);
            ASSERT_LE(period, 140);
        }
    }
}

TEST_P(G728Postfilter, FindsThePeriodOfASine) {
    for (const int expected : {25, 40, 67, 100, 130}) {
        StateMemory<ZepPostFilterAdapterState> state(176);
        zepsPostFilterAdapterStateInit_G728(state.get());
        Ints signal;
        for (int n = 0; n < 600; ++n) {
            double v = 0;
            for (int harmonic = 1; harmonic < 6; ++harmonic)
                v += std::cos(2 * 3.14159265358979 * harmonic * n / expected);
            signal.push_back(static_cast<int>(1000 * v));
        }
        Zep32s period = 0;
        for (int end = 240; end <= 600; end += 20) {
            WordBuffer source(Ints(signal.begin() + end - 240, signal.begin() + end));
            ASSERT_EQ(zepsPitchPeriodExtraction_G728_16s(source.data() + 220, &period, state.get()),
                      zepStsNoErr);
        }
        // Or a multiple of it, which correlates as well.
        EXPECT_EQ((period + 1) % expected <= 2, true) << expected << " found " << period;
    }
}

TEST_P(G728Postfilter, SilenceGivesTheShortestPeriod) {
    StateMemory<ZepPostFilterAdapterState> state(176);
    zepsPostFilterAdapterStateInit_G728(state.get());
    WordBuffer silence(Ints(240));
    Zep32s period = 0;
    ASSERT_EQ(zepsPitchPeriodExtraction_G728_16s(silence.data() + 220, &period, state.get()),
              zepStsNoErr);
    EXPECT_EQ(period, 20);
}

TEST_P(G728Postfilter, SizesAndNullPointers) {
    Zep32u size = 0;
    EXPECT_EQ(zepsPostFilterGetStateSize_G728_16s(&size), zepStsNoErr);
    EXPECT_EQ(size, 64u);
    EXPECT_EQ(zepsPostFilterAdapterGetStateSize_G728(&size), zepStsNoErr);
    EXPECT_EQ(size, 176u);
    EXPECT_EQ(zepsPostFilterGetStateSize_G728_16s(nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsPostFilterAdapterGetStateSize_G728(nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsPostFilterInit_G728_16s(nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsPostFilterAdapterStateInit_G728(nullptr), zepStsNullPtrErr);
    WordBuffer c(Ints(20)), x(Ints(240)), y(Ints(5, 9));
    StateMemory<ZepPostFilterState> filter(64);
    StateMemory<ZepPostFilterAdapterState> adapter(176);
    zepsPostFilterInit_G728_16s(filter.get());
    zepsPostFilterAdapterStateInit_G728(adapter.get());
    Zep32s period = 9;
    for (int missing = 0; missing < 4; ++missing) {
        const auto p = [missing](int i, auto* pointer) { return i == missing ? nullptr : pointer; };
        EXPECT_EQ(zepsPostFilter_G728_16s(1, 1, 20, 1, p(0, c.data()), p(1, x.data() + 220),
                                          p(2, y.data()), p(3, filter.get())),
                  zepStsNullPtrErr);
        if (missing < 3) {
            EXPECT_EQ(zepsPitchPeriodExtraction_G728_16s(p(0, x.data() + 220), p(1, &period),
                                                         p(2, adapter.get())),
                      zepStsNullPtrErr);
        }
    }
    EXPECT_EQ(y.values(), Ints(5, 9));
    EXPECT_EQ(period, 9);
    EXPECT_TRUE(filter.isZero());
    EXPECT_TRUE(adapter.isZero());
}

ZEP_FOR_EACH_VARIANT(G728Postfilter);

}  // namespace
}  // namespace zep::test
