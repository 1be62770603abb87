#include "shell/help/Help.h"

#include <QCoreApplication>
#include <QFile>
#include <QTextStream>

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
    else if (page.open(QIODevice::ReadOnly | QIODevice::Text))
        text = QTextStream(&page).readAll();
    else
        text = tr("The help page for this topic cannot be displayed.");
    emit textChanged(text);
}
