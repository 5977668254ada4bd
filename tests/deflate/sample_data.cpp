#include "deflate/sample_data.h"

#include <algorithm>
#include <cmath>

#include "support/random.h"

namespace zep::test {
namespace {

using reference::DeflateWriter;

int uniform(int low, int high) { return std::uniform_int_distribution<int>(low, high)(rng()); }

// Lengths of a complete prefix code with the given number of members, at most 15 bits: random
// splits of leaves.
std::vector<int> completeCode(int members) {
    std::vector<int> depths{0};
    while (static_cast<int>(depths.size()) < members) {
        const auto n = static_cast<std::size_t>(uniform(0, static_cast<int>(depths.size()) - 1));
        // Deep leaves are split more readily than chance has it, for the sake of long codes.
        const auto deepest = static_cast<std::size_t>(
            std::max_element(depths.begin(), depths.end()) - depths.begin());
        const std::size_t leaf = uniform(0, 7) == 0 && depths[deepest] < 15 ? deepest : n;
        if (depths[leaf] == 15) continue;
        depths.push_back(++depths[leaf]);
    }
    if (members == 1) depths[0] = 1;
    return depths;
}

// The members' lengths on random symbols of the alphabet, the given ones among them.
std::vector<int> spread(std::vector<int> members, int alphabet, const std::vector<int>& always) {
    std::vector<int> symbols(static_cast<std::size_t>(alphabet));
    for (int n = 0; n < alphabet; ++n) symbols[static_cast<std::size_t>(n)] = n;
    std::shuffle(symbols.begin(), symbols.end(), rng());
    for (const int s : always) {
        symbols.erase(std::find(symbols.begin(), symbols.end(), s));
        symbols.insert(symbols.begin(), s);
    }
    std::shuffle(members.begin(), members.end(), rng());
    std::vector<int> lengths(static_cast<std::size_t>(alphabet), 0);
    for (std::size_t n = 0; n < members.size(); ++n)
        lengths[static_cast<std::size_t>(symbols[n])] = members[n];
    return lengths;
}

std::vector<int> membersOf(const std::vector<int>& lengths, int low, int high) {
    std::vector<int> members;
    for (int n = low; n < std::min(high, static_cast<int>(lengths.size())); ++n)
        if (lengths[static_cast<std::size_t>(n)] > 0) members.push_back(n);
    return members;
}

int pick(const std::vector<int>& from) {
    return from[static_cast<std::size_t>(uniform(0, static_cast<int>(from.size()) - 1))];
}

// Symbols of an open block; returns how many bytes they make.
int randomSymbols(DeflateWriter& out, const std::vector<int>& literalLengths,
                  const std::vector<int>& distanceLengths, int history, bool proper) {
    const std::vector<int> literals = membersOf(literalLengths, 0, 256);
    const std::vector<int> matches = membersOf(literalLengths, 257, 286);
    const std::vector<int> distances = membersOf(distanceLengths, 0, 30);
    const int before = history;
    for (int count = uniform(0, 1) == 0 ? uniform(0, 10) : uniform(0, 500); count > 0; --count) {
        const bool match = !matches.empty() && !distances.empty() && uniform(0, 2) == 0;
        if (!match) {
            if (literals.empty()) continue;
            out.literal(pick(literals));
            ++history;
            continue;
        }
        const int far = pick(distances);
        const int distanceExtra = reference::extraOfDistanceSymbol(far);
        int extra = uniform(0, (1 << distanceExtra) - 1);
        if (proper && reference::baseOfDistanceSymbol(far) + extra > std::min(history, 32768)) {
            if (reference::baseOfDistanceSymbol(far) > history) continue;
            extra = 0;
        }
        const int symbol = pick(matches);
        const int lengthExtra = reference::extraOfLengthSymbol(symbol);
        const int more = uniform(0, (1 << lengthExtra) - 1);
        out.literalSymbol(symbol);
        out.bits(static_cast<std::uint64_t>(more), lengthExtra);
        out.distanceSymbol(far);
        out.bits(static_cast<std::uint64_t>(extra), distanceExtra);
        history += reference::baseOfLengthSymbol(symbol) + more;
    }
    out.endOfBlock();
    return history - before;
}

}  // namespace

Bytes textLike(int len) {
    std::vector<std::string> words;
    for (int n = 0; n < 400; ++n) {
        std::string word;
        for (int k = uniform(1, 9); k > 0; --k)
            word += static_cast<char>("etaoinshrdlucmfwypvbgkqjxz"[uniform(0, uniform(3, 25))]);
        words.push_back(word);
    }
    Bytes out;
    while (static_cast<int>(out.size()) < len) {
        const int rank = static_cast<int>(std::pow(
                             400.0, std::uniform_real_distribution<double>(0.0, 1.0)(rng()))) -
                         1;
        const std::string& word = words[static_cast<std::size_t>(std::min(rank, 399))];
        out.insert(out.end(), word.begin(), word.end());
        out.push_back(static_cast<std::uint8_t>(uniform(0, 11) == 0 ? '\n' : ' '));
    }
    out.resize(static_cast<std::size_t>(len));
    return out;
}

Bytes binaryLike(int len) {
    Bytes out;
    std::uint32_t address = 0x400000;
    while (static_cast<int>(out.size()) < len) {
        address += static_cast<std::uint32_t>(uniform(1, 40));
        const std::uint32_t fields[4] = {
            address, static_cast<std::uint32_t>(uniform(0, 15)),
            static_cast<std::uint32_t>(uniform(0, 7) == 0 ? rng()() : 0), 0x48u};
        for (const std::uint32_t field : fields)
            for (int n = 0; n < 32; n += 8) out.push_back(static_cast<std::uint8_t>(field >> n));
    }
    out.resize(static_cast<std::size_t>(len));
    return out;
}

Bytes imageLike(int len) {
    constexpr double kWidth = 640;
    Bytes out;
    for (int n = 0; n < len; ++n) {
        const double x = std::fmod(n, kWidth) / kWidth, y = n / kWidth / 100;
        out.push_back(static_cast<std::uint8_t>(
            128 + 100 * std::sin(9 * x + 5 * y) * std::cos(4 * y) + uniform(0, 3)));
    }
    return out;
}

Bytes zeros(int len) { return Bytes(static_cast<std::size_t>(len), 0); }

Bytes noise(int len) {
    Bytes out(static_cast<std::size_t>(len));
    fillRandom(out);
    return out;
}

std::vector<Sample> samples(int len) {
    return {{"text", textLike(len)},
            {"binary", binaryLike(len)},
            {"image", imageLike(len)},
            {"zeros", zeros(len)},
            {"noise", noise(len)}};
}

RandomStream randomStream(int blocks, bool proper) {
    DeflateWriter out;
    int history = 0;
    for (int n = 1; n <= blocks; ++n) {
        const bool final = n == blocks;
        const int kind = uniform(0, 3);
        if (kind == 0) {
            const Bytes data = noise(uniform(0, 4) == 0 ? uniform(0, 40000) : uniform(0, 12));
            out.stored(final, data);
            history += static_cast<int>(data.size());
        } else if (kind == 1) {
            out.fixed(final);
            history += randomSymbols(out, reference::fixedLiteralLengths(),
                                     reference::fixedDistanceLengths(), history, proper);
        } else {
            const int literalCount = proper ? uniform(257, 286) : uniform(257, 288);
            const int distanceCount = proper ? uniform(1, 30) : uniform(1, 32);
            std::vector<int> literal =
                spread(completeCode(uniform(2, uniform(2, literalCount))), literalCount, {256});
            std::vector<int> distance =
                spread(completeCode(uniform(1, distanceCount)), distanceCount, {});
            if (!proper && uniform(0, 1) == 0)
                for (auto* lengths : {&literal, &distance})
                    for (std::size_t s = 0; s < lengths->size(); ++s)
                        if (s != 256 && uniform(0, 9) == 0) (*lengths)[s] = 0;
            out.dynamic(final, literal, distance);
            history += randomSymbols(out, literal, distance, history, proper);
        }
    }
    out.bits(0xFFFF, 16);
    return {out.bytes(), proper};
}

}  // namespace zep::test
