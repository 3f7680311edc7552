#include "support/TestMain.h"
#include "support/Themes.h"

#include "platform/AppSettings.h"
#include "appearance/ThemeWriting.h"
#include "appearance/Theme.h"

#include <QSettings>
#include <QTemporaryDir>

// A settings store that keeps a copy of the whole map at every save. Each
// write through AppSettings is saved at once, so comparing one save with the
// one before tells which key that write changed.
namespace {
QList<QSettings::SettingsMap> g_saves;

bool readNothing(QIODevice &, QSettings::SettingsMap &map)
{
    map.clear();
    return true;
}

bool recordSave(QIODevice &device, const QSettings::SettingsMap &map)
{
    g_saves.append(map);
    device.write(QByteArray::number(g_saves.size()));
    return true;
}

QSettings::Format recordingFormat()
{
    static const QSettings::Format f = QSettings::registerFormat(QStringLiteral("rec"), readNothing, recordSave);
    return f;
}

// For each save after the first `skip` ones: the keys it added or changed.
QList<QStringList> changesPerSave(int skip)
{
    QList<QStringList> out;
    for (int i = skip; i < g_saves.size(); ++i) {
        const QSettings::SettingsMap before = i > 0 ? g_saves[i - 1] : QSettings::SettingsMap();
        QStringList changed;
        for (auto it = g_saves[i].cbegin(); it != g_saves[i].cend(); ++it) {
            if (!before.contains(it.key()) || before.value(it.key()) != it.value())
                changed << it.key();
        }
        out << changed;
    }
    return out;
}

QStringList keysOf(const QList<ThemeWriting::SettingWrite> &writes)
{
    QStringList keys;
    for (const auto &w : writes)
        keys << w.key;
    return keys;
}

const QStringList kColourKeys = {SettingsKeys::ColorTableBackground, SettingsKeys::ColorTableForeground,
                                 SettingsKeys::ColorToolbar, SettingsKeys::ColorBottomBar,
                                 SettingsKeys::ColorSpaceOccupiedBar};
} // namespace

class TestThemeWriting : public QObject {
    Q_OBJECT
private slots:
    void originalsAreWrittenInOrderWithFlagAfterForeground()
    {
        const auto writes = ThemeWriting::originalsWrites();
        QCOMPARE(keysOf(writes),
                 QStringList({SettingsKeys::ColorTableBackground, SettingsKeys::ColorTableForeground,
                              SettingsKeys::AlternatingRows, SettingsKeys::ColorToolbar,
                              SettingsKeys::ColorBottomBar, SettingsKeys::ColorSpaceOccupiedBar}));
        QCOMPARE(writes[2].value.toString(), QStringLiteral("1"));
        QCOMPARE(writes[0].value.value<QColor>(), ThemeDefaults::color(ThemeColor::TableBackground));
        QCOMPARE(writes[1].value.value<QColor>(), QColor(Qt::white));
        QCOMPARE(writes[3].value.value<QColor>(), ThemeDefaults::color(ThemeColor::Toolbar));
        QCOMPARE(writes[4].value.value<QColor>(), ThemeDefaults::color(ThemeColor::BottomBar));
        QCOMPARE(writes[5].value.value<QColor>(), QColor(0, 0, 255));
        for (const auto &w : writes)
            QVERIFY2(!w.key.endsWith(QStringLiteral("_String")), qPrintable(w.key));
    }

    void afterOkWritesFlagColoursThenFlagAgain_data()
    {
        QTest::addColumn<qint64>("flag");
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("last");
        QTest::newRow("on") << qint64(1) << "1" << "1";
        QTest::newRow("off") << qint64(0) << "0" << "0";
        QTest::newRow("odd value") << qint64(7) << "7" << "0";
        QTest::newRow("negative") << qint64(-1) << "-1" << "0";
    }
    void afterOkWritesFlagColoursThenFlagAgain()
    {
        QFETCH(qint64, flag);
        QFETCH(QString, first);
        QFETCH(QString, last);
        const Theme t = customTheme(flag);
        const auto writes = ThemeWriting::afterOkWrites(t);
        QStringList expected{SettingsKeys::AlternatingRows};
        expected << kColourKeys << SettingsKeys::AlternatingRows;
        QCOMPARE(keysOf(writes), expected);
        QCOMPARE(writes.first().value.toString(), first);
        QCOMPARE(writes.last().value.toString(), last);
        QCOMPARE(writes[1].value.value<QColor>(), t.colorTableBackground);
        QCOMPARE(writes[2].value.value<QColor>(), t.colorTableForeground);
        QCOMPARE(writes[3].value.value<QColor>(), t.colorToolbar);
        QCOMPARE(writes[4].value.value<QColor>(), t.colorBottomBar);
        QCOMPARE(writes[5].value.value<QColor>(), t.colorSpaceOccupiedBar);
    }

    void restoreOriginalsStoresEachWriteInOrder()
    {
        QTemporaryDir tmp;
        QSettings store(tmp.filePath("rec.dat"), recordingFormat());
        AppSettings settings(store);
        const Theme custom = customTheme(0);
        for (ThemeColor c : ThemeDefaults::all) {
            settings.setColor(ThemeDefaults::key(c), custom[c]);
            settings.setString(ThemeDefaults::key(c) + "_String", "Recorded");
        }
        settings.setString(SettingsKeys::AlternatingRows, "0");
        const int before = g_saves.size();

        const Theme t = ThemeWriting::restoreOriginals(settings);

        const auto plan = ThemeWriting::originalsWrites();
        QCOMPARE(g_saves.size() - before, plan.size());  // one save per write
        const QList<QStringList> changes = changesPerSave(before);
        for (int i = 0; i < plan.size(); ++i)
            QCOMPARE(changes[i], QStringList{plan[i].key});
        const QSettings::SettingsMap last = g_saves.last();
        QCOMPARE(last.value(SettingsKeys::AlternatingRows).toString(), QStringLiteral("1"));
        for (ThemeColor c : ThemeDefaults::all) {
            QCOMPARE(last.value(ThemeDefaults::key(c)).value<QColor>(), ThemeDefaults::color(c));
            QCOMPARE(last.value(ThemeDefaults::key(c) + "_String").toString(), QStringLiteral("Recorded"));
            QCOMPARE(t[c], ThemeDefaults::color(c));
        }
        QCOMPARE(t.b_List_Alternating_Rows, qint64(1));
    }

    void writeAfterOkStoresEachWriteInOrder()
    {
        QTemporaryDir tmp;
        QSettings store(tmp.filePath("rec.dat"), recordingFormat());
        AppSettings settings(store);
        ThemeSettings::loadAtStartup(settings);  // defaults, flag "1"
        const int before = g_saves.size();

        // An odd flag makes the second flag write visible: "7", then "0".
        ThemeWriting::writeAfterOk(settings, customTheme(7));

        QCOMPARE(g_saves.size() - before, 7);
        const QList<QStringList> changes = changesPerSave(before);
        QStringList expected{SettingsKeys::AlternatingRows};
        expected << kColourKeys << SettingsKeys::AlternatingRows;
        for (int i = 0; i < expected.size(); ++i)
            QCOMPARE(changes[i], QStringList{expected[i]});
        QCOMPARE(g_saves[before].value(SettingsKeys::AlternatingRows).toString(), QStringLiteral("7"));
        QCOMPARE(g_saves.last().value(SettingsKeys::AlternatingRows).toString(), QStringLiteral("0"));
        QCOMPARE(g_saves.last().value(SettingsKeys::ColorToolbar).value<QColor>(), QColor(1, 2, 3));
    }

    void restoreOriginalsLeavesCompanionsAndWritesDefaults()
    {
        QTemporaryDir tmp;
        QSettings s(tmp.filePath("t.conf"), QSettings::IniFormat);
        AppSettings settings(s);
        fillStoreWithOddCompanions(s, settings, customTheme(0));

        ThemeWriting::restoreOriginals(settings);

        checkDefaultsStoredCompanionsKept(s, settings);
        QCOMPARE(s.value(SettingsKeys::AlternatingRows).toString(), QStringLiteral("1"));
    }

    void writeAfterOkReadsBackAtNextStart()
    {
        QTemporaryDir tmp;
        QSettings s(tmp.filePath("t.conf"), QSettings::IniFormat);
        AppSettings settings(s);
        ThemeSettings::loadAtStartup(settings);  // first start: defaults and companions
        const Theme chosen = customTheme(0);
        ThemeWriting::writeAfterOk(settings, chosen);

        const Theme next = ThemeSettings::loadAtStartup(settings);
        QCOMPARE(next.b_List_Alternating_Rows, qint64(0));
        for (ThemeColor c : ThemeDefaults::all)
            QCOMPARE(next[c], chosen[c]);
        for (ThemeColor c : ThemeDefaults::all)
            QCOMPARE(s.value(ThemeDefaults::key(c) + "_String").toString(), QStringLiteral("Recorded"));
    }

    void tableLook_data()
    {
        QTest::addColumn<qint64>("flag");
        QTest::addColumn<bool>("dark");
        QTest::addColumn<bool>("okRule");
        QTest::addColumn<bool>("on");
        QTest::addColumn<QColor>("background");
        QTest::addColumn<bool>("alternating");
        QTest::addColumn<QColor>("text");
        const QColor bg(10, 20, 30), fg(200, 210, 220);
        QTest::newRow("ok, on, dark") << qint64(1) << true << true << true << QColor(Qt::black) << true << QColor(Qt::white);
        QTest::newRow("ok, on, light") << qint64(1) << false << true << true << QColor(Qt::white) << true << QColor(Qt::black);
        QTest::newRow("ok, off, dark") << qint64(0) << true << true << false << bg << false << fg;
        QTest::newRow("ok, off, light") << qint64(0) << false << true << false << bg << false << fg;
        QTest::newRow("ok, flag 2 is off") << qint64(2) << true << true << false << bg << false << fg;
        QTest::newRow("start, on, dark") << qint64(1) << true << false << true << QColor(Qt::black) << true << QColor(Qt::white);
        QTest::newRow("start, on, light") << qint64(1) << false << false << true << QColor(Qt::white) << true << QColor(Qt::black);
        QTest::newRow("start, off") << qint64(0) << false << false << false << bg << false << fg;
        // At start-up any non-zero flag gives the plain black/white background,
        // but the rows band only for exactly 1.
        QTest::newRow("start, flag 2, dark") << qint64(2) << true << false << true << QColor(Qt::black) << false << QColor(Qt::white);
        QTest::newRow("start, flag -1, light") << qint64(-1) << false << false << true << QColor(Qt::white) << false << QColor(Qt::black);
    }
    void tableLook()
    {
        QFETCH(qint64, flag);
        QFETCH(bool, dark);
        QFETCH(bool, okRule);
        QFETCH(bool, on);
        QFETCH(QColor, background);
        QFETCH(bool, alternating);
        QFETCH(QColor, text);
        const TableLook look = ThemeWriting::tableLook(customTheme(flag), dark, okRule);
        QCOMPARE(look.on, on);
        QCOMPARE(look.background, background);
        QCOMPARE(look.alternatingRows, alternating);
        QCOMPARE(look.cellText, text);
    }
};

TAMBLO_TEST_MAIN(TestThemeWriting)
#include "tst_appearance_theme_writing.moc"
