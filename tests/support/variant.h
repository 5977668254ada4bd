// Runs a test once for each column of the library, by forcing its slot.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "support/machine.h"

namespace zep {
inline std::ostream& operator<<(std::ostream& out, const Column& c) { return out << c.name; }
}  // namespace zep

namespace zep::test {

// `name` is the column's own, `tag` its family's: what version records say and most tuning goes by.
using Variant = Column;

// Base of every suite that runs in all columns; see ZEP_FOR_EACH_VARIANT.
class VariantTest : public ::testing::TestWithParam<Variant> {
protected:
    void SetUp() override;
    void TearDown() override;
};

inline std::string variantTestName(const ::testing::TestParamInfo<Variant>& info) {
    return info.param.name;
}

#define ZEP_FOR_EACH_VARIANT(Suite)                                                             \
    INSTANTIATE_TEST_SUITE_P(Variants, Suite, ::testing::ValuesIn(::zep::test::builtColumns()), \
                             ::zep::test::variantTestName)

}  // namespace zep::test
