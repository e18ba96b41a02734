// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "view/dialogs.h"
#include "view/frame.h"
#include "view/painted_frame.h"

#include <QTimer>
#include <QWidget>

#include <array>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

class QMimeData;

namespace complexion {

/// Shows an image fitted into its `frame`, and accepts a dropped image file, which it announces with the
/// "DragPerformed" notification.
///
/// The widget covers the root view. The photo is painted into `frame`, a rectangle in the root view's
/// bottom-up coordinates that zoom and pan change without rounding to whole pixels. Mouse events propagate to
/// the root view.
class CustomImageView : public QWidget {
    Q_OBJECT

public:
    explicit CustomImageView(QWidget* parent = nullptr);

    /// Sets the dialogs that ask before a drop replaces an open image. Required before the first drop.
    void setDialogs(Dialogs* dialogs) { m_dialogs = dialogs; }

    /// Paints an opaque colour behind and beside the image; without it, the parent shows there.
    void setBackground(const QColor& color);

    /// Paints for a monitor with this profile. Without it, for one of sRGB.
    void setMonitor(const ColorProfile& monitor);

    const std::vector<std::string_view>& acceptedTypes() const { return m_acceptedTypes; }

    /// Paints a preview of the next image, fitted into `frame`, at once and until the next `setImage` or
    /// `endPreview`. `image()` does not change.
    void showPreview(const Image& preview, const Frame& frame);
    void endPreview();
    bool isShowingPreview() const { return m_preview.has_value(); }

    const std::optional<Image>& image() const { return m_image; }
    /// Shows another image; repaints only the pixels that differ.
    void setImage(std::optional<Image> image);

    /// Paints `image`, of the same size, instead of the view's own until called with nullopt or until the
    /// view gets an image of another size. `image()` does not change.
    void showReplacement(std::optional<Image> image);
    bool isShowingReplacement() const { return m_replacement.has_value(); }

    Frame frame() const { return m_frame; }
    void setFrame(const Frame& frame);

    /// Whether pixels painted at another scale are shown, until their successors are painted.
    bool isProvisional() const { return m_kept[m_current].frame.isProvisional(); }

    /// Maps pixels of the image to the widget's top-down coordinates. Requires an image.
    QTransform pixelsToWidget() const;

    /// Handles a drop; true if "DragPerformed" was posted. Asks about an open photo first, but refuses
    /// whatever is no local file of an accepted type without a question. A drag without a list of types, or
    /// one that offers URLs and has none, is fatal.
    bool performDragOperation(const QMimeData* pasteboard);

Q_SIGNALS:
    void frameChanged();
    /// A dropped local file has no extension of an accepted type, or cannot be decoded.
    void fileRefused(const std::filesystem::path& path, bool hasAcceptedExtension);

protected:
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    Image inScreenColors(const Image& image);
    /// Maps pixels of an image that is fitted into `frame` to the widget's coordinates.
    QTransform pixelsToWidget(const Image& image, const Frame& frame) const;
    /// Whether the first URL is a local file of an accepted type.
    bool isAcceptedAddress(const QMimeData& pasteboard) const;
    bool isAcceptedType(const std::string& extension) const;
    /// Repaints after the shown image has changed from `before`.
    void refresh(const std::optional<Image>& before);
    /// Makes the kept frame that differs least from `image` the current one.
    void chooseFrame(const Image& image);
    /// Replaces some of the scaled pixels of another zoom by exact ones.
    void refine();

    std::vector<std::string_view> m_acceptedTypes;
    Dialogs* m_dialogs = nullptr;
    struct Preview {
        Image image; // in the screen's colour space
        Frame frame;
    };
    std::optional<Preview> m_preview;
    std::optional<Image> m_image;
    std::optional<Image> m_replacement;
    std::optional<Image> m_onScreen; // the painted image, in the monitor's colours
    ColorProfile m_monitor;
    std::optional<ColorProfile>
        m_profile; // that m_toScreen converts from; nothing if it is for another monitor
    std::shared_ptr<const PixelTransform> m_toScreen;
    Frame m_frame;

    struct KeptFrame {
        std::optional<Image> image; // in its own colours
        PaintedFrame frame;
    };
    std::optional<QColor> m_background;
    std::array<KeptFrame, 2> m_kept; // two, so that a comparison switches between painted pictures
    std::size_t m_current = 0;
    QTimer m_refining;
};

} // namespace complexion
