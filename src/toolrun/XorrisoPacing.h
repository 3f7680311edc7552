#pragma once
#include <QString>
#include <QStringList>

// xorriso looks at a running write once a second unless told otherwise, so
// the end of a write is noticed up to a second late and its progress moves
// in one-second steps. Every xorriso run that writes asks for a look every
// 0.2 s; these go before any other argument ("-as" emulations included).
inline QStringList xorrisoPacing()
{
    return {QStringLiteral("-pacifier"), QStringLiteral("interval=0.2")};
}
