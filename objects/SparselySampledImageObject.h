#pragma once

#include "objects/ImageObject.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <shared_mutex>

using SampleMap = std::map<Vector3, double, Vector3Order>;

// Samples for reading, under a shared lock: they stay as they are for as long as this exists. Keep it for one
// whole iteration, look single samples up through it meanwhile, and do not keep it across a signal.
class LockedSamples
{
public:
    LockedSamples(std::shared_mutex &mutex, const SampleMap *const &map)
        : lock(mutex)
        , samples(map)
    {}

    const SampleMap &operator*() const { return *samples; }
    const SampleMap *operator->() const { return samples; }
    // 0.0 for an unknown position.
    double value(const Vector3 &position) const;
    bool contains(const Vector3 &position) const { return samples->contains(position); }

private:
    std::shared_lock<std::shared_mutex> lock;
    const SampleMap *samples;
};

// Values at scattered positions (mm), drawn as small three-dimensional crosses. Owns its samples. Here the
// map that is read is the one that is filled, so both happen on the main thread.
class SparselySampledImageObject : public ImageObject
{
    Q_OBJECT

public:
    SparselySampledImageObject();
    SparselySampledImageObject(const QString &label, QObject *parent);
    SparselySampledImageObject(const SparselySampledImageObject &) = delete;
    SparselySampledImageObject &operator=(const SparselySampledImageObject &) = delete;
    ~SparselySampledImageObject() override;

    // 0.0 for an unknown position.
    double sampleAt(const Vector3 &position) const;
    bool hasSample(const Vector3 &position) const;
    LockedSamples samples() const;

    // Grows with every change of what samples() shows. Any thread; under LockedSamples it stays as it is.
    std::uint64_t revision() const { return changes; }

    // Fill the map for writing. Main thread, or the one worker that fills a double buffer.
    void setSample(const Vector3 &position, double value);
    void clearSamples();

    void render(GraphicsObjectRenderAdvisor *advisor) override;

protected:
    // For the filling thread, after a change of the map for writing: counts it if that map is the one read.
    void countChange();

    const SampleMap *readSamples; // guarded by samplesMutex
    SampleMap *writeSamples;      // the filling thread's; changed under samplesMutex
    std::unique_ptr<SampleMap> firstSamples;
    mutable std::shared_mutex samplesMutex; // shared: one reading; exclusive: changing the pointers
    std::atomic<std::uint64_t> changes{0};  // of what is read
};
