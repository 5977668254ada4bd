// The block type as the caller asks for it, before it calls the decoder of that type.

#include "core/checks.h"
#include "core/variant_exports.h"
#include "deflate/bit_input.h"

namespace zep::ZEP_VARIANT {

ZepStatus zepsDecodeLZ77GetBlockType_8u(Zep8u** ppSrc, Zep32s* pSrcLen, Zep32s* pBlockType,
                                        ZepLZ77State* pState) {
    if (anyNull(ppSrc, pSrcLen, pBlockType, pState) || *ppSrc == nullptr) return zepStsNullPtrErr;
    ZepLZ77State& state = *pState;
    if (state.status != kBlockHeader) {
        *pBlockType = state.blockType;
        return zepStsNoErr;
    }
    BitInput in(*ppSrc, *pSrcLen, state);
    if (!in.gather(3)) return zepStsSrcSizeLessExpected;

    const auto begin = [&](BlockType type, ResumePoint status) {
        state.blockType = *pBlockType = type;
        state.status = status;
    };
    state.finalBlock = static_cast<Zep32s>(in.take(1));
    switch (in.take(2)) {
        case 0:
            begin(kStoredBlock, kStoredAlign);
            break;
        case 1:
            begin(kFixedBlock, kSymbols);
            break;
        case 2:
            begin(kDynamicBlock, kCodeCounts);
            break;
        default:
            break;  // reserved: swallowed, the caller sees that *pBlockType did not change
    }
    in.save(ppSrc, pSrcLen, state);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
