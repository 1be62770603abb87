#include "tests/translations/TsFile.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

const QString noBreakSpace(QChar(0x00A0));

QString folder()
{
    return QString(TEVORA_TRANSLATIONS);
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

QStringList found(const QString &text, const QString &pattern)
{
    QStringList matches;
    QRegularExpressionMatchIterator match = QRegularExpression(pattern).globalMatch(text);
    while (match.hasNext())
        matches << match.next().captured();
    return matches;
}

// In any order: a language may turn a sentence around.
QStringList sorted(QStringList texts)
{
    texts.sort();
    return texts;
}

QString leadingBlanks(const QString &text)
{
    return found(text, "^\\s*").value(0);
}

// Blanks that other texts are glued to. A no-break space before punctuation is no trailing blank.
QString trailingBlanks(const QString &text)
{
    return found(text, "\\s*$").value(0);
}

class TranslationFile : public testing::TestWithParam<const char *>
{
protected:
    QString path() const { return folder() + "/" + GetParam() + ".ts"; }

    // Calls check(source, translation) for each text and each plural form.
    template <class Check>
    void forEachForm(Check check) const
    {
        const std::vector<TsMessage> messages = readTsFile(path());
        ASSERT_GT(messages.size(), 300U);
        for (const TsMessage &message : messages) {
            for (const QString &form : message.translations) {
                SCOPED_TRACE((message.context + ": " + message.source + " -> " + form).toStdString());
                check(message.source, form);
            }
        }
    }
};

TEST_P(TranslationFile, hasNothingUnfinishedOrObsolete)
{
    for (const TsMessage &message : readTsFile(path())) {
        SCOPED_TRACE((message.context + ": " + message.source).toStdString());
        EXPECT_EQ(message.state.toStdString(), "");
        ASSERT_EQ(message.translations.size(), message.plural ? 2 : 1);
        for (const QString &form : message.translations)
            EXPECT_FALSE(form.isEmpty());
    }
}

// The sources and the file hold the same texts: a run of the update changes not a byte.
TEST_P(TranslationFile, isUpToDateWithTheSources)
{
    const QTemporaryDir temporary;
    const QString copy = temporary.filePath(QString(GetParam()) + ".ts");
    ASSERT_TRUE(QFile::copy(path(), copy));
    QProcess update;
    update.setWorkingDirectory(qEnvironmentVariable("TEVORA_SOURCE_DIR"));
    update.start(TEVORA_LUPDATE, QString(TEVORA_LUPDATE_ARGUMENTS).split(' ') << "-ts" << copy);
    ASSERT_TRUE(update.waitForFinished(60000));
    ASSERT_EQ(update.exitCode(), 0) << update.readAllStandardError().toStdString();
    EXPECT_EQ(update.readAllStandardError().toStdString(), ""); // texts that the tool could not place
    EXPECT_EQ(contents(copy).toStdString(), contents(path()).toStdString());
}

TEST_P(TranslationFile, keepsPlaceholders)
{
    forEachForm([](const QString &source, const QString &translation) {
        const QString pattern("%(?:L?[0-9]+|n|s)");
        EXPECT_EQ(sorted(found(translation, pattern)).join(' ').toStdString(),
                  sorted(found(source, pattern)).join(' ').toStdString());
    });
}

TEST_P(TranslationFile, hasAKeyMarkWhereTheSourceHas)
{
    forEachForm([](const QString &source, const QString &translation) {
        EXPECT_EQ(translation.count('&'), source.count('&'));
        EXPECT_EQ(found(translation, "&\\w").size(), source.count('&'));
    });
}

TEST_P(TranslationFile, keepsBlanksThatOtherTextsAreGluedTo)
{
    forEachForm([](const QString &source, const QString &translation) {
        EXPECT_EQ(leadingBlanks(translation).toStdString(), leadingBlanks(source).toStdString());
        EXPECT_EQ(trailingBlanks(translation).toStdString(), trailingBlanks(source).toStdString());
        EXPECT_FALSE(translation.contains("  "));
    });
}

TEST_P(TranslationFile, keepsEllipsesColonsAndLines)
{
    forEachForm([](const QString &source, const QString &translation) {
        for (const char *end : {" ...", "...", " …", ":"})
            EXPECT_EQ(translation.endsWith(end), source.endsWith(end)) << end;
        EXPECT_EQ(translation.endsWith(noBreakSpace + "…"), source.endsWith(noBreakSpace + "…"));
        EXPECT_EQ(translation.startsWith("..."), source.startsWith("..."));
        EXPECT_EQ(translation.count('\n'), source.count('\n'));
    });
}

TEST_P(TranslationFile, keepsPatternsOfFileFilters)
{
    forEachForm([](const QString &source, const QString &translation) {
        const QString pattern("\\(\\*[^)]*\\)");
        EXPECT_EQ(found(translation, pattern).join('\n').toStdString(),
                  found(source, pattern).join('\n').toStdString());
    });
}

// Saving writes the table of metrics when the filter contains "slic", which only the contours' may.
TEST_P(TranslationFile, namesOfFormatsDoNotContainTheSuffixOfContours)
{
    int names = 0;
    for (const TsMessage &message : readTsFile(path())) {
        if (!message.context.endsWith("Serializer"))
            continue;
        ++names;
        EXPECT_FALSE(message.translations.value(0).contains("slic")) << message.source.toStdString();
    }
    EXPECT_GE(names, 7);
}

// The tree of a view takes a scope and a filter back by their names.
TEST_P(TranslationFile, namesThatAreTakenBackAreDistinct)
{
    for (const char *context : {"DisplayScopes", "ImageComposition"}) {
        QStringList names;
        for (const TsMessage &message : readTsFile(path()))
            if (message.context == context)
                names << message.translations;
        EXPECT_GE(names.size(), 9);
        EXPECT_EQ(names.removeDuplicates(), 0) << context;
    }
}

// One cell of the table of metrics, cut behind its first blank when it is written: one word stays readable.
TEST_P(TranslationFile, theAbsentMeasureIsOneWord)
{
    int texts = 0;
    for (const TsMessage &message : readTsFile(path())) {
        if (message.source != "unavailable")
            continue;
        ++texts;
        EXPECT_FALSE(message.translations.value(0).contains(' '));
    }
    EXPECT_EQ(texts, 1);
}

// Units and number patterns are the same everywhere: readers of saved tables cut them off.
TEST_P(TranslationFile, keepsUnits)
{
    int texts = 0;
    for (const TsMessage &message : readTsFile(path())) {
        if (!message.source.startsWith("%L1"))
            continue;
        ++texts;
        EXPECT_EQ(message.translations.value(0).toStdString(), message.source.toStdString());
    }
    EXPECT_EQ(texts, 4);
}

INSTANTIATE_TEST_SUITE_P(Languages, TranslationFile, testing::Values("de", "en", "fr"),
                         [](const auto &language) { return std::string(language.param); });

// English is the language of the sources but for the plural forms and what the splash screen says in German.
TEST(EnglishTexts, areThoseOfTheSources)
{
    int others = 0;
    for (const TsMessage &message : readTsFile(folder() + "/en.ts")) {
        if (message.translations.value(0) == message.source)
            continue;
        ++others;
        EXPECT_TRUE(message.plural || message.context == "main") << message.source.toStdString();
    }
    EXPECT_EQ(others, 4 + 6);
}

TEST(GermanTexts, keepWhatTheSplashScreenSays)
{
    int texts = 0;
    for (const TsMessage &message : readTsFile(folder() + "/de.ts")) {
        if (!message.source.startsWith("Lade ") && !message.source.startsWith("Installiere"))
            continue;
        ++texts;
        EXPECT_EQ(message.translations.value(0).toStdString(), message.source.toStdString());
    }
    EXPECT_EQ(texts, 6);
}

// High punctuation and what stands before it stay on one line.
TEST(FrenchTexts, haveANoBreakSpaceBeforeHighPunctuation)
{
    int marks = 0;
    for (const TsMessage &message : readTsFile(folder() + "/fr.ts")) {
        for (const QString &form : message.translations) {
            if (form.contains("(*")) // the semicolons of file filters
                continue;
            const QStringList places = found(form, ".[:;?!]");
            marks += static_cast<int>(places.size());
            for (const QString &place : places)
                EXPECT_EQ(place.left(1).toStdString(), noBreakSpace.toStdString()) << form.toStdString();
        }
    }
    EXPECT_GT(marks, 20);
}

} // namespace
