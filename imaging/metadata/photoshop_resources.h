// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/containers/byte_order.h"

namespace complexion::photoshop {

// Photoshop image resources (a sequence of "8BIM" blocks) as embedded in JPEG, TIFF and other files.

/// The resources without thumbnails and colour profile, which describe the unretouched pixels; embedded EXIF
/// and XMP lose their thumbnails. Identical bytes if there is nothing to remove. A damaged tail is kept as it
/// is.
Bytes resourcesToCarry(ByteView resources);

/// The IPTC records among the resources; empty if there are none.
Bytes iptcOf(ByteView resources);

/// Separates the other resources from IPTC records, and combines them again with the IPTC records first.
Bytes withoutIptc(ByteView resources);
Bytes withIptc(ByteView resources, ByteView iptc);

/// IPTC records without an embedded preview.
Bytes iptcToCarry(ByteView iptc);

} // namespace complexion::photoshop
