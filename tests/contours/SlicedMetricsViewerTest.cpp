#include "contours/metrics/viewer/SlicedMetricsViewer.h"
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "contours/metrics/SlicedMetricsModel.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QPointer>
#include <QTableView>
#include <QTest>

namespace {

// Counts the keys that reach it from a child.
class KeyCounter : public QWidget
{
public:
    int keys = 0;

protected:
    void keyPressEvent(QKeyEvent *) override { ++keys; }
};

// A square of 4 x 4 at z = 0 and 1.5, in two pieces each.
void addSquares(SlicedContoursObject &object)
{
    SlicedContoursFragment *bone = object.newFragment("cartilage bone interface");
    SlicedContoursFragment *surface = object.newFragment("cartilage surface");
    SlicedContour *contour = object.newContour("patellar cartilage");
    contour->addFragmentReference(bone);
    contour->addFragmentReference(surface);
    for (const float z : {0.0f, 1.5f}) {
        SlicedContoursSegment *lower = bone->newSegment({0, 0}, z);
        lower->addPointBack({4, 0});
        lower->addPointBack({4, 4});
        SlicedContoursSegment *upper = surface->newSegment({4, 4}, z);
        upper->addPointBack({0, 4});
        upper->addPointBack({0, 0});
    }
}

} // namespace

class SlicedMetricsViewerTest : public QObject
{
    Q_OBJECT

private slots:
    void showsTheTableOfItsSource()
    {
        SlicedContoursObject object("Segmentation of knee");
        addSquares(object);
        QPointer<SlicedMetricsViewer> viewer = new SlicedMetricsViewer(&object);
        QCOMPARE(viewer->windowTitle(), QString("Metrics of Segmentation of knee"));
        QVERIFY(viewer->isWindow());
        viewer->resize(640, 240);
        viewer->show();
        QVERIFY(QTest::qWaitForWindowExposed(viewer));
        auto *table = viewer->findChild<QTableView *>();
        QVERIFY(table != nullptr);
        QCOMPARE(table->model(), viewer->model());
        QCOMPARE(viewer->model()->data(viewer->model()->index(0, 0)).toString(), QString("16 mm^2"));
        if (const QString path = qEnvironmentVariable("TEVORA_SCREENSHOT"); !path.isEmpty())
            QVERIFY(viewer->grab().save(path));

        // It stays current and deletes itself at the end.
        object.fragment(0)->newSegment({0, 0}, 3.0f)->addPointBack({1, 0});
        QCOMPARE(table->verticalHeader()->count(), 5);
        viewer->close();
        QTRY_VERIFY(viewer.isNull());
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
    }

    // The table copies its current cell; Ctrl+C on the window itself leaves the clipboard alone.
    void copyKeyIsTheTables()
    {
        SlicedContoursObject object("knee");
        addSquares(object);
        QPointer<SlicedMetricsViewer> viewer = new SlicedMetricsViewer(&object);
        viewer->show();
        QVERIFY(QTest::qWaitForWindowActive(viewer));
        QGuiApplication::clipboard()->setText("before");
        QTest::keyClick(viewer, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("before"));
        auto *table = viewer->findChild<QTableView *>();
        const QPoint middle = table->visualRect(viewer->model()->index(1, 1)).center();
        QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, middle);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("8 mm"));
        delete viewer;
    }

    void noKeyIsPassedOn()
    {
        KeyCounter parent;
        ImageObject other("x", nullptr);
        SlicedMetricsViewer viewer(&other, &parent);
        QVERIFY(viewer.isWindow());
        viewer.setWindowFlags(Qt::Widget); // as a child, keys would travel on to the parent
        parent.show();
        viewer.show();
        QVERIFY(QTest::qWaitForWindowExposed(&parent));
        QTest::keyClick(&viewer, Qt::Key_C, Qt::ControlModifier);
        QTest::keyClick(&viewer, Qt::Key_F5);
        QTest::keyClick(&viewer, Qt::Key_Escape);
        QCOMPARE(parent.keys, 0);
    }

    void survivesItsSource()
    {
        auto object = std::make_unique<SlicedContoursObject>("knee");
        addSquares(*object);
        SlicedMetricsViewer viewer(object.get());
        viewer.setAttribute(Qt::WA_DeleteOnClose, false);
        viewer.show();
        QVERIFY(QTest::qWaitForWindowExposed(&viewer));
        viewer.model()->detachFrom(object.get());
        object.reset();
        QCOMPARE(viewer.model()->rowCount(), 1);
        viewer.repaint();
        QCoreApplication::processEvents();
        SlicedMetricsViewer none(nullptr);
        QCOMPARE(none.windowTitle(), QString("Metrics of "));
    }
};

QTEST_MAIN(SlicedMetricsViewerTest)
#include "SlicedMetricsViewerTest.moc"
