// corrected_edge_points SERIES LOW HIGH FILE: writes the corrected edge points of the first DICOM series in a
// folder, found with the window from LOW to HIGH, as a table.
#include "contours/DistributionCorrectingSliceEdgePointExtractor.h"
#include "objects/MervImageObject.h"
#include "serialization/dicom/DicomLoader.h"
#include "serialization/formats/EdgePointLister.h"

#include <cstdlib>
#include <fstream>

int main(int argc, char **argv)
{
    if (argc != 5)
        return 2;
    // As "Open Dicom Series ..." has it, of the first series in the folder.
    auto image = dicom::loadSeries(argv[1], false, 0, false, true);
    if (!image)
        return 1;
    MervImageObject volume(image.release(), argv[1]);
    volume.setWindow(std::strtof(argv[2], nullptr), std::strtof(argv[3], nullptr)); // before the extraction
    DistributionCorrectingSliceEdgePointExtractor points(&volume);
    std::ofstream table(argv[4]);
    return EdgePointLister().serialize(&points, table) && table.flush() ? 0 : 1;
}
