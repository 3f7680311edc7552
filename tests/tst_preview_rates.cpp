#include "support/TestMain.h"
#include "support/FakeAlerts.h"

#include "preview/PlaybackClock.h"
#include "preview/PlaybackRates.h"
#include "preview/PreviewSelection.h"

#include <QItemSelectionModel>
#include <QStandardItemModel>

using PlaybackRates::PlayPauseAction;

class TestPreviewRates : public QObject {
    Q_OBJECT
private slots:
    void fastForwardThreeTimesFromPaused()
    {
        double rate = 0.0;
        QList<double> rates;
        QStringList titles;
        for (int i = 0; i < 3; ++i) {
            rate = PlaybackRates::fastForward(rate);
            rates << rate;
            titles << PlaybackRates::playPauseTitle(rate);
        }
        QCOMPARE(rates, (QList<double>{2.0, 4.0, 6.0}));
        QCOMPARE(titles, (QStringList{"Play", "Play", "Play"}));
        // Play/pause from there plays at normal speed, titled "Pause".
        QCOMPARE(PlaybackRates::playPauseAction(rate, 1.0, 3.0), PlayPauseAction::Play);
        QCOMPARE(PlaybackRates::playPauseTitle(1.0), QStringLiteral("Pause"));
    }

    void fastForwardSteps_data()
    {
        QTest::addColumn<double>("from");
        QTest::addColumn<double>("to");
        QTest::newRow("paused") << 0.0 << 2.0;
        QTest::newRow("playing") << 1.0 << 2.0;
        QTest::newRow("just below 2") << 1.99 << 2.0;
        QTest::newRow("rewinding") << -4.0 << 2.0;
        QTest::newRow("2") << 2.0 << 4.0;
        QTest::newRow("6") << 6.0 << 8.0;
    }
    void fastForwardSteps()
    {
        QFETCH(double, from);
        QFETCH(double, to);
        QCOMPARE(PlaybackRates::fastForward(from), to);
    }

    void rewindSteps_data()
    {
        QTest::addColumn<double>("from");
        QTest::addColumn<double>("to");
        QTest::newRow("paused") << 0.0 << -2.0;
        QTest::newRow("playing") << 1.0 << -2.0;
        QTest::newRow("fast forward") << 6.0 << -2.0;
        QTest::newRow("just above -2") << -1.5 << -2.0;
        QTest::newRow("-2") << -2.0 << -4.0;
        QTest::newRow("-4") << -4.0 << -6.0;
    }
    void rewindSteps()
    {
        QFETCH(double, from);
        QFETCH(double, to);
        QCOMPARE(PlaybackRates::rewind(from), to);
    }

    void rewindThreeTimes()
    {
        double rate = 1.0;
        QList<double> rates;
        for (int i = 0; i < 3; ++i)
            rates << (rate = PlaybackRates::rewind(rate));
        QCOMPARE(rates, (QList<double>{-2.0, -4.0, -6.0}));
    }

    void titleIsPauseOnlyAtExactlyOne_data()
    {
        QTest::addColumn<double>("rate");
        QTest::addColumn<QString>("title");
        QTest::newRow("1") << 1.0 << "Pause";
        QTest::newRow("0") << 0.0 << "Play";
        QTest::newRow("2") << 2.0 << "Play";
        QTest::newRow("-2") << -2.0 << "Play";
        QTest::newRow("0.5") << 0.5 << "Play";
        QTest::newRow("nearly 1") << 0.9999 << "Play";
    }
    void titleIsPauseOnlyAtExactlyOne()
    {
        QFETCH(double, rate);
        QFETCH(QString, title);
        QCOMPARE(PlaybackRates::playPauseTitle(rate), title);
    }

    void playPauseActions()
    {
        QCOMPARE(PlaybackRates::playPauseAction(1.0, 1.0, 3.0), PlayPauseAction::Pause);
        QCOMPARE(PlaybackRates::playPauseAction(1.0, 3.0, 3.0), PlayPauseAction::Pause);
        QCOMPARE(PlaybackRates::playPauseAction(0.0, 1.0, 3.0), PlayPauseAction::Play);
        QCOMPARE(PlaybackRates::playPauseAction(0.0, 0.0, 3.0), PlayPauseAction::Play);
        QCOMPARE(PlaybackRates::playPauseAction(-2.0, 1.0, 3.0), PlayPauseAction::Play);
        QCOMPARE(PlaybackRates::playPauseAction(4.0, 2.9, 3.0), PlayPauseAction::Play);
        // At the end: back to 0 first.
        QCOMPARE(PlaybackRates::playPauseAction(0.0, 3.0, 3.0), PlayPauseAction::RestartThenPlay);
        QCOMPARE(PlaybackRates::playPauseAction(6.0, 3.0, 3.0), PlayPauseAction::RestartThenPlay);
    }

    void rewoundPositionMovesBackAtTheRateAndStopsAtZero()
    {
        QCOMPARE(PlaybackRates::rewoundPosition(2.5, -2.0, 0.5), 1.5);
        QCOMPARE(PlaybackRates::rewoundPosition(2.5, -6.0, 0.25), 1.0);
        QCOMPARE(PlaybackRates::rewoundPosition(2.5, -2.0, 0.0), 2.5);
        QCOMPARE(PlaybackRates::rewoundPosition(1.0, -4.0, 1.0), 0.0);
        QCOMPARE(PlaybackRates::rewoundPosition(1.0, -2.0, -1.0), 1.0);  // a clock never runs backwards
    }

    void clockText_data()
    {
        QTest::addColumn<double>("elapsed");
        QTest::addColumn<double>("total");
        QTest::addColumn<QString>("text");
        QTest::newRow("start") << 0.0 << 3.0 << "0:00 / 0:03";
        QTest::newRow("elapsed counts whole seconds gone") << 2.9 << 3.0 << "0:02 / 0:03";
        QTest::newRow("a length rounds") << 0.0 << 2.94 << "0:00 / 0:03";
        QTest::newRow("minutes") << 65.0 << 205.4 << "1:05 / 3:25";
        QTest::newRow("length not known yet") << 0.0 << 0.0 << "0:00 / --:--";
        QTest::newRow("an hour or more") << 7.0 << 5400.0 << "0:00:07 / 1:30:00";
        QTest::newRow("past the hour") << 3723.0 << 0.0 << "1:02:03 / --:--";
        QTest::newRow("nonsense is zero") << -4.0 << qInf() << "0:00 / --:--";
    }
    void clockText()
    {
        QFETCH(double, elapsed);
        QFETCH(double, total);
        QFETCH(QString, text);
        QCOMPARE(PlaybackClock::text(elapsed, total), text);
    }

    void nothingSelectedTellsTheUser()
    {
        FakeAlerts alerts;
        QCOMPARE(PreviewSelection::rowToPlay({}), -1);
        QCOMPARE(PreviewSelection::rowToPlay({}, alerts), -1);
        QCOMPARE(alerts.shown.size(), 1);
        QCOMPARE(alerts.shown[0].messageText, QStringLiteral("There is no file selected."));
        QCOMPARE(alerts.shown[0].informativeText, QStringLiteral("There is no file selected."));
        QCOMPARE(alerts.shown[0].buttons, QStringList{"Close"});
    }

    void firstSelectedRowIsPlayed()
    {
        FakeAlerts alerts;
        QCOMPARE(PreviewSelection::rowToPlay({4}, alerts), 4);
        QCOMPARE(PreviewSelection::rowToPlay({2, 5, 7}, alerts), 2);
        QCOMPARE(PreviewSelection::rowToPlay({0}, alerts), 0);
        QCOMPARE(alerts.shown.size(), 0);
    }

    void selectedRowsAreAskedRowByRow()
    {
        QStandardItemModel model(6, 3);
        QItemSelectionModel selection(&model);
        QCOMPARE(PreviewSelection::selectedRows(&selection, model.rowCount()), QList<int>());
        // Selected in the order 4, then 1: the rows come back in row order.
        selection.select(model.index(4, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
        selection.select(model.index(1, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
        const QList<int> rows = PreviewSelection::selectedRows(&selection, model.rowCount());
        QCOMPARE(rows, (QList<int>{1, 4}));
        QCOMPARE(PreviewSelection::rowToPlay(rows), 1);
        QCOMPARE(PreviewSelection::selectedRows(nullptr, 6), QList<int>());
    }
};

TAMBLO_TEST_MAIN(TestPreviewRates)
#include "tst_preview_rates.moc"
