<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>BrowserMenu</name>
    <message>
        <source>Open in Editor</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make Temp Edits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make Temp Edits (%1 files)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set Bars…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rename to UCS Names…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show in File Manager</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy Path</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BrowserState</name>
    <message>
        <source>No results for “%1”</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No results in %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No results for “%1” in %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Searching…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 result</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 results</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The best %1 are shown. One more word narrows the search.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Search isn&apos;t available</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The library&apos;s catalog couldn&apos;t be opened. Folders can still be browsed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing to search yet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Search finds the sounds in the folders of your library.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Folder…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Indexing is still under way: more may be found in a moment.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fewer or shorter words find more. A minus excludes: -word.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear Search</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 sound</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 sounds</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This folder can&apos;t be opened</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No sounds in this folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Its permissions don&apos;t let you read it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It may have been moved, or its volume isn&apos;t there.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No sounds yet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add the folders that hold your sounds: they are indexed, and searched as you type.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enclosing Folder</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Categor&amp;y</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Su&amp;bcategory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;CatID</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>FX &amp;name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Keywords</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Library</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Desi&amp;gner</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Source ID</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Microphone</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mic pe&amp;rspective</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loca&amp;tion</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>N&amp;otes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Track t&amp;itle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;User category</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not in the UCS list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stands for %1 in the UCS list</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>KeepingText</name>
    <message>
        <source>Saved in the catalog and the library&apos;s log: these files can&apos;t hold metadata.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saved into the files that can hold metadata, for the others in the catalog and the library&apos;s log.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saved into the files and shared with everyone on this library.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saved into the files (iXML + BWF) and shared with everyone on this library.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SidebarRows</name>
    <message>
        <source>Library</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Categories</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Libraries</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Places</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Folder…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Indexing…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 indexed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 found</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>brindlehum::BrowserBar</name>
    <message>
        <source>Enclosing folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Search sounds, descriptions, keywords  (-word excludes)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Each word is the beginning of a word, and all must match.
-word  excludes
wood OR metal  finds either
&quot;wet street&quot;  finds a phrase
keywords:metal  looks in one field: name, folder, keywords, description, category, …</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Search</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear the search (Esc)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Metadata inspector</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear category %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear library %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear Search</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Takes the words and every filter off</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>brindlehum::BrowserTable</name>
    <message>
        <source>Sounds</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset Columns</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 items</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>brindlehum::BrowserTableModel</name>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Description</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Category</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Library</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Length</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rating</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Modified</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of 5</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>brindlehum::HUDController</name>
    <message>
        <source>The panel is off: “File Manager Panel” in the status menu turns it on again.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>brindlehum::HUDPanel</name>
    <message>
        <source>Brindlehum Panel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Turn the panel off</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>brindlehum::InspectorView</name>
    <message>
        <source>Save the metadata edits before quitting?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The inspector holds edits that aren&apos;t in the files yet.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Couldn&apos;t save %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select sounds to see and edit their metadata.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard the edits and go on</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>R&amp;ating</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Revert</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rename to UCS…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save (Ctrl+S)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Renames to CatID_FXName_Designer_Source</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mixed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>These edits aren&apos;t saved yet.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Try again to save the edits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save the edits and go on</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>brindlehum::SidebarModel</name>
    <message>
        <source>%1 files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>indexing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>selected</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>brindlehum::SidebarTree</name>
    <message>
        <source>Library and places</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>brindlehum::SidebarView</name>
    <message>
        <source>Indexing progress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rescan</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove from Library</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>brindlehum::StarRow</name>
    <message>
        <source>Rating: none</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A click on the star of the rating takes it away</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rating: %1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>brindlehum::UCSCompleter</name>
    <message>
        <source>UCS entries</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
