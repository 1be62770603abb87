#include "objects/manager/ImageManager.h"

#include "Common/Image.h"
#include "objects/MervImageObject.h"
#include "objects/manager/AbstractQIconProvider.h"

#include <QDataStream>
#include <QIODevice>
#include <QMimeData>
#include <QPainter>
#include <QPixmap>

#include <memory>

namespace {

// What an image shows for which no provider has an icon; built once.
const QIcon &defaultIcon()
{
    static const QIcon icon = [] {
        QPixmap pixmap(32, 32);
        QPainter painter(&pixmap);
        painter.fillRect(pixmap.rect(), QBrush(Qt::gray, Qt::SolidPattern));
        painter.drawRect(0, 0, 31, 31);
        painter.drawRect(2, 2, 27, 27);
        painter.end();
        return QIcon(pixmap);
    }();
    return icon;
}

} // namespace

const QString &ImageManager::indexMimeType()
{
    static const QString type("application/tevora.imageObjectIndex");
    return type;
}

QModelIndex ImageManager::index(int row, int column, const QModelIndex &parent) const
{
    return image(row) != nullptr && !parent.isValid() ? createIndex(row, column) : QModelIndex();
}

QModelIndex ImageManager::parent(const QModelIndex &) const
{
    return QModelIndex();
}

int ImageManager::rowCount(const QModelIndex &) const
{
    return imageCount();
}

int ImageManager::columnCount(const QModelIndex &) const
{
    return static_cast<int>(propertyNames.size()) + 1;
}

QVariant ImageManager::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    ImageObject *object = image(index);
    if (index.column() == 0 && role == Qt::DecorationRole)
        return icon(object);
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    // A view may still ask for a row that is gone.
    if (object == nullptr)
        return QVariant();
    if (index.column() == 0) {
        const bool isText = role == Qt::DisplayRole || role == Qt::EditRole || role == Qt::ToolTipRole;
        return isText ? QVariant(object->displayName()) : QVariant();
    }
    return role == Qt::DisplayRole ? propertyText(object, index.column()) : QVariant();
}

QIcon ImageManager::icon(ImageObject *object) const
{
    if (object != nullptr) {
        for (AbstractQIconProvider *provider : iconProviders) {
            if (provider->canProvide(object))
                return provider->icon(object);
        }
    }
    return defaultIcon();
}

QVariant ImageManager::propertyText(ImageObject *object, int column) const
{
    const auto *volume = dynamic_cast<MervImageObject *>(object);
    if (volume == nullptr || column > propertyNames.size())
        return QVariant();
    if (volume->voxels() == nullptr)
        return QString("");
    return QString::fromStdString(volume->voxels()->getMetaData(propertyNames[column - 1].toStdString()));
}

bool ImageManager::setData(const QModelIndex &index, const QVariant &value, int role)
{
    ImageObject *object = image(index);
    if (object == nullptr || index.column() != 0 || role != Qt::EditRole)
        return false;
    object->setLabel(value.toString());
    return true;
}

QVariant ImageManager::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= columnCount())
        return QVariant();
    return section == 0 ? tr("File Name") : propertyNames[section - 1];
}

Qt::ItemFlags ImageManager::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsEnabled | Qt::ItemIsDropEnabled; // the free area of a view, where files are dropped
    // Property columns are flagged editable as well, though setData() refuses them.
    const Qt::ItemFlags common = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled;
    return image(index) != nullptr ? common | Qt::ItemIsEditable : common;
}

QStringList ImageManager::mimeTypes() const
{
    return {indexMimeType()};
}

QMimeData *ImageManager::mimeData(const QModelIndexList &indexes) const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    for (const QModelIndex &index : indexes) {
        if (index.isValid())
            stream << QString::asprintf("%d", index.row());
    }
    auto data = std::make_unique<QMimeData>();
    data->setData(indexMimeType(), bytes);
    return data.release();
}
