#include "serialization/formats/SlicSerializer.h"

#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "serialization/formats/LittleEndian.h"
#include "serialization/formats/SlicChunk.h"

#include <bit>
#include <cstdint>
#include <ostream>

namespace {

// Segments have no names of their own; files hold this one, whatever language the program speaks.
constexpr QStringView segmentName = u"some graphics object";

// The address, always taken through the same base class, for those of others of its bases would differ.
quint64 identityOf(const QObject *object)
{
    return reinterpret_cast<std::uintptr_t>(object);
}

quint64 nameSize(QStringView name)
{
    return SlicChunk::headerSize + 2 * static_cast<quint64>(name.size());
}

quint64 sizeOf(const SlicedContoursSegment &segment)
{
    return SlicChunk::headerSize + nameSize(segmentName) +
           SlicChunk::pointSize * static_cast<quint64>(segment.pointCount());
}

quint64 sizeOf(const SlicedContoursFragment &fragment)
{
    quint64 size = SlicChunk::headerSize + nameSize(fragment.label());
    for (int i = 0; i < fragment.segmentCount(); ++i)
        size += sizeOf(*fragment.segment(i));
    return size;
}

quint64 sizeOf(const SlicedContour &contour)
{
    return SlicChunk::headerSize + nameSize(contour.label()) +
           SlicChunk::referenceSize * static_cast<quint64>(contour.fragmentCount());
}

quint64 sizeOf(const SlicedContoursObject &contours)
{
    quint64 size = SlicChunk::headerSize + nameSize(contours.label());
    for (int i = 0; i < contours.fragmentCount(); ++i)
        size += sizeOf(*contours.fragment(i));
    for (int i = 0; i < contours.contourCount(); ++i)
        size += sizeOf(*contours.contour(i));
    return size;
}

void writeHeader(std::ostream &stream, const char (&tag)[5], quint64 identity, quint64 size)
{
    for (int i = 0; i < 4; ++i)
        writeLittleEndian(stream, static_cast<quint16>(tag[i]));
    writeLittleEndian(stream, identity);
    writeLittleEndian(stream, size);
}

// A name ends at a null character; zeros take the place of what follows, so that the size holds.
void writeName(std::ostream &stream, QStringView name)
{
    writeHeader(stream, "NAME", SlicChunk::noIdentity, nameSize(name));
    bool ended = false;
    for (const QChar character : name) {
        ended = ended || character.isNull();
        writeLittleEndian(stream, static_cast<quint16>(ended ? 0 : character.unicode()));
    }
}

void write(std::ostream &stream, const SlicedContoursSegment &segment)
{
    writeHeader(stream, "SEGM", identityOf(&segment), sizeOf(segment));
    writeName(stream, segmentName);
    const SegmentSnapshot line = segment.snapshot();
    for (const QPointF &point : line.points) {
        writeHeader(stream, "POIN", SlicChunk::pointIdentity, SlicChunk::pointSize);
        for (const double coordinate : {point.x(), point.y(), static_cast<double>(line.z)})
            writeLittleEndian(stream, std::bit_cast<quint64>(coordinate));
    }
}

void write(std::ostream &stream, const SlicedContoursFragment &fragment)
{
    writeHeader(stream, "FRAG", identityOf(&fragment), sizeOf(fragment));
    writeName(stream, fragment.label());
    for (int i = 0; i < fragment.segmentCount(); ++i)
        write(stream, *fragment.segment(i));
}

void write(std::ostream &stream, const SlicedContour &contour)
{
    writeHeader(stream, "CONT", identityOf(&contour), sizeOf(contour));
    writeName(stream, contour.label());
    for (int i = 0; i < contour.fragmentCount(); ++i) {
        writeHeader(stream, "FRRF", SlicChunk::noIdentity, SlicChunk::referenceSize);
        writeLittleEndian(stream, identityOf(contour.fragment(i)));
    }
}

void write(std::ostream &stream, const SlicedContoursObject &contours)
{
    writeHeader(stream, "SLIC", identityOf(&contours), sizeOf(contours));
    writeName(stream, contours.label());
    for (int i = 0; i < contours.fragmentCount(); ++i)
        write(stream, *contours.fragment(i));
    // Behind the fragments: a reader knows only those that it has met.
    for (int i = 0; i < contours.contourCount(); ++i)
        write(stream, *contours.contour(i));
}

} // namespace

SlicSerializer::SlicSerializer()
    : StreamImageObjectSerializer(tr("Sliced Contours"), "application/x-sliced-contours", "slic")
{}

bool SlicSerializer::canSerialize(ImageObject *object)
{
    return dynamic_cast<SlicedContoursObject *>(object) != nullptr;
}

bool SlicSerializer::serialize(ImageObject *object, std::ostream &stream)
{
    const auto *contours = dynamic_cast<SlicedContoursObject *>(object);
    if (contours == nullptr || stream.fail())
        return false;
    write(stream, *contours);
    stream.flush();
    return !stream.fail();
}
