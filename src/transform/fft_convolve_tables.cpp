// The twiddles of a circular convolution.
#include "transform/fft_convolve.h"
#include "transform/fft_convolve_passes.h"
#include "transform/fft_legs.h"

namespace zep::ZEP_VARIANT::fft {

// In memory: twiddles, spectrum, work, edge.
template <class T>
Convolver<T> makeConvolver(int order, T* memory) {
    const std::ptrdiff_t length = std::ptrdiff_t{2} << order;
    T *spectrum = memory + length, *work = spectrum + length;
    const Sines<T> sines =
        order <= kConstantSineOrder ? constantSines<T>() : computedSines(work, order);
    for (int joined = order; joined > kLogLanes<T>;) {
        const int radix = radixOrderOf<T>(joined), group = joined - radix;
        T* leg = memory + passTwiddles<T>(group);
        for (std::uint64_t c = 0; c >> group == 0; c += kLanes<T>)
            for (int e = 1; e >> radix == 0; ++e, leg += 2 * kLanes<T>)
                fillLeg<LaneOrder::Memory>(leg, e, c, joined, sines);
        joined = group;
    }
    return {order, memory, spectrum, work, work + convolverWork<T>(order)};
}

template Convolver<float> makeConvolver(int, float*);

}  // namespace zep::ZEP_VARIANT::fft
