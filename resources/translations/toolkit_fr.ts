<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- Kept by hand: texts of the toolkit's own dialogs that its translation lacks. -->
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>QAbstractFileIconProvider</name>
    <message>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <source>Alias</source>
        <translation>Alias</translation>
    </message>
    <message>
        <source>Drive</source>
        <translation>Lecteur</translation>
    </message>
    <message>
        <source>File Folder</source>
        <translation>Dossier</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Dossier</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Inconnu</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Raccourci</translation>
    </message>
</context>
<context>
    <name>QMessageBox</name>
    <message>
        <source>&lt;p&gt;Qt is a C++ toolkit for cross-platform application development.&lt;/p&gt;&lt;p&gt;Qt provides single-source portability across all major desktop operating systems. It is also available for embedded Linux and other embedded and mobile operating systems.&lt;/p&gt;&lt;p&gt;Qt is available under multiple licensing options designed to accommodate the needs of our various users.&lt;/p&gt;&lt;p&gt;Qt licensed under our commercial license agreement is appropriate for development of proprietary/commercial software where you do not want to share any source code with third parties or otherwise cannot comply with the terms of GNU (L)GPL.&lt;/p&gt;&lt;p&gt;Qt licensed under GNU (L)GPL is appropriate for the development of Qt&amp;nbsp;applications provided you can comply with the terms and conditions of the respective licenses.&lt;/p&gt;&lt;p&gt;Please see &lt;a href="http://%2/"&gt;%2&lt;/a&gt; for an overview of Qt licensing.&lt;/p&gt;&lt;p&gt;Copyright (C) %1 The Qt Company Ltd and other contributors.&lt;/p&gt;&lt;p&gt;Qt and the Qt logo are trademarks of The Qt Company Ltd.&lt;/p&gt;&lt;p&gt;Qt is The Qt Company Ltd product developed as an open source project. See &lt;a href="http://%3/"&gt;%3&lt;/a&gt; for more information.&lt;/p&gt;</source>
        <translation>&lt;p&gt;Qt est une bibliothèque C++ pour le développement d'applications multiplateformes.&lt;/p&gt;&lt;p&gt;Avec Qt, un même code source fonctionne sur tous les principaux systèmes d'exploitation de bureau. Qt existe aussi pour Linux embarqué et pour d'autres systèmes d'exploitation embarqués et mobiles.&lt;/p&gt;&lt;p&gt;Qt est disponible sous plusieurs licences, afin de répondre aux besoins variés de ses utilisateurs.&lt;/p&gt;&lt;p&gt;Qt sous licence commerciale convient au développement de logiciels propriétaires ou commerciaux dont vous ne souhaitez pas partager le code source avec des tiers, ou qui ne peuvent pas respecter les termes de la GNU (L)GPL.&lt;/p&gt;&lt;p&gt;Qt sous licence GNU (L)GPL convient au développement d'applications Qt, à condition de respecter les termes et conditions des licences respectives.&lt;/p&gt;&lt;p&gt;Voir &lt;a href="http://%2/"&gt;%2&lt;/a&gt; pour un aperçu des licences de Qt.&lt;/p&gt;&lt;p&gt;Copyright (C) %1 The Qt Company Ltd et autres contributeurs.&lt;/p&gt;&lt;p&gt;Qt et le logo Qt sont des marques de The Qt Company Ltd.&lt;/p&gt;&lt;p&gt;Qt est un produit de The Qt Company Ltd, développé sous forme de projet open source. Voir &lt;a href="http://%3/"&gt;%3&lt;/a&gt; pour plus d'informations.&lt;/p&gt;</translation>
    </message>
</context>
</TS>
