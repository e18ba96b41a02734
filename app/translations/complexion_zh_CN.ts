<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>Alerts</name>
    <message>
        <source>The photo has been moved or deleted. Its repairs are kept until you forget them.</source>
        <translation>照片已被移动或删除。在您放弃之前，修复会一直保留。</translation>
    </message>
    <message>
        <source>The photo has changed since then. Its repairs are kept until you forget them.</source>
        <translation>照片在此之后已更改。在您放弃之前，修复会一直保留。</translation>
    </message>
    <message>
        <source>The repairs could not be applied to the photo. They are kept until you forget them.</source>
        <translation>无法将修复应用到照片。在您放弃之前，修复会一直保留。</translation>
    </message>
    <message>
        <source>The repairs of this photo will be lost. Are you sure you want to forget them?</source>
        <translation>这张照片的修复将会丢失。确定要放弃吗？</translation>
    </message>
    <message>
        <source>Removes blemishes from portraits. Free software under the GNU General Public License, version 3 or later.</source>
        <translation>去除人像上的瑕疵。遵循 GNU 通用公共许可证第 3 版或更高版本的自由软件。</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>This folder is emptied when Complexion ends. Please choose another one.</source>
        <translation>Complexion 退出时会清空此文件夹。请选择其他文件夹。</translation>
    </message>
    <message>
        <source>The image could not be loaded.</source>
        <translation>无法载入图像。</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to select a new image?</source>
        <translation>所有未保存的更改都将丢失。确定要选择新图像吗？</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to reload the image?</source>
        <translation>所有未保存的更改都将丢失。确定要重新载入图像吗？</translation>
    </message>
    <message>
        <source>Image saved successfully.</source>
        <translation>图像已保存。</translation>
    </message>
    <message>
        <source>Could not save the image.</source>
        <translation>无法保存图像。</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to exit the application?</source>
        <translation>所有未保存的更改都将丢失。确定要退出应用程序吗？</translation>
    </message>
    <message>
        <source>All unsaved changes will be lost. Are you sure you want to add a new image?</source>
        <translation>所有未保存的更改都将丢失。确定要添加新图像吗？</translation>
    </message>
</context>
<context>
    <name>Cards</name>
    <message>
        <source>Drop a photo here</source>
        <translation>将照片拖放到这里</translation>
    </message>
    <message>
        <source>or click to choose one</source>
        <translation>或点击选择一张</translation>
    </message>
    <message>
        <source>Set the edit area a little larger than the blemish.</source>
        <translation>把修复区域设得比瑕疵稍大一些。</translation>
    </message>
    <message>
        <source>Click the blemish: it blends into the skin around it.</source>
        <translation>点击瑕疵，它会融入周围的皮肤。</translation>
    </message>
    <message>
        <source>Save a copy. Your photo stays as it is.</source>
        <translation>保存副本，原照片保持不变。</translation>
    </message>
</context>
<context>
    <name>Effects</name>
    <message>
        <source>Normal</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>Chrome</source>
        <translation>铬黄</translation>
    </message>
    <message>
        <source>Fade</source>
        <translation>褪色</translation>
    </message>
    <message>
        <source>Instant</source>
        <translation>即时</translation>
    </message>
    <message>
        <source>Mono</source>
        <translation>单色</translation>
    </message>
    <message>
        <source>Noir</source>
        <translation>黑白</translation>
    </message>
    <message>
        <source>Process</source>
        <translation>冲印</translation>
    </message>
    <message>
        <source>Tonal</source>
        <translation>色调</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>转印</translation>
    </message>
</context>
<context>
    <name>Menus</name>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>Open again</source>
        <translation>再次打开</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>编辑(&amp;E)</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>修复</translation>
    </message>
    <message>
        <source>Autodetect color</source>
        <translation>自动检测颜色</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>从照片取色</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>效果</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>视图(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>帮助(&amp;H)</translation>
    </message>
</context>
<context>
    <name>Notices</name>
    <message>
        <source>%1 bits per channel become 8</source>
        <translation>每通道 %1 位变为 8 位</translation>
    </message>
    <message>
        <source>CMYK becomes RGB</source>
        <translation>CMYK 变为 RGB</translation>
    </message>
    <message>
        <source>Lab becomes RGB</source>
        <translation>Lab 变为 RGB</translation>
    </message>
    <message>
        <source>only page 1 of %1</source>
        <translation>只有第 1 页（共 %1 页）</translation>
    </message>
    <message>
        <source>only the first of %1 frames</source>
        <translation>只有第一帧（共 %1 帧）</translation>
    </message>
    <message>
        <source>the layers are merged</source>
        <translation>图层会合并</translation>
    </message>
    <message>
        <source>the moving picture is left out</source>
        <translation>不含动态画面</translation>
    </message>
    <message>
        <source>the embedded preview is left out</source>
        <translation>不含内嵌预览</translation>
    </message>
    <message>
        <source>Complexion opens JPEG, PNG, TIFF, GIF and BMP.</source>
        <translation>Complexion 可打开 JPEG、PNG、TIFF、GIF 和 BMP。</translation>
    </message>
    <message>
        <source>“%1” is a camera’s raw file.</source>
        <translation>“%1”是相机的原始文件。</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from your raw developer.</source>
        <translation>请从您的冲洗软件导出 JPEG 或 TIFF。</translation>
    </message>
    <message>
        <source>“%1” is not a still picture.</source>
        <translation>“%1”不是静态图像。</translation>
    </message>
    <message>
        <source>Export a JPEG or TIFF from the program that opens it.</source>
        <translation>请从能打开它的程序导出 JPEG 或 TIFF。</translation>
    </message>
    <message>
        <source>The file is damaged: part of the picture is missing.</source>
        <translation>文件已损坏：缺少部分图像。</translation>
    </message>
    <message>
        <source>In the saved copy: %1.</source>
        <translation>保存的副本：%1。</translation>
    </message>
    <message>
        <source>, </source>
        <translation>，</translation>
    </message>
    <message>
        <source>The photo cannot be saved: %1 cannot hold pictures this large.</source>
        <translation>无法保存照片：%1 格式容纳不下这么大的图像。</translation>
    </message>
    <message>
        <source>“%1” is not a picture.</source>
        <translation>“%1”不是图像。</translation>
    </message>
    <message>
        <source>“%1” is too large to be opened.</source>
        <translation>“%1”太大，无法打开。</translation>
    </message>
    <message>
        <source>There is not enough memory to open “%1”.</source>
        <translation>内存不足，无法打开“%1”。</translation>
    </message>
    <message>
        <source>“%1” cannot be read. It may have been moved, or you may not have permission.</source>
        <translation>无法读取“%1”。文件可能已被移动，或者您没有权限。</translation>
    </message>
    <message>
        <source>“%1” is damaged, or of a kind that Complexion does not know.</source>
        <translation>“%1”已损坏，或是 Complexion 不支持的类型。</translation>
    </message>
    <message>
        <source>“%1” has the format %2.</source>
        <translation>“%1”的格式是 %2。</translation>
    </message>
    <message>
        <source>“%1” needs a name that ends with .jpg, .png, .tiff, .gif or .bmp.</source>
        <translation>“%1”的名称必须以 .jpg、.png、.tiff、.gif 或 .bmp 结尾。</translation>
    </message>
</context>
<context>
    <name>RepairWords</name>
    <message>
        <source>Repaired one pixel.</source>
        <translation>已修复 1 个像素。</translation>
    </message>
    <message>
        <source>One pixel would be repaired.</source>
        <translation>将修复 1 个像素。</translation>
    </message>
    <message>
        <source>Repaired %1 pixels.</source>
        <translation>已修复 %1 个像素。</translation>
    </message>
    <message>
        <source>%1 pixels would be repaired.</source>
        <translation>将修复 %1 个像素。</translation>
    </message>
    <message>
        <source>at the top</source>
        <translation>上方</translation>
    </message>
    <message>
        <source>at the top right</source>
        <translation>右上方</translation>
    </message>
    <message>
        <source>on the right</source>
        <translation>右侧</translation>
    </message>
    <message>
        <source>at the bottom right</source>
        <translation>右下方</translation>
    </message>
    <message>
        <source>at the bottom</source>
        <translation>下方</translation>
    </message>
    <message>
        <source>at the bottom left</source>
        <translation>左下方</translation>
    </message>
    <message>
        <source>on the left</source>
        <translation>左侧</translation>
    </message>
    <message>
        <source>at the top left</source>
        <translation>左上方</translation>
    </message>
    <message>
        <source>not enough memory</source>
        <translation>内存不足</translation>
    </message>
    <message>
        <source>nothing stands out from the skin</source>
        <translation>这里与皮肤没有明显差异</translation>
    </message>
    <message>
        <source>the skin differs too much %1</source>
        <translation>%1的皮肤差异过大</translation>
    </message>
    <message>
        <source>something larger reaches into the ring %1</source>
        <translation>%1有更大的东西伸入圆环</translation>
    </message>
    <message>
        <source>too little clean skin in the ring</source>
        <translation>圆环内干净的皮肤太少</translation>
    </message>
    <message>
        <source>no skin nearby to match</source>
        <translation>附近没有相配的皮肤</translation>
    </message>
    <message>
        <source>too close to the edge of the photo</source>
        <translation>离照片边缘太近</translation>
    </message>
    <message>
        <source>Not repaired: %1.</source>
        <translation>未修复：%1。</translation>
    </message>
</context>
<context>
    <name>Repairs</name>
    <message>
        <source>Flat color</source>
        <translation>纯色</translation>
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
        <translation>修复</translation>
    </message>
    <message>
        <source>natural repair</source>
        <translation>自然修复</translation>
    </message>
</context>
<context>
    <name>complexion::Actions</name>
    <message>
        <source>Select image…</source>
        <translation>选择图像…</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>重新载入图像</translation>
    </message>
    <message>
        <source>Save image…</source>
        <translation>保存图像…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>重做</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>放大</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>缩小</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>适合窗口</translation>
    </message>
    <message>
        <source>Actual pixels</source>
        <translation>实际像素</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>显示原图</translation>
    </message>
    <message>
        <source>Preview the repair</source>
        <translation>预览修复</translation>
    </message>
    <message>
        <source>Larger edit area</source>
        <translation>增大修复区域</translation>
    </message>
    <message>
        <source>Fit the edit area</source>
        <translation>调整修复区域</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>贴合</translation>
    </message>
    <message>
        <source>Fit the edit area to the blemish under it</source>
        <translation>使修复区域贴合下方的瑕疵</translation>
    </message>
    <message>
        <source>Smaller edit area</source>
        <translation>减小修复区域</translation>
    </message>
    <message>
        <source>Video tutorial</source>
        <translation>视频教程</translation>
    </message>
    <message>
        <source>About Complexion</source>
        <translation>关于 Complexion</translation>
    </message>
    <message>
        <source>no photo is open</source>
        <translation>没有打开的照片</translation>
    </message>
    <message>
        <source>Select image</source>
        <translation>选择图像</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>保存图像</translation>
    </message>
    <message>
        <source>nothing to undo</source>
        <translation>没有可撤销的操作</translation>
    </message>
    <message>
        <source>nothing to redo</source>
        <translation>没有可重做的操作</translation>
    </message>
    <message>
        <source>Hold to see the original</source>
        <translation>按住以查看原图</translation>
    </message>
    <message>
        <source>not included in this build</source>
        <translation>此版本未包含</translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation>撤销%1</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>重做%1</translation>
    </message>
    <message>
        <source>Next blemish</source>
        <translation>下一处瑕疵</translation>
    </message>
    <message>
        <source>Previous blemish</source>
        <translation>上一处瑕疵</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
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
        <translation>提高阈值</translation>
    </message>
    <message>
        <source>Lower threshold</source>
        <translation>降低阈值</translation>
    </message>
    <message>
        <source>Show the controls</source>
        <translation>显示控件</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>全屏</translation>
    </message>
    <message>
        <source>Show blemishes</source>
        <translation>显示瑕疵</translation>
    </message>
    <message>
        <source>Only the ten strongest</source>
        <translation>仅显示最明显的十处</translation>
    </message>
</context>
<context>
    <name>complexion::Aim</name>
    <message>
        <source>Column %1, row %2. %3</source>
        <translation>第 %1 列，第 %2 行。%3</translation>
    </message>
    <message>
        <source>F fits the ring</source>
        <translation>按 F 使圆环贴合</translation>
    </message>
    <message>
        <source>Nothing larger to fit here.</source>
        <translation>这里没有更大的瑕疵。</translation>
    </message>
    <message>
        <source>No blemish to fit here.</source>
        <translation>这里没有可贴合的瑕疵。</translation>
    </message>
    <message>
        <source>The edit area fits: %1 pixels.</source>
        <translation>修复区域已贴合：%1 像素。</translation>
    </message>
    <message>
        <source>dark spot</source>
        <translation>深色斑点</translation>
    </message>
    <message>
        <source>red spot</source>
        <translation>红色斑点</translation>
    </message>
    <message>
        <source>light spot</source>
        <translation>浅色斑点</translation>
    </message>
    <message>
        <source>No blemishes found.</source>
        <translation>未发现瑕疵。</translation>
    </message>
    <message>
        <source>Suggestion %1 of %2: %3, %4 pixels</source>
        <translation>建议 %1/%2：%3，%4 像素</translation>
    </message>
    <message>
        <source>Zoom in to aim</source>
        <translation>放大以便瞄准</translation>
    </message>
</context>
<context>
    <name>complexion::BusySign</name>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
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
        <translation>自选颜色</translation>
    </message>
</context>
<context>
    <name>complexion::ContinueCard</name>
    <message>
        <source>Continue where you left off: %1, %2 repairs</source>
        <translation>从上次中断处继续：%1，%2 处修复</translation>
    </message>
    <message>
        <source>Continue where you left off: %1</source>
        <translation>从上次中断处继续：%1</translation>
    </message>
    <message>
        <source>Continue where you left off: %1, 1 repair</source>
        <translation>从上次中断处继续：%1，1 处修复</translation>
    </message>
    <message>
        <source>Forget</source>
        <translation>放弃</translation>
    </message>
    <message>
        <source>Forget %1</source>
        <translation>放弃 %1</translation>
    </message>
</context>
<context>
    <name>complexion::CustomImageView</name>
    <message>
        <source>Photo</source>
        <translation>照片</translation>
    </message>
</context>
<context>
    <name>complexion::FilePanel</name>
    <message>
        <source>Photos: %1</source>
        <translation>照片：%1</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>文件夹：</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>文件夹</translation>
    </message>
    <message>
        <source>Parent folder</source>
        <translation>上级文件夹</translation>
    </message>
    <message>
        <source>Parent folder (Alt+Up)</source>
        <translation>上级文件夹（Alt+上箭头）</translation>
    </message>
    <message>
        <source>File name:</source>
        <translation>文件名：</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>文件名</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Looking for the file…</source>
        <translation>正在查找文件…</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>计算机</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>主文件夹</translation>
    </message>
</context>
<context>
    <name>complexion::FolderModel</name>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>修改时间</translation>
    </message>
</context>
<context>
    <name>complexion::FolderView</name>
    <message>
        <source>Files</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>Reading the folder…</source>
        <translation>正在读取文件夹…</translation>
    </message>
    <message>
        <source>This folder cannot be listed: %1</source>
        <translation>无法列出此文件夹：%1</translation>
    </message>
    <message>
        <source>There are no photos here.</source>
        <translation>这里没有照片。</translation>
    </message>
</context>
<context>
    <name>complexion::MainWindow</name>
    <message>
        <source>Original</source>
        <translation>原图</translation>
    </message>
</context>
<context>
    <name>complexion::OpenFilePanel</name>
    <message>
        <source>Select image</source>
        <translation>选择图像</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>打开</translation>
    </message>
    <message>
        <source>There is no file “%1”.</source>
        <translation>没有文件“%1”。</translation>
    </message>
</context>
<context>
    <name>complexion::SaveFilePanel</name>
    <message>
        <source>Save image</source>
        <translation>保存图像</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>“%1” is the photo that you opened. Saving here replaces it for good. Do you want to replace it?</source>
        <translation>“%1”是您打开的照片。保存到这里会永久替换它。要替换吗？</translation>
    </message>
    <message>
        <source>“%1” already exists. Do you want to replace it?</source>
        <translation>“%1”已存在。要替换吗？</translation>
    </message>
</context>
<context>
    <name>complexion::SettingsBar</name>
    <message>
        <source>Fit</source>
        <translation>贴合</translation>
    </message>
    <message>
        <source>Edit area size</source>
        <translation>修复区域大小</translation>
    </message>
    <message>
        <source>Radius of the disc that a click repairs, in pixels of the photo</source>
        <translation>点击所修复圆盘的半径（照片像素）</translation>
    </message>
    <message>
        <source>Threshold</source>
        <translation>阈值</translation>
    </message>
    <message>
        <source>How much a pixel must differ from the skin around it to be repaired</source>
        <translation>像素与周围皮肤相差多少才会被修复</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>自动检测颜色</translation>
    </message>
    <message>
        <source>Take the color of the skin around the blemish</source>
        <translation>采用瑕疵周围皮肤的颜色</translation>
    </message>
    <message>
        <source>Custom color</source>
        <translation>自选颜色</translation>
    </message>
    <message>
        <source>Pick a color from the photo</source>
        <translation>从照片取色</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>颜色</translation>
    </message>
    <message>
        <source>Custom color: only used when Autodetect Color is off</source>
        <translation>自选颜色：仅在关闭自动检测颜色时使用</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used when Autodetect Color is off</source>
        <translation>从照片取色：仅在关闭自动检测颜色时使用</translation>
    </message>
    <message>
        <source>Pick a color from the photo: no photo is open</source>
        <translation>从照片取色：没有打开的照片</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>效果</translation>
    </message>
    <message>
        <source>Effect applied to the whole photo, and to the saved copy</source>
        <translation>应用于整张照片和保存副本的效果</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>修复</translation>
    </message>
    <message>
        <source>Fill a blemish with one color, or with the shading and texture of the skin around it</source>
        <translation>用一种颜色，或用周围皮肤的明暗和纹理填充瑕疵</translation>
    </message>
    <message>
        <source>The natural repair always takes the skin&apos;s own color</source>
        <translation>自然修复始终采用皮肤本身的颜色</translation>
    </message>
    <message>
        <source>Custom color: only used by the repair “Flat color”</source>
        <translation>自选颜色：仅用于“纯色”修复</translation>
    </message>
    <message>
        <source>Pick a color from the photo: only used by the repair “Flat color”</source>
        <translation>从照片取色：仅用于“纯色”修复</translation>
    </message>
    <message>
        <source>More settings</source>
        <translation>更多设置</translation>
    </message>
</context>
<context>
    <name>complexion::StrokeDrawing</name>
    <message>
        <source>Strokes need the natural repair.</source>
        <translation>涂抹修复需要选择“自然”。</translation>
    </message>
    <message>
        <source>Stroke begun.</source>
        <translation>已开始涂抹。</translation>
    </message>
    <message>
        <source>Strokes need an edit area of at most %1 pixels.</source>
        <translation>涂抹修复的修复区域不得超过 %1 像素。</translation>
    </message>
</context>
<context>
    <name>complexion::SuggestionMarks</name>
    <message>
        <source>Blemishes marked: %1.</source>
        <translation>已标记瑕疵：%1 处。</translation>
    </message>
</context>
<context>
    <name>complexion::ViewController</name>
    <message>
        <source>Restoring the repairs…</source>
        <translation>正在恢复修复…</translation>
    </message>
    <message>
        <source>Opening the photo…</source>
        <translation>正在打开照片…</translation>
    </message>
    <message>
        <source>Saving the photo…</source>
        <translation>正在保存照片…</translation>
    </message>
    <message>
        <source>Autodetect Color</source>
        <translation>自动检测颜色</translation>
    </message>
    <message>
        <source>Undone.</source>
        <translation>已撤销。</translation>
    </message>
    <message>
        <source>Undone: %1.</source>
        <translation>已撤销：%1。</translation>
    </message>
    <message>
        <source>Redone.</source>
        <translation>已重做。</translation>
    </message>
    <message>
        <source>Redone: %1.</source>
        <translation>已重做：%1。</translation>
    </message>
</context>
<context>
    <name>complexion::WindowContents</name>
    <message>
        <source>Select image</source>
        <translation>选择图像</translation>
    </message>
    <message>
        <source>Reload image</source>
        <translation>重新载入图像</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>保存图像</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>重做</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>放大</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>缩小</translation>
    </message>
    <message>
        <source>Reset zoom</source>
        <translation>适合窗口</translation>
    </message>
    <message>
        <source>Show the original</source>
        <translation>显示原图</translation>
    </message>
</context>
<context>
    <name>complexion::ZoomButton</name>
    <message>
        <source>Zoom</source>
        <translation>缩放</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1%</translation>
    </message>
    <message>
        <source>Zoom: %1</source>
        <translation>缩放：%1</translation>
    </message>
    <message>
        <source>Zoom: no photo is open</source>
        <translation>缩放：没有打开的照片</translation>
    </message>
</context>
</TS>
