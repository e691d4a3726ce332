# Prints one value of a JSON file's top level: cmake -DFILE=… -DKEY=… -P json-value.cmake
file(READ "${FILE}" text)
string(JSON value ERROR_VARIABLE problem GET "${text}" "${KEY}")
if(NOT problem)
    execute_process(COMMAND "${CMAKE_COMMAND}" -E echo "${value}")
endif()
