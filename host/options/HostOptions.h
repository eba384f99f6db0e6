#pragma once

#include "kit/resources/UiResource.h"

#include <QDateTime>
#include <QString>

#include <climits>

namespace host {

/// What the command line asks for.
struct HostOptions
{
    /// Where the store is; empty for the demonstration store.
    QString store;
    /// The user that the sign-in window proposes; empty for the one it would propose itself.
    QString user;
    /// The page to open after signing in; 0 for none.
    int pageId = 0;
    /// INT_MAX for the page itself.
    int subPageId = INT_MAX;
    /// Account key, account number or sub-user of the sub-page.
    QString key;
    /// Index of the tab to open on the page.
    int tab = 0;
    KZ::CUiResource::Theme theme = KZ::CUiResource::Theme::Light;
    /// Factor by which everything is drawn larger; 0 leaves it to the display.
    double scale = 0.0;
    /// The client's clock starts here and runs on; invalid for the machine's clock.
    QDateTime clock;
    /// Walk the guided tour instead of waiting for a user.
    bool tour = false;
    /// Folder for the tour's picture of each step.
    QString stepPictures = QStringLiteral("pictures");
    /// Folder for pictures of the pages in both themes; empty for none.
    QString pagePictures;
};

} // namespace host
