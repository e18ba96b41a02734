<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR" sourcelanguage="en">
<context>
    <name>Alerts</name>
    <message>
        <source>The photo has been moved or deleted. Its repairs are kept until you forget them.</source>
        <translation>A foto foi movida ou excluída. Os retoques dela são mantidos até que você os descarte.</translation>
    </message>
    <message>
        <source>The photo has changed since then. Its repairs are kept until you forget them.</source>
        <translation>A foto mudou desde então. Os retoques dela são mantidos até que você os descarte.</translation>
    </message>
    <message>
        <source>The repairs could not be applied to the photo. They are kept until you forget them.</source>
        <translation>Não foi possível aplicar os retoques à foto. Eles são mantidos até que você os descarte.</translation>
    </message>
    <message>
        <source>The repairs of this photo will be lost. Are you sure you want to forget them?</source>
        <translation>Os retoques desta foto serão perdidos. Tem certeza de que deseja descartá-los?</translation>
    </message>
    <message>
        <source>Removes blemishes from portraits. Free software under the GNU General Public License, version 3 or later.</source>
        <translation>Remove imperfeições de retratos. Software livre sob a Licença Pública Geral GNU, versão 3 ou posterior.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>This folder is emptied when Complexion ends. Please choose another one.</source>
        <translation>Esta pasta é esvaziada quando o Complexion termina. Escolha outra.</translation>
    </message>
    <message>
        <source>The image could not be loaded.</source>
        <translation>Não foi possível carregar a imagem.</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to select a new image?</source>
        <translation>Todas as alterações não salvas serão perdidas. Tem certeza de que deseja selecionar outra imagem?</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to reload the image?</source>
        <translation>Todas as alterações não salvas serão perdidas. Tem certeza de que deseja recarregar a imagem?</translation>
    </message>
    <message>
        <source>Image saved successfully.</source>
        <translation>A imagem foi salva.</translation>
    </message>
    <message>
        <source>Could not save the image.</source>
        <translation>Não foi possível salvar a imagem.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Sim</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Não</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to exit the application?</source>
        <translation>Todas as alterações não salvas serão perdidas. Tem certeza de que deseja sair do aplicativo?</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to add a new image?</source>
        <translation>Todas as alterações não salvas serão perdidas. Tem certeza de que deseja adicionar uma nova imagem?</translation>
    </message>
</context>
<context>
    <name>Cards</name>
    <message>
        <source>Drop a photo here</source>
        <translation>Solte uma foto aqui</translation>
    </message>
    <message>
        <source>or click to choose one</source>
        <translation>ou clique para escolher uma</translation>
    </message>
    <message>
        <source>Set the edit area a little larger than the blemish.</source>
        <translation>Deixe a área um pouco maior que a imperfeição.</translation>
    </message>
    <message>
        <source>Click the blemish: it blends into the skin around it.</source>
        <translation>Clique na imperfeição: ela se funde com a pele ao redor.</translation>
    </message>
    <message>
        <source>Save a copy. Your photo stays as it is.</source>
        <translation>Salve uma cópia. Sua foto fica como está.</translation>
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
        <translation>Desbotado</translation>
    </message>
    <message>
        <source>Instant</source>
        <translation>Instantâneo</translation>
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
        <translation>Tonal</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>Transferência</translation>
    </message>
</context>
<context>
    <name>Menus</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Arquivo</translation>
    </message>
    <message>
        <source>Open again</source>
        <translation>Abrir de novo</translation>
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
        <translation>Cor automática</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>Pegar uma cor da foto</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Efeito</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>E&amp;xibir</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>Aj&amp;uda</translation>
    </message>
</context>
<context>
    <name>Notices</name>
    <message>
        <source>%1 bits per channel become 8</source>
        <translation>%1 bits por canal passam a 8</translation>
    </message>
    <message>
        <source>CMYK becomes RGB</source>
        <translation>CMYK passa a RGB</translation>
    </message>
    <message>
        <source>Lab becomes RGB</source>
        <translation>Lab passa a RGB</translation>
    </message>
    <message>
        <source>only page 1 of %1</source>
        <translation>só a página 1 de %1</translation>
    </message>
    <message>
        <source>only the first of %1 frames</source>
        <translation>só o primeiro de %1 quadros</translation>
    </message>
    <message>
        <source>the layers are merged</source>
        <translation>as camadas são mescladas</translation>
    </message>
    <message>
        <source>the moving picture is left out</source>
        <translation>a imagem em movimento fica de fora</translation>
    </message>
    <message>
        <source>the embedded preview is left out</source>
        <translation>a prévia incorporada fica de fora</translation>
    </message>
    <message>
        <source>Complexion opens JPEG, PNG, TIFF, GIF and BMP.</source>
        <translation>O Complexion abre JPEG, PNG, TIFF, GIF e BMP.</translation>
    </message>
    <message>
        <source>“%1” is a camera’s raw file.</source>
        <translation>“%1” é um arquivo raw de câmera.</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from your raw developer.</source>
        <translation>Exporte um JPEG ou TIFF do seu programa de revelação.</translation>
    </message>
    <message>
        <source>“%1” is not a still picture.</source>
        <translation>“%1” não é uma imagem estática.</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from the program that opens it.</source>
        <translation>Exporte um JPEG ou TIFF do programa que o abre.</translation>
    </message>
    <message>
        <source>The file is damaged: part of the picture is missing.</source>
        <translation>O arquivo está danificado: falta parte da imagem.</translation>
    </message>
    <message>
        <source>In the saved copy: %1.</source>
        <translation>Na cópia salva: %1.</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>The photo cannot be saved: %1 cannot hold pictures this large.</source>
        <translation>Não é possível salvar a foto: %1 não comporta imagens tão grandes.</translation>
    </message>
    <message>
        <source>“%1” is not a picture.</source>
        <translation>“%1” não é uma imagem.</translation>
    </message>
    <message>
        <source>“%1” is too large to be opened.</source>
        <translation>“%1” é grande demais para ser aberto.</translation>
    </message>
    <message>
        <source>There is not enough memory to open “%1”.</source>
        <translation>Não há memória suficiente para abrir “%1”.</translation>
    </message>
    <message>
        <source>“%1” cannot be read. It may have been moved, or you may not have permission.</source>
        <translation>Não é possível ler “%1”. Talvez tenha sido movido, ou falte permissão.</translation>
    </message>
    <message>
        <source>“%1” is damaged, or of a kind that Complexion does not know.</source>
        <translation>“%1” está danificado ou é de um tipo que o Complexion não conhece.</translation>
    </message>
    <message>
        <source>“%1” has the format %2.</source>
        <translation>“%1” tem o formato %2.</translation>
    </message>
    <message>
        <source>“%1” needs a name that ends with .jpg, .png, .tiff, .gif or .bmp.</source>
        <translation>O nome de “%1” precisa terminar em .jpg, .png, .tiff, .gif ou .bmp.</translation>
    </message>
</context>
<context>
    <name>RepairWords</name>
    <message>
        <source>Repaired one pixel.</source>
        <translation>Um pixel retocado.</translation>
    </message>
    <message>
        <source>One pixel would be repaired.</source>
        <translation>Um pixel seria retocado.</translation>
    </message>
    <message>
        <source>Repaired %1 pixels.</source>
        <translation>%1 pixels retocados.</translation>
    </message>
    <message>
        <source>%1 pixels would be repaired.</source>
        <translation>%1 pixels seriam retocados.</translation>
    </message>
    <message>
        <source>at the top</source>
        <translation>em cima</translation>
    </message>
    <message>
        <source>at the top right</source>
        <translation>em cima à direita</translation>
    </message>
    <message>
        <source>on the right</source>
        <translation>à direita</translation>
    </message>
    <message>
        <source>at the bottom right</source>
        <translation>embaixo à direita</translation>
    </message>
    <message>
        <source>at the bottom</source>
        <translation>embaixo</translation>
    </message>
    <message>
        <source>at the bottom left</source>
        <translation>embaixo à esquerda</translation>
    </message>
    <message>
        <source>on the left</source>
        <translation>à esquerda</translation>
    </message>
    <message>
        <source>at the top left</source>
        <translation>em cima à esquerda</translation>
    </message>
    <message>
        <source>not enough memory</source>
        <translation>memória insuficiente</translation>
    </message>
    <message>
        <source>nothing stands out from the skin</source>
        <translation>nada se destaca da pele</translation>
    </message>
    <message>
        <source>the skin differs too much %1</source>
        <translation>a pele difere demais %1</translation>
    </message>
    <message>
        <source>something larger reaches into the ring %1</source>
        <translation>algo maior entra no anel %1</translation>
    </message>
    <message>
        <source>too little clean skin in the ring</source>
        <translation>pouca pele limpa no anel</translation>
    </message>
    <message>
        <source>no skin nearby to match</source>
        <translation>nenhuma pele parecida por perto</translation>
    </message>
    <message>
        <source>too close to the edge of the photo</source>
        <translation>perto demais da borda da foto</translation>
    </message>
    <message>
        <source>Not repaired: %1.</source>
        <translation>Não retocado: %1.</translation>
    </message>
</context>
<context>
    <name>Repairs</name>
    <message>
        <source>Flat color</source>
        <translation>Cor lisa</translation>
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
        <translation>o retoque</translation>
    </message>
    <message>
        <source>natural repair</source>
        <translation>o retoque natural</translation>
    </message>
</context>
<context>
    <name>complexion::Actions</name>
    <message>
        <source>Select image…</source>
        <translation>Selecionar imagem…</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>Recarregar imagem</translation>
    </message>
    <message>
        <source>Save image…</source>
        <translation>Salvar imagem…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Sair</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Desfazer</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Refazer</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Ampliar</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Reduzir</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Ajustar à janela</translation>
    </message>
    <message>
        <source>Actual pixels</source>
        <translation>Tamanho real</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>Mostrar o original</translation>
    </message>
    <message>
        <source>Preview the repair</source>
        <translation>Prévia do retoque</translation>
    </message>
    <message>
        <source>Larger edit area</source>
        <translation>Área maior</translation>
    </message>
    <message>
        <source>Fit the edit area</source>
        <translation>Ajustar a área</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Ajustar</translation>
    </message>
    <message>
        <source>Fit the edit area to the blemish under it</source>
        <translation>Ajustar a área à imperfeição</translation>
    </message>
    <message>
        <source>Smaller edit area</source>
        <translation>Área menor</translation>
    </message>
    <message>
        <source>Video tutorial</source>
        <translation>Tutorial em vídeo</translation>
    </message>
    <message>
        <source>About Complexion</source>
        <translation>Sobre o Complexion</translation>
    </message>
    <message>
        <source>no photo is open</source>
        <translation>nenhuma foto aberta</translation>
    </message>
    <message>
        <source>Select image</source>
        <translation>Selecionar imagem</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>Salvar imagem</translation>
    </message>
    <message>
        <source>nothing to undo</source>
        <translation>nada a desfazer</translation>
    </message>
    <message>
        <source>nothing to redo</source>
        <translation>nada a refazer</translation>
    </message>
    <message>
        <source>Hold to see the original</source>
        <translation>Segure para ver o original</translation>
    </message>
    <message>
        <source>not included in this build</source>
        <translation>não incluído nesta versão</translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation>Desfazer %1</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>Refazer %1</translation>
    </message>
    <message>
        <source>Next blemish</source>
        <translation>Próxima imperfeição</translation>
    </message>
    <message>
        <source>Previous blemish</source>
        <translation>Imperfeição anterior</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fechar</translation>
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
        <translation>Limiar maior</translation>
    </message>
    <message>
        <source>Lower threshold</source>
        <translation>Limiar menor</translation>
    </message>
    <message>
        <source>Show the controls</source>
        <translation>Mostrar os controles</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Tela cheia</translation>
    </message>
    <message>
        <source>Show blemishes</source>
        <translation>Mostrar as imperfeições</translation>
    </message>
    <message>
        <source>Only the ten strongest</source>
        <translation>Somente as dez mais visíveis</translation>
    </message>
</context>
<context>
    <name>complexion::Aim</name>
    <message>
        <source>Column %1, row %2. %3</source>
        <translation>Coluna %1, linha %2. %3</translation>
    </message>
    <message>
        <source>F fits the ring</source>
        <translation>F ajusta o anel</translation>
    </message>
    <message>
        <source>Nothing larger to fit here.</source>
        <translation>Não há nada maior aqui.</translation>
    </message>
    <message>
        <source>No blemish to fit here.</source>
        <translation>Não há imperfeição aqui.</translation>
    </message>
    <message>
        <source>The edit area fits: %1 pixels.</source>
        <translation>A área está ajustada: %1 pixels.</translation>
    </message>
    <message>
        <source>dark spot</source>
        <translation>mancha escura</translation>
    </message>
    <message>
        <source>red spot</source>
        <translation>mancha vermelha</translation>
    </message>
    <message>
        <source>light spot</source>
        <translation>mancha clara</translation>
    </message>
    <message>
        <source>No blemishes found.</source>
        <translation>Nenhuma imperfeição encontrada.</translation>
    </message>
    <message>
        <source>Suggestion %1 of %2: %3, %4 pixels</source>
        <translation>Sugestão %1 de %2: %3, %4 pixels</translation>
    </message>
    <message>
        <source>Zoom in to aim</source>
        <translation>Amplie para mirar</translation>
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
        <translation>%1 %2%</translation>
    </message>
</context>
<context>
    <name>complexion::ColorWell</name>
    <message>
        <source>Custom color</source>
        <translation>Cor escolhida</translation>
    </message>
</context>
<context>
    <name>complexion::ContinueCard</name>
    <message>
        <source>Continue where you left off: %1, %2 repairs</source>
        <translation>Continuar de onde você parou: %1, %2 retoques</translation>
    </message>
    <message>
        <source>Continue where you left off: %1</source>
        <translation>Continuar de onde você parou: %1</translation>
    </message>
    <message>
        <source>Continue where you left off: %1, 1 repair</source>
        <translation>Continuar de onde você parou: %1, 1 retoque</translation>
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
        <translation>Locais</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>Pasta:</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Pasta</translation>
    </message>
    <message>
        <source>Parent folder</source>
        <translation>Pasta superior</translation>
    </message>
    <message>
        <source>Parent folder (Alt+Up)</source>
        <translation>Pasta superior (Alt+Cima)</translation>
    </message>
    <message>
        <source>File name:</source>
        <translation>Nome do arquivo:</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Nome do arquivo</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Looking for the file…</source>
        <translation>Procurando o arquivo…</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Computador</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Pasta pessoal</translation>
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
        <translation>Tamanho</translation>
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
        <translation>Arquivos</translation>
    </message>
    <message>
        <source>Reading the folder…</source>
        <translation>Lendo a pasta…</translation>
    </message>
    <message>
        <source>This folder cannot be listed: %1</source>
        <translation>Não é possível mostrar esta pasta: %1</translation>
    </message>
    <message>
        <source>There are no photos here.</source>
        <translation>Não há fotos aqui.</translation>
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
        <translation>Selecionar imagem</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>There is no file “%1”.</source>
        <translation>Não há nenhum arquivo “%1”.</translation>
    </message>
</context>
<context>
    <name>complexion::SaveFilePanel</name>
    <message>
        <source>Save image</source>
        <translation>Salvar imagem</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Salvar</translation>
    </message>
    <message>
        <source>“%1” is the photo that you opened. Saving here replaces it for good. Do you want to replace it?</source>
        <translation>“%1” é a foto que você abriu. Salvar aqui a substitui para sempre. Deseja substituí-la?</translation>
    </message>
    <message>
        <source>“%1” already exists. Do you want to replace it?</source>
        <translation>“%1” já existe. Deseja substituí-lo?</translation>
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
        <translation>Tamanho da área</translation>
    </message>
    <message>
        <source>Radius of the disc that a click repairs, in pixels of the photo</source>
        <translation>Raio do disco que um clique retoca, em pixels da foto</translation>
    </message>
    <message>
        <source>Threshold</source>
        <translation>Limiar</translation>
    </message>
    <message>
        <source>How much a pixel must differ from the skin around it to be repaired</source>
        <translation>Quanto um pixel deve diferir da pele ao redor para ser retocado</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>Cor automática</translation>
    </message>
    <message>
        <source>Take the color of the skin around the blemish</source>
        <translation>Usar a cor da pele ao redor da imperfeição</translation>
    </message>
    <message>
        <source>Custom color</source>
        <translation>Cor escolhida</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>Pegar uma cor da foto</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Cor</translation>
    </message>
    <message>
        <source>Custom color: only used when Autodetect Color is off</source>
        <translation>Cor escolhida: só sem cor automática</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used when Autodetect Color is off</source>
        <translation>Pegar uma cor da foto: só sem cor automática</translation>
    </message>
    <message>
        <source>Pick a color from the photo: no photo is open</source>
        <translation>Pegar uma cor da foto: nenhuma foto aberta</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Efeito</translation>
    </message>
    <message>
        <source>Effect applied to the whole photo, and to the saved copy</source>
        <translation>Efeito aplicado à foto inteira e à cópia salva</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Retoque</translation>
    </message>
    <message>
        <source>Fill a blemish with one color, or with the shading and texture of the skin around it</source>
        <translation>Preencher a imperfeição com uma só cor, ou com o sombreado e a textura da pele ao redor</translation>
    </message>
    <message>
        <source>The natural repair always takes the skin&apos;s own color</source>
        <translation>O retoque natural sempre usa a cor da própria pele</translation>
    </message>
    <message>
        <source>Custom color: only used by the repair “Flat color”</source>
        <translation>Cor escolhida: só para o retoque “Cor lisa”</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used by the repair “Flat color”</source>
        <translation>Pegar uma cor da foto: só para o retoque “Cor lisa”</translation>
    </message>
    <message>
        <source>More settings</source>
        <translation>Mais ajustes</translation>
    </message>
</context>
<context>
    <name>complexion::StrokeDrawing</name>
    <message>
        <source>Strokes need the natural repair.</source>
        <translation>Os traços precisam do reparo natural.</translation>
    </message>
    <message>
        <source>Stroke begun.</source>
        <translation>Traço iniciado.</translation>
    </message>
    <message>
        <source>Strokes need an edit area of at most %1 pixels.</source>
        <translation>Os traços precisam de uma área de edição de no máximo %1 pixels.</translation>
    </message>
</context>
<context>
    <name>complexion::SuggestionMarks</name>
    <message>
        <source>Blemishes marked: %1.</source>
        <translation>Imperfeições marcadas: %1.</translation>
    </message>
</context>
<context>
    <name>complexion::ViewController</name>
    <message>
        <source>Restoring the repairs…</source>
        <translation>Restaurando os retoques…</translation>
    </message>
    <message>
        <source>Opening the photo…</source>
        <translation>Abrindo a foto…</translation>
    </message>
    <message>
        <source>Saving the photo…</source>
        <translation>Salvando a foto…</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>Cor automática</translation>
    </message>
    <message>
        <source>Undone.</source>
        <translation>Desfeito.</translation>
    </message>
    <message>
        <source>Undone: %1.</source>
        <translation>Desfeito: %1.</translation>
    </message>
    <message>
        <source>Redone.</source>
        <translation>Refeito.</translation>
    </message>
    <message>
        <source>Redone: %1.</source>
        <translation>Refeito: %1.</translation>
    </message>
</context>
<context>
    <name>complexion::WindowContents</name>
    <message>
        <source>Select image</source>
        <translation>Selecionar imagem</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>Recarregar imagem</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>Salvar imagem</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Desfazer</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Refazer</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Ampliar</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Reduzir</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>Ajustar à janela</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>Mostrar o original</translation>
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
        <translation>Zoom: nenhuma foto aberta</translation>
    </message>
</context>
</TS>
