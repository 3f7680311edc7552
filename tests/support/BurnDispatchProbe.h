#pragma once
#include <QStringList>

#include "app/ui/AppDelegate.h"

// Records which burn the Burn button (or its menu item) reached instead of
// burning.
class DispatchProbe : public AppDelegate {
public:
    using AppDelegate::AppDelegate;
    QStringList called;
    void Burn_Audio_CD() override { called << "Burn_Audio_CD"; }
    void Burn_Audio_MP3_CD() override { called << "Burn_Audio_MP3_CD"; }
    void Burn_Audio_MP3_DVD() override { called << "Burn_Audio_MP3_DVD"; }
    void Burn_Video_DVD() override { called << "Burn_Video_DVD"; }
    void Burn_Video_Bluray() override { called << "Burn_Video_Bluray"; }
    void Burn_Data_CD() override { called << "Burn_Data_CD"; }
    void Burn_Data_DVD() override { called << "Burn_Data_DVD"; }
    void Burn_Data_Bluray() override { called << "Burn_Data_Bluray"; }
};
