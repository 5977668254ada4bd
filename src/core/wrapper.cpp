#include "core/selection.h"
#include "mozep.h"
#include "zeps.h"

namespace MOZEP {

ZepStatus mozepStaticInitResult() { return zep::staticInitResult; }

const char* mozepCpuTypeString() { return mozepCpuType2String(zepGetCpuType()); }

MOZEPMemoryAllocator::MOZEPMemoryAllocator() = default;
MOZEPMemoryAllocator::MOZEPMemoryAllocator(const MOZEPMemoryAllocator&) = default;
MOZEPMemoryAllocator::~MOZEPMemoryAllocator() = default;
MOZEPMemoryAllocator& MOZEPMemoryAllocator::operator=(const MOZEPMemoryAllocator&) = default;

void* MOZEPMemoryAllocator::allocateMemory(std::uint64_t size) {
    const std::uint64_t wholeWords = (size + 3) & ~std::uint64_t{3};
    return zepsMalloc_32u(static_cast<std::int32_t>(wholeWords) / 4);
}

void MOZEPMemoryAllocator::freeMemory(void* pMemory) { zepsFree(pMemory); }

void MOZEPMemoryAllocator::copyMemory(const void* pSrc, void* pDst, std::uint64_t size) {
    zepsCopy_8u(static_cast<const Zep8u*>(pSrc), static_cast<Zep8u*>(pDst),
                static_cast<std::int32_t>(size));
}

}  // namespace MOZEP
