// Arithmetic whose formula is given has the same bits in every column: what a column may choose is
// the width, not the rounding. Sums and products take no fused multiply-add, quotients and roots
// stand on the same 12-bit estimates.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

#include "core/selection.h"
#include "support/machine.h"
#include "support/random.h"
#include "zeps.h"

namespace zep::test {
namespace {

constexpr int kLen = 1031;  // every form of the loops, ends included

struct Operands {
    std::vector<float> a, b, y;
    std::vector<double> da, db, dy;
};

// Over 40 octaves, with zeros, infinities and denormals among them.
template <class T>
T wideValue() {
    using L = std::numeric_limits<T>;
    static constexpr T kSpecial[] = {0,       -T{0}, L::infinity(), -L::infinity(), L::denorm_min(),
                                     L::max()};
    const auto choice = rng()() % 97;
    if (choice < std::size(kSpecial)) return kSpecial[choice];
    return std::ldexp(randomValue<T>(), static_cast<int>(rng()() % 41) - 20);
}

const Operands& operands() {
    static const Operands made = [] {
        Operands o;
        const auto fill = [](auto& v) {
            v.resize(2 * kLen);
            for (auto& x : v) x = wideValue<std::remove_reference_t<decltype(x)>>();
        };
        fill(o.a), fill(o.b), fill(o.y), fill(o.da), fill(o.db), fill(o.dy);
        return o;
    }();
    return made;
}

using Function = std::function<ZepStatus(Operands&, int len)>;

Zep32fc* pairs(std::vector<float>& v) { return reinterpret_cast<Zep32fc*>(v.data()); }
Zep64fc* pairs(std::vector<double>& v) { return reinterpret_cast<Zep64fc*>(v.data()); }

const std::vector<std::pair<const char*, Function>>& functions() {
    using O = Operands;
    static const std::vector<std::pair<const char*, Function>> all = {
        {"Add_32f", [](O& o, int n) { return zepsAdd_32f(o.a.data(), o.b.data(), o.y.data(), n); }},
        {"Add_64f",
         [](O& o, int n) { return zepsAdd_64f(o.da.data(), o.db.data(), o.dy.data(), n); }},
        {"Mul_32f", [](O& o, int n) { return zepsMul_32f(o.a.data(), o.b.data(), o.y.data(), n); }},
        {"Mul_32fc",
         [](O& o, int n) { return zepsMul_32fc(pairs(o.a), pairs(o.b), pairs(o.y), n); }},
        {"Mul_64fc_I", [](O& o, int n) { return zepsMul_64fc_I(pairs(o.da), pairs(o.dy), n); }},
        {"MulC_32fc",
         [](O& o, int n) {
             return zepsMulC_32fc(pairs(o.a), {1.7f, -0.3f}, pairs(o.y), n);
         }},
        {"DivC_32f", [](O& o, int n) { return zepsDivC_32f(o.a.data(), 3.0f, o.y.data(), n); }},
        {"DivC_32fc_I",
         [](O& o, int n) {
             return zepsDivC_32fc_I({0.7f, 2.1f}, pairs(o.y), n);
         }},
        {"Div_32f", [](O& o, int n) { return zepsDiv_32f(o.a.data(), o.b.data(), o.y.data(), n); }},
        {"Div_32fc",
         [](O& o, int n) { return zepsDiv_32fc(pairs(o.a), pairs(o.b), pairs(o.y), n); }},
        {"Sqrt_32f", [](O& o, int n) { return zepsSqrt_32f(o.a.data(), o.y.data(), n); }},
        {"Sqrt_32fc_I", [](O& o, int n) { return zepsSqrt_32fc_I(pairs(o.y), n); }},
        {"Sqr_64f", [](O& o, int n) { return zepsSqr_64f(o.da.data(), o.dy.data(), n); }},
        {"AddProduct_32f",
         [](O& o, int n) { return zepsAddProduct_32f(o.a.data(), o.b.data(), o.y.data(), n); }},
        {"AddProductC_32f",
         [](O& o, int n) { return zepsAddProductC_32f(o.a.data(), 0.1f, o.y.data(), n); }},
    };
    return all;
}

// NaN compare equal whatever their payload: which operand's it is depends on the order in which a
// compiler takes the operands of a commutative operation.
template <class T>
void expectSameBits(const std::vector<T>& got, const std::vector<T>& expected) {
    for (std::size_t n = 0; n < got.size(); ++n) {
        if (std::isnan(got[n]) && std::isnan(expected[n])) continue;
        ASSERT_EQ(std::memcmp(&got[n], &expected[n], sizeof(T)), 0)
            << n << ": " << got[n] << ", not " << expected[n];
    }
}

TEST(SameBits, OfArithmeticInAllColumns) {
    struct Restored {
        ~Restored() { zepSelectVariantAuto(); }
    } restored;
    for (const auto& [name, function] : functions())
        for (const int len : {1, 2, 3, 5, 7, 9, 15, 17, 31, 33, 63, 70, 257, kLen}) {
            zepSelectColumn(1);
            Operands first = operands();
            const ZepStatus status = function(first, len);
            for (const Column& column : builtColumns()) {
                if (!runsHere(column)) continue;
                SCOPED_TRACE(::testing::Message() << name << " " << column.name << " " << len);
                zepSelectColumn(column.slot);
                Operands own = operands();
                ASSERT_EQ(function(own, len), status);
                ASSERT_NO_FATAL_FAILURE(expectSameBits(own.y, first.y));
                ASSERT_NO_FATAL_FAILURE(expectSameBits(own.dy, first.dy));
            }
        }
}

}  // namespace
}  // namespace zep::test
