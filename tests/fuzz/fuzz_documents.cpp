// The family's readers of XML and JSON files, and the project file of a book.

#include <QFileInfo>

#include <NyBookProjectFile.h>
#include <NyJsonParser.h>
#include <NyXMLParser.h>

#include "FuzzFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size > 0 && data[0] == '<') {
        NyXMLParser::parseFile(FuzzFile::write("bytes.xml", data, size));
        return 0;
    }
    const QString path = FuzzFile::write("bytes.json", data, size);
    NyJsonParser::loadDocument(QFileInfo(path));
    const NyBookProjectFile::Result result = NyBookProjectFile::load(QFileInfo(path));
    FuzzFile::require(result.project.has_value() == result.error.isEmpty());
    // What was read can be written and read again.
    if (result.project)
        FuzzFile::require(NyBookProjectFile::fromJson(NyBookProjectFile::toJson(*result.project), path).project.has_value());
    return 0;
}
