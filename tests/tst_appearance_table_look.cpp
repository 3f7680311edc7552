#include "support/TestMain.h"

#include "appearance/ThemeWriting.h"
#include "appearance/ui/TableLookApplier.h"

#include <QStandardItemModel>
#include <QTableView>
#include <QHeaderView>

namespace {
Theme theme(qint64 flag)
{
    Theme t;
    t.colorTableBackground = QColor(82, 82, 82);
    t.colorTableForeground = QColor(Qt::white);
    t.colorToolbar = QColor(1, 2, 3);
    t.colorBottomBar = QColor(4, 5, 6);
    t.colorSpaceOccupiedBar = QColor(0, 0, 255);
    t.b_List_Alternating_Rows = flag;
    return t;
}

struct Table {
    QStandardItemModel model{6, 2};
    QTableView view;
    Table()
    {
        view.setModel(&model);
        view.setShowGrid(false);
        view.verticalHeader()->hide();
        view.horizontalHeader()->hide();
        view.resize(300, 200);
        view.show();
    }
    // A pixel well inside row `row`, away from any text.
    QColor rowPixel(int row)
    {
        const QImage img = view.viewport()->grab().toImage();
        const QRect r = view.visualRect(model.index(row, 1));
        return img.pixelColor(r.right() - 3, r.center().y());
    }
};
} // namespace

class TestTableLook : public QObject {
    Q_OBJECT
private slots:
    void darkAndOnPaintsBlackBandedRows()
    {
        Table t;
        QVERIFY(QTest::qWaitForWindowExposed(&t.view));
        const TableLook look = ThemeWriting::tableLook(theme(1), true, true);
        TableLookApplier::applyBackground(&t.view, look);
        TableLookApplier::applyAlternatingRows(&t.view, look.alternatingRows);
        QVERIFY(t.view.alternatingRowColors());
        QCOMPARE(t.view.palette().color(QPalette::Base), QColor(Qt::black));
        QCOMPARE(t.view.palette().color(QPalette::Text), QColor(Qt::white));
        QCOMPARE(t.rowPixel(0), QColor(Qt::black));
        QVERIFY(t.rowPixel(1) != QColor(Qt::black));  // the band
        QVERIFY(t.rowPixel(1).lightness() < 60);      // but still dark
    }

    void lightAndOnPaintsWhite()
    {
        Table t;
        QVERIFY(QTest::qWaitForWindowExposed(&t.view));
        const TableLook look = ThemeWriting::tableLook(theme(1), false, true);
        TableLookApplier::applyBackground(&t.view, look);
        TableLookApplier::applyAlternatingRows(&t.view, look.alternatingRows);
        QCOMPARE(t.rowPixel(0), QColor(Qt::white));
        QVERIFY(t.rowPixel(1) != QColor(Qt::white));
        QVERIFY(t.rowPixel(1).lightness() > 200);
        QCOMPARE(t.view.palette().color(QPalette::Text), QColor(Qt::black));
    }

    void offPaintsTheChosenBackgroundWithoutBands()
    {
        Table t;
        QVERIFY(QTest::qWaitForWindowExposed(&t.view));
        TableLookApplier::applyAlternatingRows(&t.view, true);
        const TableLook look = ThemeWriting::tableLook(theme(0), true, true);
        TableLookApplier::applyBackground(&t.view, look);
        TableLookApplier::applyAlternatingRows(&t.view, look.alternatingRows);
        QVERIFY(!t.view.alternatingRowColors());
        QCOMPARE(t.rowPixel(0), QColor(82, 82, 82));
        QCOMPARE(t.rowPixel(1), QColor(82, 82, 82));
        QCOMPARE(t.view.palette().color(QPalette::Text), QColor(Qt::white));
    }
};

TAMBLO_TEST_MAIN(TestTableLook)
#include "tst_appearance_table_look.moc"
