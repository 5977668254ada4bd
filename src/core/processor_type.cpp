#include "core/cpu.h"
#include "core/cpuid_summary.h"
#include "zepcore.h"

namespace zep {
namespace {

// The extended fields of the signature, folded in where the family says that they count.
struct Signature {
    std::int32_t family;
    std::int32_t model;

    explicit Signature(const CpuidSummary& s) : family(s.family), model(s.model) {
        if (family != 6 && family != 15) return;
        model += s.extendedModel * 16;
        if (family == 15) family += s.extendedFamily;
    }
};

// By features alone. AVX counts by its feature bit: whether the operating system saves its state is
// the selection's question, not that of the processor's type.
ZepCpuType typeByFeatures(const CpuidSummary& s) {
    if (s.hasAvx) return zepCpuTypeAvx;
    if (s.hasSse42) return zepCpuTypeSse42;
    if (s.hasSse41) return zepCpuTypeSse41;
    if (s.hasSsse3) return zepCpuTypeSsse3;
    if (s.hasSse3) return zepCpuTypeSse3;
    if (s.hasSse2) return zepCpuTypeSse2;
    if (s.hasSse) return zepCpuTypeSse;
    if (s.hasLongMode) return zepCpuTypeLongMode;
    return zepCpuTypeUnknown;
}

// zepCpuTypeUnknown: no model with a type of its own.
ZepCpuType typeByModel(const CpuidSummary& s) {
    const Signature signature(s);
    if (signature.family == 15) return zepCpuTypeSse3;
    if (signature.family != 6) return zepCpuTypeUnknown;
    switch (signature.model) {
        case 15:
            if (s.hasSsse3) return s.coresPerPackage > 2 ? zepCpuTypeCore2Quad : zepCpuTypeCore2Duo;
            break;
        case 23:
            if (s.hasSse41) return zepCpuTypeCore2Sse41;
            break;
        case 26:
            if (s.hasAvx) return zepCpuTypeAvx;
            if (s.hasSse42) return zepCpuTypeCoreI7;
            break;
        case 28:
            if (s.hasSsse3 && s.hasMovbe) return zepCpuTypeAtom;
            break;
        default:
            break;
    }
    return zepCpuTypeUnknown;
}

}  // namespace
}  // namespace zep

ZepCpuType zepGetCpuType(void) {
    using namespace zep;
    CpuidSummary summary{};
    zepCpuidSummary(&summary);
    const ZepCpuType type = zepCpuIsGenuineIntel() ? typeByModel(summary) : zepCpuTypeUnknown;
    return type != zepCpuTypeUnknown ? type : typeByFeatures(summary);
}
