#pragma once

#include "Common/Image.h"
#include "objects/ImageObject.h"
#include "objects/MervImageObject.h"
#include "objects/manager/AbstractQIconProvider.h"
#include "serialization/framework/ContinuousStreamImageObjectUnserializer.h"
#include "serialization/framework/FileSystemImageObjectSerializer.h"
#include "serialization/framework/FileSystemImageObjectUnserializer.h"
#include "serialization/framework/StreamImageObjectSerializer.h"

#include <QIcon>
#include <QStringList>

#include <functional>
#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <utility>

// An image object whose sources are settable, and which notes what it is told to let go of.
class FakeImage : public ImageObject
{
public:
    explicit FakeImage(const QString &label = "fake")
        : ImageObject(label, nullptr)
    {}
    ~FakeImage() override
    {
        if (deleted != nullptr)
            *deleted = true;
    }
    QList<ImageObject *> sources() const override { return sourceList; }
    void detachFrom(ImageObject *closing) override
    {
        ImageObject::detachFrom(closing);
        letGoOf.append(closing->displayName());
        sourceList.removeAll(closing);
    }
    void setPath(const QString &path) { loadedFrom = path; }

    QList<ImageObject *> sourceList;
    QStringList letGoOf;
    bool *deleted = nullptr;
};

// A volume of bytes, all 0, with metadata given as pairs of key and value.
inline MervImageObject *newVolume(int width, int height, int depth, const QStringList &metaData = {})
{
    std::unique_ptr<MERV::Image> image(MERV::createImage(MERV::TypeUChar));
    image->setVerbose(0);
    image->setDimensions(width, height, depth, 1, 1);
    for (qsizetype i = 0; i + 1 < metaData.size(); i += 2)
        image->setMetaData(metaData[i].toStdString(), metaData[i + 1].toStdString());
    return new MervImageObject(image.release(), QString(), nullptr);
}

// Hands out one icon for the image objects that have a label.
class FakeIconProvider : public AbstractQIconProvider
{
public:
    FakeIconProvider(const QString &wantedLabel, const QIcon &givenIcon)
        : label(wantedLabel)
        , given(givenIcon)
    {}
    bool canProvide(Entity *entity) override
    {
        const auto *object = dynamic_cast<ImageObject *>(entity);
        return object != nullptr && object->label() == label;
    }
    const QIcon &icon(Entity *) override { return given; }

private:
    QString label;
    QIcon given;
};

// Stream readers and writers, file-system readers and writers whose answers a test sets; each notes its calls
// in one common log as "name:operation".
class FakeStreamReader : public ContinuousStreamImageObjectUnserializer
{
public:
    FakeStreamReader(const QString &name, const QStringList &extensions, QStringList *calls)
        : AbstractImageObjectUnserializer(name, {}, extensions)
        , log(calls)
    {}
    bool canUnserialize(const char *bytes) override
    {
        log->append(name() + ":can");
        head.assign(bytes, headSize);
        return accept(head);
    }
    ImageObject *unserialize(std::istream &stream) override
    {
        log->append(name() + ":read");
        return read(stream);
    }
    std::function<bool(const std::string &)> accept = [](const std::string &) { return true; };
    std::function<ImageObject *(std::istream &)> read = [](std::istream &) -> ImageObject * {
        return nullptr;
    };
    std::string head;

private:
    QStringList *log;
};

class FakeFileReader : public FileSystemImageObjectUnserializer
{
public:
    FakeFileReader(const QString &name, const QStringList &extensions, QStringList *calls)
        : AbstractImageObjectUnserializer(name, {}, extensions)
        , log(calls)
    {}
    bool canUnserialize(const wchar_t *path) override
    {
        log->append(name() + ":can");
        askedPath = QString::fromWCharArray(path);
        return accept(askedPath);
    }
    ImageObject *unserialize(const wchar_t *path) override
    {
        log->append(name() + ":read");
        return read(QString::fromWCharArray(path));
    }
    std::function<bool(const QString &)> accept = [](const QString &) { return true; };
    std::function<ImageObject *(const QString &)> read = [](const QString &) -> ImageObject * {
        return nullptr;
    };
    QString askedPath;

private:
    QStringList *log;
};

class FakeStreamWriter : public StreamImageObjectSerializer
{
public:
    using StreamImageObjectSerializer::StreamImageObjectSerializer;
    bool canSerialize(ImageObject *object) override { return object != nullptr; }
    bool serialize(ImageObject *object, std::ostream &stream) override { return write(object, stream); }
    std::function<bool(ImageObject *, std::ostream &)> write = [](ImageObject *object, std::ostream &stream) {
        stream << object->displayName().toStdString();
        return true;
    };
};

class FakeFileWriter : public FileSystemImageObjectSerializer
{
public:
    using FileSystemImageObjectSerializer::FileSystemImageObjectSerializer;
    bool canSerialize(ImageObject *object) override { return object != nullptr; }
    bool serialize(ImageObject *object, const wchar_t *path) override
    {
        return write(object, QString::fromWCharArray(path));
    }
    std::function<bool(ImageObject *, const QString &)> write = [](ImageObject *, const QString &) {
        return true;
    };
};
