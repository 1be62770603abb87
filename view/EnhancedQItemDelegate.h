#pragma once

#include <QItemDelegate>

// Edits by the type of a model's edit-role value: booleans in a check box, string lists in a combo box (the
// display-role text is the current entry), all else as the base does. Both widgets commit at once.
class EnhancedQItemDelegate : public QItemDelegate
{
    Q_OBJECT

public:
    explicit EnhancedQItemDelegate(QObject *parent = nullptr)
        : QItemDelegate(parent)
    {}

    // Null for an index that is not editable. Owned by the view that asks.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    // A check box fills its cell, so that it covers the mark that is painted there.
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};
