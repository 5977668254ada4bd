// Sample rate stepping against the definition, whole signals and in blocks.
#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

// There may be none.
template <class T>
bool sameBytes(const T* got, const std::vector<T>& expected) {
    return expected.empty() || std::memcmp(got, expected.data(), expected.size() * sizeof(T)) == 0;
}

bool same(const Zep32f& a, const Zep32f& b) { return std::memcmp(&a, &b, sizeof a) == 0; }
bool same(const Zep32fc& a, const Zep32fc& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

ZepStatus sampleDown(const Zep32f* src, int len, Zep32f* dst, int* dstLen, int factor, int* phase) {
    return zepsSampleDown_32f(src, len, dst, dstLen, factor, phase);
}
ZepStatus sampleDown(const Zep32fc* src, int len, Zep32fc* dst, int* dstLen, int factor,
                     int* phase) {
    return zepsSampleDown_32fc(src, len, dst, dstLen, factor, phase);
}

class SampleRate : public VariantTest {
protected:
    template <class F>
    void forBothTypes(F f) {
        f(Zep32f{});
        f(Zep32fc{});
    }
};

template <class T>
void checkDown(int len, int factor, int phase, Edge edge, int skew) {
    GuardedBuffer<T> src(len, edge, skew);
    std::vector<T> x(static_cast<std::size_t>(len)), expected;
    fillRandom(x);
    std::memcpy(src.data(), x.data(), x.size() * sizeof(T));
    std::int64_t n = phase;
    for (; n < len; n += factor) expected.push_back(x[static_cast<std::size_t>(n)]);
    const int count = static_cast<int>(expected.size());
    // One element at least, so that there is a pointer.
    GuardedBuffer<T> dst(count == 0 ? 1 : count, edge, skew);
    int dstLen = -7, next = phase;
    ASSERT_EQ(sampleDown(src.data(), len, dst.data(), &dstLen, factor, &next), zepStsNoErr);
    ASSERT_EQ(dstLen, count) << len << ' ' << factor << ' ' << phase;
    ASSERT_EQ(next, n - len) << len << ' ' << factor << ' ' << phase;
    ASSERT_TRUE(sameBytes(dst.data(), expected)) << len << ' ' << factor << ' ' << phase;
    next = phase;
    ASSERT_EQ(sampleDown(src.data(), len, src.data(), &dstLen, factor, &next), zepStsNoErr);
    ASSERT_TRUE(sameBytes(src.data(), expected))
        << "in place " << len << ' ' << factor << ' ' << phase;
}

TEST_P(SampleRate, DownKeepsEveryStep) {
    forBothTypes([]<class T>(T) {
        for (const int len : sweepLengths(70))
            for (const int factor : {1, 2, 3, 4, 5, 16, 69, 100})
                for (const int phase : {0, 1, factor / 2, factor - 1})
                    if (phase < factor)
                        checkDown<T>(len, factor, phase, len % 2 == 0 ? Edge::Front : Edge::Back,
                                     len % 3 == 0 ? 0 : len % 3);
    });
}

TEST_P(SampleRate, DownGoesOnOverBlocks) {
    forBothTypes([]<class T>(T) {
        constexpr int kLen = 997;
        std::vector<T> x(kLen);
        fillRandom(x);
        for (const int factor : {2, 3, 7, 50}) {
            std::vector<T> y;
            int phase = 1;
            for (int from = 0; from < kLen;) {
                const int len = std::min(1 + static_cast<int>(rng()() % 60), kLen - from);
                std::vector<T> part(static_cast<std::size_t>(len));
                int count = 0;
                ASSERT_EQ(sampleDown(&x[static_cast<std::size_t>(from)], len, part.data(), &count,
                                     factor, &phase),
                          zepStsNoErr);
                y.insert(y.end(), part.begin(), part.begin() + count);
                from += len;
            }
            std::size_t n = 1;
            for (const T& v : y) {
                ASSERT_TRUE(same(v, x[n]));
                n += static_cast<std::size_t>(factor);
            }
            ASSERT_GE(n, x.size());
        }
    });
}

TEST_P(SampleRate, DownTakesTheLargestNumbers) {
    const Zep32f x[2] = {1, 2};
    Zep32f y[2] = {9, 9};
    constexpr int kMost = std::numeric_limits<int>::max();
    int count = -1, phase = kMost - 1;
    EXPECT_EQ(zepsSampleDown_32f(x, 2, y, &count, kMost, &phase), zepStsNoErr);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(phase, kMost - 3);
    phase = 1;
    EXPECT_EQ(zepsSampleDown_32f(x, 2, y, &count, kMost, &phase), zepStsNoErr);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(y[0], 2);
    EXPECT_EQ(phase, kMost - 1);
}

TEST_P(SampleRate, UpPutsZerosBetween) {
    for (const int len : sweepLengths(40))
        for (const int factor : {1, 2, 3, 4, 5, 7, 8, 9, 16, 33})
            for (const int phase : {0, 1, factor / 2, factor - 1}) {
                if (phase >= factor) continue;
                const Edge edge = len % 2 == 0 ? Edge::Front : Edge::Back;
                const int skew = len % 3;
                GuardedBuffer<Zep32fc> src(len, edge, skew), dst(len * factor, edge, skew);
                std::vector<Zep32fc> x(static_cast<std::size_t>(len));
                fillRandom(x);
                std::memcpy(src.data(), x.data(), x.size() * sizeof(Zep32fc));
                std::vector<Zep32fc> expected(static_cast<std::size_t>(len * factor));
                for (int n = 0; n < len; ++n)
                    expected[static_cast<std::size_t>(n * factor + phase)] =
                        x[static_cast<std::size_t>(n)];
                int dstLen = -1, p = phase;
                ASSERT_EQ(zepsSampleUp_32fc(src.data(), len, dst.data(), &dstLen, factor, &p),
                          zepStsNoErr);
                ASSERT_EQ(dstLen, len * factor);
                ASSERT_EQ(p, phase);
                ASSERT_EQ(
                    std::memcmp(dst.data(), expected.data(), expected.size() * sizeof(Zep32fc)), 0)
                    << len << ' ' << factor << ' ' << phase;
            }
}

template <class F, class T>
void checkStatuses(F f, T) {
    const T x[2] = {};
    T y[4], untouched[4];
    std::memset(y, 0x5A, sizeof y);
    std::memcpy(untouched, y, sizeof y);
    int count = -7, phase = 9;
    EXPECT_EQ(f(nullptr, 0, y, &count, 0, &phase), zepStsNullPtrErr);
    EXPECT_EQ(f(x, 0, nullptr, &count, 0, &phase), zepStsNullPtrErr);
    EXPECT_EQ(f(x, 0, y, nullptr, 0, &phase), zepStsNullPtrErr);
    EXPECT_EQ(f(x, 0, y, &count, 0, nullptr), zepStsNullPtrErr);
    constexpr int kLeast = std::numeric_limits<int>::min();
    for (const int bad : {0, -1, kLeast}) {
        EXPECT_EQ(f(x, bad, y, &count, 0, &phase), zepStsSizeErr);
        EXPECT_EQ(f(x, 2, y, &count, bad, &phase), zepStsSampleFactorErr);
    }
    for (const int bad : {-1, 2, kLeast, std::numeric_limits<int>::max()}) {
        phase = bad;
        EXPECT_EQ(f(x, 2, y, &count, 2, &phase), zepStsSamplePhaseErr);
        EXPECT_EQ(phase, bad);
    }
    phase = 1;
    EXPECT_EQ(f(x, 2, y, &count, 1, &phase), zepStsSamplePhaseErr);
    EXPECT_EQ(count, -7);
    EXPECT_EQ(std::memcmp(y, untouched, sizeof y), 0);
}

TEST_P(SampleRate, TestsItsArgumentsInOrderAndWritesNothing) {
    checkStatuses(zepsSampleUp_32fc, Zep32fc{});
    checkStatuses(zepsSampleDown_32fc, Zep32fc{});
    checkStatuses(zepsSampleDown_32f, Zep32f{});
}

ZEP_FOR_EACH_VARIANT(SampleRate);

}  // namespace
}  // namespace zep::test
