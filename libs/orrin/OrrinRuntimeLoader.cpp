#include "OrrinRuntimeLoader.h"

#include <array>
#include <cstdint>

#include <dlfcn.h>
#include <unistd.h>

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
        const std::string folder = ownFolder();
        for (const char *name : LibraryNames) {
            if (const std::string file = folder + name; !folder.empty() && ::access(file.c_str(), F_OK) == 0 && load(file))
                return;
            if (load(name))
                return;
        }
    }

    /** Where this library lies, with a slash at the end; an installation may have its own runtime there. */
    static std::string ownFolder()
    {
        Dl_info info{};
        if (::dladdr(reinterpret_cast<const void *>(&LoadedRuntime::instance), &info) == 0 || !info.dli_fname)
            return {};
        const std::string path = info.dli_fname;
        return path.substr(0, path.rfind('/') + 1);
    }

    bool load(const std::string &name)
    {
        void *const library = ::dlopen(name.c_str(), RTLD_LAZY | RTLD_LOCAL);
        if (!library) {
            // The first name is the one to install.
            if (m_error.empty())
                m_error = ::dlerror();
            return false;
        }
        // Asked of this one library: the whole process would answer with the function below.
        if (const auto getApiBase = reinterpret_cast<GetApiBase>(::dlsym(library, "OrtGetApiBase"))) {
            m_base = getApiBase();
            m_error.clear();
            return true;
        }
        if (m_error.empty())
            m_error = name + " is not ONNX Runtime";
        ::dlclose(library);
        return false;
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
