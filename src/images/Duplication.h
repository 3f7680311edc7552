#pragma once
#include <QString>

#include "images/ImageTool.h"

// The decisions of disc duplication that need no drive.
namespace Duplication {

// The number of copies from the count question's answer: the integer its
// leading characters spell ("3x" is 3, "abc" is 0); 0 asks for one copy, a
// negative number keeps `previous`. No upper bound.
int parseCopyCount(const QString &answer, int previous);

// The leading integer of a text: blanks skipped, an optional sign, digits;
// 0 without digits; clamped to the int range.
int leadingInt(const QString &text);

// After a copy: done when the finished copies reach the wanted number.
bool isComplete(int copiesDone, int numberOfCopies);

// DATA/image.iso, the image that every copy is burned from.
QString imagePath(const QString &dataFolder);

// The volume made into DATA/image.iso.
ToolCommand imagingCommand(const ImageTool &tool, const QString &dataFolder, const QString &volume);

} // namespace Duplication
