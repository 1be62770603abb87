#include "objects/MervImageObject.h"
#include "objects/manager/ImageManager.h"
#include "serialization/dialogs/FileDroppableQListView.h"
#include "shell/HelpViewer.h"
#include "shell/MainWindow.h"
#include "shell/help/Help.h"
#include "tests/helppages/HelpPage.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/TestVolume.h"
#include "view/QStackedSliceView.h"
#include "view/QStackedSliceViewer.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QKeySequence>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QSet>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>
#include <QTextOption>
#include <QTextStream>

// The built pages in the real help window, and what they say about keys in the real windows.
class HelpWindowTest : public QObject
{
    Q_OBJECT

    static constexpr int strip = 240, wide = 520;

    static QString link() { return QCoreApplication::applicationDirPath() + "/help"; }
    static bool show(const QString &language)
    {
        QFile::remove(link());
        return QFile::link(HelpPages::folder(language), link());
    }

    static QString pageText(const QString &topic)
    {
        QFile file(link() + "/" + topic + ".html");
        return file.open(QIODevice::ReadOnly) ? QTextStream(&file).readAll() : QString();
    }

    static QString topicShown()
    {
        for (const QString &topic : HelpPages::topics)
            if (Help::instance()->currentText() == pageText(topic))
                return topic;
        return Help::instance()->currentText();
    }

    static QStringList picturesIn(const QTextDocument &document)
    {
        QStringList names;
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
            for (auto part = block.begin(); !part.atEnd(); ++part)
                if (part.fragment().charFormat().isImageFormat())
                    names << part.fragment().charFormat().toImageFormat().name();
        return names;
    }

    // For a look at the pages: a folder named by TEVORA_HELP_PICTURES gets a picture of each.
    static void keepPicture(QWidget &window, const QString &name)
    {
        const QString folder = qEnvironmentVariable("TEVORA_HELP_PICTURES");
        if (!folder.isEmpty())
            QVERIFY(window.grab().save(folder + "/" + name + ".png"));
    }

    static QKeyCombination combination(const QString &key) { return QKeySequence(key)[0]; }

    // Whether the view takes the key, which is then released again.
    static bool takes(QStackedSliceView &view, const QString &key)
    {
        const QKeyCombination keys = combination(key);
        QKeyEvent press(QEvent::KeyPress, keys.key(), keys.keyboardModifiers());
        press.ignore();
        QCoreApplication::sendEvent(&view, &press);
        QKeyEvent release(QEvent::KeyRelease, keys.key(), keys.keyboardModifiers());
        QCoreApplication::sendEvent(&view, &release);
        return press.isAccepted();
    }

    static bool isModifier(const QString &key) { return QStringList({"Shift", "Ctrl", "Alt"}).contains(key); }

    static MervImageObject *smallVolume()
    {
        return new MervImageObject(
            newVolume(MERV::TypeUShort, {8, 8, 3}, [](int x, int, int) { return x; }).release(),
            "/small.mhd");
    }

private slots:
    static void initMain() { static const PrivateSettings settings; }
    void cleanup() { QFile::remove(link()); }

    void pageFitsTheStrip_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("topic");
        for (const QString &language : HelpPages::languages)
            for (const QString &topic : HelpPages::topics)
                QTest::addRow("%s %s", qPrintable(language), qPrintable(topic)) << language << topic;
    }
    void pageFitsTheStrip()
    {
        QFETCH(QString, language);
        QFETCH(QString, topic);
        QVERIFY(show(language));
        HelpViewer viewer;
        auto *page = viewer.findChild<QTextEdit *>();
        viewer.show();
        QVERIFY(QTest::qWaitForWindowExposed(&viewer));
        Help::instance()->showTopic(topic);
        viewer.resize(wide, 900);
        QTRY_COMPARE(viewer.width(), wide);
        keepPicture(viewer, language + "-" + topic + "-wide");
        // So low that the page needs its vertical scroll bar.
        viewer.resize(strip, 400);
        QTRY_COMPARE(viewer.size(), QSize(strip, 400));
        QTRY_VERIFY(page->verticalScrollBar()->maximum() > 0);
        QCOMPARE(page->horizontalScrollBar()->maximum(), 0);
        QVERIFY(page->document()->size().width() <= page->viewport()->width());
        // No word is broken for that.
        page->setWordWrapMode(QTextOption::WordWrap);
        QCOMPARE(page->horizontalScrollBar()->maximum(), 0);
        page->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        if (qEnvironmentVariableIsSet("TEVORA_HELP_PICTURES")) {
            viewer.resize(strip, 980);
            QTRY_COMPARE(viewer.height(), 980);
            keepPicture(viewer, language + "-" + topic + "-strip");
            page->verticalScrollBar()->setValue(page->verticalScrollBar()->maximum());
            keepPicture(viewer, language + "-" + topic + "-strip2");
        }
    }

    void picturesLoadFromBesideThePage_data() { pageFitsTheStrip_data(); }
    void picturesLoadFromBesideThePage()
    {
        QFETCH(QString, language);
        QFETCH(QString, topic);
        QVERIFY(show(language));
        Help::instance()->showTopic("no_such_topic");
        HelpViewer viewer;
        const QTextDocument &document = *viewer.findChild<QTextEdit *>()->document();
        for (int time = 0; time < 2; ++time) { // also after another text
            Help::instance()->showTopic(topic);
            const QStringList names = picturesIn(document);
            QCOMPARE(names, HelpPages::read(language, topic).pictures);
            for (const QString &name : names) {
                const QVariant picture = document.resource(QTextDocument::ImageResource, QUrl(name));
                QVERIFY2(!picture.value<QImage>().isNull() || !picture.value<QPixmap>().isNull(),
                         qPrintable(name));
            }
            Help::instance()->showTopic("no_such_topic");
        }
    }

    void everythingThatAsksForATopicHasItsPage()
    {
        QVERIFY(show("en"));
        QSet<QString> asked;
        MainWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        for (QAction *entry : window.menuBar()->actions()) {
            emit entry->menu()->aboutToShow();
            asked.insert(topicShown());
        }
        window.findChild<FileDroppableQListView *>()->setFocus();
        asked.insert(topicShown());
        QStackedSliceView view(nullptr, nullptr);
        asked.insert(topicShown());
        for (const char *key : {"P", "Z", "W", "T", "G", "E", "L"}) {
            QTest::keyPress(&view, static_cast<Qt::Key>(combination(key).key()));
            asked.insert(topicShown());
            QTest::keyRelease(&view, static_cast<Qt::Key>(combination(key).key()));
        }
        QCOMPARE(asked, QSet<QString>(HelpPages::topics.begin(), HelpPages::topics.end()));
    }

    // The first two keys of a mode's page enter it: while they are held, and from then on.
    void keysOfAModeEnterIt_data()
    {
        QTest::addColumn<QString>("topic");
        for (const QString &topic : HelpPages::topics.filter("stacked_slice_view_"))
            QTest::newRow(qPrintable(topic)) << topic;
    }
    void keysOfAModeEnterIt()
    {
        QFETCH(QString, topic);
        QVERIFY(show("en"));
        const bool isMove = topic.endsWith("_move"), isErase = topic.endsWith("_erase");
        const QStringList keys = HelpPages::read("en", topic).keys;
        const auto found = std::find_if(keys.begin(), keys.end(), [&](const QString &key) {
            return !isModifier(key) && keys.contains("Shift+" + key);
        });
        QVERIFY(found != keys.end());
        const QString &key = *found;

        QStackedSliceView view(nullptr, nullptr);
        const QString base = isErase ? "stacked_slice_view_guess" : "stacked_slice_view_erase";
        isErase ? view.setInteractBaseModeGuess() : view.setInteractBaseModeErase();
        QCOMPARE(topicShown(), base);
        const auto qtKey = combination(key).key();
        QTest::keyPress(&view, qtKey);
        QCOMPARE(topicShown(), topic);
        QTest::keyRelease(&view, qtKey);
        QCOMPARE(topicShown(), base);
        QTest::keyClick(&view, qtKey, Qt::ShiftModifier);
        QCOMPARE(topicShown(), topic);
        QCOMPARE(isMove, key == "Space");
    }

    // Every key on the pages of the modes is one that the view takes; Escape only in full screen.
    void keysOfTheModesAreTaken()
    {
        for (const QString &topic : HelpPages::topics.filter("stacked_slice_view_")) {
            for (const QString &key : HelpPages::read("en", topic).keys) {
                if (isModifier(key) || key == "Esc" || key == "F11")
                    continue;
                QStackedSliceView view(nullptr, nullptr);
                QVERIFY2(takes(view, key), qPrintable(topic + ": " + key));
            }
        }
        QStackedSliceView view(nullptr, nullptr);
        view.show();
        QVERIFY(QTest::qWaitForWindowActive(&view));
        QVERIFY(!takes(view, "Esc"));
        QVERIFY(takes(view, "F11"));
        QVERIFY(takes(view, "Esc"));
        QVERIFY(!takes(view, "X")); // the test can tell
    }

    void keysOfTheMainWindowAreItsShortcuts()
    {
        const MainWindow window;
        QStringList shortcuts;
        for (const QAction *action : window.findChildren<QAction *>())
            for (const QKeySequence &shortcut : action->shortcuts())
                shortcuts << shortcut.toString(QKeySequence::PortableText);
        for (const QString &topic : HelpPages::topics) {
            if (topic.startsWith("stacked_slice_view_"))
                continue;
            for (const QString &key : HelpPages::read("en", topic).keys)
                if (key.startsWith("Ctrl+"))
                    QVERIFY2(shortcuts.contains(key), qPrintable(topic + ": " + key));
        }
        const QStringList listKeys = HelpPages::read("en", "main_window_image_list").keys;
        for (const char *key : {"Ctrl+O", "Ctrl+S", "Ctrl+C", "F2", "Enter"})
            QVERIFY2(listKeys.contains(key), key);
    }

    void keysOfTheListDoWhatThePageSays()
    {
        MainWindow window;
        window.imageManager()->addImage(smallVolume());
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto *list = window.findChild<FileDroppableQListView *>();
        list->setFocus();
        list->setCurrentIndex(list->model()->index(0, 0));
        QTest::keyClick(list, Qt::Key_F2);
        auto *name = list->findChild<QLineEdit *>();
        QVERIFY(name != nullptr);
        QTest::keyClick(name, Qt::Key_Escape);
        QTRY_COMPARE(list->findChild<QLineEdit *>(), nullptr);
        QTest::keyClick(list, Qt::Key_Enter);
        QCOMPARE(window.findChildren<QStackedSliceViewer *>().size(), 1);
    }
};

QTEST_MAIN(HelpWindowTest)
#include "HelpWindowTest.moc"
