<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>main</name>
    <message>
        <source>Preparing user interface, and loading images ...</source>
        <translation>the toolkit's preparing</translation>
    </message>
    <message>
        <source>... finished.</source>
        <translation>the toolkit's end</translation>
    </message>
</context>
</TS>
