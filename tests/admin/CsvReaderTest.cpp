#include "admin/csv/CsvReader.h"

#include "admin/console/ProgressBar.h"
#include "admin/csv/CsvHeader.h"
#include "tests/support/TestCase.h"

using admin::CsvHeader;
using admin::CsvReader;
using admin::CsvRecord;

namespace {

// Each record as "line: field|field" or "line! problem".
QStringList records(const QByteArray& bytes)
{
    CsvReader reader(bytes);
    CsvRecord record;
    QStringList found;
    while (reader.next(&record)) {
        found.append(record.problem.isEmpty()
                         ? QStringLiteral("%1: %2")
                               .arg(record.line)
                               .arg(record.fields.join(QLatin1Char('|')))
                         : QStringLiteral("%1! %2").arg(record.line).arg(record.problem));
    }
    return found;
}

} // namespace

class CsvReaderTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void recordsAreReadAsTheRulesSay_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char* name, const QByteArray& bytes, const QStringList& lines) {
            QTest::newRow(name) << bytes << lines;
        };
        const auto line = [](const char* text) { return QString::fromUtf8(text); };
        row("nothing", "", {});
        row("only a mark", "\xef\xbb\xbf", {});
        row("one record", "a,b", {line("1: a|b")});
        row("mark and line ends",
            "\xef\xbb\xbf"
            "a,b\r\nc,d\n",
            {line("1: a|b"), line("2: c|d")});
        row("empty lines", "\r\n\na\r\n\r\nb\n", {line("3: a"), line("5: b")});
        row("empty fields", ",,\n,", {line("1: ||"), line("2: |")});
        row("quotes", "\"a,\"\"b\"\"\",c", {line("1: a,\"b\"|c")});
        row("empty in quotes", "\"\",\"\"", {line("1: |")});
        row("a line end in quotes", "\"a\nb\",c\nd", {line("1: a\nb|c"), line("3: d")});
        row("blanks stay", " a , b ", {line("1:  a | b ")});
        row("Chinese", "\xe5\xbc\xa0\xe4\xb8\x89,x", {line("1: 张三|x")});
        row("a quote inside", "a\"b,c\nd", {line("1! 没有加引号的字段中有引号"), line("2: d")});
        row("text after quotes", "\"a\"b,c\nd", {line("1! 引号之后还有文字"), line("2: d")});
        row("no end of quotes", "a\n\"b,c\nd\n",
            {line("1: a"), line("2! 引号没有结束，文件的其余部分都在其中")});
        row("a lone carriage return", "a\rb\nc",
            {line("1! 没有加引号的字段中有回车符"), line("2: c")});
        row("not UTF-8", "\xff\xfe,b\nc", {line("1! 不是 UTF-8 编码"), line("2: c")});
        row("overlong UTF-8", "\xc0\xaf\nc", {line("1! 不是 UTF-8 编码"), line("2: c")});
        row("half a surrogate pair", "\xed\xa0\x80\nc", {line("1! 不是 UTF-8 编码"), line("2: c")});
        row("a null character", QByteArray("a\0b\nc", 5), {line("1! 含有空字符"), line("2: c")});
    }
    void recordsAreReadAsTheRulesSay()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, expected);
        QCOMPARE(records(bytes), expected);
    }

    void aMillionFieldsAreReadInTime()
    {
        const QByteArray bytes = QByteArray("1234567,\"a \"\"b\"\"\",x\n").repeated(333'333);
        CsvReader reader(bytes);
        CsvRecord record;
        int count = 0;
        while (reader.next(&record))
            count += static_cast<int>(record.fields.size());
        QCOMPARE(count, 999'999);
        QCOMPARE(record.line, 333'333);
        QCOMPARE(reader.position(), reader.size());
    }

    void whatIsWrittenIsReadAgain()
    {
        const QStringList fields{QStringLiteral("a,b"), QStringLiteral("\"c\""),
                                 QStringLiteral("d\r\ne"), QString(), QStringLiteral(" 张 ")};
        CsvReader reader(admin::csvLine(fields).toUtf8());
        CsvRecord record;
        QVERIFY(reader.next(&record));
        QCOMPARE(record.problem, QString());
        QCOMPARE(record.fields, fields);
    }

    void aHeaderMustNameItsColumns()
    {
        const QStringList required{QStringLiteral("name"), QStringLiteral("password")};
        const QStringList optional{QStringLiteral("enabled")};
        CsvHeader header;
        const auto problem = [&](const QStringList& fields) {
            return header.read({1, fields, {}}, required, optional);
        };
        QCOMPARE(problem({QStringLiteral(" Password"), QStringLiteral("NAME ")}), QString());
        const CsvRecord record{2, {QStringLiteral(" x "), QStringLiteral(" bob ")}, {}};
        QCOMPARE(header.problem(record), QString());
        QCOMPARE(header.value(record, QStringLiteral("name")), QStringLiteral("bob"));
        QCOMPARE(header.rawValue(record, QStringLiteral("password")), QStringLiteral(" x "));
        QCOMPARE(header.value(record, QStringLiteral("enabled")), QString());
        QCOMPARE(header.problem({3, {QStringLiteral("x")}, {}}),
                 QStringLiteral("有 1 个字段，应为 2 个"));
        QCOMPARE(problem({QStringLiteral("name")}), QStringLiteral("标题行中缺少列“password”"));
        QCOMPARE(
            problem({QStringLiteral("name"), QStringLiteral("password"), QStringLiteral("name")}),
            QStringLiteral("标题行中的列“name”重复"));
        QVERIFY(problem({QStringLiteral("name"), QStringLiteral("pasword")})
                    .startsWith(QStringLiteral("标题行中有不认识的列“pasword”")));
    }

    void theBarFitsTheTerminal()
    {
        const QString title = QStringLiteral("添加");
        QCOMPARE(admin::ProgressBar::text(title, 1, 2, 23),
                 QStringLiteral("添加 [#####------]  50%"));
        QCOMPARE(admin::ProgressBar::text(title, 3, 2, 23),
                 QStringLiteral("添加 [###########] 100%"));
        QCOMPARE(admin::ProgressBar::text(title, 0, 0, 5), QStringLiteral("添加 [] 100%"));
    }
};

int main(int argc, char** argv)
{
    return runTest<CsvReaderTest>(argc, argv);
}

#include "CsvReaderTest.moc"
