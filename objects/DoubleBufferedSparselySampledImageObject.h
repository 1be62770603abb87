#pragma once

#include "objects/SparselySampledImageObject.h"

// Samples with two buffers: one thread fills the side for writing while others read the finished side; a swap
// publishes what was written. What is drawn is never half written.
class DoubleBufferedSparselySampledImageObject : public SparselySampledImageObject
{
    Q_OBJECT

public:
    DoubleBufferedSparselySampledImageObject();
    DoubleBufferedSparselySampledImageObject(const QString &label, QObject *parent);
    ~DoubleBufferedSparselySampledImageObject() override;

    // Exchanges the two sides, as soon as no one reads, then emits updated(). For the thread that writes.
    void swapSamples();

private:
    std::unique_ptr<SampleMap> secondSamples;
};
