// What the tests of conversions share: a conversion with its reference, and the sweeps over lengths,
// addresses, control words and errors that each has to pass.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <vector>

#include "support/control_word.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "zeps.h"

namespace zep::test {

// A 24-bit sample as it stands in memory.
struct Packed24 {
    std::array<Zep8u, 3> bytes;

    static Packed24 of(int value) {
        const auto bits = static_cast<unsigned>(value);
        return {{static_cast<Zep8u>(bits), static_cast<Zep8u>(bits >> 8),
                 static_cast<Zep8u>(bits >> 16)}};
    }
    int value() const {
        const int low = bytes[0] + 256 * bytes[1] + 65536 * bytes[2];
        return low >= 1 << 23 ? low - (1 << 24) : low;
    }
    friend bool operator==(const Packed24&, const Packed24&) = default;
};

template <class T>
bool sameSample(T x, T y) {
    if constexpr (std::is_floating_point_v<T>)
        return (std::isnan(x) && std::isnan(y)) || std::memcmp(&x, &y, sizeof x) == 0;
    else
        return x == y;
}

template <class T>
double printable(T x) {
    if constexpr (std::is_same_v<T, Packed24>)
        return x.value();
    else
        return static_cast<double>(x);
}

// The ends of the range, what lies beside ties and limits, and random values.
template <class T>
T sampleValue(std::size_t n) {
    if constexpr (std::is_same_v<T, Packed24>) {
        static constexpr int kSpecial[] = {0, 1, -1, 0x7FFFFF, -0x800000, 0x7F80, -0x8000, 0xFF};
        if (n % 3 == 0) return Packed24::of(kSpecial[n / 3 % std::size(kSpecial)]);
        return Packed24::of(static_cast<int>(rng()() & 0xFFFFFF));
    } else if constexpr (std::is_integral_v<T>) {
        using L = std::numeric_limits<T>;
        static constexpr T kSpecial[] = {0,
                                         1,
                                         static_cast<T>(-1),
                                         L::max(),
                                         L::min(),
                                         L::max() - 1,
                                         L::min() + 1,
                                         L::max() / 2,
                                         L::max() / 2 + 1};
        if (n % 3 == 0) return kSpecial[n / 3 % std::size(kSpecial)];
        return static_cast<T>(rng()() >> (n % 5 == 0 ? 48 : 0));
    } else {
        using L = std::numeric_limits<T>;
        static const T kSpecial[] = {0,
                                     -T{0},
                                     T(0.5),
                                     T(-0.5),
                                     T(1.5),
                                     T(-1.5),
                                     T(2.5),
                                     T(-2.5),
                                     std::nextafter(T(0.5), T{0}),
                                     std::nextafter(T(-0.5), T{0}),
                                     std::nextafter(T(1.5), T{0}),
                                     T(126.5),
                                     T(127.5),
                                     T(-127.5),
                                     T(-128.5),
                                     T(-129),
                                     T(32766.5),
                                     T(32767.5),
                                     T(-32767.5),
                                     T(-32768.5),
                                     T(32768),
                                     T(8388606.5),
                                     T(8388607),
                                     T(8388608),
                                     T(-8388608),
                                     T(-8388609),
                                     T(2147483520),
                                     T(2147483648.0),
                                     T(-2147483648.0),
                                     T(-2147483904.0),
                                     T(3.0e9),
                                     T(-3.0e9),
                                     L::max(),
                                     L::lowest(),
                                     L::min(),
                                     -L::min(),
                                     L::denorm_min(),
                                     -L::denorm_min(),
                                     L::infinity(),
                                     -L::infinity(),
                                     L::quiet_NaN(),
                                     -L::quiet_NaN()};
        if (n % 2 == 0) return kSpecial[n / 2 % std::size(kSpecial)];
        static constexpr double kScales[] = {3.0, 200.0, 4.0e4, 1.0e7, 3.0e9};
        return static_cast<T>(randomValue<double>() * kScales[n / 2 % std::size(kScales)]);
    }
}

// y[n] = expected(x[n]).
template <class S, class D, class Call, class Expected>
struct Conversion {
    const char* name;
    Call call;          // ZepStatus(const S*, D*, int)
    Expected expected;  // D(S)
};

template <class S, class D, class Call, class Expected>
Conversion<S, D, Call, Expected> conversion(const char* name, Call call, Expected expected) {
    return {name, call, expected};
}

// Samples with their results, made once for all lengths.
template <class S, class D>
class Samples {
public:
    static constexpr std::size_t kCount =
        1021;  // a prime: no multiple of a vector looks like another

    explicit Samples(auto expected) {
        for (std::size_t n = 0; n < kCount; ++n) {
            source.push_back(sampleValue<S>(n));
            result.push_back(expected(source[n]));
        }
    }
    std::vector<S> source;
    std::vector<D> result;
};

// One call between unreadable pages, at any address, on the samples from number `first` on.
template <class S, class D, class C, class E>
void checkCall(const Conversion<S, D, C, E>& c, const Samples<S, D>& samples, int len, Edge edge,
               int srcSkew, int dstSkew, bool inPlace = false) {
    const auto bytes = static_cast<int>(sizeof(S)) * len;
    GuardedBuffer<std::byte> src(bytes, edge, srcSkew);
    GuardedBuffer<std::byte> dst(static_cast<int>(sizeof(D)) * len, edge, dstSkew);
    const std::size_t first = static_cast<std::size_t>(len) * 7 % samples.kCount;
    auto* const x = inPlace ? dst.data() : src.data();
    for (int n = 0; n < len; ++n)
        std::memcpy(x + n * static_cast<int>(sizeof(S)),
                    &samples.source[(first + static_cast<std::size_t>(n)) % samples.kCount],
                    sizeof(S));
    ASSERT_EQ(c.call(reinterpret_cast<const S*>(x), reinterpret_cast<D*>(dst.data()), len),
              zepStsNoErr)
        << c.name;
    for (int n = 0; n < len; ++n) {
        const std::size_t i = (first + static_cast<std::size_t>(n)) % samples.kCount;
        D y;
        std::memcpy(&y, dst.data() + n * static_cast<int>(sizeof(D)), sizeof y);
        ASSERT_TRUE(sameSample(y, samples.result[i]))
            << c.name << " len " << len << " n " << n << " skews " << srcSkew << ' ' << dstSkew
            << ": " << printable(samples.source[i]) << " gives " << printable(y) << ", not "
            << printable(samples.result[i]);
    }
}

// Every length that begins with a partial vector, whole ones and overlapping ones, in vectors of 16
// to 64 bytes of either type, and one beyond every limit of stores past the cache.
template <class S, class D, class C, class E>
void checkLengths(const Conversion<S, D, C, E>& c) {
    const Samples<S, D> samples(c.expected);
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (int len = 1; len <= 300; len += len < 70 ? 1 : 7)
            checkCall(c, samples, len, edge, 0, 0);
    for (const int len : {511, 512, 513, 1024, 2047}) checkCall(c, samples, len, Edge::Back, 0, 0);
    constexpr int kPastCache = 0x4100 * 32 / int{sizeof(D)};
    checkCall(c, samples, kPastCache + 3, Edge::Back, 0, 0);
}

template <class S, class D, class C, class E>
void checkAddresses(const Conversion<S, D, C, E>& c) {
    const Samples<S, D> samples(c.expected);
    for (const int len : {1, 3, 5, 13, 17, 31, 33, 67, 131, 260})
        for (int skew = 1; skew < 64; skew += skew < 4 ? 1 : 5) {
            checkCall(c, samples, len, Edge::Front, 0, skew);
            checkCall(c, samples, len, Edge::Back, skew, 0);
            checkCall(c, samples, len, Edge::Front, skew, 64 - skew);
        }
    if constexpr (sizeof(S) == sizeof(D))
        for (int len = 1; len <= 200; len += len < 70 ? 1 : 13)
            for (const int skew : {0, 4, 1}) checkCall(c, samples, len, Edge::Back, 0, skew, true);
}

// Null before size, either pointer, and nothing written.
template <class S, class D, class C, class E>
void checkErrors(const Conversion<S, D, C, E>& c) {
    GuardedBuffer<S> src(4, Edge::Back);
    GuardedBuffer<D> dst(4, Edge::Back);
    const std::vector<std::byte> before(4 * sizeof(D), std::byte{0xA5});
    for (const int len : {4, 0, -1}) {
        EXPECT_EQ(c.call(nullptr, dst.data(), len), zepStsNullPtrErr) << c.name;
        EXPECT_EQ(c.call(src.data(), nullptr, len), zepStsNullPtrErr) << c.name;
    }
    for (const int len : {0, -1, std::numeric_limits<int>::min()})
        EXPECT_EQ(c.call(src.data(), dst.data(), len), zepStsSizeErr) << c.name << ' ' << len;
    EXPECT_EQ(std::memcmp(dst.data(), before.data(), before.size()), 0) << c.name;
}

// Under each control word: expected(word) is the reference there. The word is left as it was.
template <class S, class D, class Call, class Expected>
void checkControlWords(const char* name, Call call, Expected expected) {
    for (const unsigned mode : kRoundingModes)
        for (const unsigned denormals : {0u, kDenormalsAreZero | kFlushToZero}) {
            const unsigned word = mode | denormals;
            const auto reference = [&](S x) { return expected(x, word); };
            const auto plain = [&](const S* x, D* y, int len) { return call(x, y, len); };
            const auto c = conversion<S, D>(name, plain, reference);
            const Samples<S, D> samples(c.expected);
            for (const int len : {1, 7, 40, 333}) {
                const auto guarded = [&](const S* x, D* y, int n) {
                    const ControlWord control(word);
                    const ZepStatus status = call(x, y, n);
                    EXPECT_TRUE(control.kept()) << name << " word " << word;
                    return status;
                };
                checkCall(conversion<S, D>(name, guarded, reference), samples, len, Edge::Back, 0,
                          0);
            }
        }
}

template <class S, class D, class C, class E>
void checkConversion(const Conversion<S, D, C, E>& c) {
    checkLengths(c);
    checkAddresses(c);
    checkErrors(c);
}

}  // namespace zep::test
