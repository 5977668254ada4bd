#include "support/variant.h"

#include "core/selection.h"

namespace zep::test {

const Variant kVariants[5] = {
    {"m7", 66, "SSE2", [] { return true; }},
    {"u8", 67, "SSSE3", [] { return __builtin_cpu_supports("ssse3") != 0; }},
    {"n8", 36, "SSSE3 and MOVBE",
     [] {
         std::uint32_t eax = 1, ebx = 0, ecx = 0, edx = 0;
         asm("cpuid" : "+a"(eax), "=b"(ebx), "+c"(ecx), "=d"(edx));
         return __builtin_cpu_supports("ssse3") != 0 && ((ecx >> 22) & 1) != 0;
     }},
    {"y8", 68, "SSE4.1", [] { return __builtin_cpu_supports("sse4.1") != 0; }},
    {"e9", 70, "AVX", [] { return __builtin_cpu_supports("avx") != 0; }},
};

void VariantTest::SetUp() {
    const Variant& v = GetParam();
    if (!v.supported()) GTEST_SKIP() << "this machine has no " << v.needs;
    ASSERT_EQ(zepSelectVariantForCpu(v.cpu), zepStsNoErr);
}

void VariantTest::TearDown() { zepSelectVariantAuto(); }

}  // namespace zep::test
