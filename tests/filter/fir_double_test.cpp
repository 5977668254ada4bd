// Filters with double taps, against the definition in double precision.
//
// Bound of a direct sum of K products: both sides round K products and K sums in double, each at
// most u = 2^-53 of sum |h||x|, and the result is rounded to float once: |error| <= 2K u sum|h||x|
// + 2^-24 |y|. A transform of N points spreads an error of a few u * log2(N) times the norms of
// taps and of the block's signal over all outputs of the block: 16 u log2(N) ||h|| ||x|| is above
// it.
#include <numeric>

#include "filter/fir_record.h"
#include "filter/rates.h"
#include "support/failing_heap.h"

namespace zep::test {
namespace {

constexpr double kUnit = 0x1p-53, kFloatUnit = 0x1p-24;

// Output q of a stream that begins behind `past` (newest first), and the sum of magnitudes.
struct Expected {
    double value = 0, magnitude = 0;
};
Expected expected(const Rates& r, const std::vector<double>& h, const std::vector<float>& past,
                  const std::vector<float>& x, long q) {
    Expected sum;
    const long at = q * r.down + r.downPhase - r.upPhase;
    for (long k = 0; k < r.taps; ++k) {
        if ((at - k) % r.up != 0) continue;
        const long i = (at - k) / r.up;
        const double sample = i >= 0         ? double(x[std::size_t(i)])
                              : past.empty() ? 0.0
                                             : double(past[std::size_t(-i - 1)]);
        sum.value += h[std::size_t(k)] * sample;
        sum.magnitude += std::abs(h[std::size_t(k)] * sample);
    }
    return sum;
}

// Releases by hand what no function releases.
struct State {
    ZepFIRState* p = nullptr;
    ~State() {
        if (p != nullptr && p->pFFTSpec != nullptr) zepFree(p->pFFTSpec);
        zepsFree(p);
    }
    ZepStatus make(const Rates& r, const double* h, const float* past) {
        return zepsFIRMRInitAlloc64f_32f(&p, h, r.taps, r.up, r.upPhase, r.down, r.downPhase, past);
    }
};

class FirDouble : public VariantTest {
protected:
    // Filters numIters steps, cut as told, and judges every output. Each piece stands against an
    // unreadable page.
    void check(const Rates& r, const std::vector<int>& pieces, bool withPast,
               double transform = 0) {
        SCOPED_TRACE(::testing::Message() << r);
        const int steps = std::accumulate(pieces.begin(), pieces.end(), 0);
        const auto h = randomVector<double>(r.taps);
        const auto past = withPast ? randomVector<float>(r.history()) : std::vector<float>{};
        const auto x = randomVector<float>(steps * r.down);
        State state;
        ASSERT_EQ(state.make(r, h.data(), withPast ? past.data() : nullptr), zepStsNoErr);
        long q = 0;
        std::size_t from = 0;
        int edge = 0;
        for (const int n : pieces) {
            const int in = n * r.down, out = n * r.up;
            ++edge;
            GuardedBuffer<float> data(std::max(in, out), edge % 2 ? Edge::Back : Edge::Front,
                                      edge % 3);
            std::memcpy(data.data(), x.data() + from, sizeof(float) * std::size_t(in));
            ASSERT_EQ(zepsFIR64f_32f_I(data.data(), n, state.p), zepStsNoErr);
            for (int k = 0; k < out; ++k, ++q) {
                const auto want = expected(r, h, past, x, q);
                float got;
                std::memcpy(&got, data.data() + k, sizeof got);
                const double bound = 2 * r.taps * kUnit * want.magnitude +
                                     kFloatUnit * std::abs(want.value) + transform + 0x1p-149;
                ASSERT_NEAR(got, want.value, bound) << "output " << q;
            }
            for (int k = out; k < in; ++k)
                ASSERT_EQ(std::memcmp(data.data() + k, x.data() + from + std::size_t(k), 4), 0)
                    << "behind the results, " << k;
            from += std::size_t(in);
        }
    }
};
ZEP_FOR_EACH_VARIANT(FirDouble);

TEST_P(FirDouble, FollowsTheDefinitionAtEveryRateAndPhase) {
    forEveryRateAndPhase([&](const Rates& r) {
        check(r, {draw(3), draw(9), draw(5), draw(40)}, r.downPhase % 2 == 0);
    });
}

TEST_P(FirDouble, FollowsTheDefinitionForManyTapCounts) {
    constexpr Rates kRates[] = {{0, 1, 0, 1, 0},   {0, 1, 0, 4, 3}, {0, 4, 1, 1, 0},
                                {0, 3, 2, 2, 1},   {0, 2, 0, 3, 0}, {0, 160, 7, 147, 100},
                                {0, 1, 0, 50, 20}, {0, 5, 4, 90, 2}};
    for (Rates r : kRates)
        for (const int taps : {1, 2, 3, 4, 5, 8, 15, 16, 17, 31, 33, 63, 100, 257}) {
            r.taps = taps;
            check(r, {3, 21}, true);
            if (HasFatalFailure()) return;
        }
}

// Long enough for every block of periods, and for reading past the head from the caller's array.
TEST_P(FirDouble, FollowsTheDefinitionInLongCalls) {
    for (const Rates r : {Rates{32, 1, 0, 4, 1}, Rates{48, 3, 1, 2, 1}, Rates{33, 4, 2, 1, 0},
                          Rates{7, 2, 1, 40, 3}, Rates{20, 1, 0, 1, 0}}) {
        check(r, {700}, true);
        if (HasFatalFailure()) return;
    }
    for (const int down : {2, 3, 4, 5, 17, 50})
        for (const int taps : {down, 3 * down - 1, 16 * down}) {
            check({taps, 1, 0, down, down - 1}, {1, 40000 / (down * 16), 3, 17}, true);
            if (HasFatalFailure()) return;
        }
    check({3, 1, 0, 1, 0}, {9000}, true);   // several blocks of direct sums
    check({40, 1, 0, 3, 2}, {4500}, true);  // several blocks of the scratch
}

// The boundary between the two forms of a call: splitCount is 141 for these rates, 129 inputs and
// 12 more that round the head up; 1:1 steps make it reachable.
TEST_P(FirDouble, FollowsTheDefinitionAroundTheSplit) {
    for (const Rates r : {Rates{10, 2, 0, 1, 0}, Rates{10, 1, 0, 2, 1}, Rates{3, 1, 0, 20, 1},
                          Rates{3, 2, 1, 20, 1}})
        for (int n = 1; n <= 24; ++n) {
            check(r, {n, n}, true);
            if (HasFatalFailure()) return;
        }
}

TEST_P(FirDouble, TransformsLongCallsOfLongFilters) {
    for (const int taps : {63, 64, 127, 128, 300}) {
        const int order = [&] {
            int k = 2;
            while (1 << k <= taps) ++k;
            return k + 1;
        }();
        for (const int len : {511, 512, 513, 2000}) {
            // ||h|| <= sqrt(taps), ||x|| <= sqrt(2 N): two blocks share a transform.
            const double transform =
                taps >= 64 && len >= 512
                    ? 16 * kUnit * order * std::sqrt(double(taps)) * std::sqrt(2.0 * (1 << order))
                    : 0;
            check({taps, 1, 0, 1, 0}, {len, 5, len}, true, transform);
            if (HasFatalFailure()) return;
        }
    }
}

TEST_P(FirDouble, GivesTheSameStreamHoweverItIsCut) {
    for (const Rates r : {Rates{37, 1, 0, 1, 0}, Rates{37, 4, 3, 3, 1}, Rates{64, 1, 0, 5, 4},
                          Rates{20, 7, 0, 1, 0}, Rates{5, 3, 1, 70, 2}}) {
        SCOPED_TRACE(::testing::Message() << r);
        constexpr int kSteps = 300;
        const auto h = randomVector<double>(r.taps);
        const auto x = randomVector<float>(kSteps * r.down);
        State whole, cut;
        ASSERT_EQ(whole.make(r, h.data(), nullptr), zepStsNoErr);
        ASSERT_EQ(cut.make(r, h.data(), nullptr), zepStsNoErr);
        auto once = x;
        once.resize(std::size_t(kSteps * std::max(r.up, r.down)));
        ASSERT_EQ(zepsFIR64f_32f_I(once.data(), kSteps, whole.p), zepStsNoErr);
        for (int done = 0; done < kSteps;) {
            const int n = std::min(kSteps - done, 1 + static_cast<int>(rng()() % 60));
            std::vector<float> piece(std::size_t(n * std::max(r.up, r.down)));
            std::copy_n(x.begin() + done * r.down, n * r.down, piece.begin());
            ASSERT_EQ(zepsFIR64f_32f_I(piece.data(), n, cut.p), zepStsNoErr);
            for (int k = 0; k < n * r.up; ++k) {
                // Each of both is a sum in some order, rounded to float once.
                const long q = done * r.up + k;
                const auto want = expected(r, h, {}, x, q);
                ASSERT_NEAR(
                    piece[std::size_t(k)], once[std::size_t(q)],
                    4 * r.taps * kUnit * want.magnitude + 2 * kFloatUnit * std::abs(want.value))
                    << "output " << q;
            }
            done += n;
        }
    }
}

TEST_P(FirDouble, TakesDataAtAnyAddress) {
    const Rates r{19, 2, 1, 3, 0};
    const auto h = randomVector<double>(r.taps);
    const auto x = randomVector<float>(3 * 50), past = randomVector<float>(r.history());
    std::vector<char> taps(sizeof(double) * h.size() + 1), data(sizeof(float) * x.size() + 1),
        line(sizeof(float) * past.size() + 1);
    std::memcpy(taps.data() + 1, h.data(), taps.size() - 1);
    std::memcpy(data.data() + 1, x.data(), data.size() - 1);
    std::memcpy(line.data() + 1, past.data(), line.size() - 1);
    State aligned, odd;
    ASSERT_EQ(aligned.make(r, h.data(), past.data()), zepStsNoErr);
    ASSERT_EQ(odd.make(r, reinterpret_cast<const double*>(taps.data() + 1),
                       reinterpret_cast<const float*>(line.data() + 1)),
              zepStsNoErr);
    auto want = x;
    ASSERT_EQ(zepsFIR64f_32f_I(want.data(), 50, aligned.p), zepStsNoErr);
    ASSERT_EQ(zepsFIR64f_32f_I(reinterpret_cast<float*>(data.data() + 1), 50, odd.p), zepStsNoErr);
    EXPECT_EQ(std::memcmp(data.data() + 1, want.data(), data.size() - 1), 0);
}

TEST_P(FirDouble, IgnoresTheOldestSampleOfTheDelayLineAtOneRate) {
    for (const int taps : {1, 5, 100}) {
        const auto h = randomVector<double>(taps);
        auto past = randomVector<float>(taps);
        past.back() = std::numeric_limits<float>::quiet_NaN();
        for (const int len : {1, 20, 600}) {
            State state;
            ASSERT_EQ(state.make({taps}, h.data(), past.data()), zepStsNoErr);
            auto x = randomVector<float>(len);
            ASSERT_EQ(zepsFIR64f_32f_I(x.data(), len, state.p), zepStsNoErr);
            for (const float y : x) ASSERT_FALSE(std::isnan(y));
        }
    }
}

TEST_P(FirDouble, RefusesArgumentsInOrder) {
    const double h[3] = {1, 2, 3};
    ZepFIRState* const kUntouched = reinterpret_cast<ZepFIRState*>(0x10);
    ZepFIRState* p = kUntouched;
    const auto make = zepsFIRMRInitAlloc64f_32f;
    EXPECT_EQ(make(nullptr, h, 0, 0, -1, 0, -1, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(make(&p, nullptr, 0, 0, -1, 0, -1, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(make(&p, h, 0, 0, -1, 0, -1, nullptr), zepStsFIRLenErr);
    EXPECT_EQ(make(&p, h, 3, 0, -1, 2, -1, nullptr), zepStsFIRMRFactorErr);
    EXPECT_EQ(make(&p, h, 3, 2, -1, 0, -1, nullptr), zepStsFIRMRFactorErr);
    EXPECT_EQ(make(&p, h, 3, 2, -1, 2, 0, nullptr), zepStsFIRMRPhaseErr);
    EXPECT_EQ(make(&p, h, 3, 2, 2, 2, 0, nullptr), zepStsFIRMRPhaseErr);
    EXPECT_EQ(make(&p, h, 3, 2, 0, 2, -1, nullptr), zepStsFIRMRPhaseErr);
    EXPECT_EQ(make(&p, h, 3, 1, 0, 1, 1, nullptr), zepStsFIRMRPhaseErr);
    EXPECT_EQ(p, kUntouched);
    EXPECT_EQ(make(&p, h, 3, 0x7FFFFFFF, 0, 0x7FFFFFFF, 0, nullptr), zepStsMemAllocErr);
    EXPECT_EQ(p, nullptr);

    State state;
    ASSERT_EQ(state.make({3}, h, nullptr), zepStsNoErr);
    float x = 1;
    Zep32fc z = {1, 2};
    EXPECT_EQ(zepsFIR64f_32f_I(nullptr, 0, state.p), zepStsNullPtrErr);
    EXPECT_EQ(zepsFIR64f_32f_I(&x, 0, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsFIR64f_32f_I(&x, 0, state.p), zepStsSizeErr);
    EXPECT_EQ(zepsFIR64fc_32fc_I(nullptr, 0, state.p), zepStsNullPtrErr);
    EXPECT_EQ(zepsFIR64fc_32fc_I(&z, 0, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsFIR64fc_32fc_I(&z, 0, state.p), zepStsSizeErr);
    EXPECT_EQ(zepsFIR64fc_32fc_I(&z, 1, state.p), zepStsContextMatchErr);
    FFTSpecC32fc* other = nullptr;
    ASSERT_EQ(zepsFFTInitAlloc_C_32fc(&other, 8, ZEP_FFT_SCALE_INV, 0), zepStsNoErr);
    EXPECT_EQ(zepsFIR64f_32f_I(&x, 1, reinterpret_cast<ZepFIRState*>(other)),
              zepStsContextMatchErr);
    zepsFFTFree_C_32fc(other);
    EXPECT_EQ(x, 1.0f);
    EXPECT_EQ(zepsFIR64f_32f_I(&x, 1, state.p), zepStsNoErr);
    EXPECT_EQ(x, 1.0f);
}

// The block is the first allocation; what follows belongs to the transform, and may be missing.
TEST_P(FirDouble, ReportsAMissingBlockAndDoesWithoutATransform) {
    const auto h = randomVector<double>(2000);
    const auto x = randomVector<float>(600);
    int asked = 1;
    for (int allowed = 0; allowed <= asked; ++allowed) {
        for (const int taps : {20, 2000}) {
            State state;
            ZepStatus status;
            {
                const FailingHeap heap(allowed);
                status = state.make({taps}, h.data(), nullptr);
                asked = std::max(asked, heap.asked());
                // All of the transform or nothing of it.
                ASSERT_EQ(heap.live(), allowed == 0 ? 0 : heap.asked() > allowed ? 1 : heap.live());
            }
            ASSERT_EQ(status, allowed == 0 ? zepStsMemAllocErr : zepStsNoErr);
            if (allowed == 0) {
                ASSERT_EQ(state.p, nullptr);
                continue;
            }
            auto y = x;
            ASSERT_EQ(zepsFIR64f_32f_I(y.data(), 600, state.p), zepStsNoErr);
            for (long n = 0; n < 600; n += 37) {
                const auto want = expected({taps}, h, {}, x, n);
                ASSERT_NEAR(y[std::size_t(n)], want.value, 1e-6 * want.magnitude + 1e-9);
            }
        }
    }
    EXPECT_GE(asked, 2);
}

TEST_P(FirDouble, LeavesDataAndStateUntouchedWhenTheCopyCannotBeHad) {
    const Rates r{9, 3, 1, 2, 1};
    const auto h = randomVector<double>(r.taps);
    const auto past = randomVector<float>(r.history()), x = randomVector<float>(2 * 20);
    {
        State state;
        const FailingHeap heap(0);
        EXPECT_EQ(state.make(r, h.data(), past.data()), zepStsMemAllocErr);
        EXPECT_EQ(state.p, nullptr);
    }
    State state;
    ASSERT_EQ(state.make(r, h.data(), past.data()), zepStsNoErr);
    auto y = x;
    y.resize(3 * 20);
    const auto before = y;
    {
        const FailingHeap heap(0);
        EXPECT_EQ(zepsFIR64f_32f_I(y.data(), 20, state.p), zepStsMemAllocErr);
        EXPECT_EQ(heap.asked(), 1);
    }
    EXPECT_EQ(y, before);
    {
        const FailingHeap heap(1);
        ASSERT_EQ(zepsFIR64f_32f_I(y.data(), 20, state.p), zepStsNoErr);
        EXPECT_EQ(heap.live(), 0);
    }
    for (long q = 0; q < 60; ++q) {
        const auto want = expected(r, h, past, x, q);
        ASSERT_NEAR(y[std::size_t(q)], want.value, 1e-6 * want.magnitude);
    }
}

// More outputs for one step than the scratch holds.
TEST_P(FirDouble, FiltersInPlaceWithFactorsBeyondTheScratch) {
    check({10000, 4097, 5, 4100, 3}, {2}, true);
}

}  // namespace
}  // namespace zep::test
