// Every vector operation of every variant and width against scalar code.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

#include "simd/lane_kernels.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/variant.h"

namespace zep::test {
namespace {

constexpr int kMaxLanes = 16;

template <class T>
using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;

template <class T>
Bits<T> bitsOf(T x) {
    return std::bit_cast<Bits<T>>(x);
}

template <class T>
struct alignas(64) Lanes {
    T v[kMaxLanes] = {};
};

// Half of the values are special, so that pairs of them meet.
template <class T>
T testValue() {
    using L = std::numeric_limits<T>;
    static const T kSpecial[] = {T{0},           -T{0},           T{1},     -T{1},
                                 L::infinity(),  L::min(),        L::max(), -L::max(),
                                 -L::infinity(), L::denorm_min(), T{2},     L::epsilon(),
                                 L::quiet_NaN(), -L::quiet_NaN()};
    if (rng()() % 2 == 0) return kSpecial[rng()() % std::size(kSpecial)];
    return randomValue<T>() * T{8};
}

template <class T>
Lanes<T> testLanes() {
    Lanes<T> lanes;
    for (T& x : lanes.v) x = testValue<T>();
    return lanes;
}

template <class T>
bool same(T x, T y) {
    return bitsOf(x) == bitsOf(y) || (std::isnan(x) && std::isnan(y));
}

template <class T>
T reference(LaneOp op, const T* a, const T* b, const T* c, int n, int lanes) {
    using B = Bits<T>;
    const auto bitwise = [&](B x) { return std::bit_cast<T>(x); };
    const B bitsA = bitsOf(a[n]), bitsB = bitsOf(b[n]);
    const int even = n & ~1, odd = n | 1;
    switch (op) {
        case LaneOp::Add:
            return a[n] + b[n];
        case LaneOp::Sub:
            return a[n] - b[n];
        case LaneOp::Mul:
            return a[n] * b[n];
        case LaneOp::Div:
            return a[n] / b[n];
        case LaneOp::AddScalar:
            return a[n] + b[0];
        case LaneOp::SubScalar:
            return a[n] - b[0];
        case LaneOp::MulScalar:
            return a[n] * b[0];
        case LaneOp::And:
            return bitwise(bitsA & bitsB);
        case LaneOp::Or:
            return bitwise(bitsA | bitsB);
        case LaneOp::Xor:
            return bitwise(bitsA ^ bitsB);
        case LaneOp::Negate:
            return -a[n];
        case LaneOp::ClearBits:
            return bitwise(bitsA & ~bitsB);
        case LaneOp::Abs:
            return std::fabs(a[n]);
        case LaneOp::Sqrt:
            return std::sqrt(a[n]);
        case LaneOp::Min:
            return a[n] < b[n] ? a[n] : b[n];
        case LaneOp::Max:
            return a[n] > b[n] ? a[n] : b[n];
        case LaneOp::SelectLess:
            return a[n] < b[n] ? c[n] : a[n];
        case LaneOp::KeepLess:
            return a[n] < b[n] ? c[n] : T{0};
        case LaneOp::DupEven:
            return a[even];
        case LaneOp::DupOdd:
            return a[odd];
        case LaneOp::SwapPairs:
            return a[n ^ 1];
        case LaneOp::SubAdd:
            return n == even ? a[n] - b[n] : a[n] + b[n];
        case LaneOp::ComplexMul: {
            const T re = a[even] * b[even], im = a[odd] * b[odd];
            return n == even ? re - im : a[odd] * b[even] + a[even] * b[odd];
        }
        case LaneOp::LanesFromFirst:
            return n + 1 < lanes ? a[n + 1] : b[n + 1 - lanes];
        case LaneOp::LanesFromMiddle:
            return n < lanes / 2 ? a[n + lanes / 2] : b[n - lanes / 2];
        case LaneOp::BroadcastPair:
            return b[n & 1];
        case LaneOp::AlignedCopy:
        case LaneOp::StreamCopy:
            return a[n];
        default:
            return T{0};
    }
}

bool referenceCompare(LaneCompare op, auto a, auto b, auto c) {
    switch (op) {
        case LaneCompare::Equal:
            return a == b;
        case LaneCompare::NotEqual:
            return a != b;
        case LaneCompare::Less:
            return a < b;
        case LaneCompare::LessEqual:
            return a <= b;
        case LaneCompare::Greater:
            return a > b;
        case LaneCompare::GreaterEqual:
            return a >= b;
        case LaneCompare::IsNan:
            return std::isnan(a);
        case LaneCompare::EitherNan:
            return std::isnan(a) || std::isnan(b);
        case LaneCompare::Both:
            return a < b && b <= c;
        case LaneCompare::Either:
            return a < b || b <= c;
        default:
            return !(a < b);
    }
}

const VariantLanes& lanesOf(const Variant& v) {
    static constexpr const VariantLanes* kLanes[] = {nullptr,
#define ZEP_LANES(arg, slot, column, ...) &code::column::variantLanes,
                                                     ZEP_COLUMNS(ZEP_LANES, )
#undef ZEP_LANES
    };
    return *kLanes[v.slot];
}

class SimdLanes : public VariantTest {
protected:
    template <class F>
    void forEachWidth(F f) {
        const VariantLanes& lanes = lanesOf(GetParam());
        f(lanes.floats.narrow, float{});
        f(lanes.floats.native, float{});
        f(lanes.doubles.narrow, double{});
        f(lanes.doubles.native, double{});
    }
};

TEST_P(SimdLanes, OperationsGiveScalarResults) {
    forEachWidth([](const auto& kernels, auto element) {
        using T = decltype(element);
        for (int round = 0; round < 300; ++round)
            for (int i = 0; i < static_cast<int>(LaneOp::Count); ++i) {
                const auto op = static_cast<LaneOp>(i);
                const Lanes<T> a = testLanes<T>(), b = testLanes<T>(), c = testLanes<T>();
                Lanes<T> out;
                kernels.apply(op, a.v, b.v, c.v, out.v);
                for (int n = 0; n < kernels.lanes; ++n) {
                    const T expected = reference(op, a.v, b.v, c.v, n, kernels.lanes);
                    ASSERT_TRUE(same(out.v[n], expected))
                        << "op " << i << " lane " << n << " of " << kernels.lanes << ": " << a.v[n]
                        << ", " << b.v[n] << " gave " << out.v[n] << ", not " << expected;
                }
            }
    });
}

TEST_P(SimdLanes, ComparisonsGiveOneBitForEachLane) {
    forEachWidth([](const auto& kernels, auto element) {
        using T = decltype(element);
        for (int round = 0; round < 300; ++round)
            for (int i = 0; i < static_cast<int>(LaneCompare::Count); ++i) {
                const auto op = static_cast<LaneCompare>(i);
                const Lanes<T> a = testLanes<T>(), b = testLanes<T>(), c = testLanes<T>();
                unsigned expected = 0;
                for (int n = 0; n < kernels.lanes; ++n)
                    expected |= unsigned{referenceCompare(op, a.v[n], b.v[n], c.v[n])} << n;
                ASSERT_EQ(kernels.compare(op, a.v, b.v, c.v), expected) << "comparison " << i;
            }
    });
}

TEST_P(SimdLanes, AnyAndAllLookAtEveryLane) {
    forEachWidth([](const auto& kernels, auto element) {
        using T = decltype(element);
        const Lanes<T> zeros;
        EXPECT_TRUE(kernels.allEqual(zeros.v, zeros.v));
        for (int n = 0; n < kernels.lanes; ++n) {
            Lanes<T> ones;
            for (T& x : ones.v) x = 1;
            EXPECT_FALSE(kernels.anyEqual(zeros.v, ones.v));
            ones.v[n] = 0;
            EXPECT_TRUE(kernels.anyEqual(zeros.v, ones.v)) << n;
            Lanes<T> oneOff;
            oneOff.v[n] = 1;
            EXPECT_FALSE(kernels.allEqual(zeros.v, oneOff.v)) << n;
        }
    });
}

TEST_P(SimdLanes, PartialAccessTouchesExactlyItsElements) {
    forEachWidth([](const auto& kernels, auto element) {
        using T = decltype(element);
        for (const Edge edge : {Edge::Front, Edge::Back})
            for (int n = 0; n <= kernels.lanes; ++n) {
                GuardedBuffer<T> in(n, edge), out(n, edge);
                fillRandom(in);
                Lanes<T> zeroed, filled, mask;
                kernels.loadPartial(in.data(), n, zeroed.v);
                kernels.loadPartialFill(in.data(), n, T{7}, filled.v);
                kernels.firstMask(n, mask.v);
                for (int i = 0; i < kernels.lanes; ++i) {
                    EXPECT_EQ(zeroed.v[i], i < n ? in[i] : T{0}) << n << " " << i;
                    EXPECT_EQ(filled.v[i], i < n ? in[i] : T{7}) << n << " " << i;
                    EXPECT_EQ(mask.v[i], i < n ? T{1} : T{0}) << n << " " << i;
                }
                kernels.storePartial(filled.v, n, out.data());
                for (int i = 0; i < n; ++i) EXPECT_EQ(out[i], in[i]) << n << " " << i;
                Lanes<T> whole;
                kernels.storePartial(filled.v, n, whole.v);
                for (int i = n; i < kMaxLanes; ++i) EXPECT_EQ(whole.v[i], T{0}) << n << " " << i;
            }
    });
}

TEST_P(SimdLanes, PairsSplitAndJoin) {
    forEachWidth([](const auto& kernels, auto element) {
        using T = decltype(element);
        Lanes<T> a, b;
        for (int n = 0; n < kMaxLanes; ++n) a.v[n] = T(n), b.v[n] = T(n + kMaxLanes);
        Lanes<T> even, odd, lower, upper;
        kernels.splitPairs(a.v, b.v, even.v, odd.v, lower.v, upper.v);
        std::vector<T> evens, odds, expectedEvens, expectedOdds;
        for (int n = 0; n < kernels.lanes; ++n) {
            EXPECT_EQ(lower.v[n], a.v[n]) << n;
            EXPECT_EQ(upper.v[n], b.v[n]) << n;
            evens.push_back(even.v[n]);
            odds.push_back(odd.v[n]);
            (n % 2 == 0 ? expectedEvens : expectedOdds).push_back(a.v[n]);
            (n % 2 == 0 ? expectedEvens : expectedOdds).push_back(b.v[n]);
        }
        for (auto* list : {&evens, &odds, &expectedEvens, &expectedOdds})
            std::sort(list->begin(), list->end());
        EXPECT_EQ(evens, expectedEvens);
        EXPECT_EQ(odds, expectedOdds);
    });
}

TEST_P(SimdLanes, PartialComplexAccessTouchesExactlyItsPairs) {
    forEachWidth([](const auto& kernels, auto element) {
        using T = decltype(element);
        for (const Edge edge : {Edge::Front, Edge::Back})
            for (int n = 0; n <= kernels.lanes; ++n) {
                GuardedBuffer<T> in(2 * n, edge), out(2 * n, edge);
                for (int i = 0; i < 2 * n; ++i) in[i] = static_cast<T>(i + 1);
                Lanes<T> re, im;
                kernels.complexPartial(in.data(), n, T{-1}, re.v, im.v, out.data());
                int filled = 0;
                for (int i = 0; i < kernels.lanes; ++i) {
                    filled += re.v[i] == T{-1} && im.v[i] == T{-1};
                    EXPECT_TRUE(im.v[i] == re.v[i] + 1 || re.v[i] == T{-1}) << n << " " << i;
                }
                EXPECT_EQ(filled, kernels.lanes - n);
                for (int i = 0; i < 2 * n; ++i) EXPECT_EQ(out[i], in[i]) << n << " " << i;
            }
    });
}

// The processors promise 1.5 * 2^-12.
TEST_P(SimdLanes, EstimatesHaveTwelveBits) {
    constexpr int kLen = 4096;
    constexpr double kBound = 1.5 / 4096;
    const VariantLanes& lanes = lanesOf(GetParam());
    std::vector<float> x(kLen), y(kLen);
    for (float& v : x)
        v = std::ldexp(1.0f + std::fabs(randomValue<float>()),
                       static_cast<int>(rng()() % 240) - 120);
    lanes.reciprocal(x.data(), y.data(), kLen);
    for (int n = 0; n < kLen; ++n) ASSERT_NEAR(double{y[n]} * x[n], 1.0, kBound) << x[n];
    lanes.rsqrt(x.data(), y.data(), kLen);
    for (int n = 0; n < kLen; ++n)
        ASSERT_NEAR(double{y[n]} * std::sqrt(double{x[n]}), 1.0, kBound) << x[n];
}

ZEP_FOR_EACH_VARIANT(SimdLanes);

}  // namespace
}  // namespace zep::test
