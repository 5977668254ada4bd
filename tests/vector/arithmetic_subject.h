// What the tests of element-wise arithmetic share: a function under test with its reference, and
// the sweeps over lengths, addresses, aliases and errors that every such function has to pass.
#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <sstream>
#include <type_traits>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/random.h"
#include "zeps.h"

namespace zep::test {

template <class T>
inline constexpr bool isComplex = std::is_class_v<T>;

// A vector at any address, also between elements, with an unreadable page beside it.
template <class T>
class Operand {
public:
    explicit Operand(int len, Edge edge = Edge::Back, int skewBytes = 0)
        : bytes_(len * static_cast<int>(sizeof(T)), edge, skewBytes), len_(len) {}

    T* data() { return reinterpret_cast<T*>(bytes_.data()); }
    int size() const { return len_; }
    T get(int n) const {
        T x;
        std::memcpy(&x, bytes_.data() + at(n), sizeof x);
        return x;
    }
    void set(int n, T x) { std::memcpy(bytes_.data() + at(n), &x, sizeof x); }

    Operand& operator=(const std::vector<T>& values) {
        for (int n = 0; n < len_; ++n) set(n, values[static_cast<std::size_t>(n)]);
        return *this;
    }
    std::vector<T> values() const {
        std::vector<T> all;
        for (int n = 0; n < len_; ++n) all.push_back(get(n));
        return all;
    }

private:
    static std::size_t at(int n) { return static_cast<std::size_t>(n) * sizeof(T); }
    GuardedBuffer<std::byte> bytes_;
    int len_;
};

// Ordinary numbers with zeros, infinities, NaN and numbers at the ends of the range among them.
template <class T>
T mixedValue() {
    if constexpr (isComplex<T>) {
        using Part = decltype(T::re);
        return {mixedValue<Part>(), mixedValue<Part>()};
    } else {
        using L = std::numeric_limits<T>;
        static const T kSpecial[] = {T{0},     -T{0},          L::infinity(),  -L::infinity(),
                                     L::min(), L::max(),       -L::max(),      L::denorm_min(),
                                     T{1},     L::quiet_NaN(), -L::quiet_NaN()};
        if (rng()() % 6 == 0) return kSpecial[rng()() % std::size(kSpecial)];
        return randomValue<T>() * T{8};
    }
}

// Long vectors repeat with a prime period, so that no multiple of a vector's width looks like
// another.
template <class T>
std::vector<T> mixedValues(int len) {
    constexpr std::size_t kPeriod = 1021;
    std::vector<T> values(static_cast<std::size_t>(len));
    for (std::size_t n = 0; n < values.size(); ++n)
        values[n] = n < kPeriod ? mixedValue<T>() : values[n - kPeriod];
    return values;
}

// Equal bits; of a NaN only that it is one.
template <class T>
bool sameValue(T x, T y) {
    if constexpr (isComplex<T>) {
        return sameValue(x.re, y.re) && sameValue(x.im, y.im);
    } else {
        using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
        return (std::isnan(x) && std::isnan(y)) || std::bit_cast<Bits>(x) == std::bit_cast<Bits>(y);
    }
}

template <class T>
void print(std::ostream& out, T x) {
    if constexpr (isComplex<T>)
        out << '(' << x.re << ", " << x.im << ')';
    else
        out << x;
}

// y = f(a, b), or y = f(a, b, y): sources and destination, in place or not. What a function does
// not take it ignores.
template <class T>
struct Subject {
    const char* name;
    bool takesA, takesB, takesY;
    std::function<ZepStatus(const T* a, const T* b, T* y, int len)> call;
    std::function<T(T a, T b, T y)> expected;
};

enum class Alias { None, A, B, Both };

// One call, compared element by element with the reference.
template <class T>
void checkCall(const Subject<T>& s, int len, Edge edge, int skewA, int skewB, int skewY,
               Alias alias = Alias::None) {
    Operand<T> a(len, edge, skewA), b(len, edge, skewB), y(len, edge, skewY);
    const std::vector<T> y0 = mixedValues<T>(len);
    const bool isA = alias == Alias::A || alias == Alias::Both;
    const bool isB = alias == Alias::B || alias == Alias::Both;
    const std::vector<T> a0 = isA ? y0 : mixedValues<T>(len), b0 = isB ? y0 : mixedValues<T>(len);
    a = a0, b = b0, y = y0;
    ASSERT_EQ(s.call(isA ? y.data() : a.data(), isB ? y.data() : b.data(), y.data(), len),
              zepStsNoErr);
    for (int n = 0; n < len; ++n) {
        const auto i = static_cast<std::size_t>(n);
        const T expected = s.expected(a0[i], b0[i], y0[i]);
        if (sameValue(y.get(n), expected)) continue;
        std::ostringstream text;
        text << s.name << " len " << len << " n " << n << " skews " << skewA << ' ' << skewB << ' '
             << skewY << ": ";
        print(text, y.get(n));
        text << " instead of ";
        print(text, expected);
        FAIL() << text.str();
    }
}

template <class T>
void checkLengths(const Subject<T>& s) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (int len = 1; len <= 70; ++len) checkCall(s, len, edge, 0, 0, 0);
    // Both sides of the lengths from which some variants store past the cache.
    for (const int blocks : {0x2AAA, 0x4000})
        for (const int more : {-1, 1, 9})
            checkCall(s, blocks * 32 / int{sizeof(T)} + more, Edge::Back, 0, 0, 0);
    checkCall(s, 0x4100 * 32 / int{sizeof(T)}, Edge::Front, 4, 8, 12);
    checkCall(s, 0x4100 * 32 / int{sizeof(T)}, Edge::Front, 0, 0, 1);
}

template <class T>
void checkAddresses(const Subject<T>& s) {
    for (int len = 1; len <= 45; ++len)
        for (int skew = 1; skew < 32; skew += skew == 1 ? 3 : 4) {
            checkCall(s, len, Edge::Front, 0, 0, skew);
            checkCall(s, len, Edge::Back, skew, 0, 0);
            checkCall(s, len, Edge::Front, 4, skew, 12);
        }
}

template <class T>
void checkAliases(const Subject<T>& s) {
    for (int len = 1; len <= 150; len += len < 70 ? 1 : 13)
        for (const int skew : {0, 4, 1}) {
            if (s.takesA) checkCall(s, len, Edge::Back, 0, 0, skew, Alias::A);
            if (s.takesB) checkCall(s, len, Edge::Back, 0, 0, skew, Alias::B);
            if (s.takesA && s.takesB) checkCall(s, len, Edge::Back, 0, 0, skew, Alias::Both);
        }
}

// Null before size, every pointer, and nothing written.
template <class T>
void checkErrors(const Subject<T>& s) {
    Operand<T> a(4), b(4), y(4);
    const std::vector<T> y0 = mixedValues<T>(4);
    a = mixedValues<T>(4), b = mixedValues<T>(4), y = y0;
    for (const int len : {4, 0, -1}) {
        EXPECT_EQ(s.call(a.data(), b.data(), nullptr, len), zepStsNullPtrErr) << s.name;
        if (s.takesA) {
            EXPECT_EQ(s.call(nullptr, b.data(), y.data(), len), zepStsNullPtrErr) << s.name;
        }
        if (s.takesB) {
            EXPECT_EQ(s.call(a.data(), nullptr, y.data(), len), zepStsNullPtrErr) << s.name;
        }
    }
    for (const int len : {0, -1, std::numeric_limits<int>::min()})
        EXPECT_EQ(s.call(a.data(), b.data(), y.data(), len), zepStsSizeErr) << s.name << ' ' << len;
    for (int n = 0; n < 4; ++n)
        EXPECT_TRUE(sameValue(y.get(n), y0[static_cast<std::size_t>(n)])) << s.name << ' ' << n;
}

}  // namespace zep::test
