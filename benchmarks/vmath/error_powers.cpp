// Powers of random pairs, real ones against double precision and complex ones against 200 bits.
#include <mpfr.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>

#include "support/buffers.h"
#include "vmath/functions.h"
#include "vmath/vmath_error.h"

namespace zep::bench {
namespace {

constexpr std::size_t kColumnCount = std::size(kColumns);

struct Worst {
    double error = 0, sum = 0;
    float x = 0, b = 0;
    std::uint64_t count = 0;
};

// Bases of all exponents, within 2^-k of one, or negative with a whole exponent; exponents of any size for which the
// result is about a number of single precision.
class Pairs {
public:
    void fill(float* x, float* b, int count) {
        for (int n = 0; n < count; ++n) {
            const std::uint64_t word = random_();
            const auto low = static_cast<std::uint32_t>(word);
            const double u = static_cast<double>(word >> 32) * 0x1p-31 - 1;
            if (n % 4 == 0) {
                const int spread = static_cast<std::int32_t>(low) >> (8 + n / 4 % 23);
                x[n] = test::fromBits(static_cast<std::uint32_t>(0x3F800000 + spread));
            } else {
                x[n] = test::fromBits(1 + low % 0x7F7FFFFF);  // denormals too
            }
            if (x[n] == 1.0f) x[n] = 1.5f;
            const double reach = 105.0 / std::fabs(std::log(static_cast<double>(x[n])));
            // Half of them anywhere within reach, half by their exponent.
            const double size = n % 2 == 0 ? u : std::copysign(std::exp2(-30 * std::fabs(u)), u);
            b[n] = static_cast<float>(reach * size);
            if (n % 16 == 7) {
                x[n] = -x[n];
                b[n] = std::nearbyint(b[n]);
            }
        }
    }

private:
    std::mt19937_64 random_{20110417};
};

}  // namespace

int walkPowers(std::uint64_t count) {
    AlignedArray<float> x(kChunk), b(kChunk),
        y[2] = {AlignedArray<float>(kChunk), AlignedArray<float>(kChunk)};
    AlignedArray<double> exact(kChunk);
    Pairs pairs;
    Worst worst[kColumnCount];
    std::uint64_t differ[kColumnCount] = {};
    for (std::uint64_t done = 0; done < count; done += kChunk) {
        pairs.fill(x.data(), b.data(), kChunk);
        referencePower(x.data(), b.data(), exact.data(), kChunk);
        for (std::size_t c = 0; c < kColumnCount; ++c) {
            zepSelectColumn(kColumns[c].slot);
            float* now = y[c % 2].data();
            zepsPow_32f_A24(x.data(), b.data(), now, kChunk);
            differ[c] += std::memcmp(now, y[1 - c % 2].data(), kChunk * 4) != 0;
            for (std::size_t n = 0; n < kChunk; ++n) {
                const double error = unitsOff(now[n], exact[n]);
                worst[c].sum += error;
                ++worst[c].count;
                if (error > worst[c].error) {
                    const double sum = worst[c].sum;
                    worst[c] = {error, sum, x[n], b[n], worst[c].count};
                }
            }
        }
    }
    for (std::size_t c = 0; c < kColumnCount; ++c)
        std::printf("%-10s %llu pairs: largest %.5f ULP at %.9g to %.9g, mean %.5f%s\n",
                    kColumns[c].name, static_cast<unsigned long long>(worst[c].count),
                    worst[c].error, static_cast<double>(worst[c].x),
                    static_cast<double>(worst[c].b),
                    worst[c].sum / static_cast<double>(worst[c].count),
                    c > 0 && differ[c] == 0 ? ", the bits of the column above" : "");
    return 0;
}

namespace {

constexpr mpfr_prec_t kBits = 200;

struct Number {
    mpfr_t v;
    Number() { mpfr_init2(v, kBits); }
    Number(const Number&) = delete;
    Number& operator=(const Number&) = delete;
    ~Number() { mpfr_clear(v); }
};

struct ExactPower {
    double re, im;
    double modulus;
    double unit;  // what one rounding of the larger term of w ln z, 2^-53 of it, does to a part
};

// z to the power w by its definition in 200 bits; squares of single precision numbers and their sum take 150 where the
// base is near the unit circle.
ExactPower exactPower(Zep32fc z, Zep32fc w) {
    static Number re, im, ln, angle, p, q, t;
    mpfr_set_flt(re.v, z.re, MPFR_RNDN);
    mpfr_set_flt(im.v, z.im, MPFR_RNDN);
    mpfr_atan2(angle.v, im.v, re.v, MPFR_RNDN);
    mpfr_sqr(re.v, re.v, MPFR_RNDN);
    mpfr_sqr(im.v, im.v, MPFR_RNDN);
    mpfr_add(ln.v, re.v, im.v, MPFR_RNDN);
    mpfr_log(ln.v, ln.v, MPFR_RNDN);
    mpfr_div_2ui(ln.v, ln.v, 1, MPFR_RNDN);
    const double l = mpfr_get_d(ln.v, MPFR_RNDN), a = mpfr_get_d(angle.v, MPFR_RNDN);
    mpfr_mul_d(p.v, ln.v, static_cast<double>(w.re), MPFR_RNDN);
    mpfr_mul_d(t.v, angle.v, static_cast<double>(w.im), MPFR_RNDN);
    mpfr_sub(p.v, p.v, t.v, MPFR_RNDN);
    mpfr_mul_d(q.v, angle.v, static_cast<double>(w.re), MPFR_RNDN);
    mpfr_mul_d(t.v, ln.v, static_cast<double>(w.im), MPFR_RNDN);
    mpfr_add(q.v, q.v, t.v, MPFR_RNDN);
    mpfr_exp(p.v, p.v, MPFR_RNDN);
    ExactPower r;
    r.modulus = mpfr_get_d(p.v, MPFR_RNDN);
    mpfr_sin_cos(re.v, im.v, q.v, MPFR_RNDN);
    mpfr_mul(re.v, re.v, p.v, MPFR_RNDN);
    mpfr_mul(im.v, im.v, p.v, MPFR_RNDN);
    r.re = mpfr_get_d(im.v, MPFR_RNDN);
    r.im = mpfr_get_d(re.v, MPFR_RNDN);
    const double wr = std::fabs(static_cast<double>(w.re)),
                 wi = std::fabs(static_cast<double>(w.im));
    r.unit =
        r.modulus *
        std::max({wr * std::fabs(l), wi * std::fabs(a), wr * std::fabs(a), wi * std::fabs(l)}) *
        0x1p-53;
    return r;
}

// The errors of one kind of base. A part counts as cancelling where 16 roundings of the product, as it is of double
// precision by definition, reach a quarter of its last place.
struct ComplexTally {
    double worst = 0;  // of parts that do not cancel, in units of the last place
    Zep32fc z{}, w{};  // where
    double cancelling =
        0;  // of those that do, in roundings of the product's larger term, less half a last place
    std::uint64_t parts = 0, cancelled = 0, aboveOne = 0;

    void add(Zep32fc z0, Zep32fc w0, float y, double exact, double unit) {
        if (!(std::fabs(exact) < 0x1p127)) return;
        const double error = unitsOff(y, exact);
        ++parts;
        const double place =
            std::fabs(exact) > 0x1p-126 ? std::ldexp(1.0, std::ilogb(exact) - 23) : 0x1p-149;
        if (16 * unit > 0.25 * place) {
            ++cancelled;
            aboveOne += error > 1;
            const double off = std::fabs(static_cast<double>(y) - exact) - 0.5 * place;
            if (unit > 0) cancelling = std::max(cancelling, off / unit);
        } else if (error > worst) {
            worst = error;
            z = z0;
            w = w0;
        }
    }
    void print(const char* column, const char* kind) const {
        std::printf("%-10s %-8s %8llu parts: largest %.4f ULP at (%.9g, %.9g) to (%.9g, %.9g)",
                    column, kind, static_cast<unsigned long long>(parts - cancelled), worst,
                    static_cast<double>(z.re), static_cast<double>(z.im), static_cast<double>(w.re),
                    static_cast<double>(w.im));
        std::printf(
            "; %llu cancel, %llu of them off by more than 1 ULP, by at most %.2f roundings of the "
            "product\n",
            static_cast<unsigned long long>(cancelled), static_cast<unsigned long long>(aboveOne),
            cancelling);
    }
};

}  // namespace

int walkComplexPowers(std::uint64_t count) {
    const char* const kinds[] = {"inside", "circle", "outside", "large w"};
    std::mt19937_64 random(20110418);
    const auto uniform = [&] { return static_cast<double>(random() >> 11) * 0x1p-52 - 1; };
    for (std::size_t kind = 0; kind < 4; ++kind) {
        ComplexTally tallies[kColumnCount];
        for (std::uint64_t n = 0; n < count; ++n) {
            // On the circle up to what single precision has of it, or within 2^-k.
            const double away = kind % 2 == 1
                                    ? uniform() * std::exp2(-static_cast<double>(4 + n % 24))
                                    : std::exp2((kind == 0 ? -1 : 1) * std::fabs(uniform()) *
                                                (n % 2 == 0 ? 2.0 : 60.0)) -
                                          1;
            const double angle = 3.14159265358979 * uniform();
            const Zep32fc z{static_cast<float>((1 + away) * std::cos(angle)),
                            static_cast<float>((1 + away) * std::sin(angle))};
            const double size = std::exp2(static_cast<double>(n % (kind % 2 == 1 ? 20 : 6)) - 2);
            // Large real exponents about the circle: the modulus stays in range, the angle turns often.
            const double reach = kind == 3 ? std::min(size, 40 / std::fabs(angle)) : size;
            const Zep32fc w{static_cast<float>(uniform() * size),
                            static_cast<float>(uniform() * reach)};
            const ExactPower exact = exactPower(z, w);
            for (std::size_t c = 0; c < kColumnCount; ++c) {
                zepSelectColumn(kColumns[c].slot);
                Zep32fc y;
                zepsPow_32fc_A24(&z, &w, &y, 1);
                tallies[c].add(z, w, y.re, exact.re, exact.unit);
                tallies[c].add(z, w, y.im, exact.im, exact.unit);
            }
        }
        for (std::size_t c = 0; c < kColumnCount; ++c)
            tallies[c].print(kColumns[c].name, kinds[kind]);
    }
    return 0;
}

}  // namespace zep::bench
