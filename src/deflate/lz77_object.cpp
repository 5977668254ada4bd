// Creation and release of the decoder object.

#include <cstring>

#include "core/variant_exports.h"
#include "deflate/huffman_tables.h"
#include "deflate/lz77_state.h"

namespace zep::ZEP_VARIANT {
namespace {

// The object and all that its pointers lead to.
struct Storage {
    ZepLZ77State state;
    Zep16u codeLengths[kMaxLiteralCodes + kMaxDistanceCodes];
    Zep32u tables[DynamicLayout::size];
    Zep8u window[kWindowBytes + kWindowMirror + kWindowSlack];
};

}  // namespace

ZepStatus zepsDecodeLZ77InitAlloc_8u(Zep32s initArgument, ZepLZ77State** ppState) {
    if (ppState == nullptr) return zepStsNullPtrErr;
    auto* const storage = static_cast<Storage*>(zepMalloc(static_cast<int>(sizeof(Storage))));
    if (storage == nullptr) return zepStsMemAllocErr;
    // The history too: a match that reaches beyond the start of the stream must not show what the
    // heap held.
    std::memset(storage, 0, sizeof *storage);
    ZepLZ77State& state = storage->state;
    state.initArgument = initArgument;
    state.window = storage->window;
    state.codeLengths = storage->codeLengths;
    state.tables = storage->tables;
    *ppState = &state;
    return zepStsNoErr;
}

void zepsLZ77Free_8u(ZepLZ77State* pState) { zepFree(pState); }

ZepStatus zepsDecodeLZ77SetStatus_8u(Zep32s value, ZepLZ77State* pState) {
    pState->externalStatus = value;
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
