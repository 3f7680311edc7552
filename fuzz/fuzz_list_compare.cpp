// The lists' order: ListSorting::naturalCompare, sortMediaFiles and
// sortDataFolders over names made of the input's lines.
#include "FuzzSupport.h"
#include "compilation/ListSorting.h"

static int sign(int v)
{
    return (v > 0) - (v < 0);
}

// A strict weak order, as std::stable_sort needs one.
static void checkOrder(const QString &a, const QString &b, const QString &c)
{
    using ListSorting::naturalCompare;
    FUZZ_CHECK(naturalCompare(a, a) == 0);
    FUZZ_CHECK(sign(naturalCompare(a, b)) == -sign(naturalCompare(b, a)));
    const int ab = sign(naturalCompare(a, b));
    const int bc = sign(naturalCompare(b, c));
    const int ac = sign(naturalCompare(a, c));
    if (ab <= 0 && bc <= 0)
        FUZZ_CHECK(ac <= 0 && (ac < 0 || (ab == 0 && bc == 0)));
    if (ab >= 0 && bc >= 0)
        FUZZ_CHECK(ac >= 0 && (ac > 0 || (ab == 0 && bc == 0)));
    if (ab == 0)
        FUZZ_CHECK(ac == bc);
}

template <typename Node, typename Field>
static void checkSorted(const QList<Node> &before, const QList<Node> &after, Field field, bool ascending)
{
    // The same records (the index rides along in an unsorted field), in
    // order, equal names keeping their order.
    FUZZ_CHECK(before.size() == after.size());
    QList<int> seen(before.size(), 0);
    for (qsizetype i = 0; i < after.size(); ++i) {
        const int index = field.index(after.at(i));
        FUZZ_CHECK(index >= 0 && index < before.size() && ++seen[index] == 1);
        FUZZ_CHECK(field.name(before.at(index)) == field.name(after.at(i)));
        if (i == 0)
            continue;
        const int c = ListSorting::naturalCompare(field.name(after.at(i - 1)), field.name(after.at(i)));
        FUZZ_CHECK(ascending ? c <= 0 : c >= 0);
        if (c == 0)
            FUZZ_CHECK(field.index(after.at(i - 1)) < index);
    }
}

struct MediaName {
    QString name(const NodeMediaFile &n) const { return n.s_File_Name_With_Extension; }
    int index(const NodeMediaFile &n) const { return n.s_Folder_Path.toInt(); }
};
struct DataPath {
    QString name(const NodeDataFolder &n) const { return n.s_Path; }
    int index(const NodeDataFolder &n) const { return int(n.i_Size_in_KBytes); }
};

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QStringList names = Fuzz::text(data, size).split(QLatin1Char('\n'));
    if (names.size() > 64)
        names = names.mid(0, 64);
    for (qsizetype i = 0; i + 2 < names.size(); ++i)
        checkOrder(names.at(i), names.at(i + 1), names.at(i + 2));
    if (names.size() >= 3) {
        checkOrder(names.at(0), names.at(2), names.at(1));
        checkOrder(names.at(1), names.at(0), names.at(2));
    }

    QList<NodeMediaFile> media;
    QList<NodeDataFolder> folders;
    for (qsizetype i = 0; i < names.size(); ++i) {
        NodeMediaFile m;
        m.s_File_Name_With_Extension = names.at(i);
        m.s_Folder_Path = QString::number(i);
        media << m;
        NodeDataFolder d;
        d.s_Path = names.at(i);
        d.i_Size_in_KBytes = quint64(i);
        folders << d;
    }

    ColumnSortFlags flags;
    QList<NodeMediaFile> sorted = media;
    FUZZ_CHECK(ListSorting::sortMediaFiles(sorted, 0, flags));
    checkSorted(media, sorted, MediaName(), true);
    FUZZ_CHECK(!flags.m_b_Col1_Ascenging && !flags.m_b_Col2_Ascenging);
    sorted = media;
    FUZZ_CHECK(ListSorting::sortMediaFiles(sorted, 0, flags));  // the second click: descending
    checkSorted(media, sorted, MediaName(), false);
    FUZZ_CHECK(flags.m_b_Col1_Ascenging);

    ColumnSortFlags dataFlags;
    QList<NodeDataFolder> sortedFolders = folders;
    FUZZ_CHECK(ListSorting::sortDataFolders(sortedFolders, 0, dataFlags));
    checkSorted(folders, sortedFolders, DataPath(), true);
    return 0;
}
