#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include "OrrinImageView.h"
#include "OrrinLog.h"

/** Models of a test: a folder of .onnx files, and folders of models made from them. */
class OrrinTestModels
{
public:
    /** Runs the script that writes the .onnx files; empty on success, else what went wrong. */
    QString prepare()
    {
        QProcess script;
        script.start(
            QStringLiteral("/usr/bin/python3"), {QStringLiteral(ORRIN_TEST_MODELS_SCRIPT), m_folder.filePath(QStringLiteral("onnx"))});
        if (!script.waitForStarted() || !script.waitForFinished(50000) || script.exitCode() != 0)
            return QStringLiteral("the models could not be written, is python3-onnx installed? ")
                + QString::fromLocal8Bit(script.readAllStandardError()) + script.errorString();
        return {};
    }

    static QJsonObject labelConfig(const QString &onnxFile)
    {
        return {{QStringLiteral("file"), onnxFile},
            {QStringLiteral("input"),
                QJsonObject{
                    {QStringLiteral("name"), QStringLiteral("pixels")}, {QStringLiteral("width"), 8}, {QStringLiteral("height"), 8}}},
            {QStringLiteral("outputs"), QJsonObject{{QStringLiteral("scores"), QStringLiteral("scores")}}},
            {QStringLiteral("activation"), QStringLiteral("none")},
            {QStringLiteral("labels"), QJsonArray{QStringLiteral("red"), QStringLiteral("green"), QStringLiteral("blue")}}};
    }

    /** Makes a model's folder below "models" of a model.json and, if it exists, the .onnx file that it names. */
    std::filesystem::path add(const QString &name, const QByteArray &json, const QString &onnxFile = {})
    {
        const QString folder = m_folder.filePath(QStringLiteral("models/") + name);
        QDir().mkpath(folder);
        QFile file(folder + QStringLiteral("/model.json"));
        if (!file.open(QIODevice::WriteOnly) || file.write(json) != json.size())
            qFatal("cannot write a model.json");
        if (!onnxFile.isEmpty())
            QFile::copy(m_folder.filePath(QStringLiteral("onnx/") + onnxFile), folder + QLatin1Char('/') + onnxFile);
        return folder.toStdString();
    }

    std::filesystem::path add(const QString &name, const QJsonObject &config)
    {
        return add(name, QJsonDocument(config).toJson(), config.value(QStringLiteral("file")).toString());
    }

    QByteArray onnx(const QString &file) const
    {
        QFile source(m_folder.filePath(QStringLiteral("onnx/") + file));
        return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
    }

    std::filesystem::path folder() const { return m_folder.filePath(QStringLiteral("models")).toStdString(); }

private:
    QTemporaryDir m_folder;
};

/** Keeps what was logged. */
struct OrrinTestLog
{
    std::vector<std::string> warnings;
    std::vector<std::string> infos;

    orrin::LogCallback callback()
    {
        return [this](orrin::LogLevel level, const std::string &text) {
            (level == orrin::LogLevel::Warning ? warnings : infos).push_back(text);
        };
    }
    QByteArray all() const
    {
        QByteArray text;
        for (const std::string &line : warnings)
            text += QByteArray::fromStdString(line) + '\n';
        return text;
    }
};

/** A picture in memory. */
struct OrrinTestPicture
{
    std::vector<std::uint8_t> bytes;
    int width;
    int height;

    OrrinTestPicture(int theWidth, int theHeight, std::array<std::uint8_t, 3> color = {0, 0, 0})
        : width(theWidth)
        , height(theHeight)
    {
        for (int i = 0; i < width * height; ++i)
            bytes.insert(bytes.end(), color.begin(), color.end());
    }
    void set(int x, int y, std::array<std::uint8_t, 3> color)
    {
        std::copy(color.begin(), color.end(), bytes.begin() + 3 * (y * width + x));
    }
    orrin::ImageView view() const { return {bytes.data(), width, height, 3 * width}; }
};
