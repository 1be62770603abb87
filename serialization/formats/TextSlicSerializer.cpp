#include "serialization/formats/TextSlicSerializer.h"

#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"

#include <QPointF>

#include <algorithm>
#include <cmath>
#include <map>
#include <ostream>
#include <set>
#include <utility>
#include <vector>

namespace {

using Points = std::vector<QPointF>;
using LevelPoints = std::map<float, Points>;

// The z of all segments, each once, in the order of first sight: not sorted, equal if exactly equal.
std::vector<float> levelsOf(const SlicedContoursObject &contours)
{
    std::vector<float> levels;
    std::set<float> seen;
    for (int i = 0; i < contours.fragmentCount(); ++i) {
        const SlicedContoursFragment *fragment = contours.fragment(i);
        for (int k = 0; k < fragment->segmentCount(); ++k) {
            const float z = fragment->segment(k)->z();
            if (std::isnan(z) || seen.insert(z).second) // what is no number never equals itself
                levels.push_back(z);
        }
    }
    return levels;
}

// The points of all segments of a fragment by z, segment after segment.
LevelPoints pointsOf(const SlicedContoursFragment &fragment)
{
    LevelPoints levels;
    for (int k = 0; k < fragment.segmentCount(); ++k) {
        const SegmentSnapshot segment = fragment.segment(k)->snapshot();
        if (std::isnan(segment.z))
            continue;
        Points &points = levels[segment.z];
        points.insert(points.end(), segment.points.begin(), segment.points.end());
    }
    return levels;
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

// Each level is written once, so its points may be taken away.
void writeLevel(std::vector<LevelPoints> &fragments, float z, std::ostream &stream)
{
    std::vector<Points> columns;
    std::size_t rows = 0;
    for (LevelPoints &levels : fragments) {
        const auto level = std::isnan(z) ? levels.end() : levels.find(z);
        columns.push_back(level != levels.end() ? std::move(level->second) : Points());
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
    std::vector<LevelPoints> fragments;
    fragments.reserve(static_cast<std::size_t>(contours->fragmentCount()));
    for (int i = 0; i < contours->fragmentCount(); ++i)
        fragments.push_back(pointsOf(*contours->fragment(i)));
    for (const float z : levelsOf(*contours)) {
        writeHeader(*contours, stream);
        writeLevel(fragments, z, stream);
    }
    return true;
}
