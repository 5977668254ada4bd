// G.726: the official sequences, and a model in plain integers for all other input.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "reference/g726_model.h"
#include "speech/data_files.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

using reference::G726Model;
using reference::G726Tables;

struct Rate {
    int argument, kbits, bits;
};
constexpr Rate kRates[] = {{17, 16, 2}, {22, 24, 3}, {23, 32, 4}, {24, 40, 5}};
constexpr const char* kLawNames[] = {"mu", "A", "lin14"};

G726Tables tablesOf(const Rate& rate, int law) {
    G726Tables t;
    t.bits = rate.bits;
    for (const auto& row : readTable("g726_decision_levels.csv"))
        if (std::stoi(row[0]) == rate.kbits)
            t.levels.push_back({std::stoi(row[2]), std::stoi(row[3])});
    for (const auto& row : readTable("g726_code_tables.csv")) {
        if (std::stoi(row[0]) != rate.kbits) continue;
        t.dqln.push_back(std::stoi(row[2]));
        t.wi.push_back(std::stoi(row[3]));
        t.fi.push_back(std::stoi(row[5]));
    }
    t.law = static_cast<G726Tables::Law>(law);
    if (law == ZEP_G726_LINEAR) return t;
    for (const auto& row : readTable("g726_sync_neighbours.csv")) {
        if (row[0] != kLawNames[law]) continue;
        t.higher.push_back(std::stoi(row[2]));
        t.lower.push_back(std::stoi(row[3]));
    }
    for (const auto& row : readTable("g711_expand.csv"))
        t.expand.push_back(std::stoi(row[law == 0 ? 1 : 2]));
    return t;
}

// A state in memory of exactly its size, against an unreadable page and at any address.
template <int bytes>
struct StateBytes {
    GuardedBuffer<std::uint8_t> memory;
    explicit StateBytes(int skew = 0) : memory(bytes, Edge::Back, skew) {}
    ZepG726State* get() { return reinterpret_cast<ZepG726State*>(memory.data()); }
};
using EncoderState = StateBytes<88>;
using DecoderState = StateBytes<92>;

// Runs f(offset, count) over pieces of 1, 2, 3 ... elements, or over all at once.
template <class F>
void inPieces(std::size_t len, bool cut, F f) {
    for (std::size_t from = 0, piece = 1; from < len; from += piece, ++piece) {
        const std::size_t n = cut ? std::min(piece, len - from) : len;
        ASSERT_EQ(f(from, static_cast<int>(n)), zepStsNoErr);
        if (!cut) break;
    }
}

std::vector<Zep16s> encoderInput(const std::string& name) {
    if (dataExists("g726/" + name + ".lin14")) return readWords("g726/" + name + ".lin14");
    const std::vector<std::uint8_t> codes = readBytes("g726/" + name + ".g711");
    std::vector<Zep16s> x(codes.size());
    const auto expand = name.ends_with("mu") ? zepsMuLawToLin_8u16s : zepsALawToLin_8u16s;
    EXPECT_EQ(expand(codes.data(), x.data(), static_cast<int>(x.size())), zepStsNoErr);
    for (Zep16s& v : x) v = static_cast<Zep16s>(v >> 2);
    return x;
}

std::vector<Zep8u> encode(const Rate& rate, const std::vector<Zep16s>& x, bool cut) {
    EncoderState state;
    EXPECT_EQ(zepsEncodeInit_G726_16s8u(state.get(), rate.argument), zepStsNoErr);
    std::vector<Zep8u> codes(x.size());
    inPieces(x.size(), cut, [&](std::size_t from, int n) {
        return zepsEncode_G726_16s8u(state.get(), x.data() + from, codes.data() + from, n);
    });
    return codes;
}

std::vector<Zep16s> decode(const Rate& rate, int law, const std::vector<Zep8u>& codes, bool cut) {
    DecoderState state;
    EXPECT_EQ(zepsDecodeInit_G726_8u16s(state.get(), rate.argument, law), zepStsNoErr);
    std::vector<Zep16s> y(codes.size());
    inPieces(codes.size(), cut, [&](std::size_t from, int n) {
        return zepsDecode_G726_8u16s(state.get(), codes.data() + from, y.data() + from, n);
    });
    return y;
}

class G726 : public VariantTest {};

TEST_P(G726, EncoderGivesTheOfficialCodes) {
    int files = 0;
    for (const char* name : {"nrm_mu", "nrm_A", "ovr_mu", "ovr_A", "front_center"}) {
        const std::vector<Zep16s> x = encoderInput(name);
        for (const Rate& rate : kRates) {
            const std::string file =
                "g726/" + std::string(name) + '_' + std::to_string(rate.kbits) + ".codes";
            if (!dataExists(file)) continue;
            ++files;
            const std::vector<Zep8u> expected = readBytes(file);
            EXPECT_EQ(encode(rate, x, false), expected) << file;
            EXPECT_EQ(encode(rate, x, true), expected) << file << " in pieces";
        }
    }
    EXPECT_EQ(files, 12);
}

TEST_P(G726, DecoderGivesTheOfficialOutput) {
    int files = 0;
    for (const char* name : {"nrm_mu", "nrm_A", "ovr_mu", "ovr_A", "front_center"})
        for (const Rate& rate : kRates) {
            const std::string stem = "g726/" + std::string(name) + '_' + std::to_string(rate.kbits);
            for (int law = 0; law < 3; ++law) {
                const std::string file = stem + ".dec_" + kLawNames[law];
                if (!dataExists(file)) continue;
                ++files;
                const std::vector<Zep8u> codes = readBytes(stem + ".codes");
                std::vector<Zep16s> expected;
                if (law == ZEP_G726_LINEAR)
                    expected = readWords(file);
                else
                    for (const std::uint8_t byte : readBytes(file)) expected.push_back(byte);
                EXPECT_EQ(decode(rate, law, codes, false), expected) << file;
                EXPECT_EQ(decode(rate, law, codes, true), expected) << file << " in pieces";
            }
        }
    EXPECT_EQ(files, 20);
}

TEST_P(G726, EncoderFollowsTheModelOverTheWholeRange) {
    for (const Rate& rate : kRates) {
        G726Model model(tablesOf(rate, ZEP_G726_LINEAR));
        std::vector<Zep16s> x(1500);
        // 16-bit noise, a square wave between the limits, noise at 14 bits and around zero.
        for (std::size_t n = 0; n < x.size(); ++n) {
            const auto noise = randomValue<Zep16s>();
            const int wave = n / 40 % 2 == 0 ? 32767 : -32768;
            const int kinds[] = {noise, wave, noise >> 2, noise >> 13, n % 3 == 0 ? noise : 0};
            x[n] = static_cast<Zep16s>(kinds[n / 300]);
        }
        const std::vector<Zep8u> codes = encode(rate, x, true);
        for (std::size_t n = 0; n < x.size(); ++n)
            ASSERT_EQ(codes[n], model.encode(x[n])) << rate.kbits << ' ' << n;
    }
}

TEST_P(G726, DecoderFollowsTheModelOnAnyCodes) {
    for (const Rate& rate : kRates) {
        std::vector<Zep8u> codes(2400);
        // Noise, every code held, and codes that swing between the largest differences.
        const int all = (1 << rate.bits) - 1, largest = 1 << (rate.bits - 1);
        for (std::size_t n = 0; n < codes.size(); ++n) {
            const int t = static_cast<int>(n), noise = randomValue<Zep8u>() & all;
            const int kinds[] = {noise,
                                 t / 12 & all,
                                 t % 2 == 0 ? largest : largest - 1,
                                 t / 5 % 2 == 0 ? largest : largest - 1,
                                 largest - 1,
                                 noise};
            codes[n] = static_cast<Zep8u>(kinds[n / 400]);
        }
        for (int law = 0; law < 3; ++law) {
            G726Model model(tablesOf(rate, law));
            const std::vector<Zep16s> y = decode(rate, law, codes, true);
            for (std::size_t n = 0; n < codes.size(); ++n)
                ASSERT_EQ(y[n], model.decode(codes[n]))
                    << rate.kbits << ' ' << kLawNames[law] << ' ' << n;
        }
    }
}

TEST_P(G726, LinearOutputIsLimitedToFourteenBits) {
    std::vector<Zep8u> codes(200);
    for (std::size_t n = 0; n < codes.size(); ++n) codes[n] = n < 100 ? 15 : 16;
    const std::vector<Zep16s> y = decode(kRates[3], ZEP_G726_LINEAR, codes, false);
    EXPECT_EQ(*std::max_element(y.begin(), y.end()), 8191);
    EXPECT_EQ(*std::min_element(y.begin(), y.end()), -8192);
}

TEST_P(G726, BitsAboveTheCodeHaveNoEffect) {
    std::vector<Zep8u> codes(64), dirty(64);
    for (const Rate& rate : kRates)
        for (int law = 0; law < 3; ++law) {
            fillRandom(dirty);
            for (std::size_t n = 0; n < codes.size(); ++n)
                codes[n] = dirty[n] & ((1 << rate.bits) - 1);
            EXPECT_EQ(decode(rate, law, codes, false), decode(rate, law, dirty, false));
        }
}

TEST_P(G726, StatesAndArraysMayStandAtAnyAddress) {
    const std::vector<Zep16s> x = encoderInput("front_center");
    const std::vector<Zep8u> codes = encode(kRates[2], x, false);
    const std::vector<Zep16s> y = decode(kRates[2], ZEP_G726_ALAW, codes, false);
    constexpr int kLen = 500;
    for (int skew = 1; skew < 4; ++skew) {
        EncoderState encoder(skew);
        DecoderState decoder(skew);
        GuardedBuffer<std::uint8_t> in(2 * kLen, Edge::Back, skew), coded(kLen, Edge::Back, skew),
            out(2 * kLen, Edge::Back, skew);
        std::memcpy(in.data(), x.data(), 2 * kLen);
        ASSERT_EQ(zepsEncodeInit_G726_16s8u(encoder.get(), 23), zepStsNoErr);
        ASSERT_EQ(zepsDecodeInit_G726_8u16s(decoder.get(), 23, 1), zepStsNoErr);
        ASSERT_EQ(zepsEncode_G726_16s8u(encoder.get(), reinterpret_cast<const Zep16s*>(in.data()),
                                        coded.data(), kLen),
                  zepStsNoErr);
        ASSERT_EQ(zepsDecode_G726_8u16s(decoder.get(), coded.data(),
                                        reinterpret_cast<Zep16s*>(out.data()), kLen),
                  zepStsNoErr);
        EXPECT_EQ(std::memcmp(coded.data(), codes.data(), kLen), 0);
        EXPECT_EQ(std::memcmp(out.data(), y.data(), 2 * kLen), 0);
    }
}

TEST_P(G726, InitRestartsAStream) {
    const std::vector<Zep16s> x = encoderInput("front_center");
    EncoderState state;
    std::vector<Zep8u> first(x.size()), second(x.size());
    const int len = static_cast<int>(x.size());
    for (auto* codes : {&first, &second}) {
        ASSERT_EQ(zepsEncodeInit_G726_16s8u(state.get(), 24), zepStsNoErr);
        ASSERT_EQ(zepsEncode_G726_16s8u(state.get(), x.data(), codes->data(), len), zepStsNoErr);
    }
    EXPECT_EQ(first, second);
}

TEST_P(G726, SizesAreAsStated) {
    Zep32u size = 0;
    EXPECT_EQ(zepsEncodeGetStateSize_G726_16s8u(&size), zepStsNoErr);
    EXPECT_EQ(size, 88u);
    EXPECT_EQ(zepsDecodeGetStateSize_G726_8u16s(&size), zepStsNoErr);
    EXPECT_EQ(size, 92u);
    EXPECT_EQ(zepsEncodeGetStateSize_G726_16s8u(nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsDecodeGetStateSize_G726_8u16s(nullptr), zepStsNullPtrErr);
}

TEST_P(G726, InitRefusesNullPointersThenRatesThenLaws) {
    alignas(4) std::array<std::uint8_t, 92> memory;
    memory.fill(0x5A);
    auto* const state = reinterpret_cast<ZepG726State*>(memory.data());
    EXPECT_EQ(zepsEncodeInit_G726_16s8u(nullptr, 18), zepStsNullPtrErr);
    EXPECT_EQ(zepsDecodeInit_G726_8u16s(nullptr, 18, 3), zepStsNullPtrErr);
    for (const int rate : {0, 10, 14, 16, 18, 21, 25, -1}) {
        EXPECT_EQ(zepsEncodeInit_G726_16s8u(state, rate), zepStsRangeErr);
        EXPECT_EQ(zepsDecodeInit_G726_8u16s(state, rate, 0), zepStsRangeErr);
    }
    for (const int law : {-1, 3, 100})
        EXPECT_EQ(zepsDecodeInit_G726_8u16s(state, 23, law), zepStsRangeErr);
    for (const std::uint8_t byte : memory) EXPECT_EQ(byte, 0x5A);
}

TEST_P(G726, StreamsRefuseNullPointersAndAZeroCountAndIgnoreANegativeOne) {
    EncoderState encoder;
    DecoderState decoder;
    ASSERT_EQ(zepsEncodeInit_G726_16s8u(encoder.get(), 23), zepStsNoErr);
    ASSERT_EQ(zepsDecodeInit_G726_8u16s(decoder.get(), 23, 1), zepStsNoErr);
    const std::vector<std::uint8_t> before(encoder.memory.begin(), encoder.memory.end());
    const std::vector<std::uint8_t> beforeDecoder(decoder.memory.begin(), decoder.memory.end());
    Zep16s x = 100;
    Zep8u code = 0x77;
    for (const int len : {1, 0, -1}) {
        EXPECT_EQ(zepsEncode_G726_16s8u(nullptr, &x, &code, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsEncode_G726_16s8u(encoder.get(), nullptr, &code, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsEncode_G726_16s8u(encoder.get(), &x, nullptr, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsDecode_G726_8u16s(nullptr, &code, &x, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsDecode_G726_8u16s(decoder.get(), nullptr, &x, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsDecode_G726_8u16s(decoder.get(), &code, nullptr, len), zepStsNullPtrErr);
    }
    EXPECT_EQ(zepsEncode_G726_16s8u(encoder.get(), &x, &code, 0), zepStsSizeErr);
    EXPECT_EQ(zepsDecode_G726_8u16s(decoder.get(), &code, &x, 0), zepStsSizeErr);
    EXPECT_EQ(zepsEncode_G726_16s8u(encoder.get(), &x, &code, -5), zepStsNoErr);
    EXPECT_EQ(zepsDecode_G726_8u16s(decoder.get(), &code, &x, -5), zepStsNoErr);
    EXPECT_EQ(code, 0x77);
    EXPECT_EQ(x, 100);
    EXPECT_TRUE(std::equal(before.begin(), before.end(), encoder.memory.begin()));
    EXPECT_TRUE(std::equal(beforeDecoder.begin(), beforeDecoder.end(), decoder.memory.begin()));
}

ZEP_FOR_EACH_VARIANT(G726);

}  // namespace
}  // namespace zep::test
