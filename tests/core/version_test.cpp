#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "core/selection.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

struct Domain {
    const char* name;
    const ZepVersionRecord* (*version)();
    int build;
    const char *dateOfOlder, *dateOfNewer;  // m7, u8, y8; n8, e9
};

constexpr char kApr17[] = "Apr 17 2011", kApr18[] = "Apr 18 2011";
constexpr Domain kDomains[] = {
    {"ac", zepacGetLibVersion, 1008, kApr17, kApr17},
    {"cc", zepccGetLibVersion, 963, kApr17, kApr18},
    {"ch", zepchGetLibVersion, 987, kApr17, kApr17},
    {"cv", zepcvGetLibVersion, 1040, kApr17, kApr18},
    {"dc", zepdcGetLibVersion, 965, kApr17, kApr17},
    {"i", zepiGetLibVersion, 1054, kApr18, kApr18},
    {"j", zepjGetLibVersion, 1032, kApr17, kApr18},
    {"m", zepmGetLibVersion, 986, kApr18, kApr18},
    {"r", zeprGetLibVersion, 911, kApr17, kApr18},
    {"s", zepsGetLibVersion, 1058, kApr17, kApr17},
    {"sc", zepscGetLibVersion, 1027, kApr17, kApr17},
    {"vc", zepvcGetLibVersion, 1007, kApr18, kApr18},
    {"vm", zepvmGetLibVersion, 989, kApr17, kApr17},
};

void expectCommonFields(const ZepVersionRecord& v) {
    EXPECT_EQ(v.major, 7);
    EXPECT_EQ(v.minor, 0);
    EXPECT_EQ(v.releaseBuild, 205);
    EXPECT_STREQ(v.versionText, "7.0 build 205.58");
}

// Version functions are plain code: any index may be set on any machine.
void expectRecords(int slot, std::uint64_t features, const std::string& tag,
                   const std::string& suffix) {
    if (slot > 0 && !kColumns[slot - 1].isBuilt()) return;
    variantIndex = slot;
    enabledFeatures = features;
    for (const Domain& d : kDomains) {
        const ZepVersionRecord* v = d.version();
        ASSERT_NE(v, nullptr);
        EXPECT_EQ(v, d.version());
        expectCommonFields(*v);
        EXPECT_EQ(v->domainBuild, d.build) << d.name;
        EXPECT_EQ(std::string(v->targetTag, 4), tag + std::string(2, '\0')) << d.name;
        EXPECT_EQ(v->libName, std::string("zep") + d.name + tag + "_l.lib" + suffix);
        EXPECT_STREQ(v->buildDate, tag == "n8" || tag == "e9" ? d.dateOfNewer : d.dateOfOlder)
            << d.name << tag;
    }
}

class Version : public ::testing::Test {
protected:
    void TearDown() override { zepSelectVariantAuto(); }
};

TEST_F(Version, NamesTheVariantOfEverySlot) {
    expectRecords(0, 0x7, "m7", "");
    expectRecords(1, 0xF, "m7", "");
    expectRecords(2, 0x1F, "u8", "");
    expectRecords(3, 0x3F, "n8", "");
    expectRecords(4, 0x5F, "y8", "");
    for (const int slot : {5, 6, 7}) expectRecords(slot, 0xFDF, "e9", "");
}

TEST_F(Version, MarksSse42WithAPlusInY8Alone) {
    expectRecords(4, 0xDF, "y8", "+");
    expectRecords(4, 0x80, "y8", "+");
    expectRecords(4, 0xF5F, "y8", "");
    for (const int slot : {0, 1}) expectRecords(slot, 0xFDF, "m7", "");
    expectRecords(2, 0xFDF, "u8", "");
    expectRecords(3, 0xFDF, "n8", "");
}

TEST_F(Version, TheTwoRecordsOfY8DifferInTheNameAlone) {
    if (!kColumns[3].isBuilt()) GTEST_SKIP() << "y8 is not compiled";
    variantIndex = 4;
    for (const Domain& d : kDomains) {
        enabledFeatures = 0;
        const ZepVersionRecord plain = *d.version();
        enabledFeatures = 0x80;
        const ZepVersionRecord plus = *d.version();
        EXPECT_EQ(std::string(plain.libName) + "+", plus.libName);
        EXPECT_EQ(plain.domainBuild, plus.domainBuild);
        EXPECT_STREQ(plain.buildDate, plus.buildDate);
    }
}

TEST_F(Version, TheCoreRecordFillsItsTag) {
    const ZepVersionRecord* v = zepGetLibVersion();
    expectCommonFields(*v);
    EXPECT_EQ(v->domainBuild, 1022);
    EXPECT_EQ(std::string(v->targetTag, 4), "core");
    EXPECT_STREQ(v->libName, "zepcore_l.lib");
    EXPECT_STREQ(v->buildDate, "Apr 17 2011");
    variantIndex = 2;
    EXPECT_EQ(zepGetLibVersion(), v);
}

TEST_F(Version, TheRecordHasNoGapsButThatBeforeItsPointers) {
    EXPECT_EQ(offsetof(ZepVersionRecord, domainBuild), 12u);
    EXPECT_EQ(offsetof(ZepVersionRecord, targetTag), 16u);
    EXPECT_EQ(offsetof(ZepVersionRecord, libName), 24u);
    EXPECT_EQ(sizeof(ZepVersionRecord), 48u);
}

}  // namespace
}  // namespace zep::test
