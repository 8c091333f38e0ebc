<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
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
    <name>GripSplitter</name>
    <message>
        <source>Drag to change the height; double-click to fit it to the number of channels</source>
        <translation>Ziehen ändert die Höhe, ein Doppelklick passt sie der Zahl der Kanäle an</translation>
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
        <translation>Anhalten (Strg+Eingabe)</translation>
    </message>
    <message>
        <source>Play (Ctrl+Return)</source>
        <translation>Abspielen (Strg+Eingabe)</translation>
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
