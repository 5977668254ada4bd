// Raw Deflate streams of real data (zlib, level 6) through an output window of 64 KiB and of 1 MiB:
// families inflate_text_64k ... inflate_log_1m, beside zlib's streaming inflate with the same
// window and libdeflate, which only knows the whole output at once. Every decoder gets the whole
// input; its output is compared with the original once, before the clock runs.
#include <libdeflate.h>
#include <zlib.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "deflate/real_data.h"
#include "support/buffers.h"
#include "support/rows.h"
#include "zeps.h"

namespace zep::bench {
namespace {

struct Stream {
    Bytes original;
    Bytes compressed;
};
using StreamPtr = std::shared_ptr<Stream>;

StreamPtr compress(Bytes original) {
    auto stream = std::make_shared<Stream>();
    stream->original = std::move(original);
    z_stream z{};
    if (deflateInit2(&z, 6, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY) != Z_OK) std::abort();
    stream->compressed.resize(deflateBound(&z, stream->original.size()));
    z.next_in = stream->original.data();
    z.avail_in = static_cast<uInt>(stream->original.size());
    z.next_out = stream->compressed.data();
    z.avail_out = static_cast<uInt>(stream->compressed.size());
    if (deflate(&z, Z_FINISH) != Z_STREAM_END) std::abort();
    stream->compressed.resize(z.total_out);
    deflateEnd(&z);
    return stream;
}

// Decodes the stream through the window and hands each full window to sink(data, bytes).
template <class Sink>
bool inflateZep(const Stream& stream, AlignedArray<Zep8u>& window, Sink sink) {
    ZepLZ77State* state = nullptr;
    if (zepsDecodeLZ77InitAlloc_8u(0, &state) != zepStsNoErr) return false;
    auto* src = const_cast<Zep8u*>(stream.compressed.data());
    auto srcLen = static_cast<Zep32s>(stream.compressed.size());
    const auto room = static_cast<Zep32s>(window.size());
    Zep8u* dst = window.data();
    Zep32s dstLen = room;
    int type = -1;
    ZepStatus status = zepStsNoErr;
    while (status == zepStsNoErr || status == zepStsDstSizeLessExpected) {
        if (status == zepStsDstSizeLessExpected) {
            sink(window.data(), static_cast<std::size_t>(room - dstLen));
            dst = window.data(), dstLen = room;
        } else if (zepsDecodeLZ77GetBlockType_8u(&src, &srcLen, &type, state) != zepStsNoErr) {
            break;
        }
        switch (type) {
            case 0:
                status =
                    zepsDecodeLZ77FixedHuffFull_8u(&src, &srcLen, &dst, &dstLen, nullptr, state);
                break;
            case 1:
                status =
                    zepsDecodeLZ77DynamicHuffFull_8u(&src, &srcLen, &dst, &dstLen, nullptr, state);
                break;
            default:
                status = zepsDecodeLZ77StoredBlock_8u(&src, &srcLen, &dst, &dstLen, state);
                break;
        }
    }
    sink(window.data(), static_cast<std::size_t>(room - dstLen));
    zepsLZ77Free_8u(state);
    return status == zepStsStreamEnd;
}

template <class Sink>
bool inflateZlib(const Stream& stream, AlignedArray<Zep8u>& window, z_stream& z, Sink sink) {
    inflateReset(&z);
    z.next_in = const_cast<Bytef*>(stream.compressed.data());
    z.avail_in = static_cast<uInt>(stream.compressed.size());
    int status = Z_OK;
    while (status == Z_OK) {
        z.next_out = window.data();
        z.avail_out = static_cast<uInt>(window.size());
        status = inflate(&z, Z_NO_FLUSH);
        sink(window.data(), window.size() - z.avail_out);
    }
    return status == Z_STREAM_END;
}

// A sink that compares with the original, and one that does nothing.
struct Compare {
    const Bytes& original;
    std::size_t at = 0;
    bool equal = true;
    void operator()(const Zep8u* data, std::size_t bytes) {
        equal = equal && at + bytes <= original.size() &&
                std::memcmp(original.data() + at, data, bytes) == 0;
        at += bytes;
    }
};
constexpr auto ignore = [](const Zep8u* data, std::size_t) { benchmark::DoNotOptimize(data); };

// decode(sink) -> bool
void measure(benchmark::State& state, const Stream& stream, auto decode) {
    Compare compare{stream.original};
    if (!decode([&](const Zep8u* data, std::size_t bytes) { compare(data, bytes); }) ||
        !compare.equal || compare.at != stream.original.size()) {
        state.SkipWithError("the output differs from the original");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(decode(ignore));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(stream.original.size()));
}

void addFamily(const std::string& name, const StreamPtr& stream, std::size_t windowBytes) {
    const auto size = static_cast<std::int64_t>(stream->original.size());
    addOurs(name, size, [=](benchmark::State& state) {
        AlignedArray<Zep8u> window(windowBytes);
        measure(state, *stream, [&](auto sink) { return inflateZep(*stream, window, sink); });
    });
    addPeer(name, "zlib", size, [=](benchmark::State& state) {
        AlignedArray<Zep8u> window(windowBytes);
        z_stream z{};
        if (inflateInit2(&z, -15) != Z_OK) std::abort();
        measure(state, *stream, [&](auto sink) { return inflateZlib(*stream, window, z, sink); });
        inflateEnd(&z);
    });
    addPeer(name, "libdeflate-whole", size, [=](benchmark::State& state) {
        AlignedArray<Zep8u> whole(stream->original.size());
        libdeflate_decompressor* d = libdeflate_alloc_decompressor();
        measure(state, *stream, [&](auto sink) {
            std::size_t bytes = 0;
            const auto result = libdeflate_deflate_decompress(d, stream->compressed.data(),
                                                              stream->compressed.size(),
                                                              whole.data(), whole.size(), &bytes);
            sink(whole.data(), bytes);
            return result == LIBDEFLATE_SUCCESS;
        });
        libdeflate_free_decompressor(d);
    });
}

}  // namespace
}  // namespace zep::bench

int main(int argc, char** argv) {
    using namespace zep::bench;
    constexpr std::size_t kMiB = std::size_t{1} << 20;
    const struct {
        const char* name;
        Bytes data;
    } sets[] = {{"text", cHeaders(8 * kMiB)},
                {"binary", executables(8 * kMiB)},
                {"audio", recordedSpeech(4 * kMiB)},
                {"log", packageLog(4 * kMiB)}};
    for (const auto& set : sets) {
        if (set.data.empty()) continue;
        const auto stream = compress(set.data);
        const std::string family = std::string("inflate_") + set.name;
        addFamily(family + "_64k", stream, 64 * 1024);
        addFamily(family + "_1m", stream, kMiB);
    }
    return runAll(argc, argv);
}
