#include "objects/ImagePropertiesDialog.h"

#include "objects/MervImageObject.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/TestVolume.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>

#include <algorithm>
#include <limits>
#include <vector>

namespace {

// An image object that steps through given positions.
class Steps : public ImageObject
{
public:
    Steps(const QString &label, int newType, std::vector<float> newPositions)
        : ImageObject(label, nullptr)
        , type(newType)
        , positions(std::move(newPositions))
    {}
    int imageType() const override { return type; }
    float extentX() const override { return 12.5f; }
    float firstSignificantZ() const override
    {
        return positions.empty() ? std::numeric_limits<float>::max() : positions.front();
    }
    float nextSignificantZ(float z) const override
    {
        const auto next = std::upper_bound(positions.begin(), positions.end(), z);
        return next == positions.end() ? z : *next;
    }

private:
    int type;
    std::vector<float> positions;
};

// The rows of the first page as "title value".
QStringList rows(const ImagePropertiesDialog &dialog)
{
    const auto *form = dialog.findChild<QTabWidget *>()->widget(0)->findChild<QFormLayout *>();
    QStringList texts;
    for (int row = 0; row < form->rowCount(); ++row) {
        const auto *title = qobject_cast<QLabel *>(form->itemAt(row, QFormLayout::LabelRole)->widget());
        QWidget *field = form->itemAt(row, QFormLayout::FieldRole)->widget();
        const auto *edit = qobject_cast<QLineEdit *>(field);
        const auto *text = qobject_cast<QLabel *>(field);
        texts << title->text() + QLatin1Char(' ') + (edit != nullptr ? edit->text() : text->text());
    }
    return texts;
}

std::unique_ptr<MervImageObject> newKnee()
{
    auto image = newVolume(MERV::TypeShort, {300, 200, 10});
    image->setSpacing(0.3125f, 0.3125f, 1.5f, 1.0f);
    image->setMetaData("Patient's Name", "J\u00F6rg <b>");
    image->setMetaData("Modality", "MR");
    return std::make_unique<MervImageObject>(image.release(), QStringLiteral("knee"));
}

} // namespace

class ImagePropertiesDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void volumeShowsAllRows();
    void otherObjectsHaveNoVoxelRows();
    void typeNames_data();
    void typeNames();
    void significantPositions_data();
    void significantPositions();
    void positionsFollowTheLocale();
    void imageWithoutVoxels();
    void metaDataAreATable();
    void objectsWithoutMetaDataHaveAnEmptyTable();
    void okStoresTheTypedName();
    void returnStoresTheTypedName();
    void cancelAndEscapeKeepTheName_data();
    void cancelAndEscapeKeepTheName();
    void untouchedNameIsNotStored();
    void labelsArePlainText();
};

void ImagePropertiesDialogTest::init()
{
    QLocale::setDefault(QLocale::c());
}

void ImagePropertiesDialogTest::volumeShowsAllRows()
{
    const auto knee = newKnee();
    const ImagePropertiesDialog dialog(knee.get(), nullptr);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Properties of knee"));
    const auto *tabs = dialog.findChild<QTabWidget *>();
    QCOMPARE(tabs->count(), 2);
    QCOMPARE(tabs->tabText(0), QStringLiteral("General"));
    QCOMPARE(tabs->tabText(1), QStringLiteral("Properties"));
    // 300 * 0.3125 = 93.75, 200 * 0.3125 = 62.5, 10 * 1.5 = 15; slice k lies at (k + 0.5) * 1.5.
    const QStringList expected = {
        QStringLiteral("Name: knee"),
        QStringLiteral("Image type: pixmap image"),
        QStringLiteral("Signature: x\u00A0\u00D7\u00A0y\u00A0\u00D7\u00A0z\u00A0\u2192\u00A0range"),
        QStringLiteral("Dimensions [mm\u00D7mm\u00D7mm]: 93.75\u00D762.5\u00D715"),
        QStringLiteral("Dimensions [Pixel\u00D7Pixel\u00D7Pixel]: 300\u00D7200\u00D710"),
        QStringLiteral("Spacing [mm\u00D7mm\u00D7mm]: 0.3125\u00D70.3125\u00D71.5"),
        QStringLiteral("Granularity [mm]: 0.3125"),
        QStringLiteral(
            "Significant z Positions [mm]: 0.75; 2.25; 3.75; 5.25; 6.75; 8.25; 9.75; 11.25; 12.75; 14.25"),
    };
    QCOMPARE(rows(dialog), expected);
}

void ImagePropertiesDialogTest::otherObjectsHaveNoVoxelRows()
{
    Steps contours(QStringLiteral("contours"), ImageTypeContours, {});
    const ImagePropertiesDialog dialog(&contours, nullptr);
    const QStringList expected = {
        QStringLiteral("Name: contours"),
        QStringLiteral("Image type: Sliced contours"),
        QStringLiteral("Dimensions [mm\u00D7mm\u00D7mm]: 12.5\u00D70\u00D70"),
        QStringLiteral("Granularity [mm]: 1"),
        QStringLiteral("Significant z Positions [mm]: - none -"),
    };
    QCOMPARE(rows(dialog), expected);
}

void ImagePropertiesDialogTest::typeNames_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("name");
    QTest::newRow("other") << 0 << "unknown";
    QTest::newRow("voxels") << 1 << "pixmap image";
    QTest::newRow("contours") << 2 << "Sliced contours";
    QTest::newRow("mesh") << 3 << "unknown";
}

void ImagePropertiesDialogTest::typeNames()
{
    QFETCH(int, type);
    QFETCH(QString, name);
    Steps object(QStringLiteral("object"), type, {});
    QCOMPARE(rows(ImagePropertiesDialog(&object, nullptr)).at(1), QStringLiteral("Image type: ") + name);
}

void ImagePropertiesDialogTest::significantPositions_data()
{
    QTest::addColumn<QList<float>>("positions");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << QList<float>{} << "- none -";
    QTest::newRow("one") << QList<float>{-1.5f} << "-1.5";
    QTest::newRow("three") << QList<float>{0.0f, 0.25f, 100000.0f} << "0; 0.25; 100000";
    QTest::newRow("ten") << QList<float>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10} << "1; 2; 3; 4; 5; 6; 7; 8; 9; 10";
    QTest::newRow("eleven") << QList<float>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}
                            << "1; 2; 3; 4; 5; 6; 7; 8; 9; 10";
}

void ImagePropertiesDialogTest::significantPositions()
{
    QFETCH(QList<float>, positions);
    QFETCH(QString, text);
    const Steps object(QStringLiteral("object"), 2, {positions.begin(), positions.end()});
    QCOMPARE(ImagePropertiesDialog::significantPositions(object), text);
}

void ImagePropertiesDialogTest::positionsFollowTheLocale()
{
    QLocale::setDefault(QLocale(QLocale::German));
    const Steps object(QStringLiteral("object"), 2, {0.75f, 1234.5f});
    QCOMPARE(ImagePropertiesDialog::significantPositions(object), QStringLiteral("0,75; 1.234,5"));
}

void ImagePropertiesDialogTest::imageWithoutVoxels()
{
    MervImageObject empty(nullptr, QStringLiteral("empty"));
    const ImagePropertiesDialog dialog(&empty, nullptr);
    QCOMPARE(rows(dialog).last(), QStringLiteral("Significant z Positions [mm]: - none -"));
    QCOMPARE(dialog.findChild<QTableWidget *>()->rowCount(), 0);
}

void ImagePropertiesDialogTest::metaDataAreATable()
{
    const auto knee = newKnee();
    const ImagePropertiesDialog dialog(knee.get(), nullptr);
    const auto *table = dialog.findChild<QTableWidget *>();
    QCOMPARE(table->columnCount(), 2);
    QCOMPARE(table->horizontalHeaderItem(0)->text(), QStringLiteral("Property"));
    QCOMPARE(table->horizontalHeaderItem(1)->text(), QStringLiteral("Value"));
    QCOMPARE(table->rowCount(), 2);
    QCOMPARE(table->item(0, 0)->text(), QStringLiteral("Modality"));
    QCOMPARE(table->item(0, 1)->text(), QStringLiteral("MR"));
    QCOMPARE(table->item(1, 0)->text(), QStringLiteral("Patient's Name"));
    QCOMPARE(table->item(1, 1)->text(), QStringLiteral("J\u00F6rg <b>"));
    QVERIFY(!(table->item(0, 1)->flags() & Qt::ItemIsEditable));
}

void ImagePropertiesDialogTest::objectsWithoutMetaDataHaveAnEmptyTable()
{
    Steps object(QStringLiteral("object"), 2, {});
    const ImagePropertiesDialog dialog(&object, nullptr);
    QCOMPARE(dialog.findChild<QTableWidget *>()->rowCount(), 0);
    QCOMPARE(dialog.findChild<QTableWidget *>()->columnCount(), 2);
}

void ImagePropertiesDialogTest::okStoresTheTypedName()
{
    const auto knee = newKnee();
    const QSignalSpy updated(knee.get(), &GraphicsObject::updated);
    ImagePropertiesDialog dialog(knee.get(), nullptr);
    DialogDriver driver;
    driver.expect<ImagePropertiesDialog>(QStringLiteral("properties"), [&](ImagePropertiesDialog *shown) {
        auto *edit = shown->findChild<QLineEdit *>();
        QTest::mouseDClick(edit, Qt::LeftButton); // selects the word
        QTest::keyClicks(edit, QStringLiteral("left knee"));
        QCOMPARE(knee->label(), QStringLiteral("knee")); // not before OK
        // The tabs can be turned by the mouse.
        auto *tabs = shown->findChild<QTabWidget *>();
        QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, {}, tabs->tabBar()->tabRect(1).center());
        driver.check(QStringLiteral("page"), QString::number(tabs->currentIndex()), QStringLiteral("1"));
        driver.click(shown, DialogDriver::buttonNamed(shown, QStringLiteral("OK")));
    });
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QVERIFY2(driver.verify(), driver.report());
    QCOMPARE(knee->label(), QStringLiteral("left knee"));
    QCOMPARE(updated.count(), 0); // a new name is seen at the next repaint
}

void ImagePropertiesDialogTest::returnStoresTheTypedName()
{
    const auto knee = newKnee();
    ImagePropertiesDialog dialog(knee.get(), nullptr);
    DialogDriver driver;
    driver.expect<ImagePropertiesDialog>(QStringLiteral("properties"), [](ImagePropertiesDialog *shown) {
        auto *edit = shown->findChild<QLineEdit *>();
        QTest::keyClick(edit, Qt::Key_End);
        QTest::keyClicks(edit, QStringLiteral(" 2"));
        QTest::keyClick(edit, Qt::Key_Return);
    });
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QVERIFY2(driver.verify(), driver.report());
    QCOMPARE(knee->label(), QStringLiteral("knee 2"));
}

void ImagePropertiesDialogTest::cancelAndEscapeKeepTheName_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("Cancel") << false;
    QTest::newRow("Escape") << true;
}

void ImagePropertiesDialogTest::cancelAndEscapeKeepTheName()
{
    QFETCH(bool, byKey);
    const auto knee = newKnee();
    ImagePropertiesDialog dialog(knee.get(), nullptr);
    DialogDriver driver;
    driver.expect<ImagePropertiesDialog>(QStringLiteral("properties"), [&](ImagePropertiesDialog *shown) {
        auto *edit = shown->findChild<QLineEdit *>();
        QTest::keyClicks(edit, QStringLiteral("other"));
        if (byKey)
            QTest::keyClick(edit, Qt::Key_Escape);
        else
            driver.click(shown, DialogDriver::buttonNamed(shown, QStringLiteral("Cancel")));
    });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QVERIFY2(driver.verify(), driver.report());
    QCOMPARE(knee->label(), QStringLiteral("knee"));
}

// A name that the line of text cannot show as it is stays untouched unless the user types.
void ImagePropertiesDialogTest::untouchedNameIsNotStored()
{
    Steps object(QStringLiteral("two\nlines"), 2, {});
    ImagePropertiesDialog dialog(&object, nullptr);
    DialogDriver driver;
    driver.expect<ImagePropertiesDialog>(QStringLiteral("properties"), [&](ImagePropertiesDialog *shown) {
        driver.click(shown, DialogDriver::buttonNamed(shown, QStringLiteral("OK")));
    });
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QVERIFY2(driver.verify(), driver.report());
    QCOMPARE(object.label(), QStringLiteral("two\nlines"));
}

void ImagePropertiesDialogTest::labelsArePlainText()
{
    Steps object(QStringLiteral("<img src=x> %1 100%2"), 2, {});
    const ImagePropertiesDialog dialog(&object, nullptr);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Properties of <img src=x> %1 100%2"));
    const auto *form = dialog.findChild<QTabWidget *>()->widget(0)->findChild<QFormLayout *>();
    for (int row = 1; row < form->rowCount(); ++row) {
        const auto *value = qobject_cast<QLabel *>(form->itemAt(row, QFormLayout::FieldRole)->widget());
        QCOMPARE(value->textFormat(), Qt::PlainText);
    }
}

QTEST_MAIN(ImagePropertiesDialogTest)
#include "ImagePropertiesDialogTest.moc"
