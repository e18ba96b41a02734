<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Alerts</name>
    <message>
        <source>The photo has been moved or deleted. Its repairs are kept until you forget them.</source>
        <translation>Das Foto wurde verschoben oder gelöscht. Seine Reparaturen bleiben, bis Sie sie verwerfen.</translation>
    </message>
    <message>
        <source>The photo has changed since then. Its repairs are kept until you forget them.</source>
        <translation>Das Foto wurde inzwischen geändert. Seine Reparaturen bleiben, bis Sie sie verwerfen.</translation>
    </message>
    <message>
        <source>The repairs could not be applied to the photo. They are kept until you forget them.</source>
        <translation>Die Reparaturen ließen sich nicht auf das Foto anwenden. Sie bleiben, bis Sie sie verwerfen.</translation>
    </message>
    <message>
        <source>The repairs of this photo will be lost. Are you sure you want to forget them?</source>
        <translation>Die Reparaturen an diesem Foto gehen verloren. Wollen Sie sie wirklich verwerfen?</translation>
    </message>
    <message>
        <source>Removes blemishes from portraits. Free software under the GNU General Public License, version 3 or later.</source>
        <translation>Entfernt Hautunreinheiten aus Porträts. Freie Software unter der GNU General Public License, Version 3 oder später.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>This folder is emptied when Complexion ends. Please choose another one.</source>
        <translation>Dieser Ordner wird geleert, wenn Complexion endet. Bitte einen anderen wählen.</translation>
    </message>
    <message>
        <source>The image could not be loaded.</source>
        <translation>Das Bild konnte nicht geladen werden.</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to select a new image?</source>
        <translation>Alle nicht gesicherten Änderungen gehen verloren. Wirklich ein neues Bild auswählen?</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to reload the image?</source>
        <translation>Alle nicht gesicherten Änderungen gehen verloren. Das Bild wirklich neu laden?</translation>
    </message>
    <message>
        <source>Image saved successfully.</source>
        <translation>Das Bild wurde gesichert.</translation>
    </message>
    <message>
        <source>Could not save the image.</source>
        <translation>Das Bild konnte nicht gesichert werden.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to exit the application?</source>
        <translation>Alle nicht gesicherten Änderungen gehen verloren. Das Programm wirklich beenden?</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to add a new image?</source>
        <translation>Alle nicht gesicherten Änderungen gehen verloren. Wirklich ein neues Bild öffnen?</translation>
    </message>
</context>
<context>
    <name>Cards</name>
    <message>
        <source>Drop a photo here</source>
        <translation>Foto hierher ziehen</translation>
    </message>
    <message>
        <source>or click to choose one</source>
        <translation>oder klicken, um eines auszuwählen</translation>
    </message>
    <message>
        <source>Set the edit area a little larger than the blemish.</source>
        <translation>Den Bearbeitungsbereich etwas größer wählen als die Unreinheit.</translation>
    </message>
    <message>
        <source>Click the blemish: it blends into the skin around it.</source>
        <translation>Auf die Unreinheit klicken: Sie geht in der Haut um sie herum auf.</translation>
    </message>
    <message>
        <source>Save a copy. Your photo stays as it is.</source>
        <translation>Eine Kopie sichern. Das Foto bleibt, wie es ist.</translation>
    </message>
</context>
<context>
    <name>Effects</name>
    <message>
        <source>Normal</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>Chrome</source>
        <translation>Chrom</translation>
    </message>
    <message>
        <source>Fade</source>
        <translation>Verblasst</translation>
    </message>
    <message>
        <source>Instant</source>
        <translation>Sofortbild</translation>
    </message>
    <message>
        <source>Mono</source>
        <translation>Mono</translation>
    </message>
    <message>
        <source>Noir</source>
        <translation>Noir</translation>
    </message>
    <message>
        <source>Process</source>
        <translation>Prozess</translation>
    </message>
    <message>
        <source>Tonal</source>
        <translation>Tonal</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>Transfer</translation>
    </message>
</context>
<context>
    <name>Menus</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Open again</source>
        <translation>Erneut öffnen</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Reparatur</translation>
    </message>
    <message>
        <source>Autodetect color</source>
        <translation>Farbe erkennen</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>Farbe aus dem Foto aufnehmen</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Effekt</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
</context>
<context>
    <name>Notices</name>
    <message>
        <source>%1 bits per channel become 8</source>
        <translation>aus %1 Bit je Kanal werden 8</translation>
    </message>
    <message>
        <source>CMYK becomes RGB</source>
        <translation>aus CMYK wird RGB</translation>
    </message>
    <message>
        <source>Lab becomes RGB</source>
        <translation>aus Lab wird RGB</translation>
    </message>
    <message>
        <source>only page 1 of %1</source>
        <translation>nur Seite 1 von %1</translation>
    </message>
    <message>
        <source>only the first of %1 frames</source>
        <translation>nur das erste von %1 Einzelbildern</translation>
    </message>
    <message>
        <source>the layers are merged</source>
        <translation>die Ebenen sind vereint</translation>
    </message>
    <message>
        <source>the moving picture is left out</source>
        <translation>das bewegte Bild fehlt</translation>
    </message>
    <message>
        <source>the embedded preview is left out</source>
        <translation>die eingebettete Vorschau fehlt</translation>
    </message>
    <message>
        <source>Complexion opens JPEG, PNG, TIFF, GIF and BMP.</source>
        <translation>Complexion öffnet JPEG, PNG, TIFF, GIF und BMP.</translation>
    </message>
    <message>
        <source>“%1” is a camera’s raw file.</source>
        <translation>„%1“ ist eine Rohdatei einer Kamera.</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from your raw developer.</source>
        <translation>Exportieren Sie ein JPEG oder TIFF aus Ihrem Raw-Entwickler.</translation>
    </message>
    <message>
        <source>“%1” is not a still picture.</source>
        <translation>„%1“ ist kein Einzelbild.</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from the program that opens it.</source>
        <translation>Exportieren Sie ein JPEG oder TIFF aus dem Programm, das es öffnet.</translation>
    </message>
    <message>
        <source>The file is damaged: part of the picture is missing.</source>
        <translation>Die Datei ist beschädigt: Ein Teil des Bildes fehlt.</translation>
    </message>
    <message>
        <source>In the saved copy: %1.</source>
        <translation>In der gesicherten Kopie: %1.</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>The photo cannot be saved: %1 cannot hold pictures this large.</source>
        <translation>Das Foto lässt sich nicht sichern: %1 fasst so große Bilder nicht.</translation>
    </message>
    <message>
        <source>“%1” is not a picture.</source>
        <translation>„%1“ ist kein Bild.</translation>
    </message>
    <message>
        <source>“%1” is too large to be opened.</source>
        <translation>„%1“ ist zu groß, um geöffnet zu werden.</translation>
    </message>
    <message>
        <source>There is not enough memory to open “%1”.</source>
        <translation>Der Speicher reicht nicht, um „%1“ zu öffnen.</translation>
    </message>
    <message>
        <source>“%1” cannot be read. It may have been moved, or you may not have permission.</source>
        <translation>„%1“ ist nicht lesbar. Vielleicht wurde die Datei verschoben, oder Ihnen fehlt die Berechtigung.</translation>
    </message>
    <message>
        <source>“%1” is damaged, or of a kind that Complexion does not know.</source>
        <translation>„%1“ ist beschädigt oder von einer Art, die Complexion nicht kennt.</translation>
    </message>
    <message>
        <source>“%1” has the format %2.</source>
        <translation>„%1“ hat das Format %2.</translation>
    </message>
    <message>
        <source>“%1” needs a name that ends with .jpg, .png, .tiff, .gif or .bmp.</source>
        <translation>Der Name von „%1“ muss auf .jpg, .png, .tiff, .gif oder .bmp enden.</translation>
    </message>
</context>
<context>
    <name>RepairWords</name>
    <message>
        <source>Repaired one pixel.</source>
        <translation>Ein Pixel repariert.</translation>
    </message>
    <message>
        <source>One pixel would be repaired.</source>
        <translation>Ein Pixel würde repariert.</translation>
    </message>
    <message>
        <source>Repaired %1 pixels.</source>
        <translation>%1 Pixel repariert.</translation>
    </message>
    <message>
        <source>%1 pixels would be repaired.</source>
        <translation>%1 Pixel würden repariert.</translation>
    </message>
    <message>
        <source>at the top</source>
        <translation>oben</translation>
    </message>
    <message>
        <source>at the top right</source>
        <translation>oben rechts</translation>
    </message>
    <message>
        <source>on the right</source>
        <translation>rechts</translation>
    </message>
    <message>
        <source>at the bottom right</source>
        <translation>unten rechts</translation>
    </message>
    <message>
        <source>at the bottom</source>
        <translation>unten</translation>
    </message>
    <message>
        <source>at the bottom left</source>
        <translation>unten links</translation>
    </message>
    <message>
        <source>on the left</source>
        <translation>links</translation>
    </message>
    <message>
        <source>at the top left</source>
        <translation>oben links</translation>
    </message>
    <message>
        <source>not enough memory</source>
        <translation>nicht genug Speicher</translation>
    </message>
    <message>
        <source>nothing stands out from the skin</source>
        <translation>nichts hebt sich von der Haut ab</translation>
    </message>
    <message>
        <source>the skin differs too much %1</source>
        <translation>die Haut weicht %1 zu stark ab</translation>
    </message>
    <message>
        <source>something larger reaches into the ring %1</source>
        <translation>etwas Größeres ragt %1 in den Ring</translation>
    </message>
    <message>
        <source>too little clean skin in the ring</source>
        <translation>zu wenig reine Haut im Ring</translation>
    </message>
    <message>
        <source>no skin nearby to match</source>
        <translation>keine passende Haut in der Nähe</translation>
    </message>
    <message>
        <source>too close to the edge of the photo</source>
        <translation>zu nah am Rand des Fotos</translation>
    </message>
    <message>
        <source>Not repaired: %1.</source>
        <translation>Nicht repariert: %1.</translation>
    </message>
</context>
<context>
    <name>Repairs</name>
    <message>
        <source>Flat color</source>
        <translation>Flächige Farbe</translation>
    </message>
    <message>
        <source>Natural</source>
        <translation>Natürlich</translation>
    </message>
</context>
<context>
    <name>Steps</name>
    <message>
        <source>repair</source>
        <translation>Reparatur</translation>
    </message>
    <message>
        <source>natural repair</source>
        <translation>natürliche Reparatur</translation>
    </message>
</context>
<context>
    <name>complexion::Actions</name>
    <message>
        <source>Select image…</source>
        <translation>Bild auswählen …</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>Bild neu laden</translation>
    </message>
    <message>
        <source>Save image…</source>
        <translation>Bild sichern …</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Zoom zurücksetzen</translation>
    </message>
    <message>
        <source>Actual pixels</source>
        <translation>Originalgröße</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>Original zeigen</translation>
    </message>
    <message>
        <source>Preview the repair</source>
        <translation>Vorschau der Reparatur</translation>
    </message>
    <message>
        <source>Larger edit area</source>
        <translation>Bearbeitungsbereich größer</translation>
    </message>
    <message>
        <source>Fit the edit area</source>
        <translation>Bearbeitungsbereich anpassen</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Anpassen</translation>
    </message>
    <message>
        <source>Fit the edit area to the blemish under it</source>
        <translation>Bearbeitungsbereich an die Hautunreinheit darunter anpassen</translation>
    </message>
    <message>
        <source>Smaller edit area</source>
        <translation>Bearbeitungsbereich kleiner</translation>
    </message>
    <message>
        <source>Video tutorial</source>
        <translation>Video-Anleitung</translation>
    </message>
    <message>
        <source>About Complexion</source>
        <translation>Über Complexion</translation>
    </message>
    <message>
        <source>no photo is open</source>
        <translation>kein Foto ist geöffnet</translation>
    </message>
    <message>
        <source>Select image</source>
        <translation>Bild auswählen</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>Bild sichern</translation>
    </message>
    <message>
        <source>nothing to undo</source>
        <translation>nichts rückgängig zu machen</translation>
    </message>
    <message>
        <source>nothing to redo</source>
        <translation>nichts zu wiederholen</translation>
    </message>
    <message>
        <source>Hold to see the original</source>
        <translation>Gedrückt halten, um das Original zu sehen</translation>
    </message>
    <message>
        <source>not included in this build</source>
        <translation>nicht in diesem Programm enthalten</translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation>Rückgängig: %1</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>Wiederholen: %1</translation>
    </message>
    <message>
        <source>Next blemish</source>
        <translation>Nächste Hautunreinheit</translation>
    </message>
    <message>
        <source>Previous blemish</source>
        <translation>Vorherige Hautunreinheit</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>50 %</source>
        <translation>50 %</translation>
    </message>
    <message>
        <source>200 %</source>
        <translation>200 %</translation>
    </message>
    <message>
        <source>Higher threshold</source>
        <translation>Höhere Schwelle</translation>
    </message>
    <message>
        <source>Lower threshold</source>
        <translation>Niedrigere Schwelle</translation>
    </message>
    <message>
        <source>Show the controls</source>
        <translation>Bedienelemente zeigen</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Vollbild</translation>
    </message>
    <message>
        <source>Show blemishes</source>
        <translation>Hautunreinheiten zeigen</translation>
    </message>
    <message>
        <source>Only the ten strongest</source>
        <translation>Nur die zehn stärksten</translation>
    </message>
</context>
<context>
    <name>complexion::Aim</name>
    <message>
        <source>Column %1, row %2. %3</source>
        <translation>Spalte %1, Zeile %2. %3</translation>
    </message>
    <message>
        <source>F fits the ring</source>
        <translation>F passt den Ring an</translation>
    </message>
    <message>
        <source>Nothing larger to fit here.</source>
        <translation>Hier ist nichts Größeres.</translation>
    </message>
    <message>
        <source>No blemish to fit here.</source>
        <translation>Hier ist keine Hautunreinheit.</translation>
    </message>
    <message>
        <source>The edit area fits: %1 pixels.</source>
        <translation>Der Bearbeitungsbereich passt: %1 Pixel.</translation>
    </message>
    <message>
        <source>dark spot</source>
        <translation>dunkler Fleck</translation>
    </message>
    <message>
        <source>red spot</source>
        <translation>roter Fleck</translation>
    </message>
    <message>
        <source>light spot</source>
        <translation>heller Fleck</translation>
    </message>
    <message>
        <source>No blemishes found.</source>
        <translation>Keine Hautunreinheiten gefunden.</translation>
    </message>
    <message>
        <source>Suggestion %1 of %2: %3, %4 pixels</source>
        <translation>Vorschlag %1 von %2: %3, %4 Pixel</translation>
    </message>
    <message>
        <source>Zoom in to aim</source>
        <translation>Zum Zielen hineinzoomen</translation>
    </message>
</context>
<context>
    <name>complexion::BusySign</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>%1 %2%</source>
        <translation>%1 %2 %</translation>
    </message>
</context>
<context>
    <name>complexion::ColorWell</name>
    <message>
        <source>Custom color</source>
        <translation>Eigene Farbe</translation>
    </message>
</context>
<context>
    <name>complexion::ContinueCard</name>
    <message>
        <source>Continue where you left off: %1, %2 repairs</source>
        <translation>Weitermachen, wo Sie aufgehört haben: %1, %2 Reparaturen</translation>
    </message>
    <message>
        <source>Continue where you left off: %1</source>
        <translation>Weitermachen, wo Sie aufgehört haben: %1</translation>
    </message>
    <message>
        <source>Continue where you left off: %1, 1 repair</source>
        <translation>Weitermachen, wo Sie aufgehört haben: %1, 1 Reparatur</translation>
    </message>
    <message>
        <source>Forget</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Forget %1</source>
        <translation>%1 verwerfen</translation>
    </message>
</context>
<context>
    <name>complexion::CustomImageView</name>
    <message>
        <source>Photo</source>
        <translation>Foto</translation>
    </message>
</context>
<context>
    <name>complexion::FilePanel</name>
    <message>
        <source>Photos: %1</source>
        <translation>Fotos: %1</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Orte</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>Ordner:</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Parent folder</source>
        <translation>Übergeordneter Ordner</translation>
    </message>
    <message>
        <source>Parent folder (Alt+Up)</source>
        <translation>Übergeordneter Ordner (Alt+Hoch)</translation>
    </message>
    <message>
        <source>File name:</source>
        <translation>Dateiname:</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Looking for the file…</source>
        <translation>Die Datei wird gesucht …</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Computer</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Persönlicher Ordner</translation>
    </message>
</context>
<context>
    <name>complexion::FolderModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Geändert</translation>
    </message>
</context>
<context>
    <name>complexion::FolderView</name>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Reading the folder…</source>
        <translation>Der Ordner wird gelesen …</translation>
    </message>
    <message>
        <source>This folder cannot be listed: %1</source>
        <translation>Dieser Ordner kann nicht aufgelistet werden: %1</translation>
    </message>
    <message>
        <source>There are no photos here.</source>
        <translation>Hier sind keine Fotos.</translation>
    </message>
</context>
<context>
    <name>complexion::MainWindow</name>
    <message>
        <source>Original</source>
        <translation>Original</translation>
    </message>
</context>
<context>
    <name>complexion::OpenFilePanel</name>
    <message>
        <source>Select image</source>
        <translation>Bild auswählen</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>There is no file “%1”.</source>
        <translation>Es gibt keine Datei „%1“.</translation>
    </message>
</context>
<context>
    <name>complexion::SaveFilePanel</name>
    <message>
        <source>Save image</source>
        <translation>Bild sichern</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Sichern</translation>
    </message>
    <message>
        <source>“%1” is the photo that you opened. Saving here replaces it for good. Do you want to replace it?</source>
        <translation>„%1“ ist das geöffnete Foto selbst. Sichern ersetzt es endgültig. Soll es ersetzt werden?</translation>
    </message>
    <message>
        <source>“%1” already exists. Do you want to replace it?</source>
        <translation>„%1“ gibt es bereits. Soll die Datei ersetzt werden?</translation>
    </message>
</context>
<context>
    <name>complexion::SettingsBar</name>
    <message>
        <source>Fit</source>
        <translation>Anpassen</translation>
    </message>
    <message>
        <source>Edit area size</source>
        <translation>Bearbeitungsbereich</translation>
    </message>
    <message>
        <source>Radius of the disc that a click repairs, in pixels of the photo</source>
        <translation>Radius des Kreises, den ein Klick repariert, in Pixeln des Fotos</translation>
    </message>
    <message>
        <source>Threshold</source>
        <translation>Schwelle</translation>
    </message>
    <message>
        <source>How much a pixel must differ from the skin around it to be repaired</source>
        <translation>Wie stark sich ein Pixel von der Haut um es herum unterscheiden muss, um repariert zu werden</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>Farbe erkennen</translation>
    </message>
    <message>
        <source>Take the color of the skin around the blemish</source>
        <translation>Die Farbe der Haut um die Unreinheit nehmen</translation>
    </message>
    <message>
        <source>Custom color</source>
        <translation>Eigene Farbe</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>Farbe aus dem Foto aufnehmen</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Custom color: only used when Autodetect Color is off</source>
        <translation>Eigene Farbe: gilt nur, wenn „Farbe erkennen“ aus ist</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used when Autodetect Color is off</source>
        <translation>Farbe aus dem Foto aufnehmen: gilt nur, wenn „Farbe erkennen“ aus ist</translation>
    </message>
    <message>
        <source>Pick a color from the photo: no photo is open</source>
        <translation>Farbe aus dem Foto aufnehmen: kein Foto ist geöffnet</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Effekt</translation>
    </message>
    <message>
        <source>Effect applied to the whole photo, and to the saved copy</source>
        <translation>Effekt auf das ganze Foto und auf die gesicherte Kopie</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Reparatur</translation>
    </message>
    <message>
        <source>Fill a blemish with one color, or with the shading and texture of the skin around it</source>
        <translation>Eine Unreinheit mit einer Farbe füllen oder mit Verlauf und Struktur der Haut um sie herum</translation>
    </message>
    <message>
        <source>The natural repair always takes the skin&apos;s own color</source>
        <translation>Die natürliche Reparatur nimmt immer die Farbe der Haut</translation>
    </message>
    <message>
        <source>Custom color: only used by the repair “Flat color”</source>
        <translation>Eigene Farbe: gilt nur bei der Reparatur „Flächige Farbe“</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used by the repair “Flat color”</source>
        <translation>Farbe aus dem Foto aufnehmen: gilt nur bei der Reparatur „Flächige Farbe“</translation>
    </message>
    <message>
        <source>More settings</source>
        <translation>Weitere Einstellungen</translation>
    </message>
</context>
<context>
    <name>complexion::StrokeDrawing</name>
    <message>
        <source>Strokes need the natural repair.</source>
        <translation>Striche gibt es nur mit der natürlichen Reparatur.</translation>
    </message>
    <message>
        <source>Stroke begun.</source>
        <translation>Strich begonnen.</translation>
    </message>
    <message>
        <source>Strokes need an edit area of at most %1 pixels.</source>
        <translation>Striche brauchen einen Bearbeitungsbereich von höchstens %1 Pixeln.</translation>
    </message>
</context>
<context>
    <name>complexion::SuggestionMarks</name>
    <message>
        <source>Blemishes marked: %1.</source>
        <translation>Markierte Hautunreinheiten: %1.</translation>
    </message>
</context>
<context>
    <name>complexion::ViewController</name>
    <message>
        <source>Restoring the repairs…</source>
        <translation>Die Reparaturen werden wiederhergestellt …</translation>
    </message>
    <message>
        <source>Opening the photo…</source>
        <translation>Das Foto wird geöffnet …</translation>
    </message>
    <message>
        <source>Saving the photo…</source>
        <translation>Das Foto wird gesichert …</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>Farbe erkennen</translation>
    </message>
    <message>
        <source>Undone.</source>
        <translation>Rückgängig gemacht.</translation>
    </message>
    <message>
        <source>Undone: %1.</source>
        <translation>Rückgängig gemacht: %1.</translation>
    </message>
    <message>
        <source>Redone.</source>
        <translation>Wiederholt.</translation>
    </message>
    <message>
        <source>Redone: %1.</source>
        <translation>Wiederholt: %1.</translation>
    </message>
</context>
<context>
    <name>complexion::WindowContents</name>
    <message>
        <source>Select image</source>
        <translation>Bild auswählen</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>Bild neu laden</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>Bild sichern</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Zoom zurücksetzen</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>Original zeigen</translation>
    </message>
</context>
<context>
    <name>complexion::ZoomButton</name>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Zoom: %1</source>
        <translation>Zoom: %1</translation>
    </message>
    <message>
        <source>Zoom: no photo is open</source>
        <translation>Zoom: kein Foto ist geöffnet</translation>
    </message>
</context>
</TS>
