#include "shell/Registration.h"

#include "Common/Image.h"
#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/SlicedContoursObject.h"
#include "objects/MervImageObject.h"
#include "objects/SparselySampledImageObject.h"
#include "objects/manager/ImageManager.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/PrivateSettings.h"

#include <QFile>
#include <QIcon>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

std::unique_ptr<MervImageObject> newVolume(int width, int height, int depth)
{
    MERV::Image *image = MERV::createImage(MERV::TypeUChar);
    image->setVerbose(0);
    image->setDimensions(width, height, depth, 1, 1);
    return std::make_unique<MervImageObject>(image, QString());
}

// Contours that tell how many objects wait for their end.
class WatchedContours : public SlicedContoursObject
{
public:
    using SlicedContoursObject::SlicedContoursObject;
    int followers() const { return receivers(SIGNAL(destroyed(QObject *))); }
};

} // namespace

// What the program itself registers, seen through the dialogs that offer it.
class RegistrationTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private:
    std::unique_ptr<ImageManager> manager;

    QStringList saveFilters(ImageObject *object)
    {
        QStringList filters;
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", QString(), [&filters](QFileDialog *dialog) {
            filters = DialogDriver::shownFilters(dialog);
        });
        manager->saveImage(object);
        if (!driver.verify())
            filters << driver.report();
        return filters;
    }

private slots:
    void init()
    {
        manager = std::make_unique<ImageManager>(nullptr);
        registerFormats(*manager);
    }

    void readersInTheirOrder()
    {
        DialogDriver driver;
        driver.expectFileDialog("Load images", QString(), [&driver](QFileDialog *dialog) {
            driver.check("filters", DialogDriver::shownFilters(dialog).join("\n"),
                         "all supported files (*.bmp; *.dcm; *.dcm; *.hdr; *.mhd; *.slic; *.vis)\n"
                         "Dicom Series (*.dcm)\n"
                         "Sliced Contours (*.slic)\n"
                         "Dicom file (*.dcm)\n"
                         "MetaImage file (*.mhd)\n"
                         "Analyze file (*.hdr)\n"
                         "Tallowbrook VIS format (*.vis)\n"
                         "Windows bitmap (*.bmp)\n"
                         "all files (*)");
        });
        manager->loadInteractively();
        QVERIFY2(driver.verify(), driver.report());
    }

    void writersInTheirOrder()
    {
        const QStringList volumeFormats{"Tallowbrook VIS format (*.vis)", "Analyze file (*.hdr)",
                                        "MetaImage file (*.mhd)"};
        const auto whole = newVolume(8, 4, 2);
        QCOMPARE(saveFilters(whole.get()), volumeFormats + QStringList{"Windows bitmap (*.bmp)"});
        QCOMPARE(saveFilters(newVolume(6, 4, 2).get()), volumeFormats);
        QCOMPARE(saveFilters(newVolume(4, 6, 2).get()), volumeFormats);
        SlicedContoursObject contours("contours", nullptr);
        QCOMPARE(saveFilters(&contours), (QStringList{"Sliced Contours (*.slic)", "Text file (*.txt)"}));
        ConventionalSliceEdgePointExtractor edges(whole.get());
        QCOMPARE(saveFilters(&edges), QStringList{"Text file (*.txt)"});
        SparselySampledImageObject samples("samples", nullptr);
        QCOMPARE(saveFilters(&samples), QStringList{"Text (tab separated values) (*.txt)"});
    }

    // The table that was made for the metrics file stays for ever; it must not hold on to the contours.
    void metricsOfSavedContours_letGoBeforeTheContoursAreDeleted()
    {
        const QTemporaryDir folder;
        auto *contours = new WatchedContours("contours", nullptr);
        contours->newContour("cartilage");
        manager->addImage(contours);
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", folder.filePath("a.slic"));
        QVERIFY(manager->saveImage(contours));
        QVERIFY2(driver.verify(), driver.report());
        QVERIFY(QFile::exists(folder.filePath("a.txt")));
        QCOMPARE(contours->followers(), 1);
        int followers = -1;
        manager->addClosingListener(this, [&](ImageObject *) { followers = contours->followers(); });
        manager->closeImage(manager->index(0, 0));
        QCOMPARE(followers, 0);
    }

    void volumesAndSlicesHaveTheirIcons()
    {
        manager->addImage(newVolume(4, 4, 2).release());
        manager->addImage(newVolume(4, 4, 1).release());
        manager->addImage(new SlicedContoursObject("contours", nullptr));
        const auto picture = [this](int row) {
            return manager->data(manager->index(row, 0), Qt::DecorationRole)
                .value<QIcon>()
                .pixmap(32, 32)
                .toImage();
        };
        QCOMPARE(picture(0), QIcon(":/icons/pixmap.volume.1channel.32.png").pixmap(32, 32).toImage());
        QCOMPARE(picture(1), QIcon(":/icons/pixmap.1slice.1channel.32.png").pixmap(32, 32).toImage());
        QCOMPARE(picture(2).pixelColor(16, 16), QColor(Qt::gray)); // nobody provides for contours
    }
};

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName("Tevora");
    RegistrationTest::initMain();
    RegistrationTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "RegistrationTest.moc"
