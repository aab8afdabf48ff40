#include "platform/finestre/a_parte.h"

#include <QApplication>
#include <QThread>

#include <atomic>
#include <exception>
#include <memory>

namespace avanzamento
{

namespace
{

constexpr int intervallo = 40; // millisecondi

struct Stato {
    std::atomic<qint64> fatto{0};
    std::atomic<qint64> totale{1};
    std::atomic<bool> ferma{false};
    std::exception_ptr guasto;
};

// Finché la finestra d'avanzamento non c'è nulla ferma i comandi, e allora non si accettano.
void tieneVivo()
{
    QCoreApplication::processEvents(QApplication::activeModalWidget() != nullptr
                                        ? QEventLoop::AllEvents
                                        : QEventLoop::ExcludeUserInputEvents);
}

} // namespace

void compieAParte(QWidget *sopra, const QString &titolo,
                  const std::function<void(const Passo &)> &lavoro)
{
    Stato stato;
    const std::unique_ptr<QThread> filo(QThread::create([&stato, &lavoro] {
        try {
            lavoro([&stato](qint64 fatto, qint64 totale) {
                stato.fatto = fatto;
                stato.totale = totale;
                return !stato.ferma;
            });
        } catch (...) {
            stato.guasto = std::current_exception();
        }
    }));
    compie(sopra, titolo, [&stato, &filo](const Passo &passo) {
        filo->start();
        while (!filo->wait(intervallo)) {
            if (!passo(stato.fatto, stato.totale))
                stato.ferma = true;
            tieneVivo();
        }
    });
    if (stato.guasto)
        std::rethrow_exception(stato.guasto);
}

} // namespace avanzamento
