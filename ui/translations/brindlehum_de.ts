<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AppWindows</name>
    <message>
        <source>What works here</source>
        <translation>Was hier funktioniert</translation>
    </message>
</context>
<context>
    <name>BarRuler</name>
    <message>
        <source>INTRO</source>
        <translation>INTRO</translation>
    </message>
    <message>
        <source>LOOP</source>
        <translation>LOOP</translation>
    </message>
    <message>
        <source>ENDING</source>
        <translation>SCHLUSS</translation>
    </message>
    <message>
        <source>Set by hand at bar %1</source>
        <translation>Von Hand auf Takt %1 gesetzt</translation>
    </message>
    <message>
        <source>The body starts at bar %1</source>
        <translation>Der Hauptteil beginnt bei Takt %1</translation>
    </message>
    <message>
        <source>The ending starts at bar %1</source>
        <translation>Der Schluss beginnt bei Takt %1</translation>
    </message>
    <message>
        <source>The loop ends before bar %1</source>
        <translation>Die Schleife endet vor Takt %1</translation>
    </message>
</context>
<context>
    <name>BarsDialog</name>
    <message>
        <source>%1 BPM · 1 beat a bar</source>
        <translation>%1 BPM · 1 Schlag pro Takt</translation>
    </message>
    <message>
        <source>%1 BPM · %2 beats a bar</source>
        <translation>%1 BPM · %2 Schläge pro Takt</translation>
    </message>
    <message>
        <source>bar lines set by hand</source>
        <translation>Taktstriche von Hand gesetzt</translation>
    </message>
    <message>
        <source>bar lines uncertain (%1 % sure): click where a bar starts</source>
        <translation>Taktstriche unsicher (%1 % sicher): anklicken, wo ein Takt beginnt</translation>
    </message>
    <message>
        <source>bar lines %1 % sure</source>
        <translation>Taktstriche zu %1 % sicher</translation>
    </message>
</context>
<context>
    <name>BrowserMenu</name>
    <message>
        <source>Open in Editor</source>
        <translation>Im Editor öffnen</translation>
    </message>
    <message>
        <source>Make Temp Edits</source>
        <translation>Temp-Schnitte erstellen</translation>
    </message>
    <message>
        <source>Make Temp Edits (%1 files)</source>
        <translation>Temp-Schnitte erstellen (%1 Dateien)</translation>
    </message>
    <message>
        <source>Set Bars…</source>
        <translation>Takte festlegen …</translation>
    </message>
    <message>
        <source>Rename to UCS Names…</source>
        <translation>In UCS-Namen umbenennen …</translation>
    </message>
    <message>
        <source>Show in File Manager</source>
        <translation>Im Dateimanager anzeigen</translation>
    </message>
    <message>
        <source>Copy Path</source>
        <translation>Pfad kopieren</translation>
    </message>
</context>
<context>
    <name>BrowserState</name>
    <message>
        <source>No results for “%1”</source>
        <translation>Keine Treffer für „%1“</translation>
    </message>
    <message>
        <source>No results in %1</source>
        <translation>Keine Treffer in %1</translation>
    </message>
    <message>
        <source>No results for “%1” in %2</source>
        <translation>Keine Treffer für „%1“ in %2</translation>
    </message>
    <message>
        <source>Searching…</source>
        <translation>Suche läuft …</translation>
    </message>
    <message>
        <source>%1 result</source>
        <translation>%1 Treffer</translation>
    </message>
    <message>
        <source>%1 results</source>
        <translation>%1 Treffer</translation>
    </message>
    <message>
        <source>The best %1 are shown. One more word narrows the search.</source>
        <translation>Angezeigt werden die besten %1. Ein weiteres Wort grenzt die Suche ein.</translation>
    </message>
    <message>
        <source>Search isn&apos;t available</source>
        <translation>Die Suche ist nicht verfügbar</translation>
    </message>
    <message>
        <source>The library&apos;s catalog couldn&apos;t be opened. Folders can still be browsed.</source>
        <translation>Der Katalog der Bibliothek ließ sich nicht öffnen. Ordner lassen sich weiter durchsehen.</translation>
    </message>
    <message>
        <source>Nothing to search yet</source>
        <translation>Noch nichts zu durchsuchen</translation>
    </message>
    <message>
        <source>Search finds the sounds in the folders of your library.</source>
        <translation>Die Suche findet die Töne in den Ordnern der Bibliothek.</translation>
    </message>
    <message>
        <source>Add Folder…</source>
        <translation>Ordner hinzufügen …</translation>
    </message>
    <message>
        <source>Indexing is still under way: more may be found in a moment.</source>
        <translation>Die Indizierung läuft noch: gleich ist vielleicht mehr zu finden.</translation>
    </message>
    <message>
        <source>Fewer or shorter words find more. A minus excludes: -word.</source>
        <translation>Weniger oder kürzere Wörter finden mehr. Ein Minus schließt aus: -wort.</translation>
    </message>
    <message>
        <source>Clear Search</source>
        <translation>Suche leeren</translation>
    </message>
    <message>
        <source>%1 folder</source>
        <translation>%1 Ordner</translation>
    </message>
    <message>
        <source>%1 folders</source>
        <translation>%1 Ordner</translation>
    </message>
    <message>
        <source>%1 sound</source>
        <translation>%1 Ton</translation>
    </message>
    <message>
        <source>%1 sounds</source>
        <translation>%1 Töne</translation>
    </message>
    <message>
        <source>This folder can&apos;t be opened</source>
        <translation>Dieser Ordner lässt sich nicht öffnen</translation>
    </message>
    <message>
        <source>No sounds in this folder</source>
        <translation>Keine Töne in diesem Ordner</translation>
    </message>
    <message>
        <source>Its permissions don&apos;t let you read it.</source>
        <translation>Die Leserechte dafür fehlen.</translation>
    </message>
    <message>
        <source>It may have been moved, or its volume isn&apos;t there.</source>
        <translation>Vielleicht wurde er verschoben, oder sein Datenträger fehlt.</translation>
    </message>
    <message>
        <source>No sounds yet</source>
        <translation>Noch keine Töne</translation>
    </message>
    <message>
        <source>Add the folders that hold your sounds: they are indexed, and searched as you type.</source>
        <translation>Ordner mit Tönen hinzufügen: Sie werden indiziert und beim Tippen durchsucht.</translation>
    </message>
    <message>
        <source>Enclosing Folder</source>
        <translation>Übergeordneter Ordner</translation>
    </message>
</context>
<context>
    <name>DragMenu</name>
    <message>
        <source>The file itself, or a cut of it with all its channels</source>
        <translation>Die Datei selbst oder ein Ausschnitt mit allen Kanälen</translation>
    </message>
    <message>
        <source>The sound laid out for these speakers, and nothing added</source>
        <translation>Der Ton für diese Lautsprecher, ohne Zusätze</translation>
    </message>
    <message>
        <source>Two channels for headphones</source>
        <translation>Zwei Kanäle für Kopfhörer</translation>
    </message>
    <message>
        <source>Spread over these speakers by the upmix that is switched on</source>
        <translation>Vom eingeschalteten Upmix auf diese Lautsprecher verteilt</translation>
    </message>
    <message>
        <source>Copy Sound</source>
        <translation>Ton kopieren</translation>
    </message>
    <message>
        <source>Export to Pulls Folder</source>
        <translation>In den Pulls-Ordner exportieren</translation>
    </message>
    <message>
        <source>Drag As</source>
        <translation>Ziehen als</translation>
    </message>
</context>
<context>
    <name>EditorMenus</name>
    <message>
        <source>Exact</source>
        <translation>Exakt</translation>
    </message>
    <message>
        <source>At Zero Crossings</source>
        <translation>An Nulldurchgängen</translation>
    </message>
    <message>
        <source>Crossfade of 4 ms</source>
        <translation>Crossfade von 4 ms</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Close Window</source>
        <translation>Fenster schließen</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>Joins of Cuts</source>
        <translation>Schnittübergänge</translation>
    </message>
    <message>
        <source>E&amp;ffects</source>
        <translation>&amp;Effekte</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Playback</source>
        <translation>&amp;Wiedergabe</translation>
    </message>
</context>
<context>
    <name>EditorWindow</name>
    <message>
        <source>Save the edits of %1?</source>
        <translation>Bearbeitung von %1 speichern?</translation>
    </message>
    <message>
        <source>They are lost if you don&apos;t save them.</source>
        <translation>Ohne Speichern geht sie verloren.</translation>
    </message>
</context>
<context>
    <name>FolderChooser</name>
    <message>
        <source>Add to Library</source>
        <translation>Zur Bibliothek hinzufügen</translation>
    </message>
</context>
<context>
    <name>GenerationQuestion</name>
    <message>
        <source>Send to %1?</source>
        <translation>An %1 senden?</translation>
    </message>
    <message>
        <source>Also send the file&apos;s name, “%1”</source>
        <translation>Auch den Dateinamen senden, „%1“</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Senden</translation>
    </message>
    <message>
        <source>For this intro, %1 go to the generation service at %2.</source>
        <translation>Für dieses Intro gehen %1 an den Generierungsdienst bei %2.</translation>
    </message>
    <message>
        <source>For this ending, %1 go to the generation service at %2.</source>
        <translation>Für diesen Schluss gehen %1 an den Generierungsdienst bei %2.</translation>
    </message>
    <message>
        <source>For this variation, %1 go to the generation service at %2.</source>
        <translation>Für diese Variation gehen %1 an den Generierungsdienst bei %2.</translation>
    </message>
    <message>
        <source>the tempo (%1 BPM), the key (%2) and the name “%3”</source>
        <translation>das Tempo (%1 BPM), die Tonart (%2) und den Namen „%3“</translation>
    </message>
    <message>
        <source>the tempo (%1 BPM) and the key (%2)</source>
        <translation>das Tempo (%1 BPM) und die Tonart (%2)</translation>
    </message>
    <message>
        <source>%1 s of the sound, the tempo (%2 BPM), the key (%3) and the name “%4”</source>
        <translation>%1 s des Tons, das Tempo (%2 BPM), die Tonart (%3) und den Namen „%4“</translation>
    </message>
    <message>
        <source>%1 s of the sound, the tempo (%2 BPM) and the key (%3)</source>
        <translation>%1 s des Tons, das Tempo (%2 BPM) und die Tonart (%3)</translation>
    </message>
    <message>
        <source>Later endings and variations send up to %1 s of the sound each; intros send none. The takes are fetched from the addresses that the service gives. You won&apos;t be asked again for this service.</source>
        <translation>Spätere Schlüsse und Variationen senden jeweils bis zu %1 s des Tons, Intros nichts davon. Die Takes werden von den Adressen geholt, die der Dienst nennt. Für diesen Dienst wird nicht noch einmal gefragt.</translation>
    </message>
</context>
<context>
    <name>GripSplitter</name>
    <message>
        <source>Drag to change the height; double-click to fit it to the number of channels</source>
        <translation>Ziehen ändert die Höhe, ein Doppelklick passt sie der Zahl der Kanäle an</translation>
    </message>
</context>
<context>
    <name>HRTFSettings</name>
    <message>
        <source>For binaural outputs. A SOFA file (AES69) measured on your own ears, or on ears like yours, makes it clearer what is in front, behind and above.</source>
        <translation>Für binaurale Ausgaben. Eine SOFA-Datei (AES69), an den eigenen oder ähnlichen Ohren gemessen, macht deutlicher, was vorn, hinten und oben ist.</translation>
    </message>
</context>
<context>
    <name>InspectorFields</name>
    <message>
        <source>&amp;Description</source>
        <translation>Beschre&amp;ibung</translation>
    </message>
    <message>
        <source>Categor&amp;y</source>
        <translation>Kate&amp;gorie</translation>
    </message>
    <message>
        <source>Su&amp;bcategory</source>
        <translation>&amp;Unterkategorie</translation>
    </message>
    <message>
        <source>&amp;CatID</source>
        <translation>&amp;CatID</translation>
    </message>
    <message>
        <source>FX &amp;name</source>
        <translation>FX-&amp;Name</translation>
    </message>
    <message>
        <source>&amp;Keywords</source>
        <translation>&amp;Schlagwörter</translation>
    </message>
    <message>
        <source>&amp;Library</source>
        <translation>Bibliothe&amp;k</translation>
    </message>
    <message>
        <source>Desi&amp;gner</source>
        <translation>S&amp;ounddesigner</translation>
    </message>
    <message>
        <source>&amp;Source ID</source>
        <translation>&amp;Quell-ID</translation>
    </message>
    <message>
        <source>&amp;Microphone</source>
        <translation>&amp;Mikrofon</translation>
    </message>
    <message>
        <source>Mic pe&amp;rspective</source>
        <translation>Mikro&amp;perspektive</translation>
    </message>
    <message>
        <source>Loca&amp;tion</source>
        <translation>Or&amp;t</translation>
    </message>
    <message>
        <source>N&amp;otes</source>
        <translation>Noti&amp;zen</translation>
    </message>
    <message>
        <source>Track t&amp;itle</source>
        <translation>Tite&amp;l</translation>
    </message>
    <message>
        <source>&amp;User category</source>
        <translation>&amp;Eigene Kategorie</translation>
    </message>
    <message>
        <source>Not in the UCS list</source>
        <translation>Nicht in der UCS-Liste</translation>
    </message>
    <message>
        <source>Stands for %1 in the UCS list</source>
        <translation>Steht in der UCS-Liste für %1</translation>
    </message>
</context>
<context>
    <name>KeepingText</name>
    <message>
        <source>Saved in the catalog and the library&apos;s log: these files can&apos;t hold metadata.</source>
        <translation>Gespeichert im Katalog und im Protokoll der Bibliothek: Diese Dateien können keine Metadaten aufnehmen.</translation>
    </message>
    <message>
        <source>Saved into the files that can hold metadata, for the others in the catalog and the library&apos;s log.</source>
        <translation>Gespeichert in den Dateien, die Metadaten aufnehmen können, sonst im Katalog und im Protokoll der Bibliothek.</translation>
    </message>
    <message>
        <source>Saved into the files and shared with everyone on this library.</source>
        <translation>Gespeichert in den Dateien und mit allen geteilt, die diese Bibliothek nutzen.</translation>
    </message>
    <message>
        <source>Saved into the files (iXML + BWF) and shared with everyone on this library.</source>
        <translation>Gespeichert in den Dateien (iXML + BWF) und mit allen geteilt, die diese Bibliothek nutzen.</translation>
    </message>
</context>
<context>
    <name>KeyList</name>
    <message>
        <source>Playing</source>
        <translation>Wiedergabe</translation>
    </message>
    <message>
        <source>Space, Ctrl+Return</source>
        <translation>Leertaste, Strg+Return</translation>
    </message>
    <message>
        <source>Play or stop</source>
        <translation>Abspielen oder anhalten</translation>
    </message>
    <message>
        <source>Ctrl+L</source>
        <translation>Strg+L</translation>
    </message>
    <message>
        <source>Loop the selection, or the whole sound</source>
        <translation>Auswahl oder den ganzen Ton in Schleife spielen</translation>
    </message>
    <message>
        <source>Ctrl+U</source>
        <translation>Strg+U</translation>
    </message>
    <message>
        <source>Compare the upmix with the plain fold-down</source>
        <translation>Upmix mit dem einfachen Fold-down vergleichen</translation>
    </message>
    <message>
        <source>Ctrl+Shift+U</source>
        <translation>Strg+Umschalt+U</translation>
    </message>
    <message>
        <source>Adjust the upmix</source>
        <translation>Upmix anpassen</translation>
    </message>
    <message>
        <source>Ctrl+Shift+V</source>
        <translation>Strg+Umschalt+V</translation>
    </message>
    <message>
        <source>Download and play the sound of the copied link</source>
        <translation>Ton des kopierten Links laden und abspielen</translation>
    </message>
    <message>
        <source>Ctrl+E</source>
        <translation>Strg+E</translation>
    </message>
    <message>
        <source>Open in the editor</source>
        <translation>Im Editor öffnen</translation>
    </message>
    <message>
        <source>Ctrl+Shift+E</source>
        <translation>Strg+Umschalt+E</translation>
    </message>
    <message>
        <source>Make temp edits</source>
        <translation>Temp-Schnitte erstellen</translation>
    </message>
    <message>
        <source>Ctrl+Shift+B</source>
        <translation>Strg+Umschalt+B</translation>
    </message>
    <message>
        <source>Set the bars of the loaded piece</source>
        <translation>Takte des geladenen Stücks festlegen</translation>
    </message>
    <message>
        <source>Sounds</source>
        <translation>Töne</translation>
    </message>
    <message>
        <source>Up, Down</source>
        <translation>Auf, Ab</translation>
    </message>
    <message>
        <source>Audition the sound above or below</source>
        <translation>Ton darüber oder darunter vorhören</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Return</translation>
    </message>
    <message>
        <source>Play the sound, open the folder</source>
        <translation>Ton abspielen, Ordner öffnen</translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation>Rücktaste</translation>
    </message>
    <message>
        <source>Enclosing folder</source>
        <translation>Übergeordneter Ordner</translation>
    </message>
    <message>
        <source>Any letter, Ctrl+F</source>
        <translation>Beliebiger Buchstabe, Strg+F</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Down, Escape (search)</source>
        <translation>Ab, Escape (Suche)</translation>
    </message>
    <message>
        <source>To the results; end the search</source>
        <translation>Zu den Ergebnissen; Suche beenden</translation>
    </message>
    <message>
        <source>Metadata</source>
        <translation>Metadaten</translation>
    </message>
    <message>
        <source>Ctrl+S</source>
        <translation>Strg+S</translation>
    </message>
    <message>
        <source>Save the metadata</source>
        <translation>Metadaten speichern</translation>
    </message>
    <message>
        <source>Alt+letter</source>
        <translation>Alt+Buchstabe</translation>
    </message>
    <message>
        <source>To the field with the letter underlined</source>
        <translation>Zum Feld mit dem unterstrichenen Buchstaben</translation>
    </message>
    <message>
        <source>Down (CatID)</source>
        <translation>Ab (CatID)</translation>
    </message>
    <message>
        <source>List the UCS entries that fit</source>
        <translation>Passende UCS-Einträge auflisten</translation>
    </message>
    <message>
        <source>Waveform</source>
        <translation>Wellenform</translation>
    </message>
    <message>
        <source>Left, Right</source>
        <translation>Links, Rechts</translation>
    </message>
    <message>
        <source>Move by 1 % of what is in view, with Shift by 5 seconds</source>
        <translation>Um 1 % des Sichtbaren bewegen, mit Umschalt um 5 Sekunden</translation>
    </message>
    <message>
        <source>Home, End</source>
        <translation>Pos1, Ende</translation>
    </message>
    <message>
        <source>To the start, to the end</source>
        <translation>Zum Anfang, zum Ende</translation>
    </message>
    <message>
        <source>Ctrl+wheel, + and -</source>
        <translation>Strg+Rad, + und -</translation>
    </message>
    <message>
        <source>Zoom in and out</source>
        <translation>Vergrößern und verkleinern</translation>
    </message>
    <message>
        <source>Wheel, Page Up, Page Down</source>
        <translation>Rad, Bild auf, Bild ab</translation>
    </message>
    <message>
        <source>Scroll</source>
        <translation>Blättern</translation>
    </message>
    <message>
        <source>0, Z</source>
        <translation>0, Z</translation>
    </message>
    <message>
        <source>Show the whole sound, the selection</source>
        <translation>Ganzen Ton, Auswahl anzeigen</translation>
    </message>
    <message>
        <source>[ and ]</source>
        <translation>[ und ]</translation>
    </message>
    <message>
        <source>Start or end the selection at the playhead</source>
        <translation>Auswahl am Abspielpunkt beginnen oder beenden</translation>
    </message>
    <message>
        <source>Escape, Ctrl+D</source>
        <translation>Escape, Strg+D</translation>
    </message>
    <message>
        <source>Clear the selection</source>
        <translation>Auswahl aufheben</translation>
    </message>
    <message>
        <source>Drag the selection, Ctrl+drag</source>
        <translation>Auswahl ziehen, Strg+Ziehen</translation>
    </message>
    <message>
        <source>Take the selection, the whole sound out as a file</source>
        <translation>Auswahl, ganzen Ton als Datei herausziehen</translation>
    </message>
    <message>
        <source>Ctrl+C, Ctrl+Shift+P</source>
        <translation>Strg+C, Strg+Umschalt+P</translation>
    </message>
    <message>
        <source>Copy it as a file, export it to the pulls folder</source>
        <translation>Als Datei kopieren, in den Pulls-Ordner exportieren</translation>
    </message>
    <message>
        <source>Editor</source>
        <translation>Editor</translation>
    </message>
    <message>
        <source>Move the cursor, with Ctrl from bar to bar</source>
        <translation>Cursor bewegen, mit Strg von Takt zu Takt</translation>
    </message>
    <message>
        <source>Shift and an arrow</source>
        <translation>Umschalt und Pfeiltaste</translation>
    </message>
    <message>
        <source>Extend the selection</source>
        <translation>Auswahl erweitern</translation>
    </message>
    <message>
        <source>Double click</source>
        <translation>Doppelklick</translation>
    </message>
    <message>
        <source>Select the bar</source>
        <translation>Takt auswählen</translation>
    </message>
    <message>
        <source>Ctrl+T, Delete</source>
        <translation>Strg+T, Entf</translation>
    </message>
    <message>
        <source>Keep only the selection, delete it</source>
        <translation>Nur die Auswahl behalten, sie löschen</translation>
    </message>
    <message>
        <source>Ctrl+Z, Ctrl+Shift+Z</source>
        <translation>Strg+Z, Strg+Umschalt+Z</translation>
    </message>
    <message>
        <source>Undo, redo</source>
        <translation>Rückgängig, wiederherstellen</translation>
    </message>
    <message>
        <source>Ctrl+G, Ctrl+H</source>
        <translation>Strg+G, Strg+H</translation>
    </message>
    <message>
        <source>Show spectrograms, the history</source>
        <translation>Spektrogramme, Verlauf anzeigen</translation>
    </message>
    <message>
        <source>Monitor</source>
        <translation>Monitor</translation>
    </message>
    <message>
        <source>D, M</source>
        <translation>D, M</translation>
    </message>
    <message>
        <source>Dim, mute</source>
        <translation>Dim, stumm</translation>
    </message>
    <message>
        <source>1 to 5</source>
        <translation>1 bis 5</translation>
    </message>
    <message>
        <source>Full, 7.1.4, 5.1, 2.0, mono</source>
        <translation>Voll, 7.1.4, 5.1, 2.0, Mono</translation>
    </message>
    <message>
        <source>+ and -</source>
        <translation>+ und -</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Lautstärke</translation>
    </message>
    <message>
        <source>Space, M (speaker)</source>
        <translation>Leertaste, M (Lautsprecher)</translation>
    </message>
    <message>
        <source>Solo it, mute it</source>
        <translation>Solo, stumm</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenster</translation>
    </message>
    <message>
        <source>Ctrl+O</source>
        <translation>Strg+O</translation>
    </message>
    <message>
        <source>Add a library folder</source>
        <translation>Bibliotheksordner hinzufügen</translation>
    </message>
    <message>
        <source>Ctrl+Shift+O</source>
        <translation>Strg+Umschalt+O</translation>
    </message>
    <message>
        <source>Open a file</source>
        <translation>Datei öffnen</translation>
    </message>
    <message>
        <source>Ctrl+Shift+M</source>
        <translation>Strg+Umschalt+M</translation>
    </message>
    <message>
        <source>F9, Ctrl+I</source>
        <translation>F9, Strg+I</translation>
    </message>
    <message>
        <source>Sidebar, metadata inspector</source>
        <translation>Seitenleiste, Metadaten-Inspektor</translation>
    </message>
    <message>
        <source>Ctrl+comma</source>
        <translation>Strg+Komma</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>F1, Ctrl+?</source>
        <translation>F1, Strg+?</translation>
    </message>
    <message>
        <source>Manual, this list</source>
        <translation>Handbuch, diese Liste</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
</context>
<context>
    <name>KeyName</name>
    <message>
        <source>C major</source>
        <translation>C-Dur</translation>
    </message>
    <message>
        <source>C minor</source>
        <translation>c-Moll</translation>
    </message>
    <message>
        <source>C# major</source>
        <translation>Cis-Dur</translation>
    </message>
    <message>
        <source>C# minor</source>
        <translation>cis-Moll</translation>
    </message>
    <message>
        <source>D major</source>
        <translation>D-Dur</translation>
    </message>
    <message>
        <source>D minor</source>
        <translation>d-Moll</translation>
    </message>
    <message>
        <source>D# major</source>
        <translation>Dis-Dur</translation>
    </message>
    <message>
        <source>D# minor</source>
        <translation>dis-Moll</translation>
    </message>
    <message>
        <source>E major</source>
        <translation>E-Dur</translation>
    </message>
    <message>
        <source>E minor</source>
        <translation>e-Moll</translation>
    </message>
    <message>
        <source>F major</source>
        <translation>F-Dur</translation>
    </message>
    <message>
        <source>F minor</source>
        <translation>f-Moll</translation>
    </message>
    <message>
        <source>F# major</source>
        <translation>Fis-Dur</translation>
    </message>
    <message>
        <source>F# minor</source>
        <translation>fis-Moll</translation>
    </message>
    <message>
        <source>G major</source>
        <translation>G-Dur</translation>
    </message>
    <message>
        <source>G minor</source>
        <translation>g-Moll</translation>
    </message>
    <message>
        <source>G# major</source>
        <translation>Gis-Dur</translation>
    </message>
    <message>
        <source>G# minor</source>
        <translation>gis-Moll</translation>
    </message>
    <message>
        <source>A major</source>
        <translation>A-Dur</translation>
    </message>
    <message>
        <source>A minor</source>
        <translation>a-Moll</translation>
    </message>
    <message>
        <source>A# major</source>
        <translation>Ais-Dur</translation>
    </message>
    <message>
        <source>A# minor</source>
        <translation>ais-Moll</translation>
    </message>
    <message>
        <source>B major</source>
        <translation>H-Dur</translation>
    </message>
    <message>
        <source>B minor</source>
        <translation>h-Moll</translation>
    </message>
</context>
<context>
    <name>LevelBars</name>
    <message>
        <source>silent</source>
        <translation>still</translation>
    </message>
</context>
<context>
    <name>MainMenus</name>
    <message>
        <source>About Brindlehum</source>
        <translation>Über Brindlehum</translation>
    </message>
    <message>
        <source>Hear any audio file correctly on the speakers or headphones at hand.

Licence: GNU General Public License, version 3 or later. This program comes with no warranty.</source>
        <translation>Jede Audiodatei richtig hören, auf den Lautsprechern oder dem Kopfhörer, die gerade da sind.

Lizenz: GNU General Public License, Version 3 oder später. Dieses Programm kommt ohne Gewährleistung.</translation>
    </message>
    <message>
        <source>Clear List</source>
        <translation>Liste leeren</translation>
    </message>
    <message>
        <source>Export to Pulls Folder</source>
        <translation>In den Pulls-Ordner exportieren</translation>
    </message>
    <message>
        <source>Drag As</source>
        <translation>Ziehen als</translation>
    </message>
    <message>
        <source>Add Library Folder…</source>
        <translation>Bibliotheksordner hinzufügen …</translation>
    </message>
    <message>
        <source>Open File…</source>
        <translation>Datei öffnen …</translation>
    </message>
    <message>
        <source>Open Folder…</source>
        <translation>Ordner öffnen …</translation>
    </message>
    <message>
        <source>Open Recent</source>
        <translation>Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>Save Metadata</source>
        <translation>Metadaten speichern</translation>
    </message>
    <message>
        <source>Open in Editor</source>
        <translation>Im Editor öffnen</translation>
    </message>
    <message>
        <source>Make Temp Edits</source>
        <translation>Temp-Schnitte erstellen</translation>
    </message>
    <message>
        <source>Set Bars…</source>
        <translation>Takte festlegen …</translation>
    </message>
    <message>
        <source>Close Window</source>
        <translation>Fenster schließen</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Clear Search</source>
        <translation>Suche leeren</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
    <message>
        <source>Copy Sound</source>
        <translation>Ton kopieren</translation>
    </message>
    <message>
        <source>Rename to UCS Names…</source>
        <translation>In UCS-Namen umbenennen …</translation>
    </message>
    <message>
        <source>Undo Rename</source>
        <translation>Umbenennen rückgängig machen</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Sort by %1</source>
        <translation>Nach %1 sortieren</translation>
    </message>
    <message>
        <source>Zoom In</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Zoom Out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Show Whole Sound</source>
        <translation>Ganzen Ton anzeigen</translation>
    </message>
    <message>
        <source>Show Selection</source>
        <translation>Auswahl anzeigen</translation>
    </message>
    <message>
        <source>Sidebar</source>
        <translation>Seitenleiste</translation>
    </message>
    <message>
        <source>Metadata Inspector</source>
        <translation>Metadaten-Inspektor</translation>
    </message>
    <message>
        <source>Sort</source>
        <translation>Sortieren</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>Editor</source>
        <translation>Editor</translation>
    </message>
    <message>
        <source>Monitor</source>
        <translation>Monitor</translation>
    </message>
    <message>
        <source>File Manager Panel</source>
        <translation>Dateimanager-Panel</translation>
    </message>
    <message>
        <source>Expert Mode</source>
        <translation>Expertenmodus</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Playback</source>
        <translation>&amp;Wiedergabe</translation>
    </message>
    <message>
        <source>Play / Stop</source>
        <translation>Abspielen / Anhalten</translation>
    </message>
    <message>
        <source>Toggle Loop</source>
        <translation>Schleife ein/aus</translation>
    </message>
    <message>
        <source>Clear Selection</source>
        <translation>Auswahl aufheben</translation>
    </message>
    <message>
        <source>Open Copied Link</source>
        <translation>Kopierten Link öffnen</translation>
    </message>
    <message>
        <source>Auto-Play</source>
        <translation>Automatisch abspielen</translation>
    </message>
    <message>
        <source>Space Plays in File Manager</source>
        <translation>Leertaste spielt im Dateimanager</translation>
    </message>
    <message>
        <source>Compare Upmix with Fold-Down</source>
        <translation>Upmix mit Fold-down vergleichen</translation>
    </message>
    <message>
        <source>Adjust Upmix…</source>
        <translation>Upmix anpassen …</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Handbuch</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>What Works Here…</source>
        <translation>Was hier funktioniert …</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Audio files (%1);;All files (*)</source>
        <translation>Audiodateien (%1);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
</context>
<context>
    <name>ManualPages</name>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
</context>
<context>
    <name>MonitorRoute</name>
    <message>
        <source>%1  (%2 in)</source>
        <translation>%1  (%2 Eing.)</translation>
    </message>
</context>
<context>
    <name>MonitorRows</name>
    <message>
        <source>Type a number, or turn the wheel. Double-click: %1</source>
        <translation>Zahl eingeben oder Rad drehen. Doppelklick: %1</translation>
    </message>
</context>
<context>
    <name>ProfileEdits</name>
    <message>
        <source>Out %1 (not there)</source>
        <translation>Ausg. %1 (nicht vorhanden)</translation>
    </message>
    <message>
        <source>Out %1</source>
        <translation>Ausg. %1</translation>
    </message>
</context>
<context>
    <name>ReferenceButton</name>
    <message>
        <source>Play pink noise at your reference level and measure at the listener&apos;s place.
The monitor stands at %1 dB. dB SPL read:</source>
        <translation>Rosa Rauschen mit Referenzpegel abspielen und am Hörplatz messen.
Der Monitor steht auf %1 dB. Abgelesene dB SPL:</translation>
    </message>
    <message>
        <source>Reference Level</source>
        <translation>Referenzpegel</translation>
    </message>
</context>
<context>
    <name>RenameDialog</name>
    <message>
        <source>Already so named</source>
        <translation>Heißt schon so</translation>
    </message>
    <message>
        <source>The file is gone</source>
        <translation>Datei nicht mehr vorhanden</translation>
    </message>
    <message>
        <source>Not in the library</source>
        <translation>Nicht in der Bibliothek</translation>
    </message>
    <message>
        <source>Has no CatID</source>
        <translation>Ohne CatID</translation>
    </message>
    <message>
        <source>Has no FX name</source>
        <translation>Ohne FX-Namen</translation>
    </message>
    <message>
        <source>Another file has this name</source>
        <translation>Eine andere Datei heißt so</translation>
    </message>
    <message>
        <source>A file above gets this name</source>
        <translation>Eine Datei darüber bekommt diesen Namen</translation>
    </message>
    <message>
        <source>The name is too long</source>
        <translation>Der Name ist zu lang</translation>
    </message>
    <message>
        <source>Its folder is read-only</source>
        <translation>Der Ordner ist schreibgeschützt</translation>
    </message>
    <message>
        <source>None of these files can be renamed.</source>
        <translation>Keine dieser Dateien lässt sich umbenennen.</translation>
    </message>
    <message>
        <source>All of these files have their UCS names.</source>
        <translation>Alle diese Dateien haben ihren UCS-Namen.</translation>
    </message>
    <message>
        <source>Rename 1 file to its UCS name?</source>
        <translation>1 Datei in ihren UCS-Namen umbenennen?</translation>
    </message>
    <message>
        <source>Rename %1 files to their UCS names?</source>
        <translation>%1 Dateien in ihre UCS-Namen umbenennen?</translation>
    </message>
    <message>
        <source>1 is already so named</source>
        <translation>1 heißt schon so</translation>
    </message>
    <message>
        <source>%1 are already so named</source>
        <translation>%1 heißen schon so</translation>
    </message>
    <message>
        <source>%1 can&apos;t be renamed</source>
        <translation>%1 nicht umbenennbar</translation>
    </message>
</context>
<context>
    <name>SettingsWindow</name>
    <message>
        <source>File Manager</source>
        <translation>Dateimanager</translation>
    </message>
    <message>
        <source>Routing</source>
        <translation>Routing</translation>
    </message>
    <message>
        <source>Mono files play from the center speaker</source>
        <translation>Mono-Dateien spielen aus dem Center-Lautsprecher</translation>
    </message>
    <message>
        <source>Headphones</source>
        <translation>Kopfhörer</translation>
    </message>
    <message>
        <source>Pulls (drag-to-DAW renders and downloaded links)</source>
        <translation>Pulls (in die DAW gezogene Renderings und geladene Links)</translation>
    </message>
    <message>
        <source>Open Copied Link</source>
        <translation>Kopierten Link öffnen</translation>
    </message>
    <message>
        <source>Generation Service (Build-a-Score in the editor)</source>
        <translation>Generierungsdienst (Build-a-Score im Editor)</translation>
    </message>
    <message>
        <source>Media keys and lock screen</source>
        <translation>Medientasten und Sperrbildschirm</translation>
    </message>
    <message>
        <source>Name the sound that plays</source>
        <translation>Spielenden Ton nennen</translation>
    </message>
    <message>
        <source>Session</source>
        <translation>Sitzung</translation>
    </message>
</context>
<context>
    <name>SidebarRows</name>
    <message>
        <source>Library</source>
        <translation>Bibliothek</translation>
    </message>
    <message>
        <source>Categories</source>
        <translation>Kategorien</translation>
    </message>
    <message>
        <source>Libraries</source>
        <translation>Bibliotheken</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Orte</translation>
    </message>
    <message>
        <source>Add Folder…</source>
        <translation>Ordner hinzufügen …</translation>
    </message>
    <message>
        <source>%1 file</source>
        <translation>%1 Datei</translation>
    </message>
    <message>
        <source>%1 files</source>
        <translation>%1 Dateien</translation>
    </message>
    <message>
        <source>Indexing…</source>
        <translation>Indizierung läuft …</translation>
    </message>
    <message>
        <source>%1 indexed</source>
        <translation>%1 indiziert</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1 found</source>
        <translation>%1 gefunden</translation>
    </message>
</context>
<context>
    <name>TempEditsPanel</name>
    <message>
        <source>%1. End the loop here</source>
        <translation>%1. Schleife hier enden lassen</translation>
    </message>
</context>
<context>
    <name>UpmixMenu</name>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>%1, made from %2</source>
        <translation>%1, auf Grundlage von %2</translation>
    </message>
    <message>
        <source>%1 (changed)</source>
        <translation>%1 (geändert)</translation>
    </message>
    <message>
        <source>An upmix of this sound would fill no further speaker</source>
        <translation>Ein Upmix dieses Tons würde keinen weiteren Lautsprecher füllen</translation>
    </message>
    <message>
        <source>Not heard: without an HRTF set headphones play the stereo fold-down</source>
        <translation>Nicht zu hören: Ohne HRTF-Satz spielt der Kopfhörer den Stereo-Fold-down</translation>
    </message>
</context>
<context>
    <name>WaveformPicture</name>
    <message>
        <source>view +%1 dB</source>
        <translation>Ansicht +%1 dB</translation>
    </message>
</context>
<context>
    <name>WorksPage</name>
    <message>
        <source>%1 works</source>
        <translation>%1 funktioniert</translation>
    </message>
    <message>
        <source>%1 works in part</source>
        <translation>%1 funktioniert teilweise</translation>
    </message>
    <message>
        <source>%1 is being looked for</source>
        <translation>%1 wird gesucht</translation>
    </message>
    <message>
        <source>%1 doesn&apos;t work</source>
        <translation>%1 funktioniert nicht</translation>
    </message>
    <message>
        <source>What helps: %1</source>
        <translation>Was hilft: %1</translation>
    </message>
</context>
<context>
    <name>brindlehum::AlignmentPanel</name>
    <message>
        <source>Speaker Alignment</source>
        <translation>Lautsprecherabgleich</translation>
    </message>
    <message>
        <source>Headphones need no alignment: choose a profile with speakers.</source>
        <translation>Kopfhörer brauchen keinen Abgleich: ein Profil mit Lautsprechern auswählen.</translation>
    </message>
    <message>
        <source>Clear All</source>
        <translation>Alles zurücksetzen</translation>
    </message>
    <message>
        <source>Speaker</source>
        <translation>Lautsprecher</translation>
    </message>
    <message>
        <source>Delay</source>
        <translation>Verzögerung</translation>
    </message>
    <message>
        <source>Polarity</source>
        <translation>Polarität</translation>
    </message>
    <message>
        <source>Delay of %1</source>
        <translation>Verzögerung von %1</translation>
    </message>
    <message>
        <source>What is nearer than the others waits for them: 2.9 ms a metre. Double-click: 0</source>
        <translation>Was näher ist als die anderen, wartet auf sie: 2,9 ms pro Meter. Doppelklick: 0</translation>
    </message>
    <message>
        <source>Inverted</source>
        <translation>Invertiert</translation>
    </message>
    <message>
        <source>%1 inverted</source>
        <translation>%1 invertiert</translation>
    </message>
</context>
<context>
    <name>brindlehum::BannerStack</name>
    <message>
        <source>Notices</source>
        <translation>Hinweise</translation>
    </message>
</context>
<context>
    <name>brindlehum::BarsDialog</name>
    <message>
        <source>Set Bars</source>
        <translation>Takte festlegen</translation>
    </message>
    <message>
        <source>Part of the piece in view</source>
        <translation>Sichtbarer Teil des Stücks</translation>
    </message>
    <message>
        <source>Click where a bar starts. Left and Right move it by a beat, Space plays, the wheel scrolls, Ctrl+wheel zooms.</source>
        <translation>Anklicken, wo ein Takt beginnt. Links und Rechts verschieben um einen Schlag, Leertaste spielt, das Rad blättert, Strg+Rad zoomt.</translation>
    </message>
    <message>
        <source>As Found</source>
        <translation>Wie erkannt</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Save and Make Temp Edits</source>
        <translation>Speichern und Temp-Schnitte erstellen</translation>
    </message>
    <message>
        <source>Analysing…</source>
        <translation>Analyse läuft …</translation>
    </message>
</context>
<context>
    <name>brindlehum::BarsForm</name>
    <message>
        <source>&amp;Tempo</source>
        <translation>&amp;Tempo</translation>
    </message>
    <message>
        <source>&amp;Beats a bar</source>
        <translation>&amp;Schläge pro Takt</translation>
    </message>
    <message>
        <source>A bar starts &amp;at</source>
        <translation>Takt beginnt &amp;bei</translation>
    </message>
    <message>
        <source>At &amp;Playhead</source>
        <translation>Am &amp;Abspielpunkt</translation>
    </message>
    <message>
        <source>m:ss.mmm</source>
        <translation>m:ss.mmm</translation>
    </message>
    <message>
        <source>A bar starts where the player&apos;s playhead is</source>
        <translation>Am Abspielpunkt des Players beginnt ein Takt</translation>
    </message>
    <message>
        <source>Load this piece into the player to take its playhead</source>
        <translation>Für den Abspielpunkt dieses Stück in den Player laden</translation>
    </message>
    <message>
        <source>The tempo is a number from %1 to %2 BPM</source>
        <translation>Das Tempo ist eine Zahl von %1 bis %2 BPM</translation>
    </message>
    <message>
        <source>A bar has 1 to %1 beats</source>
        <translation>Ein Takt hat 1 bis %1 Schläge</translation>
    </message>
    <message>
        <source>A bar starts at a time such as 0:12.5</source>
        <translation>Ein Takt beginnt bei einer Zeit wie 0:12.5</translation>
    </message>
</context>
<context>
    <name>brindlehum::BarsStrip</name>
    <message>
        <source>Bars of the piece</source>
        <translation>Takte des Stücks</translation>
    </message>
    <message>
        <source>Click where a bar starts; Left and Right move it by a beat</source>
        <translation>Anklicken, wo ein Takt beginnt; Links und Rechts verschieben um einen Schlag</translation>
    </message>
    <message>
        <source>Bar starts %1</source>
        <translation>Takt beginnt %1</translation>
    </message>
</context>
<context>
    <name>brindlehum::BrowserBar</name>
    <message>
        <source>Enclosing folder</source>
        <translation>Übergeordneter Ordner</translation>
    </message>
    <message>
        <source>Search sounds, descriptions, keywords  (-word excludes)</source>
        <translation>Töne, Beschreibungen, Schlagwörter suchen  (-wort schließt aus)</translation>
    </message>
    <message>
        <source>Each word is the beginning of a word, and all must match.
-word  excludes
wood OR metal  finds either
&quot;wet street&quot;  finds a phrase
keywords:metal  looks in one field: name, folder, keywords, description, category, …</source>
        <translation>Jedes Wort ist der Anfang eines Wortes, und alle müssen vorkommen.
-wort  schließt aus
holz OR metall  findet eines von beiden
&quot;nasse straße&quot;  findet eine Wortfolge
keywords:metall  sucht in einem Feld: name, folder, keywords, description, category, …</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Clear the search (Esc)</source>
        <translation>Suche leeren (Esc)</translation>
    </message>
    <message>
        <source>Metadata inspector</source>
        <translation>Metadaten-Inspektor</translation>
    </message>
    <message>
        <source>Clear category %1</source>
        <translation>Kategorie %1 entfernen</translation>
    </message>
    <message>
        <source>Clear library %1</source>
        <translation>Bibliothek %1 entfernen</translation>
    </message>
    <message>
        <source>Clear Search</source>
        <translation>Suche leeren</translation>
    </message>
    <message>
        <source>Takes the words and every filter off</source>
        <translation>Entfernt die Wörter und alle Filter</translation>
    </message>
</context>
<context>
    <name>brindlehum::BrowserTable</name>
    <message>
        <source>Sounds</source>
        <translation>Töne</translation>
    </message>
    <message>
        <source>Reset Columns</source>
        <translation>Spalten zurücksetzen</translation>
    </message>
    <message>
        <source>%1 items</source>
        <translation>%1 Objekte</translation>
    </message>
</context>
<context>
    <name>brindlehum::BrowserTableModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>Category</source>
        <translation>Kategorie</translation>
    </message>
    <message>
        <source>Library</source>
        <translation>Bibliothek</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation>Schlagwörter</translation>
    </message>
    <message>
        <source>Rating</source>
        <translation>Bewertung</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>%1, folder</source>
        <translation>%1, Ordner</translation>
    </message>
    <message>
        <source>%1 of 5</source>
        <translation>%1 von 5</translation>
    </message>
</context>
<context>
    <name>brindlehum::DocumentOut</name>
    <message>
        <source>Drag the selection into your DAW; without one, the whole document</source>
        <translation>Die Auswahl in die DAW ziehen; ohne Auswahl das ganze Dokument</translation>
    </message>
    <message>
        <source>Drag the selection, or the whole document, into your DAW. Space or Enter copies it as a file instead.</source>
        <translation>Die Auswahl oder das ganze Dokument in die DAW ziehen. Leertaste oder Eingabetaste kopiert stattdessen als Datei.</translation>
    </message>
</context>
<context>
    <name>brindlehum::DragHandle</name>
    <message>
        <source>Drag</source>
        <translation>Ziehen</translation>
    </message>
    <message>
        <source>Drag the whole file into your DAW (uses the Drag mode)</source>
        <translation>Die ganze Datei in die DAW ziehen (in der Form von „Ziehen als“)</translation>
    </message>
    <message>
        <source>Drag handle</source>
        <translation>Ziehgriff</translation>
    </message>
    <message>
        <source>Drag the whole file into your DAW. Space or Enter copies the file instead.</source>
        <translation>Die ganze Datei in die DAW ziehen. Leertaste oder Eingabetaste kopiert sie stattdessen.</translation>
    </message>
</context>
<context>
    <name>brindlehum::DropOverlay</name>
    <message>
        <source>Drop target</source>
        <translation>Ablagefläche</translation>
    </message>
</context>
<context>
    <name>brindlehum::EditorActions</name>
    <message>
        <source>Open File…</source>
        <translation>Datei öffnen …</translation>
    </message>
    <message>
        <source>Save As…</source>
        <translation>Speichern unter …</translation>
    </message>
    <message>
        <source>Close Document</source>
        <translation>Dokument schließen</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederherstellen</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Ausschneiden</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Trim</source>
        <translation>Zuschneiden</translation>
    </message>
    <message>
        <source>Keep only the selection</source>
        <translation>Nur die Auswahl behalten</translation>
    </message>
    <message>
        <source>Silence</source>
        <translation>Stille</translation>
    </message>
    <message>
        <source>Silence the selection</source>
        <translation>Auswahl durch Stille ersetzen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
    <message>
        <source>Clear Selection</source>
        <translation>Auswahl aufheben</translation>
    </message>
    <message>
        <source>Zoom In</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Zoom Out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Alles</translation>
    </message>
    <message>
        <source>Show the whole document</source>
        <translation>Ganzes Dokument anzeigen</translation>
    </message>
    <message>
        <source>Sel</source>
        <translation>Ausw.</translation>
    </message>
    <message>
        <source>Show the selection</source>
        <translation>Auswahl anzeigen</translation>
    </message>
    <message>
        <source>Snap</source>
        <translation>Raster</translation>
    </message>
    <message>
        <source>Snap selections to beats</source>
        <translation>Auswahl an Schlägen einrasten</translation>
    </message>
    <message>
        <source>Spectrum</source>
        <translation>Spektrum</translation>
    </message>
    <message>
        <source>Show the lanes as spectrograms</source>
        <translation>Spuren als Spektrogramme anzeigen</translation>
    </message>
    <message>
        <source>Linear Frequencies</source>
        <translation>Lineare Frequenzen</translation>
    </message>
    <message>
        <source>Space the spectrogram&apos;s frequencies evenly, not by octaves</source>
        <translation>Frequenzen des Spektrogramms gleichmäßig statt nach Oktaven verteilen</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>List the steps of editing</source>
        <translation>Bearbeitungsschritte auflisten</translation>
    </message>
    <message>
        <source>Play / Stop</source>
        <translation>Abspielen / Anhalten</translation>
    </message>
    <message>
        <source>Play/Stop (Space). Plays from the cursor or the selection.</source>
        <translation>Abspielen/Anhalten (Leertaste). Spielt ab dem Cursor oder die Auswahl.</translation>
    </message>
    <message>
        <source>Loop</source>
        <translation>Schleife</translation>
    </message>
    <message>
        <source>Loop the selection, or the whole file</source>
        <translation>Auswahl oder ganze Datei in Schleife spielen</translation>
    </message>
    <message>
        <source>Pre</source>
        <translation>Pre</translation>
    </message>
    <message>
        <source>2 s pre-roll</source>
        <translation>2 s Pre-Roll</translation>
    </message>
    <message>
        <source>Hear the Loop Seam</source>
        <translation>Schleifennaht</translation>
    </message>
    <message>
        <source>Starts 2 bars before the loop end and wraps to the loop start until you stop</source>
        <translation>Beginnt 2 Takte vor dem Schleifenende und springt bis zum Anhalten zum Schleifenanfang</translation>
    </message>
    <message>
        <source>Return to Zero</source>
        <translation>Zum Anfang</translation>
    </message>
    <message>
        <source>Click</source>
        <translation>Klick</translation>
    </message>
    <message>
        <source>Click on the grid while playing. If the click sits, the tempo is right.</source>
        <translation>Klick im Raster bei der Wiedergabe. Sitzt der Klick, stimmt das Tempo.</translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation>Rückgängig: %1</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>Wiederherstellen: %1</translation>
    </message>
</context>
<context>
    <name>brindlehum::EditorHeader</name>
    <message>
        <source>Unsaved edits</source>
        <translation>Nicht gespeichert</translation>
    </message>
    <message>
        <source>Tempo</source>
        <translation>Tempo</translation>
    </message>
    <message>
        <source>Meter</source>
        <translation>Taktart</translation>
    </message>
    <message>
        <source>Beats a bar, and where a bar starts</source>
        <translation>Schläge pro Takt und Taktanfang</translation>
    </message>
    <message>
        <source>Bar lines uncertain</source>
        <translation>Taktstriche unsicher</translation>
    </message>
    <message>
        <source>Turn on the click and listen. Right-click the waveform where a bar starts to say so.</source>
        <translation>Klick einschalten und hören. Wo ein Takt beginnt, per Rechtsklick auf die Wellenform angeben.</translation>
    </message>
    <message>
        <source>Click</source>
        <translation>Klick</translation>
    </message>
    <message>
        <source>Click on the grid while playing. If the click sits, the tempo is right.</source>
        <translation>Klick im Raster bei der Wiedergabe. Sitzt der Klick, stimmt das Tempo.</translation>
    </message>
    <message>
        <source>Expert mode</source>
        <translation>Expertenmodus</translation>
    </message>
    <message>
        <source>Finding the bars…</source>
        <translation>Takte werden gesucht …</translation>
    </message>
    <message>
        <source>No steady pulse</source>
        <translation>Kein stetiger Puls</translation>
    </message>
    <message>
        <source>Set the tempo by hand in the tempo menu, if there is one</source>
        <translation>Tempo von Hand im Tempomenü festlegen, falls es eines gibt</translation>
    </message>
    <message>
        <source>Set Tempo</source>
        <translation>Tempo festlegen</translation>
    </message>
    <message>
        <source>Steady tempo: the grid is a straight line</source>
        <translation>Stetiges Tempo: Das Raster ist eine Gerade</translation>
    </message>
    <message>
        <source>Tempo drifts: the grid follows tracked beats</source>
        <translation>Tempo schwankt: Das Raster folgt den erkannten Schlägen</translation>
    </message>
    <message>
        <source>A twin tempo (%1 BPM) scores nearly as well. Turn on the click and listen.</source>
        <translation>Ein Zwillingstempo (%1 BPM) schneidet fast ebenso gut ab. Klick einschalten und hören.</translation>
    </message>
    <message>
        <source>Key estimate (confidence %1%)</source>
        <translation>Geschätzte Tonart (Sicherheit %1%)</translation>
    </message>
    <message>
        <source>BS.1770-4 integrated loudness</source>
        <translation>Integrierte Lautheit nach BS.1770-4</translation>
    </message>
    <message>
        <source>Beats a minute:</source>
        <translation>Schläge pro Minute:</translation>
    </message>
    <message>
        <source>%1 BPM  (score %2)</source>
        <translation>%1 BPM  (Wertung %2)</translation>
    </message>
    <message>
        <source>Relations</source>
        <translation>Verhältnisse</translation>
    </message>
    <message>
        <source>Half time: %1</source>
        <translation>Halbes Tempo: %1</translation>
    </message>
    <message>
        <source>Double time: %1</source>
        <translation>Doppeltes Tempo: %1</translation>
    </message>
    <message>
        <source>Triplet (×2/3): %1</source>
        <translation>Triolisch (×2/3): %1</translation>
    </message>
    <message>
        <source>Dotted (×3/4): %1</source>
        <translation>Punktiert (×3/4): %1</translation>
    </message>
    <message>
        <source>Set Tempo…</source>
        <translation>Tempo festlegen …</translation>
    </message>
    <message>
        <source>As Measured</source>
        <translation>Wie gemessen</translation>
    </message>
    <message>
        <source>6/8 (2 beats)</source>
        <translation>6/8 (2 Schläge)</translation>
    </message>
    <message>
        <source>A Bar Starts at the Cursor</source>
        <translation>Am Cursor beginnt ein Takt</translation>
    </message>
</context>
<context>
    <name>brindlehum::EditorWaveView</name>
    <message>
        <source>Click to set the cursor, drag to select, double-click to select a bar, drag a flag in the ruler to move a pin. Left and Right move the cursor, with Control by a bar, with Shift they extend the selection, Home and End jump. Plus and Minus zoom, 0 shows all, Z the selection, Page Up and Page Down scroll, Escape clears the selection.</source>
        <translation>Klicken setzt den Cursor, Ziehen wählt aus, Doppelklick wählt einen Takt, Ziehen einer Fahne im Lineal verschiebt eine Marke. Links und Rechts bewegen den Cursor, mit Strg um einen Takt, mit Umschalt erweitern sie die Auswahl, Pos1 und Ende springen. Plus und Minus zoomen, 0 zeigt alles, Z die Auswahl, Bild auf und Bild ab blättern, Escape hebt die Auswahl auf.</translation>
    </message>
    <message>
        <source>Waveform of the document</source>
        <translation>Wellenform des Dokuments</translation>
    </message>
    <message>
        <source>Waveform of %1, loading</source>
        <translation>Wellenform von %1, wird geladen</translation>
    </message>
    <message>
        <source>Waveform of %1, cursor at %2, selected %3 to %4</source>
        <translation>Wellenform von %1, Cursor bei %2, ausgewählt %3 bis %4</translation>
    </message>
    <message>
        <source>Waveform of %1, cursor at %2</source>
        <translation>Wellenform von %1, Cursor bei %2</translation>
    </message>
    <message>
        <source>A Bar Starts Here</source>
        <translation>Hier beginnt ein Takt</translation>
    </message>
    <message>
        <source>Select This Bar</source>
        <translation>Diesen Takt auswählen</translation>
    </message>
    <message>
        <source>Play from Here</source>
        <translation>Ab hier abspielen</translation>
    </message>
</context>
<context>
    <name>brindlehum::EditorWindow</name>
    <message>
        <source>No document</source>
        <translation>Kein Dokument</translation>
    </message>
    <message>
        <source>Drop a file here, or choose Open in Editor (Ctrl+E) from the browser.</source>
        <translation>Eine Datei hier ablegen oder im Browser „Im Editor öffnen“ (Strg+E) wählen.</translation>
    </message>
    <message>
        <source>Open File…</source>
        <translation>Datei öffnen …</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederherstellen</translation>
    </message>
    <message>
        <source>Hear it first, or apply it at once</source>
        <translation>Erst vorhören oder gleich anwenden</translation>
    </message>
    <message>
        <source>Effects</source>
        <translation>Effekte</translation>
    </message>
    <message>
        <source>One click, applied to the selection or the whole file</source>
        <translation>Ein Klick, angewandt auf die Auswahl oder die ganze Datei</translation>
    </message>
    <message>
        <source>Macros</source>
        <translation>Makros</translation>
    </message>
    <message>
        <source>Longer changes, each one step of undo</source>
        <translation>Größere Änderungen, jede ein Rückgängig-Schritt</translation>
    </message>
    <message>
        <source>Lanes</source>
        <translation>Spuren</translation>
    </message>
    <message>
        <source>Which lanes Effects touch</source>
        <translation>Spuren, auf die Effekte wirken</translation>
    </message>
    <message>
        <source>All lanes</source>
        <translation>Alle Spuren</translation>
    </message>
    <message>
        <source>Lane %1</source>
        <translation>Spur %1</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Unsaved edits of an earlier session were kept.</source>
        <translation>Nicht gespeicherte Bearbeitungen einer früheren Sitzung sind erhalten.</translation>
    </message>
    <message>
        <source>Bring Them Back</source>
        <translation>Zurückholen</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Open in Editor</source>
        <translation>Im Editor öffnen</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Speichern unter</translation>
    </message>
    <message>
        <source>WAVE audio (*.wav)</source>
        <translation>WAVE-Audio (*.wav)</translation>
    </message>
    <message>
        <source>POS %1</source>
        <translation>POS %1</translation>
    </message>
    <message>
        <source>%1 – Editor</source>
        <translation>%1 – Editor</translation>
    </message>
    <message>
        <source>%1[*] – Editor</source>
        <translation>%1[*] – Editor</translation>
    </message>
    <message>
        <source>Editor</source>
        <translation>Editor</translation>
    </message>
    <message>
        <source>SEL %1</source>
        <translation>AUSW %1</translation>
    </message>
    <message>
        <source>SEL –</source>
        <translation>AUSW –</translation>
    </message>
    <message>
        <source>LEN %1</source>
        <translation>LÄNGE %1</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
</context>
<context>
    <name>brindlehum::EffectsList</name>
    <message>
        <source>Stop %1</source>
        <translation>%1 anhalten</translation>
    </message>
    <message>
        <source>Hear %1</source>
        <translation>%1 vorhören</translation>
    </message>
</context>
<context>
    <name>brindlehum::ExportBar</name>
    <message>
        <source>Progress of the export</source>
        <translation>Fortschritt des Exports</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Cancel the export</source>
        <translation>Export abbrechen</translation>
    </message>
    <message>
        <source>Show in Folder</source>
        <translation>Im Ordner anzeigen</translation>
    </message>
</context>
<context>
    <name>brindlehum::FileDrops</name>
    <message>
        <source>Library drop target</source>
        <translation>Ablagefläche der Bibliothek</translation>
    </message>
    <message>
        <source>Drop to add to the library</source>
        <translation>Ablegen, um zur Bibliothek hinzuzufügen</translation>
    </message>
    <message>
        <source>Drop to download and play the link&apos;s sound</source>
        <translation>Ablegen, um den Ton des Links zu laden und abzuspielen</translation>
    </message>
    <message>
        <source>Drop to open the folder</source>
        <translation>Ablegen, um den Ordner zu öffnen</translation>
    </message>
    <message>
        <source>Drop to load the file</source>
        <translation>Ablegen, um die Datei zu laden</translation>
    </message>
</context>
<context>
    <name>brindlehum::FileManagerSettings</name>
    <message>
        <source>Show the audition panel under file-manager windows</source>
        <translation>Vorhör-Panel unter Dateimanager-Fenstern anzeigen</translation>
    </message>
    <message>
        <source>Space plays audio files instead of the preview</source>
        <translation>Leertaste spielt Audiodateien statt der Vorschau</translation>
    </message>
    <message>
        <source>Auto-play when the selection changes</source>
        <translation>Bei neuer Auswahl automatisch abspielen</translation>
    </message>
    <message>
        <source>For Files (Nautilus) and Thunar. Space in a picture, a folder or a name being typed stays theirs.</source>
        <translation>Für Dateien (Nautilus) und Thunar. Bei einem Bild, einem Ordner oder beim Tippen eines Namens behalten sie die Leertaste.</translation>
    </message>
    <message>
        <source>On Wayland, for Files (Nautilus) only. The panel needs an X11 session.</source>
        <translation>Unter Wayland nur für Dateien (Nautilus). Das Panel braucht eine X11-Sitzung.</translation>
    </message>
</context>
<context>
    <name>brindlehum::GenerationBox</name>
    <message>
        <source>Build-a-Score</source>
        <translation>Build-a-Score</translation>
    </message>
    <message>
        <source>Set Up…</source>
        <translation>Einrichten …</translation>
    </message>
    <message>
        <source>Choose a generation service in the settings</source>
        <translation>Generierungsdienst in den Einstellungen auswählen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Reveal</source>
        <translation>Anzeigen</translation>
    </message>
    <message>
        <source>Takes</source>
        <translation>Takes</translation>
    </message>
    <message>
        <source>Asks %1</source>
        <translation>Fragt %1</translation>
    </message>
    <message>
        <source>Needs a generation service: see Set Up</source>
        <translation>Braucht einen Generierungsdienst: siehe „Einrichten“</translation>
    </message>
    <message>
        <source>Sends %1 to %2</source>
        <translation>Sendet %1 an %2</translation>
    </message>
    <message>
        <source>Needs an open piece whose bars are known</source>
        <translation>Braucht ein geöffnetes Stück, dessen Takte bekannt sind</translation>
    </message>
</context>
<context>
    <name>brindlehum::GenerationSettings</name>
    <message>
        <source>https://… (blank = no service)</source>
        <translation>https://… (leer = kein Dienst)</translation>
    </message>
    <message>
        <source>Address of the generation service</source>
        <translation>Adresse des Generierungsdienstes</translation>
    </message>
    <message>
        <source>Header</source>
        <translation>Header</translation>
    </message>
    <message>
        <source>The HTTP header that carries the key. In Authorization, a bare key becomes “Bearer” and the key.</source>
        <translation>Der HTTP-Header mit dem Schlüssel. In Authorization wird ein bloßer Schlüssel zu „Bearer“ und dem Schlüssel.</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>Forget Key</source>
        <translation>Schlüssel vergessen</translation>
    </message>
    <message>
        <source>Send the file&apos;s name</source>
        <translation>Dateinamen senden</translation>
    </message>
    <message>
        <source>A key has letters, digits and signs of ASCII only</source>
        <translation>Ein Schlüssel besteht nur aus ASCII-Buchstaben, -Ziffern und -Zeichen</translation>
    </message>
    <message>
        <source>The editor asks %1 for intros, endings and variations, when you press a button there and not before.</source>
        <translation>Der Editor fragt %1 nach Intros, Schlüssen und Variationen, erst wenn dort ein Knopf gedrückt wird.</translation>
    </message>
    <message>
        <source>Off. Nothing is sent anywhere.</source>
        <translation>Aus. Es wird nichts gesendet.</translation>
    </message>
    <message>
        <source>Off: the address must begin with https://, or with http:// for this machine.</source>
        <translation>Aus: Die Adresse muss mit https:// beginnen, für diesen Rechner auch mit http://.</translation>
    </message>
    <message>
        <source>Type the key, then Enter</source>
        <translation>Schlüssel eingeben, dann Eingabetaste</translation>
    </message>
    <message>
        <source>Type to replace it</source>
        <translation>Zum Ersetzen neuen eingeben</translation>
    </message>
    <message>
        <source>The key is stored in the keyring.</source>
        <translation>Der Schlüssel liegt im Schlüsselbund.</translation>
    </message>
    <message>
        <source>No key: requests are sent without one.</source>
        <translation>Kein Schlüssel: Anfragen gehen ohne ihn hinaus.</translation>
    </message>
    <message>
        <source>The key is kept for this run only.</source>
        <translation>Der Schlüssel gilt nur bis zum Beenden.</translation>
    </message>
    <message>
        <source>The key is kept for this run only, since no keyring has taken it: %1</source>
        <translation>Der Schlüssel gilt nur bis zum Beenden, da kein Schlüsselbund ihn angenommen hat: %1</translation>
    </message>
</context>
<context>
    <name>brindlehum::HRTFSettings</name>
    <message>
        <source>Choose…</source>
        <translation>Auswählen …</translation>
    </message>
    <message>
        <source>Choose an HRTF set for headphones</source>
        <translation>HRTF-Satz für Kopfhörer auswählen</translation>
    </message>
    <message>
        <source>Built-in</source>
        <translation>Eingebaut</translation>
    </message>
    <message>
        <source>Use the built-in HRTF set for headphones</source>
        <translation>Eingebauten HRTF-Satz für Kopfhörer verwenden</translation>
    </message>
    <message>
        <source>HRTF Set for Headphones</source>
        <translation>HRTF-Satz für Kopfhörer</translation>
    </message>
    <message>
        <source>SOFA files (*.sofa)</source>
        <translation>SOFA-Dateien (*.sofa)</translation>
    </message>
    <message>
        <source>Reading %1…</source>
        <translation>%1 wird gelesen …</translation>
    </message>
    <message>
        <source>%1. The set in use stays.</source>
        <translation>%1. Der bisherige Satz bleibt.</translation>
    </message>
    <message>
        <source>%1. The built-in set is in use.</source>
        <translation>%1. Der eingebaute Satz wird verwendet.</translation>
    </message>
    <message>
        <source>Built-in set</source>
        <translation>Eingebauter Satz</translation>
    </message>
</context>
<context>
    <name>brindlehum::HUDController</name>
    <message>
        <source>The panel is off: “File Manager Panel” in the status menu turns it on again.</source>
        <translation>Das Panel ist aus: „Dateimanager-Panel“ im Statusmenü schaltet es wieder ein.</translation>
    </message>
</context>
<context>
    <name>brindlehum::HUDPanel</name>
    <message>
        <source>Brindlehum Panel</source>
        <translation>Brindlehum-Panel</translation>
    </message>
    <message>
        <source>Turn the panel off</source>
        <translation>Panel ausschalten</translation>
    </message>
</context>
<context>
    <name>brindlehum::HistoryList</name>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>The steps of editing, the oldest first. Choose one to go to the sound after it.</source>
        <translation>Die Bearbeitungsschritte, der älteste zuerst. Auswählen führt zum Ton danach.</translation>
    </message>
    <message>
        <source>Opened</source>
        <translation>Geöffnet</translation>
    </message>
    <message>
        <source>Redo up to here</source>
        <translation>Bis hier wiederherstellen</translation>
    </message>
    <message>
        <source>Undo back to here</source>
        <translation>Bis hier rückgängig machen</translation>
    </message>
</context>
<context>
    <name>brindlehum::InsertPanel</name>
    <message>
        <source>It has nothing to set.</source>
        <translation>Nichts einzustellen.</translation>
    </message>
    <message>
        <source>Double-click: %1</source>
        <translation>Doppelklick: %1</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Auswählen …</translation>
    </message>
    <message>
        <source>None chosen here</source>
        <translation>Hier nichts ausgewählt</translation>
    </message>
    <message>
        <source>Show Our Controls</source>
        <translation>Eigene Regler anzeigen</translation>
    </message>
    <message>
        <source>Show Its Own Window</source>
        <translation>Fenster des Plug-ins anzeigen</translation>
    </message>
    <message>
        <source>Its controls are being looked for …</source>
        <translation>Die Regler werden gesucht …</translation>
    </message>
    <message>
        <source>It isn&apos;t installed.</source>
        <translation>Nicht installiert.</translation>
    </message>
    <message>
        <source>%1; these are our controls for it.</source>
        <translation>%1; dies sind eigene Regler dafür.</translation>
    </message>
    <message>
        <source>Its own window opens when the monitor plays.</source>
        <translation>Das Fenster des Plug-ins öffnet sich, sobald der Monitor spielt.</translation>
    </message>
</context>
<context>
    <name>brindlehum::InsertRow</name>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Its controls</source>
        <translation>Regler anzeigen</translation>
    </message>
    <message>
        <source>Hears the sound without it, at the same time and without a click</source>
        <translation>Lässt den Ton ohne den Insert hören, zeitgleich und ohne Knacks</translation>
    </message>
    <message>
        <source>Earlier in the chain</source>
        <translation>In der Kette nach vorn</translation>
    </message>
    <message>
        <source>Later in the chain</source>
        <translation>In der Kette nach hinten</translation>
    </message>
    <message>
        <source>Removes it</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Bypassed</source>
        <translation>Im Bypass</translation>
    </message>
    <message>
        <source>Bypass</source>
        <translation>Bypass</translation>
    </message>
</context>
<context>
    <name>brindlehum::InsertsBox</name>
    <message>
        <source>Inserts</source>
        <translation>Inserts</translation>
    </message>
    <message>
        <source>Add LV2 Plug-in…</source>
        <translation>LV2-Plug-in hinzufügen …</translation>
    </message>
    <message>
        <source>Load Again</source>
        <translation>Neu laden</translation>
    </message>
    <message>
        <source>A room correction goes here. It processes the speaker feeds, never your mix.</source>
        <translation>Hierher gehört eine Raumkorrektur. Sie bearbeitet die Lautsprechersignale, nie die Mischung.</translation>
    </message>
    <message>
        <source>%1 ms later</source>
        <translation>%1 ms später</translation>
    </message>
</context>
<context>
    <name>brindlehum::InspectorView</name>
    <message>
        <source>Save the metadata edits before quitting?</source>
        <translation>Die Änderungen an den Metadaten vor dem Beenden speichern?</translation>
    </message>
    <message>
        <source>The inspector holds edits that aren&apos;t in the files yet.</source>
        <translation>Der Inspektor enthält Änderungen, die noch nicht in den Dateien stehen.</translation>
    </message>
    <message>
        <source>Couldn&apos;t save %1: %2</source>
        <translation>%1 ließ sich nicht speichern: %2</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
    <message>
        <source>No selection</source>
        <translation>Nichts ausgewählt</translation>
    </message>
    <message>
        <source>Select sounds to see and edit their metadata.</source>
        <translation>Töne auswählen, um ihre Metadaten zu sehen und zu bearbeiten.</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Discard the edits and go on</source>
        <translation>Änderungen verwerfen und fortfahren</translation>
    </message>
    <message>
        <source>R&amp;ating</source>
        <translation>Bewe&amp;rtung</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Revert</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Rename to UCS…</source>
        <translation>UCS-Namen …</translation>
    </message>
    <message>
        <source>Save (Ctrl+S)</source>
        <translation>Speichern (Strg+S)</translation>
    </message>
    <message>
        <source>Renames to CatID_FXName_Designer_Source</source>
        <translation>Benennt um in CatID_FXName_Designer_Source</translation>
    </message>
    <message>
        <source>%1 files</source>
        <translation>%1 Dateien</translation>
    </message>
    <message>
        <source>Mixed</source>
        <translation>Verschieden</translation>
    </message>
    <message>
        <source>These edits aren&apos;t saved yet.</source>
        <translation>Diese Änderungen sind noch nicht gespeichert.</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Try again to save the edits</source>
        <translation>Erneut versuchen, die Änderungen zu speichern</translation>
    </message>
    <message>
        <source>Save the edits and go on</source>
        <translation>Änderungen speichern und fortfahren</translation>
    </message>
</context>
<context>
    <name>brindlehum::LaneHeads</name>
    <message>
        <source>lane %1</source>
        <translation>Spur %1</translation>
    </message>
    <message>
        <source>Solo %1</source>
        <translation>Solo %1</translation>
    </message>
    <message>
        <source>Mute %1</source>
        <translation>%1 stumm</translation>
    </message>
</context>
<context>
    <name>brindlehum::LevelBars</name>
    <message>
        <source>Bus meter</source>
        <translation>Bus-Pegel</translation>
    </message>
    <message>
        <source>Speaker meter</source>
        <translation>Lautsprecherpegel</translation>
    </message>
    <message>
        <source>Peak levels in dBFS. Space clears the overs.</source>
        <translation>Spitzenpegel in dBFS. Leertaste löscht die Übersteuerungen.</translation>
    </message>
    <message>
        <source>Peak levels of the bus as it arrives, in dBFS</source>
        <translation>Spitzenpegel des Busses am Eingang, in dBFS</translation>
    </message>
    <message>
        <source>Peak levels of what the speakers are given, in dBFS</source>
        <translation>Spitzenpegel der Lautsprechersignale, in dBFS</translation>
    </message>
    <message>
        <source>%1: %2, highest %3. Click to clear.</source>
        <translation>%1: %2, höchster %3. Klicken zum Löschen.</translation>
    </message>
    <message>
        <source>%1: %2, highest %3, over %4 times. Click to clear.</source>
        <translation>%1: %2, höchster %3, %4-mal übersteuert. Klicken zum Löschen.</translation>
    </message>
</context>
<context>
    <name>brindlehum::LibrarySettings</name>
    <message>
        <source>Library folders (indexed for search)</source>
        <translation>Bibliotheksordner (für die Suche indiziert)</translation>
    </message>
    <message>
        <source>Add Folder…</source>
        <translation>Ordner hinzufügen …</translation>
    </message>
    <message>
        <source>Rescan All</source>
        <translation>Alle neu einlesen</translation>
    </message>
    <message>
        <source>No folders yet. Add the folders that hold your sounds.</source>
        <translation>Noch keine Ordner. Hier die Ordner mit den Tönen hinzufügen.</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>%1 entfernen</translation>
    </message>
    <message>
        <source>Indexing…  %1</source>
        <translation>Indizierung läuft …  %1</translation>
    </message>
</context>
<context>
    <name>brindlehum::LinkBar</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Cancel the download</source>
        <translation>Download abbrechen</translation>
    </message>
    <message>
        <source>Cancel %1</source>
        <translation>%1 abbrechen</translation>
    </message>
</context>
<context>
    <name>brindlehum::LinkSettings</name>
    <message>
        <source>yt-dlp path (blank = auto)</source>
        <translation>Pfad zu yt-dlp (leer = automatisch)</translation>
    </message>
    <message>
        <source>Using %1: there is no program at the path above</source>
        <translation>Verwendet wird %1: Unter dem Pfad oben gibt es kein Programm</translation>
    </message>
    <message>
        <source>Using %1</source>
        <translation>Verwendet wird %1</translation>
    </message>
    <message>
        <source>The disk of this path doesn&apos;t answer</source>
        <translation>Der Datenträger dieses Pfads antwortet nicht</translation>
    </message>
</context>
<context>
    <name>brindlehum::LoudnessPanel</name>
    <message>
        <source>Loudness of the bus as it arrives, in LUFS (ITU-R BS.1770): of the last 3 s, and gated since the reset</source>
        <translation>Lautheit des Busses am Eingang, in LUFS (ITU-R BS.1770): der letzten 3 s und gegatet seit dem Zurücksetzen</translation>
    </message>
    <message>
        <source>%1 loudness</source>
        <translation>Lautheit: %1</translation>
    </message>
    <message>
        <source>Loudness, LUFS</source>
        <translation>Lautheit, LUFS</translation>
    </message>
    <message>
        <source>Short</source>
        <translation>Kurz</translation>
    </message>
    <message>
        <source>Integrated</source>
        <translation>Integriert</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Begin the integrated loudness anew</source>
        <translation>Integrierte Lautheit neu beginnen</translation>
    </message>
</context>
<context>
    <name>brindlehum::MainWindow</name>
    <message>
        <source>Height of the player</source>
        <translation>Höhe des Players</translation>
    </message>
    <message>
        <source>No sound server is running, so nothing will be heard. Brindlehum plays through PipeWire.</source>
        <translation>Kein Soundserver läuft, daher ist nichts zu hören. Brindlehum spielt über PipeWire.</translation>
    </message>
    <message>
        <source>The sound server doesn&apos;t answer, so nothing will be heard.</source>
        <translation>Der Soundserver antwortet nicht, daher ist nichts zu hören.</translation>
    </message>
    <message>
        <source>The library&apos;s catalog can&apos;t be opened, so search and shared metadata are off. Folders can still be browsed. (%1)</source>
        <translation>Der Katalog der Bibliothek lässt sich nicht öffnen, daher sind Suche und gemeinsame Metadaten aus. Ordner lassen sich weiter durchsehen. (%1)</translation>
    </message>
    <message>
        <source>Show Its Folder</source>
        <translation>Ordner anzeigen</translation>
    </message>
    <message>
        <source>%1, so other programs can&apos;t drive Brindlehum.</source>
        <translation>%1, daher können andere Programme Brindlehum nicht steuern.</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>The inspector holds edits of its sounds that aren&apos;t saved yet.</source>
        <translation>Der Inspektor enthält Änderungen an Tönen daraus, die noch nicht gespeichert sind.</translation>
    </message>
    <message>
        <source>Some of its sounds are in formats that can&apos;t hold metadata. What was written about them is only in the catalog, and would be lost.</source>
        <translation>Einige Töne darin haben Formate, die keine Metadaten aufnehmen. Was zu ihnen geschrieben wurde, steht nur im Katalog und ginge verloren.</translation>
    </message>
    <message>
        <source>Remove “%1” from the library?</source>
        <translation>„%1“ aus der Bibliothek entfernen?</translation>
    </message>
    <message>
        <source>Allow Accessibility so Space plays audio in the file manager and the panel follows windows instantly.</source>
        <translation>Bedienungshilfen erlauben, damit die Leertaste im Dateimanager abspielt und das Panel den Fenstern sofort folgt.</translation>
    </message>
    <message>
        <source>Turn On Accessibility</source>
        <translation>Bedienungshilfen einschalten</translation>
    </message>
    <message>
        <source>Brindlehum can&apos;t read the file manager&apos;s selection. Turn on accessibility, then start the file manager again.</source>
        <translation>Brindlehum kann die Auswahl des Dateimanagers nicht lesen. Bedienungshilfen einschalten, dann den Dateimanager neu starten.</translation>
    </message>
    <message>
        <source>Another program has taken the Space key, so it can&apos;t play audio in the file manager.</source>
        <translation>Ein anderes Programm hat die Leertaste belegt, daher spielt sie im Dateimanager nicht ab.</translation>
    </message>
    <message>
        <source>Leave Space Alone</source>
        <translation>Leertaste nicht verwenden</translation>
    </message>
    <message>
        <source>There is no output device, so nothing will be heard.</source>
        <translation>Es gibt kein Ausgabegerät, daher ist nichts zu hören.</translation>
    </message>
    <message>
        <source>Edit…</source>
        <translation>Bearbeiten …</translation>
    </message>
    <message>
        <source>Use %1</source>
        <translation>%1 verwenden</translation>
    </message>
    <message>
        <source>Open File</source>
        <translation>Datei öffnen</translation>
    </message>
    <message>
        <source>Open Folder</source>
        <translation>Ordner öffnen</translation>
    </message>
</context>
<context>
    <name>brindlehum::ManualBrowser</name>
    <message>
        <source>Page</source>
        <translation>Seite</translation>
    </message>
</context>
<context>
    <name>brindlehum::ManualWindow</name>
    <message>
        <source>Manual</source>
        <translation>Handbuch</translation>
    </message>
    <message>
        <source>Contents</source>
        <translation>Inhalt</translation>
    </message>
    <message>
        <source>Find on this page</source>
        <translation>Auf dieser Seite suchen</translation>
    </message>
    <message>
        <source>Previous (Shift+Return)</source>
        <translation>Vorherige (Umschalt+Return)</translation>
    </message>
    <message>
        <source>Next (Return)</source>
        <translation>Nächste (Return)</translation>
    </message>
    <message>
        <source>Close (Esc)</source>
        <translation>Schließen (Esc)</translation>
    </message>
    <message>
        <source>Not on this page</source>
        <translation>Nicht auf dieser Seite</translation>
    </message>
    <message>
        <source>1 place</source>
        <translation>1 Stelle</translation>
    </message>
    <message>
        <source>%1 places</source>
        <translation>%1 Stellen</translation>
    </message>
</context>
<context>
    <name>brindlehum::MeterView</name>
    <message>
        <source>silent</source>
        <translation>still</translation>
    </message>
    <message>
        <source>Output meter</source>
        <translation>Ausgangspegel</translation>
    </message>
    <message>
        <source>Peak levels of the outputs. Space clears the marks of over-range.</source>
        <translation>Spitzenpegel der Ausgänge. Die Leertaste löscht die Übersteuerungsmarken.</translation>
    </message>
    <message>
        <source>Peak levels of the outputs, in dBFS</source>
        <translation>Spitzenpegel der Ausgänge in dBFS</translation>
    </message>
    <message>
        <source>highest %1</source>
        <translation>Spitze %1</translation>
    </message>
    <message>
        <source>over (click to clear)</source>
        <translation>übersteuert (Klick löscht)</translation>
    </message>
</context>
<context>
    <name>brindlehum::MonitorLevel</name>
    <message>
        <source>Monitor volume in dB</source>
        <translation>Abhörlautstärke in dB</translation>
    </message>
    <message>
        <source>Sound level</source>
        <translation>Schallpegel</translation>
    </message>
    <message>
        <source>Monitor volume</source>
        <translation>Abhörlautstärke</translation>
    </message>
    <message>
        <source>Double-click: 0 dB</source>
        <translation>Doppelklick: 0 dB</translation>
    </message>
    <message>
        <source>Dim</source>
        <translation>Dim</translation>
    </message>
    <message>
        <source>Lower by this much (D)</source>
        <translation>Um so viel absenken (D)</translation>
    </message>
    <message>
        <source>Dim by</source>
        <translation>Dim um</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Stumm</translation>
    </message>
    <message>
        <source>Silences all speakers (M)</source>
        <translation>Schaltet alle Lautsprecher stumm (M)</translation>
    </message>
    <message>
        <source>muted</source>
        <translation>stumm</translation>
    </message>
</context>
<context>
    <name>brindlehum::MonitorListen</name>
    <message>
        <source>Listen</source>
        <translation>Abhören</translation>
    </message>
    <message>
        <source>Audition the mix folded down, on the matching speakers</source>
        <translation>Den Fold-down der Mischung abhören, auf den passenden Lautsprechern</translation>
    </message>
    <message>
        <source>Mono sum</source>
        <translation>Monosumme</translation>
    </message>
    <message>
        <source>Hold: half the sum of the 2.0 fold-down</source>
        <translation>Halten: halbe Summe des 2.0-Fold-downs</translation>
    </message>
    <message>
        <source>L − R</source>
        <translation>L − R</translation>
    </message>
    <message>
        <source>Hold: half the difference of the 2.0 fold-down, its sides</source>
        <translation>Halten: halbe Differenz des 2.0-Fold-downs, das Seitensignal</translation>
    </message>
    <message>
        <source>Folded to L and R</source>
        <translation>Auf L und R gefaltet</translation>
    </message>
    <message>
        <source>Hear the fold-down instead of the speakers around you</source>
        <translation>Den Fold-down hören statt der Lautsprecher ringsum</translation>
    </message>
    <message>
        <source>Hearing the mono sum</source>
        <translation>Monosumme zu hören</translation>
    </message>
    <message>
        <source>Hearing L − R</source>
        <translation>L − R zu hören</translation>
    </message>
</context>
<context>
    <name>brindlehum::MonitorRoute</name>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>Where your DAW plays its bus, for example Brindlehum Bus</source>
        <translation>Wohin die DAW ihren Bus spielt, zum Beispiel Brindlehum Bus</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Auswählen …</translation>
    </message>
    <message>
        <source>Bus</source>
        <translation>Bus</translation>
    </message>
    <message>
        <source>The order of the bus&apos;s channels</source>
        <translation>Kanalreihenfolge des Busses</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>The speakers or headphones that it is heard on</source>
        <translation>Die Lautsprecher oder Kopfhörer zum Abhören</translation>
    </message>
    <message>
        <source>%1  (not there)</source>
        <translation>%1  (nicht vorhanden)</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
</context>
<context>
    <name>brindlehum::MonitorTrim</name>
    <message>
        <source>Height trim</source>
        <translation>Höhen-Trim</translation>
    </message>
    <message>
        <source>Double-click: 0 dB</source>
        <translation>Doppelklick: 0 dB</translation>
    </message>
    <message>
        <source>Height trim in dB</source>
        <translation>Höhen-Trim in dB</translation>
    </message>
    <message>
        <source>Source starts at input</source>
        <translation>Quelle beginnt bei Eingang</translation>
    </message>
    <message>
        <source>The room has no height speakers</source>
        <translation>Der Raum hat keine Höhenlautsprecher</translation>
    </message>
</context>
<context>
    <name>brindlehum::MonitorUpmix</name>
    <message>
        <source>Upmix</source>
        <translation>Upmix</translation>
    </message>
    <message>
        <source>Preset</source>
        <translation>Preset</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Back to the preset&apos;s values</source>
        <translation>Zurück zu den Werten des Presets</translation>
    </message>
    <message>
        <source>Spread the bus over every speaker in the room</source>
        <translation>Den Bus auf alle Lautsprecher im Raum verteilen</translation>
    </message>
    <message>
        <source>The source already uses every speaker in the room</source>
        <translation>Die Quelle nutzt schon alle Lautsprecher im Raum</translation>
    </message>
</context>
<context>
    <name>brindlehum::MonitorWindow</name>
    <message>
        <source>Monitor</source>
        <translation>Monitor</translation>
    </message>
    <message>
        <source>Bus</source>
        <translation>Bus</translation>
    </message>
    <message>
        <source>Speakers</source>
        <translation>Lautsprecher</translation>
    </message>
    <message>
        <source>Nothing is sent to the soloed speakers in this mode.</source>
        <translation>In diesem Modus bekommen die Solo-Lautsprecher kein Signal.</translation>
    </message>
    <message>
        <source>Play your DAW into “Brindlehum Bus”, or choose another source, and start.</source>
        <translation>Die DAW in „Brindlehum Bus“ spielen lassen oder eine andere Quelle auswählen, dann starten.</translation>
    </message>
    <message>
        <source>%1 in, %2 out at %3 kHz</source>
        <translation>%1 ein, %2 aus bei %3 kHz</translation>
    </message>
    <message>
        <source>, %1 ms latency</source>
        <translation>, %1 ms Latenz</translation>
    </message>
    <message>
        <source> (%1 ms of the upmix)</source>
        <translation> (%1 ms vom Upmix)</translation>
    </message>
    <message>
        <source>, no drop-outs</source>
        <translation>, keine Aussetzer</translation>
    </message>
    <message>
        <source>, %1 drop-outs</source>
        <translation>, %1 Aussetzer</translation>
    </message>
</context>
<context>
    <name>brindlehum::OutputsSettings</name>
    <message>
        <source>Select an output</source>
        <translation>Ausgabe auswählen</translation>
    </message>
    <message>
        <source>Outputs</source>
        <translation>Ausgaben</translation>
    </message>
    <message>
        <source>Add an output</source>
        <translation>Ausgabe hinzufügen</translation>
    </message>
    <message>
        <source>Remove the selected output</source>
        <translation>Ausgewählte Ausgabe entfernen</translation>
    </message>
</context>
<context>
    <name>brindlehum::PlanCard</name>
    <message>
        <source>How closely the bars around each splice match</source>
        <translation>Wie genau die Takte um jeden Schnitt zueinander passen</translation>
    </message>
    <message>
        <source>Stop %1</source>
        <translation>%1 anhalten</translation>
    </message>
    <message>
        <source>Audition %1</source>
        <translation>%1 vorhören</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Audition this edit</source>
        <translation>Diesen Schnitt vorhören</translation>
    </message>
</context>
<context>
    <name>brindlehum::PlayerHeader</name>
    <message>
        <source>Clear selection</source>
        <translation>Auswahl aufheben</translation>
    </message>
    <message>
        <source>Sel %1</source>
        <translation>Ausw. %1</translation>
    </message>
</context>
<context>
    <name>brindlehum::PlayerView</name>
    <message>
        <source>Player</source>
        <translation>Player</translation>
    </message>
    <message>
        <source>Select an audio file</source>
        <translation>Audiodatei auswählen</translation>
    </message>
    <message>
        <source>Choose one in the file manager.</source>
        <translation>Eine im Dateimanager auswählen.</translation>
    </message>
    <message>
        <source>Choose one in the list above, or drop a file or a folder here.</source>
        <translation>Eine in der Liste oben auswählen oder eine Datei oder einen Ordner hier ablegen.</translation>
    </message>
</context>
<context>
    <name>brindlehum::PluginPicker</name>
    <message>
        <source>Add LV2 Plug-in</source>
        <translation>LV2-Plug-in hinzufügen</translation>
    </message>
    <message>
        <source>Search by maker or name</source>
        <translation>Nach Hersteller oder Name suchen</translation>
    </message>
    <message>
        <source>Search plug-ins</source>
        <translation>Plug-ins suchen</translation>
    </message>
    <message>
        <source>Plug-ins</source>
        <translation>Plug-ins</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Looking for plug-ins …</source>
        <translation>Plug-ins werden gesucht …</translation>
    </message>
    <message>
        <source>No LV2 effects are installed.</source>
        <translation>Es sind keine LV2-Effekte installiert.</translation>
    </message>
</context>
<context>
    <name>brindlehum::ProfileCompare</name>
    <message>
        <source>Compare with</source>
        <translation>Vergleichen mit</translation>
    </message>
    <message>
        <source>A second output at equal level</source>
        <translation>Eine zweite Ausgabe bei gleichem Pegel</translation>
    </message>
    <message>
        <source>Switch</source>
        <translation>Umschalten</translation>
    </message>
    <message>
        <source>Hear the other output (X)</source>
        <translation>Die andere Ausgabe hören (X)</translation>
    </message>
    <message>
        <source>By this much the output in use is lowered, so that both are equally loud by the bus&apos;s last seconds</source>
        <translation>Um so viel ist die genutzte Ausgabe abgesenkt, damit beide nach den letzten Sekunden des Busses gleich laut sind</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>matched %1 dB</source>
        <translation>angeglichen %1 dB</translation>
    </message>
</context>
<context>
    <name>brindlehum::ProfileEditor</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Speakers</source>
        <translation>Lautsprecher</translation>
    </message>
    <message>
        <source>Headphones (binaural)</source>
        <translation>Kopfhörer (binaural)</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>Gerät</translation>
    </message>
    <message>
        <source>Left output</source>
        <translation>Linker Ausgang</translation>
    </message>
    <message>
        <source>Right output</source>
        <translation>Rechter Ausgang</translation>
    </message>
    <message>
        <source>Layout</source>
        <translation>Layout</translation>
    </message>
    <message>
        <source>&amp;Name</source>
        <translation>&amp;Name</translation>
    </message>
    <message>
        <source>&amp;Type</source>
        <translation>&amp;Typ</translation>
    </message>
    <message>
        <source>&amp;Device</source>
        <translation>&amp;Gerät</translation>
    </message>
    <message>
        <source>&amp;Left output</source>
        <translation>&amp;Linker Ausgang</translation>
    </message>
    <message>
        <source>&amp;Right output</source>
        <translation>&amp;Rechter Ausgang</translation>
    </message>
    <message>
        <source>La&amp;yout</source>
        <translation>La&amp;yout</translation>
    </message>
    <message>
        <source>Sequential from 1</source>
        <translation>Fortlaufend ab 1</translation>
    </message>
    <message>
        <source>Speaker map</source>
        <translation>Lautsprecherzuordnung</translation>
    </message>
    <message>
        <source>By Position</source>
        <translation>Nach Position</translation>
    </message>
    <message>
        <source>Each speaker plays on the output that the device calls by its name</source>
        <translation>Jeder Lautsprecher spielt auf dem Ausgang, dem das Gerät seinen Namen gibt</translation>
    </message>
    <message>
        <source>Trims apply to auditioning only; room correction comes from the monitor module.</source>
        <translation>Trims gelten nur beim Vorhören; die Raumkorrektur kommt vom Monitor-Modul.</translation>
    </message>
    <message>
        <source>System Output</source>
        <translation>Systemausgabe</translation>
    </message>
    <message>
        <source>%1  (%2 out)</source>
        <translation>%1  (%2 Ausg.)</translation>
    </message>
    <message>
        <source>Speaker</source>
        <translation>Lautsprecher</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Ausgang</translation>
    </message>
    <message>
        <source>Trim</source>
        <translation>Trim</translation>
    </message>
    <message>
        <source>Output of %1</source>
        <translation>Ausgang von %1</translation>
    </message>
    <message>
        <source>Trim of %1</source>
        <translation>Trim von %1</translation>
    </message>
    <message>
        <source>Test %1</source>
        <translation>%1 testen</translation>
    </message>
    <message>
        <source>Noise and %1 beeps from %2</source>
        <translation>Rauschen und %1 Pieptöne aus %2</translation>
    </message>
    <message>
        <source>The device has no such output: this speaker is not heard</source>
        <translation>Das Gerät hat keinen solchen Ausgang: Dieser Lautsprecher ist nicht zu hören</translation>
    </message>
    <message>
        <source>%1 is not heard</source>
        <translation>%1 ist nicht zu hören</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Unavailable device</source>
        <translation>Nicht verfügbares Gerät</translation>
    </message>
</context>
<context>
    <name>brindlehum::PullsSettings</name>
    <message>
        <source>Choose…</source>
        <translation>Auswählen …</translation>
    </message>
    <message>
        <source>Choose the folder for files dragged out</source>
        <translation>Ordner für herausgezogene Dateien auswählen</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Anzeigen</translation>
    </message>
    <message>
        <source>Show the folder for files dragged out</source>
        <translation>Ordner für herausgezogene Dateien anzeigen</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Use the default folder for files dragged out</source>
        <translation>Standardordner für herausgezogene Dateien verwenden</translation>
    </message>
    <message>
        <source>32-bit float instead of 24 bits</source>
        <translation>32-Bit-Float statt 24 Bit</translation>
    </message>
    <message>
        <source>Folder for Files Dragged Out</source>
        <translation>Ordner für herausgezogene Dateien</translation>
    </message>
</context>
<context>
    <name>brindlehum::ReferenceButton</name>
    <message>
        <source>Ref</source>
        <translation>Ref</translation>
    </message>
    <message>
        <source>Calibrate Here…</source>
        <translation>Hier kalibrieren …</translation>
    </message>
    <message>
        <source>Forget the Reference</source>
        <translation>Referenz vergessen</translation>
    </message>
    <message>
        <source>Calibrate: what a sound level meter reads here</source>
        <translation>Kalibrieren: was ein Schallpegelmesser hier anzeigt</translation>
    </message>
    <message>
        <source>Go to the reference: %1 dB SPL at %2 dB (R)</source>
        <translation>Zur Referenz: %1 dB SPL bei %2 dB (R)</translation>
    </message>
</context>
<context>
    <name>brindlehum::RenameDialog</name>
    <message>
        <source>Rename to UCS Names</source>
        <translation>In UCS-Namen umbenennen</translation>
    </message>
    <message>
        <source>Metadata edits that aren&apos;t saved yet are not in these names.</source>
        <translation>Noch nicht gespeicherte Metadaten sind in diesen Namen nicht enthalten.</translation>
    </message>
    <message>
        <source>DAW sessions that reference the old names will need to relink.</source>
        <translation>DAW-Sessions mit den alten Namen müssen neu verknüpft werden.</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Names now and then</source>
        <translation>Namen jetzt und danach</translation>
    </message>
    <message>
        <source>Name now</source>
        <translation>Name jetzt</translation>
    </message>
    <message>
        <source>New name</source>
        <translation>Neuer Name</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Hinweis</translation>
    </message>
</context>
<context>
    <name>brindlehum::SessionSettings</name>
    <message>
        <source>Start with the session, without a window</source>
        <translation>Mit der Sitzung starten, ohne Fenster</translation>
    </message>
</context>
<context>
    <name>brindlehum::SettingsWindow</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Outputs</source>
        <translation>Ausgaben</translation>
    </message>
    <message>
        <source>Audition</source>
        <translation>Vorhören</translation>
    </message>
    <message>
        <source>Library</source>
        <translation>Bibliothek</translation>
    </message>
</context>
<context>
    <name>brindlehum::SidebarModel</name>
    <message>
        <source>%1 files</source>
        <translation>%1 Dateien</translation>
    </message>
    <message>
        <source>indexing</source>
        <translation>wird indiziert</translation>
    </message>
    <message>
        <source>selected</source>
        <translation>ausgewählt</translation>
    </message>
</context>
<context>
    <name>brindlehum::SidebarTree</name>
    <message>
        <source>Library and places</source>
        <translation>Bibliothek und Orte</translation>
    </message>
</context>
<context>
    <name>brindlehum::SidebarView</name>
    <message>
        <source>Indexing progress</source>
        <translation>Fortschritt der Indizierung</translation>
    </message>
    <message>
        <source>Rescan</source>
        <translation>Neu einlesen</translation>
    </message>
    <message>
        <source>Remove from Library</source>
        <translation>Aus der Bibliothek entfernen</translation>
    </message>
</context>
<context>
    <name>brindlehum::SoundfieldRow</name>
    <message>
        <source>Soundfield</source>
        <translation>Schallfeld</translation>
    </message>
    <message>
        <source>Yaw</source>
        <translation>Gieren</translation>
    </message>
    <message>
        <source>Pitch</source>
        <translation>Nicken</translation>
    </message>
    <message>
        <source>Roll</source>
        <translation>Rollen</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Reset the soundfield</source>
        <translation>Schallfeld zurücksetzen</translation>
    </message>
    <message>
        <source>Soundfield yaw %1, pitch %2, roll %3: double-click Reset to zero all three</source>
        <translation>Schallfeld: Gieren %1, Nicken %2, Rollen %3. Ein Doppelklick auf „Zurücksetzen“ stellt alle drei auf null</translation>
    </message>
</context>
<context>
    <name>brindlehum::SourceBar</name>
    <message>
        <source>Upmix: spread this file over every speaker</source>
        <translation>Upmix: diese Datei auf alle Lautsprecher verteilen</translation>
    </message>
    <message>
        <source>Source format</source>
        <translation>Quellformat</translation>
    </message>
    <message>
        <source>How the channels are interpreted</source>
        <translation>Wie die Kanäle gedeutet werden</translation>
    </message>
    <message>
        <source>Listen</source>
        <translation>Abhören</translation>
    </message>
    <message>
        <source>Monitor mode for stereo files</source>
        <translation>Abhörmodus für Stereodateien</translation>
    </message>
    <message>
        <source>Upmix</source>
        <translation>Upmix</translation>
    </message>
    <message>
        <source>Output profile</source>
        <translation>Ausgabeprofil</translation>
    </message>
    <message>
        <source>Drag as</source>
        <translation>Ziehen als</translation>
    </message>
    <message>
        <source>What a drag into the DAW delivers</source>
        <translation>Was beim Ziehen in die DAW ankommt</translation>
    </message>
    <message>
        <source>Open in the editor</source>
        <translation>Im Editor öffnen</translation>
    </message>
    <message>
        <source>Open in the editor (Ctrl+E): pins the intro, loop and ending, makes temp edits</source>
        <translation>Im Editor öffnen (Strg+E): legt Intro, Schleife und Schluss fest, erstellt Temp-Schnitte</translation>
    </message>
    <message>
        <source>%1 (folder)</source>
        <translation>%1 (Ordner)</translation>
    </message>
    <message>
        <source>%1 (set)</source>
        <translation>%1 (gewählt)</translation>
    </message>
    <message>
        <source>Auto (%1)</source>
        <translation>Auto (%1)</translation>
    </message>
    <message>
        <source>How the channels are interpreted: you chose %1 for this folder. Without that they would be %2</source>
        <translation>Wie die Kanäle gedeutet werden: Für diesen Ordner ist %1 gewählt. Sonst wären sie %2</translation>
    </message>
    <message>
        <source>How the channels are interpreted: you chose %1 for this file. Without that they would be %2</source>
        <translation>Wie die Kanäle gedeutet werden: Für diese Datei ist %1 gewählt. Sonst wären sie %2</translation>
    </message>
    <message>
        <source>Back to Auto (%1) for this file</source>
        <translation>Für diese Datei zurück zu Auto (%1)</translation>
    </message>
    <message>
        <source>Back to Auto (%1)</source>
        <translation>Zurück zu Auto (%1)</translation>
    </message>
    <message>
        <source>Off (comparing)</source>
        <translation>Aus (Vergleich)</translation>
    </message>
    <message>
        <source>Now: %1</source>
        <translation>Jetzt: %1</translation>
    </message>
    <message>
        <source>Monitor modes don&apos;t apply while the file is upmixed</source>
        <translation>Abhörmodi wirken nicht, solange der Upmix läuft</translation>
    </message>
    <message>
        <source>no sound server</source>
        <translation>kein Soundserver</translation>
    </message>
    <message>
        <source>the sound server doesn&apos;t answer</source>
        <translation>der Soundserver antwortet nicht</translation>
    </message>
    <message>
        <source>no output device</source>
        <translation>kein Ausgabegerät</translation>
    </message>
    <message>
        <source>on %1, for the profile&apos;s device is unavailable</source>
        <translation>auf %1, denn das Gerät des Profils fehlt</translation>
    </message>
    <message>
        <source>on %1</source>
        <translation>auf %1</translation>
    </message>
    <message>
        <source>For All %1-Channel Files in “%2”</source>
        <translation>Für alle %1-Kanal-Dateien in „%2“</translation>
    </message>
    <message>
        <source>Compare with the Fold-Down</source>
        <translation>Mit dem Fold-down vergleichen</translation>
    </message>
    <message>
        <source>Plays the plain fold-down, as loud as the upmix</source>
        <translation>Spielt den einfachen Fold-down, so laut wie den Upmix</translation>
    </message>
    <message>
        <source>Adjust…</source>
        <translation>Anpassen …</translation>
    </message>
</context>
<context>
    <name>brindlehum::SpeakerMap</name>
    <message>
        <source>Speakers of the room</source>
        <translation>Lautsprecher des Raums</translation>
    </message>
</context>
<context>
    <name>brindlehum::SpeakerPane</name>
    <message>
        <source>Delay and polarity of each speaker</source>
        <translation>Verzögerung und Polarität jedes Lautsprechers</translation>
    </message>
    <message>
        <source>Clear solos and mutes</source>
        <translation>Solo und Stumm aufheben</translation>
    </message>
    <message>
        <source>Alignment…</source>
        <translation>Abgleich …</translation>
    </message>
    <message>
        <source>Alignment (%1)…</source>
        <translation>Abgleich (%1) …</translation>
    </message>
</context>
<context>
    <name>brindlehum::SpeakerTile</name>
    <message>
        <source>Click to solo. Alt-click, right-click or M to mute.</source>
        <translation>Klicken für Solo. Alt-Klick, Rechtsklick oder M für stumm.</translation>
    </message>
    <message>
        <source>, solo</source>
        <translation>, solo</translation>
    </message>
    <message>
        <source>, muted</source>
        <translation>, stumm</translation>
    </message>
    <message>
        <source>, nothing in this mode</source>
        <translation>, ohne Signal in diesem Modus</translation>
    </message>
</context>
<context>
    <name>brindlehum::StarRow</name>
    <message>
        <source>Rating: none</source>
        <translation>Bewertung: keine</translation>
    </message>
    <message>
        <source>A click on the star of the rating takes it away</source>
        <translation>Ein Klick auf den Stern der Bewertung nimmt sie weg</translation>
    </message>
    <message>
        <source>Rating: %1 of %2</source>
        <translation>Bewertung: %1 von %2</translation>
    </message>
</context>
<context>
    <name>brindlehum::StatusMenu</name>
    <message>
        <source>File Manager Panel</source>
        <translation>Dateimanager-Panel</translation>
    </message>
    <message>
        <source>Auto-Play</source>
        <translation>Automatisch abspielen</translation>
    </message>
    <message>
        <source>Space Plays in File Manager</source>
        <translation>Leertaste spielt im Dateimanager</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>Open Copied Link</source>
        <translation>Kopierten Link öffnen</translation>
    </message>
    <message>
        <source>Show Browser</source>
        <translation>Browser anzeigen</translation>
    </message>
    <message>
        <source>Show Editor</source>
        <translation>Editor anzeigen</translation>
    </message>
    <message>
        <source>Show Monitor</source>
        <translation>Monitor anzeigen</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Quit Brindlehum</source>
        <translation>Brindlehum beenden</translation>
    </message>
</context>
<context>
    <name>brindlehum::TakeRow</name>
    <message>
        <source>Stop %1</source>
        <translation>%1 anhalten</translation>
    </message>
    <message>
        <source>Play %1</source>
        <translation>%1 abspielen</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Copy %1</source>
        <translation>%1 kopieren</translation>
    </message>
    <message>
        <source>Drag the take into your DAW. A click copies the file.</source>
        <translation>Den Take in die DAW ziehen. Ein Klick kopiert die Datei.</translation>
    </message>
</context>
<context>
    <name>brindlehum::TempEditsBar</name>
    <message>
        <source>Progress of the temp edits</source>
        <translation>Fortschritt der Temp-Schnitte</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Why Skipped…</source>
        <translation>Warum übersprungen …</translation>
    </message>
    <message>
        <source>Set Bars…</source>
        <translation>Takte festlegen …</translation>
    </message>
    <message>
        <source>Show in File Manager</source>
        <translation>Im Dateimanager anzeigen</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
    <message>
        <source>Temp Edits</source>
        <translation>Temp-Schnitte</translation>
    </message>
    <message>
        <source>These files were skipped:</source>
        <translation>Diese Dateien wurden übersprungen:</translation>
    </message>
</context>
<context>
    <name>brindlehum::TempEditsPanel</name>
    <message>
        <source>Temp Edits</source>
        <translation>Temp-Schnitte</translation>
    </message>
    <message>
        <source>Reset pins</source>
        <translation>Marken zurücksetzen</translation>
    </message>
    <message>
        <source>Drag the flags in the ruler to move pins; they snap to bar lines</source>
        <translation>Fahnen im Lineal ziehen, um Marken zu verschieben; sie rasten an Taktstrichen ein</translation>
    </message>
    <message>
        <source>%1 extended</source>
        <translation>%1 verlängert</translation>
    </message>
    <message>
        <source>Exact lengths (fade the tail at the target)</source>
        <translation>Exakte Längen (Ende am Ziel ausblenden)</translation>
    </message>
    <message>
        <source>Write edits beside the source</source>
        <translation>Schnitte neben der Quelle ablegen</translation>
    </message>
    <message>
        <source>Splice crossfade</source>
        <translation>Schnitt-Crossfade</translation>
    </message>
    <message>
        <source>Loop candidates</source>
        <translation>Schleifenkandidaten</translation>
    </message>
    <message>
        <source>Make Temp Edits</source>
        <translation>Temp-Schnitte erstellen</translation>
    </message>
    <message>
        <source>Writes every edit below into a folder next to the source, with an edit-notes sheet</source>
        <translation>Schreibt jeden Schnitt unten in einen Ordner neben der Quelle, mit einem Blatt Schnittnotizen</translation>
    </message>
    <message>
        <source>Reveal</source>
        <translation>Anzeigen</translation>
    </message>
    <message>
        <source>Seamless loop</source>
        <translation>Nahtlose Schleife</translation>
    </message>
    <message>
        <source>Intro to b%1 · Loop b%2–%3 · Ending b%4</source>
        <translation>Intro bis T%1 · Schleife T%2–%3 · Schluss T%4</translation>
    </message>
    <message>
        <source>Finding the sections…</source>
        <translation>Abschnitte werden gesucht …</translation>
    </message>
    <message>
        <source>No steady pulse found; set the tempo by hand in the tempo menu to plan edits.</source>
        <translation>Kein stetiger Puls gefunden; Tempo im Tempomenü von Hand festlegen, um Schnitte zu planen.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>✓ %1 files</source>
        <translation>✓ %1 Dateien</translation>
    </message>
    <message>
        <source>b%1  %2%  %3</source>
        <translation>T%1  %2%  %3</translation>
    </message>
</context>
<context>
    <name>brindlehum::TimeLabel</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
</context>
<context>
    <name>brindlehum::TimeRuler</name>
    <message>
        <source>Time ruler</source>
        <translation>Zeitlineal</translation>
    </message>
</context>
<context>
    <name>brindlehum::TransportBar</name>
    <message>
        <source>Loop</source>
        <translation>Schleife</translation>
    </message>
    <message>
        <source>Loop (selection or whole file)</source>
        <translation>Schleife (Auswahl oder ganze Datei)</translation>
    </message>
    <message>
        <source>Auto-play</source>
        <translation>Automatisch abspielen</translation>
    </message>
    <message>
        <source>Auto-play on selection</source>
        <translation>Beim Auswählen automatisch abspielen</translation>
    </message>
    <message>
        <source>Audition level</source>
        <translation>Abhörpegel</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Stop (Ctrl+Return)</source>
        <translation>Anhalten (Strg+Return)</translation>
    </message>
    <message>
        <source>Play (Ctrl+Return)</source>
        <translation>Abspielen (Strg+Return)</translation>
    </message>
    <message>
        <source>Audition level %1 dB</source>
        <translation>Abhörpegel %1 dB</translation>
    </message>
</context>
<context>
    <name>brindlehum::UCSCompleter</name>
    <message>
        <source>UCS entries</source>
        <translation>UCS-Einträge</translation>
    </message>
</context>
<context>
    <name>brindlehum::UpmixMap</name>
    <message>
        <source>silent</source>
        <translation>still</translation>
    </message>
    <message>
        <source>Picture of the upmix</source>
        <translation>Bild des Upmix</translation>
    </message>
    <message>
        <source>The room from above, with the levels of direct sound and ambience in each speaker</source>
        <translation>Der Raum von oben, mit den Pegeln von Direktschall und Ambience in jedem Lautsprecher</translation>
    </message>
    <message>
        <source>Direct</source>
        <translation>Direkt</translation>
    </message>
    <message>
        <source>Ambience</source>
        <translation>Ambience</translation>
    </message>
    <message>
        <source>What each speaker gets of the direct sound and of the ambience</source>
        <translation>Was jeder Lautsprecher an Direktschall und Ambience bekommt</translation>
    </message>
    <message>
        <source>%1: direct %2, ambience %3</source>
        <translation>%1: direkt %2, Ambience %3</translation>
    </message>
</context>
<context>
    <name>brindlehum::UpmixPanel</name>
    <message>
        <source>Name of the preset:</source>
        <translation>Name des Presets:</translation>
    </message>
    <message>
        <source>Upmix</source>
        <translation>Upmix</translation>
    </message>
    <message>
        <source>Preset</source>
        <translation>Preset</translation>
    </message>
    <message>
        <source>The preset that the numbers start from</source>
        <translation>Das Preset, von dem die Werte ausgehen</translation>
    </message>
    <message>
        <source>Keep</source>
        <translation>Ablegen</translation>
    </message>
    <message>
        <source>Presets of your own</source>
        <translation>Eigene Presets</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Back to the preset&apos;s values</source>
        <translation>Zurück zu den Werten des Presets</translation>
    </message>
    <message>
        <source>Compare</source>
        <translation>Vergleichen</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Save As…</source>
        <translation>Speichern als …</translation>
    </message>
    <message>
        <source>Rename…</source>
        <translation>Umbenennen …</translation>
    </message>
    <message>
        <source>Delete…</source>
        <translation>Löschen …</translation>
    </message>
    <message>
        <source>Save the Upmix As</source>
        <translation>Upmix speichern als</translation>
    </message>
    <message>
        <source>Replace the preset “%1”?</source>
        <translation>Das Preset „%1“ ersetzen?</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Rename the Preset</source>
        <translation>Preset umbenennen</translation>
    </message>
    <message>
        <source>Delete the preset “%1”?</source>
        <translation>Das Preset „%1“ löschen?</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>The preset that the numbers start from: %1</source>
        <translation>Das Preset, von dem die Werte ausgehen: %1</translation>
    </message>
    <message>
        <source>Ctrl+U: plays the plain fold-down as loud as the upmix, and the upmix again</source>
        <translation>Strg+U: spielt den einfachen Fold-down so laut wie den Upmix, dann wieder den Upmix</translation>
    </message>
    <message>
        <source>There is no upmix to compare with</source>
        <translation>Es gibt keinen Upmix zum Vergleichen</translation>
    </message>
    <message>
        <source>Measuring how loud both are…</source>
        <translation>Die Lautheit beider wird gemessen …</translation>
    </message>
    <message>
        <source>You hear the plain fold-down, %1 dB to be equally loud</source>
        <translation>Zu hören ist der einfache Fold-down, gleich laut mit %1 dB</translation>
    </message>
    <message>
        <source>You hear the upmix, %1 dB to be equally loud</source>
        <translation>Zu hören ist der Upmix, gleich laut mit %1 dB</translation>
    </message>
</context>
<context>
    <name>brindlehum::UpmixSliders</name>
    <message>
        <source>%1 of 7</source>
        <translation>%1 von 7</translation>
    </message>
    <message>
        <source>off</source>
        <translation>aus</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>Front</translation>
    </message>
    <message>
        <source>Strength</source>
        <translation>Stärke</translation>
    </message>
    <message>
        <source>From the plain sound to the whole upmix</source>
        <translation>Vom unveränderten Ton bis zum vollen Upmix</translation>
    </message>
    <message>
        <source>Centre width</source>
        <translation>Mittenbreite</translation>
    </message>
    <message>
        <source>How much of the centre moves out to left and right</source>
        <translation>Wie viel der Mitte nach links und rechts wandert</translation>
    </message>
    <message>
        <source>Front stage</source>
        <translation>Frontbühne</translation>
    </message>
    <message>
        <source>Where a sound that is hard left or right stands</source>
        <translation>Wo ein ganz links oder rechts liegender Ton steht</translation>
    </message>
    <message>
        <source>Front ambience</source>
        <translation>Front-Ambience</translation>
    </message>
    <message>
        <source>Share of the ambience that stays in front</source>
        <translation>Anteil der Ambience, der vorn bleibt</translation>
    </message>
    <message>
        <source>Focus</source>
        <translation>Fokus</translation>
    </message>
    <message>
        <source>How readily a sound counts as direct</source>
        <translation>Wie schnell ein Ton als direkt gilt</translation>
    </message>
    <message>
        <source>Ambience</source>
        <translation>Ambience</translation>
    </message>
    <message>
        <source>Level of the ambience in all speakers but its own</source>
        <translation>Pegel der Ambience in allen Lautsprechern außer ihren eigenen</translation>
    </message>
    <message>
        <source>Sides</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>Level of the ambience in Ls and Rs</source>
        <translation>Pegel der Ambience in Ls und Rs</translation>
    </message>
    <message>
        <source>Rears</source>
        <translation>Hinten</translation>
    </message>
    <message>
        <source>Level of the ambience in Lrs, Rrs and Cs</source>
        <translation>Pegel der Ambience in Lrs, Rrs und Cs</translation>
    </message>
    <message>
        <source>Wides</source>
        <translation>Wides</translation>
    </message>
    <message>
        <source>Level of the ambience in Lw, Rw, Lc and Rc</source>
        <translation>Pegel der Ambience in Lw, Rw, Lc und Rc</translation>
    </message>
    <message>
        <source>Heights</source>
        <translation>Höhenkanäle</translation>
    </message>
    <message>
        <source>Level of the ambience overhead</source>
        <translation>Pegel der Ambience über Kopf</translation>
    </message>
    <message>
        <source>Height tilt</source>
        <translation>Höhenneigung</translation>
    </message>
    <message>
        <source>Raises the front heights and lowers the rear ones, by three times as much</source>
        <translation>Hebt die vorderen Höhenkanäle und senkt die hinteren dreimal so stark</translation>
    </message>
    <message>
        <source>Colour and delay</source>
        <translation>Klangfarbe und Verzögerung</translation>
    </message>
    <message>
        <source>Surround delay</source>
        <translation>Surround-Delay</translation>
    </message>
    <message>
        <source>Delay of what is behind or overhead</source>
        <translation>Verzögerung dessen, was hinten oder über Kopf ist</translation>
    </message>
    <message>
        <source>Room delay</source>
        <translation>Raum-Delay</translation>
    </message>
    <message>
        <source>Spread of the delays of speakers that play ambience alone</source>
        <translation>Streuung der Verzögerungen von Lautsprechern, die nur Ambience spielen</translation>
    </message>
    <message>
        <source>Shelf from</source>
        <translation>Shelf ab</translation>
    </message>
    <message>
        <source>From here up, what is behind or overhead is made darker or brighter</source>
        <translation>Ab hier wird dunkler oder heller, was hinten oder über Kopf ist</translation>
    </message>
    <message>
        <source>Shelf</source>
        <translation>Shelf</translation>
    </message>
    <message>
        <source>By how much</source>
        <translation>Um wie viel</translation>
    </message>
    <message>
        <source>Height high-pass</source>
        <translation>Höhen-Hochpass</translation>
    </message>
    <message>
        <source>Keeps lows out of the heights</source>
        <translation>Hält tiefe Töne von den Höhenkanälen fern</translation>
    </message>
    <message>
        <source>Bass</source>
        <translation>Bass</translation>
    </message>
    <message>
        <source>LFE level</source>
        <translation>LFE-Pegel</translation>
    </message>
    <message>
        <source>Level of the bass sent to the LFE</source>
        <translation>Pegel des Basses, der in den LFE geht</translation>
    </message>
    <message>
        <source>Has an effect on stereo sounds only: others keep their front and their LFE</source>
        <translation>Wirkt nur bei Stereotönen: andere behalten ihre Front und ihren LFE</translation>
    </message>
    <message>
        <source>Has no effect on an exact fold-down</source>
        <translation>Ohne Wirkung bei exaktem Fold-down</translation>
    </message>
    <message>
        <source>No bass is sent to the LFE</source>
        <translation>Es geht kein Bass in den LFE</translation>
    </message>
    <message>
        <source>Bass to LFE</source>
        <translation>Bass in den LFE</translation>
    </message>
    <message>
        <source>Whether bass goes to the LFE as well</source>
        <translation>Ob Bass auch in den LFE geht</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Split</source>
        <translation>Geteilt</translation>
    </message>
    <message>
        <source>Crossover</source>
        <translation>Trennfrequenz</translation>
    </message>
    <message>
        <source>Below this, bass goes to the LFE</source>
        <translation>Darunter geht der Bass in den LFE</translation>
    </message>
    <message>
        <source>Exact fold-down</source>
        <translation>Exakter Fold-down</translation>
    </message>
    <message>
        <source>The 2.0 fold-down of the upmix is the sound itself: no delays, no decorrelation, no bass send</source>
        <translation>Der 2.0-Fold-down des Upmix ist der Ton selbst: keine Verzögerungen, keine Dekorrelation, kein Bass-Send</translation>
    </message>
    <message>
        <source>Delivery</source>
        <translation>Ablieferung</translation>
    </message>
    <message>
        <source>Double-click: %1</source>
        <translation>Doppelklick: %1</translation>
    </message>
</context>
<context>
    <name>brindlehum::WavePanel</name>
    <message>
        <source>Part of the sound in view</source>
        <translation>Sichtbarer Teil des Tons</translation>
    </message>
</context>
<context>
    <name>brindlehum::WaveformView</name>
    <message>
        <source>Waveform</source>
        <translation>Wellenform</translation>
    </message>
    <message>
        <source>Click to play from there, drag to select, drag an edge of the selection to move it, drag the selection itself to take it out as a file, Control-drag to take the whole sound out. Left and Right move the playhead, Home and End jump, Space plays or stops. Plus and Minus zoom, 0 shows all, Z the selection, Page Up and Page Down scroll. The brackets set the selection&apos;s start and end at the playhead, Escape clears it.</source>
        <translation>Ein Klick spielt ab dort, Ziehen wählt aus, eine gezogene Kante verschiebt sich, die gezogene Auswahl selbst kommt als Datei heraus, mit Strg gezogen der ganze Ton. Links und Rechts bewegen den Abspielpunkt, Pos1 und Ende springen, die Leertaste spielt oder hält an. Plus und Minus zoomen, 0 zeigt alles, Z die Auswahl, Bild auf und Bild ab rollen. Die eckigen Klammern setzen Anfang und Ende der Auswahl am Abspielpunkt, Esc hebt sie auf.</translation>
    </message>
</context>
</TS>
