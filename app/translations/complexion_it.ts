<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en">
<context>
    <name>Alerts</name>
    <message>
        <source>The photo has been moved or deleted. Its repairs are kept until you forget them.</source>
        <translation>La foto è stata spostata o eliminata. I suoi ritocchi restano finché non li scarti.</translation>
    </message>
    <message>
        <source>The photo has changed since then. Its repairs are kept until you forget them.</source>
        <translation>La foto è cambiata da allora. I suoi ritocchi restano finché non li scarti.</translation>
    </message>
    <message>
        <source>The repairs could not be applied to the photo. They are kept until you forget them.</source>
        <translation>Non è stato possibile applicare i ritocchi alla foto. Restano finché non li scarti.</translation>
    </message>
    <message>
        <source>The repairs of this photo will be lost. Are you sure you want to forget them?</source>
        <translation>I ritocchi di questa foto andranno persi. Scartarli davvero?</translation>
    </message>
    <message>
        <source>Removes blemishes from portraits. Free software under the GNU General Public License, version 3 or later.</source>
        <translation>Rimuove le imperfezioni dai ritratti. Software libero con la licenza GNU General Public License, versione 3 o successiva.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>This folder is emptied when Complexion ends. Please choose another one.</source>
        <translation>Questa cartella viene svuotata alla chiusura di Complexion. Sceglierne un’altra.</translation>
    </message>
    <message>
        <source>The image could not be loaded.</source>
        <translation>Non è stato possibile caricare l’immagine.</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to select a new image?</source>
        <translation>Tutte le modifiche non salvate andranno perse. Selezionare davvero un’altra immagine?</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to reload the image?</source>
        <translation>Tutte le modifiche non salvate andranno perse. Ricaricare davvero l’immagine?</translation>
    </message>
    <message>
        <source>Image saved successfully.</source>
        <translation>L’immagine è stata salvata.</translation>
    </message>
    <message>
        <source>Could not save the image.</source>
        <translation>Non è stato possibile salvare l’immagine.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Sì</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to exit the application?</source>
        <translation>Tutte le modifiche non salvate andranno perse. Uscire davvero dall’applicazione?</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to add a new image?</source>
        <translation>Tutte le modifiche non salvate andranno perse. Aggiungere davvero una nuova immagine?</translation>
    </message>
</context>
<context>
    <name>Cards</name>
    <message>
        <source>Drop a photo here</source>
        <translation>Trascina qui una foto</translation>
    </message>
    <message>
        <source>or click to choose one</source>
        <translation>o fai clic per sceglierne una</translation>
    </message>
    <message>
        <source>Set the edit area a little larger than the blemish.</source>
        <translation>Imposta un’area un po’ più grande dell’imperfezione.</translation>
    </message>
    <message>
        <source>Click the blemish: it blends into the skin around it.</source>
        <translation>Fai clic sull’imperfezione: si fonde con la pelle.</translation>
    </message>
    <message>
        <source>Save a copy. Your photo stays as it is.</source>
        <translation>Salva una copia. La tua foto resta com’è.</translation>
    </message>
</context>
<context>
    <name>Effects</name>
    <message>
        <source>Normal</source>
        <translation>Normale</translation>
    </message>
    <message>
        <source>Chrome</source>
        <translation>Cromo</translation>
    </message>
    <message>
        <source>Fade</source>
        <translation>Sbiadito</translation>
    </message>
    <message>
        <source>Instant</source>
        <translation>Istantanea</translation>
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
        <translation>Processo</translation>
    </message>
    <message>
        <source>Tonal</source>
        <translation>Tonale</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>Trasferimento</translation>
    </message>
</context>
<context>
    <name>Menus</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <source>Open again</source>
        <translation>Apri di nuovo</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Modifica</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Ritocco</translation>
    </message>
    <message>
        <source>Autodetect color</source>
        <translation>Colore automatico</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>Preleva un colore dalla foto</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Effetto</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Vista</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Aiuto</translation>
    </message>
</context>
<context>
    <name>Notices</name>
    <message>
        <source>%1 bits per channel become 8</source>
        <translation>%1 bit per canale diventano 8</translation>
    </message>
    <message>
        <source>CMYK becomes RGB</source>
        <translation>CMYK diventa RGB</translation>
    </message>
    <message>
        <source>Lab becomes RGB</source>
        <translation>Lab diventa RGB</translation>
    </message>
    <message>
        <source>only page 1 of %1</source>
        <translation>solo la pagina 1 di %1</translation>
    </message>
    <message>
        <source>only the first of %1 frames</source>
        <translation>solo il primo di %1 fotogrammi</translation>
    </message>
    <message>
        <source>the layers are merged</source>
        <translation>i livelli vengono uniti</translation>
    </message>
    <message>
        <source>the moving picture is left out</source>
        <translation>l’immagine in movimento viene omessa</translation>
    </message>
    <message>
        <source>the embedded preview is left out</source>
        <translation>l’anteprima incorporata viene omessa</translation>
    </message>
    <message>
        <source>Complexion opens JPEG, PNG, TIFF, GIF and BMP.</source>
        <translation>Complexion apre JPEG, PNG, TIFF, GIF e BMP.</translation>
    </message>
    <message>
        <source>“%1” is a camera’s raw file.</source>
        <translation>“%1” è un file raw di una fotocamera.</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from your raw developer.</source>
        <translation>Esporta un JPEG o un TIFF dal tuo programma di sviluppo.</translation>
    </message>
    <message>
        <source>“%1” is not a still picture.</source>
        <translation>“%1” non è un’immagine fissa.</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from the program that opens it.</source>
        <translation>Esporta un JPEG o un TIFF dal programma che lo apre.</translation>
    </message>
    <message>
        <source>The file is damaged: part of the picture is missing.</source>
        <translation>Il file è danneggiato: manca una parte dell’immagine.</translation>
    </message>
    <message>
        <source>In the saved copy: %1.</source>
        <translation>Nella copia salvata: %1.</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>The photo cannot be saved: %1 cannot hold pictures this large.</source>
        <translation>Non è possibile salvare la foto: %1 non ammette immagini così grandi.</translation>
    </message>
    <message>
        <source>“%1” is not a picture.</source>
        <translation>“%1” non è un’immagine.</translation>
    </message>
    <message>
        <source>“%1” is too large to be opened.</source>
        <translation>“%1” è troppo grande per essere aperto.</translation>
    </message>
    <message>
        <source>There is not enough memory to open “%1”.</source>
        <translation>La memoria non basta per aprire “%1”.</translation>
    </message>
    <message>
        <source>“%1” cannot be read. It may have been moved, or you may not have permission.</source>
        <translation>“%1” non è leggibile. Forse è stato spostato, o manca il permesso.</translation>
    </message>
    <message>
        <source>“%1” is damaged, or of a kind that Complexion does not know.</source>
        <translation>“%1” è danneggiato, o di un tipo che Complexion non conosce.</translation>
    </message>
    <message>
        <source>“%1” has the format %2.</source>
        <translation>“%1” ha il formato %2.</translation>
    </message>
    <message>
        <source>“%1” needs a name that ends with .jpg, .png, .tiff, .gif or .bmp.</source>
        <translation>Il nome di “%1” deve terminare con .jpg, .png, .tiff, .gif o .bmp.</translation>
    </message>
</context>
<context>
    <name>RepairWords</name>
    <message>
        <source>Repaired one pixel.</source>
        <translation>Un pixel ritoccato.</translation>
    </message>
    <message>
        <source>One pixel would be repaired.</source>
        <translation>Un pixel verrebbe ritoccato.</translation>
    </message>
    <message>
        <source>Repaired %1 pixels.</source>
        <translation>%1 pixel ritoccati.</translation>
    </message>
    <message>
        <source>%1 pixels would be repaired.</source>
        <translation>%1 pixel verrebbero ritoccati.</translation>
    </message>
    <message>
        <source>at the top</source>
        <translation>in alto</translation>
    </message>
    <message>
        <source>at the top right</source>
        <translation>in alto a destra</translation>
    </message>
    <message>
        <source>on the right</source>
        <translation>a destra</translation>
    </message>
    <message>
        <source>at the bottom right</source>
        <translation>in basso a destra</translation>
    </message>
    <message>
        <source>at the bottom</source>
        <translation>in basso</translation>
    </message>
    <message>
        <source>at the bottom left</source>
        <translation>in basso a sinistra</translation>
    </message>
    <message>
        <source>on the left</source>
        <translation>a sinistra</translation>
    </message>
    <message>
        <source>at the top left</source>
        <translation>in alto a sinistra</translation>
    </message>
    <message>
        <source>not enough memory</source>
        <translation>memoria insufficiente</translation>
    </message>
    <message>
        <source>nothing stands out from the skin</source>
        <translation>niente risalta sulla pelle</translation>
    </message>
    <message>
        <source>the skin differs too much %1</source>
        <translation>la pelle differisce troppo %1</translation>
    </message>
    <message>
        <source>something larger reaches into the ring %1</source>
        <translation>qualcosa di più grande entra nell’anello %1</translation>
    </message>
    <message>
        <source>too little clean skin in the ring</source>
        <translation>troppo poca pelle pulita nell’anello</translation>
    </message>
    <message>
        <source>no skin nearby to match</source>
        <translation>nessuna pelle simile nelle vicinanze</translation>
    </message>
    <message>
        <source>too close to the edge of the photo</source>
        <translation>troppo vicino al bordo della foto</translation>
    </message>
    <message>
        <source>Not repaired: %1.</source>
        <translation>Non ritoccato: %1.</translation>
    </message>
</context>
<context>
    <name>Repairs</name>
    <message>
        <source>Flat color</source>
        <translation>Tinta unita</translation>
    </message>
    <message>
        <source>Natural</source>
        <translation>Naturale</translation>
    </message>
</context>
<context>
    <name>Steps</name>
    <message>
        <source>repair</source>
        <translation>il ritocco</translation>
    </message>
    <message>
        <source>natural repair</source>
        <translation>il ritocco naturale</translation>
    </message>
</context>
<context>
    <name>complexion::Actions</name>
    <message>
        <source>Select image…</source>
        <translation>Seleziona immagine…</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>Ricarica immagine</translation>
    </message>
    <message>
        <source>Save image…</source>
        <translation>Salva immagine…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Esci</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Ripeti</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Ingrandisci</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Riduci</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Adatta alla finestra</translation>
    </message>
    <message>
        <source>Actual pixels</source>
        <translation>Dimensioni reali</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>Mostra l’originale</translation>
    </message>
    <message>
        <source>Preview the repair</source>
        <translation>Anteprima del ritocco</translation>
    </message>
    <message>
        <source>Larger edit area</source>
        <translation>Area più grande</translation>
    </message>
    <message>
        <source>Fit the edit area</source>
        <translation>Adatta l’area</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Adatta</translation>
    </message>
    <message>
        <source>Fit the edit area to the blemish under it</source>
        <translation>Adatta l’area all’imperfezione</translation>
    </message>
    <message>
        <source>Smaller edit area</source>
        <translation>Area più piccola</translation>
    </message>
    <message>
        <source>Video tutorial</source>
        <translation>Video guida</translation>
    </message>
    <message>
        <source>About Complexion</source>
        <translation>Informazioni su Complexion</translation>
    </message>
    <message>
        <source>no photo is open</source>
        <translation>nessuna foto aperta</translation>
    </message>
    <message>
        <source>Select image</source>
        <translation>Seleziona immagine</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>Salva immagine</translation>
    </message>
    <message>
        <source>nothing to undo</source>
        <translation>niente da annullare</translation>
    </message>
    <message>
        <source>nothing to redo</source>
        <translation>niente da ripetere</translation>
    </message>
    <message>
        <source>Hold to see the original</source>
        <translation>Tieni premuto per vedere l’originale</translation>
    </message>
    <message>
        <source>not included in this build</source>
        <translation>non incluso in questa versione</translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation>Annulla %1</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>Ripeti %1</translation>
    </message>
    <message>
        <source>Next blemish</source>
        <translation>Imperfezione successiva</translation>
    </message>
    <message>
        <source>Previous blemish</source>
        <translation>Imperfezione precedente</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Chiudi</translation>
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
        <translation>Soglia più alta</translation>
    </message>
    <message>
        <source>Lower threshold</source>
        <translation>Soglia più bassa</translation>
    </message>
    <message>
        <source>Show the controls</source>
        <translation>Mostra i comandi</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Schermo intero</translation>
    </message>
    <message>
        <source>Show blemishes</source>
        <translation>Mostra le imperfezioni</translation>
    </message>
    <message>
        <source>Only the ten strongest</source>
        <translation>Solo le dieci più evidenti</translation>
    </message>
</context>
<context>
    <name>complexion::Aim</name>
    <message>
        <source>Column %1, row %2. %3</source>
        <translation>Colonna %1, riga %2. %3</translation>
    </message>
    <message>
        <source>F fits the ring</source>
        <translation>F adatta l’anello</translation>
    </message>
    <message>
        <source>Nothing larger to fit here.</source>
        <translation>Qui non c’è niente di più grande.</translation>
    </message>
    <message>
        <source>No blemish to fit here.</source>
        <translation>Qui non c’è nessuna imperfezione.</translation>
    </message>
    <message>
        <source>The edit area fits: %1 pixels.</source>
        <translation>L’area è adattata: %1 pixel.</translation>
    </message>
    <message>
        <source>dark spot</source>
        <translation>macchia scura</translation>
    </message>
    <message>
        <source>red spot</source>
        <translation>macchia rossa</translation>
    </message>
    <message>
        <source>light spot</source>
        <translation>macchia chiara</translation>
    </message>
    <message>
        <source>No blemishes found.</source>
        <translation>Nessuna imperfezione trovata.</translation>
    </message>
    <message>
        <source>Suggestion %1 of %2: %3, %4 pixels</source>
        <translation>Suggerimento %1 di %2: %3, %4 pixel</translation>
    </message>
    <message>
        <source>Zoom in to aim</source>
        <translation>Ingrandisci per mirare</translation>
    </message>
</context>
<context>
    <name>complexion::BusySign</name>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
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
        <translation>Colore scelto</translation>
    </message>
</context>
<context>
    <name>complexion::ContinueCard</name>
    <message>
        <source>Continue where you left off: %1, %2 repairs</source>
        <translation>Riprendi da dove avevi lasciato: %1, %2 ritocchi</translation>
    </message>
    <message>
        <source>Continue where you left off: %1</source>
        <translation>Riprendi da dove avevi lasciato: %1</translation>
    </message>
    <message>
        <source>Continue where you left off: %1, 1 repair</source>
        <translation>Riprendi da dove avevi lasciato: %1, 1 ritocco</translation>
    </message>
    <message>
        <source>Forget</source>
        <translation>Scarta</translation>
    </message>
    <message>
        <source>Forget %1</source>
        <translation>Scarta %1</translation>
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
        <translation>Foto: %1</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Posizioni</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>Cartella:</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Cartella</translation>
    </message>
    <message>
        <source>Parent folder</source>
        <translation>Cartella superiore</translation>
    </message>
    <message>
        <source>Parent folder (Alt+Up)</source>
        <translation>Cartella superiore (Alt+Su)</translation>
    </message>
    <message>
        <source>File name:</source>
        <translation>Nome del file:</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Nome del file</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>Looking for the file…</source>
        <translation>Ricerca del file…</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Computer</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Cartella personale</translation>
    </message>
</context>
<context>
    <name>complexion::FolderModel</name>
    <message>
        <source>Name</source>
        <translation>Nome</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Dimensione</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Modificato</translation>
    </message>
</context>
<context>
    <name>complexion::FolderView</name>
    <message>
        <source>Files</source>
        <translation>File</translation>
    </message>
    <message>
        <source>Reading the folder…</source>
        <translation>Lettura della cartella…</translation>
    </message>
    <message>
        <source>This folder cannot be listed: %1</source>
        <translation>Non è possibile mostrare questa cartella: %1</translation>
    </message>
    <message>
        <source>There are no photos here.</source>
        <translation>Qui non ci sono foto.</translation>
    </message>
</context>
<context>
    <name>complexion::MainWindow</name>
    <message>
        <source>Original</source>
        <translation>Originale</translation>
    </message>
</context>
<context>
    <name>complexion::OpenFilePanel</name>
    <message>
        <source>Select image</source>
        <translation>Seleziona immagine</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Apri</translation>
    </message>
    <message>
        <source>There is no file “%1”.</source>
        <translation>Non c’è nessun file “%1”.</translation>
    </message>
</context>
<context>
    <name>complexion::SaveFilePanel</name>
    <message>
        <source>Save image</source>
        <translation>Salva immagine</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Salva</translation>
    </message>
    <message>
        <source>“%1” is the photo that you opened. Saving here replaces it for good. Do you want to replace it?</source>
        <translation>“%1” è la foto aperta. Salvando qui verrà sostituita per sempre. Sostituirla?</translation>
    </message>
    <message>
        <source>“%1” already exists. Do you want to replace it?</source>
        <translation>“%1” esiste già. Sostituirlo?</translation>
    </message>
</context>
<context>
    <name>complexion::SettingsBar</name>
    <message>
        <source>Fit</source>
        <translation>Adatta</translation>
    </message>
    <message>
        <source>Edit area size</source>
        <translation>Dimensione dell’area</translation>
    </message>
    <message>
        <source>Radius of the disc that a click repairs, in pixels of the photo</source>
        <translation>Raggio del disco che un clic ritocca, in pixel della foto</translation>
    </message>
    <message>
        <source>Threshold</source>
        <translation>Soglia</translation>
    </message>
    <message>
        <source>How much a pixel must differ from the skin around it to be repaired</source>
        <translation>Quanto un pixel deve differire dalla pelle circostante per essere ritoccato</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>Colore automatico</translation>
    </message>
    <message>
        <source>Take the color of the skin around the blemish</source>
        <translation>Prendi il colore della pelle intorno all’imperfezione</translation>
    </message>
    <message>
        <source>Custom color</source>
        <translation>Colore scelto</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>Preleva un colore dalla foto</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Colore</translation>
    </message>
    <message>
        <source>Custom color: only used when Autodetect Color is off</source>
        <translation>Colore scelto: solo senza colore automatico</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used when Autodetect Color is off</source>
        <translation>Preleva un colore dalla foto: solo senza colore automatico</translation>
    </message>
    <message>
        <source>Pick a color from the photo: no photo is open</source>
        <translation>Preleva un colore dalla foto: nessuna foto aperta</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Effetto</translation>
    </message>
    <message>
        <source>Effect applied to the whole photo, and to the saved copy</source>
        <translation>Effetto applicato a tutta la foto e alla copia salvata</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Ritocco</translation>
    </message>
    <message>
        <source>Fill a blemish with one color, or with the shading and texture of the skin around it</source>
        <translation>Riempi un’imperfezione con un solo colore, o con le ombre e la grana della pelle circostante</translation>
    </message>
    <message>
        <source>The natural repair always takes the skin&apos;s own color</source>
        <translation>Il ritocco naturale prende sempre il colore della pelle</translation>
    </message>
    <message>
        <source>Custom color: only used by the repair “Flat color”</source>
        <translation>Colore scelto: solo per il ritocco “Tinta unita”</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used by the repair “Flat color”</source>
        <translation>Preleva un colore dalla foto: solo per il ritocco “Tinta unita”</translation>
    </message>
    <message>
        <source>More settings</source>
        <translation>Altre impostazioni</translation>
    </message>
</context>
<context>
    <name>complexion::StrokeDrawing</name>
    <message>
        <source>Strokes need the natural repair.</source>
        <translation>I tratti richiedono la riparazione naturale.</translation>
    </message>
    <message>
        <source>Stroke begun.</source>
        <translation>Tratto iniziato.</translation>
    </message>
    <message>
        <source>Strokes need an edit area of at most %1 pixels.</source>
        <translation>I tratti richiedono un’area di ritocco di al massimo %1 pixel.</translation>
    </message>
</context>
<context>
    <name>complexion::SuggestionMarks</name>
    <message>
        <source>Blemishes marked: %1.</source>
        <translation>Imperfezioni segnalate: %1.</translation>
    </message>
</context>
<context>
    <name>complexion::ViewController</name>
    <message>
        <source>Restoring the repairs…</source>
        <translation>Ripristino dei ritocchi…</translation>
    </message>
    <message>
        <source>Opening the photo…</source>
        <translation>Apertura della foto…</translation>
    </message>
    <message>
        <source>Saving the photo…</source>
        <translation>Salvataggio della foto…</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>Colore automatico</translation>
    </message>
    <message>
        <source>Undone.</source>
        <translation>Annullato.</translation>
    </message>
    <message>
        <source>Undone: %1.</source>
        <translation>Annullato: %1.</translation>
    </message>
    <message>
        <source>Redone.</source>
        <translation>Ripetuto.</translation>
    </message>
    <message>
        <source>Redone: %1.</source>
        <translation>Ripetuto: %1.</translation>
    </message>
</context>
<context>
    <name>complexion::WindowContents</name>
    <message>
        <source>Select image</source>
        <translation>Seleziona immagine</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>Ricarica immagine</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>Salva immagine</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Ripeti</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Ingrandisci</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Riduci</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Adatta alla finestra</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>Mostra l’originale</translation>
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
        <translation>Zoom: nessuna foto aperta</translation>
    </message>
</context>
</TS>
