#include "admin/command/AdminOptionsParser.h"

#include "admin/import/RecordAdder.h"

#include <QHash>

namespace admin {

namespace {

constexpr QLatin1String optionStore("store");
constexpr QLatin1String optionPasswordFile("password-file");
constexpr QLatin1String optionAskPassword("ask-password");
constexpr QLatin1String optionNewPasswordFile("new-password-file");
constexpr QLatin1String optionStrict("strict");

struct CommandShape
{
    int argumentCount = 0;
    /// What the first argument may be; empty for anything.
    QStringList words;
};

const QHash<QString, CommandShape>& commands()
{
    static const QHash<QString, CommandShape> shapes{
        {QStringLiteral("create"), {}},
        {QStringLiteral("import"), {2, RecordAdder::kindNames()}},
        {QStringLiteral("list"),
         {1, {QStringLiteral("users"), QStringLiteral("accounts"), QStringLiteral("grants")}}},
        {QStringLiteral("password"), {1, {}}},
        {QStringLiteral("enable"), {1, {}}},
        {QStringLiteral("disable"), {1, {}}},
        {QStringLiteral("verify"), {}},
        {QStringLiteral("backup"), {1, {}}},
        {QStringLiteral("restore"), {1, {}}}};
    return shapes;
}

} // namespace

AdminOptionsParser::AdminOptionsParser()
{
    m_parser.setApplicationDescription(QStringLiteral(
        "授权设置的管理命令。\n\n"
        "命令：\n"
        "  create               建立存储，或把已有的存储升级到当前版本\n"
        "  import 种类 文件     从 CSV 文件添加记录；种类：users、sub-users、accounts、\n"
        "                       sub-accounts、platforms、brokers\n"
        "  list 种类            列出 users、accounts 或 grants（CSV 格式）\n"
        "  password 用户        给用户或子用户设置新密码\n"
        "  enable 用户          允许用户或子用户登录\n"
        "  disable 用户         不再允许登录，并中止已经登录的会话\n"
        "  verify               检查存储\n"
        "  backup 文件          把存储连同登录备份到一个新文件\n"
        "  restore 文件         由备份建立存储，目标必须是空的\n\n"
        "退出码：0 成功，1 有记录或更改被拒绝，2 命令行有误，3 存储失败，4 文件失败，\n"
        "5 存储检查未通过。"));
    m_parser.addOption(
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("显示本帮助。")});
    m_parser.addOptions({
        {optionStore,
         QStringLiteral("存储的位置：SQLite 文件的路径，或 "
                        "postgresql://[用户@]主机[:端口]/数据库。"),
         QStringLiteral("位置")},
        {optionPasswordFile,
         QStringLiteral("登录服务器的密码在此文件的第一行；只有所有者可以访问该文件。"),
         QStringLiteral("文件")},
        {optionAskPassword, QStringLiteral("在终端上询问登录服务器的密码。")},
        {optionNewPasswordFile,
         QStringLiteral("password：新密码在此文件（同上）或标准输入（-）的第一行；没有此选项时"
                        "在终端上询问两次。"),
         QStringLiteral("文件")},
        {optionStrict, QStringLiteral("import：只要有一条记录被拒绝，就一条也不添加。")},
    });
    m_parser.addPositionalArgument(QStringLiteral("命令"), QString(), QStringLiteral("命令 …"));
}

bool AdminOptionsParser::helpWanted() const
{
    return m_parser.isSet(QStringLiteral("help"));
}

QString AdminOptionsParser::helpText() const
{
    return m_parser.helpText();
}

bool AdminOptionsParser::fail(const QString& error)
{
    m_error = error;
    return false;
}

bool AdminOptionsParser::parse(const QStringList& arguments)
{
    m_options = AdminOptions();
    m_error.clear();
    if (!m_parser.parse(arguments))
        return fail(m_parser.errorText());
    if (helpWanted())
        return true;
    m_options.store = m_parser.value(optionStore);
    if (m_options.store.isEmpty())
        return fail(QStringLiteral("请用 --store 写明存储的位置。"));
    m_options.passwordFile = m_parser.value(optionPasswordFile);
    m_options.asksPassword = m_parser.isSet(optionAskPassword);
    if (m_parser.isSet(optionPasswordFile) && m_options.asksPassword)
        return fail(QStringLiteral("--password-file 与 --ask-password 只能用一个。"));
    m_options.newPasswordFile = m_parser.value(optionNewPasswordFile);
    m_options.isStrict = m_parser.isSet(optionStrict);
    m_options.arguments = m_parser.positionalArguments();
    return checkCommand();
}

bool AdminOptionsParser::checkCommand()
{
    if (m_options.arguments.isEmpty())
        return fail(QStringLiteral("没有写明命令。"));
    m_options.command = m_options.arguments.takeFirst();
    const auto shape = commands().constFind(m_options.command);
    if (shape == commands().constEnd())
        return fail(QStringLiteral("没有命令“%1”。").arg(m_options.command));
    if (m_options.arguments.size() != shape->argumentCount) {
        return fail(QStringLiteral("命令 %1 需要 %2 个参数，写了 %3 个。")
                        .arg(m_options.command)
                        .arg(shape->argumentCount)
                        .arg(m_options.arguments.size()));
    }
    if (!shape->words.isEmpty() && !shape->words.contains(m_options.arguments.first())) {
        return fail(QStringLiteral("命令 %1 没有种类“%2”，应为：%3。")
                        .arg(m_options.command, m_options.arguments.first(),
                             shape->words.join(QStringLiteral("、"))));
    }
    if (m_options.isStrict && m_options.command != QStringLiteral("import"))
        return fail(QStringLiteral("--strict 只与命令 import 同用。"));
    if (m_parser.isSet(optionNewPasswordFile)) {
        if (m_options.command != QStringLiteral("password"))
            return fail(QStringLiteral("--new-password-file 只与命令 password 同用。"));
        if (m_options.newPasswordFile.isEmpty())
            return fail(QStringLiteral("--new-password-file 没有写明文件。"));
    }
    return true;
}

} // namespace admin
