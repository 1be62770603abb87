#pragma once

#include "objects/GraphicsObject.h"

// A graphics object with a name that the user sees. Changing the name emits nothing: who shows it reads it
// anew.
class LabeledGraphicsObject : public GraphicsObject
{
    Q_OBJECT

public:
    LabeledGraphicsObject() = default;
    LabeledGraphicsObject(const QString &label, QObject *parent);
    // Copies the label only; the new object has no parent.
    LabeledGraphicsObject(const LabeledGraphicsObject &other);
    LabeledGraphicsObject &operator=(const LabeledGraphicsObject &) = delete;

    const QString &displayName() const override;

    virtual const QString &label() const;
    virtual QString &label();
    virtual void setLabel(const QString &label);

private:
    QString labelText;
};
