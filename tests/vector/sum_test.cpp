// Floating sums, means, deviations, norms and dot products against sums in extended precision.
//
// Tolerances: a partial sum of m terms with unit roundoff u is off by at most m * u times the sum of
// magnitudes (Higham, Accuracy and Stability of Numerical Algorithms, 4.2). Every variant has at
// least 4 partial sums, so that m <= len / 4 + 12 with the merging; the rounding to the result adds
// half a unit of its own.
#include "support/variant.h"
#include "vector/reduction_cases.h"

namespace zep::test {
namespace {

using Extended = long double;

constexpr double kSingle = 0x1p-24, kDouble = 0x1p-53;
constexpr int kHints[] = {zepAlgHintFast, zepAlgHintNone, zepAlgHintAccurate, 77};

struct Exact {
    Extended sum = 0, magnitudes = 0;
    void add(Extended x) {
        sum += x;
        magnitudes += x < 0 ? -x : x;
    }
    // Of a sum in `width`, rounded to `result`.
    double tolerance(int len, double width, double result) const {
        return static_cast<double>(magnitudes) * (len / 4 + 12) * width +
               static_cast<double>(sum < 0 ? -sum : sum) * result * 1.0001;
    }
};

template <class T>
Exact exactSum(const std::vector<T>& x) {
    Exact e;
    for (const T v : x) e.add(v);
    return e;
}

class Sums : public VariantTest {};

TEST_P(Sums, SingleIsSummedInDoubleAndRoundedOnce) {
    forVectors<Zep32f>(randomValues<Zep32f>, [](const auto& values, auto& x) {
        const int len = x.size();
        const Exact e = exactSum(values);
        for (const int hint : kHints) {
            Zep32f sum = 0, mean = 0;
            ASSERT_EQ(zepsSum_32f(x.data(), len, &sum, hint), zepStsNoErr);
            ASSERT_NEAR(sum, e.sum, e.tolerance(len, kDouble, kSingle)) << len;
            ASSERT_EQ(zepsMean_32f(x.data(), len, &mean, hint), zepStsNoErr);
            ASSERT_EQ(mean, static_cast<Zep32f>(static_cast<double>(sum) / len)) << len;
        }
    });
}

TEST_P(Sums, SingleKeepsWhatASingleSumWouldLose) {
    for (const int len : {3, 40, 70, 300}) {
        std::vector<Zep32f> x(static_cast<std::size_t>(len), 1.0f);
        x.front() = 0x1p40f, x.back() = -0x1p40f;
        for (const int hint : kHints) {
            Zep32f sum = 0;
            ASSERT_EQ(zepsSum_32f(x.data(), len, &sum, hint), zepStsNoErr);
            ASSERT_EQ(sum, static_cast<Zep32f>(len - 2));
        }
    }
}

template <class C, class Sum>
void checkComplexSum(double width, double result, Sum sum) {
    using T = decltype(C::re);
    forVectors<C>(randomValues<C>, [&](const auto& values, auto& x) {
        Exact re, im;
        for (const C z : values) re.add(z.re), im.add(z.im);
        const int len = x.size();
        const C got = sum(x.data(), len);
        ASSERT_NEAR(got.re, static_cast<T>(re.sum), re.tolerance(len, width, result)) << len;
        ASSERT_NEAR(got.im, static_cast<T>(im.sum), im.tolerance(len, width, result)) << len;
    });
}

TEST_P(Sums, ComplexPartsAreSummedApart) {
    for (const int hint : kHints)
        checkComplexSum<Zep32fc>(kDouble, 2 * kSingle, [hint](const Zep32fc* x, int len) {
            Zep32fc sum{}, mean{};
            EXPECT_EQ(zepsSum_32fc(x, len, &sum, hint), zepStsNoErr);
            EXPECT_EQ(zepsMean_32fc(x, len, &mean, hint), zepStsNoErr);
            EXPECT_EQ(mean.re, static_cast<Zep32f>(static_cast<double>(sum.re) / len));
            EXPECT_EQ(mean.im, static_cast<Zep32f>(static_cast<double>(sum.im) / len));
            return sum;
        });
    checkComplexSum<Zep64fc>(kDouble, kDouble, [](const Zep64fc* x, int len) {
        Zep64fc sum{};
        EXPECT_EQ(zepsSum_64fc(x, len, &sum), zepStsNoErr);
        return sum;
    });
}

TEST_P(Sums, DoubleIsSummedInDouble) {
    forVectors<Zep64f>(randomValues<Zep64f>, [](const auto& values, auto& x) {
        const int len = x.size();
        const Exact e = exactSum(values);
        Zep64f sum = 0;
        ASSERT_EQ(zepsSum_64f(x.data(), len, &sum), zepStsNoErr);
        ASSERT_NEAR(sum, static_cast<double>(e.sum), e.tolerance(len, kDouble, kDouble)) << len;
    });
}

TEST_P(Sums, DeviationFollowsItsFormula) {
    forVectors<Zep32f>(randomValues<Zep32f>, [](const auto& values, auto& x) {
        const int len = x.size();
        const Exact e = exactSum(values);
        Extended squares = 0;
        for (const Zep32f v : values) squares += Extended{v} * v;
        const Extended n = len, difference = squares * n - e.sum * e.sum;
        const Extended deviation = len < 2 ? 0 : std::sqrt(difference / (n * (n - 1)));
        for (const int hint : kHints) {
            Zep32f mean = 0, both = 0, alone = 0;
            if (len < 2) {
                ASSERT_EQ(zepsStdDev_32f(x.data(), len, &alone, hint), zepStsSizeErr);
                continue;
            }
            ASSERT_EQ(zepsStdDev_32f(x.data(), len, &alone, hint), zepStsNoErr);
            ASSERT_EQ(zepsMeanStdDev_32f(x.data(), len, &mean, &both, hint), zepStsNoErr);
            ASSERT_EQ(alone, both);
            // The relative error of the difference is that of its terms, enlarged by cancellation;
            // the root halves it.
            const double width = hint == zepAlgHintFast ? kSingle : kDouble;
            const double terms = static_cast<double>(squares * n + e.magnitudes * e.magnitudes);
            const double relative =
                2 * (len / 4 + 12) * width * terms / static_cast<double>(difference) + 2 * kSingle;
            ASSERT_NEAR(alone, static_cast<double>(deviation),
                        static_cast<double>(deviation) * relative)
                << len << " hint " << hint;
            ASSERT_NEAR(mean, static_cast<double>(e.sum / n),
                        e.tolerance(len, width, kSingle) / len)
                << len << " hint " << hint;
        }
    });
}

TEST_P(Sums, DeviationOfEqualElementsIsZero) {
    for (const int hint : kHints)
        for (const int len : {2, 7, 64, 1000}) {
            const std::vector<Zep32f> x(static_cast<std::size_t>(len), 1.1f);
            Zep32f deviation = 1;
            ASSERT_EQ(zepsStdDev_32f(x.data(), len, &deviation, hint), zepStsNoErr);
            ASSERT_FALSE(std::isnan(deviation));
            if (hint != zepAlgHintFast) {
                ASSERT_LT(deviation, 1e-6f);
            }
        }
    const Zep32f x[] = {1, 2, 3};
    Zep32f deviation = 0;
    ASSERT_EQ(zepsStdDev_32f(x, 3, &deviation, zepAlgHintNone), zepStsNoErr);
    EXPECT_EQ(deviation, 1.0f);
}

TEST_P(Sums, NormIsSingleAndOverflows) {
    forVectors<Zep32f>(randomValues<Zep32f>, [](const auto& values, auto& x) {
        Extended squares = 0;
        for (const Zep32f v : values) squares += Extended{v} * v;
        const double norm = static_cast<double>(std::sqrt(squares));
        Zep32f got = 0;
        ASSERT_EQ(zepsNorm_L2_32f(x.data(), x.size(), &got), zepStsNoErr);
        ASSERT_NEAR(got, norm, norm * ((x.size() / 4 + 12) * kSingle + kSingle)) << x.size();
    });
    const Zep32f x[] = {1, 2e19f, 1}, y[] = {3, 4};
    Zep32f norm = 0;
    ASSERT_EQ(zepsNorm_L2_32f(x, 3, &norm), zepStsNoErr);
    EXPECT_EQ(norm, std::numeric_limits<Zep32f>::infinity());
    ASSERT_EQ(zepsNorm_L2_32f(y, 2, &norm), zepStsNoErr);
    EXPECT_EQ(norm, 5.0f);
}

template <class C, class Dot>
void checkComplexDot(double width, Dot dot) {
    forVectors<C>(randomValues<C>, [&](const auto& values, auto& x) {
        const int len = x.size();
        Operand<C> y(len, Edge::Back, 3);
        y = randomValues<C>(len);
        Exact re, im;
        for (int n = 0; n < len; ++n) {
            const C a = values[static_cast<std::size_t>(n)], b = y.get(n);
            re.add(Extended{a.re} * b.re), re.add(-(Extended{a.im} * b.im));
            im.add(Extended{a.re} * b.im), im.add(Extended{a.im} * b.re);
        }
        C got{};
        ASSERT_EQ(dot(x.data(), y.data(), len, &got), zepStsNoErr);
        ASSERT_NEAR(got.re, static_cast<double>(re.sum), re.tolerance(2 * len, width, width));
        ASSERT_NEAR(got.im, static_cast<double>(im.sum), im.tolerance(2 * len, width, width));
    });
}

TEST_P(Sums, DotProducts) {
    forVectors<Zep64f>(randomValues<Zep64f>, [](const auto& values, auto& x) {
        const int len = x.size();
        Operand<Zep64f> y(len, Edge::Front, 5);
        y = randomValues<Zep64f>(len);
        Exact e;
        for (int n = 0; n < len; ++n)
            e.add(Extended{values[static_cast<std::size_t>(n)]} * y.get(n));
        Zep64f got = 0;
        ASSERT_EQ(zepsDotProd_64f(x.data(), y.data(), len, &got), zepStsNoErr);
        ASSERT_NEAR(got, static_cast<double>(e.sum), e.tolerance(len, kDouble, kDouble)) << len;
    });
    checkComplexDot<Zep32fc>(kSingle, zepsDotProd_32fc);
    checkComplexDot<Zep64fc>(kDouble, zepsDotProd_64fc);
}

TEST_P(Sums, ComplexDotDoesNotConjugate) {
    const Zep32fc i{0, 1};
    Zep32fc dot{};
    ASSERT_EQ(zepsDotProd_32fc(&i, &i, 1, &dot), zepStsNoErr);
    EXPECT_EQ(dot.re, -1.0f);
    EXPECT_EQ(dot.im, 0.0f);
}

TEST_P(Sums, Errors) {
    const auto hinted = [](auto f) { return [f](auto x, int n, auto r) { return f(x, n, r, 1); }; };
    checkReductionErrors<Zep32f, Zep32f>(hinted(zepsSum_32f));
    checkReductionErrors<Zep32f, Zep32f>(hinted(zepsMean_32f));
    checkReductionErrors<Zep32fc, Zep32fc>(hinted(zepsSum_32fc));
    checkReductionErrors<Zep32fc, Zep32fc>(hinted(zepsMean_32fc));
    checkReductionErrors<Zep64f, Zep64f>(zepsSum_64f);
    checkReductionErrors<Zep64fc, Zep64fc>(zepsSum_64fc);
    checkReductionErrors<Zep32f, Zep32f>(zepsNorm_L2_32f);
    checkReductionErrors<Zep32f, Zep32f>(hinted(zepsStdDev_32f));
    const auto bothOperands = [](auto f, auto one) {
        using T = decltype(one);
        checkReductionErrors<T, T>([=](auto x, int n, auto r) { return f(x, &one, n, r); });
        checkReductionErrors<T, T>([=](auto x, int n, auto r) { return f(&one, x, n, r); });
    };
    bothOperands(zepsDotProd_64f, Zep64f{});
    bothOperands(zepsDotProd_32fc, Zep32fc{});
    bothOperands(zepsDotProd_64fc, Zep64fc{});
    const Zep32f x[2] = {};
    Zep32f mean = 7, deviation = 7;
    EXPECT_EQ(zepsMeanStdDev_32f(nullptr, 1, &mean, &deviation, 1), zepStsNullPtrErr);
    EXPECT_EQ(zepsMeanStdDev_32f(x, 1, nullptr, &deviation, 1), zepStsNullPtrErr);
    EXPECT_EQ(zepsMeanStdDev_32f(x, 1, &mean, nullptr, 1), zepStsNullPtrErr);
    EXPECT_EQ(zepsMeanStdDev_32f(x, 1, &mean, &deviation, 1), zepStsSizeErr);
    EXPECT_EQ(mean, 7.0f);
    EXPECT_EQ(deviation, 7.0f);
}

ZEP_FOR_EACH_VARIANT(Sums);

}  // namespace
}  // namespace zep::test
