#include "filter/fir_support.h"
#include "support/failing_heap.h"

namespace zep::test {
namespace {

template <class T>
class Filter {
    using Of = Exports<T>;

    static bool direct(int L, int n) { return L < Of::transformTaps || n < Of::transformSamples; }

    static void oneCall(int L, int n, Edge edge, int skew, int stride = 1) {
        const Stream<T> s(L, n, n % 2 == 0);
        const State<T> out(s.taps, s.past()), in(s.taps, s.past());
        Guarded<T> src(s.x, edge, skew), both(s.x, edge, skew);
        GuardedBuffer<T> dst(n, edge, skew);
        ASSERT_EQ(Of::filter(src.data(), dst.data(), n, out), zepStsNoErr);
        s.expect(dst.data(), direct(L, n), stride);
        ASSERT_EQ(Of::inPlace(both.data(), n, in), zepStsNoErr);
        s.expect(both.data(), direct(L, n), stride);
    }

public:
    static void shortCalls() {
        for (const Edge edge : {Edge::Front, Edge::Back})
            for (const int L : {1, 2, 3, 4, 5, 8, 15, 16, 17, 33, 64, 70})
                for (int n = 1; n <= 90; n += n < 20 ? 1 : thinStep(7)) oneCall(L, n, edge, n % 4);
    }

    // The two routes of a direct call meet at the room behind the history; the transform at its own limits.
    static void limits() {
        for (const Edge edge : {Edge::Front, Edge::Back})
            for (const int L : {Of::transformTaps - 1, Of::transformTaps, 127, 128, 300}) {
                const int split = ((L + 3) & ~3) + (sizeof(T) == sizeof(Zep32f) ? 1 : 0);
                for (const int n : {split - 1, split, split + 1, split + 2})
                    oneCall(L, n, edge, 0, 5);
                for (const int n :
                     {Of::transformSamples - 1, Of::transformSamples, Of::transformSamples + 1})
                    oneCall(L, n, edge, 0, 17);
            }
    }

    // Overlap-save with a last block of every kind: N = 4L or less, step N-L+1.
    static void transforms() {
        const int L = 200, N = 512, step = N - L + 1;
        for (const Edge edge : {Edge::Front, Edge::Back})
            for (const int n : {512, 2 * step, 2 * step + 1, step + N - 1, step + N, step + N + 1,
                                3 * step + N - L})
                oneCall(L, n, edge, edge == Edge::Front ? 1 : 0, 29);
        const int long1 = 4096 + 512, long2 = 4224 + 512;
        for (const int n : {4096, 4224, long1 - 1, long1, long2, 9000})
            oneCall(L, n, Edge::Back, 0, 97);
        oneCall(1000, 4096, Edge::Back, 0, 301);
        oneCall(1000, 5000, Edge::Back, 0, 301);
    }

    static void cuts() {
        for (const int L : {1, 7, 40, 64, 130})
            for (int round = 0; round < (thin() ? 1 : 3); ++round) {
                const Stream<T> s(L, 9000);
                const State<T> state(s.taps, s.past());
                Guarded<T> y(s.x, Edge::Back);
                for (int n = 0; n < s.length();) {
                    const auto draw = static_cast<int>(rng()() % 1000);
                    int count = draw < 500 ? draw % 17 + 1 : draw < 900 ? draw : 5 * draw;
                    if (count > s.length() - n) count = s.length() - n;
                    if (draw % 2 == 0) {
                        ASSERT_EQ(Of::inPlace(y.data() + n, count, state), zepStsNoErr);
                    } else {
                        const std::vector<T> piece(s.x.begin() + n, s.x.begin() + n + count);
                        const Guarded<T> src(piece, draw % 4 == 1 ? Edge::Back : Edge::Front);
                        ASSERT_EQ(Of::filter(src.data(), y.data() + n, count, state), zepStsNoErr);
                    }
                    n += count;
                }
                s.expect(y.data(), L < Of::transformTaps, 23);
            }
    }

    // A call of one block in place is direct, whatever its length: an infinity reaches L outputs and no more.
    static void inPlaceIsDirectInOneBlock() {
        const int L = 100, n = 4096, place = 1000;
        const std::vector<T> taps = randomVector<T>(L);
        std::vector<T> x = randomVector<T>(n);
        x[place] = value<T>(INFINITY);
        const State<T> state(taps, nullptr);
        std::vector<T> y = x, far = x;
        ASSERT_EQ(Of::inPlace(y.data(), n, state), zepStsNoErr);
        for (int i = 0; i < n; ++i)
            ASSERT_EQ(std::isfinite(std::abs(wide(y[static_cast<std::size_t>(i)]))),
                      i < place || i >= place + L)
                << i;
        // With transforms it spreads.
        const State<T> other(taps, nullptr);
        ASSERT_EQ(Of::filter(x.data(), far.data(), n, other), zepStsNoErr);
        EXPECT_FALSE(std::isfinite(std::abs(wide(far[place - 1]))));
    }

    static void statuses(ZepFIRState* foreign) {
        const std::vector<T> taps(70, value<T>(1));
        ZepFIRState* none = nullptr;
        EXPECT_EQ(Of::create(nullptr, taps.data(), 0, nullptr), zepStsNullPtrErr);
        EXPECT_EQ(Of::create(&none, nullptr, 0, nullptr), zepStsNullPtrErr);
        EXPECT_EQ(Of::create(&none, taps.data(), 0, nullptr), zepStsFIRLenErr);
        EXPECT_EQ(Of::create(&none, taps.data(), -5, nullptr), zepStsFIRLenErr);
        EXPECT_EQ(none, nullptr);
        T x[4] = {}, y[4];
        std::memset(y, 0x55, sizeof y);
        T before[4];
        std::memcpy(before, y, sizeof y);
        const State<T> state(taps, nullptr);
        EXPECT_EQ(Of::filter(nullptr, y, 0, state), zepStsNullPtrErr);
        EXPECT_EQ(Of::filter(x, nullptr, 0, state), zepStsNullPtrErr);
        EXPECT_EQ(Of::filter(x, y, 0, nullptr), zepStsNullPtrErr);
        EXPECT_EQ(Of::filter(x, y, 0, foreign), zepStsSizeErr);
        EXPECT_EQ(Of::filter(x, y, 4, foreign), zepStsContextMatchErr);
        EXPECT_EQ(Of::inPlace(nullptr, 0, state), zepStsNullPtrErr);
        EXPECT_EQ(Of::inPlace(y, 0, nullptr), zepStsNullPtrErr);
        EXPECT_EQ(Of::inPlace(y, 0, foreign), zepStsSizeErr);
        EXPECT_EQ(Of::inPlace(y, 4, foreign), zepStsContextMatchErr);
        EXPECT_EQ(std::memcmp(before, y, sizeof y), 0);
        EXPECT_EQ(Of::release(nullptr), zepStsNullPtrErr);
        EXPECT_EQ(Of::release(foreign), zepStsContextMatchErr);
    }

    static void memory() {
        for (const int L : {Of::transformTaps - 1, Of::transformTaps, 2000}) {
            const std::vector<T> taps(static_cast<std::size_t>(L), value<T>(1));
            bool done = false;
            for (int allowed = 0; allowed < 6 && !done; ++allowed) {
                ZepFIRState* state = nullptr;
                ZepStatus status = zepStsNoErr;
                int live = 0;
                {
                    const FailingHeap heap(allowed);
                    status = Of::create(&state, taps.data(), L, nullptr);
                    live = heap.live();
                    if (status == zepStsNoErr) {
                        const int asked = heap.asked();
                        std::vector<T> x(600);
                        EXPECT_EQ(Of::inPlace(x.data(), 600, state), zepStsNoErr);
                        EXPECT_EQ(Of::filter(x.data(), x.data() + 300, 300, state), zepStsNoErr);
                        EXPECT_EQ(heap.asked(), asked);
                        EXPECT_EQ(Of::release(state), zepStsNoErr);
                        EXPECT_EQ(heap.live(), 0);
                        done = true;
                    }
                }
                if (done) {
                    EXPECT_EQ(live, L < Of::transformTaps ? 1 : 2);
                } else {
                    EXPECT_EQ(live, 0) << "with " << allowed << " allocations";
                    EXPECT_EQ(state, nullptr);
                    // Without its transform object the query of its work size is what fails.
                    const bool noObject =
                        L >= Of::transformTaps && (allowed == 0 || (L > 1024 && allowed == 1));
                    EXPECT_EQ(status, noObject ? zepStsNullPtrErr : zepStsMemAllocErr)
                        << L << ", " << allowed;
                }
            }
            EXPECT_TRUE(done);
        }
    }
};

class RealFir : public VariantTest {};
class ComplexFir : public VariantTest {};

TEST_P(RealFir, ShortCallsFollowTheDefinition) { Filter<Zep32f>::shortCalls(); }
TEST_P(ComplexFir, ShortCallsFollowTheDefinition) { Filter<Zep32fc>::shortCalls(); }
TEST_P(RealFir, RoutesMeetAtTheirLimits) { Filter<Zep32f>::limits(); }
TEST_P(ComplexFir, RoutesMeetAtTheirLimits) { Filter<Zep32fc>::limits(); }
TEST_P(RealFir, TransformsFollowTheDefinition) { Filter<Zep32f>::transforms(); }
TEST_P(ComplexFir, TransformsFollowTheDefinition) { Filter<Zep32fc>::transforms(); }
TEST_P(RealFir, AStreamMayBeCutAnywhere) { Filter<Zep32f>::cuts(); }
TEST_P(ComplexFir, AStreamMayBeCutAnywhere) { Filter<Zep32fc>::cuts(); }
TEST_P(RealFir, OneBlockInPlaceIsDirect) { Filter<Zep32f>::inPlaceIsDirectInOneBlock(); }
TEST_P(ComplexFir, OneBlockInPlaceIsDirect) { Filter<Zep32fc>::inPlaceIsDirectInOneBlock(); }
TEST_P(RealFir, CreationReleasesWhatItGot) { Filter<Zep32f>::memory(); }
TEST_P(ComplexFir, CreationReleasesWhatItGot) { Filter<Zep32fc>::memory(); }

TEST_P(RealFir, StatusesComeInOrderAndNothingIsWritten) {
    const State<Zep32fc> foreign({{1, 0}}, nullptr);
    Filter<Zep32f>::statuses(foreign);
}
TEST_P(ComplexFir, StatusesComeInOrderAndNothingIsWritten) {
    const State<Zep32f> foreign({1}, nullptr);
    Filter<Zep32fc>::statuses(foreign);
}

ZEP_FOR_EACH_VARIANT(RealFir);
ZEP_FOR_EACH_VARIANT(ComplexFir);

}  // namespace
}  // namespace zep::test
