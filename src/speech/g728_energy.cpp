// Energies of the shape codevectors after the impulse response of the cascade (G.728 block 15).
#include "core/checks.h"
#include "speech/fixed_point.h"
#include "speech/g728_codebook.h"
#include "speech/state_memory.h"

namespace zep::ZEP_VARIANT {

using namespace g728;

ZepStatus zepsImpulseResponseEnergy_G728_16s(const Zep16s* pImpulse, Zep16s* pEnergy) {
    if (anyNull(pImpulse, pEnergy)) return zepStsNullPtrErr;
    const auto h = fetch<Vector5>(pImpulse);
    for (int j = 0; j < kShapes; ++j) {
        std::int64_t energy = 0;
        for (int n = 0; n < 5; ++n) {
            std::int32_t sum = 0;
            for (int k = 0; k <= n; ++k) sum += h[k] * kShapeCodebook[j][n - k];
            const std::int32_t z = sat16(sum >> 14);
            energy += z * z;
        }
        energy >>= 15;
        put(static_cast<Zep16u>(energy < 65535 ? energy : 65535), pEnergy + j);
    }
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
