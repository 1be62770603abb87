#include "serialization/framework/FileSystemImageObjectSerializer.h"
#include "serialization/framework/FileSystemImageObjectUnserializer.h"
#include "serialization/framework/PurelyInteractiveImageObjectUnserializer.h"
#include "serialization/framework/StreamImageObjectSerializer.h"
#include "serialization/framework/StreamImageObjectUnserializer.h"

#include "objects/ImageObject.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

namespace {

class Writer : public StreamImageObjectSerializer
{
public:
    using StreamImageObjectSerializer::StreamImageObjectSerializer;
    bool canSerialize(ImageObject *object) override { return object != nullptr; }
    bool serialize(ImageObject *, std::ostream &) override { return false; }
};

// Notes with what it was called.
class Reader : public StreamImageObjectUnserializer
{
public:
    Reader()
        : AbstractImageObjectUnserializer("reader", {"a/b", "c/d"}, {"x", ""})
    {}
    bool canUnserialize(const char *) override { return true; }
    using StreamImageObjectUnserializer::unserialize;
    ImageObject *unserialize(std::istream &stream, const char *prepended, int length) override
    {
        seenStream = &stream;
        seenPrepended = prepended;
        seenLength = length;
        return new ImageObject("read", nullptr);
    }
    std::istream *seenStream = nullptr;
    const char *seenPrepended = "unset";
    int seenLength = -1;
};

// Both interactive and of the file system, with one name.
class SeriesReader : public PurelyInteractiveImageObjectUnserializer, public FileSystemImageObjectUnserializer
{
public:
    SeriesReader()
        : AbstractImageObjectUnserializer("series", {}, {})
    {}
    int unattendedObjectCount() const override { return 0; }
    bool canUnserialize(const wchar_t *) override { return false; }
    ImageObject *unserialize(const wchar_t *) override { return nullptr; }
};

} // namespace

TEST(Serializer, keepsItsTexts)
{
    Writer writer("Name", "mime/type", "ext");
    EXPECT_EQ(writer.name(), "Name");
    EXPECT_EQ(writer.mimeType(), "mime/type");
    EXPECT_EQ(writer.extension(), "ext");
}

TEST(Serializer, proposesTheDisplayName)
{
    Writer writer("Name", "mime/type", "ext");
    ImageObject named("T1/T2 ä", nullptr);
    EXPECT_EQ(writer.defaultName(&named), "T1/T2 ä"); // as it is, even where it is no name of a file
}

TEST(Unserializer, keepsItsTexts)
{
    Reader reader;
    EXPECT_EQ(reader.name(), "reader");
    EXPECT_EQ(reader.mimeTypes(), QStringList({"a/b", "c/d"}));
    EXPECT_EQ(reader.extensions(), QStringList({"x", ""}));
}

TEST(Unserializer, ofStreams_readsWithNothingPrepended)
{
    Reader reader;
    std::istringstream stream("abc");
    ContinuousStreamImageObjectUnserializer &base = reader;
    const std::unique_ptr<ImageObject> object(base.unserialize(stream));
    EXPECT_NE(object, nullptr);
    EXPECT_EQ(reader.seenStream, &stream);
    EXPECT_EQ(reader.seenPrepended, nullptr);
    EXPECT_EQ(reader.seenLength, 0);
}

TEST(Unserializer, thatIsInteractiveToo_hasOneBase)
{
    SeriesReader reader;
    AbstractImageObjectUnserializer &throughFiles = static_cast<FileSystemImageObjectUnserializer &>(reader);
    AbstractImageObjectUnserializer &throughMark =
        static_cast<PurelyInteractiveImageObjectUnserializer &>(reader);
    EXPECT_EQ(&throughFiles, &throughMark);
    EXPECT_EQ(throughFiles.name(), "series");
    EXPECT_NE(dynamic_cast<FileSystemImageObjectUnserializer *>(&throughMark), nullptr);
    EXPECT_EQ(dynamic_cast<ContinuousStreamImageObjectUnserializer *>(&throughMark), nullptr);
}
