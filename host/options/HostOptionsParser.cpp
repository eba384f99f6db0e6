#include "host/options/HostOptionsParser.h"

#include "backend/store/StoreLocation.h"
#include "utils/ExchangeTimeZone.h"

namespace host {

namespace {

constexpr QLatin1String optionStore("store");
constexpr QLatin1String optionUser("user");
constexpr QLatin1String optionPage("page");
constexpr QLatin1String optionSubPage("sub-page");
constexpr QLatin1String optionKey("key");
constexpr QLatin1String optionTab("tab");
constexpr QLatin1String optionTheme("theme");
constexpr QLatin1String optionScale("scale");
constexpr QLatin1String optionClock("clock");
constexpr QLatin1String optionTour("tour");
constexpr QLatin1String optionSteps("steps");
constexpr QLatin1String optionPictures("pictures");

// Below, texts cannot be read; above, the dialog fits no display.
constexpr double minimumScale = 0.5;
constexpr double maximumScale = 4.0;

} // namespace

HostOptionsParser::HostOptionsParser()
{
    m_parser.setApplicationDescription(
        QStringLiteral("交易客户端：登录、账号列表、账号消息和授权设置。"));
    m_parser.addOption(
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("显示本帮助。")});
    m_parser.addOptions({
        {optionStore,
         QStringLiteral("使用已有的存储：SQLite 文件的路径，或 "
                        "postgresql://[用户@]主机[:端口]/数据库；不写则使用演示存储。"),
         QStringLiteral("位置")},
        {optionUser, QStringLiteral("登录窗口中预先填好的用户。"), QStringLiteral("用户名")},
        {optionPage, QStringLiteral("登录后打开的页：201 账号授权，202 导入授权，203 子用户。"),
         QStringLiteral("页号")},
        {optionSubPage,
         QStringLiteral(
             "该页的子页：20101 单个账号，20201 单个授权，20401 单个子用户；需要 --key。"),
         QStringLiteral("子页号")},
        {optionKey, QStringLiteral("子页的账号（账号键或账号）或子用户名。"),
         QStringLiteral("账号或子用户")},
        {optionTab, QStringLiteral("该页上的标签序号，从 0 开始。"), QStringLiteral("序号")},
        {optionTheme, QStringLiteral("界面主题：light 浅色，dark 深色。"), QStringLiteral("主题")},
        {optionScale, QStringLiteral("界面放大倍数，0.5 到 4。"), QStringLiteral("倍数")},
        {optionClock,
         QStringLiteral("客户端的时钟从这一时刻走起（交易所时区），如 2026-03-02T10:30:00。"),
         QStringLiteral("时刻")},
        {optionTour, QStringLiteral("在一个临时存储上自动走一遍所有页面（需要 X 显示）；与 --store "
                                    "同用时，以管理员身份填充服务器上的空数据库并在其上进行。")},
        {optionSteps, QStringLiteral("导览每一步的图片放在此文件夹（默认 pictures）。"),
         QStringLiteral("文件夹")},
        {optionPictures, QStringLiteral("导览另把各页面的两种主题画入此文件夹。"),
         QStringLiteral("文件夹")},
    });
}

bool HostOptionsParser::helpWanted() const
{
    return m_parser.isSet(QStringLiteral("help"));
}

QString HostOptionsParser::helpText() const
{
    return m_parser.helpText();
}

bool HostOptionsParser::parse(const QStringList& arguments)
{
    m_options = HostOptions();
    m_error.clear();
    if (!m_parser.parse(arguments))
        return fail(m_parser.errorText());
    if (!m_parser.positionalArguments().isEmpty())
        return fail(
            QStringLiteral("多余的参数“%1”。").arg(m_parser.positionalArguments().constFirst()));
    m_options.store = m_parser.value(optionStore);
    if (m_parser.isSet(optionStore) && m_options.store.isEmpty())
        return fail(QStringLiteral("选项 --store 没有写明位置。"));
    m_options.user = m_parser.value(optionUser);
    m_options.key = m_parser.value(optionKey);
    return readPage() && readTheme() && readScale() && readClock() && readTour();
}

bool HostOptionsParser::fail(const QString& error)
{
    m_error = error;
    return false;
}

bool HostOptionsParser::readInteger(QLatin1String option, int minimum, int* value)
{
    if (!m_parser.isSet(option))
        return true;
    bool isNumber = false;
    const int number = m_parser.value(option).toInt(&isNumber);
    if (!isNumber || number < minimum)
        return fail(QStringLiteral("选项 --%1 的值“%2”不对：应为不小于 %3 的整数。")
                        .arg(option, m_parser.value(option))
                        .arg(minimum));
    *value = number;
    return true;
}

bool HostOptionsParser::readPage()
{
    if (!readInteger(optionPage, 1, &m_options.pageId) ||
        !readInteger(optionSubPage, 1, &m_options.subPageId) ||
        !readInteger(optionTab, 0, &m_options.tab))
        return false;
    if (m_parser.isSet(optionPage) && (m_options.pageId < 201 || m_options.pageId > 203))
        return fail(QStringLiteral("选项 --page 的值“%1”不对：应为 201、202 或 203。")
                        .arg(m_options.pageId));
    if (m_parser.isSet(optionSubPage) && m_options.key.isEmpty())
        return fail(QStringLiteral("选项 --sub-page 需要用 --key 写明账号或子用户。"));
    if (m_parser.isSet(optionKey) && !m_parser.isSet(optionSubPage))
        return fail(QStringLiteral("选项 --key 需要用 --sub-page 写明子页。"));
    for (const QLatin1String option : {optionSubPage, optionTab}) {
        if (m_parser.isSet(option) && !m_parser.isSet(optionPage))
            return fail(QStringLiteral("选项 --%1 需要用 --page 写明页。").arg(option));
    }
    return true;
}

bool HostOptionsParser::readTheme()
{
    if (!m_parser.isSet(optionTheme))
        return true;
    const QString theme = m_parser.value(optionTheme);
    if (theme == QStringLiteral("light"))
        m_options.theme = KZ::CUiResource::Theme::Light;
    else if (theme == QStringLiteral("dark"))
        m_options.theme = KZ::CUiResource::Theme::Dark;
    else
        return fail(QStringLiteral("选项 --theme 的值“%1”不对：应为 light 或 dark。").arg(theme));
    return true;
}

bool HostOptionsParser::readScale()
{
    if (!m_parser.isSet(optionScale))
        return true;
    bool isNumber = false;
    m_options.scale = m_parser.value(optionScale).toDouble(&isNumber);
    // Written so that not-a-number is refused as well.
    if (!isNumber || !(m_options.scale >= minimumScale && m_options.scale <= maximumScale))
        return fail(QStringLiteral("选项 --scale 的值“%1”不对：应为 0.5 到 4 之间的数。")
                        .arg(m_parser.value(optionScale)));
    return true;
}

bool HostOptionsParser::readClock()
{
    if (!m_parser.isSet(optionClock))
        return true;
    const QDateTime moment =
        QDateTime::fromString(m_parser.value(optionClock), QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
    if (!moment.isValid())
        return fail(QStringLiteral("选项 --clock 的值“%1”不对：应如 2026-03-02T10:30:00。")
                        .arg(m_parser.value(optionClock)));
    m_options.clock = QDateTime(moment.date(), moment.time(), utils::exchangeTimeZone());
    return true;
}

bool HostOptionsParser::readTour()
{
    m_options.tour = m_parser.isSet(optionTour);
    if (m_parser.isSet(optionSteps))
        m_options.stepPictures = m_parser.value(optionSteps);
    m_options.pagePictures = m_parser.value(optionPictures);
    // Somebody's file is never filled; on a server, an administrator can make a database for it.
    if (m_options.tour && m_parser.isSet(optionStore) &&
        !backend::StoreLocation::parse(m_options.store).isServer())
        return fail(QStringLiteral(
            "导览使用自己的临时存储，--store 只能是服务器（postgresql://管理员@主机/空数据库）。"));
    if (m_parser.isSet(optionPictures) && !m_options.tour)
        return fail(QStringLiteral("选项 --pictures 只与 --tour 同用。"));
    return true;
}

} // namespace host
