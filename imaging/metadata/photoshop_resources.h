// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/byte_order.h"

namespace complexion {

// Photoshop's image resources ("8BIM" blocks one after the other), as JPEG, TIFF and others embed them.

/// The resources without those that speak of the pixels before: thumbnails and colour profile; EXIF blocks
/// and XMP packets in them lose their thumbnails. The very bytes when there are none such. A damaged rest is
/// kept as it is.
Bytes resourcesToCarry(ByteView resources);

/// The IPTC records among the resources; empty when there are none.
Bytes iptcOfResources(ByteView resources);

/// The resources other than IPTC records, and resources made of IPTC records followed by others.
Bytes resourcesWithoutIptc(ByteView resources);
Bytes resourcesWithIptc(ByteView resources, ByteView iptc);

/// IPTC records without the preview picture that they may hold.
Bytes iptcToCarry(ByteView iptc);

} // namespace complexion
