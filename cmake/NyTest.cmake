# Declares one test program.
include_guard(GLOBAL)

# ny_add_test(<name> SOURCES <files> [LIBS <targets>] [TIMEOUT <seconds>] [LABELS <labels>] [SERIAL] [XVFB])
#
# The program runs through tests/support/isolated.sh: a HOME, XDG folders and a TMPDIR of its own, a session bus of its
# own that activates nothing, and the offscreen platform. SERIAL keeps it from running beside other tests. XVFB gives it an
# X server of its own and the xcb platform.
function(ny_add_test NAME)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "SERIAL;XVFB" "TIMEOUT" "SOURCES;LIBS;LABELS")
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 60)
    endif()
    add_executable(${NAME} ${ARG_SOURCES})
    target_link_libraries(${NAME} PRIVATE Qt6::Gui Qt6::Test ${ARG_LIBS} NyBuildFlags)
    target_compile_definitions(${NAME} PRIVATE QT_NO_CONTEXTLESS_CONNECT)
    target_include_directories(${NAME} PRIVATE "${CMAKE_SOURCE_DIR}/tests/support")
    set_target_properties(${NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    add_test(NAME ${NAME} COMMAND "${CMAKE_SOURCE_DIR}/tests/support/isolated.sh" "$<TARGET_FILE:${NAME}>")
    set_tests_properties(${NAME} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}" SKIP_RETURN_CODE 77)
    if(ARG_XVFB)
        set_tests_properties(${NAME} PROPERTIES ENVIRONMENT "NY_TEST_DISPLAY=1")
    endif()
    if(ARG_SERIAL)
        set_tests_properties(${NAME} PROPERTIES RUN_SERIAL ON)
    endif()
endfunction()
