// The filters of G.728 on vectors of 5 samples.
#include "speech/g728_support.h"

namespace zep::test {
namespace {

using reference::PastModel;
using reference::VectorModel;

class G728Filters : public VariantTest {};

Ints weightsModel(const Ints& x, const Ints& bc, Ints& inputs, Ints& outputs) {
    Ints y;
    for (const int v : x) y.push_back(reference::poleZeroModel(bc, v, inputs, outputs));
    return y;
}

TEST_P(G728Filters, WeightingFollowsTheModel) {
    for (int trial = 0; trial < 20; ++trial) {
        StateMemory<ZepIIR16sState> state(64);
        ASSERT_EQ(zepsIIR16sInit_G728_16s(state.get()), zepStsNoErr);
        const Ints bc = randomWords(20);
        Ints inputs(10), outputs(10);
        for (int call = 0; call < 8; ++call) {
            const Ints x = randomWords(5);
            WordBuffer coefficients(bc, 1), source(x, call & 1), result(5, 1);
            Zep16s* const dst = call % 3 == 0 ? source.data() : result.data();
            ASSERT_EQ(zepsIIR16s_G728_16s(coefficients.data(), source.data(), dst, state.get()),
                      zepStsNoErr);
            ASSERT_EQ((call % 3 == 0 ? source : result).values(),
                      weightsModel(x, bc, inputs, outputs));
        }
    }
}

TEST_P(G728Filters, InverseFilterFollowsTheModel) {
    for (int trial = 0; trial < 20; ++trial) {
        Ints bc = randomWords(10), inputs(10);
        WordBuffer coefficients(bc, 1), memory(inputs, 1);
        bc.resize(20);
        for (int call = 0; call < 8; ++call) {
            const Ints x = randomWords(5);
            WordBuffer source(x, call & 1), result(5, 1);
            Ints outputs(10);
            ASSERT_EQ(zepsLPCInverseFilter_G728_16s(coefficients.data(), source.data(),
                                                    result.data(), memory.data()),
                      zepStsNoErr);
            ASSERT_EQ(result.values(), weightsModel(x, bc, inputs, outputs));
            ASSERT_EQ(memory.values(), inputs);
        }
    }
}

TEST_P(G728Filters, RingingGivesTheReferenceVectors) {
    int rows = 0;
    for (const auto& row : readTable("g728/ringing.csv")) {
        const Ints v = numbers(row);
        int from = 0;
        const Ints a = take(v, from, 50);
        PastModel past;
        for (int j = 0; j < 10; ++j) {
            const int exponent = take(v, from, 1)[0];
            past.push_back({exponent, take(v, from, 5)});
        }
        const int exponent = take(v, from, 1)[0];
        const Ints expected = take(v, from, 5);
        // The model, which the library is compared with below, first.
        const VectorModel model = ringingModel(a, past);
        ASSERT_EQ(model.exponent, exponent);
        ASSERT_EQ(model.x, expected);
        ++rows;
    }
    EXPECT_EQ(rows, 60);
}

Ints stableCoefficients() {
    Ints a = randomWords(50);
    if (randomValue<Zep8u>() % 2 == 0)
        for (int& v : a) v >>= 4;
    return a;
}

TEST_P(G728Filters, DecoderSynthesisFollowsTheModel) {
    for (int trial = 0; trial < 20; ++trial) {
        StateMemory<ZepSynthesisFilterState> state(144);
        ASSERT_EQ(zepsSynthesisFilterInit_G728_16s(state.get()), zepStsNoErr);
        PastModel past(10);
        const Ints a = stableCoefficients();
        WordBuffer coefficients(a, 1);
        for (int call = 0; call < 15; ++call) {
            const VectorModel e{randomValue<Zep8u>() % (call % 5 == 0 ? 256 : 20) - 4,
                                randomWords(5)};
            const VectorModel expected = speechModel(ringingModel(a, past), restModel(a, e));
            past.push_front(expected);
            past.pop_back();
            WordBuffer source(e.x, call & 1), speech(5, 1), exponent(1, 1);
            ASSERT_EQ(
                zepsSyntesisFilterZeroInput_G728_16s(coefficients.data(), source.data(), e.exponent,
                                                     speech.data(), exponent.data(), state.get()),
                zepStsNoErr);
            ASSERT_EQ(speech.values(), expected.x) << trial << ' ' << call;
            ASSERT_EQ(exponent.values()[0], expected.exponent);
        }
    }
}

TEST_P(G728Filters, CascadeFollowsTheModel) {
    for (int trial = 0; trial < 20; ++trial) {
        StateMemory<ZepCombinedFilterState> state(208);
        ASSERT_EQ(zepsCombinedFilterInit_G728_16s(state.get()), zepStsNoErr);
        EXPECT_TRUE(state.isZero());
        PastModel past(10);
        Ints weighted(10);
        const Ints a = stableCoefficients(), bc = randomWords(20);
        WordBuffer coefficients(a, 1), weights(bc, 1);
        for (int call = 0; call < 15; ++call) {
            const VectorModel z = ringingModel(a, past);
            Ints inputs, x, zeros(10), rest(10);
            for (int i = 0; i < 10; ++i) {
                const VectorModel& v = past[static_cast<std::size_t>(i / 5)];
                inputs.push_back(
                    reference::inQ2(v.x[static_cast<std::size_t>(4 - i % 5)], v.exponent));
            }
            for (const int v : z.x) x.push_back(reference::inQ2(v, z.exponent));
            past.push_front(z);
            past.pop_back();
            WordBuffer ringing(5, 1);
            ASSERT_EQ(zepsCombinedFilterZeroInput_G728_16s(coefficients.data(), weights.data(),
                                                           ringing.data(), state.get()),
                      zepStsNoErr);
            ASSERT_EQ(ringing.values(), weightsModel(x, bc, inputs, weighted))
                << trial << ' ' << call;
            ASSERT_EQ(state.words(5), z.x);
            if (call % 4 == 3) continue;  // it rings on by itself

            const VectorModel e{randomValue<Zep8u>() % 20 - 4, randomWords(5)};
            const VectorModel u = restModel(a, e);
            const Ints v = weightsModel(u.x, bc, zeros, rest);
            for (std::size_t n = 0; n < 5; ++n)
                weighted[4 - n] = static_cast<int>(
                    reference::limited(weighted[4 - n] + reference::inQ2(v[n], u.exponent), 16));
            past[0] = speechModel(z, u);
            WordBuffer source(e.x, 1), first(Ints{e.exponent - 40}, 1), second(Ints{33}, 1);
            ASSERT_EQ(zepsCombinedFilterZeroState_G728_16s(coefficients.data(), weights.data(),
                                                           source.data(), 7, first.data(),
                                                           second.data(), state.get()),
                      zepStsNoErr);
            ASSERT_EQ(state.words(5), past[0].x) << trial << ' ' << call;
        }
    }
}

TEST_P(G728Filters, ExcitationsOfAnyExponentAreTaken) {
    StateMemory<ZepCombinedFilterState> cascade(208);
    StateMemory<ZepSynthesisFilterState> synthesis(144);
    zepsCombinedFilterInit_G728_16s(cascade.get());
    zepsSynthesisFilterInit_G728_16s(synthesis.get());
    for (int trial = 0; trial < 300; ++trial) {
        WordBuffer a(randomWords(50)), bc(randomWords(20)), e(randomWords(5)), one(randomWords(1)),
            two(randomWords(1)), out(5), exponent(1);
        const auto scale = trial % 2 == 0 ? randomValue<Zep32s>() : randomValue<Zep16s>();
        EXPECT_EQ(
            zepsCombinedFilterZeroInput_G728_16s(a.data(), bc.data(), out.data(), cascade.get()),
            zepStsNoErr);
        EXPECT_EQ(zepsCombinedFilterZeroState_G728_16s(a.data(), bc.data(), e.data(), scale,
                                                       one.data(), two.data(), cascade.get()),
                  zepStsNoErr);
        EXPECT_EQ(zepsSyntesisFilterZeroInput_G728_16s(a.data(), e.data(), scale, out.data(),
                                                       exponent.data(), synthesis.get()),
                  zepStsNoErr);
    }
}

TEST_P(G728Filters, RingingOfPeakSizesIsNormalisedAsStated) {
    // A first tap of -1 repeats the newest sample.
    Ints a(50);
    a[0] = -16384;
    WordBuffer coefficients(a), weights(Ints(20)), ringing(5), zero(Ints{0});
    StateMemory<ZepCombinedFilterState> state(208);
    for (const int peak : {8192, 16383, -8192, -8194, 4096, 1, -1}) {
        zepsCombinedFilterInit_G728_16s(state.get());
        WordBuffer impulse(Ints{0, 0, 0, 0, peak});
        ASSERT_EQ(zepsCombinedFilterZeroInput_G728_16s(coefficients.data(), weights.data(),
                                                       ringing.data(), state.get()),
                  zepStsNoErr);
        EXPECT_EQ(state.words(5), Ints(5));
        zepsCombinedFilterZeroState_G728_16s(coefficients.data(), weights.data(), impulse.data(), 2,
                                             zero.data(), zero.data(), state.get());
        zepsCombinedFilterZeroInput_G728_16s(coefficients.data(), weights.data(), ringing.data(),
                                             state.get());
        const Ints z = state.words(5);
        EXPECT_EQ(z, Ints(5, z[0]));
        EXPECT_GE(std::abs(z[0]), 8192) << peak;
        EXPECT_LE(std::abs(z[0]), 16383) << peak;
        const int q2 = std::clamp(peak, -16380, 16380);
        EXPECT_EQ(ringing.values(), Ints(5, q2));
    }
}

TEST_P(G728Filters, SizesAndInits) {
    Zep32u size = 0;
    EXPECT_EQ(zepsCombinedFilterGetStateSize_G728_16s(&size), zepStsNoErr);
    EXPECT_EQ(size, 208u);
    EXPECT_EQ(zepsIIR16sGetStateSize_G728_16s(&size), zepStsNoErr);
    EXPECT_EQ(size, 64u);
    EXPECT_EQ(zepsSynthesisFilterGetStateSize_G728_16s(&size), zepStsNoErr);
    EXPECT_EQ(size, 144u);
    EXPECT_EQ(zepsCombinedFilterGetStateSize_G728_16s(nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsIIR16sGetStateSize_G728_16s(nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsSynthesisFilterGetStateSize_G728_16s(nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsCombinedFilterInit_G728_16s(nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsIIR16sInit_G728_16s(nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsSynthesisFilterInit_G728_16s(nullptr), zepStsNullPtrErr);
    StateMemory<ZepIIR16sState> weighting(64);
    EXPECT_EQ(zepsIIR16sInit_G728_16s(weighting.get()), zepStsNoErr);
    EXPECT_TRUE(weighting.isZero());
    StateMemory<ZepSynthesisFilterState> synthesis(144);
    EXPECT_EQ(zepsSynthesisFilterInit_G728_16s(synthesis.get()), zepStsNoErr);
    Ints words(72);
    std::fill(words.begin() + 50, words.begin() + 61, 16);
    EXPECT_EQ(synthesis.words(72), words);
}

TEST_P(G728Filters, NullPointersAreRefusedAndNothingIsWritten) {
    WordBuffer a(Ints(50)), x(Ints{1, 2, 3, 4, 5}), y(Ints{9, 9, 9, 9, 9}), memory(Ints(10));
    StateMemory<ZepCombinedFilterState> cascade(208);
    StateMemory<ZepSynthesisFilterState> synthesis(144);
    StateMemory<ZepIIR16sState> weighting(64);
    zepsCombinedFilterInit_G728_16s(cascade.get());
    zepsSynthesisFilterInit_G728_16s(synthesis.get());
    zepsIIR16sInit_G728_16s(weighting.get());
    Zep16s *const c = a.data(), *const s = x.data(), *const d = y.data(), *const m = memory.data();
    for (int missing = 0; missing < 6; ++missing) {
        const auto p = [missing](int i, auto* pointer) { return i == missing ? nullptr : pointer; };
        EXPECT_EQ(zepsCombinedFilterZeroState_G728_16s(p(0, c), p(1, c), p(2, s), 0, p(3, s),
                                                       p(4, s), p(5, cascade.get())),
                  zepStsNullPtrErr);
        if (missing < 5) {
            EXPECT_EQ(zepsSyntesisFilterZeroInput_G728_16s(p(0, c), p(1, s), 0, p(2, d), p(3, d),
                                                           p(4, synthesis.get())),
                      zepStsNullPtrErr);
        }
        if (missing < 4) {
            EXPECT_EQ(zepsCombinedFilterZeroInput_G728_16s(p(0, c), p(1, c), p(2, d),
                                                           p(3, cascade.get())),
                      zepStsNullPtrErr);
            EXPECT_EQ(zepsIIR16s_G728_16s(p(0, c), p(1, s), p(2, d), p(3, weighting.get())),
                      zepStsNullPtrErr);
            EXPECT_EQ(zepsLPCInverseFilter_G728_16s(p(0, c), p(1, s), p(2, d), p(3, m)),
                      zepStsNullPtrErr);
        }
    }
    EXPECT_EQ(y.values(), Ints(5, 9));
    EXPECT_TRUE(cascade.isZero());
    EXPECT_TRUE(weighting.isZero());
}

ZEP_FOR_EACH_VARIANT(G728Filters);

}  // namespace
}  // namespace zep::test
