#include "serialization/formats/SlicReader.h"

#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "serialization/formats/SlicChunk.h"
#include "serialization/framework/BinaryInputStream.h"

#include <algorithm>
#include <bit>
#include <limits>

SlicReader::SlicReader(BinaryInputStream &source)
    : stream(source)
{}

std::unique_ptr<SlicedContoursObject> SlicReader::read()
{
    const Header root = readHeader();
    if (stream.fail() || root.tag != "SLIC" || root.size < SlicChunk::headerSize)
        return nullptr;
    auto contours = std::make_unique<SlicedContoursObject>();
    if (!readChildren(root.size, *contours))
        return nullptr;
    return contours;
}

SlicReader::Header SlicReader::readHeader()
{
    Header header;
    header.tag = stream.readString(4);
    stream.readUInt64(header.identity).readUInt64(header.size);
    return header;
}

template <class Parent>
bool SlicReader::readChildren(quint64 size, Parent &parent)
{
    quint64 rest = size - SlicChunk::headerSize;
    while (rest > 0) {
        if (rest < SlicChunk::headerSize) {
            stream.skip(rest);
            return false;
        }
        const Header child = readHeader();
        if (stream.fail())
            return false;
        if (child.size > rest) {
            // A child that runs past its parent is taken for the parent's end.
            stream.skip(rest - SlicChunk::headerSize);
            return true;
        }
        if (child.size < SlicChunk::headerSize) {
            // No chunk can be so small. What is left of the parent goes, so that its neighbours stand.
            stream.skip(rest - SlicChunk::headerSize);
            return false;
        }
        readInto(parent, child);
        rest -= child.size;
    }
    return true;
}

void SlicReader::readInto(SlicedContoursObject &contours, const Header &header)
{
    if (header.tag == "NAME")
        readName(contours, header);
    else if (header.tag == "FRAG")
        readFragment(contours, header);
    else if (header.tag == "CONT")
        readContour(contours, header);
    else
        skipBody(header);
}

void SlicReader::readInto(SlicedContoursFragment &fragment, const Header &header)
{
    if (header.tag == "NAME")
        readName(fragment, header);
    else if (header.tag == "SEGM")
        readSegment(fragment, header);
    else
        skipBody(header);
}

void SlicReader::readInto(SlicedContoursSegment &segment, const Header &header)
{
    // Segments have no names of their own.
    if (header.tag == "POIN" && header.size == SlicChunk::pointSize)
        readPoint(segment);
    else
        skipBody(header);
}

void SlicReader::readInto(SlicedContour &contour, const Header &header)
{
    if (header.tag == "NAME")
        readName(contour, header);
    else if (header.tag == "FRRF" && header.size >= SlicChunk::referenceSize)
        readReference(contour, header);
    else
        skipBody(header);
}

void SlicReader::readFragment(SlicedContoursObject &contours, const Header &header)
{
    auto fragment = std::make_unique<SlicedContoursFragment>();
    if (!readChildren(header.size, *fragment))
        return;
    fragments.insert(header.identity, fragment.get());
    contours.addFragment(fragment.release());
}

void SlicReader::readContour(SlicedContoursObject &contours, const Header &header)
{
    auto contour = std::make_unique<SlicedContour>();
    if (readChildren(header.size, *contour))
        contours.addContour(contour.release());
}

void SlicReader::readSegment(SlicedContoursFragment &fragment, const Header &header)
{
    auto segment = std::make_unique<SlicedContoursSegment>();
    if (readChildren(header.size, *segment))
        fragment.addSegment(segment.release());
}

void SlicReader::readPoint(SlicedContoursSegment &segment)
{
    const double x = readDouble();
    const double y = readDouble();
    const double z = readDouble();
    if (stream.fail())
        return;
    // Thins collinear runs, and cuts the line where it comes back to a point of itself.
    segment.addPointBack(QPointF(x, y));
    segment.setZ(static_cast<float>(z));
}

void SlicReader::readReference(SlicedContour &contour, const Header &header)
{
    quint64 identity = 0;
    stream.readUInt64(identity);
    if (!stream.fail())
        contour.addFragmentReference(fragments.value(identity)); // ignores the null of an unknown one
    stream.skip(header.size - SlicChunk::referenceSize);
}

template <class Object>
void SlicReader::readName(Object &object, const Header &header)
{
    const quint64 bytes = header.size - SlicChunk::headerSize;
    const auto units = static_cast<int>(std::min<quint64>(bytes / 2, std::numeric_limits<int>::max()));
    const QString name = stream.readString(units);
    if (!stream.fail())
        object.setLabel(name);
    stream.skip(bytes - 2 * static_cast<quint64>(units));
}

double SlicReader::readDouble()
{
    quint64 bits = 0;
    stream.read(bits);
    return std::bit_cast<double>(bits);
}

void SlicReader::skipBody(const Header &header)
{
    stream.skip(header.size - SlicChunk::headerSize);
}
