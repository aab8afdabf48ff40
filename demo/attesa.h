#pragma once

#include <QElapsedTimer>
#include <QString>

#include <coroutine>
#include <functional>
#include <stdexcept>

// Il copione non può andare avanti: una finestra che non viene, un comando che non c'è.
class Guasto : public std::runtime_error
{
public:
    explicit Guasto(const QString &motivo) : std::runtime_error(motivo.toStdString()) {}
};

// Compie un gesto in un giro suo del ciclo degli eventi, poi aspetta, senza fermare il ciclo, che
// una condizione sia vera. Lancia Guasto se passano trenta secondi.
//
// La fabbricano funzioni comuni, non le coroutine: con g++ 12 una lambda scritta dentro
// un'espressione co_await distrugge due volte ciò che ha catturato.
class Attesa
{
public:
    Attesa(QString che, std::function<void()> gesto, std::function<bool()> condizione);

    bool await_ready() const { return false; }
    void await_suspend(std::coroutine_handle<> seguito);
    void await_resume() const;

private:
    void guarda();

    QString m_che;
    std::function<void()> m_gesto;
    std::function<bool()> m_condizione;
    std::coroutine_handle<> m_seguito;
    QElapsedTimer m_orologio;
    bool m_riuscita = false;
};

// Aspetta e basta.
Attesa aspetta(QString che, std::function<bool()> condizione);
// Un gesto di un solo evento, che può aprire una finestra modale: si va avanti appena è avvenuto.
Attesa gesto(std::function<void()> compiuto);
// Un gesto di più eventi, fra i quali il ciclo gira: si va avanti quando ci sono tutti. Non deve
// aprire finestre modali, che non lo lascerebbero finire.
Attesa gestoIntero(std::function<void()> compiuto);
