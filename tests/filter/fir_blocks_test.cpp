// Overlap-save: blocks of every length, whole and not, at every place of source and destination.
#include <cstring>

#include "filter/fir_support.h"

namespace zep::test {
namespace {

template <class T>
class Blocks {
    using Of = Exports<T>;

    static int blockLength(int L) {
        int N = 4;
        while (N <= L) N *= 2;
        return 2 * N;
    }

    static void oneCall(const Stream<T>& s, Edge edge, int srcSkew, int dstSkew, int stride,
                        std::int64_t allUpTo = 100) {
        const int n = s.length();
        const State<T> state(s.taps, s.past());
        const Guarded<T> src(s.x, edge, srcSkew);
        GuardedBuffer<T> dst(n, edge, dstSkew);
        ASSERT_EQ(Of::filter(src.data(), dst.data(), n, state), zepStsNoErr);
        s.expect(dst.data(), false, stride, allUpTo);
        // What a call leaves behind is its last L samples.
        const Stream<T> next(static_cast<int>(s.taps.size()), 1, false);
        T y{};
        ASSERT_EQ(Of::filter(next.x.data(), &y, 1, state), zepStsNoErr);
        Sum sum;
        sum.add(wide(s.taps[0]), wide(next.x[0]));
        for (int k = 1; k < static_cast<int>(s.taps.size()); ++k)
            sum.add(wide(s.taps[static_cast<std::size_t>(k)]), s.sample(n - k));
        ASSERT_LE(std::abs(wide(y) - sum.value), directBound(sum));
    }

public:
    // Counts around one to seven blocks, so that every number of them is left over from pairs.
    static void counts() {
        int turn = 0;
        for (const int L : {16, 17, 31, 32, 63, 64, 65, 100, 127, 128, 129, 255, 256, 500}) {
            if (L < Of::transformTaps) continue;
            const int N = blockLength(L), step = N - L + 1;
            for (int blocks = 1; blocks <= 7; blocks += thinStep(3))
                for (const int count : {blocks * step - 1, blocks * step, blocks * step + 1,
                                        blocks * step + step / 2, blocks * step + N - step})
                    if (count >= Of::transformSamples) {
                        const Stream<T> s(L, count, turn % 2 == 0);
                        const Edge edge = turn % 3 == 0 ? Edge::Front : Edge::Back;
                        oneCall(s, edge, turn % 5 * 4, turn % 7 * 4, 13);
                        ++turn;
                    }
        }
    }

    // Every place of the destination within the widest vector, against both pages; the samples at
    // another one, also between elements.
    static void places() {
        for (const int L : {64, 90, 128}) {
            const int step = blockLength(L) - L + 1;
            for (int place = 0; place < 64; place += thin() ? 12 : place % 4 == 0 ? 1 : 3) {
                const Stream<T> s(L, 5 * step + place, place % 2 == 0);
                for (const Edge edge : {Edge::Front, Edge::Back})
                    oneCall(s, edge, place % 4 == 1 ? 3 : place / 2 * 4, place, 37);
            }
        }
    }

    // Nor do places change a bit.
    static void bits() {
        for (const int L : {64, 90, 128}) {
            const int n = 5 * (blockLength(L) - L + 1) + 7;
            const std::size_t bytes = static_cast<std::size_t>(n) * sizeof(T);
            const Stream<T> s(L, n, true);
            std::vector<T> first(static_cast<std::size_t>(n));
            for (int place = 0; place < 64; place += 4) {
                const State<T> state(s.taps, s.past());
                const Guarded<T> src(s.x, Edge::Back, place % 3 * 4);
                GuardedBuffer<T> dst(n, Edge::Back, place);
                ASSERT_EQ(Of::filter(src.data(), dst.data(), n, state), zepStsNoErr);
                const void* y = dst.data();
                if (place == 0) std::memcpy(first.data(), y, bytes);
                ASSERT_EQ(std::memcmp(first.data(), y, bytes), 0) << L << " taps, " << place;
            }
        }
    }

    // Transforms of several passes, and those beyond the caches.
    static void lengths() {
        for (const int L : {1000, 1023, 1024, 2047, 2048, 4095, 4096, 9000, 33000}) {
            if (thin() && L > 1024) break;
            const int N = blockLength(L), step = N - L + 1;
            const Stream<T> s(L, 2 * step + step / 3, false);
            oneCall(s, Edge::Back, 4, 8, L < 3000 ? 499 : 20011, 20);
        }
    }

    static void cuts() {
        for (const int L : {64, 200, 1000}) {
            const int N = blockLength(L);
            const Stream<T> s(L, 12 * N);
            const State<T> state(s.taps, s.past());
            std::vector<T> y = s.x;
            for (int n = 0; n < s.length();) {
                const auto draw = static_cast<int>(rng()() % 4096);
                int count = draw % 3 == 0 ? draw % N + 1 : draw % (5 * N) + 1;
                if (count > s.length() - n) count = s.length() - n;
                if (draw % 5 == 0) {
                    ASSERT_EQ(Of::inPlace(y.data() + n, count, state), zepStsNoErr);
                } else {
                    ASSERT_EQ(Of::filter(s.x.data() + n, y.data() + n, count, state), zepStsNoErr);
                }
                n += count;
            }
            s.expect(y.data(), false, 97, 100);
        }
    }

    // A NaN spreads within a call, but the next one knows no more of it than its last L samples.
    static void notANumber() {
        const int L = 100, n = 3000;
        Stream<T> s(L, n, false);
        s.x[1500] = value<T>(NAN);
        const State<T> state(s.taps, nullptr);
        std::vector<T> y = s.x;
        ASSERT_EQ(Of::filter(s.x.data(), y.data(), n, state), zepStsNoErr);
        for (int k = 0; k < L; ++k)
            EXPECT_TRUE(std::isnan(std::abs(wide(y[static_cast<std::size_t>(1500 + k)])))) << k;
        ASSERT_EQ(Of::filter(s.x.data(), y.data(), 1400, state), zepStsNoErr);
        for (int k = 0; k < 1400; ++k)
            ASSERT_TRUE(std::isfinite(std::abs(wide(y[static_cast<std::size_t>(k)])))) << k;
    }
};

class RealBlocks : public VariantTest {};
class ComplexBlocks : public VariantTest {};

TEST_P(RealBlocks, OfEveryCount) { Blocks<Zep32f>::counts(); }
TEST_P(ComplexBlocks, OfEveryCount) { Blocks<Zep32fc>::counts(); }
TEST_P(RealBlocks, AtEveryPlace) { Blocks<Zep32f>::places(); }
TEST_P(ComplexBlocks, AtEveryPlace) { Blocks<Zep32fc>::places(); }
TEST_P(RealBlocks, GiveTheSameBitsAtEveryPlace) { Blocks<Zep32f>::bits(); }
TEST_P(ComplexBlocks, GiveTheSameBitsAtEveryPlace) { Blocks<Zep32fc>::bits(); }
TEST_P(RealBlocks, OfEveryLength) { Blocks<Zep32f>::lengths(); }
TEST_P(ComplexBlocks, OfEveryLength) { Blocks<Zep32fc>::lengths(); }
TEST_P(RealBlocks, ChangeFromCallToCall) { Blocks<Zep32f>::cuts(); }
TEST_P(ComplexBlocks, ChangeFromCallToCall) { Blocks<Zep32fc>::cuts(); }
TEST_P(RealBlocks, ForgetANaN) { Blocks<Zep32f>::notANumber(); }
TEST_P(ComplexBlocks, ForgetANaN) { Blocks<Zep32fc>::notANumber(); }

ZEP_FOR_EACH_VARIANT(RealBlocks);
ZEP_FOR_EACH_VARIANT(ComplexBlocks);

}  // namespace
}  // namespace zep::test
