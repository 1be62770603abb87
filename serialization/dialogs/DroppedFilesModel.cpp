#include "serialization/dialogs/DroppedFilesModel.h"

#include <QMimeData>
#include <QUrl>

Qt::ItemFlags DroppedFilesModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::ItemIsDropEnabled;
}

bool DroppedFilesModel::dropMimeData(const QMimeData *data, Qt::DropAction, int, int, const QModelIndex &)
{
    QStringList paths;
    for (const QUrl &url : data->urls()) {
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    }
    if (!paths.isEmpty())
        emit dropped(paths);
    return !paths.isEmpty();
}
