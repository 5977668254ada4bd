/** @file
 * C++ layer: start-up status, processor type as text, and an allocator object for a host
 * application.
 */
#ifndef MOZEP_H
#define MOZEP_H

#ifndef __cplusplus
#error "mozep.h is for C++. A C program includes zeps.h, which has all functions on arrays."
#else

#include <cstdint>

#include "zepcore.h"

namespace Interfaces {

/**
 * Memory as a host application wants it supplied. An implementation is used through a pointer to
 * this class and destroyed as its own type: the destructor is not virtual.
 */
class ZEP_API IQMOMemoryAllocator {
public:
    /** A block of at least size bytes; null when there is none. */
    virtual void* allocateMemory(std::uint64_t size) = 0;
    /** Releases a block of allocateMemory. */
    virtual void freeMemory(void* pMemory) = 0;
    /** Copies size bytes; the areas must not overlap. */
    virtual void copyMemory(const void* pSrc, void* pDst, std::uint64_t size) = 0;

protected:
    /** Made, copied and destroyed by the classes that implement it alone. */
    IQMOMemoryAllocator() = default;
    /** Copies nothing: there is no state. */
    IQMOMemoryAllocator(const IQMOMemoryAllocator&) = default;
    /** Copies nothing: there is no state. */
    IQMOMemoryAllocator& operator=(const IQMOMemoryAllocator&) = default;
    ~IQMOMemoryAllocator() = default;
};

}  // namespace Interfaces

/** The C++ layer of the library. */
namespace MOZEP {

/**
 * What the selection of the variant found when the library was loaded. A load never fails, and
 * every function works whatever is returned here.
 *
 * @return  zepStsNoErr: an Intel processor with SSE3 or better; zepStsNonIntelCpu: a processor of
 *          another vendor, which runs the variant that its features earn; zepStsNotSupportedCpu: an
 *          Intel processor without SSE3, which runs the SSE2 code; zepStsNoOperation: called before
 *          the library's own start-up has run.
 */
ZEP_API ZepStatus mozepStaticInitResult();

/** Text of the processor that this is: mozepCpuType2String(zepGetCpuType()). Constant, never null. */
ZEP_API const char* mozepCpuTypeString();

/**
 * Text of a processor type.
 *
 * @param type  any value; those that have no text of their own give "Newer CPU Type".
 * @return      constant text, never null.
 */
ZEP_API const char* mozepCpuType2String(ZepCpuType type);

/**
 * The library's memory as an allocator object. It has no state: copies are alike, and a block may
 * be released through any of them, or by zepsFree. As thread-safe as the C heap. Final, since its
 * destructor is not virtual.
 */
class ZEP_API MOZEPMemoryAllocator final : public Interfaces::IQMOMemoryAllocator {
public:
    /** Takes no memory. */
    MOZEPMemoryAllocator();
    /** As good as other, which is not changed. */
    MOZEPMemoryAllocator(const MOZEPMemoryAllocator& other);
    /** Releases nothing: blocks outlive the object. */
    ~MOZEPMemoryAllocator();
    /** Changes nothing: there is no state. */
    MOZEPMemoryAllocator& operator=(const MOZEPMemoryAllocator& other);

    /**
     * A 32-byte aligned block of whole 32-bit words.
     *
     * @param size  bytes, rounded up to a multiple of 4; only the low 32 bits count, read as a signed number: keep it
     *              below 2^31.
     * @return      the block; null for 0 bytes, a size out of range or a lack of memory.
     */
    void* allocateMemory(std::uint64_t size) override;

    /** Releases a block of allocateMemory, zepMalloc or zepsMalloc_*. Null is ignored. */
    void freeMemory(void* pMemory) override;

    /**
     * Copies size bytes. A null pointer or a size of 0 copies nothing and reports nothing.
     *
     * @param pSrc  source; must not overlap pDst.
     * @param pDst  destination.
     * @param size  bytes; only the low 32 bits count, read as a signed number, so keep it below 2^31.
     */
    void copyMemory(const void* pSrc, void* pDst, std::uint64_t size) override;
};

}  // namespace MOZEP

#endif
#endif
