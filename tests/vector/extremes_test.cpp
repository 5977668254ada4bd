// Extreme values, their indices, and the order of the largest magnitude, against scalar searches.
#include <xmmintrin.h>

#include <algorithm>

#include "support/variant.h"
#include "vector/reduction_cases.h"

namespace zep::test {
namespace {

template <class T>
int firstMax(const std::vector<T>& x) {
    int best = 0;
    for (int n = 1; n < static_cast<int>(x.size()); ++n)
        if (x[static_cast<std::size_t>(n)] > x[static_cast<std::size_t>(best)]) best = n;
    return best;
}
template <class T>
int firstMin(const std::vector<T>& x) {
    int best = 0;
    for (int n = 1; n < static_cast<int>(x.size()); ++n)
        if (x[static_cast<std::size_t>(n)] < x[static_cast<std::size_t>(best)]) best = n;
    return best;
}

// Random values; few different ones, so that extremes repeat; all equal; rising and falling.
template <class T>
std::vector<T> patterned(int len, int pattern) {
    std::vector<T> x = randomValues<T>(len);
    for (int n = 0; n < len; ++n) {
        T& v = x[static_cast<std::size_t>(n)];
        if (pattern == 1) v = static_cast<T>(rng()() % 3);
        if (pattern == 2) v = static_cast<T>(5);
        if (pattern == 3) v = static_cast<T>(n % 120);
        if (pattern == 4) v = static_cast<T>(120 - n % 120);
    }
    return x;
}
constexpr int kPatterns = 5;

class ExtremeValues : public VariantTest {};

template <class T>
void checkExtreme(ZepStatus (*max)(const T*, int, T*), ZepStatus (*min)(const T*, int, T*)) {
    for (int pattern = 0; pattern < kPatterns; ++pattern)
        forVectors<T>([=](int len) { return patterned<T>(len, pattern); },
                      [=](const auto& values, auto& x) {
                          T got{};
                          ASSERT_EQ(max(x.data(), x.size(), &got), zepStsNoErr);
                          ASSERT_EQ(got, *std::max_element(values.begin(), values.end()));
                          ASSERT_EQ(min(x.data(), x.size(), &got), zepStsNoErr);
                          ASSERT_EQ(got, *std::min_element(values.begin(), values.end()));
                      });
    checkReductionErrors<T, T>(max);
    checkReductionErrors<T, T>(min);
}

template <class T>
void checkBoth(ZepStatus (*minMax)(const T*, int, T*, T*)) {
    for (int pattern = 0; pattern < kPatterns; ++pattern)
        forVectors<T>([=](int len) { return patterned<T>(len, pattern); },
                      [=](const auto& values, auto& x) {
                          T least{}, most{};
                          ASSERT_EQ(minMax(x.data(), x.size(), &least, &most), zepStsNoErr);
                          ASSERT_EQ(least, *std::min_element(values.begin(), values.end()));
                          ASSERT_EQ(most, *std::max_element(values.begin(), values.end()));
                      });
    T other{};
    checkReductionErrors<T, T>([&](auto x, int n, auto r) { return minMax(x, n, r, &other); });
    checkReductionErrors<T, T>([&](auto x, int n, auto r) { return minMax(x, n, &other, r); });
}

TEST_P(ExtremeValues, OfAllTypes) {
    checkExtreme<Zep32f>(zepsMax_32f, zepsMin_32f);
    checkExtreme<Zep32s>(zepsMax_32s, zepsMin_32s);
    checkExtreme<Zep64f>(zepsMax_64f, zepsMin_64f);
    checkBoth<Zep8u>(zepsMinMax_8u);
    checkBoth<Zep16s>(zepsMinMax_16s);
    checkBoth<Zep32f>(zepsMinMax_32f);
}

TEST_P(ExtremeValues, EndsOfTheRange) {
    std::vector<Zep32s> x(100, std::numeric_limits<Zep32s>::min());
    Zep32s got = 0;
    ASSERT_EQ(zepsMax_32s(x.data(), 100, &got), zepStsNoErr);
    EXPECT_EQ(got, std::numeric_limits<Zep32s>::min());
    const std::vector<Zep32f> y(100, -std::numeric_limits<Zep32f>::infinity());
    Zep32f most = 0;
    ASSERT_EQ(zepsMax_32f(y.data(), 100, &most), zepStsNoErr);
    EXPECT_EQ(most, -std::numeric_limits<Zep32f>::infinity());
}

ZEP_FOR_EACH_VARIANT(ExtremeValues);

class ExtremeIndices : public VariantTest {};

template <class T>
struct IndexFunctions {
    ZepStatus (*max)(const T*, int, T*, int*);
    ZepStatus (*min)(const T*, int, T*, int*);
    ZepStatus (*both)(const T*, int, T*, int*, T*, int*);
};
const IndexFunctions<Zep32f> kFloats{zepsMaxIndx_32f, zepsMinIndx_32f, zepsMinMaxIndx_32f};
const IndexFunctions<Zep32s> kIntegers{zepsMaxIndx_32s, zepsMinIndx_32s, zepsMinMaxIndx_32s};

template <class T>
bool sameBits(T a, T b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// The value is that of the element at the index, bit for bit.
template <class T>
void checkIndices(const IndexFunctions<T>& f, const std::vector<T>& values, const T* x, int len) {
    const int high = firstMax(values), low = firstMin(values);
    const T most = values[static_cast<std::size_t>(high)];
    const T least = values[static_cast<std::size_t>(low)];
    T value{};
    int index = -1;
    ASSERT_EQ(f.max(x, len, &value, &index), zepStsNoErr);
    ASSERT_EQ(index, high) << len;
    ASSERT_TRUE(sameBits(value, most));
    ASSERT_EQ(f.min(x, len, &value, &index), zepStsNoErr);
    ASSERT_EQ(index, low) << len;
    ASSERT_TRUE(sameBits(value, least));
    T value2{};
    int index2 = -1;
    ASSERT_EQ(f.both(x, len, &value, &index, &value2, &index2), zepStsNoErr);
    ASSERT_EQ(index, low) << len;
    ASSERT_EQ(index2, high) << len;
    ASSERT_TRUE(sameBits(value, least) && sameBits(value2, most));
}

template <class T>
void checkAllIndices(const IndexFunctions<T>& f) {
    for (int pattern = 0; pattern < kPatterns; ++pattern)
        forVectors<T>([=](int len) { return patterned<T>(len, pattern); },
                      [&](const auto& values, auto& x) {
                          checkIndices(f, values, x.data(), x.size());
                          T value{};
                          if (x.size() > 40) return;
                          ASSERT_EQ(f.max(x.data(), x.size(), &value, nullptr), zepStsNoErr);
                          ASSERT_EQ(value, *std::max_element(values.begin(), values.end()));
                          ASSERT_EQ(f.min(x.data(), x.size(), &value, nullptr), zepStsNoErr);
                          ASSERT_EQ(value, *std::min_element(values.begin(), values.end()));
                      });
}

TEST_P(ExtremeIndices, TheLowestOfTies) {
    checkAllIndices(kFloats);
    checkAllIndices(kIntegers);
}

// Two equal extremes at every pair of places around the blocks of the search.
TEST_P(ExtremeIndices, TiesInAllPlaces) {
    std::vector<Zep32f> x(2100, 1.0f);
    const std::size_t places[] = {0,    1,    33,   63,   64,   255,  256, 511,
                                  1000, 1023, 1024, 1087, 2047, 2048, 2099};
    for (const std::size_t a : places)
        for (const std::size_t b : places) {
            if (b < a) continue;
            x[a] = x[b] = 2.0f;
            checkIndices(kFloats, x, x.data(), 2100);
            x[a] = x[b] = -2.0f;
            checkIndices(kFloats, x, x.data(), 2100);
            x[a] = x[b] = 1.0f;
        }
}

TEST_P(ExtremeIndices, ZerosOfBothSignsAreEqual) {
    for (const int len : {2, 40, 1500}) {
        std::vector<Zep32f> x(static_cast<std::size_t>(len), 0.0f);
        x.front() = -0.0f;
        checkIndices(kFloats, x, x.data(), len);
        std::fill(x.begin(), x.end(), -0.0f);
        x.front() = 0.0f;
        checkIndices(kFloats, x, x.data(), len);
    }
}

TEST_P(ExtremeIndices, NotANumberIsPassedOverUnlessItIsFirst) {
    const Zep32f nan = std::numeric_limits<Zep32f>::quiet_NaN();
    for (const int len : {2, 33, 70, 1023, 3000}) {
        std::vector<Zep32f> x = randomValues<Zep32f>(len);
        for (std::size_t n = 1; n < x.size(); n += 3) x[n] = nan;
        checkIndices(kFloats, x, x.data(), len);
        x.front() = nan;
        checkIndices(kFloats, x, x.data(), len);
    }
}

TEST_P(ExtremeIndices, SmallExamples) {
    const Zep32f x[] = {1, 3, 3, 2};
    const Zep32s y[] = {5, 1, 1};
    Zep32f value = 0;
    Zep32s least = 0;
    int index = -1;
    ASSERT_EQ(zepsMaxIndx_32f(x, 4, &value, &index), zepStsNoErr);
    EXPECT_EQ(value, 3.0f);
    EXPECT_EQ(index, 1);
    ASSERT_EQ(zepsMinIndx_32s(y, 3, &least, &index), zepStsNoErr);
    EXPECT_EQ(least, 1);
    EXPECT_EQ(index, 1);
}

template <class T>
void checkIndexErrors(const IndexFunctions<T>& f) {
    int index = 5, index2 = 6;
    T value{}, value2{};
    for (const auto one : {f.max, f.min}) {
        checkReductionErrors<T, T>([&](auto x, int n, auto r) { return one(x, n, r, &index); });
        checkReductionErrors<T, T>([&](auto x, int n, auto r) { return one(x, n, r, nullptr); });
    }
    checkReductionErrors<T, T>(
        [&](auto x, int n, auto r) { return f.both(x, n, r, &index, &value2, &index2); });
    checkReductionErrors<T, T>(
        [&](auto x, int n, auto r) { return f.both(x, n, &value, &index, r, &index2); });
    checkReductionErrors<T, int>(
        [&](auto x, int n, auto r) { return f.both(x, n, &value, r, &value2, &index2); });
    checkReductionErrors<T, int>(
        [&](auto x, int n, auto r) { return f.both(x, n, &value, &index, &value2, r); });
    EXPECT_EQ(index, 5);
    EXPECT_EQ(index2, 6);
}

TEST_P(ExtremeIndices, Errors) {
    checkIndexErrors(kFloats);
    checkIndexErrors(kIntegers);
}

ZEP_FOR_EACH_VARIANT(ExtremeIndices);

class MaxOrder : public VariantTest {};

constexpr unsigned kInvalidFlag = 1;

int orderOf(const std::vector<Zep32f>& x, bool* special) {
    Zep32f largest = 0;
    for (const Zep32f v : x) {
        if (!std::isfinite(v))
            *special = true;
        else
            largest = std::max(largest, std::fabs(v));
    }
    if (largest == 0) return 0;
    return largest < std::numeric_limits<Zep32f>::min() ? -126 : std::ilogb(largest) + 1;
}

TEST_P(MaxOrder, IsTheExponentOfTheLargestFiniteMagnitude) {
    const auto make = [](int len) {
        std::vector<Zep32f> x = randomValues<Zep32f>(len);
        const int kind = static_cast<int>(rng()() % 4);
        for (Zep32f& v : x) {
            if (kind == 0) v = std::ldexp(v, static_cast<int>(rng()() % 250) - 125);
            if (kind == 1) v = 0;
            if (kind == 2) v = std::ldexp(v, -127);
        }
        return x;
    };
    forVectors<Zep32f>(make, [](const auto& values, auto& x) {
        bool special = false;
        int order = 999;
        ASSERT_EQ(zepsMaxOrder_32f(x.data(), x.size(), &order), zepStsNoErr);
        ASSERT_EQ(order, orderOf(values, &special));
    });
}

TEST_P(MaxOrder, PassesOverWhatIsNotFiniteAndSaysSo) {
    const Zep32f infinity = std::numeric_limits<Zep32f>::infinity();
    const Zep32f nan = std::numeric_limits<Zep32f>::quiet_NaN();
    for (const int len : {1, 3, 16, 17, 70, 200})
        for (int at = 0; at < len; at += 1 + len / 20)
            for (const Zep32f bad : {infinity, -infinity, nan, -nan}) {
                std::vector<Zep32f> x = randomValues<Zep32f>(len);
                x[static_cast<std::size_t>(at)] = bad;
                bool special = false;
                int order = 999;
                ASSERT_EQ(zepsMaxOrder_32f(x.data(), len, &order), zepStsNanArg);
                ASSERT_EQ(order, orderOf(x, &special));
                ASSERT_TRUE(special);
            }
}

TEST_P(MaxOrder, ClearsTheInvalidFlagAndNoOther) {
    const unsigned word = _mm_getcsr();
    const Zep32f x[] = {1.0f, 0.75f, std::numeric_limits<Zep32f>::quiet_NaN()};
    for (const int len : {2, 3})
        for (const unsigned before : {0u, kInvalidFlag, kInvalidFlag | 0x20u}) {
            _mm_setcsr((word & ~0x3Fu) | before);
            int order = 0;
            const ZepStatus status = zepsMaxOrder_32f(x, len, &order);
            const unsigned after = _mm_getcsr();
            _mm_setcsr(word);
            EXPECT_EQ(status, len == 3 ? zepStsNanArg : zepStsNoErr);
            EXPECT_EQ(order, 1);
            EXPECT_EQ(after & 0x3Fu, before & 0x20u);
            EXPECT_EQ(after & ~0x3Fu, word & ~0x3Fu);
        }
}

TEST_P(MaxOrder, TestsTheLengthFirst) {
    const Zep32f x[] = {0.75f};
    int order = 5;
    EXPECT_EQ(zepsMaxOrder_32f(nullptr, 0, nullptr), zepStsSizeErr);
    EXPECT_EQ(zepsMaxOrder_32f(x, -1, &order), zepStsSizeErr);
    EXPECT_EQ(zepsMaxOrder_32f(nullptr, 1, &order), zepStsNullPtrErr);
    EXPECT_EQ(zepsMaxOrder_32f(x, 1, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(order, 5);
    EXPECT_EQ(zepsMaxOrder_32f(x, 1, &order), zepStsNoErr);
    EXPECT_EQ(order, 0);
}

ZEP_FOR_EACH_VARIANT(MaxOrder);

}  // namespace
}  // namespace zep::test
