#pragma once

#include <zeps.h>

#include <new>
#include <stdexcept>

namespace mozep_program {

// For calls that fail for want of memory only.
inline void requireSuccess(ZepStatus status) {
    if (status == zepStsMemAllocErr) throw std::bad_alloc();
    if (status != zepStsNoErr) throw std::logic_error(zepGetStatusString(status));
}

}  // namespace mozep_program
