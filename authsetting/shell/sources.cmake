set(shell_SOURCES
    AccountTextCache.cpp AccountTextCache.h AccountTexts.cpp AccountTexts.h AuthNavigateNode.cpp
    AuthNavigateNode.h AuthSettingDialog.cpp AuthSettingDialog.h AuthSettingDialogPrivate.h
    AuthSettingEvents.h BusyCount.cpp BusyCount.h FocusKeeper.cpp
    FocusKeeper.h NavigatorFilter.cpp NavigatorFilter.h NodeHighlight.cpp NodeHighlight.h
    NodeMarkDelegate.cpp NodeMarkDelegate.h TabOrder.cpp TabOrder.h
    AuthSettingIds.cpp AuthSettingIds.h AuthSettingNavigator.cpp AuthSettingNavigator.h
    AuthSettingPage.cpp AuthSettingPage.h AuthSettingTabPage.cpp AuthSettingTabPage.h
    ClientDate.cpp ClientDate.h DialogSizes.cpp DialogSizes.h NavigatorFiller.cpp
    NavigatorFiller.h NavigatorNodes.cpp NavigatorNodes.h NavigatorUpdate.cpp NavigatorUpdate.h
    OnScreen.cpp OnScreen.h Outcomes.cpp Outcomes.h PageFactory.cpp PageFactory.h ReloadGate.cpp
    ReloadGate.h RequestTag.cpp RequestTag.h ResultTip.cpp ResultTip.h TableLayouts.cpp
    TableLayouts.h)
