#include "OrrinRuntimeLoader.h"

#include <array>
#include <cstdint>

#include <dlfcn.h>

#include "OrrinRuntime.h"
#include "OrrinRuntimeTable.h"

namespace orrin
{

namespace
{

/** The runtime that the program was built with, then whatever the system calls by its names: later ones keep the interface. */
constexpr std::array LibraryNames{ORRIN_RUNTIME_LIBRARY, "libonnxruntime.so.1", "libonnxruntime.so"};

/** The loaded runtime. Lives until the process ends: its threads may outlast everything else. */
class LoadedRuntime
{
public:
    static const LoadedRuntime &instance()
    {
        static const LoadedRuntime *const runtime = new LoadedRuntime;
        return *runtime;
    }

    const OrtApiBase *base() const { return m_base; }
    const std::string &error() const { return m_error; }

private:
    using GetApiBase = const OrtApiBase *(*)();

    LoadedRuntime()
    {
        for (const char *name : LibraryNames) {
            void *const library = ::dlopen(name, RTLD_LAZY | RTLD_LOCAL);
            if (!library) {
                // The first name is the one to install.
                if (m_error.empty())
                    m_error = ::dlerror();
                continue;
            }
            // Asked of this one library: the whole process would answer with the function below.
            if (const auto getApiBase = reinterpret_cast<GetApiBase>(::dlsym(library, "OrtGetApiBase"))) {
                m_base = getApiBase();
                m_error.clear();
                return;
            }
            if (m_error.empty())
                m_error = std::string(name) + " is not ONNX Runtime";
            ::dlclose(library);
        }
    }

    const OrtApiBase *m_base = nullptr;
    std::string m_error;
};

const OrtApi *getApi(std::uint32_t version) noexcept
{
    const OrtApiBase *const base = LoadedRuntime::instance().base();
    return base ? base->GetApi(version) : nullptr;
}

const char *getVersionString() noexcept
{
    const OrtApiBase *const base = LoadedRuntime::instance().base();
    return base ? base->GetVersionString() : "";
}

} // namespace

const std::string &runtimeLoadError() noexcept
{
    return LoadedRuntime::instance().error();
}

} // namespace orrin

const OrtApiBase *OrtGetApiBase() noexcept
{
    static constexpr OrtApiBase base{&orrin::getApi, &orrin::getVersionString};
    return &base;
}
