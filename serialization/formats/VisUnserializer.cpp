#include "serialization/formats/VisUnserializer.h"

#include "Common/Progress.h"
#include "Common/Vis.h"
#include "objects/MervImageObject.h"

#include <QtEndian>

#include <memory>
#include <utility>

namespace {

struct RequiredWord
{
    int index; // of a 32-bit word in the head
    quint32 value;
};

constexpr RequiredWord requiredWords[] = {{0, 123456789}, {3, 1}, {8, 1}, {9, 0}, {13, 1}};

constexpr double readingShare = 0.85; // of the time of a load; the pictures of the slices take the rest

std::unique_ptr<MERV::Image> readVoxels(std::istream &stream)
{
    const MERV::ProgressStage stage(readingShare);
    return std::unique_ptr<MERV::Image>(MERV::loadVis(stream));
}

} // namespace

VisUnserializer::VisUnserializer(AskVoxelSize ask)
    : AbstractImageObjectUnserializer(tr("Tallowbrook VIS format"), {"application/x-tallowbrook-vis"},
                                      {"vis"})
    , askVoxelSize(std::move(ask))
{}

bool VisUnserializer::canUnserialize(const char *head)
{
    for (const RequiredWord &word : requiredWords) {
        if (qFromLittleEndian<quint32>(head + 4 * word.index) != word.value)
            return false;
    }
    return true;
}

VisUnserializer::VoxelSize VisUnserializer::ask(const MERV::Image &image) const
{
    const MERV::ProgressPause pause;
    return askVoxelSize({image.getWidth(), image.getHeight(), image.getDepth()});
}

ImageObject *VisUnserializer::unserialize(std::istream &stream)
{
    std::unique_ptr<MERV::Image> image = readVoxels(stream);
    if (image == nullptr)
        return nullptr;
    const auto size = ask(*image);
    if (!size)
        return nullptr;
    image->setSpacing((*size)[0], (*size)[1], (*size)[2], 1.0f);
    return new MervImageObject(image.release(), QString(), nullptr);
}
