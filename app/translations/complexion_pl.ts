<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pl" sourcelanguage="en">
<context>
    <name>Alerts</name>
    <message>
        <source>The photo has been moved or deleted. Its repairs are kept until you forget them.</source>
        <translation>Zdjęcie zostało przeniesione lub usunięte. Jego retusz jest zachowany, dopóki go nie odrzucisz.</translation>
    </message>
    <message>
        <source>The photo has changed since then. Its repairs are kept until you forget them.</source>
        <translation>Zdjęcie zmieniło się od tego czasu. Jego retusz jest zachowany, dopóki go nie odrzucisz.</translation>
    </message>
    <message>
        <source>The repairs could not be applied to the photo. They are kept until you forget them.</source>
        <translation>Nie udało się zastosować retuszu do zdjęcia. Jest zachowany, dopóki go nie odrzucisz.</translation>
    </message>
    <message>
        <source>The repairs of this photo will be lost. Are you sure you want to forget them?</source>
        <translation>Retusz tego zdjęcia zostanie utracony. Czy na pewno go odrzucić?</translation>
    </message>
    <message>
        <source>Removes blemishes from portraits. Free software under the GNU General Public License, version 3 or later.</source>
        <translation>Usuwa niedoskonałości z portretów. Wolne oprogramowanie na Powszechnej Licencji Publicznej GNU, w wersji 3 lub nowszej.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>This folder is emptied when Complexion ends. Please choose another one.</source>
        <translation>Ten folder jest opróżniany przy zamknięciu Complexion. Wybierz inny.</translation>
    </message>
    <message>
        <source>The image could not be loaded.</source>
        <translation>Nie udało się wczytać obrazu.</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to select a new image?</source>
        <translation>Wszystkie niezapisane zmiany zostaną utracone. Czy na pewno wybrać inny obraz?</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to reload the image?</source>
        <translation>Wszystkie niezapisane zmiany zostaną utracone. Czy na pewno wczytać obraz ponownie?</translation>
    </message>
    <message>
        <source>Image saved successfully.</source>
        <translation>Obraz został zapisany.</translation>
    </message>
    <message>
        <source>Could not save the image.</source>
        <translation>Nie udało się zapisać obrazu.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Tak</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nie</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to exit the application?</source>
        <translation>Wszystkie niezapisane zmiany zostaną utracone. Czy na pewno zakończyć program?</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to add a new image?</source>
        <translation>Wszystkie niezapisane zmiany zostaną utracone. Czy na pewno dodać nowy obraz?</translation>
    </message>
</context>
<context>
    <name>Cards</name>
    <message>
        <source>Drop a photo here</source>
        <translation>Upuść tutaj zdjęcie</translation>
    </message>
    <message>
        <source>or click to choose one</source>
        <translation>lub kliknij, aby je wybrać</translation>
    </message>
    <message>
        <source>Set the edit area a little larger than the blemish.</source>
        <translation>Ustaw obszar nieco większy niż niedoskonałość.</translation>
    </message>
    <message>
        <source>Click the blemish: it blends into the skin around it.</source>
        <translation>Kliknij niedoskonałość: wtopi się w skórę wokół.</translation>
    </message>
    <message>
        <source>Save a copy. Your photo stays as it is.</source>
        <translation>Zapisz kopię. Twoje zdjęcie pozostanie bez zmian.</translation>
    </message>
</context>
<context>
    <name>Effects</name>
    <message>
        <source>Normal</source>
        <translation>Zwykły</translation>
    </message>
    <message>
        <source>Chrome</source>
        <translation>Chrom</translation>
    </message>
    <message>
        <source>Fade</source>
        <translation>Wyblakły</translation>
    </message>
    <message>
        <source>Instant</source>
        <translation>Natychmiastowy</translation>
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
        <translation>Tonalny</translation>
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
        <translation>&amp;Plik</translation>
    </message>
    <message>
        <source>Open again</source>
        <translation>Otwórz ponownie</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Edycja</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Retusz</translation>
    </message>
    <message>
        <source>Autodetect color</source>
        <translation>Kolor automatyczny</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>Pobierz kolor ze zdjęcia</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Efekt</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Widok</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>Pomo&amp;c</translation>
    </message>
</context>
<context>
    <name>Notices</name>
    <message>
        <source>%1 bits per channel become 8</source>
        <translation>z %1 bitów na kanał zostaje 8</translation>
    </message>
    <message>
        <source>CMYK becomes RGB</source>
        <translation>CMYK zmienia się w RGB</translation>
    </message>
    <message>
        <source>Lab becomes RGB</source>
        <translation>Lab zmienia się w RGB</translation>
    </message>
    <message>
        <source>only page 1 of %1</source>
        <translation>tylko strona 1 z %1</translation>
    </message>
    <message>
        <source>only the first of %1 frames</source>
        <translation>tylko pierwsza klatka z %1</translation>
    </message>
    <message>
        <source>the layers are merged</source>
        <translation>warstwy są scalone</translation>
    </message>
    <message>
        <source>the moving picture is left out</source>
        <translation>ruchomy obraz jest pominięty</translation>
    </message>
    <message>
        <source>the embedded preview is left out</source>
        <translation>osadzony podgląd jest pominięty</translation>
    </message>
    <message>
        <source>Complexion opens JPEG, PNG, TIFF, GIF and BMP.</source>
        <translation>Complexion otwiera JPEG, PNG, TIFF, GIF i BMP.</translation>
    </message>
    <message>
        <source>“%1” is a camera’s raw file.</source>
        <translation>„%1” to surowy plik z aparatu.</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from your raw developer.</source>
        <translation>Wyeksportuj JPEG lub TIFF ze swojego programu do wywoływania zdjęć.</translation>
    </message>
    <message>
        <source>“%1” is not a still picture.</source>
        <translation>„%1” nie jest nieruchomym obrazem.</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from the program that opens it.</source>
        <translation>Wyeksportuj JPEG lub TIFF z programu, który go otwiera.</translation>
    </message>
    <message>
        <source>The file is damaged: part of the picture is missing.</source>
        <translation>Plik jest uszkodzony: brakuje części obrazu.</translation>
    </message>
    <message>
        <source>In the saved copy: %1.</source>
        <translation>W zapisanej kopii: %1.</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>The photo cannot be saved: %1 cannot hold pictures this large.</source>
        <translation>Nie można zapisać zdjęcia: %1 nie mieści tak dużych obrazów.</translation>
    </message>
    <message>
        <source>“%1” is not a picture.</source>
        <translation>„%1” nie jest obrazem.</translation>
    </message>
    <message>
        <source>“%1” is too large to be opened.</source>
        <translation>„%1” jest zbyt duży, aby go otworzyć.</translation>
    </message>
    <message>
        <source>There is not enough memory to open “%1”.</source>
        <translation>Za mało pamięci, aby otworzyć „%1”.</translation>
    </message>
    <message>
        <source>“%1” cannot be read. It may have been moved, or you may not have permission.</source>
        <translation>Nie można odczytać „%1”. Być może plik przeniesiono lub nie masz uprawnień.</translation>
    </message>
    <message>
        <source>“%1” is damaged, or of a kind that Complexion does not know.</source>
        <translation>„%1” jest uszkodzony lub rodzaju, którego Complexion nie zna.</translation>
    </message>
    <message>
        <source>“%1” has the format %2.</source>
        <translation>„%1” ma format %2.</translation>
    </message>
    <message>
        <source>“%1” needs a name that ends with .jpg, .png, .tiff, .gif or .bmp.</source>
        <translation>Nazwa pliku „%1” musi kończyć się na .jpg, .png, .tiff, .gif lub .bmp.</translation>
    </message>
</context>
<context>
    <name>RepairWords</name>
    <message>
        <source>Repaired one pixel.</source>
        <translation>Wyretuszowane piksele: 1.</translation>
    </message>
    <message>
        <source>One pixel would be repaired.</source>
        <translation>Piksele do wyretuszowania: 1.</translation>
    </message>
    <message>
        <source>Repaired %1 pixels.</source>
        <translation>Wyretuszowane piksele: %1.</translation>
    </message>
    <message>
        <source>%1 pixels would be repaired.</source>
        <translation>Piksele do wyretuszowania: %1.</translation>
    </message>
    <message>
        <source>at the top</source>
        <translation>u góry</translation>
    </message>
    <message>
        <source>at the top right</source>
        <translation>u góry po prawej</translation>
    </message>
    <message>
        <source>on the right</source>
        <translation>po prawej</translation>
    </message>
    <message>
        <source>at the bottom right</source>
        <translation>u dołu po prawej</translation>
    </message>
    <message>
        <source>at the bottom</source>
        <translation>u dołu</translation>
    </message>
    <message>
        <source>at the bottom left</source>
        <translation>u dołu po lewej</translation>
    </message>
    <message>
        <source>on the left</source>
        <translation>po lewej</translation>
    </message>
    <message>
        <source>at the top left</source>
        <translation>u góry po lewej</translation>
    </message>
    <message>
        <source>not enough memory</source>
        <translation>za mało pamięci</translation>
    </message>
    <message>
        <source>nothing stands out from the skin</source>
        <translation>nic nie odróżnia się od skóry</translation>
    </message>
    <message>
        <source>the skin differs too much %1</source>
        <translation>skóra różni się zbyt mocno %1</translation>
    </message>
    <message>
        <source>something larger reaches into the ring %1</source>
        <translation>coś większego wchodzi w pierścień %1</translation>
    </message>
    <message>
        <source>too little clean skin in the ring</source>
        <translation>za mało czystej skóry w pierścieniu</translation>
    </message>
    <message>
        <source>no skin nearby to match</source>
        <translation>brak pasującej skóry w pobliżu</translation>
    </message>
    <message>
        <source>too close to the edge of the photo</source>
        <translation>zbyt blisko krawędzi zdjęcia</translation>
    </message>
    <message>
        <source>Not repaired: %1.</source>
        <translation>Bez retuszu: %1.</translation>
    </message>
</context>
<context>
    <name>Repairs</name>
    <message>
        <source>Flat color</source>
        <translation>Jednolity</translation>
    </message>
    <message>
        <source>Natural</source>
        <translation>Naturalny</translation>
    </message>
</context>
<context>
    <name>Steps</name>
    <message>
        <source>repair</source>
        <translation>retusz</translation>
    </message>
    <message>
        <source>natural repair</source>
        <translation>naturalny retusz</translation>
    </message>
</context>
<context>
    <name>complexion::Actions</name>
    <message>
        <source>Select image…</source>
        <translation>Wybierz obraz…</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>Wczytaj obraz ponownie</translation>
    </message>
    <message>
        <source>Save image…</source>
        <translation>Zapisz obraz…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Zakończ</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Cofnij</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Ponów</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Powiększ</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Pomniejsz</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Dopasuj do okna</translation>
    </message>
    <message>
        <source>Actual pixels</source>
        <translation>Rzeczywisty rozmiar</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>Pokaż oryginał</translation>
    </message>
    <message>
        <source>Preview the repair</source>
        <translation>Podgląd retuszu</translation>
    </message>
    <message>
        <source>Larger edit area</source>
        <translation>Większy obszar</translation>
    </message>
    <message>
        <source>Fit the edit area</source>
        <translation>Dopasuj obszar</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Dopasuj</translation>
    </message>
    <message>
        <source>Fit the edit area to the blemish under it</source>
        <translation>Dopasuj obszar do niedoskonałości</translation>
    </message>
    <message>
        <source>Smaller edit area</source>
        <translation>Mniejszy obszar</translation>
    </message>
    <message>
        <source>Video tutorial</source>
        <translation>Samouczek wideo</translation>
    </message>
    <message>
        <source>About Complexion</source>
        <translation>O programie Complexion</translation>
    </message>
    <message>
        <source>no photo is open</source>
        <translation>nie otwarto zdjęcia</translation>
    </message>
    <message>
        <source>Select image</source>
        <translation>Wybierz obraz</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>Zapisz obraz</translation>
    </message>
    <message>
        <source>nothing to undo</source>
        <translation>nie ma czego cofnąć</translation>
    </message>
    <message>
        <source>nothing to redo</source>
        <translation>nie ma czego ponowić</translation>
    </message>
    <message>
        <source>Hold to see the original</source>
        <translation>Przytrzymaj, aby zobaczyć oryginał</translation>
    </message>
    <message>
        <source>not included in this build</source>
        <translation>brak w tym wydaniu</translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation>Cofnij: %1</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>Ponów: %1</translation>
    </message>
    <message>
        <source>Next blemish</source>
        <translation>Następna niedoskonałość</translation>
    </message>
    <message>
        <source>Previous blemish</source>
        <translation>Poprzednia niedoskonałość</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Zamknij</translation>
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
        <translation>Wyższy próg</translation>
    </message>
    <message>
        <source>Lower threshold</source>
        <translation>Niższy próg</translation>
    </message>
    <message>
        <source>Show the controls</source>
        <translation>Pokaż elementy sterujące</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Pełny ekran</translation>
    </message>
    <message>
        <source>Show blemishes</source>
        <translation>Pokaż niedoskonałości</translation>
    </message>
    <message>
        <source>Only the ten strongest</source>
        <translation>Tylko dziesięć najwyraźniejszych</translation>
    </message>
</context>
<context>
    <name>complexion::Aim</name>
    <message>
        <source>Column %1, row %2. %3</source>
        <translation>Kolumna %1, wiersz %2. %3</translation>
    </message>
    <message>
        <source>F fits the ring</source>
        <translation>F dopasowuje pierścień</translation>
    </message>
    <message>
        <source>Nothing larger to fit here.</source>
        <translation>Nie ma tu nic większego.</translation>
    </message>
    <message>
        <source>No blemish to fit here.</source>
        <translation>Nie ma tu niedoskonałości.</translation>
    </message>
    <message>
        <source>The edit area fits: %1 pixels.</source>
        <translation>Obszar dopasowany, promień w pikselach: %1.</translation>
    </message>
    <message>
        <source>dark spot</source>
        <translation>ciemna plamka</translation>
    </message>
    <message>
        <source>red spot</source>
        <translation>czerwona plamka</translation>
    </message>
    <message>
        <source>light spot</source>
        <translation>jasna plamka</translation>
    </message>
    <message>
        <source>No blemishes found.</source>
        <translation>Nie znaleziono niedoskonałości.</translation>
    </message>
    <message>
        <source>Suggestion %1 of %2: %3, %4 pixels</source>
        <translation>Propozycja %1 z %2: %3, promień w pikselach: %4</translation>
    </message>
    <message>
        <source>Zoom in to aim</source>
        <translation>Powiększ, aby wycelować</translation>
    </message>
</context>
<context>
    <name>complexion::BusySign</name>
    <message>
        <source>Cancel</source>
        <translation>Anuluj</translation>
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
        <translation>Własny kolor</translation>
    </message>
</context>
<context>
    <name>complexion::ContinueCard</name>
    <message>
        <source>Continue where you left off: %1, %2 repairs</source>
        <translation>Kontynuuj od miejsca przerwania: %1, kroki retuszu: %2</translation>
    </message>
    <message>
        <source>Continue where you left off: %1</source>
        <translation>Kontynuuj od miejsca przerwania: %1</translation>
    </message>
    <message>
        <source>Continue where you left off: %1, 1 repair</source>
        <translation>Kontynuuj od miejsca przerwania: %1, kroki retuszu: 1</translation>
    </message>
    <message>
        <source>Forget</source>
        <translation>Odrzuć</translation>
    </message>
    <message>
        <source>Forget %1</source>
        <translation>Odrzuć %1</translation>
    </message>
</context>
<context>
    <name>complexion::CustomImageView</name>
    <message>
        <source>Photo</source>
        <translation>Zdjęcie</translation>
    </message>
</context>
<context>
    <name>complexion::FilePanel</name>
    <message>
        <source>Photos: %1</source>
        <translation>Zdjęcia: %1</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Miejsca</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>Folder:</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Folder</translation>
    </message>
    <message>
        <source>Parent folder</source>
        <translation>Folder nadrzędny</translation>
    </message>
    <message>
        <source>Parent folder (Alt+Up)</source>
        <translation>Folder nadrzędny (Alt+W górę)</translation>
    </message>
    <message>
        <source>File name:</source>
        <translation>Nazwa pliku:</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Nazwa pliku</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Anuluj</translation>
    </message>
    <message>
        <source>Looking for the file…</source>
        <translation>Szukanie pliku…</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Komputer</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Folder domowy</translation>
    </message>
</context>
<context>
    <name>complexion::FolderModel</name>
    <message>
        <source>Name</source>
        <translation>Nazwa</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Rozmiar</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Zmieniono</translation>
    </message>
</context>
<context>
    <name>complexion::FolderView</name>
    <message>
        <source>Files</source>
        <translation>Pliki</translation>
    </message>
    <message>
        <source>Reading the folder…</source>
        <translation>Odczytywanie folderu…</translation>
    </message>
    <message>
        <source>This folder cannot be listed: %1</source>
        <translation>Nie można pokazać tego folderu: %1</translation>
    </message>
    <message>
        <source>There are no photos here.</source>
        <translation>Nie ma tu zdjęć.</translation>
    </message>
</context>
<context>
    <name>complexion::MainWindow</name>
    <message>
        <source>Original</source>
        <translation>Oryginał</translation>
    </message>
</context>
<context>
    <name>complexion::OpenFilePanel</name>
    <message>
        <source>Select image</source>
        <translation>Wybierz obraz</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Otwórz</translation>
    </message>
    <message>
        <source>There is no file “%1”.</source>
        <translation>Nie ma pliku „%1”.</translation>
    </message>
</context>
<context>
    <name>complexion::SaveFilePanel</name>
    <message>
        <source>Save image</source>
        <translation>Zapisz obraz</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Zapisz</translation>
    </message>
    <message>
        <source>“%1” is the photo that you opened. Saving here replaces it for good. Do you want to replace it?</source>
        <translation>„%1” to otwarte zdjęcie. Zapis w tym miejscu zastąpi je na zawsze. Czy je zastąpić?</translation>
    </message>
    <message>
        <source>“%1” already exists. Do you want to replace it?</source>
        <translation>„%1” już istnieje. Czy go zastąpić?</translation>
    </message>
</context>
<context>
    <name>complexion::SettingsBar</name>
    <message>
        <source>Fit</source>
        <translation>Dopasuj</translation>
    </message>
    <message>
        <source>Edit area size</source>
        <translation>Rozmiar obszaru</translation>
    </message>
    <message>
        <source>Radius of the disc that a click repairs, in pixels of the photo</source>
        <translation>Promień koła retuszowanego kliknięciem, w pikselach zdjęcia</translation>
    </message>
    <message>
        <source>Threshold</source>
        <translation>Próg</translation>
    </message>
    <message>
        <source>How much a pixel must differ from the skin around it to be repaired</source>
        <translation>Jak bardzo piksel musi różnić się od skóry wokół, aby go retuszować</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>Kolor automatyczny</translation>
    </message>
    <message>
        <source>Take the color of the skin around the blemish</source>
        <translation>Użyj koloru skóry wokół niedoskonałości</translation>
    </message>
    <message>
        <source>Custom color</source>
        <translation>Własny kolor</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>Pobierz kolor ze zdjęcia</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Kolor</translation>
    </message>
    <message>
        <source>Custom color: only used when Autodetect Color is off</source>
        <translation>Własny kolor: tylko bez koloru automatycznego</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used when Autodetect Color is off</source>
        <translation>Pobierz kolor ze zdjęcia: tylko bez koloru automatycznego</translation>
    </message>
    <message>
        <source>Pick a color from the photo: no photo is open</source>
        <translation>Pobierz kolor ze zdjęcia: nie otwarto zdjęcia</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Efekt</translation>
    </message>
    <message>
        <source>Effect applied to the whole photo, and to the saved copy</source>
        <translation>Efekt na całym zdjęciu i w zapisanej kopii</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Retusz</translation>
    </message>
    <message>
        <source>Fill a blemish with one color, or with the shading and texture of the skin around it</source>
        <translation>Wypełnij niedoskonałość jednym kolorem albo cieniowaniem i fakturą skóry wokół</translation>
    </message>
    <message>
        <source>The natural repair always takes the skin&apos;s own color</source>
        <translation>Naturalny retusz zawsze używa koloru samej skóry</translation>
    </message>
    <message>
        <source>Custom color: only used by the repair “Flat color”</source>
        <translation>Własny kolor: tylko dla retuszu „Jednolity”</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used by the repair “Flat color”</source>
        <translation>Pobierz kolor ze zdjęcia: tylko dla retuszu „Jednolity”</translation>
    </message>
    <message>
        <source>More settings</source>
        <translation>Więcej ustawień</translation>
    </message>
</context>
<context>
    <name>complexion::StrokeDrawing</name>
    <message>
        <source>Strokes need the natural repair.</source>
        <translation>Pociągnięcia wymagają naturalnego retuszu.</translation>
    </message>
    <message>
        <source>Stroke begun.</source>
        <translation>Rozpoczęto pociągnięcie.</translation>
    </message>
    <message>
        <source>Strokes need an edit area of at most %1 pixels.</source>
        <translation>Pociągnięcia wymagają obszaru edycji o rozmiarze najwyżej %1 pikseli.</translation>
    </message>
</context>
<context>
    <name>complexion::SuggestionMarks</name>
    <message>
        <source>Blemishes marked: %1.</source>
        <translation>Oznaczone niedoskonałości: %1.</translation>
    </message>
</context>
<context>
    <name>complexion::ViewController</name>
    <message>
        <source>Restoring the repairs…</source>
        <translation>Przywracanie retuszu…</translation>
    </message>
    <message>
        <source>Opening the photo…</source>
        <translation>Otwieranie zdjęcia…</translation>
    </message>
    <message>
        <source>Saving the photo…</source>
        <translation>Zapisywanie zdjęcia…</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>Kolor automatyczny</translation>
    </message>
    <message>
        <source>Undone.</source>
        <translation>Cofnięto.</translation>
    </message>
    <message>
        <source>Undone: %1.</source>
        <translation>Cofnięto: %1.</translation>
    </message>
    <message>
        <source>Redone.</source>
        <translation>Ponowiono.</translation>
    </message>
    <message>
        <source>Redone: %1.</source>
        <translation>Ponowiono: %1.</translation>
    </message>
</context>
<context>
    <name>complexion::WindowContents</name>
    <message>
        <source>Select image</source>
        <translation>Wybierz obraz</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>Wczytaj obraz ponownie</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>Zapisz obraz</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Cofnij</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Ponów</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Powiększ</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Pomniejsz</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Dopasuj do okna</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>Pokaż oryginał</translation>
    </message>
</context>
<context>
    <name>complexion::ZoomButton</name>
    <message>
        <source>Zoom</source>
        <translation>Powiększenie</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Zoom: %1</source>
        <translation>Powiększenie: %1</translation>
    </message>
    <message>
        <source>Zoom: no photo is open</source>
        <translation>Powiększenie: nie otwarto zdjęcia</translation>
    </message>
</context>
</TS>
