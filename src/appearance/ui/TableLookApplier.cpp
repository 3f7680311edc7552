#include "appearance/ui/TableLookApplier.h"

#include <QAbstractItemView>
#include <QPalette>

namespace TableLookApplier {

// The banding colour: the background moved a little towards its opposite,
// so black bands in dark grey and white in light grey.
static QColor bandFor(const QColor &background)
{
    const QColor target = background.lightness() < 128 ? QColor(Qt::white) : QColor(Qt::black);
    const qreal k = 0.08;
    return QColor::fromRgbF(background.redF() + (target.redF() - background.redF()) * k,
                            background.greenF() + (target.greenF() - background.greenF()) * k,
                            background.blueF() + (target.blueF() - background.blueF()) * k);
}

void applyBackground(QAbstractItemView *table, const TableLook &look)
{
    if (!table)
        return;
    QPalette pal = table->palette();
    if (look.background.isValid()) {
        pal.setColor(QPalette::Base, look.background);
        pal.setColor(QPalette::AlternateBase, bandFor(look.background));
    }
    if (look.cellText.isValid())
        pal.setColor(QPalette::Text, look.cellText);
    table->setPalette(pal);
    table->viewport()->update();
}

void applyAlternatingRows(QAbstractItemView *table, bool on)
{
    if (!table)
        return;
    table->setAlternatingRowColors(on);
    table->viewport()->update();
}

} // namespace TableLookApplier
