#pragma once

#include <QTreeView>

// A tree whose booleans and lists are edited by real widgets (EnhancedQItemDelegate, which it owns).
class EnhancedQTreeView : public QTreeView
{
    Q_OBJECT

public:
    explicit EnhancedQTreeView(QWidget *parent = nullptr);
};
