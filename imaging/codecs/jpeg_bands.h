// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/files.h"
#include "imaging/base/image.h"
#include "imaging/base/result.h"
#include "imaging/codecs/jpeg_tables.h"

#include <memory>
#include <vector>

namespace complexion::jpeg {

/// A picture's coding tables, cached beside it.
struct PictureTables : Memo::Value {
    CodingTables codes;
};

/// Encodes each band of `image` with `tables`: one restart interval per block row, with the markers RST0 to
/// RST6 between them. (A band has eight block rows; RST7 belongs between bands.) Uses what is cached beside
/// stored bands: of an edited band only the changed block rows are encoded again.
Result<std::vector<std::shared_ptr<const Bytes>>>
encodeBands(const Image& image, const std::shared_ptr<const PictureTables>& tables);

} // namespace complexion::jpeg
