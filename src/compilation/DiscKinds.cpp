#include "compilation/DiscKinds.h"

#include <limits>

namespace DiscKinds {

const QList<DiscKind> &all()
{
    static const QList<DiscKind> kinds{
        {1, QStringLiteral("Audio CD"), 0, QStringLiteral("1"), 0, QStringLiteral("btnAudioCD"),
         QStringLiteral("Burn Audio CD"), 4440},
        {2, QStringLiteral("MP3 CD"), 0, QStringLiteral("1"), 1, QStringLiteral("btnMP3CD"),
         QStringLiteral("Burn MP3 CD"), 34200},
        {3, QStringLiteral("MP3 DVD"), 0, QStringLiteral("1"), 2, QStringLiteral("btnMP3DVD"),
         QStringLiteral("Burn MP3 DVD"), 136800},
        {4, QStringLiteral("Video DVD"), 1, QStringLiteral("2"), 0, QStringLiteral("btnVideoDVD"),
         QStringLiteral("Burn Video DVD"), 9000},
        {5, QStringLiteral("Video Blu-ray"), 1, QStringLiteral("2"), 1, QStringLiteral("btnVideoBluray"),
         QStringLiteral("Burn Video Blu-ray"), 84230},
        // Data capacities: 700 000 000 bytes, 4.7 and 25 binary gigabytes, in whole kilobytes.
        {6, QStringLiteral("Data CD"), 2, QStringLiteral("3"), 0, QStringLiteral("btnDataCD"),
         QStringLiteral("Burn Data CD"), 683593},
        {7, QStringLiteral("Data DVD"), 2, QStringLiteral("3"), 1, QStringLiteral("btnDataDVD"),
         QStringLiteral("Burn Data DVD"), 4928307},
        {8, QStringLiteral("Data Blu-ray"), 2, QStringLiteral("3"), 2, QStringLiteral("btnDataBluray"),
         QStringLiteral("Burn Data Blu-ray"), 26214400},
    };
    return kinds;
}

const DiscKind *find(qint64 kind)
{
    if (kind < 1 || kind > 8)
        return nullptr;
    return &all().at(int(kind - 1));
}

const DiscKind *forTabType(int tabIndex, qint64 typeValue)
{
    for (const DiscKind &k : all())
        if (k.tabIndex == tabIndex && k.typeValue == typeValue)
            return &k;
    return nullptr;
}

const DiscKind *forBurnTitle(const QString &burnTitle)
{
    for (const DiscKind &k : all())
        if (k.burnTitle == burnTitle)
            return &k;
    return nullptr;
}

QStringList tabButtons(int tabIndex)
{
    QStringList names;
    for (const DiscKind &k : all())
        if (k.tabIndex == tabIndex)
            names.append(k.buttonName);
    return names;
}

QString burnTitleFor(int tabIndex, qint64 typeValue)
{
    const DiscKind *k = forTabType(tabIndex, typeValue);
    return k ? k->burnTitle : QString();
}

quint64 percentage(const QString &tabId, qint64 audioTotalSeconds, qint64 videoTotalSeconds,
                   qint64 dataTotalKBytes, qint64 i_Audio_Type, qint64 i_Video_Type,
                   qint64 i_Data_Type)
{
    int tab = -1;
    qint64 total = 0;
    qint64 type = 0;
    if (tabId == QLatin1String("1")) {
        tab = 0;
        total = audioTotalSeconds;
        type = i_Audio_Type;
    } else if (tabId == QLatin1String("2")) {
        tab = 1;
        total = videoTotalSeconds;
        type = i_Video_Type;
    } else if (tabId == QLatin1String("3")) {
        tab = 2;
        total = dataTotalKBytes;
        type = i_Data_Type;
    } else {
        return 0;
    }
    const DiscKind *k = forTabType(tab, type);
    if (!k || k->capacity == 0)
        return 0;
    if (total <= 0)
        return 0;
    // total × 100 ÷ capacity without the product overflowing: the whole
    // capacities first, then the rest.
    constexpr quint64 top = quint64(std::numeric_limits<qint64>::max());
    const quint64 capacity = quint64(k->capacity);
    const quint64 whole = quint64(total) / capacity;
    const quint64 rest = quint64(total) % capacity;
    if (whole > top / 100)
        return top;
    const quint64 percent = whole * 100 + rest * 100 / capacity;  // rest < capacity, far below 2^57
    return qMin(percent, top);
}

NewDiscResult applyNewDisc(qint64 kind)
{
    NewDiscResult r;
    if (kind == Cancelled) {
        r.i_Type_of_New_Disc = 1;
        return r;
    }
    r.i_Type_of_New_Disc = kind;
    r.emptyLists = true;
    if (const DiscKind *k = find(kind)) {
        r.setsType = true;
        r.typeTab = k->tabIndex;
        r.typeValue = k->typeValue;
        r.selectTab = k->tabIndex;
        r.borderedButton = k->buttonName;
        for (const QString &b : tabButtons(k->tabIndex))
            if (b != k->buttonName)
                r.borderlessButtons.append(b);
        r.burnTitle = k->burnTitle;
    }
    return r;
}

} // namespace DiscKinds
