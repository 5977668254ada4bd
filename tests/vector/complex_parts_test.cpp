// Complex vectors taken apart and put together: every bit where it belongs.
#include "support/variant.h"
#include "vector/reduction_cases.h"

namespace zep::test {
namespace {

// Any bits, those of not-a-numbers too.
template <class C>
std::vector<C> randomBits(int len) {
    std::vector<C> x(static_cast<std::size_t>(len));
    for (C& z : x)
        for (std::size_t n = 0; n < sizeof z; ++n)
            reinterpret_cast<unsigned char*>(&z)[n] = static_cast<unsigned char>(rng()());
    return x;
}

template <class T>
bool sameBits(T a, T b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

enum class Part { Re, Im };

template <class C, class Call>
void checkPart(Part part, Call call) {
    using T = decltype(C::re);
    forVectors<C>(randomBits<C>, [&](const auto& values, auto& x) {
        for (const Edge edge : {Edge::Front, Edge::Back}) {
            Operand<T> y(x.size(), edge, x.size() % 3);
            ASSERT_EQ(call(x.data(), y.data(), x.size()), zepStsNoErr);
            for (int n = 0; n < x.size(); ++n) {
                const C z = values[static_cast<std::size_t>(n)];
                ASSERT_TRUE(sameBits(y.get(n), part == Part::Re ? z.re : z.im))
                    << x.size() << ' ' << n;
            }
        }
    });
    checkReductionErrors<C, T>([&](auto x, int n, auto y) { return call(x, y, n); });
}

template <class C, class Call>
void checkBothParts(Call call) {
    using T = decltype(C::re);
    T other{};
    checkPart<C>(Part::Re, [&](auto x, auto y, int n) {
        if (n <= 0 || x == nullptr || y == nullptr) return call(x, y, &other, n);
        Operand<T> im(n, Edge::Back, 1);
        const ZepStatus status = call(x, y, im.data(), n);
        for (int k = 0; k < n; ++k) {
            C z;
            std::memcpy(&z,
                        reinterpret_cast<const char*>(x) + static_cast<std::size_t>(k) * sizeof(C),
                        sizeof z);
            EXPECT_TRUE(sameBits(im.get(k), z.im)) << n << ' ' << k;
        }
        return status;
    });
    checkReductionErrors<C, T>([&](auto x, int n, auto y) { return call(x, &other, y, n); });
}

template <class C, class Call>
void checkJoin(Call call) {
    using T = decltype(C::re);
    forVectors<T>(randomBits<T>, [&](const auto& values, auto& re) {
        const int len = re.size();
        Operand<T> im(len, Edge::Back, 1);
        im = randomBits<T>(len);
        for (const bool hasRe : {true, false})
            for (const bool hasIm : {true, false}) {
                if (!hasRe && !hasIm) continue;
                Operand<C> z(len, len % 2 == 0 ? Edge::Back : Edge::Front, len % 5);
                ASSERT_EQ(
                    call(hasRe ? re.data() : nullptr, hasIm ? im.data() : nullptr, z.data(), len),
                    zepStsNoErr);
                for (int n = 0; n < len; ++n) {
                    ASSERT_TRUE(
                        sameBits(z.get(n).re, hasRe ? values[static_cast<std::size_t>(n)] : T{0}))
                        << len << ' ' << n;
                    ASSERT_TRUE(sameBits(z.get(n).im, hasIm ? im.get(n) : T{0})) << len << ' ' << n;
                }
            }
    });
    const T x[2] = {};
    const T* const none = nullptr;
    C z[2] = {{T{5}, T{6}}, {T{7}, T{8}}};
    C* const nowhere = nullptr;
    EXPECT_EQ(call(x, x, nowhere, 0), zepStsNullPtrErr);
    EXPECT_EQ(call(none, none, nowhere, 0), zepStsNullPtrErr);
    EXPECT_EQ(call(none, none, z, 0), zepStsSizeErr);
    EXPECT_EQ(call(x, x, z, -3), zepStsSizeErr);
    EXPECT_EQ(call(none, none, z, 2), zepStsNullPtrErr);
    EXPECT_EQ(z[0].re, T{5});
    EXPECT_EQ(z[1].im, T{8});
}

class ComplexParts : public VariantTest {};

TEST_P(ComplexParts, RealAndImaginary) {
    checkPart<Zep32fc>(Part::Re, [](auto x, auto y, int n) { return zepsReal_32fc(x, y, n); });
    checkPart<Zep64fc>(Part::Re, [](auto x, auto y, int n) { return zepsReal_64fc(x, y, n); });
    checkPart<Zep32fc>(Part::Im, [](auto x, auto y, int n) { return zepsImag_32fc(x, y, n); });
}

TEST_P(ComplexParts, Both) {
    checkBothParts<Zep16sc>(zepsCplxToReal_16sc);
    checkBothParts<Zep32fc>(zepsCplxToReal_32fc);
    checkBothParts<Zep64fc>(zepsCplxToReal_64fc);
}

TEST_P(ComplexParts, Joined) {
    checkJoin<Zep32fc>(zepsRealToCplx_32f);
    checkJoin<Zep64fc>(zepsRealToCplx_64f);
}

ZEP_FOR_EACH_VARIANT(ComplexParts);

}  // namespace
}  // namespace zep::test
