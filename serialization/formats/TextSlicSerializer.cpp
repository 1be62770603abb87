#include "serialization/formats/TextSlicSerializer.h"

#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"

#include <QPointF>

#include <algorithm>
#include <ostream>
#include <vector>

namespace {

using Points = std::vector<QPointF>;

// The z of all segments, each once, in the order of first sight: not sorted, equal if exactly equal.
std::vector<float> levelsOf(const SlicedContoursObject &contours)
{
    std::vector<float> levels;
    for (int i = 0; i < contours.fragmentCount(); ++i) {
        const SlicedContoursFragment *fragment = contours.fragment(i);
        for (int k = 0; k < fragment->segmentCount(); ++k) {
            const float z = fragment->segment(k)->z();
            if (std::find(levels.begin(), levels.end(), z) == levels.end())
                levels.push_back(z);
        }
    }
    return levels;
}

// The points of all segments of a fragment at exactly this z, segment after segment.
Points pointsAt(const SlicedContoursFragment &fragment, float z)
{
    Points points;
    for (const SegmentSnapshot &segment : fragment.snapshots(z, z))
        points.insert(points.end(), segment.points.begin(), segment.points.end());
    return points;
}

void writeHeader(const SlicedContoursObject &contours, std::ostream &stream)
{
    stream << "z\t";
    for (int i = 0; i < contours.fragmentCount(); ++i)
        stream << (i > 0 ? "\t\t" : "") << contours.fragment(i)->label().toLocal8Bit().toStdString();
    stream << std::endl;
}

void writeRow(const std::vector<Points> &columns, std::size_t row, float z, std::ostream &stream)
{
    stream << z << '\t';
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (i > 0)
            stream << '\t';
        if (row < columns[i].size())
            stream << columns[i][row].x() << '\t' << columns[i][row].y();
        else
            stream << '\t'; // two empty columns
    }
    stream << std::endl;
}

void writeLevel(const SlicedContoursObject &contours, float z, std::ostream &stream)
{
    writeHeader(contours, stream);
    std::vector<Points> columns;
    std::size_t rows = 0;
    for (int i = 0; i < contours.fragmentCount(); ++i) {
        columns.push_back(pointsAt(*contours.fragment(i), z));
        rows = std::max(rows, columns.back().size());
    }
    for (std::size_t row = 0; row < rows; ++row)
        writeRow(columns, row, z, stream);
}

} // namespace

TextSlicSerializer::TextSlicSerializer()
    : StreamImageObjectSerializer(tr("Text file"), "text/tab-separated-values", "txt")
{}

bool TextSlicSerializer::canSerialize(ImageObject *object)
{
    return dynamic_cast<SlicedContoursObject *>(object) != nullptr;
}

bool TextSlicSerializer::serialize(ImageObject *object, std::ostream &stream)
{
    const auto *contours = dynamic_cast<SlicedContoursObject *>(object);
    if (contours == nullptr || stream.fail())
        return false;
    stream << contours->label().toLocal8Bit().toStdString() << std::endl;
    for (const float z : levelsOf(*contours))
        writeLevel(*contours, z, stream);
    return true;
}
