// Index sorts against a recursive transcription of their documented steps on pairs.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

template <class T>
using Pairs = std::vector<std::pair<T, int>>;

// a belongs before b.
template <class T>
struct Order {
    bool ascending;
    bool operator()(T a, T b) const { return ascending ? a < b : b < a; }
};

template <class T>
void documentedSteps(Pairs<T>& x, int lo, int hi, Order<T> before) {
    const auto at = [&](int n) -> auto& { return x[static_cast<std::size_t>(n)]; };
    const int count = hi - lo + 1;
    if (count < 2) return;
    if (count <= 9) {
        int last = lo;
        for (int n = lo; n <= hi; ++n)
            if (!before(at(n).first, at(last).first)) last = n;
        std::swap(at(last), at(hi));
        return documentedSteps(x, lo, hi - 1, before);
    }
    const int mid = lo + count / 2;
    for (const auto& [a, b] : {std::pair{lo, hi}, {mid, hi}, {lo, mid}})
        if (before(at(b).first, at(a).first)) std::swap(at(a), at(b));
    const T pivot = at(mid).first;
    int i = lo, j = hi;
    while (true) {
        while (i <= hi && !before(pivot, at(i).first)) ++i;
        while (j >= lo && before(pivot, at(j).first)) --j;
        if (i > j) break;
        std::swap(at(i), at(j));
    }
    do --i;
    while (i >= lo && !before(at(i).first, pivot));
    do ++j;
    while (j <= hi && !before(pivot, at(j).first));
    documentedSteps(x, lo, i, before);
    documentedSteps(x, j, hi, before);
}

template <class T>
struct Function {
    bool ascending;
    ZepStatus (*call)(T*, int*, int);
};

template <class T>
std::vector<T> patterned(int pattern, int len) {
    std::vector<T> x;
    for (int n = 0; n < len; ++n) {
        const auto random = static_cast<int>(rng()() % 2000000) - 1000000;
        x.push_back(static_cast<T>(pattern == 0   ? random
                                   : pattern == 1 ? random % 5
                                   : pattern == 2 ? n
                                   : pattern == 3 ? -n
                                   : pattern == 4 ? 1
                                                  : std::min(n, len - n)));
    }
    return x;
}
constexpr int kPatterns = 6;

template <class T>
void checkSort(const Function<T>& f, const std::vector<T>& x, Edge edge, int skew) {
    const int len = static_cast<int>(x.size());
    const std::size_t bytes = x.size() * sizeof(T), indexBytes = x.size() * sizeof(int);
    GuardedBuffer<unsigned char> values(static_cast<int>(bytes), edge, skew);
    GuardedBuffer<unsigned char> indices(static_cast<int>(indexBytes), edge, skew);
    std::memcpy(values.data(), x.data(), bytes);
    ASSERT_EQ(
        f.call(reinterpret_cast<T*>(values.data()), reinterpret_cast<int*>(indices.data()), len),
        zepStsNoErr);
    Pairs<T> expected;
    for (int n = 0; n < len; ++n) expected.emplace_back(x[static_cast<std::size_t>(n)], n);
    documentedSteps(expected, 0, len - 1, Order<T>{f.ascending});
    for (int n = 0; n < len; ++n) {
        const auto i = static_cast<std::size_t>(n);
        T value;
        int index;
        std::memcpy(&value, values.data() + i * sizeof value, sizeof value);
        std::memcpy(&index, indices.data() + i * sizeof index, sizeof index);
        ASSERT_EQ(index, expected[i].second) << "len " << len << " n " << n;
        ASSERT_EQ(std::memcmp(&value, &expected[i].first, sizeof value), 0);
        ASSERT_EQ(value, x[static_cast<std::size_t>(index)]);
        if (n > 0) {
            ASSERT_FALSE(Order<T>{f.ascending}(value, expected[i - 1].first));
        }
    }
}

template <class T>
void checkFunction(const Function<T>& f) {
    for (int pattern = 0; pattern < kPatterns; ++pattern) {
        for (const int len : sweepLengths())
            checkSort(f, patterned<T>(pattern, len), len % 2 == 0 ? Edge::Front : Edge::Back,
                      len % 5);
        for (const int len : {100, 333, 1000, 2500})
            checkSort(f, patterned<T>(pattern, len), Edge::Back, 0);
        if (::testing::Test::HasFatalFailure()) return;
    }
    T x[2] = {T{1}, T{2}};
    int index[2] = {7, 8};
    for (const int len : {2, 0, -1}) {
        EXPECT_EQ(f.call(nullptr, index, len), zepStsNullPtrErr);
        EXPECT_EQ(f.call(x, nullptr, len), zepStsNullPtrErr);
    }
    for (const int len : {0, -1}) EXPECT_EQ(f.call(x, index, len), zepStsSizeErr);
    EXPECT_EQ(index[0], 7);
    EXPECT_EQ(f.call(x, index, 1), zepStsNoErr);
    EXPECT_EQ(index[0], 0);
    EXPECT_EQ(index[1], 8);
    EXPECT_EQ(x[0], T{1});
}

class SortIndex : public VariantTest {};

TEST_P(SortIndex, FollowsTheDocumentedSteps) {
    checkFunction<Zep32f>({true, zepsSortIndexAscend_32f_I});
    checkFunction<Zep32f>({false, zepsSortIndexDescend_32f_I});
    checkFunction<Zep32s>({false, zepsSortIndexDescend_32s_I});
    checkFunction<Zep64f>({false, zepsSortIndexDescend_64f_I});
}

// Two equal elements, zeros of both signs among them, at any two places: the steps decide then.
template <class T>
void checkOnePair(const Function<T>& f) {
    for (const int len : {2, 3, 8, 9, 10, 15, 16, 17, 33, 64, 65, 100, 128, 129, 256, 257, 300})
        for (int k = 0; k < 6; ++k) {
            std::vector<T> x = patterned<T>(k % 2 == 0 ? 2 : 3, len);
            std::shuffle(x.begin(), x.end(), rng());
            const auto a = rng()() % x.size(), b = rng()() % x.size();
            x[a] = k < 4 ? x[b] : T{0};
            if (k >= 4) x[b] = static_cast<T>(-x[a]);
            checkSort(f, x, Edge::Back, k % 3);
            if (::testing::Test::HasFatalFailure()) return;
        }
}

TEST_P(SortIndex, OneEqualPairFollowsThemToo) {
    checkOnePair<Zep32f>({true, zepsSortIndexAscend_32f_I});
    checkOnePair<Zep32f>({false, zepsSortIndexDescend_32f_I});
    checkOnePair<Zep32s>({false, zepsSortIndexDescend_32s_I});
    checkOnePair<Zep64f>({false, zepsSortIndexDescend_64f_I});
}

// Where nothing is equal, at every length that the short way may take, ends of the range among them.
template <class T>
void checkDifferent(const Function<T>& f) {
    for (int len = 1; len <= 300; len += thinStep(7)) {
        std::vector<T> x = patterned<T>(2, len);
        x[0] = std::numeric_limits<T>::lowest();
        if (len > 1) x[1] = std::numeric_limits<T>::max();
        if (len > 3 && std::numeric_limits<T>::has_infinity) {
            x[2] = std::numeric_limits<T>::infinity();
            x[3] = -std::numeric_limits<T>::infinity();
        }
        std::shuffle(x.begin(), x.end(), rng());
        checkSort(f, x, len % 2 == 0 ? Edge::Front : Edge::Back, len % 3);
        if (::testing::Test::HasFatalFailure()) return;
    }
}

TEST_P(SortIndex, DifferentElementsOfAllShortLengths) {
    checkDifferent<Zep32f>({true, zepsSortIndexAscend_32f_I});
    checkDifferent<Zep32f>({false, zepsSortIndexDescend_32f_I});
    checkDifferent<Zep32s>({false, zepsSortIndexDescend_32s_I});
    checkDifferent<Zep64f>({false, zepsSortIndexDescend_64f_I});
}

TEST_P(SortIndex, OrderOfEqualElements) {
    Zep32f x[3] = {1, 1, 0};
    int index[3];
    ASSERT_EQ(zepsSortIndexAscend_32f_I(x, index, 3), zepStsNoErr);
    // The last of the largest moves to the end, then the smallest is in its place.
    EXPECT_EQ(index[0], 2);
    EXPECT_EQ(index[1], 0);
    EXPECT_EQ(index[2], 1);
}

TEST_P(SortIndex, NotANumbersEndAndKeepEveryElement) {
    for (const int len : {2, 9, 10, 70, 256, 1000, 60000})
        for (const int every : {1, 2, 5}) {
            std::vector<Zep32f> x = patterned<Zep32f>(0, len);
            for (std::size_t n = 0; n < x.size(); n += static_cast<std::size_t>(every))
                x[n] = std::nanf("");
            for (const auto call : {zepsSortIndexAscend_32f_I, zepsSortIndexDescend_32f_I}) {
                GuardedBuffer<Zep32f> y(len, Edge::Back);
                GuardedBuffer<int> index(len, Edge::Back);
                std::copy(x.begin(), x.end(), y.begin());
                ASSERT_EQ(call(y.data(), index.data(), len), zepStsNoErr);
                std::vector<bool> seen(x.size());
                for (int n = 0; n < len; ++n) {
                    const auto i = static_cast<std::size_t>(index[n]);
                    ASSERT_LT(i, x.size());
                    ASSERT_FALSE(seen[i]);
                    seen[i] = true;
                    ASSERT_EQ(std::memcmp(&y[n], &x[i], sizeof(Zep32f)), 0);
                }
            }
        }
}

ZEP_FOR_EACH_VARIANT(SortIndex);

}  // namespace
}  // namespace zep::test
