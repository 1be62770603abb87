<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>AcknowledgementDialog</name>
    <message>
        <source>Acknowledging Usage of Tevora</source>
        <translation>Mention de l&apos;utilisation de Tevora</translation>
    </message>
    <message>
        <source>English</source>
        <comment>ACK_LANG</comment>
        <extracomment>Stands between the two texts on a publication below.</extracomment>
        <translation>en anglais</translation>
    </message>
    <message>
        <source>German</source>
        <comment>ACK_LANG</comment>
        <extracomment>Stands between the two texts on a publication below.</extracomment>
        <translation>en allemand</translation>
    </message>
    <message>
        <source>French</source>
        <comment>ACK_LANG</comment>
        <extracomment>Stands between the two texts on a publication below.</extracomment>
        <translation>en français</translation>
    </message>
    <message>
        <source>Acknowledge having used Tevora for your study in a</source>
        <translation>Mentionnez l&apos;utilisation de Tevora pour votre étude dans une publication</translation>
    </message>
    <message>
        <source>publication by including a remark analogous to the following.</source>
        <translation>par une remarque analogue à la suivante.</translation>
    </message>
    <message>
        <source>language unavailable</source>
        <translation>langue non disponible</translation>
    </message>
</context>
<context>
    <name>AnalyzeSerializer</name>
    <message>
        <source>Analyze file</source>
        <translation>Fichier Analyze</translation>
    </message>
</context>
<context>
    <name>AnalyzeUnserializer</name>
    <message>
        <source>Analyze file</source>
        <translation>Fichier Analyze</translation>
    </message>
</context>
<context>
    <name>BitPlaneRasterizerObject</name>
    <message>
        <source>bit code</source>
        <translation>code binaire</translation>
    </message>
</context>
<context>
    <name>CommandDialogs</name>
    <message>
        <source>Select Thickness Definition</source>
        <translation>Choisir la définition de l&apos;épaisseur</translation>
    </message>
    <message>
        <source>The thickness of an irregularly shaped object may be defined in several ways. Select the definition to be used in this thickness measurement.</source>
        <translation>L&apos;épaisseur d&apos;un objet de forme irrégulière peut être définie de plusieurs façons. Choisissez la définition à utiliser pour cette mesure d&apos;épaisseur.</translation>
    </message>
    <message>
        <source>perpendicular to %1</source>
        <translation>perpendiculaire à %1</translation>
    </message>
    <message>
        <source>minimal distance</source>
        <translation>distance minimale</translation>
    </message>
    <message>
        <source>Color %1</source>
        <translation>Colorer %1</translation>
    </message>
    <message>
        <source>Select the fragment of %1 you want to be colored.</source>
        <translation>Choisissez le fragment de %1 à colorer.</translation>
    </message>
    <message>
        <source>Set up rasterization of %1</source>
        <translation>Paramètres de la rastérisation de %1</translation>
    </message>
    <message>
        <source>%1 will be rasterized to a rectilinear grid image. Enter the grid spacing and grid size (in voxels) below.</source>
        <translation>%1 sera rastérisé en une image à grille rectiligne. Indiquez ci-dessous l&apos;espacement et la taille de la grille (en voxels).</translation>
    </message>
    <message>
        <source>voxel x size [mm]:</source>
        <translation>taille du voxel en x [mm]&#xa0;:</translation>
    </message>
    <message>
        <source>voxel y size [mm]:</source>
        <translation>taille du voxel en y [mm]&#xa0;:</translation>
    </message>
    <message>
        <source>voxel z size [mm]:</source>
        <translation>taille du voxel en z [mm]&#xa0;:</translation>
    </message>
    <message>
        <source>rastered image x size [voxels]:</source>
        <translation>taille de l&apos;image rastérisée en x [voxels]&#xa0;:</translation>
    </message>
    <message>
        <source>rastered image y size [voxels]:</source>
        <translation>taille de l&apos;image rastérisée en y [voxels]&#xa0;:</translation>
    </message>
    <message>
        <source>rastered image z size [voxels]:</source>
        <translation>taille de l&apos;image rastérisée en z [voxels]&#xa0;:</translation>
    </message>
    <message>
        <source>Mirror %1</source>
        <translation>Mettre %1 en miroir</translation>
    </message>
    <message>
        <source>Select the axis to be mirrored. %1 will be mirrored against the (hyper-)plane orthgonal to this axis located at the image&apos;s center with respect to this axis.</source>
        <translation>Choisissez l&apos;axe à inverser. %1 sera mis en miroir par rapport à l&apos;(hyper)plan orthogonal à cet axe et situé au centre de l&apos;image selon cet axe.</translation>
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
        <translation>Fichier Dicom</translation>
    </message>
</context>
<context>
    <name>DisplayScopes</name>
    <message>
        <source>(hidden)</source>
        <translation>(masqué)</translation>
    </message>
    <message>
        <source>Point</source>
        <translation>Point</translation>
    </message>
    <message>
        <source>Point and adjacent</source>
        <translation>Point et voisins</translation>
    </message>
    <message>
        <source>Slice</source>
        <translation>Coupe</translation>
    </message>
    <message>
        <source>Slice and adjacent</source>
        <translation>Coupe et voisines</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message>
        <source>Volume behind</source>
        <translation>Volume derrière</translation>
    </message>
    <message>
        <source>Volume before</source>
        <translation>Volume devant</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>inconnu</translation>
    </message>
    <message>
        <source>(hide)</source>
        <translation>(masquer)</translation>
    </message>
</context>
<context>
    <name>DistributionCorrectingSliceEdgePointExtractor</name>
    <message>
        <source>distribution corrected edge points in %1</source>
        <translation>points de contour à distribution corrigée dans %1</translation>
    </message>
</context>
<context>
    <name>EdgePointExtractor</name>
    <message>
        <source>edge points in %1</source>
        <translation>points de contour dans %1</translation>
    </message>
</context>
<context>
    <name>EdgePointLister</name>
    <message>
        <source>Text file</source>
        <translation>Fichier texte</translation>
    </message>
</context>
<context>
    <name>EraseMode</name>
    <message>
        <source>Erasing single contour points not yet implemented. Hold the Shift key and click to erase a contour segment.</source>
        <translation>L&apos;effacement de points isolés d&apos;un contour n&apos;est pas encore possible. Cliquez en maintenant la touche Maj pour effacer un segment de contour.</translation>
    </message>
    <message>
        <source>Erasing requires a Sliced Contours Fragment to be selected for editing.</source>
        <translation>Pour effacer, un fragment de contours par coupe doit être sélectionné pour l&apos;édition.</translation>
    </message>
</context>
<context>
    <name>GraphicsObject</name>
    <message>
        <source>some graphics object</source>
        <translation>un objet graphique</translation>
    </message>
</context>
<context>
    <name>GuessMode</name>
    <message>
        <source>Use the left button of the mouse first to set a start point.</source>
        <translation>Placez d&apos;abord un point de départ avec le bouton gauche de la souris.</translation>
    </message>
    <message>
        <source>Guessing edges requires a Sliced Contours Fragment to be selected for editing.</source>
        <translation>Pour deviner des contours, un fragment de contours par coupe doit être sélectionné pour l&apos;édition.</translation>
    </message>
    <message>
        <source>Unable to guess a segment.</source>
        <translation>Impossible de deviner un segment.</translation>
    </message>
</context>
<context>
    <name>Help</name>
    <message>
        <source>There is no help page for this topic.</source>
        <translation>Il n&apos;y a pas de page d&apos;aide sur ce sujet.</translation>
    </message>
    <message>
        <source>The help page for this topic cannot be displayed.</source>
        <translation>La page d&apos;aide sur ce sujet ne peut pas être affichée.</translation>
    </message>
</context>
<context>
    <name>HelpViewer</name>
    <message>
        <source>Help - %1</source>
        <translation>Aide - %1</translation>
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
        <translation>[aucun]</translation>
    </message>
    <message>
        <source>Image</source>
        <translation>Image</translation>
    </message>
    <message>
        <source>Display</source>
        <translation>Affichage</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Couleur</translation>
    </message>
    <message>
        <source>Opacity [%]</source>
        <translation>Opacité [%]</translation>
    </message>
    <message>
        <source>Analyze</source>
        <translation>Analyser</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Éditer</translation>
    </message>
    <message>
        <source>Display Scope</source>
        <translation>Portée de l&apos;affichage</translation>
    </message>
    <message>
        <source>Display Mode</source>
        <translation>Mode d&apos;affichage</translation>
    </message>
    <message>
        <source>Input Filter</source>
        <translation>Filtre d&apos;entrée</translation>
    </message>
    <message>
        <source>Only edge point sets can be analyzed.</source>
        <translation>Seuls les ensembles de points de contour peuvent être analysés.</translation>
    </message>
</context>
<context>
    <name>ImageManager</name>
    <message>
        <source>all files (*)</source>
        <translation>tous les fichiers (*)</translation>
    </message>
    <message>
        <source>all supported files (%1)</source>
        <translation>tous les fichiers pris en charge (%1)</translation>
    </message>
    <message>
        <source>%1; %2</source>
        <translation>%1&#xa0;; %2</translation>
    </message>
    <message>
        <source>Select Series</source>
        <translation>Choisir la série</translation>
    </message>
    <message>
        <source>Select Echo Time</source>
        <translation>Choisir le temps d&apos;écho</translation>
    </message>
    <message>
        <source>Select the echo time to be loaded.</source>
        <translation>Choisissez le temps d&apos;écho à charger.</translation>
    </message>
    <message>
        <source>%1 (tE = %2 ms)</source>
        <translation>%1 (tE = %2 ms)</translation>
    </message>
    <message numerus="yes">
        <source>%n image(s) have been loaded.</source>
        <translation>
            <numerusform>%n image a été chargée.</numerusform>
            <numerusform>%n images ont été chargées.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n image(s) have been successfully loaded, </source>
        <translation>
            <numerusform>%n image a été chargée avec succès, </numerusform>
            <numerusform>%n images ont été chargées avec succès, </numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>whereas with the following %n image(s), errors occured while attempting to load them:</source>
        <translation>
            <numerusform>tandis que des erreurs se sont produites lors du chargement de %n image&#xa0;:</numerusform>
            <numerusform>tandis que des erreurs se sont produites lors du chargement des %n images suivantes&#xa0;:</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Errors occured while attempting to load the following %n image(s):</source>
        <translation>
            <numerusform>Des erreurs se sont produites lors du chargement de %n image&#xa0;:</numerusform>
            <numerusform>Des erreurs se sont produites lors du chargement des %n images suivantes&#xa0;:</numerusform>
        </translation>
    </message>
    <message>
        <source>There was no appropriate unserializer.</source>
        <translation>Il n&apos;y avait pas de lecteur approprié.</translation>
    </message>
    <message>
        <source>The following unserializer(s) assured their capability to unserialize this file, but they failed to do so: %1</source>
        <translation>Les lecteurs suivants devaient pouvoir lire ce fichier, mais ont échoué&#xa0;: %1</translation>
    </message>
    <message>
        <source>The file could not be opened for reading.</source>
        <translation>Le fichier n&apos;a pas pu être ouvert en lecture.</translation>
    </message>
    <message>
        <source>No image can be loaded due to no unserializer being installed.</source>
        <translation>Aucune image ne peut être chargée car aucun lecteur n&apos;est installé.</translation>
    </message>
    <message>
        <source>Load images</source>
        <translation>Charger des images</translation>
    </message>
    <message>
        <source>%1 (reason: %2)</source>
        <translation>%1 (raison&#xa0;: %2)</translation>
    </message>
    <message>
        <source>Loading images ...</source>
        <translation>Chargement des images ...</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>File Name</source>
        <translation>Nom du fichier</translation>
    </message>
    <message>
        <source>The image could not be saved to</source>
        <translation>L&apos;image n&apos;a pas pu être enregistrée sous</translation>
    </message>
    <message>
        <source>You can retry saving to this file, give a different file name, or abort saving the image.</source>
        <translation>Vous pouvez réessayer d&apos;enregistrer dans ce fichier, indiquer un autre nom de fichier ou abandonner l&apos;enregistrement.</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>Different File</source>
        <translation>Autre fichier</translation>
    </message>
    <message>
        <source>Save Image as</source>
        <translation>Enregistrer l&apos;image sous</translation>
    </message>
    <message>
        <source>The image cannot be saved for there is no serializer installed to handle this type of image.</source>
        <translation>L&apos;image ne peut pas être enregistrée car aucun programme d&apos;écriture n&apos;est installé pour ce type d&apos;image.</translation>
    </message>
    <message>
        <source>The selected file could not be opened for writing.</source>
        <translation>Le fichier choisi n&apos;a pas pu être ouvert en écriture.</translation>
    </message>
</context>
<context>
    <name>ImagePropertiesDialog</name>
    <message>
        <source>pixmap image</source>
        <translation>image matricielle</translation>
    </message>
    <message>
        <source>Sliced contours</source>
        <translation>Contours par coupe</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>inconnu</translation>
    </message>
    <message>
        <source>%1×%2×%3</source>
        <translation>%1×%2×%3</translation>
    </message>
    <message>
        <source>Properties of %1</source>
        <translation>Propriétés de %1</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Général</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Propriétés</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>- none -</source>
        <translation>- aucune -</translation>
    </message>
    <message>
        <source>%L1</source>
        <translation>%L1</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Nom&#xa0;:</translation>
    </message>
    <message>
        <source>Image type:</source>
        <translation>Type d&apos;image&#xa0;:</translation>
    </message>
    <message>
        <source>Signature:</source>
        <translation>Signature&#xa0;:</translation>
    </message>
    <message>
        <source>Dimensions [mm×mm×mm]:</source>
        <translation>Dimensions [mm×mm×mm]&#xa0;:</translation>
    </message>
    <message>
        <source>Granularity [mm]:</source>
        <translation>Granularité [mm]&#xa0;:</translation>
    </message>
    <message>
        <source>Significant z Positions [mm]:</source>
        <translation>Positions z significatives [mm]&#xa0;:</translation>
    </message>
    <message>
        <source>Dimensions [Pixel×Pixel×Pixel]:</source>
        <translation>Dimensions [pixel×pixel×pixel]&#xa0;:</translation>
    </message>
    <message>
        <source>Spacing [mm×mm×mm]:</source>
        <translation>Espacement [mm×mm×mm]&#xa0;:</translation>
    </message>
    <message>
        <source>Property</source>
        <translation>Propriété</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Valeur</translation>
    </message>
</context>
<context>
    <name>InteractiveDicomUnserializer</name>
    <message>
        <source>Dicom Series</source>
        <translation>Série Dicom</translation>
    </message>
</context>
<context>
    <name>InteractiveDicomUnserializerDialog</name>
    <message>
        <source>Load Dicom series</source>
        <translation>Charger une série Dicom</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Fichiers</translation>
    </message>
    <message>
        <source>Filters and Axes</source>
        <translation>Filtres et axes</translation>
    </message>
    <message>
        <source>not yet implemented</source>
        <translation>pas encore disponible</translation>
    </message>
    <message>
        <source>Series</source>
        <translation>Série</translation>
    </message>
    <message>
        <source>Patient</source>
        <translation>Patient</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Nom du fichier</translation>
    </message>
    <message>
        <source>Add directory ...</source>
        <translation>Ajouter un répertoire ...</translation>
    </message>
    <message>
        <source>Add files ...</source>
        <translation>Ajouter des fichiers ...</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Monter</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Descendre</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Sélectionner</translation>
    </message>
    <message>
        <source>Unselect</source>
        <translation>Désélectionner</translation>
    </message>
    <message>
        <source>Axis</source>
        <translation>Axe</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filtre</translation>
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
        <translation>Propriété</translation>
    </message>
    <message>
        <source>Key: *) number of unique values **) ~ after filtering</source>
        <translation>Légende&#xa0;: *) nombre de valeurs distinctes **) ~ après filtrage</translation>
    </message>
    <message>
        <source>Add directory</source>
        <translation>Ajouter un répertoire</translation>
    </message>
    <message>
        <source>Add files</source>
        <translation>Ajouter des fichiers</translation>
    </message>
    <message>
        <source>[patient]</source>
        <translation>[patient]</translation>
    </message>
    <message>
        <source>[series]</source>
        <translation>[série]</translation>
    </message>
    <message>
        <source>Gathering metadata</source>
        <translation>Lecture des métadonnées</translation>
    </message>
    <message>
        <source>[meta property name]</source>
        <translation>[nom de la métapropriété]</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
    <message>
        <source>Copies the selection from the properties table to the clipboard</source>
        <translation>Copie la sélection du tableau des propriétés dans le presse-papiers</translation>
    </message>
    <message>
        <source>Icon View</source>
        <translation>Vue en icônes</translation>
    </message>
    <message>
        <source>Properties Table</source>
        <translation>Tableau des propriétés</translation>
    </message>
    <message>
        <source>Image List</source>
        <translation>Liste des images</translation>
    </message>
    <message>
        <source>Open a single file</source>
        <translation>Ouvrir un fichier unique</translation>
    </message>
    <message>
        <source>all supported Files (*.dcm; *.mhd; *.bmp; *.vis; *.hdr)
DICOM Images (*.dcm)
Meta Images (*.mhd)
Windows Bitmaps (*.bmp)
Tallowbrook VIS Files (*.vis)
Analyze Image (*.hdr)</source>
        <translation>tous les fichiers pris en charge (*.dcm; *.mhd; *.bmp; *.vis; *.hdr)
Images DICOM (*.dcm)
Images Meta (*.mhd)
Bitmaps Windows (*.bmp)
Fichiers VIS Tallowbrook (*.vis)
Image Analyze (*.hdr)</translation>
    </message>
    <message>
        <source>Select a directory containing the series.</source>
        <translation>Choisissez un répertoire contenant la série.</translation>
    </message>
    <message>
        <source>Checking directory …</source>
        <translation>Vérification du répertoire …</translation>
    </message>
    <message>
        <source>Opening DICOM series …</source>
        <translation>Ouverture de la série DICOM …</translation>
    </message>
    <message>
        <source>Loading data&#xa0;…</source>
        <translation>Chargement des données&#xa0;…</translation>
    </message>
    <message>
        <source>No DICOM series could be found at this location in the file system.</source>
        <translation>Aucune série DICOM n&apos;a été trouvée à cet emplacement du système de fichiers.</translation>
    </message>
    <message numerus="yes">
        <source>%1 DICOM series will be loaded.</source>
        <translation>
            <numerusform>%1 série DICOM sera chargée.</numerusform>
            <numerusform>%1 séries DICOM seront chargées.</numerusform>
        </translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Select a directory to save the series.</source>
        <translation>Choisissez un répertoire où enregistrer la série.</translation>
    </message>
    <message>
        <source>Save as Dicom series</source>
        <translation>Enregistrer comme série Dicom</translation>
    </message>
    <message>
        <source>The image could not be saved to:

%1</source>
        <translation>L&apos;image n&apos;a pas pu être enregistrée sous&#xa0;:

%1</translation>
    </message>
    <message>
        <source>About Tevora</source>
        <translation>À propos de Tevora</translation>
    </message>
    <message>
        <source>by the Tevora developers</source>
        <translation>par les développeurs de Tevora</translation>
    </message>
    <message>
        <source>compiled using Qt version</source>
        <translation>compilé avec Qt version</translation>
    </message>
    <message>
        <source>as of</source>
        <translation>en date du</translation>
    </message>
    <message>
        <source>new sliced contours</source>
        <translation>nouveaux contours par coupe</translation>
    </message>
    <message>
        <source>selected slice from %1</source>
        <translation>coupe sélectionnée de %1</translation>
    </message>
    <message>
        <source>Enter a name for the new fragment:</source>
        <translation>Saisissez un nom pour le nouveau fragment&#xa0;:</translation>
    </message>
    <message>
        <source>Slice Selector</source>
        <translation>Sélecteur de coupe</translation>
    </message>
    <message>
        <source>Set selected plane</source>
        <translation>Définir le plan sélectionné</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
    <message>
        <source>&amp;Open Single File ...</source>
        <translation>&amp;Ouvrir un fichier unique ...</translation>
    </message>
    <message>
        <source>Open &amp;Dicom Series ...</source>
        <translation>Ouvrir une série &amp;Dicom ...</translation>
    </message>
    <message>
        <source>Open Dicom Series with Input Filter ...</source>
        <translation>Ouvrir une série Dicom avec filtre d&apos;entrée ...</translation>
    </message>
    <message>
        <source>Close Image</source>
        <translation>Fermer l&apos;image</translation>
    </message>
    <message>
        <source>&amp;Save as Single File ...</source>
        <translation>&amp;Enregistrer comme fichier unique ...</translation>
    </message>
    <message>
        <source>Save as Dicom Series ...</source>
        <translation>Enregistrer comme série Dicom ...</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>&amp;Quitter</translation>
    </message>
    <message>
        <source>Image</source>
        <translation>Image</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Nouveau</translation>
    </message>
    <message>
        <source>New sliced contours</source>
        <translation>Nouveaux contours par coupe</translation>
    </message>
    <message>
        <source>New slice selector</source>
        <translation>Nouveau sélecteur de coupe</translation>
    </message>
    <message>
        <source>Add fragment ...</source>
        <translation>Ajouter un fragment ...</translation>
    </message>
    <message>
        <source>Extract Edge Points ...</source>
        <translation>Extraire les points de contour ...</translation>
    </message>
    <message>
        <source>Triangulate</source>
        <translation>Trianguler</translation>
    </message>
    <message>
        <source>Align</source>
        <translation>Recaler</translation>
    </message>
    <message>
        <source>Measure Thickness ...</source>
        <translation>Mesurer l&apos;épaisseur ...</translation>
    </message>
    <message>
        <source>Color Triangulation</source>
        <translation>Colorer la triangulation</translation>
    </message>
    <message>
        <source>Rasterize ...</source>
        <translation>Rastériser ...</translation>
    </message>
    <message>
        <source>Mirror ...</source>
        <translation>Mettre en miroir ...</translation>
    </message>
    <message>
        <source>Set selector plane ...</source>
        <translation>Définir le plan du sélecteur ...</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Affichage</translation>
    </message>
    <message>
        <source>Show in new view ...</source>
        <translation>Afficher dans une nouvelle vue ...</translation>
    </message>
    <message>
        <source>Show metrics ...</source>
        <translation>Afficher les mesures ...</translation>
    </message>
    <message>
        <source>Show center of mass ...</source>
        <translation>Afficher le centre de masse ...</translation>
    </message>
    <message>
        <source>Properties ...</source>
        <translation>Propriétés ...</translation>
    </message>
    <message>
        <source>Procedures</source>
        <translation>Procédures</translation>
    </message>
    <message>
        <source>Start Segmentation of Patella ...</source>
        <translation>Démarrer la segmentation de la rotule ...</translation>
    </message>
    <message>
        <source>Start Segmentation of Femur and Tibia ...</source>
        <translation>Démarrer la segmentation du fémur et du tibia ...</translation>
    </message>
    <message>
        <source>Test Mesh Alignment ...</source>
        <translation>Tester le recalage de maillages ...</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>Show Online Help</source>
        <translation>Afficher l&apos;aide en ligne</translation>
    </message>
    <message>
        <source>How to Acknowledge ...</source>
        <translation>Comment mentionner Tevora ...</translation>
    </message>
    <message>
        <source>About Tevora ...</source>
        <translation>À propos de Tevora ...</translation>
    </message>
    <message>
        <source>About Qt ...</source>
        <translation>À propos de Qt ...</translation>
    </message>
    <message>
        <source>Open Single File (obsolete) ...</source>
        <translation>Ouvrir un fichier unique (obsolète) ...</translation>
    </message>
    <message>
        <source>Show edge point histograms</source>
        <translation>Afficher les histogrammes des points de contour</translation>
    </message>
    <message>
        <source>Load Contour of Patella...</source>
        <translation>Charger le contour de la rotule...</translation>
    </message>
    <message>
        <source>Load Segmentation of Patella ...</source>
        <translation>Charger la segmentation de la rotule ...</translation>
    </message>
    <message>
        <source>%1 is empty, but would have to contain at least one fragment.</source>
        <translation>%1 est vide, mais devrait contenir au moins un fragment.</translation>
    </message>
    <message>
        <source>Mesh Fragment Alignment</source>
        <translation>Recalage de fragments de maillage</translation>
    </message>
    <message>
        <source>The free fragment will be aligned to the base fragment.</source>
        <translation>Le fragment libre sera recalé sur le fragment de base.</translation>
    </message>
    <message>
        <source>base fragment</source>
        <translation>fragment de base</translation>
    </message>
    <message>
        <source>free fragment</source>
        <translation>fragment libre</translation>
    </message>
    <message>
        <source>No mesh fragments found in selection. Thickness can therefore not be measured.</source>
        <translation>Aucun fragment de maillage dans la sélection. L&apos;épaisseur ne peut donc pas être mesurée.</translation>
    </message>
    <message>
        <source>Thickness Measurement</source>
        <translation>Mesure d&apos;épaisseur</translation>
    </message>
    <message>
        <source>The thickness will be measured between two fragments (which may be the same). The thickness values will be assigned to points on the base fragment.</source>
        <translation>L&apos;épaisseur sera mesurée entre deux fragments (qui peuvent être le même). Les valeurs d&apos;épaisseur seront attribuées à des points du fragment de base.</translation>
    </message>
    <message>
        <source>remote fragment</source>
        <translation>fragment distant</translation>
    </message>
    <message>
        <source>Coloring of %1 according to %2</source>
        <translation>Coloration de %1 selon %2</translation>
    </message>
    <message>
        <source>Segmentation of %s</source>
        <translation>Segmentation de %s</translation>
    </message>
    <message>
        <source>thickness of %s</source>
        <translation>épaisseur de %s</translation>
    </message>
    <message>
        <source>minimum thickness of %s</source>
        <translation>épaisseur minimale de %s</translation>
    </message>
    <message>
        <source>coloring of %1 according to thickness</source>
        <translation>coloration de %1 selon l&apos;épaisseur</translation>
    </message>
    <message>
        <source>coloring of %1 according to minimum thickness</source>
        <translation>coloration de %1 selon l&apos;épaisseur minimale</translation>
    </message>
    <message>
        <source>patellar cartilage</source>
        <translation>cartilage de la rotule</translation>
    </message>
    <message>
        <source>cartilage bone interface</source>
        <translation>interface os-cartilage</translation>
    </message>
    <message>
        <source>cartilage surface</source>
        <translation>surface du cartilage</translation>
    </message>
    <message>
        <source>Do you want the thickness to be automatically calculated? Note that this might impact performance during segmentation.</source>
        <translation>Voulez-vous que l&apos;épaisseur soit calculée automatiquement&#xa0;? Notez que cela peut ralentir le travail pendant la segmentation.</translation>
    </message>
    <message>
        <source>femoral cartilage</source>
        <translation>cartilage fémoral</translation>
    </message>
    <message>
        <source>tibial cartilage</source>
        <translation>cartilage tibial</translation>
    </message>
    <message>
        <source>femoral cartilage bone interface</source>
        <translation>fémur&#xa0;: interface os-cartilage</translation>
    </message>
    <message>
        <source>femoral cartilage surface</source>
        <translation>fémur&#xa0;: surface du cartilage</translation>
    </message>
    <message>
        <source>tibial cartilage bone interface</source>
        <translation>tibia&#xa0;: interface os-cartilage</translation>
    </message>
    <message>
        <source>tibial cartilage surface</source>
        <translation>tibia&#xa0;: surface du cartilage</translation>
    </message>
    <message>
        <source>Fragments in %1</source>
        <translation>Fragments dans %1</translation>
    </message>
    <message>
        <source>base</source>
        <translation>base</translation>
    </message>
    <message>
        <source>free</source>
        <translation>libre</translation>
    </message>
    <message>
        <source>distance of aligned from base fragment</source>
        <translation>distance du fragment recalé au fragment de base</translation>
    </message>
    <message>
        <source>coloring of base fragment according to distance of aligned fragment</source>
        <translation>coloration du fragment de base selon la distance du fragment recalé</translation>
    </message>
    <message>
        <source>Load the segmentation</source>
        <translation>Charger la segmentation</translation>
    </message>
    <message>
        <source>all supported Files (*.mhd; *.bmp; *.vis; *.hdr)
Meta Images (*.mhd)
Windows Bitmaps (*.bmp)
Tallowbrook VIS Files (*.vis)
Analyze Image (*.hdr)</source>
        <translation>tous les fichiers pris en charge (*.mhd; *.bmp; *.vis; *.hdr)
Images Meta (*.mhd)
Bitmaps Windows (*.bmp)
Fichiers VIS Tallowbrook (*.vis)
Image Analyze (*.hdr)</translation>
    </message>
    <message>
        <source>Reload of %1</source>
        <translation>Rechargement de %1</translation>
    </message>
    <message>
        <source>Tevora</source>
        <translation>Tevora</translation>
    </message>
    <message>
        <source>Cannot open new view. No image loaded.</source>
        <translation>Impossible d&apos;ouvrir une nouvelle vue. Aucune image n&apos;est chargée.</translation>
    </message>
    <message>
        <source>Center of Mass of %1</source>
        <translation>Centre de masse de %1</translation>
    </message>
    <message>
        <source>In-plane Centers of Mass of %1 (voxel values minus 100) copied to clipboard.</source>
        <translation>Les centres de masse de %1 dans les plans de coupe (valeurs des voxels moins 100) ont été copiés dans le presse-papiers.</translation>
    </message>
</context>
<context>
    <name>MervImageObject</name>
    <message>
        <source>Unnamed Image</source>
        <translation>Image sans nom</translation>
    </message>
    <message>
        <source>DICOM</source>
        <translation>DICOM</translation>
    </message>
    <message>
        <source>range</source>
        <translation>plage de valeurs</translation>
    </message>
</context>
<context>
    <name>MhdSerializer</name>
    <message>
        <source>MetaImage file</source>
        <translation>Fichier MetaImage</translation>
    </message>
</context>
<context>
    <name>MhdUnserializer</name>
    <message>
        <source>MetaImage file</source>
        <translation>Fichier MetaImage</translation>
    </message>
</context>
<context>
    <name>QStackedSliceView</name>
    <message>
        <source>Stacked Slice View</source>
        <translation>Vue de pile de coupes</translation>
    </message>
    <message>
        <source>x = %L1 mm; y = %L2 mm; z = %L3 mm</source>
        <translation>x = %L1 mm&#xa0;; y = %L2 mm&#xa0;; z = %L3 mm</translation>
    </message>
</context>
<context>
    <name>QStackedSliceViewer</name>
    <message>
        <source>Stacked Slice Viewer</source>
        <translation>Visionneuse de pile de coupes</translation>
    </message>
    <message>
        <source>Perspective</source>
        <translation>Perspective</translation>
    </message>
    <message>
        <source>allows to adjust the parameters of the projection</source>
        <translation>permet de régler les paramètres de la projection</translation>
    </message>
    <message>
        <source>test tip</source>
        <translation>bulle de test</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenêtrage</translation>
    </message>
    <message>
        <source>allows to adjust brightness and contrast</source>
        <translation>permet de régler la luminosité et le contraste</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Déplacer</translation>
    </message>
    <message>
        <source>enables moving the displayed image around the screen</source>
        <translation>permet de déplacer l&apos;image affichée à l&apos;écran</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>allows to adjust the magnification of the display</source>
        <translation>permet de régler l&apos;agrandissement de l&apos;affichage</translation>
    </message>
    <message>
        <source>Trace</source>
        <translation>Tracer</translation>
    </message>
    <message>
        <source>enables drawing contours along automatically detected edge points</source>
        <translation>permet de tracer des contours le long de points de contour détectés automatiquement</translation>
    </message>
    <message>
        <source>Guess</source>
        <translation>Deviner</translation>
    </message>
    <message>
        <source>can be used to delete contour points or segments</source>
        <translation>permet d&apos;effacer des points ou des segments de contour</translation>
    </message>
    <message>
        <source>Erase</source>
        <translation>Effacer</translation>
    </message>
    <message>
        <source>Load</source>
        <translation>Charger</translation>
    </message>
    <message>
        <source>enables loading contours of all slices</source>
        <translation>permet de charger les contours de toutes les coupes</translation>
    </message>
    <message>
        <source>Screenshot</source>
        <translation>Capture d&apos;écran</translation>
    </message>
    <message>
        <source>Image Composition Tree</source>
        <translation>Arbre de composition de l&apos;image</translation>
    </message>
    <message>
        <source>Save Screenshot as</source>
        <translation>Enregistrer la capture d&apos;écran sous</translation>
    </message>
    <message>
        <source>JPEG Image (*.jpg)
Portable Network Graphics (*.png)</source>
        <translation>Image JPEG (*.jpg)
Portable Network Graphics (*.png)</translation>
    </message>
</context>
<context>
    <name>RasterizerObject</name>
    <message>
        <source>raster value</source>
        <translation>valeur de rastérisation</translation>
    </message>
    <message>
        <source>Rasterization of %1</source>
        <translation>Rastérisation de %1</translation>
    </message>
</context>
<context>
    <name>SlicSerializer</name>
    <message>
        <source>Sliced Contours</source>
        <translation>Contours par coupe</translation>
    </message>
</context>
<context>
    <name>SlicUnserializer</name>
    <message>
        <source>Sliced Contours</source>
        <translation>Contours par coupe</translation>
    </message>
</context>
<context>
    <name>SliceDistanceDialog</name>
    <message>
        <source>Select Slice Distance Algorithm</source>
        <translation>Choisir l&apos;algorithme de distance entre les coupes</translation>
    </message>
    <message>
        <source>There are several ways to determine the slice distance of the Dicom series. Select on which algorithm&apos;s result to rely.</source>
        <translation>La distance entre les coupes de la série Dicom peut être déterminée de plusieurs façons. Choisissez l&apos;algorithme dont le résultat doit être retenu.</translation>
    </message>
    <message>
        <source>Slice Location based algorithm; result: %1 mm</source>
        <translation>Algorithme fondé sur Slice Location&#xa0;; résultat&#xa0;: %1 mm</translation>
    </message>
    <message>
        <source>GDCM internal algorithm; result: %1 mm</source>
        <translation>Algorithme interne de GDCM&#xa0;; résultat&#xa0;: %1 mm</translation>
    </message>
    <message>
        <source>Image Position (Patient) based algorithm; result: %1 mm</source>
        <translation>Algorithme fondé sur Image Position (Patient)&#xa0;; résultat&#xa0;: %1 mm</translation>
    </message>
</context>
<context>
    <name>SliceSelector</name>
    <message>
        <source>%1 = %2 in %3</source>
        <translation>%1 = %2 dans %3</translation>
    </message>
</context>
<context>
    <name>SlicedContour</name>
    <message>
        <source>some Contour</source>
        <translation>un contour</translation>
    </message>
</context>
<context>
    <name>SlicedContoursFragment</name>
    <message>
        <source>some Fragment</source>
        <translation>un fragment</translation>
    </message>
</context>
<context>
    <name>SlicedContoursObject</name>
    <message>
        <source>Unnamed Contours</source>
        <translation>Contours sans nom</translation>
    </message>
</context>
<context>
    <name>SlicedContoursTriangulator</name>
    <message>
        <source>Triangulation of %1</source>
        <translation>Triangulation de %1</translation>
    </message>
    <message>
        <source>%1 (triangulated)</source>
        <translation>%1 (triangulé)</translation>
    </message>
</context>
<context>
    <name>SlicedMetricsModel</name>
    <message>
        <source>Sliced metrics cannot be computed for this image.</source>
        <translation>Les mesures par coupe ne peuvent pas être calculées pour cette image.</translation>
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
        <translation>indisponible</translation>
    </message>
    <message>
        <source>Thickness parameters</source>
        <translation>Paramètres d&apos;épaisseur</translation>
    </message>
    <message>
        <source>at z = %L1 mm</source>
        <translation>à z = %L1 mm</translation>
    </message>
    <message>
        <source>area/length of section at z = %L1 mm</source>
        <translation>aire/longueur de la section à z = %L1 mm</translation>
    </message>
    <message>
        <source>Total</source>
        <translation>Total</translation>
    </message>
    <message>
        <source>Total (corrected)</source>
        <translation>Total (corrigé)</translation>
    </message>
    <message>
        <source>MaxThicknes</source>
        <translation>ÉpaisseurMax</translation>
    </message>
    <message>
        <source>AvMaxThickness</source>
        <translation>ÉpaisseurMaxMoy</translation>
    </message>
    <message>
        <source>MeanThickness</source>
        <translation>ÉpaisseurMoyenne</translation>
    </message>
    <message>
        <source>StdThickness</source>
        <translation>ÉcartTypeÉpaisseur</translation>
    </message>
</context>
<context>
    <name>SlicedMetricsViewer</name>
    <message>
        <source>Metrics of %1</source>
        <translation>Mesures de %1</translation>
    </message>
</context>
<context>
    <name>TextSerializer</name>
    <message>
        <source>Text (tab separated values)</source>
        <translation>Texte (valeurs séparées par des tabulations)</translation>
    </message>
</context>
<context>
    <name>TextSlicSerializer</name>
    <message>
        <source>Text file</source>
        <translation>Fichier texte</translation>
    </message>
</context>
<context>
    <name>TraceMode</name>
    <message>
        <source>Tracing edges requires a Sliced Contours Fragment to be selected for editing.</source>
        <translation>Pour tracer des contours, un fragment de contours par coupe doit être sélectionné pour l&apos;édition.</translation>
    </message>
    <message>
        <source>%1 mm will be replaced.</source>
        <translation>%1 mm seront remplacés.</translation>
    </message>
</context>
<context>
    <name>TriMeshAligner</name>
    <message>
        <source>%1 aligned to %2</source>
        <translation>%1 recalé sur %2</translation>
    </message>
</context>
<context>
    <name>TriMeshDistanceMeasurer</name>
    <message>
        <source>some distance measurer for triangle meshes</source>
        <translation>une mesure de distance pour maillages triangulaires</translation>
    </message>
</context>
<context>
    <name>VisSerializer</name>
    <message>
        <source>Tallowbrook VIS format</source>
        <translation>Format VIS Tallowbrook</translation>
    </message>
</context>
<context>
    <name>VisUnserializer</name>
    <message>
        <source>Tallowbrook VIS format</source>
        <translation>Format VIS Tallowbrook</translation>
    </message>
</context>
<context>
    <name>VoxelSizeDialog</name>
    <message>
        <source>The image being loaded consists of %1x%2x%3 voxels without information on physical dimensions. Enter one voxel&apos;s dimensions.</source>
        <translation>L&apos;image à charger se compose de %1x%2x%3 voxels sans indication de dimensions physiques. Saisissez les dimensions d&apos;un voxel.</translation>
    </message>
    <message>
        <source>voxel x size:</source>
        <translation>taille du voxel en x&#xa0;:</translation>
    </message>
    <message>
        <source>voxel y size:</source>
        <translation>taille du voxel en y&#xa0;:</translation>
    </message>
    <message>
        <source>voxel z size:</source>
        <translation>taille du voxel en z&#xa0;:</translation>
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
        <translation>Bitmap Windows</translation>
    </message>
</context>
<context>
    <name>WindowsBitmapUnserializer</name>
    <message>
        <source>Windows bitmap</source>
        <translation>Bitmap Windows</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Installiere Sprachunterstützung (deutsch) ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Installation de la langue (allemand) ...</translation>
    </message>
    <message>
        <source>Installiere Sprachunterstützung (englisch) ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Installation de la langue (anglais) ...</translation>
    </message>
    <message>
        <source>Installiere Sprachunterstützung (französisch) ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Installation de la langue (français) ...</translation>
    </message>
    <message>
        <source>Installiere Sprachunterstützung (Landessprache) ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Installation de la langue (langue du système) ...</translation>
    </message>
    <message>
        <source>Lade ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Chargement ...</translation>
    </message>
    <message>
        <source>Lade Sprachunterstützung ...</source>
        <extracomment>Shown before the translations are there: always in German.</extracomment>
        <translation>Chargement des langues ...</translation>
    </message>
    <message>
        <source>Preparing user interface, and loading images ...</source>
        <translation>Préparation de l&apos;interface et chargement des images ...</translation>
    </message>
    <message>
        <source>... finished.</source>
        <translation>... terminé.</translation>
    </message>
</context>
</TS>
