# Installs both libraries, the public headers, the CMake package, rqxml.pc, and the tool with its manual page. The
# installed tree can be moved: nothing in it names the place where it was installed.

include(CMakePackageConfigHelpers)

set(RQXML_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/rqxml")

install(TARGETS rqxml rqcommon EXPORT rqxmlTargets
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
set_target_properties(rqxml PROPERTIES INSTALL_RPATH "$ORIGIN")

get_property(RQXML_HEADERS GLOBAL PROPERTY RQXML_PUBLIC_HEADERS)
foreach(header IN LISTS RQXML_HEADERS)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES "${PROJECT_SOURCE_DIR}/rqxml/${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/rqxml/${folder}")
endforeach()

install(EXPORT rqxmlTargets NAMESPACE rqxml:: DESTINATION "${RQXML_INSTALL_CMAKEDIR}")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/rqxmlConfig.cmake.in"
                              "${PROJECT_BINARY_DIR}/rqxmlConfig.cmake"
                              INSTALL_DESTINATION "${RQXML_INSTALL_CMAKEDIR}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/rqxmlConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/rqxmlConfig.cmake" "${PROJECT_BINARY_DIR}/rqxmlConfigVersion.cmake"
        DESTINATION "${RQXML_INSTALL_CMAKEDIR}")

# rqxml.pc finds everything from its own place, unless the directories were given as absolute paths.
set(RQXML_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(RQXML_PC_LIBDIR "${CMAKE_INSTALL_FULL_LIBDIR}")
set(RQXML_PC_INCLUDEDIR "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  file(RELATIVE_PATH RQXML_PC_UP "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
  string(REGEX REPLACE "/$" "" RQXML_PC_UP "${RQXML_PC_UP}")
  set(RQXML_PC_PREFIX "\${pcfiledir}/${RQXML_PC_UP}")
  set(RQXML_PC_LIBDIR "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
endif()
if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
  set(RQXML_PC_INCLUDEDIR "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
configure_file("${PROJECT_SOURCE_DIR}/cmake/rqxml.pc.in" "${PROJECT_BINARY_DIR}/rqxml.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/rqxml.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

if(TARGET rqxml_tool)
  file(RELATIVE_PATH RQXML_BIN_TO_LIB "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  set_target_properties(rqxml_tool PROPERTIES INSTALL_RPATH "$ORIGIN/${RQXML_BIN_TO_LIB}")
  install(TARGETS rqxml_tool RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
  install(FILES "${PROJECT_SOURCE_DIR}/docs/rqxml.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
endif()
