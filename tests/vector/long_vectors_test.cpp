// Vectors of 2^31 bytes: no count of bytes may be kept in 32 bits, and none may be refused.
#include <gtest/gtest.h>

#include "support/sweep.h"
#include "support/variant.h"
#include "vector/repeated_pages.h"
#include "zeps.h"

namespace zep::test {
namespace {

class LongVectors : public VariantTest {
protected:
    void SetUp() override {
        VariantTest::SetUp();
        if (!IsSkipped() && thin()) GTEST_SKIP() << "too slow here";
    }

    // call(src, dst, len) has to copy the source, or to clear the destination.
    template <class T, class Call>
    void expectCopy(Call call) {
        run<T>(call, [](int n) { return static_cast<T>(n + 1); });
    }
    template <class T, class Call>
    void expectClear(Call call) {
        run<T>(call, [](int) { return T{0}; });
    }

private:
    template <class T, class Call, class Expected>
    void run(Call call, Expected expected) {
        constexpr int kLen = static_cast<int>((std::size_t{1} << 31) / sizeof(T));
        constexpr int kPeriod = RepeatedPages<T>::kPeriod;
        static RepeatedPages<T> x(kLen), y(kLen);  // their pages are there from the second use on
        if (x.data() == nullptr || y.data() == nullptr) GTEST_SKIP() << "no address range of 2 GiB";
        for (int n = 0; n < kPeriod; ++n) {
            x.data()[n] = static_cast<T>(n + 1);
            y.data()[n] = T{-1};
        }
        ASSERT_EQ(call(x.data(), y.data(), kLen), zepStsNoErr);
        for (int n = 0; n < kPeriod; ++n) ASSERT_EQ(y.data()[n], expected(n)) << n;
    }
};

TEST_P(LongVectors, OfFloatsAreCopiedAndCleared) {
    expectCopy<Zep32f>([](auto x, auto y, int len) { return zepsSubC_32f(x, 0.0f, y, len); });
    expectClear<Zep32f>([](auto x, auto y, int len) { return zepsMulC_32f(x, 0.0f, y, len); });
}

TEST_P(LongVectors, OfDoublesAreCopiedAndCleared) {
    expectCopy<Zep64f>([](auto x, auto y, int len) { return zepsMulC_64f(x, 1.0, y, len); });
    expectCopy<Zep64f>([](auto x, auto y, int len) { return zepsSubC_64f(x, 0.0, y, len); });
    expectClear<Zep64f>([](auto x, auto y, int len) { return zepsMulC_64f(x, 0.0, y, len); });
}

ZEP_FOR_EACH_VARIANT(LongVectors);

}  // namespace
}  // namespace zep::test
