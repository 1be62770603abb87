#include "serialization/dicom/DicomParser.h"

#include "serialization/dicom/DicomDictionary.h"
#include "serialization/dicom/DicomGeometry.h"
#include "serialization/dicom/DicomLoader.h"
#include "serialization/dicom/DicomText.h"
#include "tests/support/DicomFileBuilder.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace dicom;
using Encoding = DicomFileBuilder::Encoding;

namespace {

std::optional<DicomHeader> parse(const std::string &bytes)
{
    std::istringstream stream(bytes);
    return parseHeader(stream, bytes.size());
}

std::string item(const std::string &content)
{
    const DicomFileBuilder little;
    return std::string("\xFE\xFF\x00\xE0", 4) + little.number(content.size(), 4) + content;
}

std::string openItem(const std::string &content)
{
    return std::string("\xFE\xFF\x00\xE0\xFF\xFF\xFF\xFF", 8) + content +
           std::string("\xFE\xFF\x0D\xE0\0\0\0\0", 8);
}

std::string openSequence(const std::string &items)
{
    return std::string("\xFF\xFF\xFF\xFF", 4) + items + std::string("\xFE\xFF\xDD\xE0\0\0\0\0", 8);
}

} // namespace

TEST(DicomParser, sameTagsInEachEncoding)
{
    for (const Encoding encoding :
         {Encoding::explicitLittle, Encoding::implicitLittle, Encoding::explicitBig}) {
        const auto header = parse(dicomSlice(2, 1, {1, 2}, 7.5, encoding).bytes());
        ASSERT_TRUE(header);
        EXPECT_EQ(header->text(tags::patientName), "Doe^Jane");
        EXPECT_EQ(header->text(tags::echoTime), "9.2");
        EXPECT_EQ(header->integer(tags::columns, 0), 2);
        EXPECT_EQ(header->integer(tags::rows, 0), 1);
        EXPECT_EQ(header->bigEndian, encoding == Encoding::explicitBig);
        EXPECT_TRUE(header->isImage());
        EXPECT_EQ(header->pixels.length, 4U);
    }
}

TEST(DicomParser, dataSetThatContradictsItsTransferSyntaxIsReadByItsLooks)
{
    DicomFileBuilder implicit = dicomSlice(2, 1, {1, 2}, 0, Encoding::implicitLittle);
    implicit.syntax("1.2.840.10008.1.2.1");
    EXPECT_EQ(parse(implicit.bytes())->text(tags::patientName), "Doe^Jane");
    DicomFileBuilder explicitForm = dicomSlice(2, 1, {1, 2}, 0);
    explicitForm.syntax("1.2.840.10008.1.2");
    EXPECT_EQ(parse(explicitForm.bytes())->text(tags::patientName), "Doe^Jane");
}

TEST(DicomParser, fileWithoutPreambleIsRead)
{
    for (const Encoding encoding :
         {Encoding::explicitLittle, Encoding::implicitLittle, Encoding::explicitBig}) {
        const auto header = parse(dicomSlice(2, 1, {1, 2}, 0, encoding).dataSet());
        ASSERT_TRUE(header);
        EXPECT_EQ(header->integer(tags::columns, 0), 2);
    }
}

TEST(DicomParser, otherContentIsRefused)
{
    EXPECT_FALSE(parse(""));
    EXPECT_FALSE(parse("plain text, longer than a file without any preamble would need to be"));
    EXPECT_FALSE(parse(std::string(500, '\0')));
    EXPECT_FALSE(parse(std::string(128, '\0') + "DICM"));
}

TEST(DicomParser, sequencesAreSkippedWithAnyKindOfLength)
{
    DicomFileBuilder inner;
    inner.us(0x00280010, 77); // must not be taken for the rows of the image
    const std::string element = inner.dataSet();
    const std::string deep = openSequence(openItem(element + item("")));
    for (const std::string &value :
         {DicomFileBuilder().number(item(element).size(), 4) + item(element), openSequence(item(element)),
          openSequence(openItem(element)), openSequence(openItem(element) + item(element))}) {
        DicomFileBuilder file = dicomSlice(2, 1, {1, 2}, 0);
        file.raw(0x00081140, "SQ", value);
        const auto header = parse(file.bytes());
        ASSERT_TRUE(header);
        EXPECT_TRUE(header->isImage());
        EXPECT_EQ(header->integer(tags::rows, 0), 1);
        EXPECT_EQ(header->find(0x00081140), nullptr);
    }
}

TEST(DicomParser, unknownRepresentationOfOpenLengthIsAnImplicitSequence)
{
    DicomFileBuilder inner(Encoding::implicitLittle);
    inner.text(0x00080005, "CS", "ISO_IR 100");
    DicomFileBuilder file = dicomSlice(2, 1, {1, 2}, 0);
    file.raw(0x00091010, "UN", openSequence(openItem(inner.dataSet())));
    const auto header = parse(file.bytes());
    ASSERT_TRUE(header);
    EXPECT_TRUE(header->isImage());
}

TEST(DicomParser, endlessNestingEndsTheFileInsteadOfTheProcess)
{
    const DicomFileBuilder little;
    std::string bomb;
    for (int i = 0; i < 200000; ++i)
        bomb += std::string("\xFE\xFF\x00\xE0\xFF\xFF\xFF\xFF\x08\x00\x40\x11SQ\0\0\xFF\xFF\xFF\xFF", 20);
    DicomFileBuilder file = dicomSlice(2, 1, {1, 2}, 0);
    file.raw(0x00081140, "SQ", std::string("\xFF\xFF\xFF\xFF", 4) + bomb);
    const auto header = parse(file.bytes());
    ASSERT_TRUE(header);
    EXPECT_FALSE(header->isImage());
}

TEST(DicomParser, fileCutAnywhereGivesItsTagsUpToThere)
{
    for (const Encoding encoding :
         {Encoding::explicitLittle, Encoding::implicitLittle, Encoding::explicitBig}) {
        DicomFileBuilder file = dicomSlice(2, 2, {1, 2, 3, 4}, 0, encoding);
        if (encoding != Encoding::explicitBig)
            file.raw(0x00081140, "SQ", openSequence(openItem("")));
        const std::string whole = file.bytes();
        std::size_t known = 0;
        for (std::size_t length = 0; length <= whole.size(); ++length) {
            const auto header = parse(whole.substr(0, length));
            const std::size_t now = header ? header->elements.size() : 0;
            EXPECT_GE(now, known);
            known = now;
        }
        EXPECT_TRUE(parse(whole)->isImage());
    }
}

TEST(DicomParser, everyChangedByteIsSurvived)
{
    const std::string whole = dicomSlice(2, 2, {1, 2, 3, 4}, 0).bytes();
    for (std::size_t at = 128; at < whole.size(); ++at) {
        for (const char value : {'\0', '\x7F', '\xFF'}) {
            std::string changed = whole;
            changed[at] = value;
            const auto header = parse(changed);
            if (header) {
                EXPECT_LE(header->pixels.length, whole.size());
            }
        }
    }
}

TEST(DicomParser, valueLongerThanTheFileTakesNoMemory)
{
    DicomFileBuilder file = dicomSlice(2, 1, {1, 2}, 0);
    file.raw(0x00104000, "UT", DicomFileBuilder().number(0xFFFFFFFE, 4) + "abc");
    const auto header = parse(file.bytes());
    ASSERT_TRUE(header);
    EXPECT_EQ(header->find(0x00104000), nullptr);
}

TEST(DicomParser, floodOfEmptyElementsTakesLittleMemoryAndTime)
{
    for (const std::string &element :
         {std::string("\x28\0\x03\1US\0\0", 8), std::string("\2\0\x10\0UI\0\0", 8)}) {
        std::string bytes(128, '\0');
        bytes += "DICM";
        for (int i = 0; i < 1000000; ++i)
            bytes += element;
        const auto header = parse(bytes);
        ASSERT_TRUE(header);
        EXPECT_LT(header->elements.size(), 100000U);
    }
}

TEST(DicomParser, valuesAreTextOfTheirRepresentation)
{
    DicomFileBuilder file;
    file.text(0x00080005, "CS", "ISO_IR 100");
    file.text(0x00100010, "PN", "M\xFCller^J\xF6rg ");
    file.text(0x00080018, "UI", "1.2.3");
    file.numbers(0x00280009, "AT", {0x0018, 0x1063}, 2);
    file.numbers(0x00280106, "SS", {0xFFFE}, 2);
    file.numbers(0x00283002, "US", {256, 0, 16}, 2);
    file.numbers(0x00082128, "SL", {0xFFFFFFFF}, 4);
    file.numbers(0x00189098, "FD", {0x4050000000000000}, 8); // 64.0
    file.numbers(0x00091001, "OB", {1, 2, 3, 4}, 1);
    file.numbers(0x00091002, "UN", {1, 2, 3, 4}, 1);
    file.text(0x00091003, "UN", "private text");
    file.text(0x00104000, "LT", "");
    const auto header = parse(file.bytes());
    ASSERT_TRUE(header);
    EXPECT_EQ(header->text(tags::patientName), "M\xC3\xBCller^J\xC3\xB6rg");
    EXPECT_EQ(header->text(0x00080018), "1.2.3");
    EXPECT_EQ(header->text(0x00280009), "(0018,1063)");
    EXPECT_EQ(header->text(0x00280106), "-2");
    EXPECT_EQ(header->text(0x00283002), "256\\0\\16");
    EXPECT_EQ(header->text(0x00082128), "-1");
    EXPECT_EQ(header->text(0x00189098), "64");
    EXPECT_EQ(header->text(0x00091001), "gdcm::Binary data loaded");
    EXPECT_EQ(header->text(0x00091002), "gdcm::Binary data loaded");
    EXPECT_EQ(header->text(0x00091003), "private text");
    EXPECT_EQ(header->text(0x00104000), "");
    EXPECT_EQ(header->text(0x00104001), "");
}

TEST(DicomParser, textInUtf8IsKept)
{
    DicomFileBuilder file;
    file.text(0x00080005, "CS", "ISO_IR 192");
    file.text(0x00100010, "PN", "M\xC3\xBCller\xFF");
    EXPECT_EQ(parse(file.bytes())->text(tags::patientName), "M\xC3\xBCller\xC3\xBF");
}

TEST(DicomDictionary, namesOfKnownAndUnknownTags)
{
    EXPECT_EQ(tagName(tags::patientName), "Patient's Name");
    EXPECT_EQ(tagName(tags::echoTime), "Echo Time");
    EXPECT_EQ(tagName(tags::sliceLocation), "Slice Location");
    EXPECT_EQ(tagName(tags::seriesDescription), "Series Description");
    EXPECT_EQ(tagName(0x0018FFFE), "gdcm::Unknown (0018, FFFE)");
    EXPECT_EQ(tagName(0x00191ABC), "gdcm::Unknown (0019, 1ABC)");
    EXPECT_EQ(tagName(0x00190010), "gdcm::Unknown (0019, 0010)");
}

TEST(DicomNumbers, listsOfNumbers)
{
    using Numbers = std::vector<double>;
    EXPECT_EQ(parseNumbers("1.5\\-2\\ +3e1 "), (Numbers{1.5, -2, 30}));
    EXPECT_EQ(parseNumbers(""), Numbers{});
    EXPECT_EQ(parseNumbers("abc"), Numbers{});
    EXPECT_EQ(parseNumbers("1\\x\\3"), Numbers{1});
    EXPECT_EQ(parseNumbers("nan"), Numbers{});
    EXPECT_EQ(parseNumbers("1\\inf"), Numbers{1});
    EXPECT_EQ(parseNumbers("1e999"), Numbers{});
    EXPECT_EQ(parseNumbers("1,5"), Numbers{1});
}

namespace {

DicomHeader headerWith(const std::vector<std::pair<std::uint32_t, std::string>> &texts)
{
    DicomFileBuilder file;
    file.text(0x00080008, "CS", "ORIGINAL");
    for (const auto &[tag, value] : texts)
        file.text(tag, "DS", value);
    return *parse(file.bytes());
}

} // namespace

TEST(DicomGeometry, pixelSpacingIsRowDistanceThenColumnDistance)
{
    const DicomHeader header = headerWith({{0x00280030, "0.5\\0.25"}});
    EXPECT_EQ(xSpacing(header), 0.25);
    EXPECT_EQ(ySpacing(header), 0.5);
}

TEST(DicomGeometry, pixelSpacingFallbacks)
{
    EXPECT_EQ(xSpacing(headerWith({})), 1.0);
    EXPECT_EQ(ySpacing(headerWith({})), 1.0);
    EXPECT_EQ(xSpacing(headerWith({{0x00280030, "0.5"}})), 0.5);
    EXPECT_EQ(ySpacing(headerWith({{0x00280030, "0.5"}})), 0.5);
    EXPECT_EQ(xSpacing(headerWith({{0x00280030, "0\\0"}})), 1.0);
    EXPECT_EQ(ySpacing(headerWith({{0x00280030, "0\\0"}})), 1.0);
    const DicomHeader both = headerWith({{0x00181164, "0.7\\0.8"}, {0x00280030, "0.5\\0.25"}});
    EXPECT_EQ(xSpacing(both), 0.8);
    EXPECT_EQ(ySpacing(both), 0.7);
}

TEST(DicomGeometry, perFrameSpacingWins)
{
    DicomFileBuilder measures;
    measures.text(0x00180050, "DS", "2");
    measures.text(0x00280030, "DS", "0.3\\0.4");
    DicomFileBuilder group;
    group.us(0x00280010, 5);
    group.raw(0x00289110, "SQ", openSequence(openItem(measures.dataSet())));
    DicomFileBuilder file = dicomSlice(2, 1, {1, 2}, 0);
    file.raw(0x52009230, "SQ", openSequence(openItem(group.dataSet()) + item("")));
    const auto header = parse(file.bytes());
    ASSERT_TRUE(header);
    EXPECT_EQ(xSpacing(*header), 0.4);
    EXPECT_EQ(ySpacing(*header), 0.3);
    EXPECT_TRUE(header->isImage());
}

TEST(DicomGeometry, sliceSpacingFallbacks)
{
    EXPECT_EQ(zSpacing(headerWith({})), 1.0);
    EXPECT_EQ(zSpacing(headerWith({{0x00180050, "3"}})), 3.0);
    EXPECT_EQ(zSpacing(headerWith({{0x00180050, "3"}, {0x00180088, "4"}})), 4.0);
    EXPECT_EQ(zSpacing(headerWith({{0x00180050, "3"}, {0x00180088, "0"}})), 1.0);
    EXPECT_EQ(zSpacing(headerWith({{0x00180050, "3"}, {0x00180088, ""}})), 3.0);
}

TEST(DicomGeometry, originFallbacks)
{
    EXPECT_EQ(origin(headerWith({})), (Vector{0, 0, 0}));
    EXPECT_EQ(origin(headerWith({{0x00200050, "5"}})), (Vector{0, 0, 5}));
    EXPECT_EQ(origin(headerWith({{0x00200050, "5"}, {0x00201041, "6"}})), (Vector{0, 0, 6}));
    EXPECT_EQ(origin(headerWith({{0x00200030, "1\\2\\3"}, {0x00201041, "6"}})), (Vector{1, 2, 3}));
    EXPECT_EQ(origin(headerWith({{0x00200030, "1\\2\\3"}, {0x00200032, "4\\5\\6"}})), (Vector{4, 5, 6}));
    EXPECT_EQ(origin(headerWith({{0x00200032, "4\\5"}, {0x00201041, "6"}})), (Vector{0, 0, 0}));
}
