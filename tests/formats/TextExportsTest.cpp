#include "serialization/formats/EdgePointLister.h"
#include "serialization/formats/TextSerializer.h"
#include "serialization/formats/TextSlicSerializer.h"

#include "contours/BasicSliceEdgePointExtractor.h"
#include "contours/EdgePoint.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "objects/SparselySampledImageObject.h"

#include <QPointF>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

namespace {

template <class Writer>
std::string textOf(ImageObject &object)
{
    std::ostringstream stream;
    Writer writer;
    EXPECT_TRUE(writer.serialize(&object, stream));
    return stream.str();
}

// An extractor with given points and no image.
class GivenPoints : public BasicSliceEdgePointExtractor
{
public:
    explicit GivenPoints(std::vector<std::vector<EdgePoint>> given)
        : BasicSliceEdgePointExtractor(nullptr)
    {
        points = std::move(given);
    }
};

} // namespace

TEST(TextSerializer, writesSamplesInTheOrderOfTheirPositions)
{
    SparselySampledImageObject samples;
    samples.setSample({2, 0, 0}, 1.5);
    samples.setSample({1, 5, -1}, -2);
    samples.setSample({1, 5, -2}, 1e-5);
    samples.setSample({1, -7.25, 100}, 123456.789);
    // By x, then y, then z; six significant digits.
    EXPECT_EQ(textOf<TextSerializer>(samples), "x\ty\tz\td\n"
                                               "1\t-7.25\t100\t123457\n"
                                               "1\t5\t-2\t1e-05\n"
                                               "1\t5\t-1\t-2\n"
                                               "2\t0\t0\t1.5\n");
}

TEST(TextSerializer, withoutSamples_isTheHeader)
{
    SparselySampledImageObject samples;
    EXPECT_EQ(textOf<TextSerializer>(samples), "x\ty\tz\td\n");
}

TEST(EdgePointLister, writesEightColumnsSliceBySlice)
{
    EdgePoint first(1.5f, 2.25f, 0.5f, 30);
    first.xS = 0.25f;
    first.gx = -1; // rising towards +x and +y alike: theta is pi / 4
    first.gy = -1;
    EdgePoint second(3, 4, 1.5f, 20);
    second.yS = 0.5f;
    second.gy = -2; // rising towards +y: theta pi / 2
    GivenPoints extractor({{first}, {second}});
    extractor.setLabel("edges of ä");
    // t is the shift along the gradient, negative for a shift in its direction; both shifts go against it.
    EXPECT_EQ(textOf<EdgePointLister>(extractor), "#edges of ä\n"
                                                  "x\ty\tz\txS\tyS\tzS\ttheta\tt\n"
                                                  "1.5\t2.25\t0.5\t0.25\t0\t0\t0.785398\t0.25\n"
                                                  "3\t4\t1.5\t0\t0.5\t0\t1.5708\t0.5\n");
}

TEST(EdgePointLister, refusesSetsThatAreNotSliceWise)
{
    EdgePointLister writer;
    EdgePointSet set;
    std::ostringstream stream;
    EXPECT_TRUE(writer.canSerialize(&set));
    EXPECT_FALSE(writer.serialize(&set, stream));
    EXPECT_EQ(stream.str(), "");
}

TEST(TextSlicSerializer, secondFragmentWithoutPoints_leavesTwoEmptyColumns)
{
    SlicedContoursObject contours("Knie ä");
    contours.newFragment("bone")->newSegment(QPointF(1, 2), 0.5f)->addPointBack(QPointF(3.5, 5));
    contours.newFragment("surface");
    EXPECT_EQ(textOf<TextSlicSerializer>(contours), "Knie ä\n"
                                                    "z\tbone\t\tsurface\n"
                                                    "0.5\t1\t2\t\t\n"
                                                    "0.5\t3.5\t5\t\t\n");
}

TEST(TextSlicSerializer, firstFragmentWithoutPoints_leavesTwoEmptyColumns)
{
    SlicedContoursObject contours("c");
    contours.newFragment("a");
    contours.newFragment("b")->newSegment(QPointF(1, 2), 3);
    EXPECT_EQ(textOf<TextSlicSerializer>(contours), "c\nz\ta\t\tb\n3\t\t\t1\t2\n");
}

TEST(TextSlicSerializer, levels_areInOrderOfFirstSightWithAHeaderEach)
{
    SlicedContoursObject contours("c");
    SlicedContoursFragment *a = contours.newFragment("a");
    SlicedContoursFragment *b = contours.newFragment("b");
    a->newSegment(QPointF(1, 1), 5);
    a->newSegment(QPointF(2, 2), 3);
    b->newSegment(QPointF(3, 3), 4);
    b->newSegment(QPointF(4, 4), 5);
    a->newSegment(QPointF(5, 6), 5); // joins the first segment's column
    EXPECT_EQ(textOf<TextSlicSerializer>(contours), "c\n"
                                                    "z\ta\t\tb\n5\t1\t1\t4\t4\n5\t5\t6\t\t\n"
                                                    "z\ta\t\tb\n3\t2\t2\t\t\n"
                                                    "z\ta\t\tb\n4\t\t\t3\t3\n");
}

TEST(TextSlicSerializer, numbersHaveSixDigits)
{
    SlicedContoursObject contours("c");
    contours.newFragment("a")->newSegment(QPointF(123.456789, 0.00001), 0.1f);
    EXPECT_EQ(textOf<TextSlicSerializer>(contours), "c\nz\ta\n0.1\t123.457\t1e-05\n");
}

TEST(TextSlicSerializer, withoutSegments_isTheLabel)
{
    SlicedContoursObject contours("c");
    contours.newFragment("a");
    EXPECT_EQ(textOf<TextSlicSerializer>(contours), "c\n");
}

TEST(TextSlicSerializer, levelThatIsNoNumber_isAHeaderWithoutRows)
{
    SlicedContoursObject contours("c");
    SlicedContoursFragment *a = contours.newFragment("a");
    a->newSegment(QPointF(1, 2), std::numeric_limits<float>::quiet_NaN());
    a->newSegment(QPointF(1, 2), std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(textOf<TextSlicSerializer>(contours), "c\nz\ta\nz\ta\n"); // it never equals itself
}

// A walk over all lines for each of their levels would take an hour, and the runner end the test.
TEST(TextSlicSerializer, hundredThousandsOfLevels_areWritten)
{
    constexpr int count = 200000;
    SlicedContoursObject contours("c");
    SlicedContoursFragment *a = contours.newFragment("a");
    for (int i = 0; i < count; ++i)
        a->newSegment(QPointF(1, 2), static_cast<float>(i));
    const std::string text = textOf<TextSlicSerializer>(contours);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 2 * count);
}

// Both zeros are one level; it is written as it was seen first.
TEST(TextSlicSerializer, zerosOfBothSigns_areOneLevel)
{
    SlicedContoursObject contours("c");
    contours.newFragment("a")->newSegment(QPointF(1, 2), -0.0f);
    contours.newFragment("b")->newSegment(QPointF(3, 4), 0.0f);
    EXPECT_EQ(textOf<TextSlicSerializer>(contours), "c\nz\ta\t\tb\n-0\t1\t2\t3\t4\n");
}
