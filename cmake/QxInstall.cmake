# What a host needs: both libraries, the public headers, the command line, and find_package(qxScript).
include(CMakePackageConfigHelpers)

if(NOT TARGET qxScript)
    return()
endif()

install(TARGETS qxUtils qxScript EXPORT qxScriptTargets)
install(DIRECTORY libs/utils/inc/ libs/script/inc/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qxScript)
if(TARGET qxscriptTool)
    # The program finds its libraries from wherever the tree was installed to.
    file(RELATIVE_PATH toLibraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(qxscriptTool PROPERTIES INSTALL_RPATH "$ORIGIN/${toLibraries}")
    set_target_properties(qxScript PROPERTIES INSTALL_RPATH "$ORIGIN")
    install(TARGETS qxscriptTool)
endif()

set(packageDir ${CMAKE_INSTALL_LIBDIR}/cmake/qxScript)
install(EXPORT qxScriptTargets NAMESPACE qxScript:: FILE qxScriptConfig.cmake DESTINATION ${packageDir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/qxScriptConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/qxScriptConfigVersion.cmake DESTINATION ${packageDir})
