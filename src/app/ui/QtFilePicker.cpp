#include "app/ui/QtFilePicker.h"

#include <QFileDialog>

QStringList QtFilePicker::pick(const PickRequest &request)
{
    QFileDialog dialog(m_parent);
    dialog.setWindowTitle(request.message.isEmpty() ? QStringLiteral("Tamblo") : request.message);
    if (!request.startFolder.isEmpty())
        dialog.setDirectory(request.startFolder);
    if (request.kind == PickRequest::Kind::Folder) {
        dialog.setFileMode(QFileDialog::Directory);
        dialog.setOption(QFileDialog::ShowDirsOnly, true);
    } else {
        dialog.setFileMode(request.multiple ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
        if (!request.allowedExtensions.isEmpty()) {
            QStringList patterns;
            // The panel offers a file whatever the letter case of its extension.
            for (const QString &ext : request.allowedExtensions) {
                QString glob = QStringLiteral("*.");
                for (const QChar c : ext) {
                    if (c.isLetter())
                        glob += QLatin1Char('[') + c.toLower() + c.toUpper() + QLatin1Char(']');
                    else
                        glob += c;
                }
                patterns << glob;
            }
            dialog.setNameFilter(QStringLiteral("Files (%1)").arg(patterns.join(QLatin1Char(' '))));
        }
    }
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.selectedFiles();
}
