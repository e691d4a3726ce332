#pragma once

#include <memory>

#include <QtGui/QImage>

#include <NySingleton.h>
#include <OrrinRuntime.h>

#include "NyOrrinCurator.h"
#include "NyOrrinVisionDescriptorsBuilder.h"
#include "nyorrin_export.h"

/**
 * The way to image understanding. The model is loaded when the first picture comes: the user's, else the installation's, else the
 * one inside the program. Thread-safe; pictures are looked at one after the other.
 */
class NYORRIN_EXPORT NyOrrinAccess : public NySingleton<NyOrrinAccess>
{
public:
    NyOrrinAccess();
    ~NyOrrinAccess() override;

    /** Fills the descriptors of an upright picture. False, and empty descriptors, for a null picture. */
    bool process(const QImage &image, NyOrrinVisionDescriptorsBuilder &descriptors);
    NyOrrinCurator getCurator() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};
