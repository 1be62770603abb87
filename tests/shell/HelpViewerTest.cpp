#include "shell/HelpViewer.h"
#include "shell/help/Help.h"

#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QSettings>
#include <QTest>
#include <QTextEdit>

class HelpViewerTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName("TevoraTest");
        QCoreApplication::setApplicationName("Tevora");
    }
    void init() { QSettings().clear(); }

    void firstStart_isAStripAtTheRightEdge()
    {
        const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
        const HelpViewer viewer;
        QCOMPARE(viewer.windowTitle(), QString("Help - Tevora"));
        QCOMPARE(viewer.pos(), QPoint(available.width() - 240, available.top()));
        QCOMPARE(viewer.size(), QSize(240, available.height()));
        QVERIFY(viewer.testAttribute(Qt::WA_DeleteOnClose));
    }

    void showsTheLatestTopicAndFollows()
    {
        Help::instance()->showTopic("no_such_topic");
        HelpViewer viewer;
        auto *page = viewer.findChild<QTextEdit *>();
        QVERIFY(page->isReadOnly());
        QCOMPARE(page->toPlainText(), QString("There is no help page for this topic."));
        viewer.setText("<b>bold</b> text");
        QCOMPARE(page->toPlainText(), QString("bold text"));
        Help::instance()->showTopic("menu_file");
        QCOMPARE(page->toPlainText(), QString("There is no help page for this topic."));
    }

    void remembersItsPlaceWhenClosed()
    {
        QPointer<HelpViewer> viewer = new HelpViewer;
        viewer->show();
        QVERIFY(QTest::qWaitForWindowExposed(viewer));
        viewer->move(200, 120);
        viewer->resize(333, 222);
        QTRY_COMPARE(viewer->size(), QSize(333, 222));
        const QPoint position = viewer->pos();
        viewer->close();
        QTRY_VERIFY(viewer.isNull());
        QCOMPARE(QSettings().value("HelpWindow/Size").toSize(), QSize(333, 222));
        QCOMPARE(QSettings().value("HelpWindow/Position").toPoint(), position);
        const HelpViewer again;
        QCOMPARE(again.size(), QSize(333, 222));
        QCOMPARE(again.pos(), position);
    }

    void settingsOfAWrongTypeAreHarmless()
    {
        QSettings().setValue("HelpWindow/Size", "nonsense");
        QSettings().setValue("HelpWindow/Position", 7);
        const HelpViewer viewer;
        QCOMPARE(viewer.pos(), QPoint(0, 0));
        QCOMPARE(viewer.size(), viewer.minimumSize());
    }
};

QTEST_MAIN(HelpViewerTest)
#include "HelpViewerTest.moc"
