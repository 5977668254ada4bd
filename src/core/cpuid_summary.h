// What processor identification says of family, features and cores, in one record.
#pragma once

#include <cstdint>

namespace zep {

struct CpuidSummary {
    std::int32_t family;
    std::int32_t stepping;
    std::int32_t model;
    std::int32_t processorType;  // leaf 1 EAX bits 11 and 12
    std::int32_t featureEdx;
    std::int32_t cacheDescEax;
    std::int32_t cacheDescEdx;
    std::int32_t hasMmx;
    std::int32_t reservedFlag;  // left as it was
    std::int32_t hasSse;
    std::int32_t hasSse2;
    std::int32_t hasHyperThreading;  // the flag, and more than one logical processor
    std::int32_t hasSse3;
    std::int32_t hasLongMode;
    std::int32_t hasSsse3;
    std::int32_t coresPerPackage;
    std::int32_t hasSse41;
    std::int32_t hasSse42;
    std::int32_t extendedFamily;
    std::int32_t extendedModel;
    std::int32_t hasMovbe;
    std::int32_t hasAvx;  // the feature bit alone
    std::int32_t hasOsxsave;
};

void zepCpuidSummary(CpuidSummary* pSummary);

}  // namespace zep
