#pragma once

#include <optional>

#include <QCoreApplication>

#include "NyBookProject.h"

class QFileInfo;

/**
 * Book projects as files: JSON in UTF-8, the same in every locale.
 *
 * Reading is strict about what it knows and passes over keys that it does not know. Reentrant.
 */
class NYMODELBASE_EXPORT NyBookProjectFile
{
    Q_DECLARE_TR_FUNCTIONS(NyBookProjectFile)
public:
    /** The version that this program writes, and the newest that it reads. */
    static constexpr int FormatVersion = 1;
    /** A larger file is not read. */
    static constexpr qint64 MaximumBytes = 64 * 1024 * 1024;

    /** Either a project or the reason why there is none, fit to be shown: it names the file and the place in it. */
    struct Result
    {
        std::optional<NyBookProject> project;
        QString error;
    };

    /** Indented for people to read, unless that alone would make the file larger than MaximumBytes. */
    static QByteArray toJson(const NyBookProject &project);
    /** @p name stands for the file in the error text. */
    static Result fromJson(const QByteArray &json, const QString &name);
    static Result load(const QFileInfo &file);
};
