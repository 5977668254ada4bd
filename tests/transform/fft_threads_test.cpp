// One object serves several threads at once.
#include "transform/fft_support.h"
#include "transform/threads_support.h"

namespace zep::test {
namespace {

class FftThreads : public VariantTest {};

template <class Kind>
void threadsShareAnObject(int order) {
    using T = typename Kind::Element;
    const Fft<Kind> fft(order, ZEP_FFT_SCALE_SQRT);
    const auto x = randomSignal<T>(order);
    std::vector<T> want(x.size());
    ASSERT_EQ(fft.forward(x.data(), want.data()), zepStsNoErr);
    expectSameOnThreads(x, want, fft.scratchBytes(), 5, [&](const T* src, T* dst, Zep8u* scratch) {
        return fft.forward(src, dst, scratch);
    });
}

TEST_P(FftThreads, ShareAComplexObject) {
    for (const int order : {3, 7, 12, 16, 19}) threadsShareAnObject<ComplexKind>(order);
}

TEST_P(FftThreads, ShareARealObject) {
    for (const int order : {3, 6, 11, 16, 20}) threadsShareAnObject<RealKind>(order);
}

// Set-up shares nothing but the constant sines.
TEST_P(FftThreads, CreateObjectsAtTheSameTime) {
    expectCreationOnThreads([](std::size_t) {
        FFTSpecC32fc* spec = nullptr;
        const ZepStatus status = zepsFFTInitAlloc_C_32fc(&spec, 13, ZEP_FFT_SCALE_NONE, 0);
        return status == zepStsNoErr ? zepsFFTFree_C_32fc(spec) : status;
    });
}

ZEP_FOR_EACH_VARIANT(FftThreads);

}  // namespace
}  // namespace zep::test
