#pragma once

/**
 * The part of ONNX Runtime's C interface that is used here. The system's header gives it when there is one. Otherwise it
 * is bound by the position of each function in the table of interface version 11: entries are only ever appended, so a position holds for
 * all later versions too.
 */

#if defined(ORRIN_USE_SYSTEM_HEADER)

#include <onnxruntime_c_api.h>

#else

#include <cstddef>
#include <cstdint>

struct OrtStatus;
struct OrtEnv;
struct OrtSession;
struct OrtSessionOptions;
struct OrtRunOptions;
struct OrtValue;
struct OrtTypeInfo;
struct OrtTensorTypeAndShapeInfo;
struct OrtMemoryInfo;
struct OrtAllocator;

enum OrtLoggingLevel : int { ORT_LOGGING_LEVEL_WARNING = 2, ORT_LOGGING_LEVEL_FATAL = 4 };
enum GraphOptimizationLevel : int { ORT_ENABLE_ALL = 99 };
enum OrtAllocatorType : int { OrtArenaAllocator = 1 };
enum OrtMemType : int { OrtMemTypeDefault = 0 };
enum ONNXTensorElementDataType : int {
    ONNX_TENSOR_ELEMENT_DATA_TYPE_UNDEFINED = 0,
    ONNX_TENSOR_ELEMENT_DATA_TYPE_FLOAT = 1,
    ONNX_TENSOR_ELEMENT_DATA_TYPE_UINT8 = 2,
};

/** Entries that are not used are kept as gaps. The name of a gap is the position of its first entry. */
struct OrtApi
{
    using Unused = void (*)();
    using Status = OrtStatus *;

    Unused gap0[2];
    const char *(*GetErrorMessage)(const OrtStatus *); // 2
    Status (*CreateEnv)(OrtLoggingLevel, const char *logId, OrtEnv **out); // 3
    Unused gap4[3];
    Status (*CreateSession)(const OrtEnv *, const char *path, const OrtSessionOptions *, OrtSession **out); // 7
    Status (*CreateSessionFromArray)(const OrtEnv *, const void *data, size_t length, const OrtSessionOptions *, OrtSession **out); // 8
    Status (*Run)(OrtSession *, const OrtRunOptions *, const char *const *inputNames, const OrtValue *const *inputs, size_t inputCount,
        const char *const *outputNames, size_t outputCount, OrtValue **outputs); // 9
    Status (*CreateSessionOptions)(OrtSessionOptions **out); // 10
    Unused gap11[12];
    Status (*SetSessionGraphOptimizationLevel)(OrtSessionOptions *, GraphOptimizationLevel); // 23
    Status (*SetIntraOpNumThreads)(OrtSessionOptions *, int); // 24
    Status (*SetInterOpNumThreads)(OrtSessionOptions *, int); // 25
    Unused gap26[4];
    Status (*SessionGetInputCount)(const OrtSession *, size_t *out); // 30
    Status (*SessionGetOutputCount)(const OrtSession *, size_t *out); // 31
    Unused gap32;
    Status (*SessionGetInputTypeInfo)(const OrtSession *, size_t index, OrtTypeInfo **out); // 33
    Status (*SessionGetOutputTypeInfo)(const OrtSession *, size_t index, OrtTypeInfo **out); // 34
    Unused gap35;
    Status (*SessionGetInputName)(const OrtSession *, size_t index, OrtAllocator *, char **out); // 36
    Status (*SessionGetOutputName)(const OrtSession *, size_t index, OrtAllocator *, char **out); // 37
    Unused gap38[11];
    Status (*CreateTensorWithDataAsOrtValue)(const OrtMemoryInfo *, void *data, size_t bytes, const int64_t *shape, size_t dimensions,
        ONNXTensorElementDataType, OrtValue **out); // 49
    Status (*IsTensor)(const OrtValue *, int *out); // 50
    Status (*GetTensorMutableData)(OrtValue *, void **out); // 51
    Unused gap52[3];
    Status (*CastTypeInfoToTensorInfo)(const OrtTypeInfo *, const OrtTensorTypeAndShapeInfo **out); // 55
    Unused gap56[4];
    Status (*GetTensorElementType)(const OrtTensorTypeAndShapeInfo *, ONNXTensorElementDataType *out); // 60
    Status (*GetDimensionsCount)(const OrtTensorTypeAndShapeInfo *, size_t *out); // 61
    Status (*GetDimensions)(const OrtTensorTypeAndShapeInfo *, int64_t *values, size_t count); // 62
    Unused gap63;
    Status (*GetTensorShapeElementCount)(const OrtTensorTypeAndShapeInfo *, size_t *out); // 64
    Status (*GetTensorTypeAndShape)(const OrtValue *, OrtTensorTypeAndShapeInfo **out); // 65
    Unused gap66[3];
    Status (*CreateCpuMemoryInfo)(OrtAllocatorType, OrtMemType, OrtMemoryInfo **out); // 69
    Unused gap70[6];
    Status (*AllocatorFree)(OrtAllocator *, void *); // 76
    Unused gap77;
    Status (*GetAllocatorWithDefaultOptions)(OrtAllocator **out); // 78
    Unused gap79[13];
    void (*ReleaseEnv)(OrtEnv *); // 92
    void (*ReleaseStatus)(OrtStatus *); // 93
    void (*ReleaseMemoryInfo)(OrtMemoryInfo *); // 94
    void (*ReleaseSession)(OrtSession *); // 95
    void (*ReleaseValue)(OrtValue *); // 96
    Unused gap97;
    void (*ReleaseTypeInfo)(OrtTypeInfo *); // 98
    void (*ReleaseTensorTypeAndShapeInfo)(OrtTensorTypeAndShapeInfo *); // 99
    void (*ReleaseSessionOptions)(OrtSessionOptions *); // 100
};

namespace orrin::detail
{

consteval bool isAt(std::size_t offset, std::size_t position)
{
    return offset == position * sizeof(OrtApi::Unused);
}
static_assert(isAt(offsetof(OrtApi, CreateEnv), 3) && isAt(offsetof(OrtApi, Run), 9));
static_assert(isAt(offsetof(OrtApi, SetInterOpNumThreads), 25) && isAt(offsetof(OrtApi, SessionGetOutputName), 37));
static_assert(isAt(offsetof(OrtApi, GetTensorMutableData), 51) && isAt(offsetof(OrtApi, CastTypeInfoToTensorInfo), 55));
static_assert(isAt(offsetof(OrtApi, GetTensorTypeAndShape), 65) && isAt(offsetof(OrtApi, GetAllocatorWithDefaultOptions), 78));
static_assert(isAt(offsetof(OrtApi, ReleaseSessionOptions), 100));

} // namespace orrin::detail

struct OrtApiBase
{
    /** Null when the library does not know the version. */
    const OrtApi *(*GetApi)(uint32_t version) noexcept;
    const char *(*GetVersionString)() noexcept;
};

#endif
