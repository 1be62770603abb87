<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AcknowledgementDialog</name>
    <message>
        <source>Acknowledging Usage of Tevora</source>
        <translation>Danksagung bei Nutzung von Tevora</translation>
    </message>
    <message>
        <source>English</source>
        <comment>ACK_LANG</comment>
        <extracomment>Stands between the two texts on a publication below.</extracomment>
        <translation>englischsprachigen</translation>
    </message>
    <message>
        <source>German</source>
        <comment>ACK_LANG</comment>
        <extracomment>Stands between the two texts on a publication below.</extracomment>
        <translation>deutschsprachigen</translation>
    </message>
    <message>
        <source>French</source>
        <comment>ACK_LANG</comment>
        <extracomment>Stands between the two texts on a publication below.</extracomment>
        <translation>französischsprachigen</translation>
    </message>
    <message>
        <source>Acknowledge having used Tevora for your study in a</source>
        <translation>Erwähnen Sie die Nutzung von Tevora für Ihre Studie in einer</translation>
    </message>
    <message>
        <source>publication by including a remark analogous to the following.</source>
        <translation>Veröffentlichung durch eine Bemerkung entsprechend der folgenden.</translation>
    </message>
    <message>
        <source>language unavailable</source>
        <translation>Sprache nicht verfügbar</translation>
    </message>
</context>
<context>
    <name>AnalyzeSerializer</name>
    <message>
        <source>Analyze file</source>
        <translation>Analyze-Datei</translation>
    </message>
</context>
<context>
    <name>AnalyzeUnserializer</name>
    <message>
        <source>Analyze file</source>
        <translation>Analyze-Datei</translation>
    </message>
</context>
<context>
    <name>BitPlaneRasterizerObject</name>
    <message>
        <source>bit code</source>
        <translation>Bitcode</translation>
    </message>
</context>
<context>
    <name>CommandDialogs</name>
    <message>
        <source>Select Thickness Definition</source>
        <translation>Definition der Dicke wählen</translation>
    </message>
    <message>
        <source>The thickness of an irregularly shaped object may be defined in several ways. Select the definition to be used in this thickness measurement.</source>
        <translation>Die Dicke eines unregelmäßig geformten Objekts kann auf verschiedene Weise definiert werden. Wählen Sie die Definition für diese Dickenmessung.</translation>
    </message>
    <message>
        <source>perpendicular to %1</source>
        <translation>senkrecht zu %1</translation>
    </message>
    <message>
        <source>minimal distance</source>
        <translation>kleinster Abstand</translation>
    </message>
    <message>
        <source>Color %1</source>
        <translation>%1 einfärben</translation>
    </message>
    <message>
        <source>Select the fragment of %1 you want to be colored.</source>
        <translation>Wählen Sie das Fragment von %1, das eingefärbt werden soll.</translation>
    </message>
    <message>
        <source>Set up rasterization of %1</source>
        <translation>Rasterung von %1 einrichten</translation>
    </message>
    <message>
        <source>%1 will be rasterized to a rectilinear grid image. Enter the grid spacing and grid size (in voxels) below.</source>
        <translation>%1 wird in ein Bild mit rechtwinkligem Gitter gerastert. Geben Sie unten den Gitterabstand und die Gittergröße (in Voxeln) ein.</translation>
    </message>
    <message>
        <source>voxel x size [mm]:</source>
        <translation>Voxelgröße in x [mm]:</translation>
    </message>
    <message>
        <source>voxel y size [mm]:</source>
        <translation>Voxelgröße in y [mm]:</translation>
    </message>
    <message>
        <source>voxel z size [mm]:</source>
        <translation>Voxelgröße in z [mm]:</translation>
    </message>
    <message>
        <source>rastered image x size [voxels]:</source>
        <translation>Größe des Rasterbilds in x [Voxel]:</translation>
    </message>
    <message>
        <source>rastered image y size [voxels]:</source>
        <translation>Größe des Rasterbilds in y [Voxel]:</translation>
    </message>
    <message>
        <source>rastered image z size [voxels]:</source>
        <translation>Größe des Rasterbilds in z [Voxel]:</translation>
    </message>
    <message>
        <source>Mirror %1</source>
        <translation>%1 spiegeln</translation>
    </message>
    <message>
        <source>Select the axis to be mirrored. %1 will be mirrored against the (hyper-)plane orthgonal to this axis located at the image&apos;s center with respect to this axis.</source>
        <translation>Wählen Sie die zu spiegelnde Achse. %1 wird an der zu dieser Achse senkrechten (Hyper-)Ebene gespiegelt, die bezüglich dieser Achse in der Bildmitte liegt.</translation>
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
        <translation>Dicom-Datei</translation>
    </message>
</context>
<context>
    <name>DisplayScopes</name>
    <message>
        <source>(hidden)</source>
        <translation>(verborgen)</translation>
    </message>
    <message>
        <source>Point</source>
        <translation>Punkt</translation>
    </message>
    <message>
        <source>Point and adjacent</source>
        <translation>Punkt und Nachbarn</translation>
    </message>
    <message>
        <source>Slice</source>
        <translation>Schicht</translation>
    </message>
    <message>
        <source>Slice and adjacent</source>
        <translation>Schicht und Nachbarn</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volumen</translation>
    </message>
    <message>
        <source>Volume behind</source>
        <translation>Volumen dahinter</translation>
    </message>
    <message>
        <source>Volume before</source>
        <translation>Volumen davor</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>(hide)</source>
        <translation>(verbergen)</translation>
    </message>
</context>
<context>
    <name>DistributionCorrectingSliceEdgePointExtractor</name>
    <message>
        <source>distribution corrected edge points in %1</source>
        <translation>verteilungskorrigierte Kantenpunkte in %1</translation>
    </message>
</context>
<context>
    <name>EdgePointExtractor</name>
    <message>
        <source>edge points in %1</source>
        <translation>Kantenpunkte in %1</translation>
    </message>
</context>
<context>
    <name>EdgePointLister</name>
    <message>
        <source>Text file</source>
        <translation>Textdatei</translation>
    </message>
</context>
<context>
    <name>EraseMode</name>
    <message>
        <source>Erasing single contour points not yet implemented. Hold the Shift key and click to erase a contour segment.</source>
        <translation>Das Löschen einzelner Konturpunkte ist noch nicht möglich. Klicken Sie bei gedrückter Umschalttaste, um ein Kontursegment zu löschen.</translation>
    </message>
    <message>
        <source>Erasing requires a Sliced Contours Fragment to be selected for editing.</source>
        <translation>Zum Löschen muss ein Fragment von Schichtkonturen zum Bearbeiten ausgewählt sein.</translation>
    </message>
</context>
<context>
    <name>GraphicsObject</name>
    <message>
        <source>some graphics object</source>
        <translation>ein Grafikobjekt</translation>
    </message>
</context>
<context>
    <name>GuessMode</name>
    <message>
        <source>Use the left button of the mouse first to set a start point.</source>
        <translation>Setzen Sie zuerst mit der linken Maustaste einen Startpunkt.</translation>
    </message>
    <message>
        <source>Guessing edges requires a Sliced Contours Fragment to be selected for editing.</source>
        <translation>Zum Schätzen von Kanten muss ein Fragment von Schichtkonturen zum Bearbeiten ausgewählt sein.</translation>
    </message>
    <message>
        <source>Unable to guess a segment.</source>
        <translation>Es konnte kein Segment geschätzt werden.</translation>
    </message>
</context>
<context>
    <name>Help</name>
    <message>
        <source>There is no help page for this topic.</source>
        <translation>Zu diesem Thema gibt es keine Hilfeseite.</translation>
    </message>
    <message>
        <source>The help page for this topic cannot be displayed.</source>
        <translation>Die Hilfeseite zu diesem Thema kann nicht angezeigt werden.</translation>
    </message>
</context>
<context>
    <name>HelpViewer</name>
    <message>
        <source>Help - %1</source>
        <translation>Hilfe - %1</translation>
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
        <translation>[keiner]</translation>
    </message>
    <message>
        <source>Image</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Display</source>
        <translation>Anzeige</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Opacity [%]</source>
        <translation>Deckkraft [%]</translation>
    </message>
    <message>
        <source>Analyze</source>
        <translation>Analysieren</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Bearbeiten</translation>
    </message>
    <message>
        <source>Display Scope</source>
        <translation>Anzeigebereich</translation>
    </message>
    <message>
        <source>Display Mode</source>
        <translation>Anzeigemodus</translation>
    </message>
    <message>
        <source>Input Filter</source>
        <translation>Eingangsfilter</translation>
    </message>
    <message>
        <source>Only edge point sets can be analyzed.</source>
        <translation>Nur Mengen von Kantenpunkten können analysiert werden.</translation>
    </message>
</context>
<context>
    <name>ImageManager</name>
    <message>
        <source>all files (*)</source>
        <translation>alle Dateien (*)</translation>
    </message>
    <message>
        <source>all supported files (%1)</source>
        <translation>alle unterstützten Dateien (%1)</translation>
    </message>
    <message>
        <source>%1; %2</source>
        <translation>%1; %2</translation>
    </message>
    <message>
        <source>Select Series</source>
        <translation>Serie wählen</translation>
    </message>
    <message>
        <source>Select Echo Time</source>
        <translation>Echozeit wählen</translation>
    </message>
    <message>
        <source>Select the echo time to be loaded.</source>
        <translation>Wählen Sie die zu ladende Echozeit.</translation>
    </message>
    <message>
        <source>%1 (tE = %2 ms)</source>
        <translation>%1 (tE = %2 ms)</translation>
    </message>
    <message numerus="yes">
        <source>%n image(s) have been loaded.</source>
        <translation>
            <numerusform>%n Bild wurde geladen.</numerusform>
            <numerusform>%n Bilder wurden geladen.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n image(s) have been successfully loaded, </source>
        <translation>
            <numerusform>%n Bild wurde erfolgreich geladen, </numerusform>
            <numerusform>%n Bilder wurden erfolgreich geladen, </numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>whereas with the following %n image(s), errors occured while attempting to load them:</source>
        <translation>
            <numerusform>während beim Laden von %n Bild Fehler auftraten:</numerusform>
            <numerusform>während beim Laden der folgenden %n Bilder Fehler auftraten:</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Errors occured while attempting to load the following %n image(s):</source>
        <translation>
            <numerusform>Beim Laden von %n Bild traten Fehler auf:</numerusform>
            <numerusform>Beim Laden der folgenden %n Bilder traten Fehler auf:</numerusform>
        </translation>
    </message>
    <message>
        <source>There was no appropriate unserializer.</source>
        <translation>Es gab kein passendes Leseprogramm.</translation>
    </message>
    <message>
        <source>The following unserializer(s) assured their capability to unserialize this file, but they failed to do so: %1</source>
        <translation>Folgende Leseprogramme sollten diese Datei lesen können, scheiterten aber daran: %1</translation>
    </message>
    <message>
        <source>The file could not be opened for reading.</source>
        <translation>Die Datei konnte nicht zum Lesen geöffnet werden.</translation>
    </message>
    <message>
        <source>No image can be loaded due to no unserializer being installed.</source>
        <translation>Es kann kein Bild geladen werden, da kein Leseprogramm installiert ist.</translation>
    </message>
    <message>
        <source>Load images</source>
        <translation>Bilder laden</translation>
    </message>
    <message>
        <source>%1 (reason: %2)</source>
        <translation>%1 (Grund: %2)</translation>
    </message>
    <message>
        <source>Loading images ...</source>
        <translation>Bilder werden geladen ...</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>File Name</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>The image could not be saved to</source>
        <translation>Das Bild konnte nicht gespeichert werden unter</translation>
    </message>
    <message>
        <source>You can retry saving to this file, give a different file name, or abort saving the image.</source>
        <translation>Sie können erneut versuchen, in diese Datei zu speichern, einen anderen Dateinamen angeben oder das Speichern abbrechen.</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Different File</source>
        <translation>Andere Datei</translation>
    </message>
    <message>
        <source>Save Image as</source>
        <translation>Bild speichern unter</translation>
    </message>
    <message>
        <source>The image cannot be saved for there is no serializer installed to handle this type of image.</source>
        <translation>Das Bild kann nicht gespeichert werden, da für diese Art von Bild kein Schreibprogramm installiert ist.</translation>
    </message>
    <message>
        <source>The selected file could not be opened for writing.</source>
        <translation>Die gewählte Datei konnte nicht zum Schreiben geöffnet werden.</translation>
    </message>
</context>
<context>
    <name>ImagePropertiesDialog</name>
    <message>
        <source>pixmap image</source>
        <translation>Pixelbild</translation>
    </message>
    <message>
        <source>Sliced contours</source>
        <translation>Schichtkonturen</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>%1×%2×%3</source>
        <translation>%1×%2×%3</translation>
    </message>
    <message>
        <source>Properties of %1</source>
        <translation>Eigenschaften von %1</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>- none -</source>
        <translation>- keine -</translation>
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
        <translation>Bildtyp:</translation>
    </message>
    <message>
        <source>Signature:</source>
        <translation>Signatur:</translation>
    </message>
    <message>
        <source>Dimensions [mm×mm×mm]:</source>
        <translation>Abmessungen [mm×mm×mm]:</translation>
    </message>
    <message>
        <source>Granularity [mm]:</source>
        <translation>Granularität [mm]:</translation>
    </message>
    <message>
        <source>Significant z Positions [mm]:</source>
        <translation>Signifikante z-Positionen [mm]:</translation>
    </message>
    <message>
        <source>Dimensions [Pixel×Pixel×Pixel]:</source>
        <translation>Abmessungen [Pixel×Pixel×Pixel]:</translation>
    </message>
    <message>
        <source>Spacing [mm×mm×mm]:</source>
        <translation>Abstand [mm×mm×mm]:</translation>
    </message>
    <message>
        <source>Property</source>
        <translation>Eigenschaft</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
<context>
    <name>InteractiveDicomUnserializer</name>
    <message>
        <source>Dicom Series</source>
        <translation>Dicom-Serie</translation>
    </message>
</context>
<context>
    <name>InteractiveDicomUnserializerDialog</name>
    <message>
        <source>Load Dicom series</source>
        <translation>Dicom-Serie laden</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Filters and Axes</source>
        <translation>Filter und Achsen</translation>
    </message>
    <message>
        <source>not yet implemented</source>
        <translation>noch nicht verfügbar</translation>
    </message>
    <message>
        <source>Series</source>
        <translation>Serie</translation>
    </message>
    <message>
        <source>Patient</source>
        <translation>Patient</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>Add directory ...</source>
        <translation>Verzeichnis hinzufügen ...</translation>
    </message>
    <message>
        <source>Add files ...</source>
        <translation>Dateien hinzufügen ...</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>Unselect</source>
        <translation>Abwählen</translation>
    </message>
    <message>
        <source>Axis</source>
        <translation>Achse</translation>
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
        <translation>Eigenschaft</translation>
    </message>
    <message>
        <source>Key: *) number of unique values **) ~ after filtering</source>
        <translation>Legende: *) Anzahl verschiedener Werte **) ~ nach dem Filtern</translation>
    </message>
    <message>
        <source>Add directory</source>
        <translation>Verzeichnis hinzufügen</translation>
    </message>
    <message>
        <source>Add files</source>
        <translation>Dateien hinzufügen</translation>
    </message>
    <message>
        <source>[patient]</source>
        <translation>[Patient]</translation>
    </message>
    <message>
        <source>[series]</source>
        <translation>[Serie]</translation>
    </message>
    <message>
        <source>Gathering metadata</source>
        <translation>Metadaten werden gelesen</translation>
    </message>
    <message>
        <source>[meta property name]</source>
        <translation>[Name der Metaeigenschaft]</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copies the selection from the properties table to the clipboard</source>
        <translation>Kopiert die Auswahl aus der Eigenschaftstabelle in die Zwischenablage</translation>
    </message>
    <message>
        <source>Icon View</source>
        <translation>Symbolansicht</translation>
    </message>
    <message>
        <source>Properties Table</source>
        <translation>Eigenschaftstabelle</translation>
    </message>
    <message>
        <source>Image List</source>
        <translation>Bildliste</translation>
    </message>
    <message>
        <source>Open a single file</source>
        <translation>Einzelne Datei öffnen</translation>
    </message>
    <message>
        <source>all supported Files (*.dcm; *.mhd; *.bmp; *.vis; *.hdr)
DICOM Images (*.dcm)
Meta Images (*.mhd)
Windows Bitmaps (*.bmp)
Tallowbrook VIS Files (*.vis)
Analyze Image (*.hdr)</source>
        <translation>alle unterstützten Dateien (*.dcm; *.mhd; *.bmp; *.vis; *.hdr)
DICOM-Bilder (*.dcm)
Meta-Bilder (*.mhd)
Windows-Bitmaps (*.bmp)
Tallowbrook-VIS-Dateien (*.vis)
Analyze-Bild (*.hdr)</translation>
    </message>
    <message>
        <source>Select a directory containing the series.</source>
        <translation>Wählen Sie ein Verzeichnis mit der Serie.</translation>
    </message>
    <message>
        <source>Checking directory …</source>
        <translation>Verzeichnis wird geprüft …</translation>
    </message>
    <message>
        <source>Opening DICOM series …</source>
        <translation>DICOM-Serie wird geöffnet …</translation>
    </message>
    <message>
        <source>Loading data&#xa0;…</source>
        <translation>Daten werden geladen&#xa0;…</translation>
    </message>
    <message>
        <source>No DICOM series could be found at this location in the file system.</source>
        <translation>An dieser Stelle im Dateisystem wurde keine DICOM-Serie gefunden.</translation>
    </message>
    <message numerus="yes">
        <source>%1 DICOM series will be loaded.</source>
        <translation>
            <numerusform>%1 DICOM-Serie wird geladen.</numerusform>
            <numerusform>%1 DICOM-Serien werden geladen.</numerusform>
        </translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Select a directory to save the series.</source>
        <translation>Wählen Sie ein Verzeichnis zum Speichern der Serie.</translation>
    </message>
    <message>
        <source>Save as Dicom series</source>
        <translation>Als Dicom-Serie speichern</translation>
    </message>
    <message>
        <source>The image could not be saved to:

%1</source>
        <translation>Das Bild konnte nicht gespeichert werden unter:

%1</translation>
    </message>
    <message>
        <source>About Tevora</source>
        <translation>Über Tevora</translation>
    </message>
    <message>
        <source>by the Tevora developers</source>
        <translation>von den Entwicklern von Tevora</translation>
    </message>
    <message>
        <source>compiled using Qt version</source>
        <translation>kompiliert mit Qt-Version</translation>
    </message>
    <message>
        <source>as of</source>
        <translation>Stand</translation>
    </message>
    <message>
        <source>new sliced contours</source>
        <translation>neue Schichtkonturen</translation>
    </message>
    <message>
        <source>selected slice from %1</source>
        <translation>ausgewählte Schicht aus %1</translation>
    </message>
    <message>
        <source>Enter a name for the new fragment:</source>
        <translation>Geben Sie einen Namen für das neue Fragment ein:</translation>
    </message>
    <message>
        <source>Slice Selector</source>
        <translation>Schichtauswahl</translation>
    </message>
    <message>
        <source>Set selected plane</source>
        <translation>Ausgewählte Ebene setzen</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Open Single File ...</source>
        <translation>Einzelne Datei ö&amp;ffnen ...</translation>
    </message>
    <message>
        <source>Open &amp;Dicom Series ...</source>
        <translation>&amp;Dicom-Serie öffnen ...</translation>
    </message>
    <message>
        <source>Open Dicom Series with Input Filter ...</source>
        <translation>Dicom-Serie mit Eingangsfilter öffnen ...</translation>
    </message>
    <message>
        <source>Close Image</source>
        <translation>Bild schließen</translation>
    </message>
    <message>
        <source>&amp;Save as Single File ...</source>
        <translation>Als einzelne Datei &amp;speichern ...</translation>
    </message>
    <message>
        <source>Save as Dicom Series ...</source>
        <translation>Als Dicom-Serie speichern ...</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>Image</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Neu</translation>
    </message>
    <message>
        <source>New sliced contours</source>
        <translation>Neue Schichtkonturen</translation>
    </message>
    <message>
        <source>New slice selector</source>
        <translation>Neue Schichtauswahl</translation>
    </message>
    <message>
        <source>Add fragment ...</source>
        <translation>Fragment hinzufügen ...</translation>
    </message>
    <message>
        <source>Extract Edge Points ...</source>
        <translation>Kantenpunkte extrahieren ...</translation>
    </message>
    <message>
        <source>Triangulate</source>
        <translation>Triangulieren</translation>
    </message>
    <message>
        <source>Align</source>
        <translation>Ausrichten</translation>
    </message>
    <message>
        <source>Measure Thickness ...</source>
        <translation>Dicke messen ...</translation>
    </message>
    <message>
        <source>Color Triangulation</source>
        <translation>Triangulation einfärben</translation>
    </message>
    <message>
        <source>Rasterize ...</source>
        <translation>Rastern ...</translation>
    </message>
    <message>
        <source>Mirror ...</source>
        <translation>Spiegeln ...</translation>
    </message>
    <message>
        <source>Set selector plane ...</source>
        <translation>Ebene der Schichtauswahl setzen ...</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Ansicht</translation>
    </message>
    <message>
        <source>Show in new view ...</source>
        <translation>In neuer Ansicht anzeigen ...</translation>
    </message>
    <message>
        <source>Show metrics ...</source>
        <translation>Messwerte anzeigen ...</translation>
    </message>
    <message>
        <source>Show center of mass ...</source>
        <translation>Schwerpunkt anzeigen ...</translation>
    </message>
    <message>
        <source>Properties ...</source>
        <translation>Eigenschaften ...</translation>
    </message>
    <message>
        <source>Procedures</source>
        <translation>Abläufe</translation>
    </message>
    <message>
        <source>Start Segmentation of Patella ...</source>
        <translation>Segmentierung der Patella starten ...</translation>
    </message>
    <message>
        <source>Start Segmentation of Femur and Tibia ...</source>
        <translation>Segmentierung von Femur und Tibia starten ...</translation>
    </message>
    <message>
        <source>Test Mesh Alignment ...</source>
        <translation>Netzausrichtung testen ...</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Show Online Help</source>
        <translation>Online-Hilfe anzeigen</translation>
    </message>
    <message>
        <source>How to Acknowledge ...</source>
        <translation>Hinweise zur Danksagung ...</translation>
    </message>
    <message>
        <source>About Tevora ...</source>
        <translation>Über Tevora ...</translation>
    </message>
    <message>
        <source>About Qt ...</source>
        <translation>Über Qt ...</translation>
    </message>
    <message>
        <source>Open Single File (obsolete) ...</source>
        <translation>Einzelne Datei öffnen (veraltet) ...</translation>
    </message>
    <message>
        <source>Show edge point histograms</source>
        <translation>Histogramme der Kantenpunkte anzeigen</translation>
    </message>
    <message>
        <source>Load Contour of Patella...</source>
        <translation>Kontur der Patella laden...</translation>
    </message>
    <message>
        <source>Load Segmentation of Patella ...</source>
        <translation>Segmentierung der Patella laden ...</translation>
    </message>
    <message>
        <source>%1 is empty, but would have to contain at least one fragment.</source>
        <translation>%1 ist leer, müsste aber mindestens ein Fragment enthalten.</translation>
    </message>
    <message>
        <source>Mesh Fragment Alignment</source>
        <translation>Ausrichtung von Netzfragmenten</translation>
    </message>
    <message>
        <source>The free fragment will be aligned to the base fragment.</source>
        <translation>Das freie Fragment wird am Basisfragment ausgerichtet.</translation>
    </message>
    <message>
        <source>base fragment</source>
        <translation>Basisfragment</translation>
    </message>
    <message>
        <source>free fragment</source>
        <translation>freies Fragment</translation>
    </message>
    <message>
        <source>No mesh fragments found in selection. Thickness can therefore not be measured.</source>
        <translation>In der Auswahl wurden keine Netzfragmente gefunden. Die Dicke kann daher nicht gemessen werden.</translation>
    </message>
    <message>
        <source>Thickness Measurement</source>
        <translation>Dickenmessung</translation>
    </message>
    <message>
        <source>The thickness will be measured between two fragments (which may be the same). The thickness values will be assigned to points on the base fragment.</source>
        <translation>Die Dicke wird zwischen zwei Fragmenten gemessen (die auch gleich sein dürfen). Die Dickenwerte werden Punkten auf dem Basisfragment zugeordnet.</translation>
    </message>
    <message>
        <source>remote fragment</source>
        <translation>Gegenfragment</translation>
    </message>
    <message>
        <source>Coloring of %1 according to %2</source>
        <translation>Einfärbung von %1 nach %2</translation>
    </message>
    <message>
        <source>Segmentation of %s</source>
        <translation>Segmentierung von %s</translation>
    </message>
    <message>
        <source>thickness of %s</source>
        <translation>Dicke von %s</translation>
    </message>
    <message>
        <source>minimum thickness of %s</source>
        <translation>minimale Dicke von %s</translation>
    </message>
    <message>
        <source>coloring of %1 according to thickness</source>
        <translation>Einfärbung von %1 nach Dicke</translation>
    </message>
    <message>
        <source>coloring of %1 according to minimum thickness</source>
        <translation>Einfärbung von %1 nach minimaler Dicke</translation>
    </message>
    <message>
        <source>patellar cartilage</source>
        <translation>Patellaknorpel</translation>
    </message>
    <message>
        <source>cartilage bone interface</source>
        <translation>Knorpel-Knochen-Grenze</translation>
    </message>
    <message>
        <source>cartilage surface</source>
        <translation>Knorpeloberfläche</translation>
    </message>
    <message>
        <source>Do you want the thickness to be automatically calculated? Note that this might impact performance during segmentation.</source>
        <translation>Soll die Dicke automatisch berechnet werden? Beachten Sie, dass dies das Arbeiten während der Segmentierung verlangsamen kann.</translation>
    </message>
    <message>
        <source>femoral cartilage</source>
        <translation>Femurknorpel</translation>
    </message>
    <message>
        <source>tibial cartilage</source>
        <translation>Tibiaknorpel</translation>
    </message>
    <message>
        <source>femoral cartilage bone interface</source>
        <translation>femorale Knorpel-Knochen-Grenze</translation>
    </message>
    <message>
        <source>femoral cartilage surface</source>
        <translation>femorale Knorpeloberfläche</translation>
    </message>
    <message>
        <source>tibial cartilage bone interface</source>
        <translation>tibiale Knorpel-Knochen-Grenze</translation>
    </message>
    <message>
        <source>tibial cartilage surface</source>
        <translation>tibiale Knorpeloberfläche</translation>
    </message>
    <message>
        <source>Fragments in %1</source>
        <translation>Fragmente in %1</translation>
    </message>
    <message>
        <source>base</source>
        <translation>Basis</translation>
    </message>
    <message>
        <source>free</source>
        <translation>frei</translation>
    </message>
    <message>
        <source>distance of aligned from base fragment</source>
        <translation>Abstand des ausgerichteten vom Basisfragment</translation>
    </message>
    <message>
        <source>coloring of base fragment according to distance of aligned fragment</source>
        <translation>Einfärbung des Basisfragments nach Abstand des ausgerichteten Fragments</translation>
    </message>
    <message>
        <source>Load the segmentation</source>
        <translation>Segmentierung laden</translation>
    </message>
    <message>
        <source>all supported Files (*.mhd; *.bmp; *.vis; *.hdr)
Meta Images (*.mhd)
Windows Bitmaps (*.bmp)
Tallowbrook VIS Files (*.vis)
Analyze Image (*.hdr)</source>
        <translation>alle unterstützten Dateien (*.mhd; *.bmp; *.vis; *.hdr)
Meta-Bilder (*.mhd)
Windows-Bitmaps (*.bmp)
Tallowbrook-VIS-Dateien (*.vis)
Analyze-Bild (*.hdr)</translation>
    </message>
    <message>
        <source>Reload of %1</source>
        <translation>Erneut geladen: %1</translation>
    </message>
    <message>
        <source>Tevora</source>
        <translation>Tevora</translation>
    </message>
    <message>
        <source>Cannot open new view. No image loaded.</source>
        <translation>Es kann keine neue Ansicht geöffnet werden. Es ist kein Bild geladen.</translation>
    </message>
    <message>
        <source>Center of Mass of %1</source>
        <translation>Schwerpunkt von %1</translation>
    </message>
    <message>
        <source>In-plane Centers of Mass of %1 (voxel values minus 100) copied to clipboard.</source>
        <translation>Die Schwerpunkte von %1 in den Schichtebenen (Voxelwerte minus 100) wurden in die Zwischenablage kopiert.</translation>
    </message>
</context>
<context>
    <name>MervImageObject</name>
    <message>
        <source>Unnamed Image</source>
        <translation>Unbenanntes Bild</translation>
    </message>
    <message>
        <source>DICOM</source>
        <translation>DICOM</translation>
    </message>
    <message>
        <source>range</source>
        <translation>Wertebereich</translation>
    </message>
</context>
<context>
    <name>MhdSerializer</name>
    <message>
        <source>MetaImage file</source>
        <translation>MetaImage-Datei</translation>
    </message>
</context>
<context>
    <name>MhdUnserializer</name>
    <message>
        <source>MetaImage file</source>
        <translation>MetaImage-Datei</translation>
    </message>
</context>
<context>
    <name>QStackedSliceView</name>
    <message>
        <source>Stacked Slice View</source>
        <translation>Schichtstapelansicht</translation>
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
        <translation>Schichtstapelbetrachter</translation>
    </message>
    <message>
        <source>Perspective</source>
        <translation>Perspektive</translation>
    </message>
    <message>
        <source>allows to adjust the parameters of the projection</source>
        <translation>stellt die Parameter der Projektion ein</translation>
    </message>
    <message>
        <source>test tip</source>
        <translation>Testhinweis</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fensterung</translation>
    </message>
    <message>
        <source>allows to adjust brightness and contrast</source>
        <translation>stellt Helligkeit und Kontrast ein</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Verschieben</translation>
    </message>
    <message>
        <source>enables moving the displayed image around the screen</source>
        <translation>verschiebt das angezeigte Bild auf dem Bildschirm</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>allows to adjust the magnification of the display</source>
        <translation>stellt die Vergrößerung der Anzeige ein</translation>
    </message>
    <message>
        <source>Trace</source>
        <translation>Nachzeichnen</translation>
    </message>
    <message>
        <source>enables drawing contours along automatically detected edge points</source>
        <translation>zeichnet Konturen entlang automatisch erkannter Kantenpunkte</translation>
    </message>
    <message>
        <source>Guess</source>
        <translation>Schätzen</translation>
    </message>
    <message>
        <source>can be used to delete contour points or segments</source>
        <translation>löscht Konturpunkte oder Segmente</translation>
    </message>
    <message>
        <source>Erase</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Load</source>
        <translation>Laden</translation>
    </message>
    <message>
        <source>enables loading contours of all slices</source>
        <translation>lädt Konturen aller Schichten</translation>
    </message>
    <message>
        <source>Screenshot</source>
        <translation>Bildschirmfoto</translation>
    </message>
    <message>
        <source>Image Composition Tree</source>
        <translation>Baum der Bildkomposition</translation>
    </message>
    <message>
        <source>Save Screenshot as</source>
        <translation>Bildschirmfoto speichern unter</translation>
    </message>
    <message>
        <source>JPEG Image (*.jpg)
Portable Network Graphics (*.png)</source>
        <translation>JPEG-Bild (*.jpg)
Portable Network Graphics (*.png)</translation>
    </message>
</context>
<context>
    <name>RasterizerObject</name>
    <message>
        <source>raster value</source>
        <translation>Rasterwert</translation>
    </message>
    <message>
        <source>Rasterization of %1</source>
        <translation>Rasterung von %1</translation>
    </message>
</context>
<context>
    <name>SlicSerializer</name>
    <message>
        <source>Sliced Contours</source>
        <translation>Schichtkonturen</translation>
    </message>
</context>
<context>
    <name>SlicUnserializer</name>
    <message>
        <source>Sliced Contours</source>
        <translation>Schichtkonturen</translation>
    </message>
</context>
<context>
    <name>SliceDistanceDialog</name>
    <message>
        <source>Select Slice Distance Algorithm</source>
        <translation>Verfahren für den Schichtabstand wählen</translation>
    </message>
    <message>
        <source>There are several ways to determine the slice distance of the Dicom series. Select on which algorithm&apos;s result to rely.</source>
        <translation>Der Schichtabstand der Dicom-Serie kann auf verschiedene Weise bestimmt werden. Wählen Sie das Verfahren, dessen Ergebnis gelten soll.</translation>
    </message>
    <message>
        <source>Slice Location based algorithm; result: %1 mm</source>
        <translation>Verfahren nach Slice Location; Ergebnis: %1 mm</translation>
    </message>
    <message>
        <source>GDCM internal algorithm; result: %1 mm</source>
        <translation>GDCM-internes Verfahren; Ergebnis: %1 mm</translation>
    </message>
    <message>
        <source>Image Position (Patient) based algorithm; result: %1 mm</source>
        <translation>Verfahren nach Image Position (Patient); Ergebnis: %1 mm</translation>
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
        <translation>eine Kontur</translation>
    </message>
</context>
<context>
    <name>SlicedContoursFragment</name>
    <message>
        <source>some Fragment</source>
        <translation>ein Fragment</translation>
    </message>
</context>
<context>
    <name>SlicedContoursObject</name>
    <message>
        <source>Unnamed Contours</source>
        <translation>Unbenannte Konturen</translation>
    </message>
</context>
<context>
    <name>SlicedContoursTriangulator</name>
    <message>
        <source>Triangulation of %1</source>
        <translation>Triangulation von %1</translation>
    </message>
    <message>
        <source>%1 (triangulated)</source>
        <translation>%1 (trianguliert)</translation>
    </message>
</context>
<context>
    <name>SlicedMetricsModel</name>
    <message>
        <source>Sliced metrics cannot be computed for this image.</source>
        <translation>Für dieses Bild können keine Schichtmesswerte berechnet werden.</translation>
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
        <translation>unverfügbar</translation>
    </message>
    <message>
        <source>Thickness parameters</source>
        <translation>Dickenparameter</translation>
    </message>
    <message>
        <source>at z = %L1 mm</source>
        <translation>bei z = %L1 mm</translation>
    </message>
    <message>
        <source>area/length of section at z = %L1 mm</source>
        <translation>Fläche/Länge des Schnitts bei z = %L1 mm</translation>
    </message>
    <message>
        <source>Total</source>
        <translation>Gesamt</translation>
    </message>
    <message>
        <source>Total (corrected)</source>
        <translation>Gesamt (korrigiert)</translation>
    </message>
    <message>
        <source>MaxThicknes</source>
        <translation>MaxDicke</translation>
    </message>
    <message>
        <source>AvMaxThickness</source>
        <translation>MittlMaxDicke</translation>
    </message>
    <message>
        <source>MeanThickness</source>
        <translation>MittlereDicke</translation>
    </message>
    <message>
        <source>StdThickness</source>
        <translation>StdAbwDicke</translation>
    </message>
</context>
<context>
    <name>SlicedMetricsViewer</name>
    <message>
        <source>Metrics of %1</source>
        <translation>Messwerte von %1</translation>
    </message>
</context>
<context>
    <name>TextSerializer</name>
    <message>
        <source>Text (tab separated values)</source>
        <translation>Text (durch Tabulatoren getrennte Werte)</translation>
    </message>
</context>
<context>
    <name>TextSlicSerializer</name>
    <message>
        <source>Text file</source>
        <translation>Textdatei</translation>
    </message>
</context>
<context>
    <name>TraceMode</name>
    <message>
        <source>Tracing edges requires a Sliced Contours Fragment to be selected for editing.</source>
        <translation>Zum Nachzeichnen von Kanten muss ein Fragment von Schichtkonturen zum Bearbeiten ausgewählt sein.</translation>
    </message>
    <message>
        <source>%1 mm will be replaced.</source>
        <translation>%1 mm werden ersetzt.</translation>
    </message>
</context>
<context>
    <name>TriMeshAligner</name>
    <message>
        <source>%1 aligned to %2</source>
        <translation>%1 ausgerichtet an %2</translation>
    </message>
</context>
<context>
    <name>TriMeshDistanceMeasurer</name>
    <message>
        <source>some distance measurer for triangle meshes</source>
        <translation>eine Abstandsmessung für Dreiecksnetze</translation>
    </message>
</context>
<context>
    <name>VisSerializer</name>
    <message>
        <source>Tallowbrook VIS format</source>
        <translation>Tallowbrook-VIS-Format</translation>
    </message>
</context>
<context>
    <name>VisUnserializer</name>
    <message>
        <source>Tallowbrook VIS format</source>
        <translation>Tallowbrook-VIS-Format</translation>
    </message>
</context>
<context>
    <name>VoxelSizeDialog</name>
    <message>
        <source>The image being loaded consists of %1x%2x%3 voxels without information on physical dimensions. Enter one voxel&apos;s dimensions.</source>
        <translation>Das zu ladende Bild besteht aus %1x%2x%3 Voxeln ohne Angabe ihrer Größe. Geben Sie die Abmessungen eines Voxels ein.</translation>
    </message>
    <message>
        <source>voxel x size:</source>
        <translation>Voxelgröße in x:</translation>
    </message>
    <message>
        <source>voxel y size:</source>
        <translation>Voxelgröße in y:</translation>
    </message>
    <message>
        <source>voxel z size:</source>
        <translation>Voxelgröße in z:</translation>
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
        <translation>Windows-Bitmap</translation>
    </message>
</context>
<context>
    <name>WindowsBitmapUnserializer</name>
    <message>
        <source>Windows bitmap</source>
        <translation>Windows-Bitmap</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Installiere Sprachunterstützung (deutsch) ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Installiere Sprachunterstützung (deutsch) ...</translation>
    </message>
    <message>
        <source>Installiere Sprachunterstützung (englisch) ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Installiere Sprachunterstützung (englisch) ...</translation>
    </message>
    <message>
        <source>Installiere Sprachunterstützung (französisch) ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Installiere Sprachunterstützung (französisch) ...</translation>
    </message>
    <message>
        <source>Installiere Sprachunterstützung (Landessprache) ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Installiere Sprachunterstützung (Landessprache) ...</translation>
    </message>
    <message>
        <source>Lade ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Lade ...</translation>
    </message>
    <message>
        <source>Lade Sprachunterstützung ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Lade Sprachunterstützung ...</translation>
    </message>
    <message>
        <source>Preparing user interface, and loading images ...</source>
        <translation>Benutzeroberfläche wird vorbereitet, Bilder werden geladen ...</translation>
    </message>
    <message>
        <source>... finished.</source>
        <translation>... fertig.</translation>
    </message>
</context>
</TS>
