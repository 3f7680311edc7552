#include "compilation/CompilationActions.h"

#include "compilation/DataFolderModel.h"
#include "compilation/ExtensionLists.h"
#include "compilation/MediaListModel.h"

CompilationActions::CompilationActions(MediaListModel *media, DataFolderModel *data,
                                       FilePicker *picker, QObject *parent)
    : Operation(nullptr, parent), m_media(media), m_data(data), m_picker(picker)
{
    connect(&m_probe, &MediaProbeJob::recordsReady, this, &CompilationActions::onRecordsReady);
    connect(&m_probe, &MediaProbeJob::progress, this, &CompilationActions::onProgress);
    connect(&m_probe, &MediaProbeJob::finished, this, &CompilationActions::onProbeFinished);
    connect(&m_folder, &FolderMeasureJob::finished, this, &CompilationActions::onFolderMeasured);
}

bool CompilationActions::addFiles(Tab tab)
{
    if (isBusy() || !m_picker || tab == DataTab)
        return false;
    return addMediaFiles(tab, m_picker->pick(tab == AudioTab ? ExtensionLists::audioAddFilesRequest()
                                                             : ExtensionLists::videoAddFilesRequest()));
}

bool CompilationActions::addFolder(Tab tab)
{
    if (isBusy() || !m_picker)
        return false;
    const QStringList chosen = m_picker->pick(tab == AudioTab   ? ExtensionLists::audioAddFolderRequest()
                                              : tab == VideoTab ? ExtensionLists::videoAddFolderRequest()
                                                                : ExtensionLists::dataAddFolderRequest());
    if (chosen.isEmpty())
        return false;
    return tab == DataTab ? addDataFolder(chosen.first()) : addMediaFolder(tab, chosen.first());
}

bool CompilationActions::addMediaFiles(Tab tab, const QStringList &paths)
{
    if (paths.isEmpty() || isBusy() || tab == DataTab)
        return false;
    m_mediaTab = tab;
    m_maximum = int(paths.size());
    m_countBefore = m_media ? m_media->count() : 0;
    begin();
    emit busyChanged(true);
    emit sheetShown(OperationSheet::MeasuringFiles, m_maximum);
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
    begin();
    emit busyChanged(true);
    // How much there is to walk is only known at the end: the sheet's bar is
    // busy while the tree is walked.
    emit sheetShown(OperationSheet::MeasuringFolder);
    m_folder.start(folderPath);
    return true;
}

void CompilationActions::done()
{
    finish();
    emit busyChanged(false);
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
        emit sheetClosed(OperationSheet::MeasuringFiles);
        done();
        emit refreshTable(m_mediaTab);
        return;
    }
    if (m_folder.isRunning()) {
        m_folder.cancel();
        emit sheetClosed(OperationSheet::MeasuringFolder);
        // Busy until the walk has seen the request and ended.
        connect(&m_folder, &FolderMeasureJob::stopped, this, [this] { done(); }, Qt::SingleShotConnection);
    }
}

void CompilationActions::onRecordsReady(int, const QList<NodeMediaFile> &records)
{
    if (m_media)
        m_media->append(records);
}

void CompilationActions::onProgress(int count)
{
    emit barMoved(OperationBar::Single, count);
    if (count >= m_maximum)
        emit sheetClosed(OperationSheet::MeasuringFiles);
}

void CompilationActions::onProbeFinished()
{
    done();
    emit refreshTable(m_mediaTab);
}

void CompilationActions::onFolderMeasured(const NodeDataFolder &record)
{
    if (m_data)
        m_data->append(record);
    emit barMoved(OperationBar::Single, 1);
    emit sheetClosed(OperationSheet::MeasuringFolder);
    done();
    emit refreshTable(DataTab);
}
