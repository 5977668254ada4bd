// The library runs on its caller's thread alone, and says so.
#include "zepcore.h"

ZepStatus zepSetNumThreads(int) { return zepStsNoOperation; }

ZepStatus zepGetNumThreads(int* pNumThr) {
    *pNumThr = 1;
    return zepStsNoOperation;
}
