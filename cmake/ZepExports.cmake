# Writes the linker's version script: the dispatched exports from the one list, the core functions and the wrapper
# layer from theirs; everything else is local.
set(ZEP_VERSION_SCRIPT ${PROJECT_BINARY_DIR}/mozep.map)
set(lists ${PROJECT_SOURCE_DIR}/src/core/exports.def ${PROJECT_SOURCE_DIR}/src/core/core_exports.txt)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${lists})
file(STRINGS ${PROJECT_SOURCE_DIR}/src/core/exports.def dispatched REGEX "^ZEP_EXPORT(_N8)?\\(")
file(STRINGS ${PROJECT_SOURCE_DIR}/src/core/core_exports.txt core REGEX "^[^#]")
list(TRANSFORM dispatched REPLACE "^ZEP_EXPORT(_N8)?\\(([A-Za-z0-9_]+)\\).*" "\\2")
list(JOIN dispatched ";\n    " dispatched_lines)
list(JOIN core ";\n    " core_lines)
file(CONFIGURE OUTPUT ${ZEP_VERSION_SCRIPT} @ONLY CONTENT
"{
  global:
    @dispatched_lines@;
    @core_lines@;
  local:
    *;
};
")
