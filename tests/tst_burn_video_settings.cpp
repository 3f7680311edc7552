#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTemporaryDir>

#include "platform/AppSettings.h"
#include "burn/ui/Window_Video_Settings.h"
#include "support/TestMain.h"

class TestBurnVideoSettings : public QObject {
    Q_OBJECT
private:
    QTemporaryDir m_dir;
    std::unique_ptr<QSettings> m_store;
    std::unique_ptr<AppSettings> m_settings;

    static void click(QAbstractButton *b) { QTest::mouseClick(b, Qt::LeftButton, {}, QPoint(5, b->height() / 2)); }

private slots:
    void init()
    {
        m_settings.reset();
        m_store = std::make_unique<QSettings>(m_dir.filePath(QStringLiteral("prefs.ini")), QSettings::IniFormat);
        m_store->clear();
        m_settings = std::make_unique<AppSettings>(*m_store);
    }

    void opensOnTheStoredChoice_data()
    {
        QTest::addColumn<QString>("video");
        QTest::addColumn<QString>("audio");
        QTest::addColumn<bool>("ntsc");
        QTest::addColumn<bool>("dolby");
        QTest::newRow("NTSC AC-3") << "0" << "0" << true << true;
        QTest::newRow("PAL AC-3") << "1" << "0" << false << true;
        QTest::newRow("NTSC MP2") << "0" << "1" << true << false;
        QTest::newRow("odd values read as 1") << "x" << "" << false << false;
    }
    void opensOnTheStoredChoice()
    {
        QFETCH(QString, video);
        QFETCH(QString, audio);
        QFETCH(bool, ntsc);
        QFETCH(bool, dolby);
        Window_Video_Settings w(video, audio, *m_settings);
        QCOMPARE(w.radioVideoNTSC->isChecked(), ntsc);
        QCOMPARE(w.radioVideoPal->isChecked(), !ntsc);
        QCOMPARE(w.radioAudioDolbyDigital->isChecked(), dolby);
        QCOMPARE(w.radioAudioMPEG2->isChecked(), !dolby);
    }

    void pairsAreKeptByHand()
    {
        Window_Video_Settings w(QStringLiteral("0"), QStringLiteral("0"), *m_settings);
        for (QRadioButton *r : {w.radioVideoNTSC, w.radioVideoPal, w.radioAudioDolbyDigital, w.radioAudioMPEG2})
            QVERIFY(!r->autoExclusive());
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        click(w.radioVideoPal);
        QVERIFY(w.radioVideoPal->isChecked());
        QVERIFY(!w.radioVideoNTSC->isChecked());
        click(w.radioAudioMPEG2);
        QVERIFY(w.radioAudioMPEG2->isChecked());
        QVERIFY(!w.radioAudioDolbyDigital->isChecked());
        click(w.radioVideoNTSC);
        QVERIFY(w.radioVideoNTSC->isChecked());
        QVERIFY(!w.radioVideoPal->isChecked());
        // The other pair is not touched by the first.
        QVERIFY(w.radioAudioMPEG2->isChecked());
        // The handlers act only on a button that is on.
        w.radioAudioMPEG2->setChecked(false);
        w.radioAudioDolbyDigital->setChecked(true);
        w.OnAudioMPEG2();
        QVERIFY(w.radioAudioDolbyDigital->isChecked());
    }

    void okStoresNtscAndMp2()
    {
        Window_Video_Settings w(QStringLiteral("1"), QStringLiteral("0"), *m_settings);
        QSignalSpy stored(&w, &Window_Video_Settings::stored);
        QSignalSpy accepted(&w, &QDialog::accepted);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        click(w.radioVideoNTSC);
        click(w.radioAudioMPEG2);
        click(w.btnOK);
        QCOMPARE(m_store->value(QStringLiteral("ZendrovaVideoFormat18")).toString(), QStringLiteral("0"));
        QCOMPARE(m_store->value(QStringLiteral("ZendrovaAudioFormat18")).toString(), QStringLiteral("1"));
        QCOMPARE(stored.count(), 1);
        QCOMPARE(stored.first().at(0).toString(), QStringLiteral("0"));
        QCOMPARE(stored.first().at(1).toString(), QStringLiteral("1"));
        QVERIFY(w.wasStored());
        QCOMPARE(w.result().s_Video_Output_Format, QStringLiteral("0"));
        QCOMPARE(w.result().s_Audio_Output_Format, QStringLiteral("1"));
        QCOMPARE(accepted.count(), 1);
        QVERIFY(!w.isVisible());
    }

    void okTestsOnlyNtscAndDolby()
    {
        // Neither button of a pair on: the pair stores "1".
        Window_Video_Settings w(QStringLiteral("0"), QStringLiteral("0"), *m_settings);
        w.radioVideoNTSC->setChecked(false);
        w.radioAudioDolbyDigital->setChecked(false);
        w.OnOK();
        QCOMPARE(m_settings->string(SettingsKeys::VideoFormat), QStringLiteral("1"));
        QCOMPARE(m_settings->string(SettingsKeys::AudioFormat), QStringLiteral("1"));
        // Both on: NTSC and Dolby Digital win.
        Window_Video_Settings both(QStringLiteral("1"), QStringLiteral("1"), *m_settings);
        both.radioVideoNTSC->setChecked(true);
        both.radioAudioDolbyDigital->setChecked(true);
        QVERIFY(both.radioVideoPal->isChecked());
        both.OnOK();
        QCOMPARE(m_settings->string(SettingsKeys::VideoFormat), QStringLiteral("0"));
        QCOMPARE(m_settings->string(SettingsKeys::AudioFormat), QStringLiteral("0"));
    }

    void cancelStoresNothing()
    {
        m_settings->setString(SettingsKeys::VideoFormat, QStringLiteral("0"));
        m_settings->setString(SettingsKeys::AudioFormat, QStringLiteral("0"));
        Window_Video_Settings w(QStringLiteral("0"), QStringLiteral("0"), *m_settings);
        QSignalSpy stored(&w, &Window_Video_Settings::stored);
        QSignalSpy rejected(&w, &QDialog::rejected);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        click(w.radioVideoPal);
        click(w.radioAudioMPEG2);
        click(w.btnCancel);
        QCOMPARE(rejected.count(), 1);
        QCOMPARE(stored.count(), 0);
        QVERIFY(!w.wasStored());
        QCOMPARE(w.result().s_Video_Output_Format, QStringLiteral("0"));
        QCOMPARE(w.result().s_Audio_Output_Format, QStringLiteral("0"));
        QCOMPARE(m_settings->string(SettingsKeys::VideoFormat), QStringLiteral("0"));
        QCOMPARE(m_settings->string(SettingsKeys::AudioFormat), QStringLiteral("0"));
        QCOMPARE(m_store->allKeys().size(), 2);
    }

    void cancelOnAFirstRunLeavesNoKeys()
    {
        Window_Video_Settings w(QStringLiteral("0"), QStringLiteral("0"), *m_settings);
        w.OnVideoPal();
        w.OnCancel();
        QVERIFY(m_store->allKeys().isEmpty());
    }

    void everyControlIsNamed()
    {
        Window_Video_Settings w(QStringLiteral("0"), QStringLiteral("0"), *m_settings);
        const QList<QAbstractButton *> controls{w.radioVideoNTSC, w.radioVideoPal, w.radioAudioDolbyDigital,
                                                w.radioAudioMPEG2, w.btnOK, w.btnCancel};
        QStringList names;
        for (QAbstractButton *b : controls) {
            QVERIFY(!b->accessibleName().isEmpty());
            names << b->accessibleName();
        }
        names.removeDuplicates();
        QCOMPARE(names.size(), controls.size());
        QVERIFY(w.btnOK->isDefault());
        QCOMPARE(w.windowModality(), Qt::WindowModal);
    }
};

TAMBLO_TEST_MAIN(TestBurnVideoSettings)
#include "tst_burn_video_settings.moc"
