#include "reference/g726_model.h"

namespace zep::reference {
namespace {

int signed16(std::uint32_t v) { return static_cast<int>((v & 65535) ^ 32768) - 32768; }

// Exponent and 6-bit mantissa of a magnitude.
std::uint32_t floating(std::uint32_t sign, std::uint32_t mag) {
    std::uint32_t exp = 0;
    while (exp < 16 && mag >> exp != 0) ++exp;
    const std::uint32_t mant = mag == 0 ? 32 : (mag << 6) >> exp;
    return sign << 10 | exp << 6 | mant;
}

}  // namespace

// Product of a coefficient of 16 bits and a floating word of 11, 16 bits.
std::uint32_t G726Model::fmult(std::uint32_t an, std::uint32_t srn) {
    const std::uint32_t ans = an >> 15;
    const std::uint32_t anmag = ans == 0 ? an >> 2 : (16384 - (an >> 2)) & 8191;
    std::uint32_t anexp = 0;
    while (anmag >> anexp != 0) ++anexp;
    const std::uint32_t anmant = anmag == 0 ? 32 : (anmag << 6) >> anexp;
    const std::uint32_t srns = srn >> 10, srnexp = srn >> 6 & 15, srnmant = srn & 63;
    const std::uint32_t wans = srns ^ ans, wanexp = srnexp + anexp;
    const std::uint32_t wanmant = (srnmant * anmant + 48) >> 4;
    const std::uint32_t wanmag =
        wanexp <= 26 ? (wanmant << 7) >> (26 - wanexp) : ((wanmant << 7) << (wanexp - 26)) & 32767;
    return wans == 0 ? wanmag : (65536 - wanmag) & 65535;
}

void G726Model::predict() {
    std::uint32_t sezi = 0;
    for (int i = 0; i < 6; ++i) sezi = (sezi + fmult(b_[i], dqf_[i])) & 65535;
    const std::uint32_t sei = (sezi + fmult(a_[1], srf_[1]) + fmult(a_[0], srf_[0])) & 65535;
    sez_ = sezi >> 1, se_ = sei >> 1;
    const int al = ap_ >= 256 ? 64 : ap_ >> 2;
    const int dif = yu_ - (yl_ >> 6);
    const int prod = dif < 0 ? -((-dif * al) >> 6) : (dif * al) >> 6;
    y_ = (yl_ >> 6) + prod;
}

// d in 16 bits.
int G726Model::quantize(int d) const {
    int dqm = d < 0 ? -d : d;
    if (dqm == 32768) dqm = 32767;
    int exp = 0;
    while (dqm >> (exp + 1) != 0) ++exp;
    const int dl = exp * 128 + (((dqm << 7) >> exp) & 127);
    const int dln = dl - (y_ >> 2);
    int magnitude = 0;
    for (const auto& level : t_.levels)
        if (dln >= level.lowest) magnitude = level.magnitude;
    int i = d < 0 ? (1 << t_.bits) - 1 - magnitude : magnitude;
    if (i == 0 && t_.bits > 2) i = (1 << t_.bits) - 1;
    return i;
}

void G726Model::adapt(int i) {
    const auto code = static_cast<std::size_t>(i);
    // RECONST, ADDA, ANTILOG
    const std::uint32_t dqs = code >> (t_.bits - 1);
    const int dql = t_.dqln[code] + (y_ >> 2);
    const std::uint32_t dqmag =
        dql < 0 ? 0 : static_cast<std::uint32_t>((128 + dql % 128) * 128 >> (14 - dql / 128));
    const int dq = dqs != 0 ? -static_cast<int>(dqmag) : static_cast<int>(dqmag);
    // TRANS, before the slow scale factor moves
    const int ylint = yl_ >> 15, ylfrac = yl_ >> 10 & 31;
    const int thr2 = ylint > 9 ? 31 << 10 : (32 + ylfrac) << ylint;
    const bool tr = td_ == 1 && static_cast<int>(dqmag) > (thr2 + (thr2 >> 1)) >> 1;
    // ADDB, ADDC
    const int se = signed16(se_ << 1) >> 1, sez = signed16(sez_ << 1) >> 1;
    sr_ = static_cast<std::uint32_t>(se + dq) & 65535;
    const std::uint32_t dqsez = static_cast<std::uint32_t>(sez + dq) & 65535;
    const std::uint32_t pk0 = dqsez >> 15;
    const bool sigpk = dqsez == 0;
    // UPA2, LIMC
    const int a1 = signed16(a_[0]), a2 = signed16(a_[1]);
    int fa1 = a1 < -8191 ? -8191 * 4 : a1 > 8191 ? 8191 * 4 : a1 * 4;
    if ((pk0 ^ pk1_) == 0) fa1 = -fa1;
    const int uga2 = sigpk ? 0 : ((((pk0 ^ pk2_) == 0 ? 16384 : -16384) + fa1) >> 7);
    int a2p = a2 + uga2 - (a2 >> 7);
    if (a2p > 12288) a2p = 12288;
    if (a2p < -12288) a2p = -12288;
    // UPA1, LIMD
    const int uga1 = sigpk ? 0 : (pk0 ^ pk1_) == 0 ? 192 : -192;
    int a1p = a1 + uga1 - (a1 >> 8);
    const int a1ul = 15360 - a2p;
    if (a1p > a1ul) a1p = a1ul;
    if (a1p < -a1ul) a1p = -a1ul;
    // TONE, UPB, XOR
    const bool tdp = a2p < -11776;
    for (int k = 0; k < 6; ++k) {
        const int b = signed16(b_[k]);
        const int ugb = dqmag == 0 ? 0 : ((dqf_[k] >> 10) ^ dqs) == 0 ? 128 : -128;
        b_[k] = static_cast<std::uint32_t>(b + ugb - (b >> (t_.bits == 5 ? 9 : 8))) & 65535;
    }
    // TRIGB
    a_[0] = static_cast<std::uint32_t>(a1p) & 65535;
    a_[1] = static_cast<std::uint32_t>(a2p) & 65535;
    if (tr) a_[0] = a_[1] = b_[0] = b_[1] = b_[2] = b_[3] = b_[4] = b_[5] = 0;
    td_ = !tr && tdp;
    pk2_ = pk1_, pk1_ = pk0;
    // FLOATA, FLOATB and delays
    for (int k = 5; k > 0; --k) dqf_[k] = dqf_[k - 1];
    dqf_[0] = floating(dqs, dqmag);
    srf_[1] = srf_[0];
    const int sr = signed16(sr_);
    srf_[0] = floating(sr_ >> 15, static_cast<std::uint32_t>(sr < 0 ? -sr : sr) & 32767);
    // FILTA, FILTB, SUBTC, FILTC, TRIGA
    dms_ += (t_.fi[code] * 512 - dms_) >> 5;
    dml_ += (t_.fi[code] * 2048 - dml_) >> 7;
    const int dif = 4 * dms_ - dml_;
    const bool ax = y_ < 1536 || (dif < 0 ? -dif : dif) >= dml_ >> 3 || tdp;
    ap_ = tr ? 256 : ap_ + (((ax ? 512 : 0) - ap_) >> 4);
    // FILTD, LIMB, FILTE
    int yup = y_ + ((t_.wi[code] * 32 - y_) >> 5);
    yup = yup < 544 ? 544 : yup > 5120 ? 5120 : yup;
    yu_ = yup;
    yl_ += yup + (-yl_ >> 6);
}

int G726Model::encode(int sl) {
    predict();
    const int i = quantize(signed16(static_cast<std::uint32_t>(sl - (signed16(se_ << 1) >> 1))));
    adapt(i);
    return i;
}

int G726Model::decode(int i) {
    predict();
    const G726Model before = *this;
    adapt(i);
    int sr = signed16(sr_);
    const bool mu = t_.law == G726Tables::Law::Mu;
    if (t_.law != G726Tables::Law::Linear && sr == -32768) sr = mu ? 0 : -2;
    sr = sr < -8192 ? -8192 : sr > 8191 ? 8191 : sr;
    if (t_.law == G726Tables::Law::Linear) return sr;
    // COMPRESS
    int sp = 0;
    if (mu) {
        int m = (sr < 0 ? -sr : sr) + 33;
        if (m > 8191) m = 8191;
        int e = 1;
        while (m >> (e + 5) != 0) ++e;
        sp = (sr < 0 ? 0 : 128) + 16 * (8 - e) + 15 - ((m >> e) & 15);
    } else {
        const int m = (sr < 0 ? -sr - 1 : sr) >> 1;
        int s = 0;
        while (m >= 32 << s) ++s;
        sp = (16 * s + ((m >> (s < 2 ? 1 : s)) & 15)) ^ (sr < 0 ? 0x55 : 0xD5);
    }
    // EXPAND, SUBTA, LOG, SUBTB, SYNC
    const int slx = t_.expand[static_cast<std::size_t>(sp)] >> 2;
    const int dx = signed16(static_cast<std::uint32_t>(slx - (signed16(before.se_ << 1) >> 1)));
    const int sign = 1 << (t_.bits - 1);
    const int id = before.quantize(dx) ^ sign, im = i ^ sign;
    const auto& moved = id > im ? t_.lower : t_.higher;
    return id == im ? sp : moved[static_cast<std::size_t>(sp)];
}

}  // namespace zep::reference
