#include "compilation/CompilationActions.h"

#include "compilation/DataFolderModel.h"
#include "compilation/ExtensionLists.h"
#include "compilation/MediaListModel.h"

CompilationActions::CompilationActions(MediaListModel *media, DataFolderModel *data,
                                       FilePicker *picker, QObject *parent)
    : QObject(parent), m_media(media), m_data(data), m_picker(picker)
{
    connect(&m_probe, &MediaProbeJob::recordsReady, this, &CompilationActions::onRecordsReady);
    connect(&m_probe, &MediaProbeJob::progress, this, &CompilationActions::onProgress);
    connect(&m_probe, &MediaProbeJob::finished, this, &CompilationActions::onProbeFinished);
    connect(&m_folder, &FolderMeasureJob::finished, this, &CompilationActions::onFolderMeasured);
}

bool CompilationActions::isBusy() const
{
    return m_probe.isRunning() || m_folder.isRunning();
}

bool CompilationActions::OnActionAudioAddFiles()
{
    if (isBusy() || !m_picker)
        return false;
    return addMediaFiles(AudioTab, m_picker->pick(ExtensionLists::audioAddFilesRequest()));
}

bool CompilationActions::OnActionVideoAddFiles()
{
    if (isBusy() || !m_picker)
        return false;
    return addMediaFiles(VideoTab, m_picker->pick(ExtensionLists::videoAddFilesRequest()));
}

bool CompilationActions::OnActionAudioAddFolder()
{
    if (isBusy() || !m_picker)
        return false;
    const QStringList chosen = m_picker->pick(ExtensionLists::audioAddFolderRequest());
    return !chosen.isEmpty() && addMediaFolder(AudioTab, chosen.first());
}

bool CompilationActions::OnActionVideoAddFolder()
{
    if (isBusy() || !m_picker)
        return false;
    const QStringList chosen = m_picker->pick(ExtensionLists::videoAddFolderRequest());
    return !chosen.isEmpty() && addMediaFolder(VideoTab, chosen.first());
}

bool CompilationActions::OnActionDataAddFolder()
{
    if (isBusy() || !m_picker)
        return false;
    const QStringList chosen = m_picker->pick(ExtensionLists::dataAddFolderRequest());
    return !chosen.isEmpty() && addDataFolder(chosen.first());
}

bool CompilationActions::addMediaFiles(Tab tab, const QStringList &paths)
{
    if (paths.isEmpty() || isBusy() || tab == DataTab)
        return false;
    m_mediaTab = tab;
    m_maximum = int(paths.size());
    m_countBefore = m_media ? m_media->count() : 0;
    emit busyChanged(true);
    emit progressSheetShown(m_maximum);
    m_probe.start(paths, m_ffmpeg);
    return true;
}

bool CompilationActions::addMediaFolder(Tab tab, const QString &folderPath)
{
    if (folderPath.isEmpty() || isBusy() || tab == DataTab)
        return false;
    const QStringList &extensions = tab == AudioTab ? ExtensionLists::audio() : ExtensionLists::video();
    QStringList paths;
    for (const QString &name : ExtensionLists::filterFolder(folderPath, extensions))
        paths.append(ExtensionLists::childPath(folderPath, name));
    return addMediaFiles(tab, paths);
}

bool CompilationActions::addDataFolder(const QString &folderPath)
{
    if (folderPath.isEmpty() || isBusy())
        return false;
    emit busyChanged(true);
    // How much there is to walk is only known at the end: the sheet's bar is
    // busy (maximum 0) while the tree is walked.
    emit progressSheetShown(0);
    m_folder.start(folderPath);
    return true;
}

void CompilationActions::cancel()
{
    if (m_probe.isRunning()) {
        m_probe.cancel();
        if (m_media && m_media->count() > m_countBefore) {
            QList<int> added;
            for (int row = m_countBefore; row < m_media->count(); ++row)
                added << row;
            m_media->removeRowsAt(added);
        }
        emit progressSheetClosed();
        emit busyChanged(false);
        emit refreshTable(m_mediaTab);
        return;
    }
    if (m_folder.isRunning()) {
        m_folder.cancel();
        emit progressSheetClosed();
        // Busy until the walk has seen the request and ended.
        connect(&m_folder, &FolderMeasureJob::stopped, this, [this] { emit busyChanged(false); },
                Qt::SingleShotConnection);
    }
}

void CompilationActions::onRecordsReady(int, const QList<NodeMediaFile> &records)
{
    if (m_media)
        m_media->append(records);
}

void CompilationActions::onProgress(int done)
{
    emit progressChanged(done);
    if (done >= m_maximum)
        emit progressSheetClosed();
}

void CompilationActions::onProbeFinished()
{
    emit busyChanged(false);
    emit refreshTable(m_mediaTab);
}

void CompilationActions::onFolderMeasured(const NodeDataFolder &record)
{
    if (m_data)
        m_data->append(record);
    emit progressChanged(1);
    emit progressSheetClosed();
    emit busyChanged(false);
    emit refreshTable(DataTab);
}
