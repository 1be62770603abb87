#include "tests/support/ProgramOnScreen.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

// What a user of a language sees and presses: the keys of the menu of files, of its second and its last
// entry, and the titles of two windows, one of a menu without marked keys.
struct Words
{
    const char *fileKey;
    const char *seriesKey;
    const char *exitKey;
    QString seriesTitle;
    QString aboutTitle;
};

const Words german = {"d", "d", "b", "Wählen Sie ein Verzeichnis mit der Serie.", "Über Tevora"};
const Words english = {"f", "d", "x", "Select a directory containing the series.", "About Tevora"};
const Words french = {"f", "d", "q", "Choisissez un répertoire contenant la série.", "À propos de Tevora"};

} // namespace

Q_DECLARE_METATYPE(const Words *)

// Starts the built program with the translations beside it, with a switch or in a user's locale, and works
// its menus through the X server.
class TranslatedProgramTest : public QObject
{
    Q_OBJECT

    static void checkMenus(ProgramOnScreen &program, const Words &words)
    {
        program.altKey(words.fileKey);
        program.tapKey(words.seriesKey);
        QVERIFY2(ProgramOnScreen::waitForWindow(words.seriesTitle), qPrintable(words.seriesTitle));
        program.tapKey("Escape");
        QTRY_VERIFY(!ProgramOnScreen::windowIsThere(words.seriesTitle));
        QTest::qWait(300);
        // The menu of help is the last one, left of the first, and its last but one entry tells of the
        // program.
        program.altKey(words.fileKey);
        for (const char *key : {"Left", "Up", "Up", "Return"})
            program.tapKey(key);
        QVERIFY2(ProgramOnScreen::waitForWindow(words.aboutTitle), qPrintable(words.aboutTitle));
        program.tapKey("Return");
        QTRY_VERIFY(!ProgramOnScreen::windowIsThere(words.aboutTitle));
        QTest::qWait(300);
        program.altKey(words.fileKey);
        program.tapKey(words.exitKey);
        QVERIFY(program.endsWell());
    }

private slots:
    void menusInTheLanguage_data()
    {
        QTest::addColumn<QString>("variable"); // and its value, which say what the user's system speaks
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<const Words *>("words");
        const QStringList none;
        QTest::newRow("--deutsch") << "LANG"
                                   << "" << QStringList{"--deutsch"} << &german;
        QTest::newRow("--english") << "LANG"
                                   << "" << QStringList{"--english"} << &english;
        QTest::newRow("--francais") << "LANG"
                                    << "" << QStringList{"--francais"} << &french;
        QTest::newRow("--français") << "LANG"
                                    << "" << QStringList{"--français"} << &french;
        QTest::newRow("German in all") << "LC_ALL"
                                       << "de_DE.UTF-8" << none << &german;
        QTest::newRow("Austrian") << "LANG"
                                  << "de_AT.UTF-8" << none << &german;
        QTest::newRow("Canadian French") << "LANG"
                                         << "fr_CA.UTF-8" << none << &french;
        QTest::newRow("Italian") << "LANG"
                                 << "it_IT.UTF-8" << none << &english;
        QTest::newRow("German, but a switch") << "LC_ALL"
                                              << "de_DE.UTF-8" << QStringList{"--english"} << &english;
    }
    void menusInTheLanguage()
    {
        QFETCH(QString, variable);
        QFETCH(QString, locale);
        QFETCH(QStringList, arguments);
        QFETCH(const Words *, words);
        const QTemporaryDir home;
        ProgramOnScreen program(home.path());
        program.setVariable(variable, locale);
        QVERIFY(program.start(TEVORA_EXECUTABLE, arguments, "Tevora"));
        checkMenus(program, *words);
    }

    // Nothing but the program in its folder: the texts are those of the sources.
    void withoutTranslations_theSwitchIsTakenSilently()
    {
        const QTemporaryDir home, folder;
        const QString copy = folder.filePath("tevora");
        QVERIFY(QFile::copy(TEVORA_EXECUTABLE, copy));
        ProgramOnScreen program(home.path());
        program.setVariable("LANG", "de_DE.UTF-8");
        QVERIFY(program.start(copy, {"--deutsch"}, "Tevora"));
        checkMenus(program, english);
    }
};

QTEST_MAIN(TranslatedProgramTest)
#include "TranslatedProgramTest.moc"
