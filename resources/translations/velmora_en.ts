<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="de_DE">
<context>
    <name>NyActionFactoryCommon</name>
    <message>
        <source>Informationen zum Dienst</source>
        <translation>About the Service</translation>
    </message>
    <message>
        <source>Programm starten</source>
        <translation>Start Program</translation>
    </message>
    <message>
        <source>Beenden</source>
        <translation>Quit</translation>
    </message>
    <message>
        <source>Letzten Vorschlag anzeigen</source>
        <translation>Show Latest Proposal</translation>
    </message>
</context>
<context>
    <name>NyAlbumaCommandLine</name>
    <message>
        <source>Datei</source>
        <comment>name of a value in the help of the command line, one word</comment>
        <translation>file</translation>
    </message>
    <message>
        <source>Zeigt und bearbeitet Fotobücher. Im Builder-Modus entsteht ohne Fenster ein Vorschlag für eines.</source>
        <translation>Shows and edits photo books. In builder mode, makes a proposal for one without a window.</translation>
    </message>
    <message>
        <source>Das Buch, das geöffnet wird.</source>
        <translation>The book to open.</translation>
    </message>
    <message>
        <source>Öffnet ein Buch ohne Hinweis auf fehlende Fotos.</source>
        <translation>Opens a book without warnings about missing photos.</translation>
    </message>
    <message>
        <source>&quot;b&quot;: erstellt ohne Fenster einen Vorschlag.</source>
        <translation>&quot;b&quot;: makes a proposal without a window.</translation>
    </message>
    <message>
        <source>Modus</source>
        <comment>name of a value in the help of the command line, one word</comment>
        <translation>mode</translation>
    </message>
    <message>
        <source>Builder: die Projektdatei, die entstehen soll.</source>
        <translation>Builder: the project file to make.</translation>
    </message>
    <message>
        <source>Builder: Zahl der Threads, die arbeiten.</source>
        <translation>Builder: number of worker threads.</translation>
    </message>
    <message>
        <source>Zahl</source>
        <comment>name of a value in the help of the command line, one word</comment>
        <translation>number</translation>
    </message>
    <message>
        <source>Builder: Kennungen von Designs, durch Kommas getrennt, das beste zuerst.</source>
        <translation>Builder: design ids, separated by commas, the best first.</translation>
    </message>
    <message>
        <source>Designs</source>
        <comment>name of a value in the help of the command line, one word</comment>
        <translation>designs</translation>
    </message>
    <message>
        <source>Builder: Anlässe, durch Kommas getrennt, der wahrscheinlichste zuerst.</source>
        <translation>Builder: occasions, separated by commas, the likeliest first.</translation>
    </message>
    <message>
        <source>Anlässe</source>
        <comment>name of a value in the help of the command line, one word</comment>
        <translation>occasions</translation>
    </message>
    <message>
        <source>Die Option &quot;--%1&quot; fehlt.</source>
        <translation>The option &quot;--%1&quot; is missing.</translation>
    </message>
    <message>
        <source>Der Wert der Option &quot;--%1&quot; muss eine Zahl von 1 bis %2 sein.</source>
        <translation>The value of the option &quot;--%1&quot; must be a number from 1 to %2.</translation>
    </message>
    <message>
        <source>Den Programm-Modus &quot;%1&quot; gibt es nicht.</source>
        <translation>There is no program mode &quot;%1&quot;.</translation>
    </message>
    <message>
        <source>Es kann nur ein Buch auf einmal geöffnet werden.</source>
        <translation>Only one book can be opened at a time.</translation>
    </message>
</context>
<context>
    <name>NyAlbumaProgram</name>
    <message>
        <source>Es kann kein Fenster geöffnet werden, weil keine Anzeige verfügbar ist.</source>
        <translation>No window can be opened because no display is available.</translation>
    </message>
</context>
<context>
    <name>NyAlbumaWindows</name>
    <message>
        <source>Buch öffnen</source>
        <translation>Open Book</translation>
    </message>
    <message>
        <source>Fotobücher (*.nqp *.nqpx)</source>
        <translation>Photo books (*.nqp *.nqpx)</translation>
    </message>
</context>
<context>
    <name>NyBookBuilder</name>
    <message>
        <source>Es ist kein Ziel für den Vorschlag angegeben.</source>
        <translation>No target is given for the proposal.</translation>
    </message>
    <message>
        <source>Der Ordner für den Vorschlag &quot;%1&quot; ist nicht vorhanden.</source>
        <translation>The folder for the proposal &quot;%1&quot; does not exist.</translation>
    </message>
    <message>
        <source>Die Datei &quot;%1&quot; ist schon vorhanden.</source>
        <translation>The file &quot;%1&quot; already exists.</translation>
    </message>
    <message>
        <source>Der Vorschlag wurde abgebrochen.</source>
        <translation>The proposal was cancelled.</translation>
    </message>
    <message>
        <source>Die Datei &quot;%1&quot; kann nicht geschrieben werden.</source>
        <translation>The file &quot;%1&quot; cannot be written.</translation>
    </message>
    <message>
        <source>Für den Vorschlag sind keine Fotos hinterlegt.</source>
        <translation>No photos are stored for the proposal.</translation>
    </message>
    <message>
        <source>Keines der %1 Fotos eignet sich für ein Buch.</source>
        <translation>None of the %1 photos is suitable for a book.</translation>
    </message>
    <message>
        <source>Die Vorschau des Buchs kann nicht gezeichnet werden.</source>
        <translation>The preview of the book cannot be drawn.</translation>
    </message>
</context>
<context>
    <name>NyBookDocument</name>
    <message>
        <source>Titel ändern</source>
        <translation>Change title</translation>
    </message>
    <message>
        <source>Foto entfernen</source>
        <translation>Remove photo</translation>
    </message>
    <message>
        <source>Das Foto &quot;%1&quot; kann nicht gelesen werden.</source>
        <translation>The photo &quot;%1&quot; cannot be read.</translation>
    </message>
    <message>
        <source>Foto ersetzen</source>
        <translation>Replace photo</translation>
    </message>
    <message>
        <source>Es ist zu groß, um wieder gelesen zu werden.</source>
        <translation>It is too large to be read again.</translation>
    </message>
    <message>
        <source>Das Buch &quot;%1&quot; kann nicht gespeichert werden: %2</source>
        <translation>The book &quot;%1&quot; cannot be saved: %2</translation>
    </message>
    <message>
        <source>Änderungen wiederherstellen</source>
        <translation>Restore changes</translation>
    </message>
</context>
<context>
    <name>NyBookPdf</name>
    <message>
        <source>Die Datei &quot;%1&quot; kann nicht geschrieben werden: Die Seiten haben keine druckbare Größe.</source>
        <translation>The file &quot;%1&quot; cannot be written: the pages have no size that can be printed.</translation>
    </message>
    <message>
        <source>Die Datei &quot;%1&quot; kann nicht geschrieben werden.</source>
        <translation>The file &quot;%1&quot; cannot be written.</translation>
    </message>
    <message>
        <source>Für die Datei &quot;%1&quot; ist nicht genug Platz vorhanden.</source>
        <translation>There is not enough room for the file &quot;%1&quot;.</translation>
    </message>
</context>
<context>
    <name>NyBookProjectFile</name>
    <message>
        <source>hier wird ein Objekt erwartet</source>
        <translation>an object is expected here</translation>
    </message>
    <message>
        <source>die Angabe fehlt</source>
        <translation>the entry is missing</translation>
    </message>
    <message>
        <source>hier wird eine Liste erwartet</source>
        <translation>a list is expected here</translation>
    </message>
    <message>
        <source>die Liste ist länger als %1 Einträge</source>
        <translation>the list is longer than %1 entries</translation>
    </message>
    <message>
        <source>hier wird ein Text erwartet</source>
        <translation>a text is expected here</translation>
    </message>
    <message>
        <source>der Text ist länger als %1 Zeichen</source>
        <translation>the text is longer than %1 characters</translation>
    </message>
    <message>
        <source>hier wird eine Zahl erwartet</source>
        <translation>a number is expected here</translation>
    </message>
    <message>
        <source>die Zahl %1 liegt nicht zwischen %2 und %3</source>
        <translation>the number %1 is not between %2 and %3</translation>
    </message>
    <message>
        <source>hier wird eine ganze Zahl erwartet</source>
        <translation>a whole number is expected here</translation>
    </message>
    <message>
        <source>hier werden vier Zahlen erwartet</source>
        <translation>four numbers are expected here</translation>
    </message>
    <message>
        <source>das Rechteck ist leer</source>
        <translation>the rectangle is empty</translation>
    </message>
    <message>
        <source>das ist keine vollständige Adresse eines Fotos</source>
        <translation>this is not the full address of a photo</translation>
    </message>
    <message>
        <source>der Ausschnitt reicht über das Foto hinaus</source>
        <translation>the crop reaches beyond the photo</translation>
    </message>
    <message>
        <source>erlaubt sind nur 0, 90, 180 und 270 Grad</source>
        <translation>only 0, 90, 180 and 270 degrees are allowed</translation>
    </message>
    <message>
        <source>hier werden zwei Zahlen erwartet</source>
        <translation>two numbers are expected here</translation>
    </message>
    <message>
        <source>die Textart &quot;%1&quot; ist unbekannt</source>
        <translation>the kind of text &quot;%1&quot; is unknown</translation>
    </message>
    <message>
        <source>die Ausrichtung &quot;%1&quot; ist unbekannt</source>
        <translation>the alignment &quot;%1&quot; is unknown</translation>
    </message>
    <message>
        <source>das ist kein Buchprojekt</source>
        <translation>this is not a book project</translation>
    </message>
    <message>
        <source>das Buch wurde mit einer neueren Programmversion gespeichert (Format %1, lesbar ist bis Format %2). Bitte aktualisieren Sie das Programm.</source>
        <translation>the book was saved by a newer version of the program (format %1, readable up to format %2). Please update the program.</translation>
    </message>
    <message>
        <source>Das Buchprojekt &quot;%1&quot; ist beschädigt (nahe Zeile %2, Spalte %3: %4).</source>
        <translation>The book project &quot;%1&quot; is damaged (near line %2, column %3: %4).</translation>
    </message>
    <message>
        <source>Die Datei &quot;%1&quot; ist kein Buchprojekt.</source>
        <translation>The file &quot;%1&quot; is not a book project.</translation>
    </message>
    <message>
        <source>Das Buchprojekt &quot;%1&quot; kann nicht gelesen werden (bei &quot;%2&quot;: %3).</source>
        <translation>The book project &quot;%1&quot; cannot be read (at &quot;%2&quot;: %3).</translation>
    </message>
    <message>
        <source>Das Buchprojekt &quot;%1&quot; ist nicht vorhanden.</source>
        <translation>The book project &quot;%1&quot; does not exist.</translation>
    </message>
    <message>
        <source>Das Buchprojekt &quot;%1&quot; kann nicht geöffnet werden: %2</source>
        <translation>The book project &quot;%1&quot; cannot be opened: %2</translation>
    </message>
    <message>
        <source>Das Buchprojekt &quot;%1&quot; kann nicht gelesen werden: %2</source>
        <translation>The book project &quot;%1&quot; cannot be read: %2</translation>
    </message>
    <message>
        <source>Die Datei &quot;%1&quot; ist zu groß für ein Buchprojekt.</source>
        <translation>The file &quot;%1&quot; is too large for a book project.</translation>
    </message>
</context>
<context>
    <name>NyBookRenderer</name>
    <message>
        <source>Foto fehlt</source>
        <translation>Photo missing</translation>
    </message>
</context>
<context>
    <name>NyBookTitle</name>
    <message>
        <source>Unser Fotobuch</source>
        <translation>Our Photo Book</translation>
    </message>
    <message>
        <source>Unsere schönsten Momente</source>
        <translation>Our Best Moments</translation>
    </message>
    <message>
        <source>d. MMMM yyyy</source>
        <comment>date, as in QDate::toString()</comment>
        <translation>d MMMM yyyy</translation>
    </message>
    <message>
        <source>d.</source>
        <comment>day of a month, as in QDate::toString(), before a day with its month and year</comment>
        <translation>d</translation>
    </message>
    <message>
        <source>d. MMMM</source>
        <comment>date without its year, as in QDate::toString()</comment>
        <translation>d MMMM</translation>
    </message>
    <message>
        <source>dddd, d. MMMM yyyy</source>
        <comment>date with its weekday, as in QDate::toString()</comment>
        <translation>dddd, d MMMM yyyy</translation>
    </message>
    <message>
        <source>Hochzeit</source>
        <translation>Wedding</translation>
    </message>
    <message>
        <source>Geburtstag</source>
        <translation>Birthday</translation>
    </message>
    <message>
        <source>Weihnachten</source>
        <translation>Christmas</translation>
    </message>
    <message>
        <source>Silvester</source>
        <translation>New Year’s Eve</translation>
    </message>
    <message>
        <source>Ostern</source>
        <translation>Easter</translation>
    </message>
    <message>
        <source>Karneval</source>
        <translation>Carnival</translation>
    </message>
    <message>
        <source>Halloween</source>
        <translation>Halloween</translation>
    </message>
    <message>
        <source>Taufe</source>
        <translation>Baptism</translation>
    </message>
    <message>
        <source>Kommunion</source>
        <translation>Communion</translation>
    </message>
    <message>
        <source>Schulzeit</source>
        <translation>School Days</translation>
    </message>
    <message>
        <source>Abschlussfeier</source>
        <translation>Graduation</translation>
    </message>
    <message>
        <source>Unser Baby</source>
        <translation>Our Baby</translation>
    </message>
    <message>
        <source>Jubiläum</source>
        <translation>Anniversary</translation>
    </message>
    <message>
        <source>Am Strand</source>
        <translation>At the Beach</translation>
    </message>
    <message>
        <source>Städtereise</source>
        <translation>City Trip</translation>
    </message>
    <message>
        <source>Wandern</source>
        <translation>Hiking</translation>
    </message>
    <message>
        <source>Winterfreuden</source>
        <translation>Winter Fun</translation>
    </message>
    <message>
        <source>Rundreise</source>
        <translation>Road Trip</translation>
    </message>
    <message>
        <source>Kreuzfahrt</source>
        <translation>Cruise</translation>
    </message>
    <message>
        <source>Urlaub</source>
        <translation>Vacation</translation>
    </message>
    <message>
        <source>Konzert</source>
        <translation>Concert</translation>
    </message>
    <message>
        <source>Sport</source>
        <translation>Sports</translation>
    </message>
    <message>
        <source>Im Zoo</source>
        <translation>At the Zoo</translation>
    </message>
    <message>
        <source>Familie</source>
        <translation>Family</translation>
    </message>
    <message>
        <source>Auf dem Volksfest</source>
        <translation>At the Fair</translation>
    </message>
    <message>
        <source>Unsere Haustiere</source>
        <translation>Our Pets</translation>
    </message>
</context>
<context>
    <name>NyBookWindow</name>
    <message>
        <source>‹  Zurück</source>
        <translation>‹  Back</translation>
    </message>
    <message>
        <source>Weiter  ›</source>
        <translation>Next  ›</translation>
    </message>
    <message>
        <source>&amp;Datei</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <source>Buch ö&amp;ffnen …</source>
        <translation>&amp;Open Book…</translation>
    </message>
    <message>
        <source>&amp;Blättern</source>
        <translation>&amp;Pages</translation>
    </message>
    <message>
        <source>&amp;Weiter</source>
        <translation>&amp;Next</translation>
    </message>
    <message>
        <source>&amp;Zurück</source>
        <translation>&amp;Back</translation>
    </message>
    <message>
        <source>Zum &amp;Anfang</source>
        <translation>To the &amp;Start</translation>
    </message>
    <message>
        <source>Zum &amp;Ende</source>
        <translation>To the &amp;End</translation>
    </message>
    <message>
        <source>In diesem Buch fehlen Fotos: %1</source>
        <translation>Photos are missing from this book: %1</translation>
    </message>
    <message>
        <source>In diesem Buch fehlen %1 Fotos: %2 und weitere</source>
        <translation>%1 photos are missing from this book: %2 and more</translation>
    </message>
    <message>
        <source>Zu den &amp;Vorschlägen</source>
        <translation>Go to &amp;Proposals</translation>
    </message>
    <message>
        <source>&amp;Beenden</source>
        <translation>&amp;Quit</translation>
    </message>
    <message>
        <source>Vorschläge</source>
        <translation>Proposals</translation>
    </message>
    <message>
        <source>&amp;Speichern</source>
        <translation>&amp;Save</translation>
    </message>
    <message>
        <source>Speichern &amp;unter …</source>
        <translation>Save &amp;as …</translation>
    </message>
    <message>
        <source>Als &amp;PDF exportieren …</source>
        <translation>&amp;Export as PDF …</translation>
    </message>
    <message>
        <source>PDF exportieren</source>
        <translation>Export PDF</translation>
    </message>
    <message>
        <source>S&amp;chließen</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>&amp;Rückgängig</source>
        <translation>&amp;Undo</translation>
    </message>
    <message>
        <source>Rückgängig</source>
        <translation>Undo</translation>
    </message>
    <message>
        <source>&amp;Wiederholen</source>
        <translation>&amp;Redo</translation>
    </message>
    <message>
        <source>Wiederholen</source>
        <translation>Redo</translation>
    </message>
    <message>
        <source>&amp;Titel ändern</source>
        <translation>Edit &amp;title</translation>
    </message>
    <message>
        <source>Foto &amp;ersetzen …</source>
        <translation>Rep&amp;lace photo …</translation>
    </message>
    <message>
        <source>Foto ersetzen</source>
        <translation>Replace photo</translation>
    </message>
    <message>
        <source>Foto ent&amp;fernen</source>
        <translation>Re&amp;move photo</translation>
    </message>
    <message>
        <source>&amp;Vergrößern</source>
        <translation>Zoom &amp;in</translation>
    </message>
    <message>
        <source>Ver&amp;kleinern</source>
        <translation>Zoom &amp;out</translation>
    </message>
    <message>
        <source>&amp;Ganze Doppelseite</source>
        <translation>&amp;Whole spread</translation>
    </message>
    <message>
        <source>V&amp;ollbild</source>
        <translation>&amp;Full screen</translation>
    </message>
    <message>
        <source>B&amp;earbeiten</source>
        <translation>&amp;Edit</translation>
    </message>
    <message>
        <source>&amp;Ansicht</source>
        <translation>&amp;View</translation>
    </message>
    <message>
        <source>&amp;Hilfe</source>
        <translation>&amp;Help</translation>
    </message>
    <message>
        <source>&amp;Hilfe zum Buch</source>
        <translation>&amp;Help on the book</translation>
    </message>
    <message>
        <source>&amp;Rückgängig: %1</source>
        <translation>&amp;Undo: %1</translation>
    </message>
    <message>
        <source>&amp;Wiederholen: %1</source>
        <translation>&amp;Redo: %1</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1%</translation>
    </message>
    <message>
        <source>Vergrößerung: %1</source>
        <translation>Zoom: %1</translation>
    </message>
    <message>
        <source>Hilfe zum Buch</source>
        <translation>Help on the book</translation>
    </message>
    <message>
        <source>Blättern Sie durch das Buch, und machen Sie es zu Ihrem: Klicken Sie auf ein Foto, um es zu ersetzen oder zu entfernen, und auf den Titel, um ihn zu ändern. Ihre Fotos selbst werden nie verändert.</source>
        <translation>Page through the book and make it yours: click a photo to replace or remove it, and the title to change it. Your photos themselves are never changed.</translation>
    </message>
    <message>
        <source>Pfeiltasten</source>
        <translation>Arrow keys</translation>
    </message>
    <message>
        <source>blättern</source>
        <translation>turn pages</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tab</translation>
    </message>
    <message>
        <source>das nächste Foto auswählen</source>
        <translation>select the next photo</translation>
    </message>
    <message>
        <source>Eingabe</source>
        <translation>Enter</translation>
    </message>
    <message>
        <source>das ausgewählte Foto ersetzen</source>
        <translation>replace the selected photo</translation>
    </message>
    <message>
        <source>Entf</source>
        <translation>Del</translation>
    </message>
    <message>
        <source>das ausgewählte Foto entfernen</source>
        <translation>remove the selected photo</translation>
    </message>
    <message>
        <source>F2</source>
        <translation>F2</translation>
    </message>
    <message>
        <source>den Titel ändern</source>
        <translation>edit the title</translation>
    </message>
    <message>
        <source>Strg+Z</source>
        <translation>Ctrl+Z</translation>
    </message>
    <message>
        <source>den letzten Schritt zurücknehmen</source>
        <translation>undo the last step</translation>
    </message>
    <message>
        <source>Strg+S</source>
        <translation>Ctrl+S</translation>
    </message>
    <message>
        <source>speichern</source>
        <translation>save</translation>
    </message>
    <message>
        <source>Strg+E</source>
        <translation>Ctrl+E</translation>
    </message>
    <message>
        <source>als PDF exportieren</source>
        <translation>export as a PDF</translation>
    </message>
    <message>
        <source>Strg+Mausrad</source>
        <translation>Ctrl+wheel</translation>
    </message>
    <message>
        <source>vergrößern und verkleinern</source>
        <translation>zoom in and out</translation>
    </message>
    <message>
        <source>F11</source>
        <translation>F11</translation>
    </message>
    <message>
        <source>Vollbild</source>
        <translation>full screen</translation>
    </message>
    <message>
        <source>Möchten Sie die Änderungen an „%1“ speichern?</source>
        <translation>Do you want to save the changes to “%1”?</translation>
    </message>
    <message>
        <source>Sonst gehen sie verloren.</source>
        <translation>Otherwise they are lost.</translation>
    </message>
    <message>
        <source>&amp;Verwerfen</source>
        <translation>&amp;Discard</translation>
    </message>
    <message>
        <source>&amp;Abbrechen</source>
        <translation>&amp;Cancel</translation>
    </message>
    <message>
        <source>Buch speichern</source>
        <translation>Save book</translation>
    </message>
    <message>
        <source>Fotobücher (*.nqp *.nqpx)</source>
        <translation>Photo books (*.nqp *.nqpx)</translation>
    </message>
    <message>
        <source>Die Datei
%1
ist inzwischen von einem anderen Programm geändert worden.</source>
        <translation>Another program has changed the file
%1
in the meantime.</translation>
    </message>
    <message>
        <source>Wenn Sie sie überschreiben, gehen jene Änderungen verloren.</source>
        <translation>If you overwrite it, those changes are lost.</translation>
    </message>
    <message>
        <source>&amp;Überschreiben</source>
        <translation>&amp;Overwrite</translation>
    </message>
    <message>
        <source>Fotos (%1)</source>
        <translation>Photos (%1)</translation>
    </message>
    <message>
        <source>Fotobuch</source>
        <translation>Photo book</translation>
    </message>
    <message>
        <source>Als PDF exportieren</source>
        <translation>Export as PDF</translation>
    </message>
    <message>
        <source>PDF-Dateien (*.pdf *.PDF)</source>
        <translation>PDF files (*.pdf *.PDF)</translation>
    </message>
    <message>
        <source>Das Buch wird als PDF geschrieben …</source>
        <translation>Writing the book as a PDF …</translation>
    </message>
    <message>
        <source>Das Buch liegt als PDF in
%1</source>
        <translation>The book is now a PDF in
%1</translation>
    </message>
    <message>
        <source>1 Foto hat für seine Größe wenige Bildpunkte und wirkt gedruckt vielleicht unscharf.</source>
        <translation>1 photo has few pixels for its size and may look blurred in print.</translation>
    </message>
    <message>
        <source>%1 Fotos haben für ihre Größe wenige Bildpunkte und wirken gedruckt vielleicht unscharf.</source>
        <translation>%1 photos have few pixels for their size and may look blurred in print.</translation>
    </message>
    <message>
        <source>und %1 weitere</source>
        <translation>and %1 more</translation>
    </message>
    <message>
        <source>Für das PDF fehlen Fotos. Möchten Sie es trotzdem schreiben?</source>
        <translation>Photos for the PDF are missing. Do you want to write it all the same?</translation>
    </message>
    <message>
        <source>Ihre Plätze bleiben leer:
%1</source>
        <translation>Their places stay empty:
%1</translation>
    </message>
    <message>
        <source>&amp;Trotzdem schreiben</source>
        <translation>&amp;Write anyway</translation>
    </message>
    <message>
        <source>Ihre nicht gespeicherten Änderungen vom %1 sind wieder da. „Rückgängig“ nimmt sie zurück.</source>
        <translation>Your unsaved changes of %1 are back. “Undo” removes them.</translation>
    </message>
</context>
<context>
    <name>NyBookWordsEdit</name>
    <message>
        <source>Titel</source>
        <translation>Title</translation>
    </message>
    <message>
        <source>Untertitel</source>
        <translation>Subtitle</translation>
    </message>
</context>
<context>
    <name>NyClassificationResultsRendererHTML</name>
    <message>
        <source>de</source>
        <comment>language of this page, as in the HTML attribute lang</comment>
        <translation>en</translation>
    </message>
    <message>
        <source>1 Foto</source>
        <translation>1 photo</translation>
    </message>
    <message>
        <source>%1 Fotos</source>
        <translation>%1 photos</translation>
    </message>
    <message>
        <source>Ereignis</source>
        <translation>Event</translation>
    </message>
    <message>
        <source>Ereignisse</source>
        <translation>Events</translation>
    </message>
    <message>
        <source>Jahr</source>
        <translation>Year</translation>
    </message>
    <message>
        <source>Jahre</source>
        <translation>Years</translation>
    </message>
    <message>
        <source>Monat</source>
        <translation>Month</translation>
    </message>
    <message>
        <source>Monate</source>
        <translation>Months</translation>
    </message>
    <message>
        <source>Tag</source>
        <translation>Day</translation>
    </message>
    <message>
        <source>Tage</source>
        <translation>Days</translation>
    </message>
    <message>
        <source>Projekt</source>
        <translation>Project</translation>
    </message>
    <message>
        <source>Projekte</source>
        <translation>Projects</translation>
    </message>
    <message>
        <source>Mehrere Arten</source>
        <translation>Several Kinds</translation>
    </message>
    <message>
        <source>Ohne Art</source>
        <translation>No Kind</translation>
    </message>
    <message>
        <source>Ordner zu einem Anlass, nach Name, Zeitraum oder Aufnahmezeiten</source>
        <translation>Folders about one occasion, going by name, dates or the times when photos were taken</translation>
    </message>
    <message>
        <source>Ordner, die ein Jahr sammeln</source>
        <translation>Folders that collect a year</translation>
    </message>
    <message>
        <source>Ordner, die einen Monat sammeln</source>
        <translation>Folders that collect a month</translation>
    </message>
    <message>
        <source>Ordner für einen Tag</source>
        <translation>Folders for a single day</translation>
    </message>
    <message>
        <source>Ordner mit Arbeiten, die länger dauern, oder mit Projektdateien</source>
        <translation>Folders with work that goes on for longer, or with project files</translation>
    </message>
    <message>
        <source>Ordner, die mehr als eine Art haben</source>
        <translation>Folders of more than one kind</translation>
    </message>
    <message>
        <source>Ordner, über die sich nichts sagen ließ, etwa Kameraordner und Sammlungen</source>
        <translation>Folders about which nothing could be said, such as camera folders and collections</translation>
    </message>
    <message>
        <source>Alle Ordner, die von dieser Art sind. Unter denen mit neuen Fotos wird einer für den nächsten Vorschlag gewählt.</source>
        <translation>All folders of this kind. Among those with new photos, one is chosen for the next proposal.</translation>
    </message>
    <message>
        <source>Alle Ordner der Art %1</source>
        <translation>All Folders of the Kind “%1”</translation>
    </message>
    <message>
        <source>Die Ordner dieser Art, in denen neue Fotos liegen. Der mit den meisten neuen Fotos wird zum nächsten Vorschlag.</source>
        <translation>The folders of this kind that hold new photos. The one with the most new photos becomes the next proposal.</translation>
    </message>
    <message>
        <source>Ordner der Art %1 mit neuen Fotos</source>
        <translation>Folders of the Kind “%1” with New Photos</translation>
    </message>
    <message>
        <source>Was die Bilderordner sind, und welche Anlässe ihre Fotos zeigen.</source>
        <translation>What the picture folders are, and which occasions their photos show.</translation>
    </message>
    <message>
        <source>Einordnung der Bilderordner</source>
        <translation>Classification of the Picture Folders</translation>
    </message>
    <message>
        <source>Die Liste ist leer: Es gibt keinen Ordner, der hierher gehört.</source>
        <translation>The list is empty: no folder belongs here.</translation>
    </message>
    <message>
        <source>Gesucht in</source>
        <translation>Searched in</translation>
    </message>
    <message>
        <source>Stand: %1</source>
        <translation>As of %1</translation>
    </message>
    <message>
        <source>d. MMMM yyyy, HH:mm</source>
        <comment>date and time, as in QDateTime::toString()</comment>
        <translation>d MMMM yyyy, HH:mm</translation>
    </message>
    <message>
        <source>Übersicht</source>
        <translation>Overview</translation>
    </message>
    <message>
        <source>Foto</source>
        <translation>Photo</translation>
    </message>
    <message>
        <source>Fotos</source>
        <translation>Photos</translation>
    </message>
    <message>
        <source>in %1 Ordnern</source>
        <translation>in %1 folders</translation>
    </message>
    <message>
        <source>Ohne Ordner</source>
        <translation>Without a Folder</translation>
    </message>
    <message>
        <source>der durchsuchte Ordner selbst</source>
        <translation>the searched folder itself</translation>
    </message>
    <message>
        <source>in</source>
        <translation>in</translation>
    </message>
    <message>
        <source>Hier gibt es keinen Ordner mehr.</source>
        <translation>There is no folder here any more.</translation>
    </message>
    <message>
        <source>Dieser Ordner lässt sich nicht lesen.</source>
        <translation>This folder cannot be read.</translation>
    </message>
    <message>
        <source>Dieser Ordner wird beim Zählen übergangen.</source>
        <translation>This folder is skipped when photos are counted.</translation>
    </message>
    <message>
        <source>keine Fotos</source>
        <translation>no photos</translation>
    </message>
    <message>
        <source>%1 in Unterordnern</source>
        <translation>%1 in subfolders</translation>
    </message>
    <message>
        <source>%1, davon %2 direkt im Ordner</source>
        <translation>%1, %2 of them directly in the folder</translation>
    </message>
    <message>
        <source>Art %1</source>
        <translation>Kind %1</translation>
    </message>
    <message>
        <source>d. MMMM yyyy</source>
        <comment>date, as in QDate::toString()</comment>
        <translation>d MMMM yyyy</translation>
    </message>
    <message>
        <source>Jahr %1</source>
        <translation>the year %1</translation>
    </message>
    <message>
        <source>nicht lesbar</source>
        <translation>unreadable</translation>
    </message>
    <message>
        <source>Anlässe</source>
        <translation>Occasions</translation>
    </message>
    <message>
        <source>Es war keine Endung genannt, nach der Fotos gezählt werden.</source>
        <translation>No file extension was given by which photos are counted.</translation>
    </message>
    <message>
        <source>Als Foto zählt jede Datei mit einer dieser Endungen, im Ordner und in allen Ordnern darunter: %1. Verborgene Ordner, Papierkörbe, Vorschauspeicher und Ordner mit „.nomedia“ zählen nicht.</source>
        <translation>Every file with one of these extensions counts as a photo, in the folder and in all folders below it: %1. Hidden folders, trash folders, thumbnail caches and folders with “.nomedia” do not count.</translation>
    </message>
    <message>
        <source>Liegen Ordner ineinander, so stehen dieselben Fotos bei jedem von ihnen. In den Summen oben zählt jedes nur einmal.</source>
        <translation>Where folders lie inside one another, the same photos are listed with each of them. In the totals above, each counts only once.</translation>
    </message>
    <message>
        <source>Zeiträume stammen aus den Namen der Ordner, nicht aus den Fotos.</source>
        <translation>Dates come from the names of the folders, not from the photos.</translation>
    </message>
    <message>
        <source>Bei Anlässen steht, woraus sie vor allem geschlossen wurden, und wie wahrscheinlich sie sind. Ohne Angabe wurde nicht danach gesucht oder nichts gefunden.</source>
        <translation>Each occasion tells what it was mainly concluded from, and how likely it is. Where none is given, none was searched for or found.</translation>
    </message>
    <message>
        <source>Kleine Bilder: höchstens %1 je Ordner und %2 auf der Seite, verteilt über die Fotos des Ordners.</source>
        <translation>Small pictures: at most %1 per folder and %2 on the page, spread across the folder’s photos.</translation>
    </message>
    <message>
        <source>Zu dieser Seite</source>
        <translation>About this page</translation>
    </message>
    <message>
        <source>Hochzeit</source>
        <translation>Wedding</translation>
    </message>
    <message>
        <source>Geburtstag</source>
        <translation>Birthday</translation>
    </message>
    <message>
        <source>Weihnachten</source>
        <translation>Christmas</translation>
    </message>
    <message>
        <source>Silvester</source>
        <translation>New Year’s Eve</translation>
    </message>
    <message>
        <source>Ostern</source>
        <translation>Easter</translation>
    </message>
    <message>
        <source>Karneval</source>
        <translation>Carnival</translation>
    </message>
    <message>
        <source>Halloween</source>
        <translation>Halloween</translation>
    </message>
    <message>
        <source>Taufe</source>
        <translation>Baptism</translation>
    </message>
    <message>
        <source>Kommunion</source>
        <translation>Communion</translation>
    </message>
    <message>
        <source>Schule</source>
        <translation>School</translation>
    </message>
    <message>
        <source>Abschlussfeier</source>
        <translation>Graduation</translation>
    </message>
    <message>
        <source>Baby</source>
        <translation>Baby</translation>
    </message>
    <message>
        <source>Jubiläum</source>
        <translation>Anniversary</translation>
    </message>
    <message>
        <source>Strand</source>
        <translation>Beach</translation>
    </message>
    <message>
        <source>Städtereise</source>
        <translation>City trip</translation>
    </message>
    <message>
        <source>Wandern</source>
        <translation>Hiking</translation>
    </message>
    <message>
        <source>Schnee</source>
        <translation>Snow</translation>
    </message>
    <message>
        <source>Rundreise</source>
        <translation>Road trip</translation>
    </message>
    <message>
        <source>Kreuzfahrt</source>
        <translation>Cruise</translation>
    </message>
    <message>
        <source>Urlaub</source>
        <translation>Vacation</translation>
    </message>
    <message>
        <source>Konzert</source>
        <translation>Concert</translation>
    </message>
    <message>
        <source>Sport</source>
        <translation>Sports</translation>
    </message>
    <message>
        <source>Zoo</source>
        <translation>Zoo</translation>
    </message>
    <message>
        <source>Familie</source>
        <translation>Family</translation>
    </message>
    <message>
        <source>Volksfest</source>
        <translation>Fair</translation>
    </message>
    <message>
        <source>Haustiere</source>
        <translation>Pets</translation>
    </message>
    <message>
        <source>ohne Namen</source>
        <translation>unnamed</translation>
    </message>
    <message>
        <source>laut Ordnername</source>
        <translation>from the folder’s name</translation>
    </message>
    <message>
        <source>laut Orten</source>
        <translation>from places</translation>
    </message>
    <message>
        <source>laut Bildern</source>
        <translation>from the pictures</translation>
    </message>
    <message>
        <source>laut Kalender</source>
        <translation>from the calendar</translation>
    </message>
</context>
<context>
    <name>NyCommandLineParserAbstract</name>
    <message>
        <source>Zeigt diese Hilfe an.</source>
        <translation>Displays this help.</translation>
    </message>
    <message>
        <source>Zeigt die Version an.</source>
        <translation>Displays the version.</translation>
    </message>
</context>
<context>
    <name>NyFotoStartDirSelectionBox</name>
    <message>
        <source>Diesen Ordner gibt es zurzeit nicht.</source>
        <translation>This folder does not exist at the moment.</translation>
    </message>
    <message>
        <source>Ordner mit Ihren Fotos</source>
        <translation>Folder with your photos</translation>
    </message>
    <message>
        <source>Ordner mit Ihren Fotos auswählen</source>
        <translation>Choose the folder with your photos</translation>
    </message>
    <message>
        <source>&amp;Durchsuchen…</source>
        <translation>&amp;Browse…</translation>
    </message>
</context>
<context>
    <name>NyJsonParser</name>
    <message>
        <source>Vorschlag öffnen</source>
        <translation>Open proposal</translation>
    </message>
    <message>
        <source>Vorschlag löschen</source>
        <translation>Delete proposal</translation>
    </message>
</context>
<context>
    <name>NyMessageBar</name>
    <message>
        <source>Meldung schließen</source>
        <translation>Close message</translation>
    </message>
    <message>
        <source>Fehlermeldung</source>
        <translation>Error message</translation>
    </message>
    <message>
        <source>Hinweis</source>
        <translation>Note</translation>
    </message>
    <message>
        <source>&amp;Kopieren</source>
        <translation>&amp;Copy</translation>
    </message>
</context>
<context>
    <name>NyPreferencesQuilloServiceInstallation</name>
    <message>
        <source>Automatische Produktvorschläge</source>
        <translation>Automatic Product Proposals</translation>
    </message>
    <message>
        <source>Ja, ich möchte automatische Produktvorschläge erhalten.</source>
        <translation>Yes, I would like to receive automatic product proposals.</translation>
    </message>
    <message>
        <source>Ordner mit Ihren Fotos für Produktvorschläge</source>
        <translation>Folder with your photos for product proposals</translation>
    </message>
    <message>
        <source>Bei neuen Produktvorschlägen benachrichtigen.</source>
        <translation>Notify me of new product proposals.</translation>
    </message>
    <message>
        <source>Alt+J</source>
        <comment>key for the yes; no other control of the window has it</comment>
        <translation>Alt+Y</translation>
    </message>
    <message>
        <source>Alt+B</source>
        <comment>key for notifications; no other control of the window has it</comment>
        <translation>Alt+N</translation>
    </message>
</context>
<context>
    <name>NyPreferencesWindow</name>
    <message>
        <source>Einstellungen</source>
        <translation>Preferences</translation>
    </message>
    <message>
        <source>Der Hintergrunddienst wird beendet …</source>
        <translation>Ending the background service…</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>&amp;Abbrechen</source>
        <translation>&amp;Cancel</translation>
    </message>
    <message>
        <source>Die Einstellungen konnten nicht gespeichert werden. Bitte prüfen Sie, ob der Ordner „%1“ beschreibbar und auf dem Datenträger noch Platz ist.</source>
        <translation>The preferences could not be saved. Please check that the folder “%1” is writable and that there is space left on the disk.</translation>
    </message>
    <message>
        <source>Das Programm des Hintergrunddienstes fehlt: %1</source>
        <translation>The background service’s program is missing: %1</translation>
    </message>
    <message>
        <source>Der Hintergrunddienst konnte nicht gestartet werden: %1</source>
        <translation>The background service could not be started: %1</translation>
    </message>
    <message>
        <source>Der Hintergrunddienst konnte nicht abgeschaltet werden: %1</source>
        <translation>The background service could not be switched off: %1</translation>
    </message>
    <message>
        <source>Das Abschalten des Hintergrunddienstes dauert ungewöhnlich lange. Es läuft im Hintergrund weiter.</source>
        <translation>Switching off the background service is taking unusually long. It continues in the background.</translation>
    </message>
    <message>
        <source>Den Ordner „%1“ gibt es zurzeit nicht. Solange er fehlt, werden darin keine Fotos gefunden.</source>
        <translation>The folder “%1” does not exist at the moment. As long as it is missing, no photos are found in it.</translation>
    </message>
    <message>
        <source>„%1“ ist kein Ordner.</source>
        <translation>“%1” is not a folder.</translation>
    </message>
    <message>
        <source>Der Ordner „%1“ darf nicht gelesen werden, deshalb werden darin keine Fotos gefunden.</source>
        <translation>The folder “%1” may not be read, so no photos are found in it.</translation>
    </message>
</context>
<context>
    <name>NyProposal</name>
    <message>
        <source>1 Foto</source>
        <translation>1 photo</translation>
    </message>
    <message>
        <source>%1 Fotos</source>
        <translation>%1 photos</translation>
    </message>
    <message>
        <source>1 Seite</source>
        <translation>1 page</translation>
    </message>
    <message>
        <source>%1 Seiten</source>
        <translation>%1 pages</translation>
    </message>
    <message>
        <source>Die Beschreibung fehlt oder ist beschädigt.</source>
        <translation>The description is missing or damaged.</translation>
    </message>
    <message>
        <source>Die Projektdatei fehlt.</source>
        <translation>The project file is missing.</translation>
    </message>
</context>
<context>
    <name>NyProposalDelegate</name>
    <message>
        <source>Neu</source>
        <translation>New</translation>
    </message>
</context>
<context>
    <name>NyProposalModel</name>
    <message>
        <source>Neu: %1</source>
        <translation>New: %1</translation>
    </message>
    <message>
        <source>d. MMMM yyyy</source>
        <comment>date, as in QDate::toString()</comment>
        <translation>d MMMM yyyy</translation>
    </message>
    <message>
        <source>Erstellt am %1</source>
        <translation>Created on %1</translation>
    </message>
</context>
<context>
    <name>NyQuilloServiceController</name>
    <message>
        <source>Version %1-%2-%3</source>
        <translation>Version %1-%2-%3</translation>
    </message>
    <message>
        <source>Version %1-%2</source>
        <translation>Version %1-%2</translation>
    </message>
    <message>
        <source>VELMORA ALBUMA</source>
        <translation>VELMORA ALBUMA</translation>
    </message>
    <message>
        <source>Automatische Ereigniserkennung zur Erstellung persönlicher Buchvorschläge.</source>
        <translation>Automatic event detection for personal photo book proposals.</translation>
    </message>
    <message>
        <source>Es wurden leider keine neuen Foto-Ereignisse auf Ihrem Gerät gefunden. Doch Ihr nächstes Ereignis steht bestimmt bevor.</source>
        <translation>Unfortunately, no new photo events were found on your device. But your next event is surely just around the corner.</translation>
    </message>
    <message>
        <source>Produktvorschlag</source>
        <translation>Product-Proposal</translation>
    </message>
    <message>
        <source>Ihr neuer, persönlicher Vorschlag für ein VELMORA ALBUMA wurde erstellt.</source>
        <translation>Your new personal proposal for a VELMORA ALBUMA has been created.</translation>
    </message>
</context>
<context>
    <name>NyQuilloServiceInstallHandlerLinux</name>
    <message>
        <source>VELMORA Hintergrunddienst</source>
        <translation>VELMORA background service</translation>
    </message>
</context>
<context>
    <name>NyRequest</name>
    <message>
        <source>Achtung</source>
        <translation>Attention</translation>
    </message>
    <message>
        <source>&amp;Ja</source>
        <translation>&amp;Yes</translation>
    </message>
    <message>
        <source>&amp;Nein</source>
        <translation>&amp;No</translation>
    </message>
</context>
<context>
    <name>NyRequestQuilloService</name>
    <message>
        <source>Möchten Sie den Buchvorschlag %1 wirklich löschen?</source>
        <translation>Should the book proposal %1 really be deleted?</translation>
    </message>
</context>
<context>
    <name>NySpreadView</name>
    <message>
        <source>Titel</source>
        <translation>Cover</translation>
    </message>
    <message>
        <source>Seite %1 von %2</source>
        <translation>Page %1 of %2</translation>
    </message>
    <message>
        <source>Seiten %1 und %2 von %3</source>
        <translation>Pages %1 and %2 of %3</translation>
    </message>
    <message>
        <source>%1, Foto %2 von %3</source>
        <translation>%1, photo %2 of %3</translation>
    </message>
    <message>
        <source>Gedruckt hätte es hier nur %1 dpi; empfohlen sind mindestens %2.</source>
        <translation>It would be printed here with only %1 dpi; at least %2 are recommended.</translation>
    </message>
</context>
<context>
    <name>NySpreadViewAccessible</name>
    <message>
        <source>Auswählen</source>
        <translation>Select</translation>
    </message>
    <message>
        <source>Öffnen</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>Wählt das Foto aus</source>
        <translation>Selects the photo</translation>
    </message>
    <message>
        <source>Öffnet das Foto</source>
        <translation>Opens the photo</translation>
    </message>
</context>
<context>
    <name>NyStartWindow</name>
    <message>
        <source>&amp;Datei</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <source>Buch ö&amp;ffnen …</source>
        <translation>&amp;Open Book…</translation>
    </message>
    <message>
        <source>&amp;Beenden</source>
        <translation>&amp;Quit</translation>
    </message>
    <message>
        <source>&amp;Einstellungen …</source>
        <translation>&amp;Preferences…</translation>
    </message>
    <message>
        <source>Buch öffnen</source>
        <translation>Open Book</translation>
    </message>
    <message>
        <source>Ein Fotobuch aus einer Datei öffnen</source>
        <translation>Open a photo book from a file</translation>
    </message>
    <message>
        <source>Vorschlag ö&amp;ffnen</source>
        <translation>&amp;Open Proposal</translation>
    </message>
    <message>
        <source>Vorschlag &amp;löschen …</source>
        <translation>&amp;Delete Proposal…</translation>
    </message>
    <message>
        <source>Vorschlag löschen</source>
        <translation>Delete Proposal</translation>
    </message>
    <message>
        <source>Alle als &amp;gelesen markieren</source>
        <translation>&amp;Mark All as Read</translation>
    </message>
    <message>
        <source>&amp;Aktualisieren</source>
        <translation>&amp;Refresh</translation>
    </message>
    <message>
        <source>Automatische &amp;Produktvorschläge</source>
        <translation>&amp;Automatic Product Proposals</translation>
    </message>
    <message>
        <source>&amp;Schließen</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>&amp;Neueste zuerst</source>
        <translation>&amp;Newest First</translation>
    </message>
    <message>
        <source>Ä&amp;lteste zuerst</source>
        <translation>&amp;Oldest First</translation>
    </message>
    <message>
        <source>Nach &amp;Titel</source>
        <translation>By &amp;Title</translation>
    </message>
    <message>
        <source>&amp;Vorschläge</source>
        <translation>&amp;Proposals</translation>
    </message>
    <message>
        <source>&amp;Sortieren</source>
        <translation>&amp;Sort</translation>
    </message>
    <message>
        <source>&amp;Hilfe</source>
        <translation>&amp;Help</translation>
    </message>
    <message>
        <source>&amp;Hilfe zu den Vorschlägen</source>
        <translation>&amp;Help on Proposals</translation>
    </message>
    <message>
        <source>Ü&amp;ber %1</source>
        <translation>&amp;About %1</translation>
    </message>
    <message>
        <source>Ihre Fotobuch-Vorschläge</source>
        <translation>Your Photo Book Proposals</translation>
    </message>
    <message>
        <source>&amp;Automatische Produktvorschläge</source>
        <translation>&amp;Automatic product proposals</translation>
    </message>
    <message>
        <source>Ein Dienst im Hintergrund macht aus neuen Fotos Vorschläge für Fotobücher.</source>
        <translation>A service in the background turns new photos into proposals for photo books.</translation>
    </message>
    <message>
        <source>&amp;Sortieren:</source>
        <translation>&amp;Sort:</translation>
    </message>
    <message>
        <source>Sortieren</source>
        <translation>Sort</translation>
    </message>
    <message>
        <source>Vorschläge werden gelesen</source>
        <translation>Reading proposals</translation>
    </message>
    <message>
        <source>Vorschläge</source>
        <translation>Proposals</translation>
    </message>
    <message>
        <source>Die Vorschläge werden gelesen …</source>
        <translation>Reading the proposals…</translation>
    </message>
    <message>
        <source>1 Vorschlag</source>
        <translation>1 proposal</translation>
    </message>
    <message>
        <source>%1 Vorschläge</source>
        <translation>%1 proposals</translation>
    </message>
    <message>
        <source>%1, %2 neu</source>
        <translation>%1, %2 new</translation>
    </message>
    <message>
        <source>1 neuer Vorschlag</source>
        <translation>1 new proposal</translation>
    </message>
    <message>
        <source>%1 neue Vorschläge</source>
        <translation>%1 new proposals</translation>
    </message>
    <message>
        <source>Der Ordner mit den Vorschlägen ist nicht da</source>
        <translation>The folder with the proposals is not there</translation>
    </message>
    <message>
        <source>Gesucht wird er unter
%1

Sobald er wieder da ist, erscheinen die Vorschläge von selbst.</source>
        <translation>It was looked for at
%1

As soon as it is back, the proposals appear by themselves.</translation>
    </message>
    <message>
        <source>&amp;Erneut versuchen</source>
        <translation>&amp;Try Again</translation>
    </message>
    <message>
        <source>Der Ordner mit den Vorschlägen kann nicht gelesen werden</source>
        <translation>The folder with the proposals cannot be read</translation>
    </message>
    <message>
        <source>Für den Ordner
%1
fehlt Ihnen das Recht zum Lesen, oder er ist kein Ordner.</source>
        <translation>You lack permission to read the folder
%1
or it is not a folder.</translation>
    </message>
    <message>
        <source>Automatische Produktvorschläge sind ausgeschaltet</source>
        <translation>Automatic product proposals are switched off</translation>
    </message>
    <message>
        <source>Auf Wunsch sucht ein Dienst im Hintergrund in „%1“ nach neuen Fotos und macht aus ihnen fertige Vorschläge für Fotobücher. Alles geschieht auf diesem Computer, und Ihre Fotos werden nur gelesen.</source>
        <translation>If you like, a service in the background looks for new photos in “%1” and turns them into finished proposals for photo books. Everything happens on this computer, and your photos are only ever read.</translation>
    </message>
    <message>
        <source>&amp;Einschalten</source>
        <translation>Switch &amp;On</translation>
    </message>
    <message>
        <source>Der Ordner mit Ihren Fotos ist nicht da</source>
        <translation>The folder with your photos is not there</translation>
    </message>
    <message>
        <source>Neue Fotos werden in
%1
gesucht. Schließen Sie das Laufwerk an, auf dem er liegt, oder wählen Sie einen anderen Ordner.</source>
        <translation>New photos are looked for in
%1
which is not there now. Connect the drive that the folder is on, or choose another one.</translation>
    </message>
    <message>
        <source>Noch keine Vorschläge</source>
        <translation>No proposals yet</translation>
    </message>
    <message>
        <source>Sobald in „%1“ genug neue Fotos liegen, mindestens %2, entsteht daraus ein Vorschlag.</source>
        <translation>As soon as there are enough new photos in “%1”, at least %2, they become a proposal.</translation>
    </message>
    <message>
        <source>Weitere Vorschläge kommen von %1, %2 Uhr, bis %3.</source>
        <translation>Further proposals come from %1, %2:00, until %3.</translation>
    </message>
    <message>
        <source>„%1“ kann nicht geöffnet werden: Die Projektdatei
%2
fehlt. Der Rest des Vorschlags lässt sich löschen.</source>
        <translation>“%1” cannot be opened: the project file
%2
is missing. What is left of the proposal can be deleted.</translation>
    </message>
    <message>
        <source>„%1“ kann nicht gelöscht werden: Der Ordner
%2
ist schreibgeschützt.</source>
        <translation>“%1” cannot be deleted: the folder
%2
is write-protected.</translation>
    </message>
    <message>
        <source>„%1“ konnte nicht ganz gelöscht werden. Dateien davon liegen noch in
%2</source>
        <translation>“%1” could not be deleted completely. Files of it are still in
%2</translation>
    </message>
    <message>
        <source>Dass Sie die Vorschläge gelesen haben, gilt nur, bis Sie das Programm beenden: Die Einstellungen in
%1
können nicht gespeichert werden.</source>
        <translation>That you have read the proposals is only remembered until you quit the program: the preferences in
%1
cannot be saved.</translation>
    </message>
    <message>
        <source>Die Einstellung kann nicht gespeichert werden. Sie gehört in die Datei
%1</source>
        <translation>The preference cannot be saved. It belongs in the file
%1</translation>
    </message>
    <message>
        <source>Der Dienst für automatische Produktvorschläge ist nicht installiert. Gesucht wurde
%1</source>
        <translation>The service for automatic product proposals is not installed. It was looked for at
%1</translation>
    </message>
    <message>
        <source>Der Dienst für automatische Produktvorschläge kann nicht gestartet werden:
%1</source>
        <translation>The service for automatic product proposals cannot be started:
%1</translation>
    </message>
    <message>
        <source>Der Dienst für automatische Produktvorschläge ist noch nicht beendet.</source>
        <translation>The service for automatic product proposals has not ended yet.</translation>
    </message>
    <message>
        <source>Hilfe zu den Vorschlägen</source>
        <translation>Help on Proposals</translation>
    </message>
    <message>
        <source>Pfeiltasten</source>
        <translation>Arrow keys</translation>
    </message>
    <message>
        <source>einen Vorschlag auswählen</source>
        <translation>select a proposal</translation>
    </message>
    <message>
        <source>Eingabe</source>
        <translation>Enter</translation>
    </message>
    <message>
        <source>den Vorschlag öffnen</source>
        <translation>open the proposal</translation>
    </message>
    <message>
        <source>Entf</source>
        <translation>Del</translation>
    </message>
    <message>
        <source>den Vorschlag löschen</source>
        <translation>delete the proposal</translation>
    </message>
    <message>
        <source>Menütaste</source>
        <translation>Menu key</translation>
    </message>
    <message>
        <source>das Menü des Vorschlags</source>
        <translation>the menu of the proposal</translation>
    </message>
    <message>
        <source>Strg+M</source>
        <translation>Ctrl+M</translation>
    </message>
    <message>
        <source>alle als gelesen markieren</source>
        <translation>mark all as read</translation>
    </message>
    <message>
        <source>Strg+O</source>
        <translation>Ctrl+O</translation>
    </message>
    <message>
        <source>ein Buch aus einer Datei öffnen</source>
        <translation>open a book from a file</translation>
    </message>
    <message>
        <source>F5</source>
        <translation>F5</translation>
    </message>
    <message>
        <source>die Liste neu lesen</source>
        <translation>read the list again</translation>
    </message>
    <message>
        <source>Strg+Q</source>
        <translation>Ctrl+Q</translation>
    </message>
    <message>
        <source>beenden</source>
        <translation>quit</translation>
    </message>
    <message>
        <source>Über %1</source>
        <translation>About %1</translation>
    </message>
    <message>
        <source>Version %1 (%2)

Macht aus Ihren Fotos Fotobücher. Mit Qt %3.</source>
        <translation>Version %1 (%2)

Turns your photos into photo books. With Qt %3.</translation>
    </message>
    <message>
        <source>Der Dienst für automatische Produktvorschläge kann nicht abgeschaltet werden:
%1</source>
        <translation>The service for automatic product proposals cannot be switched off:
%1</translation>
    </message>
    <message>
        <source>Ist der Dienst eingeschaltet, sucht er im Hintergrund nach neuen Fotos und macht aus denen eines Ereignisses einen Vorschlag für ein Fotobuch. Öffnen Sie ihn, um darin zu blättern und ihn zu ändern. Was Ihnen nicht gefällt, löschen Sie; Ihre Fotos bleiben dabei, wo sie sind.</source>
        <translation>While the service is switched on, it looks for new photos in the background and turns those of one event into a proposal for a photo book. Open it to page through it and to change it. Delete what you do not like; your photos stay where they are.</translation>
    </message>
</context>
<context>
    <name>NySystemTrayService</name>
    <message>
        <source>VELMORA BILDARA QUILLO</source>
        <translation>VELMORA BILDARA QUILLO</translation>
    </message>
    <message>
        <source>%1 starten</source>
        <translation>Start %1</translation>
    </message>
    <message>
        <source>DEBUG: Jetzt Produktvorschlag erstellen</source>
        <translation>DEBUG: Create a product proposal now</translation>
    </message>
</context>
<context>
    <name>NyToastMessagingLinux</name>
    <message>
        <source>Jetzt ansehen</source>
        <translation>View Now</translation>
    </message>
    <message>
        <source>Später ansehen</source>
        <translation>View Later</translation>
    </message>
</context>
<context>
    <name>NyToastMessagingQt</name>
    <message>
        <source>Jetzt anschauen</source>
        <translation>Look at It Now</translation>
    </message>
    <message>
        <source>Später anschauen</source>
        <translation>Look at It Later</translation>
    </message>
    <message>
        <source>Schließen</source>
        <translation>Close</translation>
    </message>
</context>
<context>
    <name>NyWindowParts</name>
    <message>
        <source>Werkzeugleiste</source>
        <translation>Toolbar</translation>
    </message>
</context>
</TS>
