# One interface target carries the language level, the warnings and Qt's strictness for all of our code.
include_guard(GLOBAL)

add_library(NyBuildFlags INTERFACE)
target_compile_features(NyBuildFlags INTERFACE cxx_std_20)
target_compile_options(NyBuildFlags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wnull-dereference
    $<$<BOOL:${NY_WERROR}>:-Werror>)
target_compile_definitions(NyBuildFlags INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_KEYWORDS
    QT_NO_FOREACH
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(NY_SANITIZE)
    target_compile_options(NyBuildFlags INTERFACE -fsanitize=${NY_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(NyBuildFlags INTERFACE -fsanitize=${NY_SANITIZE})
    # GCC's flow analysis warns about the sanitizers' own instrumentation.
    target_compile_options(NyBuildFlags INTERFACE
        $<$<CXX_COMPILER_ID:GNU>:-Wno-null-dereference> $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()
if(NY_SANITIZE STREQUAL "thread" AND NY_BUILD_TESTS)
    # In the program itself, where its functions are found before Qt's.
    target_sources(NyBuildFlags INTERFACE
        $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:$<TARGET_OBJECTS:QtThreadEdges>>)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)

find_program(NY_CCACHE ccache)
if(NY_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${NY_CCACHE}")
endif()
