#include "objects/SparselySampledImageObject.h"

double LockedSamples::value(const Vector3 &position) const
{
    const auto found = samples->find(position);
    return found == samples->end() ? 0.0 : found->second;
}

SparselySampledImageObject::SparselySampledImageObject()
    : SparselySampledImageObject(QString(), nullptr)
{}

SparselySampledImageObject::SparselySampledImageObject(const QString &label, QObject *parent)
    : ImageObject(label, parent)
    , firstSamples(std::make_unique<SampleMap>())
{
    readSamples = firstSamples.get();
    writeSamples = firstSamples.get();
}

SparselySampledImageObject::~SparselySampledImageObject() = default;

double SparselySampledImageObject::sampleAt(const Vector3 &position) const
{
    return samples().value(position);
}

bool SparselySampledImageObject::hasSample(const Vector3 &position) const
{
    return samples().contains(position);
}

LockedSamples SparselySampledImageObject::samples() const
{
    return LockedSamples(samplesMutex, readSamples);
}

void SparselySampledImageObject::setSample(const Vector3 &position, double value)
{
    (*writeSamples)[position] = value;
    countChange();
}

void SparselySampledImageObject::clearSamples()
{
    writeSamples->clear();
    countChange();
}

void SparselySampledImageObject::countChange()
{
    if (writeSamples == readSamples)
        ++changes;
}
