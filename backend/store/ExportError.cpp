#include "backend/store/ExportError.h"

namespace backend {

QString exportErrorText(ExportError error)
{
    switch (error) {
    case ExportError::None:
        return {};
    case ExportError::NoGrants:
        return QStringLiteral("没有可写入的授权");
    case ExportError::NoReference:
        return QStringLiteral("授权尚未准备好");
    case ExportError::EmptyPassword:
        return QStringLiteral("密码为空");
    case ExportError::BadPath:
        return QStringLiteral("文件路径无效");
    case ExportError::FileExists:
        return QStringLiteral("同名文件已存在");
    case ExportError::UnknownReference:
        return QStringLiteral("授权不存在");
    case ExportError::NotPrepared:
        return QStringLiteral("授权已失效或已写入其他文件");
    case ExportError::Altered:
        return QStringLiteral("授权与准备时的内容不符");
    case ExportError::Refused:
        return QStringLiteral("授权已不被允许");
    case ExportError::Seal:
        return QStringLiteral("授权文件加密失败");
    case ExportError::Write:
        return QStringLiteral("文件无法写入");
    case ExportError::Store:
        return QStringLiteral("数据库操作失败");
    }
    return {};
}

} // namespace backend
