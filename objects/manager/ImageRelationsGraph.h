#pragma once

#include <QPointer>
#include <QWidget>

class ImageManager;

// Shows which images were computed from which; follows the manager's list. Owned by its parent widget.
class ImageRelationsGraph : public QWidget
{
    Q_OBJECT

public:
    // The manager is not owned and may die first.
    explicit ImageRelationsGraph(ImageManager *manager, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPointer<ImageManager> manager;
};
