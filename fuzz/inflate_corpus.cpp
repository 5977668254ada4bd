// Writes the seeds of the inflate fuzzer into a directory: small streams of every kind, each with
// several choices of variant and cuts.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "deflate/sample_data.h"
#include "deflate/zlib_peer.h"
#include "inflate_check.h"

namespace {

using namespace zep::test;
using zep::reference::DeflateWriter;

int written = 0;
std::filesystem::path directory;

void add(const Bytes& stream) {
    for (const int cuts : {0, 5, 10, 15, 3, 12}) {
        const int variant = written % 5 + (cuts == 3 ? 8 : 0);
        const Bytes choice{static_cast<std::uint8_t>(variant), static_cast<std::uint8_t>(cuts),
                           static_cast<std::uint8_t>(written), static_cast<std::uint8_t>(cuts * 7)};
        std::ofstream out(directory / ("seed" + std::to_string(written++)), std::ios::binary);
        out.write(reinterpret_cast<const char*>(choice.data()), zep::fuzz::kChoiceBytes);
        out.write(reinterpret_cast<const char*>(stream.data()),
                  static_cast<std::streamsize>(stream.size()));
    }
}

void addByHand() {
    DeflateWriter reserved;
    reserved.header(true, 3);
    add(reserved.bytes());
    for (const int symbol : {286, 287, 285}) {
        DeflateWriter out;
        out.fixed(true);
        out.literal('a');
        out.literalSymbol(symbol);
        out.distanceSymbol(30);
        add(out.bytes());
    }
    DeflateWriter badLength;
    badLength.storedHeader(true, 4, 4);
    add(badLength.bytes());
    // Short stored blocks behind short Huffman blocks, and a match into them.
    for (const int len : {0, 1, 3, 5, 20}) {
        DeflateWriter out;
        out.fixed(false);
        out.literal('f');
        out.endOfBlock();
        out.stored(false, Bytes(static_cast<std::size_t>(len), 's'));
        out.dynamic(true, zep::reference::fixedLiteralLengths(),
                    zep::reference::fixedDistanceLengths());
        out.match(30, 1 + len);
        out.match(258, 1);
        out.endOfBlock();
        add(out.bytes());
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s DIRECTORY\n", argv[0]);
        return 2;
    }
    directory = argv[1];
    std::filesystem::create_directories(directory);
    addByHand();
    for (const Sample& sample : samples(900))
        for (const int strategy : {Z_DEFAULT_STRATEGY, Z_HUFFMAN_ONLY, Z_RLE, Z_FIXED})
            add(zlibDeflate(sample.data, {.level = 9, .strategy = strategy, .memLevel = 1}));
    add(zlibDeflate(textLike(2000), {.flushEvery = 150}));
    for (int n = 0; n < 60; ++n) {
        const Bytes stream = randomStream(1 + n % 4, n % 2 == 0).stream;
        if (stream.size() < 4000) add(stream);
    }
    std::printf("%d seeds in %s\n", written, argv[1]);
}
