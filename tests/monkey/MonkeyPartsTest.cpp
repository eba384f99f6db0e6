#include "tests/monkey/Action.h"
#include "tests/monkey/Shortener.h"
#include "tests/monkey/VirtualDispatcher.h"
#include "tests/support/TestCase.h"

#include <QEventLoop>
#include <QTimer>

using monkey::Action;
using monkey::Script;
using monkey::VirtualDispatcher;

/// What the random user stands on: time that only he moves, and scripts that mean the same again.
class MonkeyPartsTest : public TestCase
{
    Q_OBJECT

public:
    explicit MonkeyPartsTest(VirtualDispatcher& dispatcher) : m_dispatcher(dispatcher) {}

private Q_SLOTS:
    void timersFireInTheOrderOfTheirTimes()
    {
        QStringList fired;
        QTimer late;
        late.setSingleShot(true);
        connect(&late, &QTimer::timeout, this, [&fired] { fired.append(QStringLiteral("late")); });
        late.start(3000);
        QTimer often;
        connect(&often, &QTimer::timeout, this,
                [&fired] { fired.append(QStringLiteral("often")); });
        often.start(1400);
        m_dispatcher.advance(2999);
        m_dispatcher.settle();
        QCOMPARE(fired, QStringList({QStringLiteral("often"), QStringLiteral("often")}));
        m_dispatcher.advance(1);
        m_dispatcher.settle();
        QCOMPARE(fired.constLast(), QStringLiteral("late"));
        QCOMPARE(fired.size(), 3);
    }

    void noTimerFiresWhileTheClockStands()
    {
        bool fired = false;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&fired] { fired = true; });
        timer.start(1);
        m_dispatcher.settle();
        QVERIFY(!fired);
        m_dispatcher.advance(1);
        m_dispatcher.settle();
        QVERIFY(fired);
    }

    void anInnerLoopAtRestAsksWhatIsNext()
    {
        QEventLoop outer;
        QEventLoop inner;
        int asked = 0;
        m_dispatcher.setIdle([&] {
            ++asked;
            if (asked == 1) {
                inner.exec();
                outer.quit();
            } else {
                inner.quit();
            }
        });
        outer.exec();
        m_dispatcher.setIdle({});
        QCOMPARE(asked, 2);
    }

    void aLineOfAScriptGivesItsActionBack()
    {
        const Action typed{Action::Type, 1, -2, 3, QStringLiteral(" 授权 %20\r")};
        const auto read = Action::fromLine(typed.toLine());
        QVERIFY(read);
        QCOMPARE(read->kind, typed.kind);
        QCOMPARE(read->a, typed.a);
        QCOMPARE(read->b, typed.b);
        QCOMPARE(read->c, typed.c);
        QCOMPARE(read->text, typed.text);
        for (int kind = 0; kind < Action::KindCount; ++kind) {
            const Action action{static_cast<Action::Kind>(kind), 0, 0, 0, {}};
            QCOMPARE(Action::fromLine(action.toLine())->kind, action.kind);
        }
        QVERIFY(!Action::fromLine(QStringLiteral("nothing 0 0 0")));
    }

    void aScriptIsShortenedToWhatItNeeds()
    {
        Script script;
        for (int number = 0; number < 300; ++number)
            script.append({Action::Advance, number, 0, 0, {}});
        const auto needs = [](const Script& tried) {
            int found = 0;
            for (const Action& action : tried)
                found += action.a == 17 || action.a == 161 || action.a == 288 ? 1 : 0;
            return found == 3;
        };
        const Script shorter = monkey::shortened(script, needs, 1000);
        QCOMPARE(shorter.size(), 3);
        QCOMPARE(shorter.at(1).a, 161);
    }

    void shorteningStopsAfterItsTries()
    {
        int tries = 0;
        const auto never = [&tries](const Script&) {
            ++tries;
            return false;
        };
        QCOMPARE(monkey::shortened(Script(64), never, 10).size(), 64);
        QCOMPARE(tries, 10);
    }

private:
    VirtualDispatcher& m_dispatcher;
};

int main(int argc, char** argv)
{
    auto* dispatcher = new VirtualDispatcher;
    QCoreApplication::setEventDispatcher(dispatcher);
    QApplication application(argc, argv);
    MonkeyPartsTest test(*dispatcher);
    return QTest::qExec(&test, argc, argv);
}

#include "MonkeyPartsTest.moc"
