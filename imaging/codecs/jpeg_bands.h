// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/result.h"
#include "imaging/codecs/jpeg_tables.h"

#include <memory>
#include <vector>

namespace complexion {

/// A picture's code tables, kept beside it.
struct JpegPictureTables : Memo::Value {
    JpegTables codes;
};

/// The entropy-coded bytes of each band of `image`, coded with `tables`: its block rows are restart intervals
/// with the markers RST0 to RST6 between them. (A band has eight block rows: RST7 belongs between each two
/// bands.) What is kept beside stored bands is used, and of a band that was edited only the changed block
/// rows are coded again.
Result<std::vector<std::shared_ptr<const Bytes>>>
codedJpegBands(const Image& image, const std::shared_ptr<const JpegPictureTables>& tables);

} // namespace complexion
