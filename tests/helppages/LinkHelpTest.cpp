#include "shell/Language.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

// The link follows the language that the program takes: asked of the program's own choice, in a process that
// has the environment in question.
class LinkHelpTest : public QObject
{
    Q_OBJECT

    static QProcessEnvironment environment(const QStringList &settings)
    {
        QProcessEnvironment values = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"LC_ALL", "LC_MESSAGES", "LC_NUMERIC", "LANG", "LANGUAGE"})
            values.remove(name);
        for (const QString &setting : settings)
            values.insert(setting.section('=', 0, 0), setting.section('=', 1));
        return values;
    }

    static bool run(const QString &program, const QStringList &arguments, const QStringList &settings,
                    QString *output = nullptr)
    {
        QProcess process;
        process.setProcessEnvironment(environment(settings));
        process.start(program, arguments);
        if (!process.waitForFinished() || process.exitCode() != 0)
            return false;
        if (output != nullptr)
            *output = QString::fromUtf8(process.readAllStandardOutput()).trimmed();
        return true;
    }

    static QString script() { return qEnvironmentVariable("TEVORA_SOURCE_DIR") + "/scripts/link-help"; }

private slots:
    void linkIsTheLanguageOfTheProgram_data()
    {
        QTest::addColumn<QStringList>("settings");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("set");
        const auto row = [](const char *name, const QStringList &settings, const QStringList &arguments,
                            const char *set) {
            QTest::newRow(name) << settings << arguments << QString(set);
        };
        row("nothing set", {}, {}, "help-en");
        row("C.UTF-8", {"LANG=C.UTF-8"}, {}, "help-en");
        row("German", {"LANG=de_AT.UTF-8"}, {}, "help-de");
        row("French", {"LANG=fr_CA"}, {}, "help-fr");
        row("language alone", {"LANG=fr"}, {}, "help-fr");
        row("Italian", {"LANG=it_IT.UTF-8"}, {}, "help-en");
        row("begins like German", {"LANG=den_CA"}, {}, "help-en");
        row("messages before LANG", {"LC_MESSAGES=de_DE", "LANG=fr_FR"}, {}, "help-de");
        row("all before messages", {"LC_ALL=fr_FR", "LC_MESSAGES=de_DE"}, {}, "help-fr");
        row("numbers do not count", {"LC_NUMERIC=de_DE", "LANG=fr_FR"}, {}, "help-fr");
        row("empty does not count", {"LC_ALL=", "LANG=de_DE"}, {}, "help-de");
        row("preferred language", {"LANGUAGE=de:fr", "LANG=en_US.UTF-8"}, {}, "help-de");
        row("preferred language in C", {"LANGUAGE=de", "LC_ALL=C"}, {}, "help-en");
        row("no first language", {"LANGUAGE=:de", "LANG=fr_FR"}, {}, "help-fr");
        row("--deutsch", {"LANG=fr_FR"}, {"--deutsch"}, "help-de");
        row("--ENGLISH", {"LANG=fr_FR"}, {"--ENGLISH"}, "help-en");
        row("--francais", {"LANG=de_DE"}, {"--francais"}, "help-fr");
        row("--français", {"LANG=C.UTF-8"}, {QString::fromUtf8("--français")}, "help-fr");
        row("--FRANÇAIS", {"LC_ALL=C"}, {QString::fromUtf8("--FRANÇAIS")}, "help-fr");
        row("decomposed cedilla", {"LC_ALL=C"},
            {QString::fromUtf8("--franc\xCC\xA7"
                               "ais")},
            "help-fr");
        row("several switches", {}, {"--francais", "--english", "--deutsch"}, "help-de");
        row("two switches", {}, {"--francais", "--english"}, "help-en");
        row("another argument", {"LANG=de_DE"}, {"--deutsche", "english"}, "help-de");
    }
    void linkIsTheLanguageOfTheProgram()
    {
        QFETCH(QStringList, settings);
        QFETCH(QStringList, arguments);
        QFETCH(QString, set);
        const QTemporaryDir bin;
        QVERIFY(run(script(), QStringList(bin.path()) + arguments, settings));
        QCOMPARE(QFile::symLinkTarget(bin.path() + "/help"), QDir(bin.path()).absoluteFilePath(set));

        QString file; // of the program's translation, for example "de_AT", of which "de" is loaded
        QVERIFY(run(QCoreApplication::applicationFilePath(), QStringList("--which-language") + arguments,
                    settings, &file));
        const QString spoken = file.section('_', 0, 0);
        const bool isTranslated = spoken == "de" || spoken == "fr";
        QCOMPARE(set, "help-" + (isTranslated ? spoken : QString("en")));
    }

    void linkChangesAndAFolderStays()
    {
        const QTemporaryDir bin;
        QVERIFY(run(script(), {bin.path(), "--deutsch"}, {}));
        QVERIFY(run(script(), {bin.path(), "--francais"}, {}));
        QCOMPARE(QFileInfo(QFile::symLinkTarget(bin.path() + "/help")).fileName(), QString("help-fr"));

        const QTemporaryDir own;
        QVERIFY(QDir(own.path()).mkdir("help"));
        QVERIFY(run(script(), {own.path(), "--deutsch"}, {}));
        QVERIFY(!QFileInfo(own.path() + "/help").isSymLink());
        QVERIFY(QDir(own.path() + "/help").isEmpty());
    }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--which-language") {
        std::puts(qPrintable(chooseLanguage(arguments.mid(2), QLocale::system().name()).applicationFile));
        return 0;
    }
    LinkHelpTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "LinkHelpTest.moc"
