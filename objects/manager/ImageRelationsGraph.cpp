#include "objects/manager/ImageRelationsGraph.h"

#include "objects/manager/ImageManager.h"

ImageRelationsGraph::ImageRelationsGraph(ImageManager *shownManager, QWidget *parent)
    : QWidget(parent)
    , manager(shownManager)
{
    connect(shownManager, &ImageManager::layoutChanged, this, qOverload<>(&QWidget::update));
}

void ImageRelationsGraph::paintEvent(QPaintEvent *)
{
    if (!manager.isNull())
        manager->paintRelations(this);
}
