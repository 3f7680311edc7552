#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleValueInterface>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTimer>
#include <QVideoWidget>

#include "appearance/ui/BackgroundViews.h"

#include "app/ui/MainWindow.h"
#include "platform/ui/QtAlerts.h"
#include "compilation/CompilationActions.h"
#include "support/AppHarness.h"
#include "support/PreviewMedia.h"
#include "support/TestMain.h"
#include "toolrun/ui/DoubleProgressBar.h"

// What a screen reader finds: every control named as a person would say
// it, radio buttons that are radio buttons, checks and radios that a
// toggle or press through the accessibility interface sets exactly as a
// click does, and bars that report the range they show.
class TestAppAccessibility : public QObject {
    Q_OBJECT

    QTemporaryDir m_media;
    PreviewMedia m_files;

    // Roles that a person operates or reads: each needs a name.
    static bool needsName(QAccessible::Role role)
    {
        switch (role) {
        case QAccessible::Button:
        case QAccessible::CheckBox:
        case QAccessible::RadioButton:
        case QAccessible::ComboBox:
        case QAccessible::Slider:
        case QAccessible::SpinBox:
        case QAccessible::ProgressBar:
        case QAccessible::PageTab:
        case QAccessible::MenuItem:
        case QAccessible::ButtonMenu:
        case QAccessible::Table:
        case QAccessible::List:
        case QAccessible::Tree:
        case QAccessible::Dialog:
        case QAccessible::ToolBar:
        case QAccessible::EditableText:
        case QAccessible::ColumnHeader:
        case QAccessible::StaticText:
            return true;
        default:
            return false;
        }
    }

    // A name made for the program, not for a person: "view_Toolbar_Audio_BG",
    // "tableviewAudioFiles", "btnOK", "List background label".
    static bool looksInternal(const QString &name, const QString &objectName)
    {
        static const QRegularExpression camel(QStringLiteral("^[a-z]+[A-Z][A-Za-z0-9]*$"));
        if (name.contains(QLatin1Char('_')) || camel.match(name).hasMatch())
            return true;
        if (name.endsWith(QLatin1String(" label"), Qt::CaseInsensitive))
            return true;
        return !objectName.isEmpty() && name == objectName && objectName.contains(QRegularExpression("[a-z][A-Z_]"));
    }

    static QString describe(QAccessibleInterface *iface)
    {
        QObject *o = iface->object();
        return QStringLiteral("%1 \"%2\" (%3 %4)")
            .arg(int(iface->role()))
            .arg(iface->text(QAccessible::Name), o ? QString::fromLatin1(o->metaObject()->className()) : QString(),
                 o ? o->objectName() : QString());
    }

    // Walks the tree from `iface`; appends a line for each control without
    // a name or with an internal one. Table cells are data, not controls.
    static void walk(QAccessibleInterface *iface, QStringList &problems, int &visited, int depth = 0)
    {
        if (!iface || !iface->isValid() || depth > 40)
            return;
        ++visited;
        const QString name = iface->text(QAccessible::Name);
        const QAccessible::Role role = iface->role();
        QObject *o = iface->object();
        const QString objectName = o ? o->objectName() : QString();
        bool decorative = false;
        if (auto *label = qobject_cast<QLabel *>(o))
            decorative = label->text().isEmpty();  // an icon beside a message
        if (role == QAccessible::Separator)
            decorative = true;
        // A box that groups choices under a title ("Video standard") is read
        // by that title; a row of buttons is no control of its own.
        const bool titledGroup = role == QAccessible::Grouping && qobject_cast<QGroupBox *>(o);
        if ((needsName(role) || titledGroup) && name.trimmed().isEmpty() && !decorative)
            problems << QStringLiteral("no name: ") + describe(iface);
        if (!name.isEmpty() && looksInternal(name, objectName))
            problems << QStringLiteral("internal name: ") + describe(iface);
        if (qobject_cast<QRadioButton *>(o) && role != QAccessible::RadioButton)
            problems << QStringLiteral("radio button published as another role: ") + describe(iface);
        const bool table = role == QAccessible::Table || role == QAccessible::Tree || role == QAccessible::List;
        for (int i = 0; i < iface->childCount(); ++i) {
            QAccessibleInterface *child = iface->child(i);
            if (!child)
                continue;
            if (table && child->role() != QAccessible::ColumnHeader)
                continue;
            walk(child, problems, visited, depth + 1);
        }
    }

    static QStringList problemsOf(QWidget *w, int *visited = nullptr)
    {
        QStringList problems;
        int count = 0;
        walk(QAccessible::queryAccessibleInterface(w), problems, count);
        if (visited)
            *visited = count;
        return problems;
    }

    static QAccessibleActionInterface *actions(QWidget *w)
    {
        QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(w);
        return iface ? iface->actionInterface() : nullptr;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_media.isValid());
        QVERIFY(m_files.make(m_media.path()));
    }

    void mainWindowEveryTabAndMenu()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        QVERIFY(QTest::qWaitForWindowExposed(w));
        for (int tab = 0; tab < w->tabviewMain->count(); ++tab) {
            w->tabviewMain->setCurrentIndex(tab);
            int visited = 0;
            const QStringList problems = problemsOf(w, &visited);
            QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
            QVERIFY2(visited > 60, qPrintable(QString::number(visited)));  // the walk went everywhere
        }
        const QStringList erase = problemsOf(w->popupmenuErase);
        QVERIFY2(erase.isEmpty(), qPrintable(erase.join(QLatin1Char('\n'))));
        // The toolbar strips by what they are.
        QCOMPARE(QAccessible::queryAccessibleInterface(w->view_Toolbar_Audio_BG)->text(QAccessible::Name),
                 QString("Audio toolbar"));
        QCOMPARE(QAccessible::queryAccessibleInterface(w->view_Toolbar_Data_Sub_BG)->text(QAccessible::Name),
                 QString("Data disc kind"));
    }

    void everyDialogAndSheet()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        QSettings store(h.root.filePath("dialogs.ini"), QSettings::IniFormat);
        AppSettings settings(store);

        QList<QWidget *> dialogs;
        auto *newDisc = new Window_New_Disc(1, w);
        auto *video = new Window_Video_Settings("0", "0", settings, w);
        auto *colors = new Window_Colors(h.app->theme, settings, w);
        auto *progress = new Window_Progress(w);
        auto *unique = new Window_Unique_Progress(w);
        auto *performing = new Window_Performing_Operation(w);
        auto *terminated = new Window_Operation_Terminated(w);
        auto *copying = new Window_Data_Copy_Folders(w);
        auto *player = new AVSPDocument(QUrl::fromLocalFile(m_files.mp4), h.alerts, w);
        dialogs << newDisc << video << colors << progress << unique << performing << terminated << copying << player;
        for (QWidget *d : dialogs) {
            d->show();
            QVERIFY(QTest::qWaitForWindowExposed(d));
            const QStringList problems = problemsOf(d);
            QVERIFY2(problems.isEmpty(), qPrintable(d->objectName() + ":\n" + problems.join(QLatin1Char('\n'))));
            // Its title says what it is for.
            QVERIFY2(!d->windowTitle().isEmpty() && d->windowTitle() != QLatin1String("Tamblo"),
                     qPrintable(d->objectName() + ": " + d->windowTitle()));
        }
        QTRY_VERIFY_WITH_TIMEOUT(player->playerLayer && !player->playerLayer->isHidden(), 10000);
        const QStringList playing = problemsOf(player);
        QVERIFY2(playing.isEmpty(), qPrintable(playing.join(QLatin1Char('\n'))));
        qDeleteAll(dialogs);

        // An alert, as the platform shows it.
        QtAlerts alerts(w);
        QStringList alertProblems;
        QString alertTitle;
        QTimer::singleShot(0, this, [&] {
            QWidget *box = QApplication::activeModalWidget();
            QVERIFY(box);
            alertTitle = box->windowTitle();
            alertProblems = problemsOf(box);
            for (QPushButton *b : box->findChildren<QPushButton *>())
                if (b->text() == QLatin1String("Close"))
                    b->click();
        });
        AlertRequest r;
        r.messageText = QStringLiteral("No disc");
        r.informativeText = QStringLiteral("There is no disc on the drive.");
        alerts.show(r);
        QVERIFY2(alertProblems.isEmpty(), qPrintable(alertProblems.join(QLatin1Char('\n'))));
        QCOMPARE(alertTitle, QString("No disc"));
    }

    // The pairs of the Video Settings dialog are kept by hand; through the
    // accessibility interface they stay pairs, and OK stores what shows.
    void videoSettingsPairsThroughTheAccessibilityInterface()
    {
        QTemporaryDir dir;
        QSettings store(dir.filePath("prefs.ini"), QSettings::IniFormat);
        AppSettings settings(store);
        Window_Video_Settings w("0", "0", settings);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        for (QRadioButton *r : {w.radioVideoNTSC, w.radioVideoPal, w.radioAudioDolbyDigital, w.radioAudioMPEG2})
            QCOMPARE(QAccessible::queryAccessibleInterface(r)->role(), QAccessible::RadioButton);

        QAccessibleActionInterface *pal = actions(w.radioVideoPal);
        QVERIFY(pal);
        QVERIFY(pal->actionNames().contains(QAccessibleActionInterface::toggleAction()));
        pal->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(w.radioVideoPal->isChecked());
        QVERIFY(!w.radioVideoNTSC->isChecked());
        QVERIFY(QAccessible::queryAccessibleInterface(w.radioVideoPal)->state().checked);
        QVERIFY(!QAccessible::queryAccessibleInterface(w.radioVideoNTSC)->state().checked);

        actions(w.radioAudioMPEG2)->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(w.radioAudioMPEG2->isChecked());
        QVERIFY(!w.radioAudioDolbyDigital->isChecked());

        QSignalSpy stored(&w, &Window_Video_Settings::stored);
        actions(w.btnOK)->doAction(QAccessibleActionInterface::pressAction());
        QTRY_COMPARE(stored.size(), 1);
        QCOMPARE(stored[0][0].toString(), QString("1"));  // PAL
        QCOMPARE(stored[0][1].toString(), QString("1"));  // MPEG-2 audio
        QCOMPARE(store.value("ZendrovaVideoFormat18").toString(), QString("1"));
        QCOMPARE(store.value("ZendrovaAudioFormat18").toString(), QString("1"));
    }

    void newDiscRadiosThroughTheAccessibilityInterface()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        h.app->Show_Window_New_Disc();
        Window_New_Disc *d = h.app->windowNewDisc;
        QVERIFY(d);
        for (QRadioButton *r : d->radios())
            QCOMPARE(QAccessible::queryAccessibleInterface(r)->role(), QAccessible::RadioButton);
        actions(d->radio5)->doAction(QAccessibleActionInterface::toggleAction());
        for (QRadioButton *r : d->radios())
            QCOMPARE(r->isChecked(), r == d->radio5);
        // Toggled again, it goes off as under the pointer, and all are off.
        actions(d->radio5)->doAction(QAccessibleActionInterface::toggleAction());
        for (QRadioButton *r : d->radios())
            QVERIFY(!r->isChecked());
        actions(d->radio7)->doAction(QAccessibleActionInterface::pressAction());
        d->OnOK();
        QCOMPARE(h.app->i_Type_of_New_Disc, qint64(7));
        QCOMPARE(h.app->mainWindow()->btnBurn->text(), QString("Burn Data DVD"));
    }

    void checkBoxToggleIsAClick()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        h.app->OnToolsColors();
        Window_Colors *c = h.app->windowColors;
        QVERIFY(c);
        QCOMPARE(QAccessible::queryAccessibleInterface(c->check_Alternating_Rows)->role(), QAccessible::CheckBox);
        const bool before = c->check_Alternating_Rows->isChecked();
        QSignalSpy clicked(c->check_Alternating_Rows, &QCheckBox::clicked);
        actions(c->check_Alternating_Rows)->doAction(QAccessibleActionInterface::toggleAction());
        QCOMPARE(c->check_Alternating_Rows->isChecked(), !before);
        QCOMPARE(clicked.size(), 1);
        QCOMPARE(QAccessible::queryAccessibleInterface(c->check_Alternating_Rows)->state().checked, !before);
        // The colour labels read as what they label.
        QCOMPARE(QAccessible::queryAccessibleInterface(c->labelBG)->text(QAccessible::Name), QString("List background"));
        QCOMPARE(QAccessible::queryAccessibleInterface(c->colorListBackground)->text(QAccessible::Name),
                 QString("List background color"));
        c->OnCancel();
    }

    // The adding sheet's bar reads 0 to the number of files, and a folder
    // being measured shows a busy bar.
    void progressBarsReportTheirRealRange()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        CompilationActions *adding = h.app->compilationActions();
        emit adding->sheetShown(OperationSheet::MeasuringFiles, 3);
        QVERIFY(h.app->windowUniqueProgress);
        QCOMPARE(h.app->windowUniqueProgress->windowTitle(), QString("Adding Files"));
        DoubleProgressBar *bar = h.app->windowUniqueProgress->progressBar;
        QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(bar);
        QCOMPARE(iface->role(), QAccessible::ProgressBar);
        QAccessibleValueInterface *value = iface->valueInterface();
        QVERIFY(value);
        QCOMPARE(value->minimumValue().toDouble(), 0.0);
        QCOMPARE(value->maximumValue().toDouble(), 3.0);
        QCOMPARE(value->currentValue().toDouble(), 0.0);
        emit adding->barMoved(OperationBar::Single, 2);
        QCOMPARE(value->currentValue().toDouble(), 2.0);
        QCOMPARE(iface->text(QAccessible::Value), QString("2 of 3"));
        emit adding->sheetClosed(OperationSheet::MeasuringFiles);
        QVERIFY(!h.app->windowUniqueProgress);

        emit adding->sheetShown(OperationSheet::MeasuringFolder, 0);  // a data folder: its size is not known yet
        QVERIFY(h.app->windowUniqueProgress);
        QCOMPARE(h.app->windowUniqueProgress->windowTitle(), QString("Adding a Folder"));
        bar = h.app->windowUniqueProgress->progressBar;
        QVERIFY(bar->isBusy());
        QCOMPARE(bar->minimum(), 0);
        QCOMPARE(bar->maximum(), 0);  // moves on its own
        QCOMPARE(QAccessible::queryAccessibleInterface(bar)->valueInterface()->maximumValue().toDouble(), 0.0);
        emit adding->sheetClosed(OperationSheet::MeasuringFolder);

        // The burn sheets: a percentage is 0 to 100.
        DoubleProgressBar percent;
        percent.setMinDouble(0);
        percent.setMaxDouble(100);
        percent.setDoubleValue(42.5);
        QAccessibleValueInterface *p = QAccessible::queryAccessibleInterface(&percent)->valueInterface();
        QCOMPARE(p->maximumValue().toDouble(), 100.0);
        QCOMPARE(p->currentValue().toDouble(), 42.5);
    }
};

TAMBLO_TEST_MAIN(TestAppAccessibility)
#include "tst_app_accessibility.moc"
