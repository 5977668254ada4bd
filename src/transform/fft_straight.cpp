// The longest straight-line transform: 16 rows of vectors. It is a file of its own because the
// compiler has to order so long a run of code otherwise than the loops of the passes.
#include "transform/fft_routes.h"
#include "transform/fft_rows.h"

namespace zep::ZEP_VARIANT::fft {

template <Direction D, class T>
void Routes<D, T>::straight(const T* src, T* dst, T scale) {
    static_assert(straightRows<T>(kStraightOrder<T>).rows == 16);
    if (scale == 1)
        transformRows<D, Real<T>, 16, false>(src, dst, scale);
    else
        transformRows<D, Real<T>, 16, true>(src, dst, scale);
}

template struct Routes<Direction::Forward, float>;
template struct Routes<Direction::Inverse, float>;
template struct Routes<Direction::Forward, double>;
template struct Routes<Direction::Inverse, double>;

}  // namespace zep::ZEP_VARIANT::fft
