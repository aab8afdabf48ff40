#pragma once

#include <QEvent>
#include <QObject>
#include <QTimer>
#include <QWidget>

#include <functional>

// Chiama una funzione appena dopo che il riquadro è stato disegnato la prima volta.
class Dipinta : public QObject
{
public:
    Dipinta(QWidget *riquadro, std::function<void()> poi) : QObject(riquadro), m_poi(std::move(poi))
    {
        riquadro->installEventFilter(this);
    }
    bool eventFilter(QObject *oggetto, QEvent *evento) override
    {
        if (evento->type() == QEvent::Paint) {
            oggetto->removeEventFilter(this);
            QTimer::singleShot(0, this, [this] { m_poi(); });
        }
        return false;
    }

private:
    std::function<void()> m_poi;
};
