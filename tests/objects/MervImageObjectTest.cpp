#include "objects/MervImageObject.h"

#include "Common/ImageBase.h"
#include "objects/SlicePositions.h"
#include "tests/support/TestVolume.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <limits>
#include <memory>
#include <thread>
#include <vector>

namespace {

// Lets a test look at the texture arrays.
class OpenImage : public MervImageObject
{
public:
    explicit OpenImage(std::unique_ptr<MERV::Image> newImage, const QString &fileName = QString())
        : MervImageObject(newImage.release(), fileName)
    {}
    using MervImageObject::origin;
    using MervImageObject::sliceTextures;
    using MervImageObject::sliceTextureValid;
    using MervImageObject::textureDepth;
    using MervImageObject::textureHeight;
    using MervImageObject::textureWidth;

    unsigned char texel(int slice, int x, int y) const
    {
        const int index = y * textureWidth + x;
        return sliceTextures[static_cast<std::size_t>(slice)][static_cast<std::size_t>(index)];
    }
    int validSlices() const
    {
        int count = 0;
        for (int slice = 0; slice < textureDepth; ++slice)
            count += sliceTextureValid[static_cast<std::size_t>(slice)] ? 1 : 0;
        return count;
    }
};

// Voxel value 10 x + y + 100 z.
int ramp(int x, int y, int z)
{
    return 10 * x + y + 100 * z;
}

// A volume that counts how often its slices are converted.
class CountingVolume : public MERV::ImageBase<unsigned short>
{
public:
    using ImageBase::getSliceUByte;
    unsigned char *getSliceUByte(unsigned char *dst, int slice, int channel, bool powerOfTwo) const override
    {
        ++conversions;
        return ImageBase::getSliceUByte(dst, slice, channel, powerOfTwo);
    }
    mutable int conversions = 0;
};

} // namespace

class MervImageObjectTest : public QObject
{
    Q_OBJECT

private slots:
    void namesComeFromTheFileName_data();
    void namesComeFromTheFileName();
    void axesAreTheDimensionsAboveOne_data();
    void axesAreTheDimensionsAboveOne();
    void kindsAndSignature();
    void extentsAreVoxelsTimesSpacing();
    void granularityIgnoresTheThicknessOfASingleSlice();
    void stepping();
    void steppingThroughATallStack();
    void sliceIndex();
    void objectsAroundIsAHalfOpenBox();
    void withoutAnImageTheDefaultsAreAnswered();
    void unusableSpacing_data();
    void unusableSpacing();
    void texturesArePaddedToPowersOfTwo();
    void texturesAreConvertedOnce();
    void texturesFollowTheSizeOfTheImage();
    void windowChangesWhatIsShownOnly();
    void mirrorTurnsOneAxis_data();
    void mirrorTurnsOneAxis();
    void computeMinMaxEmitsNothing();
    void maskedVoxelsAreCopied();
    void maskOfAnotherSizeIsRefused();
    void maskedCopyIsBoundedByTheSmallestDepth();
    void metaDataGoToTheVoxels();
    void workerMayWriteVoxelsUnderTheLock();
    void emptyVoxelImage();
    void rectangleTexturesAreRecognisedButNotUsed();
};

void MervImageObjectTest::namesComeFromTheFileName_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("label");
    QTest::addColumn<int>("origin");
    QTest::newRow("unnamed") << QString() << "Unnamed Image" << 1;
    QTest::newRow("file") << "/data/knee.mhd"
                          << "knee" << 2;
    QTest::newRow("two suffixes") << "/data/knee.left.mhd"
                                  << "knee.left" << 2;
    QTest::newRow("base name only") << "knee"
                                    << "knee" << 2;
    QTest::newRow("directory") << "/data/knee"
                               << "knee" << 2;
    QTest::newRow("directory with separator") << "/data/knee/"
                                              << "DICOM" << 2;
    QTest::newRow("suffix only") << ".x"
                                 << "DICOM" << 2;
    QTest::newRow("empty, not null") << ""
                                     << "DICOM" << 2;
}

void MervImageObjectTest::namesComeFromTheFileName()
{
    QFETCH(QString, fileName);
    QFETCH(QString, label);
    QFETCH(int, origin);
    const OpenImage object(newVolume(MERV::TypeUChar, {2, 2, 1}), fileName);
    QCOMPARE(object.label(), label);
    QCOMPARE(object.origin, origin);
    QCOMPARE(object.filePath(), fileName);
    QCOMPARE(object.filePath().isNull(), fileName.isNull());
}

void MervImageObjectTest::axesAreTheDimensionsAboveOne_data()
{
    QTest::addColumn<QList<int>>("size");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("slice") << QList<int>{256, 256, 1, 1, 1} << QStringList{"x", "y"};
    QTest::newRow("volume") << QList<int>{4, 3, 2, 1, 1} << QStringList{"x", "y", "z"};
    QTest::newRow("channels only") << QList<int>{1, 1, 1, 1, 5} << QStringList{"c"};
    QTest::newRow("frames only") << QList<int>{1, 1, 1, 7, 1} << QStringList{"f"};
    QTest::newRow("all") << QList<int>{2, 3, 4, 5, 3} << QStringList{"x", "y", "z", "f", "c"};
    QTest::newRow("voxel") << QList<int>{1, 1, 1, 1, 1} << QStringList{};
}

void MervImageObjectTest::axesAreTheDimensionsAboveOne()
{
    QFETCH(QList<int>, size);
    QFETCH(QStringList, names);
    const OpenImage object(newVolume(MERV::TypeUChar, {size[0], size[1], size[2], size[3], size[4]}));
    QCOMPARE(object.dimensionCount(), int(names.size()));
    for (int axis = 0; axis < names.size(); ++axis)
        QCOMPARE(object.axisName(axis), names[axis]);
    QCOMPARE(object.rangeName(), QStringLiteral("range"));
    QVERIFY(object.rangeUnit().isEmpty());
}

void MervImageObjectTest::kindsAndSignature()
{
    const OpenImage object(newVolume(MERV::TypeUChar, {2, 2, 2}));
    QCOMPARE(object.graphicsType(), 1);
    QCOMPARE(object.imageType(), 1);
    QCOMPARE(object.signature(),
             QString::fromUtf8("x\u00A0\u00D7\u00A0y\u00A0\u00D7\u00A0z\u00A0\u2192\u00A0range"));
}

void MervImageObjectTest::extentsAreVoxelsTimesSpacing()
{
    auto image = newVolume(MERV::TypeUChar, {300, 200, 10});
    image->setSpacing(0.5f, 0.25f, 1.5f, 1.0f);
    const OpenImage object(std::move(image));
    QCOMPARE(object.extentX(), 150.0f);
    QCOMPARE(object.extentY(), 50.0f);
    QCOMPARE(object.extentZ(), 15.0f);
    QCOMPARE(object.firstSignificantZ(), 0.75f);
    QVERIFY(object.hasContent());
    QVERIFY(object.sources().isEmpty());
}

void MervImageObjectTest::granularityIgnoresTheThicknessOfASingleSlice()
{
    auto slice = newVolume(MERV::TypeUChar, {4, 4, 1});
    slice->setSpacing(0.5f, 0.75f, 0.125f, 1.0f);
    QCOMPARE(OpenImage(std::move(slice)).granularity(), 0.5f);
    auto volume = newVolume(MERV::TypeUChar, {4, 4, 2});
    volume->setSpacing(0.5f, 0.75f, 0.125f, 1.0f);
    QCOMPARE(OpenImage(std::move(volume)).granularity(), 0.125f);
}

void MervImageObjectTest::stepping()
{
    auto image = newVolume(MERV::TypeUChar, {2, 2, 5});
    image->setSpacing(1.0f, 1.0f, 0.7f, 1.0f);
    const OpenImage object(std::move(image));
    // 0.2 spacings above the bottom: the next centre is the first one, and so is the previous one.
    QCOMPARE(object.nextSignificantZ(0.14f), sliceCentre(0, 0.7f));
    QCOMPARE(object.previousSignificantZ(0.14f), sliceCentre(0, 0.7f));
    // 1.7 spacings: slices 2 and 1.
    QCOMPARE(object.nextSignificantZ(1.19f), sliceCentre(2, 0.7f));
    QCOMPARE(object.previousSignificantZ(1.19f), sliceCentre(1, 0.7f));
    QCOMPARE(object.nextSignificantZ(sliceCentre(4, 0.7f)), sliceCentre(4, 0.7f));
    QCOMPARE(object.previousSignificantZ(70.0f), sliceCentre(4, 0.7f));
}

void MervImageObjectTest::steppingThroughATallStack()
{
    auto image = newVolume(MERV::TypeUChar, {1, 1, 2000});
    image->setSpacing(1.0f, 1.0f, 0.36f, 1.0f);
    const OpenImage object(std::move(image));
    float z = object.firstSignificantZ();
    int slices = 1;
    while (object.nextSignificantZ(z) > z) {
        z = object.nextSignificantZ(z);
        QCOMPARE(object.sliceIndexAt(static_cast<double>(z)), slices);
        ++slices;
    }
    QCOMPARE(slices, 2000);
    while (object.previousSignificantZ(z) < z) {
        z = object.previousSignificantZ(z);
        --slices;
    }
    QCOMPARE(slices, 1);
    QCOMPARE(z, object.firstSignificantZ());
}

void MervImageObjectTest::sliceIndex()
{
    auto image = newVolume(MERV::TypeUChar, {2, 2, 3});
    image->setSpacing(1.0f, 1.0f, 2.0f, 1.0f);
    const OpenImage object(std::move(image));
    QCOMPARE(object.sliceIndexAt(0.0), 0);
    QCOMPARE(object.sliceIndexAt(1.99), 0);
    QCOMPARE(object.sliceIndexAt(2.0), 1);
    QCOMPARE(object.sliceIndexAt(5.999999), 2);
    QCOMPARE(object.sliceIndexAt(6.0), -1);
    QCOMPARE(object.sliceIndexAt(-0.5), -1);
    QCOMPARE(object.sliceIndexAt(-1e-30), -1);
    QCOMPARE(object.sliceIndexAt(1e300), -1);
    QCOMPARE(object.sliceIndexAt(std::numeric_limits<double>::quiet_NaN()), -1);
}

void MervImageObjectTest::objectsAroundIsAHalfOpenBox()
{
    auto image = newVolume(MERV::TypeUChar, {4, 5, 6}); // 2 x 5 x 12 mm
    image->setSpacing(0.5f, 1.0f, 2.0f, 1.0f);
    OpenImage object(std::move(image));
    const auto hit = [&object](float x, float y, float z, float radius) {
        const std::unique_ptr<QList<GraphicsObject *>> hits(object.objectsAround(x, y, z, radius));
        return hits->size() == 1 && hits->first() == &object;
    };
    QVERIFY(hit(0.0f, 0.0f, 0.0f, 0.0f));
    QVERIFY(hit(1.5f, 4.5f, 11.5f, 0.0f));
    QVERIFY(!hit(2.0f, 1.0f, 1.0f, 0.0f));
    QVERIFY(hit(2.0f, 1.0f, 1.0f, 0.5f));
    QVERIFY(!hit(2.5f, 1.0f, 1.0f, 0.5f));
    QVERIFY(hit(-0.5f, 1.0f, 1.0f, 0.5f));
    QVERIFY(!hit(-0.75f, 1.0f, 1.0f, 0.5f));
    QVERIFY(!hit(1.0f, 5.0f, 1.0f, 0.0f));
    QVERIFY(!hit(1.0f, 1.0f, 12.0f, 0.0f));
    QVERIFY(!hit(std::numeric_limits<float>::quiet_NaN(), 1.0f, 1.0f, 0.5f));
}

void MervImageObjectTest::withoutAnImageTheDefaultsAreAnswered()
{
    OpenImage object(nullptr, QStringLiteral("/data/knee.mhd"));
    const QSignalSpy updated(&object, &GraphicsObject::updated);
    QVERIFY(object.voxels() == nullptr);
    QCOMPARE(object.dimensionCount(), -1);
    QCOMPARE(object.extentX(), 0.0f);
    QCOMPARE(object.extentY(), 0.0f);
    QCOMPARE(object.extentZ(), 0.0f);
    QCOMPARE(object.firstSignificantZ(), 0.0f);
    QCOMPARE(object.nextSignificantZ(2.5f), 2.5f);
    QCOMPARE(object.previousSignificantZ(2.5f), 2.5f);
    QCOMPARE(object.granularity(), 1.0f);
    QCOMPARE(object.windowLow(), 0.0f);
    QCOMPARE(object.windowHigh(), 0.0f);
    QCOMPARE(object.sliceIndexAt(0.0), -1);
    QVERIFY(object.displaySlice(0) == nullptr);
    const std::unique_ptr<QList<GraphicsObject *>> hits(object.objectsAround(0.0f, 0.0f, 0.0f, 1.0f));
    QVERIFY(hits->isEmpty());
    object.setWindow(0.0f, 1.0f);
    object.mirror(0);
    object.computeMinMax();
    object.updateTextures();
    object.setMetaData("key", "value");
    const auto other = newVolume(MERV::TypeUChar, {1, 1, 1});
    object.copyMaskedVoxels(*other, *other);
    QCOMPARE(updated.count(), 0);
}

void MervImageObjectTest::unusableSpacing_data()
{
    QTest::addColumn<float>("spacing");
    QTest::newRow("zero") << 0.0f;
    QTest::newRow("negative") << -1.0f;
    QTest::newRow("not a number") << std::numeric_limits<float>::quiet_NaN();
    QTest::newRow("infinite") << std::numeric_limits<float>::infinity();
}

void MervImageObjectTest::unusableSpacing()
{
    QFETCH(float, spacing);
    auto image = newVolume(MERV::TypeUChar, {3, 3, 3});
    image->setSpacing(spacing, spacing, spacing, 1.0f);
    const OpenImage object(std::move(image));
    QCOMPARE(object.sliceIndexAt(0.5), -1);
    QCOMPARE(object.nextSignificantZ(0.5f), 0.5f);
    QCOMPARE(object.previousSignificantZ(0.5f), 0.5f);
}

void MervImageObjectTest::texturesArePaddedToPowersOfTwo()
{
    auto image = newVolume(MERV::TypeUShort, {300, 200, 10}, ramp);
    image->setWindowRange(0.0f, 2550.0f, 0);
    OpenImage object(std::move(image));
    QCOMPARE(object.textureWidth, 512);
    QCOMPARE(object.textureHeight, 256);
    QCOMPARE(object.textureDepth, 10);
    QCOMPARE(object.textureRowPitch(), 512);
    QCOMPARE(object.validSlices(), 10);
    // A tenth of 10 x + y + 100 z, truncated: (37, 45, 3) has 715.
    QCOMPARE(int(object.texel(3, 37, 45)), 71);
    QCOMPARE(int(object.texel(0, 0, 0)), 0);
    QCOMPARE(int(object.texel(9, 299, 199)), 255); // 4089 is above the window
    // Around the slice: zero.
    QCOMPARE(int(object.texel(9, 300, 0)), 0);
    QCOMPARE(int(object.texel(9, 0, 200)), 0);
    QCOMPARE(object.displaySlice(3)[45 * 512 + 37], static_cast<unsigned char>(71));
    QVERIFY(object.displaySlice(-1) == nullptr);
    QVERIFY(object.displaySlice(10) == nullptr);
}

void MervImageObjectTest::texturesAreConvertedOnce()
{
    auto image = std::make_unique<CountingVolume>();
    image->setVerbose(0);
    image->setDimensions(8, 8, 20, 1, 1);
    image->computeMinMax();
    const CountingVolume &volume = *image;
    OpenImage object(std::move(image));
    QCOMPARE(volume.conversions, 20);
    for (int round = 0; round < 5; ++round) {
        for (int slice = 0; slice < 20; ++slice)
            QVERIFY(object.displaySlice(slice) != nullptr);
    }
    object.updateTextures();
    QCOMPARE(volume.conversions, 20);
    // A new window costs nothing until a slice is shown, and then that slice only.
    object.setWindow(0.0f, 10.0f);
    QCOMPARE(volume.conversions, 20);
    QCOMPARE(object.validSlices(), 0);
    for (int round = 0; round < 5; ++round)
        object.displaySlice(7);
    QCOMPARE(volume.conversions, 21);
    QCOMPARE(object.validSlices(), 1);
}

void MervImageObjectTest::texturesFollowTheSizeOfTheImage()
{
    OpenImage object(newVolume(MERV::TypeUChar, {16, 16, 4}, [](int, int, int) { return 9; }));
    object.voxels()->setDimensions(33, 5, 6, 1, 1);
    QVERIFY(object.displaySlice(5) != nullptr);
    QCOMPARE(object.textureWidth, 64);
    QCOMPARE(object.textureHeight, 8);
    QCOMPARE(object.textureDepth, 6);
    object.voxels()->setDimensions(0, 0, 0, 1, 1);
    object.updateTextures();
    QCOMPARE(object.textureDepth, 0);
    QVERIFY(object.displaySlice(0) == nullptr);
}

void MervImageObjectTest::windowChangesWhatIsShownOnly()
{
    OpenImage object(newVolume(MERV::TypeUShort, {4, 4, 2}, ramp));
    QCOMPARE(object.windowLow(), 0.0f);
    QCOMPARE(object.windowHigh(), 133.0f); // 10 * 3 + 3 + 100
    const QSignalSpy updated(&object, &GraphicsObject::updated);
    object.setWindow(10.0f, 265.0f);
    QCOMPARE(updated.count(), 1);
    QCOMPARE(object.windowLow(), 10.0f);
    QCOMPARE(object.windowHigh(), 265.0f);
    QCOMPARE(object.validSlices(), 0);
    QCOMPARE(int(object.displaySlice(1)[1]), 100); // voxel (1, 0, 1) has 110; the window is 255 wide
    QCOMPARE(object.voxels()->getVoxel(1, 0, 1, 0, 0), 110.0f);
    QCOMPARE(object.validSlices(), 1);
}

void MervImageObjectTest::mirrorTurnsOneAxis_data()
{
    QTest::addColumn<int>("axis");
    for (int axis = -1; axis <= 5; ++axis)
        QTest::addRow("%d", axis) << axis;
}

void MervImageObjectTest::mirrorTurnsOneAxis()
{
    QFETCH(int, axis);
    const int size[5] = {4, 4, 2, 2, 2}; // x, y, z, t, channels
    auto image = newVolume(MERV::TypeUShort, {size[0], size[1], size[2], size[3], size[4]});
    for (std::uint64_t index = 0; index < image->getValueCount(); ++index)
        image->setValue(static_cast<float>(index), index);
    image->computeMinMax();
    const std::unique_ptr<MERV::Image> before(image->clone());
    OpenImage object(std::move(image));
    const QSignalSpy updated(&object, &GraphicsObject::updated);
    object.mirror(axis);
    const bool known = axis >= 0 && axis <= 4;
    QCOMPARE(updated.count(), known ? 1 : 0);
    QCOMPARE(object.validSlices(), known ? 0 : 2);
    for (int z = 0; z < 2; ++z) {
        for (int x = 0; x < 4; ++x) {
            int at[5] = {x, 1, z, 1, 0};
            const float now = object.voxels()->getVoxel(at[0], at[1], at[2], at[3], at[4]);
            if (known)
                at[axis] = size[axis] - 1 - at[axis];
            QCOMPARE(now, before->getVoxel(at[0], at[1], at[2], at[3], at[4]));
        }
    }
}

void MervImageObjectTest::computeMinMaxEmitsNothing()
{
    OpenImage object(newVolume(MERV::TypeUShort, {4, 4, 2}, ramp));
    const QSignalSpy updated(&object, &GraphicsObject::updated);
    object.voxels()->setVoxel(500.0f, 0, 0, 0, 0, 0);
    object.computeMinMax();
    QCOMPARE(object.windowHigh(), 500.0f);
    QCOMPARE(object.validSlices(), 0);
    QCOMPARE(updated.count(), 0);
}

void MervImageObjectTest::maskedVoxelsAreCopied()
{
    OpenImage object(newVolume(MERV::TypeUShort, {4, 4, 2}, [](int, int, int) { return 7; }));
    const auto mask = newVolume(MERV::TypeUChar, {4, 4, 2},
                                [](int x, int y, int) { return x == 1 ? 255 : (y == 2 ? 254 : 0); });
    const auto source = newVolume(MERV::TypeUShort, {4, 4, 2}, ramp);
    const QSignalSpy updated(&object, &GraphicsObject::updated);
    object.copyMaskedVoxels(*mask, *source);
    QCOMPARE(object.voxels()->getVoxel(1, 2, 1, 0, 0), 112.0f); // 10 + 2 + 100
    QCOMPARE(object.voxels()->getVoxel(0, 2, 1, 0, 0), 7.0f);   // 254 is not 255
    QCOMPARE(object.windowLow(), 7.0f);
    QCOMPARE(object.windowHigh(), 113.0f); // the largest taken: (1, 3, 1)
    QCOMPARE(object.validSlices(), 0);
    QCOMPARE(updated.count(), 0);
}

void MervImageObjectTest::maskOfAnotherSizeIsRefused()
{
    OpenImage object(newVolume(MERV::TypeUShort, {4, 4, 2}, ramp));
    object.voxels()->setWindowRange(-5.0f, 5.0f, 0);
    const auto mask = newVolume(MERV::TypeUChar, {4, 3, 2}, [](int, int, int) { return 255; });
    const auto source = newVolume(MERV::TypeUShort, {4, 4, 2});
    object.copyMaskedVoxels(*mask, *source);
    QCOMPARE(object.voxels()->getVoxel(3, 2, 1, 0, 0), 132.0f);
    QCOMPARE(object.windowLow(), -5.0f); // not even the range is recomputed
    QCOMPARE(object.validSlices(), 2);
}

void MervImageObjectTest::maskedCopyIsBoundedByTheSmallestDepth()
{
    OpenImage object(newVolume(MERV::TypeUShort, {4, 4, 5}, [](int, int, int) { return 1; }));
    const auto mask = newVolume(MERV::TypeUChar, {4, 4, 5}, [](int, int, int) { return 255; });
    const auto source = newVolume(MERV::TypeUShort, {4, 4, 2}, [](int, int, int) { return 3; });
    object.copyMaskedVoxels(*mask, *source);
    QCOMPARE(object.voxels()->getVoxel(3, 3, 1, 0, 0), 3.0f);
    QCOMPARE(object.voxels()->getVoxel(0, 0, 2, 0, 0), 1.0f);
}

void MervImageObjectTest::metaDataGoToTheVoxels()
{
    OpenImage object(newVolume(MERV::TypeUChar, {1, 1, 1}));
    object.setMetaData("Patient", "J\u00F6rg");
    QCOMPARE(object.voxels()->getMetaData("Patient"), std::string("J\u00F6rg"));
}

// A worker fills all voxels with one value per round, under the lock, and has the textures invalidated;
// slices that are shown meanwhile are of one round, and the last round is seen in the end.
void MervImageObjectTest::workerMayWriteVoxelsUnderTheLock()
{
    constexpr int rounds = 200;
    auto image = newVolume(MERV::TypeUChar, {16, 16, 4});
    image->setWindowRange(0.0f, 255.0f, 0);
    OpenImage object(std::move(image));
    std::atomic<bool> done{false};
    std::thread worker([&] {
        for (int round = 1; round <= rounds; ++round) {
            {
                const auto lock = object.lockVoxels();
                for (std::uint64_t index = 0; index < object.voxels()->getValueCount(); ++index)
                    object.voxels()->setValue(static_cast<float>(round), index);
            }
            object.invalidateTextures();
        }
        done = true;
    });
    bool oneRound = true;
    while (!done) {
        const unsigned char *bytes = object.displaySlice(2);
        oneRound =
            oneRound && std::all_of(bytes, bytes + 256, [bytes](unsigned char b) { return b == bytes[0]; });
    }
    worker.join();
    QVERIFY(oneRound);
    QCOMPARE(int(object.displaySlice(2)[255]), rounds);
}

void MervImageObjectTest::emptyVoxelImage()
{
    std::unique_ptr<MERV::Image> image(MERV::createImage(MERV::TypeShort));
    OpenImage object(std::move(image));
    QCOMPARE(object.dimensionCount(), 0);
    QCOMPARE(object.textureDepth, 0);
    QCOMPARE(object.nextSignificantZ(1.25f), 1.25f);
    QCOMPARE(object.sliceIndexAt(0.0), -1);
    object.setWindow(0.0f, 1.0f);
    object.computeMinMax();
}

void MervImageObjectTest::rectangleTexturesAreRecognisedButNotUsed()
{
    QVERIFY(MervImageObject::offersRectangleTextures("GL_A GL_EXT_texture_rectangle GL_B"));
    QVERIFY(MervImageObject::offersRectangleTextures("gl_arb_TEXTURE_rectangle"));
    QVERIFY(!MervImageObject::offersRectangleTextures("GL_A GL_B"));
    QVERIFY(!MervImageObject::offersRectangleTextures(nullptr));
    QCOMPARE(MervImageObject::detectTextureMode("GL_ARB_texture_rectangle"), 1);
    QCOMPARE(MervImageObject::detectTextureMode(""), 1);
}

QTEST_APPLESS_MAIN(MervImageObjectTest)
#include "MervImageObjectTest.moc"
