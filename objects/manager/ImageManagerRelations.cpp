#include "objects/manager/ImageManager.h"

#include "objects/ImageObject.h"
#include "objects/manager/RelationsLayout.h"

#include <QFont>
#include <QPainter>

namespace {

constexpr int halfSquare = 20;
constexpr int fontSize = 7;
constexpr QPoint labelOffset(-20, 22);
constexpr QSize labelSize(80, 36);

} // namespace

void ImageManager::paintRelations(QPaintDevice *device)
{
    const QMap<ImageObject *, QPoint> positions = relationsLayout(images);
    QPainter painter(device);
    painter.setFont(QFont(QFont().defaultFamily(), fontSize, QFont::Normal, false));
    for (auto entry = positions.cbegin(); entry != positions.cend(); ++entry) {
        const QList<ImageObject *> sources = entry.key()->sources();
        for (ImageObject *source : sources)
            painter.drawLine(positions.value(source, QPoint(0, 0)), entry.value());
        painter.drawText(QRect(entry.value() + labelOffset, labelSize), Qt::AlignTop | Qt::TextWordWrap,
                         entry.key()->displayName());
    }
    painter.setBrush(Qt::white);
    for (const QPoint &position : positions)
        painter.drawRect(position.x() - halfSquare, position.y() - halfSquare, 2 * halfSquare,
                         2 * halfSquare);
}
