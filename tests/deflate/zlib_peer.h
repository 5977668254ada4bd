// Raw Deflate streams from zlib, and zlib's opinion about a stream.
#pragma once

#include <zlib.h>

#include <cstdint>
#include <optional>
#include <span>

#include "reference/deflate_writer.h"

namespace zep::test {

using reference::Bytes;

struct ZlibOptions {
    int level = 6;
    int strategy = Z_DEFAULT_STRATEGY;
    int memLevel = 8;    // 1 makes the blocks small
    int flushEvery = 0;  // > 0: a flush after every so many bytes
    int flush = Z_FULL_FLUSH;
};
Bytes zlibDeflate(std::span<const std::uint8_t> data, const ZlibOptions& options = {});

struct ZlibInflated {
    Bytes output;
    std::int64_t consumed;  // bytes of the stream
};
// Nothing if zlib refuses the stream, finds it cut off, or its output would exceed maxOutput.
std::optional<ZlibInflated> zlibInflate(std::span<const std::uint8_t> stream,
                                        std::int64_t maxOutput = 1 << 28);

}  // namespace zep::test
