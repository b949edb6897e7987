# What others get: both libraries and the command line, headers, find_package(qxScript) with the target qx::script,
# pkg-config, the man page, and, of a build of its own, Debian packages of all that. Three components: runtime, dev,
# tools.
include(CMakePackageConfigHelpers)

set_target_properties(qxUtils PROPERTIES EXPORT_NAME utils)
set_target_properties(qxScript PROPERTIES EXPORT_NAME script INSTALL_RPATH "$ORIGIN")
install(TARGETS qxUtils qxScript EXPORT qxScriptTargets
    RUNTIME COMPONENT runtime
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT dev
    ARCHIVE COMPONENT dev)
install(DIRECTORY libs/utils/inc/ libs/script/inc/
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qxScript COMPONENT dev)

set(packageDir ${CMAKE_INSTALL_LIBDIR}/cmake/qxScript)
install(EXPORT qxScriptTargets NAMESPACE qx:: DESTINATION ${packageDir} COMPONENT dev)
configure_file(cmake/qxScriptConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/qxScriptConfig.cmake @ONLY)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/qxScriptConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/qxScriptConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/qxScriptConfigVersion.cmake DESTINATION ${packageDir} COMPONENT dev)

# Paths relative to the file itself: an installed tree may be moved.
set(pkgConfigDir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH pkgConfigToPrefix ${CMAKE_INSTALL_PREFIX}/${pkgConfigDir} ${CMAKE_INSTALL_PREFIX})
set(pkgConfigFlags "")
set(pkgConfigLibraries "")
if(QXSCRIPT_STATIC)
    set(pkgConfigFlags " -DQXSCRIPT_STATIC")
    set(pkgConfigLibraries " -pthread")
    foreach(library ${CMAKE_DL_LIBS})
        string(APPEND pkgConfigLibraries " -l${library}")
    endforeach()
endif()
configure_file(cmake/qxscript.pc.in ${CMAKE_CURRENT_BINARY_DIR}/qxscript.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/qxscript.pc DESTINATION ${pkgConfigDir} COMPONENT dev)

if(TARGET qxscriptTool)
    # The program finds its libraries from wherever the tree was installed to.
    file(RELATIVE_PATH toLibraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(qxscriptTool PROPERTIES INSTALL_RPATH "$ORIGIN/${toLibraries}")
    install(TARGETS qxscriptTool RUNTIME COMPONENT tools)
    install(FILES docs/qxscript.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
endif()

if(NOT PROJECT_IS_TOP_LEVEL)
    return()
endif()

# --- Packages: `cpack` in the build folder ---

set(CPACK_PACKAGE_VENDOR "the qxScript authors")
set(CPACK_PACKAGE_CONTACT "the qxScript authors <qxscript@example.org>")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime dev)
if(TARGET qxscriptTool)
    list(APPEND CPACK_COMPONENTS_ALL tools)
endif()
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "${PROJECT_DESCRIPTION}: the shared libraries")
set(CPACK_COMPONENT_DEV_DESCRIPTION "${PROJECT_DESCRIPTION}: headers and build files")
set(CPACK_COMPONENT_DEV_DEPENDS runtime)
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "${PROJECT_DESCRIPTION}: the command line")
set(CPACK_COMPONENT_TOOLS_DEPENDS runtime)
if(NOT WIN32)
    set(CPACK_GENERATOR DEB)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libqxscript${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEV_PACKAGE_NAME libqxscript-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME qxscript)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION interpreters)
include(CPack)
