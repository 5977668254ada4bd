#include "mozep.h"

namespace MOZEP {

const char* mozepCpuType2String(ZepCpuType type) {
    switch (type) {
        case zepCpuTypeUnknown:
            return "Unknown CPU Type";
        case zepCpuTypePentium:
            return "Pentium(R) processor";
        case zepCpuTypePentiumMmx:
            return "Pentium(R) processor with MMX(TM) technology";
        case zepCpuTypePentiumPro:
            return "Pentium(R) Pro processor";
        case zepCpuTypePentium2:
            return "Pentium(R) II processor";
        case zepCpuTypePentium3:
            return "Pentium(R) III processor and Pentium(R) III Xeon(R) processor";
        case zepCpuTypePentium4:
            return "Pentium(R) 4 processor and Intel(R) Xeon(R) processor";
        case zepCpuTypePentium4Ht:
            return "Pentium(R) 4 Processor with HT Technology";
        case zepCpuTypePentium4Sse3:
            return "Pentium(R) 4 processor with Streaming SIMD Extensions 3";
        case zepCpuTypeCentrino:
            return "Intel(R) Centrino(TM) mobile technology";
        case zepCpuTypeCoreSolo:
            return "Intel(R) Core(TM) Solo processor";
        case zepCpuTypeCoreDuo:
            return "Intel(R) Core(TM) Duo processor";
        case zepCpuTypeItanium:
            return "Intel(R) Itanium(R) processor";
        case zepCpuTypeItanium2:
            return "Intel(R) Itanium(R) 2 processor";
        case zepCpuTypeIntel64:
            return "Intel(R) 64 Instruction Set Architecture (ISA)";
        case zepCpuTypeCore2Duo:
            return "Intel(R) Core(TM) 2 Duo processor";
        case zepCpuTypeCore2Quad:
            return "Intel(R) Core(TM) 2 Quad processor";
        case zepCpuTypeCore2Sse41:
            return "Intel(R) Core(TM) 2 processor with Intel(R) SSE4.1";
        case zepCpuTypeAtom:
            return "Intel(R) Atom(TM) processor";
        case zepCpuTypeCoreI7:
            return "Intel(R) Core(TM) i7 processor";
        case zepCpuTypeNext:
            return "CPU Next";
        case zepCpuTypeSse:
            return "Processor supports Pentium(R) III processor instruction set";
        case zepCpuTypeSse2:
            return "Processor supports Streaming SIMD Extensions 2 instruction set";
        case zepCpuTypeSse3:
            return "Processor supports Streaming SIMD Extensions 3 instruction set";
        case zepCpuTypeSsse3:
            return "Processor supports Supplemental Streaming SIMD Extension 3 instruction set";
        case zepCpuTypeSse41:
            return "Processor supports Streaming SIMD Extensions 4.1 instruction set";
        case zepCpuTypeSse42:
            return "Processor supports Streaming SIMD Extensions 4.2 instruction set";
        case zepCpuTypeAvx:
            return "Processor supports Advanced Vector Extensions instruction set";
        case zepCpuTypeSse42LongMode:
        case zepCpuTypeLongMode:
            return "Processor supports 64 bit extension";
        default:
            return "Newer CPU Type";
    }
}

}  // namespace MOZEP
