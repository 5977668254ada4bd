// Multi-rate filters against the definition in double precision.
//
// Bound: a sum of K products in float, K = ceil(taps / up), doubled where samples are complex, has
// at most K roundings of products and K of sums on the way of any term, one of each where they are
// fused, and some more where lanes are added up: |error| <= (2K + 8) 2^-24 sum |h||x|.
#include <numeric>

#include "filter/rates.h"
#include "support/failing_heap.h"

namespace zep::test {
namespace {

struct Calls32f {
    using T = Zep32f;
    static constexpr auto create = zepsFIRMRInitAlloc_32f;
    static constexpr auto filter = zepsFIR_32f;
    static constexpr auto inPlace = zepsFIR_32f_I;
    static constexpr auto release = zepsFIRFree_32f;
    static constexpr int products = 1;
};
struct Calls32fc {
    using T = Zep32fc;
    static constexpr auto create = zepsFIRMRInitAlloc_32fc;
    static constexpr auto filter = zepsFIR_32fc;
    static constexpr auto inPlace = zepsFIR_32fc_I;
    static constexpr auto release = zepsFIRFree_32fc;
    static constexpr int products = 2;
};

template <class Calls>
struct Stream {
    using T = typename Calls::T;
    Rates r;
    std::vector<T> h, past, x;
    ZepFIRState* state = nullptr;

    Stream(const Rates& rates, int steps, bool withPast)
        : r(rates),
          h(randomVector<T>(r.taps)),
          past(randomVector<T>(withPast ? r.history() : 0)),
          x(randomVector<T>(steps * r.down)) {
        EXPECT_EQ(make(), zepStsNoErr);
    }
    ~Stream() {
        if (state != nullptr) {
            EXPECT_EQ(Calls::release(state), zepStsNoErr);
        }
    }
    ZepStatus make() {
        return Calls::create(&state, h.data(), r.taps, r.up, r.upPhase, r.down, r.downPhase,
                             past.empty() ? nullptr : past.data());
    }
    // Output q, and what one of ours may differ from it.
    struct Expected {
        Wide value = 0;
        double bound = 0;
    };
    Expected expected(long q) const {
        Expected want;
        double magnitude = 0;
        const long target = q * r.down + r.downPhase - r.upPhase;
        for (long k = 0; k < r.taps; ++k) {
            if ((target - k) % r.up != 0) continue;
            const long i = (target - k) / r.up;
            if (i < 0 && past.empty()) continue;
            const auto product = wide(h[std::size_t(k)]) *
                                 wide(i >= 0 ? x[std::size_t(i)] : past[std::size_t(-i - 1)]);
            want.value += product;
            magnitude += 1.5 * std::abs(product);
        }
        want.bound = (2 * Calls::products * r.history() + 8) * 0x1p-24 * magnitude;
        return want;
    }
    void judge(const T* at, long q) const {
        T got;
        std::memcpy(&got, at, sizeof got);
        const Expected want = expected(q);
        ASSERT_LE(std::abs(wide(got) - want.value), want.bound) << "output " << q << ' ' << r;
    }
};

// Cuts the stream into pieces, by turns in place and not, both arrays against unreadable pages.
template <class Calls>
void check(const Rates& r, const std::vector<int>& pieces, bool withPast) {
    using T = typename Calls::T;
    Stream<Calls> stream(r, std::accumulate(pieces.begin(), pieces.end(), 0), withPast);
    long q = 0;
    std::size_t from = 0;
    int turn = 0;
    for (const int n : pieces) {
        const int in = n * r.down, out = n * r.up;
        ++turn;
        const Edge edge = turn % 3 == 0 ? Edge::Front : Edge::Back;
        const bool inPlace = turn % 2 == 0;
        GuardedBuffer<T> src(inPlace ? std::max(in, out) : in, edge, turn % 3);
        GuardedBuffer<T> dst(inPlace ? 1 : out, edge, turn % 4);
        std::memcpy(src.data(), stream.x.data() + from, sizeof(T) * std::size_t(in));
        ASSERT_EQ(inPlace ? Calls::inPlace(src.data(), n, stream.state)
                          : Calls::filter(src.data(), dst.data(), n, stream.state),
                  zepStsNoErr);
        for (int k = 0; k < out; ++k) {
            stream.judge((inPlace ? src.data() : dst.data()) + k, q++);
            if (::testing::Test::HasFatalFailure()) return;
        }
        if (inPlace && out < in) {
            ASSERT_EQ(std::memcmp(src.data() + out, stream.x.data() + from + std::size_t(out),
                                  sizeof(T) * std::size_t(in - out)),
                      0);
        }
        from += std::size_t(in);
    }
}

void checkBoth(const Rates& r, const std::vector<int>& pieces, bool withPast) {
    check<Calls32f>(r, pieces, withPast);
    check<Calls32fc>(r, pieces, withPast);
}

class FirMultirate : public VariantTest {};
ZEP_FOR_EACH_VARIANT(FirMultirate);

TEST_P(FirMultirate, FollowsTheDefinitionAtEveryRateAndPhase) {
    forEveryRateAndPhase([](const Rates& r) {
        checkBoth(r, {draw(3), draw(9), draw(40), draw(5)}, r.downPhase % 2 == 0);
    });
}

TEST_P(FirMultirate, FollowsTheDefinitionForManyTapCounts) {
    constexpr Rates kRates[] = {{0, 1, 0, 4, 3},       {0, 4, 1, 1, 0},   {0, 3, 2, 2, 1},
                                {0, 2, 0, 3, 0},       {0, 7, 3, 7, 1},   {0, 160, 7, 147, 100},
                                {0, 147, 0, 160, 159}, {0, 1, 0, 50, 20}, {0, 5, 4, 90, 2}};
    for (Rates r : kRates)
        for (const int taps : {1, 2, 3, 4, 5, 8, 15, 17, 31, 33, 64, 100, 300}) {
            r.taps = taps;
            checkBoth(r, {3, 9}, true);
            if (HasFatalFailure()) return;
        }
}

TEST_P(FirMultirate, FollowsTheDefinitionInLongCalls) {
    for (const Rates r : {Rates{32, 1, 0, 4, 1}, Rates{48, 3, 1, 2, 1}, Rates{33, 4, 2, 1, 0},
                          Rates{7, 2, 1, 40, 3}, Rates{500, 2, 1, 3, 2}}) {
        checkBoth(r, {600, 5, 4200 / r.up}, true);
        if (HasFatalFailure()) return;
    }
}

// Every count of steps around the one at which a call begins to read the caller's array.
TEST_P(FirMultirate, FollowsTheDefinitionAroundTheSplit) {
    for (const Rates r : {Rates{10, 2, 0, 1, 0}, Rates{10, 1, 0, 2, 1}, Rates{3, 1, 0, 20, 1},
                          Rates{3, 2, 1, 20, 1}})
        for (int n = 1; n <= 24; ++n) {
            checkBoth(r, {n, n}, true);
            if (HasFatalFailure()) return;
        }
}

// The whole stream and the same in pieces of up to `most` steps: output by output.
void cutStream(const Rates& r, int steps, int most, auto compare) {
    Stream<Calls32f> whole(r, steps, false);
    std::vector<float> once(std::size_t(steps * r.up)), piecewise(once.size());
    ASSERT_EQ(zepsFIR_32f(whole.x.data(), once.data(), steps, whole.state), zepStsNoErr);
    ASSERT_EQ(zepsFIRFree_32f(whole.state), zepStsNoErr);
    ASSERT_EQ(whole.make(), zepStsNoErr);
    for (int done = 0; done < steps;) {
        const int n = std::min(steps - done, draw(most));
        ASSERT_EQ(zepsFIR_32f(whole.x.data() + done * r.down, piecewise.data() + done * r.up, n,
                              whole.state),
                  zepStsNoErr);
        done += n;
    }
    for (std::size_t q = 0; q < once.size(); ++q)
        compare(piecewise[q], once[q], whole.expected(long(q)).bound);
}

TEST_P(FirMultirate, GivesTheSameBitsHoweverAStreamWithMoreThanOneOutputAStepIsCut) {
    for (const Rates r : {Rates{37, 4, 3, 3, 1}, Rates{20, 7, 0, 1, 0}, Rates{5, 3, 1, 70, 2}}) {
        cutStream(r, 300, 60, [](float cut, float once, double) { ASSERT_EQ(cut, once); });
        if (HasFatalFailure()) return;
    }
}

// The sums of a plain decimation begin elsewhere in a longer call: either is within its bound.
TEST_P(FirMultirate, GivesTheSameOutputsWithinRoundingHoweverADecimatedStreamIsCut) {
    for (const Rates r : {Rates{64, 1, 0, 5, 4}, Rates{64, 1, 0, 4, 0}, Rates{33, 1, 0, 2, 1},
                          Rates{40, 1, 0, 3, 2}, Rates{700, 1, 0, 50, 7}})
        for (const int most : {7, 60, 2500}) {
            cutStream(r, 3000, most, [](float cut, float once, double bound) {
                ASSERT_NEAR(cut, once, 2 * bound);
            });
            if (HasFatalFailure()) return;
        }
}

// Bunches of sorted inputs: one output less and more than a bunch, and more than two of them, behind
// histories of no, one and several periods, with a last period of which one sample is there.
TEST_P(FirMultirate, FollowsTheDefinitionInDecimationsOfManyLengths) {
    for (const int down : {2, 3, 4, 5, 8, 9, 17, 50, 147})
        for (const int taps : {down, down + 1, 3 * down - 1, 16 * down})
            for (const int phase : {0, down - 1}) {
                const int steps = 40000 / (down * 16);
                checkBoth({taps, 1, 0, down, phase}, {1, steps, 3, draw(64), 17}, phase == 0);
                if (HasFatalFailure()) return;
            }
    for (const int steps : {895, 896, 897, 1023, 1024, 1025, 2100}) {
        checkBoth({64, 1, 0, 4, 3}, {steps, 2, 30}, true);
        checkBoth({30, 1, 0, 2, 1}, {steps, steps}, true);
        if (HasFatalFailure()) return;
    }
}

TEST_P(FirMultirate, MakesASingleRateStateOfRealSamplesAtEqualRates) {
    check<Calls32f>({9, 1, 0, 1, 0}, {40, 3}, true);
    check<Calls32fc>({9, 1, 0, 1, 0}, {40, 3}, true);
}

template <class Calls>
void checkRefusals() {
    using T = typename Calls::T;
    const auto h = randomVector<T>(3);
    ZepFIRState* const kUntouched = reinterpret_cast<ZepFIRState*>(0x10);
    ZepFIRState* p = kUntouched;
    const auto make = [&](ZepFIRState** to, const T* taps, int len, int up, int upPhase, int down,
                          int downPhase) {
        return Calls::create(to, taps, len, up, upPhase, down, downPhase, nullptr);
    };
    EXPECT_EQ(make(nullptr, h.data(), 0, 0, -1, 0, -1), zepStsNullPtrErr);
    EXPECT_EQ(make(&p, nullptr, 0, 0, -1, 0, -1), zepStsNullPtrErr);
    EXPECT_EQ(make(&p, h.data(), 0, 0, -1, 0, -1), zepStsFIRLenErr);
    EXPECT_EQ(make(&p, h.data(), 3, 0, -1, 2, -1), zepStsFIRMRFactorErr);
    EXPECT_EQ(make(&p, h.data(), 3, 2, -1, 0, -1), zepStsFIRMRFactorErr);
    EXPECT_EQ(make(&p, h.data(), 3, 2, -1, 2, 0), zepStsFIRMRPhaseErr);
    EXPECT_EQ(make(&p, h.data(), 3, 2, 2, 2, 0), zepStsFIRMRPhaseErr);
    EXPECT_EQ(make(&p, h.data(), 3, 2, 0, 2, -1), zepStsFIRMRPhaseErr);
    EXPECT_EQ(make(&p, h.data(), 3, 2, 0, 2, 2), zepStsFIRMRPhaseErr);
    EXPECT_EQ(p, kUntouched);
    // Nothing of this size can be had; only the creator for real samples clears the pointer.
    EXPECT_EQ(make(&p, h.data(), 3, 0x7FFFFFFF, 0, 0x7FFFFFFF, 0), zepStsMemAllocErr);
    EXPECT_EQ(p, sizeof(T) == 4 ? nullptr : kUntouched);
    p = kUntouched;
    {
        const FailingHeap heap(0);
        EXPECT_EQ(make(&p, h.data(), 3, 2, 0, 3, 0), zepStsMemAllocErr);
    }
    EXPECT_EQ(p, sizeof(T) == 4 ? nullptr : kUntouched);
    {
        const FailingHeap heap(1);
        ASSERT_EQ(make(&p, h.data(), 3, 2, 0, 3, 0), zepStsNoErr);
        EXPECT_EQ(heap.asked(), 1);
        EXPECT_EQ(Calls::release(p), zepStsNoErr);
        EXPECT_EQ(heap.live(), 0);
    }
}

TEST_P(FirMultirate, RefusesArgumentsInOrder) {
    checkRefusals<Calls32f>();
    checkRefusals<Calls32fc>();
}

TEST_P(FirMultirate, RefusesStatesOfOtherKinds) {
    Stream<Calls32f> real({5, 2, 0, 1, 0}, 1, false);
    Stream<Calls32fc> complex({5, 2, 0, 1, 0}, 1, false);
    Zep32f x[2] = {1, 2}, y[2] = {3, 4};
    Zep32fc z[2] = {{1, 2}, {3, 4}}, w[2] = {{5, 6}, {7, 8}};
    EXPECT_EQ(zepsFIR_32f(x, y, 1, complex.state), zepStsContextMatchErr);
    EXPECT_EQ(zepsFIR_32f_I(x, 1, complex.state), zepStsContextMatchErr);
    EXPECT_EQ(zepsFIR_32fc(z, w, 1, real.state), zepStsContextMatchErr);
    EXPECT_EQ(zepsFIR_32fc_I(z, 1, real.state), zepStsContextMatchErr);
    EXPECT_EQ(zepsFIR64f_32f_I(x, 1, real.state), zepStsContextMatchErr);
    EXPECT_EQ(zepsFIRFree_32f(complex.state), zepStsContextMatchErr);
    EXPECT_EQ(zepsFIRFree_32fc(real.state), zepStsContextMatchErr);
    EXPECT_EQ(zepsFIR_32f(x, y, 0, real.state), zepStsSizeErr);
    EXPECT_EQ(y[0], 3.0f);
    EXPECT_EQ(w[0].re, 5.0f);
}

TEST_P(FirMultirate, LeavesDataAndStateUntouchedWhenTheCopyCannotBeHad) {
    Stream<Calls32fc> stream({9, 3, 1, 2, 1}, 20, true);
    auto y = stream.x;
    y.resize(60);
    {
        const FailingHeap heap(0);
        EXPECT_EQ(zepsFIR_32fc_I(y.data(), 20, stream.state), zepStsMemAllocErr);
        EXPECT_EQ(heap.asked(), 1);
    }
    EXPECT_EQ(std::memcmp(y.data(), stream.x.data(), sizeof(Zep32fc) * stream.x.size()), 0);
    {
        const FailingHeap heap(1);
        ASSERT_EQ(zepsFIR_32fc_I(y.data(), 20, stream.state), zepStsNoErr);
        EXPECT_EQ(heap.live(), 0);
    }
    for (long q = 0; q < 60; ++q) stream.judge(y.data() + q, q);
}

}  // namespace
}  // namespace zep::test
