#include "backend/store/StoreFailure.h"

namespace backend {

QString StoreFailure::text() const
{
    switch (kind) {
    case Kind::None:
        return {};
    case Kind::Missing:
        return QStringLiteral("授权数据库不存在");
    case Kind::NotAStore:
        return QStringLiteral("所选文件不是授权数据库");
    case Kind::Damaged:
        return QStringLiteral("授权数据库已损坏，文件保持原样，请从备份恢复");
    case Kind::NewerSchema:
        return QStringLiteral("授权数据库由更新版本的程序建立，请升级后再打开");
    case Kind::Busy:
        return QStringLiteral("授权数据库正忙，请稍后重试");
    case Kind::Full:
        return QStringLiteral("磁盘空间不足，授权数据库无法写入");
    case Kind::ReadOnly:
        return QStringLiteral("没有写入授权数据库的权限");
    case Kind::Io:
        return QStringLiteral("授权数据库读写失败，请检查磁盘");
    case Kind::Replaced:
        return QStringLiteral("授权数据库文件已被替换或删除，请重新登录");
    case Kind::OutOfMemory:
        return QStringLiteral("内存不足，授权数据库操作未完成");
    case Kind::Constraint:
        return QStringLiteral("数据与授权数据库中的记录冲突");
    case Kind::Offline:
        return QStringLiteral("与服务器的连接已断开，请在恢复后重试");
    case Kind::WrongLogin:
        return QStringLiteral("用户名或密码错误");
    case Kind::Disabled:
        return QStringLiteral("用户已被禁用，请联系管理人");
    case Kind::Unreachable:
        return QStringLiteral("无法连接服务器，请检查地址和网络后重试");
    case Kind::Untrusted:
        return QStringLiteral("无法确认服务器的身份，没有登录：证书不可信或与地址不符");
    case Kind::Unencrypted:
        return QStringLiteral("服务器不支持加密连接，没有登录，请联系管理人");
    case Kind::NoAuthority:
        return QStringLiteral("无法读取确认服务器身份所用的证书文件，没有登录");
    case Kind::NotAdmitted:
        return QStringLiteral("服务器不允许从这台机器登录，请联系管理人");
    case Kind::Crowded:
        return QStringLiteral("服务器的连接数已满，请稍后重试");
    case Kind::NotPrepared:
        return QStringLiteral("服务器上的授权数据库尚未建立或版本过旧，请联系管理人");
    case Kind::Other:
        break;
    }
    return QStringLiteral("授权数据库操作失败");
}

} // namespace backend
