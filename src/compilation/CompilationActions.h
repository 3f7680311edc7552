#pragma once
#include <QString>
#include <QStringList>

#include "platform/FilePicker.h"
#include "compilation/FolderMeasureJob.h"
#include "compilation/MediaProbeJob.h"
#include "toolrun/Operation.h"

class MediaListModel;
class DataFolderModel;

// The five add actions of the Audio, Video and Data tabs, one operation.
// Media files are probed off the UI thread behind the MeasuringFiles sheet
// (its Single bar counts the files probed); the data folder is measured off
// the UI thread too, behind the MeasuringFolder sheet with a busy bar (the
// size of the tree is not known until it has been walked). Records land in the lists in the panel's (or folder's) order; the
// same file chosen twice is listed twice. Each action ends with the tab's
// table refresh (refreshTable). Cancelling a panel, or a folder with nothing
// to add, does nothing and says nothing.
class CompilationActions : public Operation {
    Q_OBJECT
public:
    enum Tab { AudioTab = 0, VideoTab = 1, DataTab = 2 };

    CompilationActions(MediaListModel *media, DataFolderModel *data, FilePicker *picker,
                       QObject *parent = nullptr);

    void setFfmpegPath(const QString &path) { m_ffmpeg = path; }
    QString ffmpegPath() const { return m_ffmpeg; }

    // Returns false when nothing was started (cancelled, nothing to add, or
    // an add still running).
    bool addFiles(Tab tab);   // Audio or Video: the panel of files
    bool addFolder(Tab tab);  // the panel of one folder: its media files, or the data folder

    // The same without a panel: the chosen paths as the panel gave them.
    bool addMediaFiles(Tab tab, const QStringList &paths);
    bool addMediaFolder(Tab tab, const QString &folderPath);
    bool addDataFolder(const QString &folderPath);

    // Cancel on the measuring sheet: the files or folder being added are
    // dropped (records already listed by this add go again), the sheet
    // closes and the list is as it was. Harmless when idle.
    void cancel() override;

    MediaProbeJob *probeJob() { return &m_probe; }
    FolderMeasureJob *folderJob() { return &m_folder; }

signals:
    void refreshTable(int tab);            // Tab: the table to reload and total
    void busyChanged(bool busy);

private:
    void onRecordsReady(int first, const QList<NodeMediaFile> &records);
    void onProgress(int done);
    void onProbeFinished();
    void done();
    void onFolderMeasured(const NodeDataFolder &record);

    MediaListModel *m_media;
    DataFolderModel *m_data;
    FilePicker *m_picker;
    QString m_ffmpeg;
    MediaProbeJob m_probe;
    FolderMeasureJob m_folder;
    Tab m_mediaTab = AudioTab;
    int m_maximum = 0;
    int m_countBefore = 0;  // the media list's length when the add began
};
