#include "objects/FunctionalImageObject.h"

namespace {

const QString &emptyString()
{
    static const QString empty = QLatin1String("");
    return empty;
}

} // namespace

int FunctionalImageObject::dimensionCount() const
{
    return static_cast<int>(axes.size());
}

const QString &FunctionalImageObject::axisName(int axis) const
{
    if (axis < 0 || axis >= axes.size())
        return emptyString();
    return axes[axis];
}

const QString &FunctionalImageObject::axisLabel(int axis) const
{
    return axisName(axis);
}

bool FunctionalImageObject::isAxisDiscrete(int) const
{
    return false;
}

const QString &FunctionalImageObject::axisUnit(int) const
{
    return emptyString();
}

const QString &FunctionalImageObject::axisUnit(int, int) const
{
    return emptyString();
}

const QString &FunctionalImageObject::rangeName() const
{
    return rangeText;
}

const QString &FunctionalImageObject::rangeLabel() const
{
    return rangeName();
}

const QString &FunctionalImageObject::rangeUnit() const
{
    return emptyString();
}

const QString &FunctionalImageObject::signature() const
{
    if (signatureText.isEmpty()) {
        // The blanks around both signs are no-break spaces.
        QStringList labels;
        for (int axis = 0; axis < axes.size(); ++axis)
            labels.append(axisLabel(axis));
        signatureText = labels.join(QStringLiteral("\u00A0\u00D7\u00A0"));
        signatureText += QStringLiteral("\u00A0\u2192\u00A0") + rangeLabel();
    }
    return signatureText;
}

void FunctionalImageObject::clearSignature()
{
    signatureText.clear();
}
