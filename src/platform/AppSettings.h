#pragma once
#include <QColor>
#include <QSettings>
#include <QString>

// The settings table: every key Tamblo reads or writes, and the defaults.
namespace SettingsKeys {
inline const QString VideoFormat = QStringLiteral("ZendrovaVideoFormat18");          // "0" NTSC, "1" PAL
inline const QString AudioFormat = QStringLiteral("ZendrovaAudioFormat18");          // "0" AC-3, "1" MP2
inline const QString LastSelectedDrive = QStringLiteral("Zendrova_Last_Selected_Drive_18");
inline const QString AlternatingRows = QStringLiteral("Zendrova_Tamblo_b_List_Alternating_Rows");
inline const QString ColorTableBackground = QStringLiteral("Zendrova_Tamblo_Color_Table_Background");
inline const QString ColorTableForeground = QStringLiteral("Zendrova_Tamblo_Color_Table_Foreground");
inline const QString ColorToolbar = QStringLiteral("Zendrova_Tamblo_Color_Toolbar");
inline const QString ColorBottomBar = QStringLiteral("Zendrova_Tamblo_Color_Bottom_Bar");
inline const QString ColorSpaceOccupiedBar = QStringLiteral("Zendrova_Tamblo_Color_Space_Occupied_Bar");
// "1" or "0": read each disc back after writing it (absent: yes).
inline const QString VerifyAfterWriting = QStringLiteral("Zendrova_Tamblo_b_Verify_After_Writing");
inline const QString CompanionSuffix = QStringLiteral("_String");
inline const QString CompanionValue = QStringLiteral("Recorded");
} // namespace SettingsKeys

// The five theme colours, in the order they are read at start-up and written by the colour dialog.
enum class ThemeColor { TableBackground, TableForeground, Toolbar, BottomBar, SpaceOccupiedBar };

namespace ThemeDefaults {
QString key(ThemeColor c);
QColor color(ThemeColor c);
inline constexpr ThemeColor all[] = {ThemeColor::TableBackground, ThemeColor::TableForeground,
                                     ThemeColor::Toolbar, ThemeColor::BottomBar,
                                     ThemeColor::SpaceOccupiedBar};
} // namespace ThemeDefaults

// Typed access to the preferences store. Values are written at once, when
// they change; nothing is saved at exit.
class AppSettings {
public:
    explicit AppSettings(QSettings &store) : m_store(store) {}

    QString string(const QString &key) const;  // absent reads as empty
    void setString(const QString &key, const QString &value);

    bool contains(const QString &key) const { return m_store.contains(key); }

    // A yes/no kept as "1" or "0"; absent (or anything else) reads as
    // `absent`.
    bool flag(const QString &key, bool absent) const;
    void setFlag(const QString &key, bool value);

    // Whether discs are read back after writing: on unless turned off.
    bool verifyAfterWriting() const { return flag(SettingsKeys::VerifyAfterWriting, true); }

    // Colours are kept as QColor values; an absent or undecodable value reads
    // as an invalid QColor.
    QColor color(const QString &key) const;
    void setColor(const QString &key, const QColor &value);

    QSettings &store() { return m_store; }

private:
    QSettings &m_store;
};
