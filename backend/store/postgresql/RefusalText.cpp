#include "backend/store/postgresql/RefusalText.h"

#include "utils/LogCenter.h"

#include <QHash>

namespace backend {

QString refusalText(const QString& code)
{
    static const QHash<QString, QString> texts{
        {QStringLiteral("account_missing"), QStringLiteral("账号不存在或不属于当前用户")},
        {QStringLiteral("account_is_sub"), QStringLiteral("子账户不能授权")},
        {QStringLiteral("account_has_subs"), QStringLiteral("含有子账户的账号不能授权")},
        {QStringLiteral("account_granted"), QStringLiteral("账号已授权，请先取消原有授权")},
        {QStringLiteral("user_missing"), QStringLiteral("用户不存在")},
        {QStringLiteral("user_is_self"), QStringLiteral("不能授权给自己")},
        {QStringLiteral("user_disabled"), QStringLiteral("用户已被禁用")},
        {QStringLiteral("days_inverted"), QStringLiteral("授权开始时间晚于结束时间")},
        {QStringLiteral("days_past"), QStringLiteral("授权结束时间早于今天")},
        {QStringLiteral("ratio_invalid"), QStringLiteral("可用保证金比例必须大于0且不超过100%")},
        {QStringLiteral("not_granted"), QStringLiteral("账号没有有效的授权")},
        {QStringLiteral("granted_to_other"), QStringLiteral("账号没有授权给该用户")},
        {QStringLiteral("reference_missing"), QStringLiteral("授权不存在")},
        {QStringLiteral("not_for_caller"), QStringLiteral("授权文件不是授予当前用户的")},
        {QStringLiteral("cancelled"), QStringLiteral("授权已被取消")},
        {QStringLiteral("expired"), QStringLiteral("授权已过期")},
        {QStringLiteral("not_effective"), QStringLiteral("授权尚未生效")},
        {QStringLiteral("not_a_file"), QStringLiteral("授权不是文件授权")},
        {QStringLiteral("redeemed_already"), QStringLiteral("授权已导入过")},
        {QStringLiteral("owner_changed"), QStringLiteral("账号已不属于授权人")},
        {QStringLiteral("altered"), QStringLiteral("授权文件与授权记录不符")},
        {QStringLiteral("not_prepared"), QStringLiteral("授权已失效或已写入其他文件")},
        {QStringLiteral("sub_user_missing"), QStringLiteral("子用户不存在或不属于当前用户")},
        {QStringLiteral("password_not_set"), QStringLiteral("子用户密码未能修改，没有启用")},
        {QStringLiteral("verifier_invalid"), QStringLiteral("密码摘要必须是40位十六进制字符")},
        {QStringLiteral("caller_disabled"), QStringLiteral("当前用户已被禁用")},
        {QStringLiteral("file_not_written"), QStringLiteral("授权文件未能写出，授权恢复为未生效")},
        {QStringLiteral("conflict"), QStringLiteral("数据与授权数据库中的记录冲突")},
    };
    const auto found = texts.constFind(code);
    if (found != texts.constEnd())
        return *found;
    utils::CLogCenter::error(
        QStringLiteral("the server refused with the unknown code \"%1\"").arg(code));
    return QStringLiteral("授权数据库操作失败");
}

} // namespace backend
