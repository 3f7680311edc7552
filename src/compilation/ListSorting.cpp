#include "compilation/ListSorting.h"

#include <algorithm>
#include <numeric>
#include <vector>

bool &ColumnSortFlags::at(int position)
{
    switch (position) {
    case 1: return m_b_Col1_Ascenging;
    case 2: return m_b_Col2_Ascenging;
    case 3: return m_b_Col3_Ascenging;
    default: return m_b_Col4_Ascenging;
    }
}

bool ColumnSortFlags::at(int position) const
{
    return const_cast<ColumnSortFlags *>(this)->at(position);
}

bool ColumnSortFlags::operator==(const ColumnSortFlags &o) const
{
    return m_b_Col1_Ascenging == o.m_b_Col1_Ascenging && m_b_Col2_Ascenging == o.m_b_Col2_Ascenging
        && m_b_Col3_Ascenging == o.m_b_Col3_Ascenging && m_b_Col4_Ascenging == o.m_b_Col4_Ascenging;
}

namespace ListSorting {

static bool isAsciiDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

// Case folding of one UTF-16 unit, as the comparison sees it.
static ushort foldedUnit(QChar c)
{
    return ushort(QChar::toCaseFolded(char32_t(c.unicode())));
}

// The comparison itself; `Fold` says whether the texts still need folding
// (false: both come from foldedUnits()).
template <bool Fold>
static int compareNaturally(QStringView a, QStringView b)
{
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < a.size() && j < b.size()) {
        const QChar ca = a.at(i);
        const QChar cb = b.at(j);
        if (isAsciiDigit(ca) && isAsciiDigit(cb)) {
            // Compare two digit runs by value: skip leading zeros, then the
            // longer run is the larger number, else the first differing digit.
            qsizetype ea = i, eb = j;
            while (ea < a.size() && isAsciiDigit(a.at(ea)))
                ++ea;
            while (eb < b.size() && isAsciiDigit(b.at(eb)))
                ++eb;
            qsizetype sa = i, sb = j;
            while (sa < ea - 1 && a.at(sa) == QLatin1Char('0'))
                ++sa;
            while (sb < eb - 1 && b.at(sb) == QLatin1Char('0'))
                ++sb;
            const qsizetype la = ea - sa, lb = eb - sb;
            if (la != lb)
                return la < lb ? -1 : 1;
            for (qsizetype k = 0; k < la; ++k) {
                const ushort da = a.at(sa + k).unicode(), db = b.at(sb + k).unicode();
                if (da != db)
                    return da < db ? -1 : 1;
            }
            i = ea;
            j = eb;
            continue;
        }
        const ushort fa = Fold ? foldedUnit(ca) : ca.unicode();
        const ushort fb = Fold ? foldedUnit(cb) : cb.unicode();
        if (fa != fb)
            return fa < fb ? -1 : 1;
        ++i;
        ++j;
    }
    const qsizetype ra = a.size() - i, rb = b.size() - j;
    if (ra == rb)
        return 0;
    return ra < rb ? -1 : 1;
}

int naturalCompare(const QString &a, const QString &b)
{
    return compareNaturally<true>(a, b);
}

// Every unit folded once, so that a sort folds each text once instead of
// at every comparison. Folding leaves ASCII digits as they are.
static QString foldedUnits(const QString &text)
{
    QString folded(text.size(), Qt::Uninitialized);
    QChar *out = folded.data();
    for (qsizetype i = 0; i < text.size(); ++i)
        out[i] = QChar(foldedUnit(text.at(i)));
    return folded;
}

// A stable sort of the records by one text field: each key is folded once,
// positions are sorted, and the records are moved into place once.
template <typename Node, typename Field>
static void sortBy(QList<Node> &list, Field field, bool ascending)
{
    const qsizetype n = list.size();
    std::vector<QString> keys;
    keys.reserve(size_t(n));
    for (const Node &node : std::as_const(list))
        keys.push_back(foldedUnits(field(node)));
    std::vector<qsizetype> order(static_cast<size_t>(n));
    std::iota(order.begin(), order.end(), qsizetype(0));
    std::stable_sort(order.begin(), order.end(), [&](qsizetype x, qsizetype y) {
        return ascending ? compareNaturally<false>(keys[size_t(x)], keys[size_t(y)]) < 0
                         : compareNaturally<false>(keys[size_t(y)], keys[size_t(x)]) < 0;
    });
    QList<Node> sorted;
    sorted.reserve(n);
    for (const qsizetype at : order)
        sorted.append(std::move(list[at]));
    list = std::move(sorted);
}

bool sortMediaFiles(QList<NodeMediaFile> &list, int column, ColumnSortFlags &flags)
{
    if (column < 0 || column > 3)
        return false;
    const int position = column + 1;
    const bool ascending = flags.at(position);
    switch (column) {
    case 0:
        sortBy(list, [](const NodeMediaFile &n) -> const QString & { return n.s_File_Name_With_Extension; }, ascending);
        break;
    case 1:
        sortBy(list, [](const NodeMediaFile &n) -> const QString & { return n.s_Duration; }, ascending);
        break;
    case 2:
        sortBy(list, [](const NodeMediaFile &n) -> const QString & { return n.s_File_Size; }, ascending);
        break;
    default:
        sortBy(list, [](const NodeMediaFile &n) -> const QString & { return n.s_File_Path; }, ascending);
        break;
    }
    for (int p = 1; p <= 4; ++p)
        flags.at(p) = (p == position) ? !ascending : false;
    return true;
}

bool sortDataFolders(QList<NodeDataFolder> &list, int column, ColumnSortFlags &flags)
{
    if (column == 0) {
        const bool ascending = flags.m_b_Col1_Ascenging;
        sortBy(list, [](const NodeDataFolder &n) -> const QString & { return n.s_Path; }, ascending);
        flags.m_b_Col1_Ascenging = !ascending;
        flags.m_b_Col2_Ascenging = false;
        return true;
    }
    if (column == 1) {
        const bool ascending = flags.m_b_Col2_Ascenging;
        sortBy(list, [](const NodeDataFolder &n) -> const QString & { return n.s_Size; }, ascending);
        flags.m_b_Col2_Ascenging = !ascending;
        flags.m_b_Col1_Ascenging = false;
        return true;
    }
    return false;
}

} // namespace ListSorting
