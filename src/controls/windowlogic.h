#pragma once

#include <QObject>

// What every window's logic shares with its view: a revision that moves on with each
// change of the state the view shows, and a changed() signal on which the view brings its
// widgets in line. An event that changes several things holds a Batch, so that the view
// does so once, when the outermost batch ends.
class WindowLogic : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    quint64 revision() const { return m_revision; }

signals:
    void changed();

protected:
    // The state moved on: changed() now, or when the outermost batch ends.
    void markChanged();

    class Batch
    {
    public:
        explicit Batch(WindowLogic &logic) : m_logic(logic) { ++m_logic.m_batchDepth; }
        ~Batch()
        {
            if (--m_logic.m_batchDepth == 0)
                m_logic.announce();
        }
        Batch(const Batch &) = delete;
        Batch &operator=(const Batch &) = delete;

    private:
        WindowLogic &m_logic;
    };

private:
    void announce();

    quint64 m_revision = 0;
    int m_batchDepth = 0;
};
