// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"
#include "imaging/codecs/jump_guard.h"

#include <cstdio> // jpeglib.h needs it

#include <jerror.h>
#include <jpeglib.h>

namespace complexion {

/// libjpeg's error handler of one codec object: errors end the guard's running step; warnings are noted
/// (damaged pictures are shown as far as they go).
struct JpegErrors : jpeg_error_mgr {
    JumpGuard guard;
    /// Anything was out of order.
    bool hasWarned = false;
    /// Coded bytes were missing or made no sense, so that pixels of the picture are made up.
    bool hasLostPixels = false;
    /// The file ended without an end marker. Pixels need not be missing.
    bool hasNoEnd = false;

    JpegErrors() : jpeg_error_mgr() {
        jpeg_std_error(this);
        error_exit = [](j_common_ptr codec) {
            char message[JMSG_LENGTH_MAX] = {};
            codec->err->format_message(codec, message);
            static_cast<JpegErrors*>(codec->err)->guard.fail(message);
        };
        emit_message = [](j_common_ptr codec, int level) {
            if (level < 0) // a warning
                static_cast<JpegErrors*>(codec->err)->note(codec->err->msg_code);
        };
        output_message = [](j_common_ptr) {};
    }

    /// What ended the last step.
    Error error() const {
        return {"JPEG: " + guard.message(),
                msg_code == JERR_OUT_OF_MEMORY ? ErrorKind::OutOfMemory : ErrorKind::Damaged};
    }

private:
    void note(int warning) {
        hasWarned = true;
        // The others are about headers, and about bytes that stand where none belong.
        switch (warning) {
        case JWRN_HIT_MARKER:
        case JWRN_HUFF_BAD_CODE:
        case JWRN_MUST_RESYNC:
            hasLostPixels = true;
            break;
        case JWRN_JPEG_EOF:
            hasNoEnd = true;
            break;
        default: // the public header leaves out those of the arithmetic decoder
            hasLostPixels = hasLostPixels || warning >= JMSG_LASTMSGCODE;
            break;
        }
    }
};

} // namespace complexion
