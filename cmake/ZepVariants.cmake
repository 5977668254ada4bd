# Kernel files register themselves (zep_kernels) from the CMakeLists.txt of their folder; each file is then compiled
# once per variant, into the namespace zep::<tag>, with that variant's instruction level.
define_property(GLOBAL PROPERTY ZEP_KERNELS)
define_property(GLOBAL PROPERTY ZEP_KERNELS_IN_STORE_ORDER)
define_property(GLOBAL PROPERTY ZEP_OBJECTS)

function(zep_kernels)
  foreach(file IN LISTS ARGN)
    set_property(GLOBAL APPEND PROPERTY ZEP_KERNELS ${CMAKE_CURRENT_SOURCE_DIR}/${file})
  endforeach()
endfunction()

# The same for files whose stores must come in the order of the source. A processor joins stores that follow each other
# within a cache line, up to a line a cycle; GCC's scheduler shuffles them, which makes a copying loop twice as slow.
function(zep_kernels_in_store_order)
  zep_kernels(${ARGN})
  list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/ OUTPUT_VARIABLE files)
  set_property(GLOBAL APPEND PROPERTY ZEP_KERNELS_IN_STORE_ORDER ${files})
endfunction()

function(zep_add_variant tag)
  get_property(kernels GLOBAL PROPERTY ZEP_KERNELS)
  get_property(inStoreOrder GLOBAL PROPERTY ZEP_KERNELS_IN_STORE_ORDER)
  set_source_files_properties(${inStoreOrder} PROPERTIES
    COMPILE_OPTIONS $<$<CXX_COMPILER_ID:GNU>:-fno-schedule-insns2>)
  add_library(zep_${tag} OBJECT ${kernels})
  target_compile_definitions(zep_${tag} PRIVATE ZEP_VARIANT=${tag})
  target_compile_options(zep_${tag} PRIVATE ${ARGN} -fno-rtti)
  target_link_libraries(zep_${tag} PRIVATE zep_options zep_headers)
  # For tests that compile code of their own at this level.
  set_property(GLOBAL PROPERTY ZEP_LEVEL_${tag} ${ARGN})
  set_property(GLOBAL APPEND PROPERTY ZEP_OBJECTS $<TARGET_OBJECTS:zep_${tag}>)
endfunction()
