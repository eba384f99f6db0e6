#pragma once

#include "authsetting/shell/AuthSettingNavigator.h"
#include "authsetting/shell/AuthSettingTabPage.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "tests/authsetting/ShellTestTools.h"
#include "tests/support/fakes/FakeServices.h"

#include <QProgressBar>
#include <QPushButton>

/// A tree of three pages with the accounts "a" (keyA) and "b" (keyB) under the first.
inline void fillThreePages(GW::CAuthSettingNavigator* navigator)
{
    const QString icon = QStringLiteral("gw_img_auth_setting_tree_icon_account");
    navigator->addTopNode(QStringLiteral("accounts"), 201, icon);
    navigator->addTopNode(QStringLiteral("import"), 202, icon);
    navigator->addTopNode(QStringLiteral("users"), 203, icon);
    navigator->addChildNode(QStringLiteral("a"), 201, 20101, icon, QStringLiteral("keyA"));
    navigator->addChildNode(QStringLiteral("b"), 201, 20101, icon, QStringLiteral("keyB"));
}

/// The dialog over the fakes.
struct DialogUnderTest
{
    GW::CAuthSettingNavigator* navigator()
    {
        return dialog.findChild<GW::CAuthSettingNavigator*>();
    }
    QPushButton* closeButton()
    {
        return dialog.findChild<QPushButton*>(QStringLiteral("halden_close_button"));
    }
    KZ::CSimpleTextWidget* progressText()
    {
        return dialog.findChild<KZ::CSimpleTextWidget*>(QStringLiteral("halden_progress_text"));
    }
    QProgressBar* progressBar() { return dialog.findChild<QProgressBar*>(); }
    GW::IAuthSettingTabPage* currentTab()
    {
        KZ::CStandardTabControl* tabs = dialog.shownPage()->tabControl();
        return qobject_cast<GW::IAuthSettingTabPage*>(tabs->getTabWidget(tabs->currentTabIndex()));
    }
    bool looksIdle()
    {
        return progressText()->isHidden() && progressBar()->isHidden() &&
               navigator()->isEnabled() && dialog.shownPage()->isEnabled();
    }
    bool looksBusy()
    {
        return !progressText()->isHidden() && !progressBar()->isHidden() &&
               !navigator()->isEnabled() && !dialog.shownPage()->isEnabled();
    }

    FakeServices services;
    OpenDialog dialog;
};
