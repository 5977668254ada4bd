// The dispatch of all exports: one table of eight code pointers each, and one stub each that jumps through its table at
// variantIndex. Everything follows from exports.def, columns.def and the public headers; the compiler checks the types: a
// column with a wrong return type does not compile, one with wrong parameters is an overload and fails at link.
#include "core/columns.def"
#include "core/columns_built.h"
#include "core/variant_index.h"
#include "zepm.h"
#include "zeps.h"

#define ZEP_DECLARE(name, slot, column, ...) \
    namespace zep::column {                  \
    decltype(::name) name;                   \
    }
#define ZEP_EXPORT(name) ZEP_COLUMNS(ZEP_DECLARE, name)
#include "core/exports.def"
#undef ZEP_DECLARE

namespace zep {

// Slots 0 and 1 share the m7 code; slots 2 and 3 differ only where n8 gains from MOVBE or from its own tuning.
#define ZEP_OWN_CODE(name, slot, column, ...) , code::column::name
#define ZEP_SHARED_CODE(name, slot, column, family, shared, ...) , code::shared::name
#define ZEP_TABLE(name, entry)                                                    \
    [[gnu::used]] static decltype(&::name) const table_##name[kVariantSlots] asm( \
        "zep_table_" #name) = {code::m7::name ZEP_COLUMNS(entry, name)};
#define ZEP_EXPORT(name) ZEP_TABLE(name, ZEP_SHARED_CODE)
#define ZEP_EXPORT_N8(name) ZEP_TABLE(name, ZEP_OWN_CODE)
#include "core/exports.def"
#undef ZEP_TABLE
#undef ZEP_OWN_CODE
#undef ZEP_SHARED_CODE

}  // namespace zep

// Where the toolchain marks branch targets (-fcf-protection), a stub must be one.
#if defined(__CET__) && (__CET__ & 1)
#define ZEP_BRANCH_TARGET "  endbr64\n"
#else
#define ZEP_BRANCH_TARGET
#endif

// r10 and r11 carry no argument and need no saving, so the variant is entered exactly as the export was called.
#define ZEP_EXPORT(name)                                                         \
    asm(".pushsection .text.zep_entry." #name                                    \
        ",\"ax\",@progbits\n"                                                    \
        "  .p2align 4\n  .globl " #name "\n  .type " #name ", @function\n" #name \
        ":\n" ZEP_BRANCH_TARGET                                                  \
        "  movslq zep_variantIndex(%rip), %r10\n"                                \
        "  leaq zep_table_" #name                                                \
        "(%rip), %r11\n"                                                         \
        "  jmp *(%r11,%r10,8)\n"                                                 \
        "  .size " #name ", .-" #name "\n.popsection\n");
#include "core/exports.def"
