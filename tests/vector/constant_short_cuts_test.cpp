// Constants that turn an operation into a copy, a clear or nothing, and constants that nothing can
// be divided by.
#include <sys/mman.h>
#include <unistd.h>

#include "support/variant.h"
#include "vector/arithmetic_subject.h"

namespace zep::test {
namespace {

constexpr Zep32f kInf = std::numeric_limits<Zep32f>::infinity();
constexpr Zep32f kNan = std::numeric_limits<Zep32f>::quiet_NaN();
constexpr Zep64f kInf64 = std::numeric_limits<Zep64f>::infinity();
constexpr Zep64f kNan64 = std::numeric_limits<Zep64f>::quiet_NaN();

// Bits too: a copy keeps -0 and the payload of NaN.
template <class T>
void expectSameBits(const Operand<T>& y, const std::vector<T>& expected, const char* what) {
    const std::vector<T> got = y.values();
    EXPECT_EQ(std::memcmp(got.data(), expected.data(), got.size() * sizeof(T)), 0)
        << what << " len " << got.size();
}

class ConstantShortCuts : public VariantTest {
protected:
    // call(src, dst, len) has to give exactly what expected says of the source.
    template <class T, class Call>
    void expectResult(const char* what, Call call, auto expected) {
        for (const int len : {1, 2, 3, 7, 8, 9, 31, 64, 70, 1000, 5000}) {
            Operand<T> x(len), y(len);
            std::vector<T> x0 = mixedValues<T>(len);
            x0.front() = -T{0};
            x = x0;
            ASSERT_EQ(call(x.data(), y.data(), len), zepStsNoErr) << what;
            for (T& v : x0) v = expected(v);
            expectSameBits(y, x0, what);
            Operand<T> z(len);
            const std::vector<T> z0 = x.values();
            z = z0;
            ASSERT_EQ(call(z.data(), z.data(), len), zepStsNoErr) << what << " in place";
            expectSameBits(z, x0, what);
        }
    }
    template <class T, class Call>
    void expectCopy(const char* what, Call call) {
        expectResult<T>(what, call, [](T x) { return x; });
    }
    template <class T, class Call>
    void expectClear(const char* what, Call call) {
        expectResult<T>(what, call, [](T) { return T{0}; });
    }
};

TEST_P(ConstantShortCuts, AddingOrSubtractingZeroCopies) {
    for (const Zep32f zero : {0.0f, -0.0f}) {
        expectCopy<Zep32f>("AddC_32f",
                           [&](auto x, auto y, int n) { return zepsAddC_32f(x, zero, y, n); });
        expectCopy<Zep32f>("SubC_32f",
                           [&](auto x, auto y, int n) { return zepsSubC_32f(x, zero, y, n); });
        expectCopy<Zep64f>("AddC_64f",
                           [&](auto x, auto y, int n) { return zepsAddC_64f(x, zero, y, n); });
        expectCopy<Zep64f>("SubC_64f",
                           [&](auto x, auto y, int n) { return zepsSubC_64f(x, zero, y, n); });
    }
}

TEST_P(ConstantShortCuts, MultiplyingByOneCopiesAndByZeroClears) {
    expectCopy<Zep32f>("MulC_32f",
                       [](auto x, auto y, int n) { return zepsMulC_32f(x, 1.0f, y, n); });
    expectCopy<Zep64f>("MulC_64f",
                       [](auto x, auto y, int n) { return zepsMulC_64f(x, 1.0, y, n); });
    for (const Zep32f zero : {0.0f, -0.0f}) {
        expectClear<Zep32f>("MulC_32f",
                            [&](auto x, auto y, int n) { return zepsMulC_32f(x, zero, y, n); });
        expectClear<Zep64f>("MulC_64f",
                            [&](auto x, auto y, int n) { return zepsMulC_64f(x, zero, y, n); });
    }
}

TEST_P(ConstantShortCuts, DividingByOneCopiesAndByInfinityClears) {
    expectCopy<Zep32f>("DivC_32f",
                       [](auto x, auto y, int n) { return zepsDivC_32f(x, 1.0f, y, n); });
    for (const Zep32f inf : {kInf, -kInf})
        expectClear<Zep32f>("DivC_32f",
                            [&](auto x, auto y, int n) { return zepsDivC_32f(x, inf, y, n); });
}

// In place: x and y of the harness are made equal first.
TEST_P(ConstantShortCuts, InPlaceNothingHappensOrTheVectorIsCleared) {
    const auto inPlace = [](auto f) {
        return [f](auto x, auto y, int n) {
            std::memmove(y, x, static_cast<std::size_t>(n) * sizeof *x);
            return f(y, n);
        };
    };
    for (const Zep32f zero : {0.0f, -0.0f}) {
        expectCopy<Zep32f>("AddC_32f_I",
                           inPlace([&](auto y, int n) { return zepsAddC_32f_I(zero, y, n); }));
        expectCopy<Zep32f>("SubC_32f_I",
                           inPlace([&](auto y, int n) { return zepsSubC_32f_I(zero, y, n); }));
        expectCopy<Zep64f>("SubC_64f_I",
                           inPlace([&](auto y, int n) { return zepsSubC_64f_I(zero, y, n); }));
        expectClear<Zep32f>("MulC_32f_I",
                            inPlace([&](auto y, int n) { return zepsMulC_32f_I(zero, y, n); }));
        expectClear<Zep64f>("MulC_64f_I",
                            inPlace([&](auto y, int n) { return zepsMulC_64f_I(zero, y, n); }));
    }
    expectCopy<Zep32f>("MulC_32f_I",
                       inPlace([](auto y, int n) { return zepsMulC_32f_I(1.0f, y, n); }));
    expectCopy<Zep64f>("MulC_64f_I",
                       inPlace([](auto y, int n) { return zepsMulC_64f_I(1.0, y, n); }));
    expectCopy<Zep32f>("DivC_32f_I",
                       inPlace([](auto y, int n) { return zepsDivC_32f_I(1.0f, y, n); }));
    expectClear<Zep32f>("DivC_32f_I",
                        inPlace([](auto y, int n) { return zepsDivC_32f_I(kInf, y, n); }));
    expectCopy<Zep64f>("DivC_64f_I",
                       inPlace([](auto y, int n) { return zepsDivC_64f_I(1.0, y, n); }));
    expectClear<Zep64f>("DivC_64f_I",
                        inPlace([](auto y, int n) { return zepsDivC_64f_I(kInf64, y, n); }));
}

// "Touching nothing" is literal: a read-only vector is accepted.
TEST_P(ConstantShortCuts, ConstantsWithoutEffectDoNotTouchTheVectorInPlace) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* map = mmap(nullptr, page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(map, MAP_FAILED);
    EXPECT_EQ(zepsAddC_32f_I(0.0f, static_cast<Zep32f*>(map), 100), zepStsNoErr);
    EXPECT_EQ(zepsSubC_32f_I(-0.0f, static_cast<Zep32f*>(map), 100), zepStsNoErr);
    EXPECT_EQ(zepsSubC_64f_I(0.0, static_cast<Zep64f*>(map), 100), zepStsNoErr);
    EXPECT_EQ(zepsMulC_32f_I(1.0f, static_cast<Zep32f*>(map), 100), zepStsNoErr);
    EXPECT_EQ(zepsMulC_64f_I(1.0, static_cast<Zep64f*>(map), 100), zepStsNoErr);
    Operand<Zep32f> y(100);
    EXPECT_EQ(zepsMulC_32f(static_cast<Zep32f*>(map), 0.0f, y.data(), 100), zepStsNoErr);
    for (int n = 0; n < 100; ++n) EXPECT_EQ(y.get(n), 0.0f);
    munmap(map, page);
}

TEST_P(ConstantShortCuts, NanMatchesNoShortCut) {
    for (int len = 1; len <= 40; ++len) {
        std::vector<Zep32f> x(static_cast<std::size_t>(len), 1.0f), y(x);
        for (const auto f : {zepsAddC_32f, zepsSubC_32f, zepsMulC_32f, zepsDivC_32f}) {
            std::fill(y.begin(), y.end(), 5.0f);
            ASSERT_EQ(f(x.data(), kNan, y.data(), len), zepStsNoErr);
            for (const Zep32f v : y) ASSERT_TRUE(std::isnan(v));
        }
        std::vector<Zep64f> z(static_cast<std::size_t>(len), 1.0);
        ASSERT_EQ(zepsDivC_64f_I(kNan64, z.data(), len), zepStsNoErr);
        for (const Zep64f v : z) ASSERT_TRUE(std::isnan(v));
    }
}

TEST_P(ConstantShortCuts, DivisionByZeroIsAnErrorAfterTheOthersAndWritesNothing) {
    const std::vector<Zep32f> x(9, 3.0f);
    std::vector<Zep32f> y(9, 7.0f);
    std::vector<Zep64f> z(9, 7.0);
    std::vector<Zep32fc> c(9, Zep32fc{7.0f, 8.0f});
    for (const Zep32f zero : {0.0f, -0.0f}) {
        EXPECT_EQ(zepsDivC_32f(x.data(), zero, y.data(), 9), zepStsDivByZeroErr);
        EXPECT_EQ(zepsDivC_32f_I(zero, y.data(), 9), zepStsDivByZeroErr);
        EXPECT_EQ(zepsDivC_64f_I(zero, z.data(), 9), zepStsDivByZeroErr);
        EXPECT_EQ(zepsDivC_32fc_I({zero, -zero}, c.data(), 9), zepStsDivByZeroErr);
        EXPECT_EQ(zepsDivC_32f(x.data(), zero, y.data(), 0), zepStsSizeErr);
        EXPECT_EQ(zepsDivC_32f_I(zero, y.data(), -1), zepStsSizeErr);
        EXPECT_EQ(zepsDivC_64f_I(zero, z.data(), 0), zepStsSizeErr);
        EXPECT_EQ(zepsDivC_32fc_I({zero, zero}, c.data(), 0), zepStsSizeErr);
        EXPECT_EQ(zepsDivC_32f(nullptr, zero, y.data(), 0), zepStsNullPtrErr);
        EXPECT_EQ(zepsDivC_32fc_I({zero, zero}, nullptr, 0), zepStsNullPtrErr);
    }
    // The magnitude underflows: both parts are numbers, their squares are not.
    EXPECT_EQ(zepsDivC_32fc_I({1e-30f, -1e-30f}, c.data(), 9), zepStsDivByZeroErr);
    for (const Zep32f v : y) EXPECT_EQ(v, 7.0f);
    for (const Zep64f v : z) EXPECT_EQ(v, 7.0);
    for (const Zep32fc v : c) EXPECT_TRUE(v.re == 7.0f && v.im == 8.0f);
}

TEST_P(ConstantShortCuts, AddC64fCopiesByA32BitCountOfBytes) {
    Operand<Zep64f> x(1), y(1);
    x.set(0, 2.5);
    y.set(0, 0.0);
    constexpr int kQuarter = 1 << 28;
    for (const int len : {kQuarter, kQuarter + 1, 2 * kQuarter - 1, 2 * kQuarter})
        EXPECT_EQ(zepsAddC_64f(x.data(), 0.0, y.data(), len), zepStsSizeErr) << len;
    EXPECT_EQ(y.get(0), 0.0);
    // Past 2^32 bytes the count starts again.
    EXPECT_EQ(zepsAddC_64f(x.data(), 0.0, y.data(), 2 * kQuarter + 1), zepStsNoErr);
    EXPECT_EQ(y.get(0), 2.5);
}

ZEP_FOR_EACH_VARIANT(ConstantShortCuts);

}  // namespace
}  // namespace zep::test
