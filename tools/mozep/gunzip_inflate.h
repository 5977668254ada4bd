#pragma once

#include <zeps.h>

#include <functional>
#include <memory>
#include <vector>

#include "gunzip_input.h"

namespace mozep_program {

// Decodes raw Deflate streams from a file, one after the other, in fixed memory.
class Inflater {
public:
    using Sink = std::function<void(const Zep8u* data, std::size_t bytes)>;

    Inflater(GunzipInput& in, Sink sink);

    // One stream; the input then stands behind it, but for unreturned() bytes. Throws Failure.
    void inflate();

    // An empty stored block that ends a stream may leave up to this many bytes from behind it in
    // the decoder, already taken from the input; how many it were shows only by what is expected
    // there.
    int mayBeUnreturned() const { return mayBeUnreturned_; }

private:
    struct FreeState {
        void operator()(ZepLZ77State* state) const { zepsLZ77Free_8u(state); }
    };
    using HuffmanDecoder = decltype(&zepsDecodeLZ77DynamicHuffFull_8u);

    ZepStatus huffmanBlock(HuffmanDecoder decode);
    ZepStatus storedBlock();
    void repairHistory();
    void flush();
    void needInput();
    [[noreturn]] void corrupt(const char* what) const;

    GunzipInput& in_;
    Sink sink_;
    std::unique_ptr<ZepLZ77State, FreeState> state_;
    // The last 32 KiB that went to the sink, then what has not gone yet.
    std::vector<Zep8u> buffer_;
    std::vector<Zep8u> madeUp_;  // block of repairHistory
    Zep8u* dst_ = nullptr;
    Zep32s room_ = 0;
    double consumedAtFlush_ = 0;
    int mayBeUnreturned_ = 0;
};

}  // namespace mozep_program
