#include "NyEventFolderClassificationResult.h"

#include <QtCore/QHashFunctions>

NyEventFolderClassificationResult::NyEventFolderClassificationResult() = default;

NyEventFolderClassificationResult::NyEventFolderClassificationResult(const QFileInfo &directory, const NyEventFolderType &classification)
    : m_directory(directory)
    , m_classification(classification)
    , m_directoryPath(directory.absoluteFilePath())
{
}

NyEventFolderClassificationResult::~NyEventFolderClassificationResult() = default;

void NyEventFolderClassificationResult::setOccasionInformation(const NyOccasionInfoList &occasions)
{
    m_occasionInformation = occasions;
}

void NyEventFolderClassificationResult::expandTo(const NyEventFolderType &classification)
{
    m_classification.expandTo(classification);
}

bool NyEventFolderClassificationResult::operator==(const NyEventFolderClassificationResult &other) const
{
    return m_classification.value() == other.m_classification.value() && m_directoryPath == other.m_directoryPath;
}

size_t qHash(const NyEventFolderClassificationResult &result) noexcept
{
    return qHash(result.directoryPath());
}
