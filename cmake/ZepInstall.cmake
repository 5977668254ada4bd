# What an installation holds, by component:
#
#   mozep_runtime        libmozep.so.7
#   mozep_development    headers, libmozep.so, the CMake package, the pkg-config file
#   mozep_static         libmozep.a and its CMake target (unless MOZEP_STATIC is off)
#   mozep_program        the program and its manual page, where it is built
#   mozep_documentation  licence, texts, and the manual where it is built
#
# A package may leave out any of them: the CMake package offers the targets whose libraries are there. Every path is
# relative to the files' own place, so the whole tree may be moved, unless the directories were given as absolute ones.
include(CMakePackageConfigHelpers)

set(ZEP_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/mozep)
set(ZEP_HEADER_DIR ${CMAKE_INSTALL_INCLUDEDIR}/mozep)
# In another project CMAKE_INSTALL_DOCDIR is that project's.
set(ZEP_DOC_DIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/mozep)
if(PROJECT_IS_TOP_LEVEL)
  set(ZEP_DOC_DIR ${CMAKE_INSTALL_DOCDIR})
endif()

# A host project without a build type has given this directory one of its own, which the install script does not know.
install(CODE "set(zep_host_config \"\${CMAKE_INSTALL_CONFIG_NAME}\")
  if(NOT CMAKE_INSTALL_CONFIG_NAME)
    set(CMAKE_INSTALL_CONFIG_NAME \"${CMAKE_BUILD_TYPE}\")
  endif()" ALL_COMPONENTS)
install(TARGETS mozep EXPORT mozepSharedTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT mozep_runtime NAMELINK_COMPONENT mozep_development)
install(EXPORT mozepSharedTargets NAMESPACE mozep:: DESTINATION ${ZEP_PACKAGE_DIR} COMPONENT mozep_development)
if(MOZEP_STATIC)
  install(TARGETS mozep_static EXPORT mozepStaticTargets
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT mozep_static)
  install(EXPORT mozepStaticTargets NAMESPACE mozep:: DESTINATION ${ZEP_PACKAGE_DIR} COMPONENT mozep_static)
else()
  set_target_properties(mozep_static PROPERTIES EXCLUDE_FROM_ALL ON)
endif()
install(CODE "set(CMAKE_INSTALL_CONFIG_NAME \"\${zep_host_config}\")" ALL_COMPONENTS)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${ZEP_HEADER_DIR} COMPONENT mozep_development
        FILES_MATCHING PATTERN "*.h")
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        DESTINATION ${ZEP_DOC_DIR} COMPONENT mozep_documentation)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/mozepConfig.cmake.in ${PROJECT_BINARY_DIR}/mozepConfig.cmake
  INSTALL_DESTINATION ${ZEP_PACKAGE_DIR} PATH_VARS CMAKE_INSTALL_LIBDIR NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/mozepConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/mozepConfig.cmake ${PROJECT_BINARY_DIR}/mozepConfigVersion.cmake
        DESTINATION ${ZEP_PACKAGE_DIR} COMPONENT mozep_development)

# The prefix is known only when something is installed (cmake --install --prefix), so the pkg-config file is made then.
configure_file(${PROJECT_SOURCE_DIR}/cmake/install_pkg_config.cmake.in ${PROJECT_BINARY_DIR}/install_pkg_config.cmake @ONLY)
install(SCRIPT ${PROJECT_BINARY_DIR}/install_pkg_config.cmake COMPONENT mozep_development)

# A program finds the library by its place relative to its own; by no path where the loader looks anyway, which is known
# only when it is installed too.
function(zep_install_program target)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_BINDIR}")
    set(run_path ${CMAKE_INSTALL_FULL_LIBDIR})
  else()
    file(RELATIVE_PATH up /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${CMAKE_INSTALL_LIBDIR})
    set(run_path $ORIGIN/${up})
  endif()
  get_target_property(name ${target} OUTPUT_NAME)
  # The room for the run path in the file is that of the build's, which must not depend on where it is built.
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "${run_path}" BUILD_RPATH_USE_ORIGIN ON)
  install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT mozep_program)
  install(CODE "
    set(zep_libdir [[${CMAKE_INSTALL_LIBDIR}]])
    set(zep_program [[${CMAKE_INSTALL_BINDIR}/${name}]])
    cmake_path(ABSOLUTE_PATH zep_libdir BASE_DIRECTORY \"\${CMAKE_INSTALL_PREFIX}\" NORMALIZE)
    cmake_path(ABSOLUTE_PATH zep_program BASE_DIRECTORY \"\${CMAKE_INSTALL_PREFIX}\" NORMALIZE)
    if(zep_libdir MATCHES \"^(/usr)?/lib(64|/[^/]+-linux-gnu)?$\")
      file(RPATH_REMOVE FILE \"\$ENV{DESTDIR}\${zep_program}\")
    endif()" COMPONENT mozep_program)
endfunction()
