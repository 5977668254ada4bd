// The state of a stream of normally distributed numbers.
#pragma once

#include "zeps/generators.h"

struct ZepRandGaussState {
    Zep32s idCtx;  // identifies the object; cleared on release
    Zep32u seed;   // as given
    Zep32f mean;
    Zep32f stdDev;
    Zep32u lcg;         // the linear congruential word
    Zep32u x0, x1, x2;  // words of the borrow sequence, newest first
    Zep32s carry;       // its borrow, 0 or -1
    Zep32s needPair;    // 0 while the second value of a pair is pending
    Zep64f pendingFactor;
    Zep64f pendingValue;
};
