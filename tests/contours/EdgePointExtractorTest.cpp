#include "Common/ImageBase.h"
#include "Common/ParallelFor.h"
#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "objects/MervImageObject.h"
#include "tests/support/PlainEdgePoints.h"

#include <QTest>

#include <cmath>
#include <memory>
#include <random>
#include <set>
#include <stdexcept>

namespace {

// A volume of bytes with a full window.
std::unique_ptr<MervImageObject> makeVolume(int width, int height, int depth,
                                            const std::function<int(int, int, int)> &value)
{
    MERV::Image *image = MERV::createImage(MERV::TypeUChar);
    image->setDimensions(width, height, depth, 1, 1);
    image->setSpacing(0.5f, 0.25f, 2.0f, 1.0f);
    for (int z = 0; z < depth; ++z)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                image->setVoxel(static_cast<float>(value(x, y, z)), x, y, z, 0, 0);
    image->setWindowRange(0.0f, 255.0f, 0);
    return std::make_unique<MervImageObject>(image, QString("knee"));
}

std::unique_ptr<MervImageObject> makeNoise(int width, int height, int depth)
{
    std::mt19937 random(11);
    return makeVolume(width, height, depth, [&](int, int, int) { return static_cast<int>(random() % 256); });
}

std::vector<EdgePoint *> plainAround(const ConventionalSliceEdgePointExtractor &extractor, int slice, float x,
                                     float y, float z, float r)
{
    std::vector<EdgePoint *> found;
    for (const EdgePoint &point : extractor.slicePoints(slice))
        if (std::abs(point.x - x) <= r && std::abs(point.y - y) <= r && std::abs(point.z - z) <= r)
            found.push_back(const_cast<EdgePoint *>(&point));
    return found;
}

int foundAround(ConventionalSliceEdgePointExtractor &extractor, float x, float y, float z, float r)
{
    return static_cast<int>(std::unique_ptr<EdgePointList>(extractor.edgePointsAround(x, y, z, r))->size());
}

} // namespace

class EdgePointExtractorTest : public QObject
{
    Q_OBJECT

private slots:
    void labelNamesTheImage()
    {
        const auto volume = makeNoise(8, 8, 1);
        const ConventionalSliceEdgePointExtractor extractor(volume.get());
        QCOMPARE(extractor.label(), QString("edge points in knee"));
        QCOMPARE(extractor.graphicsType(), 0);
        QCOMPARE(extractor.imageType(), 0);
        QCOMPARE(extractor.sources(), QList<ImageObject *>{volume.get()});
        QCOMPARE(extractor.granularity(), 0.25f);
    }

    void eachSliceIsThatOfThePlainCode()
    {
        const auto volume = makeNoise(70, 40, 9);
        const ConventionalSliceEdgePointExtractor extractor(volume.get());
        QCOMPARE(extractor.sliceCount(), 9);
        for (int k = 0; k < 9; ++k) {
            const std::vector<EdgePoint *> plain =
                plainEdgePoints({volume->displaySlice(k), 70, 40, volume->textureRowPitch()}, 0.5f, 0.25f,
                                (static_cast<float>(k) + 0.5f) * 2.0f);
            const std::vector<EdgePoint> &points = extractor.slicePoints(k);
            QCOMPARE(points.size(), plain.size());
            QVERIFY(points.size() > 100);
            for (std::size_t i = 0; i < plain.size(); ++i) {
                QVERIFY(points[i].x == plain[i]->x && points[i].y == plain[i]->y &&
                        points[i].z == plain[i]->z && points[i].strength == plain[i]->strength);
                delete plain[i];
            }
        }
    }

    void resultDependsOnTheWindowAtConstruction()
    {
        const auto volume = makeVolume(16, 16, 1, [](int x, int, int) { return x < 8 ? 100 : 105; });
        const ConventionalSliceEdgePointExtractor wide(volume.get());
        QVERIFY(wide.slicePoints(0).empty()); // a step of 5 grey levels
        volume->setWindow(90.0f, 115.0f);     // now of 51
        QVERIFY(wide.slicePoints(0).empty());
        const ConventionalSliceEdgePointExtractor narrow(volume.get());
        QCOMPARE(narrow.slicePoints(0).size(), std::size_t{28}); // two columns in 14 rows
    }

    void queryLooksAtOneSliceAndClosesItsBox()
    {
        const auto volume = makeVolume(8, 8, 3, [](int x, int, int) { return x < 4 ? 0 : 255; });
        ConventionalSliceEdgePointExtractor extractor(volume.get());
        // Points at x = 4 * 0.5 = 2, y = (1.5, 2.5, .. 6.5) * 0.25, z = 1, 3, 5; two at each place.
        QCOMPARE(foundAround(extractor, 2.0f, 0.875f, 1.0f, 0.0f), 2);
        QCOMPARE(foundAround(extractor, 2.5f, 0.875f, 1.0f, 0.5f), 10); // x at the limit; y = 0.375 .. 1.375
        QCOMPARE(foundAround(extractor, 2.5f, 0.875f, 1.0f, 0.4375f), 0);
        QCOMPARE(foundAround(extractor, 2.0f, 0.875f, 1.5f, 0.5f), 10);  // z at the limit
        QCOMPARE(foundAround(extractor, 2.0f, 0.875f, 2.0f, 50.0f), 12); // z = 2 is in slice 1, and only that
        const std::unique_ptr<EdgePointList> middle(extractor.edgePointsAround(2.0f, 1.0f, 2.0f, 50.0f));
        QCOMPARE(middle->size(), 12);
        for (const EdgePoint *point : *middle)
            QCOMPARE(point->z, 3.0f);
    }

    void queryOutsideTheVolumeIsEmpty()
    {
        const auto volume = makeVolume(8, 8, 3, [](int x, int, int) { return x < 4 ? 0 : 255; });
        ConventionalSliceEdgePointExtractor extractor(volume.get());
        QCOMPARE(foundAround(extractor, 2.0f, 1.0f, 6.0f, 50.0f), 0); // the top surface
        QCOMPARE(foundAround(extractor, 2.0f, 1.0f, std::nextafter(6.0f, 0.0f), 50.0f), 12);
        // Truncation puts a z just below the volume into slice 0.
        QCOMPARE(foundAround(extractor, 2.0f, 1.0f, -1.5f, 50.0f), 12);
        QCOMPARE(foundAround(extractor, 2.0f, 1.0f, -2.0f, 50.0f), 0);
        for (const float z : {NAN, INFINITY, -INFINITY, 3e38f})
            QCOMPARE(foundAround(extractor, 2.0f, 1.0f, z, 50.0f), 0);
        QCOMPARE(foundAround(extractor, NAN, 1.0f, 1.0f, 50.0f), 0);
        QCOMPARE(foundAround(extractor, 2.0f, 1.0f, 1.0f, NAN), 0);
        QCOMPARE(foundAround(extractor, 2.0f, 1.0f, 1.0f, -1.0f), 0);
        QCOMPARE(foundAround(extractor, 2.0f, 1.0f, 1.0f, INFINITY), 12);
    }

    void spacingOfNoUseGivesEmptyAnswers()
    {
        const auto volume = makeVolume(8, 8, 3, [](int x, int, int) { return x < 4 ? 0 : 255; });
        for (const float spacing : {0.0f, -2.0f, NAN, INFINITY}) {
            volume->voxels()->setSpacing(0.5f, 0.25f, spacing, 1.0f);
            ConventionalSliceEdgePointExtractor extractor(volume.get());
            for (const float z : {1.0f, 0.0f, -1.0f}) {
                QCOMPARE(foundAround(extractor, 2.0f, 1.0f, z, 50.0f), 0);
                QCOMPARE(foundAround(extractor, 2.0f, 1.0f, z, INFINITY), 0);
            }
        }
    }

    void queriesAreThoseOfAPlainScan()
    {
        const auto volume = makeNoise(90, 80, 4);
        ConventionalSliceEdgePointExtractor extractor(volume.get());
        std::mt19937 random(2);
        const auto number = [&](float range) {
            return range * static_cast<float>(random() % 10000) / 10000.0f;
        };
        for (int i = 0; i < 500; ++i) {
            const float x = number(47.0f) - 1.0f;
            const float y = number(22.0f) - 1.0f;
            const float z = number(8.0f);
            const float r = number(i % 10 == 0 ? 30.0f : 3.0f);
            const std::unique_ptr<EdgePointList> found(extractor.edgePointsAround(x, y, z, r));
            const std::vector<EdgePoint *> plain =
                plainAround(extractor, static_cast<int>(z / 2.0f), x, y, z, r);
            QVERIFY(std::equal(found->begin(), found->end(), plain.begin(), plain.end()));
        }
    }

    void extentsAreTheLargestCoordinates()
    {
        const auto volume = makeNoise(20, 16, 3);
        const ConventionalSliceEdgePointExtractor extractor(volume.get());
        float x = 0.0f;
        float y = 0.0f;
        for (int k = 0; k < 3; ++k)
            for (const EdgePoint &point : extractor.slicePoints(k)) {
                x = std::max(x, point.x);
                y = std::max(y, point.y);
            }
        QVERIFY(x > 0.0f && x < 10.0f);
        QCOMPARE(extractor.extentX(), x);
        QCOMPARE(extractor.extentY(), y);
        QCOMPARE(extractor.extentZ(), 5.0f); // the centre of slice 2
        const auto flat = makeVolume(20, 16, 3, [](int, int, int) { return 7; });
        QCOMPARE(ConventionalSliceEdgePointExtractor(flat.get()).extentX(), 0.0f);
    }

    void tinyAndMissingImagesHaveNoPoints()
    {
        const auto narrow = makeNoise(2, 30, 2);
        QVERIFY(ConventionalSliceEdgePointExtractor(narrow.get()).slicePoints(1).empty());
        MervImageObject empty(nullptr, QString());
        ConventionalSliceEdgePointExtractor none(&empty);
        QCOMPARE(none.sliceCount(), 0);
        QCOMPARE(foundAround(none, 0, 0, 0, 10), 0);
        ConventionalSliceEdgePointExtractor null(nullptr);
        QCOMPARE(null.sliceCount(), 0);
        QVERIFY(null.sources().isEmpty());
        QCOMPARE(null.extentZ(), 0.0f);
    }

    void pointsOutliveTheImage()
    {
        auto volume = makeVolume(8, 8, 3, [](int x, int, int) { return x < 4 ? 0 : 255; });
        ConventionalSliceEdgePointExtractor extractor(volume.get());
        MervImageObject other(nullptr, QString());
        extractor.detachFrom(&other);
        QCOMPARE(extractor.sources().size(), 1);
        extractor.detachFrom(volume.get());
        volume.reset();
        QVERIFY(extractor.sources().isEmpty());
        QCOMPARE(extractor.granularity(), 0.25f);
        QCOMPARE(foundAround(extractor, 2.0f, 1.0f, 3.0f, 50.0f), 12);
    }

    void parallelForVisitsEachIndexOnce()
    {
        std::vector<std::atomic<int>> visits(1000);
        MERV::parallelFor(1000, [&](int i) { ++visits[static_cast<std::size_t>(i)]; });
        for (const std::atomic<int> &count : visits)
            QCOMPARE(count.load(), 1);
        MERV::parallelFor(0, [](int) { QFAIL("nothing to do"); });
    }

    void parallelForHandsOnAFailure()
    {
        const auto failAt40 = [](int i) {
            if (i == 40)
                throw std::runtime_error("40");
        };
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, MERV::parallelFor(100, failAt40));
    }
};

QTEST_GUILESS_MAIN(EdgePointExtractorTest)
#include "EdgePointExtractorTest.moc"
