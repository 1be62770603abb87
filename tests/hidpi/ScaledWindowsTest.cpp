// Every window and dialog as it comes up on a screen of 1280 x 1024 pixels: it must fit, with its frame, also
// when a logical pixel is 1.5 or 2 of these (QT_SCALE_FACTOR).
#include "contours/metrics/viewer/SlicedMetricsViewer.h"
#include "demo/xtest/XTestDevice.h"
#include "objects/ImagePropertiesDialog.h"
#include "objects/manager/ImageRelationsGraph.h"
#include "serialization/dialogs/InteractiveDicomUnserializerDialog.h"
#include "serialization/dialogs/ListChoiceDialog.h"
#include "serialization/dialogs/SliceDistanceDialog.h"
#include "serialization/dialogs/VoxelSizeDialog.h"
#include "shell/AcknowledgementDialog.h"
#include "shell/HelpViewer.h"
#include "shell/MainWindow.h"
#include "shell/TevoraSplashScreen.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/PrivateSettings.h"
#include "tests/viewer/ViewerScene.h"

#include <QDir>

#include <array>
#include <functional>
#include <map>
#include <memory>

namespace {

constexpr QSize screenPixels(1280, 1024);

using Maker = std::function<std::unique_ptr<QWidget>(ViewerScene &)>;

template <typename Window, typename... Arguments>
Maker maker(Arguments... arguments)
{
    return [=](ViewerScene &) { return std::make_unique<Window>(arguments...); };
}

const std::map<QString, Maker> &makers()
{
    static const std::map<QString, Maker> all{
        {"acknowledgement", maker<AcknowledgementDialog>(nullptr)},
        {"dicom", maker<InteractiveDicomUnserializerDialog>()},
        {"help", maker<HelpViewer>()},
        {"main", maker<MainWindow>()},
        {"choice",
         maker<ListChoiceDialog>(QString("Choose"), QString("One of these:"), QStringList{"a", "b"})},
        {"distances", maker<SliceDistanceDialog>(dicom::SliceDistances{1.5, 1.6, 1.7})},
        {"splash", maker<TevoraSplashScreen>()},
        {"voxels", maker<VoxelSizeDialog>(std::array{512, 512, 60})},
        {"metrics", [](ViewerScene &scene) { return std::make_unique<SlicedMetricsViewer>(scene.contours); }},
        {"properties",
         [](ViewerScene &scene) { return std::make_unique<ImagePropertiesDialog>(scene.volume, nullptr); }},
        {"relations",
         [](ViewerScene &scene) { return std::make_unique<ImageRelationsGraph>(&scene.manager); }},
        {"viewer", [](ViewerScene &scene) {
             auto viewer = std::make_unique<QStackedSliceViewer>(&scene.manager, nullptr);
             for (ImageObject *object : std::initializer_list<ImageObject *>{scene.volume, scene.contours})
                 viewer->addObject(object);
             return viewer;
         }}};
    return all;
}

} // namespace

class ScaledWindowsTest : public QObject
{
    Q_OBJECT

private slots:
    void window_fitsTheScreen_data()
    {
        QTest::addColumn<QString>("name");
        for (const auto &[name, make] : makers())
            QTest::newRow(qPrintable(name)) << name;
    }
    void window_fitsTheScreen()
    {
        QFETCH(QString, name);
        const PrivateSettings settings;
        const CapturedOutput output;
        ViewerScene scene;
        // Windows delete themselves only when they are closed.
        const std::unique_ptr<QWidget> window = makers().at(name)(scene);
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        QTest::qWait(200);
        XTestDevice device;
        if (const QString folder = qEnvironmentVariable("TEVORA_KEEP_PICTURES"); !folder.isEmpty()) {
            QDir().mkpath(folder);
            device.moveTo({1279, 1023});
            QTest::qWait(200);
            device.screenshot().save(
                QString("%1/%2_%3.png").arg(folder, name).arg(window->devicePixelRatioF()));
        }
        const QSize pixels = (QSizeF(window->size()) * window->devicePixelRatioF()).toSize();
        const auto text = [](const QSize &size) {
            return QString("%1 x %2").arg(size.width()).arg(size.height());
        };
        // Where a logical pixel is a fraction of the screen, sizes are rounded by up to one.
        const QSize rounding = window->devicePixelRatioF() == 1.5 ? QSize(1, 1) : QSize(0, 0);
        QVERIFY2(pixels.boundedTo(screenPixels + rounding) == pixels, qPrintable(text(pixels)));
        const QSize least = window->minimumSizeHint() - rounding;
        QVERIFY2(window->size().expandedTo(least) == window->size(),
                 qPrintable(text(window->size()) + " instead of " + text(least)));
    }
};

int main(int argc, char **argv)
{
    QApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    ScaledWindowsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "ScaledWindowsTest.moc"
