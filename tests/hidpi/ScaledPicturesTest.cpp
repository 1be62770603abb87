// The same scene drawn with 1, 1.5 and 2 pixels of the screen for a logical pixel: what is given in pixels of
// view space must cover the same part of the window in all. The number is fixed when a program starts, so
// this one runs itself anew for each (option --draw FOLDER).
#include "meshes/BitPlaneRasterizerObject.h"
#include "tests/hidpi/DrawnScene.h"
#include "tests/hidpi/PictureComparison.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/RasterRun.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <functional>
#include <map>

namespace {

// How far a finer picture may lie from the plain one: levels per channel that count as equal, percent of the
// drawn pixels that may differ by more, and the light of all pixels, as a multiple.
struct Tolerance
{
    int levels = 32;
    double differentPercent = 1.0;
    double leastLight = 0.97;
    double mostLight = 1.03;
};

// Lines without smoothing are whole pixels wide: at 1.5 it is 2 instead of 1.5 of them for the thinnest.
constexpr Tolerance wholeWidths{48, 10.0, 0.97, 4.0 / 3.0 + 0.03};
// Dashes and hatching are whole pixels long: at 1.5 as dense, but not at the same places.
constexpr Tolerance densityOnly{48, 100.0, 0.97, 4.0 / 3.0 + 0.03};

struct Subject
{
    std::function<void(DrawnScene &)> prepare;
    Tolerance atOneAndAHalf{};
    Tolerance atTwo{};
};

void zoom(DrawnScene &scene, double factor, double dx, double dy)
{
    scene.view->scaleTarget(factor);
    scene.view->translateTarget(dx, dy);
    QVERIFY(QTest::qWaitFor([&] { return !scene.view->state().animatingView; }));
}

void pointAtMiddle(DrawnScene &scene)
{
    scene.sendMouse(QEvent::MouseMove, {160, 160}, Qt::NoButton, Qt::NoButton);
}

void showAllWith(DrawnScene &scene, int scope)
{
    for (const auto row :
         {DrawnScene::Volume, DrawnScene::Contours, DrawnScene::Ribbons, DrawnScene::Samples})
        scene.display(row, scope);
    if (scope == ScopePoint)
        scene.display(DrawnScene::Vectors0, scope);
    scene.view->rotate(-0.9, 0.3, 0.0, true, true);
    scene.view->setWorkingZ(3.0f);
    pointAtMiddle(scene);
}

void trace(DrawnScene &scene)
{
    scene.display(DrawnScene::Contours, ScopeSlice);
    scene.view->setInteractBaseModeTrace();
    scene.sendMouse(QEvent::MouseButtonPress, {60, 250}, Qt::RightButton, Qt::RightButton);
    scene.sendMouse(QEvent::MouseMove, {120, 270}, Qt::NoButton, Qt::RightButton);
    scene.sendMouse(QEvent::MouseMove, {260, 200}, Qt::NoButton, Qt::RightButton);
}

void stretchRubberBand(DrawnScene &scene)
{
    scene.view->setInteractBaseModeZoom();
    scene.sendMouse(QEvent::MouseButtonPress, {60, 80}, Qt::LeftButton, Qt::LeftButton);
    scene.sendMouse(QEvent::MouseMove, {260, 240}, Qt::NoButton, Qt::LeftButton);
}

std::map<QString, Subject> makeSubjects()
{
    std::map<QString, Subject> all;
    for (int scope = ScopeHidden; scope <= ScopeVolumeBefore; ++scope)
        all[QString("scope_%1").arg(scope)] = {[scope](DrawnScene &scene) { showAllWith(scene, scope); }};
    all["scope_1"].atOneAndAHalf = densityOnly;
    all["slice"] = {[](DrawnScene &scene) { scene.display(DrawnScene::Volume, ScopeSlice); }};
    all["slice_selector"] = {[](DrawnScene &scene) { scene.display(DrawnScene::Sagittal, ScopeVolume); }};
    all["oblique_hatched"] = {[](DrawnScene &scene) {
                                  scene.display(DrawnScene::Volume, ScopeSlice);
                                  scene.view->setWorkingPlane({0, -1, 4, 16});
                              },
                              densityOnly};
    all["contours"] = {[](DrawnScene &scene) {
        scene.display(DrawnScene::Contours, ScopeSlice);
        scene.composition.setData(scene.composition.index(0, ImageComposition::OpacityColumn,
                                                          scene.composition.index(DrawnScene::Contours, 0)),
                                  50);
    }};
    all["handles"] = {[](DrawnScene &scene) {
        scene.display(DrawnScene::Contours, ScopeSlice);
        zoom(scene, 6.0, -192.0, 720.0); // the left end of the open line
    }};
    all["halo"] = {trace};
    all["edge_marks"] = {[](DrawnScene &scene) {
        scene.view->setInteractBaseModeTrace();
        pointAtMiddle(scene);
        zoom(scene, 3.0, 0.0, 0.0);
    }};
    all["rubber_band"] = {stretchRubberBand, densityOnly};
    all["cube"] = {[](DrawnScene &scene) { scene.view->enterMode(InteractMode::Perspective); }};
    all["glyph"] = {[](DrawnScene &scene) {
                        scene.display(DrawnScene::Vectors0, ScopePoint);
                        scene.view->rotate(-0.6, 0.2, 0.0, true, true);
                        pointAtMiddle(scene);
                    },
                    densityOnly};
    all["samples"] = {[](DrawnScene &scene) {
                          scene.display(DrawnScene::Samples, ScopeVolume);
                          zoom(scene, 8.0, 640.0, 500.0);
                      },
                      wholeWidths};
    all["colouring_hatched"] = {[](DrawnScene &scene) { scene.display(DrawnScene::Coloring, ScopeVolume); },
                                densityOnly};
    all["ribbons"] = {[](DrawnScene &scene) { scene.display(DrawnScene::Ribbons, ScopeVolume); }};
    all["section"] = {[](DrawnScene &scene) {
                          scene.display(DrawnScene::Ribbons, ScopeSlice);
                          scene.view->setWorkingPlane({0, -1, 4, 16});
                      },
                      wholeWidths};
    all["perspective"] = {[](DrawnScene &scene) {
        scene.display(DrawnScene::Volume, ScopeVolume);
        scene.display(DrawnScene::Contours, ScopeVolume);
        scene.view->setPerspective(0.3f, 0.2f, 0.0005f);
    }};
    return all;
}

const std::map<QString, Subject> &subjects()
{
    static const std::map<QString, Subject> all = makeSubjects();
    return all;
}

// A raster of the contours of the scene, byte by byte.
bool writeRaster(const QString &path)
{
    DrawnScene scene;
    BitPlaneRasterizerObject raster(&scene.contours, 80, 80, 5, 0.5f, 0.5f, 2.0f);
    raster.setDefaultBitCode(-1);
    raster.setBitCode(scene.contour, 127);
    RasterRuns runs(raster);
    QFile file(path);
    if (!runs.run() || !file.open(QIODevice::WriteOnly))
        return false;
    const auto bytes = rasterBytes(raster);
    const auto size = static_cast<qint64>(bytes.size());
    return file.write(reinterpret_cast<const char *>(bytes.data()), size) == size;
}

// The run for one number of pixels: all pictures, and the raster.
int draw(const QString &folder)
{
    const CapturedOutput output;
    for (const auto &[name, subject] : subjects()) {
        DrawnScene scene;
        if (!scene.show())
            return 1;
        subject.prepare(scene);
        if (!scene.picture().save(QDir(folder).filePath(name + ".png")))
            return 2;
    }
    return writeRaster(QDir(folder).filePath("raster.bin")) ? 0 : 3;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class ScaledPicturesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void pictures_haveThePixelsOfTheScreen();
    void picture_coversTheSamePartOfTheWindow_data();
    void picture_coversTheSamePartOfTheWindow();
    void raster_isTheSameWhateverTheScreen();
    void comparison_seesLinesOfHalfTheWidth();

private:
    QString path(const QString &factor, const QString &name) const
    {
        return folder.filePath(factor + '/' + name);
    }
    QImage picture(const QString &factor, const QString &name) const
    {
        return opaquePicture(QImage(path(factor, name + ".png")));
    }

    QTemporaryDir folder;
    const QStringList factors{"1", "1.5", "2"};
};

void ScaledPicturesTest::initTestCase()
{
    QVERIFY(folder.isValid());
    for (const QString &factor : factors) {
        QVERIFY(QDir(folder.path()).mkpath(factor));
        QProcess run;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_SCALE_FACTOR", factor);
        run.setProcessEnvironment(environment);
        run.setProcessChannelMode(QProcess::ForwardedChannels);
        run.start(QCoreApplication::applicationFilePath(), {"--draw", folder.filePath(factor)});
        QVERIFY(run.waitForFinished(120000));
        QCOMPARE(run.exitStatus(), QProcess::NormalExit);
        QCOMPARE(run.exitCode(), 0);
    }
    if (const QString kept = qEnvironmentVariable("TEVORA_KEEP_PICTURES"); !kept.isEmpty()) {
        for (const QString &factor : factors) {
            QDir().mkpath(kept + '/' + factor);
            for (const auto &[name, subject] : subjects())
                QFile::copy(path(factor, name + ".png"), kept + '/' + factor + '/' + name + ".png");
        }
    }
}

void ScaledPicturesTest::pictures_haveThePixelsOfTheScreen()
{
    for (const auto &[name, subject] : subjects()) {
        QCOMPARE(picture("1", name).size(), QSize(320, 320));
        QCOMPARE(picture("1.5", name).size(), QSize(480, 480));
        QCOMPARE(picture("2", name).size(), QSize(640, 640));
    }
}

void ScaledPicturesTest::picture_coversTheSamePartOfTheWindow_data()
{
    QTest::addColumn<QString>("factor");
    QTest::addColumn<QString>("name");
    for (const char *factor : {"1.5", "2"})
        for (const auto &[name, subject] : subjects())
            QTest::addRow("%s at %s", qPrintable(name), factor) << QString(factor) << name;
}

void ScaledPicturesTest::picture_coversTheSamePartOfTheWindow()
{
    QFETCH(QString, factor);
    QFETCH(QString, name);
    const Subject &subject = subjects().at(name);
    const Tolerance &tolerance = factor == "2" ? subject.atTwo : subject.atOneAndAHalf;
    const QImage plain = picture("1", name), finer = picture(factor, name);
    const Agreement agreement = agreementOf(plain, finer, tolerance.levels);
    qInfo("%s", qPrintable(agreement.text()));
    const bool isEmpty = name == "scope_0" || name == "scope_2"; // nothing is drawn for these
    QCOMPARE(agreement.drawn == 0, isEmpty);
    if (isEmpty)
        return;
    const bool agrees = 100.0 * agreement.share() <= tolerance.differentPercent &&
                        agreement.light >= tolerance.leastLight && agreement.light <= tolerance.mostLight;
    if (!agrees) {
        const QString written = QDir(QCoreApplication::applicationDirPath() + "/golden")
                                    .filePath(QString("scaled_%1_%2.png").arg(name, factor));
        QDir().mkpath(QFileInfo(written).path());
        differencePicture(plain, areaMeans(finer, plain.size())).save(written);
        QFAIL(qPrintable(agreement.text() + ", see " + written));
    }
}

void ScaledPicturesTest::raster_isTheSameWhateverTheScreen()
{
    const QByteArray plain = contentOf(path("1", "raster.bin"));
    QCOMPARE(plain.size(), 80 * 80 * 5);
    // The rectangle of 11 x 8 mm on the first slice is 22 x 16 voxels; lines lie on some of its border.
    QVERIFY(plain.count('\x7f') > 20 * 14);
    QCOMPARE(contentOf(path("1.5", "raster.bin")), plain);
    QCOMPARE(contentOf(path("2", "raster.bin")), plain);
}

// A line of 2 pixels in a picture of 1 and of 2 pixels per logical one, and one that stayed thin.
void ScaledPicturesTest::comparison_seesLinesOfHalfTheWidth()
{
    const auto lined = [](int size, int from, int width) {
        QImage image(size, size, QImage::Format_RGB32);
        image.fill(Qt::black);
        for (int y = 0; y < size; ++y)
            for (int x = from; x < from + width; ++x)
                image.setPixel(x, y, qRgb(200, 100, 50));
        return image;
    };
    const QImage plain = lined(100, 40, 2);
    const Agreement same = agreementOf(plain, lined(200, 80, 4), 32);
    QCOMPARE(same.different, 0);
    QCOMPARE(same.light, 1.0);
    const Agreement thin = agreementOf(plain, lined(200, 81, 2), 32);
    QVERIFY(thin.share() > 0.3);
    QCOMPARE(thin.light, 0.5);
}

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == "--draw")
        return draw(arguments[2]);
    ScaledPicturesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "ScaledPicturesTest.moc"
