#include "host/demo/DemoAccount.h"

#include <algorithm>

namespace host {

mbservice::CAccountInfo DemoAccount::info() const
{
    mbservice::CAccountInfo info;
    info.accountType = accountType;
    info.platformId = platformId;
    info.brokerId = brokerId;
    info.accountId = accountId;
    info.accountAlias = alias;
    info.accountPrivate = "demo-" + info.accountId;
    return info;
}

const std::vector<DemoAccount>& DemoAccount::all()
{
    static const std::vector<DemoAccount> accounts = {
        {"lin.yuan", 1, 1, "0101", "80010001", "趋势一号", nullptr},
        {"lin.yuan", 1, 1, "0101", "80010002", "", nullptr},
        {"lin.yuan", 1, 1, "0102", "80020017", "", nullptr},
        {"lin.yuan", 1, 1, "0102", "80020018", "套利主账户", nullptr},
        {"lin.yuan", 1, 2, "0201", "60330105", "", nullptr},
        {"lin.yuan", 1, 2, "0205", "60550230", "", nullptr},
        {"lin.yuan", 1, 2, "0205", "60550231", "日内策略", nullptr},
        {"lin.yuan", 1, 3, "0301", "31007711", "夜盘账户", nullptr},
        {"lin.yuan", 2, 11, "8801", "A100200301", "", nullptr},
        {"lin.yuan", 2, 11, "8801", "A100200302", "长线持仓", nullptr},
        {"lin.yuan", 2, 11, "8802", "A330044110", "", nullptr},
        {"lin.yuan", 2, 12, "9001", "0190220075", "", nullptr},
        {"lin.yuan", 1, 2, "0201", "60330200", "组合母账户", nullptr},
        {"lin.yuan", 1, 2, "0201", "60330201", "组合子账户甲", "60330200"},
        {"lin.yuan", 1, 2, "0201", "60330202", "组合子账户乙", "60330200"},
        {"zhao.ke", 1, 1, "0101", "80011203", "赵氏对冲", nullptr},
        {"zhao.ke", 1, 3, "0301", "31009902", "", nullptr},
        {"zhao.ke", 2, 12, "9001", "0190220418", "", nullptr},
        {"zhao.ke", 2, 11, "8802", "A330044655", "", nullptr},
        {"chen.mu", 1, 2, "0205", "60550777", "", nullptr},
        {"chen.mu", 2, 11, "8801", "A100200990", "陈木价值", nullptr},
    };
    return accounts;
}

const DemoAccount* DemoAccount::find(const std::string& accountId)
{
    const std::vector<DemoAccount>& accounts = all();
    const auto found =
        std::find_if(accounts.begin(), accounts.end(), [&accountId](const DemoAccount& account) {
            return account.accountId == accountId;
        });
    return found == accounts.end() ? nullptr : &*found;
}

} // namespace host
