#include "resources/Resources.h"

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

} // namespace Resources
