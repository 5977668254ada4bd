// The last pass of the mixed-radix route, and the run of all of them.
#include "transform/dft_join.h"
#include "transform/dft_short.h"

namespace zep::ZEP_VARIANT::dft {

template <Direction D, class T>
void Passes<D, T>::last(Parts<const T> in, T* out, int radix, std::ptrdiff_t s, bool inSlots,
                        const T* twiddles, const T* oddTable, T scale) {
    withRadix(radix, [&](auto R) {
        if constexpr (slotsDiffer<T>())
            if (inSlots)
                return joinColumns<R, false>(in, ToPairs<D, T, true>{out, scale}, radix, s, 1,
                                             twiddles, oddTable);
        joinColumns<R, false>(in, ToPairs<D, T>{out, scale}, radix, s, 1, twiddles, oddTable);
    });
}

template <Direction D, class T>
void Passes<D, T>::run(const T* src, T* dst, std::ptrdiff_t len, const DftObject<T>& spec,
                       T* scratch, T scale) {
    const std::int32_t* radix = spec.digitPermutation;
    if (isShort(radix)) return runShort(src, dst, spec, D);
    int count = 2;
    while (radix[count] != 0) ++count;
    // The passes write the two arrays in turn, the last one dst.
    const bool firstToDst = count % 2 != 0;
    if (src == dst && firstToDst) {
        __builtin_memcpy(scratch, src, static_cast<std::size_t>(2 * len) * sizeof(T));
        src = scratch;
    }
    T* to = firstToDst ? dst : scratch;
    std::ptrdiff_t s = radix[0];
    first(src, {to, len}, radix[0], len / s, oddTableOf(spec, radix[0]));
    const DftFactor<T>* record = spec.factors + spec.lastFactor;
    for (int i = 1; i + 1 < count; ++i, --record) {
        T* from = to;
        to = to == dst ? scratch : dst;
        Parts<const T> in{from, len};
        Parts<T> out{to, len};
        if (D == Direction::Inverse) in = in.exchanged(), out = out.exchanged();
        Middle<T>::join(in, out, radix[i], s, len / (s * radix[i]), record->twiddles,
                        oddTableOf(spec, radix[i]));
        s *= radix[i];
    }
    last({to, len}, dst, radix[count - 1], s, isInSlots<T>(radix[0]), record->twiddles,
         oddTableOf(spec, radix[count - 1]), scale);
}

template struct Passes<Direction::Forward, float>;
template struct Passes<Direction::Inverse, float>;
template struct Passes<Direction::Forward, double>;
template struct Passes<Direction::Inverse, double>;

}  // namespace zep::ZEP_VARIANT::dft
