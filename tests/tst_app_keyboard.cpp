#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTabWidget>

#include "app/ui/MainWindow.h"
#include "compilation/DataFolderModel.h"
#include "compilation/MediaListModel.h"
#include "compilation/ui/CompilationTable.h"
#include "compilation/ui/Window_New_Disc.h"
#include "support/AppHarness.h"
#include "support/BurnDispatchProbe.h"
#include "support/ListRecords.h"
#include "support/TestMain.h"


// Everything the toolbars do can be done from the keyboard, and the menus
// say how.
class TestAppKeyboard : public QObject {
    Q_OBJECT

    static QStringList names(const MediaListModel *m)
    {
        QStringList out;
        for (const NodeMediaFile &n : m->records())
            out << n.s_File_Name_With_Extension;
        return out;
    }

    template <typename H>
    static MainWindow *started(H &h)
    {
        if (!h.start())
            return nullptr;
        MainWindow *w = h.app->mainWindow();
        w->activateWindow();
        if (!QTest::qWaitForWindowActive(w))
            return nullptr;
        return w;
    }

private slots:
    void deleteAndBackspaceRemoveTheSelectedRows_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Delete") << int(Qt::Key_Delete);
        QTest::newRow("Backspace") << int(Qt::Key_Backspace);
    }
    void deleteAndBackspaceRemoveTheSelectedRows()
    {
        QFETCH(int, key);
        AppHarness<> h;
        MainWindow *w = started(h);
        QVERIFY(w);
        h.app->arrayMediaFiles->append({musicTrack("a.mp3"), musicTrack("b.mp3"), musicTrack("c.mp3"), musicTrack("d.mp3")});
        h.app->refreshTableAudioFiles();
        CompilationTable *table = w->tableviewAudioFiles;
        table->setFocus();
        table->selectRow(1);
        table->selectionModel()->select(table->model()->index(3, 0),
                                        QItemSelectionModel::Select | QItemSelectionModel::Rows);
        QTest::keyClick(table, Qt::Key(key));
        QCOMPARE(names(h.app->arrayMediaFiles), (QStringList{"a.mp3", "c.mp3"}));
        QCOMPARE(h.app->i_Audio_Total_Duration_in_Seconds, qint64(120));  // refreshed like the button

        // On the Data tab the same key removes folders.
        h.app->OnMenuTabData();
        h.app->arrayDataFolders->append({folderRecord("/a", 10), folderRecord("/b", 10)});
        h.app->refreshTableDataFolders();
        w->tableviewDataFolders->setFocus();
        w->tableviewDataFolders->selectRow(0);
        QTest::keyClick(w->tableviewDataFolders, Qt::Key(key));
        QCOMPARE(h.app->arrayDataFolders->count(), 1);
        QCOMPARE(h.app->arrayDataFolders->at(0).s_Path, QString("/b"));
        QCOMPARE(h.app->i_Data_Total_Size_in_KBytes, qint64(10));
    }

    void shortcutsReachTheCommandsOfTheTabInView()
    {
        AppHarness<DispatchProbe> h;
        MainWindow *w = started(h);
        QVERIFY(w);

        // Add Files, Add Folder: the tab's own panels.
        QTest::keyClick(w, Qt::Key_O, Qt::ControlModifier);
        QCOMPARE(h.picker.requests.size(), 1);
        QCOMPARE(h.picker.requests.last().title, QString("Add Audio Files"));
        QTest::keyClick(w, Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(h.picker.requests.last().title, QString("Add a Folder of Audio Files"));

        // The tabs.
        const QList<Qt::Key> digits{Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_5};
        for (int i = 4; i >= 0; --i) {
            QTest::keyClick(w, digits[i], Qt::ControlModifier);
            QCOMPARE(w->tabviewMain->currentIndex(), i);
            QVERIFY(w->tabMenuItems().at(i)->isChecked());
        }

        QTest::keyClick(w, Qt::Key_2, Qt::ControlModifier);
        QTest::keyClick(w, Qt::Key_O, Qt::ControlModifier);
        QCOMPARE(h.picker.requests.last().title, QString("Add Video Files"));
        QCOMPARE(h.picker.requests.last().filterName, QString("Video files"));

        // Play with nothing selected says so, as the button does.
        QTest::keyClick(w, Qt::Key_P, Qt::ControlModifier);
        QCOMPARE(h.alerts.texts(), QStringList{"There is no file selected. / There is no file selected."});

        // Clear.
        h.app->arrayMediaFiles->append({musicTrack("a.mp3"), musicTrack("b.mp3")});
        h.app->refreshTableVideoFiles();
        QTest::keyClick(w, Qt::Key_Delete, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(h.app->arrayMediaFiles->count(), 0);

        // Burn: the burn the Burn button names.
        QTest::keyClick(w, Qt::Key_B, Qt::ControlModifier);
        QCOMPARE(h.app->called, QStringList{"Burn_Video_DVD"});
        QTest::keyClick(w, Qt::Key_3, Qt::ControlModifier);
        QTest::keyClick(w, Qt::Key_B, Qt::ControlModifier);
        QCOMPARE(h.app->called, (QStringList{"Burn_Video_DVD", "Burn_Data_CD"}));
        QTest::keyClick(w, Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(h.picker.requests.last().title, QString("Add a Data Folder"));

        // Where a tab has no such button, its item is off and the key does nothing.
        QTest::keyClick(w, Qt::Key_4, Qt::ControlModifier);
        QVERIFY(!w->menuitemBurn->isEnabled());
        QVERIFY(!w->menuitemAddFiles->isEnabled());
        const int panels = int(h.picker.requests.size());
        QTest::keyClick(w, Qt::Key_O, Qt::ControlModifier);
        QTest::keyClick(w, Qt::Key_B, Qt::ControlModifier);
        QCOMPARE(h.picker.requests.size(), panels);
        QCOMPARE(h.app->called.size(), 2);

        // New Disc.
        QTest::keyClick(w, Qt::Key_N, Qt::ControlModifier);
        QVERIFY(h.app->windowNewDisc);
        h.app->windowNewDisc->OnCancel();
    }

    void menusListTheShortcutsWithMnemonics()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        QStringList seen;
        for (QAction *top : w->menuBar()->actions()) {
            QVERIFY2(top->text().contains(QLatin1Char('&')), qPrintable(top->text()));
            QVERIFY(top->menu());
            for (QAction *item : top->menu()->actions()) {
                if (item->isSeparator() || item->objectName().startsWith(QLatin1String("submenuItemDriveSlot")))
                    continue;  // the drives are named by the drives themselves
                QVERIFY2(item->text().contains(QLatin1Char('&')), qPrintable(item->text()));
                if (!item->shortcut().isEmpty())
                    seen << item->objectName();
            }
        }
        for (QAction *item : w->popupmenuErase->actions())
            QVERIFY2(item->text().contains(QLatin1Char('&')), qPrintable(item->text()));
        for (const char *name : {"menuitemNewDisc", "menuitemBurn", "menuitemAddFiles", "menuitemAddFolder",
                                 "menuitemDeleteSelected", "menuitemClearList", "menuitemPlay",
                                 "submenuItemTabAudio", "submenuItemTabVideo", "submenuItemTabData",
                                 "submenuItemTabISO", "submenuItemTabTools", "menuitemQuit"})
            QVERIFY2(seen.contains(QString::fromLatin1(name)), name);
        QCOMPARE(w->menuitemDeleteSelected->shortcuts(),
                 (QList<QKeySequence>{QKeySequence(Qt::Key_Delete), QKeySequence(Qt::Key_Backspace)}));

        // The buttons tell their shortcut.
        const QString addFiles = QKeySequence(Qt::CTRL | Qt::Key_O).toString(QKeySequence::NativeText);
        QCOMPARE(w->toolbar_btn_Audio_Add_Files->toolTip(), QString("Add Files (%1)").arg(addFiles));
        QCOMPARE(w->toolbar_btn_Video_Add_Files->toolTip(), QString("Add Files (%1)").arg(addFiles));
        QVERIFY(w->btnBurn->toolTip().startsWith(QLatin1String("Burn (")));
        QVERIFY(w->toolbar_btn_Data_Delete->toolTip().startsWith(QLatin1String("Delete Selected (")));
        QVERIFY(w->toolbar_btn_Audio_New_Disc->toolTip().startsWith(QLatin1String("New Disc (")));
    }
};

TAMBLO_TEST_MAIN(TestAppKeyboard)
#include "tst_app_keyboard.moc"
