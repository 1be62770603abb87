#include "view/EnhancedQTreeView.h"

#include "view/EnhancedQItemDelegate.h"

EnhancedQTreeView::EnhancedQTreeView(QWidget *parent)
    : QTreeView(parent)
{
    setItemDelegate(new EnhancedQItemDelegate(this));
}
