# Kernel files register themselves (zep_kernels) from the CMakeLists.txt of their folder; each file is then compiled
# once per column of src/core/columns.def, into the namespace zep::<column>, with that column's instruction level.
set(ZEP_COLUMN_LIST ${PROJECT_SOURCE_DIR}/src/core/columns.def)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ZEP_COLUMN_LIST})

# ZEP_ALL_COLUMNS, and for each column ZEP_FLAGS_<column> and ZEP_ASSEMBLER_<column>.
file(READ ${ZEP_COLUMN_LIST} rows)
string(REGEX MATCHALL "\n *X\\(arg, [0-9][^\n\\]*" rows "${rows}")
foreach(row IN LISTS rows)
  if(NOT row MATCHES " X\\(arg, [0-9], ([a-z0-9_]+), .*, \"([^\"]*)\", \"([^\"]*)\"\\)")
    message(FATAL_ERROR "${ZEP_COLUMN_LIST}: cannot read ${row}")
  endif()
  list(APPEND ZEP_ALL_COLUMNS ${CMAKE_MATCH_1})
  set(ZEP_ASSEMBLER_${CMAKE_MATCH_1} ${CMAKE_MATCH_2})
  separate_arguments(ZEP_FLAGS_${CMAKE_MATCH_1} UNIX_COMMAND "${CMAKE_MATCH_3}")
endforeach()

set(MOZEP_COLUMNS ${ZEP_ALL_COLUMNS} CACHE STRING "Columns to compile, for quicker builds while developing; the slot of an \
absent one holds the code of the nearest lower one. m7 is always there.")
foreach(column IN LISTS MOZEP_COLUMNS)
  if(NOT column IN_LIST ZEP_ALL_COLUMNS)
    message(FATAL_ERROR "MOZEP_COLUMNS: no column ${column}; there are ${ZEP_ALL_COLUMNS}")
  endif()
endforeach()

# Those that are compiled, in the order of their slots, and the header that says so.
set(ZEP_BUILT_COLUMNS)
set(ZEP_COLUMN_NAMES)
set(ZEP_COLUMN_ALIASES)
foreach(column IN LISTS ZEP_ALL_COLUMNS)
  if(column STREQUAL "m7" OR column IN_LIST MOZEP_COLUMNS)
    list(APPEND ZEP_BUILT_COLUMNS ${column})
    string(APPEND ZEP_COLUMN_NAMES "namespace zep::${column} { inline constexpr char kColumnName[] = \"${column}\"; }\n")
  endif()
  list(GET ZEP_BUILT_COLUMNS -1 nearest)
  string(APPEND ZEP_COLUMN_ALIASES "namespace ${column} = zep::${nearest};\n")
endforeach()
set(ZEP_GENERATED_DIR ${PROJECT_BINARY_DIR}/src/generated)
configure_file(${PROJECT_SOURCE_DIR}/cmake/columns_built.h.in ${ZEP_GENERATED_DIR}/core/columns_built.h @ONLY)

# The library's own headers, for its parts and for tests and benchmarks that look inside.
add_library(zep_internals INTERFACE)
target_include_directories(zep_internals INTERFACE ${PROJECT_SOURCE_DIR}/src ${ZEP_GENERATED_DIR})

define_property(GLOBAL PROPERTY ZEP_KERNEL_GROUPS)
define_property(GLOBAL PROPERTY ZEP_OBJECTS)

# zep_kernels([GROUP <group>] files...): a group is a set of files that share options of their own, see zep_group_options.
function(zep_kernels)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" GROUP "")
  if(NOT arg_GROUP)
    set(arg_GROUP plain)
  endif()
  get_property(groups GLOBAL PROPERTY ZEP_KERNEL_GROUPS)
  if(NOT arg_GROUP IN_LIST groups)
    set_property(GLOBAL APPEND PROPERTY ZEP_KERNEL_GROUPS ${arg_GROUP})
  endif()
  list(TRANSFORM arg_UNPARSED_ARGUMENTS PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  set_property(GLOBAL APPEND PROPERTY ZEP_KERNELS_${arg_GROUP} ${arg_UNPARSED_ARGUMENTS})
endfunction()

# zep_group_options(<group> [COLUMNS <columns...>] OPTIONS <options...>): what the files of a group are compiled with besides
# the options of their column; for the columns named, in place of what is said for all.
function(zep_group_options group)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "COLUMNS;OPTIONS")
  if(arg_COLUMNS)
    foreach(column IN LISTS arg_COLUMNS)
      set_property(GLOBAL PROPERTY ZEP_OPTIONS_${group}_${column} ${arg_OPTIONS})
    endforeach()
  else()
    set_property(GLOBAL PROPERTY ZEP_OPTIONS_${group} ${arg_OPTIONS})
  endif()
endfunction()

# What every kernel includes sooner or later; a second of parsing for each file of each column otherwise.
set(ZEP_KERNEL_HEADERS "${PROJECT_SOURCE_DIR}/src/simd/level.h" <algorithm> <array> <bit> <cstddef> <cstdint> <cstring> <limits> <type_traits> <utility>)

# The options of a column. The GNU assembler refuses instructions above the column's level, whatever way they got into the
# code.
function(zep_column_options column result)
  set(level generic64+nommx+ibt)
  if(ZEP_ASSEMBLER_${column})
    string(APPEND level +${ZEP_ASSEMBLER_${column}})
  endif()
  set(gnu -Wa,-march=${level})
  # GCC 12's own 64-byte intrinsics start from variables that nobody sets, which it reports where they come from a
  # precompiled header. The other columns warn of what the same sources leave unset.
  if(level MATCHES avx512)
    list(APPEND gnu -Wno-uninitialized -Wno-maybe-uninitialized)
  endif()
  set(${result} ${ZEP_FLAGS_${column}} "$<$<CXX_COMPILER_ID:GNU>:${gnu}>" PARENT_SCOPE)
endfunction()

function(zep_add_column column)
  get_property(groups GLOBAL PROPERTY ZEP_KERNEL_GROUPS)
  list(REMOVE_ITEM groups plain)
  zep_column_options(${column} level)
  foreach(group IN ITEMS plain LISTS groups)
    get_property(kernels GLOBAL PROPERTY ZEP_KERNELS_${group})
    get_property(own GLOBAL PROPERTY ZEP_OPTIONS_${group}_${column} SET)
    if(own)
      get_property(options GLOBAL PROPERTY ZEP_OPTIONS_${group}_${column})
    else()
      get_property(options GLOBAL PROPERTY ZEP_OPTIONS_${group})
    endif()
    set(target zep_${column})
    if(NOT group STREQUAL "plain")
      set(target zep_${column}-${group})
    endif()
    add_library(${target} OBJECT ${kernels})
    target_compile_definitions(${target} PRIVATE ZEP_VARIANT=${column})
    target_compile_options(${target} PRIVATE ${level} ${options} -fno-rtti)
    target_link_libraries(${target} PRIVATE zep_options zep_headers)
    # GCC may take a header for valid that was compiled for other options and then break, so each group has its own; a few
    # files are not worth one.
    list(LENGTH kernels count)
    if(count GREATER 3)
      target_precompile_headers(${target} PRIVATE ${ZEP_KERNEL_HEADERS})
    endif()
    set_property(GLOBAL APPEND PROPERTY ZEP_OBJECTS $<TARGET_OBJECTS:${target}>)
  endforeach()
endfunction()
