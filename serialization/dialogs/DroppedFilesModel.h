#pragma once

#include <QStringListModel>

// A list of paths that takes dropped files. It does not add them itself: whoever listens decides.
class DroppedFilesModel : public QStringListModel
{
    Q_OBJECT

public:
    using QStringListModel::QStringListModel;

    Qt::ItemFlags flags(const QModelIndex &index) const override;
    // Announces the local files among the URLs; false, and nothing announced, when there are none.
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

signals:
    void dropped(const QStringList &paths);
};
