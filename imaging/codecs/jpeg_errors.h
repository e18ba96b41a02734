// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/base/result.h"
#include "imaging/codecs/jump_guard.h"

#include <cstdio> // jpeglib.h needs it

#include <jerror.h>
#include <jpeglib.h>

namespace complexion::jpeg {

/// libjpeg's error handler for one codec object. Errors abort the guard's running step. Warnings are
/// recorded: damaged pictures are decoded as far as possible.
struct ErrorHandler : jpeg_error_mgr {
    JumpGuard guard;
    /// The library has issued a warning.
    bool hasWarned = false;
    /// Entropy-coded data was missing or invalid, so some pixels are made up.
    bool hasLostPixels = false;
    /// The file ended without an end marker. Pixels need not be missing.
    bool hasNoEnd = false;

    ErrorHandler() : jpeg_error_mgr() {
        jpeg_std_error(this);
        error_exit = [](j_common_ptr codec) {
            char message[JMSG_LENGTH_MAX] = {};
            codec->err->format_message(codec, message);
            static_cast<ErrorHandler*>(codec->err)->guard.fail(message);
        };
        emit_message = [](j_common_ptr codec, int level) {
            if (level < 0) // a warning
                static_cast<ErrorHandler*>(codec->err)->note(codec->err->msg_code);
        };
        output_message = [](j_common_ptr) {};
    }

    /// The error that aborted the last step.
    Error error() const {
        return {"JPEG: " + guard.message(),
                msg_code == JERR_OUT_OF_MEMORY ? ErrorKind::OutOfMemory : ErrorKind::Damaged};
    }

private:
    void note(int warning) {
        hasWarned = true;
        // Other warnings concern headers and stray bytes.
        switch (warning) {
        case JWRN_HIT_MARKER:
        case JWRN_HUFF_BAD_CODE:
        case JWRN_MUST_RESYNC:
            hasLostPixels = true;
            break;
        case JWRN_JPEG_EOF:
            hasNoEnd = true;
            break;
        default: // the arithmetic decoder's codes are not in the public header
            hasLostPixels = hasLostPixels || warning >= JMSG_LASTMSGCODE;
            break;
        }
    }
};

} // namespace complexion::jpeg
