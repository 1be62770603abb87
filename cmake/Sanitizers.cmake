# What a build with sanitizers (TEVORA_SANITIZE) needs beside its flags:
#
#   tevora_use_sanitizer(<program> [DRAWS])   the sanitizers' options, inside the program, so that it runs the
#                                             same by hand and in the suite. DRAWS: it uses OpenGL.
#   TEVORA_TIMEOUT_FACTOR                     by how much the time limits of tests grow
#   TEVORA_DRAWING_ENVIRONMENT                variables for tests that draw

set(TEVORA_TIMEOUT_FACTOR 1)
set(TEVORA_DRAWING_ENVIRONMENT "")
if(TEVORA_SANITIZE OR TEVORA_COVERAGE)
    set(TEVORA_TIMEOUT_FACTOR 10)
endif()
if(TEVORA_SANITIZE MATCHES "thread")
    set(TEVORA_DRAWING_ENVIRONMENT "LP_NUM_THREADS=0") # software OpenGL without threads of its own
endif()

function(tevora_use_sanitizer program)
    cmake_parse_arguments(ARG "DRAWS" "" "" ${ARGN})
    if(TEVORA_SANITIZE MATCHES "address")
        set(source "${CMAKE_SOURCE_DIR}/cmake/sanitizers/AddressSanitizerOptions.cpp")
    elseif(TEVORA_SANITIZE MATCHES "thread")
        set(folder "${CMAKE_SOURCE_DIR}/cmake/sanitizers")
        set(source "${folder}/ThreadSanitizerOptions.cpp" "${folder}/WatchedCalls.cpp"
            "${folder}/ForkedProcesses.cpp")
        foreach(call memcpy memmove memset memcmp _ZdlPv _ZdlPvm _ZdaPv _ZdaPvm
                pthread_mutex_lock pthread_mutex_trylock pthread_mutex_unlock)
            target_link_options(${program} PRIVATE "LINKER:--wrap=${call}")
        endforeach()
    else()
        return()
    endif()
    set(library sanitizer_options)
    if(ARG_DRAWS)
        set(library sanitizer_options_drawing)
    endif()
    if(NOT TARGET ${library})
        add_library(${library} OBJECT ${source})
        target_link_libraries(${library} PRIVATE tevora_flags)
        if(ARG_DRAWS)
            target_compile_definitions(${library} PRIVATE TEVORA_DRAWS)
        endif()
    endif()
    target_sources(${program} PRIVATE $<TARGET_OBJECTS:${library}>)
endfunction()
