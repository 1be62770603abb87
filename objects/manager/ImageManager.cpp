#include "objects/manager/ImageManager.h"

#include "Common/Image.h"
#include "objects/MervImageObject.h"
#include "objects/manager/AbstractQIconProvider.h"

#include <QDir>
#include <QSettings>

#include <algorithm>
#include <list>
#include <string>
#include <utility>

namespace {

constexpr int saveDirectoryIntervalMs = 10000;
constexpr const char *directoryKey = "ImageManager/CurrentDirectory";

// Images that outlive their manager stay within reach, and are not looked at again: a search for leaks at the
// end of the process tells them from lost ones.
void leaveToTheProcess(const QList<ImageObject *> &images)
{
    static auto &left = *new QList<ImageObject *>;
    left += images;
}

} // namespace

// Outside of any namespace, as the resource system wants it.
static void initialiseResources()
{
    Q_INIT_RESOURCE(tevora);
}

ImageManager::ImageManager(QObject *parent)
    : QAbstractItemModel(parent)
{
    initialiseResources();
    restoreCurrentDirectory();
    startTimer(saveDirectoryIntervalMs);
}

ImageManager::~ImageManager()
{
    QSettings settings;
    settings.beginGroup("ImageManager");
    settings.remove("Files");
    settings.beginWriteArray("Files", static_cast<int>(images.size()));
    for (int i = 0; i < images.size(); ++i) {
        settings.setArrayIndex(i);
        settings.setValue("Path", images[i]->filePath());
    }
    settings.endArray();
    settings.endGroup();
    saveCurrentDirectory();
    letGoOfOwnedImages();
    leaveToTheProcess(images);
}

// Images of a DICOM folder are children of the manager and go with it, while others follow them and windows
// show them.
void ImageManager::letGoOfOwnedImages()
{
    for (ImageObject *image : std::as_const(images))
        if (image->parent() == this)
            announceClosing(image);
}

void ImageManager::restoreCurrentDirectory()
{
    // The array "Files" is a record of the last run and nothing more: no image is loaded again.
    const QString directory = QSettings().value(directoryKey).toString();
    if (!directory.isEmpty() && QDir(directory).exists())
        QDir::setCurrent(directory);
}

void ImageManager::saveCurrentDirectory()
{
    // Empty when the directory was deleted under the process.
    const QString directory = QDir::currentPath();
    QSettings settings;
    // Writing waits for the disk: not every ten seconds for what is there already.
    if (!directory.isEmpty() && settings.value(directoryKey) != directory)
        settings.setValue(directoryKey, directory);
}

void ImageManager::timerEvent(QTimerEvent *)
{
    saveCurrentDirectory();
}

void ImageManager::addSerializer(AbstractImageObjectSerializer *serializer)
{
    serializers.append(serializer);
}

void ImageManager::addUnserializer(AbstractImageObjectUnserializer *unserializer)
{
    unserializers.append(unserializer);
}

void ImageManager::addIconProvider(AbstractIconProvider *provider)
{
    if (auto *iconProvider = dynamic_cast<AbstractQIconProvider *>(provider))
        iconProviders.append(iconProvider);
}

void ImageManager::setMetricsModelFactory(MetricsModelFactory factory)
{
    metricsModelFactory = std::move(factory);
}

void ImageManager::addImage(ImageObject *image)
{
    if (image == nullptr)
        return;
    emit layoutAboutToBeChanged();
    images.append(image);
    if (const auto *volume = dynamic_cast<MervImageObject *>(image))
        addPropertyNames(*volume);
    emit layoutChanged();
}

void ImageManager::addPropertyNames(const MervImageObject &image)
{
    if (image.voxels() == nullptr)
        return;
    std::list<std::string> keys;
    image.voxels()->getMetaDataKeys(keys);
    for (const std::string &key : keys) {
        const QString name = QString::fromStdString(key);
        if (!propertyNames.contains(name))
            propertyNames.append(name);
    }
}

int ImageManager::imageCount() const
{
    return static_cast<int>(images.size());
}

ImageObject *ImageManager::image(int row) const
{
    return row >= 0 && row < images.size() ? images[row] : nullptr;
}

ImageObject *ImageManager::image(const QModelIndex &index) const
{
    return index.isValid() ? image(index.row()) : nullptr;
}

void ImageManager::closeImage(const QModelIndex &index)
{
    ImageObject *closing = image(index);
    if (closing == nullptr)
        return;
    const int closed = index.row();
    emit layoutAboutToBeChanged();
    images.removeAt(closed);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex &old : before) {
        // Rows behind the closed one move up; an index of the closed one becomes invalid, so that a selection
        // does not slip to the next image.
        if (old.row() == closed)
            after.append(QModelIndex());
        else
            after.append(createIndex(old.row() > closed ? old.row() - 1 : old.row(), old.column()));
    }
    changePersistentIndexList(before, after);
    announceClosing(closing);
    delete closing;
    emit layoutChanged();
}

void ImageManager::stopWorkers()
{
    for (ImageObject *image : std::as_const(images))
        image->stopWorking();
}

void ImageManager::addClosingListener(QObject *holder, ClosingListener listener)
{
    std::erase_if(listeners, [](const Listener &entry) { return entry.holder.isNull(); });
    listeners.push_back({holder, std::move(listener)});
}

void ImageManager::announceClosing(ImageObject *closing)
{
    for (ImageObject *remaining : std::as_const(images))
        remaining->detachFrom(closing);
    // A listener may delete other holders.
    const std::vector<Listener> informed = listeners;
    for (const Listener &listener : informed) {
        if (!listener.holder.isNull())
            listener.call(closing);
    }
}
