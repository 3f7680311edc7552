// The list tables (sorting, models, a long list in a view), the disc kinds
// with their capacities and the new-disc dialog, and the capacity gauge.
#include "support/TestMain.h"

#include <QHeaderView>
#include <QImage>
#include <QItemSelectionModel>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableView>
#include <limits>

#include "compilation/DataFolderModel.h"
#include "compilation/DiscKinds.h"
#include "compilation/GaugePainter.h"
#include "compilation/ListSorting.h"
#include "compilation/MediaListModel.h"
#include "compilation/ui/CompilationTable.h"
#include "compilation/ui/SpaceOccupiedView.h"
#include "compilation/ui/Window_New_Disc.h"

namespace {

NodeMediaFile media(const QString &folder, const QString &name, const QString &duration = QString(),
                    const QString &size = QString())
{
    NodeMediaFile n;
    n.s_File_Path = folder + QLatin1Char('/') + name;
    n.s_Folder_Path = folder;
    n.s_File_Name_With_Extension = name;
    n.s_File_Extension = name.section(QLatin1Char('.'), -1);
    n.s_Duration = duration;
    n.s_File_Size = size;
    return n;
}

NodeDataFolder folder(const QString &path, const QString &size, quint64 kb = 0)
{
    NodeDataFolder n;
    n.s_Path = path;
    n.s_Size = size;
    n.i_Size_in_KBytes = kb;
    return n;
}

QStringList names(const QList<NodeMediaFile> &list)
{
    QStringList out;
    for (const NodeMediaFile &n : list)
        out << n.s_File_Name_With_Extension;
    return out;
}

QStringList durations(const QList<NodeMediaFile> &list)
{
    QStringList out;
    for (const NodeMediaFile &n : list)
        out << n.s_Duration;
    return out;
}

ColumnSortFlags flags(bool c1, bool c2, bool c3, bool c4)
{
    ColumnSortFlags f;
    f.m_b_Col1_Ascenging = c1;
    f.m_b_Col2_Ascenging = c2;
    f.m_b_Col3_Ascenging = c3;
    f.m_b_Col4_Ascenging = c4;
    return f;
}

QString flagText(const ColumnSortFlags &f)
{
    return QStringLiteral("%1%2%3%4")
        .arg(int(f.m_b_Col1_Ascenging))
        .arg(int(f.m_b_Col2_Ascenging))
        .arg(int(f.m_b_Col3_Ascenging))
        .arg(int(f.m_b_Col4_Ascenging));
}

bool isBlue(QRgb p)
{
    return qRed(p) == 0 && qGreen(p) == 0 && qBlue(p) == 255 && qAlpha(p) == 255;
}

bool isRed(QRgb p)
{
    return qRed(p) == 255 && qGreen(p) == 0 && qBlue(p) == 0 && qAlpha(p) == 255;
}

// A column is "blue" / "red" when every pixel of it is.
bool columnIs(const QImage &img, int x, bool (*test)(QRgb))
{
    for (int y = 0; y < img.height(); ++y)
        if (!test(img.pixel(x, y)))
            return false;
    return true;
}

bool anyPixel(const QImage &img, bool (*test)(QRgb))
{
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x)
            if (test(img.pixel(x, y)))
                return true;
    return false;
}

// The background at column x: grey all the way (r = g = b), light at the
// bottom row, black at the top row, darker each row upwards.
bool backgroundColumn(const QImage &img, int x, QString *why)
{
    int previous = 256;
    for (int y = img.height() - 1; y >= 0; --y) {
        const QRgb p = img.pixel(x, y);
        if (qRed(p) != qGreen(p) || qGreen(p) != qBlue(p) || qAlpha(p) != 255) {
            *why = QStringLiteral("column %1 row %2 is not grey").arg(x).arg(y);
            return false;
        }
        if (qRed(p) > previous) {
            *why = QStringLiteral("column %1 row %2 is lighter than the row below").arg(x).arg(y);
            return false;
        }
        previous = qRed(p);
    }
    const int bottom = qRed(img.pixel(x, img.height() - 1));
    const int top = qRed(img.pixel(x, 0));
    if (bottom < 150 || bottom > 175) {
        *why = QStringLiteral("bottom row of column %1 is %2, not light grey").arg(x).arg(bottom);
        return false;
    }
    if (top > 20) {
        *why = QStringLiteral("top row of column %1 is %2, not black").arg(x).arg(top);
        return false;
    }
    return true;
}

} // namespace

class TestCompilationTablesGauge : public QObject {
    Q_OBJECT

    // The gauge columns every 200 x 20 image must show at a percentage:
    // blue up to the bar's end (90 % of the width once the red part shows),
    // red from column 180 for the share past 90 % (cut at the edge), the
    // grey-to-black background after that.
    static void checkGauge(const QImage &img, qint64 pct)
    {
        QCOMPARE(img.size(), QSize(200, 20));
        const int blueEnd = pct >= 90 ? 179 : int(pct * 200 / 100) - 1;  // -1: no blue
        for (int x = 0; x <= blueEnd; ++x)
            QVERIFY2(columnIs(img, x, isBlue),
                     qPrintable(QStringLiteral("column %1 not blue at %2 %").arg(x).arg(pct)));
        QVERIFY2(!columnIs(img, blueEnd + 1, isBlue),
                 qPrintable(QStringLiteral("column %1 blue at %2 %").arg(blueEnd + 1).arg(pct)));

        const int redEnd = pct > 90 ? qMin(199, 180 + int((pct - 90) * 200 / 100) - 1) : -1;
        if (redEnd < 0) {
            QVERIFY2(!anyPixel(img, isRed), qPrintable(QStringLiteral("red at %1 %").arg(pct)));
        } else {
            for (int x = 180; x <= redEnd; ++x)
                QVERIFY2(columnIs(img, x, isRed),
                         qPrintable(QStringLiteral("column %1 not red at %2 %").arg(x).arg(pct)));
            for (int x = 0; x < 180; ++x)
                QVERIFY(!columnIs(img, x, isRed));
        }
        const int from = redEnd >= 0 ? redEnd + 1 : blueEnd + 1;
        for (int x = from; x < img.width(); ++x) {
            QString why;
            QVERIFY2(backgroundColumn(img, x, &why), qPrintable(why));
        }
    }

private slots:
    // Sorting -------------------------------------------------------------

    void naturalCompareOrdersLikeAFileBrowser()
    {
        using ListSorting::naturalCompare;
        QVERIFY(naturalCompare("Track 1.mp3", "track 2.mp3") < 0);
        QVERIFY(naturalCompare("track 2.mp3", "Track 10.mp3") < 0);
        QVERIFY(naturalCompare("Track 10.mp3", "Track 1.mp3") > 0);
        QVERIFY(naturalCompare("Track 10.mp3", "Track 9.mp3") > 0);
        QCOMPARE(naturalCompare("ABC.mp3", "abc.mp3"), 0);
        QVERIFY(naturalCompare("Track 010.mp3", "Track 9.mp3") > 0);
        QVERIFY(naturalCompare("a", "ab") < 0);
        QVERIFY(naturalCompare("1.50 MB", "900.00 KB") < 0);
    }

    void sortByNameAscendingFirst()
    {
        QList<NodeMediaFile> list{media("/m", "Track 10.mp3"), media("/m", "track 2.mp3"),
                                  media("/m", "Track 1.mp3")};
        ColumnSortFlags f;
        QCOMPARE(flagText(f), QStringLiteral("1000"));
        QVERIFY(ListSorting::sortMediaFiles(list, 0, f));
        QCOMPARE(names(list), QStringList({"Track 1.mp3", "track 2.mp3", "Track 10.mp3"}));
        QCOMPARE(flagText(f), QStringLiteral("0000"));
        // The next click on it goes the other way.
        QVERIFY(ListSorting::sortMediaFiles(list, 0, f));
        QCOMPARE(names(list), QStringList({"Track 10.mp3", "track 2.mp3", "Track 1.mp3"}));
        QCOMPARE(flagText(f), QStringLiteral("1000"));
    }

    void durationColumnTwoClicks()
    {
        QList<NodeMediaFile> list{media("/m", "a.mp3", " 00:00:05.0"),
                                  media("/m", "b.mp3", " 00:01:00.0"),
                                  media("/m", "c.mp3", " 00:00:30.0"),
                                  media("/m", "d.mp3", " 01:00:00.0")};
        ColumnSortFlags f;
        QVERIFY(ListSorting::sortMediaFiles(list, 1, f));
        QCOMPARE(durations(list),
                 QStringList({" 01:00:00.0", " 00:01:00.0", " 00:00:30.0", " 00:00:05.0"}));
        QCOMPARE(flagText(f), QStringLiteral("0100"));
        QVERIFY(ListSorting::sortMediaFiles(list, 1, f));
        QCOMPARE(durations(list),
                 QStringList({" 00:00:05.0", " 00:00:30.0", " 00:01:00.0", " 01:00:00.0"}));
        QCOMPARE(flagText(f), QStringLiteral("0000"));
    }

    void usedFlagInvertsOthersCleared()
    {
        QList<NodeMediaFile> list{media("/m", "a.mp3")};
        ColumnSortFlags f = flags(true, true, true, false);
        QVERIFY(ListSorting::sortMediaFiles(list, 3, f));
        QCOMPARE(flagText(f), QStringLiteral("0001"));
        f = flags(true, true, true, true);
        QVERIFY(ListSorting::sortMediaFiles(list, 2, f));
        QCOMPARE(flagText(f), QStringLiteral("0000"));
    }

    void sizeColumnSortsByText()
    {
        QList<NodeMediaFile> list{media("/m", "a.mp3", {}, "900.00 KB"),
                                  media("/m", "b.mp3", {}, "1.50 MB"),
                                  media("/m", "c.mp3", {}, "2.00 bytes")};
        ColumnSortFlags f = flags(false, false, true, false);
        QVERIFY(ListSorting::sortMediaFiles(list, 2, f));
        QCOMPARE(names(list), QStringList({"b.mp3", "c.mp3", "a.mp3"}));
        QCOMPARE(flagText(f), QStringLiteral("0000"));
        // First click on Size from the starting flags: descending.
        ColumnSortFlags start;
        QVERIFY(ListSorting::sortMediaFiles(list, 2, start));
        QCOMPARE(names(list), QStringList({"a.mp3", "c.mp3", "b.mp3"}));
        QCOMPARE(flagText(start), QStringLiteral("0010"));
    }

    void pathColumnSortsByFullPath()
    {
        // The folders alone would give c, a, b (a stable sort keeps a before b).
        QList<NodeMediaFile> list{media("/music", "zeta.mp3"), media("/music", "alpha.mp3"),
                                  media("/audio", "x.mp3")};
        ColumnSortFlags f = flags(false, false, false, true);
        QVERIFY(ListSorting::sortMediaFiles(list, 3, f));
        QCOMPARE(names(list), QStringList({"x.mp3", "alpha.mp3", "zeta.mp3"}));
        QCOMPARE(flagText(f), QStringLiteral("0000"));
        QVERIFY(ListSorting::sortMediaFiles(list, 3, f));
        QCOMPARE(names(list), QStringList({"zeta.mp3", "alpha.mp3", "x.mp3"}));
        QCOMPARE(flagText(f), QStringLiteral("0001"));
    }

    void columnOutsideSortsNothing()
    {
        const QList<NodeMediaFile> original{media("/m", "b.mp3", " 00:00:02.0", "2.00 KB"),
                                            media("/m", "a.mp3", " 00:00:01.0", "1.00 KB"),
                                            media("/m", "c.mp3", " 00:00:03.0", "3.00 KB")};
        for (int column : {-1, 4, 5, 99}) {
            QList<NodeMediaFile> list = original;
            ColumnSortFlags f = flags(true, false, true, false);
            QVERIFY(!ListSorting::sortMediaFiles(list, column, f));
            QCOMPARE(names(list), names(original));
            QCOMPARE(flagText(f), QStringLiteral("1010"));
        }
        // The same through the model.
        MediaListModel model;
        model.append(original);
        ColumnSortFlags f = flags(false, true, false, true);
        QVERIFY(!model.sortByClickedColumn(4, f));
        QCOMPARE(names(model.records()), names(original));
        QCOMPARE(flagText(f), QStringLiteral("0101"));
        QVERIFY(model.sortByClickedColumn(0, f));
        QCOMPARE(names(model.records()), QStringList({"c.mp3", "b.mp3", "a.mp3"}));
        QCOMPARE(model.data(model.index(0, 0)).toString(), QStringLiteral("c.mp3"));
    }

    void dataTableSizeClick()
    {
        QList<NodeDataFolder> list{folder("/d/one", "1.50 MB"), folder("/d/two", "900.00 KB"),
                                   folder("/d/three", "20.00 KB")};
        ColumnSortFlags f = flags(true, false, true, false);
        QVERIFY(ListSorting::sortDataFolders(list, 1, f));
        QStringList sizes;
        for (const NodeDataFolder &n : list)
            sizes << n.s_Size;
        QCOMPARE(sizes, QStringList({"900.00 KB", "20.00 KB", "1.50 MB"}));
        QCOMPARE(flagText(f), QStringLiteral("0110"));

        // Through the model, flags 3 and 4 both on, Folder on: ascending
        // by size text, Folder off, 3 and 4 left as they were.
        DataFolderModel model;
        for (const NodeDataFolder &n : list)
            model.append(n);
        ColumnSortFlags g = flags(true, true, true, true);
        QVERIFY(model.sortByClickedColumn(1, g));
        QCOMPARE(model.data(model.index(0, 1)).toString(), QStringLiteral("1.50 MB"));
        QCOMPARE(model.data(model.index(1, 1)).toString(), QStringLiteral("20.00 KB"));
        QCOMPARE(model.data(model.index(2, 1)).toString(), QStringLiteral("900.00 KB"));
        QCOMPARE(flagText(g), QStringLiteral("0011"));
        QVERIFY(!model.sortByClickedColumn(2, g));
        QCOMPARE(flagText(g), QStringLiteral("0011"));
    }

    // Models ----------------------------------------------------------------

    void mediaModelColumnsAndHeaders()
    {
        MediaListModel model;
        QCOMPARE(model.columnCount(), 4);
        const QStringList titles{"File", "Duration", "Size", "Path"};
        for (int c = 0; c < 4; ++c) {
            QCOMPARE(model.headerData(c, Qt::Horizontal).toString(), titles.at(c));
            QCOMPARE(model.headerData(c, Qt::Horizontal, MediaListModel::ColumnIdentifierRole).toString(),
                     QStringLiteral("key%1").arg(c + 1));
        }
        model.append(media("/music/Albums", "Song One.mp3", " 00:03:25.4", "4.70 MB"));
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.data(model.index(0, 0)).toString(), QStringLiteral("Song One.mp3"));
        QCOMPARE(model.data(model.index(0, 1)).toString(), QStringLiteral(" 00:03:25.4"));
        QCOMPARE(model.data(model.index(0, 2)).toString(), QStringLiteral("4.70 MB"));
        QCOMPARE(model.data(model.index(0, 3)).toString(), QStringLiteral("/music/Albums"));
        QVERIFY(!model.data(model.index(0, 4)).isValid());

        DataFolderModel data;
        QCOMPARE(data.columnCount(), 2);
        QCOMPARE(data.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Folder"));
        QCOMPARE(data.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Size"));
        QCOMPARE(data.headerData(0, Qt::Horizontal, DataFolderModel::ColumnIdentifierRole).toString(),
                 QStringLiteral("key1"));
        QCOMPARE(data.headerData(1, Qt::Horizontal, DataFolderModel::ColumnIdentifierRole).toString(),
                 QStringLiteral("key2"));
        data.append(folder("/home/me/Photos", "12.00 MB", 12288));
        QCOMPARE(data.data(data.index(0, 0)).toString(), QStringLiteral("/home/me/Photos"));
        QCOMPARE(data.data(data.index(0, 1)).toString(), QStringLiteral("12.00 MB"));
        QCOMPARE(data.totalKBytes(), qint64(12288));
    }

    void removeRowsAtWithNoRows()
    {
        MediaListModel model;
        model.append(media("/m", "a.mp3"));
        model.append(media("/m", "b.mp3"));
        model.append(media("/m", "c.mp3"));
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        QCOMPARE(model.removeRowsAt({}), 0);
        QCOMPARE(model.removeRowsAt({-1, 3, 42}), 0);
        QCOMPARE(removed.count(), 0);
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(model.removeRowsAt({2, 0, 2}), 2);
        QCOMPARE(names(model.records()), QStringList({"b.mp3"}));

        MediaListModel empty;
        QCOMPARE(empty.removeRowsAt({0}), 0);
        QCOMPARE(empty.rowCount(), 0);

        DataFolderModel data;
        QSignalSpy dataRemoved(&data, &QAbstractItemModel::rowsRemoved);
        QCOMPARE(data.removeRowsAt({}), 0);
        data.append(folder("/d", "1.00 KB", 1));
        QCOMPARE(data.removeRowsAt({}), 0);
        QCOMPARE(dataRemoved.count(), 0);
        QCOMPARE(data.rowCount(), 1);
    }

    // Many separate runs of rows (every other row of a long list) go in one
    // pass and one reset; a few runs go one removal each.
    void removeManyRunsAtOnce()
    {
        MediaListModel model;
        QList<NodeMediaFile> list;
        for (int i = 0; i < 1000; ++i)
            list << media("/m", QStringLiteral("t%1.mp3").arg(i));
        model.append(list);
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
        QList<int> odd;
        for (int i = 999; i >= 1; i -= 2)
            odd << i;
        odd << 1 << -4 << 5000;  // a repeat and unknown rows are ignored
        QCOMPARE(model.removeRowsAt(odd), 500);
        QCOMPARE(removed.count(), 0);
        QCOMPARE(reset.count(), 1);
        QCOMPARE(model.rowCount(), 500);
        for (int i = 0; i < 500; ++i)
            QCOMPARE(model.at(i).s_File_Name_With_Extension, QStringLiteral("t%1.mp3").arg(2 * i));

        // Three runs: three removals, the views keep their place.
        reset.clear();
        QCOMPARE(model.removeRowsAt({0, 1, 10, 11, 12, 400}), 6);
        QCOMPARE(removed.count(), 3);
        QCOMPARE(reset.count(), 0);
        QCOMPARE(model.rowCount(), 494);
        QCOMPARE(model.at(0).s_File_Name_With_Extension, QStringLiteral("t4.mp3"));
    }

    // The table's selected rows, read from the selection's ranges: rows
    // picked one by one, a block, and a single cell (not a row).
    void selectedRowsOfManySelections()
    {
        MediaListModel model;
        QList<NodeMediaFile> list;
        for (int i = 0; i < 3000; ++i)
            list << media("/m", QStringLiteral("t%1.mp3").arg(i));
        model.append(list);
        CompilationTable table(QStringLiteral("Audio"));
        table.setModel(&model);
        QCOMPARE(table.selectedRows(), QList<int>());
        QItemSelection picked;
        QList<int> expected;
        for (int row = 1; row < 2000; row += 2) {
            picked.select(model.index(row, 0), model.index(row, MediaListModel::ColumnCount - 1));
            expected << row;
        }
        picked.select(model.index(2500, 0), model.index(2509, MediaListModel::ColumnCount - 1));
        for (int row = 2500; row < 2510; ++row)
            expected << row;
        table.selectionModel()->select(picked, QItemSelectionModel::ClearAndSelect);
        table.selectionModel()->select(model.index(2800, 1), QItemSelectionModel::Select);  // one cell
        // The same row twice counts once.
        table.selectionModel()->select(model.index(3, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
        QCOMPARE(table.selectedRows(), expected);
        // Whatever Qt itself calls the selected rows.
        QList<int> qtRows;
        for (const QModelIndex &i : table.selectionModel()->selectedRows())
            qtRows << i.row();
        std::sort(qtRows.begin(), qtRows.end());
        QCOMPARE(table.selectedRows(), qtRows);
    }

    // A sort folds each text once; the order must be the one the natural
    // comparison gives, ties kept in their order, for any mix of case,
    // digits and accents.
    void sortingMatchesTheNaturalComparison()
    {
        const QStringList pieces{"a", "A", "b", "é", "É", "ß", "SS", "z", "Z", "0", "1", "01", "10", "2", " ",
                                 "-", "_", "Ä", "ä", "ö", "9", "007", "x"};
        quint32 state = 12345;
        auto next = [&state] {
            state = state * 1103515245u + 12345u;
            return int((state >> 16) % 0x7fff);
        };
        QList<NodeMediaFile> list;
        for (int i = 0; i < 3000; ++i) {
            QString name;
            const int length = 1 + next() % 6;
            for (int k = 0; k < length; ++k)
                name += pieces.at(next() % pieces.size());
            NodeMediaFile n = media("/m", name + QStringLiteral(".mp3"));
            n.s_File_Size = QString::number(i);  // tells equal names apart
            list << n;
        }
        for (const bool ascending : {true, false}) {
            QList<NodeMediaFile> reference = list;
            std::stable_sort(reference.begin(), reference.end(), [&](const NodeMediaFile &x, const NodeMediaFile &y) {
                return ascending
                    ? ListSorting::naturalCompare(x.s_File_Name_With_Extension, y.s_File_Name_With_Extension) < 0
                    : ListSorting::naturalCompare(y.s_File_Name_With_Extension, x.s_File_Name_With_Extension) < 0;
            });
            QList<NodeMediaFile> sorted = list;
            ColumnSortFlags flags;
            flags.m_b_Col1_Ascenging = ascending;
            QVERIFY(ListSorting::sortMediaFiles(sorted, 0, flags));
            QStringList got, want;
            for (int i = 0; i < list.size(); ++i) {
                got << sorted.at(i).s_File_Name_With_Extension + QLatin1Char('#') + sorted.at(i).s_File_Size;
                want << reference.at(i).s_File_Name_With_Extension + QLatin1Char('#') + reference.at(i).s_File_Size;
            }
            QCOMPARE(got, want);
        }
    }

    // Totals stop at the top instead of wrapping, and a duration below 0
    // counts 0.
    void totalsNeverWrap()
    {
        constexpr qint64 top = std::numeric_limits<qint64>::max();
        MediaListModel media;
        NodeMediaFile n;
        n.i_Duration_in_Seconds = top - 10;
        media.append(n);
        media.append(n);
        QCOMPARE(media.totalDurationSeconds(), top);
        MediaListModel odd;
        n.i_Duration_in_Seconds = -32949;
        odd.append(n);
        n.i_Duration_in_Seconds = 60;
        odd.append(n);
        QCOMPARE(odd.totalDurationSeconds(), qint64(60));

        DataFolderModel data;
        data.append(folder("/a", "16777216.00 TB", std::numeric_limits<quint64>::max() >> 10));
        for (int i = 0; i < 600; ++i)
            data.append(folder("/b", "16777216.00 TB", quint64(1) << 54));
        QCOMPARE(data.totalKBytes(), top);
        data.clear();
        data.append(folder("/huge", "?", std::numeric_limits<quint64>::max()));
        QCOMPARE(data.totalKBytes(), top);
    }

    void textColourFollowsSetTextColor()
    {
        MediaListModel model;
        model.append(media("/m", "a.mp3", " 00:00:01.0", "1.00 KB"));
        model.append(media("/m", "b.mp3", " 00:00:02.0", "2.00 KB"));
        QVERIFY(!model.data(model.index(0, 0), Qt::ForegroundRole).isValid());
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        model.setTextColor(QColor(200, 10, 30));
        QCOMPARE(changed.count(), 1);
        for (int r = 0; r < 2; ++r)
            for (int c = 0; c < 4; ++c)
                QCOMPARE(model.data(model.index(r, c), Qt::ForegroundRole).value<QColor>(),
                         QColor(200, 10, 30));
        model.setTextColor(Qt::white);
        QCOMPARE(model.data(model.index(1, 3), Qt::ForegroundRole).value<QColor>(), QColor(Qt::white));
        model.setTextColor(QColor());
        QVERIFY(!model.data(model.index(1, 3), Qt::ForegroundRole).isValid());

        DataFolderModel data;
        data.append(folder("/d", "1.00 KB", 1));
        QVERIFY(!data.data(data.index(0, 1), Qt::ForegroundRole).isValid());
        data.setTextColor(Qt::green);
        QCOMPARE(data.data(data.index(0, 0), Qt::ForegroundRole).value<QColor>(), QColor(Qt::green));
        QCOMPARE(data.textColor(), QColor(Qt::green));
    }

    // The name and folder columns take the room they need: the file name
    // whole, the folder in the room left over, shortened in its middle, and
    // whole in the tooltip.
    void mediaColumnsTakeTheRoomTheyNeed()
    {
        const QString longFolder = QStringLiteral("/home/someone/Music/Field Recordings 2023/Macroform Sessions/Live");
        const QString longName = QStringLiteral("macroform-room-tone-recording-session-final-mix.mp3");
        MediaListModel model;
        CompilationTable view(QStringLiteral("Audio files"));
        view.setModel(&model);
        view.setStretchColumn(MediaListModel::ColumnPath);
        view.resize(900, 300);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        model.append(media(longFolder, longName, " 00:03:25.1", "4.20 MB"));
        model.append(media(QStringLiteral("/m"), QStringLiteral("b.mp3"), " 00:00:01.0", "1.00 KB"));

        QCOMPARE(view.textElideMode(), Qt::ElideMiddle);
        QHeaderView *header = view.horizontalHeader();
        const int nameWidth = view.fontMetrics().horizontalAdvance(longName);
        QVERIFY2(header->sectionSize(MediaListModel::ColumnFile) > nameWidth,
                 qPrintable(QString("%1 <= %2").arg(header->sectionSize(0)).arg(nameWidth)));
        QVERIFY(header->sectionSize(MediaListModel::ColumnFile) > 100);
        // The path takes what is left: the columns fill the table exactly.
        int sum = 0;
        for (int c = 0; c < model.columnCount(); ++c)
            sum += header->sectionSize(c);
        QCOMPARE(sum, view.viewport()->width());
        QVERIFY(header->sectionSize(MediaListModel::ColumnPath) > header->sectionSize(MediaListModel::ColumnSize));
        QCOMPARE(model.index(0, MediaListModel::ColumnPath).data(Qt::ToolTipRole).toString(), longFolder);
        QCOMPARE(model.index(0, MediaListModel::ColumnFile).data(Qt::ToolTipRole).toString(), longName);

        // A name longer than half the table is shortened, not allowed to push
        // the folder out of sight.
        view.resize(500, 300);
        QTRY_COMPARE(view.viewport()->width(), 500 - 2 * view.frameWidth());
        QVERIFY(header->sectionSize(MediaListModel::ColumnFile) <= view.viewport()->width() / 2);
        QVERIFY(header->sectionSize(MediaListModel::ColumnPath) > 0);
    }

    void dataFolderColumnStretches()
    {
        DataFolderModel model;
        CompilationTable view(QStringLiteral("Data folders"));
        view.setModel(&model);
        view.setStretchColumn(0);
        view.resize(800, 300);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        const QString path = QStringLiteral("/home/someone/Pictures/Holidays/2023 Brittany/Camera A");
        model.append(folder(path, QStringLiteral("1.50 GB"), 1572864));
        QHeaderView *header = view.horizontalHeader();
        QCOMPARE(header->sectionResizeMode(0), QHeaderView::Stretch);
        QVERIFY(header->sectionSize(0) > view.fontMetrics().horizontalAdvance(path));
        QVERIFY(header->sectionSize(1) >= view.fontMetrics().horizontalAdvance(QStringLiteral("1.50 GB")));
        QCOMPARE(header->sectionSize(0) + header->sectionSize(1), view.viewport()->width());
        QCOMPARE(model.index(0, 0).data(Qt::ToolTipRole).toString(), path);
    }

    // A width the user sets stays while the application runs: clearing,
    // adding and the other table over the same list leave it alone.
    void userWidthsAreKeptPerTable()
    {
        MediaListModel model;
        CompilationTable audio(QStringLiteral("Audio files"));
        CompilationTable video(QStringLiteral("Video files"));
        for (CompilationTable *t : {&audio, &video}) {
            t->setModel(&model);
            t->setStretchColumn(MediaListModel::ColumnPath);
            t->resize(900, 300);
            t->show();
            QVERIFY(QTest::qWaitForWindowExposed(t));
        }
        model.append(media(QStringLiteral("/m"), QStringLiteral("short.mp3"), " 00:00:01.0", "1.00 KB"));
        const int videoWidth = video.horizontalHeader()->sectionSize(MediaListModel::ColumnFile);

        // The user drags the Audio table's File column to 333 pixels.
        audio.horizontalHeader()->resizeSection(MediaListModel::ColumnFile, 333);
        QCOMPARE(audio.userWidths().value(MediaListModel::ColumnFile), 333);

        model.clear();
        model.append(media(QStringLiteral("/m"), QStringLiteral("a much longer name than before.mp3")));
        model.append(media(QStringLiteral("/m"), QStringLiteral("x.mp3")));
        QCoreApplication::processEvents();
        QCOMPARE(audio.horizontalHeader()->sectionSize(MediaListModel::ColumnFile), 333);
        // The Video table still fits its own contents.
        QVERIFY(video.userWidths().isEmpty());
        QVERIFY(video.horizontalHeader()->sectionSize(MediaListModel::ColumnFile) > videoWidth);
        audio.resize(700, 300);
        QCoreApplication::processEvents();
        QCOMPARE(audio.horizontalHeader()->sectionSize(MediaListModel::ColumnFile), 333);
    }

    void tenThousandRowsScroll()
    {
        MediaListModel model;
        QList<NodeMediaFile> many;
        many.reserve(10000);
        for (int i = 0; i < 10000; ++i)
            many << media(QStringLiteral("/music/%1").arg(i / 100),
                          QStringLiteral("Track %1.mp3").arg(i), " 00:00:01.0", "1.00 KB");
        model.append(many);
        QCOMPARE(model.rowCount(), 10000);

        CompilationTable view(QStringLiteral("Audio"));
        view.setModel(&model);
        view.resize(500, 300);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QCOMPARE(view.model()->rowCount(), 10000);
        QCOMPARE(view.verticalHeader()->count(), 10000);
        QCOMPARE(view.rowAt(0), 0);

        view.scrollToBottom();
        QCoreApplication::processEvents();
        QVERIFY(view.verticalScrollBar()->value() > 0);
        QCOMPARE(view.verticalScrollBar()->value(), view.verticalScrollBar()->maximum());
        const int top = view.rowAt(0);
        QVERIFY2(top > 9900, qPrintable(QString::number(top)));
        int last = -1;
        for (int y = view.viewport()->height() - 1; y >= 0 && last < 0; --y)
            last = view.rowAt(y);
        QCOMPARE(last, 9999);
        QCOMPARE(view.indexAt(QPoint(5, view.rowViewportPosition(9999) + 1)).data().toString(),
                 QStringLiteral("Track 9999.mp3"));

        view.scrollToTop();
        QCoreApplication::processEvents();
        QCOMPARE(view.rowAt(0), 0);
    }

    // Disc kinds ------------------------------------------------------------

    void discKindsTitlesAndCapacities()
    {
        const QStringList titles{"Audio CD", "MP3 CD", "MP3 DVD", "Video DVD", "Video Blu-ray",
                                 "Data CD", "Data DVD", "Data Blu-ray"};
        const QList<quint64> capacities{4440, 34200, 136800, 9000, 84230, 683593, 4928307, 26214400};
        const QList<int> tabs{0, 0, 0, 1, 1, 2, 2, 2};
        QCOMPARE(DiscKinds::all().size(), 8);
        for (int i = 0; i < 8; ++i) {
            const DiscKind &k = DiscKinds::all().at(i);
            QCOMPARE(k.kind, qint64(i + 1));
            QCOMPARE(k.name, titles.at(i));
            QCOMPARE(k.capacity, capacities.at(i));
            QCOMPARE(k.tabIndex, tabs.at(i));
            QCOMPARE(k.burnTitle, QStringLiteral("Burn ") + titles.at(i));
            QCOMPARE(DiscKinds::find(i + 1), &k);
        }
        QVERIFY(!DiscKinds::find(0));
        QVERIFY(!DiscKinds::find(9));
        QVERIFY(!DiscKinds::find(99));
    }

    void percentageOfTheSelectedTab()
    {
        using DiscKinds::percentage;
        QCOMPARE(percentage("1", 4440, 0, 0, 0, 0, 0), quint64(100));
        QCOMPARE(percentage("1", 3996, 0, 0, 0, 0, 0), quint64(90));
        QCOMPARE(percentage("1", 3995, 0, 0, 0, 0, 0), quint64(89));
        QCOMPARE(percentage("1", 0, 0, 0, 0, 0, 0), quint64(0));
        QCOMPARE(percentage("1", 34200, 0, 0, 1, 0, 0), quint64(100));
        QCOMPARE(percentage("2", 0, 9000, 0, 0, 0, 0), quint64(100));
        QCOMPARE(percentage("2", 0, 84230 / 2, 0, 0, 1, 0), quint64(50));
        QCOMPARE(percentage("2", 0, 84230 / 2 - 1, 0, 0, 1, 0), quint64(49));
        QCOMPARE(percentage("3", 0, 0, 1367186, 0, 0, 0), quint64(200));
        QCOMPARE(percentage("3", 0, 0, 1367185, 0, 0, 0), quint64(199));
        QCOMPARE(percentage("3", 0, 0, 26214400, 0, 0, 2), quint64(100));
        // Other tabs.
        QCOMPARE(percentage("4", 4440, 9000, 683593, 0, 0, 0), quint64(0));
        QCOMPARE(percentage("5", 4440, 9000, 683593, 0, 0, 0), quint64(0));
        QCOMPARE(percentage("", 4440, 9000, 683593, 0, 0, 0), quint64(0));
        // A type outside its tab's row.
        QCOMPARE(percentage("1", 4440, 0, 0, 3, 0, 0), quint64(0));
        QCOMPARE(percentage("1", 4440, 0, 0, -1, 0, 0), quint64(0));
        QCOMPARE(percentage("2", 0, 9000, 0, 0, 2, 0), quint64(0));
        // Never wrapping: a negative total is 0 %, a huge one stops at the top.
        constexpr qint64 top = std::numeric_limits<qint64>::max();
        QCOMPARE(percentage("1", -32949, 0, 0, 0, 0, 0), quint64(0));
        QCOMPARE(percentage("3", 0, 0, top, 0, 0, 0), quint64(top / 683593 * 100 + (top % 683593) * 100 / 683593));
        QCOMPARE(percentage("3", 0, 0, (top >> 10) * 3, 0, 0, 2), quint64((top >> 10) * 3 / 26214400 * 100
                                                                          + ((top >> 10) * 3 % 26214400) * 100 / 26214400));
        QVERIFY(percentage("1", top, 0, 0, 0, 0, 0) <= quint64(top));
        // The gauge draws any of them without overflowing.
        const QImage huge = GaugePainter::render(QSize(200, 20), top, Qt::blue);
        QCOMPARE(huge.size(), QSize(200, 20));
        QCOMPARE(GaugePainter::barWidth(200, top), qint64(180));
        QVERIFY(GaugePainter::redWidth(200, top) > 0);
        QCOMPARE(percentage("3", 0, 0, 683593, 0, 0, 3), quint64(0));
    }

    void applyNewDiscResults()
    {
        const NewDiscResult cancel = DiscKinds::applyNewDisc(99);
        QCOMPARE(cancel.i_Type_of_New_Disc, qint64(1));
        QVERIFY(!cancel.emptyLists);
        QVERIFY(!cancel.setsType);
        QCOMPARE(cancel.selectTab, -1);
        QCOMPARE(cancel.borderedButton, QString());
        QCOMPARE(cancel.borderlessButtons, QStringList());
        QCOMPARE(cancel.burnTitle, QString());

        const NewDiscResult video = DiscKinds::applyNewDisc(4);
        QCOMPARE(video.i_Type_of_New_Disc, qint64(4));
        QVERIFY(video.emptyLists);
        QVERIFY(video.setsType);
        QCOMPARE(video.typeTab, 1);
        QCOMPARE(video.typeValue, qint64(0));
        QCOMPARE(video.selectTab, 1);
        QCOMPARE(video.borderedButton, QStringLiteral("btnVideoDVD"));
        QCOMPARE(video.borderlessButtons, QStringList({"btnVideoBluray"}));
        QCOMPARE(video.burnTitle, QStringLiteral("Burn Video DVD"));

        const NewDiscResult data = DiscKinds::applyNewDisc(8);
        QCOMPARE(data.selectTab, 2);
        QCOMPARE(data.typeValue, qint64(2));
        QCOMPARE(data.borderedButton, QStringLiteral("btnDataBluray"));
        QCOMPARE(data.borderlessButtons, QStringList({"btnDataCD", "btnDataDVD"}));
        QCOMPARE(data.burnTitle, QStringLiteral("Burn Data Blu-ray"));
    }

    // The new-disc dialog ---------------------------------------------------

    void newDiscDialogRadios()
    {
        Window_New_Disc dlg(3);
        QSignalSpy closed(&dlg, &Window_New_Disc::closeRequested);
        dlg.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dlg));
        const QList<QRadioButton *> radios = dlg.radios();
        QCOMPARE(radios.size(), 8);
        for (int i = 0; i < 8; ++i)
            QCOMPARE(radios.at(i)->isChecked(), i == 2);

        const QPoint indicator(6, dlg.radio5->height() / 2);
        QTest::mouseClick(dlg.radio5, Qt::LeftButton, {}, indicator);
        for (int i = 0; i < 8; ++i)
            QCOMPARE(radios.at(i)->isChecked(), i == 4);

        // Clicked again: off, and none on.
        QTest::mouseClick(dlg.radio5, Qt::LeftButton, {}, indicator);
        for (int i = 0; i < 8; ++i)
            QVERIFY2(!radios.at(i)->isChecked(), qPrintable(QString::number(i + 1)));

        // OK with none on keeps the kind it opened with.
        QTest::mouseClick(dlg.btnOK, Qt::LeftButton);
        QCOMPARE(closed.count(), 1);
        QCOMPARE(closed.at(0).at(0).toLongLong(), qint64(3));
        QCOMPARE(dlg.chosenKind(), qint64(3));
        QCOMPARE(dlg.result(), int(QDialog::Accepted));
    }

    void newDiscDialogOkAndCancel()
    {
        {
            Window_New_Disc dlg(3);
            QSignalSpy closed(&dlg, &Window_New_Disc::closeRequested);
            dlg.show();
            QVERIFY(QTest::qWaitForWindowExposed(&dlg));
            const QPoint indicator(6, dlg.radio1->height() / 2);
            QTest::mouseClick(dlg.radio5, Qt::LeftButton, {}, indicator);
            QTest::mouseClick(dlg.radio7, Qt::LeftButton, {}, indicator);
            QVERIFY(dlg.radio7->isChecked());
            QVERIFY(!dlg.radio5->isChecked());
            QVERIFY(!dlg.radio3->isChecked());
            QTest::mouseClick(dlg.btnOK, Qt::LeftButton);
            QCOMPARE(closed.count(), 1);
            QCOMPARE(closed.at(0).at(0).toLongLong(), qint64(7));
            QCOMPARE(dlg.chosenKind(), qint64(7));
        }
        {
            // Two on (set without a click): OK takes the last in kind order.
            Window_New_Disc dlg(1);
            QSignalSpy closed(&dlg, &Window_New_Disc::closeRequested);
            dlg.radio2->setChecked(true);
            dlg.radio6->setChecked(true);
            dlg.OnOK();
            QCOMPARE(closed.count(), 1);
            QCOMPARE(closed.at(0).at(0).toLongLong(), qint64(6));
        }
        {
            Window_New_Disc dlg(5);
            QSignalSpy closed(&dlg, &Window_New_Disc::closeRequested);
            dlg.show();
            QVERIFY(QTest::qWaitForWindowExposed(&dlg));
            QVERIFY(dlg.radio5->isChecked());
            QTest::mouseClick(dlg.radio2, Qt::LeftButton, {}, QPoint(6, dlg.radio2->height() / 2));
            QVERIFY(dlg.radio2->isChecked());
            QTest::mouseClick(dlg.btnCancel, Qt::LeftButton);
            QCOMPARE(closed.count(), 1);
            QCOMPARE(closed.at(0).at(0).toLongLong(), qint64(99));
            QCOMPARE(dlg.chosenKind(), qint64(99));
            QCOMPARE(dlg.result(), int(QDialog::Rejected));
        }
        {
            // A kind outside 1..8 opens with none on.
            Window_New_Disc dlg(99);
            for (QRadioButton *r : dlg.radios())
                QVERIFY(!r->isChecked());
        }
    }

    // The gauge -------------------------------------------------------------

    void gaugeColumns_data()
    {
        QTest::addColumn<qint64>("pct");
        QTest::newRow("0 %") << qint64(0);
        QTest::newRow("50 %") << qint64(50);
        QTest::newRow("89 %") << qint64(89);
        QTest::newRow("90 %") << qint64(90);
        QTest::newRow("95 %") << qint64(95);
        QTest::newRow("100 %") << qint64(100);
        QTest::newRow("200 %") << qint64(200);
    }

    void gaugeColumns()
    {
        QFETCH(qint64, pct);
        const QImage img = GaugePainter::render(QSize(200, 20), pct, Qt::blue)
                               .convertToFormat(QImage::Format_ARGB32);
        checkGauge(img, pct);
    }

    void gaugeExactColumns()
    {
        const auto img = [](qint64 pct) {
            return GaugePainter::render(QSize(200, 20), pct, Qt::blue).convertToFormat(QImage::Format_ARGB32);
        };
        // 89 %: blue 0..177, 178 not blue, no red.
        QImage i89 = img(89);
        QVERIFY(columnIs(i89, 0, isBlue));
        QVERIFY(columnIs(i89, 177, isBlue));
        QVERIFY(!columnIs(i89, 178, isBlue));
        QVERIFY(!anyPixel(i89, isRed));
        // 90 %: blue up to 179, red part of no width.
        QImage i90 = img(90);
        QVERIFY(columnIs(i90, 179, isBlue));
        QVERIFY(!columnIs(i90, 180, isBlue));
        QVERIFY(!anyPixel(i90, isRed));
        QCOMPARE(GaugePainter::redWidth(200, 90), qint64(0));
        QVERIFY(GaugePainter::hasRedPart(90));
        QVERIFY(!GaugePainter::hasRedPart(89));
        // 100 %: blue to 179, red 180..199.
        QImage i100 = img(100);
        QVERIFY(columnIs(i100, 179, isBlue));
        QVERIFY(columnIs(i100, 180, isRed));
        QVERIFY(columnIs(i100, 199, isRed));
        QCOMPARE(GaugePainter::redX(200), qint64(180));
        QCOMPARE(GaugePainter::redWidth(200, 100), qint64(20));
        // 200 %: the red part runs past the edge.
        QImage i200 = img(200);
        QVERIFY(columnIs(i200, 179, isBlue));
        QVERIFY(columnIs(i200, 180, isRed));
        QVERIFY(columnIs(i200, 199, isRed));
        QCOMPARE(GaugePainter::redWidth(200, 200), qint64(220));
        // 0 %: background only.
        QImage i0 = img(0);
        QVERIFY(!anyPixel(i0, isBlue));
        QVERIFY(!anyPixel(i0, isRed));
        QString why;
        QVERIFY2(backgroundColumn(i0, 0, &why), qPrintable(why));
        QVERIFY2(backgroundColumn(i89, 190, &why), qPrintable(why));
        QCOMPARE(GaugePainter::gradientEnd(), QColor(0, 0, 0));
        QCOMPARE(GaugePainter::overflowColor(), QColor(255, 0, 0));
        const QColor start = GaugePainter::gradientStart();
        QCOMPARE(start.red(), 170);
        QCOMPARE(start.green(), 170);
        QCOMPARE(start.blue(), 170);
    }

    void spaceOccupiedViewShowsTheSameColumns()
    {
        SpaceOccupiedView view;
        view.setBarColor(Qt::blue);
        view.resize(200, 20);
        view.setI_Percentage(100);
        QCOMPARE(view.i_Percentage(), qint64(100));
        QCOMPARE(view.accessibleDescription(), QStringLiteral("100 %"));
        const QImage img = view.grab().toImage().convertToFormat(QImage::Format_ARGB32);
        checkGauge(img, 100);
        QVERIFY(columnIs(img, 179, isBlue));
        QVERIFY(columnIs(img, 180, isRed));
        QVERIFY(columnIs(img, 199, isRed));
        // The same pixels as the painter's own image.
        const QImage painted = GaugePainter::render(QSize(200, 20), 100, Qt::blue)
                                   .convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(img, painted);

        view.setI_Percentage(89);
        const QImage low = view.grab().toImage().convertToFormat(QImage::Format_ARGB32);
        checkGauge(low, 89);
        QVERIFY(!anyPixel(low, isRed));
    }
};

TAMBLO_TEST_MAIN(TestCompilationTablesGauge)
#include "tst_compilation_tables_gauge.moc"
