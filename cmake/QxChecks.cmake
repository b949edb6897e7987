# Checks on the libraries that no test program can make.

# qx_header_check(LIBRARY FOLDER): every public header compiles as the first thing in a source, and twice.
function(qx_header_check library folder)
    file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${folder} ${folder}/*)
    if(NOT TARGET ${library} OR NOT headers)
        return()
    endif()
    set(sources "")
    foreach(header ${headers})
        set(source ${CMAKE_CURRENT_BINARY_DIR}/headers/${library}/${header}.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "#include \"@header@\"\n#include \"@header@\"\n" @ONLY)
        list(APPEND sources ${source})
    endforeach()
    add_library(${library}Headers OBJECT ${sources})
    qx_common(${library}Headers)
    # Only the library's public face: neither its own folder nor its definitions are seen.
    target_link_libraries(${library}Headers PRIVATE ${library})
endfunction()

# qx_exports_check(LIBRARY LIST): the strong symbols that the library exports are those in the list.
function(qx_exports_check library list)
    if(NOT TARGET ${library})
        return()
    endif()
    add_test(NAME exports.${library}
        COMMAND ${PROJECT_SOURCE_DIR}/cmake/checks/exports.sh compare $<TARGET_FILE:${library}> ${list})
    set_tests_properties(exports.${library} PROPERTIES LABELS release)
endfunction()

# qx_header_cost_check(LIBRARY HEADER SECONDS): including the header alone costs less than that.
function(qx_header_cost_check library header seconds)
    if(NOT TARGET ${library})
        return()
    endif()
    add_test(NAME header-cost.${header}
        COMMAND ${PROJECT_SOURCE_DIR}/cmake/checks/header-cost.sh ${header} ${seconds} ${CMAKE_CXX_COMPILER} -std=c++20
            "-I$<JOIN:$<TARGET_PROPERTY:${library}Headers,INCLUDE_DIRECTORIES>,;-I>"
        COMMAND_EXPAND_LISTS)
    set_tests_properties(header-cost.${header} PROPERTIES LABELS release RUN_SERIAL ON)
endfunction()

# qx_embedding_check(WAY): a project of its own embeds the engine in that way.
function(qx_embedding_check way)
    if(NOT TARGET qxscriptTool)
        return()
    endif()
    add_test(NAME embedding.${way}
        COMMAND ${PROJECT_SOURCE_DIR}/cmake/checks/embedding.sh ${way} ${PROJECT_BINARY_DIR})
    set_tests_properties(embedding.${way} PROPERTIES LABELS release TIMEOUT 900)
endfunction()
