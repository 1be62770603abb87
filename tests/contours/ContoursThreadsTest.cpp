#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "objects/GraphicsObjectRenderAdvisor.h"
#include "platform/ReadWriteLock.h"

#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <random>
#include <thread>

// Nothing here draws and no event loop runs, so that ThreadSanitizer sees all there is: a worker reads an
// object's segments as a drawing worker does, while the main thread edits them.
namespace {

// Drawing of an object without segments in the slab sends nothing to OpenGL, yet walks all lists. The advisor
// looks at the object that it is asked about.
class ReadingAdvisor : public GraphicsObjectRenderAdvisor
{
public:
    bool overrides(GraphicsObject *object, int, int) override
    {
        asked += object->graphicsType() == GraphicsTypeFragment ? 1 : 0;
        return false;
    }
    std::uint32_t value(GraphicsObject *, int, int) override { return 0; }

    int asked = 0;
};

void editAtRandom(SlicedContoursObject &object, std::mt19937 &random)
{
    SlicedContoursFragment *fragment = object.fragment(static_cast<int>(random() % 2));
    const int count = fragment->segmentCount();
    SlicedContoursSegment *any =
        count > 0 ? fragment->segment(static_cast<int>(random() % static_cast<unsigned>(count))) : nullptr;
    const QPointF point(static_cast<double>(random() % 50), static_cast<double>(random() % 50));
    switch (random() % 6) {
    case 0:
        fragment->newSegment(point, static_cast<float>(random() % 5));
        break;
    case 1:
        if (count > 20)
            delete any;
        break;
    case 2:
        if (any != nullptr)
            any->addPointFront(point);
        break;
    case 3:
        if (any != nullptr)
            any->setZ(static_cast<float>(random() % 5));
        break;
    case 4:
        if (count > 1 && fragment->segment(0)->pointCount() > 0)
            fragment->segment(0)->replaceWith(fragment->segment(count - 1), nullptr);
        break;
    default:
        if (any != nullptr)
            any->addPointBack(point);
    }
}

} // namespace

class ContoursThreadsTest : public QObject
{
    Q_OBJECT

private slots:
    void workerDrawsWhileSegmentsComeAndGo()
    {
        SlicedContoursObject object;
        object.newFragment("a");
        object.newFragment("b");
        object.newContour("c")->addFragmentReference(object.fragment(0));
        std::atomic<bool> stop{false};
        std::atomic<int> rounds{0};
        std::thread worker([&] {
            ReadingAdvisor advisor;
            while (!stop) {
                // No segment is ever in this slab, which keeps OpenGL out of it.
                object.renderBox(&advisor, 0, 1, 0, 1, 1000, 1001);
                ++rounds;
            }
            QVERIFY(advisor.asked > 0);
        });
        std::mt19937 random(1);
        for (int i = 0; i < 10000; ++i)
            editAtRandom(object, random);
        while (rounds < 10)
            std::this_thread::yield();
        for (int i = 0; i < 50; ++i) {
            auto *fragment = object.newFragment("short-lived");
            object.contour(0)->addFragmentReference(fragment);
            fragment->newSegment({0, 0}, 1.0f);
            delete fragment;
            delete object.newContour("short-lived");
        }
        stop = true;
        worker.join();
    }

    void workerReadsASegmentWhileItIsEdited()
    {
        SlicedContoursSegment segment({0, 0}, 1.0f);
        std::atomic<bool> stop{false};
        std::thread worker([&] {
            while (!stop) {
                const SegmentSnapshot snapshot = segment.snapshot();
                QVERIFY(snapshot.z == 1.0f || snapshot.z == 2.0f);
                QVERIFY(segment.length() >= 0.0f);
                QVERIFY(segment.pointCount() >= 1);
                segment.point(-1);
                QList<Vector3> points;
                segment.appendPointsNear({5, 5, 1}, 4.0, points);
                QVERIFY(segment.extentX() >= 0.0);
            }
        });
        std::mt19937 random(2);
        for (int i = 0; i < 20000; ++i) {
            segment.addPointBack({static_cast<double>(random() % 30), static_cast<double>(random() % 30)});
            segment.setZ(i % 2 == 0 ? 1.0f : 2.0f);
        }
        stop = true;
        worker.join();
    }

    // A reader sees both numbers of a pair change together.
    void lockKeepsReadersAndWritersApart()
    {
        ReadWriteLock lock;
        int left = 0;
        int right = 0;
        std::atomic<bool> stop{false};
        std::thread reader([&] {
            while (!stop) {
                const ReadLocker locker(&lock);
                QCOMPARE(left, right);
            }
        });
        for (int i = 0; i < 20000; ++i) {
            const WriteLocker locker(&lock);
            ++left;
            ++right;
        }
        stop = true;
        reader.join();
        const ReadLocker none(nullptr);
        const WriteLocker neither(nullptr);
        QCOMPARE(left, 20000);
    }

    // The main thread edits inside a receiver, which runs after all locks are given back.
    void receiversMayEdit()
    {
        SlicedContoursObject object;
        SlicedContoursFragment *fragment = object.newFragment("a");
        int depth = 0;
        connect(&object, qOverload<QObject *>(&SlicedContoursObject::updated), this, [&] {
            if (depth++ == 0)
                fragment->newSegment({1, 1}, 2.0f)->addPointBack({2, 2});
        });
        connect(&object, &SlicedContoursObject::structureChanged, this, [&] {
            if (object.fragmentCount() == 2)
                object.newFragment("third");
        });
        fragment->newSegment({0, 0}, 1.0f)->addPointBack({5, 5});
        QCOMPARE(fragment->segmentCount(), 2);
        object.newFragment("second");
        QCOMPARE(object.fragmentCount(), 3);
        delete fragment->segment(0);
        QCOMPARE(fragment->segmentCount(), 1);
    }
};

QTEST_GUILESS_MAIN(ContoursThreadsTest)
#include "ContoursThreadsTest.moc"
