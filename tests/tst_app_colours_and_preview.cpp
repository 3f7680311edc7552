// The colour dialog and the preview player reached the way a user reaches
// them: the Colors button of the Tools tab, and the Play buttons of the Audio
// and Video tabs over files added with Add Files. What is stored, what the
// tables show, and what the player shows are read back from the controller's
// outlets and the settings file; the application is restarted on the same
// settings to see what a second start reads.
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QSlider>
#include <QTabWidget>
#include <QVideoWidget>

#include "app/ui/MainWindow.h"
#include "compilation/CompilationActions.h"
#include "compilation/MediaListModel.h"
#include "compilation/ui/CompilationTable.h"
#include "compilation/ui/SpaceOccupiedView.h"
#include "support/AppHarness.h"
#include "support/PreviewMedia.h"
#include "support/TestMain.h"

namespace {

using Harness = AppHarness<AppDelegate>;

QList<CompilationTable *> tables(MainWindow *w)
{
    return {w->tableviewVideoFiles, w->tableviewAudioFiles, w->tableviewDataFolders};
}

QColor stored(Harness &h, ThemeColor c)
{
    return AppSettings(*h.settings).color(ThemeDefaults::key(c));
}

QString companion(Harness &h, ThemeColor c)
{
    return h.setting(ThemeDefaults::key(c) + SettingsKeys::CompanionSuffix);
}

bool openColours(Harness &h)
{
    MainWindow *w = h.app->mainWindow();
    w->tabviewMain->setCurrentIndex(4);
    if (!w->toolbar_btn_Tools_Colors->isVisible())
        return false;
    QTest::mouseClick(w->toolbar_btn_Tools_Colors, Qt::LeftButton);
    return h.app->windowColors && h.app->windowColors->isVisible();
}

// Answers the platform colour picker with `answer` and clicks `well`.
void pickWith(Window_Colors *dialog, ColorWell *well, const QColor &answer)
{
    dialog->setColorPicker([answer](const QColor &, QWidget *, const QString &) { return answer; });
    QTest::mouseClick(well, Qt::LeftButton);
}

void selectRows(CompilationTable *table, const QList<int> &rows)
{
    table->clearSelection();
    for (int r : rows)
        table->selectionModel()->select(table->model()->index(r, 0),
                                        QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

} // namespace

class TestAppColoursAndPreview : public QObject {
    Q_OBJECT

    QTemporaryDir m_media;
    PreviewMedia m_files;

private slots:
    void initTestCase()
    {
        QVERIFY2(!QStandardPaths::findExecutable("ffmpeg").isEmpty(), "ffmpeg must be installed for the tests");
        QVERIFY(m_files.make(m_media.path(), QStringLiteral("0 ")));
    }

    // Change three colours and switch the row banding off; OK stores them
    // and the tables take the chosen background at once and lose their
    // banding a tenth of a second later. Then Original stores the defaults
    // at once without touching the companions, Cancel leaves them stored
    // while the running window keeps the chosen look, and a second start
    // shows the defaults.
    void changeRestoreCancelRestart()
    {
        Harness h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        for (CompilationTable *t : tables(w))
            QTRY_VERIFY(t->alternatingRowColors());  // the start-up look, 0.1 s after start
        QCOMPARE(w->tableviewAudioFiles->palette().color(QPalette::Base), QColor(Qt::white));

        QVERIFY(openColours(h));
        Window_Colors *dialog = h.app->windowColors;
        QCOMPARE(dialog->parentWidget(), static_cast<QWidget *>(w));
        QCOMPARE(dialog->windowModality(), Qt::WindowModal);
        QVERIFY(dialog->check_Alternating_Rows->isChecked());
        QCOMPARE(dialog->colorListBackground->color(), ThemeDefaults::color(ThemeColor::TableBackground));

        const QColor green(10, 120, 30), yellow(250, 240, 10), magenta(200, 0, 150);
        pickWith(dialog, dialog->colorListBackground, green);
        pickWith(dialog, dialog->colorListForeground, yellow);
        pickWith(dialog, dialog->colorSpaceOccupied, magenta);
        dialog->check_Alternating_Rows->click();
        QVERIFY(!dialog->check_Alternating_Rows->isChecked());
        QCOMPARE(h.setting(SettingsKeys::AlternatingRows), QStringLiteral("1"));  // nothing stored before OK
        QTest::mouseClick(dialog->btnOK, Qt::LeftButton);

        QVERIFY(!h.app->windowColors);
        QCOMPARE(h.setting(SettingsKeys::AlternatingRows), QStringLiteral("0"));
        QCOMPARE(stored(h, ThemeColor::TableBackground), green);
        QCOMPARE(stored(h, ThemeColor::TableForeground), yellow);
        QCOMPARE(stored(h, ThemeColor::SpaceOccupiedBar), magenta);
        QCOMPARE(stored(h, ThemeColor::Toolbar), ThemeDefaults::color(ThemeColor::Toolbar));
        for (CompilationTable *t : tables(w)) {
            QCOMPARE(t->palette().color(QPalette::Base), green);
            QCOMPARE(t->palette().color(QPalette::Text), yellow);
            QVERIFY(t->alternatingRowColors());  // still banded for a tenth of a second ...
        }
        for (CompilationTable *t : tables(w))
            QTRY_VERIFY_WITH_TIMEOUT(!t->alternatingRowColors(), 2000);  // ... then not
        QTRY_COMPARE(w->spaceoccupiedviewControl->barColor(), magenta);

        // Original, then Cancel. One companion holds another text and one is
        // missing, to see that neither is written.
        h.settings->setValue(ThemeDefaults::key(ThemeColor::Toolbar) + SettingsKeys::CompanionSuffix,
                             QStringLiteral("Kept"));
        h.settings->remove(ThemeDefaults::key(ThemeColor::BottomBar) + SettingsKeys::CompanionSuffix);
        QVERIFY(openColours(h));
        dialog = h.app->windowColors;
        QCOMPARE(dialog->colorListBackground->color(), green);
        QVERIFY(!dialog->check_Alternating_Rows->isChecked());
        QTest::mouseClick(dialog->btnOriginal, Qt::LeftButton);
        QVERIFY(h.app->windowColors);  // the dialog stays open
        QCOMPARE(dialog->colorListBackground->color(), ThemeDefaults::color(ThemeColor::TableBackground));
        QCOMPARE(dialog->colorSpaceOccupied->color(), ThemeDefaults::color(ThemeColor::SpaceOccupiedBar));
        QVERIFY(dialog->check_Alternating_Rows->isChecked());
        for (ThemeColor c : ThemeDefaults::all)
            QCOMPARE(stored(h, c), ThemeDefaults::color(c));
        QCOMPARE(h.setting(SettingsKeys::AlternatingRows), QStringLiteral("1"));
        QCOMPARE(companion(h, ThemeColor::Toolbar), QStringLiteral("Kept"));
        QVERIFY(!h.settings->contains(ThemeDefaults::key(ThemeColor::BottomBar) + SettingsKeys::CompanionSuffix));
        QCOMPARE(companion(h, ThemeColor::TableBackground), QStringLiteral("Recorded"));

        QTest::mouseClick(dialog->btnCancel, Qt::LeftButton);
        QVERIFY(!h.app->windowColors);
        QTest::qWait(300);  // no timer runs after Cancel
        for (ThemeColor c : ThemeDefaults::all)
            QCOMPARE(stored(h, c), ThemeDefaults::color(c));
        for (CompilationTable *t : tables(w)) {
            QCOMPARE(t->palette().color(QPalette::Base), green);  // the running window keeps its look
            QVERIFY(!t->alternatingRowColors());
        }
        QCOMPARE(w->spaceoccupiedviewControl->barColor(), magenta);

        // The next start reads the defaults: banded white tables in a light
        // look; the missing companion is written again with the default.
        QVERIFY(h.restart());
        w = h.app->mainWindow();
        for (CompilationTable *t : tables(w)) {
            QCOMPARE(t->palette().color(QPalette::Base), QColor(Qt::white));
            QTRY_VERIFY(t->alternatingRowColors());
        }
        QTRY_COMPARE(w->spaceoccupiedviewControl->barColor(), ThemeDefaults::color(ThemeColor::SpaceOccupiedBar));
        QCOMPARE(companion(h, ThemeColor::BottomBar), QStringLiteral("Recorded"));
        QCOMPARE(companion(h, ThemeColor::Toolbar), QStringLiteral("Kept"));
        QCOMPARE(stored(h, ThemeColor::BottomBar), ThemeDefaults::color(ThemeColor::BottomBar));
    }

    void okWithBandingUnderADarkLookGivesBlackTables_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::addColumn<QColor>("background");
        QTest::addColumn<QColor>("text");
        QTest::newRow("dark") << true << QColor(Qt::black) << QColor(Qt::white);
        QTest::newRow("light") << false << QColor(Qt::white) << QColor(Qt::black);
    }
    void okWithBandingUnderADarkLookGivesBlackTables()
    {
        QFETCH(bool, dark);
        QFETCH(QColor, background);
        QFETCH(QColor, text);
        Harness h;
        h.settings->setValue(SettingsKeys::AlternatingRows, QStringLiteral("0"));  // off at start
        h.dark = dark;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        QTest::qWait(200);
        QCOMPARE(w->tableviewDataFolders->palette().color(QPalette::Base),
                 ThemeDefaults::color(ThemeColor::TableBackground));
        QVERIFY(!w->tableviewDataFolders->alternatingRowColors());

        QVERIFY(openColours(h));
        Window_Colors *dialog = h.app->windowColors;
        QVERIFY(!dialog->check_Alternating_Rows->isChecked());
        pickWith(dialog, dialog->colorListBackground, QColor(30, 60, 90));
        dialog->check_Alternating_Rows->click();
        QTest::mouseClick(dialog->btnOK, Qt::LeftButton);

        QCOMPARE(h.setting(SettingsKeys::AlternatingRows), QStringLiteral("1"));
        QCOMPARE(stored(h, ThemeColor::TableBackground), QColor(30, 60, 90));  // stored, not shown
        for (CompilationTable *t : tables(w)) {
            QCOMPARE(t->palette().color(QPalette::Base), background);
            QCOMPARE(t->palette().color(QPalette::Text), text);
            QTRY_VERIFY_WITH_TIMEOUT(t->alternatingRowColors(), 2000);
        }
    }

    // Several rows selected on the Audio tab: the first selected one plays,
    // in an application-modal window; play, then close mid-play.
    void audioPlayOpensTheFirstSelectedRowAndClosesMidPlay()
    {
        Harness h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        w->tabviewMain->setCurrentIndex(0);
        QVERIFY(h.addFiles(w->toolbar_btn_Audio_Add_Files, {m_files.mp3, m_files.mp4, m_files.silent}));
        selectRows(w->tableviewAudioFiles, {2, 1});
        QCOMPARE(w->tableviewAudioFiles->selectedRows(), (QList<int>{1, 2}));

        QTest::mouseClick(w->toolbar_btn_Audio_Play, Qt::LeftButton);
        QPointer<AVSPDocument> player = h.app->windowPlayer;
        QVERIFY(player);
        QVERIFY(player->isVisible());
        QCOMPARE(player->windowModality(), Qt::ApplicationModal);
        QCOMPARE(player->s_File_URL, QUrl::fromLocalFile(h.app->arrayMediaFiles->at(1).s_File_Path));
        QCOMPARE(player->s_File_URL.toLocalFile(), m_files.mp4);
        QTRY_VERIFY_WITH_TIMEOUT(player->isReadyToPlay(), 10000);
        QTRY_VERIFY_WITH_TIMEOUT(player->playerLayer && !player->playerLayer->isHidden(), 10000);
        QVERIFY(player->noVideoLabel->isHidden());

        QTest::mouseClick(player->playPauseButton, Qt::LeftButton);
        QCOMPARE(player->playPauseButton->text(), QStringLiteral("Pause"));
        QTRY_VERIFY_WITH_TIMEOUT(player->currentTime() > 0.3, 5000);
        QTRY_VERIFY_WITH_TIMEOUT(player->timeSlider->value() > 0, 2000);
        player->close();  // mid-play
        QTRY_VERIFY_WITH_TIMEOUT(!player, 5000);
        QVERIFY(!h.app->windowPlayer);
        QVERIFY(h.alerts.shown.isEmpty());

        // The main window answers again: Play with nothing selected says so.
        w->tableviewAudioFiles->clearSelection();
        QTest::mouseClick(w->toolbar_btn_Audio_Play, Qt::LeftButton);
        QCOMPARE(h.alerts.texts(), QStringList{"There is no file selected. / There is no file selected."});
        QCOMPARE(h.alerts.shown.first().buttons, QStringList{"Close"});
        QVERIFY(!h.app->windowPlayer);
    }

    // An mp3 from the Audio tab shows the no-picture label; on the Video
    // tab a silent film shows its picture, and a text file named .mp4 the
    // unplayable state with its alert.
    void videoPlayShowsWhatEachFileHas()
    {
        Harness h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        w->tabviewMain->setCurrentIndex(0);
        QVERIFY(h.addFiles(w->toolbar_btn_Audio_Add_Files, {m_files.mp3}));
        selectRows(w->tableviewAudioFiles, {0});
        QTest::mouseClick(w->toolbar_btn_Audio_Play, Qt::LeftButton);
        QPointer<AVSPDocument> player = h.app->windowPlayer;
        QVERIFY(player);
        QTRY_VERIFY_WITH_TIMEOUT(player->isReadyToPlay(), 10000);
        QVERIFY(!player->noVideoLabel->isHidden());
        QVERIFY(!player->playerLayer);
        player->close();
        QTRY_VERIFY(!player);

        w->tabviewMain->setCurrentIndex(1);
        QCOMPARE(h.app->arrayMediaFiles->count(), 0);  // a new tab, a new list
        QVERIFY(h.addFiles(w->toolbar_btn_Video_Add_Files, {m_files.silent, m_files.text}));
        selectRows(w->tableviewVideoFiles, {0});
        QTest::mouseClick(w->toolbar_btn_Video_Play, Qt::LeftButton);
        player = h.app->windowPlayer;
        QVERIFY(player);
        QCOMPARE(player->s_File_URL.toLocalFile(), m_files.silent);
        QTRY_VERIFY_WITH_TIMEOUT(player->playerLayer && !player->playerLayer->isHidden(), 10000);
        QVERIFY(player->loadingSpinner->isHidden());
        player->close();
        QTRY_VERIFY(!player);

        selectRows(w->tableviewVideoFiles, {1});
        QTest::mouseClick(w->toolbar_btn_Video_Play, Qt::LeftButton);
        player = h.app->windowPlayer;
        QVERIFY(player);
        QCOMPARE(player->s_File_URL.toLocalFile(), m_files.text);
        QTRY_VERIFY_WITH_TIMEOUT(!player->unplayableLabel->isHidden() || !h.alerts.shown.isEmpty(), 10000);
        QTRY_VERIFY_WITH_TIMEOUT(!h.alerts.shown.isEmpty(), 10000);
        QCOMPARE(h.alerts.shown.first().messageText, AVSPDocument::CouldNotPlay);
        QVERIFY(!player->playPauseButton->isEnabled());
        QVERIFY(player->loadingSpinner->isHidden());
        player->close();
        QTRY_VERIFY(!player);
    }
};

TAMBLO_TEST_MAIN(TestAppColoursAndPreview)
#include "tst_app_colours_and_preview.moc"
