#include "OrrinModelSource.h"

#include <algorithm>
#include <exception>
#include <fstream>

namespace orrin
{

namespace fs = std::filesystem;

namespace
{

const char *const ConfigFile = "model.json";

bool holdsModel(const fs::path &folder)
{
    std::error_code error;
    return fs::exists(folder / ConfigFile, error);
}

} // namespace

ModelSource ModelSource::inFolder(const fs::path &folder)
{
    return {folder.string(), folder, {}};
}

ModelSource ModelSource::inMemory(std::string name, std::vector<std::pair<std::string, std::string_view>> files)
{
    return {std::move(name), {}, std::move(files)};
}

std::vector<ModelSource> ModelSource::allIn(const fs::path &modelsFolder) noexcept
{
    try {
        std::vector<fs::path> folders;
        std::error_code error;
        for (fs::directory_iterator entry(modelsFolder, error), end; !error && entry != end; entry.increment(error)) {
            std::error_code ignored;
            if (entry->is_directory(ignored) && holdsModel(entry->path()))
                folders.push_back(entry->path());
        }
        std::sort(folders.begin(), folders.end());
        std::vector<ModelSource> sources;
        if (holdsModel(modelsFolder))
            sources.push_back(inFolder(modelsFolder));
        for (const fs::path &folder : folders)
            sources.push_back(inFolder(folder));
        return sources;
    } catch (const std::exception &) {
        return {};
    }
}

std::string ModelSource::fileName(const std::string &file) const
{
    return isInMemory() ? name + '/' + file : (folder / file).string();
}

std::optional<std::string> ModelSource::read(const std::string &file, std::size_t maximumBytes, std::string &error) const
{
    std::string content;
    if (isInMemory()) {
        const auto found = std::find_if(files.begin(), files.end(), [&file](const auto &entry) { return entry.first == file; });
        if (found == files.end()) {
            error = "is missing";
            return std::nullopt;
        }
        content = found->second;
    } else {
        std::error_code problem;
        const fs::path path = folder / file;
        if (!fs::exists(path, problem)) {
            error = "is missing";
            return std::nullopt;
        }
        // A pipe or a device in the model's place would never end.
        if (!fs::is_regular_file(path, problem)) {
            error = "is no file";
            return std::nullopt;
        }
        const std::uintmax_t size = fs::file_size(path, problem);
        if (!problem && size <= maximumBytes) {
            std::ifstream stream(path, std::ios::binary);
            content.resize(static_cast<std::size_t>(size));
            if (!stream.read(content.data(), static_cast<std::streamsize>(size))) {
                error = "cannot be read";
                return std::nullopt;
            }
        } else if (!problem) {
            error = "is larger than " + std::to_string(maximumBytes) + " bytes";
            return std::nullopt;
        } else {
            error = "cannot be read: " + problem.message();
            return std::nullopt;
        }
    }
    if (content.size() > maximumBytes) {
        error = "is larger than " + std::to_string(maximumBytes) + " bytes";
        return std::nullopt;
    }
    return content;
}

} // namespace orrin
