#pragma once

#include <QStringList>
#include <QVector>

namespace KZ {

/// The texts of a tip. A text that comes again right after itself makes no new entry but counts.
class CTipTexts
{
public:
    void add(const QString& text, int kind);

    /// Every text as given, repeated ones too.
    const QStringList& all() const { return m_all; }

    int entryCount() const { return static_cast<int>(m_entries.size()); }

    /// Whether all texts are hints about an input (kind 2).
    bool areHintsOnly() const { return m_hintsOnly; }

    /// The text of an entry as it can be shown: plain, line breaks as '\n', at most
    /// SHOWN_CHARACTERS long, what has no glyph or would turn the reading order made visible, with
    /// the number of repetitions behind it.
    QString shownText(int entry) const;

    /// The shown texts of all entries, one below the other.
    QString joined() const;

    /// Longer texts are cut for showing, so that a text of megabytes does not stop the program.
    static constexpr int SHOWN_CHARACTERS = 2000;

private:
    struct Entry
    {
        QString text;
        int kind;
        int count;
    };

    QStringList m_all;
    QVector<Entry> m_entries;
    bool m_hintsOnly = true;
};

} // namespace KZ
