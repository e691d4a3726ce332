#include "OrrinModel.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <map>
#include <numeric>

namespace orrin
{

namespace
{

std::string shapeText(const std::vector<std::int64_t> &shape)
{
    std::string text = "[";
    for (std::size_t i = 0; i < shape.size(); ++i)
        text += (i == 0 ? "" : ", ") + (shape[i] < 0 ? std::string("?") : std::to_string(shape[i]));
    return text + ']';
}

std::string namesOf(const std::vector<Session::TensorInfo> &infos)
{
    std::string names;
    for (const Session::TensorInfo &info : infos)
        names += (names.empty() ? "" : ", ") + info.name;
    return names;
}

const Session::TensorInfo *find(const std::vector<Session::TensorInfo> &infos, const std::string &name)
{
    const auto found = std::find_if(infos.begin(), infos.end(), [&name](const auto &info) { return info.name == name; });
    return found == infos.end() ? nullptr : &*found;
}

bool allFinite(const std::vector<float> &values)
{
    return std::all_of(values.begin(), values.end(), [](float value) { return std::isfinite(value); });
}

/** Scales to length 1; false for a vector without a direction. */
bool normalize(std::vector<float> &values)
{
    double squares = 0.0;
    for (const float value : values)
        squares += static_cast<double>(value) * value;
    if (!(squares > 1e-12))
        return false;
    const double length = std::sqrt(squares);
    for (float &value : values)
        value = static_cast<float>(value / length);
    return true;
}

void softmax(std::vector<float> &values, float temperature)
{
    const float largest = *std::max_element(values.begin(), values.end());
    double sum = 0.0;
    for (float &value : values) {
        const double power = std::exp((static_cast<double>(value) - largest) / temperature);
        value = static_cast<float>(power);
        sum += power;
    }
    for (float &value : values)
        value = static_cast<float>(value / sum);
}

/** The models in use, so that no model is in memory twice. */
class Registry
{
public:
    static Registry &instance()
    {
        static Registry *const registry = new Registry;
        return *registry;
    }

    std::mutex mutex;
    std::map<std::string, std::weak_ptr<Model>> models;
};

std::string keyOf(const ModelSource &source, int threads)
{
    std::error_code error;
    const std::filesystem::path path = std::filesystem::canonical(source.folder, error);
    // Two programs' parts may call different memory by one name.
    std::string place = error ? source.folder.string() : path.string();
    if (source.isInMemory()) {
        place = ':' + source.name;
        for (const auto &[name, content] : source.files)
            place += '/' + name + '@' + std::to_string(reinterpret_cast<std::uintptr_t>(content.data()));
    }
    return place + '*' + std::to_string(threads);
}

} // namespace

Model::Model(std::string name, ModelConfig config)
    : m_name(std::move(name))
    , m_config(std::move(config))
    , m_preprocessor(m_config)
{
}

std::shared_ptr<Model> Model::load(const ModelSource &source, int threads, const LogCallback &log)
{
    Registry &registry = Registry::instance();
    const std::lock_guard<std::mutex> locker(registry.mutex);
    const std::string key = keyOf(source, threads);
    if (std::shared_ptr<Model> known = registry.models[key].lock())
        return known;
    std::optional<ModelConfig> config = ModelConfig::read(source, log);
    if (!config)
        return nullptr;
    std::shared_ptr<Model> model(new Model(source.name, std::move(*config)));
    std::string error;
    if (!model->start(source, threads, error)) {
        log(LogLevel::Warning, source.fileName(model->m_config.file) + ' ' + error);
        return nullptr;
    }
    registry.models[key] = model;
    return model;
}

bool Model::start(const ModelSource &source, int threads, std::string &error)
{
    m_session = Session::load(source, m_config.file, threads, error);
    if (!m_session || !checkInput(error))
        return false;
    if (!m_config.scoresOutput.empty()) {
        if (!checkOutput("outputs.scores", m_config.scoresOutput, m_config.labels.size(), error))
            return false;
        m_outputNames.push_back(m_config.scoresOutput);
    }
    if (!m_config.embeddingOutput.empty()) {
        const std::size_t length = m_config.isClipKind() ? m_config.labelEmbeddings.front().size() : 0;
        if (!checkOutput("outputs.embedding", m_config.embeddingOutput, length, error))
            return false;
        m_outputNames.push_back(m_config.embeddingOutput);
    }
    // Sizes that the model leaves open, and operators that fail at work, show only in a run.
    return run(error);
}

bool Model::checkInput(std::string &error)
{
    const std::string &name = m_config.inputName;
    if (m_session->inputs().size() != 1) {
        error = "takes " + std::to_string(m_session->inputs().size()) + " inputs (" + namesOf(m_session->inputs()) + ") instead of one";
        return false;
    }
    const Session::TensorInfo *input = find(m_session->inputs(), name);
    if (!input) {
        error = "has no input \"" + name + "\" as \"input.name\" says, but " + namesOf(m_session->inputs());
        return false;
    }
    if (input->type == Session::ElementType::Other) {
        error = "takes neither floats nor bytes as input \"" + name + '"';
        return false;
    }
    const std::int64_t width = m_config.inputWidthPx;
    const std::int64_t height = m_config.inputHeightPx;
    const std::vector<std::int64_t> shape = m_config.layout == ModelConfig::Layout::Nchw ? std::vector<std::int64_t>{1, 3, height, width}
                                                                                         : std::vector<std::int64_t>{1, height, width, 3};
    const bool fits = input->shape.size() == shape.size()
        && std::equal(shape.begin(), shape.end(), input->shape.begin(),
            [](std::int64_t ours, std::int64_t models) { return models < 0 || models == ours; });
    if (!fits) {
        error = "takes input \"" + name + "\" of shape " + shapeText(input->shape) + ", but \"input\" describes " + shapeText(shape);
        return false;
    }
    m_inputType = input->type;
    if (m_inputType == Session::ElementType::Byte) {
        m_bytes.resize(m_preprocessor.valueCount());
        return m_session->bindInput(name, m_inputType, m_bytes.data(), m_bytes.size(), shape, error);
    }
    m_floats.resize(m_preprocessor.valueCount());
    return m_session->bindInput(name, m_inputType, m_floats.data(), m_floats.size() * sizeof(float), shape, error);
}

bool Model::checkOutput(const std::string &field, const std::string &name, std::size_t valueCount, std::string &error) const
{
    const Session::TensorInfo *output = find(m_session->outputs(), name);
    if (!output) {
        error = "has no output \"" + name + "\" as \"" + field + "\" says, but " + namesOf(m_session->outputs());
        return false;
    }
    if (output->type != Session::ElementType::Float) {
        error = "gives no floats as output \"" + name + '"';
        return false;
    }
    std::int64_t count = 1;
    for (const std::int64_t size : output->shape) {
        // The run tells open sizes; multiplying absurd ones would overflow.
        if (size < 0 || count > (std::int64_t{1} << 30))
            return true;
        count *= size;
    }
    if (valueCount != 0 && static_cast<std::size_t>(count) != valueCount) {
        error = "gives output \"" + name + "\" of shape " + shapeText(output->shape) + ", but \""
            + (m_config.isClipKind() ? "labelEmbeddings" : "labels") + "\" has " + std::to_string(valueCount)
            + (m_config.isClipKind() ? " values a row" : " entries");
        return false;
    }
    return true;
}

bool Model::run(std::string &error)
{
    if (!m_session->run(m_outputNames, m_results, error)) {
        error = "fails at work: " + error;
        return false;
    }
    for (std::size_t i = 0; i < m_results.size(); ++i) {
        const bool isScores = m_outputNames[i] == m_config.scoresOutput;
        const std::size_t expected = isScores ? m_config.labels.size()
            : m_config.isClipKind()           ? m_config.labelEmbeddings.front().size()
                                              : m_results[i].size();
        if (m_results[i].size() != expected || expected == 0) {
            error = "gives " + std::to_string(m_results[i].size()) + " values as output \"" + m_outputNames[i] + "\" instead of "
                + std::to_string(expected);
            return false;
        }
    }
    return true;
}

void Model::fillProbabilities()
{
    if (m_config.isClipKind()) {
        const std::vector<float> &embedding = m_results.back();
        m_probabilities.resize(m_config.labels.size());
        for (std::size_t label = 0; label < m_probabilities.size(); ++label) {
            const std::vector<float> &row = m_config.labelEmbeddings[label];
            float similarity = 0.0F;
            for (std::size_t i = 0; i < row.size(); ++i)
                similarity += row[i] * embedding[i];
            m_probabilities[label] = similarity;
        }
        softmax(m_probabilities, m_config.temperature);
        return;
    }
    m_probabilities = m_results.front();
    switch (m_config.activation) {
    case ModelConfig::Activation::Softmax:
        softmax(m_probabilities, m_config.temperature);
        break;
    case ModelConfig::Activation::Sigmoid:
        for (float &value : m_probabilities)
            value = 1.0F / (1.0F + std::exp(-value));
        break;
    case ModelConfig::Activation::None:
        for (float &value : m_probabilities)
            value = std::clamp(value, 0.0F, 1.0F);
        break;
    }
}

std::vector<bool> Model::scenesKept() const
{
    std::vector<bool> kept(m_probabilities.size(), m_probabilities.size() <= Descriptors::MaximumScenes);
    if (m_probabilities.size() <= Descriptors::MaximumScenes)
        return kept;
    std::vector<std::size_t> order(m_probabilities.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto end = order.begin() + static_cast<std::ptrdiff_t>(Descriptors::MaximumScenes);
    std::partial_sort(order.begin(), end, order.end(), [this](std::size_t left, std::size_t right) {
        return m_probabilities[left] > m_probabilities[right] || (m_probabilities[left] == m_probabilities[right] && left < right);
    });
    for (auto label = order.begin(); label != end; ++label)
        kept[*label] = true;
    return kept;
}

bool Model::describe(const ImageView &image, Descriptors &descriptors, std::string &error)
{
    const std::lock_guard<std::mutex> locker(m_mutex);
    if (m_inputType == Session::ElementType::Byte)
        m_preprocessor.fill(image, m_bytes.data());
    else
        m_preprocessor.fill(image, m_floats.data());
    if (!run(error))
        return false;
    for (const std::vector<float> &values : m_results) {
        if (!allFinite(values)) {
            error = "gives values that are no numbers";
            return false;
        }
    }
    if (!m_config.embeddingOutput.empty() && !normalize(m_results.back())) {
        error = "gives an embedding without a direction";
        return false;
    }
    fillProbabilities();

    std::map<std::string, double> occasions;
    descriptors.scenes.clear();
    descriptors.scenes.reserve(std::min(m_config.labels.size(), Descriptors::MaximumScenes));
    const std::vector<bool> kept = scenesKept();
    for (std::size_t label = 0; label < m_config.labels.size(); ++label) {
        if (kept[label])
            descriptors.scenes.push_back({m_config.labels[label], m_probabilities[label]});
        for (const auto &[keyword, weight] : m_config.occasionsOfLabel[label])
            occasions[keyword] += static_cast<double>(weight) * m_probabilities[label];
    }
    descriptors.occasions.clear();
    for (const auto &[keyword, probability] : occasions)
        descriptors.occasions.push_back({keyword, static_cast<float>(std::min(1.0, probability))});
    descriptors.embedding.clear();
    if (!m_config.embeddingOutput.empty())
        descriptors.embedding = m_results.back();
    return true;
}

} // namespace orrin
