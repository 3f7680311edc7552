// The whole main window as a person sees it under three looks: the light
// system look and the dark one (alternating rows on: white or black lists)
// and a theme chosen in the colour dialog (alternating rows off, green list,
// yellow text, orange capacity bar). Each look is grabbed and saved as a PNG
// in the working folder (the path is printed), then checked on its pixels:
// the Audio list's background and text, the row banding and the capacity
// gauge's bar.
#include "support/TestMain.h"

#include <QCheckBox>
#include <QDir>
#include <QImage>
#include <QMap>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <cmath>
#include <memory>

#include "app/ui/AppContext.h"
#include "app/ui/AppDelegate.h"
#include "app/ui/MainWindow.h"
#include "appearance/ui/ColorWell.h"
#include "appearance/ui/Window_Colors.h"
#include "compilation/MediaListModel.h"
#include "compilation/ui/CompilationTable.h"
#include "compilation/ui/SpaceOccupiedView.h"
#include "support/AppHarness.h"

namespace {

const QColor CustomBackground(0, 160, 0);     // strong green
const QColor CustomForeground(255, 255, 0);   // yellow
const QColor CustomBar(255, 140, 0);          // orange
const QColor DefaultBar(0, 0, 255);           // the stored default of the bar

NodeMediaFile track(const QString &name, qint64 seconds)
{
    NodeMediaFile n;
    n.s_Folder_Path = QStringLiteral("/music/Album");
    n.s_File_Name_With_Extension = name;
    n.s_File_Path = n.s_Folder_Path + QLatin1Char('/') + name;
    n.s_File_URL = QUrl::fromLocalFile(n.s_File_Path);
    n.s_File_Extension = QStringLiteral("mp3");
    n.i_Duration_in_Seconds = seconds;
    n.s_Duration = QStringLiteral(" %1:%2:%3.00")
                       .arg(seconds / 3600, 2, 10, QLatin1Char('0'))
                       .arg(seconds / 60 % 60, 2, 10, QLatin1Char('0'))
                       .arg(seconds % 60, 2, 10, QLatin1Char('0'));
    n.s_File_Size = QStringLiteral("%1.00 MB").arg(seconds / 60 + 1);
    return n;
}

QString rgbText(const QColor &c)
{
    return QStringLiteral("rgb(%1, %2, %3)").arg(c.red()).arg(c.green()).arg(c.blue());
}

double distance(const QColor &a, const QColor &b)
{
    const double dr = a.red() - b.red(), dg = a.green() - b.green(), db = a.blue() - b.blue();
    return std::sqrt(dr * dr + dg * dg + db * db);
}

// The application on test seams (its own settings file and Documents, no
// drive attached), on a light or dark system.
struct Session : AppHarness<> {
    explicit Session(bool darkSystem) { dark = darkSystem; }

    // Three tracks, 2159 s in all: 48 % of an Audio CD's 4440 s.
    void addTracks()
    {
        app->arrayMediaFiles->append(track(QStringLiteral("01 Overture.mp3"), 2000));
        app->arrayMediaFiles->append(track(QStringLiteral("02 Interlude.mp3"), 95));
        app->arrayMediaFiles->append(track(QStringLiteral("03 Finale.mp3"), 64));
        app->refreshTableAudioFiles();
    }
};

// What the grabbed window shows, in window coordinates.
struct Shot {
    QImage image;
    QRect viewport;  // the Audio list's viewport
    QRect gauge;     // the capacity gauge
    QRect fileCell;  // row 0, "File" column (holds text)
    QRect row1Blank; // row 1, a few pixels at the far right of the last column (no text)
    QRect row0Blank; // the same in row 0
    QString path;

    QColor at(const QPoint &p) const { return image.pixelColor(p); }
    // A point of the list below the last row: only the background.
    QPoint emptyListPoint() const { return QPoint(viewport.center().x(), viewport.bottom() - 12); }
    QPoint gaugePoint(double share) const
    {
        return QPoint(gauge.left() + int(gauge.width() * share), gauge.center().y());
    }
    // How close the cell's text comes to `text`: the smallest distance of any
    // pixel of the cell to that colour.
    double closestTo(const QRect &cell, const QColor &text) const
    {
        double best = 1e9;
        for (int y = cell.top(); y <= cell.bottom(); ++y)
            for (int x = cell.left(); x <= cell.right(); ++x)
                best = std::min(best, distance(image.pixelColor(x, y), text));
        return best;
    }
};

Shot grab(Session &s, const QString &name)
{
    MainWindow *w = s.window();
    CompilationTable *table = w->tableviewAudioFiles;
    Shot shot;
    shot.image = w->grab().toImage();
    QWidget *vp = table->viewport();
    shot.viewport = QRect(vp->mapTo(w, QPoint(0, 0)), vp->size());
    shot.gauge = QRect(w->spaceoccupiedviewControl->mapTo(w, QPoint(0, 0)), w->spaceoccupiedviewControl->size());
    const QPoint origin = shot.viewport.topLeft();
    shot.fileCell = table->visualRect(s.app->arrayMediaFiles->index(0, MediaListModel::ColumnFile))
                        .translated(origin)
                        .adjusted(2, 2, -2, -2);
    auto blank = [&](int row) {
        const QRect r = table->visualRect(s.app->arrayMediaFiles->index(row, MediaListModel::ColumnPath));
        const int right = std::min(r.right(), vp->width() - 1);
        return QRect(QPoint(right - 6, r.center().y() - 1), QSize(4, 3)).translated(origin);
    };
    shot.row0Blank = blank(0);
    shot.row1Blank = blank(1);
    shot.path = QDir(QDir::currentPath()).filePath(QStringLiteral("tamblo-appearance-%1.png").arg(name));
    QFile::remove(shot.path);
    if (shot.image.save(shot.path))
        qInfo("screenshot: %s", qPrintable(shot.path));
    return shot;
}

// Every pixel of the rectangle in the colour.
bool uniform(const Shot &shot, const QRect &r, const QColor &c, QString *why)
{
    for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x = r.left(); x <= r.right(); ++x)
            if (shot.image.pixelColor(x, y).rgb() != c.rgb()) {
                *why = QStringLiteral("(%1, %2) is %3, not %4")
                           .arg(x)
                           .arg(y)
                           .arg(rgbText(shot.image.pixelColor(x, y)), rgbText(c));
                return false;
            }
    return true;
}

} // namespace

class TestAppearanceScreenshots : public QObject {
    Q_OBJECT

    // Where each saved picture shows only the list's background.
    QMap<QString, QPoint> m_emptyPoint;

    // Starts the application, adds the tracks and lets the two 0.1 s timers run.
    void startWithTracks(Session &s)
    {
        QVERIFY(s.start());
        QVERIFY(s.exits.isEmpty());
        QVERIFY(QTest::qWaitForWindowExposed(s.window()));
        s.addTracks();
        QTest::qWait(200);
        QCOMPARE(s.app->arrayMediaFiles->count(), 3);
        QCOMPARE(s.app->i_Audio_Total_Duration_in_Seconds, qint64(2159));
        QCOMPARE(s.window()->spaceoccupiedviewControl->i_Percentage(), qint64(48));
        QVERIFY(s.window()->tableviewAudioFiles->isVisible());
        QVERIFY(s.window()->spaceoccupiedviewControl->isVisible());
    }

    // The checks every look shares.
    void checkShot(const Shot &shot, const QColor &background, const QColor &text, bool banded,
                   const QColor &bar)
    {
        QVERIFY2(QFile::exists(shot.path), qPrintable(shot.path));
        QCOMPARE(QImage(shot.path).size(), shot.image.size());
        QVERIFY(QRect(QPoint(0, 0), shot.image.size()).contains(shot.viewport));
        QVERIFY(QRect(QPoint(0, 0), shot.image.size()).contains(shot.gauge));
        QVERIFY2(shot.viewport.height() > 120, "the list is too short to have an empty part");
        QVERIFY(shot.viewport.contains(shot.row1Blank));

        // The list's empty part is the background, all over a small patch.
        QString why;
        const QPoint empty = shot.emptyListPoint();
        QVERIFY2(uniform(shot, QRect(empty - QPoint(20, 4), QSize(40, 8)), background, &why), qPrintable(why));

        // Row 0 carries the background too, away from its text.
        QVERIFY2(uniform(shot, shot.row0Blank, background, &why), qPrintable(why));

        // Row 1: a band of its own when rows alternate, the background when not.
        if (banded) {
            const QColor band = shot.at(shot.row1Blank.center());
            QVERIFY2(band.rgb() != background.rgb(), qPrintable(rgbText(band)));
            QVERIFY2(distance(band, background) < 60, qPrintable(rgbText(band)));
        } else {
            QVERIFY2(uniform(shot, shot.row1Blank, background, &why), qPrintable(why));
        }

        // The text of row 0 is drawn in the text colour: some pixel of the cell
        // comes much nearer to it than the background is.
        const double span = distance(background, text);
        const double nearest = shot.closestTo(shot.fileCell, text);
        QVERIFY2(nearest < span * 0.35,
                 qPrintable(QStringLiteral("nearest pixel to %1 is %2 away (background %3 away)")
                                .arg(rgbText(text))
                                .arg(nearest)
                                .arg(span)));

        // The gauge: the bar colour up to 48 % of its width, not beyond.
        const QColor inBar = shot.at(shot.gaugePoint(0.25));
        QVERIFY2(inBar.rgb() == bar.rgb(), qPrintable(rgbText(inBar) + QStringLiteral(" in the bar")));
        const QColor nearEnd = shot.at(shot.gaugePoint(0.45));
        QVERIFY2(nearEnd.rgb() == bar.rgb(), qPrintable(rgbText(nearEnd) + QStringLiteral(" near the bar's end")));
        const QColor past = shot.at(shot.gaugePoint(0.70));
        QVERIFY2(distance(past, bar) > 100, qPrintable(rgbText(past) + QStringLiteral(" past the bar")));
    }

private slots:
    void lightSystemLook()
    {
        Session s(false);
        startWithTracks(s);
        if (QTest::currentTestFailed())
            return;
        QVERIFY(s.window()->tableviewAudioFiles->alternatingRowColors());
        const Shot shot = grab(s, QStringLiteral("light"));
        m_emptyPoint.insert(QStringLiteral("light"), shot.emptyListPoint());
        checkShot(shot, QColor(Qt::white), QColor(Qt::black), true, DefaultBar);
    }

    void darkSystemLook()
    {
        Session s(true);
        startWithTracks(s);
        if (QTest::currentTestFailed())
            return;
        QVERIFY(s.window()->tableviewAudioFiles->alternatingRowColors());
        const Shot shot = grab(s, QStringLiteral("dark"));
        m_emptyPoint.insert(QStringLiteral("dark"), shot.emptyListPoint());
        checkShot(shot, QColor(Qt::black), QColor(Qt::white), true, DefaultBar);
    }

    void themeChosenInTheColourDialog()
    {
        Session s(false);
        startWithTracks(s);
        if (QTest::currentTestFailed())
            return;

        s.app->OnToolsColors();
        QPointer<Window_Colors> dialog = s.app->windowColors;
        QVERIFY(dialog);
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
        dialog->colorListBackground->setColor(CustomBackground);
        dialog->colorListForeground->setColor(CustomForeground);
        dialog->colorSpaceOccupied->setColor(CustomBar);
        dialog->check_Alternating_Rows->setChecked(false);
        QTest::mouseClick(dialog->btnOK, Qt::LeftButton);
        QTRY_VERIFY(!dialog);
        QVERIFY(!s.app->windowColors);
        QTest::qWait(200);

        QCOMPARE(s.app->theme.colorTableBackground, CustomBackground);
        QCOMPARE(s.app->theme.b_List_Alternating_Rows, qint64(0));
        QVERIFY(!s.window()->tableviewAudioFiles->alternatingRowColors());
        QCOMPARE(s.window()->spaceoccupiedviewControl->barColor(), CustomBar);

        const Shot shot = grab(s, QStringLiteral("custom"));
        m_emptyPoint.insert(QStringLiteral("custom"), shot.emptyListPoint());
        checkShot(shot, CustomBackground, CustomForeground, false, CustomBar);
    }

    // The three saved pictures, read back from their files, differ where a
    // person looks first: the list's empty part.
    void looksCanBeToldApart()
    {
        QList<QColor> seen;
        for (const QString name : {QStringLiteral("light"), QStringLiteral("dark"), QStringLiteral("custom")}) {
            const QString path = QDir(QDir::currentPath()).filePath(QStringLiteral("tamblo-appearance-%1.png").arg(name));
            const QImage image(path);
            QVERIFY2(!image.isNull(), qPrintable(path));
            QVERIFY2(m_emptyPoint.contains(name), qPrintable(name));
            seen << image.pixelColor(m_emptyPoint.value(name));
        }
        QVERIFY2(distance(seen[0], seen[1]) > 200, qPrintable(rgbText(seen[0]) + " / " + rgbText(seen[1])));
        QVERIFY2(distance(seen[0], seen[2]) > 100, qPrintable(rgbText(seen[0]) + " / " + rgbText(seen[2])));
        QVERIFY2(distance(seen[1], seen[2]) > 100, qPrintable(rgbText(seen[1]) + " / " + rgbText(seen[2])));
    }
};

TAMBLO_TEST_MAIN(TestAppearanceScreenshots)
#include "tst_appearance_screenshots.moc"
