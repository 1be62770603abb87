#include "contours/metrics/viewer/SlicedMetricsViewer.h"

#include "contours/metrics/SlicedMetricsModel.h"
#include "objects/ImageObject.h"

#include <QKeyEvent>
#include <QTableView>
#include <QVBoxLayout>

SlicedMetricsViewer::SlicedMetricsViewer(ImageObject *source, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , metrics(new SlicedMetricsModel(source, this))
    , table(new QTableView)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Metrics of %1").arg(source != nullptr ? source->label() : QString()));
    table->setModel(metrics);
    table->resizeColumnsToContents();
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(table);
}

// Ctrl+C that the table leaves over does nothing, and no key goes on to a parent window.
void SlicedMetricsViewer::keyPressEvent(QKeyEvent *event)
{
    event->accept();
}
