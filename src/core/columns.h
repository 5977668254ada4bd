// The columns as data, for whoever forces one: tests and benchmarks. Which of them are compiled follows from MOZEP_COLUMNS; the
// slot of one that is not holds the code of the nearest lower one.
#pragma once

#include <string_view>

#include "core/columns.def"
#include "core/columns_built.h"

namespace zep {

struct Column {
    int slot;
    const char* name;
    const char* tag;    // the family: what a caller sees
    const char* needs;  // names of core/features.h
    const char* code;   // the column whose code stands in the slot

    constexpr bool isBuilt() const { return std::string_view(name) == code; }
};

inline constexpr Column kColumns[] = {
#define ZEP_ROW(arg, slot, column, family, shared, needs, assembler, flags) \
    {slot, #column, #family, #needs, code::column::kColumnName},
    ZEP_COLUMNS(ZEP_ROW, )
#undef ZEP_ROW
};

}  // namespace zep
