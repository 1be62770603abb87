#include "serialization/framework/AbstractImageObjectSerializer.h"

#include "objects/ImageObject.h"

AbstractImageObjectSerializer::AbstractImageObjectSerializer(const QString &name, const QString &mimeType,
                                                             const QString &extension)
    : nameText(name)
    , mimeTypeText(mimeType)
    , extensionText(extension)
{}

AbstractImageObjectSerializer::~AbstractImageObjectSerializer() = default;

QString AbstractImageObjectSerializer::defaultName(ImageObject *object)
{
    return object->displayName();
}

const QString &AbstractImageObjectSerializer::name()
{
    return nameText;
}

const QString &AbstractImageObjectSerializer::mimeType()
{
    return mimeTypeText;
}

const QString &AbstractImageObjectSerializer::extension()
{
    return extensionText;
}
