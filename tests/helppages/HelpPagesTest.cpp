#include "tests/helppages/HelpPage.h"

#include <QDir>
#include <QImage>
#include <QTest>

class HelpPagesTest : public QObject
{
    Q_OBJECT

    static constexpr int widestPicture =
        205; // what the strip of 240 pixels has for a page, beside its scroll bar

    static void addRows(const QStringList &languages)
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("topic");
        for (const QString &language : languages)
            for (const QString &topic : HelpPages::topics)
                QTest::addRow("%s %s", qPrintable(language), qPrintable(topic)) << language << topic;
    }

    static QStringList sorted(QStringList list)
    {
        list.sort();
        return list;
    }

private slots:
    void everyTopicHasAWellFormedPage_data() { addRows(HelpPages::languages); }
    void everyTopicHasAWellFormedPage()
    {
        QFETCH(QString, language);
        QFETCH(QString, topic);
        const HelpPage page = HelpPages::read(language, topic);
        QCOMPARE(page.error, QString());
        QCOMPARE(page.language, language);
        QCOMPARE(page.structure.mid(0, 5), QStringList({"html", "head", "title", "body", "h2"}));
        QCOMPARE(page.unknown, QStringList());
        QCOMPARE(page.links, 0); // the window does not follow any
        QVERIFY2(page.words >= 150 && page.words <= 430, qPrintable(QString::number(page.words)));
    }

    void thereAreNoOtherPages()
    {
        for (const QString &language : HelpPages::languages) {
            QStringList topics = QDir(HelpPages::folder(language)).entryList({"*.html"}, QDir::Files);
            topics.replaceInStrings(".html", QString());
            QCOMPARE(sorted(topics), sorted(HelpPages::topics));
        }
    }

    void everyPictureExistsAndFits_data() { addRows(HelpPages::languages); }
    void everyPictureExistsAndFits()
    {
        QFETCH(QString, language);
        QFETCH(QString, topic);
        for (const QString &name : HelpPages::read(language, topic).pictures) {
            const QImage picture(HelpPages::folder(language) + "/" + name);
            QVERIFY2(!picture.isNull(), qPrintable(name));
            QVERIFY2(picture.width() <= widestPicture, qPrintable(name));
        }
    }

    void languagesSayTheSame_data() { addRows({"de", "fr"}); }
    void languagesSayTheSame()
    {
        QFETCH(QString, language);
        QFETCH(QString, topic);
        const HelpPage english = HelpPages::read("en", topic), page = HelpPages::read(language, topic);
        QCOMPARE(page.structure, english.structure);
        QCOMPARE(page.pictures, english.pictures);
        QCOMPARE(page.gestures, english.gestures);
        QCOMPARE(page.keys, english.keys);
    }

    // Each label of the English page is a text of the program, and a translation of it stands on the other
    // page.
    void labelsAreThoseOfTheProgram_data() { addRows(HelpPages::languages); }
    void labelsAreThoseOfTheProgram()
    {
        QFETCH(QString, language);
        QFETCH(QString, topic);
        const auto translations = HelpPages::translations(language);
        QVERIFY(!translations.isEmpty());
        QStringList remaining = HelpPages::read(language, topic).labels;
        for (const QString &label : HelpPages::read("en", topic).labels) {
            QVERIFY2(translations.contains(label), qPrintable(label));
            QStringList wanted{label};
            if (language != "en")
                wanted = translations.values(label);
            const bool found = std::any_of(wanted.begin(), wanted.end(),
                                           [&](const QString &text) { return remaining.removeOne(text); });
            QVERIFY2(found, qPrintable(label + " is not there as " + wanted.join(" or ")));
        }
        QCOMPARE(remaining, QStringList());
    }
};

QTEST_GUILESS_MAIN(HelpPagesTest)
#include "HelpPagesTest.moc"
