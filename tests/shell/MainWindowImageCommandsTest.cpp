#include "shell/MainWindow.h"

#include "objects/SliceSelector.h"
#include "tests/shell/MainWindowScene.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/PrivateSettings.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QInputDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>

namespace {

constexpr int noAnswer = 30; // ms

// The texts of the radio buttons that can be chosen, and behind them the checked one.
QString choices(const QDialog *dialog)
{
    QStringList enabled;
    QString checked = "none";
    for (const QRadioButton *button : dialog->findChildren<QRadioButton *>()) {
        if (button->isEnabled())
            enabled << button->text();
        if (button->isChecked())
            checked = button->text();
    }
    return enabled.join(",") + " checked " + checked;
}

} // namespace

// Commands of the image menu and the view menu on volumes.
class MainWindowImageCommandsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private slots:
    void mirror_offersTheAxesThatHaveMoreThanOneEntry_data()
    {
        QTest::addColumn<int>("depth");
        QTest::addColumn<int>("frames");
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("width");
        QTest::addColumn<QString>("offered");
        QTest::newRow("volume") << 3 << 1 << 1 << 4 << "x,y,z checked x";
        QTest::newRow("one slice") << 1 << 1 << 1 << 4 << "x,y checked x";
        QTest::newRow("one slice in colours") << 1 << 1 << 3 << 4 << "x,y,c checked x";
        QTest::newRow("frames of one column") << 1 << 2 << 1 << 1 << "y,t checked y";
    }
    void mirror_offersTheAxesThatHaveMoreThanOneEntry()
    {
        QFETCH(int, depth);
        QFETCH(int, frames);
        QFETCH(int, channels);
        QFETCH(int, width);
        QFETCH(QString, offered);
        MainWindowScene scene;
        const QString label = "<b>knee</b> %1";
        const MervImageObject *image =
            scene.addVolume(label, newVolume(MERV::TypeUChar, {width, 2, depth, frames, channels}));
        scene.select({0});
        QSignalSpy updates(image, qOverload<>(&GraphicsObject::updated));
        DialogDriver driver;
        driver.expect<QDialog>("mirror", [&](QDialog *dialog) {
            driver.check("title", dialog->windowTitle(), "Mirror <b>knee</b> %1");
            driver.check("label", labelsOf(dialog).join("|"),
                         "Select the axis to be mirrored. <b>knee</b> %1 will be mirrored against the "
                         "(hyper-)plane orthgonal to this axis located at the image's center with respect to "
                         "this axis.");
            const auto *text = dialog->findChild<QLabel *>();
            QVERIFY(text->wordWrap());
            QCOMPARE(text->textFormat(), Qt::PlainText);
            driver.check("axes", radioTextsOf(dialog).join(","), "x,y,z,t,c");
            driver.check("choices", choices(dialog), offered);
            QVERIFY(dialog->parent() == nullptr);
            driver.click(dialog, dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Cancel));
        });
        scene.window.mirrorImage();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(updates.count(), 0);
    }

    void mirror_turnsTheChosenAxis_data()
    {
        QTest::addColumn<QString>("axis");
        // The value of voxel (0, 0, 0, 0) in channel 0, where voxel (x, y, z, t) in channel c had
        // x + 2 y + 4 z + 8 t + 16 c, each of them 0 or 1.
        QTest::addColumn<int>("origin");
        QTest::newRow("x") << "x" << 1;
        QTest::newRow("y") << "y" << 2;
        QTest::newRow("z") << "z" << 4;
        QTest::newRow("t") << "t" << 8;
        QTest::newRow("c") << "c" << 16;
    }
    void mirror_turnsTheChosenAxis()
    {
        QFETCH(QString, axis);
        QFETCH(int, origin);
        MainWindowScene scene;
        auto voxels = newVolume(MERV::TypeUChar, {2, 2, 2, 2, 2});
        for (int code = 0; code < 32; ++code)
            voxels->setVoxel(float(code), code & 1, code >> 1 & 1, code >> 2 & 1, code >> 3 & 1, code >> 4);
        MervImageObject *image = scene.addVolume("knee", std::move(voxels));
        scene.select({0});
        QSignalSpy updates(image, qOverload<>(&GraphicsObject::updated));
        DialogDriver driver;
        driver.expect<QDialog>("mirror", [&](QDialog *dialog) {
            QTest::mouseClick(radioNamed(dialog, axis), Qt::LeftButton, {}, QPoint(8, 8));
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        scene.window.mirrorImage();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(int(image->voxels()->getVoxel(0, 0, 0, 0, 0)), origin);
        QCOMPARE(int(image->voxels()->getVoxel(1, 1, 1, 1, 1)), 31 - origin);
        QCOMPARE(updates.count(), 1);
    }

    void mirror_withNoAxis_doesNothing()
    {
        MainWindowScene scene;
        MervImageObject *image = scene.addVolume("point", newVolume(MERV::TypeUChar, {1, 1, 1}));
        scene.select({0});
        QSignalSpy updates(image, qOverload<>(&GraphicsObject::updated));
        DialogDriver driver;
        driver.expect<QDialog>("mirror", [&](QDialog *dialog) {
            driver.check("choices", choices(dialog), " checked none");
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        scene.window.mirrorImage();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(updates.count(), 0);
    }

    void selectorPlane_isTakenFromTheDialog_andIsZeroWhenCancelled()
    {
        MainWindowScene scene;
        MervImageObject *source =
            scene.addVolume("knee", newVolume(MERV::TypeUChar, {4, 4, 3},
                                              [](int, int, int z) { return z == 0 ? 0 : 255 * (z - 1); }));
        auto *selector = scene.add(new SliceSelector(source, SliceDirection::Z, 1.0));
        scene.select({1});
        DialogDriver driver;
        driver.expect<QInputDialog>("plane", [&](QInputDialog *dialog) {
            driver.check("title", dialog->windowTitle(), "Slice Selector");
            driver.check("label", dialog->labelText(), "Set selected plane");
            QCOMPARE(dialog->parent(), &scene.window);
            QCOMPARE(dialog->intValue(), 0);
            QCOMPARE(dialog->intMinimum(), -2147483647);
            QCOMPARE(dialog->intMaximum(), 2147483647);
            QCOMPARE(dialog->intStep(), 1);
            auto *box = dialog->findChild<QSpinBox *>();
            box->setFocus();
            box->selectAll();
            QTest::keyClicks(box, "1");
            QTest::keyClick(box, Qt::Key_Up);
            QTest::keyClick(box, Qt::Key_Return);
        });
        scene.window.setSelectorPlane();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(selector->position(), 2.0);
        QCOMPARE(selector->label(), QString("z = 2 in knee"));
        QCOMPARE(int(selector->voxels()->getVoxel(0, 0, 0, 0, 0)), 255); // the image followed
        driver.expect<QInputDialog>("plane",
                                    [](QInputDialog *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
        scene.window.setSelectorPlane();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(selector->label(), QString("z = 0 in knee"));
        QCOMPARE(int(selector->voxels()->getVoxel(0, 0, 0, 0, 0)), 0);
    }

    void centerOfMass_goesToTheClipboard()
    {
        MainWindowScene scene;
        // Slice 0: 104 at (1, 2) and 101 at (6, 0) weigh 4 and 1: x = (4 + 6) / 5, y = 8 / 5. Slice 1:
        // nothing above 100. Slice 2: 103 at (1, 0), 65535 at (2, 1): weights 3 and 65435;
        // x = (3 + 130870) / 65438 = 1.99995..., y = 65435 / 65438 = 0.99995...
        scene.addVolume("a %1 <b>", newVolume(MERV::TypeUShort, {7, 3, 3}, [](int x, int y, int z) {
                            if (z == 0)
                                return x == 1 && y == 2 ? 104 : x == 6 && y == 0 ? 101 : 100;
                            if (z == 1)
                                return (x + y) % 2 == 0 ? 100 : 7;
                            return x == 1 && y == 0 ? 103 : x == 2 && y == 1 ? 65535 : 0;
                        }));
        scene.select({0});
        DialogDriver driver;
        driver.expectBox(QMessageBox::Information, "Center of Mass of a %1 <b>",
                         "In-plane Centers of Mass of a %1 <b> (voxel values minus 100) copied to clipboard.",
                         "OK", [&](QMessageBox *box) {
                             QCOMPARE(box->parent(), &scene.window);
                             QCOMPARE(box->standardButtons(), QMessageBox::Ok);
                             QCOMPARE(box->textFormat(), Qt::PlainText);
                         });
        scene.window.showCenterOfMass();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("#in-plane centers of mass\n#slice\tx\ty\n"
                                                               "0\t2\t1.6\n"
                                                               "1\tnan\tnan\n"
                                                               "2\t1.99995\t0.999954\n"));
    }

    void centerOfMass_ofOtherVoxels_doesNothing()
    {
        MainWindowScene scene;
        for (const int type : {MERV::TypeFloat, MERV::TypeShort, MERV::TypeUChar})
            scene.addVolume("other", newVolume(type, {2, 2, 1}, [](int, int, int) { return 120; }));
        scene.add(new MervImageObject(nullptr, QString()));
        scene.addMesh("mesh", {"one"});
        QGuiApplication::clipboard()->setText("before");
        DialogDriver driver;
        for (const int row : {0, 1, 2, 3, 4}) {
            scene.select({row});
            scene.window.showCenterOfMass();
            QTest::qWait(noAnswer);
        }
        scene.select({});
        scene.window.showCenterOfMass();
        QTest::qWait(noAnswer);
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("before"));
    }
};

QTEST_MAIN(MainWindowImageCommandsTest)
#include "MainWindowImageCommandsTest.moc"
