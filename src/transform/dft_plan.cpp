#include "transform/dft_plan.h"

#include <type_traits>

namespace zep::ZEP_VARIANT::dft {

template <class T>
Factors factorise(int len) {
    using L = Limits<T>;
    constexpr Factors kNone{};
    int f[kMaxFactors + 12] = {};
    int count = 0, n = len;
    for (; n % 4 == 0; n /= 4) f[count++] = 4;
    if (n % 2 == 0) {
        n /= 2;
        f[count++] = 4;
        f[0] = 2;
    }
    // Two and three become six, in single precision only where no four follows.
    const auto merges = [&] { return f[0] == 2 && (std::is_same_v<T, double> || f[1] != 4); };
    if (n > 8)
        for (int p = 3; p * p <= n;) {
            if (n % p == 0) {
                n /= p;
                if (p == 3 && merges())
                    f[0] = 6;
                else
                    f[count++] = p;
            } else if ((p += 2) > L::divisor) {
                return kNone;
            }
        }
    if (count == 0) return kNone;
    if (n > (len % L::wideLast == 0 ? L::largestLast : L::oddLength)) return kNone;
    if (n == 3 && merges())
        f[0] = 6;
    else
        f[count++] = n;
    int last = count - 1;  // the final entry
    const bool fourFollows = f[1] == 4;
    if (fourFollows && f[0] != 6) {
        f[0] *= 4;
        for (int i = 1; i < last; ++i) f[i] = f[i + 1];
        f[last--] = 0;
    }
    // The even factor runs first, without twiddles; the odd ones join its transforms.
    if (f[0] % 2 == 0) {
        const int even = f[0];
        f[0] = f[last];
        f[last] = even;
    }
    if (last < 1 || last > kMaxFactors) return kNone;
    Factors result;
    result.count = last;
    for (int i = 0; i < last; ++i) result.radix[i] = f[i];
    result.first = f[last];
    return result;
}

int convolutionLength(int len) {
    static constexpr int kLengths[] = {128,  144,  160,  192,  200,  256,  288,  320,
                                       384,  400,  512,  576,  640,  768,  800,  1024,
                                       1152, 1280, 1536, 1600, 2048, 2304, 2560, 3072,
                                       3200, 4096, 4608, 5120, 6144, 6400, 8192};
    const std::int64_t needed = 2 * std::int64_t{len} - 1;
    for (const int length : kLengths)
        if (length >= needed) return length;
    std::int64_t power = 16384;
    while (power < needed) power *= 2;
    return static_cast<int>(power);
}

template Factors factorise<float>(int);
template Factors factorise<double>(int);

}  // namespace zep::ZEP_VARIANT::dft
