#include "support/TestMain.h"
#include "support/Themes.h"

#include "platform/AppSettings.h"
#include "appearance/Theme.h"
#include "appearance/ui/ColorWell.h"
#include "appearance/ui/Window_Colors.h"

#include <QCheckBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>

class TestWindowColors : public QObject {
    Q_OBJECT
private slots:
    void wellsAndCheckboxFilledFromTheme_data()
    {
        QTest::addColumn<qint64>("flag");
        QTest::addColumn<bool>("checked");
        QTest::newRow("1") << qint64(1) << true;
        QTest::newRow("0") << qint64(0) << false;
        QTest::newRow("2 is not 1") << qint64(2) << false;
    }
    void wellsAndCheckboxFilledFromTheme()
    {
        QFETCH(qint64, flag);
        QFETCH(bool, checked);
        QTemporaryDir tmp;
        QSettings s(tmp.filePath("t.conf"), QSettings::IniFormat);
        AppSettings settings(s);
        const Theme t = customTheme(flag);
        Window_Colors w(t, settings);
        QCOMPARE(w.colorListBackground->color(), t.colorTableBackground);
        QCOMPARE(w.colorListForeground->color(), t.colorTableForeground);
        QCOMPARE(w.colorToolbar->color(), t.colorToolbar);
        QCOMPARE(w.colorBottomBar->color(), t.colorBottomBar);
        QCOMPARE(w.colorSpaceOccupied->color(), t.colorSpaceOccupiedBar);
        QCOMPARE(w.check_Alternating_Rows->isChecked(), checked);
        QCOMPARE(s.allKeys().size(), 0);  // opening writes nothing
    }

    void originalThenCancelKeepsDefaultsStoredAndCompanionsUntouched()
    {
        QTemporaryDir tmp;
        QSettings s(tmp.filePath("t.conf"), QSettings::IniFormat);
        AppSettings settings(s);
        const Theme t = customTheme(0);
        fillStoreWithOddCompanions(s, settings, t);

        Window_Colors w(t, settings);
        QSignalSpy restored(&w, &Window_Colors::originalsRestored);
        QSignalSpy accepted(&w, &Window_Colors::accepted);
        QSignalSpy cancelled(&w, &Window_Colors::cancelled);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));

        QTest::mouseClick(w.btnOriginal, Qt::LeftButton);
        // Stored at once, before any OK.
        for (ThemeColor c : ThemeDefaults::all)
            QCOMPARE(settings.color(ThemeDefaults::key(c)), ThemeDefaults::color(c));
        QCOMPARE(s.value(SettingsKeys::AlternatingRows).toString(), QStringLiteral("1"));
        // Wells and checkbox show the defaults; the dialog stays open.
        QCOMPARE(w.colorListBackground->color(), ThemeDefaults::color(ThemeColor::TableBackground));
        QCOMPARE(w.colorListForeground->color(), QColor(Qt::white));
        QCOMPARE(w.colorToolbar->color(), ThemeDefaults::color(ThemeColor::Toolbar));
        QCOMPARE(w.colorBottomBar->color(), ThemeDefaults::color(ThemeColor::BottomBar));
        QCOMPARE(w.colorSpaceOccupied->color(), QColor(0, 0, 255));
        QVERIFY(w.check_Alternating_Rows->isChecked());
        QVERIFY(w.isVisible());
        QCOMPARE(restored.size(), 1);
        const Theme told = restored.first().first().value<Theme>();
        for (ThemeColor c : ThemeDefaults::all)
            QCOMPARE(told[c], ThemeDefaults::color(c));

        QTest::mouseClick(w.btnCancel, Qt::LeftButton);
        QCOMPARE(cancelled.size(), 1);
        QCOMPARE(accepted.size(), 0);
        QVERIFY(!w.isVisible());
        checkDefaultsStoredCompanionsKept(s, settings);
    }

    void cancelChangesNothing()
    {
        QTemporaryDir tmp;
        QSettings s(tmp.filePath("t.conf"), QSettings::IniFormat);
        AppSettings settings(s);
        const Theme t = customTheme(1);
        fillStore(settings, t);
        Window_Colors w(t, settings);
        w.setColorPicker([](const QColor &, QWidget *, const QString &) { return QColor(Qt::red); });
        QSignalSpy cancelled(&w, &Window_Colors::cancelled);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QTest::mouseClick(w.colorToolbar, Qt::LeftButton);
        QTest::keyClick(&w, Qt::Key_Escape);  // Escape cancels as the button does
        QCOMPARE(cancelled.size(), 1);
        QVERIFY(!w.isVisible());
        QCOMPARE(settings.color(SettingsKeys::ColorToolbar), QColor(1, 2, 3));
        QCOMPARE(s.value(SettingsKeys::AlternatingRows).toString(), QStringLiteral("1"));
    }

    void wellOpensPickerAndTakesItsAnswer()
    {
        QTemporaryDir tmp;
        QSettings s(tmp.filePath("t.conf"), QSettings::IniFormat);
        AppSettings settings(s);
        const Theme t = customTheme(1);
        Window_Colors w(t, settings);
        QList<QColor> asked;
        QColor answer(Qt::red);
        w.setColorPicker([&](const QColor &initial, QWidget *, const QString &) {
            asked << initial;
            return answer;
        });
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QSignalSpy changed(w.colorToolbar, &ColorWell::colorChanged);
        QTest::mouseClick(w.colorToolbar, Qt::LeftButton);
        QCOMPARE(asked, QList<QColor>{QColor(1, 2, 3)});
        QCOMPARE(w.colorToolbar->color(), QColor(Qt::red));
        QCOMPARE(changed.size(), 1);

        answer = QColor();  // the picker was cancelled
        QTest::mouseClick(w.colorToolbar, Qt::LeftButton);
        QCOMPARE(asked.size(), 2);
        QCOMPARE(asked.last(), QColor(Qt::red));
        QCOMPARE(w.colorToolbar->color(), QColor(Qt::red));
        QCOMPARE(changed.size(), 1);
        QCOMPARE(w.colorBottomBar->color(), t.colorBottomBar);  // only the clicked well changed
    }

    void okHandsOverWellsAndCheckbox()
    {
        QTemporaryDir tmp;
        QSettings s(tmp.filePath("t.conf"), QSettings::IniFormat);
        AppSettings settings(s);
        const Theme t = customTheme(1);
        fillStore(settings, t);
        Window_Colors w(t, settings);
        w.setColorPicker([](const QColor &, QWidget *, const QString &) { return QColor(255, 128, 0); });
        QSignalSpy accepted(&w, &Window_Colors::accepted);
        QSignalSpy cancelled(&w, &Window_Colors::cancelled);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QTest::mouseClick(w.colorSpaceOccupied, Qt::LeftButton);
        QTest::mouseClick(w.check_Alternating_Rows, Qt::LeftButton);
        QVERIFY(!w.check_Alternating_Rows->isChecked());
        QTest::mouseClick(w.btnOK, Qt::LeftButton);

        QCOMPARE(accepted.size(), 1);
        QCOMPARE(cancelled.size(), 0);
        QVERIFY(!w.isVisible());
        const Theme chosen = accepted.first().first().value<Theme>();
        QCOMPARE(chosen.b_List_Alternating_Rows, qint64(0));
        QCOMPARE(chosen.colorSpaceOccupiedBar, QColor(255, 128, 0));
        QCOMPARE(chosen.colorTableBackground, t.colorTableBackground);
        QCOMPARE(chosen.colorTableForeground, t.colorTableForeground);
        QCOMPARE(chosen.colorToolbar, t.colorToolbar);
        QCOMPARE(chosen.colorBottomBar, t.colorBottomBar);
        // Storing belongs to the controller once it has the theme.
        QCOMPARE(settings.color(SettingsKeys::ColorSpaceOccupiedBar), t.colorSpaceOccupiedBar);

        // Checking the box again gives 1.
        Window_Colors again(customTheme(0), settings);
        QSignalSpy accepted2(&again, &Window_Colors::accepted);
        again.check_Alternating_Rows->setChecked(true);
        again.OnOK();
        QCOMPARE(accepted2.first().first().value<Theme>().b_List_Alternating_Rows, qint64(1));
    }

    void receiverMayDropTheDialogLater()
    {
        QTemporaryDir tmp;
        QSettings s(tmp.filePath("t.conf"), QSettings::IniFormat);
        AppSettings settings(s);
        QPointer<Window_Colors> w = new Window_Colors(customTheme(1), settings);
        connect(w, &Window_Colors::accepted, w, &QObject::deleteLater);
        w->show();
        QVERIFY(QTest::qWaitForWindowExposed(w));
        QTest::mouseClick(w->btnOK, Qt::LeftButton);
        QTRY_VERIFY(w.isNull());
    }

    void isAWindowModalSheetWithNamedControls()
    {
        QTemporaryDir tmp;
        QSettings s(tmp.filePath("t.conf"), QSettings::IniFormat);
        AppSettings settings(s);
        QWidget main;
        main.resize(700, 400);
        main.show();
        Window_Colors w(customTheme(1), settings, &main);
        QCOMPARE(w.windowModality(), Qt::WindowModal);
        QVERIFY(w.windowFlags().testFlag(Qt::Sheet));
        QCOMPARE(w.parentWidget(), &main);
        const QList<QWidget *> controls{w.colorListBackground, w.colorListForeground, w.colorToolbar,
                                        w.colorBottomBar, w.colorSpaceOccupied, w.check_Alternating_Rows,
                                        w.btnOriginal, w.btnOK, w.btnCancel, w.labelBG, w.labelFR,
                                        w.labelToolbar, w.labelBottomBar, w.labelSpaceOccupied};
        QSet<QString> names;
        for (QWidget *c : controls) {
            QVERIFY(c);
            QVERIFY2(!c->accessibleName().isEmpty(), qPrintable(c->objectName()));
            names.insert(c->accessibleName());
        }
        QCOMPARE(names.size(), controls.size());  // no two controls share a name
        QCOMPARE(w.btnOriginal->text(), QStringLiteral("Original"));
        QCOMPARE(w.btnOK->text(), QStringLiteral("OK"));
        QCOMPARE(w.btnCancel->text(), QStringLiteral("Cancel"));
        QVERIFY(w.btnOK->isDefault());
    }

    void wellPaintsItsColour()
    {
        QTemporaryDir tmp;
        QSettings s(tmp.filePath("t.conf"), QSettings::IniFormat);
        AppSettings settings(s);
        Window_Colors w(customTheme(1), settings);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        w.colorToolbar->setColor(QColor(0, 200, 0));
        const QImage img = w.colorToolbar->grab().toImage();
        const QPoint centre(img.width() / 2, img.height() / 2);
        QCOMPARE(img.pixelColor(centre), QColor(0, 200, 0));
        w.colorToolbar->setColor(QColor(200, 0, 0));
        QCOMPARE(w.colorToolbar->grab().toImage().pixelColor(centre), QColor(200, 0, 0));
    }
};

TAMBLO_TEST_MAIN(TestWindowColors)
#include "tst_appearance_window_colors.moc"
