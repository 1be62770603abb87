#include "shell/Startup.h"

#include "objects/manager/ImageManager.h"
#include "platform/FileNames.h"
#include "recovery/RecoveryFolder.h"
#include "recovery/RecoveryJournal.h"
#include "shell/Language.h"
#include "shell/MainWindow.h"
#include "shell/TevoraSplashScreen.h"

#include <QApplication>
#include <QLocale>
#include <QSurfaceFormat>
#include <QTime>
#include <QTranslator>

#include <clocale>
#include <csignal>
#include <iostream>
#include <memory>

namespace {

constexpr int pauseMilliseconds = 300; // long enough to read each message of the splash screen

// The translators live to the end of the process; a missing file leaves its translator empty. The toolkit's
// is installed first, so that the program's own texts are searched first.
void installLanguage(const Language &language)
{
    static auto *const application = new QTranslator;
    static auto *const toolkit = new QTranslator;
    const QString folder = QCoreApplication::applicationDirPath();
    const bool loaded[] = {application->load(language.applicationFile, folder),
                           toolkit->load(language.toolkitFile, folder)};
    static_cast<void>(loaded);
    QCoreApplication::installTranslator(toolkit);
    QCoreApplication::installTranslator(application);
}

// The splash speaks German until the translations are installed, whatever the language chosen.
std::unique_ptr<MainWindow> startUp(TevoraSplashScreen &splash)
{
    splash.show();
    QCoreApplication::processEvents();
    //: Shown before the translations are there: always in German.
    splash.setProgress(0.0f, QCoreApplication::translate("main", "Lade ..."));
    sleepWithEvents(pauseMilliseconds);
    //: Shown before the translations are there: always in German.
    splash.setProgress(0.1f, QCoreApplication::translate("main", "Lade Sprachunterstützung ..."));
    sleepWithEvents(pauseMilliseconds);
    const Language language = chooseLanguage(QCoreApplication::arguments(), QLocale::system().name());
    splash.setProgress(0.2f, language.splashText);
    installLanguage(language);
    QCoreApplication::processEvents();
    sleepWithEvents(pauseMilliseconds);
    splash.setProgress(
        0.4f, QCoreApplication::translate("main", "Preparing user interface, and loading images ..."));
    auto window = std::make_unique<MainWindow>();
    window->show();
    sleepWithEvents(pauseMilliseconds);
    splash.setProgress(1.0f, QCoreApplication::translate("main", "... finished."));
    splash.finish(window.get());
    return window;
}

// Names what an unclean end left behind, and keeps what is drawn from now on.
std::unique_ptr<RecoveryJournal> keepJournal(ImageManager &manager)
{
    const RecoveryFolder folder(recoveryFolderPath());
    for (const QString &line : folder.takeUncleanEnds())
        std::cout << qPrintable(line) << std::endl;
    folder.removeOutdated(QDateTime::currentDateTime());
    return std::make_unique<RecoveryJournal>(manager, folder.newSessionPath());
}

} // namespace

void sleepWithEvents(int milliseconds)
{
    const QTime deadline = QTime::currentTime().addMSecs(milliseconds);
    while (QTime::currentTime() < deadline)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
}

void prepareApplication()
{
    // A file that may not grow any more is an error of writing, not the program's end.
    std::signal(SIGXFSZ, SIG_IGN);
    // One OpenGL context family: a view keeps its context when it goes to full screen and back.
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    // Ties the windows to the installed desktop entry where the window's class is not looked at.
    QGuiApplication::setDesktopFileName("org.example.tevora");
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setVersion(2, 1);
    format.setDepthBufferSize(24);
    format.setAlphaBufferSize(8);
    format.setSwapBehavior(QSurfaceFormat::DoubleBuffer);
    QSurfaceFormat::setDefaultFormat(format);
}

int runApplication(int argc, char **argv, const std::function<void()> &beforeLoop)
{
    QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C"); // numbers in files never follow the locale
    QCoreApplication::setOrganizationName("MERV");
    QCoreApplication::setOrganizationDomain("tevora.example.org");
    QCoreApplication::setApplicationName("Tevora");

    std::unique_ptr<MainWindow> window;
    {
        TevoraSplashScreen splash;
        window = startUp(splash);
    }
    auto journal = keepJournal(*window->imageManager());
    if (beforeLoop)
        beforeLoop();
    QApplication::exec();
    journal.reset();
    window->imageManager()->stopWorkers();
    window.reset();
    return 0;
}
