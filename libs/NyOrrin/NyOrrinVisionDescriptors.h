#pragma once

#include <utility>

#include <OrrinDescriptors.h>

/** What was seen in one photo. Value type, made by NyOrrinVisionDescriptorsBuilder. */
class NyOrrinVisionDescriptors
{
public:
    NyOrrinVisionDescriptors() = default;
    explicit NyOrrinVisionDescriptors(orrin::Descriptors descriptors)
        : m_descriptors(std::move(descriptors))
    {
    }

    /** Whether a picture was looked at at all. */
    bool isValid() const { return m_descriptors.isValid; }
    const orrin::Descriptors &descriptors() const { return m_descriptors; }

private:
    orrin::Descriptors m_descriptors;
};
