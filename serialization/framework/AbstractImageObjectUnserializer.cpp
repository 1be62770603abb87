#include "serialization/framework/AbstractImageObjectUnserializer.h"

AbstractImageObjectUnserializer::AbstractImageObjectUnserializer(const QString &name,
                                                                 const QStringList &mimeTypes,
                                                                 const QStringList &extensions)
    : nameText(name)
    , mimeTypeList(mimeTypes)
    , extensionList(extensions)
{}

AbstractImageObjectUnserializer::~AbstractImageObjectUnserializer() = default;

const QString &AbstractImageObjectUnserializer::name()
{
    return nameText;
}

const QStringList &AbstractImageObjectUnserializer::mimeTypes()
{
    return mimeTypeList;
}

const QStringList &AbstractImageObjectUnserializer::extensions()
{
    return extensionList;
}
