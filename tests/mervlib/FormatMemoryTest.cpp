// Headers that lie about sizes: no reader may ask for more memory than the file can fill. The address space
// is limited meanwhile, so that asking alone fails and is reported by the library in words of its own.
#include "Common/Analyze.h"
#include "Common/Bitmap.h"
#include "Common/MetaImage.h"
#include "Common/Prs.h"
#include "Common/Raw12Bit.h"
#include "Common/Vis.h"

#include "tests/mervlib/FormatTestSupport.h"
#include "tests/support/MemoryLimit.h"

#include <gmock/gmock.h>

#include <sys/mman.h>

using namespace MERV;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr rlim_t allowance = 32 * 1024 * 1024;

class LyingHeaders : public testing::Test
{
protected:
    // read must give null without running into the limit.
    template <class Read>
    void expectNull(const Read &read)
    {
        const CapturedText output;
        const MemoryLimit limit(allowance);
        ASSERT_TRUE(limit.isSet);
        EXPECT_EQ(ImagePointer(read()), nullptr);
        EXPECT_THAT(output.text(), Not(HasSubstr("Error while initializing!")));
        text = output.text();
    }

    TempFolder folder;
    std::string text;
};

const std::string endOfFile =
    "Common >> Unexpected end of file encountered while reading image data from stream; stream position is ";

// The sizes are lines of their own; the voxels are in the named file.
std::string metaHeader(const std::string &sizes, const std::string &dataFile)
{
    return "NDims = 4\n" + sizes + "ElementType = MET_DOUBLE\nElementDataFile = " + dataFile + "\n";
}

// The limit must bite, or the tests below prove nothing.
TEST_F(LyingHeaders, limitRefusesMoreThanItAllows)
{
    const MemoryLimit limit(allowance);
    ASSERT_TRUE(limit.isSet);
    void *memory = mmap(nullptr, 2 * allowance, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    EXPECT_EQ(memory, MAP_FAILED);
}

TEST_F(LyingHeaders, metaImage)
{
    const std::string sizes[] = {"DimSize = 1000000 1000 1 1\n",
                                 "DimSize = 2147483647 2147483647 2147483647 2147483647\n",
                                 "DimSize = 1 1 2147483647 1\n", "DimSize = 65536 65536 65536 65536\n",
                                 "ElementNumberOfChannels = 2147483647\nDimSize = 1 1 1 1\n"};
    writeFile(folder / "v.raw", "abc");
    for (const std::string &size : sizes) {
        for (const std::string name : {"v.raw", "LOCAL"}) {
            const std::string header = metaHeader(size, name);
            writeFile(folder / "v.mhd", header);
            expectNull([&] { return loadMetaImage((folder / "v.mhd").c_str()); });
            const std::size_t end = name == "LOCAL" ? header.size() : 3;
            EXPECT_THAT(text, HasSubstr(endOfFile + std::to_string(end) + '\n'));
        }
    }
}

// What the file holds indeed may be one voxel in each of many slices or channels: they must not need memory
// of their own beside the voxels.
TEST_F(LyingHeaders, honestMetaImageOfManySlicesOrChannels)
{
    constexpr int many = 20'000'000;
    writeFile(folder / "v.raw", "a");
    std::filesystem::resize_file(folder / "v.raw", many);
    const std::string count = std::to_string(many);
    for (const std::string &sizes :
         {"DimSize = 1 1 " + count, "ElementNumberOfChannels = " + count + "\nDimSize = 1 1 1"}) {
        writeFile(folder / "v.mhd",
                  "NDims = 3\n" + sizes + "\nElementType = MET_UCHAR\nElementDataFile = v.raw\n");
        const CapturedText output;
        const MemoryLimit limit(allowance);
        ASSERT_TRUE(limit.isSet);
        const ImagePointer image(loadMetaImage((folder / "v.mhd").c_str()));
        ASSERT_NE(image, nullptr) << sizes;
        EXPECT_EQ(image->getDepth() * image->getChannels(), many);
        EXPECT_EQ(image->getSliceMetaData(image->getDepth() - 1, "n"), "");
        EXPECT_EQ(image->getHigh(image->getChannels() - 1), 97.0f); // the letter
        EXPECT_EQ(image->getLow(image->getChannels() - 1), 0.0f);
    }
}

TEST_F(LyingHeaders, honestVisOfManySlices)
{
    constexpr int many = 20'000'000;
    Bytes bytes(512);
    bytes.u32(0, 0x075BCD15).u32(4, many).u32(12, 1).u32(16, 1).u32(20, 1).u32(24, many);
    bytes.u32(28, 1).u32(32, 1).u32(52, 1);
    writeFile(folder / "v.vis", bytes.str());
    std::filesystem::resize_file(folder / "v.vis", 512 + many);
    const MemoryLimit limit(allowance);
    ASSERT_TRUE(limit.isSet);
    std::ifstream stream(folder / "v.vis", std::ios::binary);
    const ImagePointer image(loadVis(stream));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getDepth(), many);
}

TEST_F(LyingHeaders, analyze)
{
    Bytes bytes(348);
    bytes.u16(40, 4).u16(42, 32767).u16(44, 32767).u16(46, 32767).u16(48, 32767).u16(70, 16);
    writeFile(folder / "v.hdr", bytes.str());
    writeFile(folder / "v.img", "abc");
    expectNull([&] { return loadAnalyze((folder / "v.hdr").c_str()); });
    EXPECT_THAT(text, HasSubstr(endOfFile + "3\n"));
}

TEST_F(LyingHeaders, vis)
{
    Bytes bytes(512);
    bytes.u32(0, 0x075BCD15).u32(4, 0xFFFFFFFE).u32(12, 1).u32(16, 0x7FFFFFFF).u32(20, 2).u32(24, 1);
    bytes.u32(28, 1).u32(32, 1).u32(52, 1);
    expectNull([&] {
        std::istringstream stream(bytes.str());
        return loadVis(stream);
    });
    EXPECT_EQ(text, "Common >> Error reading image data from VIS stream.\n");
}

TEST_F(LyingHeaders, prs)
{
    Bytes bytes(2512);
    bytes.u32(0, 0x0C140001).u32(4, 2512).u32(20, 2).u32(24, 16);
    const auto expectRefused = [&](std::uint32_t count, std::uint32_t size, const std::string &rest) {
        bytes.u32(8, count).u32(12, size).u32(16, size);
        writeFile(folder / "v.prs", bytes.str() + rest);
        PrsHeader header;
        std::vector<PrsRecord> records;
        expectNull([&] { return loadPrs((folder / "v.prs").c_str(), header, records); });
        EXPECT_THAT(text, HasSubstr(endOfFile + std::to_string(2512 + rest.size()) + '\n'));
    };
    expectRefused(0x7FFFFFFF, 1, "abc");                 // many records
    expectRefused(1, 0x7FFFFFFF, std::string(112, 'r')); // large projections
}

TEST_F(LyingHeaders, raw12Bit)
{
    Bytes bytes(290);
    bytes.u32(0, 815).u16(4, 288).u16(190, 12).u32(232, 0x7FFFFFFF).u32(236, 0x7FFFFFFF).u32(240, 0x7FFFFFFF);
    writeFile(folder / "v", bytes.str());
    expectNull([&] { return loadRaw12Bit((folder / "v").c_str(), true); });
    EXPECT_THAT(text, HasSubstr(endOfFile + "290\n"));
}

TEST_F(LyingHeaders, bitmap)
{
    Bytes bytes(1024);
    bytes.text(0, "BM").u32(10, 54).u32(14, 40).u16(28, 24);
    for (const auto &[width, height] : {std::pair{0x7FFFFFFFu, 1u}, {1u, 0x7FFFFFFFu}, {100000u, 100000u}}) {
        bytes.u32(18, width).u32(22, height);
        expectNull([&] {
            std::istringstream stream(bytes.str());
            return loadBitmap(stream);
        });
    }
}

TEST_F(LyingHeaders, rawBlockOfAFreedBuffer)
{
    ImageBase<double> image;
    image.setBufferExternal();
    image.setDimensions(1 << 20, 1 << 10, 1, 1, 1);
    image.clearBufferExternal();
    const CapturedText output;
    const MemoryLimit limit(allowance);
    std::istringstream stream("abc");
    EXPECT_EQ(image.load(stream, false), 1);
    EXPECT_EQ(image.getData(), nullptr);
    EXPECT_EQ(output.text(), endOfFile + "3\n");
}

} // namespace
