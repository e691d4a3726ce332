#pragma once

#include <memory>
#include <vector>

#include "OrrinDescriptors.h"
#include "OrrinImageView.h"
#include "OrrinLog.h"
#include "OrrinModelSource.h"
#include "OrrinRuntime.h"
#include "orrin_export.h"

namespace orrin
{

/**
 * Looks at photos: the descriptors that need no model always, and what the first usable model sees. A model is loaded when the first
 * photo comes, and stays. Nothing throws; what goes wrong with a model is logged once, and the next one is taken. Thread-safe.
 */
class ORRIN_EXPORT Engine
{
public:
    struct Options
    {
        /** Threads that the runtime uses for one photo, at least 1. */
        int threads = 1;
    };

    /** @p models in the order of preference. */
    Engine(std::vector<ModelSource> models, Options options, LogCallback log);
    ~Engine();
    Engine(const Engine &) = delete;
    Engine &operator=(const Engine &) = delete;

    /** Invalid descriptors for an invalid view, or when memory runs out. */
    Descriptors describe(const ImageView &image) noexcept;

    /** Whether a model could be loaded; loads it if that was not tried yet. */
    bool hasModel() noexcept;
    /** The name of the model in use, empty without one. */
    std::string modelName() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace orrin
