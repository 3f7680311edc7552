#include "platform/ui/QtFilePicker.h"

#include <QFileDialog>

QString QtFilePicker::nameFilter(const PickRequest &request)
{
    if (request.allowedExtensions.isEmpty())
        return QString();
    QStringList patterns;
    for (const QString &ext : request.allowedExtensions)
        patterns << QStringLiteral("*.") + ext;
    const QString name = request.filterName.isEmpty() ? QStringLiteral("Files") : request.filterName;
    return QStringLiteral("%1 (%2)").arg(name, patterns.join(QLatin1Char(' ')));
}

QString QtFilePicker::title(const PickRequest &request)
{
    if (!request.title.isEmpty())
        return request.title;
    if (!request.message.isEmpty())
        return request.message;
    if (request.kind == PickRequest::Kind::Folder)
        return QStringLiteral("Choose a Folder");
    return request.multiple ? QStringLiteral("Choose Files") : QStringLiteral("Choose a File");
}

void QtFilePicker::configure(QFileDialog &dialog, const PickRequest &request)
{
#ifndef Q_OS_MACOS
    // Qt's own panel matches "*.mp3" whatever the letter case of the name
    // (Song.MP3 is offered); a GTK panel would not. The macOS panel does.
    dialog.setOption(QFileDialog::DontUseNativeDialog, true);
#endif
    dialog.setWindowTitle(title(request));
    if (!request.startFolder.isEmpty())
        dialog.setDirectory(request.startFolder);
    if (request.kind == PickRequest::Kind::Folder) {
        dialog.setFileMode(QFileDialog::Directory);
        dialog.setOption(QFileDialog::ShowDirsOnly, true);
    } else {
        dialog.setFileMode(request.multiple ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
        const QString filter = nameFilter(request);
        if (!filter.isEmpty())
            dialog.setNameFilter(filter);
    }
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
}

QStringList QtFilePicker::pick(const PickRequest &request)
{
    QFileDialog dialog(m_parent);
    configure(dialog, request);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.selectedFiles();
}
