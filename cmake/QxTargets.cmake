# How every target of this project is compiled.

# Language level, warnings and instrumentation; for everything that we compile ourselves.
function(qx_common target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wconversion -Wshadow)
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        # g++ keeps the sign warnings out of -Wconversion; both compilers shall ask the same.
        target_compile_options(${target} PRIVATE -Wno-sign-conversion)
    endif()
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        # g++ 12 sees overlapping copies in texts that the standard library joins.
        target_compile_options(${target} PRIVATE -Wno-restrict)
    endif()
    if(QXSCRIPT_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(NOT CMAKE_BUILD_TYPE STREQUAL "Release")
        target_compile_definitions(${target} PRIVATE _GLIBCXX_ASSERTIONS)
    endif()
    if(QXSCRIPT_SANITIZE)
        target_compile_options(${target} PRIVATE
            -fsanitize=${QXSCRIPT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${QXSCRIPT_SANITIZE})
    endif()
    if(QXSCRIPT_BUILD_FUZZ)
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
    if(QXSCRIPT_COVERAGE)
        target_compile_options(${target} PRIVATE --coverage)
        target_link_options(${target} PRIVATE --coverage)
    endif()
    if(WIN32)
        target_compile_definitions(${target} PRIVATE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)
        # Objects full of templates exceed the 32768 sections of the plain format.
        target_compile_options(${target} PRIVATE -Wa,-mbig-obj)
    endif()
endfunction()

# qx_internal_headers(TARGET): lets a target of this project include what both libraries share and hosts do not get.
function(qx_internal_headers target)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/libs/utils/internal)
endfunction()

# qx_library(NAME EXPORT_DEFINITION): a shared library, or a static one where QXSCRIPT_STATIC says so, of the folder's
# src, with its public headers in inc; no others are installed. src/posix and src/win32 hold the two implementations of
# what is wanted from the operating system; one is built. Its objects are a target of their own, for tests that reach what is not exported.
function(qx_library name export_definition)
    if(WIN32)
        set(otherPlatform posix)
    else()
        set(otherPlatform win32)
    endif()
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS src/*.cpp)
    list(FILTER sources EXCLUDE REGEX "/src/${otherPlatform}/")
    set(objects ${name}Objects)
    add_library(${objects} OBJECT ${sources})
    set(kind SHARED)
    if(QXSCRIPT_STATIC)
        set(kind STATIC)
        target_compile_definitions(${objects} PUBLIC QXSCRIPT_STATIC)
    endif()
    qx_common(${objects})
    set_target_properties(${objects} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    target_compile_definitions(${objects} PRIVATE ${export_definition})
    target_include_directories(${objects} PUBLIC inc PRIVATE src)
    qx_internal_headers(${objects})
    if(NOT WIN32)
        # A call inside the library need not go through the table that lets a program replace it.
        target_compile_options(${objects} PRIVATE -fno-semantic-interposition)
    endif()
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # Which statement stands behind a virtual call cannot be guessed: 1 to 2 % of all instructions.
        target_compile_options(${objects} PRIVATE -fno-devirtualize-speculatively)
    endif()

    add_library(${name} ${kind} $<TARGET_OBJECTS:${objects}>)
    string(REGEX REPLACE "^qx" "" short ${name})
    string(TOLOWER ${short} short)
    add_library(qx::${short} ALIAS ${name})
    qx_common(${name})
    set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
    if(QXSCRIPT_STATIC)
        target_compile_definitions(${name} PUBLIC QXSCRIPT_STATIC)
    endif()
    target_include_directories(${name}
        PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/inc> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/qxScript>)
    target_link_libraries(${name} PRIVATE Threads::Threads ${CMAKE_DL_LIBS})
    if(NOT WIN32)
        target_link_options(${name} PRIVATE -Wl,-Bsymbolic-functions)
    endif()
endfunction()
