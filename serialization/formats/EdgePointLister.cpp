#include "serialization/formats/EdgePointLister.h"

#include "contours/BasicSliceEdgePointExtractor.h"
#include "contours/EdgePoint.h"

#include <ostream>

EdgePointLister::EdgePointLister()
    : StreamImageObjectSerializer(tr("Text file"), "text/tab-separated-values", "txt")
{}

bool EdgePointLister::canSerialize(ImageObject *object)
{
    return dynamic_cast<EdgePointSet *>(object) != nullptr;
}

bool EdgePointLister::serialize(ImageObject *object, std::ostream &stream)
{
    const auto *extractor = dynamic_cast<BasicSliceEdgePointExtractor *>(object);
    if (extractor == nullptr || stream.fail())
        return false;
    stream << '#' << object->label().toLocal8Bit().toStdString() << std::endl;
    stream << "x\ty\tz\txS\tyS\tzS\ttheta\tt" << std::endl;
    for (int slice = 0; slice < extractor->sliceCount(); ++slice) {
        for (const EdgePoint &point : extractor->slicePoints(slice)) {
            stream << point.x << '\t' << point.y << '\t' << point.z << '\t' << point.xS << '\t' << point.yS
                   << '\t' << point.zS << '\t' << point.theta() << '\t' << point.t() << std::endl;
        }
    }
    return true;
}
