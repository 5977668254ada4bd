# Writes the linker's version script: the dispatched exports from the one list, the core functions and the wrapper
# layer from theirs; everything else is local. All of them carry the version of the interface that has them: what a later
# version adds goes into a node of its own behind this one, so that a program asks for no more than it uses.
set(ZEP_VERSION_SCRIPT ${PROJECT_BINARY_DIR}/mozep.map)
set(lists ${PROJECT_SOURCE_DIR}/src/core/exports.def ${PROJECT_SOURCE_DIR}/src/core/core_exports.txt)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${lists})
file(STRINGS ${PROJECT_SOURCE_DIR}/src/core/exports.def dispatched REGEX "^ZEP_EXPORT(_N8)?\\(")
file(STRINGS ${PROJECT_SOURCE_DIR}/src/core/core_exports.txt core REGEX "^[^#]")
list(TRANSFORM dispatched REPLACE "^ZEP_EXPORT(_N8)?\\(([A-Za-z0-9_]+)\\).*" "\\2")
list(JOIN dispatched ";\n    " dispatched_lines)
list(JOIN core ";\n    " core_lines)
file(CONFIGURE OUTPUT ${ZEP_VERSION_SCRIPT} @ONLY CONTENT
"MOZEP_7.0 {
  global:
    @dispatched_lines@;
    @core_lines@;
  local:
    *;
};
")
