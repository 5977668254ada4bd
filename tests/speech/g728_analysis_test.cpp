// Hybrid windows and the Levinson-Durbin recursion.
#include <cmath>

#include "speech/g728_support.h"

namespace zep::test {
namespace {

using reference::HybridWindowModel;
using reference::levinsonContinue;
using reference::levinsonFirst;
using reference::LevinsonModel;

class G728Analysis : public VariantTest {};

struct WindowMemory {
    StateMemory<ZepWinHybridState> memory;
    static int size(int M, int N, int L, int div) {
        Zep32u bytes = 0;
        EXPECT_EQ(zepsWinHybridGetStateSize_G728_16s(M, N, L, div, &bytes), zepStsNoErr);
        return static_cast<int>(bytes);
    }
    WindowMemory(WordBuffer& window, int M, int N, int L, int div, Zep16s decay)
        : memory(size(M, N, L, div)) {
        EXPECT_EQ(zepsWinHybridInit_G728_16s(window.data(), M, N, L, div, decay, memory.get()),
                  zepStsNoErr);
    }
};

// The windows of the recommendation are symmetric in nothing: any words do for the model, the
// official ones come from the codec's tables in the codec test.
void followModel(int M, int N, int L, int div, Zep16s decay) {
    const Ints window = randomWords(M + N + L);
    WordBuffer windowWords(window, 1);
    WindowMemory state(windowWords, M, N, L, div, decay);
    HybridWindowModel model{window, M, N, L, div, decay == 0x3000 ? 2 : 1};
    const auto update = div > 0 ? zepsWinHybridBlock_G728_16s : zepsWinHybrid_G728_16s;
    for (int call = 0; call < 12; ++call) {
        const Ints samples = randomWords(L);
        Ints exponents;
        for (int j = 0; div > 0 && j < L / div; ++j)
            exponents.push_back(call % 4 == 0 ? randomValue<Zep16s>() : randomValue<Zep8u>() % 20);
        Ints input = samples;
        input.insert(input.end(), exponents.begin(), exponents.end());
        WordBuffer source(input, call % 2), lags(M + 1, 1);
        bool usable = false;
        const Ints expected = model.update(samples, exponents, div > 0, usable);
        ASSERT_EQ(update(call, source.data(), lags.data(), state.memory.get()),
                  usable ? zepStsNoErr : zepStsUnderflow);
        ASSERT_EQ(lags.values(), expected)
            << "call " << call << " M " << M << " N " << N << " L " << L;
    }
}

TEST_P(G728Analysis, WindowsFollowTheModelOnAnyWords) {
    for (int trial = 0; trial < 6; ++trial) {
        followModel(10, 30, 20, 0, 0x2000);
        followModel(10, 20, 4, 0, 0x3000);
        followModel(50, 35, 20, 5, 0x3000);
    }
    followModel(1, 1, 1, 0, 0x3000);
    followModel(1, 1, 1, 1, 0x2000);
    followModel(7, 5, 9, -3, 0x3000);
    followModel(100, 120, 80, 10, 0x3000);
}

TEST_P(G728Analysis, SilenceUnderflows) {
    WordBuffer window(randomWords(60));
    WindowMemory state(window, 10, 30, 20, 0, 0x2000);
    WordBuffer silence(Ints(20)), lags(11);
    for (int call = 0; call < 50; ++call) {
        ASSERT_EQ(zepsWinHybrid_G728_16s(0, silence.data(), lags.data(), state.memory.get()),
                  zepStsUnderflow);
        ASSERT_EQ(lags.values(), Ints(11));
    }
}

TEST_P(G728Analysis, BlockFormWithoutBlocksIsThePlainForm) {
    WordBuffer window(randomWords(34)), samples(randomWords(4)), a(11), b(11);
    WindowMemory plain(window, 10, 20, 4, 0, 0x3000), block(window, 10, 20, 4, 0, 0x3000);
    EXPECT_EQ(zepsWinHybrid_G728_16s(0, samples.data(), a.data(), plain.memory.get()),
              zepsWinHybridBlock_G728_16s(0, samples.data(), b.data(), block.memory.get()));
    EXPECT_EQ(a.values(), b.values());
}

TEST_P(G728Analysis, WindowSizesAndChecks) {
    const auto size = zepsWinHybridGetStateSize_G728_16s;
    Zep32u bytes = 77;
    EXPECT_EQ(size(0, 0, 0, 0, nullptr), zepStsNullPtrErr);
    for (const int bad : {0, -1}) {
        EXPECT_EQ(size(bad, 1, 1, 1, &bytes), zepStsSizeErr);
        EXPECT_EQ(size(1, bad, 1, 1, &bytes), zepStsSizeErr);
        EXPECT_EQ(size(1, 1, bad, 1, &bytes), zepStsSizeErr);
    }
    EXPECT_EQ(size(32765, 2, 1, 0, &bytes), zepStsSizeErr);
    EXPECT_EQ(size(0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF, 0, &bytes), zepStsSizeErr);
    EXPECT_EQ(bytes, 77u);
    const struct {
        int M, N, L, div;
    } cases[] = {{50, 35, 20, 5}, {10, 30, 20, 0}, {10, 20, 4, -1}, {1, 1, 1, 2}, {50, 35, 20, 4}};
    for (const auto& c : cases) {
        ASSERT_EQ(size(c.M, c.N, c.L, c.div, &bytes), zepStsNoErr);
        const int blocks = c.div > 0 ? (c.M + c.N + c.L) / c.div : 0;
        EXPECT_EQ(bytes, static_cast<Zep32u>(2 * (c.N + c.L + 2 * c.M) + 36 + 2 * blocks + 16));
    }
    WordBuffer window(randomWords(34)), source(randomWords(4)), lags(11);
    WindowMemory state(window, 10, 20, 4, 0, 0x3000);
    ZepWinHybridState* const s = state.memory.get();
    EXPECT_EQ(zepsWinHybridInit_G728_16s(nullptr, 0, 20, 4, 0, 0x3000, s), zepStsNullPtrErr);
    EXPECT_EQ(zepsWinHybridInit_G728_16s(window.data(), 10, 20, 4, 0, 0x3000, nullptr),
              zepStsNullPtrErr);
    EXPECT_EQ(zepsWinHybridInit_G728_16s(window.data(), 10, 0, 4, 0, 0x3000, s), zepStsSizeErr);
    for (const auto update : {zepsWinHybrid_G728_16s, zepsWinHybridBlock_G728_16s}) {
        EXPECT_EQ(update(0, nullptr, lags.data(), s), zepStsNullPtrErr);
        EXPECT_EQ(update(0, source.data(), nullptr, s), zepStsNullPtrErr);
        EXPECT_EQ(update(0, source.data(), lags.data(), nullptr), zepStsNullPtrErr);
    }
}

TEST_P(G728Analysis, RecursionGivesTheReferenceCoefficients) {
    int first = 0, continued = 0;
    for (const auto& row : readTable("g728/levinson.csv")) {
        const Ints v = numbers(row);
        const int start = v[0], end = v[1];
        int from = 4;
        WordBuffer lags(take(v, from, end + 1)), a(end);
        const Ints before = take(v, from, start), after = take(v, from, end);
        auto scale = static_cast<Zep16s>(v[2]), residual = static_cast<Zep16s>(v[3]);
        if (start == 0) {
            ++first;
            Zep16s reflect = 0;
            ASSERT_EQ(zepsLevinsonDurbin_G728_16s_Sfs(lags.data(), end, a.data(), &reflect,
                                                      &residual, &scale),
                      zepStsNoErr);
            EXPECT_EQ(reflect, v[static_cast<std::size_t>(from)]);
        } else {
            ++continued;
            for (int i = 0; i < start; ++i)
                a.data()[i] = static_cast<Zep16s>(before[static_cast<std::size_t>(i)]);
            ASSERT_EQ(zepsLevinsonDurbin_G728_16s_ISfs(lags.data(), start, end, a.data(), &residual,
                                                       &scale),
                      zepStsNoErr);
        }
        EXPECT_EQ(a.values(), after);
        EXPECT_EQ(residual, v[static_cast<std::size_t>(from) + 1]);
        EXPECT_EQ(scale, v[static_cast<std::size_t>(from) + 2]);
    }
    EXPECT_GT(first, 10);
    EXPECT_GT(continued, 5);
}

ZepStatus statusOf(const LevinsonModel& m, int end) {
    switch (m.end) {
        case LevinsonModel::End::Good:
            return zepStsNoErr;
        case LevinsonModel::End::Failed:
            return m.failedAt < 12 ? zepStsLPCCalcErr : zepStsOverflow;
        default:
            return end < 10 ? zepStsLPCCalcErr : zepStsOverflow;
    }
}

// Lags of a decaying sum of a few sines, which leads far into a recursion; or of nothing at all.
Ints randomLags(int count) {
    if (randomValue<Zep8u>() % 4 == 0) {
        Ints lags = randomWords(count);
        lags[0] |= 1, lags[0] &= 32767;
        return lags;
    }
    const double w = (randomValue<float>() + 1) * 1.5,
                 decay = 1 - (randomValue<float>() + 1) * 0.02;
    const double noise = 1 + (randomValue<float>() + 1) * 0.01,
                 weight = (randomValue<float>() + 1) / 2;
    Ints lags;
    double d = 1;
    for (int i = 0; i < count; ++i, d *= decay)
        lags.push_back(static_cast<int>(
            32000 / noise * d * (weight * std::cos(w * i) + (1 - weight) * std::cos(2.3 * w * i))));
    lags[0] = 32000;
    return lags;
}

TEST_P(G728Analysis, RecursionFollowsTheModelOnAnyLags) {
    int ends[3] = {};
    for (int trial = 0; trial < 400; ++trial) {
        const int order = trial % 50 + 1;
        const Ints lags = randomLags(order + 1);
        const LevinsonModel model = levinsonFirst(lags, order);
        ++ends[static_cast<int>(model.end)];
        WordBuffer source(lags, 1), a(order, 1);
        Zep16s reflect = 0, residual = -5, scale = -5;
        ASSERT_EQ(zepsLevinsonDurbin_G728_16s_Sfs(source.data(), order, a.data(), &reflect,
                                                  &residual, &scale),
                  statusOf(model, order));
        Ints result = a.values();
        result.resize(model.a.size());
        ASSERT_EQ(result, model.a) << trial;
        EXPECT_EQ(reflect, model.reflect);
        EXPECT_EQ(residual, model.residual);
        EXPECT_EQ(scale, model.scale);
        if (model.end != LevinsonModel::End::Good || order < 2) continue;
        // The same in two parts.
        const int middle = order / 2;
        WordBuffer inParts(order);
        ASSERT_EQ(zepsLevinsonDurbin_G728_16s_ISfs(source.data(), 0, middle, inParts.data(),
                                                   &residual, &scale),
                  zepStsNoErr);
        ASSERT_EQ(zepsLevinsonDurbin_G728_16s_ISfs(source.data(), middle, order, inParts.data(),
                                                   &residual, &scale),
                  zepStsNoErr);
        EXPECT_EQ(inParts.values(), model.a);
    }
    EXPECT_GT(ends[0], 20);
    EXPECT_GT(ends[1], 20);
}

TEST_P(G728Analysis, ContinuationFollowsTheModelFromAnywhere) {
    for (int trial = 0; trial < 400; ++trial) {
        const int start = trial % 20 + 1, end = start + trial % 31;
        const Ints lags = randomLags(end + 1);
        LevinsonModel from;
        from.a = randomWords(start);
        from.residual = randomValue<Zep16s>();
        from.scale = randomValue<Zep8u>() % 16;
        const LevinsonModel model = levinsonContinue(lags, start, end, from);
        WordBuffer source(lags), a(end);
        std::copy(from.a.begin(), from.a.end(), a.data());
        auto residual = static_cast<Zep16s>(from.residual), scale = static_cast<Zep16s>(from.scale);
        ASSERT_EQ(zepsLevinsonDurbin_G728_16s_ISfs(source.data(), start, end, a.data(), &residual,
                                                   &scale),
                  statusOf(model, end));
        Ints result = a.values();
        result.resize(model.a.size());
        ASSERT_EQ(result, model.a) << trial;
        EXPECT_EQ(residual, model.residual);
        EXPECT_EQ(scale, model.scale);
    }
}

TEST_P(G728Analysis, FailureStatusTellsHowFarItGot) {
    // White so far, then a lag as large as the first: order m cannot be solved.
    for (int m = 2; m <= 20; ++m) {
        Ints lags(static_cast<std::size_t>(m) + 1);
        lags[0] = 16384;
        lags.back() = 16384;
        WordBuffer source(lags), a(m);
        Zep16s reflect, residual, scale;
        EXPECT_EQ(zepsLevinsonDurbin_G728_16s_Sfs(source.data(), m, a.data(), &reflect, &residual,
                                                  &scale),
                  m < 12 ? zepStsLPCCalcErr : zepStsOverflow);
    }
}

TEST_P(G728Analysis, RecursionChecks) {
    WordBuffer lags(Ints{1000, 10, 10}), a(Ints{7, 7});
    Zep16s k = 7, r = 7, s = 7;
    const auto first = zepsLevinsonDurbin_G728_16s_Sfs;
    EXPECT_EQ(first(nullptr, -1, a.data(), &k, &r, &s), zepStsNullPtrErr);
    EXPECT_EQ(first(lags.data(), -1, nullptr, &k, &r, &s), zepStsNullPtrErr);
    EXPECT_EQ(first(lags.data(), -1, a.data(), nullptr, &r, &s), zepStsNullPtrErr);
    EXPECT_EQ(first(lags.data(), -1, a.data(), &k, nullptr, &s), zepStsNullPtrErr);
    EXPECT_EQ(first(lags.data(), -1, a.data(), &k, &r, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(first(lags.data(), -1, a.data(), &k, &r, &s), zepStsRangeErr);
    EXPECT_EQ(first(lags.data(), 0, a.data(), &k, &r, &s), zepStsRangeErr);
    for (const int r0 : {0, -1, -32768}) {
        WordBuffer none(Ints{r0, 10, 10});
        EXPECT_EQ(first(none.data(), 2, a.data(), &k, &r, &s), zepStsRangeErr);
    }
    const auto next = zepsLevinsonDurbin_G728_16s_ISfs;
    EXPECT_EQ(next(nullptr, 2, 1, a.data(), &r, &s), zepStsNullPtrErr);
    EXPECT_EQ(next(lags.data(), 2, 1, nullptr, &r, &s), zepStsNullPtrErr);
    EXPECT_EQ(next(lags.data(), 2, 1, a.data(), nullptr, &s), zepStsNullPtrErr);
    EXPECT_EQ(next(lags.data(), 2, 1, a.data(), &r, nullptr), zepStsNullPtrErr);
    Zep16s badScale = 16;
    EXPECT_EQ(next(lags.data(), 2, 1, a.data(), &r, &badScale), zepStsRangeErr);
    EXPECT_EQ(next(lags.data(), -1, 1, a.data(), &r, &badScale), zepStsRangeErr);
    EXPECT_EQ(next(lags.data(), 1, 2, a.data(), &r, &badScale), zepStsScaleRangeErr);
    badScale = -1;
    EXPECT_EQ(next(lags.data(), 1, 2, a.data(), &r, &badScale), zepStsScaleRangeErr);
    EXPECT_EQ(a.values(), (Ints{7, 7}));
    EXPECT_EQ(k, 7);
    EXPECT_EQ(r, 7);
    EXPECT_EQ(s, 7);
}

ZEP_FOR_EACH_VARIANT(G728Analysis);

}  // namespace
}  // namespace zep::test
