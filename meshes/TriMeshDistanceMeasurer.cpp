#include "meshes/TriMeshDistanceMeasurer.h"

#include "meshes/ThicknessMeasurement.h"
#include "meshes/TriMeshFragment.h"

#include <cmath>
#include <exception>
#include <iostream>
#include <optional>
#include <span>
#include <vector>

namespace {

constexpr unsigned long pollingIntervalMs = 20;

// Each line is handed over in one piece: several measurers write at the same time.
void say(const char *line)
{
    std::cout << line << std::flush;
}

bool isPlace(const Vector3 &position)
{
    return !std::isnan(position.x) && !std::isnan(position.y) && !std::isnan(position.z);
}

} // namespace

TriMeshDistanceMeasurer::TriMeshDistanceMeasurer(TriMeshFragment *newBase, TriMeshFragment *newRemote,
                                                 const QString &label, QObject *parent)
    : TriMeshDistanceMeasurer(newBase, newRemote, AlongNormal, label, parent)
{}

TriMeshDistanceMeasurer::TriMeshDistanceMeasurer(TriMeshFragment *newBase, TriMeshFragment *newRemote,
                                                 int newDefinition, const QString &label, QObject *parent)
    : DoubleBufferedSparselySampledImageObject(label, parent)
    , base(newBase)
    , remote(newRemote)
    , definition(newDefinition)
    , worker([this] { workLoop(); })
{
    if (label.isNull())
        setLabel(tr("some distance measurer for triangle meshes"));
    follow(base);
    if (remote != base)
        follow(remote);
    worker.start(QThread::InheritPriority);
}

TriMeshDistanceMeasurer::~TriMeshDistanceMeasurer()
{
    shutdown();
}

// A fragment whose lines have been taken away announces itself by updated(QObject *) only.
void TriMeshDistanceMeasurer::follow(TriMeshFragment *fragment)
{
    if (fragment == nullptr)
        return;
    connect(fragment, qOverload<>(&TriMeshFragment::updated), this,
            qOverload<>(&TriMeshDistanceMeasurer::remeasure));
    connect(fragment, qOverload<QObject *>(&TriMeshFragment::updated), this,
            qOverload<QObject *>(&TriMeshDistanceMeasurer::remeasure));
    connect(fragment, &QObject::destroyed, this,
            [this, fragment] { letGo(base == fragment, remote == fragment); });
}

void TriMeshDistanceMeasurer::letGo(bool ofBase, bool ofRemote)
{
    if (!ofBase && !ofRemote)
        return;
    {
        const std::lock_guard lock(sourceMutex);
        if (ofBase)
            base = nullptr;
        if (ofRemote)
            remote = nullptr;
    }
    remeasure();
}

void TriMeshDistanceMeasurer::detachFrom(ImageObject *closing)
{
    DoubleBufferedSparselySampledImageObject::detachFrom(closing);
    if (closing != nullptr)
        letGo(rootImageObject(base) == closing, rootImageObject(remote) == closing);
}

QList<ImageObject *> TriMeshDistanceMeasurer::sources() const
{
    QList<ImageObject *> owners;
    for (TriMeshFragment *fragment : {base, remote})
        if (ImageObject *owner = rootImageObject(fragment); owner != nullptr && !owners.contains(owner))
            owners.append(owner);
    return owners;
}

bool TriMeshDistanceMeasurer::isPending() const
{
    const std::lock_guard lock(flagMutex);
    return pending;
}

bool TriMeshDistanceMeasurer::isStopping() const
{
    const std::lock_guard lock(flagMutex);
    return stop;
}

void TriMeshDistanceMeasurer::remeasure()
{
    remeasure(nullptr);
}

void TriMeshDistanceMeasurer::remeasure(QObject *)
{
    const std::lock_guard lock(flagMutex);
    requested = true;
    pending = true;
}

void TriMeshDistanceMeasurer::shutdown()
{
    {
        const std::lock_guard lock(flagMutex);
        stop = true;
    }
    worker.join();
}

void TriMeshDistanceMeasurer::stopWorking()
{
    shutdown();
}

void TriMeshDistanceMeasurer::workLoop()
{
    for (;;) {
        bool run = false;
        {
            const std::lock_guard lock(flagMutex);
            if (stop)
                return;
            run = requested;
            requested = false;
        }
        if (!run) {
            QThread::msleep(pollingIntervalMs);
            continue;
        }
        measureOrPublishNothing();
        const std::lock_guard lock(flagMutex);
        pending = requested;
    }
}

// An exception must not leave the thread, and a thickness of an earlier mesh must not pass for this one's.
void TriMeshDistanceMeasurer::measureOrPublishNothing()
{
    try {
        measure();
    } catch (const std::exception &failure) {
        std::cerr << "Could not measure distance: " << failure.what() << std::endl;
        clearSamples();
        swapSamples();
    }
}

TriMeshDistanceMeasurer::Snapshots TriMeshDistanceMeasurer::takeSnapshots() const
{
    const std::lock_guard lock(sourceMutex);
    Snapshots copies;
    if (base == nullptr || remote == nullptr)
        return copies;
    copies.base = std::make_shared<const TriMeshFragment>(*base);
    copies.remote = remote == base ? copies.base : std::make_shared<const TriMeshFragment>(*remote);
    return copies;
}

void TriMeshDistanceMeasurer::measure()
{
    say("Measuring distance ...\n");
    clearSamples();
    const Snapshots meshes = takeSnapshots();
    if (meshes.base && !fill(meshes.base->all(), meshes.remote->all()))
        return;
    say("... finished measuring distance ... now swapping sample buffers.\n");
    swapSamples();
}

bool TriMeshDistanceMeasurer::fill(std::span<const MERV::BRep::TriFace> baseFaces,
                                   std::span<const MERV::BRep::TriFace> remoteFaces)
{
    const auto direction =
        definition == MinimalDistance ? ThicknessDirection::Closest : ThicknessDirection::AlongNormal;
    const auto measured =
        measureThickness(baseFaces, remoteFaces, direction, [this] { return isStopping(); });
    if (!measured)
        return false;
    for (const ThicknessSample &sample : *measured) {
        const MERV::BRep::Point place = euclidean(sample.vertex);
        if (const Vector3 key{place.x, place.y, place.z}; isPlace(key))
            setSample(key, sample.distance);
    }
    if (const auto summary = summarizeThickness(*measured)) {
        setSample(maximumKey, summary->maximum);
        setSample(meanOfMaximaKey, summary->meanOfMaxima);
        setSample(meanKey, summary->mean);
        setSample(standardDeviationKey, summary->standardDeviation);
    }
    return true;
}
