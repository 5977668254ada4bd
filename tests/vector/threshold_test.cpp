// Element-wise maximum, minimum and thresholds.
#include "support/variant.h"
#include "vector/arithmetic_subject.h"

namespace zep::test {
namespace {

constexpr Zep32f kLevels[] = {0.25f, -1.0f, 0.0f, -0.0f};
constexpr Zep32f kValue = 42.0f;

// The second where either is a not-a-number or both are zero.
Zep32f larger(Zep32f a, Zep32f b) { return a > b ? a : b; }
Zep32f smaller(Zep32f a, Zep32f b) { return a < b ? a : b; }

std::vector<Subject<Zep32f>> subjects(Zep32f level) {
    const auto inPlace = [](auto f) { return [f](auto, auto, auto* y, int n) { return f(y, n); }; };
    return {
        {"MaxEvery", true, false, true,
         [](auto a, auto, auto y, int n) { return zepsMaxEvery_32f_I(a, y, n); },
         [](auto a, auto, auto y) { return larger(y, a); }},
        {"MinEvery", true, false, true,
         [](auto a, auto, auto y, int n) { return zepsMinEvery_32f_I(a, y, n); },
         [](auto a, auto, auto y) { return smaller(y, a); }},
        {"Threshold less", true, false, false,
         [=](auto a, auto, auto y, int n) { return zepsThreshold_32f(a, y, n, level, 0); },
         [=](auto a, auto, auto) { return larger(a, level); }},
        {"Threshold greater", true, false, false,
         [=](auto a, auto, auto y, int n) { return zepsThreshold_32f(a, y, n, level, 4); },
         [=](auto a, auto, auto) { return smaller(a, level); }},
        {"Threshold_I less", false, false, true,
         inPlace([=](auto y, int n) { return zepsThreshold_32f_I(y, n, level, 0); }),
         [=](auto, auto, auto y) { return larger(y, level); }},
        {"Threshold_I greater", false, false, true,
         inPlace([=](auto y, int n) { return zepsThreshold_32f_I(y, n, level, 4); }),
         [=](auto, auto, auto y) { return smaller(y, level); }},
        {"Threshold_LT_I", false, false, true,
         inPlace([=](auto y, int n) { return zepsThreshold_LT_32f_I(y, n, level); }),
         [=](auto, auto, auto y) { return larger(y, level); }},
        {"Threshold_GTVal_I", false, false, true,
         inPlace([=](auto y, int n) { return zepsThreshold_GTVal_32f_I(y, n, level, kValue); }),
         [=](auto, auto, auto y) { return y > level ? kValue : y; }},
        {"Threshold_LTVal_I", false, false, true,
         inPlace([=](auto y, int n) { return zepsThreshold_LTVal_32f_I(y, n, level, kValue); }),
         [=](auto, auto, auto y) { return y < level ? kValue : y; }},
    };
}

class Threshold : public VariantTest {};

TEST_P(Threshold, AllLengthsAddressesAndAliases) {
    for (const auto& s : subjects(kLevels[0])) {
        checkLengths(s);
        checkAddresses(s);
        checkAliases(s);
    }
}

TEST_P(Threshold, ZerosAndNotANumbers) {
    for (const Zep32f level : kLevels)
        for (const auto& s : subjects(level))
            for (const int len : {7, 64, 150}) checkCall(s, len, Edge::Back, 0, 0, 0);
}

TEST_P(Threshold, Errors) {
    for (const auto& s : subjects(0.5f)) checkErrors(s);
    Zep32f x[3] = {1, 2, 3};
    for (const int relOp : {1, 2, 3, 5, -1, 1000}) {
        EXPECT_EQ(zepsThreshold_32f_I(x, 3, 9.0f, relOp), zepStsBadArgErr);
        EXPECT_EQ(zepsThreshold_32f(x, x, 3, 9.0f, relOp), zepStsBadArgErr);
        EXPECT_EQ(zepsThreshold_32f(nullptr, x, 3, 9.0f, relOp), zepStsNullPtrErr);
        EXPECT_EQ(zepsThreshold_32f_I(x, 0, 9.0f, relOp), zepStsSizeErr);
    }
    EXPECT_EQ(x[0], 1.0f);
}

ZEP_FOR_EACH_VARIANT(Threshold);

}  // namespace
}  // namespace zep::test
