#pragma once

#include <QObject>

// What every window's logic shares with its view: a changed() signal on which the view
// brings its widgets in line. An event that changes several things holds a Batch, so
// that the view does so once, when the outermost batch ends.
class WindowLogic : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

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
                emit m_logic.changed();
        }
        Batch(const Batch &) = delete;
        Batch &operator=(const Batch &) = delete;

    private:
        WindowLogic &m_logic;
    };

private:
    int m_batchDepth = 0;
};
