// The decoder object: one aligned block, the pointers in it lead into the block itself.
#pragma once

#include "deflate/table_format.h"
#include "zepcore.h"

namespace zep::ZEP_VARIANT {

inline constexpr int kWindowBytes = 32768;
// A whole match may be read at any window index in one piece: the first bytes stand again behind
// the end, and a wide copy may read on a little further.
inline constexpr int kWindowMirror = 258;
inline constexpr int kWindowSlack = 64;

inline constexpr int kCodeLengthSymbols = 19;

// Where a decoder goes on. Between two blocks it is kBlockHeader.
enum ResumePoint : Zep32s {
    kBlockHeader = 0,
    kCodeCounts = 1,
    kCodeLengthLengths = 2,
    kCodeLengths = 3,
    kSymbols = 4,
    kStoredAlign = 8,
    kStoredLength = 9,
    kStoredHeldBytes = 10,
    kStoredBytes = 11
};

enum BlockType : Zep32s { kFixedBlock = 0, kDynamicBlock = 1, kStoredBlock = 2 };

}  // namespace zep::ZEP_VARIANT

struct ZepLZ77State {
    Zep32s initArgument;
    Zep64u bitBuffer;  // the next bit of the stream is bit 0; zero above bitCount
    Zep32s bitCount;
    Zep8u* window;     // the last 32 KiB of output, circular
    Zep32s windowPos;  // next index to write, 0 .. 32767
    Zep32s externalStatus;
    Zep32s status;  // ResumePoint
    Zep32s storedRemaining;
    Zep32s finalBlock;
    Zep32s streamEnded;
    Zep32s blockType;  // BlockType
    Zep32s codeLengthCount;
    Zep32s literalCodeCount;
    Zep32s distanceCodeCount;
    Zep32s lengthsDecoded;
    Zep16u* codeLengths;        // literal codes first, distance codes directly behind them
    Zep32s pendingMatchLength;  // rest of a match that did not fit, 0 if none
    Zep32s pendingMatchDistance;
    Zep32u codeLengthCodeLengths[19];
    Zep8u codeLengthSymbols[128];
    Zep8u codeLengthBits[128];
    Zep32u* tables;      // of the current dynamic block
    Zep32s literalRuns;  // 1 when matches are rare in it
};
