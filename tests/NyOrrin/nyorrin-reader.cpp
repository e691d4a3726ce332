#include <NyOrrinAccess.h>

/** Uses image understanding the way a library of the family does. */
extern "C" __attribute__((visibility("default"))) bool nyOrrinReaderProcesses(const QImage &image)
{
    NyOrrinVisionDescriptorsBuilder descriptors;
    return NyOrrinAccess::instance().process(image, descriptors);
}
