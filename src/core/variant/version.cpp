// One version record for each domain, the same in all columns of a family; y8 has a second, named with "+", for processors with SSE4.2.
#include "core/version.h"

#include <initializer_list>

#include "core/features.h"
#include "core/selection.h"
#include "core/variant/tag.h"
#include "core/variant_exports.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr bool sameName(const char* a, const char* b) {
    while (*a != '\0' && *a == *b) ++a, ++b;
    return *a == *b;
}

constexpr bool isFamily(const char* name) { return sameName(kFamilyName, name); }

constexpr char kApr17[] = "Apr 17 2011";
constexpr char kApr18[] = "Apr 18 2011";
// Some domains were built a day later for the two newest variants.
constexpr const char* kApr17Or18 = isFamily("n8") || isFamily("e9") ? kApr18 : kApr17;

struct LibName {
    char text[16];
};

// "zep" + domain + family + "_l.lib" + suffix.
constexpr LibName libName(const char* domain, const char* suffix) {
    LibName name{};
    char* end = name.text;
    for (const char* part :
         {"zep", domain, static_cast<const char*>(kFamilyName), "_l.lib", suffix})
        while (*part != '\0') *end++ = *part++;
    return name;
}

constexpr ZepVersionRecord record(const char* libName, int domainBuild, const char* buildDate) {
    return {version::kMajor,
            version::kMinor,
            version::kReleaseBuild,
            domainBuild,
            {kFamilyName[0], kFamilyName[1]},
            libName,
            version::kText,
            buildDate};
}

const ZepVersionRecord* choose(const ZepVersionRecord (&records)[2]) {
    if constexpr (isFamily("y8"))
        return &records[zepFeaturesEnabled(feature::kSse42)];
    else
        return &records[0];
}

}  // namespace

#define ZEP_VERSION(domain, build, date)                                                       \
    const ZepVersionRecord* zep##domain##GetLibVersion() {                                     \
        static constexpr LibName kPlain = libName(#domain, ""), kPlus = libName(#domain, "+"); \
        static constexpr ZepVersionRecord kRecords[2] = {record(kPlain.text, build, date),     \
                                                         record(kPlus.text, build, date)};     \
        return choose(kRecords);                                                               \
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
