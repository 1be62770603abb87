<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>AcknowledgementDialog</name>
    <message>
        <source>Acknowledging Usage of Tevora</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>English</source>
        <comment>ACK_LANG</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>German</source>
        <comment>ACK_LANG</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>French</source>
        <comment>ACK_LANG</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Acknowledge having used Tevora for your study in a</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>publication by including a remark analogous to the following.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>language unavailable</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AnalyzeSerializer</name>
    <message>
        <source>Analyze file</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AnalyzeUnserializer</name>
    <message>
        <source>Analyze file</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BitPlaneRasterizerObject</name>
    <message>
        <source>bit code</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CommandDialogs</name>
    <message>
        <source>Select Thickness Definition</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The thickness of an irregularly shaped object may be defined in several ways. Select the definition to be used in this thickness measurement.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>perpendicular to %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>minimal distance</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Color %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select the fragment of %1 you want to be colored.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set up rasterization of %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 will be rasterized to a rectilinear grid image. Enter the grid spacing and grid size (in voxels) below.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>voxel x size [mm]:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>voxel y size [mm]:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>voxel z size [mm]:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>rastered image x size [voxels]:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>rastered image y size [voxels]:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>rastered image z size [voxels]:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mirror %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select the axis to be mirrored. %1 will be mirrored against the (hyper-)plane orthgonal to this axis located at the image&apos;s center with respect to this axis.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>x</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>y</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>z</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>t</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>c</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DcmUnserializer</name>
    <message>
        <source>Dicom file</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DisplayScopes</name>
    <message>
        <source>(hidden)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Point</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Point and adjacent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Slice</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Slice and adjacent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Volume</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Volume behind</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Volume before</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unknown</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>(hide)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DistributionCorrectingSliceEdgePointExtractor</name>
    <message>
        <source>distribution corrected edge points in %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>EdgePointExtractor</name>
    <message>
        <source>edge points in %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>EdgePointLister</name>
    <message>
        <source>Text file</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>EraseMode</name>
    <message>
        <source>Erasing single contour points not yet implemented. Hold the Shift key and click to erase a contour segment.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Erasing requires a Sliced Contours Fragment to be selected for editing.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>GraphicsObject</name>
    <message>
        <source>some graphics object</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>GuessMode</name>
    <message>
        <source>Use the left button of the mouse first to set a start point.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Guessing edges requires a Sliced Contours Fragment to be selected for editing.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to guess a segment.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Help</name>
    <message>
        <source>There is no help page for this topic.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The help page for this topic cannot be displayed.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>HelpViewer</name>
    <message>
        <source>Help - %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ImageComposition</name>
    <message>
        <source>Sobel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[none]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Display</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Opacity [%]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Analyze</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Display Scope</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Display Mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input Filter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Only edge point sets can be analyzed.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ImageManager</name>
    <message>
        <source>all files (*)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>all supported files (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1; %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select Series</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select Echo Time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select the echo time to be loaded.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 (tE = %2 ms)</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n image(s) have been loaded.</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n image(s) have been successfully loaded, </source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>whereas with the following %n image(s), errors occured while attempting to load them:</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Errors occured while attempting to load the following %n image(s):</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>There was no appropriate unserializer.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The following unserializer(s) assured their capability to unserialize this file, but they failed to do so: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file could not be opened for reading.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No image can be loaded due to no unserializer being installed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load images</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 (reason: %2)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading images ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The image could not be saved to</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>You can retry saving to this file, give a different file name, or abort saving the image.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Retry</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Different File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Image as</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The image cannot be saved for there is no serializer installed to handle this type of image.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The selected file could not be opened for writing.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ImagePropertiesDialog</name>
    <message>
        <source>pixmap image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sliced contours</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unknown</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1×%2×%3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Properties of %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>General</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Properties</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>- none -</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%L1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Image type:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Signature:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dimensions [mm×mm×mm]:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Granularity [mm]:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Significant z Positions [mm]:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dimensions [Pixel×Pixel×Pixel]:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spacing [mm×mm×mm]:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Property</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Value</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>InteractiveDicomUnserializer</name>
    <message>
        <source>Dicom Series</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>InteractiveDicomUnserializerDialog</name>
    <message>
        <source>Load Dicom series</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Filters and Axes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not yet implemented</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Series</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Patient</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add directory ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add files ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unselect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Axis</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Filter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>**)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>*)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tag</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Property</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Key: *) number of unique values **) ~ after filtering</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add directory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[patient]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[series]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Gathering metadata</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[meta property name]</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Copy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copies the selection from the properties table to the clipboard</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Icon View</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Properties Table</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Image List</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open a single file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>all supported Files (*.dcm; *.mhd; *.bmp; *.vis; *.hdr)
DICOM Images (*.dcm)
Meta Images (*.mhd)
Windows Bitmaps (*.bmp)
Tallowbrook VIS Files (*.vis)
Analyze Image (*.hdr)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select a directory containing the series.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Checking directory …</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Opening DICOM series …</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading data&#xa0;…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No DICOM series could be found at this location in the file system.</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%1 DICOM series will be loaded.</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select a directory to save the series.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save as Dicom series</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The image could not be saved to:

%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About Tevora</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>by the Tevora developers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>compiled using Qt version</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>as of</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>new sliced contours</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>selected slice from %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enter a name for the new fragment:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Slice Selector</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set selected plane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Open Single File ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open &amp;Dicom Series ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Dicom Series with Input Filter ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close Image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Save as Single File ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save as Dicom Series ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New sliced contours</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New slice selector</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add fragment ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Extract Edge Points ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Triangulate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Align</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Measure Thickness ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Color Triangulation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rasterize ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mirror ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set selector plane ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>View</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show in new view ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show metrics ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show center of mass ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Properties ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Procedures</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start Segmentation of Patella ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start Segmentation of Femur and Tibia ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Test Mesh Alignment ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show Online Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How to Acknowledge ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About Tevora ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About Qt ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Single File (obsolete) ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show edge point histograms</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load Contour of Patella...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load Segmentation of Patella ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is empty, but would have to contain at least one fragment.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mesh Fragment Alignment</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The free fragment will be aligned to the base fragment.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>base fragment</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>free fragment</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No mesh fragments found in selection. Thickness can therefore not be measured.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Thickness Measurement</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The thickness will be measured between two fragments (which may be the same). The thickness values will be assigned to points on the base fragment.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>remote fragment</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Coloring of %1 according to %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Segmentation of %s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>thickness of %s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>minimum thickness of %s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>coloring of %1 according to thickness</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>coloring of %1 according to minimum thickness</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>patellar cartilage</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cartilage bone interface</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cartilage surface</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want the thickness to be automatically calculated? Note that this might impact performance during segmentation.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>femoral cartilage</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tibial cartilage</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>femoral cartilage bone interface</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>femoral cartilage surface</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tibial cartilage bone interface</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tibial cartilage surface</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fragments in %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>base</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>free</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>distance of aligned from base fragment</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>coloring of base fragment according to distance of aligned fragment</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load the segmentation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>all supported Files (*.mhd; *.bmp; *.vis; *.hdr)
Meta Images (*.mhd)
Windows Bitmaps (*.bmp)
Tallowbrook VIS Files (*.vis)
Analyze Image (*.hdr)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reload of %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tevora</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot open new view. No image loaded.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Center of Mass of %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>In-plane Centers of Mass of %1 (voxel values minus 100) copied to clipboard.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MervImageObject</name>
    <message>
        <source>Unnamed Image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>DICOM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>range</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MhdSerializer</name>
    <message>
        <source>MetaImage file</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MhdUnserializer</name>
    <message>
        <source>MetaImage file</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QStackedSliceView</name>
    <message>
        <source>Stacked Slice View</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>x = %L1 mm; y = %L2 mm; z = %L3 mm</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QStackedSliceViewer</name>
    <message>
        <source>Stacked Slice Viewer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Perspective</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>allows to adjust the parameters of the projection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>test tip</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>allows to adjust brightness and contrast</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enables moving the displayed image around the screen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>allows to adjust the magnification of the display</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Trace</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enables drawing contours along automatically detected edge points</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Guess</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>can be used to delete contour points or segments</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Erase</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>enables loading contours of all slices</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Screenshot</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Image Composition Tree</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Screenshot as</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>JPEG Image (*.jpg)
Portable Network Graphics (*.png)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RasterizerObject</name>
    <message>
        <source>raster value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rasterization of %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SlicSerializer</name>
    <message>
        <source>Sliced Contours</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SlicUnserializer</name>
    <message>
        <source>Sliced Contours</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SliceDistanceDialog</name>
    <message>
        <source>Select Slice Distance Algorithm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There are several ways to determine the slice distance of the Dicom series. Select on which algorithm&apos;s result to rely.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Slice Location based algorithm; result: %1 mm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GDCM internal algorithm; result: %1 mm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Image Position (Patient) based algorithm; result: %1 mm</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SliceSelector</name>
    <message>
        <source>%1 = %2 in %3</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SlicedContour</name>
    <message>
        <source>some Contour</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SlicedContoursFragment</name>
    <message>
        <source>some Fragment</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SlicedContoursObject</name>
    <message>
        <source>Unnamed Contours</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SlicedContoursTriangulator</name>
    <message>
        <source>Triangulation of %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 (triangulated)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SlicedMetricsModel</name>
    <message>
        <source>Sliced metrics cannot be computed for this image.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%L1 mm^2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%L1 mm^3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%L1 mm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unavailable</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Thickness parameters</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>at z = %L1 mm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>area/length of section at z = %L1 mm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Total</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Total (corrected)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>MaxThicknes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>AvMaxThickness</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>MeanThickness</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>StdThickness</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SlicedMetricsViewer</name>
    <message>
        <source>Metrics of %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TextSerializer</name>
    <message>
        <source>Text (tab separated values)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TextSlicSerializer</name>
    <message>
        <source>Text file</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TraceMode</name>
    <message>
        <source>Tracing edges requires a Sliced Contours Fragment to be selected for editing.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 mm will be replaced.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TriMeshAligner</name>
    <message>
        <source>%1 aligned to %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TriMeshDistanceMeasurer</name>
    <message>
        <source>some distance measurer for triangle meshes</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>VisSerializer</name>
    <message>
        <source>Tallowbrook VIS format</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>VisUnserializer</name>
    <message>
        <source>Tallowbrook VIS format</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>VoxelSizeDialog</name>
    <message>
        <source>The image being loaded consists of %1x%2x%3 voxels without information on physical dimensions. Enter one voxel&apos;s dimensions.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>voxel x size:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>voxel y size:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>voxel z size:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>mm</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>WindowsBitmapSerializer</name>
    <message>
        <source>Windows bitmap</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>WindowsBitmapUnserializer</name>
    <message>
        <source>Windows bitmap</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Installiere Sprachunterstützung (deutsch) ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Installiere Sprachunterstützung (englisch) ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Installiere Sprachunterstützung (französisch) ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Installiere Sprachunterstützung (Landessprache) ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lade ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lade Sprachunterstützung ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Preparing user interface, and loading images ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>... finished.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
