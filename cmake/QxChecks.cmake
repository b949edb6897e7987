# Checks on the libraries that no test program can make.

# qx_header_check(LIBRARY FOLDER): every public header compiles as the first thing in a source, and twice; and once more
# all together, as a compiler sees them of which no more than the standard is known.
function(qx_header_check library folder)
    file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${folder} ${folder}/*)
    set(sources "")
    foreach(header ${headers})
        set(source ${CMAKE_CURRENT_BINARY_DIR}/headers/${library}/${header}.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "#include \"@header@\"\n#include \"@header@\"\n" @ONLY)
        list(APPEND sources ${source})
    endforeach()
    list(TRANSFORM headers REPLACE "(.+)" "#include \"\\1\"\n" OUTPUT_VARIABLE includes)
    list(JOIN includes "" includes)
    set(source ${CMAKE_CURRENT_BINARY_DIR}/headers/${library}/all.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "@includes@" @ONLY)
    set_source_files_properties(${source} PROPERTIES COMPILE_OPTIONS "-DQX_STANDARD_ONLY;-Wpedantic")
    list(APPEND sources ${source})
    add_library(${library}Headers OBJECT ${sources})
    qx_common(${library}Headers)
    # Only the library's public face: neither its own folder nor its definitions are seen.
    target_link_libraries(${library}Headers PRIVATE ${library})
endfunction()

# qx_exports_check(LIBRARY LIST): the strong symbols that the library exports are those in the list.
function(qx_exports_check library list)
    add_test(NAME exports.${library}
        COMMAND ${PROJECT_SOURCE_DIR}/cmake/checks/exports.sh compare $<TARGET_FILE:${library}> ${list})
    set_tests_properties(exports.${library} PROPERTIES LABELS release)
endfunction()

# qx_header_cost_check(LIBRARY HEADER SECONDS): including the header alone costs less than that.
function(qx_header_cost_check library header seconds)
    add_test(NAME header-cost.${header}
        COMMAND ${PROJECT_SOURCE_DIR}/cmake/checks/header-cost.sh ${header} ${seconds} ${CMAKE_CXX_COMPILER} -std=c++20
            "-I$<JOIN:$<TARGET_PROPERTY:${library}Headers,INCLUDE_DIRECTORIES>,;-I>"
        COMMAND_EXPAND_LISTS)
    set_tests_properties(header-cost.${header} PROPERTIES LABELS release RUN_SERIAL ON)
endfunction()

# qx_language_check(LIBRARY FOLDER): every public header refuses an older C++ by name.
function(qx_language_check library folder)
    file(GLOB headers RELATIVE ${folder} ${folder}/*)
    add_test(NAME needs-cpp20.${library}
        COMMAND ${PROJECT_SOURCE_DIR}/cmake/checks/needs-cpp20.sh ${CMAKE_CXX_COMPILER}
            "-I$<JOIN:$<TARGET_PROPERTY:${library}Headers,INCLUDE_DIRECTORIES>,;-I>" -- ${headers}
        COMMAND_EXPAND_LISTS)
    set_tests_properties(needs-cpp20.${library} PROPERTIES LABELS release)
endfunction()

# qx_function_cost_check(LIBRARY SECONDS MEGABYTES): what 200 functions of a host cost the compiler.
function(qx_function_cost_check library seconds megabytes)
    add_test(NAME function-cost
        COMMAND ${PROJECT_SOURCE_DIR}/cmake/checks/function-cost.sh ${seconds} ${megabytes} ${CMAKE_CXX_COMPILER} -std=c++20
            "-I$<JOIN:$<TARGET_PROPERTY:${library}Headers,INCLUDE_DIRECTORIES>,;-I>"
        COMMAND_EXPAND_LISTS)
    set_tests_properties(function-cost PROPERTIES LABELS release RUN_SERIAL ON)
endfunction()

# qx_late_loading_check(LIBRARY...): a program that links none of the libraries opens them.
function(qx_late_loading_check)
    set(project ${PROJECT_SOURCE_DIR}/tests/embedding)
    add_executable(lateLoading ${project}/late.cpp)
    qx_common(lateLoading)
    target_link_libraries(lateLoading PRIVATE Threads::Threads ${CMAKE_DL_LIBS})
    add_library(lateLoaded MODULE ${project}/plugin.cpp)
    qx_common(lateLoaded)
    target_link_libraries(lateLoaded PRIVATE ${ARGN})
    list(TRANSFORM ARGN REPLACE "(.+)" "$<TARGET_FILE:\\1>" OUTPUT_VARIABLE libraries)
    add_test(NAME late-loading
        COMMAND ${PROJECT_SOURCE_DIR}/cmake/checks/late-loading.sh $<TARGET_FILE:lateLoading>
            $<TARGET_FILE:lateLoaded> ${libraries})
    set_tests_properties(late-loading PROPERTIES LABELS release)
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
