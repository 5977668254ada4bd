// What the tests of reductions share: vectors of every length, at every kind of address.
#pragma once

#include <vector>

#include "support/sweep.h"
#include "vector/arithmetic_subject.h"

namespace zep::test {

// Lengths of every number of left-over elements, around the steps of all accumulators and the
// blocks of the index searches.
inline std::vector<int> reductionLengths() {
    std::vector<int> lengths = sweepLengths();
    for (const int around : {96, 128, 160, 256, 512, 1024, 2048}) {
        if (thin() && around % 512 != 0) continue;
        for (const int more : {-1, 0, 1, 17}) lengths.push_back(around + more);
    }
    return lengths;
}

// check(values, operand) for each length, with an unreadable page at either end, and for some of
// them at addresses between elements too. make(len) gives the values.
template <class T, class Make, class Check>
void forVectors(Make make, Check check) {
    for (const int len : reductionLengths())
        for (const Edge edge : {Edge::Front, Edge::Back})
            for (const int skew : {0, 1, 4}) {
                if (skew != 0 && (len > 70 || thin())) continue;
                const std::vector<T> values = make(len);
                Operand<T> x(len, edge, skew);
                x = values;
                check(values, x);
                if (::testing::Test::HasFatalFailure()) return;
            }
}

template <class T>
std::vector<T> randomValues(int len) {
    std::vector<T> values(static_cast<std::size_t>(len));
    for (T& x : values) x = randomValue<T>();
    return values;
}

// For a function (source, len, result): null before size, each pointer, nothing written.
template <class T, class R, class Call>
void checkReductionErrors(Call call) {
    const T source[3] = {};
    R result;
    std::memset(&result, 0x5A, sizeof result);
    const R before = result;
    for (const int len : {3, 0, -1}) {
        EXPECT_EQ(call(static_cast<const T*>(nullptr), len, &result), zepStsNullPtrErr);
        EXPECT_EQ(call(source, len, static_cast<R*>(nullptr)), zepStsNullPtrErr);
    }
    for (const int len : {0, -1, std::numeric_limits<int>::min()})
        EXPECT_EQ(call(source, len, &result), zepStsSizeErr);
    EXPECT_EQ(std::memcmp(&result, &before, sizeof result), 0);
}

}  // namespace zep::test
