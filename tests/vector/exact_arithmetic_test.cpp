// Operations whose every rounding is fixed: the results have defined bits.
#include "support/variant.h"
#include "vector/arithmetic_subject.h"

namespace zep::test {
namespace {

constexpr Zep32f kC = 1.7f;
constexpr Zep64f kD = -0.3;
constexpr Zep32fc kZ = {0.6f, -1.3f};

// Single precision by way of double: one operation on 24-bit operands is exact or far from a tie
// there, so rounding twice gives the correctly rounded result.
Zep32f sum(Zep32f a, Zep32f b) { return static_cast<Zep32f>(Zep64f{a} + Zep64f{b}); }
Zep32f difference(Zep32f a, Zep32f b) { return static_cast<Zep32f>(Zep64f{a} - Zep64f{b}); }
Zep32f product(Zep32f a, Zep32f b) { return static_cast<Zep32f>(Zep64f{a} * Zep64f{b}); }
Zep64f sum(Zep64f a, Zep64f b) { return a + b; }
Zep64f difference(Zep64f a, Zep64f b) { return a - b; }
Zep64f product(Zep64f a, Zep64f b) { return a * b; }
template <class C>
C sumComplex(C a, C b) {
    return {sum(a.re, b.re), sum(a.im, b.im)};
}
template <class C>
C differenceComplex(C a, C b) {
    return {difference(a.re, b.re), difference(a.im, b.im)};
}
template <class C>
C productComplex(C a, C b) {
    return {difference(product(a.re, b.re), product(a.im, b.im)),
            sum(product(a.re, b.im), product(a.im, b.re))};
}

constexpr bool kTakes = true, kNot = false;

const std::vector<Subject<Zep32f>>& floatSubjects() {
    using T = Zep32f;
    static const std::vector<Subject<T>> list = {
        {"Add_32f", kTakes, kTakes, kNot, zepsAdd_32f, [](T a, T b, T) { return sum(a, b); }},
        {"Add_32f_I", kTakes, kNot, kTakes,
         [](auto a, auto, auto y, int n) { return zepsAdd_32f_I(a, y, n); },
         [](T a, T, T y) { return sum(y, a); }},
        {"Sub_32f", kTakes, kTakes, kNot, zepsSub_32f,
         [](T a, T b, T) { return difference(b, a); }},
        {"Sub_32f_I", kTakes, kNot, kTakes,
         [](auto a, auto, auto y, int n) { return zepsSub_32f_I(a, y, n); },
         [](T a, T, T y) { return difference(y, a); }},
        {"Mul_32f", kTakes, kTakes, kNot, zepsMul_32f, [](T a, T b, T) { return product(a, b); }},
        {"Mul_32f_I", kTakes, kNot, kTakes,
         [](auto a, auto, auto y, int n) { return zepsMul_32f_I(a, y, n); },
         [](T a, T, T y) { return product(y, a); }},
        {"AddC_32f", kTakes, kNot, kNot,
         [](auto a, auto, auto y, int n) { return zepsAddC_32f(a, kC, y, n); },
         [](T a, T, T) { return sum(a, kC); }},
        {"AddC_32f_I", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) { return zepsAddC_32f_I(kC, y, n); },
         [](T, T, T y) { return sum(y, kC); }},
        {"SubC_32f", kTakes, kNot, kNot,
         [](auto a, auto, auto y, int n) { return zepsSubC_32f(a, kC, y, n); },
         [](T a, T, T) { return difference(a, kC); }},
        {"SubC_32f_I", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) { return zepsSubC_32f_I(kC, y, n); },
         [](T, T, T y) { return difference(y, kC); }},
        {"MulC_32f", kTakes, kNot, kNot,
         [](auto a, auto, auto y, int n) { return zepsMulC_32f(a, kC, y, n); },
         [](T a, T, T) { return product(a, kC); }},
        {"MulC_32f_I", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) { return zepsMulC_32f_I(kC, y, n); },
         [](T, T, T y) { return product(y, kC); }},
        {"DivC_32f", kTakes, kNot, kNot,
         [](auto a, auto, auto y, int n) { return zepsDivC_32f(a, kC, y, n); },
         [](T a, T, T) { return product(a, 1.0f / kC); }},
        {"DivC_32f_I", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) { return zepsDivC_32f_I(kC, y, n); },
         [](T, T, T y) { return product(y, 1.0f / kC); }},
        {"Abs_32f", kTakes, kNot, kNot,
         [](auto a, auto, auto y, int n) { return zepsAbs_32f(a, y, n); },
         [](T a, T, T) { return std::fabs(a); }},
        {"Abs_32f_I", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) { return zepsAbs_32f_I(y, n); },
         [](T, T, T y) { return std::fabs(y); }},
        {"Sqr_32f", kTakes, kNot, kNot,
         [](auto a, auto, auto y, int n) { return zepsSqr_32f(a, y, n); },
         [](T a, T, T) { return product(a, a); }},
        {"Sqr_32f_I", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) { return zepsSqr_32f_I(y, n); },
         [](T, T, T y) { return product(y, y); }},
        {"AddProduct_32f", kTakes, kTakes, kTakes, zepsAddProduct_32f,
         [](T a, T b, T y) { return sum(y, product(a, b)); }},
        {"AddProductC_32f", kTakes, kNot, kTakes,
         [](auto a, auto, auto y, int n) { return zepsAddProductC_32f(a, kC, y, n); },
         [](T a, T, T y) { return sum(y, product(a, kC)); }},
        // No value of the factor is special here.
        {"AddProductC_32f by 0", kTakes, kNot, kTakes,
         [](auto a, auto, auto y, int n) { return zepsAddProductC_32f(a, 0.0f, y, n); },
         [](T a, T, T y) { return sum(y, product(a, 0.0f)); }},
    };
    return list;
}

const std::vector<Subject<Zep64f>>& doubleSubjects() {
    using T = Zep64f;
    static const std::vector<Subject<T>> list = {
        {"Add_64f", kTakes, kTakes, kNot, zepsAdd_64f, [](T a, T b, T) { return sum(a, b); }},
        {"Add_64f_I", kTakes, kNot, kTakes,
         [](auto a, auto, auto y, int n) { return zepsAdd_64f_I(a, y, n); },
         [](T a, T, T y) { return sum(y, a); }},
        {"Sub_64f_I", kTakes, kNot, kTakes,
         [](auto a, auto, auto y, int n) { return zepsSub_64f_I(a, y, n); },
         [](T a, T, T y) { return difference(y, a); }},
        {"Mul_64f", kTakes, kTakes, kNot, zepsMul_64f, [](T a, T b, T) { return product(a, b); }},
        {"AddC_64f", kTakes, kNot, kNot,
         [](auto a, auto, auto y, int n) { return zepsAddC_64f(a, kD, y, n); },
         [](T a, T, T) { return sum(a, kD); }},
        {"SubC_64f", kTakes, kNot, kNot,
         [](auto a, auto, auto y, int n) { return zepsSubC_64f(a, kD, y, n); },
         [](T a, T, T) { return difference(a, kD); }},
        {"SubC_64f_I", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) { return zepsSubC_64f_I(kD, y, n); },
         [](T, T, T y) { return difference(y, kD); }},
        {"MulC_64f", kTakes, kNot, kNot,
         [](auto a, auto, auto y, int n) { return zepsMulC_64f(a, kD, y, n); },
         [](T a, T, T) { return product(a, kD); }},
        {"MulC_64f_I", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) { return zepsMulC_64f_I(kD, y, n); },
         [](T, T, T y) { return product(y, kD); }},
        {"DivC_64f_I", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) { return zepsDivC_64f_I(kD, y, n); },
         [](T, T, T y) { return product(y, 1.0 / kD); }},
        {"Abs_64f", kTakes, kNot, kNot,
         [](auto a, auto, auto y, int n) { return zepsAbs_64f(a, y, n); },
         [](T a, T, T) { return std::fabs(a); }},
        {"Abs_64f_I", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) { return zepsAbs_64f_I(y, n); },
         [](T, T, T y) { return std::fabs(y); }},
        {"Sqr_64f", kTakes, kNot, kNot,
         [](auto a, auto, auto y, int n) { return zepsSqr_64f(a, y, n); },
         [](T a, T, T) { return product(a, a); }},
        {"Sqr_64f_I", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) { return zepsSqr_64f_I(y, n); },
         [](T, T, T y) { return product(y, y); }},
    };
    return list;
}

Zep32fc reciprocalOfConstant() {
    const Zep32f d = sum(product(kZ.re, kZ.re), product(kZ.im, kZ.im)), inv = 1.0f / d;
    return {product(kZ.re, inv), difference(0.0f, product(kZ.im, inv))};
}

const std::vector<Subject<Zep32fc>>& complexSubjects() {
    using T = Zep32fc;
    static const std::vector<Subject<T>> list = {
        {"Add_32fc", kTakes, kTakes, kNot, zepsAdd_32fc,
         [](T a, T b, T) { return sumComplex(a, b); }},
        {"Add_32fc_I", kTakes, kNot, kTakes,
         [](auto a, auto, auto y, int n) { return zepsAdd_32fc_I(a, y, n); },
         [](T a, T, T y) { return sumComplex(y, a); }},
        {"Sub_32fc", kTakes, kTakes, kNot, zepsSub_32fc,
         [](T a, T b, T) { return differenceComplex(b, a); }},
        {"Sub_32fc_I", kTakes, kNot, kTakes,
         [](auto a, auto, auto y, int n) { return zepsSub_32fc_I(a, y, n); },
         [](T a, T, T y) { return differenceComplex(y, a); }},
        {"Mul_32fc", kTakes, kTakes, kNot, zepsMul_32fc,
         [](T a, T b, T) { return productComplex(a, b); }},
        {"Mul_32fc_I", kTakes, kNot, kTakes,
         [](auto a, auto, auto y, int n) { return zepsMul_32fc_I(a, y, n); },
         [](T a, T, T y) { return productComplex(y, a); }},
        {"AddC_32fc_I", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) { return zepsAddC_32fc_I(kZ, y, n); },
         [](T, T, T y) { return sumComplex(y, kZ); }},
        {"SubC_32fc", kTakes, kNot, kNot,
         [](auto a, auto, auto y, int n) { return zepsSubC_32fc(a, kZ, y, n); },
         [](T a, T, T) { return differenceComplex(a, kZ); }},
        {"SubC_32fc_I", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) { return zepsSubC_32fc_I(kZ, y, n); },
         [](T, T, T y) { return differenceComplex(y, kZ); }},
        {"MulC_32fc", kTakes, kNot, kNot,
         [](auto a, auto, auto y, int n) { return zepsMulC_32fc(a, kZ, y, n); },
         [](T a, T, T) { return productComplex(a, kZ); }},
        {"MulC_32fc_I", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) { return zepsMulC_32fc_I(kZ, y, n); },
         [](T, T, T y) { return productComplex(y, kZ); }},
        {"DivC_32fc_I", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) { return zepsDivC_32fc_I(kZ, y, n); },
         [](T, T, T y) { return productComplex(y, reciprocalOfConstant()); }},
        // Complex constants that would short-cut if they were real: they are operands like any
        // other.
        {"AddC_32fc_I by 0", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) {
             return zepsAddC_32fc_I({0.0f, 0.0f}, y, n);
         },
         [](T, T, T y) {
             return sumComplex(y, {0.0f, 0.0f});
         }},
        {"MulC_32fc by 0", kTakes, kNot, kNot,
         [](auto a, auto, auto y, int n) {
             return zepsMulC_32fc(a, {0.0f, 0.0f}, y, n);
         },
         [](T a, T, T) {
             return productComplex(a, {0.0f, 0.0f});
         }},
        {"MulC_32fc_I by 1", kNot, kNot, kTakes,
         [](auto, auto, auto y, int n) {
             return zepsMulC_32fc_I({1.0f, 0.0f}, y, n);
         },
         [](T, T, T y) {
             return productComplex(y, {1.0f, 0.0f});
         }},
    };
    return list;
}

const std::vector<Subject<Zep64fc>>& complexDoubleSubjects() {
    using T = Zep64fc;
    static const std::vector<Subject<T>> list = {
        {"Mul_64fc_I", kTakes, kNot, kTakes,
         [](auto a, auto, auto y, int n) { return zepsMul_64fc_I(a, y, n); },
         [](T a, T, T y) { return productComplex(y, a); }},
    };
    return list;
}

class ExactArithmetic : public VariantTest {
protected:
    template <class F>
    void forEachSubject(F f) {
        for (const auto& s : floatSubjects()) f(s);
        for (const auto& s : doubleSubjects()) f(s);
        for (const auto& s : complexSubjects()) f(s);
        for (const auto& s : complexDoubleSubjects()) f(s);
    }
};

TEST_P(ExactArithmetic, EveryLengthGivesTheDefinedBits) {
    forEachSubject([](const auto& s) { checkLengths(s); });
}

TEST_P(ExactArithmetic, AlignmentNeverChangesAResult) {
    forEachSubject([](const auto& s) { checkAddresses(s); });
}

TEST_P(ExactArithmetic, TheDestinationMayBeASource) {
    forEachSubject([](const auto& s) { checkAliases(s); });
}

TEST_P(ExactArithmetic, ErrorsComeInOrderAndWriteNothing) {
    forEachSubject([](const auto& s) { checkErrors(s); });
}

TEST_P(ExactArithmetic, AbsoluteValuesKeepThePayloadOfNan) {
    const auto nan32 = std::bit_cast<Zep32f>(0xFFC12345u);
    const auto nan64 = std::bit_cast<Zep64f>(std::uint64_t{0xFFF8123456789ABC});
    for (int len = 1; len <= 20; ++len) {
        std::vector<Zep32f> x(static_cast<std::size_t>(len), nan32), y(x);
        std::vector<Zep64f> u(static_cast<std::size_t>(len), nan64), v(u);
        ASSERT_EQ(zepsAbs_32f(x.data(), y.data(), len), zepStsNoErr);
        ASSERT_EQ(zepsAbs_64f(u.data(), v.data(), len), zepStsNoErr);
        for (const Zep32f z : y) ASSERT_EQ(std::bit_cast<std::uint32_t>(z), 0x7FC12345u);
        for (const Zep64f z : v)
            ASSERT_EQ(std::bit_cast<std::uint64_t>(z), std::uint64_t{0x7FF8123456789ABC});
    }
}

ZEP_FOR_EACH_VARIANT(ExactArithmetic);

}  // namespace
}  // namespace zep::test
