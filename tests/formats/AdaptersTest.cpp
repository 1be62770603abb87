#include "serialization/formats/AnalyzeSerializer.h"
#include "serialization/formats/AnalyzeUnserializer.h"
#include "serialization/formats/DcmUnserializer.h"
#include "serialization/formats/EdgePointLister.h"
#include "serialization/formats/InteractiveDicomUnserializer.h"
#include "serialization/formats/MhdSerializer.h"
#include "serialization/formats/MhdUnserializer.h"
#include "serialization/formats/SlicSerializer.h"
#include "serialization/formats/SlicUnserializer.h"
#include "serialization/formats/TextSerializer.h"
#include "serialization/formats/TextSlicSerializer.h"
#include "serialization/formats/VisSerializer.h"
#include "serialization/formats/VisUnserializer.h"
#include "serialization/formats/WindowsBitmapSerializer.h"
#include "serialization/formats/WindowsBitmapUnserializer.h"

#include "Common/Progress.h"
#include "contours/EdgePointSet.h"
#include "contours/SlicedContoursObject.h"
#include "objects/MervImageObject.h"
#include "objects/SparselySampledImageObject.h"
#include "tests/support/DicomFileBuilder.h"
#include "tests/support/TestData.h"
#include "tests/support/TestVolume.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

namespace {

std::unique_ptr<MervImageObject> newObject(std::unique_ptr<MERV::Image> image, const QString &label = "label")
{
    auto object = std::make_unique<MervImageObject>(image.release(), QString(), nullptr);
    object->setLabel(label);
    return object;
}

// A volume of shorts with the value x + 10 y + 100 z.
std::unique_ptr<MervImageObject> newNumberedObject(int width, int height, int depth)
{
    return newObject(newVolume(MERV::TypeShort, {width, height, depth},
                               [](int x, int y, int z) { return x + 10 * y + 100 * z; }));
}

class FilesTest : public ::testing::Test
{
protected:
    QString path(const QString &name) const { return folder.filePath(name); }
    QString newFile(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        return file.fileName();
    }
    template <class Reader>
    static bool can(Reader &reader, const QString &path)
    {
        return reader.canUnserialize(path.toStdWString().c_str());
    }
    template <class Reader>
    static std::unique_ptr<MervImageObject> read(Reader &reader, const QString &path)
    {
        ImageObject *object = reader.unserialize(path.toStdWString().c_str());
        auto *volume = dynamic_cast<MervImageObject *>(object);
        EXPECT_EQ(object, volume);
        EXPECT_TRUE(volume == nullptr || volume->parent() == nullptr);
        return std::unique_ptr<MervImageObject>(volume);
    }

    QTemporaryDir folder;
};

struct WriterRow
{
    AbstractImageObjectSerializer &writer;
    const char *name, *mimeType, *extension;
    // whether it takes a volume, contours, samples, a set of edge points, another object
    std::array<bool, 5> accepts;
};

struct ReaderRow
{
    AbstractImageObjectUnserializer &reader;
    const char *name, *mimeType, *extension;
};

} // namespace

TEST(Serializers, haveTheirNamesAndKinds)
{
    VisSerializer vis;
    SlicSerializer slic;
    TextSlicSerializer textSlic;
    TextSerializer text;
    EdgePointLister edges;
    AnalyzeSerializer analyze;
    MhdSerializer mhd;
    WindowsBitmapSerializer bitmap;
    const std::vector<WriterRow> rows{
        {vis,
         "Tallowbrook VIS format",
         "application/x-tallowbrook-vis",
         "vis",
         {true, false, false, false, false}},
        {slic,
         "Sliced Contours",
         "application/x-sliced-contours",
         "slic",
         {false, true, false, false, false}},
        {textSlic, "Text file", "text/tab-separated-values", "txt", {false, true, false, false, false}},
        {text, "Text (tab separated values)", "text/plain", "txt", {false, false, true, false, false}},
        {edges, "Text file", "text/tab-separated-values", "txt", {false, false, false, true, false}},
        {analyze, "Analyze file", "application/x-analyze", "hdr", {true, false, false, false, false}},
        {mhd, "MetaImage file", "application/x-meta-image", "mhd", {true, false, false, false, false}},
        {bitmap, "Windows bitmap", "image/bmp", "bmp", {true, false, false, false, false}},
    };
    const auto volume = newNumberedObject(4, 4, 1);
    SlicedContoursObject contours;
    SparselySampledImageObject samples;
    EdgePointSet points;
    ImageObject other("T1/T2", nullptr);
    MervImageObject withoutVoxels(nullptr, QString(), nullptr);
    const std::array<ImageObject *, 5> objects{volume.get(), &contours, &samples, &points, &other};
    for (const WriterRow &row : rows) {
        EXPECT_EQ(row.writer.name(), row.name);
        EXPECT_EQ(row.writer.mimeType(), row.mimeType) << row.name;
        EXPECT_EQ(row.writer.extension(), row.extension) << row.name;
        EXPECT_EQ(row.writer.defaultName(&other), "T1/T2") << row.name;
        for (std::size_t i = 0; i < objects.size(); ++i)
            EXPECT_EQ(row.writer.canSerialize(objects[i]), row.accepts[i]) << row.name << i;
        EXPECT_FALSE(row.writer.canSerialize(nullptr)) << row.name;
        EXPECT_FALSE(row.writer.canSerialize(&withoutVoxels)) << row.name;
    }
}

TEST(Serializers, ofStreams_refuseTheWrongClassAndFailedStreams_writingNothing)
{
    VisSerializer vis;
    SlicSerializer slic;
    TextSlicSerializer textSlic;
    TextSerializer text;
    EdgePointLister edges;
    WindowsBitmapSerializer bitmap;
    const auto volume = newNumberedObject(4, 4, 1);
    SlicedContoursObject contours;
    SparselySampledImageObject samples;
    ImageObject other("other", nullptr);
    for (StreamImageObjectSerializer *writer : std::initializer_list<StreamImageObjectSerializer *>{
             &vis, &slic, &textSlic, &text, &edges, &bitmap}) {
        std::ostringstream good;
        EXPECT_FALSE(writer->serialize(&other, good));
        EXPECT_FALSE(writer->serialize(nullptr, good));
        EXPECT_EQ(good.str(), "");
        for (ImageObject *object : std::initializer_list<ImageObject *>{volume.get(), &contours, &samples}) {
            std::ostringstream failed;
            failed.setstate(std::ios::failbit);
            EXPECT_FALSE(writer->serialize(object, failed));
            EXPECT_EQ(failed.str(), "");
        }
    }
}

TEST(Unserializers, haveTheirNames)
{
    InteractiveDicomUnserializer series;
    SlicUnserializer slic;
    DcmUnserializer dicom;
    MhdUnserializer mhd;
    AnalyzeUnserializer analyze;
    VisUnserializer vis([](const auto &) { return std::nullopt; });
    WindowsBitmapUnserializer bitmap;
    const std::vector<ReaderRow> rows{
        {series, "Dicom Series", "application/x-dicom-series", "dcm"},
        {slic, "Sliced Contours", "application/x-sliced-contours", "slic"},
        {dicom, "Dicom file", "application/dicom", "dcm"},
        {mhd, "MetaImage file", "application/x-meta-image", "mhd"},
        {analyze, "Analyze file", "application/x-analyze", "hdr"},
        {vis, "Tallowbrook VIS format", "application/x-tallowbrook-vis", "vis"},
        {bitmap, "Windows bitmap", "image/bmp", "bmp"},
    };
    for (const ReaderRow &row : rows) {
        EXPECT_EQ(row.reader.name(), row.name);
        EXPECT_EQ(row.reader.mimeTypes(), QStringList({row.mimeType})) << row.name;
        EXPECT_EQ(row.reader.extensions(), QStringList({row.extension})) << row.name;
    }
    PurelyInteractiveImageObjectUnserializer &interactive = series;
    EXPECT_EQ(interactive.unattendedObjectCount(), 0);
}

TEST_F(FilesTest, suffixReaders_wantTheExactSuffixAndTenBytes)
{
    MhdUnserializer mhd;
    AnalyzeUnserializer analyze;
    WindowsBitmapUnserializer bitmap;
    const auto check = [&](auto &reader, const QString &suffix) {
        EXPECT_TRUE(can(reader, newFile("a." + suffix, QByteArray(10, 'x')))) << suffix.toStdString();
        EXPECT_TRUE(can(reader, newFile("knee.left." + suffix, QByteArray(11, 'x'))));
        EXPECT_FALSE(can(reader, newFile("a." + suffix, QByteArray(9, 'x'))));
        EXPECT_FALSE(can(reader, newFile("A." + suffix.toUpper(), QByteArray(10, 'x'))));
        EXPECT_FALSE(can(reader, newFile("a." + suffix + ".gz", QByteArray(10, 'x'))));
        EXPECT_FALSE(can(reader, newFile(suffix, QByteArray(10, 'x')))); // no suffix at all
        EXPECT_FALSE(can(reader, path("missing." + suffix)));
        EXPECT_TRUE(QDir(folder.path()).mkpath("folder." + suffix));
        EXPECT_FALSE(can(reader, path("folder." + suffix)));
        EXPECT_EQ(read(reader, newFile("bad." + suffix, QByteArray(100, 'x'))), nullptr);
        EXPECT_EQ(read(reader, path("missing." + suffix)), nullptr);
    };
    check(mhd, "mhd");
    check(analyze, "hdr");
    check(bitmap, "bmp");
}

TEST_F(FilesTest, metaImage_isReadBack)
{
    const auto volume = newNumberedObject(3, 4, 5);
    volume->voxels()->setSpacing(0.5f, 0.25f, 3, 1);
    MhdSerializer writer;
    MhdUnserializer reader;
    // Umlauts and other scripts; the base name is what stands before the first dot.
    for (const char *name : {"knee.mhd", "Knie äöü 膝.left.mhd", "upper.MHD"}) {
        const QString file = path(name);
        ASSERT_TRUE(writer.serialize(volume.get(), file.toStdWString().c_str())) << name;
        const QString header = file.endsWith(".MHD") ? path("upper.mhd") : file;
        ASSERT_TRUE(can(reader, header)) << name;
        const auto back = read(reader, header);
        ASSERT_NE(back, nullptr) << name;
        EXPECT_EQ(back->voxels()->getWidth(), 3);
        EXPECT_EQ(back->voxels()->getDepth(), 5);
        EXPECT_EQ(back->voxels()->getSpacing(2), 3.0f);
        EXPECT_EQ(back->voxels()->getVoxel(2, 3, 4, 0, 0), 432.0f);
        EXPECT_EQ(back->label(), QString(name).section('.', 0, 0));
        EXPECT_EQ(back->filePath(), back->label()); // the name, not the path
    }
    EXPECT_FALSE(QFile::exists(path("upper.MHD")));
}

TEST_F(FilesTest, analyze_isWrittenUnderTheBaseName)
{
    const auto volume = newNumberedObject(3, 4, 5);
    AnalyzeSerializer writer;
    AnalyzeUnserializer reader;
    ASSERT_TRUE(writer.serialize(volume.get(), path("A.HDR").toStdWString().c_str()));
    EXPECT_TRUE(QFile::exists(path("A.hdr")));
    EXPECT_TRUE(QFile::exists(path("A.img")));
    EXPECT_FALSE(QFile::exists(path("A.HDR")));
    QFile::copy(path("A.hdr"), path("B.HDR"));
    EXPECT_FALSE(can(reader, path("B.HDR")));
    ASSERT_TRUE(can(reader, path("A.hdr")));
    const auto back = read(reader, path("A.hdr"));
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->label(), "A");
    EXPECT_EQ(back->voxels()->getVoxel(2, 3, 4, 0, 0), 432.0f);
    // Another extension stays part of the name.
    ASSERT_TRUE(writer.serialize(volume.get(), path("Ä膝 b.txt").toStdWString().c_str()));
    EXPECT_NE(read(reader, path("Ä膝 b.txt.hdr")), nullptr);
}

TEST_F(FilesTest, fileSystemSerializers_refuseOtherObjectsAndImpossiblePaths)
{
    MhdSerializer mhd;
    AnalyzeSerializer analyze;
    const auto volume = newNumberedObject(3, 4, 5);
    ImageObject other("other", nullptr);
    MervImageObject withoutVoxels(nullptr, QString(), nullptr);
    for (FileSystemImageObjectSerializer *writer :
         std::initializer_list<FileSystemImageObjectSerializer *>{&mhd, &analyze}) {
        for (ImageObject *object : std::initializer_list<ImageObject *>{&other, &withoutVoxels, nullptr})
            EXPECT_FALSE(writer->serialize(object, path("never").toStdWString().c_str()));
        EXPECT_FALSE(writer->serialize(volume.get(), path("no/such/folder/a").toStdWString().c_str()));
    }
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST(VisSerializer, isReadBackByTheReader_whichAsksForTheVoxelSize)
{
    const auto volume = newObject(
        newVolume(MERV::TypeUChar, {4, 3, 2}, [](int x, int y, int z) { return 10 * (x + 4 * y + 12 * z); }));
    volume->voxels()->setWindowRange(0, 255, 0);
    std::stringstream stream;
    VisSerializer writer;
    ASSERT_TRUE(writer.serialize(volume.get(), stream));
    const std::string bytes = stream.str();
    ASSERT_EQ(bytes.size(), 512u + 24u);
    std::array<int, 3> asked{};
    VisUnserializer reader([&](const std::array<int, 3> &counts) {
        asked = counts;
        return std::optional(std::array<float, 3>{0.5f, 0.0f, 2.0f});
    });
    EXPECT_TRUE(reader.canUnserialize((bytes + std::string(1024, '\0')).data()));
    const std::unique_ptr<ImageObject> object(reader.unserialize(stream));
    const auto *back = dynamic_cast<MervImageObject *>(object.get());
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(asked, (std::array<int, 3>{4, 3, 2}));
    EXPECT_EQ(back->voxels()->getSpacing(0), 0.5f);
    EXPECT_EQ(back->voxels()->getSpacing(1), 0.0f); // accepted as it is
    EXPECT_EQ(back->voxels()->getSpacing(2), 2.0f);
    EXPECT_EQ(back->voxels()->getSpacing(3), 1.0f);
    EXPECT_EQ(back->voxels()->getVoxel(3, 2, 1, 0, 0), 230.0f);
    EXPECT_EQ(back->label(), "Unnamed Image"); // not the name of the file
    EXPECT_TRUE(back->filePath().isNull());
    EXPECT_EQ(back->parent(), nullptr);
}

// The user may take a minute for the answer, which is no time that the load takes.
TEST(VisSerializer, questionForTheVoxelSizeIsAPauseBetweenReadingAndPictures)
{
    class Course : public MERV::ProgressListener
    {
    public:
        void progressed(double fraction) override { text += fraction < 0.86 ? "r" : "p"; }
        void paused() override { text += "("; }
        void resumed() override { text += ")"; }
        std::string text;
    };
    const auto volume = newObject(newVolume(MERV::TypeUChar, {4, 3, 2}, [](int, int, int) { return 1; }));
    std::stringstream stream;
    VisSerializer writer;
    ASSERT_TRUE(writer.serialize(volume.get(), stream));
    Course course;
    VisUnserializer reader([&](const auto &) {
        course.text += "?";
        return std::optional(std::array<float, 3>{1.0f, 1.0f, 1.0f});
    });
    const std::unique_ptr<ImageObject> object(reader.unserialize(stream));
    ASSERT_NE(object, nullptr);
    const std::size_t question = course.text.find("(?)pp"); // two slices
    ASSERT_NE(question, std::string::npos) << course.text;
    EXPECT_GT(question, 0u);
    EXPECT_EQ(course.text.substr(0, question), std::string(question, 'r'));
}

TEST(VisSerializer, titleIsTheLabelInTheLocalEncoding)
{
    const auto volume = newObject(newVolume(MERV::TypeUChar, {2, 2, 1}), "Knie ä");
    std::ostringstream stream;
    VisSerializer writer;
    ASSERT_TRUE(writer.serialize(volume.get(), stream));
    EXPECT_NE(stream.str().find("Knie \xC3\xA4"), std::string::npos);
}

TEST(VisUnserializer, cancelledQuestion_failsTheLoad)
{
    const auto volume = newObject(newVolume(MERV::TypeUChar, {2, 2, 1}));
    std::stringstream stream;
    VisSerializer writer;
    ASSERT_TRUE(writer.serialize(volume.get(), stream));
    VisUnserializer reader([](const auto &) { return std::nullopt; });
    EXPECT_EQ(reader.unserialize(stream), nullptr);
}

TEST(VisUnserializer, damagedStream_isNotAskedAbout)
{
    const auto volume = newObject(newVolume(MERV::TypeUChar, {4, 4, 4}));
    std::ostringstream whole;
    VisSerializer writer;
    ASSERT_TRUE(writer.serialize(volume.get(), whole));
    int questions = 0;
    VisUnserializer reader([&](const auto &) {
        ++questions;
        return std::optional(std::array<float, 3>{1, 1, 1});
    });
    for (const std::size_t length : {0u, 1u, 100u, 511u, 512u, 512u + 63u}) {
        std::istringstream stream(whole.str().substr(0, length));
        EXPECT_EQ(reader.unserialize(stream), nullptr) << length;
    }
    EXPECT_EQ(questions, 0);
}

TEST(VisUnserializer, wantsFiveWordsOfTheHead)
{
    VisUnserializer reader([](const auto &) { return std::nullopt; });
    std::string head(1024, '\0');
    head.replace(0, 4, "\x15\xCD\x5B\x07"); // 123456789
    head[12] = 1;
    head[32] = 1;
    head[52] = 1;
    EXPECT_TRUE(reader.canUnserialize(head.data()));
    for (const std::size_t offset : {0u, 3u, 12u, 15u, 32u, 36u, 39u, 52u}) {
        std::string other = head;
        other[offset] = static_cast<char>(other[offset] + 1);
        EXPECT_FALSE(reader.canUnserialize(other.data())) << offset;
    }
    for (const std::size_t offset : {4u, 8u, 16u, 28u, 40u, 48u, 56u}) {
        std::string other = head;
        other[offset] = 'x';
        EXPECT_TRUE(reader.canUnserialize(other.data())) << offset;
    }
}

TEST_F(FilesTest, dicom_isToldByItsSuffixOrItsMagic)
{
    DcmUnserializer reader;
    const QByteArray magic = QByteArray(128, '\0') + "DICM";
    EXPECT_TRUE(can(reader, newFile("a.dcm", QByteArray(132, 'x')))); // with no look at the content
    EXPECT_FALSE(can(reader, newFile("b.dcm", QByteArray(131, 'x'))));
    EXPECT_TRUE(can(reader, newFile("IM0001", magic)));
    EXPECT_TRUE(can(reader, newFile("a.DCM", magic)));
    EXPECT_FALSE(can(reader, newFile("b.DCM", QByteArray(132, 'x')))); // another suffix
    EXPECT_FALSE(can(reader, newFile("IM0002", magic.first(131))));
    EXPECT_FALSE(can(reader, newFile("IM0003", QByteArray(128, '\0') + "DICN")));
    EXPECT_FALSE(can(reader, path("missing.dcm")));
    EXPECT_TRUE(QDir(folder.path()).mkpath("folder.dcm"));
    EXPECT_FALSE(can(reader, path("folder.dcm")));
    // A path that the 8-bit encoding cannot express: half of a surrogate pair.
    EXPECT_FALSE(can(reader, path("a.dcm") + QChar(0xD83E)));
    EXPECT_EQ(read(reader, path("a.dcm")), nullptr);
}

TEST_F(FilesTest, dicomFile_isReadAndNamed)
{
    DicomFileBuilder builder;
    builder.text(0x0020'000E, "UI", "1.2.3");
    builder.us(0x0028'0002, 1);
    builder.text(0x0028'0004, "CS", "MONOCHROME2");
    builder.us(0x0028'0010, 2);
    builder.us(0x0028'0011, 3);
    builder.text(0x0028'0030, "DS", "0.5\\0.25");
    builder.us(0x0028'0100, 16);
    builder.us(0x0028'0101, 16);
    builder.us(0x0028'0102, 15);
    builder.us(0x0028'0103, 0);
    builder.numbers(0x7FE0'0010, "OW", {1, 2, 3, 4, 5, 6}, 2);
    const QString file = path("Knie ä膝.left.dcm");
    builder.write(file.toStdString());
    DcmUnserializer reader;
    ASSERT_TRUE(can(reader, file));
    testing::internal::CaptureStdout();
    const auto object = read(reader, file);
    EXPECT_EQ(testing::internal::GetCapturedStdout().rfind("File Name :[" + file.toStdString() + "]", 0), 0u);
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->label(), "Knie ä膝");
    EXPECT_EQ(object->voxels()->getWidth(), 3);
    EXPECT_EQ(object->voxels()->getSpacing(0), 0.25f); // the tag gives row and column distance in this order
}

TEST(WindowsBitmapSerializer, isOfferedForMultiplesOf4)
{
    WindowsBitmapSerializer writer;
    EXPECT_TRUE(writer.canSerialize(newNumberedObject(4, 8, 3).get()));
    EXPECT_FALSE(writer.canSerialize(newNumberedObject(250, 256, 1).get()));
    EXPECT_FALSE(writer.canSerialize(newNumberedObject(256, 250, 1).get()));
    MervImageObject empty(MERV::createImage(MERV::TypeUChar), QString(), nullptr);
    EXPECT_FALSE(writer.canSerialize(&empty));
}

TEST(WindowsBitmapSerializer, writes1090BytesForA4By4Image)
{
    // Values 0 to 15 rowwise, other slices and channels differ; window from 2 to 12.
    const auto object = newObject(newVolume(MERV::TypeShort, {4, 4, 2, 1, 2}));
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 4; ++x) {
            object->voxels()->setVoxel(static_cast<float>(x + 4 * y), x, y, 0, 0, 0);
            object->voxels()->setVoxel(7, x, y, 1, 0, 0);
            object->voxels()->setVoxel(9, x, y, 0, 0, 1);
        }
    }
    object->voxels()->setWindowRange(2, 12, 0);
    std::ostringstream stream;
    WindowsBitmapSerializer writer;
    ASSERT_TRUE(writer.serialize(object.get(), stream));

    std::string expected("BM");
    const auto word = [&](unsigned value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            expected += static_cast<char>(value >> (8 * i) & 0xFF);
    };
    word(1076 + 16, 4); // file size, 2 too large
    word(0, 2);
    word(0, 2);
    word(1076, 4); // offset of the pixels, 2 too large
    word(40, 4);
    word(4, 4);
    word(4, 4);
    word(1, 2);
    word(8, 2);
    word(0, 4);
    word(16, 4);
    word(1000, 4); // horizontal pixels per metre; the vertical ones are missing
    word(0, 4);
    word(0, 4);
    ASSERT_EQ(expected.size(), 50u);
    for (unsigned grey = 0; grey < 256; ++grey)
        word(grey | grey << 8 | grey << 16, 4);
    ASSERT_EQ(expected.size(), 1074u);
    // (v - 2) / 10 * 255 cut off: 3 -> 25.5, 4 -> 51, 5 -> 76.5, 6 -> 102, 7 -> 127.5, 8 -> 153, 9 -> 178.5,
    // 10 -> 204, 11 -> 229.5, 12 and above -> 255. In single precision 0.6 and 0.2 lie a little above.
    for (const unsigned byte :
         {0u, 0u, 0u, 25u, 51u, 76u, 102u, 127u, 153u, 178u, 204u, 229u, 255u, 255u, 255u, 255u})
        word(byte, 1);
    EXPECT_EQ(stream.str().size(), 1090u);
    EXPECT_EQ(stream.str(), expected);
}

TEST(WindowsBitmapSerializer, valueAtTheEndsOfTheWindow)
{
    const auto object = newObject(newVolume(MERV::TypeFloat, {4, 4, 1}));
    const float values[] = {10.0f, 30.0f, 1e30f, -1e30f, std::numeric_limits<float>::quiet_NaN()};
    for (int i = 0; i < 4; ++i)
        object->voxels()->setVoxel(values[i], i, 0, 0, 0, 0);
    object->voxels()->setVoxel(values[4], 0, 1, 0, 0, 0);
    object->voxels()->setWindowRange(10, 30, 0);
    std::ostringstream stream;
    WindowsBitmapSerializer writer;
    ASSERT_TRUE(writer.serialize(object.get(), stream));
    EXPECT_EQ(stream.str().substr(1074, 5), std::string("\x00\xFF\xFF\x00\x00", 5));
}

TEST(WindowsBitmapSerializer, windowOfNoWidth_isBlackAndWhite)
{
    const auto object = newObject(newVolume(MERV::TypeShort, {4, 4, 1}, [](int x, int, int) { return x; }));
    object->voxels()->setWindowRange(1, 1, 0);
    std::ostringstream stream;
    WindowsBitmapSerializer writer;
    ASSERT_TRUE(writer.serialize(object.get(), stream));
    EXPECT_EQ(stream.str().substr(1074, 4), std::string("\x00\x00\xFF\xFF", 4)); // 0 / 0 is black
}

// The offset field points 2 bytes behind the first pixel, so that the picture comes back shifted by two.
TEST_F(FilesTest, ownBitmap_isReadBackShiftedByTwoPixels)
{
    const auto object =
        newObject(newVolume(MERV::TypeUChar, {4, 4, 1}, [](int x, int y, int) { return 10 * (x + 4 * y); }));
    object->voxels()->setWindowRange(0, 255, 0);
    std::ostringstream stream;
    WindowsBitmapSerializer writer;
    ASSERT_TRUE(writer.serialize(object.get(), stream));
    const QString file = newFile("Ü膝.bmp", QByteArray::fromStdString(stream.str()));
    WindowsBitmapUnserializer reader;
    ASSERT_TRUE(can(reader, file));
    const auto back = read(reader, file);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->label(), "Ü膝");
    EXPECT_EQ(back->voxels()->getWidth(), 4);
    EXPECT_EQ(back->voxels()->getVoxel(0, 0, 0, 0, 0), 20.0f);
    EXPECT_EQ(back->voxels()->getVoxel(3, 2, 0, 0, 0), 130.0f);
    EXPECT_EQ(back->voxels()->getVoxel(1, 3, 0, 0, 0), 150.0f);
    EXPECT_EQ(back->voxels()->getVoxel(2, 3, 0, 0, 0), 0.0f); // what is missing at the end is 0
    EXPECT_EQ(back->voxels()->getVoxel(3, 3, 0, 0, 0), 0.0f);
}

TEST_F(FilesTest, interactiveSeries_areDirectories)
{
    InteractiveDicomUnserializer reader;
    EXPECT_TRUE(can(reader, folder.path()));
    EXPECT_FALSE(can(reader, newFile("a.dcm", QByteArray(200, 'x'))));
    EXPECT_FALSE(can(reader, path("missing")));
    EXPECT_EQ(reader.unserialize(path("missing").toStdWString().c_str()), nullptr); // without a dialog
}

TEST(RealFiles, ofOtherPrograms_loadOrAreRefused)
{
    const QString data = QString::fromStdString(testDataFolder());
    if (data.isEmpty())
        GTEST_SKIP() << "no test data";
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    int loaded = 0;
    const auto readAll = [&](FileSystemImageObjectUnserializer &reader, const QString &folder) {
        for (const QFileInfo &file : QDir(folder).entryInfoList(QDir::Files)) {
            const std::wstring path = file.filePath().toStdWString();
            if (!reader.canUnserialize(path.c_str()))
                continue;
            const std::unique_ptr<ImageObject> object(reader.unserialize(path.c_str()));
            loaded += object != nullptr ? 1 : 0;
            EXPECT_TRUE(object == nullptr || object->label() == file.baseName());
        }
    };
    MhdUnserializer mhd;
    AnalyzeUnserializer analyze;
    WindowsBitmapUnserializer bitmap;
    readAll(mhd, data + "/metaimage/itk-examples");
    readAll(analyze, data + "/analyze/nibabel");
    for (const char *kind : {"g", "q", "b", "x"})
        readAll(bitmap, data + "/bmp/bmpsuite/" + kind);
    testing::internal::GetCapturedStdout();
    testing::internal::GetCapturedStderr();
    EXPECT_GT(loaded, 0);
}
