// The program beside translation files that are none: it speaks the language of its sources.
#include "tests/support/ProgramOnScreen.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

class TranslationFaultsTest : public QObject
{
    Q_OBJECT

    static QByteArray contentOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private slots:
    void file_data()
    {
        const QByteArray german = contentOf(QFileInfo(TEVORA_EXECUTABLE).path() + "/de.qm");
        QVERIFY(german.size() > 1000);
        const QByteArray head = german.first(16); // by which such files are known
        QByteArray noise;
        for (int i = 0; i < 20000; ++i)
            noise += static_cast<char>(i * 7919 >> 3);
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("noise") << noise;
        QTest::newRow("noise behind a true head") << head + noise;
        QTest::newRow("head alone") << head;
        QTest::newRow("lengths beyond the end") << head + QByteArray("\x42\xff\xff\xff\xff", 5) + noise;
    }
    // The menu "File" opens with Alt and F and has an entry with the mnemonic x only in English.
    void file()
    {
        QFETCH(QByteArray, content);
        const QTemporaryDir folder;
        const QString copy = folder.path() + "/tevora";
        QVERIFY(QFile::copy(TEVORA_EXECUTABLE, copy));
        for (const char *name : {"/de.qm", "/qt_de.qm"}) {
            QFile file(folder.path() + name);
            QVERIFY(file.open(QIODevice::WriteOnly));
            QCOMPARE(file.write(content), content.size());
        }
        ProgramOnScreen program(folder.path());
        QVERIFY(program.start(copy, {"--deutsch"}, "Tevora"));
        program.altKey("f");
        program.tapKey("x");
        QVERIFY(program.endsWell());
    }
};

QTEST_MAIN(TranslationFaultsTest)
#include "TranslationFaultsTest.moc"
