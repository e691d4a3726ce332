# Finds ONNX Runtime, the system's or the copy that scripts/setup keeps in the user's cache.
#
# Sets ONNXRuntime_FOUND, ONNXRuntime_LIBRARY, and ONNXRuntime_NAME, by which programs load it (also set when there is none). The
# library may come without headers; who includes onnxruntime_c_api.h from ONNXRuntime_INCLUDE_DIR asks ONNXRuntime_HAS_HEADER first.
# ONNXRuntime_IS_PRIVATE tells that the library is the cached copy, which an installation has to carry along.

if(DEFINED ENV{XDG_CACHE_HOME} AND NOT "$ENV{XDG_CACHE_HOME}" STREQUAL "")
    set(_onnxruntime_cache "$ENV{XDG_CACHE_HOME}")
else()
    set(_onnxruntime_cache "$ENV{HOME}/.cache")
endif()
set(_onnxruntime_cache "${_onnxruntime_cache}/velmora-build/onnxruntime-1.11.0")

find_path(ONNXRuntime_INCLUDE_DIR onnxruntime_c_api.h PATH_SUFFIXES onnxruntime onnxruntime/core/session)
find_library(ONNXRuntime_LIBRARY NAMES onnxruntime libonnxruntime.so.1.11.0 HINTS "${_onnxruntime_cache}")
mark_as_advanced(ONNXRuntime_INCLUDE_DIR ONNXRuntime_LIBRARY)

# The cached path survives the file: a cache that was cleared must not break the link.
if(ONNXRuntime_LIBRARY AND NOT EXISTS "${ONNXRuntime_LIBRARY}")
    unset(ONNXRuntime_LIBRARY CACHE)
    find_library(ONNXRuntime_LIBRARY NAMES onnxruntime libonnxruntime.so.1.11.0 HINTS "${_onnxruntime_cache}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(ONNXRuntime REQUIRED_VARS ONNXRuntime_LIBRARY)

set(ONNXRuntime_HAS_HEADER OFF)
set(ONNXRuntime_IS_PRIVATE OFF)
set(ONNXRuntime_NAME libonnxruntime.so.1.11.0)
if(ONNXRuntime_FOUND)
    if(ONNXRuntime_INCLUDE_DIR)
        set(ONNXRuntime_HAS_HEADER ON)
    endif()
    cmake_path(IS_PREFIX _onnxruntime_cache "${ONNXRuntime_LIBRARY}" ONNXRuntime_IS_PRIVATE)
    # The file may be a link that only a developer's machine has.
    execute_process(COMMAND "${CMAKE_OBJDUMP}" -p "${ONNXRuntime_LIBRARY}" OUTPUT_VARIABLE _onnxruntime_headers ERROR_QUIET)
    if(_onnxruntime_headers MATCHES "SONAME +([^ \n]+)")
        set(ONNXRuntime_NAME "${CMAKE_MATCH_1}")
    endif()
endif()
unset(_onnxruntime_cache)
