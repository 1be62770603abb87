// Rows that come into the viewer, and what is edited in them.
#include "demo/xtest/XTestDevice.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/XHand.h"
#include "tests/viewer/ViewerScene.h"
#include "view/EnhancedQCheckBox.h"
#include "view/EnhancedQComboBox.h"

#include <QApplication>
#include <QDataStream>
#include <QDropEvent>
#include <QLineEdit>
#include <QListView>
#include <QMimeData>
#include <QRegularExpression>

#include <atomic>
#include <memory>
#include <thread>

namespace {

const QString mimeType = "application/tevora.imageObjectIndex";
// Of the columns 1, 4, 5 and 6 those that can be edited: no row of its own is ever edited (5), and only
// images and edge points can be analyzed (4).
const QList<int> imageEditors{1, 4, 6}, contoursEditors{1, 6};
constexpr int analyzeColumn = 4, editColumn = 5, scopeColumn = 6;

// Texts as the image list encodes the numbers of dragged rows.
QByteArray encoded(const QStringList &texts)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    for (const QString &text : texts)
        stream << text;
    return bytes;
}

} // namespace

class ViewerEditingTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private:
    // A drop as the toolkit delivers it; false if the viewer does not take the drag.
    bool drop(const QString &format, const QByteArray &bytes)
    {
        QMimeData data;
        data.setData(format, bytes);
        QDragEnterEvent enter(QPoint(300, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(scene->viewer, &enter);
        if (!enter.isAccepted())
            return false;
        QDropEvent event(QPointF(300, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(scene->viewer, &event);
        return true;
    }
    int rowsAfterDropOf(const QByteArray &bytes)
    {
        drop(mimeType, bytes);
        return scene->composition()->podCount();
    }
    EnhancedQCheckBox *box(const QModelIndex &index) const
    {
        return qobject_cast<EnhancedQCheckBox *>(scene->editor(index));
    }
    static void click(QWidget *widget, const QPoint &position)
    {
        XHand hand(widget);
        hand.moveTo(position);
        hand.click(Qt::LeftButton);
    }
    static void tick(QWidget *box) { click(box, QPoint(8, box->height() / 2)); }
    // Chooses an entry of a combo box by two clicks.
    static void choose(QComboBox *combo, const QString &text)
    {
        XHand hand(combo);
        hand.moveTo(combo->rect().center());
        QApplication::setDoubleClickInterval(100); // a quick release leaves the list open
        hand.clickIntoDialog(Qt::LeftButton);
        QTRY_VERIFY(combo->view()->isVisible());
        QTest::qWait(150);
        const QModelIndex entry = combo->model()->index(combo->findText(text), 0);
        click(combo->view()->viewport(), combo->view()->visualRect(entry).center());
        QTRY_VERIFY(!combo->view()->isVisible());
    }
    // All objects but the one of three components; rows: volume, contours, edge points.
    void showAll()
    {
        for (ImageObject *object :
             std::initializer_list<ImageObject *>{scene->volume, scene->contours, scene->edges})
            scene->viewer->addObject(object);
        scene->viewer->resize(900, 800);
        scene->viewer->findChild<QSplitter *>()->setSizes({300, 400});
        QVERIFY(scene->show());
        scene->viewer->resetView();
    }

    std::unique_ptr<CapturedOutput> output;
    std::unique_ptr<ViewerScene> scene;

private slots:
    void init()
    {
        // The toolkit warns of editors that commit while they are filled, and of broken models.
        QTest::failOnWarning(QRegularExpression(".*"));
        output = std::make_unique<CapturedOutput>();
        scene = std::make_unique<ViewerScene>();
    }
    void cleanup()
    {
        scene.reset();
        const QString errors = output->standardError();
        output.reset();
        QVERIFY2(errors.isEmpty(), qPrintable(errors));
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
    }

    void drop_addsTheNamedRowsInTheirOrder()
    {
        QCOMPARE(ImageManager::indexMimeType(), mimeType);
        const std::unique_ptr<QMimeData> data(
            scene->manager.mimeData({scene->manager.index(2, 0), scene->manager.index(0, 0)}));
        QCOMPARE(rowsAfterDropOf(data->data(mimeType)), 2);
        QCOMPARE(scene->composition()->pod(0)->object(), scene->contours);
        QCOMPARE(scene->composition()->pod(1)->object(), scene->volume);
        QCOMPARE(scene->openEditors(0), contoursEditors);
        QCOMPARE(scene->openEditors(1), imageEditors);
    }

    void drop_skipsUnknownRows()
    {
        QCOMPARE(rowsAfterDropOf(encoded({"-1", "4", "99999999999999999999", "", "abc", "0x1", "1.0"})), 0);
        QCOMPARE(rowsAfterDropOf(encoded({"17", "0", "-7", "3"})), 2);
        QCOMPARE(scene->composition()->pod(0)->object(), scene->volume);
        QCOMPARE(scene->composition()->pod(1)->object(), scene->edges);
    }

    void drop_ofTruncatedData_endsAtTheDamage()
    {
        const QByteArray whole = encoded({"0", "3"}); // 4 bytes of length and 2 of text each
        QCOMPARE(whole.size(), 12);
        for (int length = 0; length < 6; ++length)
            QCOMPARE(rowsAfterDropOf(whole.left(length)), 0);
        int rows = 0;
        for (int length = 6; length < 12; ++length)
            QCOMPARE(rowsAfterDropOf(whole.left(length)), ++rows);            // the first row only
        QCOMPARE(rowsAfterDropOf(QByteArray("\xff\xff\xff\x00zz", 6)), rows); // a length beyond the data
        QCOMPARE(rowsAfterDropOf(QByteArray("\xff\xff\xff\xff", 4)), rows);   // a null string
        QCOMPARE(rowsAfterDropOf(QByteArray(1000, '\x01')), rows);
    }

    void dragOfAnotherType_isRefused()
    {
        QVERIFY(!drop("text/plain", encoded({"0"})));
        QVERIFY(!drop("application/tevora", encoded({"0"})));
        QCOMPARE(scene->composition()->podCount(), 0);
    }

    void realDragFromAList_addsTheRow()
    {
        QVERIFY(scene->show());
        QListView list;
        list.setModel(&scene->manager);
        list.setDragEnabled(true);
        list.resize(200, 200);
        list.show();
        QVERIFY(QTest::qWaitForWindowExposed(&list));
        list.move(1000, 500); // clear of the viewer
        QTest::qWait(200);
        const QRect row = list.visualRect(scene->manager.index(ViewerScene::ContoursRow, 0));
        const QPoint from = list.viewport()->mapToGlobal(row.center());
        const QPoint to = scene->view()->mapToGlobal(scene->view()->rect().center());

        std::atomic<bool> released = false;
        std::thread hand([&] {
            XTestDevice().carry(from, to);
            released = true;
        });
        const bool dropped =
            QTest::qWaitFor([&] { return released && scene->composition()->podCount() > 0; }, 10000);
        hand.join();
        QVERIFY(dropped);
        QCOMPARE(scene->composition()->podCount(), 1);
        QCOMPARE(scene->composition()->pod(0)->object(), scene->contours);
        QCOMPARE(scene->openEditors(0), contoursEditors);
        QCOMPARE(scene->manager.imageCount(), 4); // copied, not moved
    }

    void nullObject_addsNothing()
    {
        scene->viewer->addObject(nullptr);
        QCOMPARE(scene->composition()->podCount(), 0);
    }

    void imageOfThreeComponents_hasEditorsInTheLastRowOnly()
    {
        scene->viewer->addObject(scene->colors);
        QCOMPARE(scene->composition()->podCount(), 3);
        QCOMPARE(scene->openEditors(0), QList<int>());
        QCOMPARE(scene->openEditors(1), QList<int>());
        QCOMPARE(scene->openEditors(2), imageEditors);
    }

    void contours_haveAnEditorInEveryChild_andAreExpanded()
    {
        scene->viewer->addObject(scene->contours);
        QVERIFY(scene->tree()->isExpanded(scene->cell(0, 0)));
        for (int child = 0; child < 4; ++child) {
            QVERIFY(scene->tree()->isPersistentEditorOpen(scene->childCell(0, child, editColumn)));
            QVERIFY(!scene->tree()->isPersistentEditorOpen(scene->childCell(0, child, analyzeColumn)));
        }
        for (int child = 1; child < 4; ++child) // the fragments; a contour has no boolean to tick
            QVERIFY(box(scene->childCell(0, child, editColumn)) != nullptr);
        auto *line = qobject_cast<QLineEdit *>(scene->editor(scene->childCell(0, 0, editColumn)));
        QVERIFY(line != nullptr && !line->hasFrame());
    }

    void fragmentsAddedLater_getTheirEditor()
    {
        scene->viewer->addObject(scene->volume);
        auto *empty = new SlicedContoursObject("empty");
        scene->manager.addImage(empty);
        scene->viewer->addObject(empty);
        QVERIFY(!scene->composition()->hasChildren(scene->cell(1, 0)));
        for (int count = 1; count <= 3; ++count) {
            empty->newFragment("later");
            QVERIFY(scene->tree()->isExpanded(scene->cell(1, 0)));
            for (int child = 0; child < count; ++child)
                QVERIFY(box(scene->childCell(1, child, editColumn)) != nullptr);
        }
        // A contour goes before the fragments, whose editors move along.
        empty->newContour("first");
        for (int child = 1; child < 4; ++child)
            QVERIFY(box(scene->childCell(1, child, editColumn)) != nullptr);
        QVERIFY(scene->tree()->isPersistentEditorOpen(scene->childCell(1, 0, editColumn)));
    }

    void collapsedContours_stayCollapsedUntilTheyGrow()
    {
        scene->viewer->addObject(scene->contours);
        scene->tree()->collapse(scene->cell(0, 0));
        scene->viewer->addObject(scene->volume);
        QVERIFY(!scene->tree()->isExpanded(scene->cell(0, 0)));
        scene->contours->newFragment("four");
        QVERIFY(scene->tree()->isExpanded(scene->cell(0, 0)));
    }

    void contoursShownTwice_areBothExpanded()
    {
        scene->viewer->addObject(scene->contours);
        scene->viewer->addObject(scene->contours);
        QVERIFY(scene->tree()->isExpanded(scene->cell(0, 0)));
        QVERIFY(scene->tree()->isExpanded(scene->cell(1, 0)));
        QCOMPARE(scene->openEditors(1), scene->openEditors(0));
    }

    void ticking_choosesTheAnalyzedRowAndTheEditedFragment()
    {
        showAll();
        QCOMPARE(scene->composition()->analyzedRow(), 0);
        tick(box(scene->cell(2, analyzeColumn)));
        QCOMPARE(scene->composition()->analyzedRow(), 2);
        QVERIFY(box(scene->cell(2, analyzeColumn))->isChecked());

        const auto edit = [&](int child) { return box(scene->childCell(1, child, editColumn)); };
        tick(edit(1));
        QCOMPARE(scene->composition()->editedObject(), scene->contours->fragment(0));
        tick(edit(3));
        QCOMPARE(scene->composition()->editedObject(), scene->contours->fragment(2));
        QVERIFY(!edit(1)->isChecked());
        QVERIFY(edit(3)->isChecked());
        tick(edit(3));
        QCOMPARE(scene->composition()->editedObject(), nullptr);
        QVERIFY(!edit(3)->isChecked());
        QCOMPARE(scene->composition()->analyzedRow(), 2);
    }

    void untickingTheAnalyzedRow_isTakenBack()
    {
        showAll();
        tick(box(scene->cell(2, analyzeColumn)));
        tick(box(scene->cell(2, analyzeColumn)));
        QCOMPARE(scene->composition()->analyzedRow(), 2);
        QVERIFY(box(scene->cell(2, analyzeColumn))->isChecked());
    }

    void tickingDisplay_hidesTheRow()
    {
        showAll();
        const auto grey = [&] {
            const QImage picture = scene->view()->grabFramebuffer();
            return qGray(picture.pixel(picture.width() / 2 + 30, picture.height() / 2));
        };
        QVERIFY(grey() > 240);
        tick(box(scene->cell(0, 1)));
        QVERIFY(!scene->composition()->pod(0)->display());
        QVERIFY(grey() < 10);
        tick(box(scene->cell(0, 1)));
        QVERIFY(scene->composition()->pod(0)->display());
        QVERIFY(grey() > 240);
    }

    void scopeIsChosenByMouse()
    {
        showAll();
        auto *combo = qobject_cast<EnhancedQComboBox *>(scene->editor(scene->cell(0, scopeColumn)));
        QVERIFY(combo != nullptr);
        QCOMPARE(combo->count(), 7);
        QCOMPARE(combo->currentText(), "Slice");
        choose(combo, "Volume");
        QCOMPARE(scene->composition()->pod(0)->displayScope(), 5);
        QCOMPARE(combo->currentText(), "Volume");
        choose(combo, "Volume before"); // its name in the cell is "unknown", the box keeps what was chosen
        QCOMPARE(scene->composition()->pod(0)->displayScope(), 7);
        QCOMPARE(combo->currentText(), "Volume before");
        QCOMPARE(scene->cell(0, scopeColumn).data().toString(), "unknown");
        choose(combo, "Point");
        QCOMPARE(scene->composition()->pod(0)->displayScope(), 1);
        QCOMPARE(scene->composition()->pod(1)->displayScope(), 3);
        QCOMPARE(scene->composition()->pod(2)->displayScope(), 3);
    }

    void n_cyclesTheEditedFragment_andNothingElse()
    {
        showAll();
        tick(box(scene->cell(2, analyzeColumn)));
        scene->view()->setFocus();
        XHand hand(scene->view());
        const int fragments[] = {0, 1, 2, 0, 1};
        for (const int fragment : fragments) {
            hand.key("n");
            QCOMPARE(scene->composition()->editedObject(), scene->contours->fragment(fragment));
            QCOMPARE(scene->composition()->analyzedRow(), 2);
            for (int child = 1; child < 4; ++child)
                QCOMPARE(box(scene->childCell(1, child, editColumn))->isChecked(), child == fragment + 1);
        }
        QCOMPARE(scene->composition()->pod(0)->displayScope(), 3);
        QVERIFY(scene->composition()->pod(0)->display());
    }

    void checkBoxes_fillTheirCells_onTheColourOfTheTree()
    {
        showAll();
        const QModelIndex boxes[] = {scene->cell(0, 1), scene->cell(2, analyzeColumn),
                                     scene->childCell(1, 1, editColumn)};
        const QImage picture = scene->tree()->viewport()->grab().toImage();
        const QRgb base = scene->tree()->palette().color(QPalette::Base).rgb();
        for (const QModelIndex &index : boxes) {
            const QRect cell = scene->tree()->visualRect(index);
            QCOMPARE(box(index)->geometry(), cell);
            // Right of the one box nothing is painted, no second one either.
            for (int x = cell.left() + 20; x <= cell.right(); ++x)
                for (int y = cell.top(); y <= cell.bottom(); ++y)
                    QCOMPARE(picture.pixel(x, y) | 0xff000000u, base);
        }
    }

    void label_isEditedInItsCell()
    {
        showAll();
        const QRect cell = scene->tree()->visualRect(scene->cell(0, 0));
        click(scene->tree()->viewport(), cell.center()); // selects
        click(scene->tree()->viewport(), cell.center());
        QTRY_VERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
        auto *line = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        QTest::keyClicks(line, "bone");
        QTest::keyClick(line, Qt::Key_Return);
        QTRY_COMPARE(scene->volume->label(), "bone");
    }

    void windowMode_worksOnTheCurrentRow()
    {
        showAll();
        auto second = newVolume(MERV::TypeUShort, {40, 40, 5}, [](int x, int, int) { return x; });
        auto *other = new MervImageObject(second.release(), "/somewhere/other.mhd");
        scene->manager.addImage(other);
        scene->viewer->addObject(other);
        click(scene->tree()->viewport(), scene->tree()->visualRect(scene->cell(3, 2)).center());
        QCOMPARE(scene->composition()->windowedImage(), other);
        scene->tree()->setCurrentIndex(scene->childCell(1, 1, 0));
        QCOMPARE(scene->composition()->windowedImage(), nullptr); // contours have no window
        scene->tree()->setCurrentIndex(scene->cell(0, 2));
        QCOMPARE(scene->composition()->windowedImage(), scene->volume);
    }
};

QTEST_MAIN(ViewerEditingTest)
#include "ViewerEditingTest.moc"
