<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>Alerts</name>
    <message>
        <source>The photo has been moved or deleted. Its repairs are kept until you forget them.</source>
        <translation>La foto se ha movido o eliminado. Sus retoques se conservan hasta que los descarte.</translation>
    </message>
    <message>
        <source>The photo has changed since then. Its repairs are kept until you forget them.</source>
        <translation>La foto ha cambiado desde entonces. Sus retoques se conservan hasta que los descarte.</translation>
    </message>
    <message>
        <source>The repairs could not be applied to the photo. They are kept until you forget them.</source>
        <translation>No se han podido aplicar los retoques a la foto. Se conservan hasta que los descarte.</translation>
    </message>
    <message>
        <source>The repairs of this photo will be lost. Are you sure you want to forget them?</source>
        <translation>Los retoques de esta foto se perderán. ¿Seguro que desea descartarlos?</translation>
    </message>
    <message>
        <source>Removes blemishes from portraits. Free software under the GNU General Public License, version 3 or later.</source>
        <translation>Elimina imperfecciones de los retratos. Software libre bajo la Licencia Pública General de GNU, versión 3 o posterior.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>This folder is emptied when Complexion ends. Please choose another one.</source>
        <translation>Esta carpeta se vacía al cerrar Complexion. Elija otra.</translation>
    </message>
    <message>
        <source>The image could not be loaded.</source>
        <translation>No se ha podido cargar la imagen.</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to select a new image?</source>
        <translation>Se perderán todos los cambios no guardados. ¿Seguro que desea elegir otra imagen?</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to reload the image?</source>
        <translation>Se perderán todos los cambios no guardados. ¿Seguro que desea volver a cargar la imagen?</translation>
    </message>
    <message>
        <source>Image saved successfully.</source>
        <translation>La imagen se ha guardado.</translation>
    </message>
    <message>
        <source>Could not save the image.</source>
        <translation>No se ha podido guardar la imagen.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Sí</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to exit the application?</source>
        <translation>Se perderán todos los cambios no guardados. ¿Seguro que desea salir de la aplicación?</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to add a new image?</source>
        <translation>Se perderán todos los cambios no guardados. ¿Seguro que desea añadir una imagen nueva?</translation>
    </message>
</context>
<context>
    <name>Cards</name>
    <message>
        <source>Drop a photo here</source>
        <translation>Suelte una foto aquí</translation>
    </message>
    <message>
        <source>or click to choose one</source>
        <translation>o haga clic para elegir una</translation>
    </message>
    <message>
        <source>Set the edit area a little larger than the blemish.</source>
        <translation>Elija un área algo mayor que la imperfección.</translation>
    </message>
    <message>
        <source>Click the blemish: it blends into the skin around it.</source>
        <translation>Haga clic en ella: se funde con la piel de alrededor.</translation>
    </message>
    <message>
        <source>Save a copy. Your photo stays as it is.</source>
        <translation>Guarde una copia. Su foto queda como está.</translation>
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
        <translation>Cromo</translation>
    </message>
    <message>
        <source>Fade</source>
        <translation>Desvaído</translation>
    </message>
    <message>
        <source>Instant</source>
        <translation>Instantánea</translation>
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
        <translation>Proceso</translation>
    </message>
    <message>
        <source>Tonal</source>
        <translation>Tonal</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>Transferencia</translation>
    </message>
</context>
<context>
    <name>Menus</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Archivo</translation>
    </message>
    <message>
        <source>Open again</source>
        <translation>Abrir de nuevo</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Editar</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Retoque</translation>
    </message>
    <message>
        <source>Autodetect color</source>
        <translation>Color automático</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>Tomar un color de la foto</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Efecto</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ver</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>A&amp;yuda</translation>
    </message>
</context>
<context>
    <name>Notices</name>
    <message>
        <source>%1 bits per channel become 8</source>
        <translation>%1 bits por canal pasan a 8</translation>
    </message>
    <message>
        <source>CMYK becomes RGB</source>
        <translation>CMYK pasa a RGB</translation>
    </message>
    <message>
        <source>Lab becomes RGB</source>
        <translation>Lab pasa a RGB</translation>
    </message>
    <message>
        <source>only page 1 of %1</source>
        <translation>solo la página 1 de %1</translation>
    </message>
    <message>
        <source>only the first of %1 frames</source>
        <translation>solo el primero de %1 fotogramas</translation>
    </message>
    <message>
        <source>the layers are merged</source>
        <translation>las capas se combinan</translation>
    </message>
    <message>
        <source>the moving picture is left out</source>
        <translation>se omite la imagen en movimiento</translation>
    </message>
    <message>
        <source>the embedded preview is left out</source>
        <translation>se omite la vista previa incrustada</translation>
    </message>
    <message>
        <source>Complexion opens JPEG, PNG, TIFF, GIF and BMP.</source>
        <translation>Complexion abre JPEG, PNG, TIFF, GIF y BMP.</translation>
    </message>
    <message>
        <source>“%1” is a camera’s raw file.</source>
        <translation>«%1» es un archivo en bruto de cámara.</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from your raw developer.</source>
        <translation>Exporte un JPEG o TIFF desde su programa de revelado.</translation>
    </message>
    <message>
        <source>“%1” is not a still picture.</source>
        <translation>«%1» no es una imagen fija.</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from the program that opens it.</source>
        <translation>Exporte un JPEG o TIFF desde el programa que lo abre.</translation>
    </message>
    <message>
        <source>The file is damaged: part of the picture is missing.</source>
        <translation>El archivo está dañado: falta una parte de la imagen.</translation>
    </message>
    <message>
        <source>In the saved copy: %1.</source>
        <translation>En la copia guardada: %1.</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>The photo cannot be saved: %1 cannot hold pictures this large.</source>
        <translation>No se puede guardar la foto: %1 no admite imágenes tan grandes.</translation>
    </message>
    <message>
        <source>“%1” is not a picture.</source>
        <translation>«%1» no es una imagen.</translation>
    </message>
    <message>
        <source>“%1” is too large to be opened.</source>
        <translation>«%1» es demasiado grande para abrirlo.</translation>
    </message>
    <message>
        <source>There is not enough memory to open “%1”.</source>
        <translation>No hay memoria suficiente para abrir «%1».</translation>
    </message>
    <message>
        <source>“%1” cannot be read. It may have been moved, or you may not have permission.</source>
        <translation>No se puede leer «%1». Quizá se haya movido o usted no tenga permiso.</translation>
    </message>
    <message>
        <source>“%1” is damaged, or of a kind that Complexion does not know.</source>
        <translation>«%1» está dañado o es de un tipo que Complexion no conoce.</translation>
    </message>
    <message>
        <source>“%1” has the format %2.</source>
        <translation>«%1» tiene el formato %2.</translation>
    </message>
    <message>
        <source>“%1” needs a name that ends with .jpg, .png, .tiff, .gif or .bmp.</source>
        <translation>El nombre de «%1» debe terminar en .jpg, .png, .tiff, .gif o .bmp.</translation>
    </message>
</context>
<context>
    <name>RepairWords</name>
    <message>
        <source>Repaired one pixel.</source>
        <translation>Un píxel retocado.</translation>
    </message>
    <message>
        <source>One pixel would be repaired.</source>
        <translation>Se retocaría un píxel.</translation>
    </message>
    <message>
        <source>Repaired %1 pixels.</source>
        <translation>%1 píxeles retocados.</translation>
    </message>
    <message>
        <source>%1 pixels would be repaired.</source>
        <translation>Se retocarían %1 píxeles.</translation>
    </message>
    <message>
        <source>at the top</source>
        <translation>arriba</translation>
    </message>
    <message>
        <source>at the top right</source>
        <translation>arriba a la derecha</translation>
    </message>
    <message>
        <source>on the right</source>
        <translation>a la derecha</translation>
    </message>
    <message>
        <source>at the bottom right</source>
        <translation>abajo a la derecha</translation>
    </message>
    <message>
        <source>at the bottom</source>
        <translation>abajo</translation>
    </message>
    <message>
        <source>at the bottom left</source>
        <translation>abajo a la izquierda</translation>
    </message>
    <message>
        <source>on the left</source>
        <translation>a la izquierda</translation>
    </message>
    <message>
        <source>at the top left</source>
        <translation>arriba a la izquierda</translation>
    </message>
    <message>
        <source>not enough memory</source>
        <translation>no hay memoria suficiente</translation>
    </message>
    <message>
        <source>nothing stands out from the skin</source>
        <translation>nada destaca de la piel</translation>
    </message>
    <message>
        <source>the skin differs too much %1</source>
        <translation>la piel difiere demasiado %1</translation>
    </message>
    <message>
        <source>something larger reaches into the ring %1</source>
        <translation>algo mayor entra en el anillo %1</translation>
    </message>
    <message>
        <source>too little clean skin in the ring</source>
        <translation>muy poca piel limpia en el anillo</translation>
    </message>
    <message>
        <source>no skin nearby to match</source>
        <translation>no hay piel parecida cerca</translation>
    </message>
    <message>
        <source>too close to the edge of the photo</source>
        <translation>demasiado cerca del borde de la foto</translation>
    </message>
    <message>
        <source>Not repaired: %1.</source>
        <translation>No retocado: %1.</translation>
    </message>
</context>
<context>
    <name>Repairs</name>
    <message>
        <source>Flat color</source>
        <translation>Color liso</translation>
    </message>
    <message>
        <source>Natural</source>
        <translation>Natural</translation>
    </message>
</context>
<context>
    <name>Steps</name>
    <message>
        <source>repair</source>
        <translation>el retoque</translation>
    </message>
    <message>
        <source>natural repair</source>
        <translation>el retoque natural</translation>
    </message>
</context>
<context>
    <name>complexion::Actions</name>
    <message>
        <source>Select image…</source>
        <translation>Elegir imagen…</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>Volver a cargar la imagen</translation>
    </message>
    <message>
        <source>Save image…</source>
        <translation>Guardar imagen…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Deshacer</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Rehacer</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Acercar</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Alejar</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Ajustar a la ventana</translation>
    </message>
    <message>
        <source>Actual pixels</source>
        <translation>Tamaño real</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>Mostrar el original</translation>
    </message>
    <message>
        <source>Preview the repair</source>
        <translation>Vista previa del retoque</translation>
    </message>
    <message>
        <source>Larger edit area</source>
        <translation>Área mayor</translation>
    </message>
    <message>
        <source>Fit the edit area</source>
        <translation>Ajustar el área</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Ajustar</translation>
    </message>
    <message>
        <source>Fit the edit area to the blemish under it</source>
        <translation>Ajustar el área a la imperfección</translation>
    </message>
    <message>
        <source>Smaller edit area</source>
        <translation>Área menor</translation>
    </message>
    <message>
        <source>Video tutorial</source>
        <translation>Videotutorial</translation>
    </message>
    <message>
        <source>About Complexion</source>
        <translation>Acerca de Complexion</translation>
    </message>
    <message>
        <source>no photo is open</source>
        <translation>no hay ninguna foto abierta</translation>
    </message>
    <message>
        <source>Select image</source>
        <translation>Elegir imagen</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>Guardar imagen</translation>
    </message>
    <message>
        <source>nothing to undo</source>
        <translation>nada que deshacer</translation>
    </message>
    <message>
        <source>nothing to redo</source>
        <translation>nada que rehacer</translation>
    </message>
    <message>
        <source>Hold to see the original</source>
        <translation>Mantener pulsado para ver el original</translation>
    </message>
    <message>
        <source>not included in this build</source>
        <translation>no incluido en esta versión</translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation>Deshacer %1</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>Rehacer %1</translation>
    </message>
    <message>
        <source>Next blemish</source>
        <translation>Imperfección siguiente</translation>
    </message>
    <message>
        <source>Previous blemish</source>
        <translation>Imperfección anterior</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
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
        <translation>Umbral más alto</translation>
    </message>
    <message>
        <source>Lower threshold</source>
        <translation>Umbral más bajo</translation>
    </message>
    <message>
        <source>Show the controls</source>
        <translation>Mostrar los controles</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Pantalla completa</translation>
    </message>
    <message>
        <source>Show blemishes</source>
        <translation>Mostrar las imperfecciones</translation>
    </message>
    <message>
        <source>Only the ten strongest</source>
        <translation>Solo las diez más marcadas</translation>
    </message>
</context>
<context>
    <name>complexion::Aim</name>
    <message>
        <source>Column %1, row %2. %3</source>
        <translation>Columna %1, fila %2. %3</translation>
    </message>
    <message>
        <source>F fits the ring</source>
        <translation>F ajusta el anillo</translation>
    </message>
    <message>
        <source>Nothing larger to fit here.</source>
        <translation>Aquí no hay nada mayor.</translation>
    </message>
    <message>
        <source>No blemish to fit here.</source>
        <translation>Aquí no hay ninguna imperfección.</translation>
    </message>
    <message>
        <source>The edit area fits: %1 pixels.</source>
        <translation>El área está ajustada: %1 píxeles.</translation>
    </message>
    <message>
        <source>dark spot</source>
        <translation>mancha oscura</translation>
    </message>
    <message>
        <source>red spot</source>
        <translation>mancha roja</translation>
    </message>
    <message>
        <source>light spot</source>
        <translation>mancha clara</translation>
    </message>
    <message>
        <source>No blemishes found.</source>
        <translation>No se han encontrado imperfecciones.</translation>
    </message>
    <message>
        <source>Suggestion %1 of %2: %3, %4 pixels</source>
        <translation>Sugerencia %1 de %2: %3, %4 píxeles</translation>
    </message>
    <message>
        <source>Zoom in to aim</source>
        <translation>Acerque para apuntar</translation>
    </message>
</context>
<context>
    <name>complexion::BusySign</name>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
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
        <translation>Color elegido</translation>
    </message>
</context>
<context>
    <name>complexion::ContinueCard</name>
    <message>
        <source>Continue where you left off: %1, %2 repairs</source>
        <translation>Seguir donde lo dejó: %1, %2 retoques</translation>
    </message>
    <message>
        <source>Continue where you left off: %1</source>
        <translation>Seguir donde lo dejó: %1</translation>
    </message>
    <message>
        <source>Continue where you left off: %1, 1 repair</source>
        <translation>Seguir donde lo dejó: %1, 1 retoque</translation>
    </message>
    <message>
        <source>Forget</source>
        <translation>Descartar</translation>
    </message>
    <message>
        <source>Forget %1</source>
        <translation>Descartar %1</translation>
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
        <translation>Lugares</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>Carpeta:</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Carpeta</translation>
    </message>
    <message>
        <source>Parent folder</source>
        <translation>Carpeta superior</translation>
    </message>
    <message>
        <source>Parent folder (Alt+Up)</source>
        <translation>Carpeta superior (Alt+Arriba)</translation>
    </message>
    <message>
        <source>File name:</source>
        <translation>Nombre del archivo:</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Nombre del archivo</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Looking for the file…</source>
        <translation>Buscando el archivo…</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Equipo</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Carpeta personal</translation>
    </message>
</context>
<context>
    <name>complexion::FolderModel</name>
    <message>
        <source>Name</source>
        <translation>Nombre</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Tamaño</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Modificado</translation>
    </message>
</context>
<context>
    <name>complexion::FolderView</name>
    <message>
        <source>Files</source>
        <translation>Archivos</translation>
    </message>
    <message>
        <source>Reading the folder…</source>
        <translation>Leyendo la carpeta…</translation>
    </message>
    <message>
        <source>This folder cannot be listed: %1</source>
        <translation>No se puede mostrar esta carpeta: %1</translation>
    </message>
    <message>
        <source>There are no photos here.</source>
        <translation>Aquí no hay fotos.</translation>
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
        <translation>Elegir imagen</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>There is no file “%1”.</source>
        <translation>No hay ningún archivo «%1».</translation>
    </message>
</context>
<context>
    <name>complexion::SaveFilePanel</name>
    <message>
        <source>Save image</source>
        <translation>Guardar imagen</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <source>“%1” is the photo that you opened. Saving here replaces it for good. Do you want to replace it?</source>
        <translation>«%1» es la foto que ha abierto. Si guarda aquí, se sustituye para siempre. ¿Desea sustituirla?</translation>
    </message>
    <message>
        <source>“%1” already exists. Do you want to replace it?</source>
        <translation>«%1» ya existe. ¿Desea sustituirlo?</translation>
    </message>
</context>
<context>
    <name>complexion::SettingsBar</name>
    <message>
        <source>Fit</source>
        <translation>Ajustar</translation>
    </message>
    <message>
        <source>Edit area size</source>
        <translation>Tamaño del área</translation>
    </message>
    <message>
        <source>Radius of the disc that a click repairs, in pixels of the photo</source>
        <translation>Radio del disco que retoca un clic, en píxeles de la foto</translation>
    </message>
    <message>
        <source>Threshold</source>
        <translation>Umbral</translation>
    </message>
    <message>
        <source>How much a pixel must differ from the skin around it to be repaired</source>
        <translation>Cuánto debe diferir un píxel de la piel de alrededor para retocarlo</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>Color automático</translation>
    </message>
    <message>
        <source>Take the color of the skin around the blemish</source>
        <translation>Tomar el color de la piel que rodea la imperfección</translation>
    </message>
    <message>
        <source>Custom color</source>
        <translation>Color elegido</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>Tomar un color de la foto</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Color</translation>
    </message>
    <message>
        <source>Custom color: only used when Autodetect Color is off</source>
        <translation>Color elegido: solo sin color automático</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used when Autodetect Color is off</source>
        <translation>Tomar un color de la foto: solo sin color automático</translation>
    </message>
    <message>
        <source>Pick a color from the photo: no photo is open</source>
        <translation>Tomar un color de la foto: no hay ninguna foto abierta</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Efecto</translation>
    </message>
    <message>
        <source>Effect applied to the whole photo, and to the saved copy</source>
        <translation>Efecto aplicado a toda la foto y a la copia guardada</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Retoque</translation>
    </message>
    <message>
        <source>Fill a blemish with one color, or with the shading and texture of the skin around it</source>
        <translation>Rellenar la imperfección con un solo color, o con el sombreado y la textura de la piel de alrededor</translation>
    </message>
    <message>
        <source>The natural repair always takes the skin&apos;s own color</source>
        <translation>El retoque natural usa siempre el color de la propia piel</translation>
    </message>
    <message>
        <source>Custom color: only used by the repair “Flat color”</source>
        <translation>Color elegido: solo para el retoque «Color liso»</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used by the repair “Flat color”</source>
        <translation>Tomar un color de la foto: solo para el retoque «Color liso»</translation>
    </message>
    <message>
        <source>More settings</source>
        <translation>Más ajustes</translation>
    </message>
</context>
<context>
    <name>complexion::StrokeDrawing</name>
    <message>
        <source>Strokes need the natural repair.</source>
        <translation>Los trazos necesitan la reparación natural.</translation>
    </message>
    <message>
        <source>Stroke begun.</source>
        <translation>Trazo empezado.</translation>
    </message>
    <message>
        <source>Strokes need an edit area of at most %1 pixels.</source>
        <translation>Los trazos necesitan un área de edición de %1 píxeles como máximo.</translation>
    </message>
</context>
<context>
    <name>complexion::SuggestionMarks</name>
    <message>
        <source>Blemishes marked: %1.</source>
        <translation>Imperfecciones señaladas: %1.</translation>
    </message>
</context>
<context>
    <name>complexion::ViewController</name>
    <message>
        <source>Restoring the repairs…</source>
        <translation>Restaurando los retoques…</translation>
    </message>
    <message>
        <source>Opening the photo…</source>
        <translation>Abriendo la foto…</translation>
    </message>
    <message>
        <source>Saving the photo…</source>
        <translation>Guardando la foto…</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>Color automático</translation>
    </message>
    <message>
        <source>Undone.</source>
        <translation>Deshecho.</translation>
    </message>
    <message>
        <source>Undone: %1.</source>
        <translation>Deshecho: %1.</translation>
    </message>
    <message>
        <source>Redone.</source>
        <translation>Rehecho.</translation>
    </message>
    <message>
        <source>Redone: %1.</source>
        <translation>Rehecho: %1.</translation>
    </message>
</context>
<context>
    <name>complexion::WindowContents</name>
    <message>
        <source>Select image</source>
        <translation>Elegir imagen</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>Volver a cargar la imagen</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>Guardar imagen</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Deshacer</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Rehacer</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Acercar</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Alejar</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Ajustar a la ventana</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>Mostrar el original</translation>
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
        <translation>Zoom: no hay ninguna foto abierta</translation>
    </message>
</context>
</TS>
