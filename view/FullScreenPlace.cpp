#include "view/FullScreenPlace.h"

#include <QBoxLayout>
#include <QSplitter>
#include <QWidget>

FullScreenPlace::FullScreenPlace(QWidget &widget)
    : savedParent(widget.parentWidget())
{
    if (!savedParent)
        return;
    if (auto *splitter = qobject_cast<QSplitter *>(savedParent)) {
        savedParentIndex = splitter->indexOf(&widget);
        splitterSizes = splitter->sizes();
    } else if (QLayout *layout = savedParent->layout()) {
        savedParentIndex = layout->indexOf(&widget);
        layout->removeWidget(&widget);
    }
    widget.setParent(nullptr);
}

void FullScreenPlace::restore(QWidget &widget) const
{
    if (!savedParent)
        return;
    if (auto *splitter = qobject_cast<QSplitter *>(savedParent)) {
        splitter->insertWidget(savedParentIndex, &widget);
        splitter->setSizes(splitterSizes);
    } else if (auto *layout = qobject_cast<QBoxLayout *>(savedParent->layout())) {
        layout->insertWidget(savedParentIndex, &widget, 0);
    } else {
        widget.setParent(savedParent);
    }
}
