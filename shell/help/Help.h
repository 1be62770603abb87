#pragma once

#include <QDir>
#include <QObject>
#include <QString>

// The page of the latest help topic. Anything in the user interface names a topic; whoever shows help follows
// textChanged(). One instance, made at its first use and never deleted; GUI thread only.
class Help : public QObject
{
    Q_OBJECT

public:
    static Help *instance();

    // Reads the page "<topic>.html" from the folder "help" beside the program, also while no help window is
    // open, and emits textChanged(). A missing or unreadable page is replaced by a message.
    void showTopic(const QString &topic);

    // The HTML of the latest page, or a message; null before the first topic.
    QString currentText() const { return text; }

    // The folder of the pages and of the pictures that they name.
    QDir pageDirectory() const { return directory; }

signals:
    void textChanged(const QString &text);

private:
    Help();

    QString topic;
    QString text;
    QDir directory;
};
