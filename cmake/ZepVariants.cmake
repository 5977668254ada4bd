# Kernel files register themselves (zep_kernels) from the CMakeLists.txt of their folder; each file is then compiled
# once per variant, into the namespace zep::<tag>, with that variant's instruction level.
define_property(GLOBAL PROPERTY ZEP_KERNELS)
define_property(GLOBAL PROPERTY ZEP_OBJECTS)

function(zep_kernels)
  foreach(file IN LISTS ARGN)
    set_property(GLOBAL APPEND PROPERTY ZEP_KERNELS ${CMAKE_CURRENT_SOURCE_DIR}/${file})
  endforeach()
endfunction()

function(zep_add_variant tag)
  get_property(kernels GLOBAL PROPERTY ZEP_KERNELS)
  add_library(zep_${tag} OBJECT ${kernels})
  target_compile_definitions(zep_${tag} PRIVATE ZEP_VARIANT=${tag})
  target_compile_options(zep_${tag} PRIVATE ${ARGN} -fno-rtti)
  target_link_libraries(zep_${tag} PRIVATE zep_options zep_headers)
  # For tests that compile code of their own at this level.
  set_property(GLOBAL PROPERTY ZEP_LEVEL_${tag} ${ARGN})
  set_property(GLOBAL APPEND PROPERTY ZEP_OBJECTS $<TARGET_OBJECTS:zep_${tag}>)
endfunction()
