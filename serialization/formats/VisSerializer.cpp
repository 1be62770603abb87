#include "serialization/formats/VisSerializer.h"

#include "Common/Vis.h"
#include "objects/ImageObject.h"
#include "serialization/formats/VoxelFiles.h"

#include <ostream>

VisSerializer::VisSerializer()
    : StreamImageObjectSerializer(tr("Tallowbrook VIS format"), "application/x-tallowbrook-vis", "vis")
{}

bool VisSerializer::canSerialize(ImageObject *object)
{
    return VoxelFiles::voxelsOf(object) != nullptr;
}

bool VisSerializer::serialize(ImageObject *object, std::ostream &stream)
{
    if (!canSerialize(object) || stream.fail())
        return false;
    const QByteArray title = object->displayName().toLocal8Bit();
    const auto lock = VoxelFiles::lockVoxelsOf(object);
    return MERV::saveVis(stream, VoxelFiles::voxelsOf(object), title.constData(), nullptr, 0);
}
