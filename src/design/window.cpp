// Bartlett, Blackman, Hamming and Hann windows in place.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "design/window_pairs.h"
#include "design/window_shapes.h"

namespace zep::ZEP_VARIANT {
namespace design {
namespace {

template <class T>
ZepStatus checkWindow(const T* x, int len) {
    if (anyNull(x)) return zepStsNullPtrErr;
    return len < 3 ? zepStsSizeErr : zepStsNoErr;
}

// Three samples keep the middle one only, whatever the others hold.
template <class T, class Window>
[[gnu::always_inline]] inline void applyZeroEnded(T* x, int len, Window window) {
    if (len == 3) {
        simd::writeAny(x, T{});
        simd::writeAny(x + 2, T{});
        return;
    }
    applyWindow(x, len, window);
}

template <class T>
ZepStatus bartlett(T* x, int len) {
    if (const ZepStatus s = checkWindow(x, len); s != zepStsNoErr) return s;
    const Zep32f step = 2.0f / static_cast<Zep32f>(len - 1);
    applyZeroEnded(x, len, Bartlett(static_cast<double>(step)));
    return zepStsNoErr;
}
template <class T>
ZepStatus blackman(T* x, int len, Zep32f alpha) {
    if (const ZepStatus s = checkWindow(x, len); s != zepStsNoErr) return s;
    applyZeroEnded(x, len, CosineWindow(len, Blackman{static_cast<double>(alpha)}));
    return zepStsNoErr;
}
template <class T>
ZepStatus hann(T* x, int len) {
    if (const ZepStatus s = checkWindow(x, len); s != zepStsNoErr) return s;
    applyZeroEnded(x, len, CosineWindow(len, Hann{}));
    return zepStsNoErr;
}
template <class T>
ZepStatus hamming(T* x, int len) {
    if (const ZepStatus s = checkWindow(x, len); s != zepStsNoErr) return s;
    applyWindow(x, len, CosineWindow(len, Hamming{}));
    return zepStsNoErr;
}

}  // namespace
}  // namespace design

ZepStatus zepsWinBartlett_32f_I(Zep32f* pSrcDst, int len) { return design::bartlett(pSrcDst, len); }
ZepStatus zepsWinBartlett_32fc_I(Zep32fc* pSrcDst, int len) {
    return design::bartlett(pSrcDst, len);
}
ZepStatus zepsWinBlackmanStd_32f_I(Zep32f* pSrcDst, int len) {
    return design::blackman(pSrcDst, len, -0.16f);
}
ZepStatus zepsWinBlackman_32fc_I(Zep32fc* pSrcDst, int len, Zep32f alpha) {
    return design::blackman(pSrcDst, len, alpha);
}
ZepStatus zepsWinHamming_32f_I(Zep32f* pSrcDst, int len) { return design::hamming(pSrcDst, len); }
ZepStatus zepsWinHamming_32fc_I(Zep32fc* pSrcDst, int len) { return design::hamming(pSrcDst, len); }
ZepStatus zepsWinHann_32f_I(Zep32f* pSrcDst, int len) { return design::hann(pSrcDst, len); }
ZepStatus zepsWinHann_32fc_I(Zep32fc* pSrcDst, int len) { return design::hann(pSrcDst, len); }

}  // namespace zep::ZEP_VARIANT
