#include "objects/SliceSelector.h"

#include "tests/support/TestVolume.h"

#include <QSignalSpy>
#include <QTest>

#include <iostream>
#include <limits>
#include <memory>
#include <sstream>

namespace {

// 5 x 3 x 2 voxels with the value 10 x + 3 y + 100 z in a window of 0 .. 255, so that bytes equal values.
std::unique_ptr<MervImageObject> newSource()
{
    auto image =
        newVolume(MERV::TypeUShort, {5, 3, 2}, [](int x, int y, int z) { return 10 * x + 3 * y + 100 * z; });
    image->setSpacing(0.5f, 0.75f, 2.0f, 1.0f);
    image->setWindowRange(0.0f, 255.0f, 0);
    return std::make_unique<MervImageObject>(image.release(), QStringLiteral("knee"));
}

int value(const SliceSelector &selector, int x, int y)
{
    return static_cast<int>(selector.voxels()->getVoxel(x, y, 0, 0, 0));
}

void compareSize(const SliceSelector &selector, int width, int height)
{
    QCOMPARE(selector.voxels()->getWidth(), width);
    QCOMPARE(selector.voxels()->getHeight(), height);
    QCOMPARE(selector.voxels()->getDepth(), 1);
    QCOMPARE(selector.voxels()->getFrames(), 1);
    QCOMPARE(selector.voxels()->getChannels(), 1);
    QCOMPARE(selector.voxels()->getDataType(), int(MERV::TypeUChar));
}

} // namespace

class SliceSelectorTest : public QObject
{
    Q_OBJECT

private slots:
    void axialSlice();
    void coronalSliceHasTheLastSliceOnTop();
    void sagittalSliceIsTransposed();
    void positionIsLimited_data();
    void positionIsLimited();
    void setPositionOnlyStoresAndLabels();
    void labelsNameAxisPositionAndSource();
    void followsTheSource();
    void windowIsTheRangeOfTheBytes();
    void detachedItKeepsItsSlice();
    void otherObjectsAreNotDetached();
    void deletedSourceIsForgotten();
    void sourceWithoutVoxels();
    void withoutASourceTheFailureIsReported();
};

void SliceSelectorTest::axialSlice()
{
    const auto source = newSource();
    const SliceSelector selector(source.get(), SliceDirection::Z, 1.0);
    compareSize(selector, 5, 3);
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 5; ++x)
            QCOMPARE(value(selector, x, y), 10 * x + 3 * y + 100);
    }
    QCOMPARE(selector.voxels()->getSpacing(0), 0.5f);
    QCOMPARE(selector.voxels()->getSpacing(1), 0.75f);
    QCOMPARE(selector.voxels()->getSpacing(2), 2.0f);
    QCOMPARE(selector.imageType(), 1);
    QCOMPARE(selector.graphicsType(), 1);
    QCOMPARE(selector.dimensionCount(), 2);
    QCOMPARE(selector.axisName(0), QStringLiteral("x"));
    QVERIFY(selector.sources().isEmpty());
}

void SliceSelectorTest::coronalSliceHasTheLastSliceOnTop()
{
    const auto source = newSource();
    const SliceSelector selector(source.get(), SliceDirection::Y, 2.0);
    compareSize(selector, 5, 2);
    for (int row = 0; row < 2; ++row) {
        for (int x = 0; x < 5; ++x)
            QCOMPARE(value(selector, x, row), 10 * x + 3 * 2 + 100 * (1 - row)); // z reversed
    }
    QCOMPARE(selector.voxels()->getSpacing(0), 0.5f);
    QCOMPARE(selector.voxels()->getSpacing(1), 2.0f);
    QCOMPARE(selector.voxels()->getSpacing(2), 0.75f);
}

void SliceSelectorTest::sagittalSliceIsTransposed()
{
    const auto source = newSource();
    const SliceSelector selector(source.get(), SliceDirection::X, 4.0);
    compareSize(selector, 2, 3);
    // The library's row r holds z = 1 - r and its column c holds y = 2 - c; row and column change places
    // here.
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 3; ++column)
            QCOMPARE(value(selector, row, column), 10 * 4 + 3 * (2 - column) + 100 * (1 - row));
    }
    QCOMPARE(selector.voxels()->getSpacing(0), 2.0f);
    QCOMPARE(selector.voxels()->getSpacing(1), 0.75f);
    QCOMPARE(selector.voxels()->getSpacing(2), 0.5f);
}

void SliceSelectorTest::positionIsLimited_data()
{
    QTest::addColumn<double>("position");
    QTest::addColumn<int>("slice");
    QTest::newRow("truncated") << 0.99 << 0;
    QTest::newRow("negative fraction") << -0.5 << 0;
    QTest::newRow("below") << -3.0 << 0;
    QTest::newRow("depth") << 2.0 << 1;
    QTest::newRow("above") << 1e9 << 1;
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << 1;
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 0;
}

void SliceSelectorTest::positionIsLimited()
{
    QFETCH(double, position);
    QFETCH(int, slice);
    const auto source = newSource();
    const SliceSelector selector(source.get(), SliceDirection::Z, position);
    QCOMPARE(value(selector, 1, 1), 13 + 100 * slice);
}

void SliceSelectorTest::setPositionOnlyStoresAndLabels()
{
    const auto source = newSource();
    SliceSelector selector(source.get(), SliceDirection::Z, 0.0);
    const QSignalSpy updated(&selector, &GraphicsObject::updated);
    selector.setPosition(1.0);
    QCOMPARE(selector.position(), 1.0);
    QCOMPARE(selector.label(), QStringLiteral("z = 1 in knee"));
    QCOMPARE(value(selector, 0, 0), 0);
    QCOMPARE(updated.count(), 0);
    selector.update();
    QCOMPARE(value(selector, 0, 0), 100);
    QCOMPARE(updated.count(), 1);
}

void SliceSelectorTest::labelsNameAxisPositionAndSource()
{
    const auto source = newSource();
    source->setLabel(QStringLiteral("100%1 %2"));
    QCOMPARE(SliceSelector(source.get(), SliceDirection::X, 0.0).label(),
             QStringLiteral("x = 0 in 100%1 %2"));
    QCOMPARE(SliceSelector(source.get(), SliceDirection::Y, 2.5).label(),
             QStringLiteral("y = 2.5 in 100%1 %2"));
    QCOMPARE(SliceSelector(source.get(), SliceDirection::Z, -1.0).label(),
             QStringLiteral("z = -1 in 100%1 %2"));
}

void SliceSelectorTest::followsTheSource()
{
    const auto source = newSource();
    SliceSelector selector(source.get(), SliceDirection::Z, 0.0);
    const QSignalSpy updated(&selector, &GraphicsObject::updated);
    source->setWindow(0.0f, 25.5f); // ten times as steep
    QCOMPARE(updated.count(), 1);
    QCOMPARE(value(selector, 1, 1), 130);
    source->mirror(0);
    QCOMPARE(updated.count(), 2);
    QCOMPARE(value(selector, 3, 1), 130);
    // What is displayed follows as well.
    QCOMPARE(int(selector.displaySlice(0)[3]), (100 * 255) / 255);
}

void SliceSelectorTest::windowIsTheRangeOfTheBytes()
{
    const auto source = newSource();
    const SliceSelector selector(source.get(), SliceDirection::Z, 1.0);
    QCOMPARE(selector.windowLow(), 100.0f);
    QCOMPARE(selector.windowHigh(), 146.0f); // 40 + 6 + 100
}

void SliceSelectorTest::detachedItKeepsItsSlice()
{
    auto source = newSource();
    SliceSelector selector(source.get(), SliceDirection::Z, 1.0);
    const QSignalSpy updated(&selector, &GraphicsObject::updated);
    selector.detachFrom(source.get());
    source->setWindow(0.0f, 25.5f);
    source.reset();
    selector.update();
    selector.setPosition(0.0);
    QCOMPARE(updated.count(), 0);
    QCOMPARE(value(selector, 1, 1), 113);
    QCOMPARE(selector.position(), 0.0);
    QCOMPARE(selector.label(), QStringLiteral("z = 1 in knee"));
}

void SliceSelectorTest::otherObjectsAreNotDetached()
{
    const auto source = newSource();
    const auto other = newSource();
    SliceSelector selector(source.get(), SliceDirection::Z, 1.0);
    selector.detachFrom(other.get());
    selector.detachFrom(nullptr);
    source->setWindow(0.0f, 510.0f);
    QCOMPARE(value(selector, 1, 1), 56); // 113 / 2, truncated
}

void SliceSelectorTest::deletedSourceIsForgotten()
{
    auto source = newSource();
    SliceSelector selector(source.get(), SliceDirection::Z, 1.0);
    source.reset();
    selector.update();
    QCOMPARE(value(selector, 1, 1), 113);
}

void SliceSelectorTest::sourceWithoutVoxels()
{
    MervImageObject source(nullptr, QStringLiteral("empty"));
    SliceSelector selector(&source, SliceDirection::Z, 0.0);
    selector.update();
    QVERIFY(selector.voxels() == nullptr);
    QCOMPARE(selector.label(), QStringLiteral("z = 0 in empty"));
}

void SliceSelectorTest::withoutASourceTheFailureIsReported()
{
    std::ostringstream caught;
    std::streambuf *terminal = std::cerr.rdbuf(caught.rdbuf());
    SliceSelector selector(nullptr, SliceDirection::Z, 0.0);
    std::cerr.rdbuf(terminal);
    QCOMPARE(caught.str(),
             std::string("Cound not establish connection indicating rasterization invalidation.\n"));
    selector.update();
    QVERIFY(selector.voxels() == nullptr);
}

QTEST_APPLESS_MAIN(SliceSelectorTest)
#include "SliceSelectorTest.moc"
