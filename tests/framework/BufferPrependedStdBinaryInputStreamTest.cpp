#include "serialization/framework/BufferPrependedStdBinaryInputStream.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>

namespace {

std::string bytes(int first, int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += static_cast<char>(first + i);
    return text;
}

} // namespace

TEST(BufferPrependedStdBinaryInputStream, readUInt64_fromStream_isLittleEndian)
{
    std::istringstream source(std::string("\x15\xCD\x5B\x07\x00\x00\x00\x80", 8));
    BufferPrependedStdBinaryInputStream stream(&source, nullptr, 0);
    quint64 value = 1;
    EXPECT_EQ(&stream.readUInt64(value), &stream);
    EXPECT_EQ(value, 0x80000000075BCD15u);
    EXPECT_FALSE(stream.fail());
}

TEST(BufferPrependedStdBinaryInputStream, readUInt64_takesThreeBufferedBytesAsTheLowOnes)
{
    std::istringstream source(bytes(0x04, 5));
    const std::string head = bytes(0x01, 3);
    BufferPrependedStdBinaryInputStream stream(&source, head.data(), 3);
    quint64 value = 0;
    stream.readUInt64(value);
    EXPECT_EQ(value, 0x0807060504030201u);
    EXPECT_FALSE(stream.fail());
    EXPECT_EQ(source.get(), std::char_traits<char>::eof());
}

TEST(BufferPrependedStdBinaryInputStream, read_callsReadUInt64)
{
    std::istringstream source;
    const std::string head = bytes(0x10, 8);
    BufferPrependedStdBinaryInputStream stream(&source, head.data(), 8);
    quint64 value = 0;
    EXPECT_EQ(&stream.read(value), &stream);
    EXPECT_EQ(value, 0x1716151413121110u);
}

TEST(BufferPrependedStdBinaryInputStream, readUInt64_atTheEnd_failsAndKeepsWhatWasThere)
{
    std::istringstream source(bytes(0x01, 2));
    BufferPrependedStdBinaryInputStream stream(&source, nullptr, 0);
    quint64 value = std::numeric_limits<quint64>::max();
    stream.readUInt64(value);
    EXPECT_TRUE(stream.fail());
    EXPECT_TRUE(stream.eof());
    EXPECT_FALSE(stream.bad());
    EXPECT_EQ(value, 0x0201u); // missing bytes are 0, not what the memory held
}

TEST(BufferPrependedStdBinaryInputStream, readString_splitsAUnitBetweenBufferAndStream)
{
    // "aä€": 61 00, E4 00, AC 20; the buffer ends inside the second unit.
    std::istringstream source(std::string("\x00\xAC\x20", 3));
    BufferPrependedStdBinaryInputStream stream(&source, "\x61\x00\xE4", 3);
    EXPECT_EQ(stream.readString(3), QString("aä€"));
    EXPECT_FALSE(stream.fail());
}

TEST(BufferPrependedStdBinaryInputStream, readString_keepsNullsAndLoneSurrogates)
{
    std::istringstream source(std::string("\x00\x00\x3D\xD8", 4));
    BufferPrependedStdBinaryInputStream stream(&source, nullptr, 0);
    const QString text = stream.readString(2);
    ASSERT_EQ(text.size(), 2);
    EXPECT_EQ(text[0].unicode(), 0);
    EXPECT_EQ(text[1].unicode(), 0xD83D);
}

TEST(BufferPrependedStdBinaryInputStream, readString_ofNoneOrFewerTakesNothing)
{
    std::istringstream source("ab");
    BufferPrependedStdBinaryInputStream stream(&source, nullptr, 0);
    EXPECT_EQ(stream.readString(0), QString());
    EXPECT_EQ(stream.readString(-1), QString());
    EXPECT_EQ(source.tellg(), 0);
}

TEST(BufferPrependedStdBinaryInputStream, readString_withAnImmenseCount_takesOnlyWhatIsThere)
{
    std::istringstream source(std::string("a\0b\0c", 5));
    BufferPrependedStdBinaryInputStream stream(&source, nullptr, 0);
    EXPECT_EQ(stream.readString(std::numeric_limits<int>::max()), QString("ab"));
    EXPECT_TRUE(stream.fail());
}

// 1000 units, the numbers 0 to 999, of which 101 bytes are in the buffer; the next text is cut within its
// third unit.
TEST(BufferPrependedStdBinaryInputStream, readString_ofManyUnits_takesJustThose)
{
    std::string all;
    for (int unit = 0; unit < 1000; ++unit)
        all += {static_cast<char>(unit % 256), static_cast<char>(unit / 256)};
    std::istringstream source(all.substr(101) + std::string("x\0y\0z", 5));
    BufferPrependedStdBinaryInputStream stream(&source, all.data(), 101);
    const QString text = stream.readString(1000);
    ASSERT_EQ(text.size(), 1000);
    for (int unit = 0; unit < 1000; ++unit)
        ASSERT_EQ(text[unit].unicode(), unit);
    EXPECT_FALSE(stream.fail());
    EXPECT_EQ(stream.readString(3), QString("xy"));
    EXPECT_TRUE(stream.fail());
}

TEST(BufferPrependedStdBinaryInputStream, readString_fromTheBufferOfAnExhaustedStream_works)
{
    std::istringstream source;
    source.get(); // as a caller does that has read the head of a short file
    ASSERT_TRUE(source.fail());
    BufferPrependedStdBinaryInputStream stream(&source, "o\0k\0", 4);
    EXPECT_EQ(stream.readString(2), QString("ok"));
}

TEST(BufferPrependedStdBinaryInputStream, skip_ofNothingWithEmptyBuffer_leavesTheStream)
{
    std::istringstream source("abc");
    BufferPrependedStdBinaryInputStream stream(&source, nullptr, 0);
    EXPECT_EQ(stream.skip(0), 0u);
    EXPECT_EQ(source.tellg(), 0);
}

TEST(BufferPrependedStdBinaryInputStream, skip_insideTheBuffer_leavesTheStream)
{
    std::istringstream source("12345678");
    BufferPrependedStdBinaryInputStream stream(&source, "abcd", 4);
    EXPECT_EQ(stream.skip(3), 3u);
    EXPECT_EQ(source.tellg(), 0);
    quint64 value = 0;
    stream.readUInt64(value); // 'd' and then '1' to '7'
    EXPECT_EQ(value, 0x3736353433323164u);
}

TEST(BufferPrependedStdBinaryInputStream, skip_beyondTheBuffer_movesTheStreamByTheRest)
{
    std::istringstream source("12345678");
    BufferPrependedStdBinaryInputStream stream(&source, "abc", 3);
    EXPECT_EQ(stream.skip(5), 5u);
    EXPECT_EQ(source.tellg(), 2);
    EXPECT_EQ(stream.skip(0), 0u); // the buffer is empty
    EXPECT_EQ(stream.skip(1), 1u);
    EXPECT_EQ(source.tellg(), 3);
}

TEST(BufferPrependedStdBinaryInputStream, skip_thatTheStreamRefuses_countsTheBufferAlone)
{
    std::istringstream source("12"); // a stream of a string cannot be moved beyond its end
    BufferPrependedStdBinaryInputStream stream(&source, "abc", 3);
    EXPECT_EQ(stream.skip(6), 3u);
    EXPECT_TRUE(stream.fail());
}

TEST(BufferPrependedStdBinaryInputStream, skip_beyondSignedRange_failsTheStream)
{
    std::istringstream source("12345678");
    BufferPrependedStdBinaryInputStream stream(&source, "abc", 3);
    EXPECT_EQ(stream.skip(std::numeric_limits<quint64>::max()), 3u);
    EXPECT_TRUE(stream.fail());
}
