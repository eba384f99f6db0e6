#include "authsetting/services/Services.h"
#include "authsetting/shell/AuthSettingDialog.h"
#include "authsetting/shell/AuthSettingIds.h"
#include "authsetting/shell/NavigatorFiller.h"
#include "utils/ExchangeTimeZone.h"

#include <QApplication>
#include <QTimer>

// Opens the dialog without any service and closes it again; 0 when it was on the screen meanwhile.
int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    if (!utils::setExchangeTimeZone(QTimeZone("Asia/Shanghai")))
        return 1;
    GW::installServices(nullptr, nullptr, nullptr, nullptr, nullptr);
    GW::CAuthSettingDialog dialog;
    dialog.setNavigatorFiller(&GW::fillNavigator);
    bool shown = false;
    QTimer::singleShot(0, &dialog, [&] {
        shown = dialog.isVisible();
        dialog.close();
    });
    GW::CAuthSettingDialog::showSettingPage(GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE);
    return shown && !dialog.isVisible() ? 0 : 1;
}
