#include "images/Duplication.h"

#include <limits>

namespace Duplication {

int leadingInt(const QString &text)
{
    int i = 0;
    const int n = text.size();
    while (i < n && text.at(i).isSpace())
        ++i;
    bool negative = false;
    if (i < n && (text.at(i) == QLatin1Char('+') || text.at(i) == QLatin1Char('-'))) {
        negative = text.at(i) == QLatin1Char('-');
        ++i;
    }
    qint64 value = 0;
    const qint64 limit = qint64(std::numeric_limits<int>::max()) + 1;
    while (i < n && text.at(i).unicode() >= '0' && text.at(i).unicode() <= '9') {
        value = value * 10 + (text.at(i).unicode() - '0');
        if (value > limit)
            value = limit;
        ++i;
    }
    if (negative)
        value = -value;
    if (value > std::numeric_limits<int>::max())
        return std::numeric_limits<int>::max();
    if (value < std::numeric_limits<int>::min())
        return std::numeric_limits<int>::min();
    return int(value);
}

int parseCopyCount(const QString &answer, int previous)
{
    const int n = leadingInt(answer);
    if (n == 0)
        return 1;
    if (n > 0)
        return n;
    return previous;
}

bool isComplete(int copiesDone, int numberOfCopies)
{
    return copiesDone >= numberOfCopies;
}

QString imagePath(const QString &dataFolder)
{
    return dataFolder + QStringLiteral("/image.iso");
}

ToolCommand imagingCommand(const ImageTool &tool, const QString &dataFolder, const QString &volume)
{
    return tool.makeImageCommand(imagePath(dataFolder), volume);
}

} // namespace Duplication
