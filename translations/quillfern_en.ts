<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>quillfern::AboutDialog</name>
    <message>
        <source>About %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Version %1

Stamps page numbers, text and pictures onto PDF and picture files.

Licensed under the Apache License, Version 2.0.
Made with Qt %2, qpdf, HarfBuzz, libtiff, libjpeg-turbo and libdeflate, under their own licences.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close this window</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::Actions</name>
    <message>
        <source>&amp;Import List of Paths…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add the files named in a list of paths</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add &amp;Files…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add PDF and picture files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add F&amp;older…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add the files of folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Export List…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save the list as tab-delimited text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open File&amp;s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open the selected files with their applications</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show in File &amp;Manager</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the selected files in the file manager</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reveal</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File &amp;Properties</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the file manager&apos;s properties of the selected files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Info</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Convert</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Write a stamped copy of every file in the list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save the settings and quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select all files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Deselect All</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select the first file only</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Check Selected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check the selected files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Uncheck Selected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Uncheck the selected files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Invert Selected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invert the check marks of the selected files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check A&amp;ll</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check all files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unchec&amp;k All</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Uncheck all files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>In&amp;vert All</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invert the check marks of all files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>M&amp;ove Up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move the selected files up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move Dow&amp;n</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move the selected files down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PDF Open Pass&amp;word…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set the password that opens the selected PDF files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Remove Selected Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove the selected files from the list; the files themselves are kept</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove All &amp;Files…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove all files from the list; the files themselves are kept</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New &amp;Text Stamp…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make a new stamp with numbers or text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New &amp;Picture Stamp…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make a new stamp with a picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Edit Stamp…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Change the selected stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Remove Stamps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove the selected stamps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move Stamps &amp;Up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Draw the selected stamps earlier</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move Stamps &amp;Down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Draw the selected stamps later, above others</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Load Profile…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Replace all stamps, numbering and margins with those of a saved profile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Save Profile…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save all stamps, numbering and margins as a profile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Live Preview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the first page of the selected file in the preview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quillfern &amp;Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open the manual</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;About Quillfern</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the version and the licences</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::ActivityBar</name>
    <message>
        <source>Time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Working</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop adding files; those found so far stay in the list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Convert</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Write a stamped copy of every file in the list into the output folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>0 sec(s)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::AnchorGrid</name>
    <message>
        <source>Top left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Top centre</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Top right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Middle left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Centre of the page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Middle right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom centre</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom right</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::Failure</name>
    <message>
        <source>The file is empty.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This is not a PDF document.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file is not there any more.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 cannot be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Another program or another job has changed the file since this job began. The file was left as it is.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Another program has removed or renamed the file while it was stamped. Nothing was written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Another program or another job has changed the file while it was stamped. Nothing was written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The earlier backup %1 was replaced.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please select output folder!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Output folder missing!<byte value="xd"/>
Please select valid output folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Output folder is non-writable!<byte value="xd"/>
Please select valid output folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The number %1 appears in no file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The numbers %1 to %2 appear in no file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 file gave no output: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 files gave no output: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 file replaced the copy of another file of its name: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 files replaced the copies of other files of their names: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 file is damaged, and parts of it are missing in its copy: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 files are damaged, and parts of them are missing in their copies: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The digital signature of 1 file no longer holds: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The digital signatures of %1 files no longer hold: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The numbers of %1 more files appear in no file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No copy was made.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document is digitally signed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It was not stamped in place, because there would be no backup.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document&apos;s digital signature no longer holds.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file is not there or holds no picture that can be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No copy was made: it would overwrite another file of the list, %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It was not stamped: it was the same file as %1 of the list when the job began.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This copy replaces the copy of %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is not enough memory for a page of this size.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No page of the file lies in the page range.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No page was written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No font is installed with which the text could be drawn.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The content of a page is nested too deeply.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The content of a page is larger than any real page&apos;s.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document is encrypted, and its trailer is damaged beyond repair.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The content of page %1 is damaged and cannot be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>One of the document&apos;s pages is damaged and cannot be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document has no pages.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document is damaged; the number of pages missing in it: %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document is damaged; parts of it could not be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Parts of the document are damaged and cannot be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A font cannot be embedded.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file cannot be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file became shorter while it was read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document is damaged: it points before its own beginning.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document is damaged beyond repair.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document needs a password.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document shows the same pages again and again, more than %1 times.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document has no such page.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The page is too large to be shown.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This is not a picture that can be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A page of the file is damaged or cut off.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A page could not be stored as JPEG.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The picture is coded in %1 passes, too many for one of its size.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A picture of %1 x %2 pixels is too large for a stamp.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is not enough memory for the picture.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file is too large for the picture of a stamp.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file is damaged: one of its pages has %1 x %2 pixels.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A page of %1 x %2 pixels is too large to be processed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file is damaged or cut off: it is too short for a page of %1 x %2 pixels.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This is a PDF document under the name of a picture.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is not enough memory to store a page.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A page could not be stored.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The tiles of a page are too large to be processed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The pages cannot be written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A page of the file is of a kind that cannot be processed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The TIFF file cannot be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file is damaged: one of its pages has no size.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The picture is damaged or cut off.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A page of the file is missing or damaged.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file is damaged: one of its pages lacks its palette.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 cannot be written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 cannot be written: it is a folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 cannot be written: it is a device, pipe or socket.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A file needs a name: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is held by another program.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file was given up before it was done.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The system allows no further thread.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An unknown error happened.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 cannot be read, because it is not a regular file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is not enough memory to begin.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There are too many copies named like %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No copy was made: the copy of %1 has its name.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A copy was there before the job, and was left as it is.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copies cannot be written into the folder %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No stamp is in use.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stamp %1 has no text or no picture.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 original is overwritten, and no backup is kept.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 originals are overwritten, and no backup is kept.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 copy that is there already is replaced.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 copies that are there already are replaced.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 file has a copy of another file&apos;s name.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 files have copies of the same names; only one copy of each name can be.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 file is not stamped, because its copy would overwrite another file of the list.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 files are not stamped, because their copies would overwrite other files of the list.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 file is in the list under another name too.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 files are in the list under another name too.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 file that is not checked is stamped too.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 files that are not checked are stamped too.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages of 1 file that are not stamped come out blank.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages of %1 files that are not stamped come out blank.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A stamp is mostly off the first page of 1 file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A stamp is mostly off the first page of %1 files.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A stamp is larger than the first page of 1 file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A stamp is larger than the first page of %1 files.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A stamp is below 4 points in print on 1 file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A stamp is below 4 points in print on %1 files.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 file needs a password and is not stamped.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 files need a password and are not stamped.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 file has no page that can be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 files have no page that can be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 file is digitally signed; readers will show that it was changed since.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 files are digitally signed; readers will show that they were changed since.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 file is certified by its author, and stamps end the certification.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 files are certified by their authors, and stamps end the certification.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The copy of 1 file no longer claims to be PDF/A-1, which forbids transparent stamps.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The copies of %1 files no longer claim to be PDF/A-1, which forbids transparent stamps.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The copies need about %1, and the disk has room for %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The folder %1 is not there and has to be made.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 original is overwritten; a backup of it is kept.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 originals are overwritten; backups of them are kept.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The font &quot;%1&quot; is not installed; &quot;%2&quot; is used instead.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is a copy that this job has made.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The copies of %1 and %2 have one name and belong to different parts of the job.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The pages that were counted of %1 are not those that were stamped: numbers and totals may be wrong. Count the pages again, and do all parts of the job again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A comma or a hyphen is missing at character %1 of the pages &quot;%2&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The range that ends at character %1 of the pages &quot;%2&quot; runs backwards.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The page number at character %1 of the pages &quot;%2&quot; is too large.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A page number is missing at character %1 of the pages &quot;%2&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages count from 1, unlike at character %1 of the pages &quot;%2&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Line %1 is no line of page counts.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document needs another password than the one given.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The document&apos;s encryption was not removed: that takes the password for permissions (the owner&apos;s), and the password that was given only opens it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The folder %1 cannot be opened.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is not below the output folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The folder %1 cannot be made.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is a link or a file, where a folder for copies has to be.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The standard input cannot be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The standard input is too large for a list.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::FileList</name>
    <message>
        <source>%1 Total file(s); Total page count of PDF files: %2  TIFF files: %3  Other files: %4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Are you sure to remove all file(s)?</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::FileListModel</name>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Type</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Modified Date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Created Date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Accessed Date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Location</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::FilesController</name>
    <message>
        <source>Select TIFF or PDF File(s):</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select folder(s) contains TIFF or PDF File(s):</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export List To Tab Delimited Text File :</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The list could not be written to
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Are you sure to open %1 files at once?</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::FilesDelegate</name>
    <message>
        <source>No pages can be read: the file needs a password, is damaged or no longer exists. It will be skipped.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::FilesPane</name>
    <message>
        <source>The files to stamp, in the order in which they are numbered</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Totals</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Include Subfolders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Also add the files in the subfolders of folders that are added or dropped</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop PDF and picture files or folders here</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>or use Add Files, Add Folder and Import above</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::ImageStamp</name>
    <message>
        <source>Image [%1]</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::ImageStampWindow</name>
    <message>
        <source>Image Stamp Properties</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop a picture file here</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Choose Picture…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a BMP, JPEG, PNG or GIF file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Re&amp;move Picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Label:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A name for the list of stamps; it is not printed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Label</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shown in the list, not printed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Use this stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Only stamps in use are printed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Width:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Printed width in points (72 to the inch)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Width in points</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>points</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Height:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Printed height in points (72 to the inch)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Height in points</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Keep proportions</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Placement</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Po&amp;sition on the page:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Rotation:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Facing pages: change sides on every page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Behind the page&apos;s own content (PDF)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Opacit&amp;y:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete Stam&amp;p</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Locked while a job is running.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Editing is locked while a job is running</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clos&amp;e</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close this window; the stamp keeps every change</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Add Stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Position on the page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove the picture from this stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Changing the width or the height changes the other in the proportions of the picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The stamp alternates between left and right on successive pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>On PDF pages the stamp is printed behind the text and pictures of the page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove this stamp from the list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add this stamp to the list and close the window</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::ImageStampWindowController</name>
    <message>
        <source>Opacity</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to load selected image!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Image Stamp Properties [%1]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please Select Stamp Image (Only BMP,JPG,JPEG,PNG,GIF Files):</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reading the picture…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The picture of this stamp cannot be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop a picture here, or choose one.
BMP, JPEG, PNG or GIF</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 × %2 pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, %2</source>
        <comment>file name, size</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The pictures of all stamps would have %1 MB together and could not be saved; %2 MB is the most.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::ImportFiles</name>
    <message>
        <source>Import Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import From Text File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import from a text file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The text file that lists the paths</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text file to import</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Path of a text file with one path a line</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Browse…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose the text file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Browse for the text file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import From Pasted Text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import from pasted text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The paths of the files to add, one a line</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paths to import</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paths of files, one a line</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paste From Clipboard</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Replace the text with the supported files among the paths on the clipboard</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paste from clipboard</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close without adding files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add the files to the list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read the paths of the files to add from a text file, one path a line</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read the paths of the files to add from the text below, one path a line</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The number of supported files found in the list</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::ImportFilesWindowController</name>
    <message>
        <source>Select Text File To Import:</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::JobController</name>
    <message>
        <source>A job is running. Stop it and quit? A file that is not done within a few seconds is given up.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::JobResultsModel</name>
    <message>
        <source>Cancelled</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Completed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Status</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remark</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Output</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Skipped</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::MainWindow</name>
    <message>
        <source>Stamps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Output</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fi&amp;le</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Stamps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::NumberText</name>
    <message>
        <source>Plain Text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Numbers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Roman Numbers Capital</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Roman Numbers Small</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::OpacityField</name>
    <message>
        <source>%1 in percent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The exact opacity in percent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>0% is invisible, 100% is opaque</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::OutputPane</name>
    <message>
        <source>Output folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The folder for the stamped copies, which have the names of their files. A file that is in this folder is stamped in place</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No folder chosen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose the output folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose Output Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remember as Default Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use this folder the next time Quillfern is started</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Folder When Done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the output folder once the files are stamped</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove Checked Files from the List When Done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>When the progress window is closed, remove the checked files from the list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keep a Backup When a File Is Stamped in Place</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Before a file is overwritten, keep a copy beside it under its name with &quot;bak&quot; appended</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Password for PDF files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Opens the PDF files that are added to the list. Saved in the settings as plain text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select output folder:</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::PDFReadPassword</name>
    <message>
        <source>PDF Open Password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Password that opens the selected PDF files:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Each selected PDF file is opened with this password and its pages are counted again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Show password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the password as it is typed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close without a change</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open the selected PDF files with this password</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::PagesPane</name>
    <message>
        <source>Pages and Numbers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>First page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The first page of each document that is stamped</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Last page (0: end)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Last page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The last page of each document that is stamped; 0 stands for the document&apos;s last page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages to stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Which pages between the first and the last page are stamped</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start at</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>First number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The number on the first stamped page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Step</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How much the number grows from one stamped page to the next</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number through all files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Continue the numbers from one file to the next instead of starting again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset to all pages, numbered from 1 in steps of 1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset Pages and Numbers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Margins</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Top</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Top margin</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Top margin of the page, in the unit below or in percent; 0 for none</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Left margin</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Left margin of the page, in the unit below or in percent; 0 for none</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Right margin</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Right margin of the page, in the unit below or in percent; 0 for none</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom margin</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom margin of the page, in the unit below or in percent; 0 for none</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unit of the margins</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The unit of the four margins; another unit converts their lengths</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Percent of the page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Margins are percentages of the page&apos;s width and height. In PDF files the numbers are lengths in the unit above</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set all margins to 0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset Margins</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Odd pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Even pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Points</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Millimetres</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Inches</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::PathListImport</name>
    <message>
        <source>Please select file to import!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please paste file(s) path to import!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No File(s) Found!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Total Files Found : %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The text file cannot be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lines left out: %1. They end with a carriage return, as in texts from Windows. Save the list with Unix line ends.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::PictureView</name>
    <message>
        <source>Reading the picture</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::PreviewImageView</name>
    <message>
        <source>Preview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What a page will look like with its stamps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading the page…</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::PreviewPane</name>
    <message>
        <source>Highlight Selected Stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shade the stamp that is selected below</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Live Preview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the first page of the selected file instead of a blank page</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::Process</name>
    <message>
        <source>%1 unable able to process some of the files!<byte value="xd"/>
Please check log for more information.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Process cancelled!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Total %1 files processed successfully.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All files processed successfully.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::ProgressSheet</name>
    <message>
        <source>State</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Current file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Progress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Elapsed:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Elapsed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remaining:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remaining</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Results</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Result</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>View Log</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open the log of this job</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop once the current file is done; the files done so far stay</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close this window and go back to the list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stamping Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stamping files…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel stops once the current file is done.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>estimating…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>about %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Finished</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The result of each file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warnings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop Now</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Give up the current file as well; nothing of its copy remains</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stopping: the current file is finished first… Stop Now gives that file up.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stopping: the current file is given up…</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::QuillfernAppDelegate</name>
    <message>
        <source>The help document is not installed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The settings could not be saved: %1.
Stamps and options that were changed would be lost. Save a profile to keep them elsewhere.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::RotationField</name>
    <message>
        <source>Rotation in degrees</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The exact rotation in degrees, counter-clockwise</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rotation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drag to turn the stamp; hold Shift for steps of 15°</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1°</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rotate to %1 degrees</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::StampsController</name>
    <message>
        <source>%1 Profile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 Profile save successfully.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to save %1 Profile!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to load %1 Profile!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This profile turns the backup of files that are stamped in place off.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This profile turns the backup of files that are stamped in place on.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::StampsModel</name>
    <message>
        <source>Whether the stamp is used</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Label</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::StampsPane</name>
    <message>
        <source>The stamps in the order in which they are drawn</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stamps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit Stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Change the selected stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove Stamps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove the selected stamps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move Stamps Up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Draw the selected stamps earlier</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move Stamps Down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Draw the selected stamps later, above others</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text Stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make a new stamp with numbers or text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Picture Stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make a new stamp with a picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Replace all stamps, numbering and margins with those of a saved profile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load Profile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save all stamps, numbering and margins as a profile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Profile</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::TextStampWindow</name>
    <message>
        <source>Text Stamp Properties</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text and Numbers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Template:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text with slots for numbers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pa&amp;ge number {0}</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Insert page number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>T&amp;otal {1}</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Insert total</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Number style:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number style</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Plain Text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Numbers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Roman Numbers Capital</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Roman Numbers Small</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pad &amp;with:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Padded length</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>characters, using</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Padding character</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sample:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Font</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Font fa&amp;mily:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Type any part of a name to find a family</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Font family</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Si&amp;ze:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size in points</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Font size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> pt</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Colour:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose the colour of the text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text colour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Bold</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use the bold member of the family</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bold</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Italic</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use the italic member of the family</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Italic</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Embed font</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Un&amp;derline:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Draw a line under or through the text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Underline</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Which line is drawn</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Style of the line</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Single</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Double</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Strikethrough</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Label:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A name for the list of stamps; it is not printed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Label</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shown in the list, not printed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Use this stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Only stamps in use are printed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Placement</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Po&amp;sition on the page:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Rotation:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Facing pages: change sides on every page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Behind the page&apos;s own content (PDF)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Opacit&amp;y:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Outline widt&amp;h:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Width of the outline in percent of the font size; 0 draws none</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Width of the outline</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Colour:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose the colour of the outline</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Outline colour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Outline opacity:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete Stam&amp;p</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Locked while a job is running.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Editing is locked while a job is running</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clos&amp;e</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close this window; the stamp keeps every change</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Add Stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>{0} and {1} are slots for numbers. They are filled in the order in which they stand:
              the first with the page number, the second with the total.
              So “{1} of {0}” prints the same as “{0} of {1}”, such as 1 of 120.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Insert {0} where the caret is</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Insert {1} where the caret is</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Position on the page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How the numbers are written; plain text prints the template unchanged</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Numbers are padded on the left to this many characters</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The padding character, such as 0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saved with the stamp. Fonts are embedded in PDF files whether or not this is checked</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The stamp alternates between left and right on successive pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>On PDF pages the stamp is printed behind the text and pictures of the page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove this stamp from the list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add this stamp to the list and close the window</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::TextStampWindowController</name>
    <message>
        <source>Opacity</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Opacity of the outline</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text Stamp Properties [ %1 ]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Page %1 of %2: %3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1” is not installed; %2 is used.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text Colour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Outline Colour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Only the first two slots are filled; the others print nothing.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>{1} without {0} prints the page number, not the total.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The first slot prints the page number, also when it reads {1}.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The second slot prints the total, also when it reads {0}.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::TimeTaken</name>
    <message>
        <source>%1 hr(s) </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 min(s) </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 sec(s) </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>In Process...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Total Time Taken : %1 %2/%3</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::WidgetAlerts</name>
    <message>
        <source>Try Again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit Anyway</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::WidgetPanels</name>
    <message>
        <source>All files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Supported files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillfern::WindowToolbar</name>
    <message>
        <source>Toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check marks and selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove files from the list</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
