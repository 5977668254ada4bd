// Data of the kinds that compressors meet, made from the seeded generator.
#pragma once

#include <string>
#include <vector>

#include "reference/deflate_writer.h"

namespace zep::test {

using reference::Bytes;

Bytes textLike(int len);    // words of a small vocabulary, with skewed frequencies
Bytes binaryLike(int len);  // records with slowly changing fields
Bytes imageLike(int len);   // smooth rows with a little noise
Bytes zeros(int len);
Bytes noise(int len);

struct Sample {
    std::string name;
    Bytes data;
};
std::vector<Sample> samples(int len);

// A random stream written symbol by symbol: all block types, code sets that no compressor makes
// (long, incomplete, with holes), distances up to 32768 whatever has been written. zlib refuses
// some of them. Two bytes follow the stream, since the code lengths of a dynamic block are read
// only with 14 bits in sight.
struct RandomStream {
    Bytes stream;
    bool proper;  // complete codes and no distance beyond the start, so that every decoder must
                  // accept it
};
RandomStream randomStream(int blocks, bool proper);

}  // namespace zep::test
