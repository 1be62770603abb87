#include "serialization/formats/SlicSerializer.h"
#include "serialization/formats/SlicUnserializer.h"

#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "objects/ImageObject.h"
#include "tests/formats/SlicBytes.h"

#include <QCoreApplication>
#include <QPointF>
#include <QTranslator>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <sstream>
#include <vector>

using namespace SlicBytes;

namespace {

using Contours = std::unique_ptr<SlicedContoursObject>;

Contours readFrom(const std::string &bytes, const std::string &prepended = {})
{
    std::istringstream stream(bytes);
    SlicUnserializer reader;
    ImageObject *object =
        prepended.empty() ? reader.unserialize(stream)
                          : reader.unserialize(stream, prepended.data(), static_cast<int>(prepended.size()));
    auto *contours = dynamic_cast<SlicedContoursObject *>(object);
    EXPECT_EQ(object, contours);
    return Contours(contours);
}

std::string written(SlicedContoursObject &contours)
{
    std::ostringstream stream;
    SlicSerializer writer;
    EXPECT_TRUE(writer.serialize(&contours, stream));
    return stream.str();
}

std::uint64_t addressOf(const QObject *object)
{
    return reinterpret_cast<std::uintptr_t>(object);
}

std::vector<QPointF> pointsOf(const SlicedContoursSegment &segment)
{
    return segment.snapshot().points;
}

// Two fragments and two contours: "patella" refers to both fragments, "one" to the second.
Contours exampleContours()
{
    auto contours = std::make_unique<SlicedContoursObject>("Segmentation");
    SlicedContoursFragment *bone = contours->newFragment("bone");
    SlicedContoursFragment *surface = contours->newFragment("surface");
    bone->newSegment(QPointF(1, 2), 0.5f)->addPointBack(QPointF(3, 5));
    bone->newSegment(QPointF(-1.25, 0.1), 1.5f);
    surface->newSegment(QPointF(7, 8), 0.5f);
    SlicedContour *patella = contours->newContour("patella");
    patella->addFragmentReference(bone);
    patella->addFragmentReference(surface);
    contours->newContour("one")->addFragmentReference(surface);
    return contours;
}

// The file of exampleContours(), put together by hand.
std::string exampleFile(const SlicedContoursObject &contours)
{
    const std::uint64_t bone = addressOf(contours.fragment(0));
    const std::uint64_t surface = addressOf(contours.fragment(1));
    const auto segment = [&](int fragment, int index, const std::string &points) {
        return chunk("SEGM", addressOf(contours.fragment(fragment)->segment(index)),
                     name("some graphics object") + points);
    };
    const std::string fragments = chunk("FRAG", bone,
                                        name("bone") + segment(0, 0, point(1, 2, 0.5) + point(3, 5, 0.5)) +
                                            segment(0, 1, point(-1.25, 0.1, 1.5))) +
                                  chunk("FRAG", surface, name("surface") + segment(1, 0, point(7, 8, 0.5)));
    const std::string all = chunk("CONT", addressOf(contours.contour(0)),
                                  name("patella") + reference(bone) + reference(surface)) +
                            chunk("CONT", addressOf(contours.contour(1)), name("one") + reference(surface));
    return chunk("SLIC", addressOf(&contours), name("Segmentation") + fragments + all);
}

// A file with one fragment (identity 5) of one segment with these points, and one contour that refers to it.
std::string simpleFile(const std::string &points, const std::string &references = reference(5))
{
    return chunk("SLIC", 1,
                 name("object") + chunk("FRAG", 5, name("fragment") + chunk("SEGM", 6, name("x") + points)) +
                     chunk("CONT", 7, name("contour") + references));
}

} // namespace

TEST(SlicSerializer, writesTheFileByteForByte)
{
    const Contours contours = exampleContours();
    EXPECT_EQ(written(*contours), exampleFile(*contours));
}

TEST(SlicSerializer, inAnotherLanguage_writesTheSameFile)
{
    static int noArguments = 0;
    const QCoreApplication application(noArguments, nullptr);
    struct EverythingInGerman : QTranslator
    {
        bool isEmpty() const override { return false; }
        QString translate(const char *, const char *, const char *, int) const override { return "Ding"; }
    } german;
    QCoreApplication::installTranslator(&german);
    ASSERT_EQ(QCoreApplication::translate("any", "thing"), "Ding");
    const Contours contours = exampleContours();
    EXPECT_EQ(written(*contours), exampleFile(*contours));
}

TEST(SlicSerializer, namesOfSegmentsAreTheSharedText_64Bytes)
{
    EXPECT_EQ(name("some graphics object").size(), 64u);
    EXPECT_EQ(point(0, 0, 0).size(), 0x30u);
    EXPECT_EQ(reference(0).size(), 0x20u);
}

TEST(SlicSerializer, emptyObject_isARootAndItsName)
{
    SlicedContoursObject contours("ab");
    EXPECT_EQ(written(contours), chunk("SLIC", addressOf(&contours), name("ab")));
    const Contours read = readFrom(written(contours));
    ASSERT_NE(read, nullptr);
    EXPECT_FALSE(read->hasContent());
    EXPECT_EQ(read->label(), "ab");
}

TEST(SlicSerializer, nullCharacterInAName_endsItButTheSizeHolds)
{
    SlicedContoursObject contours(QString::fromLatin1("ab\0cd", 5));
    EXPECT_EQ(written(contours),
              chunk("SLIC", addressOf(&contours), chunk("NAME", 0, text({"ab\0\0\0", 5}))));
}

TEST(SlicSerializer, otherCharacters_areUtf16)
{
    SlicedContoursObject contours(QString("\u00e4\U0001F9B5"));
    // U+1F9B5 is the surrogate pair D83E DDB5.
    const std::string units("\xE4\x00\x3E\xD8\xB5\xDD", 6);
    EXPECT_EQ(written(contours), chunk("SLIC", addressOf(&contours), chunk("NAME", 0, units)));
    EXPECT_EQ(readFrom(written(contours))->label(), contours.label());
}

TEST(SlicSerializer, refusesOtherObjectsAndFailedStreams_writingNothing)
{
    SlicSerializer writer;
    ImageObject other("other", nullptr);
    SlicedContoursObject contours;
    std::ostringstream stream;
    EXPECT_FALSE(writer.canSerialize(&other));
    EXPECT_FALSE(writer.canSerialize(nullptr));
    EXPECT_TRUE(writer.canSerialize(&contours));
    EXPECT_FALSE(writer.serialize(&other, stream));
    EXPECT_FALSE(writer.serialize(nullptr, stream));
    stream.setstate(std::ios::failbit);
    EXPECT_FALSE(writer.serialize(&contours, stream));
    EXPECT_EQ(stream.str(), "");
}

TEST(SlicSerializer, fullDisk_isAFailure)
{
    struct FullBuffer : std::streambuf
    {
        int_type overflow(int_type) override { return traits_type::eof(); }
    } full;
    std::ostream stream(&full);
    SlicSerializer writer;
    SlicedContoursObject contours;
    EXPECT_FALSE(writer.serialize(&contours, stream));
}

TEST(SlicUnserializer, knowsTheTextSlicInUtf16)
{
    SlicUnserializer reader;
    const std::string good = text("SLIC") + std::string(1016, 'x');
    EXPECT_TRUE(reader.canUnserialize(good.data()));
    for (std::size_t i = 0; i < 8; ++i) {
        std::string bad = good;
        bad[i] = static_cast<char>(bad[i] ^ 0x20);
        EXPECT_FALSE(reader.canUnserialize(bad.data())) << i;
    }
}

TEST(SlicUnserializer, readsBackWhatWasWritten)
{
    const Contours original = exampleContours();
    const Contours read = readFrom(exampleFile(*original));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->label(), "Segmentation");
    EXPECT_EQ(read->parent(), nullptr);
    EXPECT_TRUE(read->filePath().isNull());
    ASSERT_EQ(read->fragmentCount(), 2);
    ASSERT_EQ(read->contourCount(), 2);
    EXPECT_EQ(read->fragment(0)->label(), "bone");
    EXPECT_EQ(read->fragment(1)->label(), "surface");
    EXPECT_EQ(read->fragment(0)->parent(), read.get());
    ASSERT_EQ(read->fragment(0)->segmentCount(), 2);
    const SlicedContoursSegment &line = *read->fragment(0)->segment(0);
    EXPECT_EQ(pointsOf(line), std::vector<QPointF>({{1, 2}, {3, 5}}));
    EXPECT_EQ(line.z(), 0.5f);
    EXPECT_EQ(pointsOf(*read->fragment(0)->segment(1)), std::vector<QPointF>({{-1.25, 0.1}}));
    EXPECT_EQ(read->fragment(0)->segment(1)->z(), 1.5f);
    EXPECT_EQ(read->contour(0)->label(), "patella");
    ASSERT_EQ(read->contour(0)->fragmentCount(), 2);
    EXPECT_EQ(read->contour(0)->fragment(0), read->fragment(0));
    EXPECT_EQ(read->contour(0)->fragment(1), read->fragment(1));
    ASSERT_EQ(read->contour(1)->fragmentCount(), 1);
    EXPECT_EQ(read->contour(1)->fragment(0), read->fragment(1));
}

TEST(SlicUnserializer, takesAHeadThatTheCallerHasConsumed)
{
    const std::string file = simpleFile(point(1, 2, 3));
    for (const std::size_t split :
         {std::size_t(1), std::size_t(7), std::size_t(24), std::size_t(100), file.size()}) {
        const Contours read = readFrom(file.substr(split), file.substr(0, split));
        ASSERT_NE(read, nullptr) << split;
        EXPECT_EQ(pointsOf(*read->fragment(0)->segment(0)), std::vector<QPointF>({{1, 2}})) << split;
    }
}

TEST(SlicUnserializer, collinearRuns_areThinned)
{
    const Contours read =
        readFrom(simpleFile(point(0, 0, 1) + point(1, 0, 1) + point(2, 0, 1) + point(2, 1, 1)));
    EXPECT_EQ(pointsOf(*read->fragment(0)->segment(0)), std::vector<QPointF>({{0, 0}, {2, 0}, {2, 1}}));
}

TEST(SlicUnserializer, repeatedPoint_cutsTheLine)
{
    // The fourth point is the second again: what was drawn since goes.
    const Contours read =
        readFrom(simpleFile(point(0, 0, 1) + point(1, 0, 1) + point(2, 3, 1) + point(1, 0, 1)));
    EXPECT_EQ(pointsOf(*read->fragment(0)->segment(0)), std::vector<QPointF>({{0, 0}, {1, 0}}));
}

// A walk over the line for each of its points would take hours, and the runner end the test.
TEST(SlicUnserializer, lineOfAMillionPoints_isRead)
{
    constexpr int count = 1000000;
    std::string points;
    points.reserve(count * 48);
    for (int i = 0; i < count; ++i)
        points += point(i * 0.25, i % 2 == 0 ? 0.0 : 1.0 + i % 7, 1.0);
    const Contours read = readFrom(simpleFile(points));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->fragment(0)->segment(0)->pointCount(), count);
}

// A point of size 5 spoils its line, but nothing beyond the chunk of that line.
TEST(SlicUnserializer, bytesBehindAChildSmallerThanAHeader_areSkipped)
{
    const std::string damaged = chunk("SEGM", 6, point(1, 2, 3) + header("POIN", 0, 5) + point(4, 6, 3));
    const std::string whole = chunk("SEGM", 7, point(7, 8, 3));
    const Contours read = readFrom(chunk(
        "SLIC", 1, name("o") + chunk("FRAG", 5, damaged + name("f") + whole) + chunk("FRAG", 8, name("g"))));
    ASSERT_NE(read, nullptr);
    ASSERT_EQ(read->fragmentCount(), 2);
    EXPECT_EQ(read->fragment(0)->label(), "f");
    ASSERT_EQ(read->fragment(0)->segmentCount(), 1);
    EXPECT_EQ(pointsOf(*read->fragment(0)->segment(0)), std::vector<QPointF>({{7, 8}}));
    EXPECT_EQ(read->fragment(1)->label(), "g");
}

TEST(SlicUnserializer, zIsThatOfTheLastPoint_0WithoutPoints)
{
    EXPECT_EQ(readFrom(simpleFile(point(0, 0, 1) + point(1, 1, 2.5)))->fragment(0)->segment(0)->z(), 2.5f);
    EXPECT_EQ(readFrom(simpleFile(""))->fragment(0)->segment(0)->z(), 0.0f);
}

TEST(SlicUnserializer, coordinatesThatAreNoNumbers_areKept)
{
    constexpr double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Contours read = readFrom(simpleFile(point(nan, -inf, inf)));
    const SlicedContoursSegment &line = *read->fragment(0)->segment(0);
    ASSERT_EQ(line.pointCount(), 1);
    EXPECT_TRUE(std::isnan(line.point(0).x()));
    EXPECT_EQ(line.point(0).y(), -inf);
    EXPECT_TRUE(std::isinf(line.z()));
}

TEST(SlicUnserializer, contoursBeforeFragments_areEmpty)
{
    const Contours read = readFrom(chunk(
        "SLIC", 1, name("o") + chunk("CONT", 7, name("c") + reference(5)) + chunk("FRAG", 5, name("f"))));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->fragmentCount(), 1);
    ASSERT_EQ(read->contourCount(), 1);
    EXPECT_EQ(read->contour(0)->label(), "c");
    EXPECT_EQ(read->contour(0)->fragmentCount(), 0);
}

TEST(SlicUnserializer, unknownReference_isDropped)
{
    const Contours read = readFrom(simpleFile("", reference(99) + reference(5) + reference(0)));
    ASSERT_EQ(read->contour(0)->fragmentCount(), 1);
    EXPECT_EQ(read->contour(0)->fragment(0)->label(), "fragment");
}

TEST(SlicUnserializer, ofFragmentsWithOneIdentity_theLaterIsMeant)
{
    const Contours read = readFrom(
        chunk("SLIC", 1,
              chunk("FRAG", 5, name("a")) + chunk("FRAG", 5, name("b")) + chunk("CONT", 7, reference(5))));
    EXPECT_EQ(read->contour(0)->fragment(0), read->fragment(1));
}

TEST(SlicUnserializer, pointsOfAnotherSize_areSkipped)
{
    const std::string longer = chunk("POIN", 0, std::string(32, '\1'));
    const std::string shorter = chunk("POIN", 0, std::string(8, '\1'));
    const std::string empty = chunk("POIN", 0, "");
    const Contours read = readFrom(simpleFile(point(1, 2, 3) + longer + shorter + empty + point(4, 6, 3)));
    EXPECT_EQ(pointsOf(*read->fragment(0)->segment(0)), std::vector<QPointF>({{1, 2}, {4, 6}}));
}

TEST(SlicUnserializer, referencesOfOtherSizes)
{
    const std::string longer = chunk("FRRF", 0, number(5) + "more bytes");
    const std::string shorter = chunk("FRRF", 0, "1234");
    const Contours read = readFrom(simpleFile("", longer + shorter + chunk("FRRF", 0, "") + longer));
    EXPECT_EQ(read->contour(0)->fragmentCount(), 2);
}

TEST(SlicUnserializer, nameOfOddSize_losesItsLastByte)
{
    const Contours read =
        readFrom(chunk("SLIC", 1, chunk("NAME", 0, text("ab") + "c") + chunk("FRAG", 5, name("f"))));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->label(), "ab");
    EXPECT_EQ(read->fragmentCount(), 1);
}

TEST(SlicUnserializer, unknownChunks_areSkippedAtEachLevel)
{
    const std::string unknown = chunk("WHAT", 3, "some bytes") + chunk("SLIC", 4, name("nested"));
    const std::string segment =
        chunk("SEGM", 6, unknown + name("x") + unknown + point(1, 2, 3) + unknown + point(4, 6, 3) + unknown);
    const std::string file =
        chunk("SLIC", 1,
              unknown + name("object") + unknown +
                  chunk("FRAG", 5, unknown + name("fragment") + unknown + segment + unknown) + unknown +
                  chunk("CONT", 7, unknown + name("contour") + unknown + reference(5) + unknown) + unknown);
    const Contours read = readFrom(file);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->label(), "object");
    ASSERT_EQ(read->fragmentCount(), 1);
    ASSERT_EQ(read->fragment(0)->segmentCount(), 1);
    EXPECT_EQ(read->fragment(0)->label(), "fragment");
    EXPECT_EQ(pointsOf(*read->fragment(0)->segment(0)), std::vector<QPointF>({{1, 2}, {4, 6}}));
    EXPECT_EQ(read->contour(0)->fragment(0), read->fragment(0));
}

// Chunks of one level mean nothing in another.
TEST(SlicUnserializer, chunksAtAnotherLevel_areSkipped)
{
    const Contours read =
        readFrom(chunk("SLIC", 1,
                       name("o") + point(1, 2, 3) + reference(5) + chunk("SEGM", 6, point(1, 2, 3)) +
                           chunk("FRAG", 5, name("f") + point(1, 2, 3) + chunk("FRAG", 8, name("g")))));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->fragmentCount(), 1);
    EXPECT_FALSE(read->hasContent());
}

TEST(SlicUnserializer, childLargerThanItsParent_endsTheParentWithSuccess)
{
    // The last child of the fragment says that it is longer than what the fragment has left.
    const std::string fragment =
        chunk("FRAG", 5, name("f") + chunk("SEGM", 6, point(1, 2, 3)) + header("SEGM", 7, 1000) + "12345678");
    const Contours read = readFrom(chunk("SLIC", 1, name("o") + fragment + chunk("CONT", 8, reference(5))));
    ASSERT_NE(read, nullptr);
    ASSERT_EQ(read->fragmentCount(), 1);
    EXPECT_EQ(read->fragment(0)->segmentCount(), 1);
    ASSERT_EQ(read->contourCount(), 1);
    EXPECT_EQ(read->contour(0)->fragmentCount(), 1);
}

TEST(SlicUnserializer, restSmallerThanAHeader_failsItsLevelAlone)
{
    const std::string damaged = chunk("FRAG", 5, name("f") + "rest");
    const Contours read = readFrom(chunk("SLIC", 1, name("o") + damaged + chunk("FRAG", 6, name("g"))));
    ASSERT_NE(read, nullptr);
    ASSERT_EQ(read->fragmentCount(), 1);
    EXPECT_EQ(read->fragment(0)->label(), "g");
    EXPECT_EQ(readFrom(chunk("SLIC", 1, name("o") + "rest")), nullptr);
}

TEST(SlicUnserializer, childSmallerThanAHeader_failsItsLevel)
{
    for (const std::uint64_t size : {0u, 1u, 23u}) {
        EXPECT_EQ(readFrom(chunk("SLIC", 1, header("NAME", 0, size))), nullptr) << size;
        EXPECT_EQ(readFrom(header("SLIC", 1, size)), nullptr) << size;
        const std::string segment = chunk("SEGM", 6, header("POIN", 0, size));
        const Contours read = readFrom(chunk("SLIC", 1, chunk("FRAG", 5, segment + name("f"))));
        ASSERT_NE(read, nullptr) << size;
        EXPECT_EQ(read->fragment(0)->segmentCount(), 0) << size;
        EXPECT_EQ(read->fragment(0)->label(), "f") << size;
    }
}

TEST(SlicUnserializer, otherRootTag_givesNull)
{
    EXPECT_EQ(readFrom(chunk("SLIK", 1, name("o"))), nullptr);
    EXPECT_EQ(readFrom(""), nullptr);
}

// The whole is not shorter than the largest chunk, so a size that no file can fill fails at its end.
TEST(SlicUnserializer, immenseSizes_fillNoMemory)
{
    constexpr std::uint64_t immense = std::numeric_limits<std::uint64_t>::max();
    for (const std::uint64_t size :
         {immense, immense - 24, immense / 2, immense / 2 + 48, std::uint64_t(1) << 40}) {
        EXPECT_EQ(readFrom(header("SLIC", 1, size) + name("o")), nullptr) << size;
        // An unknown chunk that leaves room for one more, which is not there.
        EXPECT_EQ(readFrom(header("SLIC", 1, size) + header("WHAT", 1, size - 48) + name("o")), nullptr)
            << size;
        // A name of immense size takes all that is there, and no more.
        const Contours read = readFrom(header("SLIC", 1, size) + header("NAME", 0, size - 24) + text("abc"));
        EXPECT_TRUE(read == nullptr || read->label() == "Unnamed Contours") << size;
    }
}

// Wherever a file ends: either nothing comes, or an object that is whole but for the last piece of its root,
// here the contour "one" of 24 + 30 + 32 bytes. What fails inside of that piece does not fail the root.
TEST(SlicUnserializer, truncatedAtEachByte)
{
    const Contours original = exampleContours();
    const std::string file = exampleFile(*original);
    const std::size_t lastContourBody = file.size() - 62;
    const std::size_t lastReferenceBody = file.size() - 8;
    for (std::size_t length = 0; length < file.size(); ++length) {
        const Contours read = readFrom(file.substr(0, length));
        if (length < lastContourBody) {
            EXPECT_EQ(read, nullptr) << length;
            continue;
        }
        ASSERT_NE(read, nullptr) << length;
        EXPECT_EQ(read->label(), "Segmentation") << length;
        EXPECT_EQ(read->fragmentCount(), 2) << length;
        ASSERT_EQ(read->contourCount(), length < lastReferenceBody ? 1 : 2) << length;
        EXPECT_EQ(read->contour(0)->fragmentCount(), 2) << length;
        EXPECT_EQ(read->contourCount() == 1 || read->contour(1)->fragmentCount() == 0, true) << length;
    }
}

TEST(SlicUnserializer, truncatedInTheLastPoint_keepsTheOthers)
{
    const std::string file =
        chunk("SLIC", 1, chunk("FRAG", 5, chunk("SEGM", 6, point(1, 2, 3) + point(4, 6, 3))));
    for (std::size_t missing = 1; missing <= 24; ++missing) {
        const Contours read = readFrom(file.substr(0, file.size() - missing));
        ASSERT_NE(read, nullptr) << missing;
        EXPECT_EQ(pointsOf(*read->fragment(0)->segment(0)), std::vector<QPointF>({{1, 2}})) << missing;
    }
    // Cut in the header of the point, the line fails; it was the last piece of its fragment.
    const Contours read = readFrom(file.substr(0, file.size() - 25));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->fragment(0)->segmentCount(), 0);
}

// Each byte of a file damaged in turn: the reader ends, and what it gives can be written again.
TEST(SlicUnserializer, damagedBytes_doNoHarm)
{
    const Contours original = exampleContours();
    const std::string file = exampleFile(*original);
    for (std::size_t i = 0; i < file.size(); ++i) {
        for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
            std::string damaged = file;
            damaged[i] = static_cast<char>(value);
            const Contours read = readFrom(damaged);
            EXPECT_TRUE(read == nullptr || !written(*read).empty());
        }
    }
}
