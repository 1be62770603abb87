#include "objects/LabeledGraphicsObject.h"

LabeledGraphicsObject::LabeledGraphicsObject(const QString &label, QObject *parent)
    : GraphicsObject(parent)
    , labelText(label)
{}

LabeledGraphicsObject::LabeledGraphicsObject(const LabeledGraphicsObject &other)
    : GraphicsObject() // NOLINT(readability-redundant-member-init): GCC wants it named in a copy constructor
    , labelText(other.labelText)
{}

const QString &LabeledGraphicsObject::displayName() const
{
    return label();
}

const QString &LabeledGraphicsObject::label() const
{
    return labelText;
}

QString &LabeledGraphicsObject::label()
{
    return labelText;
}

void LabeledGraphicsObject::setLabel(const QString &label)
{
    labelText = label;
}
