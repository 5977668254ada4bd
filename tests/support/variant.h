// Runs a test once for each variant of the library, by forcing the index.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace zep::test {

struct Variant {
    const char* tag;
    int cpu;            // ZepCpuType value that selects it
    const char* needs;  // instruction set that the host must have
    bool (*supported)();
};

inline std::ostream& operator<<(std::ostream& out, const Variant& v) { return out << v.tag; }

extern const Variant kVariants[5];

// Base of every suite that runs in all variants; see ZEP_FOR_EACH_VARIANT.
class VariantTest : public ::testing::TestWithParam<Variant> {
protected:
    void SetUp() override;
    void TearDown() override;
};

inline std::string variantTestName(const ::testing::TestParamInfo<Variant>& info) { return info.param.tag; }

#define ZEP_FOR_EACH_VARIANT(Suite)                                                             \
    INSTANTIATE_TEST_SUITE_P(Variants, Suite, ::testing::ValuesIn(::zep::test::kVariants), \
                             ::zep::test::variantTestName)

}  // namespace zep::test
