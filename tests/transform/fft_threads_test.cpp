// One object serves several threads at once.
#include <thread>

#include "transform/fft_support.h"

namespace zep::test {
namespace {

class FftThreads : public VariantTest {};

template <class Kind>
void threadsShareAnObject(int order) {
    using T = typename Kind::Element;
    constexpr int kThreads = 4, kCalls = 5;
    const Fft<Kind> fft(order, ZEP_FFT_SCALE_SQRT);
    const auto x = randomSignal<T>(order);
    std::vector<T> want(x.size());
    ASSERT_EQ(fft.forward(x.data(), want.data()), zepStsNoErr);

    std::vector<int> good(kThreads);
    std::vector<std::thread> threads;
    const int scratchBytes = fft.scratchBytes();
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            std::vector<Zep8u> scratch(static_cast<std::size_t>(scratchBytes) + 1);
            std::vector<T> X(x.size());
            for (int call = 0; call < kCalls; ++call) {
                X = x;
                Zep8u* own = (t + call) % 2 == 0 ? scratch.data() : nullptr;
                if (call % 2 == 0) {
                    if (fft.forward(X.data(), X.data(), own) != zepStsNoErr) return;
                } else {
                    if (fft.forward(x.data(), X.data(), own) != zepStsNoErr) return;
                }
                if (sameBits(X.data(), want.data(), x.size())) ++good[static_cast<std::size_t>(t)];
            }
        });
    for (std::thread& thread : threads) thread.join();
    for (const int calls : good) EXPECT_EQ(calls, kCalls) << "order " << order;
}

TEST_P(FftThreads, ShareAComplexObject) {
    for (const int order : {3, 7, 12, 16, 19}) threadsShareAnObject<ComplexKind>(order);
}

TEST_P(FftThreads, ShareARealObject) {
    for (const int order : {3, 6, 11, 16, 20}) threadsShareAnObject<RealKind>(order);
}

// Set-up shares nothing but the constant sines.
TEST_P(FftThreads, CreateObjectsAtTheSameTime) {
    std::vector<std::thread> threads;
    std::vector<ZepStatus> status(4, zepStsErr);
    for (std::size_t t = 0; t < status.size(); ++t)
        threads.emplace_back([&status, t] {
            FFTSpecC32fc* spec = nullptr;
            status[t] = zepsFFTInitAlloc_C_32fc(&spec, 13, ZEP_FFT_SCALE_NONE, 0);
            if (status[t] == zepStsNoErr) status[t] = zepsFFTFree_C_32fc(spec);
        });
    for (std::thread& thread : threads) thread.join();
    for (const ZepStatus s : status) EXPECT_EQ(s, zepStsNoErr);
}

ZEP_FOR_EACH_VARIANT(FftThreads);

}  // namespace
}  // namespace zep::test
