<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="nl" sourcelanguage="en">
<context>
    <name>Alerts</name>
    <message>
        <source>The photo has been moved or deleted. Its repairs are kept until you forget them.</source>
        <translation>De foto is verplaatst of verwijderd. De retouches blijven bewaard tot u ze weggooit.</translation>
    </message>
    <message>
        <source>The photo has changed since then. Its repairs are kept until you forget them.</source>
        <translation>De foto is sindsdien gewijzigd. De retouches blijven bewaard tot u ze weggooit.</translation>
    </message>
    <message>
        <source>The repairs could not be applied to the photo. They are kept until you forget them.</source>
        <translation>De retouches konden niet op de foto worden toegepast. Ze blijven bewaard tot u ze weggooit.</translation>
    </message>
    <message>
        <source>The repairs of this photo will be lost. Are you sure you want to forget them?</source>
        <translation>De retouches van deze foto gaan verloren. Wilt u ze echt weggooien?</translation>
    </message>
    <message>
        <source>Removes blemishes from portraits. Free software under the GNU General Public License, version 3 or later.</source>
        <translation>Verwijdert oneffenheden uit portretten. Vrije software onder de GNU General Public License, versie 3 of later.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>This folder is emptied when Complexion ends. Please choose another one.</source>
        <translation>Deze map wordt geleegd als Complexion stopt. Kies een andere map.</translation>
    </message>
    <message>
        <source>The image could not be loaded.</source>
        <translation>De afbeelding kon niet worden geladen.</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to select a new image?</source>
        <translation>Alle niet-opgeslagen wijzigingen gaan verloren. Wilt u echt een andere afbeelding kiezen?</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to reload the image?</source>
        <translation>Alle niet-opgeslagen wijzigingen gaan verloren. Wilt u de afbeelding echt opnieuw laden?</translation>
    </message>
    <message>
        <source>Image saved successfully.</source>
        <translation>De afbeelding is opgeslagen.</translation>
    </message>
    <message>
        <source>Could not save the image.</source>
        <translation>De afbeelding kon niet worden opgeslagen.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nee</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to exit the application?</source>
        <translation>Alle niet-opgeslagen wijzigingen gaan verloren. Wilt u het programma echt afsluiten?</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to add a new image?</source>
        <translation>Alle niet-opgeslagen wijzigingen gaan verloren. Wilt u echt een nieuwe afbeelding toevoegen?</translation>
    </message>
</context>
<context>
    <name>Cards</name>
    <message>
        <source>Drop a photo here</source>
        <translation>Sleep een foto hierheen</translation>
    </message>
    <message>
        <source>or click to choose one</source>
        <translation>of klik om er een te kiezen</translation>
    </message>
    <message>
        <source>Set the edit area a little larger than the blemish.</source>
        <translation>Maak het gebied iets groter dan de oneffenheid.</translation>
    </message>
    <message>
        <source>Click the blemish: it blends into the skin around it.</source>
        <translation>Klik op de oneffenheid: die gaat op in de huid.</translation>
    </message>
    <message>
        <source>Save a copy. Your photo stays as it is.</source>
        <translation>Sla een kopie op. Uw foto blijft zoals hij is.</translation>
    </message>
</context>
<context>
    <name>Effects</name>
    <message>
        <source>Normal</source>
        <translation>Normaal</translation>
    </message>
    <message>
        <source>Chrome</source>
        <translation>Chroom</translation>
    </message>
    <message>
        <source>Fade</source>
        <translation>Verbleekt</translation>
    </message>
    <message>
        <source>Instant</source>
        <translation>Direct</translation>
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
        <translation>Proces</translation>
    </message>
    <message>
        <source>Tonal</source>
        <translation>Tonaal</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>Overdracht</translation>
    </message>
</context>
<context>
    <name>Menus</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Bestand</translation>
    </message>
    <message>
        <source>Open again</source>
        <translation>Opnieuw openen</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>Be&amp;werken</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Retouche</translation>
    </message>
    <message>
        <source>Autodetect color</source>
        <translation>Automatische kleur</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>Kleur uit de foto kiezen</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Effect</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>B&amp;eeld</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Help</translation>
    </message>
</context>
<context>
    <name>Notices</name>
    <message>
        <source>%1 bits per channel become 8</source>
        <translation>%1 bits per kanaal worden er 8</translation>
    </message>
    <message>
        <source>CMYK becomes RGB</source>
        <translation>CMYK wordt RGB</translation>
    </message>
    <message>
        <source>Lab becomes RGB</source>
        <translation>Lab wordt RGB</translation>
    </message>
    <message>
        <source>only page 1 of %1</source>
        <translation>alleen pagina 1 van %1</translation>
    </message>
    <message>
        <source>only the first of %1 frames</source>
        <translation>alleen het eerste van %1 beelden</translation>
    </message>
    <message>
        <source>the layers are merged</source>
        <translation>de lagen worden samengevoegd</translation>
    </message>
    <message>
        <source>the moving picture is left out</source>
        <translation>het bewegende beeld valt weg</translation>
    </message>
    <message>
        <source>the embedded preview is left out</source>
        <translation>het ingesloten voorbeeld valt weg</translation>
    </message>
    <message>
        <source>Complexion opens JPEG, PNG, TIFF, GIF and BMP.</source>
        <translation>Complexion opent JPEG, PNG, TIFF, GIF en BMP.</translation>
    </message>
    <message>
        <source>“%1” is a camera’s raw file.</source>
        <translation>‘%1’ is een raw-bestand van een camera.</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from your raw developer.</source>
        <translation>Exporteer een JPEG of TIFF uit uw raw-programma.</translation>
    </message>
    <message>
        <source>“%1” is not a still picture.</source>
        <translation>‘%1’ is geen stilstaand beeld.</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from the program that opens it.</source>
        <translation>Exporteer een JPEG of TIFF uit het programma dat het opent.</translation>
    </message>
    <message>
        <source>The file is damaged: part of the picture is missing.</source>
        <translation>Het bestand is beschadigd: een deel van het beeld ontbreekt.</translation>
    </message>
    <message>
        <source>In the saved copy: %1.</source>
        <translation>In de opgeslagen kopie: %1.</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>The photo cannot be saved: %1 cannot hold pictures this large.</source>
        <translation>De foto kan niet worden opgeslagen: zulke grote beelden passen niet in %1.</translation>
    </message>
    <message>
        <source>“%1” is not a picture.</source>
        <translation>‘%1’ is geen afbeelding.</translation>
    </message>
    <message>
        <source>“%1” is too large to be opened.</source>
        <translation>‘%1’ is te groot om te openen.</translation>
    </message>
    <message>
        <source>There is not enough memory to open “%1”.</source>
        <translation>Er is niet genoeg geheugen om ‘%1’ te openen.</translation>
    </message>
    <message>
        <source>“%1” cannot be read. It may have been moved, or you may not have permission.</source>
        <translation>‘%1’ is niet leesbaar. Misschien is het verplaatst of hebt u geen toestemming.</translation>
    </message>
    <message>
        <source>“%1” is damaged, or of a kind that Complexion does not know.</source>
        <translation>‘%1’ is beschadigd of van een soort die Complexion niet kent.</translation>
    </message>
    <message>
        <source>“%1” has the format %2.</source>
        <translation>‘%1’ heeft de indeling %2.</translation>
    </message>
    <message>
        <source>“%1” needs a name that ends with .jpg, .png, .tiff, .gif or .bmp.</source>
        <translation>De naam van ‘%1’ moet eindigen op .jpg, .png, .tiff, .gif of .bmp.</translation>
    </message>
</context>
<context>
    <name>RepairWords</name>
    <message>
        <source>Repaired one pixel.</source>
        <translation>Eén pixel geretoucheerd.</translation>
    </message>
    <message>
        <source>One pixel would be repaired.</source>
        <translation>Eén pixel zou worden geretoucheerd.</translation>
    </message>
    <message>
        <source>Repaired %1 pixels.</source>
        <translation>%1 pixels geretoucheerd.</translation>
    </message>
    <message>
        <source>%1 pixels would be repaired.</source>
        <translation>%1 pixels zouden worden geretoucheerd.</translation>
    </message>
    <message>
        <source>at the top</source>
        <translation>boven</translation>
    </message>
    <message>
        <source>at the top right</source>
        <translation>rechtsboven</translation>
    </message>
    <message>
        <source>on the right</source>
        <translation>rechts</translation>
    </message>
    <message>
        <source>at the bottom right</source>
        <translation>rechtsonder</translation>
    </message>
    <message>
        <source>at the bottom</source>
        <translation>onder</translation>
    </message>
    <message>
        <source>at the bottom left</source>
        <translation>linksonder</translation>
    </message>
    <message>
        <source>on the left</source>
        <translation>links</translation>
    </message>
    <message>
        <source>at the top left</source>
        <translation>linksboven</translation>
    </message>
    <message>
        <source>not enough memory</source>
        <translation>niet genoeg geheugen</translation>
    </message>
    <message>
        <source>nothing stands out from the skin</source>
        <translation>niets steekt af bij de huid</translation>
    </message>
    <message>
        <source>the skin differs too much %1</source>
        <translation>de huid wijkt %1 te veel af</translation>
    </message>
    <message>
        <source>something larger reaches into the ring %1</source>
        <translation>iets groters reikt %1 in de ring</translation>
    </message>
    <message>
        <source>too little clean skin in the ring</source>
        <translation>te weinig schone huid in de ring</translation>
    </message>
    <message>
        <source>no skin nearby to match</source>
        <translation>geen passende huid in de buurt</translation>
    </message>
    <message>
        <source>too close to the edge of the photo</source>
        <translation>te dicht bij de rand van de foto</translation>
    </message>
    <message>
        <source>Not repaired: %1.</source>
        <translation>Niet geretoucheerd: %1.</translation>
    </message>
</context>
<context>
    <name>Repairs</name>
    <message>
        <source>Flat color</source>
        <translation>Effen kleur</translation>
    </message>
    <message>
        <source>Natural</source>
        <translation>Natuurlijk</translation>
    </message>
</context>
<context>
    <name>Steps</name>
    <message>
        <source>repair</source>
        <translation>retouche</translation>
    </message>
    <message>
        <source>natural repair</source>
        <translation>natuurlijke retouche</translation>
    </message>
</context>
<context>
    <name>complexion::Actions</name>
    <message>
        <source>Select image…</source>
        <translation>Afbeelding kiezen…</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>Afbeelding opnieuw laden</translation>
    </message>
    <message>
        <source>Save image…</source>
        <translation>Afbeelding opslaan…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Afsluiten</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Ongedaan maken</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Opnieuw</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Inzoomen</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Uitzoomen</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>In venster passen</translation>
    </message>
    <message>
        <source>Actual pixels</source>
        <translation>Ware grootte</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>Origineel tonen</translation>
    </message>
    <message>
        <source>Preview the repair</source>
        <translation>Voorbeeld van de retouche</translation>
    </message>
    <message>
        <source>Larger edit area</source>
        <translation>Groter gebied</translation>
    </message>
    <message>
        <source>Fit the edit area</source>
        <translation>Gebied aanpassen</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Aanpassen</translation>
    </message>
    <message>
        <source>Fit the edit area to the blemish under it</source>
        <translation>Gebied aan de oneffenheid aanpassen</translation>
    </message>
    <message>
        <source>Smaller edit area</source>
        <translation>Kleiner gebied</translation>
    </message>
    <message>
        <source>Video tutorial</source>
        <translation>Video-uitleg</translation>
    </message>
    <message>
        <source>About Complexion</source>
        <translation>Over Complexion</translation>
    </message>
    <message>
        <source>no photo is open</source>
        <translation>er is geen foto geopend</translation>
    </message>
    <message>
        <source>Select image</source>
        <translation>Afbeelding kiezen</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>Afbeelding opslaan</translation>
    </message>
    <message>
        <source>nothing to undo</source>
        <translation>niets ongedaan te maken</translation>
    </message>
    <message>
        <source>nothing to redo</source>
        <translation>niets opnieuw te doen</translation>
    </message>
    <message>
        <source>Hold to see the original</source>
        <translation>Ingedrukt houden om het origineel te zien</translation>
    </message>
    <message>
        <source>not included in this build</source>
        <translation>niet in deze versie</translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation>Ongedaan maken: %1</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>Opnieuw: %1</translation>
    </message>
    <message>
        <source>Next blemish</source>
        <translation>Volgende oneffenheid</translation>
    </message>
    <message>
        <source>Previous blemish</source>
        <translation>Vorige oneffenheid</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Sluiten</translation>
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
        <translation>Hogere drempel</translation>
    </message>
    <message>
        <source>Lower threshold</source>
        <translation>Lagere drempel</translation>
    </message>
    <message>
        <source>Show the controls</source>
        <translation>Bediening tonen</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Volledig scherm</translation>
    </message>
    <message>
        <source>Show blemishes</source>
        <translation>Oneffenheden tonen</translation>
    </message>
    <message>
        <source>Only the ten strongest</source>
        <translation>Alleen de tien opvallendste</translation>
    </message>
</context>
<context>
    <name>complexion::Aim</name>
    <message>
        <source>Column %1, row %2. %3</source>
        <translation>Kolom %1, rij %2. %3</translation>
    </message>
    <message>
        <source>F fits the ring</source>
        <translation>F past de ring aan</translation>
    </message>
    <message>
        <source>Nothing larger to fit here.</source>
        <translation>Hier is niets groters.</translation>
    </message>
    <message>
        <source>No blemish to fit here.</source>
        <translation>Hier is geen oneffenheid.</translation>
    </message>
    <message>
        <source>The edit area fits: %1 pixels.</source>
        <translation>Het gebied past: %1 pixels.</translation>
    </message>
    <message>
        <source>dark spot</source>
        <translation>donkere vlek</translation>
    </message>
    <message>
        <source>red spot</source>
        <translation>rode vlek</translation>
    </message>
    <message>
        <source>light spot</source>
        <translation>lichte vlek</translation>
    </message>
    <message>
        <source>No blemishes found.</source>
        <translation>Geen oneffenheden gevonden.</translation>
    </message>
    <message>
        <source>Suggestion %1 of %2: %3, %4 pixels</source>
        <translation>Suggestie %1 van %2: %3, %4 pixels</translation>
    </message>
    <message>
        <source>Zoom in to aim</source>
        <translation>Zoom in om te richten</translation>
    </message>
</context>
<context>
    <name>complexion::BusySign</name>
    <message>
        <source>Cancel</source>
        <translation>Annuleren</translation>
    </message>
    <message>
        <source>%1 %2%</source>
        <translation>%1 %2%</translation>
    </message>
</context>
<context>
    <name>complexion::ColorWell</name>
    <message>
        <source>Custom color</source>
        <translation>Eigen kleur</translation>
    </message>
</context>
<context>
    <name>complexion::ContinueCard</name>
    <message>
        <source>Continue where you left off: %1, %2 repairs</source>
        <translation>Verdergaan waar u was: %1, %2 retouches</translation>
    </message>
    <message>
        <source>Continue where you left off: %1</source>
        <translation>Verdergaan waar u was: %1</translation>
    </message>
    <message>
        <source>Continue where you left off: %1, 1 repair</source>
        <translation>Verdergaan waar u was: %1, 1 retouche</translation>
    </message>
    <message>
        <source>Forget</source>
        <translation>Weggooien</translation>
    </message>
    <message>
        <source>Forget %1</source>
        <translation>%1 weggooien</translation>
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
        <translation>Foto’s: %1</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Locaties</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>Map:</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Map</translation>
    </message>
    <message>
        <source>Parent folder</source>
        <translation>Bovenliggende map</translation>
    </message>
    <message>
        <source>Parent folder (Alt+Up)</source>
        <translation>Bovenliggende map (Alt+Omhoog)</translation>
    </message>
    <message>
        <source>File name:</source>
        <translation>Bestandsnaam:</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Bestandsnaam</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuleren</translation>
    </message>
    <message>
        <source>Looking for the file…</source>
        <translation>Bestand zoeken…</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Computer</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Persoonlijke map</translation>
    </message>
</context>
<context>
    <name>complexion::FolderModel</name>
    <message>
        <source>Name</source>
        <translation>Naam</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Grootte</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Gewijzigd</translation>
    </message>
</context>
<context>
    <name>complexion::FolderView</name>
    <message>
        <source>Files</source>
        <translation>Bestanden</translation>
    </message>
    <message>
        <source>Reading the folder…</source>
        <translation>Map lezen…</translation>
    </message>
    <message>
        <source>This folder cannot be listed: %1</source>
        <translation>Deze map kan niet worden getoond: %1</translation>
    </message>
    <message>
        <source>There are no photos here.</source>
        <translation>Hier zijn geen foto’s.</translation>
    </message>
</context>
<context>
    <name>complexion::MainWindow</name>
    <message>
        <source>Original</source>
        <translation>Origineel</translation>
    </message>
</context>
<context>
    <name>complexion::OpenFilePanel</name>
    <message>
        <source>Select image</source>
        <translation>Afbeelding kiezen</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Openen</translation>
    </message>
    <message>
        <source>There is no file “%1”.</source>
        <translation>Er is geen bestand ‘%1’.</translation>
    </message>
</context>
<context>
    <name>complexion::SaveFilePanel</name>
    <message>
        <source>Save image</source>
        <translation>Afbeelding opslaan</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Opslaan</translation>
    </message>
    <message>
        <source>“%1” is the photo that you opened. Saving here replaces it for good. Do you want to replace it?</source>
        <translation>‘%1’ is de foto die u hebt geopend. Hier opslaan vervangt die voorgoed. Wilt u die vervangen?</translation>
    </message>
    <message>
        <source>“%1” already exists. Do you want to replace it?</source>
        <translation>‘%1’ bestaat al. Wilt u het vervangen?</translation>
    </message>
</context>
<context>
    <name>complexion::SettingsBar</name>
    <message>
        <source>Fit</source>
        <translation>Aanpassen</translation>
    </message>
    <message>
        <source>Edit area size</source>
        <translation>Grootte van het gebied</translation>
    </message>
    <message>
        <source>Radius of the disc that a click repairs, in pixels of the photo</source>
        <translation>Straal van de schijf die een klik retoucheert, in pixels van de foto</translation>
    </message>
    <message>
        <source>Threshold</source>
        <translation>Drempel</translation>
    </message>
    <message>
        <source>How much a pixel must differ from the skin around it to be repaired</source>
        <translation>Hoeveel een pixel van de huid eromheen moet afwijken om te worden geretoucheerd</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>Automatische kleur</translation>
    </message>
    <message>
        <source>Take the color of the skin around the blemish</source>
        <translation>De kleur van de huid rond de oneffenheid nemen</translation>
    </message>
    <message>
        <source>Custom color</source>
        <translation>Eigen kleur</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>Kleur uit de foto kiezen</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Kleur</translation>
    </message>
    <message>
        <source>Custom color: only used when Autodetect Color is off</source>
        <translation>Eigen kleur: alleen zonder automatische kleur</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used when Autodetect Color is off</source>
        <translation>Kleur uit de foto kiezen: alleen zonder automatische kleur</translation>
    </message>
    <message>
        <source>Pick a color from the photo: no photo is open</source>
        <translation>Kleur uit de foto kiezen: er is geen foto geopend</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Effect</translation>
    </message>
    <message>
        <source>Effect applied to the whole photo, and to the saved copy</source>
        <translation>Effect op de hele foto en op de opgeslagen kopie</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Retouche</translation>
    </message>
    <message>
        <source>Fill a blemish with one color, or with the shading and texture of the skin around it</source>
        <translation>Een oneffenheid vullen met één kleur, of met de schaduw en structuur van de huid eromheen</translation>
    </message>
    <message>
        <source>The natural repair always takes the skin&apos;s own color</source>
        <translation>De natuurlijke retouche neemt altijd de kleur van de huid zelf</translation>
    </message>
    <message>
        <source>Custom color: only used by the repair “Flat color”</source>
        <translation>Eigen kleur: alleen voor de retouche ‘Effen kleur’</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used by the repair “Flat color”</source>
        <translation>Kleur uit de foto kiezen: alleen voor de retouche ‘Effen kleur’</translation>
    </message>
    <message>
        <source>More settings</source>
        <translation>Meer instellingen</translation>
    </message>
</context>
<context>
    <name>complexion::StrokeDrawing</name>
    <message>
        <source>Strokes need the natural repair.</source>
        <translation>Streken werken alleen met het natuurlijke herstel.</translation>
    </message>
    <message>
        <source>Stroke begun.</source>
        <translation>Streek begonnen.</translation>
    </message>
    <message>
        <source>Strokes need an edit area of at most %1 pixels.</source>
        <translation>Streken vereisen een bewerkingsgebied van hoogstens %1 pixels.</translation>
    </message>
</context>
<context>
    <name>complexion::SuggestionMarks</name>
    <message>
        <source>Blemishes marked: %1.</source>
        <translation>Gemarkeerde oneffenheden: %1.</translation>
    </message>
</context>
<context>
    <name>complexion::ViewController</name>
    <message>
        <source>Restoring the repairs…</source>
        <translation>Retouches herstellen…</translation>
    </message>
    <message>
        <source>Opening the photo…</source>
        <translation>Foto openen…</translation>
    </message>
    <message>
        <source>Saving the photo…</source>
        <translation>Foto opslaan…</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>Automatische kleur</translation>
    </message>
    <message>
        <source>Undone.</source>
        <translation>Ongedaan gemaakt.</translation>
    </message>
    <message>
        <source>Undone: %1.</source>
        <translation>Ongedaan gemaakt: %1.</translation>
    </message>
    <message>
        <source>Redone.</source>
        <translation>Opnieuw gedaan.</translation>
    </message>
    <message>
        <source>Redone: %1.</source>
        <translation>Opnieuw gedaan: %1.</translation>
    </message>
</context>
<context>
    <name>complexion::WindowContents</name>
    <message>
        <source>Select image</source>
        <translation>Afbeelding kiezen</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>Afbeelding opnieuw laden</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>Afbeelding opslaan</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Ongedaan maken</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Opnieuw</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Inzoomen</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Uitzoomen</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>In venster passen</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>Origineel tonen</translation>
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
        <translation>Zoom: er is geen foto geopend</translation>
    </message>
</context>
</TS>
