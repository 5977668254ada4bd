// One object of any length serves several threads at once.
#include <thread>

#include "transform/dft_support.h"

namespace zep::test {
namespace {

class DftThreads : public VariantTest {};

template <class Kind>
void threadsShareAnObject(int N) {
    using T = typename Kind::Element;
    constexpr int kThreads = 4, kCalls = 4;
    const Dft<Kind> dft(N, ZEP_FFT_SCALE_SQRT);
    std::vector<T> x(static_cast<std::size_t>(N)), want(x.size());
    fillRandom(x);
    ASSERT_EQ(Kind::forward(x.data(), want.data(), dft.spec(), nullptr), zepStsNoErr);

    std::vector<int> good(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            std::vector<Zep8u> scratch(static_cast<std::size_t>(dft.scratchBytes()) + 1);
            std::vector<T> X(x.size());
            for (int call = 0; call < kCalls; ++call) {
                X = x;
                Zep8u* own = (t + call) % 2 == 0 ? scratch.data() : nullptr;
                const T* from = call % 2 == 0 ? X.data() : x.data();
                if (Kind::forward(from, X.data(), dft.spec(), own) != zepStsNoErr) return;
                if (sameBits(X.data(), want.data(), x.size())) ++good[static_cast<std::size_t>(t)];
            }
        });
    for (std::thread& thread : threads) thread.join();
    for (const int calls : good) EXPECT_EQ(calls, kCalls) << "len " << N;
}

// Straight-line code, the definition, passes of two and of many, generic radices, a nested
// transform of a power of two, and a convolution with either kind of inner transform.
TEST_P(DftThreads, ShareAnObjectOfEachRoute) {
    for (const int N : {12, 43, 60, 64, 106, 323, 596, 1009, 2187, 4099, 10000}) {
        threadsShareAnObject<DftComplex>(N);
        threadsShareAnObject<DftInverse>(N);
        threadsShareAnObject<DftDouble>(N);
        threadsShareAnObject<DftReal>(N);
    }
}

// Set-up shares nothing.
TEST_P(DftThreads, CreateObjectsAtTheSameTime) {
    std::vector<std::thread> threads;
    std::vector<ZepStatus> status(4, zepStsErr);
    for (std::size_t t = 0; t < status.size(); ++t)
        threads.emplace_back([&status, t] {
            DFTSpecC32fc* spec = nullptr;
            status[t] = zepsDFTInitAlloc_C_32fc(&spec, t % 2 == 0 ? 1009 : 1920, 8, 0);
            if (status[t] == zepStsNoErr) status[t] = zepsDFTFree_C_32fc(spec);
        });
    for (std::thread& thread : threads) thread.join();
    for (const ZepStatus s : status) EXPECT_EQ(s, zepStsNoErr);
}

ZEP_FOR_EACH_VARIANT(DftThreads);

}  // namespace
}  // namespace zep::test
