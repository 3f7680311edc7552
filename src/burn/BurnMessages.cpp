#include "burn/BurnMessages.h"

#include <QFileInfo>

namespace BurnMessages {

static QString wrongInformative(const QString &word)
{
    return QStringLiteral("The media on the drive is not a %1. insert a writable %1 on the drive and try again.")
        .arg(word);
}

BurnTexts forOperation(BurnOperation operation)
{
    const QString noAudio = QStringLiteral("No audio files on the list");
    const QString noAudioInfo =
        QStringLiteral("There are no audio files on the list. Add audio files to the list and try again.");
    const QString noVideo = QStringLiteral("No video files on the list");
    const QString noVideoInfo =
        QStringLiteral("There are no video files on the list. Add video files to the list and try again.");
    const QString noFolders = QStringLiteral("No folders on the list");
    const QString noFoldersInfo =
        QStringLiteral("There are no folders on the list. Add folders to the list and try again.");

    const QString cd = QStringLiteral("CD");
    const QString dvd = QStringLiteral("DVD");
    const QString bd = QStringLiteral("BD");
    const QString notCd = QStringLiteral("Media not CD");
    const QString notDvd = QStringLiteral("Media not DVD");
    const QString notBd = QStringLiteral("Media not Blu-ray");

    switch (operation) {
    case BurnOperation::AudioCD:
        return {noAudio, noAudioInfo, cd, notCd, wrongInformative(cd), QStringLiteral("Warning 0060.")};
    case BurnOperation::MP3CD:
        return {noAudio, noAudioInfo, cd, notCd, wrongInformative(cd), QStringLiteral("Warning 0050.")};
    case BurnOperation::MP3DVD:
        return {noAudio, noAudioInfo, dvd, notDvd, wrongInformative(dvd), QStringLiteral("Warning 0010.")};
    case BurnOperation::VideoDVD:
        return {noVideo, noVideoInfo, dvd, notDvd, wrongInformative(dvd), QStringLiteral("Warning 0000.")};
    case BurnOperation::VideoBluray:
        return {noVideo, noVideoInfo, bd, notBd, wrongInformative(QStringLiteral("Blu-ray")),
                QStringLiteral("Warning 0090.")};
    case BurnOperation::DataCD:
        return {noFolders, noFoldersInfo, cd, notCd, wrongInformative(cd), QStringLiteral("Warning 0070.")};
    case BurnOperation::DataDVD:
        return {noFolders, noFoldersInfo, dvd, notDvd, wrongInformative(dvd), QStringLiteral("Warning 0020.")};
    case BurnOperation::DataBluray:
        return {noFolders, noFoldersInfo, bd, notBd, wrongInformative(QStringLiteral("Blu-ray")),
                QStringLiteral("Warning 0090.")};
    }
    return {};
}

bool isMediaBurn(BurnOperation operation)
{
    switch (operation) {
    case BurnOperation::AudioCD:
    case BurnOperation::MP3CD:
    case BurnOperation::MP3DVD:
    case BurnOperation::VideoDVD:
    case BurnOperation::VideoBluray:
        return true;
    default:
        return false;
    }
}

bool isVideoBurn(BurnOperation operation)
{
    return operation == BurnOperation::VideoDVD || operation == BurnOperation::VideoBluray;
}

} // namespace BurnMessages

AlertRequest BurnMessages::transcodeFailed(const QString &file, const QString &toolWords)
{
    AlertRequest r;
    r.messageText = QStringLiteral("\"%1\" could not be converted.").arg(QFileInfo(file).fileName());
    r.informativeText = QStringLiteral("Nothing was written to the disc. %1 says:\n%2\n\nFile: %3")
                            .arg(QStringLiteral("ffmpeg"), toolWords, file);
    return r;
}
