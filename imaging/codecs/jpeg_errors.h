// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/codecs/jump_guard.h"

#include <cstdio> // jpeglib.h needs it

#include <jpeglib.h>

namespace complexion {

/// libjpeg's error handler of one codec object: errors end the guard's running step, warnings are silent
/// (damaged pictures are shown as far as they go) but remembered.
struct JpegErrors : jpeg_error_mgr {
    JumpGuard guard;
    bool hasWarned = false;

    JpegErrors() : jpeg_error_mgr() {
        jpeg_std_error(this);
        error_exit = [](j_common_ptr codec) {
            char message[JMSG_LENGTH_MAX] = {};
            codec->err->format_message(codec, message);
            static_cast<JpegErrors*>(codec->err)->guard.fail(message);
        };
        emit_message = [](j_common_ptr codec, int level) {
            if (level < 0)
                static_cast<JpegErrors*>(codec->err)->hasWarned = true;
        };
        output_message = [](j_common_ptr) {};
    }
};

} // namespace complexion
