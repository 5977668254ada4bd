// G.726 in the blocks, word lengths and signal names of the recommendation's computational details,
// plain and slow. The tables of codes come from outside.
#pragma once

#include <cstdint>
#include <vector>

namespace zep::reference {

struct G726Tables {
    int bits = 0;
    struct Level {
        int lowest, magnitude;
    };
    std::vector<Level> levels;       // rising
    std::vector<int> dqln, wi, fi;   // by code; wi and fi unscaled
    std::vector<int> higher, lower;  // neighbours of a G.711 byte in value, decoder only
    std::vector<int> expand;         // 16-bit values of the law
    enum class Law { Mu, A, Linear } law = Law::Linear;
};

class G726Model {
public:
    explicit G726Model(G726Tables tables) : t_(std::move(tables)) {}

    int encode(int sl);  // 14-bit sample to code
    int decode(int i);   // code to G.711 byte or 14-bit sample

private:
    void predict();
    int quantize(int d) const;
    void adapt(int i);
    static std::uint32_t fmult(std::uint32_t an, std::uint32_t srn);

    G726Tables t_;
    // 16-bit words in two's complement, floating words of 11 bits (sign, exponent, mantissa).
    std::uint32_t a_[2] = {}, b_[6] = {};
    std::uint32_t dqf_[6] = {32, 32, 32, 32, 32, 32}, srf_[2] = {32, 32};
    std::uint32_t pk1_ = 0, pk2_ = 0, td_ = 0;
    int yu_ = 544, yl_ = 34816, ap_ = 0, dms_ = 0, dml_ = 0;
    std::uint32_t se_ = 0, sez_ = 0;  // 15 bits
    int y_ = 0;
    std::uint32_t sr_ = 0;
};

}  // namespace zep::reference
