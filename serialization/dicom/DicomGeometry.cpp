#include "serialization/dicom/DicomGeometry.h"

#include <algorithm>

namespace dicom {

namespace {

bool hasValue(const DicomHeader &header, Tag tag)
{
    return !header.text(tag).empty();
}

double firstNumber(const DicomHeader &header, Tag tag)
{
    const std::vector<double> values = header.numbers(tag);
    return values.empty() ? 0.0 : values.front();
}

// Row distance, then column distance; fewer than two when the file does not say.
std::vector<double> pixelSpacings(const DicomHeader &header)
{
    if (!header.perFramePixelSpacing.empty())
        return parseNumbers(header.perFramePixelSpacing);
    return header.numbers(hasValue(header, tags::imagerPixelSpacing) ? tags::imagerPixelSpacing
                                                                     : tags::pixelSpacing);
}

double orOne(double spacing)
{
    return spacing == 0.0 ? 1.0 : spacing;
}

} // namespace

Vector origin(const DicomHeader &header)
{
    for (const Tag tag : {tags::imagePosition, tags::imagePositionRetired}) {
        if (!hasValue(header, tag))
            continue;
        const std::vector<double> values = header.numbers(tag);
        return values.size() < 3 ? Vector{} : Vector{values[0], values[1], values[2]};
    }
    const Tag location = hasValue(header, tags::sliceLocation) ? tags::sliceLocation : tags::locationRetired;
    return {0.0, 0.0, firstNumber(header, location)};
}

std::array<double, 6> orientation(const DicomHeader &header)
{
    std::array<double, 6> result{1, 0, 0, 0, 1, 0};
    for (const Tag tag : {tags::imageOrientation, tags::imageOrientationRetired}) {
        const std::vector<double> values = header.numbers(tag);
        if (values.size() >= result.size()) {
            std::copy_n(values.begin(), result.size(), result.begin());
            break;
        }
    }
    return result;
}

Vector sliceNormal(const DicomHeader &header)
{
    const std::array<double, 6> d = orientation(header);
    return {d[1] * d[5] - d[2] * d[4], d[2] * d[3] - d[0] * d[5], d[0] * d[4] - d[1] * d[3]};
}

double xSpacing(const DicomHeader &header)
{
    const std::vector<double> values = pixelSpacings(header);
    return values.empty() ? 1.0 : orOne(values.size() > 1 ? values[1] : values[0]);
}

double ySpacing(const DicomHeader &header)
{
    const std::vector<double> values = pixelSpacings(header);
    return values.empty() ? 1.0 : orOne(values[0]);
}

double zSpacing(const DicomHeader &header)
{
    if (hasValue(header, tags::spacingBetweenSlices))
        return orOne(firstNumber(header, tags::spacingBetweenSlices));
    return hasValue(header, tags::sliceThickness) ? firstNumber(header, tags::sliceThickness) : 1.0;
}

std::optional<double> sliceLocation(const DicomHeader &header)
{
    const std::vector<double> values = header.numbers(tags::sliceLocation);
    return values.empty() ? std::nullopt : std::optional(values.front());
}

long frameCount(const DicomHeader &header)
{
    return header.integer(hasValue(header, tags::numberOfFrames) ? tags::numberOfFrames : tags::planes, 1);
}

double rescaleIntercept(const DicomHeader &header)
{
    return firstNumber(header, tags::rescaleIntercept);
}

double dot(const Vector &a, const Vector &b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

} // namespace dicom
