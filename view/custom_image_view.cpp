// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/custom_image_view.h"

#include "imaging/base/fatal.h"
#include "imaging/base/lower_case.h"
#include "imaging/image_tools.h"
#include "imaging/screen_colors.h"
#include "view/accessible_photo.h"
#include "view/image_fit.h"
#include "view/image_painter.h"
#include "view/notification_center.h"

#include <QAccessible>
#include <QCursor>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QPaintEvent>
#include <QPainter>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace complexion {

namespace {

/// From the last step of a zoom until its pixels are painted, in milliseconds.
constexpr int kRestBeforeRefining = 20;
/// How long refining keeps the event loop waiting at a time.
constexpr std::chrono::milliseconds kRefiningStep{10};
/// The same for preparing the next zoom.
constexpr std::chrono::milliseconds kPreparingStep{4};
/// A frame that differs from the image in more of its area is painted from scratch.
constexpr double kMaxChangedShare = 0.25;

/// The MIME type of a drag that carries URLs.
const QString kAddressList = QStringLiteral("text/uri-list");

/// The path of a file URL, byte for byte; empty for any other URL.
std::filesystem::path localPath(const QUrl& url) {
    if (!url.isLocalFile())
        return {};
    const QByteArray path = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    return path.toStdString();
}

QAccessibleInterface* accessibleView(const QString&, QObject* object) {
    auto* const view = qobject_cast<CustomImageView*>(object);
    return view ? new AccessiblePhoto(view) : nullptr; // the accessibility cache owns it
}

} // namespace

CustomImageView::CustomImageView(QWidget* parent)
    : QWidget(parent), m_acceptedTypes(ImageTools::kAcceptedTypes.begin(), ImageTools::kAcceptedTypes.end()) {
    QAccessible::installFactory(accessibleView); // safe to repeat
    setAccessibleName(tr("Photo"));
    m_refining.setSingleShot(true);
    connect(&m_refining, &QTimer::timeout, this, &CustomImageView::refine);
}

void CustomImageView::setBackground(const QColor& color) {
    m_background = color;
    // The parent's background below would be painted for nothing.
    setAttribute(Qt::WA_OpaquePaintEvent);
    for (KeptFrame& kept : m_kept)
        kept = {.image = std::nullopt, .frame = PaintedFrame(color)};
    update();
}

QTransform CustomImageView::pixelsToWidget() const {
    return pixelsToWidget(*m_image, m_frame);
}

QTransform CustomImageView::pixelsToWidget(const Image& image, const Frame& frame) const {
    const PointSize points = image.size();
    const PixelSize pixels = image.pixelSize();
    const ImageFit fit = fitImage(points, {frame.width, frame.height});
    QTransform transform;
    transform.translate(frame.x + fit.offsetX, height() - (frame.y + frame.height) + fit.offsetY);
    transform.scale(fit.scale * points.width / pixels.width, fit.scale * points.height / pixels.height);
    return transform;
}

Image CustomImageView::inScreenColors(const Image& image) {
    if (!(m_profile == image.profile())) {
        m_profile = image.profile();
        m_toScreen = screenTransform(image.profile(), m_monitor);
    }
    return m_toScreen ? image.transformed(m_toScreen) : image;
}

void CustomImageView::setMonitor(const ColorProfile& monitor) {
    if (monitor == m_monitor)
        return;
    m_monitor = monitor;
    m_profile.reset();
    for (KeptFrame& kept : m_kept) {
        kept.image.reset();
        kept.frame.clear();
    }
    refresh(std::nullopt);
}

void CustomImageView::showPreview(const Image& preview, const Frame& frame) {
    m_preview = {.image = inScreenColors(preview), .frame = frame};
    repaint();
}

void CustomImageView::endPreview() {
    if (std::exchange(m_preview, std::nullopt))
        update();
}

void CustomImageView::setImage(std::optional<Image> image) {
    endPreview();
    const std::optional<Image> before = m_replacement ? m_replacement : m_image;
    m_image = std::move(image);
    if (m_replacement && !(m_image && m_image->size() == m_replacement->size()))
        m_replacement.reset();
    refresh(before);
}

void CustomImageView::showReplacement(std::optional<Image> image) {
    const std::optional<Image> before = m_replacement ? m_replacement : m_image;
    m_replacement = m_image && image && image->size() == m_image->size() ? std::move(image) : std::nullopt;
    refresh(before);
}

void CustomImageView::refresh(const std::optional<Image>& before) {
    const std::optional<Image>& now = m_replacement ? m_replacement : m_image;
    const bool comparable = before && now && before->size() == now->size();
    const PixelRect changed = comparable ? before->difference(*now) : PixelRect{};
    m_onScreen = now && now->hasPixels() ? std::optional(inScreenColors(*now)) : std::nullopt;
    if (m_onScreen)
        chooseFrame(*now);
    else
        for (KeptFrame& kept : m_kept) {
            kept.image.reset();
            kept.frame.clear();
        }
    if (!comparable) {
        update();
    } else if (!changed.isEmpty()) {
        // The margin covers neighbours that bilinear scaling blends in, at the coarsest mipmap level.
        const QRectF area(changed.x, changed.y, changed.width, changed.height);
        update(pixelsToWidget().mapRect(area).toAlignedRect().adjusted(-2, -2, 2, 2));
    }
}

void CustomImageView::chooseFrame(const Image& image) {
    const auto changedIn = [&image](const KeptFrame& kept) -> std::optional<PixelRect> {
        if (!kept.image || !(kept.image->size() == image.size()) ||
            !(kept.image->pixelSize() == image.pixelSize()))
            return std::nullopt;
        const PixelRect changed = kept.image->difference(image);
        const auto share =
            static_cast<double>(changed.area()) / static_cast<double>(image.pixelSize().area());
        return share <= kMaxChangedShare ? std::optional(changed) : std::nullopt;
    };
    std::optional<PixelRect> changed = changedIn(m_kept[m_current]);
    if (!changed || !changed->isEmpty()) {
        const std::size_t other = 1 - m_current;
        const std::optional<PixelRect> changedInOther = changedIn(m_kept[other]);
        if (!changed || (changedInOther && changedInOther->area() < changed->area())) {
            m_current = other;
            changed = changedInOther;
        }
    }
    KeptFrame& kept = m_kept[m_current];
    if (!changed)
        kept.frame.clear();
    else if (!changed->isEmpty())
        kept.frame.invalidate(*changed);
    kept.image = image;
}

void CustomImageView::refine() {
    if (!m_onScreen)
        return;
    PaintedFrame& frame = m_kept[m_current].frame;
    update(frame.refine(*m_onScreen, mapFromGlobal(QCursor::pos()), kRefiningStep));
    if (frame.isProvisional())
        m_refining.start(0);
    else if (!frame.prepareBackdrop(*m_onScreen, kPreparingStep))
        m_refining.start(kRestBeforeRefining);
}

void CustomImageView::setFrame(const Frame& frame) {
    if (m_frame == frame)
        return;
    const bool isZoomed = frame.width != m_frame.width || frame.height != m_frame.height;
    if (isZoomed)
        m_refining.start(kRestBeforeRefining);
    m_frame = frame;
    update();
    Q_EMIT frameChanged();
}

void CustomImageView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    if ((m_preview || !m_onScreen) && m_background)
        painter.fillRect(event->rect(), *m_background);
    if (m_preview)
        paintImage(painter, m_preview->image, pixelsToWidget(m_preview->image, m_preview->frame),
                   event->rect());
    if (m_preview || !m_onScreen)
        return;
    PaintedFrame& frame = m_kept[m_current].frame;
    frame.paint(painter, *m_onScreen, pixelsToWidget(), event->region(), rect());
    if (frame.isProvisional() && !m_refining.isActive())
        m_refining.start(kRestBeforeRefining);
}

void CustomImageView::dragEnterEvent(QDragEnterEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void CustomImageView::dragMoveEvent(QDragMoveEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void CustomImageView::dropEvent(QDropEvent* event) {
    event->setDropAction(Qt::CopyAction);
    // A program that dies in the middle of its drag leaves an offer of URLs without any. That must not end
    // this program too.
    const QMimeData* pasteboard = event->mimeData();
    const bool isBroken = pasteboard->hasFormat(kAddressList) && pasteboard->urls().isEmpty();
    if (isBroken || !m_image || !isAcceptedAddress(*pasteboard)) {
        event->setAccepted(!isBroken && performDragOperation(pasteboard));
        return;
    }
    // The program that the drag comes from waits for the end of this event, which must not wait for an answer
    // to the question.
    event->accept();
    const QList<QUrl> addresses = pasteboard->urls();
    QTimer::singleShot(0, this, [this, addresses] {
        QMimeData dropped;
        dropped.setUrls(addresses);
        performDragOperation(&dropped);
    });
}

bool CustomImageView::isAcceptedType(const std::string& extension) const {
    return std::ranges::find(m_acceptedTypes, lowerCase(extension)) != m_acceptedTypes.end();
}

bool CustomImageView::isAcceptedAddress(const QMimeData& pasteboard) const {
    const QList<QUrl> urls = pasteboard.urls();
    const std::string extension = urls.isEmpty() ? "" : localPath(urls.front()).extension().string();
    return !extension.empty() && isAcceptedType(extension.substr(1));
}

bool CustomImageView::performDragOperation(const QMimeData* pasteboard) {
    if (!pasteboard)
        fatal("a drag without a list of types");
    if (!pasteboard->hasFormat(kAddressList))
        return false;
    const QList<QUrl> urls = pasteboard->urls();
    if (urls.isEmpty())
        fatal("a drag that offers URLs has none");
    const std::filesystem::path path = localPath(urls.front());
    if (!isAcceptedAddress(*pasteboard)) {
        if (!path.empty())
            Q_EMIT fileRefused(path, false);
        return false;
    }
    if (m_image) {
        const int answer = m_dialogs->runAlert(yesNoQuestion(QT_TRANSLATE_NOOP(
            "Alerts", "All unsaved changes will be lost. Are you sure you want to add a new image?")));
        if (answer == kSecondButton)
            return false;
    }
    if (!ImageTools::DecodeImage(path)) {
        Q_EMIT fileRefused(path, true);
        return false;
    }
    NotificationCenter::defaultCenter().post({kDragPerformed, UserInfo{{kPathKey, path.string()}}});
    return true;
}

} // namespace complexion
