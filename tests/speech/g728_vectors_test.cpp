// Blocks of G.728 on data of the official sequences: hybrid windows, pitch and postfilter.
#include <cmath>

#include "speech/g728_support.h"
#include "tables.h"

namespace zep::test {
namespace {

class G728Vectors : public VariantTest {};

struct Window {
    const char* table;
    const Zep16s* words;
    int M, N, L, div;
    Zep16s decay;
};
constexpr Window kWindows[] = {
    {"g728/window_synthesis.csv", g728SynthesisWindow, 50, 35, 20, 5, 0x3000},
    {"g728/window_weighting.csv", g728WeightingWindow, 10, 30, 20, 0, 0x2000},
    {"g728/window_loggain.csv", g728LogGainWindow, 10, 20, 4, 0, 0x3000},
};

TEST_P(G728Vectors, WindowsGiveTheReferenceLags) {
    for (const Window& w : kWindows) {
        Zep32u bytes = 0;
        ASSERT_EQ(zepsWinHybridGetStateSize_G728_16s(w.M, w.N, w.L, w.div, &bytes), zepStsNoErr);
        StateMemory<ZepWinHybridState> state(static_cast<int>(bytes));
        ASSERT_EQ(zepsWinHybridInit_G728_16s(w.words, w.M, w.N, w.L, w.div, w.decay, state.get()),
                  zepStsNoErr);
        const auto update = w.div > 0 ? zepsWinHybridBlock_G728_16s : zepsWinHybrid_G728_16s;
        int rows = 0, underflows = 0;
        for (const auto& row : readTable(w.table)) {
            const Ints v = numbers(row);
            int from = 0;
            WordBuffer source(take(v, from, w.L + (w.div > 0 ? w.L / w.div : 0)), 1), lags(w.M + 1);
            const Ints expected = take(v, from, w.M + 1);
            const bool usable = take(v, from, 1)[0] != 0;
            ASSERT_EQ(static_cast<std::size_t>(from), v.size());
            ASSERT_EQ(update(0, source.data(), lags.data(), state.get()),
                      usable ? zepStsNoErr : zepStsUnderflow)
                << w.table << ' ' << rows;
            ASSERT_EQ(lags.values(), expected) << w.table << ' ' << rows;
            ++rows;
            underflows += usable ? 0 : 1;
        }
        EXPECT_EQ(rows, 30);
        EXPECT_GT(underflows, 0) << w.table;
    }
}

// The library goes by the past period more often than the recommendation does; on a steady voice both
// find the same.
TEST_P(G728Vectors, PitchFollowsASteadyVoice) {
    StateMemory<ZepPostFilterAdapterState> state(176);
    ASSERT_EQ(zepsPostFilterAdapterStateInit_G728(state.get()), zepStsNoErr);
    Ints residual(240);
    int known = 0, equal = 0;
    for (const auto& row : readTable("g728/pitch.csv")) {
        const Ints v = numbers(row);
        residual.erase(residual.begin(), residual.begin() + 20);
        residual.insert(residual.end(), v.begin(), v.begin() + 20);
        WordBuffer source(residual, 1);
        Zep32s period = 0;
        ASSERT_EQ(zepsPitchPeriodExtraction_G728_16s(source.data() + 220, &period, state.get()),
                  zepStsNoErr);
        if (v[20] == 0) continue;
        ++known;
        equal += period == v[20] ? 1 : 0;
    }
    EXPECT_EQ(known, 40);
    EXPECT_EQ(equal, 40);
}

// The recommendation takes the past samples in Q0 and rounds the gain of the comb into its tap, so
// that the results differ in their last bits. The model, which the library is compared with in
// g728_postfilter_test.cpp, can begin anywhere.
TEST(G728PostfilterVectors, EachVectorIsWithinTheRoundingOfTheReference) {
    int rows = 0, largest = 0;
    for (const auto& row : readTable("g728/postfilter.csv")) {
        const Ints v = numbers(row);
        int from = 0;
        const int gl = take(v, from, 1)[0], glb = take(v, from, 1)[0], tilt = take(v, from, 1)[0];
        const Ints coefficients = take(v, from, 20);
        reference::PostfilterModel model;
        model.gain = take(v, from, 1)[0];
        model.inputs = take(v, from, 10);
        model.outputs = take(v, from, 10);
        const Ints now = take(v, from, 5), past = take(v, from, 5), expected = take(v, from, 5);
        Ints x;
        for (const int p : past) x.push_back(4 * p);
        x.insert(x.end(), now.begin(), now.end());
        // glb = gl * b in Q16
        const int b = static_cast<int>(std::lround(4096.0 * glb / gl));
        const Ints y = model.filter(gl, b, 5, tilt, coefficients, x);
        for (std::size_t n = 0; n < 5; ++n)
            largest = std::max(largest, std::abs(y[n] - expected[n]));
        ++rows;
    }
    EXPECT_EQ(rows, 40);
    EXPECT_LE(largest, 2);  // in Q2: half a step of the samples
}

ZEP_FOR_EACH_VARIANT(G728Vectors);

}  // namespace
}  // namespace zep::test
