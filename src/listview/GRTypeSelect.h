#pragma once

#include "GRTypes.h"

#include <QList>
#include <QString>

#include <functional>

// Selecting an item by typing the start of its name. The typed text gathers in a buffer that is
// emptied by the first key after a pause of 0.66 s counted from the last time it was emptied (not
// from the last key): so a run of keys typed steadily keeps growing the prefix.
class GRTypeSelect
{
public:
    static constexpr double Pause = 0.66;
    using Clock = std::function<double()>;

    struct Outcome
    {
        enum Kind
        {
            Nothing, // ignored, no match, or the match is already selected
            Toggle,  // a space typed into an empty buffer
            Select,
        } kind = Nothing;
        quint64 index = 0;
    };

    GRTypeSelect();

    // Seconds on the wall clock by default; tests give their own.
    void setClock(Clock clock) { m_clock = std::move(clock); }

    Outcome insertText(const QString &text, const QList<GRItemPtr> &items, quint64 selected);

    const QString &typedString() const { return m_typedString; }
    double lastCharacterTime() const { return m_lastCharacterTime; }

private:
    Clock m_clock;
    QString m_typedString;
    double m_lastCharacterTime = 0;
};
