/* Tables of ITU-T G.728. */
#ifndef G728_TABLES_H
#define G728_TABLES_H

#include <zeps.h>

extern const Zep16s g728SynthesisWindow[105], g728WeightingWindow[60], g728LogGainWindow[34];
extern const Zep16s g728SynthesisExpansion[50], g728LogGainExpansion[10];
extern const Zep16s g728WeightingZeroExpansion[10], g728WeightingPoleExpansion[10];
extern const Zep16s g728PostfilterZeroExpansion[10], g728PostfilterPoleExpansion[10];
extern const Zep16s g728Gain[8], g728GainShift[8], g728GainDecibels[8];
extern const Zep16s g728ShapeDecibels[128];
extern const Zep16s g728Shape[128][5];

#endif
