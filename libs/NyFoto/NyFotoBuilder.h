#pragma once

#include <QtCore/QUrl>

#include "NyFotoList.h"
#include "NySingleton.h"
#include "nyfoto_export.h"

/** Makes photo lists from places. Thread-safe. */
class NYFOTO_EXPORT NyFotoBuilder : public NySingleton<NyFotoBuilder>
{
public:
    NyFotoBuilder();
    ~NyFotoBuilder() override;

    /**
     * The readable photos of the folder at the URL and of all folders below it, except those that NyDirectoryConfig names as ignorable.
     * First a folder's own photos by name, then its subfolders by name. Links to folders are followed, each folder is
     * visited once. The URL of a file gives this one file if it is a photo. Anything else gives an empty list; a folder that
     * cannot be read, and names that are no valid UTF-8, give a warning, the first time in a process, and are left out.
     */
    virtual NyFotoList fotosFromUrl(const QUrl &url);
};
