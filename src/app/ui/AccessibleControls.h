#pragma once

// How Tamblo's own controls appear to screen readers and other assistive
// tools, where Qt's stock description falls short:
//  - a radio button is a radio button even when its group is kept by hand
//    (the New Disc and Video Settings dialogs turn autoExclusive off, and
//    Qt would then publish the button as a check box);
//  - "toggle" and "press" on a check box or radio button are a click: the
//    button's clicked handlers run, so a hand-kept group stays exclusive
//    (Qt's own toggle flips the state without a click);
//  - a DoubleProgressBar reports its real range and value (0 to the number
//    of files, 0 to 100 %...), not the fine steps it draws with.
namespace AccessibleControls {

// Installs the descriptions; once per process, before any window is built
// (the application's start and every test's start call it).
void install();

} // namespace AccessibleControls
