#include "platform/FileNames.h"

#include <gtest/gtest.h>

#include <string>

TEST(FileNames, narrowPathIsWhatTheSystemTakes)
{
    EXPECT_EQ(narrowPath(QStringLiteral("/data/my knee.mhd")), "/data/my knee.mhd");
    // Two bytes of UTF-8 for a letter with diaeresis, three for the Polish quotation mark.
    EXPECT_EQ(narrowPath(QStringLiteral("/d\u00E4ta/\u201Eknee")), "/d\xC3\xA4ta/\xE2\x80\x9Eknee");
    EXPECT_EQ(narrowPath(QString()), "");
}

TEST(FileNames, longPathsStayWhole)
{
    const QString path = QLatin1Char('/') + QString(260, QChar(0x0142));
    EXPECT_EQ(narrowPath(path).size(), 521U);
    EXPECT_EQ(widePath(path).size(), 261U);
    EXPECT_EQ(pathFromWide(widePath(path).c_str()), path);
}

TEST(FileNames, widePathAndBack)
{
    const QString path = QStringLiteral("/data/\u00FC \U0001D400.slic"); // one letter beyond 16 bits
    EXPECT_EQ(pathFromWide(widePath(path).c_str()), path);
    EXPECT_TRUE(pathFromWide(nullptr).isNull());
    EXPECT_TRUE(pathFromWide(L"").isEmpty());
}
