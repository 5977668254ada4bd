// Companding: every value of both laws, and every shape of call.
#include <gtest/gtest.h>

#include <cstring>

#include "speech/data_files.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

// The rules of the laws as the standard draws them: a staircase of segment ends.
std::uint8_t aLawByRule(int x) {
    const int v = x >> 3, m = v >= 0 ? v : -v - 1;
    const int ends[] = {255, 511, 1023, 2047, 4095, 8191, 16383, 32767};
    int s = 0;
    while (m > ends[s] >> 3) ++s;
    const int mantissa = s < 2 ? (m >> 1) & 15 : (m >> s) & 15;
    return static_cast<std::uint8_t>((s << 4 | mantissa) ^ (v >= 0 ? 0xD5 : 0x55));
}

std::uint8_t muLawByRule(int x) {
    int m = ((x >= 0 ? x : ~x) >> 2) + 33;
    if (m > 8191) m = 8191;
    int e = 1;
    for (int t = m >> 6; t != 0; t >>= 1) ++e;
    const int code = (8 - e) << 4 | (15 - ((m >> e) & 15));
    return static_cast<std::uint8_t>(x >= 0 ? code | 0x80 : code);
}

struct Laws {
    std::vector<std::int16_t> mu = std::vector<std::int16_t>(256), a = mu;
    Laws() {
        for (const auto& row : readTable("g711_expand.csv")) {
            const auto code = static_cast<std::size_t>(std::stoi(row[0]));
            mu[code] = static_cast<std::int16_t>(std::stoi(row[1]));
            a[code] = static_cast<std::int16_t>(std::stoi(row[2]));
        }
    }
};

const Laws& laws() {
    static const Laws tables;
    return tables;
}

class G711 : public VariantTest {};

std::vector<Zep16s> allSamples() {
    std::vector<Zep16s> x(65536);
    for (int n = 0; n < 65536; ++n) x[static_cast<std::size_t>(n)] = static_cast<Zep16s>(n - 32768);
    return x;
}

std::vector<Zep8u> allCodes() {
    std::vector<Zep8u> c(256);
    for (int n = 0; n < 256; ++n) c[static_cast<std::size_t>(n)] = static_cast<Zep8u>(n);
    return c;
}

TEST_P(G711, CompressesEverySample) {
    const std::vector<Zep16s> x = allSamples();
    std::vector<Zep8u> a(x.size()), mu(x.size());
    ASSERT_EQ(zepsLinToALaw_16s8u(x.data(), a.data(), 65536), zepStsNoErr);
    ASSERT_EQ(zepsLinToMuLaw_16s8u(x.data(), mu.data(), 65536), zepStsNoErr);
    for (std::size_t n = 0; n < x.size(); ++n) {
        ASSERT_EQ(a[n], aLawByRule(x[n])) << x[n];
        ASSERT_EQ(mu[n], muLawByRule(x[n])) << x[n];
    }
    EXPECT_EQ(mu.back(), 0x80);
    EXPECT_EQ(mu.front(), 0x00);
    EXPECT_EQ(a[32768], 0xD5);
    EXPECT_EQ(a[32767], 0x55);
}

TEST_P(G711, ExpandsEveryCode) {
    const std::vector<Zep8u> c = allCodes();
    std::vector<Zep16s> a(256), mu(256);
    ASSERT_EQ(zepsALawToLin_8u16s(c.data(), a.data(), 256), zepStsNoErr);
    ASSERT_EQ(zepsMuLawToLin_8u16s(c.data(), mu.data(), 256), zepStsNoErr);
    EXPECT_EQ(a, laws().a);
    EXPECT_EQ(mu, laws().mu);
    EXPECT_EQ(mu[0], -32124);
    EXPECT_EQ(mu[128], 32124);
    EXPECT_EQ(a[0], -5504);
}

TEST_P(G711, CompressionUndoesExpansionButForTheSecondZero) {
    const std::vector<Zep8u> c = allCodes();
    std::vector<Zep16s> x(256);
    std::vector<Zep8u> back(256);
    zepsALawToLin_8u16s(c.data(), x.data(), 256);
    zepsLinToALaw_16s8u(x.data(), back.data(), 256);
    EXPECT_EQ(back, c);
    zepsMuLawToLin_8u16s(c.data(), x.data(), 256);
    zepsLinToMuLaw_16s8u(x.data(), back.data(), 256);
    EXPECT_EQ(back[127], 255);
    back[127] = 127;
    EXPECT_EQ(back, c);
}

// Calls f with len random elements that stand against an unreadable page, at any address, and
// compares what it wrote with the law applied to each.
template <class From, class To, class Convert, class Law>
void sweepCalls(Convert convert, Law law) {
    const auto check = [&](int len, Edge edge, int skew, int skewOut) {
        GuardedBuffer<std::uint8_t> src(len * int{sizeof(From)}, edge, skew),
            dst(len * int{sizeof(To)}, edge, skewOut);
        fillRandom(src);
        auto* const pSrc = reinterpret_cast<const From*>(src.data());
        auto* const pDst = reinterpret_cast<To*>(dst.data());
        ASSERT_EQ(convert(pSrc, pDst, len), zepStsNoErr);
        for (int n = 0; n < len; ++n) {
            From x;
            To y;
            std::memcpy(&x, src.data() + n * int{sizeof x}, sizeof x);
            std::memcpy(&y, dst.data() + n * int{sizeof y}, sizeof y);
            ASSERT_EQ(y, law(x)) << "len " << len << " n " << n << " skews " << skew << ' '
                                 << skewOut;
        }
    };
    for (const Edge edge : {Edge::Front, Edge::Back}) {
        for (int len = 1; len <= 70; ++len) check(len, edge, 0, 0);
        for (const int len : {127, 128, 129, 191, 193, 255, 256, 257, 511, 513, 1000})
            check(len, edge, 0, 0);
        for (int skew = 1; skew < 8; ++skew) check(300, edge, skew, 9 - skew);
    }
}

TEST_P(G711, TakesAnyLengthAtAnyAddress) {
    sweepCalls<Zep16s, Zep8u>(zepsLinToALaw_16s8u, [](int x) { return aLawByRule(x); });
    sweepCalls<Zep16s, Zep8u>(zepsLinToMuLaw_16s8u, [](int x) { return muLawByRule(x); });
    sweepCalls<Zep8u, Zep16s>(zepsALawToLin_8u16s, [](std::size_t c) { return laws().a[c]; });
    sweepCalls<Zep8u, Zep16s>(zepsMuLawToLin_8u16s, [](std::size_t c) { return laws().mu[c]; });
}

TEST_P(G711, RefusesNullPointersThenSizes) {
    Zep16s x[2] = {7, 7};
    Zep8u c[2] = {9, 9};
    for (const int len : {1, 0, -1}) {
        EXPECT_EQ(zepsLinToALaw_16s8u(nullptr, c, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsLinToALaw_16s8u(x, nullptr, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsLinToMuLaw_16s8u(nullptr, c, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsLinToMuLaw_16s8u(x, nullptr, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsALawToLin_8u16s(nullptr, x, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsALawToLin_8u16s(c, nullptr, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsMuLawToLin_8u16s(nullptr, x, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsMuLawToLin_8u16s(c, nullptr, len), zepStsNullPtrErr);
    }
    for (const int len : {0, -1, -2147483647 - 1}) {
        EXPECT_EQ(zepsLinToALaw_16s8u(x, c, len), zepStsSizeErr);
        EXPECT_EQ(zepsLinToMuLaw_16s8u(x, c, len), zepStsSizeErr);
        EXPECT_EQ(zepsALawToLin_8u16s(c, x, len), zepStsSizeErr);
        EXPECT_EQ(zepsMuLawToLin_8u16s(c, x, len), zepStsSizeErr);
    }
    EXPECT_EQ(x[0], 7);
    EXPECT_EQ(c[0], 9);
}

ZEP_FOR_EACH_VARIANT(G711);

}  // namespace
}  // namespace zep::test
