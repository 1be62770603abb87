#include "serialization/dicom/DicomOrder.h"

#include "serialization/dicom/DicomDirectory.h"
#include "serialization/dicom/DicomParser.h"
#include "tests/support/DicomFileBuilder.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>

using namespace dicom;

namespace {

struct Slice
{
    std::string position;
    std::string number;
};

// Files named a, b, c ... in the given order.
class DicomOrder : public testing::Test
{
protected:
    std::string order(const std::vector<Slice> &slices, Order direction,
                      const std::string &orientation = "1\\0\\0\\0\\1\\0")
    {
        make(slices, orientation);
        FileList files;
        for (const auto &header : headers)
            files.push_back(header.get());
        orderFiles(files, direction);
        std::string names;
        for (const DicomHeader *file : files)
            names += file->path;
        return names;
    }

    SliceDistances distances(const std::vector<DicomFileBuilder> &builders)
    {
        headers.clear();
        FileList files;
        for (const DicomFileBuilder &builder : builders) {
            add(builder);
            files.push_back(headers.back().get());
        }
        return sliceDistances(files);
    }

private:
    void make(const std::vector<Slice> &slices, const std::string &orientation)
    {
        headers.clear();
        for (const Slice &slice : slices) {
            DicomFileBuilder file = dicomSlice(1, 1, {0}, 0);
            file.remove(0x00201041);
            file.text(0x00200037, "DS", orientation);
            file.text(0x00200032, "DS", slice.position);
            file.text(0x00200013, "IS", slice.number);
            add(file);
        }
    }

    void add(const DicomFileBuilder &file)
    {
        const std::string bytes = file.bytes();
        std::istringstream stream(bytes);
        headers.push_back(std::make_unique<DicomHeader>(*parseHeader(stream, bytes.size())));
        headers.back()->path = std::string(1, static_cast<char>('a' + headers.size() - 1));
    }

    std::vector<std::unique_ptr<DicomHeader>> headers;
};

} // namespace

TEST_F(DicomOrder, positionAlongTheNormalWhateverTheNumbers)
{
    const std::vector<Slice> slices{{"0\\0\\3", "1"}, {"0\\0\\-1", "2"}, {"0\\0\\2", "3"}};
    EXPECT_EQ(order(slices, Order::direct), "bca");
    EXPECT_EQ(order(slices, Order::reverse), "acb");
}

TEST_F(DicomOrder, normalOfTheOrientationDecidesTheDirection)
{
    // Columns run against y, so the normal is (0,0,-1).
    const std::vector<Slice> slices{{"0\\0\\3", "1"}, {"0\\0\\-1", "2"}, {"0\\0\\2", "3"}};
    EXPECT_EQ(order(slices, Order::direct, "1\\0\\0\\0\\-1\\0"), "acb");
    // Sagittal: rows along y, columns along -z; the normal is (-1,0,0).
    const std::vector<Slice> sagittal{{"5\\0\\0", "1"}, {"9\\0\\0", "2"}, {"7\\0\\0", "3"}};
    EXPECT_EQ(order(sagittal, Order::direct, "0\\1\\0\\0\\0\\-1"), "bca");
}

TEST_F(DicomOrder, sharedPositionFallsBackToTheNumbers)
{
    const std::vector<Slice> slices{{"0\\0\\1", "3"}, {"0\\0\\1", "2"}, {"0\\0\\0", "1"}};
    EXPECT_EQ(order(slices, Order::direct), "cba");
    EXPECT_EQ(order(slices, Order::reverse), "abc");
}

TEST_F(DicomOrder, numbersWithGreatGapsFallBackToThePaths)
{
    // Three files: the greatest number must be less than 2 * 3 + the least.
    EXPECT_EQ(order({{"0\\0\\0", "8"}, {"0\\0\\0", "6"}, {"0\\0\\0", "3"}}, Order::direct), "cba");
    EXPECT_EQ(order({{"0\\0\\0", "9"}, {"0\\0\\0", "6"}, {"0\\0\\0", "3"}}, Order::direct), "abc");
    EXPECT_EQ(order({{"0\\0\\0", "9"}, {"0\\0\\0", "6"}, {"0\\0\\0", "3"}}, Order::reverse), "cba");
}

TEST_F(DicomOrder, equalNumbersOrGreatestZeroFallBackToThePaths)
{
    EXPECT_EQ(order({{"0\\0\\0", "4"}, {"0\\0\\0", "4"}}, Order::reverse), "ba");
    EXPECT_EQ(order({{"0\\0\\0", "0"}, {"0\\0\\0", "-1"}}, Order::direct), "ab");
}

TEST_F(DicomOrder, malformedPositionsCountAsZero)
{
    EXPECT_EQ(order({{"x", "2"}, {"nan\\nan\\nan", "1"}, {"0\\0\\0", "3"}}, Order::direct), "bac");
}

TEST_F(DicomOrder, threeCandidatesOfTheSliceDistance)
{
    DicomFileBuilder first = dicomSlice(1, 1, {0}, 10);
    DicomFileBuilder middle = dicomSlice(1, 1, {0}, 13);
    DicomFileBuilder last = dicomSlice(1, 1, {0}, 16);
    last.text(0x00201041, "DS", "15"); // location says 5 mm over two gaps, positions say 6
    const SliceDistances all = distances({first, middle, last});
    EXPECT_DOUBLE_EQ(all.position, 3.0);
    EXPECT_DOUBLE_EQ(all.library, 4.0);
    EXPECT_DOUBLE_EQ(all.location, 2.5);

    last.remove(0x00201041);
    EXPECT_EQ(distances({first, middle, last}).location, 0.0);
    EXPECT_DOUBLE_EQ(distances({last, middle, first}).position, 3.0); // never negative
}

TEST_F(DicomOrder, positionDistanceUsesZAlone)
{
    DicomFileBuilder first = dicomSlice(1, 1, {0}, 10);
    DicomFileBuilder last = dicomSlice(1, 1, {0}, 10);
    first.text(0x00200032, "DS", "0\\0\\10");
    last.text(0x00200032, "DS", "8\\0\\10");
    EXPECT_EQ(distances({first, last}).position, 0.0);
}

TEST_F(DicomOrder, singleFileHasItsOwnDistanceOnly)
{
    const SliceDistances one = distances({dicomSlice(1, 1, {0}, 10)});
    EXPECT_EQ(one.position, 0.0);
    EXPECT_EQ(one.library, 4.0);
    EXPECT_EQ(one.location, 0.0);
}
