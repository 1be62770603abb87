#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "contours/metrics/viewer/SlicedMetricsViewer.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "serialization/dialogs/InteractiveDicomUnserializerDialog.h"
#include "serialization/dialogs/SliceDistanceDialog.h"
#include "serialization/dialogs/VoxelSizeDialog.h"
#include "serialization/framework/FileSystemImageObjectSerializer.h"
#include "tests/shell/MainWindowScene.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/DicomFileBuilder.h"
#include "tests/support/PrivateSettings.h"
#include "tests/translations/LoadedLanguage.h"
#include "tests/translations/TextFit.h"
#include "view/QStackedSliceViewer.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSet>
#include <QTabWidget>
#include <QTemporaryDir>

namespace {

std::unique_ptr<MERV::Image> kneeVoxels()
{
    auto voxels = newVolume(MERV::TypeUShort, {30, 20, 3}, [](int x, int, int) { return x < 15 ? 0 : 200; });
    voxels->setSpacing(1.0f, 0.5f, 2.0f, 1.0f);
    voxels->setMetaData("Patient's Name", "Phantom");
    return voxels;
}

// Two lines on each plane, 2 mm apart.
void draw(const SlicedContoursObject &contours)
{
    for (int i = 0; i < contours.fragmentCount(); ++i) {
        for (const float z : {1.0f, 3.0f, 5.0f}) {
            const qreal y = 4 + 2 * i;
            contours.fragment(i)->newSegment(QPointF(5, y), z)->addPointBack(QPointF(20, y));
        }
    }
}

// The only format for meshes, and never written.
class FailingSerializer : public FileSystemImageObjectSerializer
{
public:
    FailingSerializer()
        : FileSystemImageObjectSerializer("mesh", "application/x-mesh", "mesh")
    {}
    bool canSerialize(ImageObject *object) override
    {
        return dynamic_cast<TriMeshObject *>(object) != nullptr;
    }
    bool serialize(ImageObject *, const wchar_t *) override { return false; }
};

template <class Window>
Window *onlyWindow()
{
    const auto windows = MainWindowScene::topLevels<Window>();
    return windows.size() == 1 ? windows.first() : nullptr;
}

} // namespace

// Opens every window and dialog in each language: nothing may be cut off, and no text may be without a
// translation. With TEVORA_PICTURES in the environment, pictures of all of them go to that folder.
class TranslatedWindowsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        static const PrivateSettings settings;
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    }

private:
    QTemporaryDir folder;
    QString code;
    std::unique_ptr<LoadedLanguage> language;
    std::unique_ptr<DialogDriver> driver;
    QStringList faults;

    void keepPicture(QWidget &window, const QString &name) const
    {
        const QString pictures = qEnvironmentVariable("TEVORA_PICTURES");
        if (!pictures.isEmpty())
            window.grab().save(pictures + '/' + name + '-' + code + ".png");
    }

    // The window is on the screen, with the size it takes by itself.
    void look(QWidget &window, const QString &name)
    {
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTest::qWait(50);
        for (const QString &fault : cutOffTexts(window))
            faults << name + ": " + fault;
        keepPicture(window, name);
    }

    // The next modal dialog is looked at, then answered; rejected if nothing else is said.
    void expectLook(const QString &name, const std::function<void(QDialog *)> &answer = &QDialog::reject)
    {
        driver->expect<QDialog>(name, [=, this](QDialog *dialog) {
            look(*dialog, name);
            answer(dialog);
        });
    }

    // Answers with the standard button.
    std::function<void(QDialog *)> press(QDialogButtonBox::StandardButton button)
    {
        return [=, this](QDialog *dialog) {
            driver->click(dialog, dialog->findChild<QDialogButtonBox *>()->button(button));
        };
    }

    void lookAtMenu(QMenu &menu, const QPoint &place)
    {
        menu.popup(place);
        QVERIFY(QTest::qWaitForWindowExposed(&menu));
        for (const QString &fault : cutOffEntries(menu))
            faults << fault;
        keepPicture(menu, "menu-" + QString::number(place.x()));
        QSet<QString> keys;
        for (const QAction *action : menu.actions()) {
            const QString key = QKeySequence::mnemonic(action->text()).toString();
            if (!key.isEmpty() && keys.contains(key))
                faults << "the key " + key + " stands twice in the menu " + menu.title();
            keys.insert(key);
        }
        menu.close();
    }

    // Two files of two patients.
    QString writeDicomFolder()
    {
        QString path = folder.filePath("series");
        if (!QDir().mkpath(path))
            return {};
        int number = 0;
        for (const char *patient : {"Doe^Jane", "Roe^Jim"}) {
            DicomFileBuilder file = dicomSlice(2, 2, {1, 2, 3, 4}, 2.0 * number);
            file.text(0x00100010, "PN", patient);
            file.text(0x0020000E, "UI", "1.2." + std::to_string(++number));
            file.write((path + QString("/%1.dcm").arg(number)).toStdString());
        }
        return path;
    }

    // Texts of the program or of the toolkit that no translation was found for.
    QStringList missingTexts() const
    {
        QStringList missing;
        for (const QString &text : language->missingTexts()) {
            const bool isDirection = text.contains("QT_LAYOUT_DIRECTION"); // from left to right unless told
            const bool isEnglishOfToolkit =
                code == "en" && text.startsWith('Q') && !text.startsWith("QStackedSlice");
            if (!isDirection && !isEnglishOfToolkit)
                missing << text;
        }
        return missing;
    }

private slots:
    void initTestCase_data()
    {
        QTest::addColumn<QString>("languageCode");
        for (const char *name : {"de", "en", "fr"})
            QTest::newRow(name) << QString(name);
    }

    void init()
    {
        QFETCH_GLOBAL(QString, languageCode);
        code = languageCode;
        language = std::make_unique<LoadedLanguage>(code);
        QVERIFY(language->isLoaded());
        driver = std::make_unique<DialogDriver>();
        faults.clear();
        QDir::setCurrent(folder.path());
    }

    void cleanup()
    {
        QVERIFY2(driver->verify(), driver->report());
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join("\n")));
        QVERIFY2(missingTexts().isEmpty(), qPrintable(missingTexts().join("\n")));
        language.reset();
    }

    void toolkitSpeaksTheLanguage()
    {
        const QMap<QString, QStringList> texts{
            {"de", {"OK", "Abbrechen", "Ja", "Nein", "Abbrechen"}},
            {"en", {"OK", "Cancel", "Yes", "No", "Abort"}},
            {"fr", {"OK", "Annuler", "Oui", "Non", "Abandonner"}},
        };
        const QDialogButtonBox box(QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Yes |
                                   QDialogButtonBox::No | QDialogButtonBox::Abort);
        QStringList shown;
        for (const auto button : {QDialogButtonBox::Ok, QDialogButtonBox::Cancel, QDialogButtonBox::Yes,
                                  QDialogButtonBox::No, QDialogButtonBox::Abort})
            shown << box.button(button)->text().remove('&');
        QCOMPARE(shown, texts.value(code));
    }

    // French counts nothing as one, German and English count it as many.
    void pluralForms_data()
    {
        QTest::addColumn<int>("count");
        for (const int count : {0, 1, 2, 5})
            QTest::addRow("%d", count) << count;
    }
    void pluralForms()
    {
        struct Forms
        {
            const char *oneLoaded, *manyLoaded, *oneFailed, *manyFailed, *oneSeries, *manySeries;
        };
        const QMap<QString, Forms> texts{
            {"de",
             {"%1 Bild wurde geladen.", "%1 Bilder wurden geladen.",
              "Beim Laden von %1 Bild traten Fehler auf:",
              "Beim Laden der folgenden %1 Bilder traten Fehler auf:", "%1 DICOM-Serie wird geladen.",
              "%1 DICOM-Serien werden geladen."}},
            {"en",
             {"%1 image has been loaded.", "%1 images have been loaded.",
              "Errors occured while attempting to load the following %1 image:",
              "Errors occured while attempting to load the following %1 images:",
              "%1 DICOM series will be loaded.", "%1 DICOM series will be loaded."}},
            {"fr",
             {"%1 image a été chargée.", "%1 images ont été chargées.",
              "Des erreurs se sont produites lors du chargement de %1 image\u00A0:",
              "Des erreurs se sont produites lors du chargement des %1 images suivantes\u00A0:",
              "%1 série DICOM sera chargée.", "%1 séries DICOM seront chargées."}},
        };
        QFETCH(int, count);
        const Forms forms = texts.value(code);
        const bool one = count == 1 || (code == "fr" && count == 0);
        QCOMPARE(ImageManager::tr("%n image(s) have been loaded.", nullptr, count),
                 QString(one ? forms.oneLoaded : forms.manyLoaded).arg(count));
        QCOMPARE(ImageManager::tr(
                     "Errors occured while attempting to load the following %n image(s):", nullptr, count),
                 QString(one ? forms.oneFailed : forms.manyFailed).arg(count));
        QCOMPARE(MainWindow::tr("%1 DICOM series will be loaded.", nullptr, count).arg(count),
                 QString(one ? forms.oneSeries : forms.manySeries).arg(count));
    }

    void mainWindow_atItsFirstSize()
    {
        MainWindowScene scene;
        scene.window.show();
        look(scene.window, "main-window-first");
    }

    void menus()
    {
        MainWindowScene scene;
        scene.window.resize(900, 500);
        scene.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&scene.window));
        const QMenuBar *bar = scene.window.menuBar();
        QSet<QString> titles;
        int x = 10;
        for (const QAction *title : bar->actions()) {
            titles.insert(title->text());
            lookAtMenu(*title->menu(), QPoint(x++, 10));
            for (const QAction *action : title->menu()->actions())
                if (action->menu() != nullptr)
                    lookAtMenu(*action->menu(), QPoint(x++, 10));
        }
        QCOMPARE(titles.size(), 5);
        QCOMPARE(x, 10 + 6);
    }

    void patella_withItsViewerAndMetrics()
    {
        MainWindowScene scene;
        scene.window.resize(1000, 600);
        scene.window.show();
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        expectLook("question-thickness", press(QDialogButtonBox::Yes));
        scene.window.startSegmentation();
        QCOMPARE(scene.manager().imageCount(), 9);
        auto *contours = dynamic_cast<SlicedContoursObject *>(scene.manager().image(1));
        QVERIFY(contours);
        draw(*contours);
        auto *viewer = onlyWindow<QStackedSliceViewer>();
        QVERIFY(viewer);
        viewer->resize(900, 700);
        look(*viewer, "viewer");
        look(scene.window, "main-window-patella");
        for (QTabWidget *tabs : scene.window.findChildren<QTabWidget *>())
            tabs->setCurrentIndex(tabs->count() - 1);
        look(scene.window, "main-window-properties");

        scene.window.newMetricsView(scene.manager().index(1, 0));
        auto *metrics = onlyWindow<SlicedMetricsViewer>();
        QVERIFY(metrics);
        look(*metrics, "metrics-contours");
        delete metrics;
        scene.window.newMetricsView(scene.manager().index(5, 0));
        metrics = onlyWindow<SlicedMetricsViewer>();
        QVERIFY(metrics);
        look(*metrics, "metrics-thickness");
        delete metrics;
    }

    void otherProcedures()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        scene.window.startSegmentationFemurTibia();
        auto *viewer = onlyWindow<QStackedSliceViewer>();
        QVERIFY(viewer);
        look(*viewer, "viewer-femur-tibia");
        delete viewer;
        scene.select({0});
        scene.window.testMeshAlignment();
        viewer = onlyWindow<QStackedSliceViewer>();
        QVERIFY(viewer);
        look(*viewer, "viewer-alignment");
        scene.window.resize(1000, 600);
        scene.window.show();
        look(scene.window, "main-window-procedures");
    }

    void boxesOfTheMenuHelp()
    {
        MainWindowScene scene;
        scene.window.show();
        expectLook("acknowledgement");
        expectLook("about");
        expectLook("about-qt", [this](QDialog *dialog) {
            const QString text = qobject_cast<QMessageBox *>(dialog)->informativeText();
            driver->check("language", text.contains("Qt is a C++ toolkit") ? "en" : code, code);
            dialog->reject();
        });
        scene.window.showAcknowledgement();
        scene.window.about();
        qApp->aboutQt();
        scene.window.showHelp();
    }

    void dialogsOfTheMenuImage()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        TriMeshObject *mesh = scene.addMesh("mesh", {"bone", "surface"});
        scene.add(new SlicedContoursObject("outline"));
        scene.add(new TriMeshDistanceMeasurer(mesh->fragment(0), mesh->fragment(1), "thickness"));
        scene.add(new TriMeshObject("empty", nullptr));
        scene.select({2});
        expectLook("add-fragment");
        scene.window.addFragment();
        scene.select({1});
        expectLook("align");
        scene.window.alignMesh();
        expectLook("thickness", press(QDialogButtonBox::Ok));
        expectLook("thickness-definition");
        scene.window.measureThickness();
        scene.select({1, 3});
        expectLook("color");
        scene.window.colorTriangulation();
        scene.select({0});
        expectLook("rasterize");
        scene.window.rasterizeImage();
        expectLook("mirror");
        scene.window.mirrorImage();
        scene.window.newSliceSelector();
        scene.select({5});
        expectLook("selector-plane");
        scene.window.setSelectorPlane();
        scene.select({4});
        expectLook("empty-mesh");
        scene.window.alignMesh();
        expectLook("empty-meshes");
        scene.window.measureThickness();
    }

    void dialogsOfTheMenuView()
    {
        MainWindowScene scene;
        expectLook("no-image");
        scene.window.newView();
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        expectLook("properties", [this](QDialog *dialog) {
            dialog->findChild<QTabWidget *>()->setCurrentIndex(1);
            look(*dialog, "properties-table");
            dialog->reject();
        });
        scene.window.showImageProperties();
        scene.add(new SlicedContoursObject("outline"));
        scene.select({1});
        expectLook("properties-contours");
        scene.window.showImageProperties();
        scene.select({0});
        expectLook("center-of-mass");
        scene.window.showCenterOfMass();
    }

    void dialogsOfTheMenuFile()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        expectLook("open");
        scene.window.openFile();
        expectLook("save");
        scene.window.saveFile();
        expectLook("open-series");
        scene.window.openDicomSeries();
        expectLook("save-series");
        scene.window.saveDicomSeries();
        expectLook("open-obsolete");
        scene.window.openFileObsolete();
        expectLook("load-segmentation");
        scene.window.loadSegmentation();
        scene.add(new TriMeshObject("empty", nullptr));
        scene.select({1});
        expectLook("no-serializer");
        scene.window.saveFile();
    }

    void loadingAndItsReport()
    {
        MainWindowScene scene;
        const QString path = folder.filePath("broken.mhd");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("no image");
        file.close();
        driver->expect<QFileDialog>("broken", [](QFileDialog *dialog) {
            auto *edit = dialog->findChild<QLineEdit *>("fileNameEdit");
            DialogDriver::type(edit, "broken.mhd");
            edit->completer()->popup()->hide();
            QTest::keyClick(edit, Qt::Key_Return);
        });
        expectLook("load-report");
        scene.window.openFile();
    }

    void savingThatFails()
    {
        FailingSerializer failing;
        MainWindowScene scene;
        scene.manager().addSerializer(&failing);
        scene.add(new TriMeshObject("mesh", nullptr));
        scene.select({0});
        driver->expect<QFileDialog>(
            "name", [](QFileDialog *dialog) { static_cast<QDialog *>(dialog)->done(QDialog::Accepted); });
        expectLook("save-failed");
        scene.window.saveFile();
    }

    void dicomDialogs()
    {
        const QString path = writeDicomFolder();
        QVERIFY(!path.isEmpty());
        MainWindowScene scene;
        driver->expect<QFileDialog>("folder", [path](QFileDialog *dialog) {
            dialog->setDirectory(path);
            static_cast<QDialog *>(dialog)->done(QDialog::Accepted);
        });
        expectLook("series-count");
        scene.window.openDicomSeries();
        expectLook("choose-series", press(QDialogButtonBox::Ok));
        expectLook("choose-echo-time");
        scene.manager().loadDicomSeriesInteractively(path);

        InteractiveDicomUnserializerDialog preview;
        preview.addDirectory(path);
        preview.show();
        look(preview, "dicom-preview-files");
        auto *tabs = preview.findChild<QTabWidget *>();
        for (const int page : {1, 2, 0}) {
            tabs->setCurrentIndex(page);
            look(preview, QString("dicom-preview-%1").arg(page));
        }

        expectLook("slice-distance");
        SliceDistanceDialog({1.5, 1.5, 1.5}).exec();
        expectLook("voxel-size");
        VoxelSizeDialog({512, 512, 56}).exec();
    }
};

QTEST_MAIN(TranslatedWindowsTest)
#include "TranslatedWindowsTest.moc"
