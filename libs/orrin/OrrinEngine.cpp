#include "OrrinEngine.h"

#include <algorithm>
#include <exception>
#include <mutex>

#include "OrrinImageStatistics.h"
#include "OrrinModel.h"

namespace orrin
{

class Engine::Private
{
public:
    std::shared_ptr<Model> model() noexcept
    {
        const std::lock_guard<std::mutex> locker(m_mutex);
        while (!m_model && m_next < m_sources.size()) {
            const ModelSource &source = m_sources[m_next++];
            try {
                m_model = Model::load(source, m_threads, m_log);
                if (m_model)
                    m_log(LogLevel::Info, "image understanding uses the model " + source.name);
            } catch (const std::exception &problem) {
                warn(source.name + " cannot be loaded: " + problem.what());
            } catch (...) {
                warn(source.name + " cannot be loaded");
            }
        }
        if (!m_model && !m_toldMissing) {
            m_toldMissing = true;
            warn("image understanding has no usable model, so photos get the descriptors that need none");
        }
        return m_model;
    }

    /** A model that fails on a photo is not asked again. */
    void giveUp(const std::shared_ptr<Model> &model, const std::string &error) noexcept
    {
        const std::lock_guard<std::mutex> locker(m_mutex);
        if (m_model != model)
            return;
        m_model.reset();
        warn(model->name() + ' ' + error);
    }

    std::string modelName() const
    {
        const std::lock_guard<std::mutex> locker(m_mutex);
        return m_model ? m_model->name() : std::string();
    }

    void warn(const std::string &text) const noexcept
    {
        try {
            m_log(LogLevel::Warning, text);
        } catch (...) {
            // There is nobody left to tell.
        }
    }

    mutable std::mutex m_mutex;
    std::vector<ModelSource> m_sources;
    std::size_t m_next = 0;
    int m_threads = 1;
    LogCallback m_log;
    std::shared_ptr<Model> m_model;
    bool m_toldMissing = false;
};

Engine::Engine(std::vector<ModelSource> models, Options options, LogCallback log)
    : d(std::make_unique<Private>())
{
    d->m_sources = std::move(models);
    d->m_threads = std::max(1, options.threads);
    d->m_log = log ? std::move(log) : [](LogLevel, const std::string &) {};
}

Engine::~Engine() = default;

Descriptors Engine::describe(const ImageView &image) noexcept
{
    Descriptors result;
    try {
        result = ImageStatistics::describe(image);
        if (!result.isValid)
            return result;
        while (const std::shared_ptr<Model> model = d->model()) {
            std::string error;
            if (model->describe(image, result, error))
                break;
            d->giveUp(model, error);
        }
    } catch (const std::exception &problem) {
        d->warn(std::string("a photo could not be looked at: ") + problem.what());
    } catch (...) {
        d->warn("a photo could not be looked at");
    }
    return result;
}

bool Engine::hasModel() noexcept
{
    return d->model() != nullptr;
}

std::string Engine::modelName() const
{
    return d->modelName();
}

} // namespace orrin
