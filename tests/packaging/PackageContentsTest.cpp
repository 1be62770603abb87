#include "tests/packaging/UnpackedPackage.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <algorithm>

// The package as dpkg sees it: control fields, files with their modes, and what must not be inside.
class PackageContentsTest : public QObject
{
    Q_OBJECT

    struct Entry
    {
        QString mode, owner, path; // the path without the leading "./", of a link with its target
    };

    const UnpackedPackage package;
    QList<Entry> entries;

    static QString field(const QString &name)
    {
        return QString::fromUtf8(outputOf("dpkg-deb", {"--field", TEVORA_PACKAGE, name})).trimmed();
    }

    QStringList regularFiles() const
    {
        QStringList files;
        QDirIterator each(package.root(), QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                          QDirIterator::Subdirectories);
        while (each.hasNext())
            files.append(QDir(package.root()).relativeFilePath(each.next()));
        return files;
    }

    QSet<QString> pathsBelow(const QString &folder) const
    {
        QSet<QString> found;
        for (const Entry &entry : entries)
            if (entry.path.startsWith(folder) && !entry.path.endsWith('/'))
                found.insert(entry.path.mid(folder.size()));
        return found;
    }

private slots:
    void initTestCase()
    {
        const QRegularExpression line("^(\\S{10}) (\\S+) +\\d+ \\S+ \\S+ \\./(.*)$");
        const QByteArray listing = outputOf("dpkg-deb", {"--contents", TEVORA_PACKAGE});
        for (const QString &text : QString::fromUtf8(listing).split('\n', Qt::SkipEmptyParts)) {
            const QRegularExpressionMatch match = line.match(text);
            QVERIFY2(match.hasMatch(), qPrintable(text));
            if (!match.captured(3).isEmpty()) // the root itself
                entries.append({match.captured(1), match.captured(2), match.captured(3)});
        }
    }

    void controlFields()
    {
        QCOMPARE(field("Package"), QString("tevora"));
        QCOMPARE(field("Version"), QString(TEVORA_VERSION "-1"));
        QCOMPARE(field("Section"), QString("science"));
        QCOMPARE(field("Architecture"),
                 QString::fromUtf8(outputOf("dpkg", {"--print-architecture"})).trimmed());
        QVERIFY(field("Maintainer").endsWith("@tevora.example.org>"));
        QVERIFY(field("Installed-Size").toInt() > 1000); // KiB
        QVERIFY(field("Description").contains('\n'));
    }

    // What the program links; Qt's and Mesa's modules that are loaded at run time come with these.
    void dependencies_nameTheLinkedLibraries()
    {
        QSet<QString> names;
        for (const QString &one : field("Depends").split(", "))
            names.insert(one.section(' ', 0, 0));
        for (const char *wanted : {"libc6", "libstdc++6", "libqt6core6", "libqt6gui6", "libqt6widgets6",
                                   "libqt6openglwidgets6", "libgdcm3.0", "libglu1-mesa", "libopengl0"})
            QVERIFY2(names.contains(wanted), wanted);
        for (const QString &name : names)
            QVERIFY2(!name.endsWith("-dev"), qPrintable(name));
    }

    void modesAndOwners()
    {
        for (const Entry &entry : entries) {
            const bool program = entry.path == "usr/lib/tevora/tevora";
            const QString expected = entry.path.endsWith('/')      ? "drwxr-xr-x"
                                     : entry.path.contains(" -> ") ? "lrwxrwxrwx"
                                     : program                     ? "-rwxr-xr-x"
                                                                   : "-rw-r--r--";
            QVERIFY2(entry.mode == expected, qPrintable(entry.mode + " " + entry.path));
            QCOMPARE(entry.owner, QString("root/root"));
        }
        for (const char *script : {"DEBIAN/postinst", "DEBIAN/prerm"})
            QVERIFY(QFileInfo(package.path(script)).isExecutable());
    }

    void program_liesWithItsDataAndIsLinkedFromThePath()
    {
        QCOMPARE(pathsBelow("usr/bin/"), QSet<QString>{"tevora -> ../lib/tevora/tevora"});
        QSet<QString> beside;
        for (const QString &path : pathsBelow("usr/lib/tevora/"))
            beside.insert(path.section('/', 0, 0));
        const QSet<QString> expected{"tevora",   "de.qm",    "en.qm",   "fr.qm",   "qt_de.qm",
                                     "qt_en.qm", "qt_fr.qm", "help-de", "help-en", "help-fr"};
        QCOMPARE(beside, expected);
    }

    void helpPages_areAllThoseOfTheSources_withTheirPictures()
    {
        static const QRegularExpression picture("src=\"([^\"]+)\"");
        const QString sources = qEnvironmentVariable("TEVORA_SOURCE_DIR") + "/resources/help/";
        for (const QString language : {"de", "en", "fr"}) {
            const QString folder = "usr/lib/tevora/help-" + language + "/";
            const QStringList pages = QDir(sources + language).entryList({"*.html"}, QDir::Files);
            QVERIFY(!pages.isEmpty());
            QSet<QString> expected(pages.begin(), pages.end());
            for (const QString &page : pages) {
                auto each = picture.globalMatch(QString::fromUtf8(package.read(folder + page)));
                while (each.hasNext())
                    expected.insert(each.next().captured(1));
            }
            QSet<QString> installed;
            for (QString name : pathsBelow(folder))
                installed.insert(name.remove("@2x")); // the same picture for finer screens
            QCOMPARE(installed, expected);
        }
    }

    void nothingElseIsInstalled()
    {
        const QStringList expected{"usr/bin/",
                                   "usr/lib/tevora/",
                                   "usr/share/applications/org.example.tevora.desktop",
                                   "usr/share/doc/tevora/",
                                   "usr/share/icons/hicolor/",
                                   "usr/share/lintian/overrides/tevora",
                                   "usr/share/man/man1/tevora.1.gz",
                                   "usr/share/metainfo/org.example.tevora.metainfo.xml",
                                   "usr/share/mime/packages/org.example.tevora.xml"};
        for (const QString &path : pathsBelow(QString()))
            QVERIFY2(std::any_of(expected.begin(), expected.end(),
                                 [&](const QString &start) { return path.startsWith(start); }),
                     qPrintable(path));
    }

    void program_isStrippedAndHasNoSearchPath()
    {
        const QString program = package.path("usr/lib/tevora/tevora");
        const QByteArray sections = outputOf("readelf", {"--sections", "--wide", program});
        QVERIFY(sections.contains(".dynsym"));
        QVERIFY(!sections.contains(".symtab"));
        QVERIFY(!sections.contains(".debug"));
        const QByteArray dynamic = outputOf("readelf", {"--dynamic", "--wide", program});
        QVERIFY(dynamic.contains("NEEDED"));
        QVERIFY(!dynamic.contains("RUNPATH") && !dynamic.contains("RPATH"));
    }

    void noPathOfTheBuildIsInside()
    {
        const QStringList files = regularFiles();
        QVERIFY(files.size() > 20);
        for (const QString &file : files) {
            const QByteArray bytes =
                file.endsWith(".gz") ? outputOf("gzip", {"-dc", package.path(file)}) : package.read(file);
            for (const QByteArray &path : {qgetenv("TEVORA_SOURCE_DIR"), QByteArray(TEVORA_BUILD_FOLDER)})
                QVERIFY2(!bytes.contains(path), qPrintable(file));
        }
    }

    // Without a package there is nobody to choose the help pages: they are the English ones.
    void plainInstallation_isCompleteByItself()
    {
        const QTemporaryDir folder;
        outputOf("cmake", {"--install", TEVORA_BUILD_FOLDER, "--prefix", folder.filePath("prefix")});
        const QString prefix = folder.filePath("prefix");
        QCOMPARE(QFileInfo(prefix + "/lib/tevora/help").symLinkTarget(), prefix + "/lib/tevora/help-en");
        QCOMPARE(QFileInfo(prefix + "/bin/tevora").symLinkTarget(), prefix + "/lib/tevora/tevora");
        QVERIFY(QFileInfo(prefix + "/bin/tevora").isExecutable());
        QVERIFY(QFile::exists(prefix + "/lib/tevora/help/menu_help.html"));
        QVERIFY(QFile::exists(prefix + "/lib/tevora/de.qm"));
        QVERIFY(QFile::exists(prefix + "/share/applications/org.example.tevora.desktop"));
        QVERIFY(!QFile::exists(prefix + "/share/doc/tevora/changelog.Debian.gz"));
    }

    void checksums_coverEveryFile()
    {
        QMap<QString, QString> sums;
        for (const QString &line :
             QString::fromUtf8(package.read("DEBIAN/md5sums")).split('\n', Qt::SkipEmptyParts))
            sums.insert(line.mid(34), line.left(32));
        for (const QString &file : regularFiles()) {
            if (file.startsWith("DEBIAN/"))
                continue;
            const QByteArray sum = QCryptographicHash::hash(package.read(file), QCryptographicHash::Md5);
            QCOMPARE(sums.value(file), QString::fromLatin1(sum.toHex()));
        }
    }
};

QTEST_GUILESS_MAIN(PackageContentsTest)
#include "PackageContentsTest.moc"
