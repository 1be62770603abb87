#include "shell/Language.h"

#include <gtest/gtest.h>

namespace {

struct Row
{
    QStringList arguments;
    const char *applicationFile;
    const char *toolkitFile;
    const char *splashText;
};

const char *const german = "Installiere Sprachunterstützung (deutsch) ...";
const char *const english = "Installiere Sprachunterstützung (englisch) ...";
const char *const french = "Installiere Sprachunterstützung (französisch) ...";
const char *const native = "Installiere Sprachunterstützung (Landessprache) ...";

TEST(Language, switchesInOrderOfPrecedence)
{
    const QString decomposed = QString("--francais").replace("c", QString::fromUtf8("c\xCC\xA7"));
    const Row rows[] = {
        {{"tevora"}, "it_IT", "qt_it_IT", native},
        {{"tevora", "--deutsch"}, "de", "qt_de", german},
        {{"tevora", "--DEUTSCH"}, "de", "qt_de", german},
        {{"tevora", "--english"}, "en", "qt_en", english},
        {{"tevora", "--francais"}, "fr", "qt_fr", french},
        {{"tevora", "--français"}, "fr", "qt_fr", french},
        {{"tevora", "--FRANÇAIS"}, "fr", "qt_fr", french},
        {{"tevora", decomposed}, "fr", "qt_fr", french},
        {{"tevora", "--français", "--english", "--deutsch"}, "de", "qt_de", german},
        {{"tevora", "--francais", "--english"}, "en", "qt_en", english},
        {{"tevora", "knee.mhd", "--unknown"}, "it_IT", "qt_it_IT", native},
        {{"tevora", "--deutsche", "deutsch"}, "it_IT", "qt_it_IT", native},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.arguments.join(" ").toStdString());
        const Language language = chooseLanguage(row.arguments, "it_IT");
        EXPECT_EQ(language.applicationFile.toStdString(), row.applicationFile);
        EXPECT_EQ(language.toolkitFile.toStdString(), row.toolkitFile);
        EXPECT_EQ(language.splashText.toStdString(), row.splashText);
    }
}

} // namespace
