// The longest straight-line transform: 16 rows of vectors. It is a file of its own because the
// compiler has to order so long a run of code otherwise than the loops of the passes.
#include "transform/fft_routes.h"
#include "transform/fft_rows.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT {

static_assert(1 << kStraightOrder == 16 * kLanes);

template <Direction D>
void FFTStraight(const Zep32fc* src, Zep32fc* dst, float scale) {
    if (scale == 1.0f)
        directRows<D, Real, 16, false>(&src->re, &dst->re, scale);
    else
        directRows<D, Real, 16, true>(&src->re, &dst->re, scale);
}

template void FFTStraight<Direction::Forward>(const Zep32fc*, Zep32fc*, float);
template void FFTStraight<Direction::Inverse>(const Zep32fc*, Zep32fc*, float);

}  // namespace zep::ZEP_VARIANT
