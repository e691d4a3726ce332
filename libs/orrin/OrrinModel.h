#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "OrrinDescriptors.h"
#include "OrrinImageView.h"
#include "OrrinLog.h"
#include "OrrinModelConfig.h"
#include "OrrinModelSource.h"
#include "OrrinPreprocessor.h"
#include "OrrinSession.h"
#include "orrin_export.h"

namespace orrin
{

/** A model and its model.json, ready to look at pictures. Thread-safe: one picture after the other. */
class ORRIN_EXPORT Model
{
public:
    /**
     * Reads, checks and tries the model. Null, and one warning that names the file, when anything is wrong with it. A model that is
     * in use already in this process is not loaded again, as long as the number of threads is the same.
     */
    static std::shared_ptr<Model> load(const ModelSource &source, int threads, const LogCallback &log);

    const std::string &name() const { return m_name; }
    const ModelConfig &config() const { return m_config; }

    /** Fills the model's lists in @p descriptors, or leaves them empty and says why in @p error. */
    bool describe(const ImageView &image, Descriptors &descriptors, std::string &error);

private:
    Model(std::string name, ModelConfig config);

    bool start(const ModelSource &source, int threads, std::string &error);
    bool checkInput(std::string &error);
    bool checkOutput(const std::string &field, const std::string &name, std::size_t valueCount, std::string &error) const;
    bool run(std::string &error);
    void fillProbabilities();
    /** For each label, whether the descriptors tell of it. */
    std::vector<bool> scenesKept() const;

    std::mutex m_mutex;
    std::string m_name;
    ModelConfig m_config;
    Preprocessor m_preprocessor;
    Session::ElementType m_inputType = Session::ElementType::Float;
    std::vector<float> m_floats;
    std::vector<std::uint8_t> m_bytes;
    std::vector<std::string> m_outputNames;
    std::vector<std::vector<float>> m_results;
    std::vector<float> m_probabilities;
    /** Declared last: it reads the buffers above until it is gone. */
    std::unique_ptr<Session> m_session;
};

} // namespace orrin
