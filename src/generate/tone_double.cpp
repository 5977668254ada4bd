// Tones in double precision.
#include "generate/tone.h"

namespace zep::ZEP_VARIANT {

ZepStatus zepsTone_Direct_64f(Zep64f* pDst, int len, Zep64f magn, Zep64f rFreq, Zep64f* pPhase,
                              ZepHintAlgorithm hint) {
    return tone::tone(pDst, len, magn, rFreq, pPhase, hint);
}
ZepStatus zepsTone_Direct_64fc(Zep64fc* pDst, int len, Zep64f magn, Zep64f rFreq, Zep64f* pPhase,
                               ZepHintAlgorithm hint) {
    return tone::tone(pDst, len, magn, rFreq, pPhase, hint);
}

}  // namespace zep::ZEP_VARIANT
