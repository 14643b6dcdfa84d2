# One interface target carries what every target of ours is compiled with.
option(PROJECT_WARNINGS_AS_ERRORS "Stop at the first warning" OFF)
option(PROJECT_BUILD_TESTS "Build the tests" ON)
option(PROJECT_BUILD_BENCH "Build the benchmarks" OFF)
option(PROJECT_BUILD_FUZZERS "Build the fuzzers; needs clang and the tests" OFF)
set(PROJECT_SANITIZE "" CACHE STRING "Sanitizers for all targets, for example address,undefined")

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 99)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_library(project_options INTERFACE)
add_library(Project::Options ALIAS project_options)
target_compile_options(project_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
    $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>
    $<$<BOOL:${PROJECT_WARNINGS_AS_ERRORS}>:-Werror>
)
target_compile_definitions(project_options INTERFACE
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_DEPRECATED_WARNINGS
    QT_DISABLE_DEPRECATED_BEFORE=0x050F00
)
if(PROJECT_SANITIZE)
    add_compile_options(-fsanitize=${PROJECT_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=${PROJECT_SANITIZE})
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()
