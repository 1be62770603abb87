#include "objects/manager/FileFilters.h"

#include "serialization/framework/AbstractImageObjectSerializer.h"
#include "serialization/framework/AbstractImageObjectUnserializer.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

constexpr const char *separator = "; ";

QString pattern(const QString &extension)
{
    return extension.isEmpty() ? "*" : "*." + extension;
}

} // namespace

QString FileFilters::saveFilter(AbstractImageObjectSerializer &serializer)
{
    if (serializer.extension().isEmpty())
        return serializer.name() + " (*)";
    return QString("%1 (*.%2)").arg(serializer.name(), serializer.extension());
}

QStringList FileFilters::loadFilters(const QList<AbstractImageObjectUnserializer *> &unserializers)
{
    QStringList filters;
    QStringList allPatterns;
    for (AbstractImageObjectUnserializer *unserializer : unserializers) {
        QStringList patterns;
        for (const QString &extension : unserializer->extensions())
            patterns.append(pattern(extension));
        allPatterns += patterns;
        filters.append(QString("%1 (%2)").arg(unserializer->name(), patterns.join(separator)));
    }
    std::sort(allPatterns.begin(), allPatterns.end());
    filters.append(QCoreApplication::translate("ImageManager", "all files (*)"));
    filters.prepend(QCoreApplication::translate("ImageManager", "all supported files (%1)")
                        .arg(allPatterns.join(separator)));
    return filters;
}

QString FileFilters::withMatchingPatterns(const QString &filter)
{
    const qsizetype start = filter.lastIndexOf('(');
    return filter + " " + filter.mid(start).replace(separator, " ");
}

QString FileFilters::dialogText(const QStringList &filters)
{
    QStringList texts;
    for (const QString &filter : filters)
        texts.append(withMatchingPatterns(filter));
    return texts.join(";;");
}

qsizetype FileFilters::selectedIndex(const QStringList &filters, const QString &selected)
{
    for (qsizetype i = 0; i < filters.size(); ++i) {
        if (selected == filters[i] || selected == withMatchingPatterns(filters[i]))
            return i;
    }
    return 0;
}
