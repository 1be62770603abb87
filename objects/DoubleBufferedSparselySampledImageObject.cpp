#include "objects/DoubleBufferedSparselySampledImageObject.h"

#include <mutex>

DoubleBufferedSparselySampledImageObject::DoubleBufferedSparselySampledImageObject()
    : DoubleBufferedSparselySampledImageObject(QString(), nullptr)
{}

DoubleBufferedSparselySampledImageObject::DoubleBufferedSparselySampledImageObject(const QString &label,
                                                                                   QObject *parent)
    : SparselySampledImageObject(label, parent)
    , secondSamples(std::make_unique<SampleMap>())
{
    readSamples = secondSamples.get();
}

DoubleBufferedSparselySampledImageObject::~DoubleBufferedSparselySampledImageObject() = default;

void DoubleBufferedSparselySampledImageObject::swapSamples()
{
    {
        const std::unique_lock lock(samplesMutex);
        if (readSamples != secondSamples.get()) {
            readSamples = secondSamples.get();
            writeSamples = firstSamples.get();
        } else {
            readSamples = firstSamples.get();
            writeSamples = secondSamples.get();
        }
        ++changes;
    }
    emit updated();
}
