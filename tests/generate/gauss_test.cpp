// Normally distributed numbers, bit for bit against the generator written down step by step.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "support/failing_heap.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

// In 64-bit integers, one number at a time.
class Model {
public:
    explicit Model(std::uint32_t seed) : x_{seed, next(seed), next(next(seed))} {}

    float draw(float mean, float stdDev) {
        if (!pending_) {
            double s;
            do {
                step();
                s = u1_ * u1_ + u2_ * u2_;
            } while (s >= 1.0 || s == 0.0);
            factor_ = std::sqrt(-2.0 * std::log(s) / s);
        }
        pending_ = !pending_;
        const double u = pending_ ? u2_ : u1_;
        const auto r = static_cast<float>(u * static_cast<double>(stdDev) * factor_);
        return r + mean;
    }
    // What is left of a fresh generator that has drawn `len` numbers in one direct call.
    static std::uint32_t seedAfter(std::uint32_t seed, int len) {
        Model m(seed);
        const int pairs = len / 2 + 1;
        for (int n = 0; n < 2 * pairs; ++n) m.draw(0, 1);
        return m.x_[0];
    }

private:
    static std::uint32_t next(std::uint32_t x) {
        return static_cast<std::uint32_t>(x * std::uint64_t{69069} + 1013904243);
    }
    // a - b - borrow modulo 2^32 - 18, as the sign of the 32-bit difference tells.
    std::uint32_t subtract(std::uint32_t a, std::uint32_t b) {
        auto t = static_cast<std::uint32_t>(std::uint64_t{a} - b - borrow_);
        borrow_ = t >> 31;
        if (borrow_ != 0) t -= 18;
        return t;
    }
    static double scaled(std::uint32_t x) {
        const std::int64_t wide = x < 0x80000000u ? std::int64_t{x} : std::int64_t{x} - 0x100000000;
        return static_cast<double>(wide) * 4.656612873077e-10;
    }
    void step() {
        const std::uint32_t t = subtract(x_[1], x_[2]);
        const std::uint32_t v = subtract(x_[0], x_[1]);
        x_[2] = x_[0], x_[1] = t, x_[0] = v;
        lcg_ = next(lcg_);
        u1_ = scaled(t + lcg_);
        lcg_ = next(lcg_);
        u2_ = scaled(v + lcg_);
    }

    std::uint32_t x_[3];
    std::uint32_t borrow_ = 1, lcg_ = 1131199209;
    double u1_ = 0, u2_ = 0, factor_ = 0;
    bool pending_ = false;
};

const std::uint32_t kSeeds[] = {0, 1, 18, 12345, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};

class Gauss : public VariantTest {};

TEST_P(Gauss, StreamEqualsTheModelHoweverItIsCut) {
    for (const std::uint32_t seed : kSeeds) {
        ZepRandGaussState* state = nullptr;
        ASSERT_EQ(zepsRandGaussInitAlloc_32f(&state, 0.75f, 2.5f, seed), zepStsNoErr);
        Model model(seed);
        for (int round = 0; round < 60; ++round) {
            const int len = round < 20 ? round % 5 + 1 : 1 + static_cast<int>(rng()() % 300);
            GuardedBuffer<Zep32f> x(len, round % 2 == 0 ? Edge::Front : Edge::Back);
            ASSERT_EQ(zepsRandGauss_32f(x.data(), len, state), zepStsNoErr);
            for (int n = 0; n < len; ++n) ASSERT_EQ(x[n], model.draw(0.75f, 2.5f)) << n;
        }
        EXPECT_EQ(zepsRandGaussFree_32f(state), zepStsNoErr);
    }
}

TEST_P(Gauss, DirectStartsAfreshAndLeavesANewSeed) {
    for (const std::uint32_t first : kSeeds)
        for (const int len : {1, 2, 3, 4, 63, 64, 65, 127, 128, 129, 130, 257}) {
            Zep32u seed = first;
            GuardedBuffer<Zep32f> x(len, Edge::Back);
            ASSERT_EQ(zepsRandGauss_Direct_32f(x.data(), len, -1.0f, 0.5f, &seed), zepStsNoErr);
            Model model(first);
            for (int n = 0; n < len; ++n) ASSERT_EQ(x[n], model.draw(-1.0f, 0.5f)) << n;
            EXPECT_EQ(seed, Model::seedAfter(first, len)) << len;
        }
}

TEST_P(Gauss, StandsAtAnyAddress) {
    std::vector<unsigned char> bytes(101 * sizeof(Zep32f) + 8);
    for (int skew = 0; skew < 4; ++skew) {
        Zep32u seed = 5;
        auto* x = reinterpret_cast<Zep32f*>(bytes.data() + skew);
        ASSERT_EQ(zepsRandGauss_Direct_32f(x, 101, 0, 1, &seed), zepStsNoErr);
        Model model(5);
        for (int n = 0; n < 101; ++n) {
            Zep32f got;
            std::memcpy(&got, bytes.data() + skew + n * 4, 4);
            ASSERT_EQ(got, model.draw(0, 1)) << n;
        }
    }
}

TEST_P(Gauss, WithoutDeviationGivesTheMeanAndMovesOn) {
    ZepRandGaussState *still = nullptr, *moving = nullptr;
    ASSERT_EQ(zepsRandGaussInitAlloc_32f(&still, 3.0f, 0.0f, 9), zepStsNoErr);
    ASSERT_EQ(zepsRandGaussInitAlloc_32f(&moving, 3.0f, -1.0f, 9), zepStsNoErr);
    Zep32f x[5], y[5];
    ASSERT_EQ(zepsRandGauss_32f(x, 5, still), zepStsNoErr);
    for (const Zep32f v : x) EXPECT_EQ(v, 3.0f);
    ASSERT_EQ(zepsRandGauss_32f(y, 5, moving), zepStsNoErr);
    Model model(9);
    for (const Zep32f v : y) EXPECT_EQ(v, model.draw(3.0f, -1.0f));
    zepsRandGaussFree_32f(still);
    zepsRandGaussFree_32f(moving);
}

// So many that some lie next to where floats change, and an approximate logarithm would miss them: one
// in three million is within its margin.
TEST_P(Gauss, StaysEqualOverMillionsOfNumbers) {
    const int len = thin() ? 100'000 : 5'000'000;
    std::vector<Zep32f> x(static_cast<std::size_t>(len));
    Zep32u seed = 20261122;
    Model model(seed);
    ASSERT_EQ(zepsRandGauss_Direct_32f(x.data(), len, 0.0f, 1.7f, &seed), zepStsNoErr);
    for (const Zep32f v : x) ASSERT_EQ(v, model.draw(0.0f, 1.7f)) << &v - x.data();
}

// Deviations at which products overflow, vanish or are no numbers.
TEST_P(Gauss, TakesAnyDeviation) {
    constexpr Zep32f inf = std::numeric_limits<Zep32f>::infinity();
    for (const Zep32f stdDev :
         {1e-45f, 1e-38f, 3e38f, inf, -inf, std::numeric_limits<Zep32f>::quiet_NaN()}) {
        Zep32u seed = 77;
        Model model(seed);
        Zep32f x[100];
        ASSERT_EQ(zepsRandGauss_Direct_32f(x, 100, 0.0f, stdDev, &seed), zepStsNoErr);
        for (const Zep32f v : x) {
            const Zep32f expected = model.draw(0.0f, stdDev);
            ASSERT_TRUE(v == expected || (std::isnan(v) && std::isnan(expected))) << stdDev;
        }
    }
}

// A hundred thousand numbers: mean and deviation within five standard errors.
TEST_P(Gauss, HasTheMomentsAskedFor) {
    constexpr int kLen = 100000;
    std::vector<Zep32f> x(kLen);
    Zep32u seed = 2026;
    ASSERT_EQ(zepsRandGauss_Direct_32f(x.data(), kLen, 2.0f, 3.0f, &seed), zepStsNoErr);
    double sum = 0, squares = 0;
    for (const Zep32f v : x) sum += v;
    for (const Zep32f v : x) squares += (v - sum / kLen) * (v - sum / kLen);
    EXPECT_NEAR(sum / kLen, 2.0, 5 * 3.0 / std::sqrt(kLen));
    EXPECT_NEAR(std::sqrt(squares / kLen), 3.0, 5 * 3.0 / std::sqrt(2.0 * kLen));
}

TEST_P(Gauss, TestsItsArgumentsInOrder) {
    ZepRandGaussState* state = nullptr;
    EXPECT_EQ(zepsRandGaussInitAlloc_32f(nullptr, 0, 1, 1), zepStsNullPtrErr);
    ASSERT_EQ(zepsRandGaussInitAlloc_32f(&state, 0, 1, 1), zepStsNoErr);
    Zep32f x[2] = {7, 7};
    Zep32u seed = 3;
    EXPECT_EQ(zepsRandGauss_32f(nullptr, 0, state), zepStsNullPtrErr);
    EXPECT_EQ(zepsRandGauss_32f(x, 0, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsRandGauss_32f(x, 0, state), zepStsSizeErr);
    EXPECT_EQ(zepsRandGauss_Direct_32f(nullptr, 0, 0, 1, &seed), zepStsNullPtrErr);
    EXPECT_EQ(zepsRandGauss_Direct_32f(x, 0, 0, 1, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsRandGauss_Direct_32f(x, -1, 0, 1, &seed), zepStsSizeErr);
    EXPECT_EQ(seed, 3u);
    alignas(8) unsigned char noState[128] = {41};
    auto* other = reinterpret_cast<ZepRandGaussState*>(noState);
    EXPECT_EQ(zepsRandGauss_32f(x, 0, other), zepStsSizeErr);
    EXPECT_EQ(zepsRandGauss_32f(x, 2, other), zepStsContextMatchErr);
    EXPECT_EQ(zepsRandGaussFree_32f(nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsRandGaussFree_32f(other), zepStsContextMatchErr);
    EXPECT_EQ(x[0], 7);
    EXPECT_EQ(zepsRandGaussFree_32f(state), zepStsNoErr);
}

TEST_P(Gauss, ShortMemoryLeavesThePointerAlone) {
    ZepRandGaussState* state = nullptr;
    {
        const FailingHeap heap(0);
        EXPECT_EQ(zepsRandGaussInitAlloc_32f(&state, 0, 1, 1), zepStsMemAllocErr);
        EXPECT_EQ(state, nullptr);
    }
    const FailingHeap heap(1);
    ASSERT_EQ(zepsRandGaussInitAlloc_32f(&state, 0, 1, 1), zepStsNoErr);
    EXPECT_EQ(zepsRandGaussFree_32f(state), zepStsNoErr);
    EXPECT_EQ(heap.live(), 0);
}

ZEP_FOR_EACH_VARIANT(Gauss);

}  // namespace
}  // namespace zep::test
