#pragma once

#include "objects/DoubleBufferedSparselySampledImageObject.h"
#include "platform/WorkerThread.h"

#include <memory>
#include <mutex>
#include <span>

class TriMeshFragment;

namespace MERV::BRep {
class TriFace;
}

// The distance in mm from each vertex of the base fragment to the remote one, as samples at the vertices, and
// a summary at four reserved positions. Measured on a worker thread of its own, anew after every change of
// either fragment; a finished result is published whole, with updated() from the worker. Base and remote may
// be the same; they are not owned and may be null: then the result is empty.
class TriMeshDistanceMeasurer : public DoubleBufferedSparselySampledImageObject
{
    Q_OBJECT

public:
    enum Definition : int
    {
        AlongNormal = 0, // to the nearest hit on the line along the base face's normal, on either side
        PerpendicularToBase = 1, // the same
        MinimalDistance = 2      // to the closest point
    };

    // Where the summary stands among the samples, in place of a vertex that lies there.
    static constexpr Vector3 maximumKey{0, 0, 0};
    static constexpr Vector3 meanOfMaximaKey{0, 0, 1};
    static constexpr Vector3 meanKey{0, 0, 2};
    static constexpr Vector3 standardDeviationKey{0, 0, 3};

    TriMeshDistanceMeasurer(TriMeshFragment *base, TriMeshFragment *remote, const QString &label,
                            QObject *parent = nullptr);
    TriMeshDistanceMeasurer(TriMeshFragment *base, TriMeshFragment *remote, int definition,
                            const QString &label, QObject *parent = nullptr);
    ~TriMeshDistanceMeasurer() override;

    // A run was asked for and has not yet finished.
    bool isPending() const;
    bool isRunning() const { return worker.isRunning(); }
    void wait() { worker.join(); }

    QList<ImageObject *> sources() const override;
    void detachFrom(ImageObject *closing) override;
    void stopWorking() override;

public slots:
    // Ask for a new run. Any thread.
    void remeasure();
    void remeasure(QObject *object);

protected:
    // One measurement, on the worker. A class that replaces it calls shutdown() in its own destructor.
    virtual void measure();
    // Ends the worker: it leaves a running measurement without publishing it. May be called again.
    void shutdown();
    bool isStopping() const;

private:
    // Copies that the worker measures on; none while a fragment is absent. One copy if both are the same.
    struct Snapshots
    {
        std::shared_ptr<const TriMeshFragment> base, remote;
    };

    void follow(TriMeshFragment *fragment);
    void letGo(bool ofBase, bool ofRemote);
    void workLoop();
    void measureOrPublishNothing();
    Snapshots takeSnapshots() const;
    // The samples and their summary into the map for writing; false if it was stopped.
    bool fill(std::span<const MERV::BRep::TriFace> baseFaces,
              std::span<const MERV::BRep::TriFace> remoteFaces);

    // Changed by the main thread under sourceMutex; the worker holds it while it copies the fragments.
    TriMeshFragment *base, *remote;
    const int definition;
    mutable std::mutex sourceMutex; // taken alone or before a fragment's lock, never with flagMutex
    mutable std::mutex flagMutex;   // guards the flags; nothing else is taken under it
    bool pending = true;
    bool requested = true;
    bool stop = false;
    WorkerThread worker;
};
