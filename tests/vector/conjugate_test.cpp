// Conjugates and the full form of a packed spectrum.
#include "support/variant.h"
#include "vector/reduction_cases.h"

namespace zep::test {
namespace {

Zep32fc conjugate(Zep32fc z) {
    return {z.re, std::bit_cast<Zep32f>(std::bit_cast<std::uint32_t>(z.im) ^ 0x80000000u)};
}

std::vector<Zep32fc> mixed(int len) { return mixedValues<Zep32fc>(len); }

bool sameBits(Zep32fc a, Zep32fc b) { return std::memcmp(&a, &b, sizeof a) == 0; }

class Conjugate : public VariantTest {};

const Subject<Zep32fc> kConj{"Conj",
                             true,
                             false,
                             false,
                             [](auto a, auto, auto y, int n) { return zepsConj_32fc(a, y, n); },
                             [](auto a, auto, auto) { return conjugate(a); }};
const Subject<Zep32fc> kConjInPlace{"Conj_I",
                                    false,
                                    false,
                                    true,
                                    [](auto, auto, auto y, int n) { return zepsConj_32fc_I(y, n); },
                                    [](auto, auto, auto y) { return conjugate(y); }};

TEST_P(Conjugate, InOrder) {
    for (const auto& s : {kConj, kConjInPlace}) {
        checkLengths(s);
        checkAddresses(s);
        checkErrors(s);
    }
    const Zep32fc x{1, 0};
    Zep32fc y{};
    ASSERT_EQ(zepsConj_32fc(&x, &y, 1), zepStsNoErr);
    EXPECT_TRUE(sameBits(y, {1.0f, -0.0f}));
}

TEST_P(Conjugate, InReverse) {
    forVectors<Zep32fc>(mixed, [](const auto& values, auto& x) {
        const int len = x.size();
        for (const Edge edge : {Edge::Front, Edge::Back}) {
            Operand<Zep32fc> y(len, edge, len % 3);
            ASSERT_EQ(zepsConjFlip_32fc(x.data(), y.data(), len), zepStsNoErr);
            for (int n = 0; n < len; ++n)
                ASSERT_TRUE(
                    sameBits(y.get(n), conjugate(values[static_cast<std::size_t>(len - 1 - n)])))
                    << len << ' ' << n;
        }
    });
    checkReductionErrors<Zep32fc, Zep32fc>(
        [](auto x, int n, auto y) { return zepsConjFlip_32fc(x, y, n); });
}

// By the definition of the format.
std::vector<Zep32fc> fullSpectrum(const std::vector<Zep32f>& packed) {
    const std::size_t len = packed.size();
    std::vector<Zep32fc> full(len);
    full[0] = {packed[0], 0};
    if (len % 2 == 0) full[len / 2] = {packed[1], 0};
    const std::size_t first = len % 2 == 0 ? 2 : 1;
    for (std::size_t k = 1; 2 * k < len; ++k) {
        full[k] = {packed[first + 2 * (k - 1)], packed[first + 2 * (k - 1) + 1]};
        full[len - k] = conjugate(full[k]);
    }
    return full;
}

TEST_P(Conjugate, PackedSpectrum) {
    forVectors<Zep32f>(mixedValues<Zep32f>, [](const auto& values, auto& x) {
        const int len = x.size();
        const auto expected = fullSpectrum(values);
        Operand<Zep32fc> y(len, Edge::Back, len % 3),
            z(len, len % 2 ? Edge::Front : Edge::Back, len % 5);
        ASSERT_EQ(zepsConjPerm_32fc(x.data(), y.data(), len), zepStsNoErr);
        std::memcpy(static_cast<void*>(z.data()), x.data(),
                    static_cast<std::size_t>(len) * sizeof(Zep32f));
        ASSERT_EQ(zepsConjPerm_32fc_I(z.data(), len), zepStsNoErr);
        for (int n = 0; n < len; ++n) {
            ASSERT_TRUE(sameBits(y.get(n), expected[static_cast<std::size_t>(n)]))
                << len << ' ' << n;
            ASSERT_TRUE(sameBits(z.get(n), expected[static_cast<std::size_t>(n)]))
                << len << ' ' << n;
        }
    });
}

TEST_P(Conjugate, PackedSpectrumErrors) {
    const Zep32f x[4] = {1, 2, 3, 4};
    Zep32fc y[4] = {{5, 5}};
    for (const int len : {4, 0}) {
        EXPECT_EQ(zepsConjPerm_32fc(nullptr, y, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsConjPerm_32fc(x, nullptr, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsConjPerm_32fc_I(nullptr, len), zepStsNullPtrErr);
    }
    for (const int len : {0, -1}) {
        EXPECT_EQ(zepsConjPerm_32fc(x, y, len), zepStsSizeErr);
        EXPECT_EQ(zepsConjPerm_32fc_I(y, len), zepStsSizeErr);
    }
    EXPECT_EQ(y[0].re, 5.0f);
}

ZEP_FOR_EACH_VARIANT(Conjugate);

}  // namespace
}  // namespace zep::test
