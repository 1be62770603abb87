#include "resources/Resources.h"

#include <QSizeF>

namespace Resources {

QString icon(const QString &fileName)
{
    return ":/icons/" + fileName;
}

QString cursor(const QString &fileName)
{
    return ":/cursors/" + fileName;
}

QString image(const QString &fileName)
{
    return ":/images/" + fileName;
}

QPixmap picture(const QString &path, double devicePixelRatio)
{
    QPixmap plain(path);
    if (!(devicePixelRatio > 1.0) || plain.isNull())
        return plain;
    QString finePath = path;
    finePath.insert(path.lastIndexOf('.'), "@2x");
    const QSize size = (QSizeF(plain.size()) * devicePixelRatio).toSize();
    QPixmap fine = QPixmap(finePath).scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    fine.setDevicePixelRatio(devicePixelRatio);
    return fine;
}

} // namespace Resources
