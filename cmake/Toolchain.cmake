# Language level and the flags that every target shares. Results must not depend on the optimisation level:
# signed char everywhere, no fused multiply-add, never fast-math.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        CCACHE_NOHASHDIR=1 CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} ${CCACHE_PROGRAM})
endif()

set(TEVORA_SANITIZE "" CACHE STRING "Sanitizers, e.g. address,undefined or thread")
option(TEVORA_COVERAGE "Count which lines the tests run" OFF)
add_library(tevora_flags INTERFACE)
target_compile_options(tevora_flags INTERFACE
    -fsigned-char -ffp-contract=off
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(tevora_flags INTERFACE -fpch-preprocess)
endif()
if(TEVORA_SANITIZE)
    target_compile_options(tevora_flags INTERFACE
        -fsanitize=${TEVORA_SANITIZE} -fno-omit-frame-pointer -g1 -O1)
    target_link_options(tevora_flags INTERFACE -fsanitize=${TEVORA_SANITIZE})
    if(TEVORA_SANITIZE MATCHES "undefined")
        target_compile_options(tevora_flags INTERFACE -fno-sanitize-recover=all)
    endif()
    if(TEVORA_SANITIZE MATCHES "address")
        # An index beyond the size of a vector, but within its capacity, is no error to the sanitizer.
        target_compile_definitions(tevora_flags INTERFACE _GLIBCXX_ASSERTIONS)
    endif()
endif()
if(TEVORA_COVERAGE)
    target_compile_options(tevora_flags INTERFACE --coverage -fprofile-update=atomic)
    target_link_options(tevora_flags INTERFACE --coverage)
endif()
