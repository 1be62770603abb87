#include "objects/manager/MetricsText.h"

#include <QStandardItemModel>

#include <gtest/gtest.h>

namespace {

QByteArray textOf(const QString &cell)
{
    QStandardItemModel model(1, 1);
    model.setItem(0, 0, new QStandardItem(cell));
    QByteArray text = MetricsText::text(model);
    EXPECT_EQ(text.right(2), QByteArray("\n\0", 2));
    text.chop(2);
    return text;
}

} // namespace

TEST(MetricsText, path_replacesBothWordsEverywhereAndCaseSensitively)
{
    EXPECT_EQ(MetricsText::path("/x/Segmentation/slic/Segmentation.slic"), "/x/Metrics/txt/Metrics.txt");
    EXPECT_EQ(MetricsText::path("/x/segmentation.SLIC"), "/x/segmentation.SLIC");
    EXPECT_EQ(MetricsText::path("/slices/a.slic"), "/txtes/a.txt");
}

TEST(MetricsText, cells_loseFourCharactersFromTheFirstBlank)
{
    EXPECT_EQ(textOf("12.5 mm"), "12.5");
    EXPECT_EQ(textOf("12.5 mm^2"), "12.52"); // the exponent of an area is left behind
    EXPECT_EQ(textOf("0 mm^3"), "03");
    EXPECT_EQ(textOf("a b c d e"), "a d e");
}

TEST(MetricsText, cellsWithoutABlank_loseTheirLastCharacter)
{
    EXPECT_EQ(textOf("unavailable"), "unavailabl");
    EXPECT_EQ(textOf("7"), "");
    EXPECT_EQ(textOf(""), "");
}

TEST(MetricsText, cells_areInTheLocalEncoding)
{
    EXPECT_EQ(textOf("1,5\u00a0\u00b5 mm"), "1,5\u00a0\u00b5");
}

TEST(MetricsText, separators_areFollowedByZeroBytes)
{
    QStandardItemModel model(2, 3);
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 3; ++column)
            model.setItem(row, column, new QStandardItem(QString("%1 mm").arg(3 * row + column)));
    }
    EXPECT_EQ(MetricsText::text(model), QByteArray("0\t\0001\t\0002\n\0003\t\0004\t\0005\n\0", 18));
}

TEST(MetricsText, ofAnEmptyModel_isEmpty)
{
    EXPECT_EQ(MetricsText::text(QStandardItemModel(0, 3)), QByteArray());
    EXPECT_EQ(MetricsText::text(QStandardItemModel(2, 0)), QByteArray());
}
