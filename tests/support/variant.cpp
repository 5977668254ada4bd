#include "support/variant.h"

#include "core/selection.h"

namespace zep::test {

void VariantTest::SetUp() {
    const Variant& v = GetParam();
    if (!runsHere(v)) GTEST_SKIP() << "this machine has not all of " << v.needs;
    ASSERT_EQ(zepSelectColumn(v.slot), zepStsNoErr);
}

void VariantTest::TearDown() { zepSelectVariantAuto(); }

}  // namespace zep::test
