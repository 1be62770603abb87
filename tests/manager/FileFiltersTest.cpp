#include "objects/manager/FileFilters.h"

#include "tests/manager/Fakes.h"

#include <gtest/gtest.h>

namespace {

QString saveFilterOf(const QString &name, const QString &extension)
{
    FakeStreamWriter writer(name, "x/y", extension);
    return FileFilters::saveFilter(writer);
}

} // namespace

TEST(FileFilters, saveFilter_namesTheExtension)
{
    EXPECT_EQ(saveFilterOf("MetaImage file", "mhd"), "MetaImage file (*.mhd)");
    EXPECT_EQ(saveFilterOf("Anything", ""), "Anything (*)");
    EXPECT_EQ(saveFilterOf("Odd %2 name", "x"), "Odd %2 name (*.x)");
}

TEST(FileFilters, loadFilters_ofAllReadersOfTheProgram)
{
    QStringList calls;
    FakeFileReader series("Dicom Series", {"dcm"}, &calls);
    FakeStreamReader contours("Sliced Contours", {"slic"}, &calls);
    FakeFileReader dicom("Dicom file", {"dcm"}, &calls);
    FakeFileReader meta("MetaImage file", {"mhd"}, &calls);
    FakeFileReader analyze("Analyze file", {"hdr"}, &calls);
    FakeStreamReader vis("Tallowbrook VIS format", {"vis"}, &calls);
    FakeFileReader bitmap("Windows bitmap", {"bmp"}, &calls);
    const QStringList expected{// "*.dcm" stands twice, since two readers declare it.
                               "all supported files (*.bmp; *.dcm; *.dcm; *.hdr; *.mhd; *.slic; *.vis)",
                               "Dicom Series (*.dcm)",
                               "Sliced Contours (*.slic)",
                               "Dicom file (*.dcm)",
                               "MetaImage file (*.mhd)",
                               "Analyze file (*.hdr)",
                               "Tallowbrook VIS format (*.vis)",
                               "Windows bitmap (*.bmp)",
                               "all files (*)"};
    EXPECT_EQ(FileFilters::loadFilters({&series, &contours, &dicom, &meta, &analyze, &vis, &bitmap}),
              expected);
}

TEST(FileFilters, loadFilters_joinSeveralExtensions)
{
    QStringList calls;
    FakeFileReader reader("R", {"z", "", "Y"}, &calls);
    // Plain text order: upper case before lower case, "*" before "*.".
    EXPECT_EQ(FileFilters::loadFilters({&reader}),
              QStringList({"all supported files (*; *.Y; *.z)", "R (*.z; *; *.Y)", "all files (*)"}));
}

TEST(FileFilters, dialogText_repeatsThePatternsInTheToolkitsManner)
{
    EXPECT_EQ(FileFilters::dialogText({"Text (tab; separated) (*.a; *.b)", "all files (*)"}),
              "Text (tab; separated) (*.a; *.b) (*.a *.b);;all files (*) (*)");
}

TEST(FileFilters, selectedIndex_takesBothFormsAndTheFirstForUnknownOnes)
{
    const QStringList filters{"A (*.a)", "B (*.b; *.c)"};
    EXPECT_EQ(FileFilters::selectedIndex(filters, "B (*.b; *.c)"), 1);
    EXPECT_EQ(FileFilters::selectedIndex(filters, "B (*.b; *.c) (*.b *.c)"), 1);
    EXPECT_EQ(FileFilters::selectedIndex(filters, "A (*.a)"), 0);
    EXPECT_EQ(FileFilters::selectedIndex(filters, ""), 0);
    EXPECT_EQ(FileFilters::selectedIndex(filters, "C (*.c)"), 0);
}
