// Images that are closed while viewers show them, and viewers that are closed at any time.
#include "tests/support/CapturedOutput.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/XHand.h"
#include "tests/viewer/ViewerScene.h"
#include "view/EnhancedQCheckBox.h"

#include <QApplication>
#include <QRegularExpression>

#include <functional>
#include <memory>
#include <random>
#include <vector>

class ViewerClosingTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private:
    void showAll()
    {
        for (int row = 0; row < scene->manager.imageCount(); ++row)
            scene->viewer->addObject(scene->manager.image(row));
        QVERIFY(scene->show());
        scene->viewer->resetView();
    }
    void close(int row) { scene->manager.closeImage(scene->manager.index(row, 0)); }

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
        output.reset();
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
    }

    void closedImage_leavesTheTree_theOthersKeepTheirEditors()
    {
        showAll(); // volume, three colours, contours, edge points
        const QList<int> contourEditors = scene->openEditors(4);
        close(ViewerScene::ColorsRow);
        QCOMPARE(scene->composition()->podCount(), 3);
        QCOMPARE(scene->composition()->pod(1)->object(), scene->contours);
        QCOMPARE(scene->openEditors(0), QList<int>({1, 4, 6}));
        QCOMPARE(scene->openEditors(1), contourEditors);
        for (int child = 1; child < 4; ++child)
            QVERIFY(qobject_cast<EnhancedQCheckBox *>(scene->editor(scene->childCell(1, child, 5))));
        QVERIFY(scene->tree()->isExpanded(scene->cell(1, 0)));
        QTest::qWait(50);
        // No check box of a row that has gone remains: display of three rows, three fragments, one Analyze.
        QTRY_COMPARE(scene->tree()->viewport()->findChildren<EnhancedQCheckBox *>().size(), 7);
    }

    void analyzedRow_followsItsObject()
    {
        showAll();
        scene->composition()->setData(scene->cell(5, 4), true);
        close(ViewerScene::ColorsRow);
        QCOMPARE(scene->composition()->analyzedObject(), scene->edges);
        close(2); // the edge points
        QCOMPARE(scene->composition()->analyzedRow(), 0);
    }

    void closingTheContours_endsEditing()
    {
        showAll();
        scene->composition()->setData(scene->childCell(4, 1, 5), true);
        QVERIFY(scene->composition()->editedObject() != nullptr);
        close(ViewerScene::ContoursRow);
        QCOMPARE(scene->composition()->editedObject(), nullptr);
        QCOMPARE(scene->composition()->podCount(), 5);
    }

    void closingAll_leavesAnEmptyTree()
    {
        showAll();
        while (scene->manager.imageCount() > 0) {
            close(0);
            QTest::qWait(20);
        }
        QCOMPARE(scene->composition()->podCount(), 0);
        QVERIFY(scene->tree()->viewport()->findChildren<EnhancedQCheckBox *>().isEmpty());
        XHand hand(scene->view());
        hand.moveTo({50, 50});
        hand.drag(Qt::LeftButton, {60, 60}, {90, 90});
        hand.wheel(true);
        hand.key("n");
    }

    // As at the end of the program, when the manager goes before the viewers.
    void imageDeletedWithItsOwner_whileItsCellIsSelected()
    {
        showAll();
        auto owner = std::make_unique<QObject>();
        auto *owned = new MervImageObject(newVolume(MERV::TypeUShort, {4, 4, 2}).release(), "/x/owned.mhd",
                                          owner.get());
        scene->viewer->addObject(owned);
        const int row = scene->composition()->podCount() - 1;
        scene->tree()->setCurrentIndex(scene->cell(row, ImageComposition::OpacityColumn));
        QVERIFY(!scene->tree()->selectionModel()->selectedIndexes().isEmpty());
        owner.reset();
        QCOMPARE(scene->composition()->podCount(), row);
        for (const QModelIndex &index : scene->tree()->selectionModel()->selectedIndexes())
            QVERIFY(index.row() < row);
    }

    void viewerClosedFirst_leavesTheImages()
    {
        showAll();
        scene->viewer->close();
        QTRY_VERIFY(scene->viewer.isNull());
        QCOMPARE(scene->manager.imageCount(), 4);
        while (scene->manager.imageCount() > 0)
            close(0);
    }

    void imageClosedDuringATrace()
    {
        showAll();
        scene->composition()->setData(scene->cell(5, 4), true);
        scene->composition()->setData(scene->childCell(4, 1, 5), true);
        scene->action("Trace")->trigger();
        XHand hand(scene->view());
        const QPoint centre = scene->view()->rect().center();
        hand.moveTo(centre);
        hand.press(Qt::LeftButton);
        hand.moveTo(centre + QPoint(0, 20));
        QVERIFY(scene->view()->state().activeSegment != nullptr);
        close(ViewerScene::ContoursRow);
        hand.moveTo(centre + QPoint(0, 40));
        close(0);
        hand.moveTo(centre + QPoint(0, 60));
        hand.release(Qt::LeftButton);
        QVERIFY(scene->view()->state().activeSegment == nullptr);
    }

    void randomOrders_data()
    {
        QTest::addColumn<unsigned>("seed");
        for (unsigned seed = 1; seed <= 12; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }
    void randomOrders()
    {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        const auto below = [&](int count) { return static_cast<int>(random() % unsigned(count)); };
        std::vector<QPointer<QStackedSliceViewer>> viewers{scene->viewer};
        QVERIFY(scene->show());
        const auto someViewer = [&] { return viewers[static_cast<std::size_t>(below(int(viewers.size())))]; };
        const auto someImage = [&] { return scene->manager.image(below(scene->manager.imageCount())); };

        const std::vector<std::function<void()>> acts{
            [&] {
                if (const auto viewer = someViewer())
                    viewer->addObject(someImage());
            },
            [&] {
                if (const auto viewer = someViewer(); viewer && viewer->imageComposition()->podCount() > 0) {
                    ImageComposition *model = viewer->imageComposition();
                    const QModelIndex row = model->index(below(model->podCount()), 0);
                    model->setData(row.siblingAtColumn(4), true);
                    if (model->hasChildren(row))
                        model->setData(model->index(below(model->rowCount(row)), 5, row), below(3) > 0);
                    viewer->findChild<EnhancedQTreeView *>()->setCurrentIndex(row);
                }
            },
            [&] {
                if (const auto viewer = someViewer())
                    viewer->findChild<QActionGroup *>()->actions().at(below(8))->trigger();
            },
            [&] {
                const auto viewer = someViewer();
                if (viewer.isNull())
                    return;
                viewer->resetView();
                const QPointer<QStackedSliceView> view = viewer->stackedSliceView();
                QTest::mouseMove(view, view->rect().center() + QPoint(below(40), below(40)));
                for (const Qt::Key key : {Qt::Key_N, Qt::Key_PageDown})
                    if (!view.isNull()) // a viewer that was closed goes while events are handled
                        QTest::keyClick(view, key);
            },
            [&] {
                for (int row = 0; row < scene->manager.imageCount(); ++row)
                    if (auto *lines = qobject_cast<SlicedContoursObject *>(scene->manager.image(row)))
                        lines->newFragment("more");
            },
            [&] { QTest::qWait(below(30)); },
            [&] {
                auto *viewer = new QStackedSliceViewer(&scene->manager, nullptr);
                viewers.push_back(viewer);
                viewer->show();
            },
            [&] {
                if (const auto viewer = someViewer())
                    viewer->close();
            },
            [&] { close(below(scene->manager.imageCount())); },
        };
        while (scene->manager.imageCount() > 0) {
            // The last three, which end things, come less often.
            const int count = static_cast<int>(acts.size());
            acts[static_cast<std::size_t>(below(4) > 0 ? below(count - 3) : count - 3 + below(3))]();
        }
        QTest::qWait(30);
        for (const auto &viewer : viewers) {
            if (viewer.isNull())
                continue;
            QCOMPARE(viewer->imageComposition()->podCount(), 0);
            delete viewer;
        }
    }
};

QTEST_MAIN(ViewerClosingTest)
#include "ViewerClosingTest.moc"
