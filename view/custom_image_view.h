// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/image.h"
#include "view/dialogs.h"
#include "view/frame.h"

#include <QWidget>

#include <optional>
#include <string_view>
#include <vector>

class QMimeData;

namespace complexion {

/// Shows an image scaled in proportion into its `frame`, and accepts a dropped image file, which it announces
/// with the "DragPerformed" notification.
///
/// The widget covers the root view; the photo is painted into `frame`, a rectangle of its own in the root
/// view's bottom-up coordinates, which zoom and pan move without any rounding to whole pixels. Mouse events
/// pass on to the root view.
class CustomImageView : public QWidget {
    Q_OBJECT

public:
    explicit CustomImageView(QWidget* parent = nullptr);

    /// Who asks before an open image is replaced. Needed before the first drop.
    void setDialogs(Dialogs* dialogs) { m_dialogs = dialogs; }

    const std::vector<std::string_view>& acceptedTypes() const { return m_acceptedTypes; }

    const std::optional<Image>& image() const { return m_image; }
    /// Shows another image; repaints what differs.
    void setImage(std::optional<Image> image);

    /// Paints another image of the same size in place of its own until it is told none. `image` stays what it
    /// is; an image of another size ends it.
    void showInstead(std::optional<Image> image);
    bool isShowingInstead() const { return m_instead.has_value(); }

    Frame frame() const { return m_frame; }
    void setFrame(const Frame& frame);

    /// The scaling from pixels of the image, which there must be, to the widget's top-down coordinates.
    QTransform pixelsToWidget() const;

    /// Decides about a drop; true when "DragPerformed" was posted. A drag without any list of types, or one
    /// that promises an address and has none, is fatal.
    bool performDragOperation(const QMimeData* pasteboard);

Q_SIGNALS:
    void frameChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    Image inScreenColors(const Image& image);
    bool isAcceptedType(const std::string& extension) const;
    /// Takes up what is to be painted now in place of `before`.
    void refresh(const std::optional<Image>& before);

    std::vector<std::string_view> m_acceptedTypes;
    Dialogs* m_dialogs = nullptr;
    std::optional<Image> m_image;
    std::optional<Image> m_instead;
    std::optional<Image> m_onScreen; // what is painted, in the screen's colours
    ColorProfile m_screenProfile;    // the profile that m_toScreen is for
    std::shared_ptr<const PixelTransform> m_toScreen;
    Frame m_frame;
};

} // namespace complexion
