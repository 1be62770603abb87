#include "meshes/TriMeshFragment.h"
#include "meshes/TriMeshObject.h"

#include <QTest>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

using MERV::BRep::TriFace;

// Nothing here draws and no event loop runs, so that ThreadSanitizer sees all there is.
namespace {

constexpr int fullCount = 60;
constexpr int manyFaces = 5000;

// The marker is in every coordinate, so that a half written face shows.
TriFace markedFace(double marker)
{
    return {{marker, marker, marker}, {marker, marker, marker}, {marker, marker, marker}};
}

bool isMarked(const TriFace &face, double marker)
{
    for (int i = 0; i < 3; ++i)
        if (!face.vertex(i).sameCoordinates({marker, marker, marker}))
            return false;
    return true;
}

std::vector<TriFace> markedFaces(int count, double marker)
{
    return std::vector<TriFace>(static_cast<std::size_t>(count), markedFace(marker));
}

// Runs look on threads of their own until the end of the scope, each at least once.
template <class Look>
class Readers
{
public:
    Readers(int count, Look look)
    {
        for (int i = 0; i < count; ++i)
            threads.emplace_back([this, look] {
                do {
                    look();
                    ++looks;
                } while (!stop);
            });
    }
    ~Readers()
    {
        stop = true;
        for (std::thread &thread : threads)
            thread.join();
    }
    Readers(const Readers &) = delete;
    Readers &operator=(const Readers &) = delete;

    int count() const { return looks; }

private:
    std::atomic<bool> stop{false};
    std::atomic<int> looks{0};
    std::vector<std::thread> threads;
};

// Calls touch while another thread holds the lock for a moment. True if that had let go when touch was done.
bool waits(TriMeshFragment &fragment, bool forWriting, const std::function<void()> &touch)
{
    std::atomic<bool> taken{false};
    std::atomic<bool> over{false};
    std::thread holder([&] {
        forWriting ? fragment.lockForWrite() : fragment.lockForRead();
        taken = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        over = true;
        fragment.unlock();
    });
    while (!taken)
        std::this_thread::yield();
    touch();
    const bool waited = over;
    holder.join();
    return waited;
}

} // namespace

class TriMeshThreadsTest : public QObject
{
    Q_OBJECT

private slots:
    // Faces come one at a time, so a snapshot holds the first of them, whole, and never more than there are.
    void snapshotsHoldTheFacesAddedSoFar()
    {
        TriMeshFragment fragment;
        std::atomic<int> faults{0};
        {
            const Readers readers(2, [&] {
                const TriMeshFragment snapshot(fragment);
                const int count = snapshot.faceCount();
                faults += count > fullCount ? 1 : 0;
                for (int i = 0; i < count; ++i)
                    faults += isMarked(snapshot.face(i), i) ? 0 : 1;
                faults += fragment.faceCount() > fullCount ? 1 : 0;
            });
            for (int round = 0; round < 200 || readers.count() < 20; ++round) {
                fragment.clear();
                for (int i = 0; i < fullCount; ++i)
                    fragment.addFace(markedFace(i));
            }
        }
        QCOMPARE(faults.load(), 0);
    }

    // Between two calls of clear() snapshots only grow, and the count of changes tells which is younger.
    void snapshotsGrowBetweenClearings()
    {
        TriMeshFragment fragment;
        std::atomic<int> faults{0};
        std::thread reader([&] {
            int last = 0;
            std::uint64_t lastRevision = 0;
            while (last < manyFaces) {
                const TriMeshFragment snapshot(fragment);
                faults += snapshot.faceCount() < last || snapshot.revision() < lastRevision ? 1 : 0;
                faults += snapshot.revision() != static_cast<std::uint64_t>(snapshot.faceCount()) ? 1 : 0;
                last = snapshot.faceCount();
                lastRevision = snapshot.revision();
            }
        });
        for (int i = 0; i < manyFaces; ++i)
            fragment.addFace(markedFace(i));
        reader.join();
        QCOMPARE(faults.load(), 0);
    }

    // Faces and names that are replaced at once are seen whole or not at all.
    void snapshotsNeverShowAPartOfAReplacement()
    {
        TriMeshFragment fragment;
        fragment.setFaces(markedFaces(fullCount, 0));
        fragment.setLabel("label 0");
        std::atomic<int> faults{0};
        {
            const Readers readers(2, [&] {
                const TriMeshFragment snapshot(fragment);
                const QString &label = snapshot.displayName();
                faults += label == "label 0" || label == "label 1" ? 0 : 1;
                const double marker = snapshot.face(0).vertex(0).x;
                faults += snapshot.faceCount() == fullCount + static_cast<int>(marker) ? 0 : 1;
                for (int i = 0; i < snapshot.faceCount(); ++i)
                    faults += isMarked(snapshot.face(i), marker) ? 0 : 1;
            });
            for (int round = 0; round < 1000 || readers.count() < 20; ++round) {
                fragment.setFaces(markedFaces(fullCount + round % 7, round % 7));
                fragment.setLabel(QString("label %1").arg(round % 2));
            }
        }
        QCOMPARE(faults.load(), 0);
    }

    void changesWaitForAReader()
    {
        TriMeshFragment fragment;
        QVERIFY(waits(fragment, false, [&] { fragment.addFace(markedFace(1)); }));
        QVERIFY(waits(fragment, false, [&] { fragment.clear(); }));
        QVERIFY(waits(fragment, false, [&] { fragment.setFaces(markedFaces(2, 1)); }));
        QVERIFY(waits(fragment, false, [&] { fragment.setLabel("other"); }));
        QCOMPARE(fragment.faceCount(), 2);
    }

    void readersWaitForAChange()
    {
        TriMeshFragment fragment;
        fragment.setFaces(markedFaces(2, 1));
        QVERIFY(waits(fragment, true, [&] { QCOMPARE(fragment.faceCount(), 2); }));
        QVERIFY(waits(fragment, true, [&] { QVERIFY(isMarked(fragment.face(1), 1)); }));
        QVERIFY(waits(fragment, true, [&] { QCOMPARE(TriMeshFragment(fragment).size(), std::size_t{2}); }));
        // face() has let go of the lock although its answer is still in use.
        const TriFace &face = fragment.face(0);
        QVERIFY(fragment.tryLockForWrite());
        fragment.unlock();
        QVERIFY(isMarked(face, 1));
    }

    void destructorWaitsForAReader()
    {
        auto fragment = std::make_unique<TriMeshFragment>();
        fragment->setFaces(markedFaces(fullCount, 3));
        std::atomic<bool> reading{false};
        std::atomic<bool> done{false};
        int intact = 0;
        std::thread reader([&, borrowed = fragment.get()] {
            borrowed->lockForRead();
            reading = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            for (std::size_t i = 0; i < borrowed->size(); ++i)
                intact += isMarked((*borrowed)[i], 3) ? 1 : 0;
            done = true;
            borrowed->unlock();
        });
        while (!reading)
            std::this_thread::yield();
        fragment.reset();
        QVERIFY(done);
        reader.join();
        QCOMPARE(intact, fullCount);
    }

    // What draws from a worker walks the fragments while the main thread adds some. Empty fragments send
    // nothing to OpenGL.
    void fragmentsAreAddedWhileAWorkerDraws()
    {
        TriMeshObject object;
        const double plane[4] = {0, 0, 1, -5};
        {
            const Readers readers(1, [&] {
                object.renderBox(nullptr, 0, 1, 0, 1, 0, 1);
                object.renderPlane(nullptr, plane);
            });
            for (int i = 0; i < 500 || readers.count() < 20; ++i) {
                object.addFragment("another")->addFace(TriFace());
                object.fragment(0)->setFaces(std::vector<TriFace>(static_cast<std::size_t>(i % 5)));
            }
        }
        QVERIFY(object.fragmentCount() >= 500);
    }
};

QTEST_GUILESS_MAIN(TriMeshThreadsTest)
#include "TriMeshThreadsTest.moc"
