// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/editor_fixture.h"

#include <QMimeData>
#include <QUrl>

#include <algorithm>

namespace complexion {

namespace {

constexpr int kBoxSide = 20; // points

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; });
    return text;
}

/// A box at position `index` in a row along the top of the root view.
Box* makeBox(QWidget* root, int index) {
    auto* const box = new Box(root);
    box->setGeometry(index * kBoxSide, 0, kBoxSide, kBoxSide);
    return box;
}

} // namespace

EditorTest::EditorTest(Queues* others) : root(std::make_unique<QWidget>()) {
    root->resize(static_cast<int>(kRootSize.width), static_cast<int>(kRootSize.height));
    imageView = new CustomImageView(root.get());
    imageView->setGeometry(root->rect());
    imageView->setFrame({0, 0, kRootSize.width, kRootSize.height});
    imageView->setDialogs(&dialogs);

    controller = std::make_shared<ViewController>(root.get(), dialogs, platform, others ? *others : queues);
    controller->imageView = imageView;
    const auto outlets = {
        &controller->boxHint,       &controller->boxHelp,         &controller->boxSelectImage,
        &controller->boxResetImage, &controller->boxSaveImage,    &controller->boxZoomIn,
        &controller->boxZoomOut,    &controller->boxResetZoom,    &controller->boxUndo,
        &controller->boxRedo,       &controller->boxEditSettings,
    };
    for (QPointer<Box>* const outlet : outlets) {
        boxes.push_back(makeBox(root.get(), static_cast<int>(boxes.size())));
        *outlet = boxes.back();
    }
    QWidget* const settings = controller->boxEditSettings;
    controller->checkAutodetectColor = new QCheckBox(settings);
    controller->colorWellCustomColor = new ColorWell(settings);
    controller->textFieldEditAreaSize = new QLineEdit(settings);
    controller->stepperEditAreaSize = new Stepper(settings);
    controller->stepperEditAreaSize->setRange(1, 500);
    controller->sliderThreshold = new Slider(settings);
    controller->sliderThreshold->setFloatRange(0, 100);
    controller->comboRepair = new QComboBox(settings);
    controller->comboEffect = new QComboBox(settings);
}

EditorTest::~EditorTest() {
    // Pending tasks may own the controller.
    queues.clear();
}

void EditorTest::SetUp() {
    controller->awakeFromNib();
    controller->viewDidLoad();
}

std::filesystem::path EditorTest::makePhoto(const std::string& name, const Image& image) const {
    const std::filesystem::path path = platform.photos() / name;
    const std::string extension = path.extension();
    EXPECT_TRUE(ImageTools::SaveImage(image, path, lowerCase(extension.substr(1)))) << path;
    return path;
}

std::filesystem::path EditorTest::makePhoto(const std::string& name) const {
    return makePhoto(name, photo());
}

Image EditorTest::photo() {
    return skinWithBlemishes(kPhotoSize, blemishes());
}

const std::vector<PixelPosition>& EditorTest::blemishes() {
    static const std::vector<PixelPosition> places = {{20, 20}, {30, 55}, {45, 25}};
    return places;
}

void EditorTest::openThroughPanel(const std::filesystem::path& path) {
    if (!controller->originalImagePath.empty())
        dialogs.expectQuestion(kSelectQuestion, kFirstButton);
    dialogs.expectOpenPanel(chosen(path));
    controller->OnSelectImage(nullptr);
}

bool EditorTest::drop(const std::filesystem::path& path) {
    if (imageView->image())
        dialogs.expectQuestion(kDropQuestion, kFirstButton);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
    return imageView->performDragOperation(&data);
}

void EditorTest::reload() {
    dialogs.expectQuestion(kReloadQuestion, kFirstButton);
    controller->OnResetImage(nullptr);
}

void EditorTest::click(Point inRootView, double seconds) {
    controller->mouseDown({.locationInWindow = inRootView});
    platform.uptime += static_cast<std::uint64_t>(seconds * 1e9 + 0.5);
    controller->mouseUp({.locationInWindow = inRootView});
    platform.uptime += 1'000'000'000;
}

void EditorTest::clickPixel(PixelPosition position, double seconds) {
    click(shownAt(position), seconds);
}

void EditorTest::retouch(std::size_t blemish) {
    clickPixel(blemishes().at(blemish));
    queues.runAll();
}

void EditorTest::drag(double deltaX, double deltaY) {
    controller->mouseDragged({.locationInWindow = {}, .deltaX = deltaX, .deltaY = deltaY});
}

void EditorTest::selectEffect(int index) {
    controller->comboEffect->setCurrentIndex(index);
    controller->OnEffectSelected(controller->comboEffect);
}

void EditorTest::save(const std::filesystem::path& path) {
    const std::string extension = lowerCase(controller->originalImageExtension);
    dialogs.expectSavePanel({{extension}, controller->originalImageName + "_retouched." + extension},
                            chosen(path));
    dialogs.expectAlert(kSaveSuccess, AlertStyle::Informational);
    printedBy([this] { controller->OnSaveImage(nullptr); });
}

Point EditorTest::shownAt(PixelPosition position) const {
    const PointSize image = controller->originalImage().size();
    const Frame frame = imageView->frame();
    const double scale = std::min(frame.width / image.width, frame.height / image.height);
    const double left = frame.x + (frame.width - image.width * scale) / 2;
    const double bottom = frame.y + (frame.height - image.height * scale) / 2;
    return {left + (static_cast<double>(position.column) + 0.5) * scale,
            bottom + (image.height - static_cast<double>(position.row) - 0.5) * scale};
}

std::vector<std::string> EditorTest::stateFiles() const {
    return filesIn(platform.states());
}

const std::filesystem::path& EditorTest::currentPath() const {
    return controller->stateImagesPath.at(static_cast<std::size_t>(controller->currenState));
}

Image EditorTest::shown() const {
    EXPECT_TRUE(imageView->image().has_value()) << "no image is shown";
    return imageView->image().value_or(Image());
}

EditorTest::ObservableState EditorTest::observableState() const {
    return {.paths = controller->stateImagesPath,
            .currenState = controller->currenState,
            .name = controller->originalImageName,
            .path = controller->originalImagePath,
            .extension = controller->originalImageExtension,
            .effect = controller->comboEffect->currentIndex(),
            .hintHidden = controller->boxHint->isHidden(),
            .helpHidden = controller->boxHelp->isHidden(),
            .frame = imageView->frame(),
            .files = stateFiles()};
}

void EditorTest::expectUnchangedBy(const std::function<void()>& work) {
    const ObservableState before = observableState();
    const Image working = controller->originalImage();
    const std::optional<Image> onScreen = imageView->image();
    work();
    EXPECT_TRUE(observableState() == before);
    EXPECT_TRUE(controller->originalImage().isSameObject(working));
    ASSERT_EQ(imageView->image().has_value(), onScreen.has_value());
    if (onScreen) {
        EXPECT_TRUE(imageView->image()->isSameObject(*onScreen));
    }
}

} // namespace complexion
