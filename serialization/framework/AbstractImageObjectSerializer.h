#pragma once

#include <QString>

class ImageObject;

// Writes one kind of image object in one file format. It keeps nothing of a running call, is created once and
// lives to the end of the process. GUI thread.
class AbstractImageObjectSerializer
{
public:
    // name: translated text for the file dialog; extension: without the dot, may be empty.
    AbstractImageObjectSerializer(const QString &name, const QString &mimeType, const QString &extension);
    virtual ~AbstractImageObjectSerializer();

    AbstractImageObjectSerializer(const AbstractImageObjectSerializer &) = delete;
    AbstractImageObjectSerializer &operator=(const AbstractImageObjectSerializer &) = delete;

    // Whether the object can be written in this format; null never can.
    virtual bool canSerialize(ImageObject *object) = 0;
    // Proposal for the base name of the file: the object's displayName() unless a format knows better.
    virtual QString defaultName(ImageObject *object);
    virtual const QString &name();
    virtual const QString &mimeType();
    virtual const QString &extension();

private:
    const QString nameText;
    const QString mimeTypeText;
    const QString extensionText;
};
