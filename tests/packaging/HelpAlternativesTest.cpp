#include "tests/packaging/UnpackedPackage.h"

#include <QTest>

// Which set of help pages the package's scripts choose, with the real update-alternatives on an unpacked
// package.
class HelpAlternativesTest : public QObject
{
    Q_OBJECT

    static constexpr auto link = "usr/lib/tevora/help";

private slots:
    void language_data()
    {
        QTest::addColumn<QByteArray>("settings"); // of /etc/default/locale; null when there is none
        QTest::addColumn<QString>("lang");        // in the environment
        QTest::addColumn<QString>("set");
        QTest::newRow("no word on it") << QByteArray() << ""
                                       << "help-en";
        QTest::newRow("C") << QByteArray() << "C.UTF-8"
                           << "help-en";
        QTest::newRow("English") << QByteArray("LANG=en_GB.UTF-8\n") << ""
                                 << "help-en";
        QTest::newRow("German") << QByteArray("LANG=de_AT.UTF-8\n") << ""
                                << "help-de";
        QTest::newRow("French") << QByteArray("LANG=\"fr_FR.UTF-8\"\n") << ""
                                << "help-fr";
        QTest::newRow("no set for it") << QByteArray("LANG=pt_BR.UTF-8\n") << ""
                                       << "help-en";
        QTest::newRow("environment") << QByteArray() << "fr_CA"
                                     << "help-fr";
        QTest::newRow("the system's before the environment's")
            << QByteArray("LANG=de_DE.UTF-8\n") << "fr_FR.UTF-8"
            << "help-de";
        QTest::newRow("messages apart") << QByteArray("LANG=de_DE.UTF-8\nLC_MESSAGES=fr_FR.UTF-8\n") << ""
                                        << "help-fr";
        QTest::newRow("settings without a language") << QByteArray("# none\n") << "de_DE"
                                                     << "help-de";
    }

    void language()
    {
        QFETCH(const QByteArray, settings);
        QFETCH(const QString, lang);
        const UnpackedPackage package;
        if (!settings.isNull())
            package.write("etc/default/locale", settings);
        package.runScript("postinst", "configure", lang);
        QCOMPARE(package.linkTarget(link), QString("/etc/alternatives/tevora-help"));
        QTEST(package.helpSet(), "set");
        QCOMPARE(package.linkTarget("etc/alternatives/tevora-help"), "/usr/lib/tevora/" + package.helpSet());
        QVERIFY(QDir(package.path("usr/lib/tevora/" + package.helpSet())).exists());
    }

    void choiceByHand_outlivesAnUpgrade()
    {
        const UnpackedPackage package;
        package.runScript("postinst", "configure", "de_DE.UTF-8");
        outputOf("update-alternatives",
                 {"--root", package.root(), "--set", "tevora-help", "/usr/lib/tevora/help-fr"});
        package.runScript("prerm", "upgrade");
        package.runScript("postinst", "configure", "de_DE.UTF-8");
        QCOMPARE(package.helpSet(), QString("help-fr"));
    }

    void newLanguageOfTheSystem_isTakenUpByAnUpgrade()
    {
        const UnpackedPackage package;
        package.runScript("postinst", "configure", "de_DE.UTF-8");
        package.runScript("postinst", "configure", "fr_FR.UTF-8");
        QCOMPARE(package.helpSet(), QString("help-fr"));
    }

    void removal_leavesNoLink()
    {
        const UnpackedPackage package;
        package.runScript("postinst", "configure");
        package.runScript("prerm", "remove");
        QCOMPARE(package.linkTarget(link), QString());
        QCOMPARE(package.linkTarget("etc/alternatives/tevora-help"), QString());
        QVERIFY(!QFile::exists(package.path("var/lib/dpkg/alternatives/tevora-help")));
    }
};

QTEST_GUILESS_MAIN(HelpAlternativesTest)
#include "HelpAlternativesTest.moc"
