#pragma once

#include <QFileDialog>
#include <QList>
#include <QString>
#include <QStringList>

class AbstractImageObjectSerializer;
class AbstractImageObjectUnserializer;

// The filters of the file dialogs, as the user reads them: "MetaImage file (*.mhd)".
namespace FileFilters {

// "name (*)" without an extension, else "name (*.extension)".
QString saveFilter(AbstractImageObjectSerializer &serializer);
// First all supported files, then one filter for each unserializer in order, at last all files. A pattern
// stands in the first as often as unserializers declare it.
QStringList loadFilters(const QList<AbstractImageObjectUnserializer *> &unserializers);

// The toolkit takes patterns apart at blanks only, so that those separated by "; " would match nothing. This
// adds the patterns once more in a form that it understands; with the option below it shows the filter
// without them.
QString withMatchingPatterns(const QString &filter);
constexpr QFileDialog::Options dialogOptions = QFileDialog::HideNameFilterDetails;
// The texts for the dialog, joined as it wants them.
QString dialogText(const QStringList &filters);
// The position of the filter that the dialog reports; the first when it reports none that is known.
qsizetype selectedIndex(const QStringList &filters, const QString &selected);

} // namespace FileFilters
