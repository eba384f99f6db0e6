#include "backend/store/AuditEntry.h"

#include <QHash>

namespace backend {

QString AuditEntry::actionText() const
{
    static const QHash<QString, QString> texts{
        {QStringLiteral("sign_in"), QStringLiteral("登录")},
        {QStringLiteral("grant"), QStringLiteral("服务器授权")},
        {QStringLiteral("prepare"), QStringLiteral("准备文件授权")},
        {QStringLiteral("export"), QStringLiteral("生成授权文件")},
        {QStringLiteral("cancel"), QStringLiteral("取消授权")},
        {QStringLiteral("redeem"), QStringLiteral("导入授权")},
        {QStringLiteral("expire"), QStringLiteral("授权到期")},
        {QStringLiteral("sub_user_state"), QStringLiteral("修改子用户状态")},
        {QStringLiteral("sub_user_password"), QStringLiteral("修改子用户密码")},
        {QStringLiteral("admin_state"), QStringLiteral("管理员修改用户状态")},
        {QStringLiteral("admin_password"), QStringLiteral("管理员修改密码")},
    };
    return texts.value(action, action);
}

} // namespace backend
