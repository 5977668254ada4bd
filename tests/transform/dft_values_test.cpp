// Values of the transforms of any length: bins by the definition, energy for all the others, and the
// same bits wherever the arrays lie.
#include "support/sweep.h"
#include "transform/dft_support.h"

namespace zep::test {
namespace {

class DftValues : public VariantTest {};

// The root mean square error is at most 1.3 units times sqrt(log2 N) with a chirp and 1 without, a unit
// being 2^-24 or 2^-53 of the spectrum's norm; two dozen values of it may come out at 1.6 times their
// deviation.
double errorBound(double unit, int N, bool chirp = false) {
    return 1.6 * (chirp ? 1.3 : 1.0) * unit * std::sqrt(std::log2(std::max(N, 2)));
}

// A dozen bins of each, all of the shortest.
template <class Kind>
void matchesTheDefinition(const Definition& definition, int flag) {
    using T = typename Kind::Element;
    constexpr bool inverse = std::is_same_v<Kind, DftInverse>;
    const int N = static_cast<int>(definition.length());
    SCOPED_TRACE(testing::Message() << "len " << N << " flag " << flag);
    const Dft<Kind> dft(N, flag);
    const auto len = static_cast<std::size_t>(N);
    std::vector<T> x(len);
    fillRandom(x);
    // Scratch of exactly the bytes asked for, at an odd address, as are source and destination.
    GuardedBuffer<T> src(N, Edge::Front, 1), dst(N, Edge::Back, 1), both(N, Edge::Back);
    GuardedBuffer<Zep8u> scratch(dft.scratchBytes(), Edge::Back);
    std::memcpy(src.data(), x.data(), len * sizeof(T));
    std::memcpy(both.data(), x.data(), len * sizeof(T));
    ASSERT_EQ(Kind::forward(src.data(), dst.data(), dft.spec(), scratch.data()), zepStsNoErr);
    ASSERT_EQ(Kind::forward(both.data(), both.data(), dft.spec(), nullptr), zepStsNoErr);
    std::vector<T> X(len);
    std::memcpy(X.data(), dst.data(), len * sizeof(T));
    ASSERT_TRUE(sameBits(both.data(), X.data(), len)) << "in place";
    ASSERT_EQ(std::memcmp(src.data(), x.data(), len * sizeof(T)), 0) << "the source has changed";

    const bool scales =
        flag == ZEP_FFT_SCALE_SQRT || flag == (inverse ? ZEP_FFT_SCALE_INV : ZEP_FFT_SCALE_FWD);
    const long double factor = !scales ? 1
                               : flag == ZEP_FFT_SCALE_SQRT
                                   ? 1 / std::sqrt(static_cast<long double>(N))
                                   : 1 / static_cast<long double>(N);
    long double energy = 0, spectrum = 0, difference = 0;
    for (const T& v : x) energy += std::norm(toExtended(v));
    for (std::size_t k = 0; k < len; ++k)
        spectrum += std::norm(computedBin(X.data(), len, k) / factor);
    const double bound =
        errorBound(Kind::unit, N, dft.spec()->convSpec != nullptr) + (scales ? 0x1p-21 : 0);
    EXPECT_NEAR(static_cast<double>(spectrum / (energy * N)), 1, 3 * bound);

    const std::size_t step = std::max<std::size_t>(1, len / 12);
    int bins = 0;
    for (std::size_t k = 0; k < len; k += len <= 48 ? 1 : 1 + rng()() % (2 * step), ++bins)
        difference +=
            std::norm(computedBin(X.data(), len, k) / factor - definition.bin(x, k, inverse));
    EXPECT_LE(static_cast<double>(std::sqrt(difference / (bins * energy))), bound);
}

void allKindsMatch(int N) {
    static constexpr int kAll[] = {1, 2, 4, 8};
    const Definition definition(static_cast<std::size_t>(N));
    matchesTheDefinition<DftComplex>(definition, kAll[N % 4]);
    matchesTheDefinition<DftInverse>(definition, kAll[N / 2 % 4]);
    matchesTheDefinition<DftDouble>(definition, kAll[N / 3 % 4]);
    matchesTheDefinition<DftReal>(definition, kAll[N / 5 % 4]);
}

// Cases dealt to the columns in turn: each is met in one of them.
bool isMine(const Variant& column, int n) {
    const auto columns = builtColumns();
    const auto count = static_cast<int>(columns.size());
    return columns[static_cast<std::size_t>(n % count)].slot == column.slot;
}

TEST_P(DftValues, EveryShortLengthMatchesTheDefinition) {
    for (int N = 1; N <= 160; N += N < 100 ? 1 : thinStep(5)) {
        allKindsMatch(N);
        if (HasFatalFailure()) return;
    }
}

TEST_P(DftValues, EveryLengthMatchesTheDefinitionInOneOfTheColumns) {
    for (int N = 161; N <= 4096; N += thinStep(131)) {
        if (!thin() && !isMine(GetParam(), N)) continue;
        allKindsMatch(N);
        if (HasFatalFailure()) return;
    }
}

// Generic radices and every fixed one, deep factorisations, powers of two, primes and products of
// two large ones, on either side of each limit.
TEST_P(DftValues, EachRouteMatchesTheDefinition) {
    for (const int N : {243,  289,  298,  360,  529,  596,  600,  961,  1000, 1009, 1331, 1849,
                        2000, 2048, 2187, 2197, 2401, 3125, 3127, 4099, 7921, 8192, 8191, 11881}) {
        if (thin() && N > 2500) continue;
        allKindsMatch(N);
        if (HasFatalFailure()) return;
    }
}

// Primes by the definition in both precisions, every generic radix as first stage and in a pass,
// six and twelve merged, wide last factors.
TEST_P(DftValues, EachRadixMatchesTheDefinition) {
    constexpr int kPrimes[] = {17, 19, 23, 29, 31,  37,  41,  43,  47,  53,  59,  61,  67,  71, 73,
                               79, 83, 89, 97, 101, 103, 107, 109, 113, 127, 131, 137, 139, 149};
    int n = 0;
    for (const int p : kPrimes) {
        for (const int multiple : {p, 2 * p, 4 * p, 12 * p, 3 * p, 35 * p, p * p, 16 * p})
            if (isMine(GetParam(), n++)) allKindsMatch(multiple);
        if (HasFatalFailure() || (thin() && p > 31)) return;
    }
}

// Every route beyond the nearest caches.
TEST_P(DftValues, LongTransformsMatchTheDefinition) {
    if (thin()) return;
    int n = 0;
    for (const int N : {16383,
                        32767,
                        44100,
                        48000,
                        59049,
                        65537,
                        78125,
                        99856,
                        100000,
                        117649,
                        131071,
                        149 * 512,
                        161051,
                        176399,
                        177147,
                        196608,
                        199999,
                        200000,
                        17 * 17 * 17 * 17,
                        89 * 89 * 4,
                        192000}) {
        if (!isMine(GetParam(), n++)) continue;
        allKindsMatch(N);
        if (HasFatalFailure()) return;
    }
    const Definition odd(99225), even(44098);
    matchesTheDefinition<DftComplex>(odd, 8);
    matchesTheDefinition<DftReal>(odd, 8);
    matchesTheDefinition<DftReal>(even, 1);
}

// Every value with each flag is the unscaled one times the factor, up to roundings: of the value, or
// of the up to sixteen terms of its last sum, whose twiddles have the factor in them. Half a unit
// each, as good as random, makes two; the worst of some thousand bins lies at two or three times
// that.
template <class Kind>
void scalesOnce(int N) {
    using T = typename Kind::Element;
    constexpr bool inverse = std::is_same_v<Kind, DftInverse>;
    const auto len = static_cast<std::size_t>(N);
    std::vector<T> x(len), plain(len), scaled(len);
    fillRandom(x);
    ASSERT_EQ(Kind::forward(x.data(), plain.data(), Dft<Kind>(N).spec(), nullptr), zepStsNoErr);
    long double largest = 0;
    for (const T& v : plain) largest = std::max(largest, std::abs(toExtended(v)));
    for (const int flag : {ZEP_FFT_SCALE_FWD, ZEP_FFT_SCALE_INV, ZEP_FFT_SCALE_SQRT}) {
        SCOPED_TRACE(testing::Message() << "len " << N << " flag " << flag);
        const Dft<Kind> dft(N, flag);
        ASSERT_EQ(Kind::forward(x.data(), scaled.data(), dft.spec(), nullptr), zepStsNoErr);
        const auto length = static_cast<long double>(N);
        const long double factor = flag == ZEP_FFT_SCALE_SQRT ? 1 / std::sqrt(length)
                                   : flag == (inverse ? ZEP_FFT_SCALE_INV : ZEP_FFT_SCALE_FWD)
                                       ? 1 / length
                                       : 1;
        long double worst = 0;
        for (std::size_t k = 0; k < len; ++k)
            worst =
                std::max(worst, std::abs(toExtended(scaled[k]) / factor - toExtended(plain[k])));
        EXPECT_LE(static_cast<double>(worst / largest), 8 * Kind::unit);
    }
}

// Straight-line code, two passes through a buffer, more of them, by the definition, the
// power-of-two transform and convolutions; whole and partial vectors, generic radices, middle
// elements of the fold.
TEST_P(DftValues, EveryRouteScalesOnce) {
    for (const int N : {1,    2,    3,    4,    5,    6,    7,    8,     9,     10,    11,   12,
                        13,   14,   15,   16,   17,   18,   23,   27,    31,    32,    33,   34,
                        36,   40,   43,   47,   53,   60,   64,   74,    83,    86,    89,   106,
                        108,  118,  149,  225,  243,  289,  360,  480,   1000,  1009,  1018, 1331,
                        1849, 2000, 2048, 2187, 2384, 4098, 4099, 10000, 10007, 16384, 44100}) {
        scalesOnce<DftComplex>(N);
        scalesOnce<DftInverse>(N);
        scalesOnce<DftDouble>(N);
        scalesOnce<DftReal>(N);
        if (HasFatalFailure() || (thin() && N > 2500)) return;
    }
}

// The norm of a spectrum is that of its signal but for errors as good as random: their share in the
// norm's is 2 units / sqrt(2N). Constants that change it would add up over the passes.
template <class Kind>
double gainInUnits(int N) {
    constexpr int kSignals = 4;
    const Dft<Kind> dft(N);
    std::vector<typename Kind::Element> x(static_cast<std::size_t>(N)), X = x;
    long double sum = 0;
    for (int s = 0; s < kSignals; ++s) {
        fillRandom(x);
        EXPECT_EQ(Kind::forward(x.data(), X.data(), dft.spec(), nullptr), zepStsNoErr);
        long double energy = 0, spectrum = 0;
        for (const auto& v : x) energy += std::norm(toExtended(v));
        for (const auto& v : X) spectrum += std::norm(toExtended(v));
        sum += (spectrum / (energy * N) - 1) / 2;
    }
    return static_cast<double>(sum / kSignals) / Kind::unit;
}
TEST_P(DftValues, PassesKeepTheNorm) {
    for (const int N : {480, 960, 1000, 1152, 1536, 2187, 44100, 48000}) {
        EXPECT_LE(std::abs(gainInUnits<DftComplex>(N)), 0.3) << "len " << N;
        EXPECT_LE(std::abs(gainInUnits<DftDouble>(N)), 0.3) << "len " << N;
    }
}

TEST_P(DftValues, ThreePointsGiveTheSumsByHand) {
    const Zep32f x[3] = {1, 2, 4};
    Zep32f X[3];
    ASSERT_EQ(zepsDFTFwd_RToPerm_32f(x, X, Dft<DftReal>(3).spec(), nullptr), zepStsNoErr);
    EXPECT_EQ(X[0], 7);
    EXPECT_EQ(X[1], -2);
    EXPECT_FLOAT_EQ(X[2], -0.8660254f * (2 - 4));
}

// exp(-i*pi*n^2/N) is the same forward and backward: the inverse is the forward transform read
// backwards, bit for bit.
TEST_P(DftValues, TheInverseOfAChirpIsItsForwardTransformReversed) {
    const Dft<DftComplex> dft(53);
    std::vector<Zep32fc> x(53), X(53), Y(53);
    fillRandom(x);
    ASSERT_EQ(zepsDFTFwd_CToC_32fc(x.data(), X.data(), dft.spec(), nullptr), zepStsNoErr);
    ASSERT_EQ(zepsDFTInv_CToC_32fc(x.data(), Y.data(), dft.spec(), nullptr), zepStsNoErr);
    std::reverse(Y.begin() + 1, Y.end());
    EXPECT_TRUE(sameBits(X.data(), Y.data(), 53));
}

TEST_P(DftValues, ForwardAndInverseRestoreTheSignal) {
    for (const int N : {1, 3, 16, 17, 18, 53, 64, 2187}) {
        const Dft<DftComplex> dft(N, ZEP_FFT_SCALE_INV);
        std::vector<Zep32fc> x(static_cast<std::size_t>(N)), y = x;
        fillRandom(x);
        ASSERT_EQ(zepsDFTFwd_CToC_32fc(x.data(), y.data(), dft.spec(), nullptr), zepStsNoErr);
        ASSERT_EQ(zepsDFTInv_CToC_32fc(y.data(), y.data(), dft.spec(), nullptr), zepStsNoErr);
        ErrorNorm error;
        error.add(y.data(), toDouble(x.data(), x.size()));
        EXPECT_LE(error.rms(), 2 * errorBound(0x1p-24, N) + 0x1p-23) << "len " << N;
    }
}

ZEP_FOR_EACH_VARIANT(DftValues);

}  // namespace
}  // namespace zep::test
