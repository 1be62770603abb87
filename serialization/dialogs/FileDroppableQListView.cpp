#include "serialization/dialogs/FileDroppableQListView.h"

#include <QDragEnterEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QMimeData>

namespace {

bool canCopyFiles(const QDropEvent &event)
{
    return event.mimeData()->hasUrls() && event.possibleActions().testFlag(Qt::CopyAction);
}

} // namespace

void FileDroppableQListView::dragEnterEvent(QDragEnterEvent *event)
{
    event->setDropAction(canCopyFiles(*event) ? Qt::CopyAction : Qt::IgnoreAction);
    event->accept();
}

void FileDroppableQListView::dragMoveEvent(QDragMoveEvent *event)
{
    event->setDropAction(canCopyFiles(*event) && model() != nullptr ? Qt::CopyAction : Qt::IgnoreAction);
    event->accept();
}

void FileDroppableQListView::dropEvent(QDropEvent *event)
{
    if (model() != nullptr &&
        !model()->dropMimeData(event->mimeData(), event->dropAction(), -1, -1, QModelIndex()))
        event->setDropAction(Qt::IgnoreAction);
    event->accept();
}

void FileDroppableQListView::focusInEvent(QFocusEvent *event)
{
    QListView::focusInEvent(event);
    emit focusIn();
}
