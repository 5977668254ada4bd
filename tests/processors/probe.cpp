// Prints what the library made of the processor, and results of some primitives: bit patterns where
// every variant must give the same ones, a distance from the exact transform where they may round
// apart.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "core/selection.h"
#include "mozep.h"
#include "zeps.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

std::uint32_t hash(const void* data, std::size_t bytes, std::uint32_t seed = 2166136261u) {
    for (std::size_t i = 0; i < bytes; ++i)
        seed = (seed ^ static_cast<const unsigned char*>(data)[i]) * 16777619u;
    return seed;
}

std::vector<Zep32f> noise(int len, std::uint32_t seed) {
    std::vector<Zep32f> x(len);
    for (Zep32f& v : x) {
        seed = seed * 1664525u + 1013904223u;
        v = static_cast<Zep32f>(static_cast<std::int32_t>(seed)) * 0x1p-31f;
    }
    return x;
}

std::uint32_t exactPrimitives() {
    std::uint32_t h = 2166136261u;
    for (int len = 1; len < 100; ++len) {
        const std::vector<Zep32f> a = noise(len, 1), b = noise(len, 2);
        std::vector<Zep32f> sum(len), copy(len);
        if (zepsAdd_32f(a.data(), b.data(), sum.data(), len) != zepStsNoErr) return 0;
        if (zepsCopy_32f(sum.data(), copy.data(), len) != zepStsNoErr) return 0;
        h = hash(copy.data(), copy.size() * sizeof copy[0], h);
    }
    return h;
}

// Largest error of a real transform over all orders to 9, relative to the root of the energy.
double transformError() {
    double worst = 0;
    for (int order = 0; order <= 9; ++order) {
        const int length = 1 << order;
        const std::vector<Zep32f> x = noise(length, 3);
        std::vector<Zep32f> packed(length);
        FFTSpecR32f* spec = nullptr;
        if (zepsFFTInitAlloc_R_32f(&spec, order, ZEP_FFT_SCALE_NONE, zepAlgHintNone) != zepStsNoErr)
            return 1;
        const ZepStatus status = zepsFFTFwd_RToPerm_32f(x.data(), packed.data(), spec, nullptr);
        zepsFFTFree_R_32f(spec);
        if (status != zepStsNoErr) return 1;
        double energy = 0;
        for (const Zep32f v : x) energy += double{v} * v;
        for (int k = 0; k <= length / 2; ++k) {
            double re = 0, im = 0;
            for (int n = 0; n < length; ++n) {
                re += x[n] * std::cos(2 * kPi * n * k / length);
                im -= x[n] * std::sin(2 * kPi * n * k / length);
            }
            const bool realBin = k == 0 || 2 * k == length;
            const double gotRe = k == 0 ? packed[0] : 2 * k == length ? packed[1] : packed[2 * k];
            const double gotIm = realBin ? 0 : packed[2 * k + 1];
            const double error = std::hypot(gotRe - re, realBin ? 0 : gotIm - im);
            worst = std::fmax(worst, error / std::sqrt(length * energy));
        }
    }
    return worst;
}

}  // namespace

int main() {
    int cacheBytes = -1;
    const ZepStatus cacheStatus = zepGetMaxCacheSizeB(&cacheBytes);
    std::printf("version %s\n", zepsGetLibVersion()->versionText);
    std::printf("library %s\n", zepsGetLibVersion()->libName);
    std::printf("slot %d\n", zep::variantIndex);
    std::printf("tag %.4s\n", zepsGetLibVersion()->targetTag);
    std::printf("status %d\n", static_cast<int>(MOZEP::mozepStaticInitResult()));
    std::printf("type %d\n", static_cast<int>(zepGetCpuType()));
    std::printf("cache_status %d\n", static_cast<int>(cacheStatus));
    std::printf("cache_bytes %d\n", cacheBytes);
    std::printf("cores %d\n", zepGetNumCoresOnDie());
    std::printf("exact %08x\n", static_cast<unsigned>(exactPrimitives()));
    std::printf("transform_error %.3g\n", transformError());
    return 0;
}
