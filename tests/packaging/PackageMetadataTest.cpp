#include "tests/packaging/UnpackedPackage.h"

#include <QDirIterator>
#include <QImage>
#include <QRegularExpression>
#include <QTest>

// What the package tells the desktop and the reader, held against what is inside and what the program can do.
class PackageMetadataTest : public QObject
{
    Q_OBJECT

    const UnpackedPackage package;

    QString desktopEntry() const { return package.read("usr/share/applications/org.example.tevora.desktop"); }

    QString unzipped(const QString &file) const
    {
        return QString::fromUtf8(outputOf("gzip", {"-dc", package.path(file)}));
    }

    static QStringList captures(const QString &pattern, const QString &text)
    {
        QStringList found;
        auto each = QRegularExpression(pattern, QRegularExpression::MultilineOption).globalMatch(text);
        while (each.hasNext())
            found.append(each.next().captured(1));
        return found;
    }

private slots:
    void version_isTheSameEverywhere()
    {
        const QString version = TEVORA_VERSION;
        const QString metainfo = package.read("usr/share/metainfo/org.example.tevora.metainfo.xml");
        QCOMPARE(captures("<release version=\"([^\"]*)\"", metainfo).value(0), version);
        QCOMPARE(captures("^\\.TH .*\"Tevora ([^\"]*)\"", unzipped("usr/share/man/man1/tevora.1.gz")),
                 QStringList(version));
        QCOMPARE(
            captures("^tevora \\(([^)]*)\\)", unzipped("usr/share/doc/tevora/changelog.Debian.gz")).value(0),
            version + "-1");
    }

    void desktopEntry_startsTheProgramInEachLanguage()
    {
        QCOMPARE(captures("^Exec=(.*)$", desktopEntry()),
                 QStringList({"tevora", "tevora --deutsch", "tevora --english", "tevora --francais"}));
        QVERIFY(QFileInfo(package.path("usr/bin/tevora")).isExecutable());
    }

    void texts_areInThreeLanguages()
    {
        for (const char *key : {"GenericName", "Comment", "Keywords"})
            for (const char *language : {"", "\\[de\\]", "\\[fr\\]"})
                QCOMPARE(captures(QString("^%1%2=(.+)$").arg(key, language), desktopEntry()).size(), 1);
        const QString metainfo = package.read("usr/share/metainfo/org.example.tevora.metainfo.xml");
        for (const char *element : {"summary", "p", "li"}) {
            const auto count = [&](const char *language) {
                return captures(QString("<(%1)%2>").arg(element, language), metainfo).size();
            };
            QVERIFY(count("") > 0);
            QCOMPARE(count(" xml:lang=\"de\""), count(""));
            QCOMPARE(count(" xml:lang=\"fr\""), count(""));
        }
    }

    void icon_isThereInEverySize()
    {
        const QString name = captures("^Icon=(.*)$", desktopEntry()).value(0);
        for (const int size : {48, 128, 256}) {
            const QImage icon(
                package.path(QString("usr/share/icons/hicolor/%1x%1/apps/%2.png").arg(size).arg(name)));
            QCOMPARE(icon.size(), QSize(size, size));
        }
        QVERIFY(package.read("usr/share/icons/hicolor/scalable/apps/" + name + ".svg").startsWith("<svg"));
    }

    void metainfo_fitsTheDesktopEntry()
    {
        outputOf("appstreamcli", {"validate-tree", "--no-net", package.root()});
    }

    void manualPage_namesEverySwitch()
    {
        const QString page = unzipped("usr/share/man/man1/tevora.1.gz").remove('\\');
        for (const char *name : {"--deutsch", "--english", "--francais", "--fran(,cais", "Tevora.conf"})
            QVERIFY2(page.contains(name), name);
    }

    // Links of the manual lead to files that are installed with it.
    void linksOfTheManual_stayInside()
    {
        const QString manual = package.path("usr/share/doc/tevora/manual");
        int pages = 0;
        QDirIterator each(manual, {"*.md"}, QDir::Files, QDirIterator::Subdirectories);
        while (each.hasNext()) {
            QFile page(each.next());
            QVERIFY(page.open(QIODevice::ReadOnly));
            ++pages;
            for (QString target : captures("\\]\\(([^)\\s]*)[^)]*\\)", QString::fromUtf8(page.readAll()))) {
                target = target.section('#', 0, 0);
                if (target.isEmpty() || target.contains("://") || target.startsWith("mailto:"))
                    continue;
                const QString file = QDir::cleanPath(QFileInfo(page).path() + "/" + target);
                QVERIFY2(file.startsWith(manual) && QFile::exists(file),
                         qPrintable(page.fileName() + ": " + target));
            }
        }
        QVERIFY(pages > 0);
    }
};

QTEST_GUILESS_MAIN(PackageMetadataTest)
#include "PackageMetadataTest.moc"
