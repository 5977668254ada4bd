// Fourier transforms for convolution: an object for the life of one call, and products of spectra.
//
// Real spectra are in the packed order R(0), R(N/2), R(1), I(1), ..
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/variant_exports.h"
#include "transform/fft_real_inverse.h"
#include "transform/fft_spec.h"

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
    static ZepStatus inverse(const Zep32f* src, Zep32f* dst, const Spec* spec, Zep8u* work) {
        return fft::FFTInvPermToR(src, dst, spec, work);
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
    static ZepStatus inverse(const Zep32fc* src, Zep32fc* dst, const Spec* spec, Zep8u* work) {
        return ZEP_VARIANT::zepsFFTInv_CToC_32fc(src, dst, spec, work);
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

// A transform of 2^order elements and `buffers` buffers of that size, all for one call: one block
// of memory for the object, its temporary tables, the work area and the buffers.
template <class T>
class CallTransform {
    using Of = TransformOf<T>;
    static constexpr FftKind kKind = fft::SpecTraits<typename Of::Spec>::kind;

public:
    ZepStatus create(int order, int buffers) {
        fft::FftSizes sizes{};
        if (const ZepStatus s = fft::FFTGetSize<float>(kKind, order, ZEP_FFT_SCALE_INV, 0, &sizes);
            s != zepStsNoErr)
            return s;
        N_ = 1 << order;
        const std::size_t length = static_cast<std::size_t>(N_) * sizeof(T);
        const std::size_t elements = static_cast<std::size_t>(buffers) * length;
        const std::size_t work = lines(sizes.scratch > 0 ? sizes.scratch + fft::kLine : 0);
        // The temporary tables are gone before the buffers are filled.
        const std::size_t room = elements + work;
        const std::size_t most = room > sizes.temporary ? room : sizes.temporary;
        const std::size_t object = lines(sizes.object);
        if (!memory_.allocate(object + most)) return zepStsMemAllocErr;
        char* rest = memory_.data() + object;
        buffers_ = reinterpret_cast<T*>(rest);
        if (sizes.scratch > 0) work_ = reinterpret_cast<Zep8u*>(rest + elements);
        FftObject<float>* spec = nullptr;
        const ZepStatus s =
            fft::FFTInit<float>(kKind, &spec, order, ZEP_FFT_SCALE_INV, 0, memory_.data(), rest);
        spec_ = static_cast<typename Of::Spec*>(spec);
        return s;
    }

    int length() const { return N_; }
    T* buffer(int i) const { return buffers_ + static_cast<std::ptrdiff_t>(i) * N_; }
    ZepStatus forward(T* x) const { return Of::forward(x, x, spec_, work_); }
    ZepStatus inverse(T* x) const { return Of::inverse(x, x, spec_, work_); }
    ZepStatus inverse(const T* src, T* dst) const { return Of::inverse(src, dst, spec_, work_); }

private:
    static constexpr std::size_t lines(std::size_t bytes) {
        return (bytes + fft::kLine - 1) / fft::kLine * fft::kLine;
    }

    typename Of::Spec* spec_ = nullptr;
    Zep8u* work_ = nullptr;
    T* buffers_ = nullptr;
    Scratch<char> memory_;
    int N_ = 0;
};

}  // namespace zep::ZEP_VARIANT::filter
