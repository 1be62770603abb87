#include "shell/Startup.h"

#include "meshes/BitPlaneRasterizerObject.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshFragment.h"
#include "meshes/TriMeshObject.h"
#include "objects/manager/ImageManager.h"
#include "shell/HelpViewer.h"
#include "shell/MainWindow.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/PrivateSettings.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSettings>
#include <QTest>
#include <QTimer>

#include <atomic>

namespace {

constexpr int cellsPerSide = 150; // of the base
constexpr int tiltedFaces = 40000;
constexpr int slices = 2000; // pictures of a tenth of a second each

// A flat grid of faces in z = 0, from (0, 0) on with cells of 1 mm.
void addGrid(TriMeshFragment *fragment)
{
    std::vector<MERV::BRep::TriFace> faces;
    for (int y = 0; y < cellsPerSide; ++y) {
        for (int x = 0; x < cellsPerSide; ++x) {
            const MERV::BRep::Point a(x, y, 0), b(x + 1, y, 0), c(x, y + 1, 0), d(x + 1, y + 1, 0);
            faces.emplace_back(a, b, c);
            faces.emplace_back(b, d, c);
        }
    }
    fragment->setFaces(std::move(faces));
}

// Faces that all cut the grid through, each at an angle of its own: none is out of the way of any vertex, so
// that a measurement has to look at each of them for each vertex and takes minutes.
void addTiltedFaces(TriMeshFragment *fragment)
{
    std::vector<MERV::BRep::TriFace> faces;
    for (int i = 0; i < tiltedFaces; ++i) {
        const double height = 500 + i;
        faces.emplace_back(MERV::BRep::Point(-1000, -1000, -height), MERV::BRep::Point(1000, -1000, height),
                           MERV::BRep::Point(0, 3000, height));
    }
    fragment->setFaces(std::move(faces));
}

// An object whose drawing takes long.
class SlowObject : public ImageObject
{
public:
    using ImageObject::ImageObject;
    using ImageObject::renderBox;
    void renderBox(GraphicsObjectRenderAdvisor *, float, float, float, float, float, float) override
    {
        ++drawn;
        QThread::msleep(100);
    }
    std::atomic<int> drawn = 0;
};

} // namespace

// Ends the program in the middle of a measurement and a rasterization. Both would take minutes to finish, and
// the test's time is limited. Images outlive the program: nobody deletes them.
class ProgramEndTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private:
    QElapsedTimer ending;
    TriMeshObject *mesh = nullptr;
    TriMeshDistanceMeasurer *measurer = nullptr;
    SlowObject *slow = nullptr;
    BitPlaneRasterizerObject *rasterizer = nullptr;

    void startRuns()
    {
        MainWindow *window = nullptr;
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (auto *found = qobject_cast<MainWindow *>(widget))
                window = found;
        if (window == nullptr)
            QFAIL("there is no main window");
        ImageManager &manager = *window->imageManager();
        mesh = new TriMeshObject("mesh", nullptr);
        addGrid(mesh->addFragment("base"));
        addTiltedFaces(mesh->addFragment("remote"));
        measurer = new TriMeshDistanceMeasurer(mesh->fragment(0), mesh->fragment(1), "distance");
        slow = new SlowObject("slow", nullptr);
        rasterizer = new BitPlaneRasterizerObject(slow, 8, 8, slices, 1.0f, 1.0f, 1.0f);
        rasterizer->invalidateRasterization();
        for (ImageObject *object : std::initializer_list<ImageObject *>{mesh, measurer, slow, rasterizer})
            manager.addImage(object);
        window->showHelp();
        QTimer::singleShot(300, window, [this, window] {
            ending.start();
            window->close();
        });
    }

private slots:
    void endingInTheMiddleOfRuns_stopsThemUnpublished()
    {
        int argc = 1;
        char name[] = "tevora";
        char *argv[] = {name, nullptr};
        const CapturedOutput output;
        prepareApplication();
        QCOMPARE(runApplication(argc, argv, [this] { startRuns(); }), 0);
        qInfo("ended within %lld ms", static_cast<long long>(ending.elapsed()));
        QVERIFY(!measurer->isRunning());
        QVERIFY(!rasterizer->isRunning());
        // Both had begun, neither published.
        QCOMPARE(output.standardOutput().count("Measuring distance ..."), 1);
        QVERIFY(!output.standardOutput().contains("... finished measuring distance"));
        QVERIFY(measurer->samples()->empty());
        QVERIFY(slow->drawn > 0 && slow->drawn < slices);
        QVERIFY(!output.standardOutput().contains("Rasterization finished"));
        // The open help window wrote its settings.
        QVERIFY(QSettings().contains("HelpWindow/Size"));
    }
};

QTEST_APPLESS_MAIN(ProgramEndTest)
#include "ProgramEndTest.moc"
