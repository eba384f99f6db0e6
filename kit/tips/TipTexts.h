#pragma once

#include <QStringList>
#include <QVector>

namespace KZ {

/// The texts of a tip and how long they are to be read. A text that comes again right after itself
/// makes no new entry but counts.
class CTipTexts
{
public:
    /// `duration` in hundredths of a second; without a positive one the texts stay.
    void add(const QString& text, int kind, int duration);
    /// Adds a text that came for another anchor and is shown already: it is among all() and its
    /// time counts, but no entry tells it once more.
    void addEcho(const QString& text, int kind, int duration);
    /// Takes back the latest `count` texts that equal `text` and `kind`.
    void withdraw(const QString& text, int kind, int count);
    /// How often texts have been taken back; entries told earlier hold only while it stays.
    int withdrawals() const { return m_withdrawals; }

    /// Every text as given, repeated ones and echoes too.
    QStringList all() const;
    /// Those of all() that the entries tell.
    QStringList told() const;
    /// The kind of the latest text, 0 without one.
    int kind() const { return m_all.isEmpty() ? 0 : m_all.last().kind; }

    int entryCount() const { return static_cast<int>(m_entries.size()); }
    /// How many texts the entries stand for, repeated ones counted.
    int shownCount() const { return m_shownCount; }

    /// Whether the texts stay until they are dismissed.
    bool areLasting() const;
    /// How long the texts are shown unless they stay, in milliseconds.
    int time() const { return entryCount() > 1 ? m_totalTime : m_longestTime; }

    /// The text of an entry as it can be shown: plain, line breaks as '\n', at most
    /// SHOWN_CHARACTERS long, what has no glyph or would turn the reading order made visible, with
    /// the number of repetitions behind it.
    QString shownText(int entry) const;

    /// The shown texts of all entries, one below the other.
    QString joined() const;

    /// Longer texts are cut for showing, so that a text of megabytes does not stop the program.
    static constexpr int SHOWN_CHARACTERS = 2000;

private:
    struct Text
    {
        QString text;
        int kind;
        int duration;
        bool isEcho;
    };
    struct Entry
    {
        QString text;
        int kind;
        int count;
    };

    void take(const Text& text);

    QVector<Text> m_all;
    QVector<Entry> m_entries;
    int m_withdrawals = 0;
    int m_shownCount = 0;
    bool m_hintsOnly = true;
    bool m_untimed = false;
    /// Milliseconds of one text and of all that are shown together.
    int m_longestTime = 0;
    int m_totalTime = 0;
};

} // namespace KZ
