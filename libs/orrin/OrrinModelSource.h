#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orrin_export.h"

namespace orrin
{

/** Where a model comes from: a folder with model.json and the files that it names, or such files in memory. */
struct ORRIN_EXPORT ModelSource
{
    /** For log lines: the folder, or what the program calls its built-in model. */
    std::string name;
    /** Empty for a model in memory. */
    std::filesystem::path folder;
    /** File names and contents of a model in memory. The contents belong to the caller and stay valid as long as the source is used. */
    std::vector<std::pair<std::string, std::string_view>> files;

    static ModelSource inFolder(const std::filesystem::path &folder);
    static ModelSource inMemory(std::string name, std::vector<std::pair<std::string, std::string_view>> files);

    /**
     * The models of a folder of models: itself if it holds a model.json, then its subfolders that do, by name. A folder that
     * cannot be read gives none.
     */
    static std::vector<ModelSource> allIn(const std::filesystem::path &modelsFolder) noexcept;

    bool isInMemory() const { return folder.empty(); }
    /** The file's name as log lines show it. */
    std::string fileName(const std::string &file) const;
    /** The whole file; nothing, and the reason in @p error, when it is missing, unreadable or larger than @p maximumBytes. */
    std::optional<std::string> read(const std::string &file, std::size_t maximumBytes, std::string &error) const;
};

} // namespace orrin
