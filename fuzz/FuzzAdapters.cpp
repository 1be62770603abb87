// The image objects that the readers of files make of voxels: the first byte picks the format, what follows
// is the file. What is read is asked everything that a view asks without drawing.
#include "fuzz/FuzzInput.h"
#include "objects/MervImageObject.h"
#include "serialization/formats/AnalyzeUnserializer.h"
#include "serialization/formats/MhdUnserializer.h"
#include "serialization/formats/WindowsBitmapUnserializer.h"

#include <algorithm>
#include <memory>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    silenceReaders();
    return 0;
}

namespace {

void walkThrough(ImageObject &object)
{
    constexpr int mostSteps = 1000;
    float z = object.firstSignificantZ();
    for (int i = 0; i < mostSteps; ++i) {
        const float next = object.nextSignificantZ(z);
        if (!(next > z))
            break;
        z = next;
    }
    object.previousSignificantZ(z);
    object.extentX();
    object.extentY();
    object.extentZ();
    object.granularity();
    const std::unique_ptr<QList<GraphicsObject *>> around(object.objectsAround(0, 0, z, 1));
}

void showAndChange(MervImageObject &volume)
{
    volume.setWindow(volume.windowLow() + 1, volume.windowHigh());
    volume.updateTextures();
    volume.displaySlice(0);
    for (int axis = 0; axis < 5; ++axis)
        volume.mirror(axis);
    volume.computeMinMax();
    volume.dimensionCount();
    volume.sliceIndexAt(static_cast<double>(volume.extentZ()));
}

std::unique_ptr<ImageObject> read(FileSystemImageObjectUnserializer &reader, const std::string &path)
{
    const std::wstring wide(path.begin(), path.end());
    return std::unique_ptr<ImageObject>(reader.canUnserialize(wide.c_str()) ? reader.unserialize(wide.c_str())
                                                                            : nullptr);
}

std::unique_ptr<ImageObject> readAs(int format, const std::string &bytes)
{
    static const FuzzFolder folder;
    static const std::string voxels = folder.write("v.raw", std::string(64, 'v'));
    if (format == 0) {
        MhdUnserializer reader;
        return read(reader, folder.write("v.mhd", bytes));
    }
    if (format == 1) {
        WindowsBitmapUnserializer reader;
        return read(reader, folder.write("v.bmp", bytes));
    }
    constexpr std::size_t headerSize = 348;
    folder.write("v.img", bytes.substr(std::min(bytes.size(), headerSize)));
    AnalyzeUnserializer reader;
    return read(reader, folder.write("v.hdr", bytes.substr(0, headerSize)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::unique_ptr<ImageObject> object = readAs(data[0] % 3, textOf(data + 1, size - 1));
    if (object == nullptr)
        return 0;
    walkThrough(*object);
    if (auto *volume = dynamic_cast<MervImageObject *>(object.get()))
        showAndChange(*volume);
    return 0;
}
