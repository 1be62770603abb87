#pragma once

#include "objects/ImageObject.h"

#include <QStringList>

// An image that stands for a function: it answers a value at any position. It knows the names of its
// arguments (axes, numbered from 0) and of its value (range). Strings are returned by reference and live as
// long as the object stays unchanged.
class FunctionalImageObject : public ImageObject
{
    Q_OBJECT

public:
    using ImageObject::ImageObject;

    virtual int dimensionCount() const;
    // An empty string for an axis that does not exist.
    virtual const QString &axisName(int axis) const;
    virtual const QString &axisLabel(int axis) const;
    virtual bool isAxisDiscrete(int axis) const;
    virtual const QString &axisUnit(int axis) const;
    virtual const QString &axisUnit(int axis, int kind) const;
    virtual const QString &rangeName() const;
    virtual const QString &rangeLabel() const;
    virtual const QString &rangeUnit() const;
    // The axes joined by a multiplication sign, an arrow, the range: x × y × z → range. Built once and kept
    // until clearSignature().
    virtual const QString &signature() const;
    virtual void clearSignature();

protected:
    QStringList axes;  // names in the order of the dimensions
    QString rangeText; // see rangeName()

private:
    mutable QString signatureText;
};
