#include "OrrinModelConfig.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace orrin
{

namespace
{

using Json = nlohmann::json;

constexpr std::size_t MaximumConfigBytes = std::size_t{64} << 20;
constexpr std::size_t MaximumTableBytes = std::size_t{256} << 20;
constexpr int MaximumSidePx = 2048;
constexpr int MaximumDepth = 64;
constexpr std::size_t MaximumLabels = 100000;

class FieldError : public std::runtime_error
{
public:
    FieldError(const std::string &field, const std::string &problem)
        : std::runtime_error("\"" + field + "\" " + problem)
    {
    }
};

std::string shortened(const Json &value)
{
    std::string text = value.dump(-1, ' ', true, Json::error_handler_t::replace);
    if (text.size() > 60)
        text = text.substr(0, 57) + "...";
    return text;
}

/** What works on parsed JSON calls itself for each level. */
bool isNestedTooDeeply(std::string_view json)
{
    int depth = 0;
    bool isText = false;
    for (std::size_t i = 0; i < json.size(); ++i) {
        const char letter = json[i];
        if (isText) {
            if (letter == '\\')
                ++i;
            else
                isText = letter != '"';
        } else if (letter == '"') {
            isText = true;
        } else if (letter == '[' || letter == '{') {
            if (++depth > MaximumDepth)
                return true;
        } else if (letter == ']' || letter == '}') {
            --depth;
        }
    }
    return false;
}

/** Reads one object's fields; names in messages carry the path to the object. */
class FieldReader
{
public:
    FieldReader(const Json &object, std::string path)
        : m_object(object)
        , m_path(std::move(path))
    {
        if (!object.is_object())
            throw FieldError(m_path, "must be an object, but is " + shortened(object));
    }

    std::string pathOf(const std::string &field) const { return m_path.empty() ? field : m_path + '.' + field; }

    const Json *find(const std::string &field)
    {
        m_known.push_back(field);
        const auto found = m_object.find(field);
        return found == m_object.end() ? nullptr : &*found;
    }

    const Json &required(const std::string &field)
    {
        const Json *value = find(field);
        if (!value)
            throw FieldError(pathOf(field), "is missing");
        return *value;
    }

    std::string text(const std::string &field) { return asText(field, required(field)); }

    std::string optionalText(const std::string &field)
    {
        const Json *value = find(field);
        return value ? asText(field, *value) : std::string();
    }

    int wholeNumber(const std::string &field, int least, int most)
    {
        const Json &value = required(field);
        const bool fits = value.is_number_unsigned() ? value.get<std::uint64_t>() <= static_cast<std::uint64_t>(most) : false;
        if (!fits || value.get<std::uint64_t>() < static_cast<std::uint64_t>(least)) {
            throw FieldError(pathOf(field),
                "must be a whole number from " + std::to_string(least) + " to " + std::to_string(most) + ", but is " + shortened(value));
        }
        return value.get<int>();
    }

    template <class Value>
    Value choice(const std::string &field, std::initializer_list<std::pair<const char *, Value>> choices, Value fallback)
    {
        const Json *value = find(field);
        if (!value)
            return fallback;
        std::string names;
        for (const auto &[name, result] : choices) {
            if (value->is_string() && value->get_ref<const std::string &>() == name)
                return result;
            names += (names.empty() ? "" : ", ") + std::string(name);
        }
        throw FieldError(pathOf(field), "must be one of " + names + ", but is " + shortened(*value));
    }

    std::vector<std::string> unknownFields() const
    {
        std::vector<std::string> unknown;
        for (const auto &item : m_object.items()) {
            if (std::find(m_known.begin(), m_known.end(), item.key()) == m_known.end())
                unknown.push_back(pathOf(item.key()));
        }
        return unknown;
    }

private:
    std::string asText(const std::string &field, const Json &value) const
    {
        if (!value.is_string() || value.get_ref<const std::string &>().empty())
            throw FieldError(pathOf(field), "must be a text, but is " + shortened(value));
        return value.get<std::string>();
    }

    const Json &m_object;
    std::string m_path;
    std::vector<std::string> m_known;
};

float finiteNumber(const Json &value, const std::string &path)
{
    if (value.is_number()) {
        const double number = value.get<double>();
        if (std::isfinite(number) && std::abs(number) <= std::numeric_limits<float>::max())
            return static_cast<float>(number);
    }
    throw FieldError(path, "must be a number, but is " + shortened(value));
}

std::array<float, 3> threeNumbers(const Json &value, const std::string &path)
{
    if (!value.is_array() || value.size() != 3)
        throw FieldError(path, "must be three numbers, but is " + shortened(value));
    std::array<float, 3> numbers{};
    for (std::size_t i = 0; i < 3; ++i)
        numbers[i] = finiteNumber(value[i], path);
    return numbers;
}

/** Keeps model.json from naming files outside its folder. */
std::string checkedFileName(const std::string &file, const std::string &path)
{
    const std::filesystem::path name(file);
    const bool leadsUp = std::any_of(name.begin(), name.end(), [](const auto &part) { return part == ".."; });
    if (name.is_absolute() || leadsUp || file.find('\0') != std::string::npos)
        throw FieldError(path, "must name a file in the model's own folder, but is \"" + file + '"');
    return file;
}

void readInput(const Json &value, ModelConfig &config, std::vector<std::string> &unknown)
{
    FieldReader input(value, "input");
    config.inputName = input.text("name");
    config.inputWidthPx = input.wholeNumber("width", 1, MaximumSidePx);
    config.inputHeightPx = input.wholeNumber("height", 1, MaximumSidePx);
    config.layout = input.choice<ModelConfig::Layout>(
        "layout", {{"NCHW", ModelConfig::Layout::Nchw}, {"NHWC", ModelConfig::Layout::Nhwc}}, config.layout);
    config.channelOrder = input.choice<ModelConfig::ChannelOrder>(
        "channels", {{"RGB", ModelConfig::ChannelOrder::Rgb}, {"BGR", ModelConfig::ChannelOrder::Bgr}}, config.channelOrder);
    config.fit = input.choice<ModelConfig::Fit>(
        "fit", {{"crop", ModelConfig::Fit::Crop}, {"stretch", ModelConfig::Fit::Stretch}, {"pad", ModelConfig::Fit::Pad}}, config.fit);
    if (const Json *mean = input.find("mean"))
        config.mean = threeNumbers(*mean, "input.mean");
    if (const Json *deviation = input.find("deviation")) {
        config.deviation = threeNumbers(*deviation, "input.deviation");
        for (const float number : config.deviation) {
            if (!(number > 1e-6F))
                throw FieldError("input.deviation", "must be above 0, but is " + shortened(*deviation));
        }
    }
    for (const std::string &field : input.unknownFields())
        unknown.push_back(field);
}

void readOutputs(const Json &value, ModelConfig &config, std::vector<std::string> &unknown)
{
    FieldReader outputs(value, "outputs");
    config.scoresOutput = outputs.optionalText("scores");
    config.embeddingOutput = outputs.optionalText("embedding");
    if (config.scoresOutput.empty() && config.embeddingOutput.empty())
        throw FieldError("outputs", "must name \"scores\" or \"embedding\"");
    for (const std::string &field : outputs.unknownFields())
        unknown.push_back(field);
}

void readLabels(const Json &value, ModelConfig &config)
{
    if (!value.is_array() || value.empty() || value.size() > MaximumLabels)
        throw FieldError("labels", "must be a list of 1 to " + std::to_string(MaximumLabels) + " texts, but is " + shortened(value));
    for (const Json &label : value) {
        if (!label.is_string() || label.get_ref<const std::string &>().empty())
            throw FieldError("labels", "must hold texts only, but holds " + shortened(label));
        config.labels.push_back(label.get<std::string>());
    }
    std::vector<std::string> sorted = config.labels;
    std::sort(sorted.begin(), sorted.end());
    const auto twice = std::adjacent_find(sorted.begin(), sorted.end());
    if (twice != sorted.end())
        throw FieldError("labels", "holds \"" + *twice + "\" more than once");
}

/** Four bytes of a little-endian IEEE 754 number. */
float littleEndianFloat(const char *bytes)
{
    std::uint32_t bits = 0;
    for (int i = 3; i >= 0; --i)
        bits = (bits << 8) | static_cast<unsigned char>(bytes[i]);
    return std::bit_cast<float>(bits);
}

void readEmbeddingFile(const std::string &file, const ModelSource &source, ModelConfig &config)
{
    std::string error;
    const std::optional<std::string> content = source.read(file, MaximumTableBytes, error);
    if (!content)
        throw FieldError("labelEmbeddings", "names " + file + ", which " + error);
    const std::size_t rowCount = config.labels.size();
    if (content->empty() || content->size() % (rowCount * 4) != 0) {
        throw FieldError("labelEmbeddings",
            "names " + file + " of " + std::to_string(content->size()) + " bytes, which is no whole number of 4-byte values for each of "
                + std::to_string(rowCount) + " labels");
    }
    const std::size_t length = content->size() / (rowCount * 4);
    const char *bytes = content->data();
    for (std::size_t row = 0; row < rowCount; ++row) {
        std::vector<float> &values = config.labelEmbeddings.emplace_back(length);
        for (float &number : values) {
            number = littleEndianFloat(bytes);
            bytes += 4;
        }
    }
}

void readEmbeddingRows(const Json &value, ModelConfig &config)
{
    if (!value.is_array() || value.size() != config.labels.size()) {
        throw FieldError("labelEmbeddings",
            "must be a file name or a row for each of the " + std::to_string(config.labels.size()) + " labels, but is " + shortened(value));
    }
    for (const Json &row : value) {
        if (!row.is_array() || row.empty() || row.size() != value[0].size())
            throw FieldError("labelEmbeddings", "must have rows of one length, but has " + shortened(row));
        std::vector<float> &values = config.labelEmbeddings.emplace_back();
        for (const Json &number : row)
            values.push_back(finiteNumber(number, "labelEmbeddings"));
    }
}

void readLabelEmbeddings(const Json &value, const ModelSource &source, ModelConfig &config)
{
    if (value.is_string())
        readEmbeddingFile(checkedFileName(value.get<std::string>(), "labelEmbeddings"), source, config);
    else
        readEmbeddingRows(value, config);
    for (std::size_t row = 0; row < config.labelEmbeddings.size(); ++row) {
        double squares = 0.0;
        for (const float number : config.labelEmbeddings[row])
            squares += static_cast<double>(number) * number;
        if (!std::isfinite(squares) || squares < 1e-12)
            throw FieldError("labelEmbeddings", "has a row without a direction for the label \"" + config.labels[row] + '"');
        const double length = std::sqrt(squares);
        for (float &number : config.labelEmbeddings[row])
            number = static_cast<float>(number / length);
    }
}

void readOccasions(const Json &value, ModelConfig &config)
{
    config.occasionsOfLabel.resize(config.labels.size());
    if (!value.is_object())
        throw FieldError("occasions", "must be an object, but is " + shortened(value));
    for (const auto &item : value.items()) {
        const std::string path = "occasions." + item.key();
        const auto label = std::find(config.labels.begin(), config.labels.end(), item.key());
        if (label == config.labels.end())
            throw FieldError(path, "is none of the labels");
        auto &occasions = config.occasionsOfLabel[static_cast<std::size_t>(label - config.labels.begin())];
        const Json &target = item.value();
        if (target.is_string() && !target.get_ref<const std::string &>().empty()) {
            occasions.emplace_back(target.get<std::string>(), 1.0F);
        } else if (target.is_object() && !target.empty()) {
            for (const auto &entry : target.items()) {
                const float weight = finiteNumber(entry.value(), path + '.' + entry.key());
                if (!(weight > 0.0F && weight <= 1.0F))
                    throw FieldError(path + '.' + entry.key(), "must be above 0 and at most 1, but is " + shortened(entry.value()));
                occasions.emplace_back(entry.key(), weight);
            }
        } else {
            throw FieldError(path, "must be an occasion or an object of occasions and weights, but is " + shortened(target));
        }
    }
}

ModelConfig parsed(const Json &json, const ModelSource &source, std::vector<std::string> &unknown)
{
    ModelConfig config;
    if (!json.is_object())
        throw std::runtime_error("holds no object");
    FieldReader fields(json, {});
    config.file = checkedFileName(fields.text("file"), "file");
    readInput(fields.required("input"), config, unknown);
    readOutputs(fields.required("outputs"), config, unknown);
    readLabels(fields.required("labels"), config);
    const Json *table = fields.find("labelEmbeddings");
    if (table) {
        if (config.embeddingOutput.empty())
            throw FieldError("outputs.embedding", "is missing, and \"labelEmbeddings\" needs it");
        if (!config.scoresOutput.empty())
            throw FieldError("outputs.scores", "does not go together with \"labelEmbeddings\"");
        readLabelEmbeddings(*table, source, config);
    } else if (config.scoresOutput.empty()) {
        throw FieldError("outputs.scores", "is missing, and without \"labelEmbeddings\" it is needed");
    }
    config.activation = fields.choice<ModelConfig::Activation>("activation",
        {{"none", ModelConfig::Activation::None}, {"softmax", ModelConfig::Activation::Softmax},
            {"sigmoid", ModelConfig::Activation::Sigmoid}},
        config.activation);
    if (table && config.activation != ModelConfig::Activation::Softmax)
        throw FieldError("activation", "must be softmax beside \"labelEmbeddings\"");
    if (const Json *temperature = fields.find("temperature")) {
        config.temperature = finiteNumber(*temperature, "temperature");
        if (!(config.temperature >= 1e-4F))
            throw FieldError("temperature", "must be at least 0.0001, but is " + shortened(*temperature));
    } else if (table) {
        // Contrastive models of this kind are trained with similarities scaled by about 100.
        config.temperature = 0.01F;
    }
    config.occasionsOfLabel.resize(config.labels.size());
    if (const Json *occasions = fields.find("occasions"))
        readOccasions(*occasions, config);
    for (const char *remark : {"name", "description", "license", "source"})
        fields.find(remark);
    for (const std::string &field : fields.unknownFields())
        unknown.push_back(field);
    return config;
}

} // namespace

std::optional<ModelConfig> ModelConfig::read(const ModelSource &source, const LogCallback &log)
{
    const std::string fileName = source.fileName("model.json");
    std::string error;
    const std::optional<std::string> text = source.read("model.json", MaximumConfigBytes, error);
    if (!text) {
        log(LogLevel::Warning, fileName + ' ' + error);
        return std::nullopt;
    }
    if (isNestedTooDeeply(*text)) {
        log(LogLevel::Warning, fileName + " is nested too deeply");
        return std::nullopt;
    }
    try {
        std::vector<std::string> unknown;
        ModelConfig config = parsed(Json::parse(*text), source, unknown);
        for (const std::string &field : unknown)
            log(LogLevel::Warning, fileName + ": \"" + field + "\" is no known field");
        return config;
    } catch (const Json::parse_error &problem) {
        const std::string_view before(text->data(), std::min(problem.byte == 0 ? 0 : problem.byte - 1, text->size()));
        const auto line = std::count(before.begin(), before.end(), '\n') + 1;
        const std::size_t lineBegin = before.rfind('\n');
        const std::size_t column = before.size() - (lineBegin == std::string_view::npos ? 0 : lineBegin + 1) + 1;
        log(LogLevel::Warning, fileName + " is no JSON, line " + std::to_string(line) + ", column " + std::to_string(column));
    } catch (const std::exception &problem) {
        log(LogLevel::Warning, fileName + ": " + problem.what());
    }
    return std::nullopt;
}

} // namespace orrin
