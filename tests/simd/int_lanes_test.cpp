// Every operation of integer vectors, in every column and width, against scalar code.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "simd/int_kernels.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"

namespace zep::test {
namespace {

constexpr int kMaxLanes = 64;

template <class T>
struct alignas(64) Lanes {
    T v[kMaxLanes] = {};
};

// A third of the values stand at the ends of the range or around zero, so that equal ones and
// overflows meet.
template <class T>
T testValue() {
    using L = std::numeric_limits<T>;
    static constexpr T kSpecial[] = {
        0, 1, 2, T(-1), L::min(), T(L::min() + 1), L::max(), T(L::max() - 1)};
    return rng()() % 3 == 0 ? kSpecial[rng()() % std::size(kSpecial)] : randomValue<T>();
}

template <class T>
Lanes<T> testLanes() {
    Lanes<T> lanes;
    for (T& x : lanes.v) x = testValue<T>();
    return lanes;
}

template <class T>
T clamped(long x) {
    using L = std::numeric_limits<T>;
    return static_cast<T>(std::clamp<long>(x, L::min(), L::max()));
}

template <class T>
T reference(IntOp op, const T* a, const T* b, int n, int lanes) {
    using U = std::uint64_t;
    const U x = static_cast<U>(a[n]), y = static_cast<U>(b[n]);
    const int half = lanes / 2;
    switch (op) {
        case IntOp::Add:
            return static_cast<T>(x + y);
        case IntOp::Sub:
            return static_cast<T>(x - y);
        case IntOp::Mul:
            return static_cast<T>(x * y);
        case IntOp::Negate:
            return static_cast<T>(-x);
        case IntOp::And:
            return static_cast<T>(x & y);
        case IntOp::Or:
            return static_cast<T>(x | y);
        case IntOp::Xor:
            return static_cast<T>(x ^ y);
        case IntOp::Not:
            return static_cast<T>(~x);
        case IntOp::ClearBits:
            return static_cast<T>(x & ~y);
        case IntOp::Min:
            return std::min(a[n], b[n]);
        case IntOp::Max:
            return std::max(a[n], b[n]);
        case IntOp::SelectLess:
            return a[n] < b[n] ? a[n] : static_cast<T>(y + 1);
        case IntOp::KeepEqual:
            return a[n] == b[n] ? a[n] : T{0};
        case IntOp::Reverse:
            return a[lanes - 1 - n];
        case IntOp::DupEven:
            return a[n - n % 2];
        case IntOp::DupOdd:
            return a[n - n % 2 + 1];
        case IntOp::SwapPairs:
            return a[n % 2 == 0 ? n + 1 : n - 1];
        case IntOp::InterleaveFront:
            return n % 2 == 0 ? a[n / 2] : b[n / 2];
        case IntOp::InterleaveBack:
            return n % 2 == 0 ? a[half + n / 2] : b[half + n / 2];
        case IntOp::AllEvens:
            return n < half ? a[2 * n] : b[2 * (n - half)];
        case IntOp::AllOdds:
            return n < half ? a[2 * n + 1] : b[2 * (n - half) + 1];
        case IntOp::Broadcast:
            return a[0];
        case IntOp::BroadcastPair:
            return n % 2 == 0 ? a[0] : b[0];
        case IntOp::AddSaturated:
            return clamped<T>(long(a[n]) + long(b[n]));
        case IntOp::SubSaturated:
            return clamped<T>(long(a[n]) - long(b[n]));
        default:
            return a[n] < T{0} ? static_cast<T>(-x) : a[n];
    }
}

const VariantInts& intsOf(const Variant& v) {
    static constexpr const VariantInts* kInts[] = {nullptr,
#define ZEP_INTS(arg, slot, column, ...) &code::column::variantInts,
                                                   ZEP_COLUMNS(ZEP_INTS, )
#undef ZEP_INTS
    };
    return *kInts[v.slot];
}

class SimdInts : public VariantTest {
protected:
    // f(kernels, element) for each type and width.
    template <class F>
    void forEachWidth(F f) {
        const auto both = [f](const auto& widths) {
            f(widths.narrow);
            f(widths.native);
        };
        std::apply([&](const auto&... widths) { (both(widths), ...); }, intsOf(GetParam()).types);
    }
};

template <class T>
T elementOf(const IntKernels<T>&);

TEST_P(SimdInts, OperationsGiveScalarResults) {
    forEachWidth([](const auto& kernels) {
        using T = decltype(elementOf(kernels));
        for (int round = 0; round < (thin() ? 10 : 100); ++round)
            for (int i = 0; i < static_cast<int>(IntOp::Count); ++i) {
                const auto op = static_cast<IntOp>(i);
                const Lanes<T> a = testLanes<T>(), b = testLanes<T>();
                Lanes<T> out;
                if (!kernels.apply(op, a.v, b.v, out.v)) continue;
                for (int n = 0; n < kernels.lanes; ++n)
                    ASSERT_EQ(out.v[n], reference(op, a.v, b.v, n, kernels.lanes))
                        << "op " << i << " lane " << n << " of " << kernels.lanes << " of "
                        << sizeof(T) << " bytes: " << +a.v[n] << ", " << +b.v[n];
            }
    });
}

TEST_P(SimdInts, EveryTypeHasItsOperations) {
    forEachWidth([](const auto& kernels) {
        using T = decltype(elementOf(kernels));
        const Lanes<T> a, b;
        Lanes<T> out;
        EXPECT_EQ(kernels.apply(IntOp::AddSaturated, a.v, b.v, out.v), sizeof(T) <= 2);
        EXPECT_EQ(kernels.apply(IntOp::SubSaturated, a.v, b.v, out.v), sizeof(T) <= 2);
        EXPECT_EQ(kernels.apply(IntOp::Abs, a.v, b.v, out.v), std::is_signed_v<T>);
        for (int i = 0; i < static_cast<int>(IntOp::AddSaturated); ++i)
            EXPECT_TRUE(kernels.apply(static_cast<IntOp>(i), a.v, b.v, out.v)) << i;
    });
}

TEST_P(SimdInts, ShiftsBeyondTheLaneLeaveNothingButSigns) {
    forEachWidth([](const auto& kernels) {
        using T = decltype(elementOf(kernels));
        if (sizeof(T) == 1) return;
        constexpr int kBits = 8 * sizeof(T);
        for (int count = 0; count <= kBits + 3; ++count) {
            const Lanes<T> a = testLanes<T>();
            Lanes<T> left, right;
            kernels.shift(a.v, count, left.v, right.v);
            for (int n = 0; n < kernels.lanes; ++n) {
                const T x = a.v[n];
                const T signs = x < T{0} ? T(-1) : T{0};
                const T down = count < kBits ? static_cast<T>(x >> count) : signs;
                const T up =
                    count < kBits ? static_cast<T>(static_cast<std::uint64_t>(x) << count) : T{0};
                ASSERT_EQ(left.v[n], up) << count << " lane " << n << ": " << x;
                ASSERT_EQ(right.v[n], down) << count << " lane " << n << ": " << x;
            }
        }
    });
}

TEST_P(SimdInts, ComparisonsGiveOneBitForEachLane) {
    forEachWidth([](const auto& kernels) {
        using T = decltype(elementOf(kernels));
        for (int round = 0; round < (thin() ? 20 : 200); ++round) {
            const Lanes<T> a = testLanes<T>(), b = testLanes<T>();
            std::uint64_t bits[4], expected[4] = {};
            for (int n = 0; n < kernels.lanes; ++n) {
                expected[0] |= std::uint64_t{a.v[n] == b.v[n]} << n;
                expected[1] |= std::uint64_t{a.v[n] != b.v[n]} << n;
                expected[2] |= std::uint64_t{a.v[n] < b.v[n]} << n;
                expected[3] |= std::uint64_t{a.v[n] <= b.v[n]} << n;
            }
            kernels.compare(a.v, b.v, bits);
            for (int i = 0; i < 4; ++i)
                ASSERT_EQ(bits[i], expected[i]) << i << " of " << sizeof(T) << " bytes";
        }
    });
}

TEST_P(SimdInts, AnyAllAndNoneLookAtEveryLane) {
    forEachWidth([](const auto& kernels) {
        const int lanes = kernels.lanes;
        const std::uint64_t whole = ~std::uint64_t{0} >> (64 - lanes);
        const auto check = [&](std::uint64_t set) {
            bool any = false, all = false;
            const bool none = kernels.anyAllNone(set, any, all);
            EXPECT_EQ(any, set != 0) << set;
            EXPECT_EQ(all, set == whole) << set;
            EXPECT_EQ(none, set == 0) << set;
        };
        check(0);
        check(whole);
        for (int n = 0; n < lanes; ++n) {
            check(std::uint64_t{1} << n);
            check(whole ^ std::uint64_t{1} << n);
        }
    });
}

TEST_P(SimdInts, ReductionsTakeAllLanes) {
    forEachWidth([](const auto& kernels) {
        using T = decltype(elementOf(kernels));
        for (int round = 0; round < 20; ++round) {
            const Lanes<T> a = testLanes<T>();
            std::uint64_t sum = 0;
            for (int n = 0; n < kernels.lanes; ++n) sum += static_cast<std::uint64_t>(a.v[n]);
            const T* end = a.v + kernels.lanes;
            EXPECT_EQ(kernels.reduce(IntReduction::Add, a.v), static_cast<T>(sum));
            EXPECT_EQ(kernels.reduce(IntReduction::Min, a.v), *std::min_element(a.v, end));
            EXPECT_EQ(kernels.reduce(IntReduction::Max, a.v), *std::max_element(a.v, end));
            EXPECT_EQ(kernels.reduce(IntReduction::First, a.v), a.v[0]);
        }
    });
}

TEST_P(SimdInts, PartialAccessTouchesExactlyItsElements) {
    forEachWidth([](const auto& kernels) {
        using T = decltype(elementOf(kernels));
        for (const Edge edge : {Edge::Front, Edge::Back})
            for (int n = 0; n <= kernels.lanes; ++n) {
                GuardedBuffer<T> in(n, edge), out(n, edge);
                fillRandom(in);
                Lanes<T> zeroed, filled;
                kernels.loadPartial(in.data(), n, T{7}, zeroed.v, filled.v);
                for (int i = 0; i < kernels.lanes; ++i) {
                    ASSERT_EQ(zeroed.v[i], i < n ? in[i] : T{0}) << n << " " << i;
                    ASSERT_EQ(filled.v[i], i < n ? in[i] : T{7}) << n << " " << i;
                }
                kernels.storePartial(filled.v, n, out.data());
                for (int i = 0; i < n; ++i) ASSERT_EQ(out[i], in[i]) << n << " " << i;
                Lanes<T> whole;
                kernels.storePartial(filled.v, n, whole.v);
                for (int i = n; i < kMaxLanes; ++i) ASSERT_EQ(whole.v[i], T{0}) << n << " " << i;
            }
    });
}

ZEP_FOR_EACH_VARIANT(SimdInts);

}  // namespace
}  // namespace zep::test
