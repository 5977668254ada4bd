#include "deflate/zlib_peer.h"

#include <algorithm>
#include <cstdlib>

namespace zep::test {

Bytes zlibDeflate(std::span<const std::uint8_t> data, const ZlibOptions& options) {
    z_stream z{};
    if (deflateInit2(&z, options.level, Z_DEFLATED, -15, options.memLevel, options.strategy) !=
        Z_OK)
        std::abort();
    Bytes out;
    std::uint8_t room[4096];
    const auto drain = [&](int flush) {
        do {
            z.next_out = room;
            z.avail_out = sizeof room;
            deflate(&z, flush);
            out.insert(out.end(), room, z.next_out);
        } while (z.avail_out == 0);
    };
    const std::size_t step =
        options.flushEvery > 0 ? static_cast<std::size_t>(options.flushEvery) : data.size();
    for (std::size_t at = 0; at < data.size(); at += step) {
        const std::size_t bytes = std::min(step, data.size() - at);
        z.next_in = const_cast<Bytef*>(data.data() + at);
        z.avail_in = static_cast<uInt>(bytes);
        drain(options.flushEvery > 0 ? options.flush : Z_NO_FLUSH);
    }
    drain(Z_FINISH);
    deflateEnd(&z);
    return out;
}

std::optional<ZlibInflated> zlibInflate(std::span<const std::uint8_t> stream,
                                        std::int64_t maxOutput) {
    z_stream z{};
    if (inflateInit2(&z, -15) != Z_OK) std::abort();
    z.next_in = const_cast<Bytef*>(stream.data());
    z.avail_in = static_cast<uInt>(stream.size());
    ZlibInflated result{};
    std::uint8_t room[16384];
    int status = Z_OK;
    while (status == Z_OK && static_cast<std::int64_t>(result.output.size()) <= maxOutput) {
        z.next_out = room;
        z.avail_out = sizeof room;
        status = inflate(&z, Z_NO_FLUSH);
        result.output.insert(result.output.end(), room, z.next_out);
    }
    result.consumed = static_cast<std::int64_t>(stream.size()) - z.avail_in;
    inflateEnd(&z);
    if (status != Z_STREAM_END) return std::nullopt;
    return result;
}

}  // namespace zep::test
