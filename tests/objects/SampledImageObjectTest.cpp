#include "objects/DoubleBufferedSparselySampledImageObject.h"

#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <cmath>
#include <thread>
#include <utility>

namespace {

// Lets a test see which map is which.
class OpenBuffers : public DoubleBufferedSparselySampledImageObject
{
public:
    using SparselySampledImageObject::firstSamples;
    using SparselySampledImageObject::readSamples;
    using SparselySampledImageObject::writeSamples;
};

} // namespace

class SampledImageObjectTest : public QObject
{
    Q_OBJECT

private slots:
    void samplesAreFoundByPosition();
    void singleBufferIsReadAtOnce();
    void samplesAreOrderedByPosition();
    void swapTogglesTheTwoMaps();
    void swapEmitsUpdatedOnce();
    void writingIsNotSeenBeforeTheSwap();
    void readersSeeWholeSets();
    void revisionGrowsWithWhatIsRead();
    void revisionNamesWhatAReaderSees();
};

void SampledImageObjectTest::samplesAreFoundByPosition()
{
    SparselySampledImageObject object(QStringLiteral("distances"), nullptr);
    QCOMPARE(object.label(), QStringLiteral("distances"));
    QCOMPARE(object.imageType(), 0);
    QCOMPARE(object.sampleAt({1.0, 2.0, 3.0}), 0.0);
    object.setSample({1.0, 2.0, 3.0}, 2.5);
    object.setSample({1.0, 2.0, std::nan("")}, 7.0);
    QCOMPARE(object.sampleAt({1.0, 2.0, 3.0}), 2.5);
    QCOMPARE(object.sampleAt({1.0, 2.0, 3.5}), 0.0);
    QCOMPARE(object.sampleAt({1.0, 2.0, std::nan("")}), 7.0);
    QVERIFY(object.hasSample({1.0, 2.0, 3.0}));
    QVERIFY(!object.hasSample({1.0, 2.0, 3.5}));
    object.clearSamples();
    QVERIFY(!object.hasSample({1.0, 2.0, 3.0}));
}

void SampledImageObjectTest::singleBufferIsReadAtOnce()
{
    SparselySampledImageObject object;
    object.setSample({0.0, 0.0, 0.0}, 0.0);
    QCOMPARE(object.samples()->size(), std::size_t(1));
}

void SampledImageObjectTest::samplesAreOrderedByPosition()
{
    SparselySampledImageObject object;
    object.setSample({2.0, 0.0, 0.0}, 4.0);
    object.setSample({1.0, 2.0, 0.0}, 3.0);
    object.setSample({1.0, 1.0, 5.0}, 2.0);
    object.setSample({1.0, 1.0, 4.0}, 1.0);
    double expected = 1.0;
    const LockedSamples samples = object.samples();
    for (const auto &[position, value] : *samples) {
        QCOMPARE(value, expected);
        expected += 1.0;
    }
    QCOMPARE(expected, 5.0);
    QCOMPARE(samples.value({1.0, 2.0, 0.0}), 3.0);
    QVERIFY(samples.contains({2.0, 0.0, 0.0}));
}

void SampledImageObjectTest::swapTogglesTheTwoMaps()
{
    OpenBuffers object;
    const SampleMap *first = object.firstSamples.get();
    const SampleMap *second = object.readSamples;
    QVERIFY(second != first);
    QVERIFY(object.writeSamples == first);
    object.swapSamples();
    QVERIFY(object.readSamples == first);
    QVERIFY(object.writeSamples == second);
    object.swapSamples();
    QVERIFY(object.readSamples == second);
    QVERIFY(object.writeSamples == first);
}

void SampledImageObjectTest::swapEmitsUpdatedOnce()
{
    DoubleBufferedSparselySampledImageObject object;
    const QSignalSpy updated(&object, &GraphicsObject::updated);
    // A reader that answers the signal finds the lock free and the new samples published.
    object.setSample({1.0, 1.0, 1.0}, 5.0);
    double seen = 0.0;
    connect(&object, &GraphicsObject::updated, &object, [&] { seen = object.sampleAt({1.0, 1.0, 1.0}); });
    object.swapSamples();
    QCOMPARE(updated.count(), 1);
    QCOMPARE(seen, 5.0);
}

void SampledImageObjectTest::writingIsNotSeenBeforeTheSwap()
{
    DoubleBufferedSparselySampledImageObject object;
    object.setSample({1.0, 1.0, 1.0}, 5.0);
    QVERIFY(!object.hasSample({1.0, 1.0, 1.0}));
    object.swapSamples();
    QVERIFY(object.hasSample({1.0, 1.0, 1.0}));
    object.clearSamples();
    object.setSample({2.0, 2.0, 2.0}, 6.0);
    QVERIFY(object.hasSample({1.0, 1.0, 1.0}));
    object.swapSamples();
    QVERIFY(!object.hasSample({1.0, 1.0, 1.0}));
    QVERIFY(object.hasSample({2.0, 2.0, 2.0}));
}

// One thread fills and swaps while this one iterates: each set that is read is whole and of one round.
void SampledImageObjectTest::readersSeeWholeSets()
{
    DoubleBufferedSparselySampledImageObject object;
    std::atomic<bool> stop{false};
    std::thread writer([&] {
        for (int round = 1; !stop; ++round) {
            object.clearSamples();
            for (int index = 0; index < 50; ++index)
                object.setSample({static_cast<double>(index), 0.0, 0.0}, static_cast<double>(round));
            object.swapSamples();
        }
    });
    bool whole = true;
    int filled = 0;
    for (int reading = 0; filled < 200 && reading < 2000000; ++reading) {
        const LockedSamples samples = object.samples();
        if (samples->empty())
            continue;
        ++filled;
        const double round = samples->begin()->second;
        std::size_t count = 0;
        for (const auto &[position, value] : *samples) {
            whole = whole && value == round;
            ++count;
        }
        whole = whole && count == 50;
    }
    stop = true;
    writer.join();
    QVERIFY(whole);
    QVERIFY(filled >= 200);
}

void SampledImageObjectTest::revisionGrowsWithWhatIsRead()
{
    SparselySampledImageObject single;
    std::uint64_t last = single.revision();
    const auto hasGrown = [&last](const SparselySampledImageObject &object) {
        return object.revision() > std::exchange(last, object.revision());
    };
    single.setSample({1.0, 2.0, 3.0}, 1.0);
    QVERIFY(hasGrown(single));
    single.setSample({1.0, 2.0, 3.0}, 2.0);
    QVERIFY(hasGrown(single));
    single.clearSamples();
    QVERIFY(hasGrown(single));
    QVERIFY(!hasGrown(single));

    DoubleBufferedSparselySampledImageObject buffers;
    last = buffers.revision();
    for (int round = 0; round < 3; ++round) {
        buffers.clearSamples();
        buffers.setSample({1.0, 2.0, 3.0}, 1.0);
        QVERIFY(!hasGrown(buffers)); // on the side for writing
        buffers.swapSamples();
        QVERIFY(hasGrown(buffers));
    }
}

// The writer publishes the set n under the revision n.
void SampledImageObjectTest::revisionNamesWhatAReaderSees()
{
    constexpr int rounds = 2000;
    DoubleBufferedSparselySampledImageObject object;
    const std::uint64_t start = object.revision();
    std::atomic<bool> isDone = false;
    std::thread writer([&] {
        for (int round = 1; round <= rounds; ++round) {
            object.clearSamples();
            object.setSample({0.0, 0.0, 0.0}, round);
            object.swapSamples();
        }
        isDone = true;
    });
    int wrong = 0;
    while (!isDone) {
        const LockedSamples samples = object.samples();
        const auto revision = static_cast<double>(object.revision() - start);
        wrong += samples.value({0.0, 0.0, 0.0}) == revision ? 0 : 1;
    }
    writer.join();
    QCOMPARE(wrong, 0);
    QCOMPARE(object.revision() - start, std::uint64_t(rounds));
}

QTEST_APPLESS_MAIN(SampledImageObjectTest)
#include "SampledImageObjectTest.moc"
