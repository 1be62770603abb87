<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>AcknowledgementDialog</name>
    <message>
        <source>Acknowledging Usage of Tevora</source>
        <translation>Acknowledging Usage of Tevora</translation>
    </message>
    <message>
        <source>English</source>
        <comment>ACK_LANG</comment>
        <extracomment>Stands between the two texts on a publication below.</extracomment>
        <translation>English</translation>
    </message>
    <message>
        <source>German</source>
        <comment>ACK_LANG</comment>
        <extracomment>Stands between the two texts on a publication below.</extracomment>
        <translation>German</translation>
    </message>
    <message>
        <source>French</source>
        <comment>ACK_LANG</comment>
        <extracomment>Stands between the two texts on a publication below.</extracomment>
        <translation>French</translation>
    </message>
    <message>
        <source>Acknowledge having used Tevora for your study in a</source>
        <translation>Acknowledge having used Tevora for your study in a</translation>
    </message>
    <message>
        <source>publication by including a remark analogous to the following.</source>
        <translation>publication by including a remark analogous to the following.</translation>
    </message>
    <message>
        <source>language unavailable</source>
        <translation>language unavailable</translation>
    </message>
</context>
<context>
    <name>AnalyzeSerializer</name>
    <message>
        <source>Analyze file</source>
        <translation>Analyze file</translation>
    </message>
</context>
<context>
    <name>AnalyzeUnserializer</name>
    <message>
        <source>Analyze file</source>
        <translation>Analyze file</translation>
    </message>
</context>
<context>
    <name>BitPlaneRasterizerObject</name>
    <message>
        <source>bit code</source>
        <translation>bit code</translation>
    </message>
</context>
<context>
    <name>CommandDialogs</name>
    <message>
        <source>Select Thickness Definition</source>
        <translation>Select Thickness Definition</translation>
    </message>
    <message>
        <source>The thickness of an irregularly shaped object may be defined in several ways. Select the definition to be used in this thickness measurement.</source>
        <translation>The thickness of an irregularly shaped object may be defined in several ways. Select the definition to be used in this thickness measurement.</translation>
    </message>
    <message>
        <source>perpendicular to %1</source>
        <translation>perpendicular to %1</translation>
    </message>
    <message>
        <source>minimal distance</source>
        <translation>minimal distance</translation>
    </message>
    <message>
        <source>Color %1</source>
        <translation>Color %1</translation>
    </message>
    <message>
        <source>Select the fragment of %1 you want to be colored.</source>
        <translation>Select the fragment of %1 you want to be colored.</translation>
    </message>
    <message>
        <source>Set up rasterization of %1</source>
        <translation>Set up rasterization of %1</translation>
    </message>
    <message>
        <source>%1 will be rasterized to a rectilinear grid image. Enter the grid spacing and grid size (in voxels) below.</source>
        <translation>%1 will be rasterized to a rectilinear grid image. Enter the grid spacing and grid size (in voxels) below.</translation>
    </message>
    <message>
        <source>voxel x size [mm]:</source>
        <translation>voxel x size [mm]:</translation>
    </message>
    <message>
        <source>voxel y size [mm]:</source>
        <translation>voxel y size [mm]:</translation>
    </message>
    <message>
        <source>voxel z size [mm]:</source>
        <translation>voxel z size [mm]:</translation>
    </message>
    <message>
        <source>rastered image x size [voxels]:</source>
        <translation>rastered image x size [voxels]:</translation>
    </message>
    <message>
        <source>rastered image y size [voxels]:</source>
        <translation>rastered image y size [voxels]:</translation>
    </message>
    <message>
        <source>rastered image z size [voxels]:</source>
        <translation>rastered image z size [voxels]:</translation>
    </message>
    <message>
        <source>Mirror %1</source>
        <translation>Mirror %1</translation>
    </message>
    <message>
        <source>Select the axis to be mirrored. %1 will be mirrored against the (hyper-)plane orthgonal to this axis located at the image&apos;s center with respect to this axis.</source>
        <translation>Select the axis to be mirrored. %1 will be mirrored against the (hyper-)plane orthgonal to this axis located at the image&apos;s center with respect to this axis.</translation>
    </message>
    <message>
        <source>x</source>
        <translation>x</translation>
    </message>
    <message>
        <source>y</source>
        <translation>y</translation>
    </message>
    <message>
        <source>z</source>
        <translation>z</translation>
    </message>
    <message>
        <source>t</source>
        <translation>t</translation>
    </message>
    <message>
        <source>c</source>
        <translation>c</translation>
    </message>
</context>
<context>
    <name>DcmUnserializer</name>
    <message>
        <source>Dicom file</source>
        <translation>Dicom file</translation>
    </message>
</context>
<context>
    <name>DisplayScopes</name>
    <message>
        <source>(hidden)</source>
        <translation>(hidden)</translation>
    </message>
    <message>
        <source>Point</source>
        <translation>Point</translation>
    </message>
    <message>
        <source>Point and adjacent</source>
        <translation>Point and adjacent</translation>
    </message>
    <message>
        <source>Slice</source>
        <translation>Slice</translation>
    </message>
    <message>
        <source>Slice and adjacent</source>
        <translation>Slice and adjacent</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message>
        <source>Volume behind</source>
        <translation>Volume behind</translation>
    </message>
    <message>
        <source>Volume before</source>
        <translation>Volume before</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unknown</translation>
    </message>
    <message>
        <source>(hide)</source>
        <translation>(hide)</translation>
    </message>
</context>
<context>
    <name>DistributionCorrectingSliceEdgePointExtractor</name>
    <message>
        <source>distribution corrected edge points in %1</source>
        <translation>distribution corrected edge points in %1</translation>
    </message>
</context>
<context>
    <name>EdgePointExtractor</name>
    <message>
        <source>edge points in %1</source>
        <translation>edge points in %1</translation>
    </message>
</context>
<context>
    <name>EdgePointLister</name>
    <message>
        <source>Text file</source>
        <translation>Text file</translation>
    </message>
</context>
<context>
    <name>EraseMode</name>
    <message>
        <source>Erasing single contour points not yet implemented. Hold the Shift key and click to erase a contour segment.</source>
        <translation>Erasing single contour points not yet implemented. Hold the Shift key and click to erase a contour segment.</translation>
    </message>
    <message>
        <source>Erasing requires a Sliced Contours Fragment to be selected for editing.</source>
        <translation>Erasing requires a Sliced Contours Fragment to be selected for editing.</translation>
    </message>
</context>
<context>
    <name>GraphicsObject</name>
    <message>
        <source>some graphics object</source>
        <translation>some graphics object</translation>
    </message>
</context>
<context>
    <name>GuessMode</name>
    <message>
        <source>Use the left button of the mouse first to set a start point.</source>
        <translation>Use the left button of the mouse first to set a start point.</translation>
    </message>
    <message>
        <source>Guessing edges requires a Sliced Contours Fragment to be selected for editing.</source>
        <translation>Guessing edges requires a Sliced Contours Fragment to be selected for editing.</translation>
    </message>
    <message>
        <source>Unable to guess a segment.</source>
        <translation>Unable to guess a segment.</translation>
    </message>
</context>
<context>
    <name>Help</name>
    <message>
        <source>There is no help page for this topic.</source>
        <translation>There is no help page for this topic.</translation>
    </message>
    <message>
        <source>The help page for this topic cannot be displayed.</source>
        <translation>The help page for this topic cannot be displayed.</translation>
    </message>
</context>
<context>
    <name>HelpViewer</name>
    <message>
        <source>Help - %1</source>
        <translation>Help - %1</translation>
    </message>
</context>
<context>
    <name>ImageComposition</name>
    <message>
        <source>Sobel</source>
        <translation>Sobel</translation>
    </message>
    <message>
        <source>[none]</source>
        <translation>[none]</translation>
    </message>
    <message>
        <source>Image</source>
        <translation>Image</translation>
    </message>
    <message>
        <source>Display</source>
        <translation>Display</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Color</translation>
    </message>
    <message>
        <source>Opacity [%]</source>
        <translation>Opacity [%]</translation>
    </message>
    <message>
        <source>Analyze</source>
        <translation>Analyze</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Edit</translation>
    </message>
    <message>
        <source>Display Scope</source>
        <translation>Display Scope</translation>
    </message>
    <message>
        <source>Display Mode</source>
        <translation>Display Mode</translation>
    </message>
    <message>
        <source>Input Filter</source>
        <translation>Input Filter</translation>
    </message>
    <message>
        <source>Only edge point sets can be analyzed.</source>
        <translation>Only edge point sets can be analyzed.</translation>
    </message>
</context>
<context>
    <name>ImageManager</name>
    <message>
        <source>all files (*)</source>
        <translation>all files (*)</translation>
    </message>
    <message>
        <source>all supported files (%1)</source>
        <translation>all supported files (%1)</translation>
    </message>
    <message>
        <source>%1; %2</source>
        <translation>%1; %2</translation>
    </message>
    <message>
        <source>Select Series</source>
        <translation>Select Series</translation>
    </message>
    <message>
        <source>Select Echo Time</source>
        <translation>Select Echo Time</translation>
    </message>
    <message>
        <source>Select the echo time to be loaded.</source>
        <translation>Select the echo time to be loaded.</translation>
    </message>
    <message>
        <source>%1 (tE = %2 ms)</source>
        <translation>%1 (tE = %2 ms)</translation>
    </message>
    <message numerus="yes">
        <source>%n image(s) have been loaded.</source>
        <translation>
            <numerusform>%n image has been loaded.</numerusform>
            <numerusform>%n images have been loaded.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n image(s) have been successfully loaded, </source>
        <translation>
            <numerusform>%n image has been successfully loaded, </numerusform>
            <numerusform>%n images have been successfully loaded, </numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>whereas with the following %n image(s), errors occured while attempting to load them:</source>
        <translation>
            <numerusform>whereas with the following %n image, errors occured while attempting to load it:</numerusform>
            <numerusform>whereas with the following %n images, errors occured while attempting to load them:</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Errors occured while attempting to load the following %n image(s):</source>
        <translation>
            <numerusform>Errors occured while attempting to load the following %n image:</numerusform>
            <numerusform>Errors occured while attempting to load the following %n images:</numerusform>
        </translation>
    </message>
    <message>
        <source>There was no appropriate unserializer.</source>
        <translation>There was no appropriate unserializer.</translation>
    </message>
    <message>
        <source>The following unserializer(s) assured their capability to unserialize this file, but they failed to do so: %1</source>
        <translation>The following unserializer(s) assured their capability to unserialize this file, but they failed to do so: %1</translation>
    </message>
    <message>
        <source>The file could not be opened for reading.</source>
        <translation>The file could not be opened for reading.</translation>
    </message>
    <message>
        <source>No image can be loaded due to no unserializer being installed.</source>
        <translation>No image can be loaded due to no unserializer being installed.</translation>
    </message>
    <message>
        <source>Load images</source>
        <translation>Load images</translation>
    </message>
    <message>
        <source>%1 (reason: %2)</source>
        <translation>%1 (reason: %2)</translation>
    </message>
    <message>
        <source>Loading images ...</source>
        <translation>Loading images ...</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>File Name</source>
        <translation>File Name</translation>
    </message>
    <message>
        <source>The image could not be saved to</source>
        <translation>The image could not be saved to</translation>
    </message>
    <message>
        <source>You can retry saving to this file, give a different file name, or abort saving the image.</source>
        <translation>You can retry saving to this file, give a different file name, or abort saving the image.</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Retry</translation>
    </message>
    <message>
        <source>Different File</source>
        <translation>Different File</translation>
    </message>
    <message>
        <source>Save Image as</source>
        <translation>Save Image as</translation>
    </message>
    <message>
        <source>The image cannot be saved for there is no serializer installed to handle this type of image.</source>
        <translation>The image cannot be saved for there is no serializer installed to handle this type of image.</translation>
    </message>
    <message>
        <source>The selected file could not be opened for writing.</source>
        <translation>The selected file could not be opened for writing.</translation>
    </message>
</context>
<context>
    <name>ImagePropertiesDialog</name>
    <message>
        <source>pixmap image</source>
        <translation>pixmap image</translation>
    </message>
    <message>
        <source>Sliced contours</source>
        <translation>Sliced contours</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unknown</translation>
    </message>
    <message>
        <source>%1×%2×%3</source>
        <translation>%1×%2×%3</translation>
    </message>
    <message>
        <source>Properties of %1</source>
        <translation>Properties of %1</translation>
    </message>
    <message>
        <source>General</source>
        <translation>General</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Properties</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>- none -</source>
        <translation>- none -</translation>
    </message>
    <message>
        <source>%L1</source>
        <translation>%L1</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
    <message>
        <source>Image type:</source>
        <translation>Image type:</translation>
    </message>
    <message>
        <source>Signature:</source>
        <translation>Signature:</translation>
    </message>
    <message>
        <source>Dimensions [mm×mm×mm]:</source>
        <translation>Dimensions [mm×mm×mm]:</translation>
    </message>
    <message>
        <source>Granularity [mm]:</source>
        <translation>Granularity [mm]:</translation>
    </message>
    <message>
        <source>Significant z Positions [mm]:</source>
        <translation>Significant z Positions [mm]:</translation>
    </message>
    <message>
        <source>Dimensions [Pixel×Pixel×Pixel]:</source>
        <translation>Dimensions [Pixel×Pixel×Pixel]:</translation>
    </message>
    <message>
        <source>Spacing [mm×mm×mm]:</source>
        <translation>Spacing [mm×mm×mm]:</translation>
    </message>
    <message>
        <source>Property</source>
        <translation>Property</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Value</translation>
    </message>
</context>
<context>
    <name>InteractiveDicomUnserializer</name>
    <message>
        <source>Dicom Series</source>
        <translation>Dicom Series</translation>
    </message>
</context>
<context>
    <name>InteractiveDicomUnserializerDialog</name>
    <message>
        <source>Load Dicom series</source>
        <translation>Load Dicom series</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Files</translation>
    </message>
    <message>
        <source>Filters and Axes</source>
        <translation>Filters and Axes</translation>
    </message>
    <message>
        <source>not yet implemented</source>
        <translation>not yet implemented</translation>
    </message>
    <message>
        <source>Series</source>
        <translation>Series</translation>
    </message>
    <message>
        <source>Patient</source>
        <translation>Patient</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>File name</translation>
    </message>
    <message>
        <source>Add directory ...</source>
        <translation>Add directory ...</translation>
    </message>
    <message>
        <source>Add files ...</source>
        <translation>Add files ...</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Move up</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Move down</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Select</translation>
    </message>
    <message>
        <source>Unselect</source>
        <translation>Unselect</translation>
    </message>
    <message>
        <source>Axis</source>
        <translation>Axis</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>**)</source>
        <translation>**)</translation>
    </message>
    <message>
        <source>*)</source>
        <translation>*)</translation>
    </message>
    <message>
        <source>Tag</source>
        <translation>Tag</translation>
    </message>
    <message>
        <source>Property</source>
        <translation>Property</translation>
    </message>
    <message>
        <source>Key: *) number of unique values **) ~ after filtering</source>
        <translation>Key: *) number of unique values **) ~ after filtering</translation>
    </message>
    <message>
        <source>Add directory</source>
        <translation>Add directory</translation>
    </message>
    <message>
        <source>Add files</source>
        <translation>Add files</translation>
    </message>
    <message>
        <source>[patient]</source>
        <translation>[patient]</translation>
    </message>
    <message>
        <source>[series]</source>
        <translation>[series]</translation>
    </message>
    <message>
        <source>Gathering metadata</source>
        <translation>Gathering metadata</translation>
    </message>
    <message>
        <source>[meta property name]</source>
        <translation>[meta property name]</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Copy</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>Copies the selection from the properties table to the clipboard</source>
        <translation>Copies the selection from the properties table to the clipboard</translation>
    </message>
    <message>
        <source>Icon View</source>
        <translation>Icon View</translation>
    </message>
    <message>
        <source>Properties Table</source>
        <translation>Properties Table</translation>
    </message>
    <message>
        <source>Image List</source>
        <translation>Image List</translation>
    </message>
    <message>
        <source>Open a single file</source>
        <translation>Open a single file</translation>
    </message>
    <message>
        <source>all supported Files (*.dcm; *.mhd; *.bmp; *.vis; *.hdr)
DICOM Images (*.dcm)
Meta Images (*.mhd)
Windows Bitmaps (*.bmp)
Tallowbrook VIS Files (*.vis)
Analyze Image (*.hdr)</source>
        <translation>all supported Files (*.dcm; *.mhd; *.bmp; *.vis; *.hdr)
DICOM Images (*.dcm)
Meta Images (*.mhd)
Windows Bitmaps (*.bmp)
Tallowbrook VIS Files (*.vis)
Analyze Image (*.hdr)</translation>
    </message>
    <message>
        <source>Select a directory containing the series.</source>
        <translation>Select a directory containing the series.</translation>
    </message>
    <message>
        <source>Checking directory …</source>
        <translation>Checking directory …</translation>
    </message>
    <message>
        <source>Opening DICOM series …</source>
        <translation>Opening DICOM series …</translation>
    </message>
    <message>
        <source>Loading data&#xa0;…</source>
        <translation>Loading data&#xa0;…</translation>
    </message>
    <message>
        <source>No DICOM series could be found at this location in the file system.</source>
        <translation>No DICOM series could be found at this location in the file system.</translation>
    </message>
    <message numerus="yes">
        <source>%1 DICOM series will be loaded.</source>
        <translation>
            <numerusform>%1 DICOM series will be loaded.</numerusform>
            <numerusform>%1 DICOM series will be loaded.</numerusform>
        </translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Select a directory to save the series.</source>
        <translation>Select a directory to save the series.</translation>
    </message>
    <message>
        <source>Save as Dicom series</source>
        <translation>Save as Dicom series</translation>
    </message>
    <message>
        <source>The image could not be saved to:

%1</source>
        <translation>The image could not be saved to:

%1</translation>
    </message>
    <message>
        <source>About Tevora</source>
        <translation>About Tevora</translation>
    </message>
    <message>
        <source>by the Tevora developers</source>
        <translation>by the Tevora developers</translation>
    </message>
    <message>
        <source>compiled using Qt version</source>
        <translation>compiled using Qt version</translation>
    </message>
    <message>
        <source>as of</source>
        <translation>as of</translation>
    </message>
    <message>
        <source>new sliced contours</source>
        <translation>new sliced contours</translation>
    </message>
    <message>
        <source>selected slice from %1</source>
        <translation>selected slice from %1</translation>
    </message>
    <message>
        <source>Enter a name for the new fragment:</source>
        <translation>Enter a name for the new fragment:</translation>
    </message>
    <message>
        <source>Slice Selector</source>
        <translation>Slice Selector</translation>
    </message>
    <message>
        <source>Set selected plane</source>
        <translation>Set selected plane</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <source>&amp;Open Single File ...</source>
        <translation>&amp;Open Single File ...</translation>
    </message>
    <message>
        <source>Open &amp;Dicom Series ...</source>
        <translation>Open &amp;Dicom Series ...</translation>
    </message>
    <message>
        <source>Open Dicom Series with Input Filter ...</source>
        <translation>Open Dicom Series with Input Filter ...</translation>
    </message>
    <message>
        <source>Close Image</source>
        <translation>Close Image</translation>
    </message>
    <message>
        <source>&amp;Save as Single File ...</source>
        <translation>&amp;Save as Single File ...</translation>
    </message>
    <message>
        <source>Save as Dicom Series ...</source>
        <translation>Save as Dicom Series ...</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>E&amp;xit</translation>
    </message>
    <message>
        <source>Image</source>
        <translation>Image</translation>
    </message>
    <message>
        <source>New</source>
        <translation>New</translation>
    </message>
    <message>
        <source>New sliced contours</source>
        <translation>New sliced contours</translation>
    </message>
    <message>
        <source>New slice selector</source>
        <translation>New slice selector</translation>
    </message>
    <message>
        <source>Add fragment ...</source>
        <translation>Add fragment ...</translation>
    </message>
    <message>
        <source>Extract Edge Points ...</source>
        <translation>Extract Edge Points ...</translation>
    </message>
    <message>
        <source>Triangulate</source>
        <translation>Triangulate</translation>
    </message>
    <message>
        <source>Align</source>
        <translation>Align</translation>
    </message>
    <message>
        <source>Measure Thickness ...</source>
        <translation>Measure Thickness ...</translation>
    </message>
    <message>
        <source>Color Triangulation</source>
        <translation>Color Triangulation</translation>
    </message>
    <message>
        <source>Rasterize ...</source>
        <translation>Rasterize ...</translation>
    </message>
    <message>
        <source>Mirror ...</source>
        <translation>Mirror ...</translation>
    </message>
    <message>
        <source>Set selector plane ...</source>
        <translation>Set selector plane ...</translation>
    </message>
    <message>
        <source>View</source>
        <translation>View</translation>
    </message>
    <message>
        <source>Show in new view ...</source>
        <translation>Show in new view ...</translation>
    </message>
    <message>
        <source>Show metrics ...</source>
        <translation>Show metrics ...</translation>
    </message>
    <message>
        <source>Show center of mass ...</source>
        <translation>Show center of mass ...</translation>
    </message>
    <message>
        <source>Properties ...</source>
        <translation>Properties ...</translation>
    </message>
    <message>
        <source>Procedures</source>
        <translation>Procedures</translation>
    </message>
    <message>
        <source>Start Segmentation of Patella ...</source>
        <translation>Start Segmentation of Patella ...</translation>
    </message>
    <message>
        <source>Start Segmentation of Femur and Tibia ...</source>
        <translation>Start Segmentation of Femur and Tibia ...</translation>
    </message>
    <message>
        <source>Test Mesh Alignment ...</source>
        <translation>Test Mesh Alignment ...</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Help</translation>
    </message>
    <message>
        <source>Show Online Help</source>
        <translation>Show Online Help</translation>
    </message>
    <message>
        <source>How to Acknowledge ...</source>
        <translation>How to Acknowledge ...</translation>
    </message>
    <message>
        <source>About Tevora ...</source>
        <translation>About Tevora ...</translation>
    </message>
    <message>
        <source>About Qt ...</source>
        <translation>About Qt ...</translation>
    </message>
    <message>
        <source>Open Single File (obsolete) ...</source>
        <translation>Open Single File (obsolete) ...</translation>
    </message>
    <message>
        <source>Show edge point histograms</source>
        <translation>Show edge point histograms</translation>
    </message>
    <message>
        <source>Load Contour of Patella...</source>
        <translation>Load Contour of Patella...</translation>
    </message>
    <message>
        <source>Load Segmentation of Patella ...</source>
        <translation>Load Segmentation of Patella ...</translation>
    </message>
    <message>
        <source>%1 is empty, but would have to contain at least one fragment.</source>
        <translation>%1 is empty, but would have to contain at least one fragment.</translation>
    </message>
    <message>
        <source>Mesh Fragment Alignment</source>
        <translation>Mesh Fragment Alignment</translation>
    </message>
    <message>
        <source>The free fragment will be aligned to the base fragment.</source>
        <translation>The free fragment will be aligned to the base fragment.</translation>
    </message>
    <message>
        <source>base fragment</source>
        <translation>base fragment</translation>
    </message>
    <message>
        <source>free fragment</source>
        <translation>free fragment</translation>
    </message>
    <message>
        <source>No mesh fragments found in selection. Thickness can therefore not be measured.</source>
        <translation>No mesh fragments found in selection. Thickness can therefore not be measured.</translation>
    </message>
    <message>
        <source>Thickness Measurement</source>
        <translation>Thickness Measurement</translation>
    </message>
    <message>
        <source>The thickness will be measured between two fragments (which may be the same). The thickness values will be assigned to points on the base fragment.</source>
        <translation>The thickness will be measured between two fragments (which may be the same). The thickness values will be assigned to points on the base fragment.</translation>
    </message>
    <message>
        <source>remote fragment</source>
        <translation>remote fragment</translation>
    </message>
    <message>
        <source>Coloring of %1 according to %2</source>
        <translation>Coloring of %1 according to %2</translation>
    </message>
    <message>
        <source>Segmentation of %s</source>
        <translation>Segmentation of %s</translation>
    </message>
    <message>
        <source>thickness of %s</source>
        <translation>thickness of %s</translation>
    </message>
    <message>
        <source>minimum thickness of %s</source>
        <translation>minimum thickness of %s</translation>
    </message>
    <message>
        <source>coloring of %1 according to thickness</source>
        <translation>coloring of %1 according to thickness</translation>
    </message>
    <message>
        <source>coloring of %1 according to minimum thickness</source>
        <translation>coloring of %1 according to minimum thickness</translation>
    </message>
    <message>
        <source>patellar cartilage</source>
        <translation>patellar cartilage</translation>
    </message>
    <message>
        <source>cartilage bone interface</source>
        <translation>cartilage bone interface</translation>
    </message>
    <message>
        <source>cartilage surface</source>
        <translation>cartilage surface</translation>
    </message>
    <message>
        <source>Do you want the thickness to be automatically calculated? Note that this might impact performance during segmentation.</source>
        <translation>Do you want the thickness to be automatically calculated? Note that this might impact performance during segmentation.</translation>
    </message>
    <message>
        <source>femoral cartilage</source>
        <translation>femoral cartilage</translation>
    </message>
    <message>
        <source>tibial cartilage</source>
        <translation>tibial cartilage</translation>
    </message>
    <message>
        <source>femoral cartilage bone interface</source>
        <translation>femoral cartilage bone interface</translation>
    </message>
    <message>
        <source>femoral cartilage surface</source>
        <translation>femoral cartilage surface</translation>
    </message>
    <message>
        <source>tibial cartilage bone interface</source>
        <translation>tibial cartilage bone interface</translation>
    </message>
    <message>
        <source>tibial cartilage surface</source>
        <translation>tibial cartilage surface</translation>
    </message>
    <message>
        <source>Fragments in %1</source>
        <translation>Fragments in %1</translation>
    </message>
    <message>
        <source>base</source>
        <translation>base</translation>
    </message>
    <message>
        <source>free</source>
        <translation>free</translation>
    </message>
    <message>
        <source>distance of aligned from base fragment</source>
        <translation>distance of aligned from base fragment</translation>
    </message>
    <message>
        <source>coloring of base fragment according to distance of aligned fragment</source>
        <translation>coloring of base fragment according to distance of aligned fragment</translation>
    </message>
    <message>
        <source>Load the segmentation</source>
        <translation>Load the segmentation</translation>
    </message>
    <message>
        <source>all supported Files (*.mhd; *.bmp; *.vis; *.hdr)
Meta Images (*.mhd)
Windows Bitmaps (*.bmp)
Tallowbrook VIS Files (*.vis)
Analyze Image (*.hdr)</source>
        <translation>all supported Files (*.mhd; *.bmp; *.vis; *.hdr)
Meta Images (*.mhd)
Windows Bitmaps (*.bmp)
Tallowbrook VIS Files (*.vis)
Analyze Image (*.hdr)</translation>
    </message>
    <message>
        <source>Reload of %1</source>
        <translation>Reload of %1</translation>
    </message>
    <message>
        <source>Tevora</source>
        <translation>Tevora</translation>
    </message>
    <message>
        <source>Cannot open new view. No image loaded.</source>
        <translation>Cannot open new view. No image loaded.</translation>
    </message>
    <message>
        <source>Center of Mass of %1</source>
        <translation>Center of Mass of %1</translation>
    </message>
    <message>
        <source>In-plane Centers of Mass of %1 (voxel values minus 100) copied to clipboard.</source>
        <translation>In-plane Centers of Mass of %1 (voxel values minus 100) copied to clipboard.</translation>
    </message>
</context>
<context>
    <name>MervImageObject</name>
    <message>
        <source>Unnamed Image</source>
        <translation>Unnamed Image</translation>
    </message>
    <message>
        <source>DICOM</source>
        <translation>DICOM</translation>
    </message>
    <message>
        <source>range</source>
        <translation>range</translation>
    </message>
</context>
<context>
    <name>MhdSerializer</name>
    <message>
        <source>MetaImage file</source>
        <translation>MetaImage file</translation>
    </message>
</context>
<context>
    <name>MhdUnserializer</name>
    <message>
        <source>MetaImage file</source>
        <translation>MetaImage file</translation>
    </message>
</context>
<context>
    <name>QStackedSliceView</name>
    <message>
        <source>Stacked Slice View</source>
        <translation>Stacked Slice View</translation>
    </message>
    <message>
        <source>x = %L1 mm; y = %L2 mm; z = %L3 mm</source>
        <translation>x = %L1 mm; y = %L2 mm; z = %L3 mm</translation>
    </message>
</context>
<context>
    <name>QStackedSliceViewer</name>
    <message>
        <source>Stacked Slice Viewer</source>
        <translation>Stacked Slice Viewer</translation>
    </message>
    <message>
        <source>Perspective</source>
        <translation>Perspective</translation>
    </message>
    <message>
        <source>allows to adjust the parameters of the projection</source>
        <translation>allows to adjust the parameters of the projection</translation>
    </message>
    <message>
        <source>test tip</source>
        <translation>test tip</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Window</translation>
    </message>
    <message>
        <source>allows to adjust brightness and contrast</source>
        <translation>allows to adjust brightness and contrast</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Move</translation>
    </message>
    <message>
        <source>enables moving the displayed image around the screen</source>
        <translation>enables moving the displayed image around the screen</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>allows to adjust the magnification of the display</source>
        <translation>allows to adjust the magnification of the display</translation>
    </message>
    <message>
        <source>Trace</source>
        <translation>Trace</translation>
    </message>
    <message>
        <source>enables drawing contours along automatically detected edge points</source>
        <translation>enables drawing contours along automatically detected edge points</translation>
    </message>
    <message>
        <source>Guess</source>
        <translation>Guess</translation>
    </message>
    <message>
        <source>can be used to delete contour points or segments</source>
        <translation>can be used to delete contour points or segments</translation>
    </message>
    <message>
        <source>Erase</source>
        <translation>Erase</translation>
    </message>
    <message>
        <source>Load</source>
        <translation>Load</translation>
    </message>
    <message>
        <source>enables loading contours of all slices</source>
        <translation>enables loading contours of all slices</translation>
    </message>
    <message>
        <source>Screenshot</source>
        <translation>Screenshot</translation>
    </message>
    <message>
        <source>Image Composition Tree</source>
        <translation>Image Composition Tree</translation>
    </message>
    <message>
        <source>Save Screenshot as</source>
        <translation>Save Screenshot as</translation>
    </message>
    <message>
        <source>JPEG Image (*.jpg)
Portable Network Graphics (*.png)</source>
        <translation>JPEG Image (*.jpg)
Portable Network Graphics (*.png)</translation>
    </message>
</context>
<context>
    <name>RasterizerObject</name>
    <message>
        <source>raster value</source>
        <translation>raster value</translation>
    </message>
    <message>
        <source>Rasterization of %1</source>
        <translation>Rasterization of %1</translation>
    </message>
</context>
<context>
    <name>SlicSerializer</name>
    <message>
        <source>Sliced Contours</source>
        <translation>Sliced Contours</translation>
    </message>
</context>
<context>
    <name>SlicUnserializer</name>
    <message>
        <source>Sliced Contours</source>
        <translation>Sliced Contours</translation>
    </message>
</context>
<context>
    <name>SliceDistanceDialog</name>
    <message>
        <source>Select Slice Distance Algorithm</source>
        <translation>Select Slice Distance Algorithm</translation>
    </message>
    <message>
        <source>There are several ways to determine the slice distance of the Dicom series. Select on which algorithm&apos;s result to rely.</source>
        <translation>There are several ways to determine the slice distance of the Dicom series. Select on which algorithm&apos;s result to rely.</translation>
    </message>
    <message>
        <source>Slice Location based algorithm; result: %1 mm</source>
        <translation>Slice Location based algorithm; result: %1 mm</translation>
    </message>
    <message>
        <source>GDCM internal algorithm; result: %1 mm</source>
        <translation>GDCM internal algorithm; result: %1 mm</translation>
    </message>
    <message>
        <source>Image Position (Patient) based algorithm; result: %1 mm</source>
        <translation>Image Position (Patient) based algorithm; result: %1 mm</translation>
    </message>
</context>
<context>
    <name>SliceSelector</name>
    <message>
        <source>%1 = %2 in %3</source>
        <translation>%1 = %2 in %3</translation>
    </message>
</context>
<context>
    <name>SlicedContour</name>
    <message>
        <source>some Contour</source>
        <translation>some Contour</translation>
    </message>
</context>
<context>
    <name>SlicedContoursFragment</name>
    <message>
        <source>some Fragment</source>
        <translation>some Fragment</translation>
    </message>
</context>
<context>
    <name>SlicedContoursObject</name>
    <message>
        <source>Unnamed Contours</source>
        <translation>Unnamed Contours</translation>
    </message>
</context>
<context>
    <name>SlicedContoursTriangulator</name>
    <message>
        <source>Triangulation of %1</source>
        <translation>Triangulation of %1</translation>
    </message>
    <message>
        <source>%1 (triangulated)</source>
        <translation>%1 (triangulated)</translation>
    </message>
</context>
<context>
    <name>SlicedMetricsModel</name>
    <message>
        <source>Sliced metrics cannot be computed for this image.</source>
        <translation>Sliced metrics cannot be computed for this image.</translation>
    </message>
    <message>
        <source>%L1 mm^2</source>
        <translation>%L1 mm^2</translation>
    </message>
    <message>
        <source>%L1 mm^3</source>
        <translation>%L1 mm^3</translation>
    </message>
    <message>
        <source>%L1 mm</source>
        <translation>%L1 mm</translation>
    </message>
    <message>
        <source>unavailable</source>
        <translation>unavailable</translation>
    </message>
    <message>
        <source>Thickness parameters</source>
        <translation>Thickness parameters</translation>
    </message>
    <message>
        <source>at z = %L1 mm</source>
        <translation>at z = %L1 mm</translation>
    </message>
    <message>
        <source>area/length of section at z = %L1 mm</source>
        <translation>area/length of section at z = %L1 mm</translation>
    </message>
    <message>
        <source>Total</source>
        <translation>Total</translation>
    </message>
    <message>
        <source>Total (corrected)</source>
        <translation>Total (corrected)</translation>
    </message>
    <message>
        <source>MaxThicknes</source>
        <translation>MaxThicknes</translation>
    </message>
    <message>
        <source>AvMaxThickness</source>
        <translation>AvMaxThickness</translation>
    </message>
    <message>
        <source>MeanThickness</source>
        <translation>MeanThickness</translation>
    </message>
    <message>
        <source>StdThickness</source>
        <translation>StdThickness</translation>
    </message>
</context>
<context>
    <name>SlicedMetricsViewer</name>
    <message>
        <source>Metrics of %1</source>
        <translation>Metrics of %1</translation>
    </message>
</context>
<context>
    <name>TextSerializer</name>
    <message>
        <source>Text (tab separated values)</source>
        <translation>Text (tab separated values)</translation>
    </message>
</context>
<context>
    <name>TextSlicSerializer</name>
    <message>
        <source>Text file</source>
        <translation>Text file</translation>
    </message>
</context>
<context>
    <name>TraceMode</name>
    <message>
        <source>Tracing edges requires a Sliced Contours Fragment to be selected for editing.</source>
        <translation>Tracing edges requires a Sliced Contours Fragment to be selected for editing.</translation>
    </message>
    <message>
        <source>%1 mm will be replaced.</source>
        <translation>%1 mm will be replaced.</translation>
    </message>
</context>
<context>
    <name>TriMeshAligner</name>
    <message>
        <source>%1 aligned to %2</source>
        <translation>%1 aligned to %2</translation>
    </message>
</context>
<context>
    <name>TriMeshDistanceMeasurer</name>
    <message>
        <source>some distance measurer for triangle meshes</source>
        <translation>some distance measurer for triangle meshes</translation>
    </message>
</context>
<context>
    <name>VisSerializer</name>
    <message>
        <source>Tallowbrook VIS format</source>
        <translation>Tallowbrook VIS format</translation>
    </message>
</context>
<context>
    <name>VisUnserializer</name>
    <message>
        <source>Tallowbrook VIS format</source>
        <translation>Tallowbrook VIS format</translation>
    </message>
</context>
<context>
    <name>VoxelSizeDialog</name>
    <message>
        <source>The image being loaded consists of %1x%2x%3 voxels without information on physical dimensions. Enter one voxel&apos;s dimensions.</source>
        <translation>The image being loaded consists of %1x%2x%3 voxels without information on physical dimensions. Enter one voxel&apos;s dimensions.</translation>
    </message>
    <message>
        <source>voxel x size:</source>
        <translation>voxel x size:</translation>
    </message>
    <message>
        <source>voxel y size:</source>
        <translation>voxel y size:</translation>
    </message>
    <message>
        <source>voxel z size:</source>
        <translation>voxel z size:</translation>
    </message>
    <message>
        <source>mm</source>
        <translation>mm</translation>
    </message>
</context>
<context>
    <name>WindowsBitmapSerializer</name>
    <message>
        <source>Windows bitmap</source>
        <translation>Windows bitmap</translation>
    </message>
</context>
<context>
    <name>WindowsBitmapUnserializer</name>
    <message>
        <source>Windows bitmap</source>
        <translation>Windows bitmap</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Installiere Sprachunterstützung (deutsch) ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Installing language support (German) ...</translation>
    </message>
    <message>
        <source>Installiere Sprachunterstützung (englisch) ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Installing language support (English) ...</translation>
    </message>
    <message>
        <source>Installiere Sprachunterstützung (französisch) ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Installing language support (French) ...</translation>
    </message>
    <message>
        <source>Installiere Sprachunterstützung (Landessprache) ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Installing language support (local language) ...</translation>
    </message>
    <message>
        <source>Lade ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Loading ...</translation>
    </message>
    <message>
        <source>Lade Sprachunterstützung ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Loading language support ...</translation>
    </message>
    <message>
        <source>Preparing user interface, and loading images ...</source>
        <translation>Preparing user interface, and loading images ...</translation>
    </message>
    <message>
        <source>... finished.</source>
        <translation>... finished.</translation>
    </message>
</context>
</TS>
