<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>Alerts</name>
    <message>
        <source>The photo has been moved or deleted. Its repairs are kept until you forget them.</source>
        <translation>写真が移動または削除されました。修正は、破棄するまで保存されます。</translation>
    </message>
    <message>
        <source>The photo has changed since then. Its repairs are kept until you forget them.</source>
        <translation>その後、写真が変更されました。修正は、破棄するまで保存されます。</translation>
    </message>
    <message>
        <source>The repairs could not be applied to the photo. They are kept until you forget them.</source>
        <translation>修正を写真に適用できませんでした。破棄するまで保存されます。</translation>
    </message>
    <message>
        <source>The repairs of this photo will be lost. Are you sure you want to forget them?</source>
        <translation>この写真の修正は失われます。破棄してもよろしいですか？</translation>
    </message>
    <message>
        <source>Removes blemishes from portraits. Free software under the GNU General Public License, version 3 or later.</source>
        <translation>ポートレートの肌の気になる部分を取り除きます。GNU 一般公衆利用許諾書バージョン 3 以降のフリーソフトウェアです。</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>This folder is emptied when Complexion ends. Please choose another one.</source>
        <translation>このフォルダーは Complexion の終了時に空になります。別のフォルダーを選んでください。</translation>
    </message>
    <message>
        <source>The image could not be loaded.</source>
        <translation>画像を読み込めませんでした。</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to select a new image?</source>
        <translation>保存していない変更はすべて失われます。別の画像を選択してもよろしいですか？</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to reload the image?</source>
        <translation>保存していない変更はすべて失われます。画像を読み込み直してもよろしいですか？</translation>
    </message>
    <message>
        <source>Image saved successfully.</source>
        <translation>画像を保存しました。</translation>
    </message>
    <message>
        <source>Could not save the image.</source>
        <translation>画像を保存できませんでした。</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>はい</translation>
    </message>
    <message>
        <source>No</source>
        <translation>いいえ</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to exit the application?</source>
        <translation>保存していない変更はすべて失われます。アプリケーションを終了してもよろしいですか？</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to add a new image?</source>
        <translation>保存していない変更はすべて失われます。新しい画像を追加してもよろしいですか？</translation>
    </message>
</context>
<context>
    <name>Cards</name>
    <message>
        <source>Drop a photo here</source>
        <translation>ここに写真をドロップ</translation>
    </message>
    <message>
        <source>or click to choose one</source>
        <translation>またはクリックして選択</translation>
    </message>
    <message>
        <source>Set the edit area a little larger than the blemish.</source>
        <translation>修正範囲を、気になる部分より少し大きくします。</translation>
    </message>
    <message>
        <source>Click the blemish: it blends into the skin around it.</source>
        <translation>そこをクリックすると、周りの肌になじみます。</translation>
    </message>
    <message>
        <source>Save a copy. Your photo stays as it is.</source>
        <translation>コピーを保存します。元の写真はそのままです。</translation>
    </message>
</context>
<context>
    <name>Effects</name>
    <message>
        <source>Normal</source>
        <translation>標準</translation>
    </message>
    <message>
        <source>Chrome</source>
        <translation>クローム</translation>
    </message>
    <message>
        <source>Fade</source>
        <translation>フェード</translation>
    </message>
    <message>
        <source>Instant</source>
        <translation>インスタント</translation>
    </message>
    <message>
        <source>Mono</source>
        <translation>モノ</translation>
    </message>
    <message>
        <source>Noir</source>
        <translation>ノワール</translation>
    </message>
    <message>
        <source>Process</source>
        <translation>プロセス</translation>
    </message>
    <message>
        <source>Tonal</source>
        <translation>トーナル</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>トランスファー</translation>
    </message>
</context>
<context>
    <name>Menus</name>
    <message>
        <source>&amp;File</source>
        <translation>ファイル(&amp;F)</translation>
    </message>
    <message>
        <source>Open again</source>
        <translation>もう一度開く</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>編集(&amp;E)</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>修正</translation>
    </message>
    <message>
        <source>Autodetect color</source>
        <translation>色を自動検出</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>写真から色を取る</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>効果</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>表示(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>ヘルプ(&amp;H)</translation>
    </message>
</context>
<context>
    <name>Notices</name>
    <message>
        <source>%1 bits per channel become 8</source>
        <translation>チャンネルあたり %1 ビットは 8 ビットになります</translation>
    </message>
    <message>
        <source>CMYK becomes RGB</source>
        <translation>CMYK は RGB になります</translation>
    </message>
    <message>
        <source>Lab becomes RGB</source>
        <translation>Lab は RGB になります</translation>
    </message>
    <message>
        <source>only page 1 of %1</source>
        <translation>%1 ページ中 1 ページ目だけです</translation>
    </message>
    <message>
        <source>only the first of %1 frames</source>
        <translation>%1 フレーム中最初のフレームだけです</translation>
    </message>
    <message>
        <source>the layers are merged</source>
        <translation>レイヤーは統合されます</translation>
    </message>
    <message>
        <source>the moving picture is left out</source>
        <translation>動画は含まれません</translation>
    </message>
    <message>
        <source>the embedded preview is left out</source>
        <translation>埋め込みプレビューは含まれません</translation>
    </message>
    <message>
        <source>Complexion opens JPEG, PNG, TIFF, GIF and BMP.</source>
        <translation>Complexion で開けるのは JPEG、PNG、TIFF、GIF、BMP です。</translation>
    </message>
    <message>
        <source>“%1” is a camera’s raw file.</source>
        <translation>「%1」はカメラの RAW ファイルです。</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from your raw developer.</source>
        <translation>お使いの現像ソフトから JPEG か TIFF を書き出してください。</translation>
    </message>
    <message>
        <source>“%1” is not a still picture.</source>
        <translation>「%1」は静止画ではありません。</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from the program that opens it.</source>
        <translation>開けるソフトから JPEG か TIFF を書き出してください。</translation>
    </message>
    <message>
        <source>The file is damaged: part of the picture is missing.</source>
        <translation>ファイルが壊れています。画像の一部が欠けています。</translation>
    </message>
    <message>
        <source>In the saved copy: %1.</source>
        <translation>保存するコピーについて：%1。</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
    <message>
        <source>The photo cannot be saved: %1 cannot hold pictures this large.</source>
        <translation>写真を保存できません。%1 形式にはこの大きさの画像が収まりません。</translation>
    </message>
    <message>
        <source>“%1” is not a picture.</source>
        <translation>「%1」は画像ではありません。</translation>
    </message>
    <message>
        <source>“%1” is too large to be opened.</source>
        <translation>「%1」は大きすぎて開けません。</translation>
    </message>
    <message>
        <source>There is not enough memory to open “%1”.</source>
        <translation>「%1」を開くにはメモリーが足りません。</translation>
    </message>
    <message>
        <source>“%1” cannot be read. It may have been moved, or you may not have permission.</source>
        <translation>「%1」を読み取れません。移動されたか、アクセス権がない可能性があります。</translation>
    </message>
    <message>
        <source>“%1” is damaged, or of a kind that Complexion does not know.</source>
        <translation>「%1」は壊れているか、Complexion が対応していない種類です。</translation>
    </message>
    <message>
        <source>“%1” has the format %2.</source>
        <translation>「%1」の形式は %2 です。</translation>
    </message>
    <message>
        <source>“%1” needs a name that ends with .jpg, .png, .tiff, .gif or .bmp.</source>
        <translation>「%1」の名前は .jpg、.png、.tiff、.gif、.bmp のいずれかで終わる必要があります。</translation>
    </message>
</context>
<context>
    <name>RepairWords</name>
    <message>
        <source>Repaired one pixel.</source>
        <translation>1 ピクセルを修正しました。</translation>
    </message>
    <message>
        <source>One pixel would be repaired.</source>
        <translation>1 ピクセルが修正されます。</translation>
    </message>
    <message>
        <source>Repaired %1 pixels.</source>
        <translation>%1 ピクセルを修正しました。</translation>
    </message>
    <message>
        <source>%1 pixels would be repaired.</source>
        <translation>%1 ピクセルが修正されます。</translation>
    </message>
    <message>
        <source>at the top</source>
        <translation>上</translation>
    </message>
    <message>
        <source>at the top right</source>
        <translation>右上</translation>
    </message>
    <message>
        <source>on the right</source>
        <translation>右</translation>
    </message>
    <message>
        <source>at the bottom right</source>
        <translation>右下</translation>
    </message>
    <message>
        <source>at the bottom</source>
        <translation>下</translation>
    </message>
    <message>
        <source>at the bottom left</source>
        <translation>左下</translation>
    </message>
    <message>
        <source>on the left</source>
        <translation>左</translation>
    </message>
    <message>
        <source>at the top left</source>
        <translation>左上</translation>
    </message>
    <message>
        <source>not enough memory</source>
        <translation>メモリーが足りません</translation>
    </message>
    <message>
        <source>nothing stands out from the skin</source>
        <translation>肌と異なる部分がありません</translation>
    </message>
    <message>
        <source>the skin differs too much %1</source>
        <translation>%1側で肌の差が大きすぎます</translation>
    </message>
    <message>
        <source>something larger reaches into the ring %1</source>
        <translation>%1側で大きなものがリングに入っています</translation>
    </message>
    <message>
        <source>too little clean skin in the ring</source>
        <translation>リングの中にきれいな肌が足りません</translation>
    </message>
    <message>
        <source>no skin nearby to match</source>
        <translation>近くに合う肌がありません</translation>
    </message>
    <message>
        <source>too close to the edge of the photo</source>
        <translation>写真の端に近すぎます</translation>
    </message>
    <message>
        <source>Not repaired: %1.</source>
        <translation>修正していません：%1。</translation>
    </message>
</context>
<context>
    <name>Repairs</name>
    <message>
        <source>Flat color</source>
        <translation>単色</translation>
    </message>
    <message>
        <source>Natural</source>
        <translation>自然</translation>
    </message>
</context>
<context>
    <name>Steps</name>
    <message>
        <source>repair</source>
        <translation>修正</translation>
    </message>
    <message>
        <source>natural repair</source>
        <translation>自然な修正</translation>
    </message>
</context>
<context>
    <name>complexion::Actions</name>
    <message>
        <source>Select image…</source>
        <translation>画像を選択…</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>画像を再読み込み</translation>
    </message>
    <message>
        <source>Save image…</source>
        <translation>画像を保存…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>元に戻す</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>やり直す</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>拡大</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>縮小</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>ウィンドウに合わせる</translation>
    </message>
    <message>
        <source>Actual pixels</source>
        <translation>実際のサイズ</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>元の写真を表示</translation>
    </message>
    <message>
        <source>Preview the repair</source>
        <translation>修正をプレビュー</translation>
    </message>
    <message>
        <source>Larger edit area</source>
        <translation>修正範囲を大きく</translation>
    </message>
    <message>
        <source>Fit the edit area</source>
        <translation>修正範囲を合わせる</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>合わせる</translation>
    </message>
    <message>
        <source>Fit the edit area to the blemish under it</source>
        <translation>修正範囲を下の部分に合わせる</translation>
    </message>
    <message>
        <source>Smaller edit area</source>
        <translation>修正範囲を小さく</translation>
    </message>
    <message>
        <source>Video tutorial</source>
        <translation>ビデオチュートリアル</translation>
    </message>
    <message>
        <source>About Complexion</source>
        <translation>Complexion について</translation>
    </message>
    <message>
        <source>no photo is open</source>
        <translation>写真が開かれていません</translation>
    </message>
    <message>
        <source>Select image</source>
        <translation>画像を選択</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>画像を保存</translation>
    </message>
    <message>
        <source>nothing to undo</source>
        <translation>元に戻す操作がありません</translation>
    </message>
    <message>
        <source>nothing to redo</source>
        <translation>やり直す操作がありません</translation>
    </message>
    <message>
        <source>Hold to see the original</source>
        <translation>押している間、元の写真を表示</translation>
    </message>
    <message>
        <source>not included in this build</source>
        <translation>このビルドには含まれていません</translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation>元に戻す：%1</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>やり直す：%1</translation>
    </message>
    <message>
        <source>Next blemish</source>
        <translation>次の候補</translation>
    </message>
    <message>
        <source>Previous blemish</source>
        <translation>前の候補</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>50 %</source>
        <translation>50%</translation>
    </message>
    <message>
        <source>200 %</source>
        <translation>200%</translation>
    </message>
    <message>
        <source>Higher threshold</source>
        <translation>しきい値を上げる</translation>
    </message>
    <message>
        <source>Lower threshold</source>
        <translation>しきい値を下げる</translation>
    </message>
    <message>
        <source>Show the controls</source>
        <translation>操作パネルを表示</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>全画面表示</translation>
    </message>
    <message>
        <source>Show blemishes</source>
        <translation>候補を表示</translation>
    </message>
    <message>
        <source>Only the ten strongest</source>
        <translation>目立つ10か所のみ</translation>
    </message>
</context>
<context>
    <name>complexion::Aim</name>
    <message>
        <source>Column %1, row %2. %3</source>
        <translation>%1 列、%2 行。%3</translation>
    </message>
    <message>
        <source>F fits the ring</source>
        <translation>F でリングを合わせる</translation>
    </message>
    <message>
        <source>Nothing larger to fit here.</source>
        <translation>ここにはこれより大きいものがありません。</translation>
    </message>
    <message>
        <source>No blemish to fit here.</source>
        <translation>ここには合わせるものがありません。</translation>
    </message>
    <message>
        <source>The edit area fits: %1 pixels.</source>
        <translation>修正範囲を合わせました：%1 ピクセル。</translation>
    </message>
    <message>
        <source>dark spot</source>
        <translation>暗いしみ</translation>
    </message>
    <message>
        <source>red spot</source>
        <translation>赤いしみ</translation>
    </message>
    <message>
        <source>light spot</source>
        <translation>明るいしみ</translation>
    </message>
    <message>
        <source>No blemishes found.</source>
        <translation>候補は見つかりませんでした。</translation>
    </message>
    <message>
        <source>Suggestion %1 of %2: %3, %4 pixels</source>
        <translation>候補 %1/%2：%3、%4 ピクセル</translation>
    </message>
    <message>
        <source>Zoom in to aim</source>
        <translation>拡大して狙いを定める</translation>
    </message>
</context>
<context>
    <name>complexion::BusySign</name>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
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
        <translation>指定色</translation>
    </message>
</context>
<context>
    <name>complexion::ContinueCard</name>
    <message>
        <source>Continue where you left off: %1, %2 repairs</source>
        <translation>続きから再開：%1、修正 %2 件</translation>
    </message>
    <message>
        <source>Continue where you left off: %1</source>
        <translation>続きから再開：%1</translation>
    </message>
    <message>
        <source>Continue where you left off: %1, 1 repair</source>
        <translation>続きから再開：%1、修正 1 件</translation>
    </message>
    <message>
        <source>Forget</source>
        <translation>破棄</translation>
    </message>
    <message>
        <source>Forget %1</source>
        <translation>%1 を破棄</translation>
    </message>
</context>
<context>
    <name>complexion::CustomImageView</name>
    <message>
        <source>Photo</source>
        <translation>写真</translation>
    </message>
</context>
<context>
    <name>complexion::FilePanel</name>
    <message>
        <source>Photos: %1</source>
        <translation>写真：%1</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>場所</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>フォルダー：</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>フォルダー</translation>
    </message>
    <message>
        <source>Parent folder</source>
        <translation>上のフォルダー</translation>
    </message>
    <message>
        <source>Parent folder (Alt+Up)</source>
        <translation>上のフォルダー（Alt+↑）</translation>
    </message>
    <message>
        <source>File name:</source>
        <translation>ファイル名：</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>ファイル名</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Looking for the file…</source>
        <translation>ファイルを探しています…</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>コンピューター</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>ホーム</translation>
    </message>
</context>
<context>
    <name>complexion::FolderModel</name>
    <message>
        <source>Name</source>
        <translation>名前</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>サイズ</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>更新日時</translation>
    </message>
</context>
<context>
    <name>complexion::FolderView</name>
    <message>
        <source>Files</source>
        <translation>ファイル</translation>
    </message>
    <message>
        <source>Reading the folder…</source>
        <translation>フォルダーを読み込んでいます…</translation>
    </message>
    <message>
        <source>This folder cannot be listed: %1</source>
        <translation>このフォルダーを表示できません：%1</translation>
    </message>
    <message>
        <source>There are no photos here.</source>
        <translation>ここには写真がありません。</translation>
    </message>
</context>
<context>
    <name>complexion::MainWindow</name>
    <message>
        <source>Original</source>
        <translation>元の写真</translation>
    </message>
</context>
<context>
    <name>complexion::OpenFilePanel</name>
    <message>
        <source>Select image</source>
        <translation>画像を選択</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>開く</translation>
    </message>
    <message>
        <source>There is no file “%1”.</source>
        <translation>「%1」というファイルはありません。</translation>
    </message>
</context>
<context>
    <name>complexion::SaveFilePanel</name>
    <message>
        <source>Save image</source>
        <translation>画像を保存</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>“%1” is the photo that you opened. Saving here replaces it for good. Do you want to replace it?</source>
        <translation>「%1」は開いている写真です。ここに保存すると元に戻せません。置き換えますか？</translation>
    </message>
    <message>
        <source>“%1” already exists. Do you want to replace it?</source>
        <translation>「%1」はすでに存在します。置き換えますか？</translation>
    </message>
</context>
<context>
    <name>complexion::SettingsBar</name>
    <message>
        <source>Fit</source>
        <translation>合わせる</translation>
    </message>
    <message>
        <source>Edit area size</source>
        <translation>修正範囲</translation>
    </message>
    <message>
        <source>Radius of the disc that a click repairs, in pixels of the photo</source>
        <translation>クリックで修正する円の半径（写真のピクセル）</translation>
    </message>
    <message>
        <source>Threshold</source>
        <translation>しきい値</translation>
    </message>
    <message>
        <source>How much a pixel must differ from the skin around it to be repaired</source>
        <translation>周りの肌とどれだけ違うピクセルを修正するか</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>色を自動検出</translation>
    </message>
    <message>
        <source>Take the color of the skin around the blemish</source>
        <translation>周りの肌の色を使います</translation>
    </message>
    <message>
        <source>Custom color</source>
        <translation>指定色</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>写真から色を取る</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>色</translation>
    </message>
    <message>
        <source>Custom color: only used when Autodetect Color is off</source>
        <translation>指定色：色の自動検出がオフのときだけ使います</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used when Autodetect Color is off</source>
        <translation>写真から色を取る：色の自動検出がオフのときだけ使います</translation>
    </message>
    <message>
        <source>Pick a color from the photo: no photo is open</source>
        <translation>写真から色を取る：写真が開かれていません</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>効果</translation>
    </message>
    <message>
        <source>Effect applied to the whole photo, and to the saved copy</source>
        <translation>写真全体と保存するコピーにかける効果</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>修正</translation>
    </message>
    <message>
        <source>Fill a blemish with one color, or with the shading and texture of the skin around it</source>
        <translation>単色で、または周りの肌の陰影と質感で埋めます</translation>
    </message>
    <message>
        <source>The natural repair always takes the skin&apos;s own color</source>
        <translation>自然な修正は常に肌そのものの色を使います</translation>
    </message>
    <message>
        <source>Custom color: only used by the repair “Flat color”</source>
        <translation>指定色：「単色」の修正だけで使います</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used by the repair “Flat color”</source>
        <translation>写真から色を取る：「単色」の修正だけで使います</translation>
    </message>
    <message>
        <source>More settings</source>
        <translation>その他の設定</translation>
    </message>
</context>
<context>
    <name>complexion::StrokeDrawing</name>
    <message>
        <source>Strokes need the natural repair.</source>
        <translation>なぞる修正には「自然」を選んでください。</translation>
    </message>
    <message>
        <source>Stroke begun.</source>
        <translation>なぞり始めました。</translation>
    </message>
    <message>
        <source>Strokes need an edit area of at most %1 pixels.</source>
        <translation>なぞる修正では、修正範囲を%1ピクセル以下にしてください。</translation>
    </message>
</context>
<context>
    <name>complexion::SuggestionMarks</name>
    <message>
        <source>Blemishes marked: %1.</source>
        <translation>表示中の候補：%1か所。</translation>
    </message>
</context>
<context>
    <name>complexion::ViewController</name>
    <message>
        <source>Restoring the repairs…</source>
        <translation>修正を復元しています…</translation>
    </message>
    <message>
        <source>Opening the photo…</source>
        <translation>写真を開いています…</translation>
    </message>
    <message>
        <source>Saving the photo…</source>
        <translation>写真を保存しています…</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>色を自動検出</translation>
    </message>
    <message>
        <source>Undone.</source>
        <translation>元に戻しました。</translation>
    </message>
    <message>
        <source>Undone: %1.</source>
        <translation>元に戻しました：%1。</translation>
    </message>
    <message>
        <source>Redone.</source>
        <translation>やり直しました。</translation>
    </message>
    <message>
        <source>Redone: %1.</source>
        <translation>やり直しました：%1。</translation>
    </message>
</context>
<context>
    <name>complexion::WindowContents</name>
    <message>
        <source>Select image</source>
        <translation>画像を選択</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>画像を再読み込み</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>画像を保存</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>元に戻す</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>やり直す</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>拡大</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>縮小</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>ウィンドウに合わせる</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>元の写真を表示</translation>
    </message>
</context>
<context>
    <name>complexion::ZoomButton</name>
    <message>
        <source>Zoom</source>
        <translation>ズーム</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1%</translation>
    </message>
    <message>
        <source>Zoom: %1</source>
        <translation>ズーム：%1</translation>
    </message>
    <message>
        <source>Zoom: no photo is open</source>
        <translation>ズーム：写真が開かれていません</translation>
    </message>
</context>
</TS>
