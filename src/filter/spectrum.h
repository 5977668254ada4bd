// Fourier transforms for convolution: an object for the life of one call, and products of spectra.
//
// Real spectra are in the packed order R(0), R(N/2), R(1), I(1), ..
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/variant_exports.h"
#include "transform/fft_real_inverse.h"

namespace zep::ZEP_VARIANT::filter {

// x[k] = h[k] * x[k], and x[k] = x[k] * conj(h[k]), for the N/2 + 1 bins; N at least 4.
void multiplyPacked(const Zep32f* h, Zep32f* x, int N);
void multiplyConjugatePacked(const Zep32f* h, Zep32f* x, int N);

// Elements of T from the library's heap; null where there is no such block.
template <class T>
class Scratch {
public:
    Scratch() = default;
    ~Scratch() { zepFree(memory_); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    bool allocate(std::size_t count) {
        const std::size_t bytes = count * sizeof(T);
        memory_ =
            bytes <= 0x7FFFFFFF ? static_cast<T*>(zepMalloc(static_cast<int>(bytes))) : nullptr;
        return memory_ != nullptr;
    }
    T* data() const { return memory_; }
    // The memory is someone else's from now on.
    void release() { memory_ = nullptr; }

private:
    T* memory_ = nullptr;
};

// Smallest order from `least` on with 2^order >= length.
constexpr int orderFor(std::int64_t length, int least) {
    int order = least;
    while (std::int64_t{1} << order < length) ++order;
    return order;
}

// What the two element types call. The inverse is divided by N.
template <class T>
struct TransformOf;

template <>
struct TransformOf<Zep32f> {
    using Spec = FFTSpecR32f;
    static ZepStatus create(Spec** spec, int order) {
        return ZEP_VARIANT::zepsFFTInitAlloc_R_32f(spec, order, ZEP_FFT_SCALE_INV, 0);
    }
    static void release(Spec* spec) { ZEP_VARIANT::zepsFFTFree_R_32f(spec); }
    static ZepStatus bytes(const Spec* spec, int* size) {
        return ZEP_VARIANT::zepsFFTGetBufSize_R_32f(spec, size);
    }
    static ZepStatus forward(const Zep32f* src, Zep32f* dst, const Spec* spec, Zep8u* work) {
        return ZEP_VARIANT::zepsFFTFwd_RToPerm_32f(src, dst, spec, work);
    }
    static ZepStatus inverse(Zep32f* x, const Spec* spec, Zep8u* work) {
        return fft::FFTInvPermToR(x, x, spec, work);
    }
    static void copy(const Zep32f* src, Zep32f* dst, std::int64_t n) {
        if (n > 0) ZEP_VARIANT::zepsCopy_32f(src, dst, static_cast<int>(n));
    }
    static void zero(Zep32f* dst, std::int64_t n) {
        if (n > 0) ZEP_VARIANT::zepsZero_32f(dst, static_cast<int>(n));
    }
    static void multiply(const Zep32f* h, Zep32f* x, int N) { multiplyPacked(h, x, N); }
    static void multiplyConjugate(const Zep32f* h, Zep32f* x, int N) {
        multiplyConjugatePacked(h, x, N);
    }
};

template <>
struct TransformOf<Zep32fc> {
    using Spec = FFTSpecC32fc;
    static ZepStatus create(Spec** spec, int order) {
        return ZEP_VARIANT::zepsFFTInitAlloc_C_32fc(spec, order, ZEP_FFT_SCALE_INV, 0);
    }
    static void release(Spec* spec) { ZEP_VARIANT::zepsFFTFree_C_32fc(spec); }
    static ZepStatus bytes(const Spec* spec, int* size) {
        return ZEP_VARIANT::zepsFFTGetBufSize_C_32fc(spec, size);
    }
    static ZepStatus forward(const Zep32fc* src, Zep32fc* dst, const Spec* spec, Zep8u* work) {
        return ZEP_VARIANT::zepsFFTFwd_CToC_32fc(src, dst, spec, work);
    }
    static ZepStatus inverse(Zep32fc* x, const Spec* spec, Zep8u* work) {
        return ZEP_VARIANT::zepsFFTInv_CToC_32fc(x, x, spec, work);
    }
    static void copy(const Zep32fc* src, Zep32fc* dst, std::int64_t n) {
        if (n > 0) ZEP_VARIANT::zepsCopy_32fc(src, dst, static_cast<int>(n));
    }
    static void zero(Zep32fc* dst, std::int64_t n) {
        if (n > 0) ZEP_VARIANT::zepsZero_32fc(dst, static_cast<int>(n));
    }
    static void multiply(const Zep32fc* h, Zep32fc* x, int N) {
        ZEP_VARIANT::zepsMul_32fc_I(h, x, N);
    }
    static void multiplyConjugate(const Zep32fc* h, Zep32fc* x, int N);
};

// A transform of 2^order elements and `buffers` buffers of that size, all for one call.
template <class T>
class CallTransform {
    using Of = TransformOf<T>;

public:
    CallTransform() = default;
    ~CallTransform() {
        if (spec_ != nullptr) Of::release(spec_);
    }
    CallTransform(const CallTransform&) = delete;
    CallTransform& operator=(const CallTransform&) = delete;

    ZepStatus create(int order, int buffers) {
        if (const ZepStatus s = Of::create(&spec_, order); s != zepStsNoErr) return s;
        int bytes = 0;
        if (const ZepStatus s = Of::bytes(spec_, &bytes); s != zepStsNoErr) return s;
        N_ = 1 << order;
        const std::size_t elements =
            static_cast<std::size_t>(buffers) * static_cast<std::size_t>(N_);
        const std::size_t work = (static_cast<std::size_t>(bytes) + sizeof(T) - 1) / sizeof(T);
        if (!memory_.allocate(elements + work)) return zepStsMemAllocErr;
        if (bytes > 0) work_ = reinterpret_cast<Zep8u*>(memory_.data() + elements);
        return zepStsNoErr;
    }

    int length() const { return N_; }
    T* buffer(int i) const { return memory_.data() + static_cast<std::ptrdiff_t>(i) * N_; }
    ZepStatus forward(T* x) const { return Of::forward(x, x, spec_, work_); }
    ZepStatus inverse(T* x) const { return Of::inverse(x, spec_, work_); }

private:
    typename Of::Spec* spec_ = nullptr;
    Zep8u* work_ = nullptr;
    Scratch<T> memory_;
    int N_ = 0;
};

}  // namespace zep::ZEP_VARIANT::filter
