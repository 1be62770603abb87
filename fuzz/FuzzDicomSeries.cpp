// A folder of up to eight DICOM files: the bytes are cut at each nextFile. Files without the magic
// of a DICOM file belong to it as well.
#include "serialization/dicom/DicomLoader.h"

#include "fuzz/FuzzInput.h"

#include <memory>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    silenceReaders();
    return 0;
}

namespace {

constexpr int mostFiles = 8;

// Returns the folder.
std::string writeFiles(const FuzzFolder &folder, std::string_view bytes)
{
    std::string path;
    for (int i = 0; i < mostFiles; ++i) {
        const std::size_t end = bytes.find(nextFile);
        path = folder.write("v" + std::to_string(i), std::string(bytes.substr(0, end)));
        bytes = end == std::string_view::npos ? std::string_view() : bytes.substr(end + nextFile.size());
    }
    return path.substr(0, path.rfind('/'));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const FuzzFolder folder;
    const std::string directory = writeFiles(folder, {reinterpret_cast<const char *>(data), size});
    dicom::listDicomSeries(directory, false);
    const dicom::DicomDirectory contents(directory, false);
    for (const dicom::DicomSeries &series : contents.series()) {
        for (const std::string &time : dicom::echoTimes(series)) {
            dicom::FileList files = dicom::filesWithEchoTime(series, time);
            dicom::orderFiles(files, dicom::Order::direct);
            dicom::sliceDistances(files);
        }
    }
    for (int i = 0; i < static_cast<int>(contents.series().size()); ++i)
        for (const bool direct : {false, true})
            dicom::loadSeries(directory, contents, i, direct, true);
    return 0;
}
