// Tones in single precision.
#include "generate/tone.h"

namespace zep::ZEP_VARIANT {

ZepStatus zepsTone_Direct_32f(Zep32f* pDst, int len, Zep32f magn, Zep32f rFreq, Zep32f* pPhase,
                              ZepHintAlgorithm hint) {
    return tone::tone(pDst, len, magn, rFreq, pPhase, hint);
}
ZepStatus zepsTone_Direct_32fc(Zep32fc* pDst, int len, Zep32f magn, Zep32f rFreq, Zep32f* pPhase,
                               ZepHintAlgorithm hint) {
    return tone::tone(pDst, len, magn, rFreq, pPhase, hint);
}

}  // namespace zep::ZEP_VARIANT
