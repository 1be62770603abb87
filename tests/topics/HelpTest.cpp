#include "shell/help/Help.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

class HelpTest : public QObject
{
    Q_OBJECT

private:
    static QString helpFolder() { return QCoreApplication::applicationDirPath() + "/help"; }
    static void writePage(const QString &topic, const QByteArray &bytes)
    {
        QFile page(helpFolder() + "/" + topic + ".html");
        QVERIFY(page.open(QIODevice::WriteOnly));
        QCOMPARE(page.write(bytes), bytes.size());
    }

private slots:
    void init() { QDir(helpFolder()).removeRecursively(); }
    void cleanup() { QDir(helpFolder()).removeRecursively(); }

    void thereIsOneInstance() { QCOMPARE(Help::instance(), Help::instance()); }

    void missingFolder_everyTopicHasTheMessage()
    {
        QSignalSpy changed(Help::instance(), &Help::textChanged);
        Help::instance()->showTopic("menu_file");
        QCOMPARE(Help::instance()->currentText(), QString("There is no help page for this topic."));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).toString(), QString("There is no help page for this topic."));
    }

    void pageIsReadAsUtf8()
    {
        QDir().mkpath(helpFolder());
        writePage("menu_help", "<p>Hilfe f\xC3\xBCr Leser</p>\n");
        Help::instance()->showTopic("menu_help");
        QCOMPARE(Help::instance()->currentText(), QString::fromUtf8("<p>Hilfe f\xC3\xBCr Leser</p>\n"));
    }

    void pageThatCannotBeOpened_hasItsMessage()
    {
        // A folder of the page's name exists but does not open as a file.
        QVERIFY(QDir().mkpath(helpFolder() + "/menu_view.html"));
        Help::instance()->showTopic("menu_view");
        QCOMPARE(Help::instance()->currentText(),
                 QString("The help page for this topic cannot be displayed."));
    }
};

QTEST_GUILESS_MAIN(HelpTest)
#include "HelpTest.moc"
