// The passes between the first stage and the last of the mixed-radix route.
#include "transform/dft_join.h"

namespace zep::ZEP_VARIANT::dft {

template <class T>
void Middle<T>::join(Parts<const T> in, Parts<T> out, int radix, std::ptrdiff_t s,
                     std::ptrdiff_t groups, const T* twiddles, const T* oddTable) {
    const ToParts<T> sink{out};
    withRadix(radix, [&](auto R) {
        if constexpr (R == 0 || joinsFewColumns(R))
            if (s < kLanes<T>)
                return joinColumns<R, true>(in, sink, radix, s, groups, twiddles, oddTable);
        joinColumns<R, false>(in, sink, radix, s, groups, twiddles, oddTable);
    });
}

template struct Middle<float>;
template struct Middle<double>;

}  // namespace zep::ZEP_VARIANT::dft
