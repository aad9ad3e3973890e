# SPDX-License-Identifier: GPL-3.0-or-later
# How every target of ours is built: one language level, one set of warnings,
# one include root, so that an include names its floor ("raster/RasterImage.h").

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
# Our generated sources come from headers alone, never from what a library builds.
set(CMAKE_AUTOGEN_ORIGIN_DEPENDS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

# Both make a rebuild quicker and neither is required.
find_program(QUILLABRAE_CCACHE ccache)
if(QUILLABRAE_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${QUILLABRAE_CCACHE}")
endif()
find_program(QUILLABRAE_LLD ld.lld)
if(QUILLABRAE_LLD)
    add_link_options(-fuse-ld=lld)
endif()

# A crash report names the build by this.
add_link_options(-Wl,--build-id=sha1)

option(QUILLABRAE_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(QUILLABRAE_SANITIZE_THREADS "Build with ThreadSanitizer" OFF)
option(QUILLABRAE_FUZZ "Build the fuzz targets; needs Clang" OFF)
option(QUILLABRAE_TESTS "Build the tests and benchmarks" ON)
option(QUILLABRAE_WERROR "Take warnings for errors" ON)
option(QUILLABRAE_DEBIAN "Install as Debian wants it, and build a package of it" OFF)

add_library(quillabrae_build INTERFACE)
target_include_directories(quillabrae_build INTERFACE "${CMAKE_SOURCE_DIR}/src")
target_compile_definitions(quillabrae_build INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS)
target_compile_options(quillabrae_build INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion $<$<BOOL:${QUILLABRAE_WERROR}>:-Werror>)
if(QUILLABRAE_DEBIAN)
    # What is installed does not tell where it was built.
    add_compile_options("-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=")
endif()
if(QUILLABRAE_FUZZ)
    # The warnings are tuned to the compiler that the program is built with.
    target_compile_options(quillabrae_build INTERFACE
        -Wno-error -fsanitize=fuzzer-no-link,address,undefined
        -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(quillabrae_build INTERFACE -fsanitize=address,undefined)
endif()
if(QUILLABRAE_SANITIZE)
    target_compile_options(quillabrae_build INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(quillabrae_build INTERFACE -fsanitize=address,undefined)
endif()
if(QUILLABRAE_SANITIZE_THREADS)
    # With so much in between, the compiler takes a layer without pixels for one never written.
    target_compile_options(quillabrae_build INTERFACE
        -fsanitize=thread -fno-omit-frame-pointer -Wno-maybe-uninitialized)
    target_link_options(quillabrae_build INTERFACE -fsanitize=thread)
endif()

# quillabrae_floor(NAME SOURCES file... [PUBLIC lib...] [PRIVATE lib...])
# A folder of src/ as a static library. PUBLIC names what its headers lean on.
function(quillabrae_floor name)
    cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(quillabrae_${name} STATIC ${ARG_SOURCES})
    target_link_libraries(quillabrae_${name}
        PUBLIC quillabrae_build ${ARG_PUBLIC}
        PRIVATE ${ARG_PRIVATE})
endfunction()

# quillabrae_test(NAME SOURCES file... LINKS lib...)
# The unit tests of one floor: one GoogleTest program, one CTest entry a case.
function(quillabrae_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE quillabrae_build ${ARG_LINKS} GTest::gmock)
    if(QUILLABRAE_SANITIZE_THREADS)
        target_sources(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests/support/CopiedChildren.cpp")
    endif()
    gtest_discover_tests(${name}
        PROPERTIES LABELS unit ENVIRONMENT "QT_QPA_PLATFORM=offscreen"
        DISCOVERY_TIMEOUT 60)
endfunction()
