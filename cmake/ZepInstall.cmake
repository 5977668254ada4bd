# What an installation holds: both libraries, the headers, the CMake package, the pkg-config file, the licence, and the
# program and the manual where they are built. Every path in it is relative to the files' own place, so the whole tree may be
# moved.
include(CMakePackageConfigHelpers)

set(ZEP_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/mozep)
set(ZEP_HEADER_DIR ${CMAKE_INSTALL_INCLUDEDIR}/mozep)

install(TARGETS mozep mozep_static EXPORT mozepTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${ZEP_HEADER_DIR} FILES_MATCHING PATTERN "*.h")
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        DESTINATION ${CMAKE_INSTALL_DOCDIR})

install(EXPORT mozepTargets NAMESPACE mozep:: DESTINATION ${ZEP_PACKAGE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/mozepConfig.cmake.in ${PROJECT_BINARY_DIR}/mozepConfig.cmake
  INSTALL_DESTINATION ${ZEP_PACKAGE_DIR} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/mozepConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/mozepConfig.cmake ${PROJECT_BINARY_DIR}/mozepConfigVersion.cmake
        DESTINATION ${ZEP_PACKAGE_DIR})

# ${pcfiledir} keeps the pkg-config file movable; absolute directories, where a packager asks for them, stay absolute.
foreach(dir IN ITEMS LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${dir}}")
    set(ZEP_PC_${dir} ${CMAKE_INSTALL_${dir}})
  else()
    set(ZEP_PC_${dir} \${prefix}/${CMAKE_INSTALL_${dir}})
  endif()
endforeach()
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  set(ZEP_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
else()
  file(RELATIVE_PATH up /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
  string(REGEX REPLACE "/$" "" up ${up})
  set(ZEP_PC_PREFIX \${pcfiledir}/${up})
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/mozep.pc.in ${PROJECT_BINARY_DIR}/mozep.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/mozep.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
