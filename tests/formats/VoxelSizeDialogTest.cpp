#include "serialization/dialogs/VoxelSizeDialog.h"

#include "tests/support/DialogDriver.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

class VoxelSizeDialogTest : public QObject
{
    Q_OBJECT

private:
    static QWidget *widgetAt(const VoxelSizeDialog *dialog, int row, int column)
    {
        const QLayoutItem *item = qobject_cast<QGridLayout *>(dialog->layout())->itemAtPosition(row, column);
        return item != nullptr ? item->widget() : nullptr;
    }
    static QLineEdit *entry(const VoxelSizeDialog *dialog, int row)
    {
        return qobject_cast<QLineEdit *>(widgetAt(dialog, row, 1));
    }

private slots:
    void texts()
    {
        const VoxelSizeDialog dialog({256, 255, 31});
        QCOMPARE(dialog.windowTitle(), QString());
        const auto *label = qobject_cast<QLabel *>(widgetAt(&dialog, 0, 0));
        QCOMPARE(
            label->text(),
            QString("The image being loaded consists of 256x255x31 voxels without information on physical "
                    "dimensions. Enter one voxel's dimensions."));
        QVERIFY(label->wordWrap());
        QCOMPARE(widgetAt(&dialog, 0, 2), label); // over three columns
        const QStringList axes{"x", "y", "z"};
        for (int row = 1; row <= 3; ++row) {
            QCOMPARE(qobject_cast<QLabel *>(widgetAt(&dialog, row, 0))->text(),
                     "voxel " + axes[row - 1] + " size:");
            QCOMPARE(entry(&dialog, row)->text(), QString("1.0"));
            QCOMPARE(entry(&dialog, row)->maxLength(), 10);
            QCOMPARE(entry(&dialog, row)->validator(), nullptr);
            QCOMPARE(qobject_cast<QLabel *>(widgetAt(&dialog, row, 2))->text(), QString("mm"));
        }
        const auto *buttons = qobject_cast<QDialogButtonBox *>(widgetAt(&dialog, 4, 0));
        QCOMPARE(buttons->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
        QCOMPARE(widgetAt(&dialog, 4, 2), buttons);
        QCOMPARE(dialog.voxelSize(), (std::array<float, 3>{1, 1, 1}));
    }

    void ok_givesTheEntries_whatIsNoNumberIs0()
    {
        DialogDriver driver;
        driver.expect<VoxelSizeDialog>("question", [&](VoxelSizeDialog *dialog) {
            DialogDriver::type(entry(dialog, 1), "0.3125");
            DialogDriver::type(entry(dialog, 2), "abc");
            entry(dialog, 3)->clear();
            driver.check("modality", QString::number(dialog->isModal()), "1");
            driver.click(dialog, DialogDriver::buttonNamed(dialog, "OK"));
        });
        const auto size = VoxelSizeDialog::ask({1, 1, 1});
        QVERIFY2(driver.verify(), driver.report());
        QVERIFY(size.has_value());
        QCOMPARE(*size, (std::array<float, 3>{0.3125f, 0, 0}));
    }

    void entries_endAtTenCharacters()
    {
        VoxelSizeDialog dialog({1, 1, 1});
        DialogDriver::type(entry(&dialog, 1), "0.12345678999");
        QCOMPARE(entry(&dialog, 1)->text(), QString("0.12345678"));
    }

    void cancelAndEscape_giveNothing()
    {
        DialogDriver driver;
        driver.expect<VoxelSizeDialog>("question", [&](VoxelSizeDialog *dialog) {
            driver.click(dialog, DialogDriver::buttonNamed(dialog, "Cancel"));
        });
        QVERIFY(!VoxelSizeDialog::ask({1, 1, 1}).has_value());
        driver.expect<VoxelSizeDialog>(
            "question", [&](VoxelSizeDialog *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
        QVERIFY(!VoxelSizeDialog::ask({1, 1, 1}).has_value());
        QVERIFY2(driver.verify(), driver.report());
    }
};

QTEST_MAIN(VoxelSizeDialogTest)
#include "VoxelSizeDialogTest.moc"
