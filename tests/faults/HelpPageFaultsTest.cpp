// Help pages that are not what the program brought along.
#include "shell/HelpViewer.h"
#include "shell/help/Help.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/Unprivileged.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTest>
#include <QTextEdit>

namespace {

const QString cannotBeDisplayed("The help page for this topic cannot be displayed.");

} // namespace

class HelpPageFaultsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private:
    static QString pagePath() { return Help::instance()->pageDirectory().absolutePath() + "/menu_view.html"; }
    static void writePage(const QByteArray &content)
    {
        QFile page(pagePath());
        QVERIFY(page.open(QIODevice::WriteOnly));
        QCOMPARE(page.write(content), content.size());
    }
    static QString shownText()
    {
        Help::instance()->showTopic("menu_view");
        const HelpViewer viewer;
        return viewer.findChild<QTextEdit *>()->toPlainText();
    }

private slots:
    void init() { QVERIFY(QDir().mkpath(Help::instance()->pageDirectory().absolutePath())); }
    void cleanup() { QFile::remove(pagePath()); }

    void pageWithoutRights_hasItsMessage()
    {
        writePage("<p>secret</p>");
        QVERIFY(QFile::setPermissions(pagePath(), QFile::Permissions()));
        const Unprivileged nobody;
        QVERIFY(nobody.isUnprivileged);
        if (!QFile::exists(pagePath()))
            QSKIP("Other users do not reach the folder of this build.");
        QCOMPARE(shownText(), cannotBeDisplayed);
    }

    // A page that opens, but whose bytes do not come.
    void pageThatCannotBeRead_hasItsMessage()
    {
        QVERIFY(QFile::link("/proc/self/mem", pagePath())); // nothing is at its start
        QCOMPARE(shownText(), cannotBeDisplayed);
    }

    void endlessPage_hasItsMessageAtOnce()
    {
        QVERIFY(QFile::link("/dev/zero", pagePath()));
        QCOMPARE(shownText(), cannotBeDisplayed);
    }

    void bytesThatAreNoText_areShownSomehow()
    {
        QByteArray bytes("<p>first</p>");
        for (int i = 0; i < 100000; ++i)
            bytes += static_cast<char>(i * 7919 >> 3);
        writePage(bytes);
        QVERIFY(shownText().startsWith("first"));
    }

    void wildMarkup_isShownSomehow_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::newRow("nested") << QByteArray("<table><tr><td>").repeated(6) + "deep";
        QTest::newRow("lists") << QByteArray("<ul><li>").repeated(20) + "deep";
        QTest::newRow("unclosed") << QByteArray("<p><b><i title=\"deep");
        QTest::newRow("picture") << QByteArray("<img src=\"none.png\" width=1000000 height=1000000>deep");
        QTest::newRow("entities") << QByteArray("&#1114112;&#x;&nonsense;&#-1;deep");
    }
    void wildMarkup_isShownSomehow()
    {
        QFETCH(QByteArray, page);
        writePage(page);
        Help::instance()->showTopic("menu_view");
        HelpViewer viewer;
        viewer.show();
        QVERIFY(QTest::qWaitForWindowExposed(&viewer));
        QTest::qWait(50);
    }
};

QTEST_MAIN(HelpPageFaultsTest)
#include "HelpPageFaultsTest.moc"
