<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>GripSplitter</name>
    <message>
        <source>Drag to change the height; double-click to fit it to the number of channels</source>
        <translation>Ziehen ändert die Höhe, ein Doppelklick passt sie der Zahl der Kanäle an</translation>
    </message>
</context>
</TS>
