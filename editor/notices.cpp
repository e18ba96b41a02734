// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/notices.h"

#include "editor/file_names.h"
#include "imaging/containers/other_formats.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

class Notices {
    Q_DECLARE_TR_FUNCTIONS(Notices)
};

QString phraseOf(const SavingLoss& loss) {
    switch (loss.kind) {
    case SavingLoss::Kind::Depth:
        return Notices::tr("%1 bits per channel become 8").arg(loss.count);
    case SavingLoss::Kind::Cmyk:
        return Notices::tr("CMYK becomes RGB");
    case SavingLoss::Kind::Lab:
        return Notices::tr("Lab becomes RGB");
    case SavingLoss::Kind::Pages:
        return Notices::tr("only page 1 of %1").arg(loss.count);
    case SavingLoss::Kind::Frames:
        return Notices::tr("only the first of %1 frames").arg(loss.count);
    case SavingLoss::Kind::Layers:
        return Notices::tr("the layers are merged");
    case SavingLoss::Kind::Movie:
        return Notices::tr("the moving picture is left out");
    case SavingLoss::Kind::Preview:
        return Notices::tr("the embedded preview is left out");
    }
    return {};
}

/// Why a file with a picture of another format is refused, and what to do.
QString noticeOfFormat(const QString& name, std::string_view format) {
    const QString readable = Notices::tr("Complexion opens JPEG, PNG, TIFF, GIF and BMP.");
    if (format == kCameraRaw)
        return Notices::tr("“%1” is a camera’s raw file.").arg(name) + u' ' + readable + u' ' +
               Notices::tr("Export a JPEG or TIFF from your raw developer.");
    if (format == kMovie)
        return Notices::tr("“%1” is not a still picture.").arg(name) + u' ' + readable;
    return Notices::tr("“%1” has the format %2.").arg(name, QString::fromStdString(std::string(format))) +
           u' ' + readable + u' ' + Notices::tr("Export a JPEG or TIFF from the program that opens it.");
}

} // namespace

QString noticeAbout(const OpenedPhoto& photo, const std::string& format) {
    QStringList sentences;
    if (photo.damage)
        sentences << Notices::tr("The file is damaged: part of the picture is missing.");
    if (!canHold(format, photo.image.pixelSize()))
        sentences << noticeOfSize(format);
    QStringList phrases;
    std::ranges::transform(photo.losses, std::back_inserter(phrases), phraseOf);
    if (!phrases.isEmpty())
        sentences << Notices::tr("In the saved copy: %1.").arg(phrases.join(Notices::tr(", ")));
    return sentences.join(u' ');
}

QString noticeOfSize(const std::string& format) {
    return Notices::tr("The photo cannot be saved: %1 cannot hold pictures this large.")
        .arg(format == "gif" ? u"GIF"_s : u"JPEG"_s);
}

QString noticeOfFailure(const std::filesystem::path& path, const Error& error) {
    const QString name = elidedName(path);
    if (const std::optional<std::string_view> format = otherFormatOf(error))
        return noticeOfFormat(name, *format);
    switch (error.kind) {
    case ErrorKind::NotAPicture:
        return Notices::tr("“%1” is not a picture.").arg(name) + u' ' +
               Notices::tr("Complexion opens JPEG, PNG, TIFF, GIF and BMP.");
    case ErrorKind::TooLarge:
        return Notices::tr("“%1” is too large to be opened.").arg(name);
    case ErrorKind::OutOfMemory:
        return Notices::tr("There is not enough memory to open “%1”.").arg(name);
    case ErrorKind::CannotRead:
        return Notices::tr("“%1” cannot be read. It may have been moved, or you may not have permission.")
            .arg(name);
    case ErrorKind::Damaged:
    case ErrorKind::CannotWrite:
    case ErrorKind::FormatCannotHold:
    case ErrorKind::Cancelled:
        return Notices::tr("“%1” is damaged, or of a kind that Complexion does not know.").arg(name);
    }
    return {};
}

QString noticeOfRefusal(const std::filesystem::path& path, bool hasAcceptedExtension) {
    std::error_code unknown;
    if (std::filesystem::is_directory(path, unknown))
        return noticeOfFailure(path, {"a folder", ErrorKind::NotAPicture});
    if (const std::optional<Error> obstacle = obstacleToOpening(path))
        return noticeOfFailure(path, *obstacle);
    if (hasAcceptedExtension)
        return noticeOfFailure(path, Error{"cannot be decoded"});
    return Notices::tr("“%1” needs a name that ends with .jpg, .png, .tiff, .gif or .bmp.")
        .arg(elidedName(path));
}

} // namespace complexion
