#pragma once

#include <QtCore/QString>

class NyHeifBackend;
class NyImageMetaDataBackend;

/** The plug-ins beside this library. Each is loaded on first use and stays. Thread-safe. */
namespace NyImageBackends
{

/** Null, after one warning, when the plug-in cannot be loaded. */
const NyHeifBackend *heif();
const NyImageMetaDataBackend *metaData();

/** Whether the plug-ins' files are there; loads nothing. */
bool hasHeif();
bool hasMetaData();

}
