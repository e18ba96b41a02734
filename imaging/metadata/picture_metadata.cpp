// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/picture_metadata.h"

namespace complexion {

std::string noteAsComment(const TextNote& note) {
    return note.keyword == kCommentKeyword ? note.text : note.keyword + ": " + note.text;
}

} // namespace complexion
