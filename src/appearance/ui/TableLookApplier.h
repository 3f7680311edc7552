#pragma once
#include "appearance/TableLook.h"

class QAbstractItemView;

// Puts a TableLook on a list table. The background (and the text colour the
// table paints with) changes at once; the row banding is switched separately,
// as the controller does it a tenth of a second later.
namespace TableLookApplier {
void applyBackground(QAbstractItemView *table, const TableLook &look);
void applyAlternatingRows(QAbstractItemView *table, bool on);
} // namespace TableLookApplier
