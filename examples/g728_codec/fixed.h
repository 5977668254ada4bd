/* The fixed-point arithmetic that stands between the blocks. */
#ifndef G728_FIXED_H
#define G728_FIXED_H

#include <zeps.h>

static inline Zep32s sat32(Zep64s v) {
    return v > INT32_MAX ? INT32_MAX : v < INT32_MIN ? INT32_MIN : (Zep32s)v;
}
static inline Zep16s sat16(Zep64s v) {
    return v > INT16_MAX ? INT16_MAX : v < INT16_MIN ? INT16_MIN : (Zep16s)v;
}
static inline Zep16s round16(Zep32s v) { return sat16(((Zep64s)v + 32768) >> 16); }

/* v * 2^shift for a shift of either sign, limited to 32 bits. */
static inline Zep32s scale32(Zep32s v, int shift) {
    if (shift < 0) return v >> (shift < -31 ? 31 : -shift);
    return sat32((Zep64s)v * ((Zep64s)1 << (shift > 31 ? 31 : shift)));
}

/* Left shifts that bring v to the given count of bits, sign included; bits - 1 for 0. */
static inline int normShift(Zep64s v, int bits) {
    Zep64s m = v < 0 ? ~v : v;
    int shift = bits - 1;
    for (; m > 0; m >>= 1) --shift;
    return shift;
}

/* The shift that normalises a vector: that of its element of largest magnitude. */
static inline int vectorShift(const Zep16s* v, int len, int bits) {
    int low = v[0], high = v[0];
    for (int n = 1; n < len; ++n) {
        if (v[n] < low) low = v[n];
        if (v[n] > high) high = v[n];
    }
    return normShift(low < -high ? low : high, bits);
}

/* word / 2^exponent */
typedef struct Scaled {
    Zep16s word;
    int exponent;
} Scaled;

/* The general division of the recommendation: 15 steps with strict comparisons, then rounding. */
static inline Scaled divide(Scaled numerator, Scaled denominator) {
    int n = numerator.word < 0 ? -numerator.word : numerator.word;
    const int d = denominator.word < 0 ? -denominator.word : denominator.word;
    Scaled result = {0, numerator.exponent - denominator.exponent + 14};
    int q = 0;
    if (n < d) n *= 2, ++result.exponent;
    for (int step = 0; step < 15; ++step) {
        q *= 2;
        if (n > d) ++q, n -= d;
        n *= 2;
    }
    if (n > d) ++q;
    result.word = sat16((numerator.word < 0) != (denominator.word < 0) ? -q : q);
    return result;
}

#endif
