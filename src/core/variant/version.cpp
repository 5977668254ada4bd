// One version record for each domain; y8 has a second, named with "+", for processors with SSE4.2.
#include "core/features.h"
#include "core/selection.h"
#include "core/variant/tag.h"
#include "core/variant_exports.h"
#include "core/version.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr bool sameName(const char* a, const char* b) {
    while (*a != '\0' && *a == *b) ++a, ++b;
    return *a == *b;
}

constexpr bool isVariant(const char* name) { return sameName(kVariantName, name); }

constexpr char kApr17[] = "Apr 17 2011";
constexpr char kApr18[] = "Apr 18 2011";
// Some domains were built a day later for the two newest variants.
constexpr const char* kApr17Or18 = isVariant("n8") || isVariant("e9") ? kApr18 : kApr17;

constexpr ZepVersionRecord record(const char* libName, int domainBuild, const char* buildDate) {
    return {version::kMajor,
            version::kMinor,
            version::kReleaseBuild,
            domainBuild,
            {kVariantName[0], kVariantName[1]},
            libName,
            version::kText,
            buildDate};
}

const ZepVersionRecord* choose(const ZepVersionRecord (&records)[2]) {
    if constexpr (isVariant("y8"))
        return &records[zepFeaturesEnabled(feature::kSse42)];
    else
        return &records[0];
}

}  // namespace

#define ZEP_VERSION(domain, build, date)                                                 \
    const ZepVersionRecord* zep##domain##GetLibVersion() {                               \
        static constexpr ZepVersionRecord kRecords[2] = {                                \
            record("zep" #domain ZEP_STRINGIFY(ZEP_VARIANT) "_l.lib", build, date),      \
            record("zep" #domain ZEP_STRINGIFY(ZEP_VARIANT) "_l.lib+", build, date)};    \
        return choose(kRecords);                                                         \
    }
ZEP_VERSION(ac, 1008, kApr17)
ZEP_VERSION(cc, 963, kApr17Or18)
ZEP_VERSION(ch, 987, kApr17)
ZEP_VERSION(cv, 1040, kApr17Or18)
ZEP_VERSION(dc, 965, kApr17)
ZEP_VERSION(i, 1054, kApr18)
ZEP_VERSION(j, 1032, kApr17Or18)
ZEP_VERSION(m, 986, kApr18)
ZEP_VERSION(r, 911, kApr17Or18)
ZEP_VERSION(s, 1058, kApr17)
ZEP_VERSION(sc, 1027, kApr17)
ZEP_VERSION(vc, 1007, kApr18)
ZEP_VERSION(vm, 989, kApr17)
#undef ZEP_VERSION

}  // namespace zep::ZEP_VARIANT
