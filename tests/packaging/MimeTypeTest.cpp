#include "contours/SlicedContoursObject.h"
#include "serialization/formats/SlicSerializer.h"
#include "tests/packaging/UnpackedPackage.h"
#include "tests/support/DrawnContours.h"

#include <QLocale>
#include <QMimeDatabase>
#include <QTest>

#include <sstream>

// The file type that the package declares, as the desktop's own tool compiles it, against a file that the
// program writes. The system's types stay in the search path, so that none of them may take the file for its
// own.
class MimeTypeTest : public QObject
{
    Q_OBJECT

    static constexpr auto sliced = "application/x-sliced-contours";

    const UnpackedPackage package;
    QTemporaryDir files;
    QByteArray contours;

    QString file(const QString &name, const QByteArray &bytes) const
    {
        QFile made(files.filePath(name));
        if (!made.open(QIODevice::WriteOnly) || made.write(bytes) != bytes.size())
            throw std::runtime_error("cannot write " + name.toStdString());
        return made.fileName();
    }

private slots:
    void initTestCase()
    {
        qputenv("XDG_DATA_HOME", files.path().toLocal8Bit());
        qputenv("XDG_DATA_DIRS", package.path("usr/share").toLocal8Bit() + ":/usr/share");
        QProcess compile;
        compile.start("update-mime-database", {package.path("usr/share/mime")});
        QVERIFY(compile.waitForFinished());
        QCOMPARE(QString(compile.readAllStandardError()), QString());
        QCOMPARE(compile.exitCode(), 0);
        QVERIFY(QFile::exists(package.path("usr/share/mime/mime.cache")));

        SlicedContoursObject object;
        drawn::square(drawn::solid(object), 1.5f, 10.0, 20.0);
        std::ostringstream stream;
        QVERIFY(SlicSerializer().serialize(&object, stream));
        contours = QByteArray::fromStdString(stream.str());
    }

    void writtenContours_areKnownByTheirContent()
    {
        const QMimeDatabase types;
        QCOMPARE(types.mimeTypeForData(contours).name(), QString(sliced));
        QCOMPARE(types.mimeTypeForFile(file("no suffix", contours)).name(), QString(sliced));
        QCOMPARE(types.mimeTypeForFile(file("contours.txt", contours), QMimeDatabase::MatchContent).name(),
                 QString(sliced));
    }

    void writtenContours_areKnownByTheirName()
    {
        const QMimeDatabase types;
        const QString name = file("Segmentation.slic", contours);
        QCOMPARE(types.mimeTypeForFile(name, QMimeDatabase::MatchExtension).name(), QString(sliced));
        QCOMPARE(types.mimeTypeForFile(name).name(), QString(sliced));
        QCOMPARE(types.mimeTypeForFile("A.SLIC", QMimeDatabase::MatchExtension).name(), QString(sliced));
        QCOMPARE(types.mimeTypeForName(sliced).suffixes(), QStringList("slic"));
    }

    void otherContent_isNotTakenForContours()
    {
        const QMimeDatabase types;
        for (const QByteArray &other :
             {QByteArray("SLIC text"), contours.first(7), QByteArray("\0", 1) + contours})
            QVERIFY(types.mimeTypeForData(other).name() != sliced);
    }

    void description_isInThreeLanguages()
    {
        const QMimeType type = QMimeDatabase().mimeTypeForName(sliced);
        QLocale::setDefault(QLocale("de_DE"));
        QCOMPARE(type.comment(), QString("Schichtkonturen"));
        QLocale::setDefault(QLocale("fr_FR"));
        QCOMPARE(type.comment(), QString("contours par coupe"));
        QLocale::setDefault(QLocale("en_US"));
        QCOMPARE(type.comment(), QString("sliced contours"));
    }

    void iconOfTheType_isInThePackage()
    {
        const QString name = QMimeDatabase().mimeTypeForName(sliced).iconName();
        QVERIFY(QFile::exists(package.path("usr/share/icons/hicolor/scalable/mimetypes/" + name + ".svg")));
    }
};

QTEST_GUILESS_MAIN(MimeTypeTest)
#include "MimeTypeTest.moc"
