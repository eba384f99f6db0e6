#include "admin/import/RecordAdder.h"

#include <QHash>

namespace admin {

namespace {

const QString columnAlias = QStringLiteral("alias");
const QString columnBroker = QStringLiteral("broker_id");
const QString columnEnabled = QStringLiteral("enabled");
const QString columnKind = QStringLiteral("kind");
const QString columnName = QStringLiteral("name");
const QString columnNumber = QStringLiteral("number");
const QString columnOwner = QStringLiteral("owner");
const QString columnPassword = QStringLiteral("password");
const QString columnPlatform = QStringLiteral("platform_id");
const QString columnSecret = QStringLiteral("secret");
const QString columnSubType = QStringLiteral("sub_type");
const QString columnType = QStringLiteral("type");

// The words for futures and stock, as numbers.
const QHash<QString, int>& kindWords()
{
    static const QHash<QString, int> words{
        {QStringLiteral("1"), 1},   {QStringLiteral("futures"), 1}, {QStringLiteral("期货"), 1},
        {QStringLiteral("2"), 2},   {QStringLiteral("stock"), 2},   {QStringLiteral("股票"), 2},
        {QStringLiteral("证券"), 2}};
    return words;
}

const QHash<QString, bool>& yesNoWords()
{
    static const QHash<QString, bool> words{{QString(), true},
                                            {QStringLiteral("1"), true},
                                            {QStringLiteral("0"), false},
                                            {QStringLiteral("true"), true},
                                            {QStringLiteral("false"), false},
                                            {QStringLiteral("yes"), true},
                                            {QStringLiteral("no"), false},
                                            {QStringLiteral("是"), true},
                                            {QStringLiteral("否"), false}};
    return words;
}

} // namespace

class RecordAdder::Fields
{
public:
    Fields(const CsvHeader& header, const CsvRecord& record) : m_header(header), m_record(record) {}

    QString text(const QString& column) const { return m_header.value(m_record, column); }
    std::string bytes(const QString& column) const { return text(column).toStdString(); }
    QString rawText(const QString& column) const { return m_header.rawValue(m_record, column); }

    int number(const QString& column, const QString& standard = {})
    {
        const QString word = text(column).isEmpty() ? standard : text(column);
        bool isNumber = false;
        const int value = word.toInt(&isNumber);
        if (!isNumber)
            refuse(column, word, QStringLiteral("整数"));
        return value;
    }
    int kind(const QString& column)
    {
        const int value = kindWords().value(text(column).toLower(), 0);
        if (value == 0)
            refuse(column, text(column), QStringLiteral(" futures 或 stock"));
        return value;
    }
    bool yesNo(const QString& column)
    {
        const QString word = text(column).toLower();
        if (!yesNoWords().contains(word))
            refuse(column, word, QStringLiteral(" 1 或 0"));
        return yesNoWords().value(word);
    }
    /// The four fields that identify an account.
    mbservice::CAccountInfo account(const QString& prefix = {})
    {
        mbservice::CAccountInfo account;
        account.platformId = number(prefix + columnPlatform);
        account.brokerId = bytes(prefix + columnBroker);
        account.accountSubType = number(prefix + columnSubType, QStringLiteral("0"));
        account.accountId = bytes(prefix + columnNumber);
        return account;
    }

    const QString& problem() const { return m_problem; }

private:
    void refuse(const QString& column, const QString& word, const QString& expected)
    {
        if (m_problem.isEmpty())
            m_problem =
                QStringLiteral("列 %1 的值“%2”应为%3").arg(column, shortened(word), expected);
    }

    const CsvHeader& m_header;
    const CsvRecord& m_record;
    QString m_problem;
};

QStringList RecordAdder::kindNames()
{
    return {QStringLiteral("users"),        QStringLiteral("sub-users"), QStringLiteral("accounts"),
            QStringLiteral("sub-accounts"), QStringLiteral("platforms"), QStringLiteral("brokers")};
}

std::optional<RecordKind> RecordAdder::kindOf(const QString& name)
{
    const qsizetype index = kindNames().indexOf(name);
    if (index < 0)
        return std::nullopt;
    return static_cast<RecordKind>(index);
}

QStringList RecordAdder::requiredColumns() const
{
    switch (m_kind) {
    case RecordKind::Users:
        return {columnName, columnPassword};
    case RecordKind::SubUsers:
        return {columnOwner, columnName, columnPassword};
    case RecordKind::Accounts:
        return {columnOwner, columnType, columnPlatform, columnBroker, columnNumber, columnSecret};
    case RecordKind::SubAccounts:
        return {columnPlatform, columnBroker, columnNumber, QStringLiteral("parent_number")};
    case RecordKind::Platforms:
        return {columnKind, columnPlatform, columnName};
    case RecordKind::Brokers:
        return {columnKind, columnPlatform, columnBroker, columnName};
    }
    return {};
}

QStringList RecordAdder::optionalColumns() const
{
    switch (m_kind) {
    case RecordKind::Users:
    case RecordKind::SubUsers:
        return {columnEnabled};
    case RecordKind::Accounts:
        return {columnSubType, columnAlias};
    case RecordKind::SubAccounts:
        return {columnSubType, QStringLiteral("parent_platform_id"),
                QStringLiteral("parent_broker_id"), QStringLiteral("parent_sub_type")};
    case RecordKind::Platforms:
    case RecordKind::Brokers:
        break;
    }
    return {};
}

bool RecordAdder::holdsSecrets() const
{
    return m_kind == RecordKind::Users || m_kind == RecordKind::SubUsers ||
           m_kind == RecordKind::Accounts;
}

QString RecordAdder::add(const CsvHeader& header, const CsvRecord& record,
                         backend::StoreAdmin& store) const
{
    QString problem = header.problem(record);
    if (!problem.isEmpty())
        return problem;
    Fields fields(header, record);
    bool isAdded = false;
    switch (m_kind) {
    case RecordKind::Users:
    case RecordKind::SubUsers:
        isAdded = addUser(fields, store);
        break;
    case RecordKind::Accounts:
        isAdded = addAccount(fields, store);
        break;
    case RecordKind::SubAccounts:
        isAdded = addSubAccount(fields, store);
        break;
    case RecordKind::Platforms:
        isAdded = addPlatform(fields, store);
        break;
    case RecordKind::Brokers:
        isAdded = addBroker(fields, store);
        break;
    }
    if (isAdded)
        return {};
    return fields.problem().isEmpty() ? store.error() : fields.problem();
}

bool RecordAdder::addUser(Fields& fields, backend::StoreAdmin& store) const
{
    const bool enabled = fields.yesNo(columnEnabled);
    if (!fields.problem().isEmpty())
        return false;
    const QString name = fields.text(columnName);
    const QString password = fields.rawText(columnPassword);
    if (m_kind == RecordKind::Users)
        return store.addUser(name, password, enabled);
    return store.addSubUser(fields.text(columnOwner), name, password, enabled);
}

bool RecordAdder::addAccount(Fields& fields, backend::StoreAdmin& store) const
{
    mbservice::CAccountInfo account = fields.account();
    account.accountType = fields.kind(columnType);
    account.accountPrivate = fields.bytes(columnSecret);
    account.accountAlias = fields.bytes(columnAlias);
    return fields.problem().isEmpty() && store.addAccount(fields.text(columnOwner), account);
}

bool RecordAdder::addSubAccount(Fields& fields, backend::StoreAdmin& store) const
{
    const mbservice::CAccountInfo child = fields.account();
    // What is not said of the main account is as with its sub-account.
    mbservice::CAccountInfo parent = child;
    const QString prefix = QStringLiteral("parent_");
    parent.platformId = fields.number(prefix + columnPlatform, QString::number(child.platformId));
    parent.accountSubType =
        fields.number(prefix + columnSubType, QString::number(child.accountSubType));
    if (!fields.text(prefix + columnBroker).isEmpty())
        parent.brokerId = fields.bytes(prefix + columnBroker);
    parent.accountId = fields.bytes(prefix + columnNumber);
    return fields.problem().isEmpty() && store.addSubAccount(parent, child);
}

bool RecordAdder::addPlatform(Fields& fields, backend::StoreAdmin& store) const
{
    const auto kind = static_cast<backend::StoreAdmin::Kind>(fields.kind(columnKind));
    const int platform = fields.number(columnPlatform);
    return fields.problem().isEmpty() &&
           store.addPlatform(kind, {platform, fields.bytes(columnName)});
}

bool RecordAdder::addBroker(Fields& fields, backend::StoreAdmin& store) const
{
    const auto kind = static_cast<backend::StoreAdmin::Kind>(fields.kind(columnKind));
    const int platform = fields.number(columnPlatform);
    return fields.problem().isEmpty() &&
           store.addBroker(kind, {platform, fields.bytes(columnBroker), fields.bytes(columnName)});
}

} // namespace admin
