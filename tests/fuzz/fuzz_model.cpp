// A model's model.json and what follows from it: the preprocessor works with whatever the reader let pass.
// The input is the model.json; what stands behind its first zero byte is the file "table.bin".

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include <OrrinModelConfig.h>
#include <OrrinPreprocessor.h>

#include "FuzzFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using FuzzFile::require;
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    const std::size_t end = std::min(bytes.find('\0'), size);
    const std::string_view table = end < size ? bytes.substr(end + 1) : std::string_view();
    const auto source = orrin::ModelSource::inMemory("memory", {{"model.json", bytes.substr(0, end)}, {"table.bin", table}});
    const auto config = orrin::ModelConfig::read(source, [](orrin::LogLevel, const std::string &line) { require(!line.empty()); });
    if (!config)
        return 0;
    require(config->inputWidthPx > 0 && config->inputHeightPx > 0);
    require(!config->file.empty() && config->file.front() != '/');
    require(config->temperature > 0.0F && std::isfinite(config->temperature));
    for (const float deviation : config->deviation)
        require(std::isfinite(1.0F / deviation));
    for (const std::vector<float> &row : config->labelEmbeddings)
        require(row.size() == config->labelEmbeddings.front().size());
    if (config->inputWidthPx * config->inputHeightPx > 300 * 300)
        return 0;
    orrin::Preprocessor preprocessor(*config);
    std::vector<float> values(preprocessor.valueCount());
    for (const auto &[width, height] : {std::pair(1, 1), std::pair(7, 5), std::pair(40, 1)}) {
        const std::vector<std::uint8_t> pixels(std::size_t(width * height * 3), 200);
        preprocessor.fill(orrin::ImageView{pixels.data(), width, height, std::ptrdiff_t(width) * 3}, values.data());
        require(std::all_of(values.begin(), values.end(), [](float value) { return !std::isnan(value); }));
    }
    return 0;
}
