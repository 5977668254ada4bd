// The column that is being compiled and its family, as types: namespace tag { struct m7; ... }.
//
// Tuning differs by family, or by column where a measurement says so: a class template whose primary is declared only,
// specialised by tag, and used through Tuned:
//
//   template <class Tag> struct CopyTuning;
//   template <> struct CopyTuning<tag::e9> { ... };                                          for the family
//   template <> struct CopyTuning<tag::e9_avx512> : CopyTuning<tag::e9> { ... };             for one column of it
//   using Tuning = Tuned<CopyTuning>;                                                        below all of them
//
// A column, or a family, that nobody thought of does not compile.
#pragma once

#include "core/columns.def"

#define ZEP_STRINGIFY_(x) #x
#define ZEP_STRINGIFY(x) ZEP_STRINGIFY_(x)

namespace zep::ZEP_VARIANT {

namespace tag {
template <class Column>
struct FamilyOf;

#define ZEP_TAG(arg, slot, column, family, ...) \
    struct column;                              \
    template <>                                 \
    struct FamilyOf<column> {                   \
        using Tag = family;                     \
        static constexpr char name[] = #family; \
    };
ZEP_COLUMNS(ZEP_TAG, )
#undef ZEP_TAG
}  // namespace tag

using ColumnTag = tag::ZEP_VARIANT;
using FamilyTag = tag::FamilyOf<ColumnTag>::Tag;
inline constexpr auto& kFamilyName = tag::FamilyOf<ColumnTag>::name;

namespace tag {
template <template <class> class Tuning>
struct Choice {
    using Type = Tuning<FamilyTag>;
};
template <template <class> class Tuning>
requires(sizeof(Tuning<ColumnTag>) != 0) struct Choice<Tuning> {
    using Type = Tuning<ColumnTag>;
};
}  // namespace tag

template <template <class> class Tuning>
using Tuned = typename tag::Choice<Tuning>::Type;

}  // namespace zep::ZEP_VARIANT
