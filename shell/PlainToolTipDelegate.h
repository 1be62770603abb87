#pragma once

#include <QStyledItemDelegate>

// Shows the tool tips of a view as they are: the labels of images are data, and a tool tip that looks like
// markup would be taken for it.
class PlainToolTipDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;
};
