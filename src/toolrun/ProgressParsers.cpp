#include "toolrun/ProgressParsers.h"
#include "toolrun/WriteProgress.h"

#include <QDebug>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace ProgressParsers {

static const QString kTimeMarker = QStringLiteral("time=");
static const QString kPercentKey = QString::fromLatin1(RecorderPercentKey);

static bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\v' || c == u'\f';
}

static bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

qint64 leadingInteger(const QString &s)
{
    qsizetype i = 0;
    const qsizetype n = s.size();
    while (i < n && isBlank(s.at(i)))
        ++i;
    bool negative = false;
    if (i < n && (s.at(i) == u'+' || s.at(i) == u'-')) {
        negative = s.at(i) == u'-';
        ++i;
    }
    qint64 value = 0;
    constexpr qint64 limit = std::numeric_limits<qint64>::max() / 10 - 10;
    while (i < n && isDigit(s.at(i))) {
        if (value < limit)
            value = value * 10 + (s.at(i).unicode() - u'0');
        ++i;
    }
    return negative ? -value : value;
}

float leadingFloat(const QString &s)
{
    qsizetype i = 0;
    const qsizetype n = s.size();
    while (i < n && isBlank(s.at(i)))
        ++i;
    const qsizetype start = i;
    if (i < n && (s.at(i) == u'+' || s.at(i) == u'-'))
        ++i;
    qsizetype digits = 0;
    while (i < n && isDigit(s.at(i))) {
        ++i;
        ++digits;
    }
    if (i < n && s.at(i) == u'.') {
        ++i;
        while (i < n && isDigit(s.at(i))) {
            ++i;
            ++digits;
        }
    }
    if (digits == 0)
        return 0.0f;
    // An exponent only counts when digits follow it.
    if (i < n && (s.at(i) == u'e' || s.at(i) == u'E')) {
        qsizetype j = i + 1;
        if (j < n && (s.at(j) == u'+' || s.at(j) == u'-'))
            ++j;
        if (j < n && isDigit(s.at(j))) {
            while (j < n && isDigit(s.at(j)))
                ++j;
            i = j;
        }
    }
    const QByteArray number = s.mid(start, i - start).toLatin1();
    return std::strtof(number.constData(), nullptr);
}

qint64 Return_Seconds_From_VOB_Duration_Str(const QString &s)
{
    const qint64 hours = leadingInteger(s.mid(0, 2));
    const qint64 minutes = leadingInteger(s.mid(3, 2));
    const qint64 seconds = leadingInteger(s.mid(6, 2));
    return hours * 3600 + minutes * 60 + seconds;
}

std::optional<float> transcoderPercent(const QString &chunk, qint64 durationSeconds)
{
    if (chunk.isEmpty())
        return std::nullopt;
    const qsizetype length = chunk.size();
    qsizetype accepted = chunk.indexOf(kTimeMarker, 0, Qt::CaseSensitive);
    if (accepted < 0 || accepted + 13 > length)
        return std::nullopt;

    // Later reports of the same chunk: the last one with room for HH:MM:SS wins.
    for (;;) {
        const qsizetype from = accepted + 13;
        if (from >= length)
            break;
        const qsizetype hit = chunk.indexOf(kTimeMarker, from, Qt::CaseInsensitive);
        if (hit < 0 || hit + 13 > length)
            break;
        accepted = hit;
    }

    const qint64 seconds = Return_Seconds_From_VOB_Duration_Str(chunk.mid(accepted + 5, 8));
    // Both figures go through an unsigned conversion before the float one, as
    // the bar has always been fed; a negative time becomes a huge figure.
    const float done = static_cast<float>(static_cast<quint64>(seconds));
    const float whole = static_cast<float>(static_cast<quint64>(durationSeconds));
    volatile float percent = done * 100.0f;  // kept in single precision
    return percent / whole;
}

QString recorderFractionText(const QString &chunk)
{
    if (chunk.isEmpty())
        return QString();
    const qsizetype at = chunk.indexOf(kPercentKey, 0, Qt::CaseSensitive);
    if (at < 0)
        return QString();
    const qsizetype end = at + kPercentKey.size();
    if (!(end + 5 < chunk.size()))
        return QString();
    return chunk.mid(end + 1, 4);
}

std::optional<double> recorderValuePercent(const QString &afterKey)
{
    const float f = leadingFloat(afterKey);
    const float percent = f * 100.0f;
    if (!(100.0f >= percent))
        return std::nullopt;
    return static_cast<double>(percent);
}

std::optional<double> recorderPercent(const QString &chunk)
{
    const QString fraction = recorderFractionText(chunk);
    if (fraction.isNull())
        return std::nullopt;
    qInfo().noquote() << fraction;
    return recorderValuePercent(fraction);
}

std::optional<double> linuxRecorderPercent(const QString &chunk)
{
    std::optional<double> last;
    WriteProgress::forEachLine(chunk, [&last](QStringView report) {
        std::optional<WriteReport> r = WriteProgress::xorrisoWriting(report);
        if (!r)
            r = WriteProgress::cdrecordWritten(report);
        if (!r)
            r = WriteProgress::mkisofsDone(report);
        if (r && r->percent)
            last = r->percent;
    });
    return last;
}

} // namespace ProgressParsers
