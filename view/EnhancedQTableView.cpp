#include "view/EnhancedQTableView.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QItemSelectionModel>

namespace {

// The line ends differ on purpose: spreadsheets of the field's readers were fed this way.
QString textOf(const QItemSelectionRange &range)
{
    const QAbstractItemModel &model = *range.model();
    QString text;
    for (int column = range.left(); column <= range.right(); ++column)
        text += "\t" + model.headerData(column, Qt::Horizontal).toString();
    text += "\r\n";
    for (int row = range.top(); row <= range.bottom(); ++row) {
        if (row > range.top())
            text += "\r";
        text += model.headerData(row, Qt::Vertical).toString();
        for (int column = range.left(); column <= range.right(); ++column)
            text += "\t" + model.index(row, column, range.parent()).data(Qt::DisplayRole).toString();
    }
    return text.replace(QChar(0), QChar(' '));
}

} // namespace

void EnhancedQTableView::copySelectionToClipboard()
{
    if (selectionModel() == nullptr)
        return;
    const QItemSelection selection = selectionModel()->selection();
    if (!selection.isEmpty() && selection.first().isValid())
        QGuiApplication::clipboard()->setText(textOf(selection.first()));
}
