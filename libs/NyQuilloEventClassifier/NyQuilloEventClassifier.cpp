#include "NyQuilloEventClassifier.h"

NyQuilloEventClassifier::NyQuilloEventClassifier(const QFileInfo& startFolder)
    : m_startFolder(startFolder)
{
}

NyQuilloEventClassifier::~NyQuilloEventClassifier() = default;

QList<NyEventFolderClassificationResult> NyQuilloEventClassifier::eventFolderTypes(const QFileInfo&, const NyEventFolderClassificationResult&)
{
    return {};
}
