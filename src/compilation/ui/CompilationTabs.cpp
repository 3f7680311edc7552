#include "compilation/ui/CompilationTabs.h"

#include <QAction>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabBar>
#include <QTabWidget>

#include "compilation/DataFolderModel.h"
#include "compilation/DiscKinds.h"
#include "compilation/MediaListModel.h"
#include "compilation/ui/CompilationTable.h"
#include "compilation/ui/SpaceOccupiedView.h"
#include "compilation/ui/Window_New_Disc.h"
#include "platform/ui/SheetOutlet.h"

CompilationTabs::CompilationTabs(const CompilationWidgets &widgets, const CompilationState &state,
                                 MediaListModel *media, DataFolderModel *data, QObject *parent)
    : QObject(parent), m_w(widgets), m_state(state), m_media(media), m_data(data)
{
}

QString CompilationTabs::tabIdentifier(const QTabWidget *tabs, int index)
{
    return tabs->tabBar()->tabData(index).toString();
}

void CompilationTabs::setBordered(QPushButton *button, bool bordered)
{
    button->setFlat(!bordered);
    QFont f = button->font();
    f.setBold(bordered);
    button->setFont(f);
    // Screen readers hear which kind is chosen.
    button->setAccessibleDescription(bordered ? QStringLiteral("Chosen") : QString());
}

bool CompilationTabs::isBordered(const QPushButton *button)
{
    return !button->isFlat();
}

qint64 &CompilationTabs::typeOf(int tab)
{
    return tab == Audio ? m_state.audioType : tab == Video ? m_state.videoType : m_state.dataType;
}

void CompilationTabs::setBurnTitle(const QString &title)
{
    m_w.burnButton->setText(title);
    m_w.burnButton->setAccessibleName(title);
}

void CompilationTabs::startAfresh()
{
    m_state.audioType = m_state.videoType = m_state.dataType = 0;
    for (int tab : {Audio, Video, Data})
        if (const DiscKind *first = DiscKinds::forTabType(tab, 0))
            if (auto *b = m_w.window->findChild<QPushButton *>(first->buttonName))
                setBordered(b, true);
    {
        const QSignalBlocker block(m_w.tabs);
        m_w.tabs->setCurrentIndex(0);
    }
    setBurnTitle(DiscKinds::burnTitleFor(Audio, 0));
    m_state.sortFlags = ColumnSortFlags{};
    m_w.gauge->setI_Percentage(0);
    m_state.newDiscKind = 1;
}

void CompilationTabs::emptyBothLists()
{
    m_data->clear();
    refresh(Data);
    m_media->clear();
    refresh(Video);
    refresh(Audio);
}

void CompilationTabs::tabSelected(int index)
{
    const QString id = tabIdentifier(m_w.tabs, index);
    const int number = id.toInt();  // 0 for anything but "1".."5"
    if (number < 1 || number > 5)
        return;
    const bool compilationTab = number <= 3;
    m_w.gauge->setVisible(compilationTab);
    m_w.burnBar->setVisible(compilationTab);
    if (compilationTab) {
        emptyBothLists();
        const QString title = DiscKinds::burnTitleFor(number - 1, typeOf(number - 1));
        if (!title.isEmpty())
            setBurnTitle(title);
    }
    for (int i = 0; i < m_w.tabItems.size(); ++i)
        m_w.tabItems[i]->setChecked(i == number - 1);
}

void CompilationTabs::chooseKind(int tab, qint64 type)
{
    const DiscKind *kind = DiscKinds::forTabType(tab, type);
    if (!kind)
        return;
    typeOf(tab) = type;
    for (const QString &name : DiscKinds::tabButtons(tab))
        if (auto *b = m_w.window->findChild<QPushButton *>(name))
            setBordered(b, name == kind->buttonName);
    setBurnTitle(kind->burnTitle);
    refresh(tab);
}

void CompilationTabs::deleteSelected(int tab)
{
    const QList<int> rows = m_w.tables[tab]->selectedRows();
    if (tab == Data)
        m_data->removeRowsAt(rows);
    else
        m_media->removeRowsAt(rows);
    refresh(tab);
}

void CompilationTabs::clear(int tab)
{
    if (tab == Data)
        m_data->clear();
    else
        m_media->clear();
    refresh(tab);
}

void CompilationTabs::refresh(int tab)
{
    m_w.tables[tab]->viewport()->update();
    if (tab == Audio)
        m_state.audioSeconds = m_media->totalDurationSeconds();
    else if (tab == Video)
        m_state.videoSeconds = m_media->totalDurationSeconds();
    else
        m_state.dataKBytes = m_data->totalKBytes();
    paintGauge();
}

void CompilationTabs::sort(int tab, int column)
{
    if (tab == Data)
        m_data->sortByClickedColumn(column, m_state.sortFlags);
    else
        m_media->sortByClickedColumn(column, m_state.sortFlags);
    refresh(tab);
}

void CompilationTabs::paintGauge()
{
    const quint64 percent = DiscKinds::percentage(tabIdentifier(m_w.tabs, m_w.tabs->currentIndex()),
                                                  m_state.audioSeconds, m_state.videoSeconds, m_state.dataKBytes,
                                                  m_state.audioType, m_state.videoType, m_state.dataType);
    m_w.gauge->setI_Percentage(qint64(percent));
}

void CompilationTabs::showNewDisc()
{
    if (m_state.newDiscSheet)
        return;
    auto *sheet = new Window_New_Disc(m_state.newDiscKind, m_w.window);
    connect(sheet, &Window_New_Disc::closeRequested, this, [this](qint64 kind) {
        m_state.newDiscKind = kind;
        closeNewDisc();
    });
    SheetOutlet::open(m_state.newDiscSheet, sheet);
}

void CompilationTabs::closeNewDisc()
{
    SheetOutlet::close(m_state.newDiscSheet);

    const NewDiscResult r = DiscKinds::applyNewDisc(m_state.newDiscKind);
    m_state.newDiscKind = r.i_Type_of_New_Disc;
    if (r.setsType)
        typeOf(r.typeTab) = r.typeValue;
    if (r.emptyLists)
        emptyBothLists();
    if (r.selectTab >= 0) {
        m_w.tabs->setCurrentIndex(r.selectTab);
        if (auto *b = m_w.window->findChild<QPushButton *>(r.borderedButton))
            setBordered(b, true);
        for (const QString &name : r.borderlessButtons)
            if (auto *b = m_w.window->findChild<QPushButton *>(name))
                setBordered(b, false);
    }
    if (!r.burnTitle.isEmpty())
        setBurnTitle(r.burnTitle);
}
