#include "shell/help/Help.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <optional>

namespace {

// Nothing for what is no file, as a device without an end, or cannot be read.
std::optional<QString> contentOf(QFile &page)
{
    if (!QFileInfo(page).isFile() || !page.open(QIODevice::ReadOnly | QIODevice::Text))
        return std::nullopt;
    const QByteArray bytes = page.readAll();
    if (page.error() != QFileDevice::NoError)
        return std::nullopt;
    return QTextStream(bytes).readAll();
}

} // namespace

Help *Help::instance()
{
    static Help *const help = new Help;
    return help;
}

Help::Help()
    : directory(QCoreApplication::applicationDirPath() + "/help")
{}

void Help::showTopic(const QString &newTopic)
{
    topic = newTopic;
    QFile page(directory.absolutePath() + "/" + topic + ".html");
    if (!page.exists())
        text = tr("There is no help page for this topic.");
    else
        text = contentOf(page).value_or(tr("The help page for this topic cannot be displayed."));
    emit textChanged(text);
}
