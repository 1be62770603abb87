#include "objects/manager/ImageManager.h"

#include "contours/EdgePointSet.h"
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "meshes/TriMeshObject.h"
#include "objects/MervImageObject.h"
#include "objects/SparselySampledImageObject.h"
#include "serialization/dialogs/InteractiveDicomUnserializerDialog.h"
#include "serialization/dialogs/VoxelSizeDialog.h"
#include "serialization/formats/AnalyzeSerializer.h"
#include "serialization/formats/AnalyzeUnserializer.h"
#include "serialization/formats/DcmUnserializer.h"
#include "serialization/formats/EdgePointLister.h"
#include "serialization/formats/InteractiveDicomUnserializer.h"
#include "serialization/formats/MhdSerializer.h"
#include "serialization/formats/MhdUnserializer.h"
#include "serialization/formats/SlicSerializer.h"
#include "serialization/formats/SlicUnserializer.h"
#include "serialization/formats/TextSerializer.h"
#include "serialization/formats/TextSlicSerializer.h"
#include "serialization/formats/VisSerializer.h"
#include "serialization/formats/VisUnserializer.h"
#include "serialization/formats/WindowsBitmapSerializer.h"
#include "serialization/formats/WindowsBitmapUnserializer.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/TestVolume.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>

#include <sstream>

namespace {

// A manager with all readers and writers of the program.
class FullManager : public ImageManager
{
public:
    FullManager()
        : ImageManager(nullptr)
        , vis(&VoxelSizeDialog::ask)
    {
        for (AbstractImageObjectSerializer *writer : std::initializer_list<AbstractImageObjectSerializer *>{
                 &visWriter, &slicWriter, &textSlicWriter, &textWriter, &edgeWriter, &analyzeWriter,
                 &mhdWriter, &bitmapWriter})
            addSerializer(writer);
        for (AbstractImageObjectUnserializer *reader :
             std::initializer_list<AbstractImageObjectUnserializer *>{&series, &slic, &dicom, &mhd, &analyze,
                                                                      &vis, &bitmap})
            addUnserializer(reader);
    }

private:
    VisSerializer visWriter;
    SlicSerializer slicWriter;
    TextSlicSerializer textSlicWriter;
    TextSerializer textWriter;
    EdgePointLister edgeWriter;
    AnalyzeSerializer analyzeWriter;
    MhdSerializer mhdWriter;
    WindowsBitmapSerializer bitmapWriter;
    InteractiveDicomUnserializer series;
    SlicUnserializer slic;
    DcmUnserializer dicom;
    MhdUnserializer mhd;
    AnalyzeUnserializer analyze;
    VisUnserializer vis;
    WindowsBitmapUnserializer bitmap;
};

const QString noneText("There was no appropriate unserializer.");
const QString
    failedText("The following unserializer(s) assured their capability to unserialize this file, but they "
               "failed to do so: ");

} // namespace

class LoadAndSaveTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private:
    QString newFile(const QString &name, const QByteArray &bytes) const
    {
        QFile file(folder->filePath(name));
        const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
        return written ? file.fileName() : QString();
    }
    static QByteArray slicBytes()
    {
        SlicedContoursObject contours("patella");
        contours.newContour("cartilage")->addFragmentReference(contours.newFragment("bone"));
        contours.fragment(0)->newSegment(QPointF(1, 2), 3);
        std::ostringstream stream;
        SlicSerializer().serialize(&contours, stream);
        return QByteArray::fromStdString(stream.str());
    }
    static QByteArray visBytes()
    {
        MervImageObject volume(newVolume(MERV::TypeUChar, {4, 3, 2}).release(), QString(), nullptr);
        std::ostringstream stream;
        VisSerializer().serialize(&volume, stream);
        return QByteArray::fromStdString(stream.str());
    }
    // Opens the dialog for saving, returns its filters and the proposed name, and cancels it.
    QStringList offeredFor(ImageObject *object)
    {
        QStringList offered;
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", QString(), [&](QFileDialog *dialog) {
            offered = DialogDriver::shownFilters(dialog);
            offered.prepend(dialog->findChild<QLineEdit *>("fileNameEdit")->text());
        });
        manager->saveImage(object);
        if (!driver.verify())
            offered << driver.report();
        return offered;
    }

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<FullManager> manager;
    std::unique_ptr<CapturedOutput> output;

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        manager = std::make_unique<FullManager>();
        output = std::make_unique<CapturedOutput>();
        QDir::setCurrent(folder->path());
    }
    void cleanup()
    {
        output.reset();
        manager.reset();
        QDir::setCurrent("/");
    }

    void eachClass_isOfferedItsFormats()
    {
        SlicedContoursObject contours("contours");
        QCOMPARE(offeredFor(&contours),
                 QStringList({"contours.slic", "Sliced Contours (*.slic)", "Text file (*.txt)"}));
        EdgePointSet points("points", nullptr);
        QCOMPARE(offeredFor(&points), QStringList({"points.txt", "Text file (*.txt)"}));
        SparselySampledImageObject samples("samples", nullptr);
        QCOMPARE(offeredFor(&samples), QStringList({"samples.txt", "Text (tab separated values) (*.txt)"}));
        MervImageObject volume(newVolume(MERV::TypeUChar, {4, 8, 2}).release(), "/x/knee.mhd", nullptr);
        const QStringList common{"knee.vis", "Tallowbrook VIS format (*.vis)", "Analyze file (*.hdr)",
                                 "MetaImage file (*.mhd)"};
        QCOMPARE(offeredFor(&volume), common + QStringList("Windows bitmap (*.bmp)"));
        MervImageObject odd(newVolume(MERV::TypeUChar, {250, 256, 1}).release(), "/x/knee.mhd", nullptr);
        QCOMPARE(offeredFor(&odd), common);
    }

    void meshes_cannotBeSaved()
    {
        TriMeshObject mesh("mesh", nullptr);
        DialogDriver driver;
        driver.expectBox(
            QMessageBox::Critical, "Tevora",
            "The image cannot be saved for there is no serializer installed to handle this type of "
            "image.",
            QMessageBox::Ok);
        QVERIFY(!manager->saveImage(&mesh));
        QVERIFY2(driver.verify(), driver.report());
    }

    void slicContent_isReadWhateverItsExtension()
    {
        for (const char *name : {"a.slic", "x.mhd", "y.dcm", "z"}) {
            const auto *contours =
                dynamic_cast<SlicedContoursObject *>(manager->loadFile(newFile(name, slicBytes()), nullptr));
            QVERIFY2(contours != nullptr, name);
            QCOMPARE(contours->label(), QString("patella"));
            QVERIFY(contours->filePath().isNull());
        }
    }

    void shortHeader_isRefused()
    {
        QString error;
        QCOMPARE(manager->loadFile(newFile("a.hdr", QByteArray(9, 'x')), &error), nullptr);
        QCOMPARE(error, noneText);
    }

    void tenBytes_areOfferedToTheReaderOfTheExtension()
    {
        QString error;
        QCOMPARE(manager->loadFile(newFile("a.mhd", QByteArray(10, 'x')), &error), nullptr);
        QCOMPARE(error, failedText + "MetaImage file");
        QCOMPARE(manager->loadFile(newFile("IMAGE.MHD", QByteArray(10, 'x')), &error), nullptr);
        QCOMPARE(error, noneText);
    }

    void directory_opensThePreviewAndCountsAsFailed()
    {
        DialogDriver driver;
        driver.expect<InteractiveDicomUnserializerDialog>(
            "preview",
            [](InteractiveDicomUnserializerDialog *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
        QString error;
        QCOMPARE(manager->loadFile(folder->path(), &error), nullptr);
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(error, failedText + "Dicom Series");
    }

    void visFile_asksForTheVoxelSize()
    {
        const QString path = newFile("knee.vis", visBytes());
        DialogDriver driver;
        driver.expect<VoxelSizeDialog>("question", [&](VoxelSizeDialog *dialog) {
            const QList<QLineEdit *> entries = dialog->findChildren<QLineEdit *>();
            QCOMPARE(entries.size(), 3);
            DialogDriver::type(entries[2], "2.5");
            driver.click(dialog, DialogDriver::buttonNamed(dialog, "OK"));
        });
        const auto *volume = dynamic_cast<MervImageObject *>(manager->loadFile(path, nullptr));
        QVERIFY2(driver.verify(), driver.report());
        QVERIFY(volume != nullptr);
        QCOMPARE(volume->label(), QString("Unnamed Image"));
        QCOMPARE(volume->voxels()->getSpacing(2), 2.5f);
    }

    void visFile_whoseQuestionIsCancelled_countsAsFailed()
    {
        const QString path = newFile("knee.vis", visBytes());
        DialogDriver driver;
        driver.expect<VoxelSizeDialog>("question", [&](VoxelSizeDialog *dialog) {
            driver.click(dialog, DialogDriver::buttonNamed(dialog, "Cancel"));
        });
        QString error;
        QCOMPARE(manager->loadFile(path, &error), nullptr);
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(error, failedText + "Tallowbrook VIS format");
    }

    void setOfEdgePoints_thatIsNotSliceWise_failsWithTheQuestion()
    {
        auto *points = new EdgePointSet("points", nullptr);
        manager->addImage(points);
        const QString path = folder->filePath("points.txt");
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", path);
        driver.expectBox(QMessageBox::Warning, "Tevora",
                         "The image could not be saved to\n\n" + path + "\n\n", "Abort");
        QVERIFY(!manager->saveImage(points));
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(QFileInfo(path).size(), qint64(0)); // truncated before the writer refused
    }

    void contours_areSavedWithMetricsAndLoadedAgain()
    {
        auto *contours =
            dynamic_cast<SlicedContoursObject *>(manager->loadFile(newFile("a", slicBytes()), nullptr));
        QVERIFY(contours != nullptr);
        QStandardItemModel model(1, 1);
        model.setItem(0, 0, new QStandardItem("2 mm"));
        manager->setMetricsModelFactory([&](ImageObject *) { return &model; });
        const QString path = folder->filePath("Segmentation ä.slic");
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", path);
        QVERIFY(manager->saveImage(contours));
        QVERIFY2(driver.verify(), driver.report());
        QFile metrics(folder->filePath("Metrics ä.txt"));
        QVERIFY(metrics.open(QIODevice::ReadOnly));
        QCOMPARE(metrics.readAll(), QByteArray("2\n\0", 3));
        const auto *again = dynamic_cast<SlicedContoursObject *>(manager->loadFile(path, nullptr));
        QVERIFY(again != nullptr);
        QCOMPARE(again->fragment(0)->segment(0)->point(0), QPointF(1, 2));
        QCOMPARE(again->contour(0)->fragment(0), again->fragment(0));
    }

    void volume_isSavedByTheChosenFormatAndLoadedAgain()
    {
        auto *volume =
            new MervImageObject(newVolume(MERV::TypeShort, {3, 4, 5},
                                          [](int x, int y, int z) { return 100 * z + 10 * y + x - 200; })
                                    .release(),
                                "/x/knee.mhd", nullptr);
        manager->addImage(volume);
        const QString path = folder->filePath("Knie ä.mhd");
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", path, [&](QFileDialog *dialog) {
            driver.selectFilter(dialog, "MetaImage file (*.mhd)");
        });
        QVERIFY(manager->saveImage(volume));
        QVERIFY2(driver.verify(), driver.report());
        const auto *again = dynamic_cast<MervImageObject *>(manager->loadFile(path, nullptr));
        QVERIFY(again != nullptr);
        QCOMPARE(again->label(), QString("Knie ä"));
        QCOMPARE(again->voxels()->getVoxel(2, 3, 4, 0, 0), 232.0f);
    }
};

QTEST_MAIN(LoadAndSaveTest)
#include "LoadAndSaveTest.moc"
