// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/file_names.h"

#include <QFile>

namespace complexion {

namespace {

// The C1 control characters of Latin 1.
constexpr char16_t kFirstControl = 0x80;
constexpr char16_t kLastControl = 0x9f;

constexpr qsizetype kMaxLetters = 40; // of an elided name

bool isRepresentable(const std::filesystem::path& path) {
    return QFile::encodeName(QFile::decodeName(path.c_str())).toStdString() == path.native();
}

} // namespace

QString shownName(const std::filesystem::path& name) {
    if (isRepresentable(name))
        return QFile::decodeName(name.c_str());
    QString text = QString::fromLatin1(name.c_str());
    for (QChar& character : text)
        if (character >= kFirstControl && character <= kLastControl)
            character = QChar::ReplacementCharacter;
    return text;
}

QString elidedName(const std::filesystem::path& path) {
    const QString name = shownName(path.filename());
    if (name.size() <= kMaxLetters)
        return name;
    constexpr qsizetype kKept = kMaxLetters / 2;
    return name.left(kKept) + u'…' + name.right(kKept - 1);
}

} // namespace complexion
