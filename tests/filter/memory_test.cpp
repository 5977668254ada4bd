// What happens when memory is short: at every allocation of a call in turn.
#include "filter/filter_support.h"
#include "support/failing_heap.h"

namespace zep::test {
namespace {

class FilterMemory : public VariantTest {};

// Calls until enough allocations succeed; returns how many that is. `failed` sees the state after each failure.
template <class Call, class Failed>
int untilItSucceeds(Call call, Failed failed) {
    for (int allowed = 0; allowed < 20; ++allowed) {
        int live = 0;
        ZepStatus status = zepStsNoErr;
        {
            const FailingHeap heap(allowed);
            status = call();
            live = heap.live();
        }
        EXPECT_EQ(live, 0) << "with " << allowed << " allocations";
        if (status == zepStsNoErr) return allowed;
        EXPECT_EQ(status, zepStsMemAllocErr) << "with " << allowed << " allocations";
        failed(allowed);
    }
    return -1;
}
const auto ignore = [](int) {};

TEST_P(FilterMemory, ConvolutionReleasesWhatItGot) {
    const auto x = randomVector<Zep32f>(3000);
    std::vector<Zep32f> y(6000);
    const auto conv = [&](int a, int b) {
        return untilItSucceeds([&] { return zepsConv_32f(x.data(), a, x.data(), b, y.data()); },
                               ignore);
    };
    EXPECT_EQ(conv(255, 256), 0);
    EXPECT_EQ(conv(3000, 63), 0);
    EXPECT_GE(conv(300, 300), 1);
    EXPECT_GE(conv(3000, 100), 1);
    EXPECT_GE(conv(3000, 2000), 1);
    std::vector<Zep16s> a(3000, 1), b(6000);
    const auto scaled = [&](int m, int n) {
        return untilItSucceeds(
            [&] { return zepsConv_16s_Sfs(a.data(), m, a.data(), n, b.data(), 0); }, ignore);
    };
    EXPECT_EQ(scaled(1, 1), 1);
    EXPECT_EQ(scaled(3000, 63), 1);
    EXPECT_GE(scaled(300, 300), 1);
    EXPECT_GE(scaled(3000, 100), 1);
}

TEST_P(FilterMemory, CorrelationReleasesWhatItGot) {
    const auto x = randomVector<Zep32f>(2000);
    const auto z = randomVector<Zep32fc>(2000);
    std::vector<Zep32f> y(4000);
    std::vector<Zep32fc> w(4000);
    const auto real = [&](auto f, int n) {
        return untilItSucceeds([&] { return f(x.data(), n, y.data(), n); }, ignore);
    };
    const auto complex = [&](auto f, int n) {
        return untilItSucceeds([&] { return f(z.data(), n, w.data(), n); }, ignore);
    };
    EXPECT_EQ(real(zepsAutoCorr_32f, 855), 0);
    EXPECT_EQ(real(zepsAutoCorr_NormA_32f, 855), 0);
    EXPECT_EQ(real(zepsAutoCorr_NormB_32f, 855), 1);
    EXPECT_GE(real(zepsAutoCorr_32f, 856), 1);
    EXPECT_GE(real(zepsAutoCorr_NormA_32f, 856), 1);
    EXPECT_GE(real(zepsAutoCorr_NormB_32f, 856), 2);
    EXPECT_EQ(complex(zepsAutoCorr_32fc, 151), 0);
    EXPECT_EQ(complex(zepsAutoCorr_NormB_32fc, 151), 1);
    EXPECT_GE(complex(zepsAutoCorr_32fc, 152), 1);
    EXPECT_GE(complex(zepsAutoCorr_NormA_32fc, 152), 1);
    EXPECT_GE(complex(zepsAutoCorr_NormB_32fc, 152), 2);
    const int pairs[][2] = {{700, 600}, {400, 1900}, {1900, 400}};
    for (const auto& p : pairs) {
        const int lags = p[0] + p[1] - 1, low = 1 - p[0];
        EXPECT_GE(untilItSucceeds(
                      [&] {
                          return zepsCrossCorr_32f(x.data(), p[0], x.data(), p[1], y.data(), lags,
                                                   low);
                      },
                      ignore),
                  1);
        EXPECT_GE(untilItSucceeds(
                      [&] {
                          return zepsCrossCorr_32fc(z.data(), p[0], z.data(), p[1], w.data(), lags,
                                                    low);
                      },
                      ignore),
                  1);
    }
}

TEST_P(FilterMemory, WithoutDenominatorsThePlainAutocorrelationStays) {
    for (const int n : {100, 1000}) {
        const auto x = randomVector<Zep32f>(n);
        std::vector<Zep32f> plain(static_cast<std::size_t>(n)), y(plain);
        ASSERT_EQ(zepsAutoCorr_32f(x.data(), n, plain.data(), n), zepStsNoErr);
        int last = -1;
        const int needed =
            untilItSucceeds([&] { return zepsAutoCorr_NormB_32f(x.data(), n, y.data(), n); },
                            [&](int allowed) {
                                last = allowed;
                                if (n == 100) {
                                    EXPECT_EQ(y, plain);
                                }
                            });
        EXPECT_EQ(last, needed - 1);
        const FailingHeap heap(needed - 1);
        y.assign(y.size(), 0.0f);
        EXPECT_EQ(zepsAutoCorr_NormB_32f(x.data(), n, y.data(), n), zepStsMemAllocErr);
        EXPECT_EQ(y, plain);
    }
}

ZEP_FOR_EACH_VARIANT(FilterMemory);

}  // namespace
}  // namespace zep::test
