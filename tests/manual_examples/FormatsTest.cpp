#include "Common/Image.h"
#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/metrics/SlicedMetricsModel.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshFragment.h"
#include "objects/MervImageObject.h"
#include "objects/manager/MetricsText.h"
#include "serialization/dicom/DicomExport.h"
#include "serialization/dicom/DicomLoader.h"
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
#include "tests/manual_examples/WorkedStack.h"
#include "tests/support/Files.h"
#include "tests/support/ManualText.h"
#include "tests/support/TestVolume.h"

#include <QDir>
#include <QLocale>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <sstream>
#include <thread>

// The page on file formats: each example in it is what the program writes, and is read back.
namespace {

std::string page()
{
    return manual::page("formats.md");
}

// "0018  4E 00 ...   what it means": the bytes; the offset in front must be right.
std::string dumpedBytes()
{
    std::string bytes;
    for (const std::string &line : manual::block(page(), "slic bytes")) {
        EXPECT_EQ(std::stoul(line.substr(0, 4), nullptr, 16), bytes.size()) << line;
        for (std::size_t at = 6; at + 2 <= line.size() && line[at] != ' '; at += 3)
            bytes += static_cast<char>(std::stoi(line.substr(at, 2), nullptr, 16));
    }
    return bytes;
}

// Where the identities of the object, its fragment, its segment and its contour stand in the example, and the
// reference to the fragment.
constexpr std::size_t objectIdentity = 0x08, fragmentIdentity = 0x40, segmentIdentity = 0x78,
                      contourIdentity = 0x130, reference = 0x178;

// The bytes with the addresses that name the chunks replaced by the numbers of the example.
std::string withNumbers(std::string bytes)
{
    const std::string referred = bytes.substr(reference, 8);
    EXPECT_EQ(referred, bytes.substr(fragmentIdentity, 8));
    std::map<std::string, char> numbers;
    for (const std::size_t at : {objectIdentity, fragmentIdentity, segmentIdentity, contourIdentity}) {
        const auto number = static_cast<char>(numbers.size() + 1);
        EXPECT_TRUE(numbers.emplace(bytes.substr(at, 8), number).second) << "an identity stands twice";
        bytes.replace(at, 8, std::string{number, 0, 0, 0, 0, 0, 0, 0});
    }
    return bytes.replace(reference, 8, std::string{numbers[referred], 0, 0, 0, 0, 0, 0, 0});
}

std::unique_ptr<SlicedContoursObject> smallKnee()
{
    auto knee = std::make_unique<SlicedContoursObject>("knee");
    SlicedContoursFragment *bone = knee->newFragment("bone");
    knee->newContour("part")->addFragmentReference(bone);
    drawn::line(bone, 0.75f, {{1.5, 2}, {4, 2.25}});
    return knee;
}

template <class Writer>
std::string written(ImageObject &object)
{
    std::ostringstream stream;
    Writer writer;
    EXPECT_TRUE(writer.serialize(&object, stream));
    return stream.str();
}

std::string exampleText(const std::string &example)
{
    return manual::withoutSigns(manual::blockText(page(), example));
}

} // namespace

TEST(SlicExample, isWhatTheSerializerWrites)
{
    const auto knee = smallKnee();
    EXPECT_EQ(withNumbers(written<SlicSerializer>(*knee)), dumpedBytes());
}

TEST(SlicExample, isReadBack)
{
    const std::string bytes = dumpedBytes();
    SlicUnserializer reader;
    std::istringstream stream(bytes);
    const std::unique_ptr<ImageObject> object(reader.unserialize(stream));
    const auto *knee = dynamic_cast<SlicedContoursObject *>(object.get());
    ASSERT_NE(knee, nullptr);
    EXPECT_EQ(knee->label(), "knee");
    ASSERT_EQ(knee->fragmentCount(), 1);
    ASSERT_EQ(knee->contourCount(), 1);
    EXPECT_EQ(knee->contour(0)->label(), "part");
    EXPECT_EQ(knee->contour(0)->fragment(0), knee->fragment(0));
    ASSERT_EQ(knee->fragment(0)->segmentCount(), 1);
    const SegmentSnapshot line = knee->fragment(0)->segment(0)->snapshot();
    EXPECT_EQ(line.z, 0.75f);
    EXPECT_EQ(line.points, (std::vector<QPointF>{{1.5, 2}, {4, 2.25}}));
}

TEST(SlicExample, isUnderstoodByTheRecipe)
{
    const QString python = QStandardPaths::findExecutable("python3");
    if (python.isEmpty())
        GTEST_SKIP() << "no python3";
    const QTemporaryDir folder;
    const QString recipe = folder.filePath("recipe.py"), file = folder.filePath("knee.slic");
    std::ofstream(recipe.toStdString()) << manual::blockText(page(), "slic recipe");
    std::ofstream(file.toStdString(), std::ios::binary) << dumpedBytes();
    QProcess run;
    run.start(python, {recipe, file});
    ASSERT_TRUE(run.waitForFinished());
    EXPECT_EQ(run.readAllStandardError().toStdString(), "");
    EXPECT_EQ(run.readAllStandardOutput().toStdString(), manual::blockText(page(), "slic outline"));
}

TEST(MetaImageExample, isWhatTheSerializerWrites)
{
    const QTemporaryDir folder;
    auto voxels = newVolume(MERV::TypeUShort, {3, 2, 2, 1, 1});
    voxels->setSpacing(0.3125f, 0.3125f, 1.5f, 1.0f);
    const std::array<float, 3> position{-40.5f, 12.0f, 7.25f};
    voxels->setPosition(position.data());
    voxels->setMetaData("Echo Time", "6");
    voxels->setMetaData("Patient's Name", "Phantom^Knee");
    MervImageObject volume(voxels.release(), "knee 1", nullptr);
    MhdSerializer writer;
    ASSERT_TRUE(writer.serialize(&volume, folder.filePath("knee 1.mhd").toStdWString().c_str()));
    EXPECT_EQ(contentOf(folder.filePath("knee 1.mhd").toStdString()), exampleText("metaimage header"));
    EXPECT_EQ(contentOf(folder.filePath("knee_1.raw").toStdString()), std::string(3 * 2 * 2 * 2, '\0'));

    MhdUnserializer reader;
    const std::unique_ptr<ImageObject> read(
        reader.unserialize(folder.filePath("knee 1.mhd").toStdWString().c_str()));
    const auto *again = dynamic_cast<MervImageObject *>(read.get());
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(again->voxels()->getMetaData("EchoTime"), " 6");
    EXPECT_EQ(again->voxels()->getPosition()[0], -40.5f);
}

// Another ending stays a part of the name.
TEST(EndingsOfNames, areAddedByMetaImageAndAnalyze)
{
    const QTemporaryDir folder;
    MervImageObject volume(newVolume(MERV::TypeUChar, {4, 2, 2, 1, 1}).release(), "mask", nullptr);
    const auto save = [&](FileSystemImageObjectSerializer &&writer, const char *name) {
        EXPECT_TRUE(writer.serialize(&volume, folder.filePath(name).toStdWString().c_str())) << name;
    };
    save(MhdSerializer(), "a");
    save(MhdSerializer(), "b.vis");
    save(MhdSerializer(), "c.MHD");
    save(AnalyzeSerializer(), "d.vis");
    save(AnalyzeSerializer(), "e.hdr");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files, QDir::Name).join(' ').toStdString(),
              "a.mhd a.raw b.vis.mhd b.vis.raw c.mhd c.raw d.vis.hdr d.vis.img e.hdr e.img");
}

TEST(TextExamples, contoursAreWhatTheSerializerWrites)
{
    EXPECT_EQ(written<TextSlicSerializer>(*smallKnee()), exampleText("contours text"));
}

TEST(TextExamples, samplesAreThoseOfTheWorkedCase)
{
    WorkedStack wedge(1.0, 5.0, false);
    SlicedContoursTriangulator meshes(&wedge.object);
    TriMeshDistanceMeasurer measurer(meshes.triangulationOf(wedge.bone),
                                     meshes.triangulationOf(wedge.surface), "thickness");
    for (int waited = 0; measurer.isPending() && waited < 1000; ++waited)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(written<TextSerializer>(measurer), exampleText("samples text"));
}

TEST(TextExamples, edgePointsAreThoseOfAStep)
{
    auto voxels =
        newVolume(MERV::TypeUChar, {6, 4, 1, 1, 1}, [](int x, int, int) { return x < 3 ? 0 : 255; });
    voxels->setSpacing(0.5f, 0.5f, 1.5f, 1.0f);
    MervImageObject step(voxels.release(), "step", nullptr);
    ConventionalSliceEdgePointExtractor extractor(&step);
    EXPECT_EQ(written<EdgePointLister>(extractor), exampleText("edge points text"));
}

TEST(TextExamples, metricsAreWhatIsWrittenBesideContours)
{
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    const auto knee = smallKnee();
    const SlicedMetricsModel model(knee.get());
    std::string wanted = exampleText("metrics text");
    wanted.pop_back(); // the line feed that only ends the block
    EXPECT_EQ(MetricsText::text(model).toStdString(), wanted);
}

TEST(FormatTables, nameTheWriters)
{
    const std::vector<manual::Row> rows = manual::table(page(), "writers");
    std::vector<std::unique_ptr<AbstractImageObjectSerializer>> writers;
    writers.push_back(std::make_unique<VisSerializer>());
    writers.push_back(std::make_unique<SlicSerializer>());
    writers.push_back(std::make_unique<TextSlicSerializer>());
    writers.push_back(std::make_unique<TextSerializer>());
    writers.push_back(std::make_unique<EdgePointLister>());
    writers.push_back(std::make_unique<AnalyzeSerializer>());
    writers.push_back(std::make_unique<MhdSerializer>());
    writers.push_back(std::make_unique<WindowsBitmapSerializer>());
    ASSERT_EQ(rows.size(), writers.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].at(0), '"' + writers[i]->name().toStdString() + '"');
        EXPECT_EQ(rows[i].at(1), '.' + writers[i]->extension().toStdString());
        EXPECT_EQ(rows[i].at(2), writers[i]->mimeType().toStdString());
    }
}

TEST(FormatTables, nameTheReaders)
{
    const std::vector<manual::Row> rows = manual::table(page(), "readers");
    std::vector<std::unique_ptr<AbstractImageObjectUnserializer>> readers;
    readers.push_back(std::make_unique<InteractiveDicomUnserializer>());
    readers.push_back(std::make_unique<SlicUnserializer>());
    readers.push_back(std::make_unique<DcmUnserializer>());
    readers.push_back(std::make_unique<MhdUnserializer>());
    readers.push_back(std::make_unique<AnalyzeUnserializer>());
    readers.push_back(std::make_unique<VisUnserializer>(nullptr));
    readers.push_back(std::make_unique<WindowsBitmapUnserializer>());
    ASSERT_EQ(rows.size(), readers.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].at(0), '"' + readers[i]->name().toStdString() + '"');
        EXPECT_EQ(rows[i].at(1), '.' + readers[i]->extensions().join(", .").toStdString());
    }
}

// Values in brackets differ from file to file.
TEST(FormatTables, nameTheTagsOfAnExportedSlice)
{
    const QTemporaryDir folder;
    auto voxels = newVolume(MERV::TypeUShort, {4, 2, 2, 1, 1},
                            [](int x, int y, int z) { return 1 + x + 4 * y + 8 * z; });
    voxels->setSpacing(0.25f, 0.5f, 2.0f, 1.0f);
    ASSERT_TRUE(dicom::saveDicomSeries(*voxels, folder.path().toStdString()));
    const std::string second = folder.filePath("slice0001.dcm").toStdString();
    std::map<std::string, std::string> exported;
    for (const dicom::TagValue &value : dicom::readTags(second)) {
        if (value.tag >> 16 == 0x0002) // what the library writes about the file
            continue;
        const QString tag = QString("(%1,%2)")
                                .arg(value.tag >> 16, 4, 16, QChar('0'))
                                .arg(value.tag & 0xFFFF, 4, 16, QChar('0'))
                                .toUpper();
        exported[tag.toStdString()] = value.value;
    }
    for (const manual::Row &row : manual::table(page(), "exported tags")) {
        ASSERT_EQ(exported.count(row.at(0)), 1u) << row.at(0);
        if (!row.at(3).starts_with('(')) {
            EXPECT_EQ(row.at(3), exported[row.at(0)]) << row.at(0);
        }
        exported.erase(row.at(0));
    }
    for (const auto &[tag, value] : exported)
        ADD_FAILURE() << "the manual leaves out " << tag << ' ' << value;
}
