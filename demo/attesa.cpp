#include "demo/attesa.h"

#include <QCoreApplication>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{

constexpr int millisecondiFraGesti = 2;
constexpr int millisecondiMassimi = 30'000;

void fraPoco(const std::function<void()> &funzione)
{
    auto *sveglia = new QTimer(qApp);
    sveglia->setSingleShot(true);
    QObject::connect(sveglia, &QTimer::timeout, sveglia, [sveglia, funzione] {
        sveglia->deleteLater();
        funzione();
    });
    sveglia->start(millisecondiFraGesti);
}

} // namespace

Attesa::Attesa(QString che, std::function<void()> gesto, std::function<bool()> condizione)
    : m_che(std::move(che)), m_gesto(std::move(gesto)), m_condizione(std::move(condizione))
{
}

void Attesa::await_suspend(std::coroutine_handle<> seguito)
{
    m_seguito = seguito;
    m_orologio.start();
    fraPoco([this, compiuto = std::move(m_gesto)] {
        // Prima del gesto: se apre una finestra modale torna solo quando quella si chiude, e
        // allora questa attesa non c'è più.
        fraPoco([this] { guarda(); });
        if (compiuto)
            compiuto();
    });
}

void Attesa::guarda()
{
    m_riuscita = m_condizione();
    if (m_riuscita || m_orologio.hasExpired(millisecondiMassimi))
        m_seguito.resume();
    else
        fraPoco([this] { guarda(); });
}

void Attesa::await_resume() const
{
    if (!m_riuscita)
        throw Guasto(u"waited in vain for "_s + m_che);
}

Attesa aspetta(QString che, std::function<bool()> condizione)
{
    return {std::move(che), {}, std::move(condizione)};
}

Attesa gesto(std::function<void()> compiuto)
{
    return {{}, std::move(compiuto), [] { return true; }};
}

Attesa gestoIntero(std::function<void()> compiuto)
{
    const auto finito = std::make_shared<bool>(false);
    return {u"the end of a gesture"_s,
            [finito, compiuto = std::move(compiuto)] {
                compiuto();
                *finito = true;
            },
            [finito] { return *finito; }};
}
