#include "OrrinSession.h"

#include <limits>

#include "OrrinRuntime.h"
#include "OrrinRuntimeLoader.h"
#include "OrrinRuntimeTable.h"

namespace orrin
{

namespace
{

constexpr std::uint32_t InterfaceVersion = 11;
constexpr std::size_t MaximumDimensions = 16;

/** The function table and the one environment of the process. Both live until the process ends. */
class Runtime
{
public:
    static const Runtime &instance()
    {
        // Never destroyed: sessions of static objects may outlive any other order.
        static const Runtime *const runtime = new Runtime;
        return *runtime;
    }

    const OrtApi *api() const { return m_api; }
    const OrtEnv *environment() const { return m_environment; }
    const std::string &error() const { return m_error; }

    /** True without a problem; takes the status over. */
    static bool succeeded(const OrtApi *api, OrtStatus *status, std::string &error)
    {
        if (!status)
            return true;
        error = api->GetErrorMessage(status);
        // Messages quote the runtime's own sources over several lines.
        for (char &character : error) {
            if (character == '\n' || character == '\r')
                character = ' ';
        }
        api->ReleaseStatus(status);
        return false;
    }

private:
    Runtime()
    {
        const OrtApi *api = runtimeApiBase->GetApi(InterfaceVersion);
        if (!api) {
            m_error = runtimeLoadError();
            if (m_error.empty())
                m_error = std::string("ONNX Runtime ") + runtimeApiBase->GetVersionString() + " does not know interface version "
                    + std::to_string(InterfaceVersion);
            return;
        }
        // Whatever goes wrong comes back as a status, so the runtime's own lines on stderr would only repeat it.
        if (succeeded(api, api->CreateEnv(ORT_LOGGING_LEVEL_FATAL, "orrin", &m_environment), m_error))
            m_api = api;
    }

    const OrtApi *m_api = nullptr;
    OrtEnv *m_environment = nullptr;
    std::string m_error;
};

/** Releases what the runtime handed out. */
template <class Object, class Release>
class Owned
{
public:
    Owned(Release release)
        : m_release(release)
    {
    }
    ~Owned()
    {
        if (m_object)
            m_release(m_object);
    }
    Owned(const Owned &) = delete;
    Owned &operator=(const Owned &) = delete;

    Object **out() { return &m_object; }
    Object *get() const { return m_object; }

private:
    Object *m_object = nullptr;
    Release m_release;
};

template <class Object, class Release>
Owned<Object, Release> owned(Release release)
{
    return Owned<Object, Release>(release);
}

Session::ElementType elementType(ONNXTensorElementDataType type)
{
    switch (type) {
    case ONNX_TENSOR_ELEMENT_DATA_TYPE_FLOAT:
        return Session::ElementType::Float;
    case ONNX_TENSOR_ELEMENT_DATA_TYPE_UINT8:
        return Session::ElementType::Byte;
    default:
        return Session::ElementType::Other;
    }
}

} // namespace

struct Session::Private
{
    const OrtApi *api = Runtime::instance().api();
    OrtSession *session = nullptr;
    OrtValue *input = nullptr;
    std::string inputName;

    Private() = default;
    Private(const Private &) = delete;
    Private &operator=(const Private &) = delete;
    ~Private()
    {
        if (input)
            api->ReleaseValue(input);
        if (session)
            api->ReleaseSession(session);
    }

    bool ok(OrtStatus *status, std::string &error) const { return Runtime::succeeded(api, status, error); }

    bool describe(const OrtTypeInfo *type, TensorInfo &info, std::string &error) const
    {
        const OrtTensorTypeAndShapeInfo *tensor = nullptr;
        if (!ok(api->CastTypeInfoToTensorInfo(type, &tensor), error))
            return false;
        // Sequences and maps have no tensor information.
        if (!tensor)
            return true;
        ONNXTensorElementDataType element = ONNX_TENSOR_ELEMENT_DATA_TYPE_UNDEFINED;
        std::size_t count = 0;
        if (!ok(api->GetTensorElementType(tensor, &element), error) || !ok(api->GetDimensionsCount(tensor, &count), error))
            return false;
        info.type = elementType(element);
        if (count > MaximumDimensions) {
            error = "has a tensor of " + std::to_string(count) + " dimensions";
            return false;
        }
        info.shape.resize(count);
        return count == 0 || ok(api->GetDimensions(tensor, info.shape.data(), count), error);
    }

    bool list(bool ofInputs, std::vector<TensorInfo> &infos, std::string &error) const
    {
        OrtAllocator *allocator = nullptr;
        std::size_t count = 0;
        if (!ok(api->GetAllocatorWithDefaultOptions(&allocator), error)
            || !ok(ofInputs ? api->SessionGetInputCount(session, &count) : api->SessionGetOutputCount(session, &count), error))
            return false;
        for (std::size_t i = 0; i < count; ++i) {
            TensorInfo &info = infos.emplace_back();
            char *name = nullptr;
            if (!ok(ofInputs ? api->SessionGetInputName(session, i, allocator, &name)
                             : api->SessionGetOutputName(session, i, allocator, &name),
                    error))
                return false;
            info.name = name;
            OrtStatus *freed = api->AllocatorFree(allocator, name);
            if (!ok(freed, error))
                return false;
            auto type = owned<OrtTypeInfo>(api->ReleaseTypeInfo);
            if (!ok(ofInputs ? api->SessionGetInputTypeInfo(session, i, type.out()) : api->SessionGetOutputTypeInfo(session, i, type.out()),
                    error)
                || !describe(type.get(), info, error))
                return false;
        }
        return true;
    }

    bool copyOutput(OrtValue *value, std::vector<float> &result, std::string &error) const
    {
        int isTensor = 0;
        if (!ok(api->IsTensor(value, &isTensor), error))
            return false;
        if (!isTensor) {
            error = "gives an output that is no tensor";
            return false;
        }
        auto info = owned<OrtTensorTypeAndShapeInfo>(api->ReleaseTensorTypeAndShapeInfo);
        ONNXTensorElementDataType type = ONNX_TENSOR_ELEMENT_DATA_TYPE_UNDEFINED;
        std::size_t count = 0;
        void *data = nullptr;
        if (!ok(api->GetTensorTypeAndShape(value, info.out()), error) || !ok(api->GetTensorElementType(info.get(), &type), error)
            || !ok(api->GetTensorShapeElementCount(info.get(), &count), error) || !ok(api->GetTensorMutableData(value, &data), error))
            return false;
        if (type != ONNX_TENSOR_ELEMENT_DATA_TYPE_FLOAT) {
            error = "gives an output that is no float";
            return false;
        }
        const auto *values = static_cast<const float *>(data);
        result.assign(values, values + count);
        return true;
    }
};

Session::Session(std::unique_ptr<Private> theD)
    : d(std::move(theD))
{
}

Session::~Session() = default;

bool Session::isRuntimeUsable()
{
    return Runtime::instance().api() != nullptr;
}

std::unique_ptr<Session> Session::load(const ModelSource &source, const std::string &file, int threads, std::string &error)
{
    const Runtime &runtime = Runtime::instance();
    const OrtApi *api = runtime.api();
    if (!api) {
        error = "cannot be run: " + runtime.error();
        return nullptr;
    }
    auto d = std::make_unique<Private>();
    auto options = owned<OrtSessionOptions>(api->ReleaseSessionOptions);
    if (!d->ok(api->CreateSessionOptions(options.out()), error)
        || !d->ok(api->SetSessionGraphOptimizationLevel(options.get(), ORT_ENABLE_ALL), error)
        || !d->ok(api->SetIntraOpNumThreads(options.get(), threads), error) || !d->ok(api->SetInterOpNumThreads(options.get(), 1), error))
        return nullptr;
    bool loaded = false;
    if (source.isInMemory()) {
        const std::optional<std::string> content = source.read(file, std::numeric_limits<std::int32_t>::max(), error);
        if (!content)
            return nullptr;
        loaded = d->ok(
            api->CreateSessionFromArray(runtime.environment(), content->data(), content->size(), options.get(), &d->session), error);
    } else {
        std::error_code problem;
        const std::filesystem::path path = source.folder / file;
        if (!std::filesystem::exists(path, problem)) {
            error = "is missing";
            return nullptr;
        }
        if (!std::filesystem::is_regular_file(path, problem)) {
            error = "is no file";
            return nullptr;
        }
        loaded = d->ok(api->CreateSession(runtime.environment(), path.c_str(), options.get(), &d->session), error);
    }
    if (!loaded) {
        error = "is no model that can be loaded: " + error;
        return nullptr;
    }
    std::unique_ptr<Session> session(new Session(std::move(d)));
    if (!session->d->list(true, session->m_inputs, error) || !session->d->list(false, session->m_outputs, error))
        return nullptr;
    return session;
}

bool Session::bindInput(
    const std::string &name, ElementType type, void *data, std::size_t bytes, const std::vector<std::int64_t> &shape, std::string &error)
{
    auto memory = owned<OrtMemoryInfo>(d->api->ReleaseMemoryInfo);
    if (!d->ok(d->api->CreateCpuMemoryInfo(OrtArenaAllocator, OrtMemTypeDefault, memory.out()), error))
        return false;
    if (d->input) {
        d->api->ReleaseValue(d->input);
        d->input = nullptr;
    }
    d->inputName = name;
    return d->ok(d->api->CreateTensorWithDataAsOrtValue(memory.get(), data, bytes, shape.data(), shape.size(),
                     type == ElementType::Byte ? ONNX_TENSOR_ELEMENT_DATA_TYPE_UINT8 : ONNX_TENSOR_ELEMENT_DATA_TYPE_FLOAT, &d->input),
        error);
}

bool Session::run(const std::vector<std::string> &outputNames, std::vector<std::vector<float>> &values, std::string &error)
{
    if (!d->input) {
        error = "has no input bound";
        return false;
    }
    struct Outputs
    {
        const OrtApi *api;
        std::vector<OrtValue *> all;

        ~Outputs()
        {
            for (OrtValue *value : all) {
                if (value)
                    api->ReleaseValue(value);
            }
        }
    } outputs{d->api, std::vector<OrtValue *>(outputNames.size(), nullptr)};
    std::vector<const char *> names;
    names.reserve(outputNames.size());
    for (const std::string &name : outputNames)
        names.push_back(name.c_str());
    const char *const inputName = d->inputName.c_str();
    const OrtValue *const input = d->input;
    if (!d->ok(d->api->Run(d->session, nullptr, &inputName, &input, 1, names.data(), names.size(), outputs.all.data()), error))
        return false;
    values.resize(outputNames.size());
    for (std::size_t i = 0; i < outputNames.size(); ++i) {
        if (!d->copyOutput(outputs.all[i], values[i], error))
            return false;
    }
    return true;
}

} // namespace orrin
