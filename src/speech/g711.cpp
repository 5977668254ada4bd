// G.711 companding of vectors.
#include "speech/g711.h"

#include <cstddef>

#include "core/checks.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT {
namespace {

template <class From, class To, class Law>
inline ZepStatus convert(const From* pSrc, To* pDst, int len, Law law) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    for (std::ptrdiff_t n = 0; n < len; ++n) {
        put(To{law(fetch<From>(pSrc + n))}, pDst + n);
    }
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepsALawToLin_8u16s(const Zep8u* pSrc, Zep16s* pDst, int len) {
    return convert(pSrc, pDst, len, g711::expandALaw);
}
ZepStatus zepsMuLawToLin_8u16s(const Zep8u* pSrc, Zep16s* pDst, int len) {
    return convert(pSrc, pDst, len, g711::expandMuLaw);
}
ZepStatus zepsLinToALaw_16s8u(const Zep16s* pSrc, Zep8u* pDst, int len) {
    return convert(pSrc, pDst, len, g711::compressALaw);
}
ZepStatus zepsLinToMuLaw_16s8u(const Zep16s* pSrc, Zep8u* pDst, int len) {
    return convert(pSrc, pDst, len, g711::compressMuLaw);
}

}  // namespace zep::ZEP_VARIANT
