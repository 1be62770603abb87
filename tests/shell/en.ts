<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>main</name>
    <message>
        <source>Lade ...</source>
        <translation>the program's loading</translation>
    </message>
    <message>
        <source>Lade Sprachunterstützung ...</source>
        <translation>the program's loading of languages</translation>
    </message>
    <message>
        <source>Installiere Sprachunterstützung (englisch) ...</source>
        <translation>the program's installing of languages</translation>
    </message>
    <message>
        <source>... finished.</source>
        <translation>the program's end</translation>
    </message>
</context>
</TS>
