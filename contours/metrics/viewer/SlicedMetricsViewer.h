#pragma once

#include <QWidget>

class ImageObject;
class QTableView;
class SlicedMetricsModel;

// A window with the table of measures of one image object. Deletes itself when it is closed. Borrows the
// object: see SlicedMetricsModel::detachFrom(). Main thread.
class SlicedMetricsViewer : public QWidget
{
    Q_OBJECT

public:
    explicit SlicedMetricsViewer(ImageObject *source, QWidget *parent = nullptr);

    SlicedMetricsModel *model() const { return metrics; }

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    SlicedMetricsModel *metrics; // a child
    QTableView *table;           // a child
};
