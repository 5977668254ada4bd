// Energies of the shape codebook, and the search.
#include "speech/g728_support.h"

namespace zep::test {
namespace {

using reference::energiesModel;
using reference::searchModel;

class G728Search : public VariantTest {};

// The codebook, as the example prints it for its decoder.
const std::vector<Ints>& shapes() {
    static const std::vector<Ints> codebook = {
#include "g728_shapes.inc"
    };
    return codebook;
}

Ints energiesOf(const Ints& impulse) {
    WordBuffer h(impulse, 1), energies(128, 1);
    EXPECT_EQ(zepsImpulseResponseEnergy_G728_16s(h.data(), energies.data()), zepStsNoErr);
    Ints e = energies.values();
    for (int& v : e) v &= 65535;
    return e;
}

reference::SearchModel searched(const Ints& target, const Ints& energies, int rate) {
    WordBuffer corr(target, 1), energy(energies, 1);
    Zep32s shape = -1, gain = -1;
    Zep16s code = -1;
    EXPECT_EQ(zepsCodebookSearch_G728_16s(corr.data(), energy.data(), &shape, &gain, &code, rate),
              zepStsNoErr);
    return {shape, gain, code};
}

void expectAsModel(const Ints& target, const Ints& energies, int rate) {
    const auto result = searched(target, energies, rate),
               expected = searchModel(shapes(), target, energies, rate);
    ASSERT_EQ(result.shape, expected.shape) << rate;
    ASSERT_EQ(result.gain, expected.gain) << rate;
    ASSERT_EQ(result.code, expected.code) << rate;
}

TEST_P(G728Search, EnergiesAreThoseOfTheReference) {
    int rows = 0;
    for (const auto& row : readTable("g728/energy.csv")) {
        int from = 0;
        const Ints v = numbers(row), impulse = take(v, from, 5);
        EXPECT_EQ(energiesOf(impulse), take(v, from, 128));
        ++rows;
    }
    EXPECT_EQ(rows, 10);
}

TEST_P(G728Search, EnergiesFollowTheModelOnAnyImpulseResponse) {
    for (int trial = 0; trial < 100; ++trial) {
        const Ints impulse = randomWords(5);
        ASSERT_EQ(energiesOf(impulse), energiesModel(shapes(), impulse));
    }
    // Every output at a limit.
    for (const Ints& h :
         {Ints(5, -32768), Ints(5, 32767), Ints{32767, -32768, 32767, -32768, 32767}})
        EXPECT_EQ(energiesOf(h), energiesModel(shapes(), h));
}

TEST_P(G728Search, FindsTheCodesOfTheReference) {
    int rows = 0;
    for (const auto& row : readTable("g728/search.csv")) {
        int from = 0;
        const Ints v = numbers(row), target = take(v, from, 5), energies = take(v, from, 128);
        const auto result = searched(target, energies, 17);
        EXPECT_EQ((Ints{result.shape, result.gain, result.code}), take(v, from, 3));
        ++rows;
    }
    EXPECT_EQ(rows, 40);
}

TEST_P(G728Search, FollowsTheModelAtEveryRate) {
    for (int trial = 0; trial < 200; ++trial) {
        const Ints target = randomWords(5), impulse = randomWords(5);
        Ints energies = trial % 2 == 0 ? energiesModel(shapes(), impulse) : randomWords(128);
        for (int& e : energies) e &= 65535;
        for (const int rate : {17, 14, 10}) expectAsModel(target, energies, rate);
    }
}

TEST_P(G728Search, TheLowerOfEqualShapesWins) {
    // With no energy and no correlation every distance is 0, and the level the highest.
    for (const int rate : {17, 14, 10}) {
        const auto result = searched(Ints(5), Ints(128), rate);
        EXPECT_EQ(result.shape, 0);
        EXPECT_EQ(result.gain, rate == 17 ? 7 : 5);
        // Two shapes that beat all others by the same distance, in every pair of places.
        const int count = rate == 17 ? 128 : rate == 14 ? 64 : 16;
        for (int j = 0; j < count; ++j) {
            Ints energies(128, 5000);
            energies[static_cast<std::size_t>(j)] = 100;
            energies[static_cast<std::size_t>((7 * j + 3) % count)] = 100;
            expectAsModel(Ints(5), energies, rate);
            EXPECT_EQ(searched(Ints(5), energies, rate).gain, 4);
        }
    }
}

TEST_P(G728Search, ReachesALevelExactlyAtItsThreshold) {
    // Targets along one axis give correlations that can be met by an energy.
    int met = 0;
    for (int scale = 1; scale < 400; ++scale) {
        const Ints target{0, scale, 0, 0, 0};
        Ints energies(128, 60000);
        for (int j = 0; j < 128; ++j) {
            const int q = std::abs(scale * shapes()[static_cast<std::size_t>(j)][1]);
            for (const int t : {5808, 10164, 17787, 7126, 8253})
                if (q > 0 && q % t == 0) energies[static_cast<std::size_t>(j)] = q / t, ++met;
        }
        for (const int rate : {17, 14, 10}) expectAsModel(target, energies, rate);
    }
    EXPECT_GT(met, 0);
}

TEST_P(G728Search, RefusesNullPointersThenRates) {
    WordBuffer corr(Ints(5)), energy(Ints(128));
    Zep32s shape = 55, gain = 55;
    Zep16s code = 55;
    for (int missing = 0; missing < 5; ++missing) {
        const auto p = [missing](int i, auto* pointer) { return i == missing ? nullptr : pointer; };
        EXPECT_EQ(zepsCodebookSearch_G728_16s(p(0, corr.data()), p(1, energy.data()), p(2, &shape),
                                              p(3, &gain), p(4, &code), 16),
                  zepStsNullPtrErr);
    }
    for (const int rate : {16, 0, -1, 22, 23, 24, 9, 11})
        EXPECT_EQ(
            zepsCodebookSearch_G728_16s(corr.data(), energy.data(), &shape, &gain, &code, rate),
            zepStsRangeErr);
    EXPECT_EQ(shape, 55);
    EXPECT_EQ(gain, 55);
    EXPECT_EQ(code, 55);
    EXPECT_EQ(zepsImpulseResponseEnergy_G728_16s(nullptr, energy.data()), zepStsNullPtrErr);
    EXPECT_EQ(zepsImpulseResponseEnergy_G728_16s(corr.data(), nullptr), zepStsNullPtrErr);
}

ZEP_FOR_EACH_VARIANT(G728Search);

}  // namespace
}  // namespace zep::test
