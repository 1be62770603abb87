#include "serialization/dicom/DicomDictionary.h"

#include <gdcmDict.h>
#include <gdcmDicts.h>
#include <gdcmGlobal.h>

#include <cstdio>

namespace dicom {

namespace {

bool isPrivate(Tag tag)
{
    return (tag >> 16) % 2 != 0;
}

const gdcm::DictEntry &entry(Tag tag)
{
    static const gdcm::Dict &dictionary = gdcm::Global::GetInstance().GetDicts().GetPublicDict();
    return dictionary.GetDictEntry(gdcm::Tag(tag));
}

} // namespace

std::string tagName(Tag tag)
{
    if (!isPrivate(tag)) {
        const char *name = entry(tag).GetName();
        if (name != nullptr && *name != '\0')
            return name;
    }
    char unknown[40];
    std::snprintf(unknown, sizeof unknown, "gdcm::Unknown (%04X, %04X)", tag >> 16, tag & 0xFFFFU);
    return unknown;
}

ValueRepresentation dictionaryRepresentation(Tag tag, bool signedPixels)
{
    constexpr Tag elementMask = 0xFFFF;
    if ((tag & elementMask) == 0)
        return {'U', 'L'}; // group length
    if (isPrivate(tag))
        return {'U', 'N'};
    switch (static_cast<gdcm::VR::VRType>(entry(tag).GetVR())) {
    case gdcm::VR::US_SS:
        return signedPixels ? ValueRepresentation{'S', 'S'} : ValueRepresentation{'U', 'S'};
    case gdcm::VR::US_SS_OW:
    case gdcm::VR::US_OW:
    case gdcm::VR::OB_OW:
        return {'O', 'W'};
    case gdcm::VR::INVALID:
        return {'U', 'N'};
    default:
        break;
    }
    const char *name = gdcm::VR::GetVRString(entry(tag).GetVR());
    if (name == nullptr || name[0] == '\0' || name[1] == '\0' || name[2] != '\0')
        return {'U', 'N'};
    return {name[0], name[1]};
}

} // namespace dicom
