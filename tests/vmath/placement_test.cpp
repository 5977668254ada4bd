// Results belong to the element alone: not to its position, the vector's length or address, the
// destination, or the caller's floating-point settings. And no byte outside the vectors is touched.
#include <gtest/gtest.h>

#include "support/control_word.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "vmath/functions.h"

namespace zep::test {
namespace {

// Usual arguments with special ones between, one value for each.
struct Sample {
    float x, b, y, z;
};

// Each element computed in a call of its own.
std::vector<Sample> samplesOf(const MathFunction& f, int count, float constant) {
    const float special[] = {0,      -0.0f, kInf,  -kInf,     kNan,       -1.0f, 1e5f,
                             -90.0f, 2000,  -2e9f, 0x1p-140f, -0x1p-140f, 1.0f,  3e38f};
    std::vector<Sample> samples(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        Sample& s = samples[i];
        const double u = static_cast<double>(randomValue<float>()) / 2 + 0.5;
        s.x = i % 9 == 4 ? special[i / 9 % std::size(special)]
                         : static_cast<float>(f.from + u * (f.to - f.from));
        s.b = f.constant ? constant : randomValue<float>() * 8;
        f.run(&s.x, &s.b, &s.y, &s.z, 1);
    }
    return samples;
}

class Bytes {
public:
    Bytes(int len, Edge edge, int skew) : bytes_(len * 4, edge, skew) {}
    float* data() { return reinterpret_cast<float*>(bytes_.data()); }
    void set(int n, float x) { std::memcpy(bytes_.data() + 4 * n, &x, 4); }
    std::uint32_t bitsAt(int n) const {
        std::uint32_t x;
        std::memcpy(&x, bytes_.data() + 4 * n, 4);
        return x;
    }

private:
    GuardedBuffer<std::byte> bytes_;
};

class VectorMathPlacement : public VariantTest {
protected:
    // From sample `first` on, in buffers against a guard page.
    static void check(const MathFunction& f, const std::vector<Sample>& samples, int first, int len,
                      Edge edge, int skew, bool inPlace) {
        Bytes x(len, edge, skew), b(f.constant ? 1 : len, edge, skew);
        Bytes y(len, edge, inPlace ? skew : (skew + 5) % 64), z(len, edge, skew);
        for (int n = 0; n < len; ++n) {
            const Sample& s = samples[static_cast<std::size_t>(first + n)];
            x.set(n, s.x);
            b.set(f.constant ? 0 : n, s.b);
        }
        Bytes& out = inPlace ? x : y;
        f.run(x.data(), b.data(), out.data(), z.data(), len);
        for (int n = 0; n < len; ++n) {
            const Sample& s = samples[static_cast<std::size_t>(first + n)];
            ASSERT_EQ(out.bitsAt(n), bitsOf(s.y))
                << f.name << " of " << s.x << " at " << n << " of " << len << ", skew " << skew;
            if (f.outputs == 2) {
                ASSERT_EQ(z.bitsAt(n), bitsOf(s.z)) << f.name << " of " << s.x;
            }
        }
    }
};

TEST_P(VectorMathPlacement, LengthsAndAddresses) {
    for (const MathFunction& f : mathFunctions()) {
        const auto samples = samplesOf(f, 300, 1.75f);
        for (int len : sweepLengths(67)) {
            for (Edge edge : {Edge::Front, Edge::Back}) {
                check(f, samples, len * 3 % 97, len, edge, len * 7 % 64, false);
                if (HasFatalFailure()) return;
            }
            check(f, samples, len % 31, len, Edge::Back, 0, true);
            if (HasFatalFailure()) return;
        }
        check(f, samples, 0, 300, Edge::Back, 1, false);
        check(f, samples, 0, 300, Edge::Front, 0, true);
        if (HasFatalFailure()) return;
    }
}

// The second result over the source.
TEST_P(VectorMathPlacement, CosineInPlace) {
    for (const MathFunction& f : mathFunctions()) {
        if (f.outputs != 2) continue;
        const auto samples = samplesOf(f, 70, 0);
        std::vector<float> x, y(samples.size());
        for (const Sample& s : samples) x.push_back(s.x);
        f.run(x.data(), nullptr, y.data(), x.data(), static_cast<int>(x.size()));
        for (std::size_t i = 0; i < x.size(); ++i) {
            ASSERT_EQ(bitsOf(y[i]), bitsOf(samples[i].y)) << f.name;
            ASSERT_EQ(bitsOf(x[i]), bitsOf(samples[i].z)) << f.name;
        }
    }
}

// A destination over either source of a power.
TEST_P(VectorMathPlacement, PowerOverItsExponents) {
    const MathFunction& f = mathFunctions()[8];
    const auto samples = samplesOf(f, 70, 0);
    std::vector<float> x, b;
    for (const Sample& s : samples) {
        x.push_back(s.x);
        b.push_back(s.b);
    }
    zepsPow_32f_A24(x.data(), b.data(), b.data(), 70);
    for (std::size_t i = 0; i < x.size(); ++i) ASSERT_EQ(bitsOf(b[i]), bitsOf(samples[i].y));
}

TEST_P(VectorMathPlacement, ControlWord) {
    for (const MathFunction& f : mathFunctions()) {
        const auto samples = samplesOf(f, 70, -2.5f);
        for (unsigned rounding : kRoundingModes) {
            for (unsigned flush :
                 {0u, kFlushToZero, kDenormalsAreZero, kFlushToZero | kDenormalsAreZero}) {
                std::vector<float> x, b, y(samples.size()), z(samples.size());
                for (const Sample& s : samples) {
                    x.push_back(s.x);
                    b.push_back(s.b);
                }
                bool kept = false;
                {
                    const ControlWord word(rounding | flush);
                    f.run(x.data(), b.data(), y.data(), z.data(), static_cast<int>(x.size()));
                    kept = word.kept();
                }
                ASSERT_TRUE(kept) << f.name;
                for (std::size_t i = 0; i < x.size(); ++i) {
                    ASSERT_EQ(bitsOf(y[i]), bitsOf(samples[i].y)) << f.name << " of " << x[i];
                    if (f.outputs == 2) {
                        ASSERT_EQ(bitsOf(z[i]), bitsOf(samples[i].z)) << f.name;
                    }
                }
            }
        }
    }
}

// Exceptions that the caller lets trap do not; the word comes back with them still unmasked.
TEST_P(VectorMathPlacement, NothingTraps) {
    for (const MathFunction& f : mathFunctions()) {
        const auto samples = samplesOf(f, 70, -2.5f);
        std::vector<float> x, b, y(samples.size()), z(samples.size());
        for (const Sample& s : samples) {
            x.push_back(s.x);
            b.push_back(s.b);
        }
        const unsigned before = _mm_getcsr();
        _mm_setcsr(before & ~(kExceptionMasks | kStickyFlags));
        f.run(x.data(), b.data(), y.data(), z.data(), static_cast<int>(x.size()));
        const unsigned after = _mm_getcsr();
        _mm_setcsr(before);
        EXPECT_EQ(after & kExceptionMasks, 0u) << f.name;
        for (std::size_t i = 0; i < x.size(); ++i)
            ASSERT_EQ(bitsOf(y[i]), bitsOf(samples[i].y)) << f.name;
    }
}

TEST_P(VectorMathPlacement, ErrorsWriteNothing) {
    for (const MathFunction& f : mathFunctions()) {
        float x[2] = {1, 2}, b[2] = {2, 3}, y[2] = {7, 7}, z[2] = {7, 7};
        const auto run = [&](const float* px, float* py, int len) {
            return f.run(px, b, py, z, len);
        };
        if (f.inPlace) {
            for (int len : {1, 0, -1})
                EXPECT_EQ(run(nullptr, nullptr, len > 0 ? 0 : len), zepStsNullPtrErr) << f.name;
            EXPECT_EQ(run(x, x, 0), zepStsSizeErr) << f.name;
            EXPECT_EQ(run(x, x, -5), zepStsSizeErr) << f.name;
        } else {
            for (int len : {1, 0, -1}) {
                EXPECT_EQ(run(nullptr, y, len), zepStsNullPtrErr) << f.name;
                EXPECT_EQ(run(x, nullptr, len), zepStsNullPtrErr) << f.name;
                if (f.outputs == 2) {
                    EXPECT_EQ(f.run(x, b, y, nullptr, len), zepStsNullPtrErr);
                }
                if (f.inputs == 2) {
                    EXPECT_EQ(f.run(x, nullptr, y, z, len), zepStsNullPtrErr);
                }
            }
            EXPECT_EQ(run(x, y, 0), zepStsSizeErr) << f.name;
            EXPECT_EQ(run(x, y, -5), zepStsSizeErr) << f.name;
        }
        EXPECT_EQ(x[0], 1.0f);
        EXPECT_EQ(y[0], 7.0f);
        EXPECT_EQ(z[0], 7.0f);
    }
}

ZEP_FOR_EACH_VARIANT(VectorMathPlacement);

}  // namespace
}  // namespace zep::test
