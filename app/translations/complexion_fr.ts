<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Alerts</name>
    <message>
        <source>The photo has been moved or deleted. Its repairs are kept until you forget them.</source>
        <translation>La photo a été déplacée ou supprimée. Ses retouches sont conservées jusqu’à ce que vous les abandonniez.</translation>
    </message>
    <message>
        <source>The photo has changed since then. Its repairs are kept until you forget them.</source>
        <translation>La photo a changé depuis. Ses retouches sont conservées jusqu’à ce que vous les abandonniez.</translation>
    </message>
    <message>
        <source>The repairs could not be applied to the photo. They are kept until you forget them.</source>
        <translation>Les retouches n’ont pas pu être appliquées à la photo. Elles sont conservées jusqu’à ce que vous les abandonniez.</translation>
    </message>
    <message>
        <source>The repairs of this photo will be lost. Are you sure you want to forget them?</source>
        <translation>Les retouches de cette photo seront perdues. Voulez-vous vraiment les abandonner ?</translation>
    </message>
    <message>
        <source>Removes blemishes from portraits. Free software under the GNU General Public License, version 3 or later.</source>
        <translation>Retire les imperfections des portraits. Logiciel libre sous licence publique générale GNU, version 3 ou ultérieure.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>This folder is emptied when Complexion ends. Please choose another one.</source>
        <translation>Ce dossier est vidé quand Complexion se ferme. Veuillez en choisir un autre.</translation>
    </message>
    <message>
        <source>The image could not be loaded.</source>
        <translation>L’image n’a pas pu être chargée.</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to select a new image?</source>
        <translation>Toutes les modifications non enregistrées seront perdues. Voulez-vous vraiment choisir une autre image ?</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to reload the image?</source>
        <translation>Toutes les modifications non enregistrées seront perdues. Voulez-vous vraiment recharger l’image ?</translation>
    </message>
    <message>
        <source>Image saved successfully.</source>
        <translation>L’image a été enregistrée.</translation>
    </message>
    <message>
        <source>Could not save the image.</source>
        <translation>L’image n’a pas pu être enregistrée.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Non</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to exit the application?</source>
        <translation>Toutes les modifications non enregistrées seront perdues. Voulez-vous vraiment quitter l’application ?</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to add a new image?</source>
        <translation>Toutes les modifications non enregistrées seront perdues. Voulez-vous vraiment ajouter une nouvelle image ?</translation>
    </message>
</context>
<context>
    <name>Cards</name>
    <message>
        <source>Drop a photo here</source>
        <translation>Déposez une photo ici</translation>
    </message>
    <message>
        <source>or click to choose one</source>
        <translation>ou cliquez pour en choisir une</translation>
    </message>
    <message>
        <source>Set the edit area a little larger than the blemish.</source>
        <translation>Réglez la zone un peu plus grande que l’imperfection.</translation>
    </message>
    <message>
        <source>Click the blemish: it blends into the skin around it.</source>
        <translation>Cliquez sur l’imperfection : elle se fond dans la peau.</translation>
    </message>
    <message>
        <source>Save a copy. Your photo stays as it is.</source>
        <translation>Enregistrez une copie. Votre photo reste intacte.</translation>
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
        <translation>Chrome</translation>
    </message>
    <message>
        <source>Fade</source>
        <translation>Délavé</translation>
    </message>
    <message>
        <source>Instant</source>
        <translation>Instantané</translation>
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
        <translation>Procédé</translation>
    </message>
    <message>
        <source>Tonal</source>
        <translation>Tonal</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>Transfert</translation>
    </message>
</context>
<context>
    <name>Menus</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
    <message>
        <source>Open again</source>
        <translation>Rouvrir</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>É&amp;dition</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Retouche</translation>
    </message>
    <message>
        <source>Autodetect color</source>
        <translation>Couleur automatique</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>Prélever une couleur sur la photo</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Effet</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Affichage</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>A&amp;ide</translation>
    </message>
</context>
<context>
    <name>Notices</name>
    <message>
        <source>%1 bits per channel become 8</source>
        <translation>%1 bits par composante deviennent 8</translation>
    </message>
    <message>
        <source>CMYK becomes RGB</source>
        <translation>le CMJN devient RVB</translation>
    </message>
    <message>
        <source>Lab becomes RGB</source>
        <translation>le Lab devient RVB</translation>
    </message>
    <message>
        <source>only page 1 of %1</source>
        <translation>seulement la page 1 sur %1</translation>
    </message>
    <message>
        <source>only the first of %1 frames</source>
        <translation>seulement la première de %1 images</translation>
    </message>
    <message>
        <source>the layers are merged</source>
        <translation>les calques sont fusionnés</translation>
    </message>
    <message>
        <source>the moving picture is left out</source>
        <translation>l’image animée est omise</translation>
    </message>
    <message>
        <source>the embedded preview is left out</source>
        <translation>l’aperçu intégré est omis</translation>
    </message>
    <message>
        <source>Complexion opens JPEG, PNG, TIFF, GIF and BMP.</source>
        <translation>Complexion ouvre les formats JPEG, PNG, TIFF, GIF et BMP.</translation>
    </message>
    <message>
        <source>“%1” is a camera’s raw file.</source>
        <translation>« %1 » est un fichier brut d’appareil photo.</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from your raw developer.</source>
        <translation>Exportez un JPEG ou un TIFF depuis votre logiciel de développement.</translation>
    </message>
    <message>
        <source>“%1” is not a still picture.</source>
        <translation>« %1 » n’est pas une image fixe.</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from the program that opens it.</source>
        <translation>Exportez un JPEG ou un TIFF depuis le programme qui l’ouvre.</translation>
    </message>
    <message>
        <source>The file is damaged: part of the picture is missing.</source>
        <translation>Le fichier est endommagé : il manque une partie de l’image.</translation>
    </message>
    <message>
        <source>In the saved copy: %1.</source>
        <translation>Dans la copie enregistrée : %1.</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>The photo cannot be saved: %1 cannot hold pictures this large.</source>
        <translation>La photo ne peut pas être enregistrée : le format %1 n’admet pas d’images aussi grandes.</translation>
    </message>
    <message>
        <source>“%1” is not a picture.</source>
        <translation>« %1 » n’est pas une image.</translation>
    </message>
    <message>
        <source>“%1” is too large to be opened.</source>
        <translation>« %1 » est trop grand pour être ouvert.</translation>
    </message>
    <message>
        <source>There is not enough memory to open “%1”.</source>
        <translation>La mémoire ne suffit pas pour ouvrir « %1 ».</translation>
    </message>
    <message>
        <source>“%1” cannot be read. It may have been moved, or you may not have permission.</source>
        <translation>« %1 » est illisible. Le fichier a peut-être été déplacé, ou vous n’y avez pas accès.</translation>
    </message>
    <message>
        <source>“%1” is damaged, or of a kind that Complexion does not know.</source>
        <translation>« %1 » est endommagé, ou d’un type que Complexion ne connaît pas.</translation>
    </message>
    <message>
        <source>“%1” has the format %2.</source>
        <translation>« %1 » est au format %2.</translation>
    </message>
    <message>
        <source>“%1” needs a name that ends with .jpg, .png, .tiff, .gif or .bmp.</source>
        <translation>Le nom de « %1 » doit se terminer par .jpg, .png, .tiff, .gif ou .bmp.</translation>
    </message>
</context>
<context>
    <name>RepairWords</name>
    <message>
        <source>Repaired one pixel.</source>
        <translation>Un pixel retouché.</translation>
    </message>
    <message>
        <source>One pixel would be repaired.</source>
        <translation>Un pixel serait retouché.</translation>
    </message>
    <message>
        <source>Repaired %1 pixels.</source>
        <translation>%1 pixels retouchés.</translation>
    </message>
    <message>
        <source>%1 pixels would be repaired.</source>
        <translation>%1 pixels seraient retouchés.</translation>
    </message>
    <message>
        <source>at the top</source>
        <translation>en haut</translation>
    </message>
    <message>
        <source>at the top right</source>
        <translation>en haut à droite</translation>
    </message>
    <message>
        <source>on the right</source>
        <translation>à droite</translation>
    </message>
    <message>
        <source>at the bottom right</source>
        <translation>en bas à droite</translation>
    </message>
    <message>
        <source>at the bottom</source>
        <translation>en bas</translation>
    </message>
    <message>
        <source>at the bottom left</source>
        <translation>en bas à gauche</translation>
    </message>
    <message>
        <source>on the left</source>
        <translation>à gauche</translation>
    </message>
    <message>
        <source>at the top left</source>
        <translation>en haut à gauche</translation>
    </message>
    <message>
        <source>not enough memory</source>
        <translation>mémoire insuffisante</translation>
    </message>
    <message>
        <source>nothing stands out from the skin</source>
        <translation>rien ne se détache de la peau</translation>
    </message>
    <message>
        <source>the skin differs too much %1</source>
        <translation>la peau diffère trop %1</translation>
    </message>
    <message>
        <source>something larger reaches into the ring %1</source>
        <translation>quelque chose de plus grand entre dans l’anneau %1</translation>
    </message>
    <message>
        <source>too little clean skin in the ring</source>
        <translation>trop peu de peau nette dans l’anneau</translation>
    </message>
    <message>
        <source>no skin nearby to match</source>
        <translation>pas de peau assortie à proximité</translation>
    </message>
    <message>
        <source>too close to the edge of the photo</source>
        <translation>trop près du bord de la photo</translation>
    </message>
    <message>
        <source>Not repaired: %1.</source>
        <translation>Non retouché : %1.</translation>
    </message>
</context>
<context>
    <name>Repairs</name>
    <message>
        <source>Flat color</source>
        <translation>Couleur unie</translation>
    </message>
    <message>
        <source>Natural</source>
        <translation>Naturelle</translation>
    </message>
</context>
<context>
    <name>Steps</name>
    <message>
        <source>repair</source>
        <translation>la retouche</translation>
    </message>
    <message>
        <source>natural repair</source>
        <translation>la retouche naturelle</translation>
    </message>
</context>
<context>
    <name>complexion::Actions</name>
    <message>
        <source>Select image…</source>
        <translation>Choisir une image…</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>Recharger l’image</translation>
    </message>
    <message>
        <source>Save image…</source>
        <translation>Enregistrer l’image…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Rétablir</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Zoom avant</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Zoom arrière</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Ajuster à la fenêtre</translation>
    </message>
    <message>
        <source>Actual pixels</source>
        <translation>Taille réelle</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>Afficher l’original</translation>
    </message>
    <message>
        <source>Preview the repair</source>
        <translation>Aperçu de la retouche</translation>
    </message>
    <message>
        <source>Larger edit area</source>
        <translation>Zone plus grande</translation>
    </message>
    <message>
        <source>Fit the edit area</source>
        <translation>Ajuster la zone</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Ajuster</translation>
    </message>
    <message>
        <source>Fit the edit area to the blemish under it</source>
        <translation>Ajuster la zone à l’imperfection</translation>
    </message>
    <message>
        <source>Smaller edit area</source>
        <translation>Zone plus petite</translation>
    </message>
    <message>
        <source>Video tutorial</source>
        <translation>Tutoriel vidéo</translation>
    </message>
    <message>
        <source>About Complexion</source>
        <translation>À propos de Complexion</translation>
    </message>
    <message>
        <source>no photo is open</source>
        <translation>aucune photo n’est ouverte</translation>
    </message>
    <message>
        <source>Select image</source>
        <translation>Choisir une image</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>Enregistrer l’image</translation>
    </message>
    <message>
        <source>nothing to undo</source>
        <translation>rien à annuler</translation>
    </message>
    <message>
        <source>nothing to redo</source>
        <translation>rien à rétablir</translation>
    </message>
    <message>
        <source>Hold to see the original</source>
        <translation>Maintenir pour voir l’original</translation>
    </message>
    <message>
        <source>not included in this build</source>
        <translation>absent de cette version</translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation>Annuler %1</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>Rétablir %1</translation>
    </message>
    <message>
        <source>Next blemish</source>
        <translation>Imperfection suivante</translation>
    </message>
    <message>
        <source>Previous blemish</source>
        <translation>Imperfection précédente</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
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
        <translation>Seuil plus élevé</translation>
    </message>
    <message>
        <source>Lower threshold</source>
        <translation>Seuil plus bas</translation>
    </message>
    <message>
        <source>Show the controls</source>
        <translation>Afficher les commandes</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Plein écran</translation>
    </message>
    <message>
        <source>Show blemishes</source>
        <translation>Afficher les imperfections</translation>
    </message>
    <message>
        <source>Only the ten strongest</source>
        <translation>Seulement les dix plus visibles</translation>
    </message>
</context>
<context>
    <name>complexion::Aim</name>
    <message>
        <source>Column %1, row %2. %3</source>
        <translation>Colonne %1, ligne %2. %3</translation>
    </message>
    <message>
        <source>F fits the ring</source>
        <translation>F ajuste l’anneau</translation>
    </message>
    <message>
        <source>Nothing larger to fit here.</source>
        <translation>Rien de plus grand ici.</translation>
    </message>
    <message>
        <source>No blemish to fit here.</source>
        <translation>Aucune imperfection ici.</translation>
    </message>
    <message>
        <source>The edit area fits: %1 pixels.</source>
        <translation>La zone est ajustée : %1 pixels.</translation>
    </message>
    <message>
        <source>dark spot</source>
        <translation>tache sombre</translation>
    </message>
    <message>
        <source>red spot</source>
        <translation>tache rouge</translation>
    </message>
    <message>
        <source>light spot</source>
        <translation>tache claire</translation>
    </message>
    <message>
        <source>No blemishes found.</source>
        <translation>Aucune imperfection trouvée.</translation>
    </message>
    <message>
        <source>Suggestion %1 of %2: %3, %4 pixels</source>
        <translation>Suggestion %1 sur %2 : %3, %4 pixels</translation>
    </message>
    <message>
        <source>Zoom in to aim</source>
        <translation>Zoomez pour viser</translation>
    </message>
</context>
<context>
    <name>complexion::BusySign</name>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
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
        <translation>Couleur choisie</translation>
    </message>
</context>
<context>
    <name>complexion::ContinueCard</name>
    <message>
        <source>Continue where you left off: %1, %2 repairs</source>
        <translation>Reprendre où vous en étiez : %1, %2 retouches</translation>
    </message>
    <message>
        <source>Continue where you left off: %1</source>
        <translation>Reprendre où vous en étiez : %1</translation>
    </message>
    <message>
        <source>Continue where you left off: %1, 1 repair</source>
        <translation>Reprendre où vous en étiez : %1, 1 retouche</translation>
    </message>
    <message>
        <source>Forget</source>
        <translation>Abandonner</translation>
    </message>
    <message>
        <source>Forget %1</source>
        <translation>Abandonner %1</translation>
    </message>
</context>
<context>
    <name>complexion::CustomImageView</name>
    <message>
        <source>Photo</source>
        <translation>Photo</translation>
    </message>
</context>
<context>
    <name>complexion::FilePanel</name>
    <message>
        <source>Photos: %1</source>
        <translation>Photos : %1</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Emplacements</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>Dossier :</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Dossier</translation>
    </message>
    <message>
        <source>Parent folder</source>
        <translation>Dossier parent</translation>
    </message>
    <message>
        <source>Parent folder (Alt+Up)</source>
        <translation>Dossier parent (Alt+Haut)</translation>
    </message>
    <message>
        <source>File name:</source>
        <translation>Nom du fichier :</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Nom du fichier</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Looking for the file…</source>
        <translation>Recherche du fichier…</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Ordinateur</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Dossier personnel</translation>
    </message>
</context>
<context>
    <name>complexion::FolderModel</name>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Taille</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Modifié</translation>
    </message>
</context>
<context>
    <name>complexion::FolderView</name>
    <message>
        <source>Files</source>
        <translation>Fichiers</translation>
    </message>
    <message>
        <source>Reading the folder…</source>
        <translation>Lecture du dossier…</translation>
    </message>
    <message>
        <source>This folder cannot be listed: %1</source>
        <translation>Ce dossier ne peut pas être affiché : %1</translation>
    </message>
    <message>
        <source>There are no photos here.</source>
        <translation>Il n’y a pas de photos ici.</translation>
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
        <translation>Choisir une image</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>There is no file “%1”.</source>
        <translation>Il n’y a pas de fichier « %1 ».</translation>
    </message>
</context>
<context>
    <name>complexion::SaveFilePanel</name>
    <message>
        <source>Save image</source>
        <translation>Enregistrer l’image</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>“%1” is the photo that you opened. Saving here replaces it for good. Do you want to replace it?</source>
        <translation>« %1 » est la photo que vous avez ouverte. L’enregistrer ici la remplace définitivement. Voulez-vous la remplacer ?</translation>
    </message>
    <message>
        <source>“%1” already exists. Do you want to replace it?</source>
        <translation>« %1 » existe déjà. Voulez-vous le remplacer ?</translation>
    </message>
</context>
<context>
    <name>complexion::SettingsBar</name>
    <message>
        <source>Fit</source>
        <translation>Ajuster</translation>
    </message>
    <message>
        <source>Edit area size</source>
        <translation>Taille de la zone</translation>
    </message>
    <message>
        <source>Radius of the disc that a click repairs, in pixels of the photo</source>
        <translation>Rayon du disque qu’un clic retouche, en pixels de la photo</translation>
    </message>
    <message>
        <source>Threshold</source>
        <translation>Seuil</translation>
    </message>
    <message>
        <source>How much a pixel must differ from the skin around it to be repaired</source>
        <translation>Écart à partir duquel un pixel est retouché, par rapport à la peau autour</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>Couleur automatique</translation>
    </message>
    <message>
        <source>Take the color of the skin around the blemish</source>
        <translation>Prendre la couleur de la peau autour de l’imperfection</translation>
    </message>
    <message>
        <source>Custom color</source>
        <translation>Couleur choisie</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>Prélever une couleur sur la photo</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Couleur</translation>
    </message>
    <message>
        <source>Custom color: only used when Autodetect Color is off</source>
        <translation>Couleur choisie : seulement sans couleur automatique</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used when Autodetect Color is off</source>
        <translation>Prélever une couleur sur la photo : seulement sans couleur automatique</translation>
    </message>
    <message>
        <source>Pick a color from the photo: no photo is open</source>
        <translation>Prélever une couleur sur la photo : aucune photo n’est ouverte</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Effet</translation>
    </message>
    <message>
        <source>Effect applied to the whole photo, and to the saved copy</source>
        <translation>Effet appliqué à toute la photo et à la copie enregistrée</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Retouche</translation>
    </message>
    <message>
        <source>Fill a blemish with one color, or with the shading and texture of the skin around it</source>
        <translation>Remplir une imperfection d’une seule couleur, ou du modelé et de la texture de la peau autour</translation>
    </message>
    <message>
        <source>The natural repair always takes the skin&apos;s own color</source>
        <translation>La retouche naturelle prend toujours la couleur de la peau</translation>
    </message>
    <message>
        <source>Custom color: only used by the repair “Flat color”</source>
        <translation>Couleur choisie : seulement pour la retouche « Couleur unie »</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used by the repair “Flat color”</source>
        <translation>Prélever une couleur sur la photo : seulement pour la retouche « Couleur unie »</translation>
    </message>
    <message>
        <source>More settings</source>
        <translation>Autres réglages</translation>
    </message>
</context>
<context>
    <name>complexion::StrokeDrawing</name>
    <message>
        <source>Strokes need the natural repair.</source>
        <translation>Les traits nécessitent la réparation naturelle.</translation>
    </message>
    <message>
        <source>Stroke begun.</source>
        <translation>Trait commencé.</translation>
    </message>
    <message>
        <source>Strokes need an edit area of at most %1 pixels.</source>
        <translation>Les traits nécessitent une zone de retouche de %1 pixels au plus.</translation>
    </message>
</context>
<context>
    <name>complexion::SuggestionMarks</name>
    <message>
        <source>Blemishes marked: %1.</source>
        <translation>Imperfections signalées : %1.</translation>
    </message>
</context>
<context>
    <name>complexion::ViewController</name>
    <message>
        <source>Restoring the repairs…</source>
        <translation>Restauration des retouches…</translation>
    </message>
    <message>
        <source>Opening the photo…</source>
        <translation>Ouverture de la photo…</translation>
    </message>
    <message>
        <source>Saving the photo…</source>
        <translation>Enregistrement de la photo…</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>Couleur automatique</translation>
    </message>
    <message>
        <source>Undone.</source>
        <translation>Annulé.</translation>
    </message>
    <message>
        <source>Undone: %1.</source>
        <translation>Annulé : %1.</translation>
    </message>
    <message>
        <source>Redone.</source>
        <translation>Rétabli.</translation>
    </message>
    <message>
        <source>Redone: %1.</source>
        <translation>Rétabli : %1.</translation>
    </message>
</context>
<context>
    <name>complexion::WindowContents</name>
    <message>
        <source>Select image</source>
        <translation>Choisir une image</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>Recharger l’image</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>Enregistrer l’image</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Rétablir</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Zoom avant</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Zoom arrière</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Ajuster à la fenêtre</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>Afficher l’original</translation>
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
        <translation>Zoom : %1</translation>
    </message>
    <message>
        <source>Zoom: no photo is open</source>
        <translation>Zoom : aucune photo n’est ouverte</translation>
    </message>
</context>
</TS>
