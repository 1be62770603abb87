#include "serialization/formats/SlicUnserializer.h"

#include "contours/SlicedContoursObject.h"
#include "serialization/formats/SlicReader.h"
#include "serialization/framework/BufferPrependedStdBinaryInputStream.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<char, 8> magic{'S', 0, 'L', 0, 'I', 0, 'C', 0};

} // namespace

SlicUnserializer::SlicUnserializer()
    : AbstractImageObjectUnserializer(tr("Sliced Contours"), {"application/x-sliced-contours"}, {"slic"})
{}

bool SlicUnserializer::canUnserialize(const char *head)
{
    return std::equal(magic.begin(), magic.end(), head);
}

ImageObject *SlicUnserializer::unserialize(std::istream &stream, const char *prepended, int length)
{
    BufferPrependedStdBinaryInputStream binary(&stream, prepended, length);
    return SlicReader(binary).read().release();
}
