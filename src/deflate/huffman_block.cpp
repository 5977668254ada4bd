// One call of a Huffman decoder: entry checks, block header, rest of a match, symbols, and the ways
// to leave.

#include <cstdint>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "deflate/bit_input.h"
#include "deflate/branching_loop.h"
#include "deflate/careful_loop.h"
#include "deflate/dynamic_header.h"
#include "deflate/fast_loop.h"
#include "deflate/fixed_tables.h"
#include "deflate/window.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr FixedTables kFixedTables = makeFixedTables();

// Without a caller that asks for the block type first, the decoder reads the header, and refuses
// other types.
ZepStatus readBlockHeader(BitInput& in, BlockType type, ZepLZ77State& state) {
    if (in.count < 3) {
        if (in.empty()) return zepStsSrcSizeLessExpected;
        // Two bytes where they can be had in one aligned load.
        const bool two = in.end - in.next > 1 && reinterpret_cast<std::uintptr_t>(in.next) % 2 == 0;
        in.takeByte();
        if (two) in.takeByte();
    }
    if (in.peek(3) >> 1 != (type == kFixedBlock ? 1 : 2)) return zepStsErr;
    state.blockType = type;
    if (in.take(1) != 0) state.finalBlock = 1;
    in.drop(2);
    state.status = type == kFixedBlock ? kSymbols : kCodeCounts;
    return zepStsNoErr;
}

void finishPendingMatch(Output& out, ZepLZ77State& state) {
    const std::size_t length = static_cast<std::size_t>(state.pendingMatchLength);
    const std::size_t distance = static_cast<std::size_t>(state.pendingMatchDistance);
    state.pendingMatchLength = state.pendingMatchDistance = 0;
    copyMatch(out, length, distance, state);
}

// Full output is not the end of the data: when the input is used up, a whole byte that is still
// held goes back to the source, so that a caller whose loop ends on an empty input calls again.
ZepStatus leaveWithFullOutput(BitInput& in) {
    in.fill();
    if (in.empty() && in.count >= 8) in.returnBytes(1);
    return zepStsDstSizeLessExpected;
}

ZepStatus leaveAtEndOfBlock(BitInput& in, ZepLZ77State& state) {
    state.status = kBlockHeader;
    // What is held belongs to the next block.
    if (state.finalBlock != 1) return zepStsNoErr;
    state.streamEnded = 1;
    in.drop(in.count % 8);
    in.returnBytes(in.count / 8);
    return zepStsStreamEnd;
}

// literalRuns: whether matches are rare.
template <class Layout>
ZepStatus decodeSymbols(const TableEntry* tables, bool literalRuns, BitInput& in, Output& out,
                        ZepLZ77State& state) {
    const auto mayRunFast = [&] {
        return in.end - in.next > kFastInput && out.end - out.next > kFastOutput && in.count < 64;
    };
    Stop stop;
    do {
        stop = decodeCarefully<Layout>(tables, in, out, state, mayRunFast);
        if (stop != Stop::none) break;
        stop = literalRuns                    ? decodeBranching<Layout>(tables, in, out, state)
               : out.written() < kWindowBytes ? decodeFast<Layout, true>(tables, in, out, state)
                                              : decodeFast<Layout, false>(tables, in, out, state);
    } while (stop == Stop::none);
    switch (stop) {
        case Stop::inputEmpty:
            return zepStsSrcSizeLessExpected;
        case Stop::outputFull:
            return leaveWithFullOutput(in);
        case Stop::endOfBlock:
            return leaveAtEndOfBlock(in, state);
        case Stop::none:
        case Stop::corrupt:
            break;
    }
    return zepStsSizeErr;
}

ZepStatus decodeBlock(BitInput& in, Output& out, BlockType type, ZepLZ77State& state) {
    if (state.pendingMatchLength != 0) finishPendingMatch(out, state);
    if (state.status == kBlockHeader)
        if (const ZepStatus s = readBlockHeader(in, type, state); s != zepStsNoErr) return s;
    if (type == kFixedBlock)
        return decodeSymbols<FixedLayout>(kFixedTables.entries, false, in, out, state);
    if (state.status != kSymbols)
        if (const ZepStatus s = decodeDynamicHeader(in, state); s != zepStsNoErr) return s;
    return decodeSymbols<DynamicLayout>(state.tables, state.literalRuns != 0, in, out, state);
}

ZepStatus huffmanCall(Zep8u** ppSrc, Zep32s* pSrcLen, Zep8u** ppDst, Zep32s* pDstLen,
                      BlockType type, ZepLZ77State* pState) {
    if (anyNull(ppSrc, ppDst, pState, pSrcLen, pDstLen)) return zepStsNullPtrErr;
    if (*pSrcLen < 0 || *pDstLen < 0) return zepStsSizeErr;
    if (*pDstLen == 0) return zepStsDstSizeLessExpected;
    ZepLZ77State& state = *pState;
    if (state.status != kBlockHeader && (state.status > kSymbols || state.blockType != type))
        return zepStsErr;

    BitInput in(*ppSrc, *pSrcLen, state);
    Output out{*ppDst, *ppDst, *ppDst + *pDstLen, state.window,
               static_cast<unsigned>(state.windowPos)};
    const ZepStatus status = decodeBlock(in, out, type, state);
    in.save(ppSrc, pSrcLen, state);
    *ppDst = out.next;
    *pDstLen = static_cast<Zep32s>(out.room());
    // Nothing can follow the end of the stream.
    if (status != zepStsStreamEnd) enterWindow(state, out.begin, out.written());
    return status;
}

}  // namespace

ZepStatus zepsDecodeLZ77DynamicHuffFull_8u(Zep8u** ppSrc, Zep32s* pSrcLen, Zep8u** ppDst,
                                           Zep32s* pDstLen, void*, ZepLZ77State* pState) {
    return huffmanCall(ppSrc, pSrcLen, ppDst, pDstLen, kDynamicBlock, pState);
}

ZepStatus zepsDecodeLZ77FixedHuffFull_8u(Zep8u** ppSrc, Zep32s* pSrcLen, Zep8u** ppDst,
                                         Zep32s* pDstLen, void*, ZepLZ77State* pState) {
    return huffmanCall(ppSrc, pSrcLen, ppDst, pDstLen, kFixedBlock, pState);
}

}  // namespace zep::ZEP_VARIANT
